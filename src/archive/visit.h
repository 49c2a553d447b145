// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <checkup/findings.h>
#include <snapshot/deviceidentity.h>
#include <snapshot/snapshot.h>

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/*! \file
 *  What an archive knows of visits and vehicles, for lists: plain values.
 */

/*! What a check-up said, in numbers. */
struct VisitVerdict
{
    Verdict verdict = Verdict::Incomplete;
    int faults = 0;
    int warnings = 0;
    int notes = 0;
    int notChecked = 0; //!< components with something that was not judged

    static VisitVerdict of(const CheckupResult &result);
};

/*! A device in a visit. */
struct VisitComponent
{
    quint8 nodeId = 0; //!< 1 to 127
    DeviceIdentity identity;

    QString name() const { return identity.displayName(nodeId); }
    QString deviceKey() const { return identity.toKey(); } //!< empty when it is not unique
};

/*! A snapshot that is kept. */
struct VisitInfo
{
    qint64 id = 0; //!< stays the same, and is given to no other visit of the archive
    qint64 vehicleId = 0;
    QString vehicle; //!< its name, or the serial number that it is called by
    QDateTime time;  //!< with the offset of its zone
    QString bus;
    QString program;
    SnapshotScope scope = SnapshotScope::Full;
    bool isComplete = false;
    int valueCount = 0;
    int gapCount = 0;
    QString fingerprint; //!< see SnapshotFile::fingerprint()
    /*! What people wrote, as it is now; the snapshot itself keeps what it had. */
    SnapshotNotes notes;
    std::optional<VisitVerdict> verdict; //!< empty: was not judged
    QVector<VisitComponent> components;  //!< by node
};

struct VehicleInfo
{
    qint64 id = 0;
    QString name;   //!< given by the user; may be empty
    QString called; //!< the name, or a serial number, or "Vehicle 7"
    int visitCount = 0;
    qint64 lastVisit = 0;
    QDateTime lastTime;
    QString lastCustomer;
    std::optional<VisitVerdict> lastVerdict;
};

/*! Which visits are wanted, the newest first; what is not set does not matter. */
struct VisitQuery
{
    /*! Words that all have to be found, in any writing of capitals: in vehicle, customer, technician, notes, dates
     *  ("2026-09-03"), names of devices, serial and part numbers.
     */
    QString text;
    std::optional<qint64> vehicleId;
    QString deviceKey; //!< see DeviceIdentity::toKey()
    QDateTime from;
    QDateTime to;  //!< also of it
    int limit = 0; //!< 0: all
    int offset = 0;
};

/*! A value at one visit. */
struct TrendPoint
{
    qint64 visitId = 0;
    QDateTime time;
    quint8 nodeId = 0;
    DeviceIdentity identity;
    QVariant value;
};

/*! A value over the visits. */
struct ValueTrend
{
    QVector<TrendPoint> points; //!< the oldest first
    QStringList problems;       //!< sentences, one for each visit that cannot be read and is left out
};

/*! What is known of a snapshot beside what it says itself, when it is kept. */
struct VisitExtras
{
    std::optional<VisitVerdict> verdict;
    /*! In the place of the snapshot's own. */
    std::optional<SnapshotNotes> notes;
    /*! The vehicle it belongs to, which is not looked for then. */
    std::optional<qint64> vehicleId;
    QString vehicleName; //!< for a vehicle that has none
};

/*! What became of a snapshot that was to be kept. */
struct KeptVisit
{
    qint64 visitId = 0;
    qint64 vehicleId = 0;
    bool isNew = true; //!< false: the archive had it already
};

Q_DECLARE_METATYPE(VisitInfo)
Q_DECLARE_METATYPE(VehicleInfo)
Q_DECLARE_METATYPE(TrendPoint)
Q_DECLARE_METATYPE(KeptVisit)
