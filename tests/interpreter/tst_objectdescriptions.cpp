// SPDX-License-Identifier: MIT
#include <interpreter/objectdescriptions.h>
#include <interpreter/units.h>

#include <QBuffer>
#include <QTest>

/*! Reading of object description tables, with small tables written in the test. */
class tst_ObjectDescriptions : public QObject
{
    Q_OBJECT

private slots:
    void namesComeFromTheFirstRow();
    void theAlternativeNameGoesFirst();
    void unitsComeFromTheLastRow();
    void aLastRowWithoutUnitTakesTheUnitAway();
    void limitsOfAllRowsAreKept();
    void aLimitThatIsNoNumberIsZero();
    void theLineBelowNamesASubIndex();
    void theLineBelowMayBelongToAnotherObject();
    void onlyTheFirstRowLooksAhead();
    void aBlankSubIndexNameDoesNotCount();
    void subIndexNamesKeepTheirBlanks();
    void theLastLineHasNoneBelow();
    void theHeaderDescribesIndexZero();
    void indicesKeepTheirLowSixteenBits();
    void indicesThatAreNoSignedNumberAreZero();
    void shortRowsHaveEmptyFields();
    void theLastFieldKeepsItsLineFeed();
    void latin1BytesBecomeReplacementCharacters();
    void anEmptyTableDescribesNothing();
};

namespace {

ObjectDescriptions read(const QByteArray &text)
{
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    return ObjectDescriptions::read(buffer);
}

ObjectDescription described(const QByteArray &text, quint16 index)
{
    const ObjectDescriptions table = read(text);
    const ObjectDescription *description = table.find(index);
    return description != nullptr ? *description
                                  : ObjectDescription{QStringLiteral("(no row)"), 0, {}, nullptr, {}};
}

} // namespace

void tst_ObjectDescriptions::namesComeFromTheFirstRow()
{
    QCOMPARE(described("2000;First;;;;;;x\r\n2000;Second;;;;;;x\r\n", 0x2000).name, QStringLiteral("First"));
}

void tst_ObjectDescriptions::theAlternativeNameGoesFirst()
{
    QCOMPARE(described("2000;Name;Other name;;;;;x\r\n", 0x2000).name, QStringLiteral("Other name"));
}

void tst_ObjectDescriptions::unitsComeFromTheLastRow()
{
    const ObjectDescription description = described("2000;A;;mV;;;;x\r\n2000;B;;mA;;;;x\r\n", 0x2000);
    QCOMPARE(formatWithUnit(description.unit, 1000u), QStringLiteral("1.00 A"));
}

void tst_ObjectDescriptions::aLastRowWithoutUnitTakesTheUnitAway()
{
    const ObjectDescription description = described("2000;A;;mV;;;;x\r\n2000;B;;;;;;x\r\n", 0x2000);
    QVERIFY(description.unit == nullptr);
}

void tst_ObjectDescriptions::limitsOfAllRowsAreKept()
{
    const ObjectDescription description
        = described("2000;A;;;;;;x\r\n2000;B;;;10;;;x\r\n2000;C;;;;4294967295;;x\r\n", 0x2000);
    QCOMPARE(description.limits.size(), 2);
    QVERIFY(description.limits[0].minimum == 10u && !description.limits[0].maximum);
    QVERIFY(description.limits[1].maximum == 4294967295u && !description.limits[1].minimum);
}

void tst_ObjectDescriptions::aLimitThatIsNoNumberIsZero()
{
    const ObjectDescription description = described("2000;A;;;low;-1;;x\r\n", 0x2000);
    QCOMPARE(description.limits.size(), 1);
    QVERIFY(description.limits[0].minimum == 0u);
    QVERIFY(description.limits[0].maximum == 0u);
}

void tst_ObjectDescriptions::theLineBelowNamesASubIndex()
{
    const ObjectDescription description
        = described("2000;Record;;;;;;x\r\n2000;1A;Part one;;;;;;x\r\n2000;1B;Part two;;;;;;x\r\n", 0x2000);
    QCOMPARE(description.name, QStringLiteral("Record"));
    QCOMPARE(description.subIndex, 0x1A);
    QCOMPARE(description.subName, QStringLiteral("Part one"));
}

void tst_ObjectDescriptions::theLineBelowMayBelongToAnotherObject()
{
    const ObjectDescription description = described("2000;Record;;;;;;x\r\n2001;1;Part;;;;;x\r\n", 0x2000);
    QCOMPARE(description.subIndex, 1);
    QCOMPARE(description.subName, QStringLiteral("Part"));
}

void tst_ObjectDescriptions::onlyTheFirstRowLooksAhead()
{
    const ObjectDescription description
        = described("2000;A;;;;;;x\r\n2001;B;;;;;;x\r\n2000;C;;;;;;x\r\n2000;1;Part;;;;;;x\r\n", 0x2000);
    QCOMPARE(description.subIndex, 0);
}

void tst_ObjectDescriptions::aBlankSubIndexNameDoesNotCount()
{
    QCOMPARE(described("2000;A;;;;;;x\r\n2000;1; \t ;;;;;;x\r\n", 0x2000).subIndex, 0);
}

void tst_ObjectDescriptions::subIndexNamesKeepTheirBlanks()
{
    QCOMPARE(described("2000;A;;;;;;x\r\n2000;1; Part  one ;;;;;;x\r\n", 0x2000).subName,
             QStringLiteral(" Part  one "));
}

void tst_ObjectDescriptions::theLastLineHasNoneBelow()
{
    const ObjectDescription description = described("2000;A;;;;;;x\r\n2001;B;;;;;;x", 0x2001);
    QCOMPARE(description.name, QStringLiteral("B"));
    QCOMPARE(description.subIndex, 0);
}

void tst_ObjectDescriptions::theHeaderDescribesIndexZero()
{
    QCOMPARE(described("Object;Name;Other;unit;minVal;maxVal;;x\r\n", 0).name, QStringLiteral("Other"));
}

void tst_ObjectDescriptions::indicesKeepTheirLowSixteenBits()
{
    QCOMPARE(described("12000;A;;;;;;x\r\n", 0x2000).name, QStringLiteral("A"));
    QCOMPARE(described("-1;A;;;;;;x\r\n", 0xFFFF).name, QStringLiteral("A"));
    QCOMPARE(described("638;A;;;;;;x\r\n", 0x0638).name, QStringLiteral("A"));
}

void tst_ObjectDescriptions::indicesThatAreNoSignedNumberAreZero()
{
    QCOMPARE(described("80002000;A;;;;;;x\r\n", 0).name, QStringLiteral("A"));
    QCOMPARE(described("80002000;A;;;;;;x\r\n", 0x2000).name, QStringLiteral("(no row)"));
    QCOMPARE(described("\r\n", 0).name, QString());
}

void tst_ObjectDescriptions::shortRowsHaveEmptyFields()
{
    const ObjectDescription description = described("2000\r\n2001", 0x2000);
    QCOMPARE(description.name, QString());
    QCOMPARE(description.subIndex, 0);
    QVERIFY(description.unit == nullptr);
    QVERIFY(description.limits.isEmpty());
}

void tst_ObjectDescriptions::theLastFieldKeepsItsLineFeed()
{
    QCOMPARE(described("2000;A\r\n", 0x2000).name, QStringLiteral("A\n"));
    QVERIFY(described("2000;A;;mV\r\n", 0x2000).unit == nullptr);
    QVERIFY(described("2000;A;;mV", 0x2000).unit != nullptr);
    QVERIFY(described("2000;A;;;1;70\r\n", 0x2000).limits.value(0).maximum == 70u);
}

void tst_ObjectDescriptions::latin1BytesBecomeReplacementCharacters()
{
    QCOMPARE(described("2000;A \x96 B;;;;;;x\r\n", 0x2000).name, QStringLiteral("A \uFFFD B"));
}

void tst_ObjectDescriptions::anEmptyTableDescribesNothing()
{
    const ObjectDescriptions table = read(QByteArray());
    QVERIFY(table.find(0) == nullptr);
    QVERIFY(table.find(0x1000) == nullptr);
}

QTEST_APPLESS_MAIN(tst_ObjectDescriptions)

#include "tst_objectdescriptions.moc"
