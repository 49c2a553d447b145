// SPDX-License-Identifier: MIT
#pragma once

#include "busaddress.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

/*! Looks whether the CAN interface of an open connection is still there.
 *
 *  QtSerialBus tells nothing when a SocketCAN interface goes down or is deleted: its device stays connected
 *  and silent. So the watch looks for itself, at /sys/class/net for the back end "socketcan" (every 250 ms)
 *  and at the back end's list of interfaces for the others (every 500 ms). A back end that does not list the
 *  interface while it is open cannot be watched; its interface counts as present.
 */
class InterfaceWatch : public QObject
{
    Q_OBJECT

public:
    /*! What is known about an interface. */
    enum class Presence {
        Unknown, //!< this back end cannot be watched
        Present,
        Down, //!< there, but switched off
        Missing,
        Replaced //!< another interface of the same name: the old device works no more
    };

    Q_ENUM(Presence)

    using Lister = std::function<QStringList(const QString &plugin)>;

    explicit InterfaceWatch(QObject *parent = nullptr);

    /*! The folder with one folder per network interface; "/sys/class/net" at first. */
    void setNetworkFolder(const QString &folder) { m_networkFolder = folder; }

    /*! How the interfaces of a back end are listed; QCanBus::availableDevices() at first. */
    void setLister(const Lister &lister) { m_lister = lister; }

    /*! Starts to watch; called when the interface has just been opened. */
    void start(const BusAddress &address);

    void stop();

    /*! Whether \a address could be opened now; Unknown where only trying tells. */
    Presence look(const BusAddress &address) const;

    /*! Looks once; called by the timer. */
    void check();

signals:
    /*! The interface went away, as \a presence says. Emitted once between start() and returned(). */
    void lost(InterfaceWatch::Presence presence);
    /*! The interface that was lost can be opened again. */
    void returned();

private:
    Presence lookAgain() const;
    Presence lookInNetworkFolder(const QString &interfaceName) const;
    QByteArray readAttribute(const QString &interfaceName, const QString &attribute) const;

    QString m_networkFolder;
    Lister m_lister;
    QTimer m_timer;
    BusAddress m_address;
    QByteArray m_interfaceIndex; // of the network interface that was opened; empty for other back ends
    bool m_isWatchable = false;
    bool m_isLost = false;
};
