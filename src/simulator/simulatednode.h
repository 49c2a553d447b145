// SPDX-License-Identifier: MIT
#pragma once

#include "agenda.h"
#include "vehicledescription.h"

#include <canopen/nmt.h>
#include <canopen/sdoserver.h>

#include <QCanBusFrame>
#include <QVector>

#include <functional>
#include <optional>
#include <random>

namespace Simulator {

/*! One CANopen device: boot-up, heartbeat, NMT state machine, SDO server (CiA 301), and the faults ordered.
 */
class SimulatedNode
{
public:
    using Sender = std::function<void(const QCanBusFrame &)>;
    using Clock = std::function<qint64()>; // microseconds

    /*! \a agenda must outlive the node; \a bitRate is the bus' own, for the share of it that a fault fills.
     */
    SimulatedNode(const NodeDescription &description, int bitRate, Agenda *agenda, Clock clock,
                  Sender sender);
    ~SimulatedNode();

    SimulatedNode(const SimulatedNode &) = delete;
    SimulatedNode &operator=(const SimulatedNode &) = delete;

    quint8 id() const { return m_description.id; }
    const QString &name() const { return m_description.name; }
    CanOpen::NmtState state() const { return m_state; }
    CanOpen::ObjectDictionary &dictionary() { return m_dictionary; }

    /*! Switches the device on: boot-up message, then the state it enters by itself. */
    void start();
    /*! Switches it off; nothing more is sent. */
    void stop();

    void handleNmt(CanOpen::NmtCommand command);
    /*! Takes a frame with the node's own SDO request COB-ID. */
    void handleSdo(const QCanBusFrame &frame);

    void addFault(const Fault &fault);
    void removeFaults(FaultKind kind);
    void clearFaults();
    const QVector<Fault> &faults() const { return m_faults; }

private:
    using Frames = QVector<QCanBusFrame>;

    void boot();
    void restoreDictionary(quint16 firstIndex, quint16 lastIndex);
    void enterFirstState();
    void transmit(const QCanBusFrame &frame);
    void transmit(const Frames &frames);

    const Fault *findFault(FaultKind kind) const;
    const Fault *findSdoFault(FaultKind kind) const;

    void scheduleHeartbeat();
    void sendHeartbeat();
    QCanBusFrame heartbeatFrame() const;

    void refreshValue(CanOpen::ObjectKey key);
    void followHeartbeatTime();
    Frames answers(const QCanBusFrame &request, bool initiates);
    Frames serverAnswers(const QCanBusFrame &request, bool initiates);
    void distort(Frames &frames) const;
    void distortSize(const Fault &fault, QByteArray &payload) const;
    void sendAnswers(Frames frames);
    Frames foreignTransfer();
    CanOpen::ObjectKey foreignObject(const Fault &fault);
    QCanBusFrame abortFrame(quint32 code) const;

    void startJob(const Fault &fault);
    void sendBabble();
    void sendTraffic();

    NodeDescription m_description;
    int m_bitRate;
    Agenda *m_agenda;
    Clock m_clock;
    Sender m_sender;

    CanOpen::ObjectDictionary m_dictionary;
    CanOpen::SdoServer m_server;
    CanOpen::SdoServer m_foreignServer; // the same dictionary, for another client's transfers
    CanOpen::NmtState m_state = CanOpen::NmtState::BootUp;
    bool m_isRunning = false;
    qint64 m_startTime = 0;      // of the behaviours
    quint32 m_session = 0;       // counts starts, so that what was planned before a reset stays undone
    quint64 m_heartbeatJob = 0;  // 0: no heartbeat
    quint16 m_heartbeatTime = 0; // ms

    QVector<Fault> m_faults;
    QVector<quint64> m_jobs; // of the faults that send by themselves
    qint64 m_requests = 0;   // SDO requests since the faults were last changed
    qint64 m_segments = 0;   // segments of the transfer
    qint64 m_framesSent = 0;
    CanOpen::ObjectKey m_object; // of the transfer
    bool m_isHalfOpen = false;
    Frames m_lateAnswers;
    int m_foreignTransfers = 0;
    std::minstd_rand m_random;
};

} // namespace Simulator
