// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>
#include <bus/interfacehealth.h>
#include <trace/recording/recordedtime.h>
#include <trace/recording/tracerecording.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

/*! Records what is on a bus. Sends nothing. */
class BusRecorder : public QObject
{
    Q_OBJECT

public:
    explicit BusRecorder(const TraceRecording::Settings &settings);

    /*! Opens the bus and begins; false with a sentence. \a isBusTrouble: whether it is the bus and not the file. */
    bool begin(const BusSettings &bus, QString *errorMessage, bool *isBusTrouble);
    /*! Writes the end; false when not everything could be written. */
    bool finish();

    const TraceRecording &recording() const { return m_recording; }
    /*! How often the adapter told that it had lost frames. */
    quint64 overruns() const { return m_interface.overruns(); }
    /*! CAN FD frames that were heard, which are not recorded. */
    quint64 unrecorded() const { return m_unrecorded; }
    const BusConnection &bus() const { return m_bus; }
    /*! False when it is recorded to a pipe that nobody reads any more. */
    bool hasReader() const;

signals:
    /*! Recording has ended by itself, see recording(), or nobody reads it any more, see hasReader(). */
    void ended();
    /*! An older file cannot be removed, so that more are kept than asked for. Comes once. */
    void keepsTooMany(const QString &file);

private:
    void handle(const QCanBusFrame &frame);
    void tick();
    qint64 now() const;

    bool m_isToStandardOutput;
    TraceRecording m_recording;
    BusConnection m_bus;
    InterfaceHealth m_interface;
    QElapsedTimer m_steady;
    RecordedTime m_time{0};
    QTimer m_timer;
    quint64 m_unrecorded = 0;
    bool m_hasToldOfFiles = false;
};
