// SPDX-License-Identifier: MIT
#include "frames.h"

#include <canopen/edsfile.h>
#include <canopen/objectdictionary.h>
#include <live/values/livevalues.h>
#include <live/values/pdosource.h>
#include <live/values/valuewriting.h>
#include <snapshot/snapshot.h>

#include <QtTest>

#include <memory>
#include <random>

using CanOpen::DataType;
using CanOpen::ObjectKey;

namespace {

/*! A dictionary that is typed here. */
class Dictionary
{
public:
    Dictionary &set(quint16 index, quint8 sub, DataType type, quint32 value)
    {
        CanOpen::ObjectEntry entry;
        entry.type = type;
        entry.data = *CanOpen::encodeValue(type, value);
        m_dictionary.insert({index, sub}, entry);
        return *this;
    }

    /*! PDO \a number with these entries of its mapping. */
    Dictionary &pdo(int number, quint32 cobId, const QVector<quint32> &entries, quint16 eventTimer = 0)
    {
        const auto index = static_cast<quint16>(number - 1);
        set(0x1800 + index, 1, DataType::Unsigned32, cobId);
        set(0x1800 + index, 2, DataType::Unsigned8, 254);
        set(0x1800 + index, 5, DataType::Unsigned16, eventTimer);
        set(0x1A00 + index, 0, DataType::Unsigned8, quint32(entries.size()));
        for (int i = 0; i < entries.size(); ++i)
            set(0x1A00 + index, quint8(i + 1), DataType::Unsigned32, entries.at(i));
        return *this;
    }

    const CanOpen::ObjectDictionary &dictionary() const { return m_dictionary; }

private:
    CanOpen::ObjectDictionary m_dictionary;
};

} // namespace

/*! Values out of PDOs and answers. */
class tst_LiveValues : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_values = std::make_unique<LiveValues>(); }
    void namedValuesWithUnits();
    void signedAndSmallNumbers();
    void realNumbers();
    void notFinite();
    void placeholdersAreNoValues();
    void extendedIdentifier();
    void extendedIsNotStandard();
    void invalidPdoIsNone();
    void liesOfMappings_data();
    void liesOfMappings();
    void shortFrames();
    void longFrames();
    void sameIdentifierTwice();
    void learntAnew();
    void fromSnapshot();
    void fromShippedDataSheet();
    void lateness();
    void latenessAsHeard();
    void statistics();
    void asked();
    void temperatureBelowZero();
    void valuesAreBounded();
    void history();
    void historyKeepsPeaks();
    void historyIsBounded();
    void writing();
    void anythingMayCome();

private:
    const LiveValue &value(int node, quint16 index, quint8 sub) const
    {
        const int position = m_values->find(quint8(node), {index, sub});
        if (position < 0)
            qFatal("There is no such value");
        return m_values->values().at(std::size_t(position));
    }
    void learn(int node, const Dictionary &dictionary)
    {
        m_values->learn(PdoSource::of(quint8(node), dictionary.dictionary()));
    }

    std::unique_ptr<LiveValues> m_values;
};

void tst_LiveValues::namedValuesWithUnits()
{
    learn(2, Dictionary()
                 .pdo(1, 0x182, {0x60400120, 0x61050110})
                 .set(0x6040, 1, DataType::Unsigned32, 0)
                 .set(0x6105, 1, DataType::Integer16, 0));
    m_values->handle(frameAt(second, 0x182, "84990000F5FF"));
    QCOMPARE(value(2, 0x6040, 1).record.last(), 39.3);
    QCOMPARE(value(2, 0x6040, 1).unit, QStringLiteral("V"));
    QVERIFY(value(2, 0x6040, 1).name.contains(QStringLiteral("voltage"), Qt::CaseInsensitive));
    QCOMPARE(value(2, 0x6105, 1).record.last(), -1.1);
    QCOMPARE(value(2, 0x6105, 1).unit, QString::fromUtf8("°C"));
    QCOMPARE(value(2, 0x6105, 1).record.time(), second);
    QCOMPARE(m_values->problems(), QStringList());
    QCOMPARE(m_values->revision(), quint64(1));
}

void tst_LiveValues::signedAndSmallNumbers()
{
    // One bit, three bits with a sign, 12 bits without one, one more
    learn(2, Dictionary()
                 .pdo(1, 0x182, {0x20000101, 0x20000203, 0x2000030C, 0x20000408})
                 .set(0x2000, 1, DataType::Boolean, 0)
                 .set(0x2000, 2, DataType::Integer8, 0)
                 .set(0x2000, 3, DataType::Unsigned16, 0)
                 .set(0x2000, 4, DataType::Integer8, 0));
    m_values->handle(frameAt(0, 0x182, "FBAB80"));
    QCOMPARE(value(2, 0x2000, 1).record.last(), 1.0);
    QCOMPARE(value(2, 0x2000, 2).record.last(), -3.0);
    QCOMPARE(value(2, 0x2000, 3).record.last(), double(0xABF));
    QCOMPARE(value(2, 0x2000, 4).record.last(), -128.0);
    QCOMPARE(value(2, 0x2000, 4).name, QStringLiteral("2000h"));
    QCOMPARE(value(2, 0x2000, 4).unit, QString());
}

void tst_LiveValues::realNumbers()
{
    learn(2, Dictionary()
                 .pdo(1, 0x182, {0x20000120, 0x20000220})
                 .pdo(2, 0x282, {0x20000340})
                 .set(0x2000, 1, DataType::Real32, 0)
                 .set(0x2000, 2, DataType::Unsigned32, 0)
                 .set(0x2000, 3, DataType::Real64, 0));
    m_values->handle(frameAt(0, 0x182, "0000C0BFFFFFFFFF"));
    m_values->handle(frameAt(0, 0x282, "000000000000F8BF"));
    QCOMPARE(value(2, 0x2000, 1).record.last(), -1.5);
    QCOMPARE(value(2, 0x2000, 2).record.last(), 4294967295.0);
    QCOMPARE(value(2, 0x2000, 3).record.last(), -1.5);
}

void tst_LiveValues::notFinite()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000120}).set(0x2000, 1, DataType::Real32, 0));
    m_values->handle(frameAt(0, 0x182, "0000C07F")); // not a number
    m_values->handle(frameAt(0, 0x182, "0000807F")); // infinite
    QCOMPARE(value(2, 0x2000, 1).record.count(), quint64(0));
}

void tst_LiveValues::placeholdersAreNoValues()
{
    // A dummy of 16 bits, a text, then a number
    learn(2, Dictionary()
                 .pdo(1, 0x182, {0x00060010, 0x20000110, 0x20000208})
                 .set(0x2000, 1, DataType::VisibleString, 0)
                 .set(0x2000, 2, DataType::Unsigned8, 0));
    m_values->handle(frameAt(0, 0x182, "1111222233"));
    QCOMPARE(m_values->values().size(), std::size_t(1));
    QCOMPARE(value(2, 0x2000, 2).record.last(), double(0x33));
}

void tst_LiveValues::extendedIdentifier()
{
    learn(2, Dictionary().pdo(1, 0x20012345, {0x20000108}));
    QCanBusFrame frame(0x12345, QByteArray(1, '\7'));
    frame.setExtendedFrameFormat(true);
    m_values->handle(LiveFrame::of(frame, 0));
    QCOMPARE(value(2, 0x2000, 1).record.last(), 7.0);
}

void tst_LiveValues::extendedIsNotStandard()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000108}));
    QCanBusFrame frame(0x182, QByteArray(1, '\7'));
    frame.setExtendedFrameFormat(true);
    m_values->handle(LiveFrame::of(frame, 0));
    QCanBusFrame remote(QCanBusFrame::RemoteRequestFrame);
    remote.setFrameId(0x182);
    remote.setPayload(QByteArray(1, '\7'));
    m_values->handle(LiveFrame::of(remote, 0));
    QCOMPARE(value(2, 0x2000, 1).record.count(), quint64(0));
    QCOMPARE(m_values->revision(), quint64(0));
}

void tst_LiveValues::invalidPdoIsNone()
{
    learn(2, Dictionary().pdo(1, 0x80000182, {0x20000108}));
    m_values->handle(frameAt(0, 0x182, "07"));
    QVERIFY(m_values->values().empty());
    QCOMPARE(m_values->problems(), QStringList());
}

void tst_LiveValues::liesOfMappings_data()
{
    QTest::addColumn<QVector<quint32>>("entries");
    QTest::addColumn<int>("told");
    QTest::addColumn<QString>("problem");

    const QVector<quint32> one{0x20000108};
    QTest::newRow("longer than a frame")
        << QVector<quint32>{0x20000140, 0x20000208} << 2
        << QStringLiteral("Node 2, PDO 1: its mapping is longer than a frame.");
    QTest::newRow("fewer than told") << one << 3
                                     << QStringLiteral(
                                            "Node 2, PDO 1: its mapping tells more objects than there are.");
    QTest::newRow("65 objects") << one << 65
                                << QStringLiteral("Node 2, PDO 1: its mapping tells more than 64 objects.");
    QTest::newRow("MPDO")
        << one << 255
        << QStringLiteral("Node 2, PDO 1: it tells its object in each frame (MPDO), which is not decoded.");
    QTest::newRow("without a length")
        << QVector<quint32>{0x20000100} << 1
        << QStringLiteral("Node 2, PDO 1: its mapping has an object without a length.");
}

void tst_LiveValues::liesOfMappings()
{
    QFETCH(QVector<quint32>, entries);
    QFETCH(int, told);
    QFETCH(QString, problem);
    learn(2, Dictionary().pdo(1, 0x182, entries).set(0x1A00, 0, DataType::Unsigned8, quint32(told)));
    m_values->handle(frameAt(0, 0x182, "0102030405060708"));
    QCOMPARE(m_values->problems(), QStringList(problem));
    QVERIFY(m_values->values().empty());
}

void tst_LiveValues::shortFrames()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000108, 0x20000208}));
    m_values->handle(frameAt(0, 0x182, "01"));
    m_values->handle(frameAt(0, 0x182, ""));
    QCOMPARE(value(2, 0x2000, 1).record.count(), quint64(0));
    QCOMPARE(m_values->problems(),
             QStringList(QStringLiteral("Node 2, PDO 1: frames that are shorter than its mapping: 2.")));
}

void tst_LiveValues::longFrames()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000108}));
    m_values->handle(frameAt(0, 0x182, "0102030405060708"));
    m_values->handle(LiveFrame::of(QCanBusFrame(0x182, QByteArray(8, '\2') + QByteArray(56, '\5')), 0));
    QCOMPARE(value(2, 0x2000, 1).record.count(), quint64(2));
    QCOMPARE(value(2, 0x2000, 1).record.last(), 2.0);
}

void tst_LiveValues::sameIdentifierTwice()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000108}));
    learn(3, Dictionary().pdo(4, 0x182, {0x20000108}));
    m_values->handle(frameAt(0, 0x182, "07"));
    QCOMPARE(value(2, 0x2000, 1).record.count(), quint64(1));
    QCOMPARE(value(3, 0x2000, 1).record.count(), quint64(0));
    const QStringList problems{QStringLiteral("Node 3, PDO 4: PDO 1 of node 2 has the same identifier.")};
    QCOMPARE(m_values->problems(), problems);
    learn(2, Dictionary());
    QCOMPARE(m_values->problems(), QStringList());
    m_values->handle(frameAt(0, 0x182, "08"));
    QCOMPARE(value(3, 0x2000, 1).record.last(), 8.0);
}

void tst_LiveValues::learntAnew()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000108}));
    m_values->handle(frameAt(0, 0x182, "07"));
    learn(2, Dictionary().pdo(1, 0x282, {0x20000208}));
    m_values->handle(frameAt(0, 0x182, "09"));
    m_values->handle(frameAt(0, 0x282, "0B"));
    QCOMPARE(value(2, 0x2000, 1).record.last(), 7.0); // stays as it was
    QCOMPARE(value(2, 0x2000, 2).record.last(), 11.0);
}

void tst_LiveValues::fromSnapshot()
{
    SnapshotNode node;
    node.id = 2;
    const auto add = [&node](quint16 index, quint8 sub, const QVariant &value,
                             std::optional<DataType> type = std::nullopt) {
        SnapshotEntry entry;
        entry.key = {index, sub};
        entry.value = value;
        entry.type = type;
        node.insert(entry);
    };
    add(0x1800, 1, 0x182u);
    add(0x1A00, 0, 2u);
    add(0x1A00, 1, 0x20000110u);
    add(0x1A00, 2, 0x61050110u); // of which the overview knows the type
    add(0x2000, 1, 5, DataType::Integer16);
    add(0x1801, 1, QByteArray("no number"));
    m_values->learn(PdoSource::of(node));
    m_values->handle(frameAt(0, 0x182, "FFFFF5FF"));
    QCOMPARE(value(2, 0x2000, 1).record.last(), -1.0);
    QCOMPARE(value(2, 0x6105, 1).record.last(), -1.1);
}

void tst_LiveValues::fromShippedDataSheet()
{
    QString error;
    const std::optional<CanOpen::EdsFile> eds
        = CanOpen::readEdsFile(QStringLiteral(VEHICLE_FOLDER "/ride-battery.dcf"), 2, &error);
    QVERIFY2(eds, qPrintable(error));
    m_values->learn(PdoSource::of(2, eds->dictionary));
    QCOMPARE(m_values->problems(), QStringList());
    QVERIFY(m_values->values().size() >= 10);
    const auto cell = std::find_if(m_values->values().begin(), m_values->values().end(),
                                   [](const LiveValue &known) { return known.object.index == 0x6165; });
    QVERIFY(cell != m_values->values().end());
    QCOMPARE(cell->unit, QStringLiteral("V"));
}

void tst_LiveValues::lateness()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000108}, 500));
    QVERIFY(!value(2, 0x2000, 1).record.isLate(100 * second)); // has never come
    m_values->handle(frameAt(0, 0x182, "07"));
    QVERIFY(!value(2, 0x2000, 1).record.isLate(1500 * millisecond));
    QVERIFY(value(2, 0x2000, 1).record.isLate(1501 * millisecond));
}

void tst_LiveValues::latenessAsHeard()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000108}));
    m_values->handle(frameAt(0, 0x182, "07"));
    QVERIFY(!value(2, 0x2000, 1).record.isLate(100 * second)); // who knows how often it comes
    for (int i = 1; i < 10; ++i)
        m_values->handle(frameAt(i * 100 * millisecond, 0x182, "07"));
    QVERIFY(!value(2, 0x2000, 1).record.isLate(1200 * millisecond));
    QVERIFY(value(2, 0x2000, 1).record.isLate(1201 * millisecond));
}

void tst_LiveValues::statistics()
{
    learn(2, Dictionary().pdo(1, 0x182, {0x20000108}));
    for (const char *hex : {"06", "02", "0A", "06"})
        m_values->handle(frameAt(0, 0x182, hex));
    const ValueRecord &record = value(2, 0x2000, 1).record;
    QCOMPARE(record.count(), quint64(4));
    QCOMPARE(record.smallest(), 2.0);
    QCOMPARE(record.largest(), 10.0);
    QCOMPARE(record.mean(), 6.0);
    QCOMPARE(record.last(), 6.0);
}

void tst_LiveValues::asked()
{
    const int position = m_values->note(4, {0x6040, 1}, 36500, 3 * second);
    QCOMPARE(position, m_values->find(4, {0x6040, 1}));
    QCOMPARE(value(4, 0x6040, 1).record.last(), 36.5);
    QCOMPARE(value(4, 0x6040, 1).record.time(), 3 * second);
    QCOMPARE(m_values->note(4, {0x6040, 1}, 36600, 4 * second), position);
    QCOMPARE(m_values->find(4, {0x6040, 2}), -1);
}

void tst_LiveValues::temperatureBelowZero()
{
    m_values->note(4, {0x6105, 1}, 0xFF9C, 0);
    QCOMPARE(value(4, 0x6105, 1).record.last(), -10.0);
    m_values->note(4, {0x6105, 1}, 0x7FFF, second);
    QCOMPARE(value(4, 0x6105, 1).record.last(), 3276.7);
    m_values->note(4, {0x6105, 1}, -100, 2 * second);
    QCOMPARE(value(4, 0x6105, 1).record.last(), -10.0);
    m_values->note(4, {0x6040, 1}, 0xFF9C, 0); // a voltage has no sign
    QCOMPARE(value(4, 0x6040, 1).record.last(), 65.436);
}

void tst_LiveValues::valuesAreBounded()
{
    for (int i = 0; i < 5000; ++i)
        m_values->note(4, {quint16(i), 1}, 1, 0);
    QCOMPARE(m_values->values().size(), std::size_t(4096));
    QCOMPARE(m_values->note(4, {4999, 1}, 1, 0), -1);
}

void tst_LiveValues::history()
{
    const int position = m_values->note(4, {0x6040, 1}, 1000, 0);
    QVERIFY(value(4, 0x6040, 1).history == nullptr);
    m_values->setWatched(position, true);
    m_values->setWatched(position, true);
    m_values->setWatched(-1, true);
    m_values->setWatched(4711, true);
    m_values->note(4, {0x6040, 1}, 2000, second);
    m_values->note(4, {0x6040, 1}, 3000, 2 * second);
    QCOMPARE(value(4, 0x6040, 1).history->size(), std::size_t(2));
    QCOMPARE(value(4, 0x6040, 1).history->at(1).last, 3.0F);
    m_values->setWatched(position, false);
    QVERIFY(value(4, 0x6040, 1).history == nullptr);
}

void tst_LiveValues::historyKeepsPeaks()
{
    ValueHistory history;
    history.add(0, 5);
    history.add(10 * millisecond, 9);
    history.add(20 * millisecond, 1);
    history.add(99 * millisecond, 4);
    history.add(100 * millisecond, 6);
    QCOMPARE(history.size(), std::size_t(2));
    QCOMPARE(history.at(0).time, qint64(0));
    QCOMPARE(history.at(0).lowest, 1.0F);
    QCOMPARE(history.at(0).highest, 9.0F);
    QCOMPARE(history.at(0).last, 4.0F);
    QCOMPARE(history.at(1).lowest, 6.0F);
    history.add(-second, 7); // a clock that jumps
    QCOMPARE(history.at(2).last, 7.0F);
}

void tst_LiveValues::historyIsBounded()
{
    ValueHistory history;
    for (int i = 0; i < 36005; ++i)
        history.add(i * 100 * millisecond, i);
    QCOMPARE(history.size(), std::size_t(36000));
    QCOMPARE(history.at(0).last, 5.0F);
    QCOMPARE(history.at(35999).last, 36004.0F);
    history.add(36004 * 100 * millisecond + 1, 50000);
    QCOMPARE(history.size(), std::size_t(36000));
    QCOMPARE(history.at(35999).highest, 50000.0F);
    QCOMPARE(history.at(35999).lowest, 36004.0F);
    for (int i = 36005; i < 80000; ++i)
        history.add(i * 100 * millisecond, i);
    QCOMPARE(history.size(), std::size_t(36000));
    QCOMPARE(history.at(0).last, 44000.0F);
    QCOMPARE(history.at(35999).last, 79999.0F);
}

void tst_LiveValues::writing()
{
    m_values->note(4, {0x6040, 1}, 36500, 0);
    m_values->note(4, {0x2000, 1}, 4294967295.0, 0);
    const QDateTime time(QDate(2026, 9, 3), QTime(12, 0, 1, 500), Qt::UTC);
    QCOMPARE(ValueWriting::csvHead(), QByteArray("time,node,object,name,value,unit\r\n"));
    QCOMPARE(ValueWriting::numberText(12345678, 7), QStringLiteral("12345678"));
    QCOMPARE(ValueWriting::numberText(1099511627775, 10), QStringLiteral("1099511627775")); // of 40 bits
    QCOMPARE(ValueWriting::numberText(-3, 7), QStringLiteral("-3"));
    QCOMPARE(ValueWriting::numberText(39.3, 7), QStringLiteral("39.3"));
    QCOMPARE(ValueWriting::numberText(36.123456789, 7), QStringLiteral("36.12346"));
    QCOMPARE(ValueWriting::numberText(1e300, 7), QStringLiteral("1e+300"));
    QCOMPARE(ValueWriting::toCsv(value(4, 0x2000, 1), time),
             QByteArray("2026-09-03T12:00:01.500Z,4,2000h.1,2000h,4294967295,\r\n"));
    LiveValue named = value(4, 0x6040, 1);
    named.name = QStringLiteral("a \"voltage\", of course");
    QCOMPARE(ValueWriting::toCsv(named, time),
             QByteArray("2026-09-03T12:00:01.500Z,4,6040h.1,\"a \"\"voltage\"\", of course\",36.5,V\r\n"));
    const QJsonObject json = ValueWriting::toJson(named, time);
    QCOMPARE(json.value(QStringLiteral("value")).toDouble(), 36.5);
    QCOMPARE(json.value(QStringLiteral("index")).toInt(), 0x6040);
    QCOMPARE(json.value(QStringLiteral("unit")).toString(), QStringLiteral("V"));
}

void tst_LiveValues::anythingMayCome()
{
    std::mt19937 random(4711);
    for (int round = 0; round < 20; ++round) {
        Dictionary dictionary;
        for (int number = 1; number <= 512; number += int(random() % 40) + 1) {
            QVector<quint32> entries;
            for (int i = int(random() % 70); i > 0; --i)
                entries.append(quint32(random()) & (random() % 2 != 0 ? 0xFFFFFF0F : 0xFFFFFFFF));
            dictionary.pdo(number, quint32(random() % 0x800), entries, quint16(random()));
        }
        learn(1 + round % 5, dictionary);
        for (int i = 0; i < 5000; ++i)
            m_values->handle(LiveFrame::of(
                QCanBusFrame(quint32(random() % 0x800), QByteArray(int(random() % 9), char(random()))), i));
    }
    QVERIFY(m_values->values().size() <= 4096);
    for (const LiveValue &known : m_values->values())
        QVERIFY(std::isfinite(known.record.mean()));
}

QTEST_GUILESS_MAIN(tst_LiveValues)
#include "tst_livevalues.moc"
