// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <trace/playback/recordedvehicle.h>

#include <QtTest>

namespace {

using Knowledge = RecordedVehicle::Knowledge;

// What was recorded of node 2, with the number of its last frame.
const std::vector<TraceFrame> &recorded()
{
    static const std::vector<TraceFrame> frames{
        frameAt(0, 0x702, "05"),
        frameAt(1000, 0x602, "4000100000000000"), // 1
        frameAt(1500, 0x582, "43001000c6010047"), // 2: 470001C6h
        frameAt(2000, 0x602, "4001100000000000"),
        frameAt(2500, 0x582, "4201100011223344"), // 4: without its size
        frameAt(3000, 0x602, "4003100000000000"),
        frameAt(3500, 0x582, "8003100000000008"), // 6: refused
        frameAt(4000, 0x602, "4008100000000000"),
        frameAt(4500, 0x582, "410810000a000000"), // 10 bytes
        frameAt(5000, 0x602, "6000000000000000"),
        frameAt(5500, 0x582, "0044582d53656e73"),
        frameAt(6000, 0x602, "7000000000000000"),
        frameAt(6500, 0x582, "1965205400000000"), // 12: "DX-Sense T", with 3 of 7 bytes
        frameAt(7000, 0x602, "4005200000000000"), // 13: no answer
        frameAt(8000, 0x602, "8005200000000405"), // 14: given up
    };
    return frames;
}

constexpr size_t end = 100;

RecordedVehicle vehicle(Knowledge knowledge = Knowledge::Nearest)
{
    return RecordedVehicle(RecordedAnswers::of(recorded()), knowledge);
}

/*! The answers to \a hex on \a id, each as "582: 43001000c6010047". */
QStringList ask(RecordedVehicle &vehicle, const char *hex, size_t present = end, quint32 id = 0x602)
{
    QStringList texts;
    const QVector<QCanBusFrame> answers
        = vehicle.handleFrame(QCanBusFrame(id, QByteArray::fromHex(hex)), present);
    for (const QCanBusFrame &answer : answers)
        texts.append(QStringLiteral("%1: %2")
                         .arg(answer.frameId(), 0, 16)
                         .arg(QString::fromLatin1(answer.payload().toHex())));
    return texts;
}

QStringList only(const char *text)
{
    return {QString::fromLatin1(text)};
}

} // namespace

Q_DECLARE_METATYPE(QCanBusFrame)

class tst_RecordedVehicle : public QObject
{
    Q_OBJECT

private slots:
    void answersAsThen_data();
    void answersAsThen();
    void laterAnswers();
    void sendsSegments();
    void sendsBlocks();
    void nothingIsWritten_data();
    void nothingIsWritten();
    void isSilentWhereNobodyWas();
    void isTalkingOnceAsked();
    void newRequestEndsTheOldTransfer();
    void passesOverWhatIsNoRequest_data();
    void passesOverWhatIsNoRequest();
};

void tst_RecordedVehicle::answersAsThen_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QStringList>("answers");

    QTest::newRow("value") << QByteArray("4000100000000000") << only("582: 43001000c6010047");
    QTest::newRow("value without its size")
        << QByteArray("4001100000000000") << only("582: 4201100011223344");
    QTest::newRow("refused") << QByteArray("4003100000000000") << only("582: 8003100000000008");
    QTest::newRow("silence") << QByteArray("4005200000000000") << QStringList();
    QTest::newRow("never asked for") << QByteArray("4006200100000000") << only("582: 8006200101f00008");
    QTest::newRow("never asked for, in blocks")
        << QByteArray("a406200114000000") << only("582: 8006200101f00008");
}

void tst_RecordedVehicle::answersAsThen()
{
    QFETCH(QByteArray, request);
    QFETCH(QStringList, answers);
    RecordedVehicle then = vehicle();
    QCOMPARE(ask(then, request), answers);
    QCOMPARE(ask(then, request), answers); // as often as one likes
}

void tst_RecordedVehicle::laterAnswers()
{
    RecordedVehicle nearest = vehicle();
    QCOMPARE(ask(nearest, "4000100000000000", 2), only("582: 43001000c6010047"));
    QCOMPARE(ask(nearest, "4005200000000000", 2), QStringList());
    RecordedVehicle past = vehicle(Knowledge::Past);
    QCOMPARE(ask(past, "4000100000000000", 2), only("582: 8000100002f00008"));
    QCOMPARE(ask(past, "4006200100000000", 2), only("582: 8006200101f00008"));
    QCOMPARE(ask(past, "4000100000000000", 3), only("582: 43001000c6010047"));
}

void tst_RecordedVehicle::sendsSegments()
{
    RecordedVehicle then = vehicle();
    QCOMPARE(ask(then, "4008100000000000"), only("582: 410810000a000000"));
    QCOMPARE(ask(then, "6000000000000000"), only("582: 0044582d53656e73"));
    QCOMPARE(ask(then, "7000000000000000"), only("582: 1965205400000000"));
}

/*! Although it was read in segments. */
void tst_RecordedVehicle::sendsBlocks()
{
    RecordedVehicle then = vehicle();
    QCOMPARE(ask(then, "a408100014000000"), only("582: c60810000a000000"));
    QCOMPARE(ask(then, "a300000000000000"),
             QStringList({QStringLiteral("582: 0144582d53656e73"), QStringLiteral("582: 8265205400000000")}));
}

void tst_RecordedVehicle::nothingIsWritten_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::newRow("expedited") << QByteArray("2300100007000000");
    QTest::newRow("in segments") << QByteArray("2100100014000000");
    QTest::newRow("in blocks") << QByteArray("c200100014000000");
}

void tst_RecordedVehicle::nothingIsWritten()
{
    QFETCH(QByteArray, request);
    RecordedVehicle then = vehicle();
    QCOMPARE(ask(then, request), only("582: 8000100002000106"));
    QCOMPARE(ask(then, "4000100000000000"), only("582: 43001000c6010047"));
    // Nor does what was under way go on.
    QCOMPARE(ask(then, "4008100000000000"), only("582: 410810000a000000"));
    QCOMPARE(ask(then, request), only("582: 8000100002000106"));
    QVERIFY(!ask(then, "6000000000000000").contains(QStringLiteral("582: 0044582d53656e73")));
}

void tst_RecordedVehicle::isSilentWhereNobodyWas()
{
    RecordedVehicle then = vehicle();
    for (const char *request : {"4000100000000000", "2300100007000000", "6000000000000000"})
        QCOMPARE(ask(then, request, end, 0x603), QStringList());
}

void tst_RecordedVehicle::isTalkingOnceAsked()
{
    RecordedVehicle then = vehicle();
    QVERIFY(!then.isTalking(2));
    ask(then, "4000100000000000", end, 0x603);
    QVERIFY(!then.isTalking(2));
    QVERIFY(!then.isTalking(3)); // it is not there
    ask(then, "4005200000000000");
    QVERIFY(then.isTalking(2)); // also when it does not answer
}

void tst_RecordedVehicle::newRequestEndsTheOldTransfer()
{
    RecordedVehicle then = vehicle();
    ask(then, "4008100000000000");
    ask(then, "4003100000000000"); // refused
    QCOMPARE(ask(then, "6000000000000000"), only("582: 8000000001000405"));
}

void tst_RecordedVehicle::passesOverWhatIsNoRequest_data()
{
    QTest::addColumn<QCanBusFrame>("frame");
    const QByteArray request = QByteArray::fromHex("4000100000000000");
    QCanBusFrame remote(0x602, request);
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QCanBusFrame extended(0x602, request);
    extended.setExtendedFrameFormat(true);
    QTest::newRow("remote") << remote;
    QTest::newRow("29 bits") << extended;
    QTest::newRow("short") << QCanBusFrame(0x602, request.left(4));
    QTest::newRow("answer") << QCanBusFrame(0x582, request);
    QTest::newRow("NMT") << QCanBusFrame(0x000, QByteArray::fromHex("0100"));
    QTest::newRow("to all") << QCanBusFrame(0x600, request);
}

void tst_RecordedVehicle::passesOverWhatIsNoRequest()
{
    QFETCH(QCanBusFrame, frame);
    RecordedVehicle then = vehicle();
    QVERIFY(then.handleFrame(frame, end).isEmpty());
    QVERIFY(!then.isTalking(2));
}

QTEST_APPLESS_MAIN(tst_RecordedVehicle)
#include "tst_recordedvehicle.moc"
