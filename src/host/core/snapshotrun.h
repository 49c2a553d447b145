// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>
#include <canopen/edsfile.h>
#include <canopen/nodescan.h>
#include <snapshot/snapshotreader.h>

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

/*! What a snapshot is to be taken of, and how. */
struct SnapshotOrder
{
    SnapshotScope scope = SnapshotScope::Full;
    /*! These only, whether they are heard or not; when empty all that are heard. */
    QVector<quint8> nodeIds;
    bool isScanned = false; //!< asks every node ID, and so also finds nodes that send no heartbeat
    QMap<quint8, CanOpen::EdsFile> dataSheets; //!< by node ID
    int sharePercent = BusShare::usualPercent; //!< of the bus for questions and answers, 1 to 100 (no limit)
    QString program;                           //!< "draxelctl 1.0.0"
    SnapshotNotes notes;
    /*! Where to go on; its time then counts. Of a quick one the rest is read when the scope is full. */
    std::optional<Snapshot> earlier;
};

/*! Takes a snapshot of the vehicle on a connection: finds the nodes, has them read, and waits for a bus that is lost.
 *
 *  A node is read as soon as it is heard; the listening goes on meanwhile, and whoever is heard later is read as well.
 *  The connection must be nobody else's meanwhile: a plug-in's read and a snapshot would hold each other up.
 */
class SnapshotRun : public QObject
{
    Q_OBJECT

public:
    /*! How long heartbeats are waited for, before nobody more is expected. */
    static constexpr std::chrono::milliseconds listeningTime{2000};
    /*! How long a lost bus is waited for; then the run ends as if it had been cancelled. A bus that is back and goes again
     *  before any device has answered was never back.
     */
    static constexpr std::chrono::milliseconds longestLoss{60000};

    /*! \a bus is connected, and must outlive the run. */
    explicit SnapshotRun(BusConnection *bus, QObject *parent = nullptr);
    ~SnapshotRun() override;

    /*! Once. */
    void start(const SnapshotOrder &order);

    /*! Ends at once; what was read is kept. */
    void cancel();

    bool isRunning() const { return m_isRunning; }
    /*! Whether it did not come to its end: the user cancelled, or the bus stayed away. */
    bool isCancelled() const { return m_reader != nullptr && m_reader->isCancelled(); }
    /*! Whether nodes are still looked for. */
    bool isListening() const { return m_isListening; }
    bool isBusLost() const { return m_isLost; }

    /*! Sentences that say why nodes may be there that were not found: not to be taken for absent. Empty when there is no
     *  doubt, and before the end.
     */
    QStringList doubts() const;

    /*! What was read so far, with its origin. */
    Snapshot snapshot() const;
    /*! For progress and single nodes; null before start(). */
    const SnapshotReader *reader() const { return m_reader.get(); }

signals:
    void nodeAdded(quint8 nodeId);
    void nodeChanged(quint8 nodeId);
    void nodeFinished(quint8 nodeId);
    /*! The bus was lost, or is back. */
    void busLostChanged(bool isLost);
    /*! Once. Slots may delete the run. */
    void finished();

private:
    void describeOrigin(const SnapshotOrder &order);
    void makeReader(const SnapshotOrder &order);
    void addNodes(const SnapshotOrder &order);
    void followBus();
    void listen();
    void handleHeartbeat(quint8 nodeId);
    void handleListeningEnd();
    void handleOutcome(const CanOpen::SdoOutcome &outcome);
    void handleState(BusConnection::State state);
    void waitForBus();
    void setLost(bool isLost);
    void handleFinished();
    bool isWanted(quint8 nodeId) const;
    QVector<quint8> unknownNodes() const;
    bool isFullOfOthers() const;

    BusConnection *m_bus;
    QVector<quint8> m_nodeIds; // the only ones that are wanted; empty: all
    bool m_isScanned = false;
    Snapshot m_origin; // without nodes
    std::unique_ptr<SnapshotReader> m_reader;
    std::unique_ptr<CanOpen::NodeScan> m_scan;
    QTimer m_listening;
    QTimer m_loss;
    QElapsedTimer m_clock;
    std::optional<qint64> m_lostSince; // ms of the clock; empty while devices answer
    qint64 m_offset = 0;               // ms from the snapshot's time to the start of the clock
    quint64 m_bitsBefore = 0;          // of the bus, without ours, when the listening began
    qint64 m_listenedFrom = 0;         // ms of the clock
    bool m_wasBusFull = false;         // while nodes were listened for
    bool m_isRunning = false;
    bool m_isListening = false;
    bool m_isLost = false;
};
