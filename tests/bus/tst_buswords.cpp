// SPDX-License-Identifier: MIT
#include <bus/backends.h>
#include <bus/buswords.h>

#include <QtTest>

class tst_BusWords : public QObject
{
    Q_OBJECT

private slots:
    void nodes_data();
    void nodes();
    void connections();
    void presences_data();
    void presences();
    void healths();
    void switchOnCommands_data();
    void switchOnCommands();
    void backEnds_data();
    void backEnds();
    void offeredBitRatesAreTaken();

private:
    static BusSettings can0(std::optional<int> bitRate = std::nullopt)
    {
        BusSettings settings;
        settings.address = {QStringLiteral("socketcan"), QStringLiteral("can0")};
        settings.bitRate = bitRate;
        return settings;
    }
};

void tst_BusWords::nodes_data()
{
    QTest::addColumn<QList<quint8>>("ids");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << QList<quint8>() << QString();
    QTest::newRow("one") << QList<quint8>{127} << QStringLiteral("127");
    QTest::newRow("two neighbours") << QList<quint8>{4, 5} << QStringLiteral("4, 5");
    QTest::newRow("three neighbours") << QList<quint8>{4, 5, 6} << QStringLiteral("4 to 6");
    QTest::newRow("mixed") << QList<quint8>{1, 4, 5, 6, 9, 10, 125, 126, 127}
                           << QStringLiteral("1, 4 to 6, 9, 10, 125 to 127");
}

void tst_BusWords::nodes()
{
    QFETCH(QList<quint8>, ids);
    QTEST(BusWords::nodes(ids), "text");
}

void tst_BusWords::connections()
{
    QCOMPARE(BusWords::connecting(can0()), QStringLiteral("Connecting to socketcan:can0 ..."));
    QCOMPARE(BusWords::connected(can0()), QStringLiteral("Connected to socketcan:can0."));
    QCOMPARE(BusWords::connected(can0(0)), QStringLiteral("Connected to socketcan:can0."));
    QCOMPARE(BusWords::connected(can0(83333)),
             QStringLiteral("Connected to socketcan:can0 at 83.333 kbit/s."));
    QCOMPARE(BusWords::cannotBeOpened(can0().address, QStringLiteral("No such plugin.")),
             QStringLiteral("The bus socketcan:can0 cannot be opened: No such plugin."));
}

void tst_BusWords::presences_data()
{
    QTest::addColumn<InterfaceWatch::Presence>("presence");
    QTest::addColumn<QString>("sentence");

    QTest::newRow("down") << InterfaceWatch::Presence::Down
                          << QStringLiteral(
                                 "can0 is down: run \"sudo ip link set can0 up type can bitrate 125000\".");
    QTest::newRow("missing") << InterfaceWatch::Presence::Missing
                             << QStringLiteral(
                                    "There is no interface can0. Check that the adapter is plugged in.");
    QTest::newRow("replaced") << InterfaceWatch::Presence::Replaced
                              << QStringLiteral("The interface can0 was removed and came back.");
    QTest::newRow("there") << InterfaceWatch::Presence::Present
                           << QStringLiteral("The interface can0 is there.");
}

void tst_BusWords::presences()
{
    QFETCH(InterfaceWatch::Presence, presence);
    QTEST(BusWords::presence(presence, can0(125000)), "sentence");
}

void tst_BusWords::healths()
{
    const QString name = QStringLiteral("can0");
    QCOMPARE(BusWords::health(InterfaceHealth::State::Good, name), QString());
    QCOMPARE(BusWords::health(InterfaceHealth::State::Unknown, name), QString());
    QCOMPARE(BusWords::health(InterfaceHealth::State::Warning, name),
             QStringLiteral("The CAN interface can0 counts many bus errors."));
    QVERIFY(BusWords::health(InterfaceHealth::State::Passive, name)
                .startsWith(QStringLiteral("The CAN interface can0 is error-passive: ")));
    QVERIFY(BusWords::health(InterfaceHealth::State::BusOff, name)
                .startsWith(QStringLiteral("The CAN interface can0 is bus-off: ")));
}

void tst_BusWords::switchOnCommands_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("bitRate");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("command");
    const auto row
        = [](const char *title, const char *name, int bitRate, const char *kind, const char *command) {
              QTest::newRow(title) << QString::fromLatin1(name) << bitRate << QString::fromLatin1(kind)
                                   << QString::fromLatin1(command);
          };

    row("no bit rate chosen", "can0", 0, "can", "sudo ip link set can0 up type can bitrate 250000");
    row("bit rate chosen", "can1", 500000, "can", "sudo ip link set can1 up type can bitrate 500000");
    row("any name", "vcan-like", 0, "can", "sudo ip link set vcan-like up type can bitrate 250000");
    row("virtual", "vcan0", 500000, "vcan", "sudo ip link set vcan0 up");
    row("virtual with the name of an adapter", "can0", 500000, "vcan", "sudo ip link set can0 up");
    row("virtual pair", "a", 0, "vxcan", "sudo ip link set a up");
    row("serial line that tells", "slcan1", 0, "can", "sudo ip link set slcan1 up type can bitrate 250000");
    row("serial line that does not", "slcan1", 500000, "", "sudo ip link set slcan1 up");
    row("not told, adapter", "can0", 0, "", "sudo ip link set can0 up type can bitrate 250000");
    row("not told, virtual", "vcan0", 0, "", "sudo ip link set vcan0 up");
    row("not told, virtual pair", "vxcan3", 0, "", "sudo ip link set vxcan3 up");
}

void tst_BusWords::switchOnCommands()
{
    QFETCH(QString, name);
    QFETCH(int, bitRate);
    QFETCH(QString, kind);
    QTEST(BusWords::switchOnCommand(name, bitRate > 0 ? std::optional<int>(bitRate) : std::nullopt, kind),
          "command");
    QCOMPARE(BusWords::switchOffCommand(QStringLiteral("can0")),
             QStringLiteral("sudo ip link set can0 down"));
}

void tst_BusWords::backEnds_data()
{
    QTest::addColumn<QString>("plugin");
    QTest::addColumn<bool>("isConfiguredOutside");
    QTest::addColumn<bool>("isInNetworkFolder");
    QTest::addColumn<bool>("hasBitRate");
    QTest::addColumn<bool>("tellsErrors");

    QTest::newRow("socketcan") << QStringLiteral("socketcan") << true << true << true << true;
    QTest::newRow("virtualcan") << QStringLiteral("virtualcan") << false << false << false << true;
    QTest::newRow("simulated") << QStringLiteral("simulated") << false << false << true << true;
    QTest::newRow("peakcan") << QStringLiteral("peakcan") << false << false << true << false;
    QTest::newRow("none") << QString() << false << false << true << false;
}

void tst_BusWords::backEnds()
{
    QFETCH(QString, plugin);
    const BackEnd &backEnd = BackEnd::find(plugin);
    QTEST(backEnd.isConfiguredOutside, "isConfiguredOutside");
    QTEST(backEnd.presence == BackEnd::Presence::NetworkFolder, "isInNetworkFolder");
    QTEST(backEnd.hasBitRate, "hasBitRate");
    QTEST(backEnd.tellsErrors, "tellsErrors");
}

void tst_BusWords::offeredBitRatesAreTaken()
{
    QStringList texts;
    for (const int bitRate : offeredBitRates) {
        QCOMPARE(parseBitRate(QString::number(bitRate), nullptr), std::optional<int>(bitRate));
        texts.append(QString::number(bitRate / 1000));
    }
    QCOMPARE(texts.join(QLatin1Char(' ')), QStringLiteral("10 20 50 100 125 250 500 800 1000"));
}

QTEST_GUILESS_MAIN(tst_BusWords)
#include "tst_buswords.moc"
