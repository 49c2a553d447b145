// SPDX-License-Identifier: MIT
#include "manyvisits.h"

#include <archive/archive.h>
#include <snapshot/snapshotfile.h>
#include <tests/support/postgresserver.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <memory>

namespace {

constexpr CanOpen::ObjectKey batteryState{0x6164, 2};

enum Place { File, Server };

VehicleSnapshots &snapshots()
{
    static VehicleSnapshots made(QStringLiteral("full-bus"));
    return made;
}

/*! An archive with all visits, made when it is asked for first. */
class FilledArchive
{
public:
    explicit FilledArchive(Place place);

    Archive &archive() { return m_archive; }
    bool isGood() const { return m_error.isEmpty(); }
    const QString &error() const { return m_error; }
    double bytesOfVisit();

private:
    QString address(Place place);

    ManyVisits m_visits;
    PostgresServer m_server;
    QString m_database;
    Archive m_archive;
    QString m_error;
};

FilledArchive::FilledArchive(Place place)
{
    const auto parsed = ArchiveAddress::parse(address(place), &m_error);
    if (parsed && m_archive.open(*parsed, Archive::Missing::Make, &m_error))
        ManyVisits::fill(&m_archive, &m_error);
}

QString FilledArchive::address(Place place)
{
    if (place == File)
        return m_visits.fileName();
    if (!PostgresServer::isInstalled() || !m_server.start())
        return QString();
    m_database = m_server.createDatabase();
    return m_server.address(m_database);
}

double FilledArchive::bytesOfVisit()
{
    const ArchiveAddress &address = m_archive.address();
    if (address.kind() == ArchiveAddress::Kind::File)
        return static_cast<double>(QFileInfo(address.fileName()).size()) / ManyVisits::count();
    ArchiveDatabase database;
    if (!database.open(address, ArchiveDatabase::Missing::Refuse))
        return 0;
    std::optional<QSqlQuery> size
        = database.run(QStringLiteral("SELECT pg_database_size(current_database())"));
    return size && database.next(*size) ? size->value(0).toDouble() / ManyVisits::count() : 0;
}

std::unique_ptr<FilledArchive> archives[2];

FilledArchive &filled(Place place)
{
    if (!archives[place])
        archives[place] = std::make_unique<FilledArchive>(place);
    return *archives[place];
}

/*! The archive of a benchmark's argument; null, with the benchmark skipped, when there is none. */
Archive *archiveOf(benchmark::State &state)
{
    FilledArchive &archive = filled(static_cast<Place>(state.range(0)));
    if (!archive.isGood()) {
        state.SkipWithError(qPrintable(archive.error()));
        return nullptr;
    }
    return &archive.archive();
}

template<typename Work>
void measure(benchmark::State &state, Work work)
{
    Archive *archive = archiveOf(state);
    if (archive == nullptr)
        return;
    QString error;
    for (auto _ : state) {
        if (!work(*archive, &error)) {
            state.SkipWithError(qPrintable(QStringLiteral("nothing found: ") + error));
            return;
        }
    }
}

/*! One that is there, however few there are. */
int soughtVehicle()
{
    return std::min(3, (ManyVisits::count() - 1) / ManyVisits::visitsOfVehicle);
}

void addVisit(benchmark::State &state)
{
    static int number = ManyVisits::visitsOfVehicle;
    measure(state, [&state](Archive &archive, QString *error) {
        state.PauseTiming();
        const Snapshot snapshot = snapshots().visit(7, number++);
        state.ResumeTiming();
        return archive.add(snapshot, std::nullopt, error).has_value();
    });
    state.counters["bytes_a_visit"] = filled(static_cast<Place>(state.range(0))).bytesOfVisit();
}
BENCHMARK(addVisit)->Arg(File)->Arg(Server)->Unit(benchmark::kMillisecond)->UseRealTime();

void listVehicles(benchmark::State &state)
{
    measure(state, [](Archive &archive, QString *error) {
        const auto vehicles = archive.vehicles(QString(), error);
        return vehicles && !vehicles->isEmpty();
    });
}
BENCHMARK(listVehicles)->Arg(File)->Arg(Server)->Unit(benchmark::kMillisecond)->UseRealTime();

void listNewestHundred(benchmark::State &state)
{
    VisitQuery query;
    query.limit = 100;
    measure(state, [&query](Archive &archive, QString *error) {
        const auto visits = archive.visits(query, error);
        return visits && !visits->isEmpty();
    });
}
BENCHMARK(listNewestHundred)->Arg(File)->Arg(Server)->Unit(benchmark::kMillisecond)->UseRealTime();

void listAll(benchmark::State &state)
{
    measure(state, [](Archive &archive, QString *error) {
        const auto visits = archive.visits({}, error);
        return visits && visits->size() >= ManyVisits::count();
    });
}
BENCHMARK(listAll)->Arg(File)->Arg(Server)->Unit(benchmark::kMillisecond)->UseRealTime();

void findSerialNumber(benchmark::State &state)
{
    VisitQuery query;
    query.text = QString::number(2000 + soughtVehicle()); // its battery
    measure(state, [&query](Archive &archive, QString *error) {
        const auto visits = archive.visits(query, error);
        return visits && !visits->isEmpty();
    });
}
BENCHMARK(findSerialNumber)->Arg(File)->Arg(Server)->Unit(benchmark::kMillisecond)->UseRealTime();

void findDevice(benchmark::State &state)
{
    VisitQuery query;
    query.deviceKey = DeviceIdentity::of(*snapshots().visit(soughtVehicle(), 0).find(2)).toKey();
    measure(state, [&query](Archive &archive, QString *error) {
        const auto visits = archive.visits(query, error);
        return visits && !visits->isEmpty();
    });
}
BENCHMARK(findDevice)->Arg(File)->Arg(Server)->Unit(benchmark::kMillisecond)->UseRealTime();

void loadVisit(benchmark::State &state)
{
    measure(state, [](Archive &archive, QString *error) { return archive.load(1, error).has_value(); });
}
BENCHMARK(loadVisit)->Arg(File)->Arg(Server)->Unit(benchmark::kMillisecond)->UseRealTime();

void followValueOverTwentyVisits(benchmark::State &state)
{
    measure(state, [](Archive &archive, QString *error) {
        const auto trend = archive.vehicleTrend(1, batteryState, error);
        return trend && trend->points.size() >= qMin(ManyVisits::count(), ManyVisits::visitsOfVehicle);
    });
}
BENCHMARK(followValueOverTwentyVisits)->Arg(File)->Arg(Server)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    for (std::unique_ptr<FilledArchive> &archive : archives)
        archive.reset(); // before the application goes
    return 0;
}
