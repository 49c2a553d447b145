// SPDX-License-Identifier: MIT
#pragma once

#include "readsnapshots.h"

#include <archive/archiveworker.h>
#include <archive/visitkeeper.h>

#include <QObject>
#include <QString>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

class HostServices;

/*! Keeps every read in the user's archive, check-ups and the reads of plug-ins, so that quitting loses nothing.
 *
 *  The archive is opened with the first read that is to be kept, or the first question about it: whoever only looks into
 *  a file has none made. All work is done in another thread; the end of the records waits until it is done.
 */
class VehicleRecords : public QObject
{
    Q_OBJECT

public:
    /*! What became of a snapshot. */
    struct Keeping
    {
        enum class End : quint8 {
            Kept,
            Waiting, //!< on this machine, for an archive that cannot be reached
            Lost     //!< it could be kept nowhere
        };
        End end = End::Kept;
        KeptVisit visit;  //!< of Kept
        QString reason;   //!< of the others, sentences
        QString fileName; //!< of Waiting
    };
    using Then = std::function<void(const Keeping &keeping)>;

    /*! \a services must outlive the records; \a program is what the snapshots of reads are said to be made by. */
    VehicleRecords(HostServices *services, const QString &program, QObject *parent = nullptr);
    ~VehicleRecords() override;

    /*! Keeps a snapshot; \a then is told what became of it. */
    void keep(const Snapshot &snapshot, const std::optional<VisitVerdict> &verdict,
              const Then &then = Then());

    using Done = VisitKeeper::Done;
    /*! Writes what people say now of a snapshot that was kept or waits. */
    void setNotes(const Keeping &keeping, const SnapshotNotes &notes, const Done &done);

    /*! To ask something; opened by the first call. */
    ArchiveWorker &archive();

    /*! Where the archive is, without a password. */
    QString address() const;

    /*! Turns to the archive that the settings name now; what waits is delivered there. */
    void reopen();

    /*! Tells everybody that somebody has changed visits or vehicles. */
    void noteChange() { emit changed(); }

signals:
    /*! Visits or vehicles of the archive have changed, or it is another one. */
    void changed();
    /*! From now on it is another archive, in which the numbers of visits are others'. */
    void archiveReplaced();
    /*! The archive cannot be opened; a sentence. */
    void openFailed(const QString &reason);
    /*! What a plug-in has read is kept, or not. */
    void readKept(const VehicleRecords::Keeping &keeping);
    /*! What had waited in this file, see Keeping, is a visit now. */
    void visitDelivered(const QString &fileName, const KeptVisit &visit);
    /*! Visits that had waited have been delivered. */
    void delivered(int count);
    /*! Visits wait that cannot be delivered, sentences; said once for as long as the reason is the same. */
    void deliveryFailed(const QString &reason);

private:
    void open();
    void end(const Keeping &keeping);

    ArchiveWorker m_worker;
    VisitKeeper m_keeper;
    ReadSnapshots m_reads;
    std::deque<Then> m_waiting; // for the snapshots that are being kept, in their order
    bool m_isOpened = false;
    QString m_address; // of the archive that was opened last
};
