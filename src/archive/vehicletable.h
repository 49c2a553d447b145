// SPDX-License-Identifier: MIT
#pragma once

#include "archivedatabase.h"
#include "vehiclerecognition.h"
#include "visit.h"

#include <QCoreApplication>

/*! The vehicles of an archive. Functions as those of VisitTable. */
class VehicleTable
{
    Q_DECLARE_TR_FUNCTIONS(VehicleTable)

public:
    /*! \a database must outlive this. */
    explicit VehicleTable(ArchiveDatabase &database)
        : m_database(database)
    {
    }

    /*! The vehicle that a new visit belongs to, by its components; a new one when it is not known. */
    bool findOrMake(const VisitInfo &visit, qint64 *vehicleId);
    bool make(const VisitInfo &visit, qint64 *vehicleId);

    bool read(const QString &text, QVector<VehicleInfo> *vehicles);
    /*! A vehicle that is not there is an error. */
    bool check(qint64 vehicleId);

    bool rename(qint64 vehicleId, const QString &name);
    /*! Does nothing for a vehicle that has a name. */
    bool nameFirst(qint64 vehicleId, const QString &name);
    bool merge(qint64 vehicleId, qint64 into);
    /*! Deletes a vehicle that has no visit. */
    bool dropEmpty(qint64 vehicleId);

private:
    bool readNames(qint64 vehicleId, QString *name, QString *label);
    bool readKnown(const VehicleDevices &devices, QVector<KnownVehicle> *known);
    bool fill(const VehicleDevices &devices, KnownVehicle *vehicle);
    bool readLatest(KnownVehicle *vehicle);
    bool failMissing(qint64 vehicleId);

    ArchiveDatabase &m_database;
};
