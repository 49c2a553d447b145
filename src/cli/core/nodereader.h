// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <canopen/sdoclient.h>
#include <host/core/readrecord.h>
#include <interpreter/readlist.h>
#include <store/nodestore.h>

#include <QList>
#include <QObject>

/*! Reads the entries of the read list from one node, whether or not it sends a heartbeat and whatever else is on
 *  the bus.
 *
 *  An object that is not answered does not end it; several in a row do.
 */
class NodeReader : public QObject
{
    Q_OBJECT

public:
    /*! So many objects without an answer, one after the other, are a node without one. */
    static constexpr int mostSilences = 3;

    enum class End {
        Complete,
        NodeSilent, //!< at the object last asked for
        Cancelled   //!< by the client: the bus went away
    };

    /*! \a client must outlive the reader. */
    NodeReader(CanOpen::SdoClient *client, quint8 nodeId, QObject *parent = nullptr);

    void start();

    quint8 nodeId() const { return m_nodeId; }
    CanOpen::ObjectKey key() const { return m_key; } //!< asked for last
    int entriesDone() const { return m_position; }
    int entriesTotal() const { return m_entries.size(); }
    End end() const { return m_end; }

    /*! The values, with the node in the list of nodes. */
    const NodeStore &store() const { return m_store; }
    const ReadRecord &record() const { return m_record; }

signals:
    void finished();

private:
    void askNext();
    void takeOutcome(const CanOpen::SdoOutcome &outcome);
    void finish(End end);

    CanOpen::SdoClient *m_client;
    quint8 m_nodeId;
    QList<ReadEntry> m_entries;
    int m_position = 0;
    int m_silences = 0; // in a row
    CanOpen::SdoTicket m_ticket = 0;
    CanOpen::ObjectKey m_key;
    End m_end = End::Complete;
    NodeStore m_store;
    ReadRecord m_record;
};
