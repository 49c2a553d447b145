// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/sdoupload.h>

#include <QtTest>

Q_DECLARE_METATYPE(CanOpen::DataType)

using namespace CanOpen;

using Kind = SdoOutcome::Kind;
using Step = SdoUpload::Step;

namespace {

const ObjectKey deviceType{0x1000, 0};
const ObjectKey deviceName{0x1008, 0};

const QByteArray askType = bytes("40 00 10 00 00 00 00 00");
const QByteArray askName = bytes("40 08 10 00 00 00 00 00");
const QByteArray askSegment0 = bytes("60 00 00 00 00 00 00 00");
const QByteArray askSegment1 = bytes("70 00 00 00 00 00 00 00");
const QByteArray typeIs = bytes("43 00 10 00 92 01 02 80");
const QByteArray nameHas9Bytes = bytes("41 08 10 00 09 00 00 00");
const QByteArray nameSegment0 = bytes("00 41 42 43 44 45 46 47"); // "ABCDEFG"
const QByteArray nameSegment1 = bytes("1B 48 49 00 00 00 00 00"); // "HI", the last
const QByteArray nameTimedOut = bytes("80 08 10 00 00 00 04 05");
const QByteArray askNameInBlocks = bytes("A4 08 10 00 1F 04 00 00");
const QByteArray blockStart = bytes("A3 00 00 00 00 00 00 00");
const QByteArray blockSegment1 = bytes("01 41 42 43 44 45 46 47"); // "ABCDEFG"
const QByteArray blockSegment2 = bytes("82 48 49 00 00 00 00 00"); // "HI", the last
const QByteArray blockEnd = bytes("D5 DC 1A 00 00 00 00 00");      // five bytes unused, CRC
const QByteArray blockEnded = bytes("A1 00 00 00 00 00 00 00");
const QByteArray foreignAsksVersion = bytes("40 09 10 00 00 00 00 00");
const QByteArray versionIsExpedited = bytes("43 09 10 00 31 2E 30 30");

QVector<QByteArray> sent(const Step &step)
{
    QVector<QByteArray> frames;
    for (int i = 0; i < step.frameCount; ++i)
        frames.append(step.frames[static_cast<std::size_t>(i)]);
    return frames;
}

using Frames = QVector<QByteArray>;

// The answers to a reading, all of which are asked for.
Step answer(SdoUpload *upload, const Frames &answers)
{
    Step step;
    for (const QByteArray &payload : answers)
        step = upload->handleResponse(payload);
    return step;
}

// Without trouble an object that comes in segments is read twice.
Step answerTwice(SdoUpload *upload, const Frames &answers)
{
    const Step step = answer(upload, answers);
    return step.finished ? step : answer(upload, answers);
}

const Frames nameReading{nameHas9Bytes, nameSegment0, nameSegment1};

bool isNothing(const Step &step)
{
    return step.frameCount == 0 && !step.waitRestarts && !step.finished;
}

} // namespace

class tst_SdoUpload : public QObject
{
    Q_OBJECT

private slots:
    void readsExpedited();
    void readsSegmented();
    void initiateResponseBits_data();
    void initiateResponseBits();
    void allWidthsAndTypes_data();
    void allWidthsAndTypes();
    void announcedSize_data();
    void announcedSize();
    void segmentSizes_data();
    void segmentSizes();
    void unknownTypeGivesNoValue();
    void endlessSegmentsEnd();
    void endlessEmptySegmentsEnd();

    void deviceAborts();
    void deviceAbortsBetweenSegments();
    void abortWithAnotherKeyIsDropped();
    void abortWithoutCodeIsAnAbort();

    void wrongToggleInFirstSegment();
    void wrongToggleInSecondSegment();
    void doubledSegmentIsDropped();
    void repeatedSegmentThenSilenceIsWrongToggle();
    void nextUploadWorksAfterWrongToggle();

    void timeOutRepeatsAfterAnAbort();
    void timeOutBetweenSegmentsStartsAnew();
    void silenceEndsAsTimeOut();
    void serverStuckInATransferIsNotSilent();
    void serverGoneInATransferIsSilent();
    void giveUpSendsAbort();
    void lateAnswerIsTaken();
    void lateAbortIsTaken();
    void secondInitiateResponseBeforeSegments();
    void initiateResponseBetweenSegmentsIsDropped();
    void owedSegmentOfTheUploadBefore();
    void copyOfTheUploadBeforeIsNotBelieved();
    void equalValuesAreReadThrice();
    void troubleMakesTheNextUploadWait();
    void abortOfAMixedUpTransferIsNoAnswer();
    void changingValueIsBelievedAfterSilence_data();
    void changingValueIsBelievedAfterSilence();
    void doubledSegmentInATextOfUnknownSizeDoesNotCount();
    void babbleIsNeverBelieved();
    void timeOverWhileTheLineClearsIsNoError();
    void answersAfterTheEndAreDropped();
    void forgetSendsNothing();

    void dropsWhatIsNotOurs_data();
    void dropsWhatIsNotOurs();

    void blockUpload();
    void blockUploadOfSeveralBlocks();
    void longObjectIsReadAnewInBlocks();
    void shortObjectStaysInSegments_data();
    void shortObjectStaysInSegments();
    void saysWhenTheSizeIsUnknown_data();
    void saysWhenTheSizeIsUnknown();
    void blockSegmentThatIsLostComesAgain();
    void blockWithoutCrcIsReadTwice();
    void blockInTroubleIsReadTwice();
    void blockAnswerByThePlainProtocol();
    void refusedBlockUploadFallsBack_data();
    void refusedBlockUploadFallsBack();
    void brokenBlockUploadFallsBack_data();
    void brokenBlockUploadFallsBack();
    void silenceInABlockIsToldTheLastSegment();
    void silentBlockServerIsAskedPlainly();
    void abortInABlockFallsBack();
    void longBlockEnds();
    void cancelAbortsATransfer();

    void foreignExpeditedUploadChangesNothing();
    void foreignRequestBetweenSegmentsRestarts();
    void foreignRequestBeforeSegmentsRestarts();
    void foreignDownloadOfOurObjectRestarts();
    void foreignSegmentMakesAbortUnclear();
    void foreignAbortRestartsSegments();
    void foreignBlockUploadIsWaitedFor();
    void foreignTransferBeforeStartIsWaitedFor();
    void foreignDownloadAnsweredAfterStart();
    void silentForeignTransferIsNotWaitedForTwice();
    void foreignTransferIsNotAborted();
    void endlessForeignTransfersEnd();
    void foreignTransferLongerThanOurTime();
};

void tst_SdoUpload::readsExpedited()
{
    SdoUpload upload;
    QVERIFY(!upload.isActive());
    const Step start = upload.start(deviceType, DataType::Unsigned32, 2);
    QCOMPARE(sent(start), Frames{askType});
    QVERIFY(start.waitRestarts);
    QVERIFY(upload.isActive());
    QVERIFY(upload.isUnanswered());

    const Step end = upload.handleResponse(typeIs);
    QVERIFY(end.finished);
    QCOMPARE(end.frameCount, 0);
    QVERIFY(!upload.isActive());
    QVERIFY(!upload.isUnanswered());
    QCOMPARE(upload.outcome().kind, Kind::Value);
    QCOMPARE(upload.outcome().value, QVariant(0x80020192u));
    QCOMPARE(upload.outcome().repeats, 0);
    QVERIFY(upload.outcome().key == deviceType);
}

void tst_SdoUpload::readsSegmented()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    Step step = upload.handleResponse(nameHas9Bytes);
    QCOMPARE(sent(step), Frames{askSegment0});
    QVERIFY(step.waitRestarts);
    step = upload.handleResponse(nameSegment0);
    QCOMPARE(sent(step), Frames{askSegment1});
    QVERIFY(step.waitRestarts);
    step = upload.handleResponse(nameSegment1);
    QCOMPARE(sent(step), Frames{askName}); // one reading is not enough
    QVERIFY(step.waitRestarts);
    step = answer(&upload, nameReading);
    QVERIFY(step.finished);
    QCOMPARE(step.frameCount, 0);
    QCOMPARE(upload.outcome().kind, Kind::Value);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
    QCOMPARE(upload.outcome().raw, QByteArray("ABCDEFGHI"));
}

// All combinations of the e, s and n bits, for a number of two bytes. The rest of the value "34 12 78 56".
void tst_SdoUpload::initiateResponseBits_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<bool>("isValue");
    QTest::addColumn<quint32>("code");

    QTest::newRow("e=1 s=1 n=0") << bytes("43") << false << 0x06070012u;
    QTest::newRow("e=1 s=1 n=1") << bytes("47") << false << 0x06070012u;
    QTest::newRow("e=1 s=1 n=2") << bytes("4B") << true << 0u;
    QTest::newRow("e=1 s=1 n=3") << bytes("4F") << false << 0x06070013u;
    QTest::newRow("e=1 s=0 n=0") << bytes("42") << true << 0u;
    QTest::newRow("e=1 s=0 n=1") << bytes("46") << true << 0u;
    QTest::newRow("e=1 s=0 n=2") << bytes("4A") << true << 0u;
    QTest::newRow("e=1 s=0 n=3") << bytes("4E") << true << 0u;
    // e=0: a segmented transfer begins; with s=1 its size is 56781234h
    QTest::newRow("e=0 s=1 n=0") << bytes("41") << false << 0x06070012u;
    QTest::newRow("e=0 s=1 n=1") << bytes("45") << false << 0x06070012u;
    QTest::newRow("e=0 s=1 n=2") << bytes("49") << false << 0x06070012u;
    QTest::newRow("e=0 s=1 n=3") << bytes("4D") << false << 0x06070012u;
    QTest::newRow("e=0 s=0 n=0") << bytes("40") << true << 0u;
    QTest::newRow("e=0 s=0 n=1") << bytes("44") << true << 0u;
    QTest::newRow("e=0 s=0 n=2") << bytes("48") << true << 0u;
    QTest::newRow("e=0 s=0 n=3") << bytes("4C") << true << 0u;
}

void tst_SdoUpload::initiateResponseBits()
{
    QFETCH(QByteArray, command);
    QFETCH(bool, isValue);
    QFETCH(quint32, code);

    SdoUpload upload;
    upload.start({0x6080, 0}, DataType::Unsigned16, 0);
    const QByteArray initiate = command + bytes("80 60 00 34 12 78 56");
    Step step = upload.handleResponse(initiate);
    if (!step.finished) {
        QCOMPARE(sent(step), Frames{askSegment0});
        const QByteArray segment = bytes("0B 34 12 78 56 00 00 00");
        upload.handleResponse(segment);
        step = answer(&upload, {initiate, segment});
    }
    QVERIFY(step.finished);
    QCOMPARE(upload.outcome().kind, isValue ? Kind::Value : Kind::Error);
    QCOMPARE(upload.outcome().code, code);
    if (isValue)
        QCOMPARE(upload.outcome().value, QVariant(0x1234u));
}

// The bytes F1 F2 F3 F4 ... F8 as far as the answer goes: numbers with the high bit set.
void tst_SdoUpload::allWidthsAndTypes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("typeSize");
    QTest::addColumn<int>("size");
    QTest::addColumn<QVariant>("value");

    struct Row
    {
        const char *name;
        DataType type;
        int size;
        QVariant value;
    };
    const Row rows[] = {
        {"BOOLEAN", DataType::Boolean, 1, 0xF1u},
        {"INTEGER8", DataType::Integer8, 1, -15},
        {"INTEGER16", DataType::Integer16, 2, -3343},
        {"INTEGER32", DataType::Integer32, 4, -185339151},
        {"UNSIGNED8", DataType::Unsigned8, 1, 0xF1u},
        {"UNSIGNED16", DataType::Unsigned16, 2, 0xF2F1u},
        {"UNSIGNED32", DataType::Unsigned32, 4, 0xF4F3F2F1u},
        {"INTEGER64", DataType::Integer64, 8, qlonglong(-506664896818842895)},
        {"UNSIGNED64", DataType::Unsigned64, 8, qulonglong(0xF8F7F6F5F4F3F2F1u)},
    };
    for (const Row &row : rows) {
        for (int size = 0; size <= 9; ++size) {
            QTest::addRow("%s from %d bytes", row.name, size)
                << static_cast<int>(row.type) << row.size << size << row.value;
        }
    }
}

void tst_SdoUpload::allWidthsAndTypes()
{
    QFETCH(int, type);
    QFETCH(int, typeSize);
    QFETCH(int, size);
    QFETCH(QVariant, value);
    const QByteArray data = bytes("F1 F2 F3 F4 F5 F6 F7 F8 F9").left(size);

    for (const bool expedited : {true, false}) {
        if (expedited && (size == 0 || size > 4))
            continue;
        SdoUpload upload;
        upload.start({0x6080, 0}, static_cast<DataType>(type), 0);
        Step step;
        if (expedited) {
            const auto command = static_cast<char>(0x43 | (4 - size) << 2);
            step = upload.handleResponse(QByteArray(1, command) + bytes("80 60 00") + data
                                         + QByteArray(4 - size, '\0'));
        } else {
            Frames answers{bytes("41 80 60 00") + static_cast<char>(size) + bytes("00 00 00")};
            const QByteArray padded = data + QByteArray(14 - size, '\0');
            if (size > 7) {
                answers.append(QByteArray(1, '\0') + padded.left(7));
                answers.append(QByteArray(1, static_cast<char>(0x11 | (14 - size) << 1)) + padded.right(7));
            } else {
                answers.append(QByteArray(1, static_cast<char>(0x01 | (7 - size) << 1)) + padded.left(7));
            }
            step = upload.handleResponse(answers.first());
            if (!step.finished) {
                answer(&upload, answers.mid(1));
                step = answer(&upload, answers);
            }
        }
        QVERIFY(step.finished);
        if (size == typeSize) {
            QCOMPARE(upload.outcome().kind, Kind::Value);
            QCOMPARE(upload.outcome().value, value);
        } else {
            QCOMPARE(upload.outcome().kind, Kind::Error);
            QCOMPARE(upload.outcome().code, size > typeSize ? 0x06070012u : 0x06070013u);
            QVERIFY(!upload.outcome().value.isValid());
        }
    }
}

void tst_SdoUpload::announcedSize_data()
{
    QTest::addColumn<DataType>("type");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<quint32>("code"); // 0: goes on

    QTest::newRow("text, nothing") << DataType::VisibleString << 0u << 0u;
    QTest::newRow("text, longest") << DataType::VisibleString << 65536u << 0u;
    QTest::newRow("text, too long") << DataType::VisibleString << 65537u << 0x06070012u;
    QTest::newRow("text, 2 GB") << DataType::VisibleString << 0x80000000u << 0x06070012u;
    QTest::newRow("domain, 4 GB") << DataType::Domain << 0xFFFFFFFFu << 0x06070012u;
    QTest::newRow("UNSIGNED32, right") << DataType::Unsigned32 << 4u << 0u;
    QTest::newRow("UNSIGNED32, more") << DataType::Unsigned32 << 5u << 0x06070012u;
    QTest::newRow("UNSIGNED32, 4 GB") << DataType::Unsigned32 << 0xFFFFFFFFu << 0x06070012u;
    QTest::newRow("UNSIGNED32, less") << DataType::Unsigned32 << 3u << 0x06070013u;
    QTest::newRow("UNSIGNED32, nothing") << DataType::Unsigned32 << 0u << 0x06070013u;
}

void tst_SdoUpload::announcedSize()
{
    QFETCH(DataType, type);
    QFETCH(quint32, size);
    QFETCH(quint32, code);

    SdoUpload upload;
    upload.start(deviceName, type, 2);
    QByteArray answer = bytes("41 08 10 00");
    for (int shift = 0; shift < 32; shift += 8)
        answer.append(static_cast<char>(size >> shift & 0xFF));
    const Step step = upload.handleResponse(answer);
    if (code == 0) {
        QCOMPARE(sent(step), Frames{askSegment0});
        return;
    }
    QVERIFY(step.finished);
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, code);
    // The server's transfer is ended too.
    const QByteArray abort
        = code == 0x06070012u ? bytes("80 08 10 00 12 00 07 06") : bytes("80 08 10 00 13 00 07 06");
    QCOMPARE(sent(step), Frames{abort});
}

void tst_SdoUpload::segmentSizes_data()
{
    QTest::addColumn<QByteArray>("initiate");
    QTest::addColumn<Frames>("segments");
    QTest::addColumn<QString>("text"); // of a value
    QTest::addColumn<quint32>("code"); // of an error
    QTest::addColumn<bool>("aborts");

    const QByteArray unknownSize = bytes("40 08 10 00 00 00 00 00");
    const QByteArray nothing = bytes("41 08 10 00 00 00 00 00");
    QTest::newRow("size unknown") << unknownSize << Frames{nameSegment0, nameSegment1}
                                  << QStringLiteral("ABCDEFGHI") << 0u << false;
    QTest::newRow("unused bytes are not taken")
        << unknownSize << Frames{bytes("0B 41 42 FF FF FF FF FF")} << QStringLiteral("AB") << 0u << false;
    QTest::newRow("empty text, one empty segment")
        << nothing << Frames{bytes("0F 00 00 00 00 00 00 00")} << QString() << 0u << false;
    QTest::newRow("empty text, size unknown")
        << unknownSize << Frames{bytes("0F 00 00 00 00 00 00 00")} << QString() << 0u << false;
    QTest::newRow("last segment full")
        << bytes("41 08 10 00 07 00 00 00") << Frames{bytes("01 41 42 43 44 45 46 47")}
        << QStringLiteral("ABCDEFG") << 0u << false;
    QTest::newRow("short segment in the middle")
        << nameHas9Bytes << Frames{bytes("0A 41 42 00 00 00 00 00"), bytes("11 43 44 45 46 47 48 49")}
        << QStringLiteral("ABCDEFGHI") << 0u << false;
    QTest::newRow("empty segment in the middle")
        << nameHas9Bytes
        << Frames{nameSegment0, bytes("1E 00 00 00 00 00 00 00"), bytes("0B 48 49 00 00 00 00 00")}
        << QStringLiteral("ABCDEFGHI") << 0u << false;
    QTest::newRow("end in an empty segment")
        << bytes("41 08 10 00 07 00 00 00") << Frames{nameSegment0, bytes("1F 00 00 00 00 00 00 00")}
        << QStringLiteral("ABCDEFG") << 0u << false;
    QTest::newRow("more than announced, and more to come")
        << bytes("41 08 10 00 06 00 00 00") << Frames{nameSegment0} << QString() << 0x06070012u << true;
    QTest::newRow("more than announced in the last segment")
        << bytes("41 08 10 00 08 00 00 00") << Frames{nameSegment0, nameSegment1} << QString() << 0x06070012u
        << false;
    QTest::newRow("fewer than announced")
        << bytes("41 08 10 00 0A 00 00 00") << Frames{nameSegment0, nameSegment1} << QString() << 0x06070013u
        << false;
    QTest::newRow("nothing announced, something comes")
        << nothing << Frames{nameSegment0} << QString() << 0x06070012u << true;
}

void tst_SdoUpload::segmentSizes()
{
    QFETCH(QByteArray, initiate);
    QFETCH(Frames, segments);
    QFETCH(QString, text);
    QFETCH(quint32, code);
    QFETCH(bool, aborts);

    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    const Step step = answerTwice(&upload, Frames{initiate} + segments);
    QVERIFY(step.finished);
    QCOMPARE(step.frameCount, aborts ? 1 : 0);
    if (code != 0) {
        QCOMPARE(upload.outcome().kind, Kind::Error);
        QCOMPARE(upload.outcome().code, code);
        QVERIFY(!upload.outcome().value.isValid());
        return;
    }
    QCOMPARE(upload.outcome().kind, Kind::Value);
    QCOMPARE(upload.outcome().value, QVariant(text));
}

void tst_SdoUpload::unknownTypeGivesNoValue()
{
    SdoUpload upload;
    upload.start(deviceType, static_cast<DataType>(0x99), 0);
    QVERIFY(upload.handleResponse(typeIs).finished);
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x06070010u);
}

void tst_SdoUpload::endlessSegmentsEnd()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::Domain, 2);
    upload.handleResponse(bytes("40 08 10 00 00 00 00 00"));
    Step step;
    int segments = 0;
    while (!step.finished && segments < 20000) {
        step = upload.handleResponse(segments % 2 == 0 ? bytes("00 01 02 03 04 05 06 07")
                                                       : bytes("10 01 02 03 04 05 06 07"));
        ++segments;
    }
    QCOMPARE(segments, 65536 / 7 + 1);
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x06070012u);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 12 00 07 06")});
}

void tst_SdoUpload::endlessEmptySegmentsEnd()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::Domain, 2);
    upload.handleResponse(bytes("40 08 10 00 00 00 00 00"));
    Step step;
    int segments = 0;
    while (!step.finished && segments < 1000) {
        step = upload.handleResponse(segments % 2 == 0 ? bytes("0E 00 00 00 00 00 00 00")
                                                       : bytes("1E 00 00 00 00 00 00 00"));
        ++segments;
    }
    QCOMPARE(segments, 17);
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 00 00 00 08")});
}

void tst_SdoUpload::deviceAborts()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    const Step step = upload.handleResponse(bytes("80 00 10 00 00 00 02 06"));
    QVERIFY(step.finished);
    QCOMPARE(step.frameCount, 0);
    QCOMPARE(upload.outcome().kind, Kind::Abort);
    QCOMPARE(upload.outcome().code, 0x06020000u);
}

void tst_SdoUpload::deviceAbortsBetweenSegments()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleResponse(nameSegment0);
    QVERIFY(upload.handleResponse(bytes("80 08 10 00 00 00 06 06")).finished);
    QCOMPARE(upload.outcome().kind, Kind::Abort);
    QCOMPARE(upload.outcome().code, 0x06060000u);
    QVERIFY(!upload.outcome().value.isValid());
}

void tst_SdoUpload::abortWithAnotherKeyIsDropped()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    QVERIFY(isNothing(upload.handleResponse(bytes("80 08 10 01 00 00 02 06"))));
    upload.handleResponse(nameHas9Bytes);
    QVERIFY(isNothing(upload.handleResponse(bytes("80 09 10 00 00 00 02 06"))));
    upload.handleResponse(nameSegment0);
    QVERIFY(!upload.handleResponse(nameSegment1).finished);
    upload.setTime(650);
    upload.timeOver();
    QVERIFY(answer(&upload, nameReading).finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
}

void tst_SdoUpload::abortWithoutCodeIsAnAbort()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    QVERIFY(upload.handleResponse(bytes("80 00 10 00 00 00 00 00")).finished);
    QCOMPARE(upload.outcome().kind, Kind::Abort);
    QCOMPARE(upload.outcome().code, 0u);
}

void tst_SdoUpload::wrongToggleInFirstSegment()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    const Step step = upload.handleResponse(bytes("10 41 42 43 44 45 46 47"));
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 00 00 03 05")});
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x05030000u);
}

void tst_SdoUpload::wrongToggleInSecondSegment()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleResponse(nameSegment0);
    const Step step = upload.handleResponse(bytes("0B 48 49 00 00 00 00 00"));
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 00 00 03 05")});
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x05030000u);
}

void tst_SdoUpload::doubledSegmentIsDropped()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    QCOMPARE(upload.handleResponse(nameHas9Bytes).frameCount, 0);
    upload.handleResponse(nameSegment0);
    QVERIFY(isNothing(upload.handleResponse(nameSegment0)));
    // A line that doubles may do it again, later: the next reading waits until no such copy is left.
    const Step step = upload.handleResponse(nameSegment1);
    QCOMPARE(step.frameCount, 0);
    QVERIFY(step.waitRestarts);
    QCOMPARE(step.wait, 10);
    upload.setTime(10);
    QCOMPARE(sent(upload.timeOver()), Frames{askName});
    QVERIFY(answer(&upload, nameReading).finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
    QCOMPARE(upload.outcome().repeats, 0);
}

// A device that never changes the bit, and whose text repeats: only the silence after it tells.
void tst_SdoUpload::repeatedSegmentThenSilenceIsWrongToggle()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleResponse(nameSegment0);
    QVERIFY(isNothing(upload.handleResponse(nameSegment0)));
    const Step step = upload.timeOver();
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 00 00 03 05")});
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x05030000u);
}

void tst_SdoUpload::nextUploadWorksAfterWrongToggle()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleResponse(bytes("10 41 42 43 44 45 46 47"));
    QCOMPARE(upload.outcome().kind, Kind::Error);

    // The right segment may still come, for the next upload.
    upload.start(deviceName, DataType::VisibleString, 2);
    const QByteArray endTransfer = bytes("80 08 10 00 00 00 00 08");
    Step step = upload.handleResponse(nameHas9Bytes);
    QCOMPARE(sent(step), Frames{endTransfer});
    QCOMPARE(step.wait, 650);
    upload.setTime(650);
    QCOMPARE(sent(upload.timeOver()), Frames{askName});
    QVERIFY(answerTwice(&upload, nameReading).finished);
    QCOMPARE(upload.outcome().kind, Kind::Value);
    QCOMPARE(upload.outcome().code, 0u);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
}

void tst_SdoUpload::timeOutRepeatsAfterAnAbort()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    QCOMPARE(upload.attempt(), 0);
    const Step step = upload.timeOver();
    QCOMPARE(sent(step), (Frames{nameTimedOut, askName}));
    QVERIFY(step.waitRestarts);
    QVERIFY(!step.finished);
    QCOMPARE(upload.attempt(), 1);
}

void tst_SdoUpload::timeOutBetweenSegmentsStartsAnew()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleResponse(nameSegment0);
    QCOMPARE(sent(upload.timeOver()), (Frames{nameTimedOut, askName}));

    // The segment that was asked for may still come.
    const QByteArray endTransfer = bytes("80 08 10 00 00 00 00 08");
    Step step = upload.handleResponse(nameHas9Bytes);
    QCOMPARE(sent(step), Frames{endTransfer});
    QCOMPARE(step.wait, 650);
    QVERIFY(isNothing(upload.handleResponse(nameSegment1)));
    upload.setTime(650);
    QCOMPARE(sent(upload.timeOver()), Frames{askName});
    step = answer(&upload, nameReading);
    QCOMPARE(step.wait, 650);
    upload.setTime(1300);
    upload.timeOver();
    QVERIFY(answer(&upload, nameReading).finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
    QCOMPARE(upload.outcome().repeats, 1);
}

void tst_SdoUpload::silenceEndsAsTimeOut()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    QVERIFY(!upload.timeOver().finished);
    QVERIFY(!upload.timeOver().finished);
    const Step step = upload.timeOver();
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{nameTimedOut});
    QCOMPARE(upload.outcome().kind, Kind::Timeout);
    QCOMPARE(upload.outcome().repeats, 2);
    QVERIFY(isNothing(upload.timeOver()));
}

void tst_SdoUpload::serverStuckInATransferIsNotSilent()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 1);
    QCOMPARE(sent(upload.handleResponse(nameHas9Bytes)), Frames{askSegment0});
    QCOMPARE(sent(upload.timeOver()), (Frames{nameTimedOut, askName}));
    upload.setTime(650);
    QCOMPARE(sent(upload.handleResponse(nameHas9Bytes)), Frames{askSegment0});
    const Step step = upload.timeOver();
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{nameTimedOut});
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x05040000u);
    QCOMPARE(upload.outcome().repeats, 1);
}

void tst_SdoUpload::serverGoneInATransferIsSilent()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 1);
    upload.handleResponse(nameHas9Bytes);
    QCOMPARE(sent(upload.timeOver()), (Frames{nameTimedOut, askName}));
    QVERIFY(upload.timeOver().finished);
    QCOMPARE(upload.outcome().kind, Kind::Timeout);
}

void tst_SdoUpload::giveUpSendsAbort()
{
    SdoUpload upload;
    QVERIFY(isNothing(upload.giveUp()));
    upload.start(deviceName, DataType::VisibleString, 2);
    Step step = upload.giveUp();
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{nameTimedOut});
    QCOMPARE(upload.outcome().kind, Kind::Timeout);

    // A device that sends and sends is not silent.
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    step = upload.giveUp();
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 00 00 00 08")});
    QCOMPARE(upload.outcome().kind, Kind::Error);
}

void tst_SdoUpload::lateAnswerIsTaken()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    upload.timeOver();
    QVERIFY(upload.handleResponse(typeIs).finished);
    QCOMPARE(upload.outcome().kind, Kind::Value);
    QCOMPARE(upload.outcome().value, QVariant(0x80020192u));
    QCOMPARE(upload.outcome().repeats, 1);

    // The answer to the repeated request comes during the next upload.
    upload.start({0x1001, 0}, DataType::Unsigned32, 2);
    QVERIFY(isNothing(upload.handleResponse(typeIs)));
    QVERIFY(upload.handleResponse(bytes("43 01 10 00 05 00 00 00")).finished);
    QCOMPARE(upload.outcome().value, QVariant(5u));
}

void tst_SdoUpload::lateAbortIsTaken()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    upload.timeOver();
    QVERIFY(upload.handleResponse(bytes("80 00 10 00 00 00 02 06")).finished);
    QCOMPARE(upload.outcome().kind, Kind::Abort);
}

// First and repeated request are both answered before the first segment: the later answer counts, and the
// segment is asked for only once.
void tst_SdoUpload::secondInitiateResponseBeforeSegments()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.timeOver();
    QCOMPARE(sent(upload.handleResponse(bytes("41 08 10 00 05 00 00 00"))), Frames{askSegment0});
    const Step second = upload.handleResponse(nameHas9Bytes);
    QCOMPARE(second.frameCount, 0);
    QVERIFY(second.waitRestarts);
    upload.handleResponse(nameSegment0);
    QVERIFY(!upload.handleResponse(nameSegment1).finished);
    QVERIFY(upload.isActive());
}

// A late copy; if the server has begun anew, the next segment says so.
void tst_SdoUpload::initiateResponseBetweenSegmentsIsDropped()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleResponse(nameSegment0);
    QVERIFY(isNothing(upload.handleResponse(nameHas9Bytes)));
    QCOMPARE(upload.handleResponse(nameSegment1).wait, 10);
}

// The upload before asked for a segment, was given up, and the segment comes when this one waits for its own.
void tst_SdoUpload::owedSegmentOfTheUploadBefore()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 0);
    upload.handleResponse(nameHas9Bytes);
    QVERIFY(upload.timeOver().finished);

    upload.setTime(10);
    upload.start(deviceType, DataType::Unsigned32, 0);
    const Step step = upload.handleResponse(bytes("41 00 10 00 04 00 00 00"));
    QCOMPARE(sent(step), Frames{bytes("80 00 10 00 00 00 00 08")}); // the server does not wait for us
    QCOMPARE(step.wait, 640);
    QVERIFY(isNothing(upload.handleResponse(bytes("07 78 78 78 78 00 00 00"))));
    upload.setTime(650);
    QCOMPARE(sent(upload.timeOver()), Frames{askType});
}

// The last segment of the object before comes again while this one waits for its own, and so does its own, for
// the reading after.
void tst_SdoUpload::copyOfTheUploadBeforeIsNotBelieved()
{
    const QByteArray typeInSegments = bytes("41 00 10 00 04 00 00 00");
    const QByteArray typeSegment = bytes("07 92 01 02 80 00 00 00");
    const QByteArray otherInSegments = bytes("41 01 10 00 04 00 00 00");
    const QByteArray otherSegment = bytes("07 11 22 33 44 00 00 00");

    SdoUpload upload;
    upload.start({0x1001, 0}, DataType::Unsigned32, 0);
    QVERIFY(answerTwice(&upload, {otherInSegments, otherSegment}).finished);
    QCOMPARE(upload.outcome().value, QVariant(0x44332211u));

    upload.start(deviceType, DataType::Unsigned32, 0);
    QCOMPARE(sent(answer(&upload, {typeInSegments, otherSegment})), Frames{askType});
    QVERIFY(!answer(&upload, {typeInSegments, otherSegment}).finished); // two copies agree
    QVERIFY(isNothing(upload.handleResponse(typeSegment)));
    const Step step = answer(&upload, {typeInSegments, otherSegment});
    QVERIFY(!step.finished);
    QVERIFY(step.wait > 0);
    upload.setTime(step.wait);
    upload.timeOver();
    QCOMPARE(sent(answer(&upload, {typeInSegments, typeSegment})).size(), 0);
    upload.setTime(2 * step.wait);
    upload.timeOver();
    QVERIFY(answer(&upload, {typeInSegments, typeSegment}).finished);
    QCOMPARE(upload.outcome().value, QVariant(0x80020192u));
}

// Two objects may have the same value. Without any sign of trouble a third reading settles it.
void tst_SdoUpload::equalValuesAreReadThrice()
{
    const QByteArray segment = bytes("07 00 00 00 00 00 00 00");
    SdoUpload upload;
    upload.start({0x1001, 0}, DataType::Unsigned32, 0);
    QVERIFY(answerTwice(&upload, {bytes("41 01 10 00 04 00 00 00"), segment}).finished);
    upload.start(deviceType, DataType::Unsigned32, 0);
    const Frames reading{bytes("41 00 10 00 04 00 00 00"), segment};
    QCOMPARE(sent(answer(&upload, reading)), Frames{askType});
    QCOMPARE(sent(answer(&upload, reading)), Frames{askType});
    QVERIFY(answer(&upload, reading).finished);
    QCOMPARE(upload.outcome().value, QVariant(0u));
}

// After a frame that nobody asked for, nothing in segments is asked for until all from before it is gone.
void tst_SdoUpload::troubleMakesTheNextUploadWait()
{
    SdoUpload upload;
    upload.start({0x1001, 0}, DataType::Unsigned32, 0);
    answerTwice(&upload, {bytes("41 01 10 00 04 00 00 00"), bytes("07 01 00 00 00 00 00 00")});
    QCOMPARE(upload.outcome().kind, Kind::Value);
    upload.setTime(100);
    upload.handleResponse(bytes("43 01 10 00 01 00 00 00"));
    upload.start(deviceType, DataType::Unsigned32, 0);
    const Step step = upload.handleResponse(bytes("41 00 10 00 04 00 00 00"));
    QCOMPARE(sent(step), Frames{bytes("80 00 10 00 00 00 00 08")});
    QCOMPARE(step.wait, 550);
}

// The server complains of a toggle bit when a request has come to it twice: nothing is wrong with the object.
void tst_SdoUpload::abortOfAMixedUpTransferIsNoAnswer()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    answer(&upload, {nameHas9Bytes, nameSegment0, nameSegment0});
    const Step step = upload.handleResponse(bytes("80 08 10 00 00 00 03 05"));
    QVERIFY(!step.finished);
    QCOMPARE(step.wait, 650);
    upload.setTime(650);
    QCOMPARE(sent(upload.timeOver()), Frames{askName});
    // What it says of the object is an answer at any time.
    QVERIFY(upload.handleResponse(bytes("80 08 10 00 00 00 02 06")).finished);
    QCOMPARE(upload.outcome().kind, Kind::Abort);
}

void tst_SdoUpload::changingValueIsBelievedAfterSilence_data()
{
    QTest::addColumn<bool>("isSilent");
    QTest::newRow("silence") << true;
    QTest::newRow("a segment is left over") << false;
}

void tst_SdoUpload::changingValueIsBelievedAfterSilence()
{
    QFETCH(bool, isSilent);
    const QByteArray initiate = bytes("41 00 10 00 04 00 00 00");
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 0);
    for (const char *segment :
         {"07 01 00 00 00 00 00 00", "07 02 00 00 00 00 00 00", "07 03 00 00 00 00 00 00"})
        QCOMPARE(sent(answer(&upload, {initiate, bytes(segment)})), Frames{askType});
    const Step step = answer(&upload, {initiate, bytes("07 04 00 00 00 00 00 00")});
    QCOMPARE(step.frameCount, 0);
    QCOMPARE(step.wait, 650);
    if (!isSilent)
        upload.handleResponse(bytes("07 05 00 00 00 00 00 00"));
    upload.setTime(650);
    const Step end = upload.timeOver();
    QCOMPARE(end.finished, isSilent);
    if (isSilent)
        QCOMPARE(upload.outcome().value, QVariant(4u));
    else
        QCOMPARE(sent(end), Frames{askType});
}

// The third segment is like the first one, and its request came twice: what looks like a copy may be the third.
void tst_SdoUpload::doubledSegmentInATextOfUnknownSizeDoesNotCount()
{
    const QByteArray sizeless = bytes("40 08 10 00 00 00 00 00");
    const QByteArray again = bytes("10 41 42 43 44 45 46 47");
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 0);
    for (int reading = 0; reading < 9; ++reading) {
        upload.setTime(650 * reading);
        if (reading > 0)
            QCOMPARE(sent(upload.timeOver()), Frames{askName});
        const Step step = answer(
            &upload, {sizeless, nameSegment0, nameSegment0, again, bytes("0B 48 49 00 00 00 00 00")});
        QCOMPARE(step.finished, reading == 8);
    }
    QVERIFY(upload.outcome().isMixedUp);
}

// A node that sends the same segment again and again, between all others.
void tst_SdoUpload::babbleIsNeverBelieved()
{
    const QByteArray initiate = bytes("41 00 10 00 04 00 00 00");
    const QByteArray babble = bytes("07 34 12 00 00 00 00 00");
    SdoUpload upload;
    Step step = upload.start(deviceType, DataType::Unsigned32, 0);
    qint64 now = 0;
    while (!step.finished && now < 100000) {
        upload.handleResponse(babble);
        if (step.wait == 0) {
            upload.handleResponse(initiate);
            step = upload.handleResponse(babble);
        }
        if (!step.finished && step.wait > 0) {
            for (int i = 0; i < 20; ++i)
                upload.handleResponse(babble);
            now += step.wait;
            upload.setTime(now);
            step = upload.timeOver();
        }
    }
    QVERIFY(step.finished);
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x08000000u);
    QVERIFY(upload.outcome().isMixedUp);
}

void tst_SdoUpload::timeOverWhileTheLineClearsIsNoError()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleResponse(nameSegment0);
    upload.handleResponse(nameSegment0);
    upload.handleResponse(nameSegment1);
    const Step step = upload.giveUp();
    QVERIFY(step.finished);
    QCOMPARE(step.frameCount, 0);
    QCOMPARE(upload.outcome().kind, Kind::Error); // it has answered
    QVERIFY(upload.outcome().isMixedUp);
}

void tst_SdoUpload::answersAfterTheEndAreDropped()
{
    SdoUpload upload;
    QVERIFY(isNothing(upload.handleResponse(typeIs)));
    upload.start(deviceType, DataType::Unsigned32, 2);
    upload.handleResponse(typeIs);
    QVERIFY(isNothing(upload.handleResponse(bytes("43 00 10 00 00 00 00 00"))));
    QVERIFY(isNothing(upload.handleResponse(bytes("80 00 10 00 00 00 02 06"))));
    QVERIFY(isNothing(upload.handleForeignRequest(foreignAsksVersion)));
    QCOMPARE(upload.outcome().value, QVariant(0x80020192u));
}

void tst_SdoUpload::forgetSendsNothing()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    upload.forget();
    QVERIFY(!upload.isActive());
    QVERIFY(isNothing(upload.handleResponse(typeIs)));
    QVERIFY(isNothing(upload.timeOver()));
}

void tst_SdoUpload::dropsWhatIsNotOurs_data()
{
    QTest::addColumn<QByteArray>("payload");

    QTest::newRow("other index") << bytes("43 01 10 00 92 01 02 03");
    QTest::newRow("other index, high byte") << bytes("43 00 11 00 92 01 02 03");
    QTest::newRow("other sub-index") << bytes("43 00 10 01 92 01 02 03");
    QTest::newRow("other object, segmented") << nameHas9Bytes;
    QTest::newRow("segment unasked") << nameSegment0;
    QTest::newRow("last segment unasked") << nameSegment1;
    QTest::newRow("answer to a download of ours") << bytes("60 00 10 00 00 00 00 00");
    QTest::newRow("answer to a download segment") << bytes("20 00 00 00 00 00 00 00");
    QTest::newRow("answer to a block upload of ours") << bytes("C6 00 10 00 04 00 00 00");
    QTest::newRow("answer to a block download of ours") << bytes("A4 00 10 00 7F 00 00 00");
    QTest::newRow("reserved specifier") << bytes("E0 00 10 00 92 01 02 03");
}

void tst_SdoUpload::dropsWhatIsNotOurs()
{
    QFETCH(QByteArray, payload);
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    QVERIFY(isNothing(upload.handleResponse(payload)));
    QVERIFY(isNothing(upload.handleResponse(payload)));
    QVERIFY(upload.isUnanswered());
    QVERIFY(upload.handleResponse(typeIs).finished);
    QCOMPARE(upload.outcome().value, QVariant(0x80020192u));
}

void tst_SdoUpload::blockUpload()
{
    SdoUpload upload;
    Step step = upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block);
    QCOMPARE(sent(step), Frames{askNameInBlocks});
    QVERIFY(step.waitRestarts);
    step = upload.handleResponse(bytes("C6 08 10 00 09 00 00 00"));
    QCOMPARE(sent(step), Frames{blockStart});
    step = upload.handleResponse(blockSegment1);
    QCOMPARE(step.frameCount, 0);
    QVERIFY(step.waitRestarts);
    step = upload.handleResponse(blockSegment2);
    QCOMPARE(sent(step), Frames{bytes("A2 02 1F 00 00 00 00 00")});
    step = upload.handleResponse(blockEnd);
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{blockEnded});
    QCOMPARE(upload.outcome().kind, Kind::Value);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
    QCOMPARE(upload.outcome().raw, QByteArray("ABCDEFGHI"));
}

void tst_SdoUpload::longObjectIsReadAnewInBlocks()
{
    SdoUpload upload;
    Step step = upload.start(deviceName, DataType::Domain, 2, SdoProtocol::BlockWhenLong);
    QCOMPARE(sent(step), Frames{askName});
    step = upload.handleResponse(bytes("41 08 10 00 1C 00 00 00")); // 28 bytes
    QCOMPARE(sent(step), (Frames{bytes("80 08 10 00 00 00 00 08"), askNameInBlocks}));
    QVERIFY(step.waitRestarts);
    // The server knows no blocks: from now on it goes on in segments.
    step = upload.handleResponse(bytes("80 08 10 00 01 00 04 05"));
    QCOMPARE(sent(step), Frames{askName});
    step = upload.handleResponse(bytes("41 08 10 00 1C 00 00 00"));
    QCOMPARE(sent(step), Frames{askSegment0});
    upload.cancel();
    upload.start(deviceName, DataType::Domain, 2, SdoProtocol::BlockWhenLong);
    upload.setTime(1000);
    step = upload.handleResponse(bytes("41 08 10 00 1C 00 00 00"));
    QVERIFY(sent(step) != (Frames{bytes("80 08 10 00 00 00 00 08"), askNameInBlocks}));
}

void tst_SdoUpload::shortObjectStaysInSegments_data()
{
    QTest::addColumn<QByteArray>("initiate");
    QTest::newRow("27 bytes") << bytes("41 08 10 00 1B 00 00 00");
    QTest::newRow("no size") << bytes("40 08 10 00 00 00 00 00");
}

void tst_SdoUpload::shortObjectStaysInSegments()
{
    QFETCH(QByteArray, initiate);
    SdoUpload upload;
    upload.start(deviceName, DataType::Domain, 2, SdoProtocol::BlockWhenLong);
    QCOMPARE(sent(upload.handleResponse(initiate)), Frames{askSegment0});
}

void tst_SdoUpload::saysWhenTheSizeIsUnknown_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<DataType>("type");
    QTest::addColumn<bool>("isUnknown");
    QTest::addColumn<int>("size");

    QTest::newRow("raw, no size") << bytes("42 00 10 00 92 01 02 80") << rawBytes << true << 4;
    QTest::newRow("raw, one byte") << bytes("4F 00 10 00 92 00 00 00") << rawBytes << false << 1;
    QTest::newRow("raw, four bytes") << typeIs << rawBytes << false << 4;
    QTest::newRow("typed, no size") << bytes("42 00 10 00 92 01 02 80") << DataType::Unsigned16 << false << 2;
}

void tst_SdoUpload::saysWhenTheSizeIsUnknown()
{
    QFETCH(QByteArray, answer);
    QFETCH(DataType, type);
    QFETCH(int, size);
    SdoUpload upload;
    upload.start(deviceType, type, 2);
    QVERIFY(upload.handleResponse(answer).finished);
    QTEST(upload.outcome().isSizeUnknown, "isUnknown");
    QCOMPARE(upload.outcome().raw.size(), size);
}

// 32 segments: one more than a block has.
void tst_SdoUpload::blockUploadOfSeveralBlocks()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::Domain, 2, SdoProtocol::Block);
    upload.handleResponse(bytes("C0 08 10 00 00 00 00 00")); // neither size nor CRC
    QByteArray expected;
    for (int reading = 0; reading < 2; ++reading) {
        expected.clear();
        Step step;
        for (int number = 1; number <= 31; ++number) {
            const QByteArray data(7, static_cast<char>(number));
            expected.append(data);
            step = upload.handleResponse(static_cast<char>(number) + data);
            QCOMPARE(step.frameCount, number == 31 ? 1 : 0);
        }
        QCOMPARE(sent(step), Frames{bytes("A2 1F 1F 00 00 00 00 00")});
        expected.append("x");
        QCOMPARE(sent(upload.handleResponse(bytes("81 78 00 00 00 00 00 00"))),
                 Frames{bytes("A2 01 1F 00 00 00 00 00")});
        step = upload.handleResponse(bytes("D9 00 00 00 00 00 00 00")); // six bytes unused
        if (reading == 0) {
            QCOMPARE(sent(step), (Frames{blockEnded, askNameInBlocks}));
            upload.handleResponse(bytes("C0 08 10 00 00 00 00 00"));
        }
    }
    QCOMPARE(upload.outcome().kind, Kind::Value);
    QCOMPARE(upload.outcome().value, QVariant(expected));
}

void tst_SdoUpload::blockSegmentThatIsLostComesAgain()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block);
    upload.handleResponse(bytes("C6 08 10 00 10 00 00 00"));
    upload.handleResponse(blockSegment1);
    // The second one is lost; the third and last one is dropped, and only the first confirmed.
    QCOMPARE(sent(upload.handleResponse(bytes("83 4F 50 00 00 00 00 00"))),
             Frames{bytes("A2 01 1F 00 00 00 00 00")});
    QCOMPARE(upload.handleResponse(bytes("01 48 49 4A 4B 4C 4D 4E")).frameCount, 0);
    QCOMPARE(sent(upload.handleResponse(bytes("82 4F 50 00 00 00 00 00"))),
             Frames{bytes("A2 02 1F 00 00 00 00 00")});
    const Step step = upload.handleResponse(bytes("D5 80 60 00 00 00 00 00"));
    QVERIFY(step.finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHIJKLMNOP")));
}

void tst_SdoUpload::blockWithoutCrcIsReadTwice()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block);
    const Frames reading{bytes("C2 08 10 00 09 00 00 00"), blockSegment1, blockSegment2,
                         bytes("D5 00 00 00 00 00 00 00")};
    QCOMPARE(sent(answer(&upload, reading)), (Frames{blockEnded, askNameInBlocks}));
    QVERIFY(answer(&upload, reading).finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
}

void tst_SdoUpload::blockInTroubleIsReadTwice()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block);
    const Frames reading{bytes("C6 08 10 00 09 00 00 00"), blockSegment1, blockSegment2, blockEnd};
    upload.handleResponse(reading.at(0));
    upload.handleResponse(blockSegment1);
    QVERIFY(isNothing(upload.handleResponse(blockSegment1))); // doubled
    upload.handleResponse(blockSegment2);
    const Step step = upload.handleResponse(blockEnd);
    QCOMPARE(sent(step), Frames{blockEnded});
    QCOMPARE(step.wait, 10);
    upload.setTime(10);
    QCOMPARE(sent(upload.timeOver()), Frames{askNameInBlocks});
    QVERIFY(answer(&upload, reading).finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
}

void tst_SdoUpload::blockAnswerByThePlainProtocol()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Domain, 2, SdoProtocol::Block);
    QVERIFY(upload.handleResponse(typeIs).finished);
    QCOMPARE(upload.outcome().value, QVariant(bytes("92 01 02 80")));
}

void tst_SdoUpload::refusedBlockUploadFallsBack_data()
{
    QTest::addColumn<QByteArray>("abort");
    QTest::addColumn<QByteArray>("nextRequest"); // of the upload after it

    QTest::newRow("unknown command") << bytes("80 08 10 00 01 00 04 05") << askName;
    QTest::newRow("another reason") << bytes("80 08 10 00 00 00 00 08") << askNameInBlocks;
}

void tst_SdoUpload::refusedBlockUploadFallsBack()
{
    QFETCH(QByteArray, abort);
    QFETCH(QByteArray, nextRequest);
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block);
    QCOMPARE(sent(upload.handleResponse(abort)), Frames{askName});
    QVERIFY(answerTwice(&upload, nameReading).finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
    QCOMPARE(upload.outcome().repeats, 0);
    QCOMPARE(sent(upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block)),
             Frames{nextRequest});
}

void tst_SdoUpload::brokenBlockUploadFallsBack_data()
{
    QTest::addColumn<Frames>("answers");
    QTest::addColumn<QByteArray>("abort");

    const QByteArray initiate = bytes("C6 08 10 00 09 00 00 00");
    QTest::newRow("wrong CRC") << Frames{initiate, blockSegment1, blockSegment2,
                                         bytes("D5 00 00 00 00 00 00 00")}
                               << bytes("80 08 10 00 04 00 04 05");
    QTest::newRow("end before the last segment")
        << Frames{initiate, blockSegment1, blockEnd} << bytes("80 08 10 00 03 00 04 05");
    QTest::newRow("fewer bytes than announced")
        << Frames{bytes("C6 08 10 00 0A 00 00 00"), blockSegment1, blockSegment2, blockEnd}
        << bytes("80 08 10 00 13 00 07 06");
    QTest::newRow("more bytes than announced")
        << Frames{bytes("C6 08 10 00 08 00 00 00"), blockSegment1, blockSegment2, blockEnd}
        << bytes("80 08 10 00 12 00 07 06");
}

void tst_SdoUpload::brokenBlockUploadFallsBack()
{
    QFETCH(Frames, answers);
    QFETCH(QByteArray, abort);
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block);
    const Step step = answer(&upload, answers);
    QVERIFY(!step.finished);
    QCOMPARE(sent(step), Frames{abort});
    QCOMPARE(step.wait, 650);
    upload.setTime(650);
    QCOMPARE(sent(upload.timeOver()), Frames{askName});
    QCOMPARE(answer(&upload, nameReading).wait, 650);
    upload.setTime(1300);
    upload.timeOver();
    QVERIFY(answer(&upload, nameReading).finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
}

void tst_SdoUpload::silenceInABlockIsToldTheLastSegment()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block);
    upload.handleResponse(bytes("C6 08 10 00 09 00 00 00"));
    upload.handleResponse(blockSegment1);
    const Step step = upload.timeOver();
    QCOMPARE(sent(step), Frames{bytes("A2 01 1F 00 00 00 00 00")});
    QVERIFY(step.waitRestarts);
    // The rest comes as a block of its own.
    QCOMPARE(sent(upload.handleResponse(bytes("81 48 49 00 00 00 00 00"))),
             Frames{bytes("A2 01 1F 00 00 00 00 00")});
    // A server that says nothing any more is given up.
    for (int i = 0; i < 4; ++i)
        QCOMPARE(sent(upload.timeOver()), Frames{bytes("A2 01 1F 00 00 00 00 00")});
    QCOMPARE(sent(upload.timeOver()), Frames{nameTimedOut});
    upload.setTime(650);
    QCOMPARE(sent(upload.timeOver()), Frames{askName});
}

void tst_SdoUpload::silentBlockServerIsAskedPlainly()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 1, SdoProtocol::Block);
    QCOMPARE(sent(upload.timeOver()), (Frames{nameTimedOut, askName}));
    QVERIFY(upload.timeOver().finished);
    QCOMPARE(upload.outcome().kind, Kind::Timeout);
}

void tst_SdoUpload::abortInABlockFallsBack()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2, SdoProtocol::Block);
    upload.handleResponse(bytes("C6 08 10 00 09 00 00 00"));
    // The number of a last segment is no abort.
    QCOMPARE(upload.handleResponse(bytes("89 08 10 00 00 00 00 08")).frameCount, 0);
    QVERIFY(upload.isActive());
    const Step step = upload.handleResponse(bytes("80 08 10 00 00 00 00 08"));
    QVERIFY(!step.finished);
    QCOMPARE(step.wait, 650);
}

void tst_SdoUpload::longBlockEnds()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::Domain, 2, SdoProtocol::Block);
    upload.handleResponse(bytes("C4 08 10 00 00 00 00 00"));
    int segments = 0;
    Step step;
    while (step.wait == 0 && segments < 20000) {
        step = upload.handleResponse(static_cast<char>(segments % 31 + 1) + QByteArray(7, 'x'));
        ++segments;
    }
    QCOMPARE(segments, 65536 / 7 + 2);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 12 00 07 06")});
}

void tst_SdoUpload::cancelAbortsATransfer()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    const Step step = upload.cancel();
    QVERIFY(step.finished);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 00 00 00 08")});
    QCOMPARE(upload.outcome().kind, Kind::Cancelled);
    QVERIFY(!upload.isActive());
}

void tst_SdoUpload::foreignExpeditedUploadChangesNothing()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    QVERIFY(isNothing(upload.handleForeignRequest(foreignAsksVersion)));
    QVERIFY(isNothing(upload.handleResponse(versionIsExpedited)));
    QVERIFY(upload.handleResponse(typeIs).finished);
    QCOMPARE(upload.outcome().value, QVariant(0x80020192u));
}

void tst_SdoUpload::foreignRequestBetweenSegmentsRestarts()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleResponse(nameSegment0);
    // The other client takes the server over for a segmented upload of its own.
    Step step = upload.handleForeignRequest(foreignAsksVersion);
    QCOMPARE(step.frameCount, 0);
    QVERIFY(step.waitRestarts);
    QCOMPARE(upload.handleResponse(bytes("41 09 10 00 0A 00 00 00")).frameCount, 0);
    QCOMPARE(upload.handleForeignRequest(askSegment0).frameCount, 0);
    QCOMPARE(upload.handleResponse(bytes("00 78 78 78 78 78 78 78")).frameCount, 0);
    QCOMPARE(upload.handleForeignRequest(askSegment1).frameCount, 0);
    step = upload.handleResponse(bytes("19 78 78 78 00 00 00 00"));
    QCOMPARE(sent(step), Frames{askName}); // without an abort: the server is free

    // Our own segment has not come, and may be on its way.
    QCOMPARE(upload.handleResponse(nameHas9Bytes).wait, 650);
    upload.setTime(650);
    QCOMPARE(sent(upload.timeOver()), Frames{askName});
    QVERIFY(answerTwice(&upload, nameReading).finished);
    QVERIFY(upload.outcome().foreignClient);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
    QCOMPARE(upload.outcome().repeats, 0);
}

// The other client's request was on the bus between our request and the start of our segments.
void tst_SdoUpload::foreignRequestBeforeSegmentsRestarts()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    QVERIFY(isNothing(upload.handleForeignRequest(foreignAsksVersion)));
    QCOMPARE(upload.handleResponse(nameHas9Bytes).frameCount, 0);
    const Step step = upload.handleResponse(versionIsExpedited);
    QCOMPARE(sent(step), Frames{askName});
    QVERIFY(answerTwice(&upload, nameReading).finished);
    QCOMPARE(upload.outcome().value, QVariant(QStringLiteral("ABCDEFGHI")));
}

void tst_SdoUpload::foreignDownloadOfOurObjectRestarts()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    QCOMPARE(upload.handleForeignRequest(bytes("23 00 10 00 01 00 00 00")).frameCount, 0);
    QCOMPARE(upload.handleResponse(typeIs).frameCount, 0);
    // The object can only be read: the abort with our multiplexer is the other client's.
    const Step step = upload.handleResponse(bytes("80 00 10 00 02 00 01 06"));
    QVERIFY(!step.finished);
    QCOMPARE(sent(step), Frames{askType});
    QVERIFY(upload.handleResponse(typeIs).finished);
    QCOMPARE(upload.outcome().kind, Kind::Value);
}

// The segment request of another client meets our transfer, and the server aborts that: not an answer to us.
void tst_SdoUpload::foreignSegmentMakesAbortUnclear()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    QVERIFY(isNothing(upload.handleForeignRequest(askSegment1)));
    const Step step = upload.handleResponse(bytes("80 08 10 00 00 00 03 05"));
    QVERIFY(!step.finished);
    QCOMPARE(sent(step), Frames{askName});
    // Without another client the same abort counts.
    QVERIFY(upload.handleResponse(bytes("80 08 10 00 00 00 03 05")).finished);
    QCOMPARE(upload.outcome().kind, Kind::Abort);
    QCOMPARE(upload.outcome().code, 0x05030000u);
}

void tst_SdoUpload::foreignAbortRestartsSegments()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    Step step = upload.handleForeignRequest(bytes("80 09 10 00 00 00 04 05"));
    QCOMPARE(sent(step), Frames{askName});
    // The segment that was asked for comes first, as the server has read that request first.
    QVERIFY(isNothing(upload.handleResponse(nameSegment0)));
    QVERIFY(answer(&upload, nameReading + nameReading + nameReading).finished);

    // If it has not come, it may be anywhere.
    upload.setTime(5000);
    upload.start(deviceName, DataType::VisibleString, 2);
    upload.handleResponse(nameHas9Bytes);
    upload.handleForeignRequest(bytes("80 09 10 00 00 00 04 05"));
    step = upload.handleResponse(nameHas9Bytes);
    QCOMPARE(sent(step), Frames{bytes("80 08 10 00 00 00 00 08")});
    QCOMPARE(step.wait, 650);
}

void tst_SdoUpload::foreignBlockUploadIsWaitedFor()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 2);
    upload.handleForeignRequest(bytes("A0 09 10 00 7F 00 00 00"));
    upload.handleResponse(bytes("C2 09 10 00 0E 00 00 00"));
    upload.handleForeignRequest(bytes("A3 00 00 00 00 00 00 00"));
    // The 67th segment of the block looks like an answer to us.
    QVERIFY(!upload.handleResponse(bytes("43 00 10 00 11 11 11 11")).finished);
    upload.handleForeignRequest(bytes("A2 43 7F 00 00 00 00 00"));
    upload.handleResponse(bytes("C1 00 00 00 00 00 00 00"));
    QCOMPARE(sent(upload.handleForeignRequest(bytes("A1 00 00 00 00 00 00 00"))), Frames{askType});
    QVERIFY(upload.handleResponse(typeIs).finished);
    QCOMPARE(upload.outcome().value, QVariant(0x80020192u));
}

void tst_SdoUpload::foreignTransferBeforeStartIsWaitedFor()
{
    SdoUpload upload;
    upload.handleForeignRequest(foreignAsksVersion);
    upload.handleResponse(bytes("41 09 10 00 0A 00 00 00"));
    upload.handleForeignRequest(askSegment0);
    const Step start = upload.start(deviceType, DataType::Unsigned32, 2);
    QCOMPARE(start.frameCount, 0);
    QVERIFY(start.waitRestarts);
    QVERIFY(upload.isActive());
    QCOMPARE(sent(upload.handleResponse(bytes("01 78 78 78 78 78 78 78"))), Frames{askType});
    QVERIFY(upload.handleResponse(typeIs).finished);
}

void tst_SdoUpload::foreignDownloadAnsweredAfterStart()
{
    SdoUpload upload;
    upload.handleForeignRequest(bytes("23 00 10 00 01 00 00 00"));
    upload.start(deviceType, DataType::Unsigned32, 2);
    const Step step = upload.handleResponse(bytes("80 00 10 00 02 00 01 06"));
    QVERIFY(!step.finished);
    QCOMPARE(sent(step), Frames{askType});
}

void tst_SdoUpload::silentForeignTransferIsNotWaitedForTwice()
{
    SdoUpload upload;
    upload.handleForeignRequest(askSegment0); // and nothing more of it
    upload.start(deviceType, DataType::Unsigned32, 0);
    const Step step = upload.timeOver();
    QVERIFY(!step.finished);
    QCOMPARE(sent(step), Frames{askType});
    QCOMPARE(upload.attempt(), 0); // the device has not been asked before
    upload.handleResponse(typeIs);
    QCOMPARE(upload.outcome().kind, Kind::Value);
    QCOMPARE(sent(upload.start(deviceType, DataType::Unsigned32, 0)), Frames{askType});
}

void tst_SdoUpload::foreignTransferIsNotAborted()
{
    SdoUpload upload;
    upload.start(deviceType, DataType::Unsigned32, 1);
    upload.handleForeignRequest(foreignAsksVersion);
    upload.handleResponse(bytes("41 09 10 00 0A 00 00 00"));
    QCOMPARE(sent(upload.timeOver()), Frames{askType});
}

void tst_SdoUpload::endlessForeignTransfersEnd()
{
    SdoUpload upload;
    upload.start(deviceName, DataType::VisibleString, 2);
    int rounds = 0;
    Step step;
    while (!step.finished && rounds < 100) {
        ++rounds;
        step = upload.handleForeignRequest(bytes("2F 08 10 00 01 00 00 00")); // writes what we read
        if (!step.finished)
            upload.handleResponse(bytes("60 08 10 00 00 00 00 00"));
    }
    QCOMPARE(rounds, 11);
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x060A0023u);
    QCOMPARE(step.frameCount, 0);
}

void tst_SdoUpload::foreignTransferLongerThanOurTime()
{
    SdoUpload upload;
    upload.handleForeignRequest(askSegment0);
    upload.start(deviceType, DataType::Unsigned32, 2);
    const Step step = upload.giveUp();
    QVERIFY(step.finished);
    QCOMPARE(step.frameCount, 0);
    QCOMPARE(upload.outcome().kind, Kind::Error);
    QCOMPARE(upload.outcome().code, 0x060A0023u);
}

QTEST_APPLESS_MAIN(tst_SdoUpload)

#include "tst_sdoupload.moc"
