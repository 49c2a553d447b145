// SPDX-License-Identifier: MIT
#pragma once

#include <store/nodestore.h>
#include <store/nodeview.h>
#include <interpreter/readlist.h>

#include <interface/nmtsender.h>

#include <QObject>
#include <QPointer>

class CanReceiverHub;
class SdoClient;
class SecondarySdoClient;
class QTimer;

/*! Where a run stands. */
struct ReadProgress
{
    quint8 nodeId = 0;   //!< of the request that is out
    quint16 index = 0;   //!< of the request that is out
    quint8 subIndex = 0; //!< of the request that is out
    int nodesFound = 0;
    int entriesDone = 0;  //!< answered, with a value or an error
    int entriesTotal = 0; //!< 204 for each node found
};

/*! Finds the nodes of a bus by their heartbeats, reads the fixed list of objects from each and keeps the
 *  values.
 *
 *  A run: startReading() listens for 2000 ms; when node 1 was heard, 204 entries are read from every node
 *  found, one SDO upload at a time. Aborted entries are skipped, and the first time-out ends the run.
 *  isReading() tells when it is over; failures are debug lines only, and the values read so far stay.
 *
 *  The host's objects are used, never owned. Everything happens in the thread of the event loop; no call
 *  blocks.
 */
class DataReader : public QObject
{
    Q_OBJECT

public:
    explicit DataReader(QObject *parent = nullptr);

    /*! Sets the client that reads; null when the bus has gone. Its signals stay connected. */
    void setSdoClient(SdoClient *client);

    /*! Sets the hub through which heartbeats and NMT states are heard; null when the bus has gone. */
    void setReceiverHub(CanReceiverHub *hub);

    /*! Sets the client that is only listened to. Returns false for null. */
    bool setSecondarySdoClient(SecondarySdoClient *client);

    /*! Begins a run, which clears the values but not the list of nodes. Returns false and does nothing while
     *  a run is in progress.
     */
    bool startReading();

    /*! Whether a run is in progress. A run whose client is taken away never ends. */
    bool isReading() const { return m_reading; }

    ReadProgress progress() const;

    /*! The IDs of the nodes found or imported; writes them to the debug output. */
    QList<quint8> getNodeList() const;

    bool getValue(quint8 nodeId, quint16 index, quint8 subIndex, QVariant &value) const
    {
        return m_store.getValue(nodeId, index, subIndex, value);
    }
    void setValue(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value)
    {
        m_store.setValue(nodeId, index, subIndex, value);
    }
    QList<quint16> getIndexList(quint8 nodeId) const { return m_store.getIndexList(nodeId); }
    QList<quint8> getSubIndexList(quint8 nodeId, quint16 index) const
    {
        return m_store.getSubIndexList(nodeId, index);
    }
    void clearStore() { m_store.clear(); }

    /*! All values and the list of nodes, for reading. The reference is good as long as the reader. */
    const NodeStore &store() const { return m_store; }

    /*! The values of one node; to be used at once, see NodeView. */
    NodeView node(quint8 nodeId) const { return NodeView(m_store, nodeId); }

    /*! The values of all listed nodes as the text of an exchange file. */
    QString exportXml() const;

    /*! Replaces values and list of nodes by those of an exchange file. Always returns true: text that is no
     *  exchange file leaves what could be read of it, often nothing.
     */
    bool importXml(const QString &text);

signals:
    /*! After each request: its index. At the end of a run, and when there is no SDO client: 0. */
    void done(quint32 value);

    /*! A found node reported its NMT state. */
    void nmtStateUpdate(quint8 nodeId, NmtSender::NmtState state);

public slots:
    void sdoResultReceived(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value);
    void sdoErrorReceived(quint8 nodeId, quint16 index, quint8 subIndex, quint32 errorCode);
    void received(quint16 value);
    void handleHBdetectionTimeout();
    void readNextElement();
    void newNmtState(quint8 nodeId, NmtSender::NmtState state);
    void finishedSlot(quint32 value);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void listenTo(const QObject *sdoSignals);
    void startSequence();
    void rebuildWorkingList();
    void loadEntry();
    bool advance();
    void continueOrFinish();
    void scheduleNextElement();

    SdoClient *m_sdoClient = nullptr;
    CanReceiverHub *m_receiverHub = nullptr;
    SecondarySdoClient *m_secondarySdoClient = nullptr;
    QList<ReadEntry> m_generalEntries;
    QList<ReadEntry> m_group2Entries;
    QList<ReadEntry> m_group3Entries;
    QList<ReadEntry> m_group4Entries;
    QList<ReadEntry> m_group5Entries;
    QList<ReadEntry> m_workingList; // the five above, for the node being read
    bool m_reading = false;
    bool m_detecting = false;
    bool m_readStarted = false;
    quint8 m_nodeId = 1;
    quint16 m_index = 0x1000;
    quint8 m_subIndex = 0;
    quint16 m_dataType = 7;
    int m_nodePosition
        = 0; // more than 8 bits: an imported list of nodes may be longer than the bus has node IDs
    quint8 m_entryPosition = 0;
    QPointer<QTimer> m_detectionTimer;
    NodeStore m_store; // with the list of nodes
};
