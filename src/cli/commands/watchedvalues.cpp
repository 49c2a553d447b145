// SPDX-License-Identifier: MIT
#include "watchedvalues.h"

#include <live/values/pdosource.h>
#include <system/amounts.h>

#include <algorithm>

namespace {

constexpr qint64 longestSilence = 3'000'000; // us, of a PDO before its objects are asked for
constexpr int periodsUntilAsked = 3;

} // namespace

WatchedValues::WatchedValues(BusConnection *bus, LiveBus *live)
    : m_live(live)
    , m_learning(bus)
    , m_asking(bus)
{
    connect(&m_learning, &PdoLearning::learned, this, [this](quint8 nodeId, const PdoSource &source) {
        m_live->learn(source);
        handleLearned(nodeId);
    });
    connect(&m_learning, &PdoLearning::notLearned, this, &WatchedValues::handleNotLearned);
    connect(&m_asking, &ValueAsking::answered, this,
            [this](quint8 nodeId, CanOpen::ObjectKey object, double number) {
                m_live->values().note(nodeId, object, number, m_live->now());
                handleReason(nodeId, object, QString());
            });
    connect(&m_asking, &ValueAsking::notAnswered, this, &WatchedValues::handleReason);
    connect(live, &LiveBus::ticked, this, &WatchedValues::look);
}

void WatchedValues::setSharePercent(int percent)
{
    m_learning.setSharePercent(percent);
    m_asking.setSharePercent(percent);
}

void WatchedValues::start(const QVector<ObjectAddress> &objects, const DataSheets &sheets,
                          std::chrono::milliseconds period)
{
    m_period = period;
    QVector<quint8> unknown;
    for (const ObjectAddress &object : objects) {
        add(object, sheets);
        if (sheets.find(object.nodeId) == nullptr)
            unknown.append(object.nodeId);
    }
    const QList<quint8> known = sheets.sheets().keys();
    for (const quint8 nodeId : known)
        handleLearned(nodeId);
    m_learning.start(unknown);
}

void WatchedValues::add(const ObjectAddress &address, const DataSheets &sheets)
{
    const bool isKnown = std::any_of(m_values.begin(), m_values.end(), [&address](const WatchedValue &value) {
        return value.address.nodeId == address.nodeId && value.address.key == address.key;
    });
    if (isKnown)
        return;
    m_values.push_back({address, {}, false, false, 0});
    const CanOpen::ObjectDictionary *sheet = sheets.find(address.nodeId);
    const CanOpen::ObjectEntry *entry = sheet != nullptr ? sheet->find(address.key) : nullptr;
    m_types.push_back(entry != nullptr ? std::optional(entry->type) : std::nullopt);
}

const LiveValue *WatchedValues::find(const WatchedValue &value) const
{
    const int position = m_live->values().find(value.address.nodeId, value.address.key);
    const LiveValue *live
        = position >= 0 ? &m_live->values().values()[static_cast<std::size_t>(position)] : nullptr;
    return live != nullptr && live->record.count() > 0 ? live : nullptr;
}

bool WatchedValues::isLate(const WatchedValue &value) const
{
    const LiveValue *live = find(value);
    return live != nullptr && live->record.isLate(m_live->now());
}

QStringList WatchedValues::problems() const
{
    return m_notLearned + m_live->values().problems();
}

/*! From here on it is known which objects of the node come by themselves. */
void WatchedValues::handleLearned(quint8 nodeId)
{
    for (WatchedValue &value : m_values) {
        if (value.address.nodeId != nodeId)
            continue;
        value.isMapped = m_live->values().find(nodeId, value.address.key) >= 0;
        value.learned = std::max<qint64>(1, m_live->now());
    }
    look();
}

void WatchedValues::handleNotLearned(quint8 nodeId, const QString &reason)
{
    m_notLearned.append(
        tr("Node %1: what its PDOs carry could not be read. %2").arg(QString::number(nodeId), reason));
    for (WatchedValue &value : m_values) {
        if (value.address.nodeId == nodeId && value.learned == 0)
            value.learned = std::max<qint64>(1, m_live->now());
    }
    look();
}

void WatchedValues::handleReason(quint8 nodeId, CanOpen::ObjectKey object, const QString &reason)
{
    for (WatchedValue &value : m_values) {
        if (value.address.nodeId == nodeId && value.address.key == object)
            value.reason = reason;
    }
}

void WatchedValues::look()
{
    bool isNew = false;
    for (WatchedValue &value : m_values) {
        if (!needsQuestions(value))
            continue;
        value.isAsked = true;
        isNew = true;
    }
    if (isNew)
        ask();
}

bool WatchedValues::needsQuestions(const WatchedValue &value) const
{
    if (value.isAsked || value.learned == 0)
        return false;
    const qint64 patience = std::max<qint64>(longestSilence, periodsUntilAsked * m_period.count()
                                                                 * Microseconds::ofMillisecond);
    return !value.isMapped || (find(value) == nullptr && m_live->now() - value.learned > patience);
}

void WatchedValues::ask()
{
    QVector<AskedObject> objects;
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        const WatchedValue &value = m_values[i];
        if (value.isAsked)
            objects.append(
                {value.address.nodeId, value.address.key, static_cast<int>(m_period.count()), m_types[i]});
    }
    m_asking.setObjects(objects);
}
