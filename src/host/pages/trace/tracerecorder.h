// SPDX-License-Identifier: MIT
#pragma once

#include "tracesettings.h"

#include <bus/busconnection.h>
#include <trace/recording/backgroundrecording.h>
#include <trace/recording/faultsaving.h>
#include <trace/recording/flightrecorder.h>
#include <trace/recording/recordedtime.h>

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <vector>

class EventList;

/*! Keeps the last ten minutes of the bus that is connected, and records it into files. Sends nothing.
 *
 *  From the connection to its end; a loss in between interrupts nothing. The last minutes are saved by themselves some
 *  seconds after a fault. What was kept stays until another bus is connected.
 */
class TraceRecorder : public QObject
{
    Q_OBJECT

public:
    /*! \a bus must outlive it. */
    explicit TraceRecorder(BusConnection *bus, QObject *parent = nullptr);

    void setSettings(const TraceSettings &settings) { m_settings = settings; }
    const TraceSettings &settings() const { return m_settings; }
    /*! The events of the same bus, whose faults save; null: none. Must outlive the recorder. */
    void setEvents(const EventList *events) { m_events = events; }

    bool isListening() const { return m_isListening; }
    /*! How many frames of the last minutes there are. */
    std::size_t kept() const { return m_flight.size(); }
    /*! The last ten minutes as of now; fewer when there were too many frames (Trace::missing). */
    FlightRecorder lastMinutes() { return m_flight.freeze(); }

    /*! Records what comes from now on, whichever bus it is, until stopRecording(); another thread writes. The name tells
     *  format and compression. False with a sentence when it cannot begin.
     */
    bool record(const QString &fileName, QString *errorMessage);
    /*! What has come is still written; then it is told. */
    void stopRecording();
    bool isRecording() const { return m_recording != nullptr; }
    /*! The file that is written now. */
    QString recordingFile() const { return m_recording ? m_recording->files().last() : QString(); }
    quint64 recorded() const { return m_recording ? m_recording->added() : 0; }
    /*! us since record(). */
    qint64 recordingTime() const { return now() - m_recordingBegin; }

signals:
    /*! Another bus. */
    void begun(const TraceHead &head);
    void taken(const TraceFrame &frame);
    /*! From now on there is something to save. */
    void keptFirst();
    void ended();
    /*! It has begun or ended, or has grown; at most ten times a second. */
    void recordingChanged();
    /*! What was done by itself or at the end of a recording, a sentence; and what did not go well. */
    void told(const QString &sentence);
    void warned(const QString &sentence);
    /*! A recording has ended; its first file. */
    void recordedFile(const QString &fileName);

private:
    void handleState(BusConnection::State state);
    void begin();
    void take(const QCanBusFrame &frame, TraceFrame::Flag flag);
    void tick();
    void noticeFaults();
    void saveByItself();
    void reportSaved(const QString &file, const QString &problem);
    void endRecording(BackgroundRecording *recording);
    void report(const BackgroundRecording &recording);
    bool isFinishing(const QString &fileName) const;
    TraceHead head() const;
    qint64 now() const;

    BusConnection *m_bus;
    TraceSettings m_settings;
    const EventList *m_events = nullptr;
    quint64 m_lastEvent = 0; // number of the event that was looked at last
    FlightRecorder m_flight;
    FaultSaving m_faults;
    RecordedTime m_time;
    QElapsedTimer m_steady;
    QTimer m_timer;
    std::unique_ptr<BackgroundRecording> m_recording;
    std::vector<std::unique_ptr<BackgroundRecording>> m_finishing; // that were stopped and are still written
    qint64 m_recordingBegin = 0;                                   // us
    bool m_isListening = false;
    bool m_isFolderTooLarge = false; // that was told
};
