// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/sdoframe.h>

#include <QCanBusFrame>
#include <QtTest>

#include <random>

Q_DECLARE_METATYPE(QCanBusFrame)

using namespace CanOpen;

namespace {

const ObjectKey deviceType{0x1000, 0};
const ObjectKey someKey{0x6312, 0xA5};

QByteArray data(const SdoChunk &chunk)
{
    return chunk.toByteArray();
}

} // namespace

class tst_SdoFrame : public QObject
{
    Q_OBJECT

private slots:
    void builds_data();
    void builds();
    void readsInitiateUploadResponse_data();
    void readsInitiateUploadResponse();
    void readsInitiateDownloadRequest();
    void readsSegments_data();
    void readsSegments();
    void readsAbort();
    void readsBlockUpload();
    void tellsSdoFrames_data();
    void tellsSdoFrames();
    void refusesOtherSpecifiersAndLengths();
    void cutsTooMuchData();
    void survivesEveryPayload();
    void blockCrc();
};

void tst_SdoFrame::builds_data()
{
    QTest::addColumn<QByteArray>("built");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("abort") << makeSdoAbort(someKey, 0x05040000) << bytes("80 12 63 A5 00 00 04 05");
    QTest::newRow("initiate upload request")
        << makeSdoInitiateUploadRequest(deviceType) << bytes("40 00 10 00 00 00 00 00");
    QTest::newRow("expedited upload response, 4 bytes")
        << makeSdoExpeditedUploadResponse(deviceType, bytes("92 01 02 03"))
        << bytes("43 00 10 00 92 01 02 03");
    QTest::newRow("expedited upload response, 3 bytes")
        << makeSdoExpeditedUploadResponse(someKey, bytes("01 02 03")) << bytes("47 12 63 A5 01 02 03 00");
    QTest::newRow("expedited upload response, 2 bytes")
        << makeSdoExpeditedUploadResponse(someKey, bytes("01 02")) << bytes("4B 12 63 A5 01 02 00 00");
    QTest::newRow("expedited upload response, 1 byte")
        << makeSdoExpeditedUploadResponse(someKey, bytes("01")) << bytes("4F 12 63 A5 01 00 00 00");
    QTest::newRow("segmented upload response")
        << makeSdoSegmentedUploadResponse(someKey, 0x01020304) << bytes("41 12 63 A5 04 03 02 01");
    QTest::newRow("upload segment request, toggle 0")
        << makeSdoUploadSegmentRequest(false) << bytes("60 00 00 00 00 00 00 00");
    QTest::newRow("upload segment request, toggle 1")
        << makeSdoUploadSegmentRequest(true) << bytes("70 00 00 00 00 00 00 00");
    QTest::newRow("upload segment, full")
        << makeSdoUploadSegmentResponse(false, false, bytes("01 02 03 04 05 06 07"))
        << bytes("00 01 02 03 04 05 06 07");
    QTest::newRow("upload segment, last, 3 bytes")
        << makeSdoUploadSegmentResponse(true, true, bytes("01 02 03")) << bytes("19 01 02 03 00 00 00 00");
    QTest::newRow("upload segment, last, empty")
        << makeSdoUploadSegmentResponse(false, true, QByteArray()) << bytes("0F 00 00 00 00 00 00 00");
    QTest::newRow("expedited download request, 2 bytes")
        << makeSdoExpeditedDownloadRequest(someKey, bytes("01 02")) << bytes("2B 12 63 A5 01 02 00 00");
    QTest::newRow("segmented download request")
        << makeSdoSegmentedDownloadRequest(someKey, 9) << bytes("21 12 63 A5 09 00 00 00");
    QTest::newRow("initiate download response")
        << makeSdoInitiateDownloadResponse(someKey) << bytes("60 12 63 A5 00 00 00 00");
    QTest::newRow("download segment request")
        << makeSdoDownloadSegmentRequest(true, true, bytes("09")) << bytes("1D 09 00 00 00 00 00 00");
    QTest::newRow("download segment response, toggle 0")
        << makeSdoDownloadSegmentResponse(false) << bytes("20 00 00 00 00 00 00 00");
    QTest::newRow("download segment response, toggle 1")
        << makeSdoDownloadSegmentResponse(true) << bytes("30 00 00 00 00 00 00 00");
    QTest::newRow("block upload initiate request")
        << makeSdoBlockInitiateRequest({someKey, true, 127, 4}) << bytes("A4 12 63 A5 7F 04 00 00");
    QTest::newRow("block upload initiate response")
        << makeSdoBlockInitiateResponse({someKey, true, true, 0x102}) << bytes("C6 12 63 A5 02 01 00 00");
    QTest::newRow("block upload initiate response, no size")
        << makeSdoBlockInitiateResponse({someKey, false, false, 0x102}) << bytes("C0 12 63 A5 00 00 00 00");
    QTest::newRow("block upload start") << makeSdoBlockStart() << bytes("A3 00 00 00 00 00 00 00");
    QTest::newRow("block upload segment")
        << makeSdoBlockSegment(false, 1, bytes("01 02 03 04 05 06 07")) << bytes("01 01 02 03 04 05 06 07");
    QTest::newRow("block upload segment, last")
        << makeSdoBlockSegment(true, 127, bytes("01")) << bytes("FF 01 00 00 00 00 00 00");
    QTest::newRow("block upload acknowledge")
        << makeSdoBlockAcknowledge({5, 127}) << bytes("A2 05 7F 00 00 00 00 00");
    QTest::newRow("block upload end") << makeSdoBlockEnd({6, 0x31C3}) << bytes("D9 C3 31 00 00 00 00 00");
    QTest::newRow("block upload end response")
        << makeSdoBlockEndResponse() << bytes("A1 00 00 00 00 00 00 00");
}

void tst_SdoFrame::builds()
{
    QFETCH(QByteArray, built);
    QFETCH(QByteArray, expected);
    QCOMPARE(built.toHex(' '), expected.toHex(' '));
}

void tst_SdoFrame::readsInitiateUploadResponse_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<bool>("expedited");
    QTest::addColumn<bool>("sizeIndicated");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("e=1 s=1 n=0") << bytes("43 12 63 A5 01 02 03 04") << true << true << 4u
                                 << bytes("01 02 03 04");
    QTest::newRow("e=1 s=1 n=1") << bytes("47 12 63 A5 01 02 03 04") << true << true << 3u
                                 << bytes("01 02 03");
    QTest::newRow("e=1 s=1 n=2") << bytes("4B 12 63 A5 01 02 03 04") << true << true << 2u << bytes("01 02");
    QTest::newRow("e=1 s=1 n=3") << bytes("4F 12 63 A5 01 02 03 04") << true << true << 1u << bytes("01");
    QTest::newRow("e=1 s=0 n=0") << bytes("42 12 63 A5 01 02 03 04") << true << false << 0u
                                 << bytes("01 02 03 04");
    QTest::newRow("e=1 s=0 n=3 has no meaning")
        << bytes("4E 12 63 A5 01 02 03 04") << true << false << 0u << bytes("01 02 03 04");
    QTest::newRow("e=0 s=1") << bytes("41 12 63 A5 01 02 03 84") << false << true << 0x84030201u
                             << QByteArray();
    QTest::newRow("e=0 s=0") << bytes("40 12 63 A5 01 02 03 04") << false << false << 0u << QByteArray();
    QTest::newRow("reserved bit 4") << bytes("53 12 63 A5 01 02 03 04") << true << true << 4u
                                    << bytes("01 02 03 04");
}

void tst_SdoFrame::readsInitiateUploadResponse()
{
    QFETCH(QByteArray, payload);
    const std::optional<SdoInitiate> initiate = readSdoInitiateUploadResponse(payload);
    QVERIFY(initiate);
    QVERIFY(initiate->key == someKey);
    QTEST(initiate->expedited, "expedited");
    QTEST(initiate->sizeIndicated, "sizeIndicated");
    QTEST(initiate->size, "size");
    QTEST(data(initiate->data), "data");
}

void tst_SdoFrame::readsInitiateDownloadRequest()
{
    const std::optional<SdoInitiate> request
        = readSdoInitiateDownloadRequest(bytes("2B 12 63 A5 01 02 00 00"));
    QVERIFY(request);
    QVERIFY(request->key == someKey);
    QVERIFY(request->expedited);
    QCOMPARE(data(request->data), bytes("01 02"));
}

void tst_SdoFrame::readsSegments_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<bool>("toggle");
    QTest::addColumn<bool>("last");
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("full") << bytes("00 01 02 03 04 05 06 07") << false << false
                          << bytes("01 02 03 04 05 06 07");
    QTest::newRow("toggled") << bytes("10 01 02 03 04 05 06 07") << true << false
                             << bytes("01 02 03 04 05 06 07");
    QTest::newRow("last, full") << bytes("01 01 02 03 04 05 06 07") << false << true
                                << bytes("01 02 03 04 05 06 07");
    QTest::newRow("last, 1 byte") << bytes("1D 01 02 03 04 05 06 07") << true << true << bytes("01");
    QTest::newRow("last, empty") << bytes("0F 01 02 03 04 05 06 07") << false << true << QByteArray("");
    QTest::newRow("not last, 5 bytes")
        << bytes("04 01 02 03 04 05 06 07") << false << false << bytes("01 02 03 04 05");
    QTest::newRow("not last, empty") << bytes("0E 01 02 03 04 05 06 07") << false << false << QByteArray("");
}

void tst_SdoFrame::readsSegments()
{
    QFETCH(QByteArray, payload);
    for (const std::optional<SdoSegment> &segment :
         {readSdoUploadSegmentResponse(payload), readSdoDownloadSegmentRequest(payload)}) {
        QVERIFY(segment);
        QTEST(segment->toggle, "toggle");
        QTEST(segment->last, "last");
        QTEST(data(segment->data), "data");
    }
}

void tst_SdoFrame::readsAbort()
{
    const QByteArray abort = bytes("80 12 63 A5 11 00 09 06");
    QCOMPARE(sdoRequestOf(abort), SdoRequest::Abort);
    QCOMPARE(sdoResponseOf(abort), SdoResponse::Abort);
    QVERIFY(sdoKeyOf(abort) == someKey);
    QCOMPARE(sdoAbortCodeOf(abort), 0x06090011u);
}

void tst_SdoFrame::readsBlockUpload()
{
    const auto request = readSdoBlockInitiateRequest(bytes("A4 12 63 A5 80 04 00 00"));
    QVERIFY(request);
    QVERIFY(request->key == someKey);
    QVERIFY(request->crcSupported);
    QCOMPARE(request->blockSize, quint8(128));
    QCOMPARE(request->protocolSwitchThreshold, quint8(4));

    const auto response = readSdoBlockInitiateResponse(bytes("C6 12 63 A5 02 01 00 80"));
    QVERIFY(response);
    QVERIFY(response->key == someKey);
    QVERIFY(response->crcSupported);
    QVERIFY(response->sizeIndicated);
    QCOMPARE(response->size, 0x80000102u);

    const auto segment = readSdoBlockSegment(bytes("83 01 02 03 04 05 06 07"));
    QVERIFY(segment);
    QVERIFY(segment->last);
    QCOMPARE(segment->sequenceNumber, quint8(3));
    QCOMPARE(data(segment->data), bytes("01 02 03 04 05 06 07"));

    const auto acknowledge = readSdoBlockAcknowledge(bytes("A2 05 7F 00 00 00 00 00"));
    QVERIFY(acknowledge);
    QCOMPARE(acknowledge->lastSequenceNumber, quint8(5));
    QCOMPARE(acknowledge->nextBlockSize, quint8(127));

    const auto end = readSdoBlockEnd(bytes("D9 C3 31 00 00 00 00 00"));
    QVERIFY(end);
    QCOMPARE(end->unusedBytes, 6);
    QCOMPARE(end->crc, quint16(0x31C3));

    QCOMPARE(sdoBlockUploadOf(bytes("A3 00 00 00 00 00 00 00")), SdoBlockUpload::Start);
    QCOMPARE(sdoBlockUploadOf(bytes("A1 00 00 00 00 00 00 00")), SdoBlockUpload::EndResponse);
}

void tst_SdoFrame::tellsSdoFrames_data()
{
    QTest::addColumn<QCanBusFrame>("frame");
    QTest::addColumn<bool>("isSdo");

    const QByteArray payload = bytes("43 00 10 00 92 01 02 03");
    const QCanBusFrame sdo(0x581, payload);
    QCanBusFrame extended = sdo;
    extended.setExtendedFrameFormat(true);
    QCanBusFrame remote = sdo;
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QCanBusFrame error = sdo;
    error.setFrameType(QCanBusFrame::ErrorFrame);

    QTest::newRow("data frame") << sdo << true;
    QTest::newRow("extended identifier") << extended << false;
    QTest::newRow("remote frame") << remote << false;
    QTest::newRow("error frame") << error << false;
    QTest::newRow("seven bytes") << QCanBusFrame(0x581, payload.left(7)) << false;
    QTest::newRow("no bytes") << QCanBusFrame(0x581, QByteArray()) << false;
    QTest::newRow("twelve bytes") << QCanBusFrame(0x581, payload + payload.left(4)) << false;
}

void tst_SdoFrame::tellsSdoFrames()
{
    QFETCH(QCanBusFrame, frame);
    QFETCH(bool, isSdo);
    QCOMPARE(isSdoFrame(frame), isSdo);
}

void tst_SdoFrame::refusesOtherSpecifiersAndLengths()
{
    const QByteArray good = bytes("43 00 10 00 92 01 02 03");
    QVERIFY(readSdoInitiateUploadResponse(good));
    QVERIFY(!readSdoInitiateUploadResponse(good.left(7)));
    QVERIFY(!readSdoInitiateUploadResponse(good + good));
    QVERIFY(!readSdoInitiateUploadResponse(QByteArray()));
    QVERIFY(!readSdoInitiateUploadResponse(bytes("63 00 10 00 92 01 02 03")));
    QVERIFY(!readSdoInitiateDownloadRequest(good));
    QVERIFY(!readSdoUploadSegmentResponse(good));
    QVERIFY(!readSdoDownloadSegmentRequest(good));
    QVERIFY(!readSdoBlockInitiateRequest(good));
    QVERIFY(!readSdoBlockInitiateRequest(bytes("A3 00 00 00 00 00 00 00")));
    QVERIFY(!readSdoBlockInitiateResponse(bytes("C1 00 00 00 00 00 00 00")));
    QVERIFY(!readSdoBlockSegment(good.left(7)));
    QVERIFY(!readSdoBlockAcknowledge(bytes("A1 00 00 00 00 00 00 00")));
    QVERIFY(!readSdoBlockEnd(bytes("C0 00 00 00 00 00 00 00")));
}

void tst_SdoFrame::cutsTooMuchData()
{
    const QByteArray tooMuch(20, '\x55');
    QCOMPARE(makeSdoExpeditedUploadResponse(deviceType, tooMuch), bytes("43 00 10 00 55 55 55 55"));
    QCOMPARE(makeSdoExpeditedDownloadRequest(deviceType, tooMuch), bytes("23 00 10 00 55 55 55 55"));
    QCOMPARE(makeSdoUploadSegmentResponse(false, false, tooMuch), bytes("00 55 55 55 55 55 55 55"));
    QCOMPARE(makeSdoDownloadSegmentRequest(false, false, tooMuch), bytes("00 55 55 55 55 55 55 55"));
    QCOMPARE(makeSdoBlockSegment(false, 1, tooMuch), bytes("01 55 55 55 55 55 55 55"));
}

// Lengths 0 to 16 and every byte 0: nothing reads outside of the payload.
void tst_SdoFrame::survivesEveryPayload()
{
    std::mt19937 random(1);
    int read = 0;
    for (int size = 0; size <= 16; ++size) {
        for (int command = 0; command <= 0xFF; ++command) {
            QByteArray payload(size, '\0');
            for (char &byte : payload)
                byte = static_cast<char>(random());
            if (size > 0)
                payload[0] = static_cast<char>(command);
            sdoRequestOf(payload);
            sdoResponseOf(payload);
            sdoBlockUploadOf(payload);
            sdoKeyOf(payload);
            sdoAbortCodeOf(payload);
            sdoToggleOf(payload);
            read += readSdoInitiateUploadResponse(payload).has_value();
            read += readSdoInitiateDownloadRequest(payload).has_value();
            read += readSdoUploadSegmentResponse(payload).has_value();
            read += readSdoDownloadSegmentRequest(payload).has_value();
            read += readSdoBlockInitiateRequest(payload).has_value();
            read += readSdoBlockInitiateResponse(payload).has_value();
            read += readSdoBlockSegment(payload).has_value();
            read += readSdoBlockAcknowledge(payload).has_value();
            read += readSdoBlockEnd(payload).has_value();
        }
    }
    // Only payloads of eight bytes are read: 4 x 32 specifiers, 8 requests and 16 + 16 answers of blocks, 8
    // acknowledges, 256 block segments.
    QCOMPARE(read, 4 * 32 + 8 + 16 + 16 + 8 + 256);
}

void tst_SdoFrame::blockCrc()
{
    QCOMPARE(sdoBlockCrc("123456789"), quint16(0x31C3)); // the check value of this CRC
    QCOMPARE(sdoBlockCrc(QByteArray()), quint16(0));
}

QTEST_APPLESS_MAIN(tst_SdoFrame)

#include "tst_sdoframe.moc"
