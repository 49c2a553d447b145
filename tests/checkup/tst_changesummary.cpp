// SPDX-License-Identifier: MIT
#include "../support/vehiclesnapshot.h"

#include <checkup/changesummary.h>
#include <checkup/checkup.h>
#include <checkup/ruleset.h>
#include <checkup/snapshotcomparison.h>

#include <QtTest>

namespace {

constexpr quint8 gateway = 5;

Change gap(quint8 nodeId, quint16 index, const char *reason)
{
    Change change;
    change.kind = Change::Kind::Gap;
    change.nodeId = nodeId;
    change.key = CanOpen::ObjectKey{index, 0};
    change.before = QStringLiteral("7");
    change.text = QStringLiteral("its own text");
    change.device = QStringLiteral("Gateway (node %1)").arg(nodeId);
    change.reason = QLatin1String(reason);
    change.isUnreadNow = true;
    return change;
}

Change gapGone(quint8 nodeId, quint16 index, const char *reason)
{
    Change change = gap(nodeId, index, reason);
    std::swap(change.before, change.after);
    change.isUnreadNow = false;
    return change;
}

/*! "count|key|before|after|text" of each change for people. */
QStringList lines(const QVector<Change> &changes)
{
    Comparison comparison;
    comparison.changes = changes;
    QStringList lines;
    for (const Change &change : ChangeSummary::forPeople(comparison).changes)
        lines.append(QStringLiteral("%1|%2|%3|%4|%5")
                         .arg(change.count)
                         .arg(change.key ? change.key->toShortString() : QString(), change.before,
                              change.after, change.text));
    return lines;
}

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

class tst_ChangeSummary : public QObject
{
    Q_OBJECT

private slots:
    void nothing();
    void oneGapStandsAlone();
    void sameReason();
    void otherReason();
    void otherDevice();
    void readThisTime();
    void wholeDeviceStandsAlone();
    void otherKindsStandAsTheyAre();
    void deadDevice();
};

void tst_ChangeSummary::nothing()
{
    QVERIFY(ChangeSummary::forPeople(Comparison()).isSame());
}

void tst_ChangeSummary::oneGapStandsAlone()
{
    QCOMPARE(lines({gap(14, 0x6040, "No answer.")}), QStringList{s("1|6040h.0|7||its own text")});
}

void tst_ChangeSummary::sameReason()
{
    QCOMPARE(
        lines({gap(14, 0x6040, "No answer."), gap(14, 0x6041, "No answer."), gap(14, 0x6042, "No answer.")}),
        QStringList{s("3||3 values||Not read any more: 3 values of Gateway (node 14). No answer.")});
}

/*! In the order of the first ones, also when they take turns. */
void tst_ChangeSummary::otherReason()
{
    QCOMPARE(lines({gap(14, 0x6040, "No answer."), gap(14, 0x6041, "Refused."), gap(14, 0x6042, "No answer."),
                    gap(14, 0x6043, "Too long."), gap(14, 0x6044, "Refused.")}),
             (QStringList{s("2||2 values||Not read any more: 2 values of Gateway (node 14). No answer."),
                          s("2||2 values||Not read any more: 2 values of Gateway (node 14). Refused."),
                          s("1|6043h.0|7||its own text")}));
}

void tst_ChangeSummary::otherDevice()
{
    QCOMPARE(lines({gap(13, 0x6040, "No answer."), gap(14, 0x6040, "No answer.")}),
             (QStringList{s("1|6040h.0|7||its own text"), s("1|6040h.0|7||its own text")}));
}

void tst_ChangeSummary::readThisTime()
{
    QCOMPARE(lines({gapGone(14, 0x6040, "No answer."), gap(14, 0x6041, "No answer."),
                    gapGone(14, 0x6042, "No answer.")}),
             (QStringList{s("2|||2 values|Read this time: 2 values of Gateway (node 14). Before: No answer."),
                          s("1|6041h.0|7||its own text")}));
}

void tst_ChangeSummary::wholeDeviceStandsAlone()
{
    Change device = gap(14, 0, "No answer.");
    device.key.reset();
    QCOMPARE(lines({device, device, gap(14, 0x6040, "No answer.")}),
             (QStringList{s("1||7||its own text"), s("1||7||its own text"), s("1|6040h.0|7||its own text")}));
}

void tst_ChangeSummary::otherKindsStandAsTheyAre()
{
    Change value = gap(14, 0x6040, "");
    value.kind = Change::Kind::Value;
    QCOMPARE(lines({value, value}),
             (QStringList{s("1|6040h.0|7||its own text"), s("1|6040h.0|7||its own text")}));
}

/*! It was heard, and not one value of it could be read: all that there is to say is one line. */
void tst_ChangeSummary::deadDevice()
{
    const RuleSet rules = RuleSet::load({QStringLiteral(OVERVIEW_SOURCE_DIR "/src/checkup/rules")});
    const Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    int lost = 0;
    for (SnapshotEntry &entry : after.find(gateway)->entries) {
        lost += entry.hasValue() ? 1 : 0;
        entry.gap = entry.gap == SnapshotGap::None ? SnapshotGap::NoAnswer : entry.gap;
        entry.value = QVariant();
        entry.raw.clear();
    }
    const Comparison all = SnapshotComparison::compare({&before, nullptr}, {&after, nullptr}, rules.kinds());
    QVERIFY(lost > 20);
    QCOMPARE(all.changes.size(), lost);
    QCOMPARE(
        lines(all.changes),
        QStringList{s("%1||%1 values||Not read any more: %1 values of HMI control unit/display (node 5). "
                      "The device did not answer.")
                        .arg(lost)});
}

QTEST_GUILESS_MAIN(tst_ChangeSummary)
#include "tst_changesummary.moc"
