// SPDX-License-Identifier: MIT
#include <canopen/objectdictionary.h>

#include <QtTest>

using namespace CanOpen;

class tst_ObjectDictionary : public QObject
{
    Q_OBJECT

private slots:
    void findsWhatWasInserted();
    void containsIndexBySubIndex();
    void listsKeysInOrder();
    void valueIsDecodedByType();
    void setValueRefusesWhatDoesNotFit();
    void setDataTakesAnyBytes();
};

namespace {

ObjectEntry makeEntry(DataType type, const QByteArray &data)
{
    ObjectEntry entry;
    entry.type = type;
    entry.data = data;
    return entry;
}

} // namespace

void tst_ObjectDictionary::findsWhatWasInserted()
{
    ObjectDictionary dictionary;
    QVERIFY(dictionary.isEmpty());
    dictionary.insert({0x1018, 1}, makeEntry(DataType::Unsigned32, QByteArray::fromHex("fe000000")));
    QVERIFY(!dictionary.isEmpty());
    QVERIFY(dictionary.find({0x1018, 1}) != nullptr);
    QCOMPARE(dictionary.find({0x1018, 1})->data, QByteArray::fromHex("fe000000"));
    QVERIFY(dictionary.find({0x1018, 2}) == nullptr);
    QVERIFY(dictionary.find({0x1017, 1}) == nullptr);

    dictionary.insert({0x1018, 1}, makeEntry(DataType::Unsigned8, QByteArray::fromHex("07")));
    QCOMPARE(dictionary.find({0x1018, 1})->data, QByteArray::fromHex("07"));
    QCOMPARE(dictionary.keys().size(), 1);
}

void tst_ObjectDictionary::containsIndexBySubIndex()
{
    ObjectDictionary dictionary;
    dictionary.insert({0x6000, 5}, makeEntry(DataType::Unsigned8, QByteArray(1, '\0')));
    QVERIFY(dictionary.containsIndex(0x6000));
    QVERIFY(!dictionary.containsIndex(0x5FFF));
    QVERIFY(!dictionary.containsIndex(0x6001));
    QVERIFY(!ObjectDictionary().containsIndex(0));
}

void tst_ObjectDictionary::listsKeysInOrder()
{
    ObjectDictionary dictionary;
    for (const ObjectKey key : {ObjectKey{0x6000, 2}, ObjectKey{0x1000, 0}, ObjectKey{0x6000, 0}})
        dictionary.insert(key, ObjectEntry());
    const QVector<ObjectKey> keys = dictionary.keys();
    QCOMPARE(keys.size(), 3);
    QVERIFY((keys.at(0) == ObjectKey{0x1000, 0}));
    QVERIFY((keys.at(1) == ObjectKey{0x6000, 0}));
    QVERIFY((keys.at(2) == ObjectKey{0x6000, 2}));
}

void tst_ObjectDictionary::valueIsDecodedByType()
{
    ObjectDictionary dictionary;
    dictionary.insert({0x6042, 1}, makeEntry(DataType::Integer16, QByteArray::fromHex("f6ff")));
    dictionary.insert({0x1008, 0}, makeEntry(DataType::VisibleString, QByteArrayLiteral("DX-Pack")));
    dictionary.insert({0x2000, 0}, makeEntry(DataType::Unsigned32, QByteArray::fromHex("01")));
    QCOMPARE(dictionary.value({0x6042, 1}).toInt(), -10);
    QCOMPARE(dictionary.value({0x1008, 0}).toString(), QStringLiteral("DX-Pack"));
    QVERIFY(!dictionary.value({0x6042, 2}).isValid());
    QVERIFY2(!dictionary.value({0x2000, 0}).isValid(), "one byte is no UNSIGNED32");
}

void tst_ObjectDictionary::setValueRefusesWhatDoesNotFit()
{
    ObjectDictionary dictionary;
    dictionary.insert({0x2000, 0}, makeEntry(DataType::Unsigned8, QByteArray::fromHex("05")));
    QVERIFY(dictionary.setValue({0x2000, 0}, 255));
    QCOMPARE(dictionary.find({0x2000, 0})->data, QByteArray::fromHex("ff"));
    QVERIFY(!dictionary.setValue({0x2000, 0}, 256));
    QVERIFY(!dictionary.setValue({0x2000, 0}, -1));
    QVERIFY(!dictionary.setValue({0x2001, 0}, 1));
    QCOMPARE(dictionary.find({0x2000, 0})->data, QByteArray::fromHex("ff"));
}

void tst_ObjectDictionary::setDataTakesAnyBytes()
{
    ObjectDictionary dictionary;
    dictionary.insert({0x2000, 0}, makeEntry(DataType::Unsigned8, QByteArray::fromHex("05")));
    QVERIFY(dictionary.setData({0x2000, 0}, QByteArray::fromHex("010203")));
    QCOMPARE(dictionary.find({0x2000, 0})->data, QByteArray::fromHex("010203"));
    QVERIFY(!dictionary.setData({0x2000, 1}, QByteArray()));
}

QTEST_GUILESS_MAIN(tst_ObjectDictionary)
#include "tst_objectdictionary.moc"
