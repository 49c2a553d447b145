// SPDX-License-Identifier: MIT
#include <canopen/pdomapping.h>

#include <QHash>
#include <QtTest>

#include <random>

using namespace CanOpen;

Q_DECLARE_METATYPE(CanOpen::PdoMapping::Problem)

namespace {

/*! A lookup that has object 1A00h with these values from sub-index 0 on. */
ObjectLookup mappingObject(const QVector<quint32> &values, int *asked = nullptr)
{
    return [values, asked](ObjectKey key) -> std::optional<quint32> {
        if (asked != nullptr)
            ++*asked;
        if (key.index != 0x1A00 || key.subIndex >= values.size())
            return std::nullopt;
        return values.at(key.subIndex);
    };
}

QStringList textOf(const QVector<PdoValue> &values)
{
    QStringList texts;
    for (const PdoValue &value : values)
        texts.append(value.object.toShortString() + QLatin1Char('=')
                     + QString::fromLatin1(value.data.toHex()));
    return texts;
}

} // namespace

class tst_PdoMapping : public QObject
{
    Q_OBJECT

private slots:
    void entryIsOneNumber();
    void readsMapping();
    void findsLies_data();
    void findsLies();
    void asksForNoMoreThanThereCanBe();
    void unpacksValues();
    void shortFrameLeavesValuesEmpty();
    void widensValues_data();
    void widensValues();
    void unpacksWhatWasPacked();
};

void tst_PdoMapping::entryIsOneNumber()
{
    const PdoMappingEntry entry = PdoMappingEntry::fromValue(0x61640210);
    QCOMPARE(entry.object.index, quint16(0x6164));
    QCOMPARE(entry.object.subIndex, quint8(2));
    QCOMPARE(entry.bits, quint8(16));
    QCOMPARE(entry.toValue(), quint32(0x61640210));
    QVERIFY(!entry.isDummy());
    QVERIFY(PdoMappingEntry::fromValue(0x00050008).isDummy());
    QVERIFY(PdoMappingEntry::fromValue(0x001F0008).isDummy());
    QVERIFY(!PdoMappingEntry::fromValue(0x00200008).isDummy());
}

void tst_PdoMapping::readsMapping()
{
    const PdoMapping mapping = readPdoMapping(mappingObject({2, 0x60400120, 0x61640210, 0x12345678}), 0x1A00);
    QCOMPARE(mapping.problem, PdoMapping::Problem::None);
    QCOMPARE(mapping.entries, (QVector<PdoMappingEntry>{{{0x6040, 1}, 32}, {{0x6164, 2}, 16}}));
    QCOMPARE(mapping.bits(), 48);
    QCOMPARE(mapping.bytes(), 6);
    QVERIFY(mapping.contains({0x6164, 2}));
    QVERIFY(!mapping.contains({0x6164, 1}));
}

void tst_PdoMapping::findsLies_data()
{
    using Problem = PdoMapping::Problem;
    QTest::addColumn<QVector<quint32>>("object");
    QTest::addColumn<Problem>("problem");
    QTest::addColumn<int>("entries");

    const auto row = [](const char *name, const QVector<quint32> &object, Problem problem, int entries) {
        QTest::newRow(name) << object << problem << entries;
    };
    row("switched off", {0}, Problem::None, 0);
    row("not there", {}, Problem::NotThere, 0);
    row("MPDO by source", {254, 0x60400120}, Problem::IsMultiplexed, 0);
    row("MPDO by destination", {255, 0x60400120}, Problem::IsMultiplexed, 0);
    row("65 entries", {65, 0x60400101}, Problem::TooMany, 0);
    row("fewer than told", {3, 0x60400120, 0x61640210}, Problem::EntryMissing, 2);
    row("an empty entry", {2, 0x60400120, 0x61640200}, Problem::EmptyEntry, 1);
    row("65 bits", {3, 0x60400120, 0x60400220, 0x61640201}, Problem::TooLong, 2);
    row("one of 255 bits", {1, 0x604001FF}, Problem::TooLong, 0);
    row("64 entries of a bit", QVector<quint32>{64} + QVector<quint32>(64, 0x60400101), Problem::None, 64);
    row("64 entries of a byte", QVector<quint32>{64} + QVector<quint32>(64, 0x60400108), Problem::TooLong, 8);
}

void tst_PdoMapping::findsLies()
{
    QFETCH(QVector<quint32>, object);

    const PdoMapping mapping = readPdoMapping(mappingObject(object), 0x1A00);
    QTEST(mapping.problem, "problem");
    QTEST(mapping.entries.size(), "entries");
}

void tst_PdoMapping::asksForNoMoreThanThereCanBe()
{
    int asked = 0;
    const ObjectLookup endless = [&asked](ObjectKey key) -> std::optional<quint32> {
        ++asked;
        return key.subIndex == 0 ? 0xFFFFFFFF : 0x60400101;
    };
    QCOMPARE(readPdoMapping(endless, 0x1A00).problem, PdoMapping::Problem::TooMany);
    QCOMPARE(asked, 1);
}

void tst_PdoMapping::unpacksValues()
{
    PdoMapping mapping;
    mapping.entries
        = {{{0x6040, 1}, 16}, {{0x0005, 0}, 8}, {{0x6000, 1}, 1}, {{0x6000, 2}, 1}, {{0x6164, 2}, 12}};
    // 39 ff: 9AB7h; c4: filler; 8e, 04: bits 0 and 1 are 0 and 1, the next twelve 123h
    QCOMPARE(textOf(unpackPdo(mapping, QByteArray::fromHex("b79ac48e04"))),
             (QStringList{QStringLiteral("6040h.1=b79a"), QStringLiteral("6000h.1=00"),
                          QStringLiteral("6000h.2=01"), QStringLiteral("6164h.2=2301")}));
}

void tst_PdoMapping::shortFrameLeavesValuesEmpty()
{
    PdoMapping mapping;
    mapping.entries = {{{0x6040, 1}, 16}, {{0x6041, 1}, 16}, {{0x6042, 1}, 8}};
    QCOMPARE(textOf(unpackPdo(mapping, QByteArray::fromHex("b79a11"))),
             (QStringList{QStringLiteral("6040h.1=b79a"), QStringLiteral("6041h.1="),
                          QStringLiteral("6042h.1=")}));
    QCOMPARE(
        textOf(unpackPdo(mapping, QByteArray())),
        (QStringList{QStringLiteral("6040h.1="), QStringLiteral("6041h.1="), QStringLiteral("6042h.1=")}));
}

void tst_PdoMapping::widensValues_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("bits");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("widened"); // "none" for nothing

    const auto row = [](const char *name, DataType type, int bits, const char *data, const char *widened) {
        QTest::newRow(name) << static_cast<int>(type) << bits << QByteArray::fromHex(data)
                            << QByteArray(widened);
    };
    row("as wide as its type", DataType::Unsigned16, 16, "3412", "3412");
    row("unsigned, narrower", DataType::Unsigned32, 12, "ff0f", "ff0f0000");
    row("positive, narrower", DataType::Integer16, 12, "ff07", "ff07");
    row("negative, narrower", DataType::Integer16, 12, "ff0f", "ffff");
    row("negative in a byte", DataType::Integer32, 8, "fe", "feffffff");
    row("64 negative bits", DataType::Integer64, 64, "feffffffffffffff", "feffffffffffffff");
    row("a bit", DataType::Boolean, 1, "01", "01");
    row("wider than its type", DataType::Unsigned8, 16, "3412", "none");
    row("REAL32", DataType::Real32, 32, "0000c03f", "0000c03f");
    row("half a REAL32", DataType::Real32, 16, "c03f", "none");
    row("some letters", DataType::VisibleString, 24, "414243", "414243");
    row("not in the frame", DataType::Unsigned16, 16, "", "none");
    row("bytes of another length", DataType::Unsigned32, 8, "1234", "none");
}

void tst_PdoMapping::widensValues()
{
    QFETCH(int, type);
    QFETCH(int, bits);
    QFETCH(QByteArray, data);

    const std::optional<QByteArray> widened = widenMapped(static_cast<DataType>(type), data, bits);
    QTEST(widened ? widened->toHex() : QByteArray("none"), "widened");
}

void tst_PdoMapping::unpacksWhatWasPacked()
{
    std::mt19937 random(7);
    for (int run = 0; run < 5000; ++run) {
        PdoMapping mapping;
        QVector<quint64> values;
        QByteArray payload(8, '\0');
        int first = 0;
        while (first < mostPdoBits && mapping.entries.size() < mostMappedObjects) {
            const int bits = 1 + static_cast<int>(random() % static_cast<unsigned>(mostPdoBits - first));
            const quint64 value = (quint64(random()) << 32 | random()) >> (64 - bits);
            mapping.entries.append({{static_cast<quint16>(0x2000 + run), static_cast<quint8>(values.size())},
                                    static_cast<quint8>(bits)});
            values.append(value);
            QVERIFY(packBits(&payload, first, bits, value));
            first += bits;
        }
        const QVector<PdoValue> unpacked = unpackPdo(mapping, payload);
        QCOMPARE(unpacked.size(), values.size());
        for (int i = 0; i < values.size(); ++i) {
            const int bits = mapping.entries.at(i).bits;
            QCOMPARE(unpacked.at(i).object.subIndex, quint8(i));
            QCOMPARE(unpacked.at(i).data.size(), (bits + 7) / 8);
            const std::optional<QByteArray> wide
                = widenMapped(DataType::Unsigned64, unpacked.at(i).data, bits);
            QCOMPARE(decodeValue(DataType::Unsigned64, wide.value_or(QByteArray()))->toULongLong(),
                     values.at(i));
        }
    }
}

QTEST_GUILESS_MAIN(tst_PdoMapping)
#include "tst_pdomapping.moc"
