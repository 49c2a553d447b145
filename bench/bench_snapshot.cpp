// SPDX-License-Identifier: MIT
#include <host/core/hostservices.h>
#include <host/core/snapshotrun.h>
#include <interpreter/readlist.h>
#include <reader/datareader.h>
#include <simulator/simulateddevice.h>
#include <simulator/vehicle.h>
#include <simulator/vehicleonbus.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>

namespace {

constexpr quint8 nodeCount = 14;
constexpr int answerMs = 5;
constexpr int bitRate = 250000;   // bit/s
constexpr double frameBits = 120; // of an SDO frame

CanOpen::ObjectEntry entryOf(CanOpen::DataType type, const QVariant &value)
{
    CanOpen::ObjectEntry entry;
    entry.type = type;
    entry.data = CanOpen::encodeValue(type, value).value_or(QByteArray());
    return entry;
}

/*! Nodes that have all that a quick snapshot asks for and take 5 ms for each answer. */
Simulator::VehicleDescription slowVehicle(int deadNode, quint16 heartbeatMs)
{
    Simulator::VehicleDescription vehicle;
    for (quint8 id = 1; id <= nodeCount; ++id) {
        Simulator::NodeDescription node;
        node.id = id;
        node.heartbeatMs = heartbeatMs;
        node.bootUp = false;
        for (const ReadGroup group : {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3,
                                      ReadGroup::Group4, ReadGroup::Group5}) {
            for (const ReadEntry &entry : readListGroup(group))
                node.dictionary.insert({entry.index, entry.subIndex},
                                       entryOf(static_cast<CanOpen::DataType>(entry.dataType), 5));
        }
        for (const quint16 index : {quint16(0x1008), quint16(0x1009), quint16(0x100A)})
            node.dictionary.insert({index, 0},
                                   entryOf(CanOpen::DataType::VisibleString, QStringLiteral("DX-Pack 2")));
        Simulator::Faults::SdoDelay delay;
        delay.delay = std::chrono::milliseconds(answerMs);
        node.faults.append(Simulator::Fault(delay));
        if (id == deadNode)
            node.faults.append(Simulator::Fault(Simulator::Faults::Silent()));
        vehicle.nodes.append(node);
    }
    return vehicle;
}

/*! The vehicle on a bus at its pace, and the host's services. */
class Bench
{
public:
    explicit Bench(int deadNode = 0, quint16 heartbeatMs = 0)
        : m_bus(std::make_shared<Simulator::SimulatedBus>(bitRate))
        , m_vehicle(slowVehicle(deadNode, heartbeatMs))
        , m_vehicleOnBus(&m_vehicle, m_bus.get())
    {
        m_vehicle.start();
        m_services.bus().setDeviceFactory(
            [this](const QString &, const QString &, QString *) -> QCanBusDevice * {
                return new Simulator::SimulatedCanDevice(m_bus);
            });
        BusSettings settings;
        settings.address = {QStringLiteral("simulated"), QStringLiteral("bench")};
        QString error;
        if (!m_services.bus().connectToBus(settings, &error))
            qFatal("%s", qPrintable(error));
    }

    /*! Returns the seconds. */
    double takeSnapshot()
    {
        SnapshotRun run(&m_services.bus());
        SnapshotOrder order;
        order.scope = SnapshotScope::Quick;
        order.sharePercent = BusShare::everything;
        for (quint8 id = 1; id <= nodeCount; ++id)
            order.nodeIds.append(id);
        QEventLoop loop;
        QObject::connect(&run, &SnapshotRun::finished, &loop, &QEventLoop::quit);
        QElapsedTimer clock;
        clock.start();
        run.start(order);
        loop.exec();
        const double seconds = double(clock.nsecsElapsed()) / 1e9;
        m_snapshot = run.snapshot();
        return seconds;
    }

    /*! Reads the same nodes one after the other, as the overview does; without the time of the detection. */
    double readSerially()
    {
        DataReader reader;
        reader.setSdoClient(m_services.getSdoClient());
        reader.setReceiverHub(m_services.getCanReceiverHub());
        reader.setSecondarySdoClient(m_services.getSecondarySdoClient());
        reader.startReading();
        QEventLoop loop;
        while (reader.progress().nodesFound < nodeCount)
            loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        QElapsedTimer clock;
        clock.start();
        reader.handleHBdetectionTimeout();
        while (reader.isReading())
            loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        return double(clock.nsecsElapsed()) / 1e9;
    }

    const Snapshot &snapshot() const { return m_snapshot; }
    /*! The time of all frames on the wire, in seconds. */
    double wireTime() const { return double(m_bus->framesCarried()) * frameBits / bitRate; }
    /*! What a node takes when it is asked alone, with its frames, in seconds. */
    double nodeTime() const
    {
        const double frames = double(m_bus->framesCarried()) / nodeCount;
        return frames / 2 * answerMs / 1000.0 + frames * frameBits / bitRate;
    }

private:
    std::shared_ptr<Simulator::SimulatedBus> m_bus;
    Simulator::Vehicle m_vehicle;
    Simulator::VehicleOnBus m_vehicleOnBus;
    HostServices m_services;
    Snapshot m_snapshot;
};

/*! A quick snapshot, to what the bus or the slowest node needs at least. */
void quickSnapshot(benchmark::State &state)
{
    double longest = 0;
    for (auto _ : state) {
        Bench bench;
        const double seconds = bench.takeSnapshot();
        if (!bench.snapshot().isComplete() || bench.snapshot().valueCount() != nodeCount * 203)
            state.SkipWithError("the snapshot is not complete");
        longest = std::max(longest, seconds / std::max(bench.wireTime(), bench.nodeTime()));
        state.counters["seconds"] = seconds;
        state.counters["wire_seconds"] = bench.wireTime();
        state.counters["node_seconds"] = bench.nodeTime();
    }
    state.counters["to_ideal"] = longest;
}
BENCHMARK(quickSnapshot)->Unit(benchmark::kMillisecond)->Iterations(3);

/*! The same entries one node after the other, as the overview reads them. */
void serialRead(benchmark::State &state)
{
    for (auto _ : state) {
        Bench bench(0, 500);
        state.counters["seconds"] = bench.readSerially();
    }
}
BENCHMARK(serialRead)->Unit(benchmark::kMillisecond)->Iterations(1);

/*! A quick snapshot with one dead node, and how much more that takes. */
void quickSnapshotWithDeadNode(benchmark::State &state)
{
    Bench healthy;
    const double healthySeconds = healthy.takeSnapshot();
    double longest = 0;
    for (auto _ : state) {
        Bench bench(7);
        longest = std::max(longest, bench.takeSnapshot() - healthySeconds);
        if (bench.snapshot().find(7)->end != SnapshotEnd::Silent)
            state.SkipWithError("the dead node is alive");
    }
    state.counters["more_seconds"] = longest;
}
BENCHMARK(quickSnapshotWithDeadNode)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
