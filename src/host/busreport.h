// SPDX-License-Identifier: MIT
#pragma once

#include "messagelog.h"

#include <bus/busconnection.h>
#include <bus/interfacehealth.h>
#include <host/core/nodenews.h>
#include <host/core/readforecast.h>
#include <host/core/readobserver.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

class HostServices;

/*! Puts into words what happens on the bus, for the message log and, where it matters at once, for the status
 *  line.
 *
 *  What nodes do is collected for half a second, so that a vehicle that is switched on gives one line and not
 *  one for each node.
 */
class BusReport : public QObject
{
    Q_OBJECT

public:
    /*! Both must outlive the report. */
    BusReport(HostServices *services, MessageLog *log, QObject *parent = nullptr);

    /*! Why a read that starts now would not get far, a sentence each; none when nothing speaks against it. */
    QStringList obstacles() const;

    /*! How long the bus has been listened to; replaced by tests. */
    void setListeningTime(const std::function<std::chrono::milliseconds()> &time) { m_listeningTime = time; }

    /*! Writes down what nodes have done since the last time; called by a timer. */
    void reportNodes();

    /*! Looks for nodes that have booted and sent no heartbeat since; called by a timer. */
    void lookForSilentNodes();

signals:
    /*! A sentence that the user should see at once. */
    void noticed(const QString &sentence);

private:
    void handleBusState(BusConnection::State state);
    void handleHeartbeat(quint8 nodeId);
    void handleNodeLost(quint8 nodeId);
    void handleDetection();
    void handleReadEnd(const ReadSummary &summary);
    void handleHealth(InterfaceHealth::State state);
    void handleOverrun();
    void handleForeignClient(quint8 nodeId);
    void collect();
    void forgetNodes();
    void add(MessageLog::Severity severity, const QString &text) { m_log->add(severity, text); }

    HostServices *m_services;
    MessageLog *m_log;
    std::function<std::chrono::milliseconds()> m_listeningTime;
    QElapsedTimer m_listening;
    BusConnection::State m_busState = BusConnection::State::Disconnected;
    bool m_wasUnwell = false; // the interface had reported trouble
    QTimer m_nodeTimer;
    QTimer m_silenceTimer;
    NodeNews m_news;
};
