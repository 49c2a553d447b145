// SPDX-License-Identifier: MIT
#pragma once

#include "controllers.h"

#include <bus/socketcan/interfacekind.h>

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>

/*! A back end of QtSerialBus. */
struct BackEndFacts
{
    QString name;
    bool isInstalled = true;
    QString error; //!< why it cannot be used; empty: it can
    QStringList interfaces;
};

/*! A CAN interface of the network. */
struct InterfaceFacts
{
    QString name;
    bool isUp = false;
    QString kind;                   //!< see interfaceKind()
    std::optional<int> queueLength; //!< frames that may wait to be sent
    std::optional<qint64> lost;     //!< received frames that were lost since the start of the computer
    ControllerFacts controller;

    /*! It is made of software, and leads to no wire. Serial lines have no device either, with many kernels, and an adapter
     *  all the same.
     */
    bool isVirtual() const { return kind == QLatin1String("vcan") || kind == QLatin1String("vxcan"); }
};

/*! An adapter for USB with a driver in Linux. */
struct AdapterFacts
{
    QString name;
    QString module;            //!< of the kernel, its driver
    bool hasInterface = false; //!< in the network
};

/*! A device file through which adapters are used. */
struct DeviceFileFacts
{
    QString path;
    QString group;         //!< that may use it; empty: none may
    bool isUsable = false; //!< by this user, for reading and writing
};

/*! What this computer has for CAN. */
struct ComputerFacts
{
    QString user;
    QString socketError; //!< why no CAN socket can be made; empty: one can
    bool hasIpCommand = true;
    bool hasSocketCanLibrary = true; //!< by which Qt sets bit rates
    QVector<BackEndFacts> backEnds;
    QVector<InterfaceFacts> interfaces;
    QVector<AdapterFacts> adapters;
    QVector<DeviceFileFacts> deviceFiles;
};

/*! Where to look, and whom to ask. */
struct ComputerPlaces
{
    QString network = QStringLiteral("/sys/class/net");
    QString usb = QStringLiteral("/sys/bus/usb/devices");
    QString devices = QStringLiteral("/dev");
    std::function<ControllerFacts(const QString &)> controller = Controllers::of;
    std::function<QString(const QString &)> kind = interfaceKind;
};

namespace Computer {

/*! The CAN interfaces, adapters and device files in the folders. Nothing is changed. */
QVector<InterfaceFacts> interfaces(const ComputerPlaces &places);
QVector<AdapterFacts> adapters(const ComputerPlaces &places);
QVector<DeviceFileFacts> deviceFiles(const ComputerPlaces &places);

/*! Those that are installed, and those of QtSerialBus that are not. */
QVector<BackEndFacts> backEnds();

/*! All of it. */
ComputerFacts look(const ComputerPlaces &places = {});

} // namespace Computer
