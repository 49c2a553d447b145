// SPDX-License-Identifier: MIT
#pragma once

#include <interface/canreceiverhub.h>
#include <interface/hostinterface.h>
#include <interface/nmtsender.h>
#include <interface/sdoclient.h>
#include <interface/secondarysdoclient.h>

#include <QMap>
#include <QObject>
#include <QVariant>
#include <QVector>

#include <memory>

/*! One upload that was asked for. */
struct SdoRequest
{
    quint8 nodeId = 0;
    quint16 index = 0;
    quint8 subIndex = 0;
    quint16 dataType = 0;
    int timeout = 0;
};

/*! An SDO client that records the uploads and answers from a table, through the event loop, or only on
 *  command.
 */
class FakeSdoClient : public QObject, public SdoClient
{
    Q_OBJECT

public:
    static constexpr quint32 NoAnswer = 0xFFFFFFFF;
    static constexpr quint32 NoSuchObject = 0x06020000; // CiA 301 abort code

    /*! What happens to an upload. */
    enum class Mode {
        Answer, //!< from the table; what is not in it is aborted with NoSuchObject
        Hold,   //!< nothing, until the test emits a signal itself
    };
    void setMode(Mode mode) { m_mode = mode; }

    void setValue(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value);
    void setError(quint8 nodeId, quint16 index, quint8 subIndex, quint32 code);

    /*! Answers every object of every node with this value where the table has nothing. */
    void setDefaultValue(const QVariant &value) { m_defaultValue = value; }

    const QVector<SdoRequest> &requests() const { return m_requests; }

    void upload(quint8 nodeId, quint16 index, quint8 subIndex, quint16 dataType, int timeout) override;
    QObject *getQObject() override { return this; }

signals:
    void resultReceived(quint8 nodeId, quint16 index, quint8 subIndex, QVariant value);
    void errorReceived(quint8 nodeId, quint16 index, quint8 subIndex, quint32 code);

private:
    void answer(const SdoRequest &request);

    using Key = QPair<quint8, quint32>;
    static Key key(quint8 nodeId, quint16 index, quint8 subIndex);

    Mode m_mode = Mode::Answer;
    QMap<Key, QVariant> m_values;
    QMap<Key, quint32> m_errors;
    QVariant m_defaultValue;
    QVector<SdoRequest> m_requests;
};

/*! The client that is only listened to. */
class FakeSecondarySdoClient : public QObject, public SecondarySdoClient
{
    Q_OBJECT

public:
    QObject *getQObject() override { return this; }

signals:
    void resultReceived(quint8 nodeId, quint16 index, quint8 subIndex, QVariant value);
    void errorReceived(quint8 nodeId, quint16 index, quint8 subIndex, quint32 code);
};

/*! Emits when a frame of one COB-ID arrives. */
class FakeReceiver : public QObject
{
    Q_OBJECT

signals:
    void received(quint16 cobId);

protected:
    void connectNotify(const QMetaMethod &signal) override;

public:
    int connections = 0;
};

/*! Emits when one node's NMT state changes. */
class FakeNmtSource : public QObject
{
    Q_OBJECT

signals:
    void newNmtState(quint8, NmtSender::NmtState);
};

/*! Receivers for 701h to 77Fh and NMT sources for nodes 1 to 127. */
class FakeReceiverHub : public CanReceiverHub
{
public:
    FakeReceiverHub();

    QObject *getReceiver(quint16 cobId) override;
    QObject *getNmtStateSource(quint8 nodeId) override;

    /*! Lets the heartbeat of a node be heard. */
    void heartbeat(quint8 nodeId);

    /*! Reports a node's NMT state. */
    void reportNmtState(quint8 nodeId, NmtSender::NmtState state);

    FakeReceiver *receiver(quint8 nodeId) const;
    void removeReceiver(quint8 nodeId);
    void removeNmtSource(quint8 nodeId);

    QVector<quint16> askedCobIds;

private:
    std::unique_ptr<FakeReceiver> m_receivers[128];
    std::unique_ptr<FakeNmtSource> m_nmtSources[128];
};

/*! A host with everything that a plug-in may ask for. */
class FakeHost : public HostInterface
{
public:
    FakeHost();

    CanReceiverHub *getCanReceiverHub() override { return &hub; }
    SdoClient *getSdoClient() override { return hasSdoClient ? &sdoClient : nullptr; }
    SecondarySdoClient *getSecondarySdoClient() override
    {
        return hasSecondarySdoClient ? &secondarySdoClient : nullptr;
    }

    FakeReceiverHub hub;
    FakeSdoClient sdoClient;
    FakeSecondarySdoClient secondarySdoClient;
    bool hasSdoClient = true;
    bool hasSecondarySdoClient = true;
};
