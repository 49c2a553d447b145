// SPDX-License-Identifier: MIT
#include "snapshotcomparison.h"

#include "devicename.h"
#include "devicepairs.h"
#include "objectchange.h"
#include "objectwords.h"

#include <interpreter/objects.h>
#include <snapshot/snapshotwords.h>

#include <QHash>

#include <algorithm>

namespace {

using Side = SnapshotComparison::Side;

/*! The way through all devices, objects and findings. */
class Comparing
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotComparison)

public:
    Comparing(const Side &before, const Side &after, const ObjectKinds &kinds)
        : m_before(before)
        , m_after(after)
        , m_kinds(kinds)
    {
    }

    Comparison compare();

private:
    /*! Whether gaps are changes, or said in one sentence for the device. */
    enum class Gaps : quint8 { Count, Explained };

    void compareDevice(const DevicePair &pair);
    void addDevice(const DevicePair &pair);
    void addIdentity(const DevicePair &pair);
    bool compareEnds(const DevicePair &pair);
    void compareObjects(const DevicePair &pair, Gaps gaps = Gaps::Count);
    void compareFindings(const QVector<DevicePair> &pairs);
    void addFinding(const Finding *before, const Finding *after, quint8 nodeId);
    bool wasJudged(const Finding &finding) const;
    bool isJudged(const Finding &finding, quint8 nodeId) const;
    Change &add(Change::Kind kind, quint8 nodeId, const QString &device);
    static QString deviceName(const SnapshotNode &node, const SnapshotNode *earlier);

    const Side &m_before;
    const Side &m_after;
    const ObjectKinds &m_kinds;
    QHash<quint8, QString> m_names;     // of the devices now
    QHash<quint8, quint8> m_nodeBefore; // of the devices that are the same, by the node now
    Comparison m_result;
};

QString serialText(const SnapshotNode &node)
{
    return QString::number(DeviceIdentity::of(node).serial.value_or(0));
}

Comparison Comparing::compare()
{
    const QVector<DevicePair> pairs = pairDevices(*m_before.snapshot, *m_after.snapshot);
    for (const DevicePair &pair : pairs)
        compareDevice(pair);
    if (m_before.checkup != nullptr && m_after.checkup != nullptr)
        compareFindings(pairs);
    std::stable_sort(m_result.changes.begin(), m_result.changes.end(), [](const Change &a, const Change &b) {
        return a.kind < b.kind || (a.kind == b.kind && a.nodeId < b.nodeId);
    });
    return m_result;
}

void Comparing::compareDevice(const DevicePair &pair)
{
    if (pair.relation != DevicePair::Relation::Same)
        addDevice(pair);
    if (pair.relation == DevicePair::Relation::Replaced)
        addIdentity(pair);
    if (pair.after != nullptr)
        m_names.insert(pair.after->id, deviceName(*pair.after, pair.before));
    // What another device has counted and measured says nothing about this one.
    const bool isSameDevice
        = pair.relation == DevicePair::Relation::Same || pair.relation == DevicePair::Relation::Moved;
    if (isSameDevice && !compareEnds(pair))
        compareObjects(pair);
}

void Comparing::addDevice(const DevicePair &pair)
{
    const QString was = pair.before != nullptr ? deviceName(*pair.before, nullptr) : QString();
    const QString is = pair.after != nullptr ? deviceName(*pair.after, pair.before) : QString();
    const quint8 nodeId = pair.after != nullptr ? pair.after->id : pair.before->id;
    switch (pair.relation) {
    case DevicePair::Relation::Added: {
        Change &change = add(Change::Kind::Added, nodeId, is);
        change.after = is;
        change.text = tr("%1 is new.").arg(is);
        return;
    }
    case DevicePair::Relation::Removed: {
        Change &change = add(Change::Kind::Removed, nodeId, was);
        change.before = was;
        change.text = tr("%1 is gone.").arg(was);
        return;
    }
    case DevicePair::Relation::Moved: {
        Change &change = add(Change::Kind::Moved, nodeId, is);
        change.before = QString::number(pair.before->id);
        change.after = QString::number(pair.after->id);
        change.text = tr("%1 was on node %2 before.").arg(is, change.before);
        return;
    }
    default: {
        Change &change = add(Change::Kind::Replaced, nodeId, is);
        change.before = serialText(*pair.before);
        change.after = serialText(*pair.after);
        change.text
            = tr("%1 was replaced: serial number %2 before, %3 now.").arg(is, change.before, change.after);
    }
    }
}

/*! Of a replaced device: whether the new one has other software. */
void Comparing::addIdentity(const DevicePair &pair)
{
    const CanOpen::ObjectKey revision{Object::identity, 3};
    const QString name = deviceName(*pair.after, pair.before);
    std::optional<Change> change
        = ObjectChange::between(pair.before->find(revision), pair.after->find(revision), m_kinds, name);
    if (!change)
        return;
    change->device = name;
    change->nodeId = pair.after->id;
    m_result.changes.append(*change);
}

/*! Whether a device that fell silent, or was silent, has said all that there is to say about its objects. */
bool Comparing::compareEnds(const DevicePair &pair)
{
    const bool wasWhole = pair.before->end == SnapshotEnd::Complete;
    const bool isWhole = pair.after->end == SnapshotEnd::Complete;
    if (wasWhole == isWhole)
        return false;
    const QString name = deviceName(*pair.after, pair.before);
    Change &change = add(Change::Kind::Gap, pair.after->id, name);
    change.isUnreadNow = !isWhole;
    change.reason = SnapshotWords::ending(isWhole ? pair.before->end : pair.after->end);
    change.before = SnapshotWords::ending(pair.before->end);
    change.after = SnapshotWords::ending(pair.after->end);
    change.text = isWhole ? tr("%1 could be read this time. Before: %2").arg(name, change.before)
                          : tr("%1 could not be read to its end this time. %2").arg(name, change.after);
    // What was read of it both times is compared all the same.
    compareObjects(pair, Gaps::Explained);
    return true;
}

/*! Both have their entries in the order of the keys, so one walk finds those that both have. */
void Comparing::compareObjects(const DevicePair &pair, Gaps gaps)
{
    const QString name = deviceName(*pair.after, pair.before);
    auto before = pair.before->entries.cbegin();
    for (const SnapshotEntry &entry : pair.after->entries) {
        while (before != pair.before->entries.cend() && before->key < entry.key)
            ++before;
        if (before == pair.before->entries.cend())
            return;
        if (before->key != entry.key)
            continue;
        if (gaps == Gaps::Explained && (before->isGap() || entry.isGap()))
            continue;
        std::optional<Change> change = ObjectChange::between(&*before, &entry, m_kinds, name);
        if (!change)
            continue;
        change->device = name;
        change->nodeId = pair.after->id;
        m_result.changes.append(*change);
    }
}

/*! Whether the other snapshot has all that the finding was found in, so that it could have been found there too. One
 *  without objects is about the behaviour on the bus, which an exchange file does not tell.
 */
bool couldBeFound(const Finding &finding, quint8 nodeId, const Snapshot &snapshot)
{
    const SnapshotNode *node = snapshot.find(nodeId);
    if (node == nullptr || finding.objects.isEmpty())
        return snapshot.scope != SnapshotScope::Imported;
    return std::all_of(finding.objects.begin(), finding.objects.end(),
                       [node](CanOpen::ObjectKey key) { return node->find(key) != nullptr; });
}

QString findingKey(const Finding &finding, quint8 nodeId)
{
    return QStringLiteral("%1 %2 %3").arg(finding.rule).arg(nodeId).arg(finding.instance);
}

QVector<Finding> allFindings(const CheckupResult &checkup)
{
    QVector<Finding> findings = checkup.vehicleFindings;
    for (const CheckedComponent &component : checkup.components)
        findings += component.findings;
    return findings;
}

/*! Findings of a device that has moved are looked for where it is now. Those of a device that is gone went with it. */
void Comparing::compareFindings(const QVector<DevicePair> &pairs)
{
    QHash<quint8, quint8> nodeNow; // by the node before; 0: the device is another one, or gone
    for (const DevicePair &pair : pairs) {
        const bool isSameDevice = pair.after != nullptr && pair.relation != DevicePair::Relation::Replaced;
        if (pair.before != nullptr)
            nodeNow.insert(pair.before->id, isSameDevice ? pair.after->id : quint8(0));
        if (pair.before != nullptr && isSameDevice)
            m_nodeBefore.insert(pair.after->id, pair.before->id);
    }
    QVector<Finding> before = allFindings(*m_before.checkup);
    QHash<QString, int> positions;
    for (int i = 0; i < before.size(); ++i)
        positions.insert(findingKey(before.at(i), nodeNow.value(before.at(i).nodeId)), i);
    QVector<bool> isThere(before.size(), false);
    const QVector<Finding> after = allFindings(*m_after.checkup);
    for (const Finding &finding : after) {
        const int position = positions.value(findingKey(finding, finding.nodeId), -1);
        const Finding *was = position >= 0 && !isThere.at(position) ? &before.at(position) : nullptr;
        if (was != nullptr)
            isThere[position] = true;
        const bool isComparable
            = was != nullptr || !m_nodeBefore.contains(finding.nodeId)
              || couldBeFound(finding, m_nodeBefore.value(finding.nodeId), *m_before.snapshot);
        if (isComparable && (was == nullptr || was->severity != finding.severity))
            addFinding(was, &finding, finding.nodeId);
    }
    for (int i = 0; i < before.size(); ++i) {
        const bool isOfVehicle = before.at(i).nodeId == 0;
        const quint8 nodeId = nodeNow.value(before.at(i).nodeId);
        if (!isThere.at(i) && (isOfVehicle || nodeId != 0)
            && couldBeFound(before.at(i), nodeId, *m_after.snapshot))
            addFinding(&before.at(i), nullptr, nodeId);
    }
}

/*! Whether what is found now would have been found before if it had been there already. */
bool Comparing::wasJudged(const Finding &finding) const
{
    if (finding.nodeId == 0)
        return !m_before.checkup->unjudgedRules.contains(finding.rule);
    const SnapshotNode *node = m_before.snapshot->find(m_nodeBefore.value(finding.nodeId));
    return node == nullptr
           || std::none_of(finding.objects.begin(), finding.objects.end(), [node](CanOpen::ObjectKey key) {
                  const SnapshotEntry *entry = node->find(key);
                  return entry != nullptr && entry->isGap();
              });
}

/*! Whether what was found before would have been found on \a nodeId now, if it were still there. */
bool Comparing::isJudged(const Finding &finding, quint8 nodeId) const
{
    if (finding.nodeId == 0)
        return !m_after.checkup->unjudgedRules.contains(finding.rule);
    const CheckedComponent *component = m_after.checkup->component(nodeId);
    return component == nullptr || component->notChecked.isEmpty();
}

void Comparing::addFinding(const Finding *before, const Finding *after, quint8 nodeId)
{
    const QString device = m_names.value(nodeId, tr("The vehicle"));

    Change &change = add(Change::Kind::Finding, nodeId, m_names.value(nodeId));
    if (after != nullptr && !after->objects.isEmpty())
        change.key = after->objects.first();
    else if (before != nullptr && !before->objects.isEmpty())
        change.key = before->objects.first();
    change.before = before != nullptr ? before->text : QString();
    change.after = after != nullptr ? after->text : QString();
    if (before == nullptr)
        change.text
            = wasJudged(*after)
                  ? tr("%1: new: %2").arg(device, change.after)
                  : tr("%1: found, but not everything was checked before: %2").arg(device, change.after);
    else if (after != nullptr)
        change.text = after->severity > before->severity ? tr("%1: worse: %2").arg(device, change.after)
                                                         : tr("%1: better: %2").arg(device, change.after);
    else
        change.text
            = isJudged(*before, nodeId)
                  ? tr("%1: not any more: %2").arg(device, change.before)
                  : tr("%1: not found, but not everything was checked: %2").arg(device, change.before);
}

Change &Comparing::add(Change::Kind kind, quint8 nodeId, const QString &device)
{
    Change change;
    change.kind = kind;
    change.nodeId = nodeId;
    change.device = device;
    m_result.changes.append(change);
    return m_result.changes.last();
}

/*! The name that it has now, or that it had if it does not tell any more. */
QString Comparing::deviceName(const SnapshotNode &node, const SnapshotNode *earlier)
{
    return tr("%1 (node %2)", "a device").arg(DeviceName::of(node, earlier).text).arg(node.id);
}

} // namespace

Comparison SnapshotComparison::compare(const Side &before, const Side &after, const ObjectKinds &kinds)
{
    const ObjectWords::LanguageNumbers numbers(after.checkup != nullptr ? after.checkup->language
                                                                        : QString());
    return Comparing(before, after, kinds).compare();
}
