// SPDX-License-Identifier: MIT
#include <bus/socketcan/interfacekind.h>
#include <bus/virtualbus.h>

#include <QtTest>

class tst_VirtualBus : public QObject
{
    Q_OBJECT

private slots:
    void isVirtual_data();
    void isVirtual();
    void kindOfWhatIsNoCanInterface();
};

void tst_VirtualBus::isVirtual_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isVirtual");

    QTest::newRow("virtual back end") << QStringLiteral("virtualcan:can0") << true;
    QTest::newRow("simulated") << QStringLiteral("simulated:pedelec") << true;
    QTest::newRow("virtual interface") << QStringLiteral("socketcan:bike") << true;
    QTest::newRow("adapter") << QStringLiteral("socketcan:can0") << false;
    QTest::newRow("serial line that tells nothing") << QStringLiteral("socketcan:slcan0") << false;
    QTest::newRow("adapter with such a name") << QStringLiteral("socketcan:vcan0") << false;
    QTest::newRow("tunnel") << QStringLiteral("socketcan:tunnel") << false;
    QTest::newRow("other back end") << QStringLiteral("peakcan:bike") << false;
}

void tst_VirtualBus::isVirtual()
{
    QFETCH(QString, address);
    QFETCH(bool, isVirtual);
    const QMap<QString, QString> kinds{{QStringLiteral("bike"), QStringLiteral("vcan")},
                                       {QStringLiteral("can0"), QStringLiteral("can")},
                                       {QStringLiteral("vcan0"), QStringLiteral("can")},
                                       {QStringLiteral("tunnel"), QStringLiteral("vxcan")}};
    const auto kindOf = [&kinds](const QString &name) { return kinds.value(name); };
    QCOMPARE(isVirtualBus(*BusAddress::parse(address, nullptr), kindOf), isVirtual);
}

void tst_VirtualBus::kindOfWhatIsNoCanInterface()
{
    QCOMPARE(interfaceKind(QStringLiteral("lo")), QString());
    QCOMPARE(interfaceKind(QStringLiteral("nosuchinterface")), QString());
    QCOMPARE(interfaceKind(QString()), QString());
}

QTEST_APPLESS_MAIN(tst_VirtualBus)
#include "tst_virtualbus.moc"
