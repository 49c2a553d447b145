// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QObject>

#include <functional>

class HostServices;
class ShownVehicle;

/*! Tells a ShownVehicle what passes on the bus. */
class VehicleWatch : public QObject
{
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    /*! Both must outlive the watch. */
    VehicleWatch(HostServices *services, ShownVehicle *vehicle, QObject *parent = nullptr);

    /*! The time of day; replaced by tests. */
    void setClock(const Clock &clock) { m_clock = clock; }

private:
    void handleBus();
    void lookForSilentNodes();

    HostServices *m_services;
    ShownVehicle *m_vehicle;
    Clock m_clock = &QDateTime::currentDateTime;
};
