// SPDX-License-Identifier: MIT
#include "archivebrowser.h"

#include <archive/archivetransfer.h>

#include <QDir>

#include <algorithm>
#include <utility>

namespace {

using Two = std::optional<std::pair<Snapshot, Snapshot>>;

Two loadBoth(Archive &archive, qint64 earlierId, qint64 laterId, QString *error)
{
    const std::optional<Snapshot> earlier = archive.loadWithNotes(earlierId, error);
    const std::optional<Snapshot> later = earlier ? archive.loadWithNotes(laterId, error) : std::nullopt;
    if (!later)
        return std::nullopt;
    return earlier->time <= later->time ? std::make_pair(*earlier, *later) : std::make_pair(*later, *earlier);
}

} // namespace

ArchiveBrowser::ArchiveBrowser(VehicleRecords *records, QObject *parent)
    : QObject(parent)
    , m_records(records)
{
    connect(records, &VehicleRecords::changed, this, &ArchiveBrowser::askAnew);
    connect(records, &VehicleRecords::openFailed, this, &ArchiveBrowser::setProblem);
}

void ArchiveBrowser::start()
{
    if (std::exchange(m_isStarted, true))
        return;
    refresh();
}

void ArchiveBrowser::askAnew()
{
    if (m_isStarted)
        refresh();
}

void ArchiveBrowser::search(const QString &text)
{
    m_text = text;
    refresh();
}

void ArchiveBrowser::refresh()
{
    m_isSearching = true;
    m_records->archive().ask(
        this, [text = m_text](Archive &archive, QString *error) { return archive.vehicles(text, error); },
        [this, number = ++m_searches](const std::optional<QVector<VehicleInfo>> &vehicles,
                                      const QString &error) {
            if (number != m_searches)
                return;
            m_isSearching = false;
            setProblem(error);
            m_vehicles = vehicles.value_or(QVector<VehicleInfo>());
            emit vehiclesChanged();
            const bool isThere
                = std::any_of(m_vehicles.cbegin(), m_vehicles.cend(),
                              [this](const VehicleInfo &info) { return info.id == m_vehicle; });
            chooseVehicle(isThere ? m_vehicle : (m_vehicles.isEmpty() ? 0 : m_vehicles.first().id));
        });
}

void ArchiveBrowser::chooseVehicle(qint64 vehicleId)
{
    if (vehicleId != m_vehicle) {
        m_visits.clear();
        m_trend.clear();
        m_trendProblem.clear();
    }
    m_vehicle = vehicleId;
    emit visitsChanged();
    emit trendChanged();
    if (vehicleId == 0)
        return;
    askForVisits();
    askForTrend();
}

void ArchiveBrowser::askForVisits()
{
    VisitQuery query;
    query.vehicleId = m_vehicle;
    query.limit = mostVisits;
    m_records->archive().ask(
        this, [query](Archive &archive, QString *error) { return archive.visits(query, error); },
        [this, vehicle = m_vehicle](const std::optional<QVector<VisitInfo>> &visits, const QString &error) {
            if (vehicle != m_vehicle)
                return;
            setProblem(error);
            m_visits = visits.value_or(QVector<VisitInfo>());
            emit visitsChanged();
        });
}

void ArchiveBrowser::chooseTrend(int trendValue)
{
    m_trendValue = trendValue;
    if (m_vehicle != 0)
        askForTrend();
}

void ArchiveBrowser::askForTrend()
{
    const CanOpen::ObjectKey key = TrendValues::key(m_trendValue);
    m_records->archive().ask(
        this,
        [vehicle = m_vehicle, key](Archive &archive, QString *error) {
            return archive.vehicleTrend(vehicle, key, error);
        },
        [this, vehicle = m_vehicle, value = m_trendValue](const std::optional<ValueTrend> &trend,
                                                          const QString &error) {
            if (vehicle != m_vehicle || value != m_trendValue)
                return;
            m_trend = trend ? trend->points : QVector<TrendPoint>();
            m_trendProblem = trend ? trend->problems.join(QLatin1Char(' ')) : error;
            emit trendChanged();
        });
}

void ArchiveBrowser::load(qint64 visitId, const TakeSnapshot &take)
{
    m_records->archive().ask(
        this, [visitId](Archive &archive, QString *error) { return archive.loadWithNotes(visitId, error); },
        [this, take](const std::optional<Snapshot> &snapshot, const QString &error) {
            if (snapshot)
                take(*snapshot);
            else
                emit failed(error);
        });
}

void ArchiveBrowser::loadTwo(qint64 visitId, qint64 otherId, const TakeTwo &take)
{
    m_records->archive().ask(
        this,
        [visitId, otherId](Archive &archive, QString *error) {
            return loadBoth(archive, otherId, visitId, error);
        },
        [this, take](const Two &both, const QString &error) {
            if (both)
                take(both->first, both->second);
            else
                emit failed(error);
        });
}

void ArchiveBrowser::loadWithPrevious(qint64 visitId, const TakeTwo &take)
{
    m_records->archive().ask(
        this,
        [visitId](Archive &archive, QString *error) -> Two {
            const std::optional<qint64> previous = archive.previousVisit(visitId, error);
            return previous && *previous != 0 ? loadBoth(archive, *previous, visitId, error) : std::nullopt;
        },
        [this, take](const Two &both, const QString &error) {
            if (both)
                take(both->first, both->second);
            else
                emit failed(error.isEmpty() ? tr("This is the first visit of the vehicle.") : error);
        });
}

/*! Tells everybody when \a work has changed the archive. */
template<typename Work>
void ArchiveBrowser::change(Work work, const QString &done)
{
    m_records->archive().ask(this, work, [this, done](bool isDone, const QString &error) {
        if (!isDone) {
            emit failed(error);
            return;
        }
        m_records->noteChange();
        if (!done.isEmpty())
            emit succeeded(done);
    });
}

void ArchiveBrowser::setNotes(qint64 visitId, const SnapshotNotes &notes)
{
    change([visitId, notes](Archive &archive,
                            QString *error) { return archive.setNotes(visitId, notes, error); },
           QString());
}

void ArchiveBrowser::renameVehicle(qint64 vehicleId, const QString &name)
{
    change([vehicleId, name](Archive &archive,
                             QString *error) { return archive.renameVehicle(vehicleId, name, error); },
           QString());
}

void ArchiveBrowser::remove(const QVector<qint64> &visitIds)
{
    change(
        [visitIds](Archive &archive, QString *error) {
            return std::all_of(visitIds.cbegin(), visitIds.cend(),
                               [&](qint64 id) { return archive.remove(id, error); });
        },
        tr("%n visit(s) deleted.", nullptr, visitIds.size()));
}

void ArchiveBrowser::exportVisit(qint64 visitId, const QString &fileName)
{
    change(
        [visitId, fileName](Archive &archive, QString *error) {
            return ArchiveTransfer::exportToFile(archive, visitId, fileName, error);
        },
        tr("Saved: %1").arg(QDir::toNativeSeparators(fileName)));
}

void ArchiveBrowser::importFile(const QString &fileName)
{
    m_records->archive().ask(
        this, [fileName](Archive &archive, QString *) { return ArchiveTransfer::import(fileName, archive); },
        [this](const ArchiveTransfer::Result &result, const QString &) {
            const auto isNew = [](const KeptVisit &visit) { return visit.isNew; };
            const auto added = std::count_if(result.visits.cbegin(), result.visits.cend(), isNew);
            m_records->noteChange();
            if (!result.problems.isEmpty())
                emit failed(result.problems.join(QLatin1Char('\n')));
            else if (added == 0)
                emit succeeded(tr("The archive has all of it already."));
            else
                emit succeeded(tr("%n visit(s) added.", nullptr, static_cast<int>(added)));
        });
}

void ArchiveBrowser::setProblem(const QString &problem)
{
    if (std::exchange(m_problem, problem) != problem)
        emit problemChanged();
}
