// SPDX-License-Identifier: MIT
#include <tests/support/fakebus.h>

#include <host/core/hostservices.h>
#include <host/core/readsnapshots.h>
#include <reader/datareader.h>
#include <snapshot/snapshotfile.h>

#include <QCoreApplication>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {

using std::chrono::milliseconds;

constexpr int requestsPerNode = 204;
constexpr int objectsPerNode = 200; // 6310h and 6311h, sub-indices 0 and 1, are asked for twice
const QDateTime morning(QDate(2026, 9, 3), QTime(10, 12), Qt::OffsetFromUTC, 7200);

int gapsOf(const SnapshotNode &node, SnapshotGap gap)
{
    return static_cast<int>(std::count_if(node.entries.begin(), node.entries.end(),
                                          [gap](const SnapshotEntry &entry) { return entry.gap == gap; }));
}

} // namespace

/*! Snapshots of the reads of a plug-in's reader, on a bus of three nodes that have object 1000h only. */
class tst_ReadSnapshots : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void wholeReadIsASnapshot();
    void silentNodeEndsTheRead();
    void stoppedNodeEndsTheRead();
    void cancelledReadIsKept();
    void lostBusIsKept();
    void bitRateIsThatOfTheBus();
    void nothingReadIsNoSnapshot();
    void nextReadBeginsAnew();
    void requestThatIsLeftOverIsOfNoRead();
    void isAFileThatCanBeReadAgain();

private:
    void startReading();
    void read(int requests = 0, const std::function<void()> &then = nullptr);
    void finish();

    milliseconds m_now{0};
    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<HostServices> m_services;
    std::unique_ptr<ReadSnapshots> m_snapshots;
    std::unique_ptr<DataReader> m_reader;
    QVector<Snapshot> m_made;
    QVector<quint8> m_states{0x05, 0x05, 0x05}; // of nodes 1 to 3: Operational
    int m_asked = 0;
};

void tst_ReadSnapshots::init()
{
    m_now = milliseconds(1000000);
    m_made.clear();
    m_states = {0x05, 0x05, 0x05};
    m_fake = std::make_unique<FakeBus>();
    m_services = std::make_unique<HostServices>([this] { return m_now; });
    m_services->bus().setDeviceFactory(m_fake->factory());
    m_services->bus().interfaceWatch().setLister([](const QString &) { return QStringList(); });
    m_snapshots = std::make_unique<ReadSnapshots>(m_services.get(), QStringLiteral("draxel 1.0.0"));
    m_snapshots->setClock([this] { return morning.addMSecs(m_now.count() - 1000000); });
    connect(m_snapshots.get(), &ReadSnapshots::snapshotReady, this,
            [this](const Snapshot &snapshot) { m_made.append(snapshot); });
    m_reader = std::make_unique<DataReader>();
    m_reader->setReceiverHub(m_services->getCanReceiverHub());
    m_reader->setSdoClient(m_services->getSdoClient());
    m_reader->setSecondarySdoClient(m_services->getSecondarySdoClient());
    CanOpen::SdoPatience patience;
    patience.repeats = 0;
    patience.longest = milliseconds(5);
    m_services->bus().sdoClient().setDefaultPatience(patience);
    for (const quint8 nodeId : {quint8(1), quint8(2), quint8(3)})
        m_fake->addNode(nodeId);
    QVERIFY(m_services->bus().connectToBus(fakeSettings(), nullptr));
}

void tst_ReadSnapshots::cleanup()
{
    m_reader.reset();
    m_snapshots.reset();
    m_services.reset();
    m_fake.reset();
}

void tst_ReadSnapshots::startReading()
{
    QVERIFY(m_reader->startReading());
    m_reader->findChild<QTimer *>()->stop(); // time is the test's own
    QCoreApplication::processEvents();
    for (int i = 0; i < m_states.size(); ++i)
        m_fake->heartbeat(static_cast<quint8>(i + 1), m_states.at(i));
    QCoreApplication::processEvents();
    m_now += milliseconds(2000);
    m_reader->handleHBdetectionTimeout();
}

/*! Reads, and does \a then when request number \a requests goes out. */
void tst_ReadSnapshots::read(int requests, const std::function<void()> &then)
{
    m_asked = 0;
    const auto connection
        = connect(&m_services->sdoClient(), &HostSdoClient::uploadStarted, this, [this, requests, then] {
              if (++m_asked == requests)
                  QMetaObject::invokeMethod(
                      this, [then] { then(); }, Qt::QueuedConnection);
          });
    startReading();
    QTRY_VERIFY(!m_reader->isReading());
    disconnect(connection);
    finish();
}

void tst_ReadSnapshots::finish()
{
    m_now += ReadObserver::quietTime;
    m_services->reads().check();
}

void tst_ReadSnapshots::wholeReadIsASnapshot()
{
    read();
    QCOMPARE(m_made.size(), 1);
    const Snapshot &snapshot = m_made.first();
    QCOMPARE(snapshot.program, QStringLiteral("draxel 1.0.0"));
    QCOMPARE(snapshot.time.toString(Qt::ISODate), QStringLiteral("2026-09-03T10:12:00+02:00"));
    QCOMPARE(snapshot.duration, qint64(2300));
    QCOMPARE(snapshot.bus, QStringLiteral("fake:bus0"));
    QCOMPARE(snapshot.scope, SnapshotScope::Imported);
    QCOMPARE(snapshot.nodes.size(), 3);
    for (const SnapshotNode &node : snapshot.nodes) {
        QCOMPARE(node.end, SnapshotEnd::Complete);
        QCOMPARE(node.nmtState.value_or(CanOpen::NmtState::BootUp), CanOpen::NmtState::Operational);
        QCOMPARE(node.entries.size(), objectsPerNode);
        QCOMPARE(node.value(0x1000, 0).toUInt(), 1U);
        QCOMPARE(node.find(0x1000, 0)->ms, qint64(2000));
        QCOMPARE(gapsOf(node, SnapshotGap::Absent), objectsPerNode - 1);
        QCOMPARE(node.find(0x1018, 4)->abortCode, quint32(0x06020000));
    }
    QVERIFY(snapshot.isComplete());
}

void tst_ReadSnapshots::silentNodeEndsTheRead()
{
    read(requestsPerNode + 10, [this] { m_fake->silence(2); });
    QCOMPARE(m_made.size(), 1);
    const Snapshot &snapshot = m_made.first();
    QCOMPARE(snapshot.nodes.size(), 3);
    QCOMPARE(snapshot.nodes.at(0).end, SnapshotEnd::Complete);
    QCOMPARE(snapshot.nodes.at(1).end, SnapshotEnd::Silent);
    QCOMPARE(gapsOf(snapshot.nodes.at(1), SnapshotGap::NoAnswer), 1);
    QCOMPARE(snapshot.nodes.at(1).value(0x1000, 0).toUInt(), 1U);
    QCOMPARE(snapshot.nodes.at(2).end, SnapshotEnd::Cancelled); // heard, and not asked any more
    QCOMPARE(snapshot.nodes.at(2).entries.size(), 0);
    QVERIFY(!snapshot.isComplete());
}

void tst_ReadSnapshots::stoppedNodeEndsTheRead()
{
    m_fake->silence(2);
    m_states[1] = 0x04;
    read();
    QCOMPARE(m_made.size(), 1);
    QCOMPARE(m_made.first().nodes.at(1).end, SnapshotEnd::Stopped);
}

void tst_ReadSnapshots::cancelledReadIsKept()
{
    read(10, [this] { m_services->cancelRead(); });
    QCOMPARE(m_made.size(), 1);
    const Snapshot &snapshot = m_made.first();
    QCOMPARE(snapshot.nodes.at(0).end, SnapshotEnd::Cancelled);
    QCOMPARE(snapshot.nodes.at(0).value(0x1000, 0).toUInt(), 1U);
    QVERIFY(gapsOf(snapshot.nodes.at(0), SnapshotGap::Cancelled) > 0);
    QCOMPARE(snapshot.nodes.at(1).end, SnapshotEnd::Cancelled);
}

void tst_ReadSnapshots::lostBusIsKept()
{
    read(requestsPerNode + 5, [this] { m_services->bus().disconnectFromBus(); });
    QCOMPARE(m_made.size(), 1);
    QCOMPARE(m_made.first().nodes.first().end, SnapshotEnd::Complete);
    QCOMPARE(m_made.first().nodes.at(1).end, SnapshotEnd::Cancelled);
}

/*! Also when the interface stays as it was configured, and when the bus has gone. */
void tst_ReadSnapshots::bitRateIsThatOfTheBus()
{
    m_services->bus().disconnectFromBus();
    m_fake->prepare
        = [](FakeCanDevice *device) { device->setConfigurationParameter(QCanBusDevice::BitRateKey, 83333); };
    QVERIFY(m_services->bus().connectToBus(fakeSettings(), nullptr));
    read(requestsPerNode + 5, [this] { m_services->bus().disconnectFromBus(); });
    QCOMPARE(m_made.size(), 1);
    QCOMPARE(m_made.first().bitRate, 83333);
}

void tst_ReadSnapshots::nothingReadIsNoSnapshot()
{
    m_fake->silence(1);
    read();
    QCOMPARE(m_made.size(), 0);
}

void tst_ReadSnapshots::nextReadBeginsAnew()
{
    read(requestsPerNode + 10, [this] { m_fake->silence(2); });
    m_states.removeLast();
    m_services->bus().heartbeats().clear();
    m_fake->addNode(2);
    read();
    QCOMPARE(m_made.size(), 2);
    QCOMPARE(m_made.last().nodes.at(0).entries.size(), objectsPerNode);
    QCOMPARE(m_made.last().nodes.at(1).end, SnapshotEnd::Complete);
    QCOMPARE(m_made.last().time, morning.addMSecs(2300));
}

/*! By hand, as another plug-in may do it: the one more request is to a node that the next read has nothing of. */
void tst_ReadSnapshots::requestThatIsLeftOverIsOfNoRead()
{
    constexpr quint16 type = 7; // UNSIGNED32
    const auto upload = [this](quint8 nodeId) {
        m_services->getSdoClient()->upload(nodeId, 0x1000, 0, type, 0);
        QTRY_COMPARE(m_services->sdoClient().pendingUploads(), 0);
    };
    m_fake->silence(2);
    upload(2);
    m_services->getCanReceiverHub()->getReceiver(0x701);
    QCOMPARE(m_services->reads().phase(), ReadObserver::Phase::Detecting);
    m_fake->addNode(2);
    upload(2);
    QCOMPARE(m_services->reads().phase(), ReadObserver::Phase::Detecting);
    m_now += milliseconds(2000);
    upload(1);
    finish();
    QCOMPARE(m_made.size(), 1);
    QCOMPARE(m_made.first().nodes.size(), 1);
    QCOMPARE(m_made.first().nodes.first().id, quint8(1));
}

void tst_ReadSnapshots::isAFileThatCanBeReadAgain()
{
    read(requestsPerNode + 10, [this] { m_fake->silence(2); });
    const QByteArray file = SnapshotFile::toJson(m_made.first());
    QString error;
    const auto again = SnapshotFile::fromJson(file, &error);
    QVERIFY2(again, qPrintable(error));
    QCOMPARE(SnapshotFile::toJson(*again), file);
}

QTEST_GUILESS_MAIN(tst_ReadSnapshots)
#include "tst_readsnapshots.moc"
