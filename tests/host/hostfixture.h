// SPDX-License-Identifier: MIT
#pragma once

#include <tests/support/fakebus.h>
#include <host/core/hostservices.h>
#include <host/core/pluginsession.h>
#include <interface/dxplugininterface.h>

#include <QLabel>
#include <QString>
#include <QWidget>

/*! What a window needs, on a fake bus. */
struct Host
{
    /*! \a clock is the one by which reads are observed. */
    explicit Host(const ReadObserver::Clock &clock = ReadObserver::steadyClock)
        : services(clock)
        , session(&services)
    {
        services.bus().setDeviceFactory(fake.factory());
        services.bus().interfaceWatch().setLister([](const QString &) { return QStringList(); });
    }

    ~Host()
    {
        // The window has gone by now; the library makes a new instance with a new one when it is asked again.
        for (const PluginSession::Plugin &plugin : session.plugins())
            delete dynamic_cast<QObject *>(plugin.library.plugin);
    }
    Q_DISABLE_COPY(Host)

    void loadOverview()
    {
        QString error;
        const std::optional<PluginLibrary> library
            = PluginLibrary::load(QStringLiteral(OVERVIEW_PLUGIN_FILE), &error);
        if (!library)
            qFatal("%s", qUtf8Printable(error));
        session.add(*library, QStringLiteral("en"));
    }

    FakeBus fake;
    HostServices services;
    PluginSession session;
};

inline QString labelText(const QWidget &window, const char *name)
{
    return window.findChild<QLabel *>(QLatin1String(name))->text();
}
