// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>
#include "heartbeathub.h"
#include "hostsdoclient.h"
#include <bus/interfacehealth.h>
#include "readobserver.h"
#include "readpace.h"
#include "readwords.h"
#include "restartwatch.h"

#include <interface/hostinterface.h>
#include <interface/secondarysdoclient.h>

#include <QObject>
#include <QVariant>

/*! The second SDO client that plug-ins ask for. This host has no second source of answers, so it never emits.
 */
class SilentSdoClient : public QObject, public SecondarySdoClient
{
    Q_OBJECT

public:
    using QObject::QObject;

    QObject *getQObject() override { return this; }

signals:
    void resultReceived(quint8 nodeId, quint16 index, quint8 subIndex, QVariant value);
    void errorReceived(quint8 nodeId, quint16 index, quint8 subIndex, quint32 errorCode);
};

/*! The bus and all that plug-ins are offered on it; lives as long as the host. */
class HostServices : public QObject, public HostInterface
{
    Q_OBJECT

public:
    /*! \a clock is the one by which reads are observed; a test may have one of its own. */
    explicit HostServices(const ReadObserver::Clock &clock = ReadObserver::steadyClock,
                          QObject *parent = nullptr);
    ~HostServices() override;

    CanReceiverHub *getCanReceiverHub() override { return &m_hub; }
    SdoClient *getSdoClient() override { return &m_sdoClient; }
    SecondarySdoClient *getSecondarySdoClient() override { return &m_secondaryClient; }

    /*! How far the read under way is. */
    const ReadPace &pace() const { return m_pace; }

    BusConnection &bus() { return m_bus; }
    HostSdoClient &sdoClient() { return m_sdoClient; }
    HeartbeatHub &heartbeatHub() { return m_hub; }
    ReadObserver &reads() { return m_reads; }
    InterfaceHealth &interfaceHealth() { return m_health; }

    /*! What is known of a node that does not answer, or, as node 0, of nodes that were looked for in vain. */
    ReadWords::Silence silenceOf(quint8 nodeId);

    /*! Whether the bus was full while the last read looked for nodes, or is while one does. */
    bool wasBusFull() const;

    /*! Ends the read of a plug-in that is under way: its requests are answered with FFFFFFFFh until it asks
     *  no more. The bus stays connected. Nothing happens when there is no read.
     */
    void cancelRead();

private:
    void handleBusState(BusConnection::State state);
    void handleHeartbeat(quint8 nodeId);
    QSet<quint8> heardNodes();
    void handleDetection();
    void handleReadPhase(ReadObserver::Phase phase);
    void handleUploadStart(quint8 nodeId, CanOpen::ObjectKey key);
    void handleUploadEnd(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending, quint32 code);

    BusConnection m_bus;
    HostSdoClient m_sdoClient;
    HeartbeatHub m_hub;
    SilentSdoClient m_secondaryClient;
    ReadObserver m_reads;
    RestartWatch m_restarts;
    ReadPace m_pace;
    InterfaceHealth m_health;

    ReadObserver::Clock m_clock;
    std::optional<std::chrono::milliseconds> m_detectionBegan; // of the one under way
    quint64 m_bitsBefore = 0;                                  // of the bus, when the detection began
    bool m_wasBusFull = false;
};
