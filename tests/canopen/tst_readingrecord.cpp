// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/readingrecord.h>

#include <QtTest>

using namespace CanOpen;

using Verdict = ReadingRecord::Verdict;

namespace {

const char *const segment = "01 31 32 33 00 00 00 00";

/*! A line that nothing has been asked for on, late enough to be clear. */
SegmentMemory clearLine()
{
    SegmentMemory memory;
    memory.setTime(10000);
    return memory;
}

} // namespace

class tst_ReadingRecord : public QObject
{
    Q_OBJECT

private slots:
    void twoReadingsThatAgree();
    void oneReadingInBlocksWithCrc();
    void interruptedReadingDoesNotFollow();
    void segmentsOfAnotherObjectAreKnown();
    void readsNoMoreThan24Times();
    void startForgets();
};

void tst_ReadingRecord::twoReadingsThatAgree()
{
    SegmentMemory memory = clearLine();
    ReadingRecord record;
    record.start(memory);
    record.begin(memory);
    QCOMPARE(record.begunAt(), qint64(10000));
    record.note(memory, bytes(segment));
    QVERIFY(record.judgeSegments(memory, "123", 1) == Verdict::ReadAgain);
    QVERIFY(record.isContinuing());
    record.begin(memory);
    record.note(memory, bytes(segment));
    QVERIFY(record.judgeSegments(memory, "123", 1) == Verdict::Believe);
    QVERIFY(!record.isContinuing());
    QVERIFY(!record.isKnown());
    QCOMPARE(record.data(), QByteArray("123"));
    record.clearData();
    QCOMPARE(record.data(), QByteArray());
}

void tst_ReadingRecord::oneReadingInBlocksWithCrc()
{
    SegmentMemory memory = clearLine();
    ReadingRecord record;
    record.start(memory);
    record.begin(memory);
    QVERIFY(record.judgeBlocks(memory, "123", true) == Verdict::Believe);
    record.start(memory);
    record.begin(memory);
    QVERIFY(record.judgeBlocks(memory, "123", false) == Verdict::ReadAgain);
}

void tst_ReadingRecord::interruptedReadingDoesNotFollow()
{
    SegmentMemory memory = clearLine();
    ReadingRecord record;
    record.start(memory);
    record.begin(memory);
    QVERIFY(record.judgeSegments(memory, "123", 1) == Verdict::ReadAgain);
    record.interrupt();
    QVERIFY(!record.isContinuing());
}

void tst_ReadingRecord::segmentsOfAnotherObjectAreKnown()
{
    SegmentMemory memory = clearLine();
    ReadingRecord other;
    other.start(memory);
    other.begin(memory);
    other.note(memory, bytes(segment));
    ReadingRecord record;
    record.start(memory);
    record.begin(memory);
    record.note(memory, bytes(segment));
    QVERIFY(record.isKnown());
    record.begin(memory);
    QVERIFY(!record.isKnown());
}

void tst_ReadingRecord::readsNoMoreThan24Times()
{
    SegmentMemory memory = clearLine();
    ReadingRecord record;
    record.start(memory);
    for (int i = 0; i < 24; ++i) {
        record.begin(memory);
        QVERIFY(record.judgeSegments(memory, QByteArray(i + 1, 'x'), 1));
    }
    record.begin(memory);
    QVERIFY(!record.judgeSegments(memory, "x", 1));
}

void tst_ReadingRecord::startForgets()
{
    SegmentMemory memory = clearLine();
    ReadingRecord record;
    record.start(memory);
    record.begin(memory);
    QVERIFY(record.judgeSegments(memory, "123", 1) == Verdict::ReadAgain);
    record.start(memory);
    QVERIFY(!record.isContinuing());
    record.begin(memory);
    QVERIFY(record.judgeSegments(memory, "123", 1) == Verdict::ReadAgain);
}

QTEST_APPLESS_MAIN(tst_ReadingRecord)
#include "tst_readingrecord.moc"
