// SPDX-License-Identifier: MIT
#pragma once

#include "playbackaddress.h"

#include <trace/core/trace.h>
#include <trace/playback/playbackstate.h>
#include <trace/playback/recordedvehicle.h>
#include <trace/playback/traceplayer.h>

#include <QCanBusDevice>
#include <QCanBusDeviceInfo>
#include <QElapsedTimer>
#include <QList>
#include <QTimer>

#include <memory>

/*! A CAN interface on which a trace is played back, see PlaybackAddress for its name.
 *
 *  The trace is read in another thread while the device connects, and begins with its first frame then. Frames arrive with their times
 *  (TracePlayer::stamp()). Whoever writes a request to read is answered by the vehicle in the trace (RecordedVehicle), also
 *  when the trace is over; the device stays connected and is silent then. Everything else that is written goes nowhere. From
 *  the first request to a node on, its SDO frames in the trace do not arrive any more: they would be taken for answers.
 *
 *  While it is connected it can be paused, stepped and played at another speed by configuration keys, and tells in the property
 *  "playback" how far it is (PlaybackState).
 *
 *  What could not be read of the file is logged. Long files take long to connect: the property "connectTime" is how long may
 *  be waited for it, in ms.
 */
class TraceCanDevice : public QCanBusDevice
{
    Q_OBJECT
    Q_PROPERTY(QVariantMap playback READ playback)
    Q_PROPERTY(qint64 busTime READ busTime)
    Q_PROPERTY(int connectTime READ connectTime CONSTANT)

public:
    /*! Configuration keys of this back end (PlaybackState::Key). */
    enum TraceKey {
        StepKey = PlaybackState::StepKey,
        PauseKey = PlaybackState::PauseKey,
        SpeedKey = PlaybackState::SpeedKey,
        RestartKey = PlaybackState::RestartKey,
        RepeatKey = PlaybackState::RepeatKey,
    };
    Q_ENUM(TraceKey)

    explicit TraceCanDevice(QString interfaceName, QObject *parent = nullptr);
    ~TraceCanDevice() override;

    void setConfigurationParameter(int key, const QVariant &value) override;
    bool writeFrame(const QCanBusFrame &frame) override;
    QString interpretErrorFrame(const QCanBusFrame &errorFrame) override;

    /*! PlaybackState::toMap(); of no frames while it is not connected. */
    QVariantMap playback() const;
    /*! The time on this bus, us; 0 while it is not connected. */
    qint64 busTime() const;

    static int connectTime();

    /*! The traces in the user's folder. */
    static QList<QCanBusDeviceInfo> interfaces();

protected:
    bool open() override;
    void close() override;

private:
    struct Loaded;

    static Loaded load(const PlaybackAddress &address);
    void begin(Loaded *loaded);
    void control(int key, const QVariant &value);
    void setSpeed(double speed);
    void play();
    QVector<QCanBusFrame> takeDue();
    void schedule();
    void deliverAnswers();
    bool isReaderBehind() const;
    bool isHidden(const TraceFrame &frame) const;
    qint64 now() const;

    QString m_interfaceName;
    int m_attempt = 0;                                      // to connect
    PlaybackAddress m_address;                              // its speed is that of now
    TracePlayer::Pace m_pace = TracePlayer::Pace::Recorded; // while it is not paused
    Trace m_trace;
    std::unique_ptr<RecordedVehicle> m_vehicle; // null while unconnected
    std::unique_ptr<TracePlayer> m_player;      // likewise
    QElapsedTimer m_clock;
    QTimer m_timer;       // until the next frame is due
    QTimer m_answerTimer; // until the event loop turns
    QVector<QCanBusFrame> m_answers;
};
