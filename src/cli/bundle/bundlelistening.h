// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>
#include <host/core/livebus.h>
#include <live/events/liveevent.h>
#include <trace/recording/flightrecorder.h>
#include <trace/recording/recordedtime.h>

#include <QElapsedTimer>
#include <QObject>

#include <vector>

/*! What is on a bus while it is read, and after that: all its frames and its events. Sends nothing. */
class BundleListening : public QObject
{
    Q_OBJECT

public:
    /*! Before \a bus is connected; it must outlive this. */
    explicit BundleListening(BusConnection *bus);

    /*! \a name of the one channel. */
    void begin(const BusAddress &address);

    /*! Of frames beyond this number the oldest go, see Trace::missing. */
    static constexpr std::size_t mostFrames = 20'000'000;

    Trace trace() const { return m_recorder.all(); }
    /*! With times in us since 1970. */
    std::vector<LiveEvent> events() const;
    quint64 forgottenEvents() const { return m_live.events().list().forgotten(); }

private:
    void take(const QCanBusFrame &frame, TraceFrame::Flag flag);

    const BusConnection *m_bus;
    LiveBus m_live;
    FlightRecorder m_recorder;
    RecordedTime m_time{0};
    QElapsedTimer m_steady;
    bool m_hasBegun = false;
};
