// SPDX-License-Identifier: MIT
#include "pluginsession.h"

#include "hostservices.h"

#include <interface/dxplugininterface.h>

#include <QDir>

PluginSession::PluginSession(HostServices *services, QObject *parent)
    : QObject(parent)
    , m_services(services)
{
    m_turnTimer.setSingleShot(true);
    connect(&m_turnTimer, &QTimer::timeout, this, &PluginSession::passTurn);
    connect(&services->bus(), &BusConnection::stateChanged, this, &PluginSession::handleBusState);
    connect(&services->heartbeatHub(), &HeartbeatHub::receiverAsked, this,
            [this] { m_guard.receiverAsked(); });
    connect(&services->sdoClient(), &HostSdoClient::uploadStarted, this, [this] { m_guard.uploadStarted(); });
    connect(&services->sdoClient(), &HostSdoClient::uploadEnded, this, [this] { m_guard.uploadEnded(); });
}

PluginSession::~PluginSession() = default;

QStringList PluginSession::loadFolder(const QString &folder, const QString &language)
{
    QStringList errors;
    const QStringList paths = PluginLibrary::findIn(folder);
    for (const QString &path : paths) {
        QString error;
        const std::optional<PluginLibrary> library = PluginLibrary::load(path, &error);
        if (library)
            add(*library, language);
        else
            errors.append(error);
    }
    if (paths.isEmpty())
        errors.append(tr("There is no plug-in in the folder %1.").arg(QDir::toNativeSeparators(folder)));
    return errors;
}

void PluginSession::add(const PluginLibrary &library, const QString &language)
{
    Plugin plugin;
    plugin.library = library;
    library.plugin->setHostInterface(m_services);
    library.plugin->setLanguage(language);
    plugin.widget = library.plugin->getWidget();
    m_plugins.append(plugin);
    if (m_services->bus().state() == BusConnection::State::Connected && m_isTold)
        tellOne(plugin, true);
    else
        handleBusState(m_services->bus().state());
}

void PluginSession::setLanguage(const QString &language)
{
    for (const Plugin &plugin : qAsConst(m_plugins))
        plugin.library.plugin->setLanguage(language);
}

void PluginSession::setActivePlugin(int index)
{
    if (index == m_active)
        return;
    const int previous = m_active;
    m_active = index >= 0 && index < m_plugins.size() ? index : -1;
    if (previous >= 0)
        m_plugins.at(previous).library.plugin->deactivate();
    if (m_active >= 0)
        m_plugins.at(m_active).library.plugin->activate();
}

void PluginSession::shutDown()
{
    m_turnTimer.stop();
    // A read ends inside the event loop, so none is under way here.
    if (m_isTold)
        tell(false);
    setActivePlugin(-1);
    m_services->bus().disconnect(this);
}

void PluginSession::handleBusState(BusConnection::State state)
{
    if (state == BusConnection::State::Connected) {
        m_turnTimer.stop();
        if (!m_isTold)
            tell(true);
        return;
    }
    if (m_isTold && !m_turnTimer.isActive()) {
        m_guard.restartCounting();
        m_turnTimer.start(m_guard.timeToWait());
    }
}

void PluginSession::passTurn()
{
    m_guard.turnPassed();
    if (m_guard.isSafe())
        tell(false);
    else
        m_turnTimer.start(m_guard.timeToWait());
}

void PluginSession::tell(bool isConnected)
{
    m_isTold = isConnected;
    const QVector<Plugin> plugins = m_plugins;
    for (const Plugin &plugin : plugins)
        tellOne(plugin, isConnected);
}

void PluginSession::tellOne(const Plugin &plugin, bool isConnected)
{
    // A plug-in whose window is gone must not be told any more.
    if (plugin.widget != nullptr && plugin.library.plugin->getWidget() == nullptr)
        return;
    plugin.library.plugin->setConnected(isConnected);
}
