// SPDX-License-Identifier: MIT
#include <host/core/hostservices.h>
#include <reader/datareader.h>
#include <interpreter/readlist.h>
#include <simulator/echonode.h>
#include <simulator/simulateddevice.h>
#include <simulator/vehicle.h>
#include <simulator/vehicleonbus.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <ctime>

namespace {

constexpr int nodeCount = 8;
constexpr int exchangeCount = nodeCount * readListLength;

/*! CPU time of the whole process in seconds. */
double cpuTime()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

/*! A vehicle whose nodes have every entry that is read. \a heartbeatMs is their heartbeat period. */
Simulator::VehicleDescription fullVehicle(quint16 heartbeatMs)
{
    Simulator::VehicleDescription vehicle;
    vehicle.name = QStringLiteral("bench");
    for (quint8 id = 1; id <= nodeCount; ++id) {
        Simulator::NodeDescription node;
        node.id = id;
        node.heartbeatMs = heartbeatMs;
        for (const ReadGroup group : {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3,
                                      ReadGroup::Group4, ReadGroup::Group5}) {
            for (const ReadEntry &entry : readListGroup(group)) {
                const auto type = static_cast<CanOpen::DataType>(entry.dataType);
                CanOpen::ObjectEntry object;
                object.type = type;
                object.data = CanOpen::encodeValue(type, QVariant(5)).value_or(QByteArray());
                node.dictionary.insert(CanOpen::ObjectKey{entry.index, entry.subIndex}, object);
            }
        }
        vehicle.nodes.append(node);
    }
    return vehicle;
}

/*! Writes a frame, reads the answer, and so on: what the bus and QCanBusDevice cost without any protocol. */
class PingPong : public QObject
{
public:
    PingPong()
        : m_bus(std::make_shared<Simulator::SimulatedBus>(0))
        , m_echo(m_bus.get(), QCanBusFrame(0x581, QByteArray(8, '\0')))
        , m_device(m_bus)
    {
        connect(&m_device, &QCanBusDevice::framesReceived, this, &PingPong::handleFrames);
        m_device.connectDevice();
    }

    void run(int exchanges)
    {
        m_left = exchanges;
        QEventLoop loop;
        m_loop = &loop;
        send();
        loop.exec();
    }

private:
    void send() { m_device.writeFrame(QCanBusFrame(0x601, QByteArray(8, '\0'))); }

    void handleFrames()
    {
        while (m_device.framesAvailable() > 0) {
            benchmark::DoNotOptimize(m_device.readFrame());
            if (--m_left == 0) {
                m_loop->quit();
                return;
            }
            send();
        }
    }

    std::shared_ptr<Simulator::SimulatedBus> m_bus;
    Simulator::EchoNode m_echo;
    Simulator::SimulatedCanDevice m_device;
    QEventLoop *m_loop = nullptr;
    int m_left = 0;
};

/*! The plug-in's reader on the host's services, on a bus with a simulated vehicle. */
class Read
{
public:
    Read(int bitRate, quint16 heartbeatMs)
        : m_bus(std::make_shared<Simulator::SimulatedBus>(bitRate))
        , m_vehicle(fullVehicle(heartbeatMs))
        , m_vehicleOnBus(&m_vehicle, m_bus.get())
    {
        m_vehicle.start();
        m_services.bus().setDeviceFactory(
            [this](const QString &, const QString &, QString *) -> QCanBusDevice * {
                return new Simulator::SimulatedCanDevice(m_bus);
            });
        BusSettings settings;
        settings.address.plugin = QStringLiteral("simulated");
        settings.address.interfaceName = QStringLiteral("bench");
        QString error;
        if (!m_services.bus().connectToBus(settings, &error))
            qFatal("%s", qPrintable(error));
        m_reader.setSdoClient(m_services.getSdoClient());
        m_reader.setReceiverHub(m_services.getCanReceiverHub());
        m_reader.setSecondarySdoClient(m_services.getSecondarySdoClient());
    }

    /*! Finds the nodes; ends the detection as soon as all were heard. */
    void detect()
    {
        m_reader.startReading();
        QEventLoop loop;
        while (m_reader.progress().nodesFound < nodeCount)
            loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }

    void readAll()
    {
        m_reader.handleHBdetectionTimeout();
        finish();
    }

    /*! Waits for the end of the run. */
    void finish()
    {
        QEventLoop loop;
        QObject::connect(&m_reader, &DataReader::done, &loop, [this, &loop] {
            if (!m_reader.isReading())
                loop.quit();
        });
        loop.exec();
    }

    void start() { m_reader.startReading(); }
    int valueCount() const
    {
        return m_reader.node(nodeCount).value(0x6311, 7).has_value() ? exchangeCount : 0;
    }

private:
    std::shared_ptr<Simulator::SimulatedBus> m_bus;
    Simulator::Vehicle m_vehicle;
    Simulator::VehicleOnBus m_vehicleOnBus;
    HostServices m_services;
    DataReader m_reader;
};

void pingPong(benchmark::State &state)
{
    PingPong pingPong;
    for (auto _ : state)
        pingPong.run(exchangeCount);
    state.SetItemsProcessed(state.iterations() * exchangeCount);
}
BENCHMARK(pingPong)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

/*! A read of eight nodes without its detection time, and the same number of bare exchanges beside it. */
void readEightNodes(benchmark::State &state)
{
    PingPong pingPong;
    Read read(0, 50); // soon detected
    double readCpu = 0;
    double pingPongCpu = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const double beforePingPong = cpuTime();
        pingPong.run(exchangeCount);
        pingPongCpu += cpuTime() - beforePingPong;
        read.detect();
        const double before = cpuTime();
        state.ResumeTiming();
        read.readAll();
        readCpu += cpuTime() - before;
        if (read.valueCount() != exchangeCount)
            state.SkipWithError("the read did not come to its end");
    }
    state.SetItemsProcessed(state.iterations() * exchangeCount);
    state.counters["cpu_us_per_exchange"] = readCpu * 1e6 / double(state.iterations() * exchangeCount);
    state.counters["cpu_to_ping_pong"] = readCpu / pingPongCpu;
}
BENCHMARK(readEightNodes)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

/*! A whole read of eight nodes on the bus at 250 kbit/s, with its detection of 2 s. Two frames of 0.48 ms
 *  each go over the wire for an exchange.
 */
void readEightNodesPaced(benchmark::State &state)
{
    constexpr double ideal = 2.0 + exchangeCount * 0.96e-3; // seconds
    double longest = 0;
    for (auto _ : state) {
        Read read(250000, 1000);
        timespec before{};
        timespec after{};
        clock_gettime(CLOCK_MONOTONIC, &before);
        read.start();
        read.finish();
        clock_gettime(CLOCK_MONOTONIC, &after);
        if (read.valueCount() != exchangeCount)
            state.SkipWithError("the read did not come to its end");
        longest = std::max(longest, double(after.tv_sec - before.tv_sec)
                                        + double(after.tv_nsec - before.tv_nsec) * 1e-9);
    }
    state.counters["to_wire_time"] = longest / ideal;
}
BENCHMARK(readEightNodesPaced)->Unit(benchmark::kMillisecond)->Iterations(3)->MeasureProcessCPUTime();

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
