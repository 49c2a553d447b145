// SPDX-License-Identifier: MIT
#include <interpreter/componentclass.h>

#include <QFile>
#include <QTest>

class tst_ComponentClass : public QObject
{
    Q_OBJECT

private slots:
    void knownCode_data();
    void knownCode();
    void otherCodesHaveNoClass();
    void onlyTheControllerKnowsItsNode();
};

void tst_ComponentClass::knownCode_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("icon");

    QTest::newRow("controller") << 4 << QStringLiteral("Draxel Controller")
                                << QStringLiteral(":/img/icon/dxc32.png");
    QTest::newRow("converter") << 5 << QStringLiteral("Voltage Converter/Charger")
                               << QStringLiteral(":/img/icon/charger32.png");
    QTest::newRow("battery") << 6 << QStringLiteral("Battery Pack")
                             << QStringLiteral(":/img/icon/battery32.png");
    QTest::newRow("motor") << 7 << QStringLiteral("Motor Control unit")
                           << QStringLiteral(":/img/icon/motor32.png");
    QTest::newRow("load monitor") << 8 << QStringLiteral("Load monitoring unit")
                                  << QStringLiteral(":/img/icon/lmd_32.png");
    QTest::newRow("display") << 9 << QStringLiteral("HMI control unit/display")
                             << QStringLiteral(":/img/icon/display32.png");
    QTest::newRow("security") << 10 << QStringLiteral("Security unit")
                              << QStringLiteral(":/img/icon/lock_32.png");
    QTest::newRow("sensor") << 11 << QStringLiteral("Sensor unit") << QString();
    QTest::newRow("gateway") << 12 << QStringLiteral("Gateway unit") << QString();
    QTest::newRow("generator") << 13 << QStringLiteral("Generator unit") << QString();
    QTest::newRow("load") << 14 << QStringLiteral("Load unit") << QString();
    QTest::newRow("manufacturer-specific")
        << 80 << QStringLiteral("manufacturer-specific device") << QString();
}

void tst_ComponentClass::knownCode()
{
    QFETCH(int, code);
    QFETCH(QString, name);
    QFETCH(QString, icon);

    const ComponentClass *componentClass = findComponentClass(static_cast<quint8>(code));
    QVERIFY(componentClass != nullptr);
    QCOMPARE(int(componentClass->code), code);
    QCOMPARE(QString::fromUtf8(componentClass->name), name);
    QCOMPARE(componentClassName(*componentClass), name);
    QCOMPARE(componentClassName(*componentClass, 1), name);
    QCOMPARE(QString::fromUtf8(componentClass->icon), icon);
    QVERIFY2(icon.isEmpty() || QFile::exists(icon), "the bundle lacks the icon");
}

void tst_ComponentClass::otherCodesHaveNoClass()
{
    for (int code = 0; code <= 255; ++code) {
        const bool isKnown = (code >= 4 && code <= 14) || code == 80;
        QVERIFY2((findComponentClass(static_cast<quint8>(code)) != nullptr) == isKnown,
                 QByteArray::number(code));
    }
}

void tst_ComponentClass::onlyTheControllerKnowsItsNode()
{
    const ComponentClass *controller = findComponentClass(4);
    QCOMPARE(componentClassName(*controller, 126), QStringLiteral("Draxel Controller"));
    QCOMPARE(componentClassName(*controller, 127), QStringLiteral("Draxel Controller/Charger"));
    QCOMPARE(componentClassName(*controller), QStringLiteral("Draxel Controller"));
    QCOMPARE(componentClassName(*findComponentClass(6), 127), QStringLiteral("Battery Pack"));
}

QTEST_APPLESS_MAIN(tst_ComponentClass)

#include "tst_componentclass.moc"
