// SPDX-License-Identifier: MIT
#include <tests/support/logwatcher.h>
#include <tests/support/readerbench.h>
#include <tests/support/storebuilder.h>

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

class tst_Discovery : public QObject
{
    Q_OBJECT

private slots:
    void methodsHaveTheirOrderAndSignatures();
    void startListensToAllHeartbeats();
    void detectionTimerIsOneShotOfTwoSeconds();
    void secondStartIsRefused();
    void silentBusEndsTheRun();
    void nodesAreSortedAndReadingStartsWithNodeOne();
    void withoutNodeOneNothingIsRead();
    void repeatedHeartbeatsAddANodeOnce();
    void onlyLowBitsOfTheNumberCount();
    void heartbeatsOutsideDetectionAreIgnored();
    void secondRunKeepsSilentNodes();
    void secondRunDoesNotDoubleNodes();
    void startClearsValuesNotNodes();
    void missingReceiversAreSkipped();
    void startWithoutHubListensToNothing();
    void destroyedTimerIsMadeAgain();
    void nodeListIsWrittenToTheLog();
    void finishedSubscribesToNmtStates();
    void progressReportsDoNotSubscribe();
    void missingNmtSourcesAreSkipped();
    void nmtStateIsPassedOnUnchanged();
};

namespace {

/*! A reader whose requests stay unanswered. */
struct Bench : ReaderBench
{
    Bench() { host.sdoClient.setMode(FakeSdoClient::Mode::Hold); }
};

} // namespace

void tst_Discovery::methodsHaveTheirOrderAndSignatures()
{
    const QMetaObject &meta = DataReader::staticMetaObject;
    const QList<QByteArray> methods{
        "done(quint32)",
        "nmtStateUpdate(quint8,NmtSender::NmtState)",
        "sdoResultReceived(quint8,quint16,quint8,QVariant)",
        "sdoErrorReceived(quint8,quint16,quint8,quint32)",
        "received(quint16)",
        "handleHBdetectionTimeout()",
        "readNextElement()",
        "newNmtState(quint8,NmtSender::NmtState)",
        "finishedSlot(quint32)",
    };
    QCOMPARE(meta.methodCount() - meta.methodOffset(), methods.size());
    for (int i = 0; i < methods.size(); ++i)
        QCOMPARE(meta.indexOfMethod(methods.at(i).constData()), meta.methodOffset() + i);
    QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.method(meta.methodOffset() + 1).methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.method(meta.methodOffset() + 2).methodType(), QMetaMethod::Slot);
}

void tst_Discovery::startListensToAllHeartbeats()
{
    LogWatcher log;
    Bench bench;
    QVERIFY(!bench.reader.isReading());
    QVERIFY(bench.reader.startReading());
    QVERIFY(bench.reader.isReading());
    QCOMPARE(bench.host.hub.askedCobIds.size(), 127);
    QCOMPARE(bench.host.hub.askedCobIds.constFirst(), quint16(0x701));
    QCOMPARE(bench.host.hub.askedCobIds.constLast(), quint16(0x77F));
    for (int nodeId = 1; nodeId < 128; ++nodeId)
        QCOMPARE(bench.host.hub.receiver(static_cast<quint8>(nodeId))->connections, 1);
    QCOMPARE(log.warnings(), QStringList());
}

void tst_Discovery::detectionTimerIsOneShotOfTwoSeconds()
{
    Bench bench;
    QVERIFY(bench.reader.findChildren<QTimer *>().isEmpty());
    bench.reader.startReading();
    const QList<QTimer *> timers = bench.reader.findChildren<QTimer *>();
    QCOMPARE(timers.size(), 1);
    QCOMPARE(timers.constFirst()->interval(), 2000);
    QVERIFY(timers.constFirst()->isSingleShot());
    QVERIFY(timers.constFirst()->isActive());
    QCOMPARE(timers.constFirst()->timerType(), Qt::PreciseTimer);
    // The time-out reaches the slot, once.
    QSignalSpy timeouts(timers.constFirst(), &QTimer::timeout);
    LogWatcher log;
    QVERIFY(QMetaObject::invokeMethod(timers.constFirst(), "timeout"));
    QVERIFY(!bench.reader.isReading());
    QCOMPARE(log.debugLines().filter(QStringLiteral("Found nodes:")).size(), 1);
    // Nor is it connected twice by the next run.
    log.clear();
    bench.reader.startReading();
    QCOMPARE(bench.reader.findChildren<QTimer *>(), timers);
    QVERIFY(QMetaObject::invokeMethod(timers.constFirst(), "timeout"));
    QCOMPARE(log.debugLines().filter(QStringLiteral("Found nodes:")).size(), 1);
}

void tst_Discovery::secondStartIsRefused()
{
    Bench bench;
    bench.reader.startReading();
    bench.reader.setValue(1, 0x1000, 0, 7u);
    QVERIFY(!bench.reader.startReading());
    QVERIFY(bench.reader.isReading());
    QCOMPARE(bench.host.hub.receiver(1)->connections, 1);
    QVariant value;
    QVERIFY(bench.reader.getValue(1, 0x1000, 0, value));
}

void tst_Discovery::silentBusEndsTheRun()
{
    Bench bench;
    bench.reader.setValue(1, 0x1000, 0, 7u);
    QSignalSpy done(&bench.reader, SIGNAL(done(quint32)));
    LogWatcher log;
    bench.detect({});
    QVERIFY(!bench.reader.isReading());
    QVERIFY(bench.reader.getIndexList(1).isEmpty());
    QCOMPARE(done.size(), 0);
    QCOMPARE(log.debugLines(), QStringList{QStringLiteral("Found nodes: ()")});
    QCOMPARE(log.warnings(), QStringList());
}

void tst_Discovery::nodesAreSortedAndReadingStartsWithNodeOne()
{
    Bench bench;
    LogWatcher log;
    bench.detect({16, 5, 1});
    QCOMPARE(log.debugLines(), QStringList{QStringLiteral("Found nodes: (1, 5, 16)")});
    QCOMPARE(bench.reader.getNodeList(), (QList<quint8>{1, 5, 16}));
    QVERIFY(bench.reader.isReading());
    QVERIFY(bench.host.sdoClient.requests().isEmpty()); // only from the event loop
    QTRY_COMPARE(bench.host.sdoClient.requests().size(), 1);
    const SdoRequest request = bench.host.sdoClient.requests().constFirst();
    QCOMPARE(request.nodeId, quint8(1));
    QCOMPARE(request.index, quint16(0x1000));
    QCOMPARE(request.subIndex, quint8(0));
    QCOMPARE(request.dataType, quint16(7));
    QCOMPARE(request.timeout, 100);
}

void tst_Discovery::withoutNodeOneNothingIsRead()
{
    Bench bench;
    QSignalSpy done(&bench.reader, SIGNAL(done(quint32)));
    bench.detect({3, 2});
    QVERIFY(!bench.reader.isReading());
    QCOMPARE(bench.reader.getNodeList(), (QList<quint8>{2, 3}));
    QCoreApplication::processEvents();
    QVERIFY(bench.host.sdoClient.requests().isEmpty());
    QCOMPARE(done.size(), 0);
}

void tst_Discovery::repeatedHeartbeatsAddANodeOnce()
{
    Bench bench;
    bench.detect({5, 5, 5, 5, 5, 5, 5, 5, 5, 5});
    QCOMPARE(bench.reader.getNodeList(), QList<quint8>{5});
}

void tst_Discovery::onlyLowBitsOfTheNumberCount()
{
    Bench bench;
    bench.reader.startReading();
    bench.reader.received(0x705);
    bench.reader.received(5);
    bench.reader.received(0x77F);
    bench.reader.received(0x7C8); // eight bits, not the seven of a node ID
    QCOMPARE(bench.reader.getNodeList(), (QList<quint8>{5, 127, 200}));
}

void tst_Discovery::heartbeatsOutsideDetectionAreIgnored()
{
    Bench bench;
    bench.reader.received(0x705);
    bench.detect({1});
    bench.host.hub.heartbeat(9); // still connected
    QCOMPARE(bench.reader.getNodeList(), QList<quint8>{1});
}

void tst_Discovery::secondRunKeepsSilentNodes()
{
    Bench bench;
    bench.detect({1, 7});
    bench.reader.sdoErrorReceived(1, 0x1000, 0, 0xFFFFFFFF);
    QVERIFY(!bench.reader.isReading());
    bench.detect({1});
    QCOMPARE(bench.reader.getNodeList(), (QList<quint8>{1, 7}));
}

void tst_Discovery::secondRunDoesNotDoubleNodes()
{
    Bench bench;
    bench.detect({2});
    bench.detect({2, 3});
    QCOMPARE(bench.host.hub.receiver(2)->connections, 2);
    QCOMPARE(bench.reader.getNodeList(), (QList<quint8>{2, 3}));
}

void tst_Discovery::startClearsValuesNotNodes()
{
    Bench bench;
    StoreBuilder(bench.reader, {9}).node(9).set(0x1000, 0, 1u);
    bench.reader.startReading();
    QVERIFY(bench.reader.getIndexList(9).isEmpty());
    QCOMPARE(bench.reader.getNodeList(), QList<quint8>{9});
}

void tst_Discovery::missingReceiversAreSkipped()
{
    LogWatcher log;
    Bench bench;
    bench.host.hub.removeReceiver(1);
    bench.host.hub.removeReceiver(127);
    bench.detect({2});
    QCOMPARE(bench.reader.getNodeList(), QList<quint8>{2});
    QCOMPARE(log.warnings(), QStringList());
}

void tst_Discovery::startWithoutHubListensToNothing()
{
    DataReader reader;
    QVERIFY(reader.startReading());
    reader.handleHBdetectionTimeout();
    QVERIFY(!reader.isReading());
    reader.finishedSlot(0);
}

void tst_Discovery::destroyedTimerIsMadeAgain()
{
    Bench bench;
    bench.detect({});
    delete bench.reader.findChild<QTimer *>();
    QVERIFY(bench.reader.startReading());
    QVERIFY(bench.reader.findChild<QTimer *>() != nullptr);
    QCOMPARE(bench.reader.findChild<QTimer *>()->interval(), 2000);
}

void tst_Discovery::nodeListIsWrittenToTheLog()
{
    Bench bench;
    LogWatcher log;
    bench.reader.getNodeList();
    StoreBuilder(bench.reader, {1, 5, 16});
    bench.reader.getNodeList();
    QCOMPARE(log.debugLines(), (QStringList{QStringLiteral("()"), QStringLiteral("(1, 5, 16)")}));
}

void tst_Discovery::finishedSubscribesToNmtStates()
{
    Bench bench;
    StoreBuilder(bench.reader, {1, 7});
    QSignalSpy updates(&bench.reader, SIGNAL(nmtStateUpdate(quint8, NmtSender::NmtState)));
    LogWatcher log;
    bench.host.hub.reportNmtState(7, NmtSender::Operational);
    QCOMPARE(updates.size(), 0);

    emit bench.reader.done(0); // connected to the slot
    QCOMPARE(log.debugLines(), QStringList{QStringLiteral("void DataReader::finishedSlot(quint32)")});
    bench.host.hub.reportNmtState(7, NmtSender::Operational);
    QCOMPARE(updates.size(), 1);
    QCOMPARE(updates.at(0).at(0).toUInt(), 7u);
    bench.host.hub.reportNmtState(8, NmtSender::Operational);
    QCOMPARE(updates.size(), 1);

    // Every end of a run adds a connection.
    bench.reader.finishedSlot(0);
    bench.host.hub.reportNmtState(1, NmtSender::Stopped);
    QCOMPARE(updates.size(), 3);
    QCOMPARE(log.warnings(), QStringList());
}

void tst_Discovery::progressReportsDoNotSubscribe()
{
    Bench bench;
    StoreBuilder(bench.reader, {1});
    QSignalSpy updates(&bench.reader, SIGNAL(nmtStateUpdate(quint8, NmtSender::NmtState)));
    bench.reader.startReading();
    LogWatcher log;
    emit bench.reader.done(0x1000);
    QCOMPARE(log.debugLines(), QStringList());
    bench.host.hub.reportNmtState(1, NmtSender::Operational);
    QCOMPARE(updates.size(), 0);
}

void tst_Discovery::missingNmtSourcesAreSkipped()
{
    LogWatcher log;
    Bench bench;
    StoreBuilder(bench.reader, {0, 1, 7, 200});
    bench.host.hub.removeNmtSource(1);
    QSignalSpy updates(&bench.reader, SIGNAL(nmtStateUpdate(quint8, NmtSender::NmtState)));
    bench.reader.finishedSlot(0);
    bench.host.hub.reportNmtState(7, NmtSender::BootUp);
    QCOMPARE(updates.size(), 1);
    QCOMPARE(log.warnings(), QStringList());
}

void tst_Discovery::nmtStateIsPassedOnUnchanged()
{
    Bench bench;
    QSignalSpy updates(&bench.reader, SIGNAL(nmtStateUpdate(quint8, NmtSender::NmtState)));
    for (int state = 0; state <= 5; ++state)
        bench.reader.newNmtState(99, static_cast<NmtSender::NmtState>(state));
    QCOMPARE(updates.size(), 6);
    for (int state = 0; state <= 5; ++state) {
        QCOMPARE(updates.at(state).at(0).toUInt(), 99u);
        QCOMPARE(static_cast<int>(updates.at(state).at(1).value<NmtSender::NmtState>()), state);
    }
}

QTEST_GUILESS_MAIN(tst_Discovery)
#include "tst_discovery.moc"
