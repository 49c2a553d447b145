// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/datatype.h>

#include <QtTest>

#include <limits>

using namespace CanOpen;

class tst_DataType : public QObject
{
    Q_OBJECT

private slots:
    void byteSizes_data();
    void byteSizes();
    void unknownCodes();
    void decodes_data();
    void decodes();
    void inventsNoValueOfWrongWidth_data();
    void inventsNoValueOfWrongWidth();
    void encodes_data();
    void encodes();
    void refusesWhatDoesNotFit_data();
    void refusesWhatDoesNotFit();
    void keepsValuesBothWays_data();
    void keepsValuesBothWays();
};

namespace {

struct Row
{
    const char *name;
    quint16 code;
    int bytes;
};

constexpr Row rows[] = {
    {"BOOLEAN", 0x01, 1},         {"INTEGER8", 0x02, 1},       {"INTEGER16", 0x03, 2},
    {"INTEGER32", 0x04, 4},       {"UNSIGNED8", 0x05, 1},      {"UNSIGNED16", 0x06, 2},
    {"UNSIGNED32", 0x07, 4},      {"REAL32", 0x08, 4},         {"VISIBLE_STRING", 0x09, 0},
    {"OCTET_STRING", 0x0A, 0},    {"UNICODE_STRING", 0x0B, 0}, {"DOMAIN", 0x0F, 0},
    {"REAL64", 0x11, 8},          {"INTEGER64", 0x15, 8},      {"UNSIGNED64", 0x1B, 8},
    {"INTEGER24", 0x10, 3},       {"INTEGER40", 0x12, 5},      {"INTEGER48", 0x13, 6},
    {"INTEGER56", 0x14, 7},       {"UNSIGNED24", 0x16, 3},     {"UNSIGNED40", 0x18, 5},
    {"UNSIGNED48", 0x19, 6},      {"UNSIGNED56", 0x1A, 7},     {"TIME_OF_DAY", 0x0C, 6},
    {"TIME_DIFFERENCE", 0x0D, 6},
};

DataType type(quint16 code)
{
    return static_cast<DataType>(code);
}

} // namespace

void tst_DataType::byteSizes_data()
{
    QTest::addColumn<quint16>("code");
    QTest::addColumn<int>("size");
    for (const Row &row : rows)
        QTest::newRow(row.name) << row.code << row.bytes;
}

void tst_DataType::byteSizes()
{
    QFETCH(quint16, code);
    QFETCH(int, size);
    QVERIFY(isKnownDataType(code));
    QCOMPARE(byteSize(type(code)), size);
    QCOMPARE(dataTypeName(type(code)), QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(isSignedInteger(type(code)), QByteArray(QTest::currentDataTag()).startsWith("INTEGER"));
}

void tst_DataType::unknownCodes()
{
    int known = 0;
    for (int code = 0; code <= 0xFFFF; ++code)
        known += isKnownDataType(static_cast<quint16>(code)) ? 1 : 0;
    QCOMPARE(known, 25);
    for (const quint16 code : {quint16(0x00), quint16(0x0E), quint16(0x17), quint16(0x1C), quint16(0xFFFF)}) {
        QVERIFY(!isKnownDataType(code));
        QCOMPARE(byteSize(type(code)), 0);
        QVERIFY(!decodeValue(type(code), bytes("01")));
        QVERIFY(!encodeValue(type(code), 1));
    }
}

void tst_DataType::decodes_data()
{
    QTest::addColumn<quint16>("code");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("false") << quint16(0x01) << bytes("00") << QVariant(0u);
    QTest::newRow("true") << quint16(0x01) << bytes("01") << QVariant(1u);
    QTest::newRow("INTEGER8 -1") << quint16(0x02) << bytes("FF") << QVariant(-1);
    QTest::newRow("INTEGER8 least") << quint16(0x02) << bytes("80") << QVariant(-128);
    QTest::newRow("INTEGER16 -2") << quint16(0x03) << bytes("FE FF") << QVariant(-2);
    QTest::newRow("INTEGER16 least") << quint16(0x03) << bytes("00 80") << QVariant(-32768);
    QTest::newRow("INTEGER16 greatest") << quint16(0x03) << bytes("FF 7F") << QVariant(32767);
    QTest::newRow("INTEGER32 -3") << quint16(0x04) << bytes("FD FF FF FF") << QVariant(-3);
    QTest::newRow("INTEGER32 least") << quint16(0x04) << bytes("00 00 00 80")
                                     << QVariant(std::numeric_limits<int>::min());
    QTest::newRow("UNSIGNED8") << quint16(0x05) << bytes("FE") << QVariant(254u);
    QTest::newRow("UNSIGNED16") << quint16(0x06) << bytes("34 12") << QVariant(0x1234u);
    QTest::newRow("UNSIGNED16 high bit") << quint16(0x06) << bytes("FF FF") << QVariant(65535u);
    QTest::newRow("UNSIGNED32") << quint16(0x07) << bytes("78 56 34 12") << QVariant(0x12345678u);
    QTest::newRow("UNSIGNED32 high bit") << quint16(0x07) << bytes("FF FF FF FF") << QVariant(4294967295u);
    QTest::newRow("REAL32") << quint16(0x08) << bytes("00 00 C0 3F") << QVariant(1.5f);
    QTest::newRow("REAL64") << quint16(0x11) << bytes("00 00 00 00 00 00 F8 BF") << QVariant(-1.5);
    QTest::newRow("INTEGER64") << quint16(0x15) << bytes("FE FF FF FF FF FF FF FF")
                               << QVariant(qlonglong(-2));
    QTest::newRow("UNSIGNED64") << quint16(0x1B) << bytes("01 00 00 00 00 00 00 80")
                                << QVariant(qulonglong(9223372036854775809u));
    QTest::newRow("INTEGER24 least") << quint16(0x10) << bytes("00 00 80") << QVariant(-8388608);
    QTest::newRow("INTEGER40 -2") << quint16(0x12) << bytes("FE FF FF FF FF") << QVariant(qlonglong(-2));
    QTest::newRow("INTEGER48 greatest")
        << quint16(0x13) << bytes("FF FF FF FF FF 7F") << QVariant(qlonglong(140737488355327));
    QTest::newRow("INTEGER56 least") << quint16(0x14) << bytes("00 00 00 00 00 00 80")
                                     << QVariant(qlonglong(-36028797018963968));
    QTest::newRow("UNSIGNED24") << quint16(0x16) << bytes("56 34 F2") << QVariant(0xF23456u);
    QTest::newRow("UNSIGNED40") << quint16(0x18) << bytes("9A 78 56 34 F2")
                                << QVariant(qulonglong(0xF23456789A));
    QTest::newRow("UNSIGNED48") << quint16(0x19) << bytes("BC 9A 78 56 34 F2")
                                << QVariant(qulonglong(0xF23456789ABC));
    QTest::newRow("UNSIGNED56") << quint16(0x1A) << bytes("DE BC 9A 78 56 34 F2")
                                << QVariant(qulonglong(0xF23456789ABCDE));
    QTest::newRow("TIME_OF_DAY") << quint16(0x0C) << bytes("01 02 03 04 05 06")
                                 << QVariant(bytes("01 02 03 04 05 06"));
    QTest::newRow("text") << quint16(0x09) << QByteArray("E-Bike") << QVariant(QStringLiteral("E-Bike"));
    QTest::newRow("text with filling zeros")
        << quint16(0x09) << QByteArray("AB\0\0", 4) << QVariant(QStringLiteral("AB"));
    QTest::newRow("text beyond ASCII")
        << quint16(0x09) << bytes("B0 43") << QVariant(QString(QChar(0xB0)) + QLatin1Char('C'));
    QTest::newRow("empty text") << quint16(0x09) << QByteArray() << QVariant(QString());
    QTest::newRow("octets keep zeros") << quint16(0x0A) << bytes("00 01 00") << QVariant(bytes("00 01 00"));
    QTest::newRow("UNICODE_STRING") << quint16(0x0B) << bytes("41 00") << QVariant(bytes("41 00"));
    QTest::newRow("domain") << quint16(0x0F) << bytes("DE AD") << QVariant(bytes("DE AD"));
}

void tst_DataType::decodes()
{
    QFETCH(quint16, code);
    QFETCH(QByteArray, data);
    QFETCH(QVariant, value);

    const std::optional<QVariant> decoded = decodeValue(type(code), data);
    QVERIFY(decoded);
    QCOMPARE(*decoded, value);
    QCOMPARE(decoded->userType(), value.userType());
}

void tst_DataType::inventsNoValueOfWrongWidth_data()
{
    QTest::addColumn<quint16>("code");
    QTest::addColumn<int>("typeSize");
    QTest::addColumn<int>("size");
    for (const Row &row : rows) {
        for (int size = 0; size <= 9; ++size)
            QTest::addRow("%s of %d bytes", row.name, size) << row.code << row.bytes << size;
    }
}

void tst_DataType::inventsNoValueOfWrongWidth()
{
    QFETCH(quint16, code);
    QFETCH(int, typeSize);
    QFETCH(int, size);
    const bool fits = typeSize == 0 || typeSize == size;
    QCOMPARE(decodeValue(type(code), QByteArray(size, '\x81')).has_value(), fits);
}

void tst_DataType::encodes_data()
{
    QTest::addColumn<quint16>("code");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("bool") << quint16(0x01) << QVariant(true) << bytes("01");
    QTest::newRow("BOOLEAN from a number") << quint16(0x01) << QVariant(0) << bytes("00");
    QTest::newRow("INTEGER8") << quint16(0x02) << QVariant(-128) << bytes("80");
    QTest::newRow("INTEGER16") << quint16(0x03) << QVariant(-2) << bytes("FE FF");
    QTest::newRow("INTEGER32") << quint16(0x04) << QVariant(-3) << bytes("FD FF FF FF");
    QTest::newRow("UNSIGNED8") << quint16(0x05) << QVariant(255) << bytes("FF");
    QTest::newRow("UNSIGNED16 from a string")
        << quint16(0x06) << QVariant(QStringLiteral("4660")) << bytes("34 12");
    QTest::newRow("UNSIGNED32 from a double")
        << quint16(0x07) << QVariant(4294967295.0) << bytes("FF FF FF FF");
    QTest::newRow("REAL32") << quint16(0x08) << QVariant(1.5) << bytes("00 00 C0 3F");
    QTest::newRow("REAL64") << quint16(0x11) << QVariant(-1.5) << bytes("00 00 00 00 00 00 F8 BF");
    QTest::newRow("INTEGER64") << quint16(0x15) << QVariant(qlonglong(-2))
                               << bytes("FE FF FF FF FF FF FF FF");
    QTest::newRow("UNSIGNED64") << quint16(0x1B) << QVariant(qulonglong(9223372036854775809u))
                                << bytes("01 00 00 00 00 00 00 80");
    QTest::newRow("text") << quint16(0x09) << QVariant(QStringLiteral("E-Bike")) << QByteArray("E-Bike");
    QTest::newRow("octets") << quint16(0x0A) << QVariant(bytes("00 01")) << bytes("00 01");
}

void tst_DataType::encodes()
{
    QFETCH(quint16, code);
    QFETCH(QVariant, value);
    QFETCH(QByteArray, data);
    const std::optional<QByteArray> encoded = encodeValue(type(code), value);
    QVERIFY(encoded);
    QCOMPARE(*encoded, data);
}

void tst_DataType::refusesWhatDoesNotFit_data()
{
    QTest::addColumn<quint16>("code");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("BOOLEAN 2") << quint16(0x01) << QVariant(2);
    QTest::newRow("BOOLEAN of nothing") << quint16(0x01) << QVariant();
    QTest::newRow("INTEGER8 128") << quint16(0x02) << QVariant(128);
    QTest::newRow("INTEGER8 -129") << quint16(0x02) << QVariant(-129);
    QTest::newRow("INTEGER16 40000") << quint16(0x03) << QVariant(40000);
    QTest::newRow("INTEGER32 2^31") << quint16(0x04) << QVariant(2147483648u);
    QTest::newRow("UNSIGNED8 256") << quint16(0x05) << QVariant(256);
    QTest::newRow("UNSIGNED8 -1") << quint16(0x05) << QVariant(-1);
    QTest::newRow("UNSIGNED16 -1") << quint16(0x06) << QVariant(-1);
    QTest::newRow("UNSIGNED32 2^32") << quint16(0x07) << QVariant(qulonglong(4294967296u));
    QTest::newRow("UNSIGNED32 1.5") << quint16(0x07) << QVariant(1.5);
    QTest::newRow("UNSIGNED32 not a number") << quint16(0x07) << QVariant(qQNaN());
    QTest::newRow("UNSIGNED32 of words") << quint16(0x07) << QVariant(QStringLiteral("twelve"));
    QTest::newRow("UNSIGNED32 of nothing") << quint16(0x07) << QVariant();
    QTest::newRow("REAL32 1e300") << quint16(0x08) << QVariant(1e300);
    QTest::newRow("INTEGER64 2^63") << quint16(0x15) << QVariant(qulonglong(9223372036854775808u));
    QTest::newRow("INTEGER64 1e19") << quint16(0x15) << QVariant(1e19);
    QTest::newRow("UNSIGNED64 -1") << quint16(0x1B) << QVariant(-1);
    QTest::newRow("UNSIGNED64 1e20") << quint16(0x1B) << QVariant(1e20);
    QTest::newRow("text beyond 8 bits") << quint16(0x09) << QVariant(QString(QChar(0x20AC)));
    QTest::newRow("UNSIGNED24 2^24") << quint16(0x16) << QVariant(16777216u);
    QTest::newRow("UNSIGNED56 -1") << quint16(0x1A) << QVariant(-1);
    QTest::newRow("INTEGER24 2^23") << quint16(0x10) << QVariant(8388608);
    QTest::newRow("INTEGER24 -2^23 - 1") << quint16(0x10) << QVariant(-8388609);
    QTest::newRow("INTEGER40 of words") << quint16(0x12) << QVariant(QStringLiteral("twelve"));
    QTest::newRow("TIME_OF_DAY, five bytes") << quint16(0x0C) << QVariant(bytes("01 02 03 04 05"));
    QTest::newRow("octets of a number") << quint16(0x0A) << QVariant(1);
}

void tst_DataType::refusesWhatDoesNotFit()
{
    QFETCH(quint16, code);
    QFETCH(QVariant, value);
    QVERIFY(!encodeValue(type(code), value));
}

void tst_DataType::keepsValuesBothWays_data()
{
    decodes_data();
}

void tst_DataType::keepsValuesBothWays()
{
    QFETCH(quint16, code);
    QFETCH(QVariant, value);
    const std::optional<QByteArray> encoded = encodeValue(type(code), value);
    QVERIFY(encoded);
    const std::optional<QVariant> decoded = decodeValue(type(code), *encoded);
    QVERIFY(decoded);
    QCOMPARE(*decoded, value);
}

QTEST_APPLESS_MAIN(tst_DataType)

#include "tst_datatype.moc"
