// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <trace/playback/recordedanswers.h>

#include <QtTest>

namespace {

constexpr CanOpen::ObjectKey deviceType{0x1000, 0};
constexpr CanOpen::ObjectKey errorRegister{0x1001, 0};

/*! The device type of node 2 is read as 1, then refused, then read as 2; frames 0 to 5. */
std::vector<TraceFrame> threeReadings()
{
    return {
        frameAt(0, 0x602, "4000100000000000"),          frameAt(500, 0x582, "4300100001000000"),
        frameAt(second, 0x602, "4000100000000000"),     frameAt(second + 500, 0x582, "8000100000000008"),
        frameAt(2 * second, 0x602, "4000100000000000"), frameAt(2 * second + 500, 0x582, "4300100002000000")};
}

/*! "value 01000000", "abort 08000000", "silence", or "none". */
QByteArray textOf(const RecordedAnswer *answer)
{
    if (answer == nullptr)
        return "none";
    switch (answer->kind) {
    case RecordedAnswer::Kind::Value:
        return "value " + answer->data.toHex();
    case RecordedAnswer::Kind::Abort:
        return "abort " + QByteArray::number(answer->abortCode, 16);
    case RecordedAnswer::Kind::Silence:
        break;
    }
    return "silence";
}

} // namespace

class tst_RecordedAnswers : public QObject
{
    Q_OBJECT

private slots:
    void dependOnThePresent_data();
    void dependOnThePresent();
    void keepNodesAndObjectsApart();
    void silenceIsAnAnswer();
    void whatIsSaidAgainAfterSilenceCounts();
    void whatIsNoAnswerDoesNotCount_data();
    void whatIsNoAnswerDoesNotCount();
    void everyOtherAnswerCounts();
    void whatIsUnderWayAtTheEnd();
    void sizeMayBeUnknown();
    void whoIsThere_data();
    void whoIsThere();
};

void tst_RecordedAnswers::dependOnThePresent_data()
{
    QTest::addColumn<int>("present");
    QTest::addColumn<QByteArray>("last");
    QTest::addColumn<QByteArray>("next");

    QTest::newRow("before all") << 0 << QByteArray("none") << QByteArray("value 01000000");
    QTest::newRow("asked") << 1 << QByteArray("none") << QByteArray("value 01000000");
    QTest::newRow("answered") << 2 << QByteArray("value 01000000") << QByteArray("abort 8000000");
    QTest::newRow("asked again") << 3 << QByteArray("value 01000000") << QByteArray("abort 8000000");
    QTest::newRow("refused") << 4 << QByteArray("abort 8000000") << QByteArray("value 02000000");
    QTest::newRow("answered again") << 6 << QByteArray("value 02000000") << QByteArray("none");
    QTest::newRow("long after") << 1000 << QByteArray("value 02000000") << QByteArray("none");
}

void tst_RecordedAnswers::dependOnThePresent()
{
    QFETCH(int, present);
    QFETCH(QByteArray, last);
    QFETCH(QByteArray, next);
    const RecordedAnswers answers = RecordedAnswers::of(threeReadings());
    const auto position = static_cast<size_t>(present);
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, position)), last);
    QCOMPARE(textOf(answers.firstFrom(2, deviceType, position)), next);
}

void tst_RecordedAnswers::keepNodesAndObjectsApart()
{
    const RecordedAnswers answers = RecordedAnswers::of(threeReadings());
    QCOMPARE(textOf(answers.lastBefore(3, deviceType, 6)), QByteArray("none"));
    QCOMPARE(textOf(answers.lastBefore(2, errorRegister, 6)), QByteArray("none"));
    QCOMPARE(textOf(answers.lastBefore(2, {0x1000, 1}, 6)), QByteArray("none"));
}

void tst_RecordedAnswers::silenceIsAnAnswer()
{
    std::vector<TraceFrame> frames = threeReadings();
    frames.push_back(frameAt(3 * second, 0x602, "4000100000000000"));
    frames.push_back(frameAt(4 * second, 0x602, "8000100000000405")); // the client gives up
    frames.push_back(frameAt(20 * second, 0x702, "05"));
    const RecordedAnswers answers = RecordedAnswers::of(frames);
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 6)), QByteArray("value 02000000"));
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 9)), QByteArray("silence"));
}

/*! A client that asks again without an abort: that the first request stayed without an answer is known later than the
 *  answer to the second one.
 */
void tst_RecordedAnswers::whatIsSaidAgainAfterSilenceCounts()
{
    const RecordedAnswers answers = RecordedAnswers::of(
        {frameAt(0, 0x602, "4000100000000000"), frameAt(500, 0x582, "4300100001000000"),
         frameAt(second, 0x602, "4000100000000000"), frameAt(2 * second, 0x602, "4000100000000000"),
         frameAt(2 * second + 500, 0x582, "4300100001000000"), frameAt(20 * second, 0x702, "05")});
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 2)), QByteArray("value 01000000"));
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 3)), QByteArray("silence"));
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 5)), QByteArray("value 01000000"));
}

void tst_RecordedAnswers::whatIsNoAnswerDoesNotCount_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<QByteArray>("afterwards");

    QTest::newRow("written") << QByteArray("2300100007000000") << QByteArray("6000100000000000")
                             << QByteArray();
    QTest::newRow("writing refused") << QByteArray("2300100007000000") << QByteArray("8000100002000106")
                                     << QByteArray();
    QTest::newRow("about the transfer") // blocks are not known
        << QByteArray("a400100014000000") << QByteArray("8000100001000405") << QByteArray();
    QTest::newRow("the client did not want it")
        << QByteArray("4000100000000000") << QByteArray("4100100014000000") << QByteArray("8000100005000405");
}

void tst_RecordedAnswers::whatIsNoAnswerDoesNotCount()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, response);
    QFETCH(QByteArray, afterwards);
    std::vector<TraceFrame> frames = threeReadings();
    frames.push_back(frameAt(3 * second, 0x602, request));
    frames.push_back(frameAt(3 * second + 500, 0x582, response));
    if (!afterwards.isEmpty())
        frames.push_back(frameAt(3 * second + 900, 0x602, afterwards));
    const RecordedAnswers answers = RecordedAnswers::of(frames);
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 100)), QByteArray("value 02000000"));
}

/*! One that says the same as the one before it is not kept, and nothing else is left out. */
void tst_RecordedAnswers::everyOtherAnswerCounts()
{
    const QByteArray answered[] = {"4300100001000000", "4300100001000000", "4300100002000000",
                                   "4200100002000000", "8000100000000008", "8000100000000206"};
    std::vector<TraceFrame> frames;
    for (const QByteArray &answer : answered) {
        const qint64 time = static_cast<qint64>(frames.size()) * second;
        frames.push_back(frameAt(time, 0x602, "4000100000000000"));
        frames.push_back(frameAt(time + 500, 0x582, answer));
    }
    const RecordedAnswers answers = RecordedAnswers::of(frames);
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 4)), QByteArray("value 01000000"));
    QCOMPARE(answers.lastBefore(2, deviceType, 4)->position, size_t(1));
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 6)), QByteArray("value 02000000"));
    QVERIFY(!answers.lastBefore(2, deviceType, 6)->isSizeUnknown);
    QVERIFY(answers.lastBefore(2, deviceType, 8)->isSizeUnknown);
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 10)), QByteArray("abort 8000000"));
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 12)), QByteArray("abort 6020000"));
}

/*! A request whose client went on to the next one was not answered; of the last one nobody knows. */
void tst_RecordedAnswers::whatIsUnderWayAtTheEnd()
{
    const RecordedAnswers answers = RecordedAnswers::of(
        {frameAt(0, 0x602, "4001100000000000"), frameAt(second, 0x602, "4000100000000000")});
    QCOMPARE(textOf(answers.lastBefore(2, errorRegister, 2)), QByteArray("silence"));
    QCOMPARE(textOf(answers.lastBefore(2, deviceType, 2)), QByteArray("none"));
}

void tst_RecordedAnswers::sizeMayBeUnknown()
{
    const RecordedAnswers answers = RecordedAnswers::of(
        {frameAt(0, 0x602, "4001100000000000"), frameAt(500, 0x582, "4201100011223344"),
         frameAt(1000, 0x602, "4000100000000000"), frameAt(1500, 0x582, "4300100011223344")});
    QVERIFY(answers.lastBefore(2, errorRegister, 4)->isSizeUnknown);
    QCOMPARE(textOf(answers.lastBefore(2, errorRegister, 4)), QByteArray("value 11223344"));
    QVERIFY(!answers.lastBefore(2, deviceType, 4)->isSizeUnknown);
}

void tst_RecordedAnswers::whoIsThere_data()
{
    QTest::addColumn<uint>("id");
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("node"); // 0: none

    QTest::newRow("heartbeat") << 0x705u << 0 << 5;
    QTest::newRow("answer") << 0x5FFu << 0 << 127;
    QTest::newRow("emergency") << 0x081u << 0 << 1;
    QTest::newRow("request to it") << 0x605u << 0 << 0;
    QTest::newRow("PDO") << 0x185u << 0 << 0;
    QTest::newRow("SYNC") << 0x080u << 0 << 0;
    QTest::newRow("above the last node") << 0x780u << 0 << 0;
    QTest::newRow("asked for its heartbeat") << 0x705u << int(TraceFrame::Remote) << 0;
    QTest::newRow("29 bits") << 0x705u << int(TraceFrame::Extended) << 0;
    QTest::newRow("error frame") << 0x085u << int(TraceFrame::Error) << 0;
}

void tst_RecordedAnswers::whoIsThere()
{
    QFETCH(uint, id);
    QFETCH(int, flags);
    QFETCH(int, node);
    const RecordedAnswers answers
        = RecordedAnswers::of({frameAt(0, id, "0500000000000000", static_cast<quint8>(flags))});
    for (int nodeId = 0; nodeId <= 255; ++nodeId)
        QCOMPARE(answers.isThere(static_cast<quint8>(nodeId)), node != 0 && nodeId == node);
}

QTEST_APPLESS_MAIN(tst_RecordedAnswers)
#include "tst_recordedanswers.moc"
