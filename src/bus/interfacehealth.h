// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

class QCanBusDevice;
class QCanBusFrame;

/*! Follows the fault confinement state of the CAN controller in the adapter (ISO 11898-1), as far as the back
 *  end tells it: by QCanBusDevice::busStatus(), which is asked twice a second, and by error frames.
 *
 *  An error frame of a controller problem carries, as on SocketCAN, in byte 1:
 *
 *  | bit | meaning                         |
 *  |-----|---------------------------------|
 *  | 0   | a received frame was dropped    |
 *  | 2,3 | warning (96 errors)             |
 *  | 4,5 | error-passive (128 errors)      |
 *  | 6   | error-active again              |
 */
class InterfaceHealth : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Unknown, //!< the back end does not tell
        Good,
        Warning,
        Passive, //!< the controller may not disturb others any more; nothing of ours is acknowledged
        BusOff   //!< the controller takes no part in the bus
    };
    Q_ENUM(State)

    using StateGetter = std::function<State()>;

    /*! \a getter gives the state that the back end knows. */
    explicit InterfaceHealth(StateGetter getter, QObject *parent = nullptr);

    /*! What the back end of \a device tells; Unknown for null. */
    static State stateOf(const QCanBusDevice *device);

    /*! Begins anew, for a bus that was opened just now. */
    void start();
    void stop();

    State state() const { return m_state; }
    /*! Reports that received frames were dropped, since start(). */
    quint64 overruns() const { return m_overruns; }

    /*! Takes every frame from the bus. */
    void handleFrame(const QCanBusFrame &frame);

    /*! Asks the back end; called by a timer. */
    void poll();

signals:
    void stateChanged(InterfaceHealth::State state);
    void overrunReported();

private:
    void handleErrorFrame(const QCanBusFrame &frame);
    void setState(State state);

    StateGetter m_getter;
    QTimer m_timer;
    State m_state = State::Unknown;
    quint64 m_overruns = 0;
};
