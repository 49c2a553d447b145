// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <host/core/hostsdoclient.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QMap>
#include <QObject>
#include <QString>
#include <QTimer>

#include <optional>

class DataReader;
class HostServices;
class ProgressLine;

/*! One read of a bus by a DataReader, from detection to the last answer, with a record of how it went. */
class ReadRun : public QObject
{
    Q_OBJECT

public:
    struct NodeCount
    {
        int values = 0;
        int refused = 0; // aborts: objects that the device does not have
    };

    /*! The upload that ended the run early. */
    struct Stop
    {
        quint8 nodeId = 0;
        CanOpen::ObjectKey key;
        HostSdoClient::Ending ending = HostSdoClient::Ending::Silent;
        QString busError; // why the bus was lost, when it was
    };

    /*! All must outlive the run; the bus is connected. */
    ReadRun(HostServices *services, DataReader *reader, ProgressLine *progress, QObject *parent = nullptr);

    /*! Reads; returns when the run is over. */
    void run();

    /*! Ends run() early, on signal \a signalNumber. */
    void interrupt(int signalNumber);

    std::optional<int> interruptedBy() const { return m_signalNumber; }
    const QMap<quint8, NodeCount> &nodeCounts() const { return m_counts; }
    const std::optional<Stop> &stop() const { return m_stop; }
    qint64 elapsed() const { return m_elapsed; } // ms

private:
    void countUpload(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending);
    void check();
    QString progressText() const;

    HostServices *m_services;
    DataReader *m_reader;
    ProgressLine *m_progress;
    QEventLoop m_loop;
    QTimer m_checkTimer;
    QElapsedTimer m_clock;
    qint64 m_elapsed = 0;
    QMap<quint8, NodeCount> m_counts;
    std::optional<Stop> m_stop;
    bool m_isListening = true; // until the first upload
    std::optional<int> m_signalNumber;
};
