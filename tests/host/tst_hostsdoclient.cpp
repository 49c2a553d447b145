// SPDX-License-Identifier: MIT

#include <tests/support/fakebus.h>
#include <host/core/hostsdoclient.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

constexpr quint16 unsigned8 = 5;
constexpr quint16 unsigned32 = 7;
constexpr int timeout = 100; // ms

QByteArray uploadAnswer(quint16 index, quint8 subIndex, quint32 value)
{
    const quint32 bytes[] = {0x43U,        index & 0xFFU,       quint32(index) >> 8,  subIndex,
                             value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF, value >> 24};
    QByteArray payload;
    for (const quint32 byte : bytes)
        payload.append(static_cast<char>(byte));
    return payload;
}

} // namespace

class tst_HostSdoClient : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        qRegisterMetaType<CanOpen::ObjectKey>();
        qRegisterMetaType<HostSdoClient::Ending>();
        m_fake = std::make_unique<FakeBus>();
        m_bus = std::make_unique<BusConnection>();
        m_bus->setDeviceFactory(m_fake->factory());
        m_bus->interfaceWatch().setLister([](const QString &) { return QStringList(); });
        CanOpen::SdoPatience patience;
        patience.repeats = 0;
        m_bus->sdoClient().setDefaultPatience(patience);
        m_client = std::make_unique<HostSdoClient>(m_bus.get());
        QObject *signalSource = m_client->getQObject();
        // By text, as plug-ins connect.
        m_results = std::make_unique<QSignalSpy>(signalSource,
                                                 SIGNAL(resultReceived(quint8, quint16, quint8, QVariant)));
        m_errors = std::make_unique<QSignalSpy>(signalSource,
                                                SIGNAL(errorReceived(quint8, quint16, quint8, quint32)));
        QVERIFY(m_results->isValid());
        QVERIFY(m_errors->isValid());
    }
    void cleanup()
    {
        m_client.reset();
        m_bus.reset();
        m_fake.reset();
    }

    void hasSignalsOfTheContract();
    void value();
    void abort();
    void silence();
    void lateAnswerIsWaitedFor();
    void noBus();
    void busLostDuringUpload();
    void disconnectedDuringUpload();
    void nextUploadFromOutcomeOfLoss();
    void impossibleRequests_data();
    void impossibleRequests();
    void abortWithCodeOfTimeout();
    void ignoresUploadsOfOthers();
    void survivesReconnection();
    void neverAnswersFromWithinUpload();
    void tellsTheHostInWords();
    void cancelAnswersPendingUpload();
    void cancelAnswersWhatFollows();
    void cancelLeavesTheBusAlone();
    void nextUploadNeedNotWaitForTheCancelled();
    void cancelWithoutUpload();

private:
    void expectError(quint8 nodeId, quint16 index, quint8 subIndex, quint32 code)
    {
        QTRY_COMPARE(m_errors->size(), 1);
        QCOMPARE(m_errors->first(), QVariantList({QVariant::fromValue(nodeId), QVariant::fromValue(index),
                                                  QVariant::fromValue(subIndex), QVariant::fromValue(code)}));
        QCOMPARE(m_results->size(), 0);
        QCOMPARE(m_client->pendingUploads(), 0);
    }

    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<BusConnection> m_bus;
    std::unique_ptr<HostSdoClient> m_client;
    std::unique_ptr<QSignalSpy> m_results;
    std::unique_ptr<QSignalSpy> m_errors;
};

void tst_HostSdoClient::hasSignalsOfTheContract()
{
    const QMetaObject *meta = m_client->getQObject()->metaObject();
    QVERIFY(meta->indexOfSignal("resultReceived(quint8,quint16,quint8,QVariant)") >= 0);
    QVERIFY(meta->indexOfSignal("errorReceived(quint8,quint16,quint8,quint32)") >= 0);
}

void tst_HostSdoClient::value()
{
    m_fake->addNode(5);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x1000, 0, unsigned32, timeout);
    QTRY_COMPARE(m_results->size(), 1);
    const QVariantList arguments = m_results->first();
    QCOMPARE(arguments.at(0).toInt(), 5);
    QCOMPARE(arguments.at(1).toInt(), 0x1000);
    QCOMPARE(arguments.at(2).toInt(), 0);
    const QVariant value = arguments.at(3).value<QVariant>();
    QCOMPARE(value.type(), QVariant::UInt);
    QCOMPARE(value.toUInt(), 1U);
    QCOMPARE(m_errors->size(), 0);
}

void tst_HostSdoClient::abort()
{
    m_fake->addNode(5);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x6000, 1, unsigned32, timeout);
    expectError(5, 0x6000, 1, 0x06020000);
}

void tst_HostSdoClient::silence()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x6000, 1, unsigned32, timeout);
    expectError(5, 0x6000, 1, 0xFFFFFFFF);
}

void tst_HostSdoClient::lateAnswerIsWaitedFor()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    CanOpen::SdoPatience patience;
    patience.repeats = 3;
    m_bus->sdoClient().setDefaultPatience(patience);
    QSignalSpy sent(m_fake->device(), &FakeCanDevice::sent);
    m_client->upload(5, 0x1000, 0, unsigned32, timeout);
    QTRY_VERIFY(sent.size() >= 2); // asked again, so 100 ms have passed
    m_fake->device()->inject(QCanBusFrame(0x585, uploadAnswer(0x1000, 0, 77)));
    QTRY_COMPARE(m_results->size(), 1);
    QCOMPARE(m_results->first().at(3).value<QVariant>().toUInt(), 77U);
    QCOMPARE(m_errors->size(), 0);
}

void tst_HostSdoClient::noBus()
{
    m_client->upload(5, 0x6000, 1, unsigned32, timeout);
    QCOMPARE(m_errors->size(), 0); // from the event loop only
    QCOMPARE(m_client->pendingUploads(), 1);
    expectError(5, 0x6000, 1, 0xFFFFFFFF);
}

void tst_HostSdoClient::busLostDuringUpload()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x6000, 1, unsigned32, 60000);
    m_fake->device()->goUnconnected();
    expectError(5, 0x6000, 1, 0xFFFFFFFF);
    QCOMPARE(m_bus->state(), BusConnection::State::Lost);
}

void tst_HostSdoClient::disconnectedDuringUpload()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x6000, 1, unsigned32, 60000);
    m_bus->disconnectFromBus();
    expectError(5, 0x6000, 1, 0xFFFFFFFF);
}

void tst_HostSdoClient::nextUploadFromOutcomeOfLoss()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    bool isAsked = false;
    connect(m_client.get(), &HostSdoClient::errorReceived, this, [&] {
        if (!isAsked)
            m_client->upload(5, 0x6001, 0, unsigned8, timeout);
        isAsked = true;
    });
    m_client->upload(5, 0x6000, 1, unsigned32, 60000);
    m_bus->disconnectFromBus();
    QTRY_COMPARE(m_errors->size(), 2);
    QCOMPARE(m_errors->last().at(1).toInt(), 0x6001);
    QCOMPARE(m_errors->last().at(3).toUInt(), 0xFFFFFFFFU);
}

void tst_HostSdoClient::impossibleRequests_data()
{
    QTest::addColumn<int>("nodeId");
    QTest::addColumn<int>("dataType");

    // An imported list of nodes holds node 0: the read goes on behind it.
    QTest::newRow("node 0") << 0 << 7;
    QTest::newRow("node 128") << 128 << 7;
    QTest::newRow("node 255") << 255 << 7;
    QTest::newRow("type 0") << 5 << 0;
    QTest::newRow("type 65535") << 5 << 0xFFFF;
}

void tst_HostSdoClient::impossibleRequests()
{
    QFETCH(int, nodeId);
    QFETCH(int, dataType);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(static_cast<quint8>(nodeId), 0x1000, 0, static_cast<quint16>(dataType), timeout);
    QCOMPARE(m_errors->size(), 0);
    expectError(static_cast<quint8>(nodeId), 0x1000, 0, 0x08000000);
    QCOMPARE(m_fake->device()->writeCalls(), 0);
}

void tst_HostSdoClient::abortWithCodeOfTimeout()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x6000, 1, unsigned32, timeout);
    m_fake->device()->inject(QCanBusFrame(0x585, QByteArray::fromHex("80006001FFFFFFFF")));
    expectError(5, 0x6000, 1, 0x08000000); // it did answer
}

void tst_HostSdoClient::ignoresUploadsOfOthers()
{
    m_fake->addNode(5);
    QSignalSpy outcomes(&m_bus->sdoClient(), &CanOpen::SdoClient::finished);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_bus->sdoClient().upload(5, {0x1000, 0}, CanOpen::DataType::Unsigned32);
    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(m_results->size(), 0);
}

void tst_HostSdoClient::survivesReconnection()
{
    m_fake->addNode(5);
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
        m_client->upload(5, 0x1000, 0, unsigned32, timeout);
        QTRY_COMPARE(m_results->size(), i);
        m_bus->disconnectFromBus();
    }
    QCOMPARE(m_errors->size(), 0);
}

void tst_HostSdoClient::neverAnswersFromWithinUpload()
{
    // A device that refuses to send, at once.
    m_fake->prepare = [](FakeCanDevice *device) { device->unplug(); };
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x1000, 0, unsigned32, timeout);
    QCOMPARE(m_errors->size() + m_results->size(), 0);
    expectError(5, 0x1000, 0, 0xFFFFFFFF);
}

void tst_HostSdoClient::tellsTheHostInWords()
{
    m_fake->addNode(5);
    QSignalSpy started(m_client.get(), &HostSdoClient::uploadStarted);
    QSignalSpy ended(m_client.get(), &HostSdoClient::uploadEnded);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x1000, 0, unsigned32, timeout);
    QTRY_COMPARE(ended.size(), 1);
    m_client->upload(5, 0x6000, 0, unsigned8, timeout);
    QTRY_COMPARE(ended.size(), 2);
    m_client->upload(6, 0x6000, 0, unsigned8, timeout);
    QTRY_COMPARE(ended.size(), 3);
    m_bus->disconnectFromBus();
    m_client->upload(6, 0x6000, 2, unsigned8, timeout);
    QTRY_COMPARE(ended.size(), 4);

    QCOMPARE(started.size(), 4);
    QCOMPARE(ended.at(0).at(2).value<HostSdoClient::Ending>(), HostSdoClient::Ending::Value);
    QCOMPARE(ended.at(1).at(2).value<HostSdoClient::Ending>(), HostSdoClient::Ending::Refused);
    QCOMPARE(ended.at(2).at(2).value<HostSdoClient::Ending>(), HostSdoClient::Ending::Silent);
    QCOMPARE(ended.at(3).at(2).value<HostSdoClient::Ending>(), HostSdoClient::Ending::NoBus);
    QCOMPARE(ended.at(3).at(0).toInt(), 6);
    QCOMPARE(ended.at(3).at(1).value<CanOpen::ObjectKey>().toString(), QStringLiteral("6000h sub-index 2"));
}

void tst_HostSdoClient::cancelAnswersPendingUpload()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x6000, 1, unsigned32, 60000);
    m_client->cancelRun();
    QCOMPARE(m_errors->size(), 0); // from the event loop only
    QVERIFY(m_client->isCancelling());
    expectError(5, 0x6000, 1, 0xFFFFFFFF);
}

void tst_HostSdoClient::cancelAnswersWhatFollows()
{
    m_fake->addNode(5);
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->cancelRun();
    const int writes = m_fake->device()->writeCalls();
    m_client->upload(5, 0x1000, 0, unsigned32, timeout);
    QCOMPARE(m_errors->size(), 0);
    expectError(5, 0x1000, 0, 0xFFFFFFFF);
    QCOMPARE(m_fake->device()->writeCalls(), writes);

    m_client->endCancelling();
    m_client->upload(5, 0x1000, 0, unsigned32, timeout);
    QTRY_COMPARE(m_results->size(), 1);
    QCOMPARE(m_errors->size(), 1);
}

void tst_HostSdoClient::cancelLeavesTheBusAlone()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    m_client->upload(5, 0x6000, 1, unsigned32, 60000);
    m_client->cancelRun();
    expectError(5, 0x6000, 1, 0xFFFFFFFF);
    QCOMPARE(m_bus->state(), BusConnection::State::Connected);
    QCOMPARE(m_fake->devicesMade(), 1);
}

void tst_HostSdoClient::nextUploadNeedNotWaitForTheCancelled()
{
    QVERIFY(m_bus->connectToBus(fakeSettings(), nullptr));
    CanOpen::SdoPatience patience;
    patience.longest = std::chrono::seconds(60);
    m_bus->sdoClient().setDefaultPatience(patience);
    QSignalSpy outcomes(&m_bus->sdoClient(), &CanOpen::SdoClient::finished);
    m_client->upload(5, 0x1000, 0, unsigned32, 60000);
    m_client->upload(5, 0x1001, 0, unsigned8, 60000); // waits in the client
    m_client->cancelRun();
    QCOMPARE(outcomes.size(), 2); // both have ended there
    QTRY_COMPARE(m_errors->size(), 2);
    QCOMPARE(m_client->pendingUploads(), 0);
    m_client->endCancelling();

    m_client->upload(5, 0x1002, 0, unsigned32, 60000);
    m_fake->device()->inject(QCanBusFrame(0x585, uploadAnswer(0x1000, 0, 11))); // too late
    m_fake->device()->inject(QCanBusFrame(0x585, uploadAnswer(0x1002, 0, 22)));
    QTRY_COMPARE(m_results->size(), 1);
    QCOMPARE(m_results->first().at(1).toInt(), 0x1002);
    QCOMPARE(m_results->first().at(3).value<QVariant>().toUInt(), 22U);
    QCOMPARE(m_errors->size(), 2);
}

void tst_HostSdoClient::cancelWithoutUpload()
{
    m_client->cancelRun();
    m_client->endCancelling();
    QVERIFY(!m_client->isCancelling());
    QCOMPARE(m_errors->size() + m_results->size(), 0);
}

QTEST_GUILESS_MAIN(tst_HostSdoClient)
#include "tst_hostsdoclient.moc"
