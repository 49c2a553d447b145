// SPDX-License-Identifier: MIT
#include "benchwindow.h"

#include <host/pages/checkupsession.h>
#include <interface/dxplugininterface.h>
#include <simulator/simulateddevice.h>
#include <simulator/vehiclefile.h>

#include <QAction>
#include <QCanBusFrame>
#include <QEventLoop>
#include <QPushButton>

namespace {

constexpr int nodeCount = 127;
constexpr int framesPerMillisecond = 8;

} // namespace

Flood::Flood(Simulator::SimulatedBus *bus)
    : m_bus(bus)
{
    m_bus->attach(this);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { sendDue(); });
    m_clock.start();
    m_timer.start(1);
}

Flood::~Flood()
{
    m_bus->detach(this);
}

void Flood::sendDue()
{
    for (const qint64 due = m_clock.elapsed() * framesPerMillisecond; m_sent < due; ++m_sent) {
        const auto cobId = 0x180u + static_cast<quint32>(m_sent % nodeCount) + 1u;
        m_bus->send(this, QCanBusFrame(cobId, QByteArray(8, static_cast<char>(m_sent))), 0,
                    Simulator::SimulatedBus::noQueueLimit);
    }
}

BenchWindow::BenchWindow(const Simulator::VehicleDescription &vehicle)
    : m_bus(std::make_shared<Simulator::SimulatedBus>(0))
    , m_vehicle(vehicle)
    , m_vehicleOnBus(&m_vehicle, m_bus.get())
    , m_session(&m_services)
{
    m_services.bus().setDeviceFactory([this](const QString &, const QString &, QString *) -> QCanBusDevice * {
        return new Simulator::SimulatedCanDevice(m_bus);
    });
    const QStringList errors
        = m_session.loadFolder(QStringLiteral(OVERVIEW_PLUGIN_FOLDER), QStringLiteral("en"));
    if (!errors.isEmpty())
        qFatal("%s", qUtf8Printable(errors.first()));
    m_window = std::make_unique<MainWindow>(&m_services, &m_session);
    m_window->checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
    m_window->checkup().setSharePercent(100);
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

BenchWindow::~BenchWindow()
{
    m_window.reset();
    m_session.shutDown();
    for (const PluginSession::Plugin &plugin : m_session.plugins())
        delete dynamic_cast<QObject *>(plugin.library.plugin);
}

Simulator::VehicleDescription BenchWindow::shipped(const char *name)
{
    QString error;
    const auto vehicle = Simulator::readVehicleFile(
        QStringLiteral(VEHICLE_FOLDER "/%1.json").arg(QLatin1String(name)), &error);
    if (!vehicle)
        qFatal("%s", qUtf8Printable(error));
    return *vehicle;
}

void BenchWindow::pass(qint64 milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(milliseconds), &loop, &QEventLoop::quit);
    loop.exec();
}

void BenchWindow::press(const char *button)
{
    m_window->findChild<QPushButton *>(QLatin1String(button))->click();
}

void BenchWindow::trigger(const char *action)
{
    m_window->findChild<QAction *>(QLatin1String(action))->trigger();
}
