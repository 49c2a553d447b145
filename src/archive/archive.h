// SPDX-License-Identifier: MIT
#pragma once

#include "archivedatabase.h"
#include "vehicletable.h"
#include "visit.h"
#include "visittable.h"

#include <QCoreApplication>

#include <functional>
#include <optional>

/*! Keeps every read of every vehicle: visits that can be found, loaded and compared again. docs/archive.md has the
 *  tables.
 *
 *  Calls wait for the disk or the network, seconds when a server is away, so a window asks an ArchiveWorker. Belongs to
 *  the thread that made it. A function that fails gives nothing, with a sentence that says what to do in
 *  \a errorMessage, and has changed nothing. A connection that was lost is opened again, once in each call.
 */
class Archive
{
    Q_DECLARE_TR_FUNCTIONS(Archive)

public:
    using Missing = ArchiveDatabase::Missing;

    bool open(const ArchiveAddress &address, Missing missing, QString *errorMessage);
    const ArchiveAddress &address() const { return m_database.address(); }

    /*! Keeps a snapshot. The same one is kept once: then a verdict is added where there was none, and
     *  one that is there stays, see setVerdict(). A snapshot without a time is filed under \a now.
     */
    std::optional<KeptVisit> add(const Snapshot &snapshot, const std::optional<VisitVerdict> &verdict,
                                 QString *errorMessage, const QDateTime &now = QDateTime::currentDateTime());

    /*! The same of a check-up, of which the last one counts: its verdict takes the place of one that is there. */
    std::optional<KeptVisit> addJudged(const Snapshot &snapshot, const std::optional<VisitVerdict> &verdict,
                                       QString *errorMessage);

    /*! The same with more that is known of it; of a snapshot that the archive has already only the verdict counts. */
    std::optional<KeptVisit> add(const Snapshot &snapshot, const VisitExtras &extras, QString *errorMessage,
                                 const QDateTime &now = QDateTime::currentDateTime());

    /*! The very snapshot that was added: its file has the same bytes. */
    std::optional<Snapshot> load(qint64 visitId, QString *errorMessage);
    /*! The same with its notes as they are now: for showing it. */
    std::optional<Snapshot> loadWithNotes(qint64 visitId, QString *errorMessage);

    std::optional<QVector<VisitInfo>> visits(const VisitQuery &query, QString *errorMessage);
    std::optional<VisitInfo> visit(qint64 visitId, QString *errorMessage);
    /*! The visit of the same vehicle before this one; 0 when it is the first. */
    std::optional<qint64> previousVisit(qint64 visitId, QString *errorMessage);

    /*! By the last visit, the newest first; \a text as in VisitQuery. */
    std::optional<QVector<VehicleInfo>> vehicles(const QString &text, QString *errorMessage);

    /*! The values of an object at all visits of a vehicle; visits without a value are left out, and damaged ones. */
    std::optional<ValueTrend> vehicleTrend(qint64 vehicleId, CanOpen::ObjectKey key, QString *errorMessage);
    /*! The same of a device, whatever vehicle it was in; see DeviceIdentity::toKey(). */
    std::optional<ValueTrend> deviceTrend(const QString &deviceKey, CanOpen::ObjectKey key,
                                          QString *errorMessage);

    bool setNotes(qint64 visitId, const SnapshotNotes &notes, QString *errorMessage);
    bool setVerdict(qint64 visitId, const VisitVerdict &verdict, QString *errorMessage);
    /*! Deletes a visit, and the vehicle with its last one. */
    bool remove(qint64 visitId, QString *errorMessage);

    /*! An empty name lets the vehicle be called by its serial number. */
    bool renameVehicle(qint64 vehicleId, const QString &name, QString *errorMessage);
    /*! All visits of \a vehicleId become those of \a into. */
    bool mergeVehicle(qint64 vehicleId, qint64 into, QString *errorMessage);
    /*! Gives a visit to another vehicle, or to a new one of its own; returns the vehicle. */
    std::optional<qint64> moveVisit(qint64 visitId, std::optional<qint64> vehicleId, QString *errorMessage);

private:
    /*! Runs \a work, and once more on a new connection when the old one was lost. */
    bool attempt(QString *errorMessage, const std::function<bool()> &work);
    /*! The same for what changes something: all of it or nothing. */
    bool attemptChange(QString *errorMessage, const std::function<bool()> &work);
    bool isReady();

    bool insert(VisitInfo visit, const VisitExtras &extras, const PackedSnapshot &packed, KeptVisit *kept);
    bool findVehicle(VisitInfo *visit, const VisitExtras &extras);
    bool addVerdict(KeptVisit *kept, const std::optional<VisitVerdict> &verdict);

    ArchiveDatabase m_database;
    VisitTable m_visits{m_database};
    VehicleTable m_vehicles{m_database};
};
