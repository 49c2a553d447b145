// SPDX-License-Identifier: MIT
#pragma once

#include "archiveworker.h"
#include "waitingvisits.h"

#include <QObject>

#include <functional>

/*! Keeps every snapshot that it is given: in the archive, or in the folder for waiting ones while the archive cannot be
 *  reached; what waits is delivered when it can be again. Nothing here waits for a disk.
 */
class VisitKeeper : public QObject
{
    Q_OBJECT

public:
    /*! \a worker must outlive the keeper. */
    explicit VisitKeeper(ArchiveWorker *worker, WaitingVisits waiting = WaitingVisits(),
                         QObject *parent = nullptr);

    /*! One of kept(), isWaiting() and failed() follows. */
    void keep(const Snapshot &snapshot, const std::optional<VisitVerdict> &verdict = std::nullopt);

    using Done = std::function<void(bool isDone, const QString &error)>;
    /*! Gives other notes to what waits in a file, see isWaiting(). */
    void setWaitingNotes(const QString &fileName, const SnapshotNotes &notes, const Done &done);

    /*! Tries to deliver what waits; happens by itself when the archive was opened, and after every snapshot that it
     *  took.
     */
    void deliver();

signals:
    /*! The archive has it. */
    void kept(const KeptVisit &visit);
    /*! It is on this machine and waits; \a reason is why the archive did not take it. */
    void isWaiting(const QString &reason, const QString &fileName);
    /*! It could be kept nowhere; \a reason is why. The user should save it. */
    void failed(const QString &reason);
    /*! What had waited in this file is in the archive now. */
    void visitDelivered(const QString &fileName, const KeptVisit &visit);
    /*! Snapshots that had waited are in the archive now. */
    void delivered(int count);
    /*! What waits could not all be delivered. Said once for as long as the reason is the same. */
    void deliveryFailed(const QString &reason);

private:
    /*! What became of a snapshot. */
    struct Outcome
    {
        std::optional<KeptVisit> visit;
        std::optional<QString> waitingFile;
    };

    static Outcome keepNow(Archive &archive, const WaitingVisits &waiting, const Snapshot &snapshot,
                           const std::optional<VisitVerdict> &verdict, QString *error);
    void tell(const Outcome &outcome, const QString &error);

    ArchiveWorker *m_worker;
    WaitingVisits m_waiting;
    QString m_deliveryProblem; // of the last delivery
};
