// SPDX-License-Identifier: MIT
#include "livesession.h"

#include "batteryobjects.h"

#include <host/core/hostservices.h>

#include <algorithm>

LiveSession::LiveSession(HostServices *services, QObject *parent)
    : QObject(parent)
    , m_live(&services->bus())
    , m_questions(services, &m_live)
    , m_watch(&m_live, &m_questions)
{
    connect(&m_live, &LiveBus::ticked, this, [this] {
        m_watch.bind();
        emit ticked();
    });
    connect(&services->bus(), &BusConnection::stateChanged, this, &LiveSession::handleState);
}

void LiveSession::handleState(BusConnection::State state)
{
    if (state == BusConnection::State::Connected && !m_isListening) {
        m_isListening = true;
        m_isEmpty = false;
        m_live.start();
        emit started();
    } else if (state == BusConnection::State::Disconnected && m_isListening) {
        m_end = m_live.now();
        m_lastNumbers = m_live.healthNumbers();
        m_isListening = false;
        m_live.stop();
        emit stopped();
    }
}

QVector<quint8> LiveSession::batteries() const
{
    QVector<quint8> nodes = m_questions.batteries().nodes();
    for (const LiveValue &value : m_live.values().values()) {
        if (BatteryObjects::areOfBattery(value.object.index))
            nodes.append(value.nodeId);
    }
    for (const WatchedItem &item : m_watch.items()) {
        if (BatteryObjects::areOfBattery(item.object.index))
            nodes.append(item.nodeId);
    }
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    return nodes;
}

qint64 LiveSession::now()
{
    return m_isListening ? m_live.now() : m_end;
}

HealthNumbers LiveSession::numbers()
{
    return m_isListening ? m_live.healthNumbers() : m_lastNumbers;
}

QVector<HealthLight> LiveSession::judge(const HealthNumbers &numbers)
{
    if (!m_rules)
        m_rules = RuleSet::load(HealthJudgement::ruleFolders());
    return HealthJudgement::judge(numbers, *m_rules, m_language);
}
