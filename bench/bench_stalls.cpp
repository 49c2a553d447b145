// SPDX-License-Identifier: MIT
// How long the window keeps a click waiting, at worst. The simulated vehicle runs in the same thread and counts too.
#include "stallwatch.h"

#include <host/core/hostservices.h>
#include <host/core/pluginsession.h>
#include <host/mainwindow.h>
#include <interface/dxplugininterface.h>
#include <interpreter/readlist.h>
#include <simulator/simulateddevice.h>
#include <simulator/vehicle.h>
#include <simulator/vehiclefile.h>
#include <simulator/vehicleonbus.h>
#include <store/exchangefile.h>
#include <store/nodestore.h>
#include <tests/support/filedialogdriver.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

namespace {

constexpr int nodeCount = 127;
constexpr int devicesPerNode = 5;
constexpr int framesPerMillisecond = 8;
constexpr qint64 floodTime = 10000; // ms

/*! Sends PDOs of all nodes, 8000 frames a second. */
class Flood : public Simulator::BusParticipant
{
public:
    explicit Flood(Simulator::SimulatedBus *bus)
        : m_bus(bus)
    {
        m_bus->attach(this);
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { sendDue(); });
        m_clock.start();
        m_timer.start(1);
    }
    ~Flood() override { m_bus->detach(this); }
    Q_DISABLE_COPY(Flood)

    void receive(const QCanBusFrame &) override {}
    bool isSimulated() const override { return true; }
    qint64 sent() const { return m_sent; }

private:
    void sendDue()
    {
        for (const qint64 due = m_clock.elapsed() * framesPerMillisecond; m_sent < due; ++m_sent) {
            const auto cobId = 0x180u + static_cast<quint32>(m_sent % nodeCount) + 1u;
            m_bus->send(this, QCanBusFrame(cobId, QByteArray(8, static_cast<char>(m_sent))), 0,
                        Simulator::SimulatedBus::noQueueLimit);
        }
    }

    Simulator::SimulatedBus *m_bus;
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_sent = 0;
};

/*! The whole window on a bus with the shipped vehicle "full-bus". */
class Window
{
public:
    Window()
        : m_bus(std::make_shared<Simulator::SimulatedBus>(0))
        , m_vehicle(loadVehicle())
        , m_vehicleOnBus(&m_vehicle, m_bus.get())
        , m_session(&m_services)
    {
        m_services.bus().setDeviceFactory(
            [this](const QString &, const QString &, QString *) -> QCanBusDevice * {
                return new Simulator::SimulatedCanDevice(m_bus);
            });
        const QStringList errors
            = m_session.loadFolder(QStringLiteral(OVERVIEW_PLUGIN_FOLDER), QStringLiteral("en"));
        if (!errors.isEmpty())
            qFatal("%s", qUtf8Printable(errors.first()));
        m_window = std::make_unique<MainWindow>(&m_services, &m_session);
        m_window->showPlugins();
        m_window->show();
        m_vehicle.start();
        BusSettings settings;
        settings.address.plugin = QStringLiteral("simulated");
        settings.address.interfaceName = QStringLiteral("full-bus");
        QString error;
        if (!m_services.bus().connectToBus(settings, &error))
            qFatal("%s", qUtf8Printable(error));
        pass(500);
    }

    ~Window()
    {
        m_window.reset();
        m_session.shutDown();
        for (const PluginSession::Plugin &plugin : m_session.plugins())
            delete dynamic_cast<QObject *>(plugin.library.plugin);
    }
    Q_DISABLE_COPY(Window)

    /*! Lets the event loop run for \a milliseconds. */
    static void pass(qint64 milliseconds)
    {
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(milliseconds), &loop, &QEventLoop::quit);
        loop.exec();
    }

    void press(const char *button) { m_window->findChild<QPushButton *>(QLatin1String(button))->click(); }
    Simulator::SimulatedBus *bus() { return m_bus.get(); }

private:
    static Simulator::VehicleDescription loadVehicle()
    {
        QString error;
        const auto vehicle
            = Simulator::readVehicleFile(QStringLiteral(VEHICLE_FOLDER "/full-bus.json"), &error);
        if (!vehicle)
            qFatal("%s", qUtf8Printable(error));
        return *vehicle;
    }

    std::shared_ptr<Simulator::SimulatedBus> m_bus;
    Simulator::Vehicle m_vehicle;
    Simulator::VehicleOnBus m_vehicleOnBus;
    HostServices m_services;
    PluginSession m_session;
    std::unique_ptr<MainWindow> m_window;
};

/*! 8000 frames a second for ten seconds. */
void flood(benchmark::State &state)
{
    Window window;
    for (auto _ : state) {
        const Flood flood(window.bus());
        Window::pass(100);
        StallWatch watch;
        Window::pass(floodTime);
        state.counters["longest_ms"] = watch.longest();
        state.counters["frames"] = static_cast<double>(flood.sent());
    }
}
BENCHMARK(flood)->Iterations(1)->Unit(benchmark::kMillisecond);

/*! A read of the vehicle, detection included, with the same flood beside it. */
void readInFlood(benchmark::State &state)
{
    Window window;
    for (auto _ : state) {
        const Flood flood(window.bus());
        Window::pass(100);
        StallWatch watch;
        window.press("btnRead");
        Window::pass(100);
        state.counters["longest_ms"] = watch.longest();
    }
}
BENCHMARK(readInFlood)->Iterations(1)->Unit(benchmark::kMillisecond);

/*! An exchange file of 127 nodes with all entries of the read list and five virtual devices each. */
QString largestFile(const QTemporaryDir &folder)
{
    NodeStore store;
    store.clear();
    for (int node = 1; node <= nodeCount; ++node) {
        const auto nodeId = static_cast<quint8>(node);
        store.appendNode(nodeId);
        for (const ReadGroup group : {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3,
                                      ReadGroup::Group4, ReadGroup::Group5}) {
            for (const ReadEntry &entry : readListGroup(group)) {
                int value = 4 + entry.subIndex;
                if (entry.index == 0x6000)
                    value = entry.subIndex == 0 ? devicesPerNode : 6;
                store.setValue(nodeId, entry.index, entry.subIndex, value);
            }
        }
    }
    const QString fileName = folder.filePath(QStringLiteral("largest.dxxml"));
    saveExchangeFile(fileName, exportToText(store, QDateTime::currentDateTime()));
    return fileName;
}

/*! Tells when a file dialog has been answered: what it does before that is Qt's. */
class DialogEnd : public QObject
{
public:
    explicit DialogEnd(std::function<void()> tell)
        : m_tell(std::move(tell))
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Hide && qobject_cast<QFileDialog *>(object) != nullptr)
            m_tell();
        return false;
    }

private:
    std::function<void()> m_tell;
};

/*! The import of it, from the end of the file dialog to the painted window. */
void importLargestFile(benchmark::State &state)
{
    const QTemporaryDir folder;
    const FileDialogDriver dialogs(largestFile(folder));
    Window window;
    double longest = 0;
    for (auto _ : state) {
        StallWatch watch;
        const DialogEnd dialogEnd([&watch] { watch.reset(); });
        window.press("btnImport");
        Window::pass(100);
        longest = std::max(longest, watch.longest());
    }
    state.counters["longest_ms"] = longest;
}
BENCHMARK(importLargestFile)->Iterations(3)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("bench_stalls"));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
