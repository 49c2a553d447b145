// SPDX-License-Identifier: MIT
#include "heardframes.h"

#include <host/pages/trace/livetrace.h>

#include <QtTest>

/*! What is heard as a trace that stays bounded. */
class tst_LiveTrace : public QObject
{
    Q_OBJECT

private slots:
    void grows();
    void linesComeInSlices();
    void olderHalfLeaves();
    void staysBounded();
    void mappingsStay();
    void mappingsThatWereReadStayWhateverIsTold();
    void toldAfterAParameterWasRead();
    void whatWasToldStays();
    void beginsAnew();

private:
    static TraceFrame beat(int number) { return heard(number * second, 0x705, "05"); }
    static std::vector<TraceFrame> readsOfAMapping();
    static void letLeave(LiveTrace *live);
};

/*! The first transmit PDO of node 5 on 345h with 6000h sub-index 1. */
std::vector<TraceFrame> tst_LiveTrace::readsOfAMapping()
{
    return {heard(1 * millisecond, 0x605, "4000180100000000"),
            heard(2 * millisecond, 0x585, "4300180145030000"), // 1800h.1 = 345h
            heard(3 * millisecond, 0x605, "40001A0000000000"),
            heard(4 * millisecond, 0x585, "4F001A0001000000"), // 1A00h.0 = 1
            heard(5 * millisecond, 0x605, "40001A0100000000"),
            heard(6 * millisecond, 0x585, "43001A0108010060")}; // 1A00h.1 = 6000h.1, 8 bits
}

/*! PDOs on 345h come until the older half has left. */
void tst_LiveTrace::letLeave(LiveTrace *live)
{
    const std::shared_ptr<TraceDocument> before = live->document();
    while (live->document() == before) {
        live->add(heard(2 * second, 0x345, "01"));
        live->advance(100);
    }
}

void tst_LiveTrace::grows()
{
    LiveTrace live(100);
    for (const TraceFrame &frame : fourLines())
        live.add(frame);
    QCOMPARE(live.document()->lines.size(), std::size_t(0));
    QVERIFY(!live.advance(100));
    QCOMPARE(live.document()->lines.size(), std::size_t(4));
}

void tst_LiveTrace::linesComeInSlices()
{
    LiveTrace live(100);
    for (int i = 0; i < 10; ++i)
        live.add(beat(i));
    QVERIFY(live.advance(6));
    QCOMPARE(live.document()->lines.size(), std::size_t(6));
    QVERIFY(!live.advance(6));
    QCOMPARE(live.document()->lines.size(), std::size_t(10));
}

void tst_LiveTrace::olderHalfLeaves()
{
    LiveTrace live(10);
    for (int i = 0; i < 10; ++i)
        live.add(beat(i));
    const std::shared_ptr<TraceDocument> before = live.document();
    QVERIFY(live.advance(3)); // what takes its place is not ready
    QCOMPARE(live.document(), before);
    live.add(beat(10));
    while (live.advance(3)) {
    }
    QVERIFY(live.document() != before);
    QCOMPARE(live.document()->lines.size(), std::size_t(6));
    QCOMPARE(live.document()->trace.frames.front().time, morning + 5 * second);
    QCOMPARE(live.document()->trace.frames.back().time, morning + 10 * second);
}

void tst_LiveTrace::staysBounded()
{
    LiveTrace live(80);
    for (int i = 0; i < 10'000; ++i) {
        live.add(beat(i));
        live.advance(10);
        QVERIFY(live.document()->trace.frames.size() <= 90);
    }
    QCOMPARE(live.document()->trace.frames.back().time, morning + 9'999 * second);
    const std::vector<TraceFrame> &frames = live.document()->trace.frames;
    QCOMPARE(frames.back().time - frames.front().time, qint64(frames.size() - 1) * second); // none is missing
}

void tst_LiveTrace::mappingsStay()
{
    LiveTrace live(20);
    for (const TraceFrame &frame : readsOfAMapping())
        live.add(frame);
    live.add(heard(second, 0x345, "01"));
    while (live.advance(100)) {
    }
    QCOMPARE(int(live.document()->lines.at(3).nodeId), 5);
    letLeave(&live);
    QVERIFY(live.document()->lines.size() > 0);
    QCOMPARE(int(live.document()->lines.at(0).nodeId), 5);
    QCOMPARE(live.document()->lines.at(0).kind, FrameKind::Pdo);
}

void tst_LiveTrace::mappingsThatWereReadStayWhateverIsTold()
{
    LiveTrace live(20);
    for (const TraceFrame &frame : readsOfAMapping())
        live.add(frame);
    letLeave(&live);
    live.tell(mappingOf5()); // 185h for the same PDO
    const TraceLines &lines = live.document()->lines;
    QCOMPARE(lines.text(0).text, QStringLiteral("PDO 1: Supported virtual devices = 1"));
    live.add(heard(3 * second, 0x185, "2A"));
    live.advance(10);
    QCOMPARE(lines.text(lines.size() - 1).text, QStringLiteral("PDO 1, its mapping is not known: 2A"));
}

void tst_LiveTrace::toldAfterAParameterWasRead()
{
    LiveTrace live(100);
    live.add(heard(0, 0x605, "4000180200000000"));
    live.add(heard(millisecond, 0x585, "4F001802FE000000")); // 1800h.2 = 254
    live.add(heard(second, 0x185, "2A"));
    live.advance(10);
    const TraceLines &lines = live.document()->lines;
    QCOMPARE(lines.text(1).text, QStringLiteral("PDO 1, its mapping is not known: 2A"));
    live.tell(mappingOf5());
    QCOMPARE(lines.text(1).text, QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
}

void tst_LiveTrace::whatWasToldStays()
{
    const auto text = [](const LiveTrace &live) {
        const TraceLines &lines = live.document()->lines;
        return lines.text(lines.size() - 1).text;
    };
    LiveTrace live(10);
    live.add(heard(0, 0x185, "2A"));
    live.advance(10);
    QCOMPARE(text(live), QStringLiteral("PDO 1, its mapping is not known: 2A"));
    live.tell(mappingOf5());
    QCOMPARE(text(live), QStringLiteral("PDO 1: 2000h.1 = 42 (2Ah)"));
    for (int i = 1; i < 10; ++i)
        live.add(beat(i)); // the older half leaves
    const std::shared_ptr<TraceDocument> before = live.document();
    live.tell(mappingOf5()); // while what takes its place is made
    while (live.advance(3)) {
    }
    QVERIFY(live.document() != before);
    live.add(heard(11 * second, 0x185, "2B"));
    live.advance(10);
    QCOMPARE(text(live), QStringLiteral("PDO 1: 2000h.1 = 43 (2Bh)"));
    live.begin(TraceHead()); // another bus
    live.add(heard(12 * second, 0x185, "2C"));
    live.advance(10);
    QCOMPARE(text(live), QStringLiteral("PDO 1, its mapping is not known: 2C"));
}

void tst_LiveTrace::beginsAnew()
{
    LiveTrace live(10);
    for (int i = 0; i < 10; ++i)
        live.add(beat(i));
    live.begin(TraceHead());
    QVERIFY(!live.advance(100));
    QCOMPARE(live.document()->lines.size(), std::size_t(0));
}

QTEST_GUILESS_MAIN(tst_LiveTrace)
#include "tst_livetrace.moc"
