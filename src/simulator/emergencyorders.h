// SPDX-License-Identifier: MIT
#pragma once

#include "emergencysender.h"

#include <memory>
#include <vector>

namespace Simulator {

/*! The emergencies that a node is ordered to have: at a time, or when a value is beyond a limit. */
class EmergencyOrders
{
public:
    /*! What an order does to the node. */
    struct Node
    {
        std::function<void(const Faults::Emergency &)> announce;
        std::function<void(quint16 errorCode)> clear;
    };

    EmergencyOrders(const NodeContext *node, Node actions);

    /*! \a speed: how many seconds of the values pass in one of the agenda. */
    void setSpeed(double speed) { m_speed = speed; }

    /*! Begins what \a faults order; their times are counted from now on. */
    void start(const QVector<Fault> &faults);
    /*! The orders are withdrawn: what is raised is cleared. */
    void stop();
    /*! The node has booted and knows of no error: what holds is raised again. */
    void restart();

private:
    struct Order
    {
        Faults::Emergency fault;
        bool isOpen = false; // its time is now
        bool isRaised = false;
        quint64 looks = 0;            // 0: it has no condition, or its time is not now
        QVector<Agenda::Entry> times; // of its begin and its end
    };

    void begin(Order &order);
    void end(Order &order);
    void look(Order &order);
    bool holds(const Order &order) const;
    void announce(Order &order);
    void clear(Order &order);
    qint64 duration(std::chrono::milliseconds time) const;

    const NodeContext *m_node;
    Node m_actions;
    double m_speed = 1;
    std::vector<std::unique_ptr<Order>> m_orders;
};

} // namespace Simulator
