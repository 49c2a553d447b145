// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <snapshot/snapshotfile.h>
#include <trace/playback/tracesnapshot.h>

#include <QtTest>

#include <limits>

namespace {

constexpr qint64 then = Q_INT64_C(1'600'000'000) * second; // 2020-09-13 12:26:40 UTC

const QDateTime &fallback()
{
    static const QDateTime time(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC);
    return time;
}

TraceHead withTimeOfDay()
{
    TraceHead head;
    head.hasTimeOfDay = true;
    return head;
}

Snapshot snapshotOf(const std::vector<TraceFrame> &frames, const TraceHead &head = withTimeOfDay())
{
    TraceSnapshot maker;
    for (const TraceFrame &frame : frames)
        maker.handle(frame);
    return maker.finish(head, fallback());
}

/*! Node 2 is asked for its device type \a ms after the beginning and answers with \a answer 2 ms later. */
void read(std::vector<TraceFrame> *frames, qint64 ms, const char *answer)
{
    frames->push_back(frameAt(then + ms * millisecond, 0x602, "4000100000000000"));
    frames->push_back(frameAt(then + (ms + 2) * millisecond, 0x582, answer));
}

constexpr char valueOne[] = "4300100001000000";
constexpr char valueTwo[] = "4300100002000000";
constexpr char refused[] = "8000100000000008";
constexpr char absent[] = "8000100000000206";

} // namespace

class tst_TraceSnapshot : public QObject
{
    Q_OBJECT

private slots:
    void lastValueCounts();
    void whatSaysMostCounts_data();
    void whatSaysMostCounts();
    void noAnswer();
    void brokenTransfer();
    void typesOfDataSheets();
    void nodesThatWereHeardOnly();
    void nodesThatNeverSaidAnything();
    void statesOfNodes();
    void endsOfNodes();
    void answerTimes();
    void whatWasWrittenIsNotRead();
    void timeOfTheTrace_data();
    void timeOfTheTrace();
    void beginIsToldByTheEnd();
    void timesOfAnySize();
    void timesThatRunBackward();
    void emptyTrace();
    void isAFile();
};

void tst_TraceSnapshot::lastValueCounts()
{
    std::vector<TraceFrame> frames;
    read(&frames, 100, valueOne);
    read(&frames, 200, valueTwo);
    const Snapshot snapshot = snapshotOf(frames);
    QCOMPARE(snapshot.nodes.size(), 1);
    const SnapshotNode &node = snapshot.nodes.first();
    QCOMPARE(int(node.id), 2);
    QCOMPARE(node.entries.size(), 1);
    const SnapshotEntry *entry = node.find(0x1000, 0);
    QVERIFY(entry != nullptr && entry->hasValue());
    QCOMPARE(entry->value.toUInt(), 2u);
    QCOMPARE(entry->raw, QByteArray::fromHex("02000000"));
    QVERIFY(entry->type == CanOpen::DataType::Unsigned32);
    QCOMPARE(entry->ms, 102); // since the first frame
    QVERIFY(snapshot.scope == SnapshotScope::Recorded);
    QCOMPARE(snapshot.duration, 102);
}

void tst_TraceSnapshot::whatSaysMostCounts_data()
{
    QTest::addColumn<QByteArray>("earlier");
    QTest::addColumn<QByteArray>("later");
    QTest::addColumn<int>("gap");
    QTest::addColumn<uint>("code");

    const int none = int(SnapshotGap::None);
    QTest::newRow("value, then refused") << QByteArray(valueOne) << QByteArray(refused) << none << 0u;
    QTest::newRow("refused, then value") << QByteArray(refused) << QByteArray(valueOne) << none << 0u;
    QTest::newRow("absent, then refused")
        << QByteArray(absent) << QByteArray(refused) << int(SnapshotGap::Abort) << 0x08000000u;
    QTest::newRow("refused, then absent")
        << QByteArray(refused) << QByteArray(absent) << int(SnapshotGap::Absent) << 0x06020000u;
    QTest::newRow("refused, then silent")
        << QByteArray(refused) << QByteArray() << int(SnapshotGap::Abort) << 0x08000000u;
    QTest::newRow("silent, then refused")
        << QByteArray() << QByteArray(refused) << int(SnapshotGap::Abort) << 0x08000000u;
    QTest::newRow("value, then silent") << QByteArray(valueOne) << QByteArray() << none << 0u;
    QTest::newRow("wrong size, then silent")
        << QByteArray("4f00100001000000") << QByteArray() << int(SnapshotGap::WrongSize) << 0u;
}

void tst_TraceSnapshot::whatSaysMostCounts()
{
    QFETCH(QByteArray, earlier);
    QFETCH(QByteArray, later);
    QFETCH(int, gap);
    QFETCH(uint, code);
    std::vector<TraceFrame> frames{frameAt(then, 0x702, "05")};
    qint64 time = then;
    for (const QByteArray &answer : {earlier, later}) {
        time += 30 * second; // longer than any client waits
        frames.push_back(frameAt(time, 0x602, "4000100000000000"));
        if (!answer.isEmpty())
            frames.push_back(frameAt(time + millisecond, 0x582, answer));
    }
    frames.push_back(frameAt(time + 60 * second, 0x702, "05"));
    const Snapshot snapshot = snapshotOf(frames);
    const SnapshotEntry *entry = snapshot.nodes.first().find(0x1000, 0);
    QVERIFY(entry != nullptr);
    QCOMPARE(int(entry->gap), gap);
    QCOMPARE(uint(entry->abortCode), code);
}

void tst_TraceSnapshot::noAnswer()
{
    const Snapshot snapshot
        = snapshotOf({frameAt(then, 0x702, "05"), frameAt(then + 1, 0x602, "4000100000000000"),
                      frameAt(then + second, 0x602, "8000100000000405")});
    const SnapshotEntry *entry = snapshot.nodes.first().find(0x1000, 0);
    QVERIFY(entry != nullptr);
    QVERIFY(entry->gap == SnapshotGap::NoAnswer);
    QVERIFY(entry->isGap());
    QCOMPARE(entry->abortCode, 0u);
}

void tst_TraceSnapshot::brokenTransfer()
{
    const Snapshot snapshot = snapshotOf({
        frameAt(then, 0x602, "4008100000000000"),
        frameAt(then + 1000, 0x582, "410810000a000000"),
        frameAt(then + 2000, 0x602, "6000000000000000"),
        frameAt(then + 3000, 0x582, "1044582d53656e73"), // its toggle bit is wrong
        frameAt(then + 4000, 0x602, "8008100000000305"),
    });
    const SnapshotEntry *entry = snapshot.nodes.first().find(0x1008, 0);
    QVERIFY(entry != nullptr);
    QVERIFY(entry->gap == SnapshotGap::Failed);
    QCOMPARE(entry->abortCode, 0x05030000u);
    QVERIFY(entry->raw.isEmpty());
}

void tst_TraceSnapshot::typesOfDataSheets()
{
    CanOpen::EdsFile sheet;
    sheet.productName = QStringLiteral("Sensor");
    CanOpen::ObjectEntry object;
    object.type = CanOpen::DataType::Integer16;
    sheet.dictionary.insert({0x2000, 1}, object);
    TraceSnapshot maker;
    maker.setDataSheets({{2, sheet}});
    maker.handle(frameAt(then, 0x602, "4000200100000000"));
    maker.handle(frameAt(then + 1, 0x582, "4b002001feff0000"));
    maker.handle(frameAt(then + 2, 0x602, "4000200200000000"));
    maker.handle(frameAt(then + 3, 0x582, "4b002002feff0000"));
    const Snapshot snapshot = maker.finish(withTimeOfDay(), fallback());
    const SnapshotNode &node = snapshot.nodes.first();
    QCOMPARE(node.value(0x2000, 1).toInt(), -2);
    QCOMPARE(node.value(0x2000, 2).toUInt(), 0xFFFEu); // nobody knows
    QVERIFY(!node.find(0x2000, 2)->type);
    QCOMPARE(node.dataSheet, QStringLiteral("Sensor"));
    QCOMPARE(maker.uploads(), quint64(2));
}

void tst_TraceSnapshot::nodesThatWereHeardOnly()
{
    const Snapshot snapshot = snapshotOf({
        frameAt(then, 0x709, "05"),               // heartbeat
        frameAt(then, 0x083, "1042010000000000"), // emergency
        frameAt(then, 0x185, "0000"),             // PDO of who knows whom
    });
    QCOMPARE(snapshot.nodes.size(), 2);
    QCOMPARE(int(snapshot.nodes.at(0).id), 3);
    QCOMPARE(int(snapshot.nodes.at(1).id), 9);
    for (const SnapshotNode &node : snapshot.nodes) {
        QVERIFY(node.entries.isEmpty());
        QVERIFY(node.end == SnapshotEnd::Cancelled); // nobody has read them
    }
    QVERIFY(!snapshot.isComplete());
    QVERIFY(!snapshot.nodes.at(0).nmtState);
}

void tst_TraceSnapshot::nodesThatNeverSaidAnything()
{
    std::vector<TraceFrame> frames{frameAt(then, 0x702, "05")};
    for (quint32 nodeId = 1; nodeId <= 127; ++nodeId)
        frames.push_back(frameAt(then + nodeId, 0x600 + nodeId, "4000100000000000"));
    frames.push_back(frameAt(then + 20 * second, 0x702, "05")); // they have been silent for long enough
    const Snapshot snapshot = snapshotOf(frames);
    QCOMPARE(snapshot.nodes.size(), 1);
    QCOMPARE(int(snapshot.nodes.first().id), 2);
}

void tst_TraceSnapshot::statesOfNodes()
{
    const Snapshot snapshot = snapshotOf({
        frameAt(then, 0x702, "00"),
        frameAt(then + second, 0x702, "7f"),
        frameAt(then + 2 * second, 0x702, "00"),
        frameAt(then + 3 * second, 0x702, "85"), // the top bit is of node guarding
        frameAt(then + 4 * second, 0x702, "33"), // no state
        frameAt(then + 5 * second, 0x702, "", TraceFrame::Remote),
    });
    const SnapshotNode &node = snapshot.nodes.first();
    QVERIFY(node.nmtState == CanOpen::NmtState::Operational);
    QCOMPARE(node.bootUps, 2);
}

void tst_TraceSnapshot::endsOfNodes()
{
    std::vector<TraceFrame> frames;
    read(&frames, 0, refused);
    frames.push_back(frameAt(then, 0x704, "05"));
    frames.push_back(frameAt(then + second, 0x604, "4000100000000000"));
    frames.push_back(frameAt(then + 2 * second, 0x604, "8000100000000405"));
    const Snapshot snapshot = snapshotOf(frames);
    QVERIFY(snapshot.find(2)->end == SnapshotEnd::Complete);
    QVERIFY(snapshot.find(4)->end == SnapshotEnd::Silent);
}

void tst_TraceSnapshot::answerTimes()
{
    std::vector<TraceFrame> frames{frameAt(then, 0x704, "05")};
    for (const int ms : {5, 1, 30}) {
        const qint64 time = frames.back().time + second;
        frames.push_back(frameAt(time, 0x602, "4000100000000000"));
        frames.push_back(frameAt(time + ms * millisecond, 0x582, valueOne));
    }
    const qint64 slow = frames.back().time + second; // in segments, as slow as its client
    frames.push_back(frameAt(slow, 0x602, "4008100000000000"));
    frames.push_back(frameAt(slow + 100 * millisecond, 0x582, "4108100002000000"));
    frames.push_back(frameAt(slow + 200 * millisecond, 0x602, "6000000000000000"));
    frames.push_back(frameAt(slow + 300 * millisecond, 0x582, "0b41420000000000"));
    const Snapshot snapshot = snapshotOf(frames);
    QVERIFY(snapshot.find(2)->find(0x1008, 0) != nullptr);
    QCOMPARE(snapshot.find(2)->medianAnswer.value_or(-1), 5);
    QCOMPARE(snapshot.find(2)->longestAnswer.value_or(-1), 30);
    QVERIFY(!snapshot.find(4)->medianAnswer);
}

void tst_TraceSnapshot::whatWasWrittenIsNotRead()
{
    std::vector<TraceFrame> frames;
    read(&frames, 0, valueOne);
    frames.push_back(frameAt(then + second, 0x602, "2300100009000000"));
    frames.push_back(frameAt(then + second + 1, 0x582, "6000100000000000"));
    frames.push_back(frameAt(then + second + 2, 0x602, "2b17100000010000"));
    frames.push_back(frameAt(then + second + 3, 0x582, "6017100000000000"));
    const Snapshot snapshot = snapshotOf(frames);
    QCOMPARE(snapshot.nodes.first().value(0x1000, 0).toUInt(), 1u);
    QVERIFY(snapshot.nodes.first().find(0x1017, 0) == nullptr);
}

void tst_TraceSnapshot::timeOfTheTrace_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<bool>("hasTimeOfDay");
    QTest::addColumn<QDateTime>("expected");

    QTest::newRow("of day") << then << true << QDateTime(QDate(2020, 9, 13), QTime(12, 26, 40), Qt::UTC);
    QTest::newRow("since the start") << 5 * second << false << fallback();
    QTest::newRow("none") << qint64(0) << true << fallback();
    QTest::newRow("before all") << std::numeric_limits<qint64>::min() << true << fallback();
    QTest::newRow("far too late") << std::numeric_limits<qint64>::max() << true << fallback();
}

void tst_TraceSnapshot::timeOfTheTrace()
{
    QFETCH(qint64, time);
    QFETCH(bool, hasTimeOfDay);
    QFETCH(QDateTime, expected);
    TraceHead head;
    head.hasTimeOfDay = hasTimeOfDay;
    const Snapshot snapshot = snapshotOf({frameAt(time, 0x702, "05")}, head);
    QCOMPARE(snapshot.time, expected);
}

/*! A trace without times of day has ended when its file was written last. */
void tst_TraceSnapshot::beginIsToldByTheEnd()
{
    const Snapshot snapshot
        = snapshotOf({frameAt(second, 0x702, "05"), frameAt(6 * second, 0x702, "05")}, TraceHead());
    QCOMPARE(snapshot.time, QDateTime(QDate(2026, 1, 2), QTime(3, 4, 0), Qt::UTC));
    QCOMPARE(snapshot.duration, 5000);
}

void tst_TraceSnapshot::timesOfAnySize()
{
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    const Snapshot snapshot
        = snapshotOf({frameAt(least, 0x602, "4000100000000000"), frameAt(most, 0x582, valueOne),
                      frameAt(least, 0x602, "4001100000000000"), frameAt(most, 0x582, "4f01100000000000")});
    const QByteArray text = SnapshotFile::toJson(snapshot);
    QString error;
    QVERIFY2(SnapshotFile::fromJson(text, &error), qPrintable(error));
    QCOMPARE(snapshot.nodes.size(), 1);
}

void tst_TraceSnapshot::timesThatRunBackward()
{
    std::vector<TraceFrame> frames{frameAt(then + second, 0x702, "05")};
    read(&frames, 0, valueOne); // the clock was set back
    const Snapshot snapshot = snapshotOf(frames);
    QCOMPARE(snapshot.nodes.first().find(0x1000, 0)->ms, 0);
    QCOMPARE(snapshot.duration, 0);
    frames.push_back(frameAt(then + 9 * second, 0x702, "05"));
    frames.push_back(frameAt(then + 2 * second, 0x702, "05"));
    QCOMPARE(snapshotOf(frames).duration, 8000);
}

void tst_TraceSnapshot::emptyTrace()
{
    const Snapshot snapshot = snapshotOf({});
    QVERIFY(snapshot.nodes.isEmpty());
    QCOMPARE(snapshot.time, fallback());
}

/*! What is made can be saved, and read again. */
void tst_TraceSnapshot::isAFile()
{
    std::vector<TraceFrame> frames{frameAt(then, 0x70A, "05")};
    read(&frames, 10, valueOne);
    frames.push_back(frameAt(then + second, 0x602, "4001100000000000"));
    frames.push_back(frameAt(then + second + 1, 0x582, "4201100011000000")); // without its size
    frames.push_back(frameAt(then + second + 2, 0x602, "4000640000000000"));
    frames.push_back(frameAt(then + second + 3, 0x582, "8000640001000405")); // about the transfer
    const Snapshot snapshot = snapshotOf(frames);
    const QByteArray text = SnapshotFile::toJson(snapshot);
    QString error;
    const std::optional<Snapshot> again = SnapshotFile::fromJson(text, &error);
    QVERIFY2(again, qPrintable(error));
    QCOMPARE(SnapshotFile::toJson(*again), text);
    QVERIFY(text.contains("\"scope\":\"recorded\""));
    QCOMPARE(again->find(2)->value(0x1001, 0).toUInt(), 0x11u);
    QVERIFY(again->find(2)->find(0x6400, 0)->gap == SnapshotGap::Failed);
}

QTEST_APPLESS_MAIN(tst_TraceSnapshot)
#include "tst_tracesnapshot.moc"
