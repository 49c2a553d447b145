// SPDX-License-Identifier: MIT
#include <tests/support/fakebus.h>

#include <host/core/hostservices.h>
#include <reader/datareader.h>

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {

using std::chrono::milliseconds;
using Phase = ReadObserver::Phase;

constexpr int nodeCount = 3;
constexpr int requestsPerNode = 204;
constexpr int objectsPerNode = 200; // 6310h and 6311h, sub-indices 0 and 1, are asked for twice
constexpr int requests = nodeCount * requestsPerNode;

/*! How a read is ended, and when. */
enum class Stop { None, Silence, Cancel, Disconnect };

struct Plan
{
    Stop stop = Stop::None;
    int atRequest = 1; // the one that is stopped at
    int turns = 0;     // of the event loop, until the next read begins
};

} // namespace

/*! Reads that follow one another in every order, by the plug-in's reader on the host's services. */
class tst_RepeatedReads : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void leftOverThatIsUnderWay();
    void leftOverThatHasStillToCome();
    void cancelledDuringDetection();
    void anyOrder();

private:
    void wakeNodes();
    void connectBus();
    void start();
    void endDetection();
    void runTo(const Plan &plan);
    void turn(int times)
    {
        for (int i = 0; i < times; ++i)
            QCoreApplication::processEvents();
    }
    bool waitForEnd()
    {
        QTimer bound; // of a test that goes wrong
        bound.setSingleShot(true);
        bound.start(20000);
        while (m_reader->isReading() && bound.isActive())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return !m_reader->isReading();
    }
    void stopAt(quint8 nodeId);
    void setLongestWait(milliseconds longest);
    void readWhole();

    milliseconds m_now{0};
    std::unique_ptr<FakeBus> m_fake;
    std::unique_ptr<HostServices> m_services;
    std::unique_ptr<DataReader> m_reader;
    int m_asked = 0; // requests of this read
    Plan m_plan;
};

void tst_RepeatedReads::init()
{
    m_now = milliseconds(1000000);
    m_plan = Plan();
    m_fake = std::make_unique<FakeBus>();
    m_services = std::make_unique<HostServices>([this] { return m_now; });
    m_services->bus().setDeviceFactory(m_fake->factory());
    m_services->bus().interfaceWatch().setLister([](const QString &) { return QStringList(); });
    m_reader = std::make_unique<DataReader>();
    m_reader->setReceiverHub(m_services->getCanReceiverHub());
    m_reader->setSdoClient(m_services->getSdoClient());
    m_reader->setSecondarySdoClient(m_services->getSecondarySdoClient());
    connect(&m_services->sdoClient(), &HostSdoClient::uploadStarted, m_reader.get(), [this](quint8 nodeId) {
        if (!m_reader->isReading())
            return; // the one more request
        if (++m_asked == m_plan.atRequest)
            stopAt(nodeId);
    });
    connectBus();
}

void tst_RepeatedReads::cleanup()
{
    m_reader.reset();
    m_services.reset();
    m_fake.reset();
}

void tst_RepeatedReads::wakeNodes()
{
    for (quint8 nodeId = 1; nodeId <= nodeCount; ++nodeId)
        m_fake->addNode(nodeId);
    setLongestWait(milliseconds(5));
}

void tst_RepeatedReads::connectBus()
{
    if (m_services->bus().state() != BusConnection::State::Connected)
        QVERIFY(m_services->bus().connectToBus(fakeSettings(), nullptr));
}

/*! Of one upload to a node that is silent. */
void tst_RepeatedReads::setLongestWait(milliseconds longest)
{
    CanOpen::SdoPatience patience;
    patience.repeats = 0;
    patience.longest = longest;
    m_services->bus().sdoClient().setDefaultPatience(patience);
}

void tst_RepeatedReads::stopAt(quint8 nodeId)
{
    switch (m_plan.stop) {
    case Stop::None:
        break;
    case Stop::Silence:
        m_fake->silence(nodeId);
        break;
    case Stop::Cancel:
        QMetaObject::invokeMethod(m_services.get(), &HostServices::cancelRead, Qt::QueuedConnection);
        break;
    case Stop::Disconnect:
        QMetaObject::invokeMethod(&m_services->bus(), &BusConnection::disconnectFromBus,
                                  Qt::QueuedConnection);
        break;
    }
}

void tst_RepeatedReads::start()
{
    m_asked = 0;
    QVERIFY(m_reader->startReading());
    m_reader->findChild<QTimer *>()->stop(); // time is the test's own
    QCOMPARE(m_services->reads().phase(), Phase::Detecting);
}

void tst_RepeatedReads::endDetection()
{
    for (quint8 nodeId = 1; nodeId <= nodeCount; ++nodeId)
        m_fake->heartbeat(nodeId);
    turn(3);
    m_now += milliseconds(2000);
    m_asked = 0;
    m_reader->handleHBdetectionTimeout();
}

/*! Reads until \a plan ends it, and lets the time until the next read pass. */
void tst_RepeatedReads::runTo(const Plan &plan)
{
    m_plan = plan;
    start();
    turn(3);
    wakeNodes();
    endDetection();
    QVERIFY(waitForEnd());
    m_plan = Plan();
    // What is left over would now wait for longer than the test takes.
    setLongestWait(milliseconds(60000));
    turn(plan.turns);
}

void tst_RepeatedReads::readWhole()
{
    m_plan = Plan();
    m_plan.atRequest = 0; // never
    connectBus();
    start();
    turn(3); // what is left over still finds the node silent
    wakeNodes();
    endDetection();
    QVERIFY(waitForEnd());
    QCOMPARE(m_asked, requests);
    const ReadCounts counts = m_services->reads().summary().record.total();
    QCOMPARE(counts.values, nodeCount);
    QCOMPARE(counts.missing, nodeCount * (objectsPerNode - 1));
    QCOMPARE(counts.failed, 0);
    for (quint8 nodeId = 1; nodeId <= nodeCount; ++nodeId) {
        QVariant value;
        QVERIFY(m_reader->getValue(nodeId, 0x1000, 0, value));
        QCOMPARE(value.toUInt(), 1U);
        QCOMPARE(m_reader->getIndexList(nodeId), QList<quint16>{0x1000});
    }
    QCOMPARE(m_services->reads().phase(), Phase::Reading);
    m_now += ReadObserver::quietTime;
    m_services->reads().check();
    QCOMPARE(m_services->reads().phase(), Phase::Idle);
    QCOMPARE(m_services->reads().summary().end, ReadSummary::End::Complete);
}

void tst_RepeatedReads::leftOverThatIsUnderWay()
{
    runTo({Stop::Silence, requestsPerNode + 12, 0});
    QTRY_COMPARE(m_services->sdoClient().pendingUploads(), 1); // the one more request
    readWhole();
}

void tst_RepeatedReads::leftOverThatHasStillToCome()
{
    runTo({Stop::Silence, 12, 0}); // the request then goes to node 1, whatever was read
    QCOMPARE(m_services->sdoClient().pendingUploads(), 0);
    readWhole();
}

void tst_RepeatedReads::cancelledDuringDetection()
{
    wakeNodes();
    start();
    m_services->cancelRead();
    endDetection();
    QVERIFY(waitForEnd());
    QCOMPARE(m_asked, 1);
    QCOMPARE(m_services->reads().summary().end, ReadSummary::End::Cancelled);
    readWhole();
}

void tst_RepeatedReads::anyOrder()
{
    const Stop stops[] = {Stop::Silence, Stop::Cancel, Stop::Disconnect};
    QRandomGenerator random(20261121);
    for (int order = 0; order < 100; ++order) {
        const int reads = random.bounded(1, 5);
        for (int i = 0; i < reads; ++i) {
            connectBus();
            Plan plan;
            plan.stop = stops[random.bounded(3)];
            plan.atRequest = random.bounded(1, requests + 1);
            plan.turns = random.bounded(6);
            runTo(plan);
            if (QTest::currentTestFailed())
                return;
            if (random.bounded(3) == 0) { // or the user waits
                m_now += milliseconds(random.bounded(600));
                m_services->reads().check();
            }
        }
        readWhole();
        if (QTest::currentTestFailed()) {
            qWarning("in order number %d", order);
            return;
        }
    }
}

QTEST_GUILESS_MAIN(tst_RepeatedReads)
#include "tst_repeatedreads.moc"
