// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/segmentmemory.h>

#include <QtTest>

using namespace CanOpen;

class tst_SegmentMemory : public QObject
{
    Q_OBJECT

private slots:
    void newSegmentIsNothingSpecial();
    void segmentOfTheSameOriginIsNotKnown();
    void segmentTwiceInAReadingIsRepeated();
    void segmentOfAnotherOriginIsKnown();
    void knownSegmentStaysKnownForItsFirstOrigin();
    void knowsWhatWasSeen();
    void forgetsAfterTheLifetime();
    void slowServerIsRememberedLonger();

    void strayFromNowhereIsBabble();
    void babblingIsOverAfterTenSeconds();
    void strayCopyIsNoBabble();
    void ninthCopyIsBabble();
    void copiesCountAnewAfterTheSegmentCame();

    void openRequestIsAwaited();
    void lastOpenRequestCounts();
    void lineIsClearAfterTheLifetime();
    void copiesOnTheSpotAreSoonGone();
    void lateCopiesTakeTheirTime();

    void troubleLastsTenSeconds();
    void copyOnTheSpotIsNotLate();
    void copyAfterFiveMillisecondsIsLate();
    void frameWithoutATwinIsLate();
    void twinFarBackIsNotSeen();

    void forgottenSegmentIsAnOpenRequest();
    void oldSegmentsMakeRoomWithoutAnOpenRequest();
};

namespace {

const QByteArray segment = bytes("00 01 02 03 04 05 06 07");
const QByteArray other = bytes("10 01 02 03 04 05 06 07");

QByteArray numbered(int number)
{
    QByteArray payload(8, '\0');
    payload[1] = static_cast<char>(number & 0xFF);
    payload[2] = static_cast<char>(number >> 8);
    return payload;
}

bool isPlain(const SegmentMemory::Sighting &sighting)
{
    return !sighting.isKnown && !sighting.isRepeated && !sighting.isBabble;
}

} // namespace

void tst_SegmentMemory::newSegmentIsNothingSpecial()
{
    SegmentMemory memory;
    const quint32 origin = memory.newOrigin();
    QVERIFY(isPlain(memory.note(segment, origin, 1)));
    QVERIFY(isPlain(memory.note(other, origin, 1)));
}

void tst_SegmentMemory::segmentOfTheSameOriginIsNotKnown()
{
    SegmentMemory memory;
    const quint32 origin = memory.newOrigin();
    memory.note(segment, origin, 1);
    QVERIFY(isPlain(memory.note(segment, origin, 2)));
}

void tst_SegmentMemory::segmentTwiceInAReadingIsRepeated()
{
    SegmentMemory memory;
    const quint32 origin = memory.newOrigin();
    memory.note(segment, origin, 1);
    QVERIFY(memory.note(segment, origin, 1).isRepeated);
}

void tst_SegmentMemory::segmentOfAnotherOriginIsKnown()
{
    SegmentMemory memory;
    memory.note(segment, memory.newOrigin(), 1);
    const SegmentMemory::Sighting sighting = memory.note(segment, memory.newOrigin(), 1);
    QVERIFY(sighting.isKnown);
    QVERIFY(!sighting.isRepeated);
}

void tst_SegmentMemory::knownSegmentStaysKnownForItsFirstOrigin()
{
    SegmentMemory memory;
    const quint32 first = memory.newOrigin();
    memory.note(segment, first, 1);
    memory.note(segment, memory.newOrigin(), 2);
    QVERIFY(memory.note(segment, first, 3).isKnown);
}

void tst_SegmentMemory::knowsWhatWasSeen()
{
    SegmentMemory memory;
    QVERIFY(!memory.knows(segment));
    memory.note(segment, memory.newOrigin(), 1);
    QVERIFY(memory.knows(segment));
    QVERIFY(!memory.knows(other));
    memory.noteStray(other);
    QVERIFY(memory.knows(other));
}

void tst_SegmentMemory::forgetsAfterTheLifetime()
{
    SegmentMemory memory;
    memory.setTime(1000);
    memory.note(segment, memory.newOrigin(), 1);
    memory.setTime(1649);
    QVERIFY(memory.knows(segment));
    memory.setTime(1650);
    QVERIFY(!memory.knows(segment));
    QVERIFY(isPlain(memory.note(segment, memory.newOrigin(), 1)));
}

void tst_SegmentMemory::slowServerIsRememberedLonger()
{
    SegmentMemory memory;
    memory.setAnswerTime(200);
    memory.setTime(1000);
    memory.note(segment, memory.newOrigin(), 1);
    memory.setTime(1849);
    QVERIFY(memory.knows(segment));
    memory.setTime(1850);
    QVERIFY(!memory.knows(segment));
}

void tst_SegmentMemory::strayFromNowhereIsBabble()
{
    SegmentMemory memory;
    memory.setTime(1000);
    QVERIFY(!memory.isBabbling());
    memory.noteStray(segment);
    QVERIFY(memory.isBabbling());
    QVERIFY(memory.hasBabbledSince(1000));
    QVERIFY(!memory.hasBabbledSince(1001));
    const SegmentMemory::Sighting sighting = memory.note(segment, memory.newOrigin(), 1);
    QVERIFY(sighting.isBabble);
    QVERIFY(sighting.isKnown);
}

void tst_SegmentMemory::babblingIsOverAfterTenSeconds()
{
    SegmentMemory memory;
    memory.setTime(1000);
    memory.noteStray(segment);
    memory.setTime(10999);
    QVERIFY(memory.isBabbling());
    memory.setTime(11000);
    QVERIFY(!memory.isBabbling());
}

void tst_SegmentMemory::strayCopyIsNoBabble()
{
    SegmentMemory memory;
    const quint32 origin = memory.newOrigin();
    memory.note(segment, origin, 1);
    memory.noteStray(segment);
    QVERIFY(!memory.isBabbling());
    const SegmentMemory::Sighting sighting = memory.note(segment, origin, 2);
    QVERIFY(sighting.isKnown); // doubtful from now on
    QVERIFY(!sighting.isBabble);
}

void tst_SegmentMemory::ninthCopyIsBabble()
{
    for (const int copies : {8, 9}) {
        SegmentMemory memory;
        const quint32 origin = memory.newOrigin();
        memory.note(segment, origin, 1);
        for (int i = 0; i < copies; ++i)
            memory.noteStray(segment);
        QCOMPARE(memory.note(segment, origin, 2).isBabble, copies == 9);
    }
}

void tst_SegmentMemory::copiesCountAnewAfterTheSegmentCame()
{
    SegmentMemory memory;
    const quint32 origin = memory.newOrigin();
    for (int reading = 1; reading <= 3; ++reading) {
        QVERIFY(!memory.note(segment, origin, static_cast<quint32>(reading)).isBabble);
        for (int i = 0; i < 8; ++i)
            memory.noteStray(segment);
    }
}

void tst_SegmentMemory::openRequestIsAwaited()
{
    SegmentMemory memory;
    memory.setTime(1000);
    QCOMPARE(memory.timeUntilClosed(), qint64(0));
    memory.noteOpenRequest();
    QCOMPARE(memory.timeUntilClosed(), qint64(650));
    QCOMPARE(memory.timeUntilClear(), qint64(650));
    memory.setTime(1649);
    QCOMPARE(memory.timeUntilClosed(), qint64(1));
    memory.setTime(2000);
    QCOMPARE(memory.timeUntilClosed(), qint64(0));
}

void tst_SegmentMemory::lastOpenRequestCounts()
{
    SegmentMemory memory;
    memory.setTime(1000);
    memory.setAnswerTime(300);
    memory.noteOpenRequest();
    memory.setAnswerTime(0);
    memory.setTime(1100);
    memory.noteOpenRequest(); // would be over earlier
    QCOMPARE(memory.timeUntilClosed(), qint64(850));
}

void tst_SegmentMemory::lineIsClearAfterTheLifetime()
{
    SegmentMemory memory;
    memory.setTime(1000);
    QVERIFY(memory.timeUntilClear() <= 0);
    memory.noteRequest();
    QCOMPARE(memory.timeUntilClear(), qint64(650));
    QCOMPARE(memory.timeUntilGone(), qint64(650));
    QCOMPARE(memory.timeUntilClosed(), qint64(0));
    memory.setTime(1650);
    QCOMPARE(memory.timeUntilClear(), qint64(0));
}

void tst_SegmentMemory::copiesOnTheSpotAreSoonGone()
{
    SegmentMemory memory;
    memory.setTime(1000);
    memory.setAnswerTime(3);
    memory.noteRequest();
    memory.noteFrame(segment);
    memory.noteFrame(segment);
    memory.noteUnasked();
    QCOMPARE(memory.timeUntilClear(), qint64(13));
    QCOMPARE(memory.timeUntilGone(), qint64(653));
}

void tst_SegmentMemory::lateCopiesTakeTheirTime()
{
    SegmentMemory memory;
    memory.setTime(1000);
    memory.noteRequest();
    memory.noteTrouble();
    QCOMPARE(memory.timeUntilClear(), qint64(650));
}

void tst_SegmentMemory::troubleLastsTenSeconds()
{
    SegmentMemory memory;
    memory.setTime(1000);
    QVERIFY(!memory.isTroubled());
    QVERIFY(!memory.isLate());
    memory.noteTrouble();
    memory.setTime(10999);
    QVERIFY(memory.isTroubled());
    QVERIFY(memory.isLate());
    memory.setTime(11000);
    QVERIFY(!memory.isTroubled());
    QVERIFY(!memory.isLate());
}

void tst_SegmentMemory::copyOnTheSpotIsNotLate()
{
    SegmentMemory memory;
    memory.setTime(1000);
    memory.noteFrame(segment);
    memory.setTime(1005);
    memory.noteFrame(segment);
    memory.noteUnasked();
    QVERIFY(memory.isTroubled());
    QVERIFY(!memory.isLate());
}

void tst_SegmentMemory::copyAfterFiveMillisecondsIsLate()
{
    SegmentMemory memory;
    memory.setTime(1000);
    memory.noteFrame(segment);
    memory.setTime(1006);
    memory.noteFrame(segment);
    memory.noteUnasked();
    QVERIFY(memory.isLate());
}

void tst_SegmentMemory::frameWithoutATwinIsLate()
{
    SegmentMemory memory;
    memory.setTime(1000);
    memory.noteFrame(segment);
    memory.noteFrame(other);
    memory.noteUnasked();
    QVERIFY(memory.isTroubled());
    QVERIFY(memory.isLate());
}

// The ring holds the last sixteen frames.
void tst_SegmentMemory::twinFarBackIsNotSeen()
{
    for (const int between : {14, 15}) {
        SegmentMemory memory;
        memory.setTime(1000);
        memory.noteFrame(segment);
        for (int i = 1; i <= between; ++i)
            memory.noteFrame(numbered(i));
        memory.noteFrame(segment);
        memory.noteUnasked();
        QCOMPARE(memory.isLate(), between == 15);
    }
}

void tst_SegmentMemory::forgottenSegmentIsAnOpenRequest()
{
    SegmentMemory memory;
    memory.setTime(1000);
    const quint32 origin = memory.newOrigin();
    for (int i = 0; i < 256; ++i)
        memory.note(numbered(i), origin, 1);
    QCOMPARE(memory.timeUntilClosed(), qint64(0));
    QVERIFY(memory.knows(numbered(0)));
    memory.note(numbered(256), origin, 1);
    QCOMPARE(memory.timeUntilClosed(), qint64(650));
    QVERIFY(!memory.knows(numbered(0)));
    QVERIFY(memory.knows(numbered(1)));
    QVERIFY(memory.knows(numbered(256)));
}

void tst_SegmentMemory::oldSegmentsMakeRoomWithoutAnOpenRequest()
{
    SegmentMemory memory;
    memory.setTime(1000);
    const quint32 origin = memory.newOrigin();
    for (int i = 0; i < 256; ++i)
        memory.note(numbered(i), origin, 1);
    memory.setTime(1650);
    memory.note(numbered(256), origin, 1);
    QCOMPARE(memory.timeUntilClosed(), qint64(0));
}

QTEST_GUILESS_MAIN(tst_SegmentMemory)
#include "tst_segmentmemory.moc"
