// SPDX-License-Identifier: MIT

#include <tests/support/fakebus.h>
#include <host/busreport.h>
#include <host/core/hostservices.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using Severity = MessageLog::Severity;

class tst_BusReport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void connectsAndDisconnects();
    void saysBitRate();
    void saysWhyBusCannotBeOpened();
    void saysThatBusIsLostAndBack();
    void collectsNodes();
    void saysChangesOfState();
    void bootUpOfKnownNode();
    void bootLoopDoesNotFlood();
    void saysLostNodes();
    void saysLossBeforeReturn();
    void bootUpWithoutHeartbeat();
    void obstacles();
    void warnsWhenReadStarts();
    void readThatHearsNothing();
    void readThatStops();
    void readThatStopsAtStoppedNode();
    void readThatUserDisconnects();
    void readDuringWhichTheBusFlaps();
    void readOfNodeThatKeepsRestarting();
    void foreignClient();
    void readWithFailures();
    void readThatIsComplete();
    void readOnABusThatIsFull();
    void interfaceTroubles();
    void overruns();

private:
    QStringList lines() const
    {
        QStringList texts;
        for (int row = 0; row < m_log->rowCount(); ++row)
            texts.append(m_log->index(row, MessageLog::TextColumn).data().toString());
        return texts;
    }
    QList<Severity> severities() const
    {
        QList<Severity> list;
        for (int row = 0; row < m_log->rowCount(); ++row)
            list.append(m_log->severity(row));
        return list;
    }
    void connectAndClear()
    {
        QVERIFY(m_services->bus().connectToBus(fakeSettings(), nullptr));
        m_log->clear();
    }
    void upload(quint8 nodeId, quint16 index)
    {
        QSignalSpy ended(&m_services->sdoClient(), &HostSdoClient::uploadEnded);
        m_services->getSdoClient()->upload(nodeId, index, 0, 7, 20);
        QTRY_COMPARE(ended.size(), 1);
    }

    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<HostServices> m_services;
    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<BusReport> m_report;
    std::unique_ptr<QSignalSpy> m_noticed;
};

void tst_BusReport::init()
{
    m_fake = std::make_unique<FakeBus>();
    m_services = std::make_unique<HostServices>();
    m_services->bus().setDeviceFactory(m_fake->factory());
    m_services->bus().interfaceWatch().setLister([](const QString &) { return QStringList(); });
    CanOpen::SdoPatience patience;
    patience.timeout = std::chrono::milliseconds(20);
    patience.repeats = 0;
    m_services->bus().sdoClient().setDefaultPatience(patience);
    m_log = std::make_unique<MessageLog>();
    m_report = std::make_unique<BusReport>(m_services.get(), m_log.get());
    m_noticed = std::make_unique<QSignalSpy>(m_report.get(), &BusReport::noticed);
}

void tst_BusReport::cleanup()
{
    m_report.reset();
    m_services.reset();
    m_log.reset();
    m_fake.reset();
}

void tst_BusReport::connectsAndDisconnects()
{
    QVERIFY(m_services->bus().connectToBus(fakeSettings(), nullptr));
    m_services->bus().disconnectFromBus();
    QCOMPARE(lines(), (QStringList{QStringLiteral("Connected to fake:bus0."),
                                   QStringLiteral("Disconnected from fake:bus0.")}));
}

void tst_BusReport::saysBitRate()
{
    BusSettings settings = fakeSettings();
    settings.bitRate = 83333;
    QVERIFY(m_services->bus().connectToBus(settings, nullptr));
    QCOMPARE(lines(), QStringList(QStringLiteral("Connected to fake:bus0 at 83.333 kbit/s.")));
}

void tst_BusReport::saysWhyBusCannotBeOpened()
{
    m_fake->refusal = QStringLiteral("No such plugin.");
    QVERIFY(!m_services->bus().connectToBus(fakeSettings(), nullptr));
    QCOMPARE(lines(), QStringList(QStringLiteral("The bus fake:bus0 cannot be opened: No such plugin.")));
}

void tst_BusReport::saysThatBusIsLostAndBack()
{
    connectAndClear();
    m_fake->device()->goUnconnected();
    QTRY_COMPARE(lines().size(), 2);
    QCOMPARE(lines().first(),
             QStringLiteral("The connection to fake:bus0 is lost. The CAN interface was disconnected. It is "
                            "made again as soon as the interface is back."));
    QCOMPARE(lines().last(), QStringLiteral("Connected to fake:bus0 again."));
}

void tst_BusReport::collectsNodes()
{
    connectAndClear();
    for (const quint8 nodeId :
         {quint8{1}, quint8{4}, quint8{5}, quint8{6}, quint8{9}, quint8{10}, quint8{127}})
        m_fake->heartbeat(nodeId, 0x05);
    m_fake->heartbeat(3, 0x7F);
    m_fake->heartbeat(2, 0x04);
    QTRY_COMPARE(lines().size(), 3); // by its timer
    const QStringList all = lines();
    QVERIFY(all.contains(QStringLiteral("Heard, Operational: node 1, 4 to 6, 9, 10, 127")));
    QVERIFY(all.contains(QStringLiteral("Heard, Pre-operational: node 3")));
    QVERIFY(all.contains(QStringLiteral("Heard, Stopped: node 2")));
}

void tst_BusReport::saysChangesOfState()
{
    connectAndClear();
    m_fake->heartbeat(3, 0x7F);
    m_report->reportNodes();
    m_fake->heartbeat(3, 0x7F);
    m_fake->heartbeat(3, 0x05);
    m_report->reportNodes();
    m_report->reportNodes();
    QCOMPARE(lines(), (QStringList{QStringLiteral("Heard, Pre-operational: node 3"),
                                   QStringLiteral("Now Operational: node 3")}));
}

void tst_BusReport::bootUpOfKnownNode()
{
    connectAndClear();
    m_fake->heartbeat(3, 0x05);
    m_report->reportNodes();
    m_fake->heartbeat(3, 0x00);
    m_report->reportNodes();
    m_fake->heartbeat(3, 0x05);
    m_report->reportNodes();
    QCOMPARE(lines(), (QStringList{QStringLiteral("Heard, Operational: node 3"),
                                   QStringLiteral("Started again (boot-up message): node 3"),
                                   QStringLiteral("Now Operational: node 3")}));
}

void tst_BusReport::bootLoopDoesNotFlood()
{
    connectAndClear();
    m_fake->heartbeat(3, 0x00);
    m_report->reportNodes();
    for (int i = 0; i < 5; ++i) {
        m_fake->heartbeat(3, 0x00); // no other message between
        m_report->reportNodes();
    }
    QCOMPARE(lines(), (QStringList{QStringLiteral("Heard, starting: node 3"),
                                   QStringLiteral("Started again (boot-up message): node 3 (5 times)")}));
}

void tst_BusReport::saysLostNodes()
{
    connectAndClear();
    static qint64 now = 0;
    CanOpen::HeartbeatConsumer &heartbeats = m_services->bus().heartbeats();
    heartbeats.setClock([] { return now; });
    for (int i = 0; i < 2; ++i) {
        now += 500;
        for (const quint8 nodeId : {quint8{3}, quint8{4}})
            m_fake->heartbeat(nodeId, 0x05);
    }
    m_report->reportNodes();
    m_log->clear();
    now += 2001;
    heartbeats.checkTimeouts(now);
    m_report->reportNodes();
    QCOMPARE(lines(), QStringList(QStringLiteral("Not heard any more: node 3, 4")));
    // Heard again: as new ones.
    m_fake->heartbeat(3, 0x05);
    m_report->reportNodes();
    QCOMPARE(lines().last(), QStringLiteral("Heard, Operational: node 3"));
}

/*! The last line on a node is true: it is there. */
void tst_BusReport::saysLossBeforeReturn()
{
    connectAndClear();
    static qint64 now = 0;
    CanOpen::HeartbeatConsumer &heartbeats = m_services->bus().heartbeats();
    heartbeats.setClock([] { return now; });
    for (int i = 0; i < 2; ++i) {
        now += 500;
        m_fake->heartbeat(3, 0x05);
    }
    m_report->reportNodes();
    m_log->clear();
    now += 2001;
    heartbeats.checkTimeouts(now);
    m_fake->heartbeat(3, 0x05);
    m_report->reportNodes();
    QCOMPARE(lines(), (QStringList{QStringLiteral("Not heard any more: node 3"),
                                   QStringLiteral("Heard, Operational: node 3")}));
}

void tst_BusReport::bootUpWithoutHeartbeat()
{
    std::chrono::milliseconds listened{0};
    m_report->setListeningTime([&listened] { return listened; });
    connectAndClear();
    m_fake->heartbeat(8, 0x00);
    m_fake->heartbeat(9, 0x00);
    m_fake->heartbeat(9, 0x7F);
    m_report->reportNodes();
    listened = std::chrono::milliseconds(4999);
    m_report->lookForSilentNodes();
    QCOMPARE(lines().size(), 2);
    listened = std::chrono::seconds(5);
    m_report->lookForSilentNodes();
    m_report->lookForSilentNodes();
    QCOMPARE(lines().size(), 3);
    QCOMPARE(lines().last(), QStringLiteral("Started, but no heartbeat has followed (is object 1017h zero?): "
                                            "node 8"));
}

void tst_BusReport::obstacles()
{
    std::chrono::milliseconds listened{0};
    m_report->setListeningTime([&listened] { return listened; });
    QCOMPARE(m_report->obstacles(), QStringList()); // not connected: the plug-in says so
    connectAndClear();
    QCOMPARE(m_report->obstacles(), QStringList());
    listened = std::chrono::seconds(3);
    QCOMPARE(
        m_report->obstacles(),
        QStringList(QStringLiteral("Node 1, the bus controller, was not heard. Without it nothing is read. "
                                   "Is the vehicle switched on, and does node 1 send a heartbeat?")));
    m_fake->heartbeat(1, 0x05);
    QCOMPARE(m_report->obstacles(), QStringList());
    for (const quint8 nodeId : {quint8{7}, quint8{8}, quint8{9}, quint8{12}})
        m_fake->heartbeat(nodeId, 0x04);
    QCOMPARE(
        m_report->obstacles(),
        QStringList(QStringLiteral("Stopped, so that they answer no SDO: node 7 to 9, 12. The read ends at "
                                   "the first of them; restart the vehicle, or start these nodes by "
                                   "NMT.")));
}

void tst_BusReport::warnsWhenReadStarts()
{
    m_report->setListeningTime([] { return std::chrono::seconds(3); });
    connectAndClear();
    m_services->getCanReceiverHub()->getReceiver(0x701);
    QCOMPARE(lines().size(), 2);
    QCOMPARE(lines().first(), QStringLiteral("Read started: looking for nodes."));
    QVERIFY(lines().last().startsWith(QStringLiteral("Node 1, the bus controller, was not heard.")));
    QCOMPARE(m_noticed->size(), 1);
    QCOMPARE(m_noticed->first().first().toString(), lines().last());
}

void tst_BusReport::readThatHearsNothing()
{
    connectAndClear();
    m_services->getCanReceiverHub()->getReceiver(0x701);
    QTRY_COMPARE(lines().last(),
                 QStringLiteral("Nothing was read, because node 1, the bus controller, was not heard. Is the "
                                "vehicle switched on, and does node 1 send a heartbeat?"));
}

void tst_BusReport::readThatStops()
{
    m_fake->addNode(1);
    connectAndClear();
    upload(1, 0x1000);
    upload(7, 0x60AB);
    const QString text
        = QStringLiteral("The read stopped at node 7, object 60ABh sub-index 0, because it did not answer. "
                         "Values read until then: 1.");
    QCOMPARE(lines(), QStringList(text));
    QCOMPARE(m_noticed->first().first().toString(), text);
    upload(7, 0x60AC); // the one more request
    QCOMPARE(lines().size(), 1);
}

void tst_BusReport::readThatStopsAtStoppedNode()
{
    connectAndClear();
    m_fake->heartbeat(7, 0x04);
    upload(7, 0x6000);
    QCOMPARE(lines().last(),
             QStringLiteral("The read stopped at node 7, object 6000h sub-index 0, because the "
                            "node is in the state Stopped and answers no SDO. Values read until "
                            "then: 0."));
}

void tst_BusReport::readThatUserDisconnects()
{
    connectAndClear();
    m_services->getSdoClient()->upload(7, 0x6000, 2, 7, 60000);
    m_services->bus().disconnectFromBus();
    QTRY_COMPARE(lines().size(), 2);
    QVERIFY(
        lines().contains(QStringLiteral("The read stopped at node 7, object 6000h sub-index 2, because you "
                                        "disconnected. Values read until then: 0.")));
    QVERIFY(!severities().contains(Severity::Error));
}

void tst_BusReport::readDuringWhichTheBusFlaps()
{
    connectAndClear();
    m_services->getSdoClient()->upload(7, 0x6000, 2, 7, 60000);
    m_services->getSdoClient()->upload(8, 0x6000, 2, 7, 60000);
    // Gone, and back before the plug-in is told: the reason stays known.
    m_fake->device()->goUnconnected();
    QTRY_COMPARE(lines().size(), 3);
    QVERIFY2(lines().contains(QStringLiteral(
                 "The read stopped at node 7, object 6000h sub-index 2, because the bus was lost: The CAN "
                 "interface was disconnected. Values read until then: 0.")),
             qPrintable(lines().join(QLatin1Char('\n'))));
}

void tst_BusReport::readOfNodeThatKeepsRestarting()
{
    connectAndClear();
    m_fake->heartbeat(7, 0x00);
    m_fake->heartbeat(7, 0x00);
    upload(7, 0x6000);
    QCOMPARE(lines().last(),
             QStringLiteral("The read stopped at node 7, object 6000h sub-index 0, because the node keeps "
                            "restarting. Look at its supply. Values read until then: 0."));
}

void tst_BusReport::foreignClient()
{
    connectAndClear();
    emit m_services->bus().sdoClient().foreignClientSeen(7);
    const QString text
        = QStringLiteral("Another client is reading node 7. Objects of it may take long or fail; end "
                         "the other program, or take its adapter off the bus.");
    QCOMPARE(lines(), QStringList(text));
    QCOMPARE(severities(), QList<Severity>{Severity::Warning});
    QCOMPARE(m_noticed->first().first().toString(), text);
}

void tst_BusReport::readWithFailures()
{
    m_fake->addNode(1);
    connectAndClear();
    upload(1, 0x1000);
    m_services->getSdoClient()->upload(1, 0x1000, 0, 99, 20); // a data type that there is not
    m_services->getSdoClient()->upload(1, 0x1001, 0, 99, 20);
    QTRY_COMPARE(lines(),
                 (QStringList{QStringLiteral("Read finished. Nodes: 1, values: 1, objects not there: "
                                             "0, failed: 1."),
                              QStringLiteral("Not read from node 1: 1001h.0. General error "
                                             "(0800 0000h).")}));
    QCOMPARE(severities(), (QList<Severity>{Severity::Warning, Severity::Warning}));
}

void tst_BusReport::readThatIsComplete()
{
    m_fake->addNode(1);
    m_fake->addNode(2);
    connectAndClear();
    upload(1, 0x1000);
    upload(1, 0x6000);
    upload(2, 0x1000);
    m_services->getSdoClient()->upload(0, 0x1000, 0, 7, 20); // no device
    QTRY_COMPARE(lines(),
                 QStringList(QStringLiteral("Read finished. Nodes: 2, values: 2, objects not there: 1, "
                                            "failed: 0.")));
    QCOMPARE(severities(), QList<Severity>{Severity::Information});
}

void tst_BusReport::readOnABusThatIsFull()
{
    m_fake->addNode(1);
    BusSettings settings = fakeSettings();
    settings.bitRate = 10000;
    QVERIFY(m_services->bus().connectToBus(settings, nullptr));
    QTimer others;
    connect(&others, &QTimer::timeout, this,
            [this] { m_fake->device()->inject(QCanBusFrame(0x181, QByteArray(8, '\0'))); });
    others.start(12);
    m_services->getCanReceiverHub()->getReceiver(0x701);
    QTRY_VERIFY(m_services->wasBusFull());
    m_log->clear();
    upload(1, 0x1000);
    others.stop();
    QTRY_COMPARE(lines(),
                 (QStringList{QStringLiteral("Read finished. Nodes: 1, values: 1, objects not there: "
                                             "0, failed: 0."),
                              QStringLiteral("The bus was full while nodes were looked for, so nodes "
                                             "may be missing. Find out who sends so much, and read "
                                             "again.")}));
    QCOMPARE(severities(), (QList<Severity>{Severity::Information, Severity::Warning}));
}

void tst_BusReport::interfaceTroubles()
{
    connectAndClear();
    const auto inject = [this](QCanBusFrame::FrameErrors errors, const char *payload) {
        QCanBusFrame frame(QCanBusFrame::ErrorFrame);
        frame.setPayload(QByteArray::fromHex(payload));
        frame.setError(errors);
        m_fake->device()->inject(frame);
    };
    inject(QCanBusFrame::ControllerError, "0008000000000000");
    inject(QCanBusFrame::ControllerError, "0020000000000000");
    inject(QCanBusFrame::BusOffError, "0000000000000000");
    inject(QCanBusFrame::ControllerRestartError, "0000000000000000");
    QCOMPARE(
        lines(),
        (QStringList{
            QStringLiteral("The CAN interface bus0 counts many bus errors."),
            QStringLiteral("The CAN interface bus0 is error-passive: nobody acknowledges its frames, or "
                           "they arrive broken. Check bit rate, wiring and termination."),
            QStringLiteral("The CAN interface bus0 is bus-off: it has left the bus after too many errors. "
                           "Check bit rate, wiring and termination, then restart the interface, or "
                           "disconnect and connect."),
            QStringLiteral("The CAN interface bus0 works without errors again.")}));
    QCOMPARE(m_noticed->size(), 2);
}

void tst_BusReport::overruns()
{
    connectAndClear();
    QCanBusFrame frame(QCanBusFrame::ErrorFrame);
    frame.setPayload(QByteArray::fromHex("0001000000000000"));
    frame.setError(QCanBusFrame::ControllerError);
    for (int i = 0; i < 4; ++i)
        m_fake->device()->inject(frame);
    QCOMPARE(lines(), QStringList(QStringLiteral(
                          "The CAN interface bus0 has dropped received frames (overrun). (4 times)")));
}

QTEST_MAIN(tst_BusReport)
#include "tst_busreport.moc"
