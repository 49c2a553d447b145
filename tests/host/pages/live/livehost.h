// SPDX-License-Identifier: MIT
#pragma once

#include <host/core/hostservices.h>
#include <host/pages/live/livepage.h>
#include <host/pages/live/livesession.h>
#include <tests/support/fakebus.h>

#include <QtTest>

/*! The page on a bus whose device obeys the test. */
class LiveHost
{
public:
    LiveHost()
    {
        m_services.bus().setDeviceFactory(m_fake.factory());
        m_services.bus().interfaceWatch().setLister([](const QString &) { return QStringList(); });
        m_session = std::make_unique<LiveSession>(&m_services);
        m_session->setRules(RuleSet::load({QStringLiteral(HEALTH_RULE_FOLDER)}));
        m_page = std::make_unique<LivePage>(m_session.get());
        m_page->resize(1000, 400);
        m_page->show();
    }
    Q_DISABLE_COPY(LiveHost)

    void connectToBus()
    {
        QString error;
        BusSettings settings = fakeSettings();
        settings.bitRate = 125000;
        QVERIFY2(m_services.bus().connectToBus(settings, &error), qPrintable(error));
    }
    void disconnect() { m_services.bus().disconnectFromBus(); }

    /*! Heartbeats of node 5 every half second. */
    void heartbeats(int count)
    {
        for (int i = 0; i < count; ++i) {
            m_fake.heartbeat(5);
            QTest::qWait(500);
        }
    }
    void inject(quint32 id, const char *bytes)
    {
        m_fake.device()->inject(QCanBusFrame(id, QByteArray::fromHex(bytes)));
        QTest::qWait(200);
    }

    template<typename Part = QWidget>
    Part *find(const char *name) const
    {
        auto *part = m_page->findChild<Part *>(QLatin1String(name));
        if (part == nullptr)
            qFatal("there is no %s", name);
        return part;
    }

    FakeBus &fake() { return m_fake; }
    HostServices &services() { return m_services; }
    LiveSession &session() { return *m_session; }
    LivePage &page() { return *m_page; }

private:
    FakeBus m_fake;
    HostServices m_services;
    std::unique_ptr<LiveSession> m_session;
    std::unique_ptr<LivePage> m_page;
};
