// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>
#include "disconnectguard.h"
#include "pluginlibrary.h"

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QVector>

class DXPlugInInterface;
class HostServices;
class QWidget;

/*! The plug-ins of the host and the calls that they are owed, in their order: setHostInterface(),
 *  setLanguage(), getWidget(), setConnected(), activate(), deactivate().
 *
 *  A lost or closed bus is told to them only when no read can be under way, see DisconnectGuard; when the bus
 *  is back before that, they are told nothing.
 */
class PluginSession : public QObject
{
    Q_OBJECT

public:
    struct Plugin
    {
        PluginLibrary library;
        QWidget *widget = nullptr; // as getWidget() gave it; the window owns it then
    };

    /*! \a services must outlive the session. */
    explicit PluginSession(HostServices *services, QObject *parent = nullptr);
    ~PluginSession() override;

    /*! Loads every plug-in in \a folder; \a language is what they are told first. Gives a sentence for the
     *  user for each one that does not load, and one when there is none at all.
     */
    QStringList loadFolder(const QString &folder, const QString &language);

    /*! Takes a plug-in that was loaded already. */
    void add(const PluginLibrary &library, const QString &language);

    const QVector<Plugin> &plugins() const { return m_plugins; }

    void setLanguage(const QString &language);

    /*! The user turned to plug-in number \a index, or to none with -1. */
    void setActivePlugin(int index);

    /*! Whether the plug-ins believe the bus to be connected. */
    bool isConnectionTold() const { return m_isTold; }

    /*! Says good-bye: for the end of the program, when the event loop runs no more and before the plug-ins'
     *  windows go.
     */
    void shutDown();

private:
    void handleBusState(BusConnection::State state);
    void passTurn();
    void tell(bool isConnected);
    static void tellOne(const Plugin &plugin, bool isConnected);

    HostServices *m_services;
    DisconnectGuard m_guard;
    QTimer m_turnTimer;
    QVector<Plugin> m_plugins;
    int m_active = -1;
    bool m_isTold = false;
};
