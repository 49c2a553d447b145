// SPDX-License-Identifier: MIT
#include <tests/support/logwatcher.h>
#include <tests/support/readerbench.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

constexpr int entriesPerNode = 204;
constexpr quint32 noAnswer = 0xFFFFFFFF;

/*! A reader, and what it has asked for. */
struct Bench : ReaderBench
{
    const QVector<SdoRequest> &requests() const { return host.sdoClient.requests(); }
};

QList<quint32> values(const QSignalSpy &spy)
{
    QList<quint32> list;
    for (const QList<QVariant> &arguments : spy)
        list.append(arguments.at(0).toUInt());
    return list;
}

/*! The objects asked for, one after the other: "1018 0-4" for neighbouring sub-indices. */
QStringList askedFor(const QVector<SdoRequest> &requests)
{
    QStringList objects;
    for (int i = 0; i < requests.size();) {
        int last = i;
        while (last + 1 < requests.size() && requests.at(last + 1).index == requests.at(i).index
               && requests.at(last + 1).subIndex == requests.at(last).subIndex + 1)
            ++last;
        objects.append(QStringLiteral("%1 %2-%3")
                           .arg(QString::number(requests.at(i).index, 16).toUpper())
                           .arg(requests.at(i).subIndex)
                           .arg(requests.at(last).subIndex));
        i = last + 1;
    }
    return objects;
}

} // namespace

class tst_ReadSequence : public QObject
{
    Q_OBJECT

private slots:
    void readsTwoNodesInTableOrder();
    void asksForTheWholeListInItsOrder();
    void beginsWithNodeOneWhateverTheListBeginsWith();
    void reportsEachIndexAndTheEndOnce();
    void reportsAnIndexAfterItsUpload();
    void reportsTheEndWhenTheRunIsOver();
    void abortedObjectsAreSkipped();
    void everyErrorButNoAnswerIsSkipped_data();
    void everyErrorButNoAnswerIsSkipped();
    void timeoutEndsTheRun();
    void timeoutOnTheLastEntryReportsTheEndTwice();
    void oneRequestGoesOutAfterATimeout();
    void foreignAnswerIsFiledUnderItsOwnKeyAndAdvances();
    void laterAnswerToAnOverlappingObjectStays();
    void answersOutsideARunAreIgnored();
    void lateAnswerDuringTheNextDetectionDoesNotStartTheSequence();
    void secondaryClientIsListenedTo();
    void nextRequestComesFromTheEventLoop();
    void nextRequestNeedsNoPostedEvent();
    void eachAnswerBringsARequest();
    void noClientReportsTheEndAndKeepsReading();
    void clientThatReturnsContinuesTheRun();
    void clientsAreConnectedOnce();
    void nullSecondaryClientIsRefused();
    void importDuringARunDoesNotMoveTheRequest();
    void importThatShortensTheListEndsTheRun();
    void listLongerThanTheBusHasNodesIsReadOnce();
    void negativeAndLargeValuesAreKept();
    void progressCounts();
};

void tst_ReadSequence::readsTwoNodesInTableOrder()
{
    LogWatcher log;
    Bench bench;
    bench.host.sdoClient.setDefaultValue(1u);
    bench.detect({5, 1});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(bench.requests().size(), 2 * entriesPerNode);
    for (int i = 0; i < entriesPerNode; ++i) {
        const SdoRequest &first = bench.requests().at(i);
        const SdoRequest &second = bench.requests().at(i + entriesPerNode);
        QCOMPARE(first.nodeId, quint8(1));
        QCOMPARE(second.nodeId, quint8(5));
        QCOMPARE(first.index, second.index);
        QCOMPARE(first.subIndex, second.subIndex);
        QCOMPARE(first.dataType, second.dataType);
        QCOMPARE(first.timeout, 100);
    }
    const auto isRequest = [&bench](int position, quint16 index, quint8 subIndex, quint16 dataType) {
        const SdoRequest &request = bench.requests().at(position);
        return request.index == index && request.subIndex == subIndex && request.dataType == dataType;
    };
    QVERIFY(isRequest(0, 0x1000, 0, 7));
    QVERIFY(isRequest(1, 0x1001, 0, 5));
    QVERIFY(isRequest(2, 0x1018, 0, 5));
    QVERIFY(isRequest(6, 0x1018, 4, 7));
    QVERIFY(isRequest(7, 0x6000, 0, 5));
    QVERIFY(isRequest(203, 0x6311, 7, 6));
    // 6310h and 6311h are asked for twice: 204 requests fill 200 keys.
    QVariant value;
    QVERIFY(bench.reader.getValue(5, 0x6311, 7, value));
    QCOMPARE(log.warnings(), QStringList());
}

void tst_ReadSequence::asksForTheWholeListInItsOrder()
{
    Bench bench;
    bench.detect({1});
    QTRY_VERIFY(!bench.reader.isReading());
    const QString list = QStringLiteral(
        "1000 0-0, 1001 0-0, 1018 0-4, 6000 0-5, 6001 0-5, 6002 0-5, 6003 0-5, 6005 0-0, 6008 0-4, 600D 0-0, "
        "600E 0-14, 6020 0-5, 6022 0-5, 6023 0-5, 6024 0-5, 6025 0-5, 6026 0-5, 6027 0-5, 603E 0-5, "
        "6040 0-5, 6042 0-5, 6046 0-2, 6047 0-2, 6048 0-2, 6049 0-2, 604A 0-2, 604B 0-2, 604C 0-2, 604D 0-2, "
        "604E 0-2, 604F 0-2, "
        "6080 0-0, 6081 0-0, "
        "6100 0-2, 6102 0-2, 6105 0-2, 6120 0-1, 6121 0-1, 6126 0-2, 6127 0-2, 6160 0-2, 6162 0-2, 6164 0-2, "
        "6176 0-2, 6310 0-1, 6311 0-1, 6312 0-1, "
        "62E8 0-5, "
        "6310 0-7, 6311 0-7");
    QCOMPARE(askedFor(bench.requests()).join(QStringLiteral(", ")), list);
}

void tst_ReadSequence::beginsWithNodeOneWhateverTheListBeginsWith()
{
    Bench bench;
    // An import lists a node 0 for every end of a node; it stands before node 1 in the sorted list.
    bench.reader.importXml(QStringLiteral("<nodes><node nodeid=\"0\">"));
    bench.detect({1, 5});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(bench.reader.getNodeList(), (QList<quint8>{0, 1, 5}));
    QCOMPARE(bench.requests().size(), 3 * entriesPerNode);
    // Node 1 stands in the place of the first of the list, and again in its own.
    QCOMPARE(bench.requests().at(0).nodeId, quint8(1));
    QCOMPARE(bench.requests().at(entriesPerNode - 1).nodeId, quint8(1));
    QCOMPARE(bench.requests().at(entriesPerNode).nodeId, quint8(1));
    QCOMPARE(bench.requests().at(2 * entriesPerNode).nodeId, quint8(5));
}

void tst_ReadSequence::reportsEachIndexAndTheEndOnce()
{
    Bench bench;
    QSignalSpy done(&bench.reader, SIGNAL(done(quint32)));
    bench.detect({1, 5});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(done.size(), 2 * entriesPerNode + 1);
    const QList<quint32> reported = values(done);
    for (int i = 0; i < 2 * entriesPerNode; ++i)
        QCOMPARE(reported.at(i), quint32(bench.requests().at(i).index));
    QCOMPARE(reported.count(0), 1);
    QCOMPARE(reported.constLast(), 0u);
}

void tst_ReadSequence::reportsAnIndexAfterItsUpload()
{
    Bench bench;
    QList<int> requestsAtReport;
    connect(&bench.reader, &DataReader::done, &bench.host.sdoClient, [&](quint32 index) {
        if (index != 0)
            requestsAtReport.append(bench.requests().size());
    });
    bench.detect({1});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(requestsAtReport.size(), entriesPerNode);
    for (int i = 0; i < entriesPerNode; ++i)
        QCOMPARE(requestsAtReport.at(i), i + 1);
}

void tst_ReadSequence::reportsTheEndWhenTheRunIsOver()
{
    for (const bool isTimeout : {false, true}) {
        Bench bench;
        if (isTimeout)
            bench.host.sdoClient.setError(1, 0x6000, 0, noAnswer);
        LogWatcher log;
        bool isReadingAtEnd = true;
        QStringList linesAtEnd;
        connect(&bench.reader, &DataReader::done, &bench.host.sdoClient, [&](quint32 index) {
            if (index != 0)
                return;
            isReadingAtEnd = bench.reader.isReading();
            linesAtEnd = log.debugLines();
        });
        bench.detect({1});
        QTRY_VERIFY(!bench.reader.isReading());
        QVERIFY(!isReadingAtEnd);
        // The states are subscribed to first, and why the run ended is said last.
        const QStringList common{QStringLiteral("Found nodes: (1)"),
                                 QStringLiteral("void DataReader::finishedSlot(quint32)")};
        QCOMPARE(linesAtEnd, common);
        QCOMPARE(log.debugLines().mid(2, 1),
                 isTimeout ? QStringList{QStringLiteral("Stop on Timeout: Node =  1 index =  24576")}
                           : QStringList());
    }
}

void tst_ReadSequence::abortedObjectsAreSkipped()
{
    Bench bench;
    bench.host.sdoClient.setValue(1, 0x1000, 0, 0x1C6u);
    bench.host.sdoClient.setValue(1, 0x1001, 0, 0u);
    for (quint8 subIndex = 0; subIndex <= 4; ++subIndex)
        bench.host.sdoClient.setValue(1, 0x1018, subIndex, subIndex == 0 ? 4u : 100u + subIndex);
    bench.detect({1, 2});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(bench.reader.getIndexList(1), (QList<quint16>{0x1000, 0x1001, 0x1018}));
    QCOMPARE(bench.reader.getSubIndexList(1, 0x1018), (QList<quint8>{0, 1, 2, 3, 4}));
    QCOMPARE(bench.requests().size(), 2 * entriesPerNode);
    QCOMPARE(bench.requests().at(entriesPerNode).nodeId, quint8(2));
}

void tst_ReadSequence::everyErrorButNoAnswerIsSkipped_data()
{
    QTest::addColumn<quint32>("code");
    QTest::newRow("no such object") << 0x06020000u;
    QTest::newRow("time-out of the SDO protocol itself") << 0x05040000u;
    QTest::newRow("zero") << 0u;
    QTest::newRow("one less than no answer") << 0xFFFFFFFEu;
}

void tst_ReadSequence::everyErrorButNoAnswerIsSkipped()
{
    QFETCH(quint32, code);
    Bench bench;
    bench.host.sdoClient.setDefaultValue(1u);
    bench.host.sdoClient.setError(1, 0x6000, 0, code);
    bench.detect({1});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(bench.requests().size(), entriesPerNode);
    QVariant value;
    QVERIFY(!bench.reader.getValue(1, 0x6000, 0, value));
    QVERIFY(bench.reader.getValue(1, 0x6000, 1, value));
}

void tst_ReadSequence::timeoutEndsTheRun()
{
    Bench bench;
    bench.host.sdoClient.setDefaultValue(1u);
    bench.host.sdoClient.setError(5, 0x6000, 0, noAnswer);
    QSignalSpy done(&bench.reader, SIGNAL(done(quint32)));
    LogWatcher log;
    bench.detect({1, 5, 7});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(log.debugLines().filter(QStringLiteral("Stop on Timeout: Node = ")),
             QStringList{QStringLiteral("Stop on Timeout: Node =  5 index =  24576")});
    QCOMPARE(bench.reader.getIndexList(5), (QList<quint16>{0x1000, 0x1001, 0x1018}));
    QCOMPARE(bench.reader.getSubIndexList(5, 0x1018), (QList<quint8>{0, 1, 2, 3, 4}));
    QVERIFY(bench.reader.getIndexList(7).isEmpty());
    QVariant value;
    QVERIFY(bench.reader.getValue(1, 0x6311, 7, value));
    QCOMPARE(values(done).count(0), 1);
}

void tst_ReadSequence::timeoutOnTheLastEntryReportsTheEndTwice()
{
    Bench bench;
    bench.host.sdoClient.setError(1, 0x6311, 7, noAnswer);
    QSignalSpy done(&bench.reader, SIGNAL(done(quint32)));
    bench.detect({1});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(values(done).count(0), 2);
    QCOMPARE(bench.requests().size(), entriesPerNode);
    QCoreApplication::processEvents();
    QCOMPARE(bench.requests().size(), entriesPerNode);
}

void tst_ReadSequence::oneRequestGoesOutAfterATimeout()
{
    Bench bench;
    bench.host.sdoClient.setDefaultValue(1u);
    bench.host.sdoClient.setError(1, 0x1001, 0, noAnswer);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 3);
    QVERIFY(!bench.reader.isReading());
    QCOMPARE(bench.requests().at(2).index, quint16(0x1018));
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
    QCOMPARE(bench.requests().size(), 3);
    QCOMPARE(bench.reader.getIndexList(1), QList<quint16>{0x1000}); // its answer was ignored
}

void tst_ReadSequence::foreignAnswerIsFiledUnderItsOwnKeyAndAdvances()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 1);
    emit bench.host.sdoClient.resultReceived(44, 0x2345, 6, QVariant(789u));
    QVariant value;
    QVERIFY(bench.reader.getValue(44, 0x2345, 6, value));
    QCOMPARE(value, QVariant(789u));
    QVERIFY(bench.reader.getIndexList(1).isEmpty());
    QTRY_COMPARE(bench.requests().size(), 2);
    QCOMPARE(bench.requests().at(1).index, quint16(0x1001));
}

void tst_ReadSequence::laterAnswerToAnOverlappingObjectStays()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QList<quint16> types;
    for (int i = 0; i < entriesPerNode; ++i) {
        QTRY_COMPARE(bench.requests().size(), i + 1);
        const SdoRequest request = bench.requests().constLast();
        if (request.index == 0x6311 && request.subIndex == 1)
            types.append(request.dataType);
        emit bench.host.sdoClient.resultReceived(request.nodeId, request.index, request.subIndex,
                                                 QVariant(static_cast<uint>(i)));
    }
    QVERIFY(!bench.reader.isReading());
    QCOMPARE(types, (QList<quint16>{7, 6}));
    QVariant value;
    QVERIFY(bench.reader.getValue(1, 0x6311, 1, value));
    QCOMPARE(value.toUInt(), 197u); // position of the request in group 5
    QVERIFY(bench.reader.getValue(1, 0x6310, 1, value));
    QCOMPARE(value.toUInt(), 189u);
}

void tst_ReadSequence::answersOutsideARunAreIgnored()
{
    Bench bench;
    QSignalSpy done(&bench.reader, SIGNAL(done(quint32)));
    emit bench.host.sdoClient.resultReceived(1, 0x1000, 0, QVariant(1u));
    emit bench.host.sdoClient.errorReceived(1, 0x1000, 0, noAnswer);
    emit bench.host.sdoClient.errorReceived(1, 0x1000, 0, 0x06020000);
    QCoreApplication::processEvents();
    QVERIFY(bench.reader.getIndexList(1).isEmpty());
    QVERIFY(bench.requests().isEmpty());
    QCOMPARE(done.size(), 0);
}

void tst_ReadSequence::lateAnswerDuringTheNextDetectionDoesNotStartTheSequence()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 1);
    emit bench.host.sdoClient.errorReceived(1, 0x1000, 0, noAnswer);
    QTRY_COMPARE(bench.requests().size(), 2);

    bench.reader.startReading();
    emit bench.host.sdoClient.errorReceived(1, 0x1001, 0, noAnswer);
    QVERIFY(bench.reader.isReading());
    emit bench.host.sdoClient.resultReceived(1, 0x1001, 0, QVariant(1u));
    QCoreApplication::processEvents();
    QVERIFY(bench.reader.isReading());
    QCOMPARE(bench.requests().size(), 2);

    bench.reader.handleHBdetectionTimeout();
    QTRY_COMPARE(bench.requests().size(), 3);
    QCOMPARE(bench.requests().at(2).index, quint16(0x1000));
}

void tst_ReadSequence::secondaryClientIsListenedTo()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 1);
    emit bench.host.secondarySdoClient.resultReceived(1, 0x1000, 0, QVariant(9u));
    QTRY_COMPARE(bench.requests().size(), 2);
    emit bench.host.secondarySdoClient.errorReceived(1, 0x1001, 0, noAnswer);
    QVERIFY(!bench.reader.isReading());
    QVariant value;
    QVERIFY(bench.reader.getValue(1, 0x1000, 0, value));
}

void tst_ReadSequence::nextRequestComesFromTheEventLoop()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QVERIFY(bench.requests().isEmpty());
    QTRY_COMPARE(bench.requests().size(), 1);
    emit bench.host.sdoClient.resultReceived(1, 0x1000, 0, QVariant(9u));
    QCOMPARE(bench.requests().size(), 1);
    QTRY_COMPARE(bench.requests().size(), 2);
}

// For a posted event the event loop is woken up by a system call, and reads of thousands of objects feel it.
void tst_ReadSequence::nextRequestNeedsNoPostedEvent()
{
    class EventTypes : public QObject
    {
    public:
        bool eventFilter(QObject *, QEvent *event) override
        {
            types.append(event->type());
            return false;
        }
        QVector<QEvent::Type> types;
    };
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 1);
    EventTypes seen;
    bench.reader.installEventFilter(&seen);
    emit bench.host.sdoClient.resultReceived(1, 0x1000, 0, QVariant(1u));
    QTRY_COMPARE(bench.requests().size(), 2);
    QCOMPARE(seen.types, QVector<QEvent::Type>{QEvent::Timer});
    QCoreApplication::processEvents();
    QCOMPARE(bench.requests().size(), 2); // the timer fires once
}

void tst_ReadSequence::eachAnswerBringsARequest()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 1);
    emit bench.host.sdoClient.resultReceived(1, 0x1000, 0, QVariant(1u));
    emit bench.host.secondarySdoClient.resultReceived(1, 0x1000, 0, QVariant(2u));
    QTRY_COMPARE(bench.requests().size(), 3);
    QCOMPARE(bench.requests().at(1).index, quint16(0x1018));
    QCOMPARE(bench.requests().at(2).index, quint16(0x1018));
    QCoreApplication::processEvents();
    QCOMPARE(bench.requests().size(), 3);
}

void tst_ReadSequence::noClientReportsTheEndAndKeepsReading()
{
    Bench bench;
    bench.reader.setSdoClient(nullptr);
    QSignalSpy done(&bench.reader, SIGNAL(done(quint32)));
    bench.detect({1});
    QTRY_COMPARE(done.size(), 1);
    QCOMPARE(values(done), QList<quint32>{0});
    QVERIFY(bench.reader.isReading());
    QVERIFY(bench.requests().isEmpty());
}

void tst_ReadSequence::clientThatReturnsContinuesTheRun()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 1);
    // The host lets go of the bus with a request out, and answers it: the run ends.
    bench.reader.setSdoClient(nullptr);
    emit bench.host.sdoClient.errorReceived(1, 0x1000, 0, noAnswer);
    QVERIFY(!bench.reader.isReading());
    QCoreApplication::processEvents();
    QCOMPARE(bench.requests().size(), 1);
    bench.reader.setSdoClient(&bench.host.sdoClient);
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Answer);
    bench.detect({1});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(bench.requests().size(), 1 + entriesPerNode);
}

void tst_ReadSequence::clientsAreConnectedOnce()
{
    Bench bench;
    bench.reader.setSdoClient(&bench.host.sdoClient);
    QVERIFY(bench.reader.setSecondarySdoClient(&bench.host.secondarySdoClient));
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 1);
    emit bench.host.sdoClient.resultReceived(1, 0x1000, 0, QVariant(9u));
    QTRY_COMPARE(bench.requests().size(), 2);
    emit bench.host.secondarySdoClient.errorReceived(1, 0x1001, 0, 0x06020000);
    QTRY_COMPARE(bench.requests().size(), 3);
    QCOMPARE(bench.requests().at(2).index, quint16(0x1018));
}

void tst_ReadSequence::nullSecondaryClientIsRefused()
{
    DataReader reader;
    QVERIFY(!reader.setSecondarySdoClient(nullptr));
    reader.setSdoClient(nullptr);
}

void tst_ReadSequence::importDuringARunDoesNotMoveTheRequest()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    bench.detect({1});
    QTRY_COMPARE(bench.requests().size(), 1);
    QVERIFY(bench.reader.importXml(QStringLiteral("<nodes><node nodeid=\"9\"></node></nodes>")));
    QVERIFY(bench.reader.isReading());
    emit bench.host.sdoClient.resultReceived(1, 0x1000, 0, QVariant(9u));
    QTRY_COMPARE(bench.requests().size(), 2);
    QCOMPARE(bench.requests().at(1).nodeId, quint8(1));
    QVariant value;
    QVERIFY(bench.reader.getValue(1, 0x1000, 0, value));
}

void tst_ReadSequence::importThatShortensTheListEndsTheRun()
{
    Bench bench;
    // In the middle of the second of three nodes.
    connect(&bench.reader, &DataReader::done, &bench.host.sdoClient, [&bench] {
        if (bench.requests().size() == entriesPerNode + 100)
            bench.reader.importXml(QString());
    });
    bench.detect({1, 2, 3});
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(bench.requests().size(), 2 * entriesPerNode);
    QVERIFY(bench.reader.getIndexList(1).isEmpty());
}

void tst_ReadSequence::listLongerThanTheBusHasNodesIsReadOnce()
{
    Bench bench;
    // Every end of a node lists a node 0, so that a file of 130 nodes lists 260.
    bench.reader.importXml(QStringLiteral("<nodes>") + QStringLiteral("<node nodeid=\"2\"/>").repeated(130));
    QCOMPARE(bench.reader.getNodeList().size(), 260);
    bench.detect({1});
    QTRY_VERIFY_WITH_TIMEOUT(!bench.reader.isReading(), 60000);
    QCOMPARE(bench.requests().size(), 261 * entriesPerNode);
}

void tst_ReadSequence::negativeAndLargeValuesAreKept()
{
    Bench bench;
    bench.host.sdoClient.setValue(1, 0x6024, 1, QVariant(-36500));
    bench.host.sdoClient.setValue(1, 0x1018, 4, QVariant(0xFFFFFFFFu));
    bench.detect({1});
    QTRY_VERIFY(!bench.reader.isReading());
    QVariant value;
    QVERIFY(bench.reader.getValue(1, 0x6024, 1, value));
    QCOMPARE(value, QVariant(-36500));
    QVERIFY(bench.reader.getValue(1, 0x1018, 4, value));
    QCOMPARE(value, QVariant(4294967295u));
}

void tst_ReadSequence::progressCounts()
{
    Bench bench;
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    QCOMPARE(bench.reader.progress().entriesTotal, 0);
    bench.detect({1, 5});
    QTRY_COMPARE(bench.requests().size(), 1);
    emit bench.host.sdoClient.resultReceived(1, 0x1000, 0, QVariant(9u));
    QTRY_COMPARE(bench.requests().size(), 2);
    ReadProgress progress = bench.reader.progress();
    QCOMPARE(progress.nodesFound, 2);
    QCOMPARE(progress.entriesDone, 1);
    QCOMPARE(progress.entriesTotal, 408);
    QCOMPARE(progress.nodeId, quint8(1));
    QCOMPARE(progress.index, quint16(0x1001));
    QCOMPARE(progress.subIndex, quint8(0));

    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Answer);
    emit bench.host.sdoClient.resultReceived(1, 0x1001, 0, QVariant(9u));
    QTRY_VERIFY(!bench.reader.isReading());
    QCOMPARE(bench.reader.progress().entriesDone, 408);

    // A new run has everything before it.
    bench.reader.startReading();
    progress = bench.reader.progress();
    QCOMPARE(progress.entriesDone, 0);
}

QTEST_GUILESS_MAIN(tst_ReadSequence)
#include "tst_readsequence.moc"
