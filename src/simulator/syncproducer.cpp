// SPDX-License-Identifier: MIT
#include "syncproducer.h"

#include <QCanBusFrame>

#include <algorithm>
#include <utility>

namespace Simulator {

namespace {

// A shorter period would fill every bus.
constexpr qint64 shortestPeriod = 1000; // microseconds

} // namespace

SyncProducer::SyncProducer(const NodeContext *node, std::function<void(const QCanBusFrame &)> ownSync)
    : m_node(node)
    , m_ownSync(std::move(ownSync))
{
}

void SyncProducer::start()
{
    const CanOpen::SyncParameter parameter = CanOpen::readSyncParameter(m_node->lookup());
    if (m_job != 0 && parameter == m_parameter)
        return;
    stop();
    m_parameter = parameter;
    if (!m_parameter.isProducer || m_parameter.period.count() == 0)
        return;
    const qint64 period = std::max<qint64>(m_parameter.period.count(), shortestPeriod);
    m_job = m_node->agenda->addPeriodic(m_node->clock() + period, period, [this] { send(); });
}

void SyncProducer::stop()
{
    m_node->agenda->cancelPeriodic(m_job);
    m_job = 0;
    m_counter = 0;
}

void SyncProducer::send()
{
    if (m_parameter.highestCounter > 0)
        m_counter = static_cast<quint8>(m_counter % m_parameter.highestCounter + 1);
    const QCanBusFrame frame = CanOpen::makeSyncFrame(m_parameter, m_counter);
    m_node->send(frame);
    m_ownSync(frame);
}

} // namespace Simulator
