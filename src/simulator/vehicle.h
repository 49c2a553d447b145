// SPDX-License-Identifier: MIT
#pragma once

#include "agenda.h"
#include "simulatednode.h"
#include "vehicledescription.h"

#include <QCanBusFrame>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace Simulator {

/*! A simulated vehicle: the nodes of one bus.
 *
 *  Knows no bus: frames come in through handleFrame() and go out through the sender, so it runs on a
 *  SimulatedBus as well as on a real interface. Answers go out from within handleFrame(), everything else
 *  from the event loop.
 */
class Vehicle : public QObject
{
    Q_OBJECT

public:
    /*! Gets each frame with the ID of the node that sends it. */
    using Sender = std::function<void(const QCanBusFrame &frame, quint8 nodeId)>;
    using Clock = std::function<qint64()>; // microseconds

    explicit Vehicle(const VehicleDescription &description, QObject *parent = nullptr);
    ~Vehicle() override;

    void setSender(Sender sender) { m_sender = std::move(sender); }

    /*! Puts another clock in the place of the real one; then nothing happens by itself, but in processDue().
     *  To be called before start().
     */
    void setClock(Clock clock);

    const QString &name() const { return m_name; }
    const QString &description() const { return m_description; }
    int bitRate() const { return m_bitRate; } // bit/s that the vehicle is made for

    /*! Switches all nodes on: boot-up messages, heartbeats, answers. */
    void start();
    void stop();
    bool isRunning() const { return m_isRunning; }

    /*! How many seconds of the moving values pass in a second, more than 0; heartbeats, PDOs and answers keep their times.
     *  To be called before start().
     */
    void setSpeed(double speed);

    /*! Takes a frame from the bus: NMT commands, SDO requests, SYNC and PDOs; the rest is ignored. */
    void handleFrame(const QCanBusFrame &frame);

    /*! Does what is due by now. */
    void processDue();

    /*! The node with this ID, or null. */
    SimulatedNode *node(int nodeId) const;
    QVector<quint8> nodeIds() const;

    /*! Switches a fault on. False when there is no such node or the fault is one of the bus. \a nodeId 0: a
     *  fault of the whole bus; traffic is then sent by the first node.
     */
    bool addFault(quint8 nodeId, const Fault &fault);
    /*! Switches all faults of a kind off, of one node or (0) of all; the kind is its place in Fault. */
    void removeFaults(quint8 nodeId, std::size_t kind);
    template<typename Kind>
    void removeFaults(quint8 nodeId)
    {
        removeFaults(nodeId, faultKind<Kind>());
    }
    void clearFaults();

private:
    void armTimer();
    void sendFrom(quint8 nodeId, const QCanBusFrame &frame);
    void handleProcessData(const QCanBusFrame &frame, quint8 sender);

    QString m_name;
    QString m_description;
    int m_bitRate;
    Sender m_sender;
    Clock m_clock;
    bool m_hasRealClock = true;
    bool m_isRunning = false;
    QElapsedTimer m_elapsed;
    QTimer m_timer;
    qint64 m_armedFor = -1; // microseconds; -1: not armed
    Agenda m_agenda;
    std::vector<std::unique_ptr<SimulatedNode>> m_nodes;
    std::array<SimulatedNode *, 128> m_nodesById{};
    int m_reactions = 0; // of nodes to frames of other nodes that are under way
};

} // namespace Simulator
