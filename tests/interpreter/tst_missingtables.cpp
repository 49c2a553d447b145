// SPDX-License-Identifier: MIT
#include <interpreter/datainterpreter.h>

#include <QFile>
#include <QTest>
#include <QVariant>

/*! The services in a program whose resource bundle is missing: this test links none. */
class tst_MissingTables : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void objectsHaveNoName();
    void valuesHaveNoText();
    void valuesThatNeedNoTableAreStillText();
    void valuesAreInRange();
    void vendorTextsStayAsTheyAre();
};

void tst_MissingTables::initTestCase()
{
    QVERIFY(!QFile::exists(QStringLiteral(":/files/od.csv")));
    QVERIFY(!QFile::exists(QStringLiteral(":/files/vendor.csv")));
}

void tst_MissingTables::objectsHaveNoName()
{
    QCOMPARE(DataInterpreter::objectName(0x1000, 0), QString());
    QCOMPARE(DataInterpreter::objectName(0x62E8, 1), QString());
    QCOMPARE(DataInterpreter::objectName(0, 0), QString());
}

void tst_MissingTables::valuesHaveNoText()
{
    QCOMPARE(DataInterpreter::formatValue(0x6040, 1, 36500u), QString());
}

void tst_MissingTables::valuesThatNeedNoTableAreStillText()
{
    QCOMPARE(DataInterpreter::formatValue(0x6080, 0, 1u), QStringLiteral("1,DX is on,"));
    QCOMPARE(DataInterpreter::formatValue(0x6081, 0, 9u), QStringLiteral("reserved"));
}

void tst_MissingTables::valuesAreInRange()
{
    QCOMPARE(DataInterpreter::checkLimits(0x6105, 701u), Qt::black);
    QCOMPARE(DataInterpreter::checkLimits(0x6105, 0u), Qt::black);
}

void tst_MissingTables::vendorTextsStayAsTheyAre()
{
    QString name;
    QString text = QStringLiteral("from before");
    DataInterpreter::interpretIdentity(2u, 1, name, text);
    QCOMPARE(name, QStringLiteral("Vendor ID"));
    QCOMPARE(text, QStringLiteral("from before"));
}

QTEST_APPLESS_MAIN(tst_MissingTables)

#include "tst_missingtables.moc"
