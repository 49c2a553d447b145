// SPDX-License-Identifier: MIT
#include "livewatch.h"

#include "livequestions.h"

#include <checkup/objectwords.h>
#include <host/core/livebus.h>
#include <host/core/settingsstore.h>

#include <algorithm>

LiveWatch::LiveWatch(LiveBus *live, LiveQuestions *questions, QObject *parent)
    : QObject(parent)
    , m_live(live)
    , m_questions(questions)
{
    m_list = WatchList::load(SettingsStore::instance().values());
    findNames();
    ask();
}

bool LiveWatch::add(const WatchedItem &item)
{
    if (!m_list.add(item))
        return false;
    handleChange();
    return true;
}

void LiveWatch::remove(int row)
{
    if (row < 0 || row >= items().size())
        return;
    const WatchedItem item = items().at(row);
    m_live->values().setWatched(m_live->values().find(item.nodeId, item.object), false);
    m_list.remove(row);
    handleChange();
}

void LiveWatch::move(int row, int place)
{
    m_list.move(row, place);
    handleChange();
}

void LiveWatch::setPlotted(int row, bool isPlotted)
{
    m_list.setPlotted(row, isPlotted);
    handleChange();
}

void LiveWatch::handleChange()
{
    SettingsStore::instance().update([this](QVariantMap *settings) { m_list.save(settings); });
    findNames();
    ask();
    bind();
    emit changed();
}

QVector<AskedObject> LiveWatch::asked() const
{
    QVector<AskedObject> asked;
    for (const WatchedItem &item : items()) {
        if (item.period > 0)
            asked.append({item.nodeId, item.object, item.period, std::nullopt});
    }
    return asked;
}

/*! Others go on undisturbed when the list changes. */
void LiveWatch::ask()
{
    const QVector<AskedObject> now = asked();
    const bool isSame
        = std::equal(now.cbegin(), now.cend(), m_asked.cbegin(), m_asked.cend(),
                     [](const AskedObject &a, const AskedObject &b) {
                         return a.nodeId == b.nodeId && a.object == b.object && a.period == b.period;
                     });
    if (isSame)
        return;
    m_asked = now;
    m_questions->setAsked(now);
}

void LiveWatch::bind()
{
    LiveValues &values = m_live->values();
    for (const WatchedItem &item : items())
        values.setWatched(values.find(item.nodeId, item.object), true);
}

const LiveValue *LiveWatch::value(int row) const
{
    const WatchedItem &item = items().at(row);
    const LiveValues &values = m_live->values();
    const int position = values.find(item.nodeId, item.object);
    if (position < 0)
        return nullptr;
    const LiveValue &value = values.values()[static_cast<std::size_t>(position)];
    return value.record.count() > 0 ? &value : nullptr;
}

void LiveWatch::findNames()
{
    QStringList plain;
    for (const WatchedItem &item : items()) {
        const QString name = ObjectWords::name(item.object);
        const QString number = item.object.toShortString();
        plain.append(number.startsWith(name) ? number : name);
    }
    m_names.clear();
    for (int row = 0; row < plain.size(); ++row) {
        const WatchedItem &item = items().at(row);
        m_names.append(plain.count(plain.at(row)) == 1 ? plain.at(row)
                                                       : QStringLiteral("%1 (%2:%3)")
                                                             .arg(plain.at(row), QString::number(item.nodeId),
                                                                  item.object.toShortString()));
    }
}

QString LiveWatch::silence(int row) const
{
    const WatchedItem &item = items().at(row);
    return m_questions->silence(item.nodeId, item.object);
}
