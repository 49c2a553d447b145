// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"
#include "progressline.h"

#include <bus/busconnection.h>
#include <host/core/snapshotrun.h>

#include <QCoreApplication>

#include <optional>

class CommandArguments;
class InterruptibleLoop;

/*! The snapshot of a bus as a part of several commands: its options, the run, and the words when it fails. */
class BusSnapshot
{
    Q_DECLARE_TR_FUNCTIONS(BusSnapshot)

public:
    /*! Adds --quick, --node, --scan, --eds, --share, --timeout and --retries. */
    static void addOptions(CommandArguments &options);

    /*! Takes the options; an exit status after a complaint. */
    std::optional<ExitStatus> parse(const CommandArguments &options);

    void setNotes(const SnapshotNotes &notes) { m_order.notes = notes; }
    /*! Goes on with \a earlier, which must not be a full one when this is to be quick. */
    void setEarlier(const Snapshot &earlier) { m_order.earlier = earlier; }
    bool isQuick() const { return m_order.scope == SnapshotScope::Quick; }

    /*! Opens the bus and reads it, until Ctrl+C at most. An exit status when there is nothing of any use, after a
     *  sentence that says why.
     */
    std::optional<ExitStatus> take(const BusSettings &settings);

    /*! For who listens beside the reading; it stays connected after take(). */
    BusConnection &bus() { return m_bus; }

    /*! What was read, also when it was interrupted. */
    const Snapshot &snapshot() const { return m_snapshot; }

    /*! Whether nothing of the earlier snapshot is there, but others are, which were read anew. */
    bool isOtherVehicle() const { return m_isOtherVehicle; }
    /*! The nodes on which there is another device than in the earlier snapshot. */
    QList<quint8> replacedNodes() const { return m_replacedNodes; }
    /*! The nodes on which nobody can say whether there is the same one. */
    QList<quint8> unrecognizedNodes() const { return m_unrecognizedNodes; }

    /*! Whether there are neither gaps nor doubts about further nodes. */
    bool isComplete() const { return m_snapshot.isComplete() && m_doubts.isEmpty(); }

    /*! 0 when it is complete, else 4, 128 + n after a signal. Says why it was ended early, if it was, and what may be
     *  missing.
     */
    ExitStatus finish() const;

private:
    std::optional<ExitStatus> parseNodes(const CommandArguments &options);
    void read(InterruptibleLoop *loop);
    bool readVehicle(InterruptibleLoop *loop);
    void showProgress(const SnapshotRun &run);
    void sayLoss(bool isLost);
    QString describeNoNode() const;

    BusConnection m_bus;
    SnapshotOrder m_order;
    CanOpen::SdoPatience m_patience;
    ProgressLine m_progress;
    Snapshot m_snapshot;
    bool m_isOtherVehicle = false;
    QList<quint8> m_replacedNodes;
    QList<quint8> m_unrecognizedNodes;
    QStringList m_doubts;      // sentences about nodes that may be there
    ExitStatus m_interruption; // success: none
    bool m_isGivenUp = false;  // the bus stayed away
};
