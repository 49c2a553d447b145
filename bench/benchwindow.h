// SPDX-License-Identifier: MIT
#pragma once

#include <host/core/hostservices.h>
#include <host/core/pluginsession.h>
#include <host/mainwindow.h>
#include <simulator/simulatedbus.h>
#include <simulator/vehicle.h>
#include <simulator/vehicleonbus.h>

#include <QElapsedTimer>
#include <QString>
#include <QTimer>

#include <memory>

/*! Sends PDOs of all nodes, 8000 frames a second. */
class Flood : public Simulator::BusParticipant
{
public:
    explicit Flood(Simulator::SimulatedBus *bus);
    ~Flood() override;
    Q_DISABLE_COPY(Flood)

    void receive(const QCanBusFrame &) override {}
    bool isSimulated() const override { return true; }
    qint64 sentCount() const { return m_sent; }

private:
    void sendDue();

    Simulator::SimulatedBus *m_bus;
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_sent = 0;
};

/*! The whole window on a bus with a simulated vehicle. */
class BenchWindow
{
public:
    explicit BenchWindow(const Simulator::VehicleDescription &vehicle = shipped("full-bus"));
    ~BenchWindow();
    Q_DISABLE_COPY(BenchWindow)

    /*! A shipped vehicle. */
    static Simulator::VehicleDescription shipped(const char *name);

    /*! Lets the event loop run for \a milliseconds. */
    static void pass(qint64 milliseconds);

    void press(const char *button);
    void trigger(const char *action);
    void openFile(const QString &fileName) { m_window->openFile(fileName); }
    Simulator::SimulatedBus *bus() { return m_bus.get(); }
    MainWindow &window() { return *m_window; }
    HostServices &services() { return m_services; }

private:
    std::shared_ptr<Simulator::SimulatedBus> m_bus;
    Simulator::Vehicle m_vehicle;
    Simulator::VehicleOnBus m_vehicleOnBus;
    HostServices m_services;
    PluginSession m_session;
    std::unique_ptr<MainWindow> m_window;
};
