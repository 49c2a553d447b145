// SPDX-License-Identifier: MIT
#pragma once

#include "cobid.h"
#include "sdooutcome.h"

#include <QObject>
#include <QVector>

#include <array>
#include <bitset>

namespace CanOpen {

class SdoClient;

/*! Finds the nodes of a bus by asking each node ID for its device type (object 1000h), so also those whose
 *  heartbeat is switched off.
 *
 *  All nodes are asked side by side; whatever sends the client's frames paces them. A node that answers in
 *  any way, also with an abort, is present.
 */
class NodeScan : public QObject
{
    Q_OBJECT

public:
    static constexpr int maximumSideBySide = 32; //!< nodes

    /*! \a client stays the caller's and must outlive the scan. */
    explicit NodeScan(SdoClient *client, QObject *parent = nullptr);
    /*! Asks nobody any further; nothing is told of it. */
    ~NodeScan() override;

    /*! Begins; without effect while a scan is running. */
    void start();

    bool isRunning() const { return m_waiting > 0 || m_next <= lastNodeId; }

    /*! The nodes that were found so far, in ascending order. */
    QVector<quint8> foundNodes() const;

    /*! The nodes that were asked, and did not answer though the bus had room for it, in ascending order. */
    QVector<quint8> silentNodes() const;

    /*! The nodes of which nothing is known, in ascending order: no request to them could be written, the bus had no
     *  room for their answers, or the scan was ended before they could answer. Not to be taken for absent.
     */
    QVector<quint8> unaskedNodes() const;

signals:
    void found(quint8 nodeId);
    /*! Every node has answered or kept silent or could not be asked, or the client's uploads were cancelled. */
    void finished(const QVector<quint8> &nodeIds);

private:
    void askNext();
    void handleOutcome(const SdoOutcome &outcome);

    SdoClient *m_client;
    quint8 m_next = lastNodeId + 1; // the next node to be asked; beyond the last one when all have been
    std::array<SdoTicket, lastNodeId + 1> m_tickets{}; // by node ID; of nodes asked and without outcome
    int m_waiting = 0;                                 // how many of these
    std::bitset<lastNodeId + 1> m_found;
    std::bitset<lastNodeId + 1> m_silent; // asked in time on a bus with room, and without an answer
};

} // namespace CanOpen
