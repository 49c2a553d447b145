// SPDX-License-Identifier: MIT
#include <host/busreport.h>
#include <host/core/hostservices.h>
#include <host/eventmessages.h>
#include <host/pages/live/livesession.h>
#include <tests/support/fakebus.h>

#include <QtTest>

/*! Events among the messages, beside what the bus report says. */
class tst_EventMessages : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emergency();
    void everyEventIsToldOnce();
    void repeatedEventIsToldOnce();
    void lastOnesBeforeTheEnd();
    void nextBus();
    void manyAtOnce();

private:
    QStringList lines() const
    {
        QStringList texts;
        for (int row = 0; row < m_log->rowCount(); ++row)
            texts.append(m_log->index(row, MessageLog::TextColumn).data().toString());
        return texts;
    }
    void inject(quint32 id, const char *bytes)
    {
        m_fake->device()->inject(QCanBusFrame(id, QByteArray::fromHex(bytes)));
    }

    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<HostServices> m_services;
    std::unique_ptr<LiveSession> m_session;
    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<BusReport> m_report;
    std::unique_ptr<EventMessages> m_messages;
};

void tst_EventMessages::init()
{
    m_fake = std::make_unique<FakeBus>();
    m_services = std::make_unique<HostServices>();
    m_services->bus().setDeviceFactory(m_fake->factory());
    m_session = std::make_unique<LiveSession>(m_services.get());
    m_log = std::make_unique<MessageLog>();
    m_report = std::make_unique<BusReport>(m_services.get(), m_log.get());
    m_messages = std::make_unique<EventMessages>(m_session.get(), m_log.get());
    QVERIFY(m_services->bus().connectToBus(fakeSettings(), nullptr));
    m_log->clear();
}

void tst_EventMessages::cleanup()
{
    m_messages.reset();
    m_report.reset();
    m_session.reset();
    m_services.reset();
    m_log.reset();
    m_fake.reset();
}

void tst_EventMessages::emergency()
{
    inject(0x084, "1042090000000000");
    QTest::qWait(300);
    QCOMPARE(
        lines(),
        QStringList{QStringLiteral(
            "Node 4: Emergency 4210h: device temperature. Error register: generic error, temperature.")});
    QCOMPARE(m_log->severity(0), MessageLog::Severity::Error);
}

void tst_EventMessages::everyEventIsToldOnce()
{
    m_fake->heartbeat(5);
    QTest::qWait(1000);
    m_fake->heartbeat(5, 0x04);
    QTest::qWait(1000);
    m_fake->heartbeat(5, 0x00);
    QTest::qWait(1000);
    inject(0x000, "0105");
    QTest::qWait(1000);
    QCOMPARE(lines(),
             (QStringList{QStringLiteral("Heard, Operational: node 5"), QStringLiteral("Now Stopped: node 5"),
                          QStringLiteral("Started again (boot-up message): node 5"),
                          QStringLiteral("Node 5: NMT command: start.")}));
}

void tst_EventMessages::repeatedEventIsToldOnce()
{
    for (int i = 0; i < 30; ++i) {
        inject(0x084, "1042090000000000");
        QTest::qWait(300);
    }
    QCOMPARE(m_log->rowCount(), 1);
    QVERIFY(!lines().first().contains(QStringLiteral("times")));
}

void tst_EventMessages::lastOnesBeforeTheEnd()
{
    inject(0x084, "1042090000000000");
    m_services->bus().disconnectFromBus();
    QVERIFY(lines().join(QLatin1Char('\n')).contains(QStringLiteral("Emergency 4210h")));
}

void tst_EventMessages::nextBus()
{
    inject(0x084, "1042090000000000");
    QTest::qWait(300);
    m_services->bus().disconnectFromBus();
    QVERIFY(m_services->bus().connectToBus(fakeSettings(), nullptr));
    m_log->clear();
    inject(0x085, "1042090000000000");
    QTest::qWait(300);
    QCOMPARE(m_log->rowCount(), 1);
    QVERIFY(lines().first().startsWith(QStringLiteral("Node 5: Emergency")));
}

void tst_EventMessages::manyAtOnce()
{
    for (int node = 1; node <= 30; ++node)
        inject(0x080 + quint32(node), "1042090000000000");
    QTest::qWait(300);
    QCOMPARE(m_log->rowCount(), 21);
    QCOMPARE(lines().last(), QStringLiteral("10 more events: the page Live has all of them."));
}

QTEST_MAIN(tst_EventMessages)
#include "tst_eventmessages.moc"
