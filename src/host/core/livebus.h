// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>
#include <bus/interfacehealth.h>
#include <live/core/frameclock.h>
#include <live/events/eventrecorder.h>
#include <live/health/bushealth.h>
#include <live/values/livevalues.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <optional>

namespace CanOpen {
struct EdsFile;
}
struct PdoSource;

/*! Listens to a connection for health, events and values. Sends nothing.
 *
 *  From start() to stop(); a loss of the bus in between is an event. What it has collected stays until the next start().
 *
 *  A trace that is played has a time of its own, that of the recording, which stands still with it: nobody is late because
 *  the trace is paused or over.
 */
class LiveBus : public QObject
{
    Q_OBJECT

public:
    explicit LiveBus(BusConnection *bus, QObject *parent = nullptr);

    /*! Begins anew; the bus may be connected or not. */
    void start();
    void stop();

    /*! What a node, its EDS or DCF tells of its PDOs and of its heartbeat (1017h), the latter also of its emergencies; until
     *  the next start().
     */
    void learn(const PdoSource &source);
    void learn(quint8 nodeId, const CanOpen::EdsFile &sheet);

    HealthNumbers healthNumbers() { return m_health.numbers(now()); }
    const EventRecorder &events() const { return m_events; }
    LiveValues &values() { return m_values; }
    const LiveValues &values() const { return m_values; }

    /*! The time on the line of all that was heard (us); 0 at start(). */
    qint64 now() const;
    /*! The time of day that a time on that line was. */
    QDateTime timeOfDay(qint64 time) const;
    /*! The other way round. */
    qint64 timeOf(const QDateTime &timeOfDay) const;

signals:
    /*! Ten times a second, after nodes that are lost were found. */
    void ticked();

private:
    void handleReceived(const QCanBusFrame &frame);
    void handleSent(const QCanBusFrame &frame);
    void handle(const LiveFrame &frame);
    void handleState(BusConnection::State state);
    void tick();
    qint64 steadyNow() const;
    void followTrace();
    void followInterface();
    qint64 heardAt(const QCanBusFrame &frame);

    BusConnection *m_bus;
    InterfaceHealth m_interface;
    FrameClock m_clock;
    QElapsedTimer m_steady;
    std::optional<qint64> m_playedFrom; // us; the time of a trace that is played, at start()
    qint64 m_played = 0;                // us since then; of the frame that came last
    QDateTime m_start;
    QTimer m_timer;
    BusHealth m_health;
    EventRecorder m_events;
    LiveValues m_values;
    bool m_isListening = false;
};
