// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/nmt.h>
#include <interface/canreceiverhub.h>
#include <interface/nmtsender.h>

#include <QObject>
#include <QSet>
#include <QTimer>

#include <array>

namespace CanOpen {
class HeartbeatConsumer;
}

/*! Emits the COB-ID of every error control message of one node. */
class HeartbeatReceiver : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    void received(quint16 cobId);
};

/*! Emits the NMT states of one node. */
class NmtStateSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    // Written with its namespace and with the blank: plug-ins connect to this signature by text.
    void newNmtState(quint8 nodeId, NmtSender::NmtState state);
};

/*! Gives plug-ins the heartbeats and NMT states that a heartbeat consumer hears.
 *
 *  A node whose heartbeat is lost is reported as Unknown. A source that was asked for reports the node's
 *  present state once, 200 ms later, as a plug-in asks at the end of a read and would otherwise know no state
 *  before the next change.
 */
class HeartbeatHub : public QObject, public CanReceiverHub
{
    Q_OBJECT

public:
    /*! \a consumer must outlive the hub. Registers the meta type of NmtSender::NmtState. */
    explicit HeartbeatHub(CanOpen::HeartbeatConsumer *consumer, QObject *parent = nullptr);
    ~HeartbeatHub() override;

    QObject *getReceiver(quint16 cobId) override;
    QObject *getNmtStateSource(quint8 nodeId) override;

    /*! The bus has gone: every node that was heard is reported as Unknown. */
    void forgetNodes();

    static NmtSender::NmtState toHostState(CanOpen::NmtState state);

signals:
    /*! A plug-in asked for a receiver, as it does when a detection begins. */
    void receiverAsked();

private:
    static constexpr int nodeCount = 128; // 0 is not used

    void handleHeartbeat(quint8 nodeId);
    void handleState(quint8 nodeId, CanOpen::NmtState state);
    void handleLoss(quint8 nodeId);
    void report(quint8 nodeId, NmtSender::NmtState state);
    void announceStates();

    std::array<HeartbeatReceiver *, nodeCount> m_receivers{};
    std::array<NmtStateSource *, nodeCount> m_sources{};
    std::array<NmtSender::NmtState, nodeCount> m_states{};
    QSet<quint8> m_toAnnounce; // nodes whose source was asked for
    QTimer m_announceTimer;
};
