// SPDX-License-Identifier: MIT
#pragma once

#include "busshare.h"
#include "snapshotnodereader.h"

#include <canopen/sdoclient.h>

#include <QMap>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <optional>

/*! How far a SnapshotReader is. */
struct SnapshotProgress
{
    int nodesDone = 0;
    int nodes = 0;
    int asked = 0;  //!< questions that are done
    int total = 0;  //!< the same with those that are known to come; grows with what devices tell
    int values = 0; //!< of all nodes
    int gaps = 0;
    /*! Empty while it is too early to say. */
    std::optional<std::chrono::milliseconds> timeLeft;
};

/*! Reads what many nodes know, all of them side by side, with one request open per node: a slow one holds up nobody.
 *
 *  Goes on past everything: silent and Stopped nodes, refusals, broken transfers. SnapshotNodeReader decides for each
 *  node; this class gives them their turns, within the share of the bus, and stops while the bus is away. Knows no bus:
 *  answers come from an SDO client, the rest from its caller.
 */
class SnapshotReader : public QObject
{
    Q_OBJECT

public:
    using Clock = CanOpen::SdoClient::Clock;

    /*! \a client must outlive the reader. */
    SnapshotReader(CanOpen::SdoClient *client, Clock clock, QObject *parent = nullptr);
    ~SnapshotReader() override;

    // To be set before the first node is added.
    void setScope(SnapshotScope scope) { m_scope = scope; }
    /*! What the EDS or DCF of a node says. */
    void setDataSheet(quint8 nodeId, const CanOpen::EdsFile &dataSheet)
    {
        m_dataSheets.insert(nodeId, dataSheet);
    }
    /*! \a percent from 1 to 100, and the bit rate in bit/s, 0 when it is not known. */
    void setShare(int percent, int bitRate);
    /*! What was read before, for start(); entries keep their times, the new ones are counted from \a elapsed on. */
    void setEarlier(const Snapshot &earlier, std::chrono::milliseconds elapsed);

    /*! Begins, with the nodes of the earlier snapshot if there is one. Does not end before allNodesAdded(). */
    void start();
    /*! Reads this node, too; without effect when it is read already, or was. */
    void addNode(quint8 nodeId);
    void allNodesAdded();

    /*! What a node's heartbeat said last; empty when it is not heard any more. */
    void setNmtState(quint8 nodeId, std::optional<CanOpen::NmtState> state);
    void noteBootUp(quint8 nodeId);
    /*! Nothing is asked while the bus is away. Uploads that it has ended are repeated. */
    void setBusPresent(bool isPresent);

    /*! Ends at once with what was read. */
    void cancel();

    /*! Of the bus, what questions and answers have taken so far, about. */
    quint64 spentBits() const { return m_spentBits; }

    bool isRunning() const { return m_isRunning; }
    /*! Whether it was ended by cancel(). */
    bool isCancelled() const { return m_isCancelled; }

    /*! The nodes, in the order of their IDs, with what was read so far. */
    QVector<SnapshotNode> nodes() const;
    SnapshotProgress progress() const;
    /*! The nodes on which there is another device than in the earlier snapshot; nothing of that one was kept. */
    QVector<quint8> replacedNodes() const;
    /*! The nodes on which nobody can say whether there is the same device; what is known of the earlier one was kept. */
    QVector<quint8> unrecognizedNodes() const;
    /*! The nodes that answer and were not in the earlier snapshot, when nothing is there of all that were: it is another
     *  vehicle. Otherwise none.
     */
    QVector<quint8> strangerNodes() const;
    /*! One node; empty when it is not known. */
    std::optional<SnapshotNode> node(quint8 nodeId) const;
    /*! How far one node is. */
    SnapshotProgress progress(quint8 nodeId) const;

signals:
    void nodeAdded(quint8 nodeId);
    /*! With every answer: whoever shows it, does so when there is time. */
    void nodeChanged(quint8 nodeId);
    void nodeFinished(quint8 nodeId);
    /*! Once; nothing is asked any more. Slots may delete the reader. */
    void finished();

private:
    struct Turn;

    Turn *turnOf(quint8 nodeId) const;
    void handleOutcome(const CanOpen::SdoOutcome &outcome);
    void takeAnswer(Turn &turn, const CanOpen::SdoOutcome &outcome);
    void enqueue(Turn &turn);
    void askReady();
    void ask(Turn &turn);
    void spend(int frames, std::chrono::milliseconds now);
    void endRound();
    void finishNode(Turn &turn);
    void finish();
    void look();
    QVector<quint8> nodesThat(bool (SnapshotNodeReader::*hold)() const) const;
    SnapshotProgress progressOf(const Turn &turn) const;

    CanOpen::SdoClient *m_client;
    Clock m_clock;
    SnapshotScope m_scope = SnapshotScope::Full;
    QMap<quint8, CanOpen::EdsFile> m_dataSheets;
    Snapshot m_earlier;
    std::chrono::milliseconds m_offset{0};
    std::chrono::milliseconds m_begun{0};
    BusShare m_share;
    quint64 m_spentBits = 0;
    std::map<quint8, std::unique_ptr<Turn>> m_turns;
    std::deque<Turn *> m_ready; // in the order of their turns
    QTimer m_timer;             // until the share allows the next question, or looks from the event loop
    int m_asking = 0;           // nodes with a question under way
    bool m_isRunning = false;
    bool m_areAllAdded = false;
    bool m_isBusPresent = true;
    bool m_isCancelled = false;
};
