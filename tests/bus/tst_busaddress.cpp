// SPDX-License-Identifier: MIT
#include <bus/bussettings.h>

#include <QtTest>

class tst_BusAddress : public QObject
{
    Q_OBJECT

private slots:
    void splitsAtFirstColon_data();
    void splitsAtFirstColon();
    void complains_data();
    void complains();
    void bitRate_data();
    void bitRate();
};

void tst_BusAddress::splitsAtFirstColon_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plugin");
    QTest::addColumn<QString>("interfaceName");
    QTest::addColumn<QString>("written");

    QTest::newRow("plain") << QStringLiteral("socketcan:can0") << QStringLiteral("socketcan")
                           << QStringLiteral("can0") << QStringLiteral("socketcan:can0");
    QTest::newRow("interface with colons")
        << QStringLiteral("virtualcan:tcp://127.0.0.1:35468/can0") << QStringLiteral("virtualcan")
        << QStringLiteral("tcp://127.0.0.1:35468/can0")
        << QStringLiteral("virtualcan:tcp://127.0.0.1:35468/can0");
    QTest::newRow("path") << QStringLiteral("simulated:/home/me/a b.json") << QStringLiteral("simulated")
                          << QStringLiteral("/home/me/a b.json")
                          << QStringLiteral("simulated:/home/me/a b.json");
    QTest::newRow("blanks around") << QStringLiteral(" peakcan : usb0 ") << QStringLiteral("peakcan")
                                   << QStringLiteral("usb0") << QStringLiteral("peakcan:usb0");
}

void tst_BusAddress::splitsAtFirstColon()
{
    QFETCH(QString, text);
    QFETCH(QString, plugin);
    QFETCH(QString, interfaceName);
    QFETCH(QString, written);

    const std::optional<BusAddress> address = BusAddress::parse(text, nullptr);
    QVERIFY(address);
    QCOMPARE(address->plugin, plugin);
    QCOMPARE(address->interfaceName, interfaceName);
    QCOMPARE(address->toString(), written);
}

void tst_BusAddress::complains_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("sentence");

    QTest::newRow("nothing") << QString()
                             << QStringLiteral("\"\" names no bus. Write it as PLUGIN:INTERFACE, for example "
                                               "socketcan:can0.");
    QTest::newRow("no colon") << QStringLiteral("can0")
                              << QStringLiteral(
                                     "\"can0\" names no bus. Write it as PLUGIN:INTERFACE, for example "
                                     "socketcan:can0.");
    QTest::newRow("no back end") << QStringLiteral(":can0")
                                 << QStringLiteral(
                                        "\":can0\" names no back end before the colon. Write it as "
                                        "PLUGIN:INTERFACE, for example socketcan:can0.");
    QTest::newRow("no interface") << QStringLiteral("socketcan: ")
                                  << QStringLiteral(
                                         "\"socketcan: \" names no interface after the colon. Write it as "
                                         "PLUGIN:INTERFACE, for example socketcan:can0.");
}

void tst_BusAddress::complains()
{
    QFETCH(QString, text);
    QFETCH(QString, sentence);

    QString error;
    QVERIFY(!BusAddress::parse(text, &error));
    QCOMPARE(error, sentence);
}

void tst_BusAddress::bitRate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("bitRate"); // -1: refused

    QTest::newRow("usual") << QStringLiteral("250000") << 250000;
    QTest::newRow("highest") << QStringLiteral("1000000") << 1000000;
    QTest::newRow("unpaced") << QStringLiteral("0") << 0;
    QTest::newRow("too high") << QStringLiteral("1000001") << -1;
    QTest::newRow("negative") << QStringLiteral("-1") << -1;
    QTest::newRow("no number") << QStringLiteral("250k") << -1;
    QTest::newRow("empty") << QString() << -1;
    QTest::newRow("too large for a number") << QStringLiteral("99999999999999999999") << -1;
}

void tst_BusAddress::bitRate()
{
    QFETCH(QString, text);
    QFETCH(int, bitRate);

    QString error;
    QCOMPARE(parseBitRate(text, &error).value_or(-1), bitRate);
    QCOMPARE(error.isEmpty(), bitRate >= 0);
}

QTEST_GUILESS_MAIN(tst_BusAddress)
#include "tst_busaddress.moc"
