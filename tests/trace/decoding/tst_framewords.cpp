// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <trace/decoding/framesort.h>
#include <trace/decoding/framewords.h>

#include <QtTest>

Q_DECLARE_METATYPE(TraceMark)

namespace {

struct LineRow
{
    const char *name;
    quint32 id;
    const char *bytes;
    const char *text;
    TraceMark mark;
    int flags;
};

constexpr LineRow lineRows[] = {
    {"start all", 0x000, "0100", "NMT command to all nodes: start", TraceMark::Note, 0},
    {"stop", 0x000, "0205", "NMT command to node 5: stop", TraceMark::Note, 0},
    {"pre-operational", 0x000, "8005", "NMT command to node 5: enter Pre-operational", TraceMark::Note, 0},
    {"reset", 0x000, "8105", "NMT command to node 5: reset the device", TraceMark::Note, 0},
    {"reset communication", 0x000, "8205", "NMT command to node 5: reset the communication", TraceMark::Note,
     0},
    {"unknown command", 0x000, "0305", "NMT command to node 5: unknown command 03h", TraceMark::Warning, 0},
    {"command to no node", 0x000, "0180", "NMT command to node 128: start", TraceMark::Warning, 0},
    {"short command", 0x000, "01", "NMT command of a wrong length: 01", TraceMark::Warning, 0},
    {"empty command", 0x000, "", "NMT command without any bytes", TraceMark::Warning, 0},

    {"sync", 0x080, "", "SYNC", TraceMark::Plain, 0},
    {"sync with counter", 0x080, "0C", "SYNC 12", TraceMark::Plain, 0},
    {"long sync", 0x080, "0C01", "SYNC of a wrong length: 0C 01", TraceMark::Warning, 0},

    // 43 536 789 ms, 15 666 days after 1984-01-01
    {"time", 0x100, "95519802323D", "time: 2026-11-22 12:05:36.789", TraceMark::Plain, 0},
    {"time with high bits", 0x100, "955198F2323D", "time: 2026-11-22 12:05:36.789", TraceMark::Plain, 0},
    {"time beyond a day", 0x100, "005C2605323D", "time that is none: 00 5C 26 05 32 3D", TraceMark::Warning,
     0},
    {"short time", 0x100, "9550", "time of a wrong length: 95 50", TraceMark::Warning, 0},

    {"emergency", 0x084, "1042090102030405",
     "emergency 4210h: device temperature, error register 09h (generic error, temperature), "
     "the device's own bytes 01 02 03 04 05",
     TraceMark::Fault, 0},
    {"emergency is gone", 0x084, "0000000000000000",
     "emergency 0000h: error reset or no error, error register 00h", TraceMark::Note, 0},
    {"short emergency", 0x084, "1042", "emergency of a wrong length: 10 42", TraceMark::Warning, 0},

    {"transmit pdo", 0x182, "0102", "PDO 1, its mapping is not known: 01 02", TraceMark::Plain, 0},
    {"fourth transmit pdo", 0x4FF, "0102", "PDO 4, its mapping is not known: 01 02", TraceMark::Plain, 0},
    {"receive pdo", 0x202, "0102", "PDO 1 to the node, its mapping is not known: 01 02", TraceMark::Plain, 0},
    {"empty pdo", 0x282, "", "PDO 2, its mapping is not known: no bytes", TraceMark::Plain, 0},
    {"asked pdo", 0x182, "0000", "PDO 1 is asked for (remote frame)", TraceMark::Plain, TraceFrame::Remote},

    {"stray answer", 0x582, "4B646102D0200000",
     "SDO, answer to a read, of no transfer that begins in the trace: 4B 64 61 02 D0 20 00 00",
     TraceMark::Note, 0},
    {"stray request", 0x602, "6000000000000000",
     "SDO, request for a segment, of no transfer that begins in the trace: 60 00 00 00 00 00 00 00",
     TraceMark::Note, 0},
    {"short sdo", 0x602, "40646102", "SDO of a wrong length: 40 64 61 02", TraceMark::Warning, 0},

    {"boot-up", 0x705, "00", "boot-up: the device has started", TraceMark::Note, 0},
    {"heartbeat", 0x705, "05", "heartbeat: Operational", TraceMark::Plain, 0},
    {"stopped", 0x705, "04", "heartbeat: Stopped", TraceMark::Plain, 0},
    {"guarded", 0x705, "FF", "heartbeat: Pre-operational", TraceMark::Plain, 0},
    {"unknown state", 0x705, "06", "heartbeat: unknown state 06h", TraceMark::Warning, 0},
    {"empty heartbeat", 0x705, "", "heartbeat without any bytes", TraceMark::Warning, 0},
    {"guarding", 0x705, "00", "is asked for its state (node guarding)", TraceMark::Plain, TraceFrame::Remote},

    {"lss", 0x7E5, "0401000000000000", "LSS request: 04 01 00 00 00 00 00 00", TraceMark::Plain, 0},
    {"other", 0x6F1, "0102", "frame 6F1h: 01 02", TraceMark::Plain, 0},
    {"extended", 0x18FF1234, "0102", "frame 18FF1234h: 01 02", TraceMark::Plain, TraceFrame::Extended},
    {"extended like a heartbeat", 0x705, "05", "frame 00000705h: 05", TraceMark::Plain, TraceFrame::Extended},
    {"other remote", 0x6F1, "", "frame 6F1h is asked for (remote frame)", TraceMark::Plain,
     TraceFrame::Remote},

    {"no acknowledge", 0x20, "0000000000000000", "error frame: nobody acknowledged a frame",
     TraceMark::Warning, TraceFrame::Error},
    {"bus-off", 0x40, "0000000000000000", "error frame: bus-off: the CAN chip has left the bus",
     TraceMark::Fault, TraceFrame::Error},
    {"controller", 0x204, "0020000000008000",
     "error frame: the CAN chip has trouble; error-passive in sending; error counters: sending 128, "
     "receiving 0",
     TraceMark::Warning, TraceFrame::Error},
    {"protocol", 0x88, "0000040000000000", "error frame: protocol violated; bus error; bit stuffing",
     TraceMark::Warning, TraceFrame::Error},
    {"restarted", 0x100, "0000000000000000", "error frame: the CAN chip was started again", TraceMark::Note,
     TraceFrame::Error},
    {"nothing told", 0x0, "0000000000000000", "error frame: no reason told", TraceMark::Warning,
     TraceFrame::Error},
};

} // namespace

/*! Single frames in words, and what sort they are. */
class tst_FrameWords : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void nmtIsForANode();
    void kinds_data();
    void kinds();
    void bytesOfARemoteFrame();
};

void tst_FrameWords::lines_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("text");
    QTest::addColumn<TraceMark>("mark");
    for (const LineRow &row : lineRows) {
        QTest::newRow(row.name) << row.id << QByteArray(row.bytes) << row.flags << QString::fromUtf8(row.text)
                                << row.mark;
    }
}

void tst_FrameWords::lines()
{
    QFETCH(quint32, id);
    QFETCH(QByteArray, bytes);
    QFETCH(int, flags);
    const TraceFrame frame = frameAt(0, id, bytes, static_cast<quint8>(flags));
    QTEST(FrameWords::line(frame), "text");
    QTEST(FrameSort::of(frame, nullptr).mark, "mark");
}

void tst_FrameWords::nmtIsForANode()
{
    QCOMPARE(FrameSort::of(frameAt(0, 0x000, "0105"), nullptr).nodeId, quint8(5));
    QCOMPARE(FrameSort::of(frameAt(0, 0x000, "0100"), nullptr).nodeId, quint8(0));
}

void tst_FrameWords::kinds_data()
{
    QTest::addColumn<quint32>("id");
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("node");
    const auto row = [](quint32 id, const char *kind, int node, int flags = 0) {
        QTest::newRow(qPrintable(QString::number(id, 16) + QString::number(flags)))
            << id << flags << QString::fromLatin1(kind) << node;
    };
    row(0x080, "sync", 0);
    row(0x081, "emergency", 1);
    row(0x100, "time", 0);
    row(0x101, "other", 0);
    row(0x1FF, "pdo", 127);
    row(0x200, "other", 0);
    row(0x5FF, "sdo", 127);
    row(0x67F, "sdo", 127);
    row(0x77F, "heartbeat", 127);
    row(0x705, "other", 0, TraceFrame::Extended);
    row(0x020, "error", 0, TraceFrame::Error);
}

void tst_FrameWords::kinds()
{
    QFETCH(quint32, id);
    QFETCH(int, flags);
    const FrameSort sort = FrameSort::of(frameAt(0, id, "00", static_cast<quint8>(flags)), nullptr);
    QTEST(QString::fromLatin1(frameKindName(sort.kind)), "kind");
    QTEST(int(sort.nodeId), "node");
}

void tst_FrameWords::bytesOfARemoteFrame()
{
    TraceFrame frame;
    frame.id = 0x182;
    frame.flags = TraceFrame::Remote;
    frame.length = 8;
    QCOMPARE(FrameWords::bytes(frame), QStringLiteral("remote, 8 bytes"));
}

QTEST_GUILESS_MAIN(tst_FrameWords)
#include "tst_framewords.moc"
