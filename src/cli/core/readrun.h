// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

class DataReader;
class HostServices;
class InterruptibleLoop;
class ProgressLine;

/*! One read of a bus by a DataReader, from detection to the last answer. How it went, HostServices::reads() knows. */
class ReadRun : public QObject
{
    Q_OBJECT

public:
    /*! All must outlive the run; the bus is connected. */
    ReadRun(HostServices *services, DataReader *reader, ProgressLine *progress, QObject *parent = nullptr);

    /*! Reads in \a loop; returns when the run is over or the loop is interrupted. */
    void run(InterruptibleLoop *loop);

private:
    void check();
    QString progressText() const;

    HostServices *m_services;
    DataReader *m_reader;
    ProgressLine *m_progress;
    InterruptibleLoop *m_loop = nullptr;
    QTimer m_checkTimer;
    QElapsedTimer m_clock;
    bool m_isListening = true; // until the first upload
};
