// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/segmentreception.h>

#include <QtTest>

using namespace CanOpen;

using Event = SegmentReception::Event;

namespace {

constexpr int limit = 100; // bytes

SegmentReception begun(std::optional<quint32> size = {})
{
    SdoInitiate initiate;
    initiate.sizeIndicated = size.has_value();
    initiate.size = size.value_or(0);
    SegmentReception reception;
    reception.begin(initiate, limit);
    return reception;
}

Event take(SegmentReception *reception, const char *payload)
{
    return reception->take(*readSdoUploadSegmentResponse(bytes(payload)), bytes(payload));
}

} // namespace

class tst_SegmentReception : public QObject
{
    Q_OBJECT

private slots:
    void putsTogether();
    void takesNoMoreThanAnnounced();
    void takesNoMoreThanTheLimit();
    void seventeenthEmptySegmentIsTooMany();
    void dataEndsTheEmptySegments();
    void knowsWhenTheLastOneCameAgain();
    void beginForgets();
};

void tst_SegmentReception::putsTogether()
{
    SegmentReception reception = begun();
    QVERIFY(reception.isEmpty());
    QVERIFY(!reception.toggle());
    QVERIFY(take(&reception, "00 31 32 33 34 35 36 37") == Event::Ask);
    QVERIFY(reception.toggle());
    QVERIFY(!reception.isEmpty());
    QVERIFY(take(&reception, "1B 38 39 00 00 00 00 00") == Event::Complete);
    QCOMPARE(reception.data(), QByteArray("123456789"));
    QCOMPARE(reception.segments(), 2);
    QVERIFY(!reception.isSizeAnnounced());
    QCOMPARE(reception.announcedSize(), 0);
}

void tst_SegmentReception::takesNoMoreThanAnnounced()
{
    SegmentReception reception = begun(8);
    QVERIFY(reception.isSizeAnnounced());
    QCOMPARE(reception.announcedSize(), 8);
    QVERIFY(take(&reception, "00 31 32 33 34 35 36 37") == Event::Ask);
    QVERIFY(take(&reception, "1B 38 39 00 00 00 00 00") == Event::TooLong);
    QCOMPARE(reception.data(), QByteArray("1234567"));
    QVERIFY(take(&reception, "1D 38 00 00 00 00 00 00") == Event::Complete);
}

void tst_SegmentReception::takesNoMoreThanTheLimit()
{
    SegmentReception reception = begun();
    for (int i = 0; i < 14; ++i)
        QVERIFY(take(&reception, "00 31 32 33 34 35 36 37") == Event::Ask);
    QVERIFY(take(&reception, "0B 38 39 00 00 00 00 00") == Event::Complete); // 100 bytes
    QVERIFY(take(&reception, "0D 38 00 00 00 00 00 00") == Event::TooLong);
}

void tst_SegmentReception::seventeenthEmptySegmentIsTooMany()
{
    SegmentReception reception = begun();
    for (int i = 0; i < 16; ++i)
        QVERIFY(take(&reception, "0E 00 00 00 00 00 00 00") == Event::Ask);
    QVERIFY(take(&reception, "0E 00 00 00 00 00 00 00") == Event::Endless);
}

void tst_SegmentReception::dataEndsTheEmptySegments()
{
    SegmentReception reception = begun();
    for (int i = 0; i < 16; ++i)
        take(&reception, "0E 00 00 00 00 00 00 00");
    QVERIFY(take(&reception, "0C 31 00 00 00 00 00 00") == Event::Ask);
    QVERIFY(take(&reception, "0E 00 00 00 00 00 00 00") == Event::Ask);
}

void tst_SegmentReception::knowsWhenTheLastOneCameAgain()
{
    SegmentReception reception = begun();
    take(&reception, "00 31 32 33 34 35 36 37");
    QVERIFY(!reception.isLastRepeated());
    reception.noteOther(bytes("10 31 32 33 34 35 36 37"));
    QVERIFY(!reception.isLastRepeated());
    reception.noteOther(bytes("00 31 32 33 34 35 36 37"));
    QVERIFY(reception.isLastRepeated());
    take(&reception, "10 31 32 33 34 35 36 37");
    QVERIFY(!reception.isLastRepeated());
}

void tst_SegmentReception::beginForgets()
{
    SegmentReception reception = begun(7);
    take(&reception, "00 31 32 33 34 35 36 37");
    reception.begin(SdoInitiate(), limit);
    QVERIFY(reception.isEmpty());
    QVERIFY(!reception.toggle());
    QVERIFY(!reception.isSizeAnnounced());
    QCOMPARE(reception.data(), QByteArray());
    QCOMPARE(reception.segments(), 0);
}

QTEST_APPLESS_MAIN(tst_SegmentReception)
#include "tst_segmentreception.moc"
