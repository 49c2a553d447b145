// SPDX-License-Identifier: MIT
#include "archive.h"

#include "archiveschema.h"
#include "packedsnapshot.h"
#include "visitrows.h"

namespace {

VisitInfo visitOf(const Snapshot &snapshot, const VisitExtras &extras, const QDateTime &now)
{
    VisitInfo visit;
    visit.time = snapshot.time.isValid() ? snapshot.time : now;
    visit.bus = snapshot.bus;
    visit.program = snapshot.program;
    visit.scope = snapshot.scope;
    visit.isComplete = snapshot.isComplete();
    visit.valueCount = snapshot.valueCount();
    visit.gapCount = snapshot.gapCount();
    visit.notes = extras.notes.value_or(snapshot.notes);
    visit.verdict = extras.verdict;
    visit.components = VisitRows::componentsOf(snapshot);
    return visit;
}

} // namespace

bool Archive::open(const ArchiveAddress &address, Missing missing, QString *errorMessage)
{
    if (m_database.open(address, missing) && ArchiveSchema::prepare(m_database))
        return true;
    *errorMessage = m_database.errorString();
    m_database.close();
    return false;
}

bool Archive::isReady()
{
    if (m_database.isOpen())
        return true;
    // What was there and is not any more is not made anew behind the user's back.
    if (m_database.open(ArchiveAddress(m_database.address()), Missing::Refuse)
        && ArchiveSchema::prepare(m_database))
        return true;
    m_database.close(); // so that the next call looks again
    return false;
}

bool Archive::attempt(QString *errorMessage, const std::function<bool()> &work)
{
    constexpr int attempts = 2;
    for (int i = 0; i < attempts; ++i) {
        m_database.clearError();
        if (isReady() && work())
            return true;
        if (!m_database.isLost())
            break;
        m_database.close();
    }
    *errorMessage = m_database.errorString();
    return false;
}

bool Archive::attemptChange(QString *errorMessage, const std::function<bool()> &work)
{
    return attempt(errorMessage, [this, &work] {
        ArchiveTransaction transaction(m_database);
        return transaction.hasBegun() && work() && transaction.commit();
    });
}

std::optional<KeptVisit> Archive::add(const Snapshot &snapshot, const std::optional<VisitVerdict> &verdict,
                                      QString *errorMessage, const QDateTime &now)
{
    VisitExtras extras;
    extras.verdict = verdict;
    return add(snapshot, extras, errorMessage, now);
}

std::optional<KeptVisit> Archive::addJudged(const Snapshot &snapshot,
                                            const std::optional<VisitVerdict> &verdict, QString *errorMessage)
{
    const std::optional<KeptVisit> kept = add(snapshot, verdict, errorMessage);
    const bool isOlder = kept && verdict && !kept->isNew;
    if (isOlder && !setVerdict(kept->visitId, *verdict, errorMessage))
        return std::nullopt;
    return kept;
}

std::optional<KeptVisit> Archive::add(const Snapshot &snapshot, const VisitExtras &extras,
                                      QString *errorMessage, const QDateTime &now)
{
    const std::optional<PackedSnapshot> packed = PackedSnapshot::pack(snapshot);
    if (!packed) {
        *errorMessage
            = tr("The snapshot is too large for the archive, or holds what no file can. Save it as a "
                 "file.");
        return std::nullopt;
    }
    VisitInfo visit = visitOf(snapshot, extras, now);
    visit.fingerprint = packed->fingerprint;
    KeptVisit kept;
    const bool isDone = attemptChange(errorMessage, [&] {
        if (!m_visits.findFingerprint(packed->fingerprint, &kept.visitId))
            return false;
        kept.isNew = kept.visitId == 0;
        return kept.isNew ? insert(visit, extras, *packed, &kept) : addVerdict(&kept, extras.verdict);
    });
    return isDone ? std::optional<KeptVisit>(kept) : std::nullopt;
}

bool Archive::insert(VisitInfo visit, const VisitExtras &extras, const PackedSnapshot &packed,
                     KeptVisit *kept)
{
    if (!findVehicle(&visit, extras) || !m_visits.insert(&visit, packed))
        return false;
    kept->visitId = visit.id;
    kept->vehicleId = visit.vehicleId;
    return true;
}

bool Archive::findVehicle(VisitInfo *visit, const VisitExtras &extras)
{
    visit->vehicleId = extras.vehicleId.value_or(0);
    const bool isThere = extras.vehicleId ? m_vehicles.check(visit->vehicleId)
                                          : m_vehicles.findOrMake(*visit, &visit->vehicleId);
    const QString name = extras.vehicleName.isEmpty() ? visit->notes.vehicle : extras.vehicleName;
    return isThere && m_vehicles.nameFirst(visit->vehicleId, name);
}

bool Archive::addVerdict(KeptVisit *kept, const std::optional<VisitVerdict> &verdict)
{
    VisitInfo visit;
    if (!m_visits.read(kept->visitId, &visit))
        return false;
    kept->vehicleId = visit.vehicleId;
    return !verdict || visit.verdict || m_visits.setVerdict(kept->visitId, *verdict);
}

std::optional<Snapshot> Archive::load(qint64 visitId, QString *errorMessage)
{
    Snapshot snapshot;
    const bool isDone = attempt(errorMessage, [&] {
        VisitInfo visit;
        return m_visits.read(visitId, &visit) && m_visits.readSnapshot(visit, &snapshot);
    });
    return isDone ? std::optional<Snapshot>(snapshot) : std::nullopt;
}

std::optional<Snapshot> Archive::loadWithNotes(qint64 visitId, QString *errorMessage)
{
    std::optional<Snapshot> snapshot = load(visitId, errorMessage);
    const std::optional<VisitInfo> now = snapshot ? visit(visitId, errorMessage) : std::nullopt;
    if (!now)
        return std::nullopt;
    snapshot->notes = now->notes;
    return snapshot;
}

std::optional<QVector<VisitInfo>> Archive::visits(const VisitQuery &query, QString *errorMessage)
{
    QVector<VisitInfo> visits;
    const bool isDone = attempt(errorMessage, [&] {
        visits.clear();
        return m_visits.read(query, &visits);
    });
    return isDone ? std::optional<QVector<VisitInfo>>(visits) : std::nullopt;
}

std::optional<VisitInfo> Archive::visit(qint64 visitId, QString *errorMessage)
{
    VisitInfo visit;
    const bool isDone = attempt(errorMessage, [&] { return m_visits.read(visitId, &visit); });
    return isDone ? std::optional<VisitInfo>(visit) : std::nullopt;
}

std::optional<qint64> Archive::previousVisit(qint64 visitId, QString *errorMessage)
{
    qint64 previous = 0;
    const bool isDone = attempt(errorMessage, [&] {
        VisitInfo visit;
        return m_visits.read(visitId, &visit) && m_visits.readPrevious(visit, &previous);
    });
    return isDone ? std::optional<qint64>(previous) : std::nullopt;
}

std::optional<QVector<VehicleInfo>> Archive::vehicles(const QString &text, QString *errorMessage)
{
    QVector<VehicleInfo> vehicles;
    const bool isDone = attempt(errorMessage, [&] {
        vehicles.clear();
        return m_vehicles.read(text, &vehicles);
    });
    return isDone ? std::optional<QVector<VehicleInfo>>(vehicles) : std::nullopt;
}

std::optional<ValueTrend> Archive::vehicleTrend(qint64 vehicleId, CanOpen::ObjectKey key,
                                                QString *errorMessage)
{
    ValueTrend trend;
    const bool isDone = attempt(errorMessage, [&] {
        trend = ValueTrend();
        return m_vehicles.check(vehicleId) && m_visits.readVehicleTrend(vehicleId, key, &trend);
    });
    return isDone ? std::optional<ValueTrend>(trend) : std::nullopt;
}

std::optional<ValueTrend> Archive::deviceTrend(const QString &deviceKey, CanOpen::ObjectKey key,
                                               QString *errorMessage)
{
    ValueTrend trend;
    const bool isDone = attempt(errorMessage, [&] {
        trend = ValueTrend();
        return m_visits.readDeviceTrend(deviceKey, key, &trend);
    });
    return isDone ? std::optional<ValueTrend>(trend) : std::nullopt;
}

bool Archive::setNotes(qint64 visitId, const SnapshotNotes &notes, QString *errorMessage)
{
    return attemptChange(errorMessage, [&] {
        VisitInfo visit;
        if (!m_visits.read(visitId, &visit))
            return false;
        visit.notes = notes;
        return m_visits.setNotes(visit);
    });
}

bool Archive::setVerdict(qint64 visitId, const VisitVerdict &verdict, QString *errorMessage)
{
    return attemptChange(errorMessage, [&] {
        VisitInfo visit;
        return m_visits.read(visitId, &visit) && m_visits.setVerdict(visitId, verdict);
    });
}

bool Archive::remove(qint64 visitId, QString *errorMessage)
{
    return attemptChange(errorMessage, [&] {
        VisitInfo visit;
        return m_visits.read(visitId, &visit) && m_visits.remove(visitId)
               && m_vehicles.dropEmpty(visit.vehicleId);
    });
}

bool Archive::renameVehicle(qint64 vehicleId, const QString &name, QString *errorMessage)
{
    return attemptChange(errorMessage, [&] { return m_vehicles.rename(vehicleId, name); });
}

bool Archive::mergeVehicle(qint64 vehicleId, qint64 into, QString *errorMessage)
{
    return attemptChange(errorMessage, [&] {
        return m_vehicles.check(vehicleId) && m_vehicles.check(into) && m_vehicles.merge(vehicleId, into);
    });
}

std::optional<qint64> Archive::moveVisit(qint64 visitId, std::optional<qint64> vehicleId,
                                         QString *errorMessage)
{
    qint64 target = vehicleId.value_or(0);
    const bool isDone = attemptChange(errorMessage, [&] {
        VisitInfo visit;
        if (!m_visits.read(visitId, &visit))
            return false;
        const bool isThere = vehicleId ? m_vehicles.check(target) : m_vehicles.make(visit, &target);
        return isThere && m_visits.setVehicle(visitId, target) && m_vehicles.dropEmpty(visit.vehicleId);
    });
    return isDone ? std::optional<qint64>(target) : std::nullopt;
}
