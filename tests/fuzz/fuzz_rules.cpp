// SPDX-License-Identifier: MIT
// Rule files: what is wrong is said in one clean line; what is right is applied to a small vehicle and ends.
#include "bytereader.h"

#include <checkup/checkup.h>
#include <checkup/ruleset.h>
#include <snapshot/snapshot.h>

#include <QCoreApplication>

namespace {

SnapshotEntry entry(quint16 index, quint8 sub, const QVariant &value)
{
    SnapshotEntry made;
    made.key = {index, sub};
    made.value = value;
    return made;
}

/*! A battery with cells, objects that are absent, and one that did not answer. */
Snapshot smallVehicle()
{
    constexpr quint8 cells = 10;
    SnapshotNode node;
    node.id = 2;
    node.insert(entry(0x1001, 0, 3u));
    node.insert(entry(0x1008, 0, QStringLiteral("Battery\x1b")));
    node.insert(entry(0x6000, 0, 1u));
    node.insert(entry(0x6000, 1, 6u));
    node.insert(entry(0x6040, 0, 1u));
    node.insert(entry(0x6040, 1, 39300));
    node.insert(entry(0x6165, 0, uint(cells)));
    for (quint8 cell = 1; cell <= cells; ++cell)
        node.insert(entry(0x6165, cell, 3700u + cell));
    SnapshotEntry absent = entry(0x6166, 0, QVariant());
    absent.gap = SnapshotGap::Absent;
    node.insert(absent);
    SnapshotEntry silent = entry(0x6105, 0, QVariant());
    silent.gap = SnapshotGap::NoAnswer;
    node.insert(silent);
    Snapshot snapshot;
    snapshot.nodes.append(node);
    return snapshot;
}

void checkLine(const QString &line)
{
    require(!line.isEmpty());
    for (const QChar character : line)
        require(character.category() != QChar::Other_Control);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static const Snapshot snapshot = smallVehicle();

    RuleSet rules;
    rules.add(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)),
              QStringLiteral("rules.json"));
    for (const QString &problem : rules.problems())
        checkLine(problem);
    const CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("de"));
    require(result.components.size() == 1);
    for (const QString &reason : result.components.first().notChecked)
        checkLine(reason);
    require(result.verdict != Verdict::Ok || result.components.first().state == ComponentState::Good);
    return 0;
}
