// SPDX-License-Identifier: MIT
#include "emergencyorders.h"

namespace Simulator {

namespace {

constexpr qint64 lookInterval = 50000; // microseconds; how soon a value beyond its limit is noticed

} // namespace

EmergencyOrders::EmergencyOrders(const NodeContext *node, Node actions)
    : m_node(node)
    , m_actions(std::move(actions))
{
}

qint64 EmergencyOrders::duration(std::chrono::milliseconds time) const
{
    return static_cast<qint64>(static_cast<double>(std::chrono::microseconds(time).count()) / m_speed);
}

void EmergencyOrders::start(const QVector<Fault> &faults)
{
    const qint64 now = m_node->clock();
    for (const Fault &fault : faults) {
        const auto *emergency = std::get_if<Faults::Emergency>(&fault);
        if (emergency == nullptr)
            continue;
        m_orders.push_back(std::make_unique<Order>());
        Order *order = m_orders.back().get();
        order->fault = *emergency;
        if (emergency->length.count() > 0)
            order->times.append(m_node->agenda->add(now + duration(emergency->after + emergency->length),
                                                    [this, order] { end(*order); }));
        if (emergency->after.count() > 0)
            order->times.append(
                m_node->agenda->add(now + duration(emergency->after), [this, order] { begin(*order); }));
        else
            begin(*order);
    }
}

void EmergencyOrders::stop()
{
    for (const auto &order : m_orders) {
        for (const Agenda::Entry &time : qAsConst(order->times))
            m_node->agenda->cancel(time);
        m_node->agenda->cancelPeriodic(order->looks);
        clear(*order);
    }
    m_orders.clear();
}

void EmergencyOrders::restart()
{
    for (const auto &order : m_orders) {
        order->isRaised = false;
        if (order->isOpen)
            look(*order);
    }
}

void EmergencyOrders::begin(Order &order)
{
    order.isOpen = true;
    if (order.fault.hasCondition())
        order.looks = m_node->agenda->addPeriodic(m_node->clock() + lookInterval, lookInterval,
                                                  [this, &order] { look(order); });
    look(order);
}

void EmergencyOrders::end(Order &order)
{
    order.isOpen = false;
    m_node->agenda->cancelPeriodic(order.looks);
    order.looks = 0;
    clear(order);
}

void EmergencyOrders::look(Order &order)
{
    if (holds(order))
        announce(order);
    else if (!order.fault.stays)
        clear(order);
}

bool EmergencyOrders::holds(const Order &order) const
{
    const Faults::Emergency &fault = order.fault;
    if (!fault.hasCondition())
        return true;
    const CanOpen::ObjectEntry *entry = fault.object ? m_node->entry(*fault.object) : nullptr;
    if (entry == nullptr)
        return false;
    bool isNumber = false;
    const double value
        = CanOpen::decodeValue(entry->type, entry->data).value_or(QVariant()).toDouble(&isNumber);
    return isNumber && (value > static_cast<double>(fault.above) || value < static_cast<double>(fault.below));
}

void EmergencyOrders::announce(Order &order)
{
    if (order.isRaised)
        return;
    order.isRaised = true;
    m_actions.announce(order.fault);
}

void EmergencyOrders::clear(Order &order)
{
    if (!order.isRaised)
        return;
    order.isRaised = false;
    m_actions.clear(static_cast<quint16>(order.fault.code));
}

} // namespace Simulator
