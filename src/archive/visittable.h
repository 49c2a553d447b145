// SPDX-License-Identifier: MIT
#pragma once

#include "archivedatabase.h"
#include "packedsnapshot.h"
#include "visit.h"

#include <QCoreApplication>

/*! The visits of an archive with their components and entries, as rows of its tables. Each function returns false on
 *  error, with the reason in the database's error; those that change belong into a transaction.
 */
class VisitTable
{
    Q_DECLARE_TR_FUNCTIONS(VisitTable)

public:
    /*! \a database must outlive this. */
    explicit VisitTable(ArchiveDatabase &database)
        : m_database(database)
    {
    }

    /*! Puts a visit in and sets its number. */
    bool insert(VisitInfo *visit, const PackedSnapshot &packed);
    /*! The visit with this fingerprint; without one, \a visitId becomes 0. */
    bool findFingerprint(const QString &fingerprint, qint64 *visitId);

    /*! With their components. */
    bool read(const VisitQuery &query, QVector<VisitInfo> *visits);
    /*! A visit that is not there is an error. */
    bool read(qint64 visitId, VisitInfo *visit);
    bool readPrevious(const VisitInfo &visit, qint64 *visitId);
    bool readSnapshot(const VisitInfo &visit, Snapshot *snapshot);
    /*! Damaged visits are left out and told of. */
    bool readVehicleTrend(qint64 vehicleId, CanOpen::ObjectKey key, ValueTrend *trend);
    bool readDeviceTrend(const QString &deviceKey, CanOpen::ObjectKey key, ValueTrend *trend);

    bool setNotes(const VisitInfo &visit);
    bool setVerdict(qint64 visitId, const VisitVerdict &verdict);
    bool setVehicle(qint64 visitId, qint64 vehicleId);
    bool remove(qint64 visitId);

private:
    bool insertVisit(VisitInfo *visit);
    bool insertComponents(const VisitInfo &visit);
    bool insertEntries(qint64 visitId, quint8 node, const QByteArray &data);
    bool readRows(const VisitQuery &query, QVector<VisitInfo> *visits);
    bool readComponents(VisitInfo *first, int count);
    bool readTrend(const QString &condition, const QVariant &value, CanOpen::ObjectKey key,
                   ValueTrend *trend);
    static QString damagedText(qint64 visitId);
    bool failDamaged(qint64 visitId);

    ArchiveDatabase &m_database;
};
