// SPDX-License-Identifier: MIT
#pragma once

#include "agenda.h"
#include "faultlist.h"

#include <QCanBusFrame>
#include <QVector>

#include <functional>
#include <optional>
#include <random>

namespace Simulator {

/*! What a faulty node does by itself, again and again: babble, traffic, another client's requests, restarts.
 */
class BabbleSource
{
public:
    /*! What it has the node do. */
    struct Node
    {
        std::function<void(const QCanBusFrame &)> send;
        std::function<void()> sendHeartbeat;
        std::function<QCanBusFrame()> heartbeat; // as it would be sent now
        std::function<void(const Faults::AbandoningClient &)> serveAbandoningClient;
        std::function<void()> restart;
    };

    /*! \a agenda must outlive the source; \a bitRate is the bus' own, for the share of it that a fault fills.
     */
    BabbleSource(quint8 nodeId, int bitRate, Agenda *agenda, Node node);

    /*! Begins what \a faults order; \a now is the agenda's time in microseconds. */
    void start(const QVector<Fault> &faults, qint64 now);
    void stop();

private:
    struct Job
    {
        qint64 period; // microseconds
        Agenda::Action action;
    };

    std::optional<Job> jobOf(const Faults::BabbleHeartbeat &fault);
    std::optional<Job> jobOf(const Faults::Restarts &fault);
    std::optional<Job> jobOf(const Faults::EmergencyOfNobody &fault);
    std::optional<Job> jobOf(const Faults::BabbleEmergency &fault);
    std::optional<Job> jobOf(const Faults::BabblePdo &fault);
    std::optional<Job> jobOf(const Faults::BabbleSdo &fault);
    std::optional<Job> jobOf(const Faults::AbandoningClient &fault);
    std::optional<Job> jobOf(const Faults::Traffic &fault);
    std::optional<Job> jobOf(const Faults::Flood &fault);
    /*! The other kinds do nothing by themselves. */
    template<typename Other>
    std::optional<Job> jobOf(const Other &)
    {
        return std::nullopt;
    }

    QCanBusFrame babble(bool isSegment);
    QCanBusFrame traffic();
    QCanBusFrame flood();
    quint32 chance(quint32 choices);
    QByteArray chanceBytes(int size);

    quint8 m_nodeId;
    int m_bitRate;
    Agenda *m_agenda;
    Node m_node;
    QVector<quint64> m_jobs;
    std::minstd_rand m_random;
};

} // namespace Simulator
