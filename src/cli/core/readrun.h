// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QString>
#include <QTimer>

class DataReader;
class HostServices;
class ProgressLine;

/*! One read of a bus by a DataReader, from detection to the last answer. How it went, HostServices::reads() knows. */
class ReadRun : public QObject
{
    Q_OBJECT

public:
    /*! All must outlive the run; the bus is connected. */
    ReadRun(HostServices *services, DataReader *reader, ProgressLine *progress, QObject *parent = nullptr);

    /*! Reads; returns when the run is over. */
    void run();

    /*! Ends run() early. */
    void interrupt() { m_loop.quit(); }

    qint64 elapsed() const { return m_elapsed; } // ms

private:
    void check();
    QString progressText() const;

    HostServices *m_services;
    DataReader *m_reader;
    ProgressLine *m_progress;
    QEventLoop m_loop;
    QTimer m_checkTimer;
    QElapsedTimer m_clock;
    qint64 m_elapsed = 0;
    bool m_isListening = true; // until the first upload
};
