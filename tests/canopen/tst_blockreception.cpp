// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/blockreception.h>

#include <QtTest>

using namespace CanOpen;

using Event = BlockReception::Event;

Q_DECLARE_METATYPE(BlockReception::Event)

class tst_BlockReception : public QObject
{
    Q_OBJECT

private slots:
    void oneSegment();
    void unusedBytesAreCutOff();
    void blockOf31Segments();
    void secondBlockGoesOn();
    void gapIsAskedForAgain();
    void gapAtTheBeginningWaits();
    void doubledSegmentIsIgnored();
    void strangeSequenceNumbersAreIgnored_data();
    void strangeSequenceNumbersAreIgnored();
    void strangeLastSegmentsAreIgnored();
    void nothingFollowsTheLastSegment();
    void endBeforeTheLastSegmentFails();
    void sizeMustBeRight_data();
    void sizeMustBeRight();
    void crcMustBeRight();
    void crcCountsOnlyWhenAnnounced();
    void lengthIsLimited();
    void silenceAfterPartOfABlockAcknowledgesIt();
    void silenceAfterTheLastSegmentAcknowledgesAgain();
    void fifthSilenceInARowFails();
    void progressEndsTheSilence();
    void beginForgets();
};

namespace {

constexpr int limit = 1000;

BlockReception begun(bool hasCrc = false, std::optional<quint32> size = {}, int most = limit)
{
    SdoBlockInitiateResponse response;
    response.crcSupported = hasCrc;
    response.sizeIndicated = size.has_value();
    response.size = size.value_or(0);
    BlockReception reception;
    reception.begin(response, most);
    return reception;
}

// "1234567" with its number in front.
QByteArray segment(int number, bool isLast = false)
{
    return bytes("00 31 32 33 34 35 36 37")
        .replace(0, 1, QByteArray(1, static_cast<char>(number | (isLast ? 0x80 : 0))));
}

void takeAll(BlockReception *reception, int first, int last)
{
    for (int number = first; number <= last; ++number)
        reception->take(segment(number));
}

const char endOfAll[] = "C1 00 00 00 00 00 00 00";   // seven bytes of the last segment
const char endOfThree[] = "D1 00 00 00 00 00 00 00"; // three bytes of it

} // namespace

void tst_BlockReception::oneSegment()
{
    BlockReception reception = begun();
    QCOMPARE(reception.take(segment(1, true)), Event::Acknowledge);
    QCOMPARE(reception.acknowledge(), bytes("A2 01 1F 00 00 00 00 00"));
    QCOMPARE(reception.take(bytes(endOfAll)), Event::Complete);
    QCOMPARE(reception.data(), QByteArray("1234567"));
}

void tst_BlockReception::unusedBytesAreCutOff()
{
    BlockReception reception = begun();
    reception.take(segment(1));
    reception.take(segment(2, true));
    QCOMPARE(reception.take(bytes(endOfThree)), Event::Complete);
    QCOMPARE(reception.data(), QByteArray("1234567123"));
}

void tst_BlockReception::blockOf31Segments()
{
    BlockReception reception = begun();
    for (int number = 1; number <= 30; ++number)
        QCOMPARE(reception.take(segment(number)), Event::Nothing);
    QCOMPARE(reception.take(segment(31)), Event::Acknowledge);
    QCOMPARE(reception.acknowledge(), bytes("A2 1F 1F 00 00 00 00 00"));
}

void tst_BlockReception::secondBlockGoesOn()
{
    BlockReception reception = begun();
    takeAll(&reception, 1, 31);
    QCOMPARE(reception.take(segment(1)), Event::Nothing);
    QCOMPARE(reception.take(segment(2, true)), Event::Acknowledge);
    QCOMPARE(reception.acknowledge(), bytes("A2 02 1F 00 00 00 00 00"));
    QCOMPARE(reception.take(bytes(endOfAll)), Event::Complete);
    QCOMPARE(reception.data().size(), 33 * 7);
}

void tst_BlockReception::gapIsAskedForAgain()
{
    BlockReception reception = begun();
    takeAll(&reception, 1, 4);
    QCOMPARE(reception.take(segment(6)), Event::Ignored);
    QCOMPARE(reception.take(segment(7, true)), Event::Acknowledge);
    QCOMPARE(reception.acknowledge(), bytes("A2 04 1F 00 00 00 00 00"));
    // The rest comes again, with numbers from 1 on.
    takeAll(&reception, 1, 2);
    QCOMPARE(reception.take(segment(3, true)), Event::Acknowledge);
    QCOMPARE(reception.take(bytes(endOfAll)), Event::Complete);
    QCOMPARE(reception.data().size(), 7 * 7);
}

// With nothing good before it the segment may be a late one of the block before.
void tst_BlockReception::gapAtTheBeginningWaits()
{
    BlockReception reception = begun();
    QCOMPARE(reception.take(segment(2)), Event::Ignored);
    QCOMPARE(reception.take(segment(3, true)), Event::Ignored);
    QCOMPARE(reception.data(), QByteArray());
}

void tst_BlockReception::doubledSegmentIsIgnored()
{
    BlockReception reception = begun();
    reception.take(segment(1));
    QCOMPARE(reception.take(segment(1)), Event::Ignored);
    QCOMPARE(reception.data(), QByteArray("1234567"));
}

void tst_BlockReception::strangeSequenceNumbersAreIgnored_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("0") << 0;
    QTest::newRow("beyond the block") << 32;
    QTest::newRow("highest") << 127;
}

void tst_BlockReception::strangeSequenceNumbersAreIgnored()
{
    QFETCH(int, number);
    BlockReception reception = begun();
    takeAll(&reception, 1, 3);
    QCOMPARE(reception.take(segment(number)), Event::Ignored);
    QCOMPARE(reception.data().size(), 3 * 7);
}

// They are from elsewhere, so they do not say that others are missing before them.
void tst_BlockReception::strangeLastSegmentsAreIgnored()
{
    BlockReception reception = begun();
    takeAll(&reception, 1, 3);
    QCOMPARE(reception.take(segment(2, true)), Event::Ignored);
    QCOMPARE(reception.take(segment(40, true)), Event::Ignored);
    QCOMPARE(reception.take(segment(4)), Event::Nothing);
}

void tst_BlockReception::nothingFollowsTheLastSegment()
{
    BlockReception reception = begun();
    reception.take(segment(1, true));
    QCOMPARE(reception.take(segment(1)), Event::Ignored);
    QCOMPARE(reception.take(segment(2)), Event::Ignored);
    QCOMPARE(reception.data(), QByteArray("1234567"));
}

void tst_BlockReception::endBeforeTheLastSegmentFails()
{
    BlockReception reception = begun();
    reception.take(segment(1));
    QCOMPARE(reception.take(bytes(endOfAll)), Event::Failed);
    QVERIFY(reception.failure() == SdoAbort::InvalidSequenceNumber);
}

void tst_BlockReception::sizeMustBeRight_data()
{
    QTest::addColumn<quint32>("size");
    QTest::addColumn<Event>("event");
    QTest::addColumn<quint32>("failure");

    QTest::newRow("right") << 10u << Event::Complete << 0x08000000u;
    QTest::newRow("more came") << 9u << Event::Failed << 0x06070012u;
    QTest::newRow("less came") << 11u << Event::Failed << 0x06070013u;
}

void tst_BlockReception::sizeMustBeRight()
{
    QFETCH(quint32, size);
    QFETCH(Event, event);
    BlockReception reception = begun(false, size);
    reception.take(segment(1));
    reception.take(segment(2, true));
    QCOMPARE(reception.take(bytes(endOfThree)), event);
    QTEST(static_cast<quint32>(reception.failure()), "failure");
}

// The CRC of "1234567" is 86D6h, by the polynomial of CiA 301 (1021h, beginning with 0).
void tst_BlockReception::crcMustBeRight()
{
    BlockReception right = begun(true);
    right.take(segment(1, true));
    QCOMPARE(right.take(bytes("C1 D6 86 00 00 00 00 00")), Event::Complete);
    BlockReception wrong = begun(true);
    wrong.take(segment(1, true));
    QCOMPARE(wrong.take(bytes("C1 D7 86 00 00 00 00 00")), Event::Failed);
    QVERIFY(wrong.failure() == SdoAbort::CrcError);
}

void tst_BlockReception::crcCountsOnlyWhenAnnounced()
{
    QVERIFY(begun(true).hasCrc());
    BlockReception reception = begun(false);
    QVERIFY(!reception.hasCrc());
    reception.take(segment(1, true));
    QCOMPARE(reception.take(bytes("C1 D7 86 00 00 00 00 00")), Event::Complete);
}

void tst_BlockReception::lengthIsLimited()
{
    BlockReception fits = begun(false, {}, 10);
    fits.take(segment(1));
    fits.take(segment(2, true));
    QCOMPARE(fits.take(bytes(endOfThree)), Event::Complete);

    BlockReception tooLong = begun(false, {}, 9);
    tooLong.take(segment(1));
    tooLong.take(segment(2, true));
    QCOMPARE(tooLong.take(bytes(endOfThree)), Event::Failed);
    QVERIFY(tooLong.failure() == SdoAbort::LengthTooHigh);

    // A server that never ends is stopped on its way.
    BlockReception endless = begun(false, {}, 9);
    endless.take(segment(1));
    QCOMPARE(endless.take(segment(2)), Event::Nothing);
    QCOMPARE(endless.take(segment(3)), Event::Failed);
    QVERIFY(endless.failure() == SdoAbort::LengthTooHigh);
}

void tst_BlockReception::silenceAfterPartOfABlockAcknowledgesIt()
{
    BlockReception reception = begun();
    takeAll(&reception, 1, 5);
    QCOMPARE(reception.timeOver(), Event::Acknowledge);
    QCOMPARE(reception.acknowledge(), bytes("A2 05 1F 00 00 00 00 00"));
    QCOMPARE(reception.take(segment(1, true)), Event::Acknowledge);
    QCOMPARE(reception.data().size(), 6 * 7);
}

void tst_BlockReception::silenceAfterTheLastSegmentAcknowledgesAgain()
{
    BlockReception reception = begun();
    reception.take(segment(1));
    reception.take(segment(2, true));
    QCOMPARE(reception.timeOver(), Event::Acknowledge);
    QCOMPARE(reception.acknowledge(), bytes("A2 02 1F 00 00 00 00 00"));
}

void tst_BlockReception::fifthSilenceInARowFails()
{
    BlockReception reception = begun();
    for (int silence = 1; silence <= 4; ++silence)
        QCOMPARE(reception.timeOver(), Event::Acknowledge);
    QCOMPARE(reception.timeOver(), Event::Failed);
    QVERIFY(reception.failure() == SdoAbort::ProtocolTimedOut);
}

void tst_BlockReception::progressEndsTheSilence()
{
    BlockReception reception = begun();
    for (int round = 1; round <= 10; ++round) {
        QCOMPARE(reception.timeOver(), Event::Acknowledge);
        QCOMPARE(reception.take(segment(1)), Event::Nothing);
    }
}

void tst_BlockReception::beginForgets()
{
    BlockReception reception = begun(true, 5);
    reception.take(segment(1, true));
    reception.begin(SdoBlockInitiateResponse(), limit);
    QCOMPARE(reception.data(), QByteArray());
    QVERIFY(!reception.hasCrc());
    QCOMPARE(reception.take(segment(1, true)), Event::Acknowledge);
    QCOMPARE(reception.take(bytes(endOfAll)), Event::Complete);
}

QTEST_GUILESS_MAIN(tst_BlockReception)
#include "tst_blockreception.moc"
