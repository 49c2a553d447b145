// SPDX-License-Identifier: MIT
#include <canopen/sdoabort.h>
#include <snapshot/objecttypes.h>
#include <snapshot/snapshotplan.h>

#include <QtTest>

#include <map>

using CanOpen::DataType;
using CanOpen::ObjectKey;

namespace {

constexpr quint32 noObject = 0x06020000;
constexpr quint32 noSubIndex = 0x06090011;

/*! A device by its objects: what it has, and what it refuses. */
struct Device
{
    std::map<quint32, QByteArray> values; // by index and sub-index
    std::map<quint32, quint32> refusals;  // abort codes

    void add(quint16 index, quint8 subIndex, const char *hex)
    {
        values[quint32(index) << 8 | subIndex] = QByteArray::fromHex(hex);
    }
    void refuse(quint16 index, quint8 subIndex, quint32 code)
    {
        refusals[quint32(index) << 8 | subIndex] = code;
    }

    bool hasIndex(quint16 index) const
    {
        const auto first = values.lower_bound(quint32(index) << 8);
        return first != values.end() && first->first >> 8 == index;
    }

    SnapshotEntry answer(ObjectKey key) const
    {
        const quint32 code = quint32(key.index) << 8 | key.subIndex;
        SnapshotEntry entry;
        entry.key = key;
        if (const auto value = values.find(code); value != values.end()) {
            entry.raw = value->second;
            entry.type = ObjectTypes::matching(ObjectTypes::known(key), entry.raw);
            entry.value = ObjectTypes::unsignedValue(entry.raw);
            return entry;
        }
        const auto refusal = refusals.find(code);
        entry.gap = refusal != refusals.end() ? SnapshotGap::Abort : SnapshotGap::Absent;
        entry.abortCode = refusal != refusals.end() ? refusal->second
                          : hasIndex(key.index)     ? noSubIndex
                                                    : noObject;
        return entry;
    }
};

/*! Everything that a plan asks, and what it records. */
struct Reading
{
    QStringList asked;
    std::map<QString, SnapshotGap> recorded;

    QStringList askedOf(quint16 index) const
    {
        return asked.filter(CanOpen::indexText(index) + QLatin1Char('.'));
    }
    QStringList recordedOf(quint16 index) const
    {
        QStringList keys;
        for (const auto &[key, gap] : recorded) {
            if (key.startsWith(CanOpen::indexText(index)))
                keys << key;
        }
        return keys;
    }
};

Reading readAll(const Device &device, SnapshotScope scope = SnapshotScope::Full,
                const CanOpen::ObjectDictionary &sheet = {})
{
    Reading reading;
    SnapshotPlan plan(scope, sheet);
    while (!plan.isEmpty()) {
        const SnapshotQuestion question = plan.take();
        reading.asked << question.key.toShortString();
        const QVector<SnapshotEntry> entries = plan.note(question, device.answer(question.key));
        for (const SnapshotEntry &entry : entries) {
            const QString key = entry.key.toShortString();
            if (reading.recorded.count(key) > 0)
                qFatal("recorded twice: %s", qPrintable(key));
            reading.recorded[key] = entry.gap;
        }
    }
    return reading;
}

CanOpen::ObjectEntry listed(DataType type, CanOpen::Access access = CanOpen::Access::ReadOnly)
{
    CanOpen::ObjectEntry entry;
    entry.type = type;
    entry.access = access;
    return entry;
}

} // namespace

/*! What a node is asked for. */
class tst_SnapshotPlan : public QObject
{
    Q_OBJECT

private slots:
    void quickAsksTheReadListAndTheNames();
    void fullAsksTheWholeTable();
    void asksForWhatTheSlipsMean();
    void asksNothingTwice();
    void asksWhoItIsFirst();
    void absentObjectsAreRecordedOnce();
    void arrays_data();
    void arrays();
    void longValueIsNoCount();
    void plainByteIsNoArray();
    void unknownArrayIsFound();
    void holesBelongToAnArray();
    void refusedProbesAreNotSpokenOf();
    void arrayWithoutItsCount();
    void pdosThatExist();
    void pdoWithManyObjects();
    void unansweredProbesAreRecorded();
    void brokenProbeDecidesNothing();
    void silentSubIndex0TellsNothing();
    void countInFourBytes();
    void quickAsksNoFurther();
    void dataSheetIsReadToo();
    void dataSheetDecidesAboutTypes();
    void longObjectsOfADataSheetComeInBlocks();
    void onlySomeKeys();
};

void tst_SnapshotPlan::quickAsksTheReadListAndTheNames()
{
    const Reading reading = readAll(Device(), SnapshotScope::Quick);
    QCOMPARE(reading.asked.size(), 200 + 3); // four entries are in the list twice
    QCOMPARE(reading.recorded.size(), std::size_t(203));
    QVERIFY(reading.asked.contains(QStringLiteral("1008h.0")));
    QVERIFY(reading.asked.contains(QStringLiteral("100Ah.0")));
    QVERIFY(reading.asked.contains(QStringLiteral("6311h.7")));
    QVERIFY(!reading.asked.contains(QStringLiteral("1400h.0")));
    QVERIFY(!reading.asked.contains(QStringLiteral("6009h.0")));
}

void tst_SnapshotPlan::fullAsksTheWholeTable()
{
    const Reading reading = readAll(Device());
    // 505 objects of the table, four that it does not have, 1024 PDOs
    QCOMPARE(reading.asked.size(), 505 + 4 + 1024);
    QCOMPARE(reading.recorded.size(), std::size_t(509));
    const QStringList some{QStringLiteral("1001h.0"), QStringLiteral("1003h.0"), QStringLiteral("1014h.0"),
                           QStringLiteral("1016h.0"), QStringLiteral("6009h.0"), QStringLiteral("60ABh.0")};
    for (const QString &key : some)
        QVERIFY2(reading.asked.contains(key), qPrintable(key));
}

void tst_SnapshotPlan::asksForWhatTheSlipsMean()
{
    const Reading reading = readAll(Device());
    const QStringList meant{QStringLiteral("638Eh.0"), QStringLiteral("640Eh.0"), QStringLiteral("641Eh.0"),
                            QStringLiteral("642Eh.0"), QStringLiteral("643Eh.0")};
    for (const QString &key : meant)
        QVERIFY2(reading.asked.contains(key), qPrintable(key));
    QVERIFY(!reading.asked.contains(QStringLiteral("0638h.0")));
    QVERIFY(!reading.asked.contains(QStringLiteral("0000h.0")));
}

void tst_SnapshotPlan::asksNothingTwice()
{
    for (const SnapshotScope scope : {SnapshotScope::Full, SnapshotScope::Quick}) {
        Reading reading = readAll(Device(), scope);
        const int all = reading.asked.size();
        reading.asked.removeDuplicates();
        QCOMPARE(reading.asked.size(), all);
    }
}

void tst_SnapshotPlan::asksWhoItIsFirst()
{
    Device device;
    device.add(0x1018, 0, "04");
    for (quint8 subIndex = 1; subIndex <= 4; ++subIndex)
        device.add(0x1018, subIndex, "01000000");
    QCOMPARE(readAll(device).asked.mid(0, 9).join(QLatin1Char(' ')),
             QStringLiteral("1000h.0 1018h.0 1018h.1 1018h.2 1018h.3 1018h.4 1008h.0 1009h.0 100Ah.0"));
}

void tst_SnapshotPlan::absentObjectsAreRecordedOnce()
{
    const Reading reading = readAll(Device());
    QCOMPARE(reading.askedOf(0x6020), QStringList(QStringLiteral("6020h.0")));
    QVERIFY(reading.recorded.at(QStringLiteral("6020h.0")) == SnapshotGap::Absent);
}

void tst_SnapshotPlan::arrays_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("count");
    QTest::addColumn<int>("highest"); // sub-index that is asked for

    QTest::newRow("errors, none") << 0x1003 << QByteArray("00") << 0;
    QTest::newRow("errors, many") << 0x1003 << QByteArray("FE") << 254;
    QTest::newRow("more than there can be") << 0x1003 << QByteArray("FF") << 254;
    QTest::newRow("more than the read list has") << 0x6020 << QByteArray("09") << 9;
    QTest::newRow("fewer") << 0x6020 << QByteArray("02") << 2;
}

void tst_SnapshotPlan::arrays()
{
    QFETCH(int, index);
    QFETCH(QByteArray, count);
    QFETCH(int, highest);
    Device device;
    device.add(static_cast<quint16>(index), 0, count);
    const Reading reading = readAll(device);
    QStringList expected;
    for (int subIndex = 0; subIndex <= highest; ++subIndex)
        expected << ObjectKey{static_cast<quint16>(index), static_cast<quint8>(subIndex)}.toShortString();
    QCOMPARE(reading.askedOf(static_cast<quint16>(index)), expected);
    QCOMPARE(reading.recordedOf(static_cast<quint16>(index)).size(), expected.size());
}

void tst_SnapshotPlan::longValueIsNoCount()
{
    Device device;
    device.add(0x6010, 0, "0500"); // a temperature
    QCOMPARE(readAll(device).askedOf(0x6010), QStringList(QStringLiteral("6010h.0")));
}

void tst_SnapshotPlan::plainByteIsNoArray()
{
    Device device;
    device.add(0x6010, 0, "55");
    const Reading reading = readAll(device);
    QCOMPARE(reading.askedOf(0x6010).join(QLatin1Char(' ')), QStringLiteral("6010h.0 6010h.1 6010h.2"));
    QCOMPARE(reading.recordedOf(0x6010), QStringList(QStringLiteral("6010h.0")));
    device.add(0x6010, 0, "01");
    QCOMPARE(readAll(device).askedOf(0x6010).join(QLatin1Char(' ')), QStringLiteral("6010h.0 6010h.1"));
}

void tst_SnapshotPlan::unknownArrayIsFound()
{
    Device device;
    device.add(0x6010, 0, "03");
    for (quint8 subIndex = 1; subIndex <= 3; ++subIndex)
        device.add(0x6010, subIndex, "1027");
    const Reading reading = readAll(device);
    QCOMPARE(reading.recordedOf(0x6010).join(QLatin1Char(' ')),
             QStringLiteral("6010h.0 6010h.1 6010h.2 6010h.3"));
    QVERIFY(reading.recorded.at(QStringLiteral("6010h.3")) == SnapshotGap::None);
    device.add(0x6010, 0, "02");
    QCOMPARE(readAll(device).recordedOf(0x6010).join(QLatin1Char(' ')),
             QStringLiteral("6010h.0 6010h.1 6010h.2"));
}

void tst_SnapshotPlan::holesBelongToAnArray()
{
    Device device;
    device.add(0x6010, 0, "04");
    device.add(0x6010, 2, "1027");
    device.add(0x6010, 4, "1027");
    device.add(0x6164, 0, "02"); // the read list knows this one
    device.add(0x6164, 2, "1027");
    const Reading reading = readAll(device);
    QCOMPARE(reading.recordedOf(0x6010).size(), 5);
    QVERIFY(reading.recorded.at(QStringLiteral("6010h.1")) == SnapshotGap::Absent);
    QVERIFY(reading.recorded.at(QStringLiteral("6010h.2")) == SnapshotGap::None);
    QVERIFY(reading.recorded.at(QStringLiteral("6010h.3")) == SnapshotGap::Absent);
    QVERIFY(reading.recorded.at(QStringLiteral("6010h.4")) == SnapshotGap::None);
    QVERIFY(reading.recorded.at(QStringLiteral("6164h.1")) == SnapshotGap::Absent);
    QVERIFY(reading.recorded.at(QStringLiteral("6164h.2")) == SnapshotGap::None);
}

void tst_SnapshotPlan::refusedProbesAreNotSpokenOf()
{
    Device device;
    device.add(0x6010, 0, "07");
    device.refuse(0x6010, 1, 0x06040043);
    device.refuse(0x6010, 2, 0x06040043);
    device.refuse(0x1400, 0, 0x08000000);
    const Reading reading = readAll(device);
    QCOMPARE(reading.recordedOf(0x6010), QStringList(QStringLiteral("6010h.0")));
    QCOMPARE(reading.recordedOf(0x1400), QStringList());
}

// What the overview would ask for is asked for, although sub-index 0 does not tell of it.
void tst_SnapshotPlan::arrayWithoutItsCount()
{
    Device device;
    device.add(0x6100, 2, "0100");
    device.refuse(0x6102, 0, 0x08000000);
    device.add(0x6102, 1, "01000000");
    const Reading reading = readAll(device);
    QCOMPARE(reading.recordedOf(0x6100).join(QLatin1Char(' ')), QStringLiteral("6100h.0 6100h.2"));
    QCOMPARE(reading.recordedOf(0x6102).join(QLatin1Char(' ')), QStringLiteral("6102h.0 6102h.1"));
    QVERIFY(reading.recorded.at(QStringLiteral("6102h.0")) == SnapshotGap::Abort);
}

void tst_SnapshotPlan::pdosThatExist()
{
    Device device;
    device.add(0x1805, 0, "02");
    device.add(0x1805, 1, "85010000");
    device.add(0x1805, 2, "FF");
    device.add(0x1A05, 0, "01");
    device.add(0x1A05, 1, "10024060");
    device.add(0x15FF, 0, "02");
    const Reading reading = readAll(device);
    QCOMPARE(reading.recordedOf(0x1805).size(), 3);
    QCOMPARE(reading.recordedOf(0x1A05).join(QLatin1Char(' ')), QStringLiteral("1A05h.0 1A05h.1"));
    QCOMPARE(reading.askedOf(0x17FF), QStringList(QStringLiteral("17FFh.0")));
    QVERIFY(reading.recorded.at(QStringLiteral("17FFh.0")) == SnapshotGap::Absent);
    QCOMPARE(reading.askedOf(0x1A04), QStringList());
    QVERIFY(reading.recorded.count(QStringLiteral("1804h.0")) == 0);
}

void tst_SnapshotPlan::pdoWithManyObjects()
{
    Device device;
    for (const quint16 index : {quint16(0x1400), quint16(0x1401)})
        device.add(index, 0, "01");
    device.add(0x1600, 0, "40");
    device.add(0x1601, 0, "FE"); // a multiplexed PDO
    const Reading reading = readAll(device);
    QCOMPARE(reading.askedOf(0x1600).size(), 65);
    QCOMPARE(reading.askedOf(0x1601).size(), 1);
    device.add(0x1601, 0, "41");
    QCOMPARE(readAll(device).askedOf(0x1601).size(), 1);
}

void tst_SnapshotPlan::unansweredProbesAreRecorded()
{
    SnapshotPlan plan(SnapshotScope::Full, {});
    SnapshotEntry silence;
    silence.key = {0x1401, 0};
    silence.gap = SnapshotGap::NoAnswer;
    QCOMPARE(plan.note({{0x1401, 0}, true}, silence).size(), 1);
}

void tst_SnapshotPlan::brokenProbeDecidesNothing()
{
    Device device;
    device.add(0x6010, 0, "03");
    device.add(0x6010, 1, "1027");
    SnapshotPlan plan(SnapshotScope::Full, {});
    plan.note({{0x6010, 0}}, device.answer({0x6010, 0}));
    const SnapshotQuestion probe = plan.take();
    QCOMPARE(probe.key.toShortString(), QStringLiteral("6010h.1"));
    SnapshotEntry broken;
    broken.key = probe.key;
    broken.gap = SnapshotGap::Failed;
    QCOMPARE(plan.note(probe, broken).size(), 1);
    QVERIFY(plan.next().key.index != 0x6010);
    // It is asked again, and answers.
    plan.note(probe, device.answer(probe.key));
    QCOMPARE(plan.next().key.toShortString(), QStringLiteral("6010h.2"));
}

void tst_SnapshotPlan::silentSubIndex0TellsNothing()
{
    SnapshotPlan plan(SnapshotScope::Full, {});
    const int size = plan.size();
    SnapshotEntry silence;
    silence.key = {0x6102, 0};
    silence.gap = SnapshotGap::NoAnswer;
    plan.note({{0x6102, 0}}, silence);
    QCOMPARE(plan.size(), size);
}

// The answer did not say how many of its four bytes count.
void tst_SnapshotPlan::countInFourBytes()
{
    SnapshotPlan plan(SnapshotScope::Full, {});
    const int size = plan.size();
    SnapshotEntry entry;
    entry.key = {0x6020, 0};
    entry.type = DataType::OctetString;
    entry.raw = QByteArray::fromHex("02000000");
    entry.value = entry.raw;
    plan.note({{0x6020, 0}}, entry);
    QCOMPARE(plan.size(), size + 2);
    QCOMPARE(plan.next().key.toShortString(), QStringLiteral("6020h.1"));
}

void tst_SnapshotPlan::quickAsksNoFurther()
{
    Device device;
    device.add(0x6010, 0, "03");
    SnapshotPlan plan(SnapshotScope::Quick, {});
    const int size = plan.size();
    plan.note({{0x6010, 0}}, device.answer({0x6010, 0}));
    QCOMPARE(plan.size(), size);
}

void tst_SnapshotPlan::dataSheetIsReadToo()
{
    CanOpen::ObjectDictionary sheet;
    sheet.insert({0x2100, 0}, listed(DataType::Unsigned32));
    sheet.insert({0x2101, 0}, listed(DataType::Unsigned8));
    sheet.insert({0x2101, 1}, listed(DataType::Unsigned16));
    sheet.insert({0x2101, 7}, listed(DataType::Unsigned16));
    sheet.insert({0x2102, 0}, listed(DataType::Unsigned16, CanOpen::Access::WriteOnly));
    sheet.insert({0x6020, 2}, listed(DataType::Unsigned16, CanOpen::Access::WriteOnly));
    sheet.insert({0x0025, 0}, listed(DataType::Unsigned16)); // a type's definition
    Device device;
    device.add(0x2101, 0, "02");
    device.add(0x2101, 1, "0000");
    device.add(0x2101, 2, "0000");
    device.add(0x6020, 0, "03");
    const Reading reading = readAll(device, SnapshotScope::Full, sheet);
    QCOMPARE(reading.recordedOf(0x2100), QStringList(QStringLiteral("2100h.0")));
    QCOMPARE(reading.recordedOf(0x2101).join(QLatin1Char(' ')),
             QStringLiteral("2101h.0 2101h.1 2101h.2 2101h.7"));
    QCOMPARE(reading.askedOf(0x2102), QStringList());
    QCOMPARE(reading.askedOf(0x6020).join(QLatin1Char(' ')), QStringLiteral("6020h.0 6020h.1 6020h.3"));
    QCOMPARE(reading.askedOf(0x0025), QStringList());
}

void tst_SnapshotPlan::dataSheetDecidesAboutTypes()
{
    CanOpen::ObjectDictionary sheet;
    sheet.insert({0x6010, 0}, listed(DataType::Integer8));
    sheet.insert({0x6005, 0}, listed(DataType::VisibleString));
    const SnapshotPlan plan(SnapshotScope::Quick, sheet);
    QCOMPARE(plan.typesOf({0x6010, 0}), QVector<DataType>{DataType::Integer8});
    QCOMPARE(plan.typesOf({0x6005, 0}), QVector<DataType>{DataType::VisibleString});
    QCOMPARE(plan.typesOf({0x6002, 1}), QVector<DataType>{DataType::Unsigned16});
    QCOMPARE(plan.typesOf({0x2100, 1}), QVector<DataType>{});
}

void tst_SnapshotPlan::longObjectsOfADataSheetComeInBlocks()
{
    using CanOpen::SdoProtocol;
    CanOpen::ObjectDictionary sheet;
    sheet.insert({0x2100, 0}, listed(DataType::Domain));
    CanOpen::ObjectEntry text = listed(DataType::VisibleString);
    text.data = QByteArray(28, 'x');
    sheet.insert({0x2101, 0}, text);
    text.data = QByteArray(27, 'x');
    sheet.insert({0x2102, 0}, text);
    const SnapshotPlan plan(SnapshotScope::Quick, sheet);
    QVERIFY(plan.protocolOf({0x2100, 0}) == SdoProtocol::Block);
    QVERIFY(plan.protocolOf({0x2101, 0}) == SdoProtocol::Block);
    QVERIFY(plan.protocolOf({0x2102, 0}) == SdoProtocol::BlockWhenLong);
    QVERIFY(plan.protocolOf({0x1000, 0}) == SdoProtocol::BlockWhenLong);
}

void tst_SnapshotPlan::onlySomeKeys()
{
    SnapshotPlan plan(SnapshotScope::Full, {});
    plan.reduceTo({{0x6020, 0}, {0x1018, 1}, {0x6021, 4}, {0x1402, 0}});
    QStringList asked;
    while (!plan.isEmpty()) {
        const SnapshotQuestion question = plan.take();
        asked << question.key.toShortString();
        QVERIFY(!question.isProbe);
    }
    QCOMPARE(asked.join(QLatin1Char(' ')), QStringLiteral("6020h.0 1402h.0 1018h.1 6021h.4"));
}

QTEST_GUILESS_MAIN(tst_SnapshotPlan)
#include "tst_snapshotplan.moc"
