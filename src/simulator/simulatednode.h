// SPDX-License-Identifier: MIT
#pragma once

#include "agenda.h"
#include "babblesource.h"
#include "emergencyorders.h"
#include "emergencysender.h"
#include "faultlist.h"
#include "faultysdoserver.h"
#include "nodecontext.h"
#include "pdoreceiver.h"
#include "pdosender.h"
#include "syncproducer.h"
#include "vehicledescription.h"

#include <canopen/nmt.h>
#include <canopen/sync.h>

#include <QCanBusFrame>
#include <QVector>

#include <functional>

namespace Simulator {

/*! One CANopen device: boot-up, heartbeat, NMT state machine, and the object dictionary with its moving values
 *  (CiA 301). PDOs, SYNC and emergencies have classes of their own; it tells them when they may send. What it does wrong is
 *  the business of FaultySdoServer and BabbleSource, but for the heartbeat.
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
    /*! Takes any other frame: SYNC and PDOs are for those that have objects for them. */
    void handleProcessData(const QCanBusFrame &frame);

    /*! How many seconds of the moving values pass in a second; 1 at first. To be called before start(). */
    void setSpeed(double speed);

    void addFault(const Fault &fault);
    /*! \a kind is the place in Fault, as faultKind() tells. */
    void removeFaults(std::size_t kind);
    void clearFaults();

private:
    NodeContext makeContext();
    BabbleSource::Node babbleActions();
    EmergencyOrders::Node emergencyActions();
    void boot();
    void enterState(CanOpen::NmtState state);
    void followDictionary();
    void raiseEmergency(const Faults::Emergency &fault);
    void restoreDictionary(quint16 firstIndex, quint16 lastIndex);
    void enterFirstState();
    bool isSilent() const;
    void transmit(const QCanBusFrame &frame);
    void transmitLater(const QCanBusFrame &frame, std::chrono::milliseconds delay);

    void scheduleHeartbeat();
    void followHeartbeatTime();
    void sendHeartbeat();
    QCanBusFrame heartbeatFrame() const;

    qint64 valueTime() const;
    void refreshValue(CanOpen::ObjectKey key);
    void serveAbandoningClient(const Faults::AbandoningClient &fault);

    NodeDescription m_description;
    Agenda *m_agenda;
    Clock m_clock;
    Sender m_sender;

    CanOpen::ObjectDictionary m_dictionary;
    FaultList m_faults;
    FaultySdoServer m_server;
    BabbleSource m_babble;
    NodeContext m_context;
    CanOpen::SyncParameter m_syncParameter;
    PdoSender m_pdoSender;
    EmergencySender m_emergencies;
    PdoReceiver m_pdoReceiver;
    SyncProducer m_syncProducer;
    EmergencyOrders m_emergencyOrders;
    CanOpen::NmtState m_state = CanOpen::NmtState::BootUp;
    bool m_isRunning = false;
    qint64 m_startTime = 0;      // of the behaviours
    double m_speed = 1;          // of the behaviours
    quint32 m_session = 0;       // counts starts, so that what was planned before a reset stays undone
    quint64 m_heartbeatJob = 0;  // 0: no heartbeat
    quint16 m_heartbeatTime = 0; // ms
    qint64 m_framesSent = 0;
};

} // namespace Simulator
