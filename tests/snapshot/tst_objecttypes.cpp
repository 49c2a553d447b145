// SPDX-License-Identifier: MIT
#include <snapshot/objecttypes.h>

#include <QtTest>

Q_DECLARE_METATYPE(QVector<CanOpen::DataType>)

using CanOpen::DataType;

class tst_ObjectTypes : public QObject
{
    Q_OBJECT

private slots:
    void knownTypes_data();
    void knownTypes();
    void typeIsChosenByTheSize();
    void bytesOfNoTypeAreAnUnsignedNumber_data();
    void bytesOfNoTypeAreAnUnsignedNumber();
};

void tst_ObjectTypes::knownTypes_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("subIndex");
    QTest::addColumn<QVector<DataType>>("types");
    using List = QVector<DataType>;
    QTest::newRow("device type") << 0x1000 << 0 << List{DataType::Unsigned32};
    QTest::newRow("device name") << 0x1008 << 0 << List{DataType::VisibleString};
    QTest::newRow("inhibit time of emergencies") << 0x1015 << 0 << List{DataType::Unsigned16};
    QTest::newRow("overflow of the SYNC counter") << 0x1019 << 0 << List{DataType::Unsigned8};
    QTest::newRow("heartbeat time") << 0x1017 << 0 << List{DataType::Unsigned16};
    QTest::newRow("number of errors") << 0x1003 << 0 << List{DataType::Unsigned8};
    QTest::newRow("newest error") << 0x1003 << 1 << List{DataType::Unsigned32};
    QTest::newRow("temperature") << 0x6042 << 5 << List{DataType::Integer16};
    QTest::newRow("asked for in two sizes")
        << 0x6311 << 1 << List{DataType::Unsigned16, DataType::Unsigned32};
    QTest::newRow("PDO COB-ID") << 0x1800 << 1 << List{DataType::Unsigned32};
    QTest::newRow("PDO event timer") << 0x15FF << 5 << List{DataType::Unsigned16};
    QTest::newRow("mapping") << 0x1BFF << 64 << List{DataType::Unsigned32};
    QTest::newRow("beyond the mapping") << 0x1BFF << 65 << List();
    QTest::newRow("manufacturer's") << 0x2000 << 0 << List();
    QTest::newRow("not in the read list") << 0x6043 << 1 << List();
}

void tst_ObjectTypes::knownTypes()
{
    QFETCH(int, index);
    QFETCH(int, subIndex);
    QFETCH(QVector<DataType>, types);
    QCOMPARE(ObjectTypes::known({static_cast<quint16>(index), static_cast<quint8>(subIndex)}), types);
}

void tst_ObjectTypes::typeIsChosenByTheSize()
{
    const QVector<DataType> both{DataType::Unsigned16, DataType::Unsigned32};
    QVERIFY(ObjectTypes::matching(both, QByteArray(2, '\0')) == DataType::Unsigned16);
    QVERIFY(ObjectTypes::matching(both, QByteArray(4, '\0')) == DataType::Unsigned32);
    QVERIFY(!ObjectTypes::matching(both, QByteArray(1, '\0')));
    QVERIFY(!ObjectTypes::matching({}, QByteArray(1, '\0')));
}

void tst_ObjectTypes::bytesOfNoTypeAreAnUnsignedNumber_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("none") << QByteArray() << QVariant();
    QTest::newRow("one") << QByteArray::fromHex("ff") << QVariant(qulonglong(255));
    QTest::newRow("three") << QByteArray::fromHex("010203") << QVariant(qulonglong(0x030201));
    QTest::newRow("eight") << QByteArray::fromHex("ffffffffffffffff")
                           << QVariant(std::numeric_limits<qulonglong>::max());
    QTest::newRow("nine") << QByteArray(9, '\0') << QVariant();
}

void tst_ObjectTypes::bytesOfNoTypeAreAnUnsignedNumber()
{
    QFETCH(QByteArray, raw);
    QFETCH(QVariant, value);
    QCOMPARE(ObjectTypes::unsignedValue(raw), value);
}

QTEST_GUILESS_MAIN(tst_ObjectTypes)
#include "tst_objecttypes.moc"
