// SPDX-License-Identifier: MIT
#include "program.h"

#include <doctor/diagnosis.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <memory>

Q_DECLARE_METATYPE(std::function<void(InterfaceFacts &)>)

namespace {

/*! Folders as Linux has them, made by the test. */
class FakeComputer
{
public:
    FakeComputer()
    {
        places.network = m_folder.filePath(QStringLiteral("net"));
        places.usb = m_folder.filePath(QStringLiteral("usb"));
        places.devices = m_folder.filePath(QStringLiteral("dev"));
        places.controller = [this](const QString &name) {
            asked.append(name);
            return controller;
        };
        places.kind = [](const QString &name) {
            return name.startsWith(QLatin1Char('v')) ? name.left(name.size() - 1) : QString();
        };
    }

    void write(const QString &path, const QByteArray &text)
    {
        const QFileInfo file(m_folder.filePath(path));
        QDir().mkpath(file.path());
        QFile out(file.filePath());
        if (!out.open(QIODevice::WriteOnly) || out.write(text) != text.size())
            qFatal("cannot write %s", qUtf8Printable(path));
    }

    void addInterface(const QString &name, const char *type, const char *flags)
    {
        write(QStringLiteral("net/%1/type").arg(name), type);
        write(QStringLiteral("net/%1/flags").arg(name), flags);
        write(QStringLiteral("net/%1/tx_queue_len").arg(name), "10\n");
    }

    ComputerPlaces places;
    ControllerFacts controller;
    QStringList asked;

private:
    QTemporaryDir m_folder;
};

/*! A computer on which nothing is wrong. */
ComputerFacts goodComputer()
{
    InterfaceFacts can0;
    can0.name = QStringLiteral("can0");
    can0.isUp = true;
    can0.queueLength = 10;
    can0.lost = 0;
    can0.controller.bitRate = 250000;
    can0.controller.state = ControllerFacts::State::Active;
    ComputerFacts facts;
    facts.user = QStringLiteral("kim");
    facts.interfaces = {can0};
    facts.backEnds = {{QStringLiteral("socketcan"), true, {}, {QStringLiteral("can0")}}};
    return facts;
}

/*! "warning: text | command | command" of all that is not good. */
QStringList troubles(const ComputerFacts &facts)
{
    QStringList lines;
    for (const Diagnosed &one : Diagnosis::of(facts)) {
        if (one.state != ComponentState::Good)
            lines.append((QStringList{one.text} + one.commands).join(QStringLiteral(" | ")));
    }
    return lines;
}

} // namespace

/*! The command "doctor". */
class tst_Doctor : public QObject
{
    Q_OBJECT

private slots:
    void goodComputerIsGood();
    void interfaces_data();
    void interfaces();
    void noInterface();
    void kernelWithoutCan();
    void adapters();
    void rights();
    void tools();
    void backEnds();
    void looksAtInterfaces();
    void serialLineIsNotVirtual();
    void looksAtOddInterfaces();
    void looksAtAdapters();
    void looksAtDeviceFiles();
    void foldersThatAreNotThere();
    void program();
    void usage();
};

void tst_Doctor::goodComputerIsGood()
{
    QCOMPARE(troubles(goodComputer()), QStringList());
    const QVector<Diagnosed> all = Diagnosis::of(goodComputer());
    QCOMPARE(all.at(0).text, QStringLiteral("can0 is switched on, with 250000 bit/s."));
    QCOMPARE(all.at(1).text, QStringLiteral("The back end socketcan is ready: can0."));
    QVERIFY(Diagnosis::worst(all) == ComponentState::Good);
}

void tst_Doctor::interfaces_data()
{
    using State = ControllerFacts::State;
    QTest::addColumn<std::function<void(InterfaceFacts &)>>("change");
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("lines");
    const auto row
        = [](const char *name, const std::function<void(InterfaceFacts &)> &change, ComponentState state,
             const QStringList &lines) { QTest::newRow(name) << change << int(state) << lines; };
    row("down", [](InterfaceFacts &can0) { can0.isUp = false; }, ComponentState::Warning,
        {QStringLiteral(
            "can0 is switched off. Its bit rate has to be that of the vehicle: it cannot be found by "
            "listening. | sudo ip link set can0 up type can bitrate 250000")});
    row("down, of another bit rate",
        [](InterfaceFacts &can0) {
            can0.isUp = false;
            can0.controller.bitRate = 125000;
        },
        ComponentState::Warning,
        {QStringLiteral(
            "can0 is switched off. Its bit rate has to be that of the vehicle: it cannot be found by "
            "listening. | sudo ip link set can0 up type can bitrate 125000")});
    row("another bit rate", [](InterfaceFacts &can0) { can0.controller.bitRate = 500000; },
        ComponentState::Note,
        {QStringLiteral("can0 is switched on, with 500000 bit/s; vehicles of CiA 454 have 250000.")});
    row("bit rate not told", [](InterfaceFacts &can0) { can0.controller = {}; }, ComponentState::Good, {});
    row("bus-off", [](InterfaceFacts &can0) { can0.controller.state = State::BusOff; }, ComponentState::Fault,
        {QStringLiteral(
            "can0 is bus-off: it has left the bus after too many errors. Check bit rate, wiring and "
            "termination. | sudo ip link set can0 down | sudo ip link set can0 up type can restart-ms 100")});
    row("error-passive",
        [](InterfaceFacts &can0) {
            can0.controller.state = State::Passive;
            can0.controller.transmitErrors = 128;
            can0.controller.receiveErrors = 3;
        },
        ComponentState::Warning,
        {QStringLiteral("can0 counts many bus errors (128 sending, 3 receiving). Check bit rate, wiring and "
                        "termination.")});
    row("warning limit", [](InterfaceFacts &can0) { can0.controller.state = State::Warning; },
        ComponentState::Warning,
        {QStringLiteral("can0 counts many bus errors. Check bit rate, wiring and termination.")});
    row("listens only", [](InterfaceFacts &can0) { can0.controller.isListenOnly = true; },
        ComponentState::Warning,
        {QStringLiteral("can0 only listens: no device can be asked through it. | sudo ip link set can0 down "
                        "| sudo ip link "
                        "set can0 up type can listen-only off")});
    row("short queue", [](InterfaceFacts &can0) { can0.queueLength = 9; }, ComponentState::Warning,
        {QStringLiteral("On can0 only 9 frames may wait to be sent: requests get lost. | sudo ip link set "
                        "can0 txqueuelen "
                        "100")});
    row("lost frames", [](InterfaceFacts &can0) { can0.lost = 5; }, ComponentState::Note,
        {QStringLiteral("can0 has lost 5 received frames since it is there.")});
    row("virtual and down",
        [](InterfaceFacts &can0) {
            can0.name = QStringLiteral("vcan0");
            can0.kind = QStringLiteral("vcan");
            can0.isUp = false;
        },
        ComponentState::Warning, {QStringLiteral("vcan0 is switched off. | sudo ip link set vcan0 up")});
    row("virtual",
        [](InterfaceFacts &can0) {
            can0.kind = QStringLiteral("vcan");
            can0.controller = {};
        },
        ComponentState::Good, {});
}

void tst_Doctor::interfaces()
{
    QFETCH(std::function<void(InterfaceFacts &)>, change);
    QFETCH(int, state);
    QFETCH(QStringList, lines);
    ComputerFacts facts = goodComputer();
    change(facts.interfaces[0]);
    QCOMPARE(troubles(facts), lines);
    QCOMPARE(int(Diagnosis::worst(Diagnosis::of(facts))), state);
}

void tst_Doctor::noInterface()
{
    ComputerFacts facts = goodComputer();
    facts.interfaces.clear();
    facts.backEnds.append({QStringLiteral("simulated"), true, {}, {QStringLiteral("ride")}});
    QCOMPARE(troubles(facts),
             QStringList{QStringLiteral(
                 "There is no CAN interface. Plug an adapter in; a simulated vehicle needs none. | "
                 "draxelctl health --bus simulated:ride")});
    facts.backEnds.append({QStringLiteral("peakcan"), true, {}, {QStringLiteral("usb0")}});
    QCOMPARE(troubles(facts), QStringList()); // there is one of another back end
}

void tst_Doctor::kernelWithoutCan()
{
    ComputerFacts facts = goodComputer();
    facts.socketError = QStringLiteral("Address family not supported by protocol");
    QCOMPARE(troubles(facts),
             QStringList{QStringLiteral(
                 "This kernel makes no CAN sockets: Address family not supported by protocol. | sudo "
                 "modprobe can_raw")});
    QVERIFY(Diagnosis::worst(Diagnosis::of(facts)) == ComponentState::Fault);
}

void tst_Doctor::adapters()
{
    ComputerFacts facts = goodComputer();
    facts.adapters = {{QStringLiteral("PEAK PCAN-USB"), QStringLiteral("peak_usb"), false},
                      {QStringLiteral("Kvaser USB"), QStringLiteral("kvaser_usb"), true}};
    QCOMPARE(troubles(facts),
             QStringList{QStringLiteral("PEAK PCAN-USB is plugged in, but no driver has taken it. | sudo "
                                        "modprobe peak_usb")});
}

void tst_Doctor::rights()
{
    ComputerFacts facts = goodComputer();
    facts.deviceFiles = {{QStringLiteral("/dev/ttyACM0"), QStringLiteral("dialout"), false},
                         {QStringLiteral("/dev/ttyUSB0"), QStringLiteral("dialout"), true},
                         {QStringLiteral("/dev/pcan0"), QStringLiteral("root"), false}};
    QCOMPARE(
        troubles(facts),
        (QStringList{
            QStringLiteral("/dev/ttyACM0 may not be used by this user, who is not in the group dialout. It "
                           "holds from the next login on. | sudo usermod -aG dialout kim"),
            QStringLiteral("/dev/pcan0 may not be used by this user. | sudo chmod a+rw /dev/pcan0")}));
}

void tst_Doctor::tools()
{
    ComputerFacts facts = goodComputer();
    facts.hasIpCommand = false;
    facts.hasSocketCanLibrary = false;
    QCOMPARE(
        troubles(facts),
        (QStringList{
            QStringLiteral("The command \"ip\", which switches CAN interfaces on, is missing. | sudo apt "
                           "install iproute2"),
            QStringLiteral("The library libsocketcan is missing: --bitrate cannot set the bit rate of an "
                           "interface. | sudo apt install libsocketcan-dev")}));
}

void tst_Doctor::backEnds()
{
    ComputerFacts facts = goodComputer();
    facts.backEnds = {{QStringLiteral("peakcan"), true, QStringLiteral("no library"), {}},
                      {QStringLiteral("passthrucan"), true, {}, {}},
                      {QStringLiteral("vectorcan"), false, {}, {}},
                      {QStringLiteral("socketcan"), false, {}, {}}};
    QCOMPARE(troubles(facts),
             (QStringList{
                 QStringLiteral("The back end peakcan cannot be used: no library. On Linux its adapters work "
                                "through socketcan."),
                 QStringLiteral("The back end vectorcan is not installed."),
                 QStringLiteral("The back end socketcan is not installed. | sudo apt install "
                                "libqt5serialbus5-plugins")}));
    QVERIFY(Diagnosis::worst(Diagnosis::of(facts)) == ComponentState::Fault);
    facts.backEnds.removeLast();
    QVERIFY(Diagnosis::worst(Diagnosis::of(facts)) == ComponentState::Note);
}

void tst_Doctor::looksAtInterfaces()
{
    FakeComputer computer;
    computer.addInterface(QStringLiteral("eth0"), "1\n", "0x1003\n");
    computer.addInterface(QStringLiteral("can0"), "280\n", "0x40081\n");
    computer.addInterface(QStringLiteral("vcan0"), "280\n", "0x80\n");
    computer.write(QStringLiteral("net/can0/device/uevent"), "");
    computer.write(QStringLiteral("net/can0/statistics/rx_over_errors"), "3\n");
    computer.write(QStringLiteral("net/can0/statistics/rx_dropped"), "4\n");
    computer.controller.bitRate = 125000;
    const QVector<InterfaceFacts> found = Computer::interfaces(computer.places);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0).name, QStringLiteral("can0"));
    QVERIFY(found.at(0).isUp && !found.at(0).isVirtual());
    QCOMPARE(*found.at(0).queueLength, 10);
    QCOMPARE(*found.at(0).lost, qint64(7));
    QCOMPARE(*found.at(0).controller.bitRate, 125000);
    QCOMPARE(found.at(1).name, QStringLiteral("vcan0"));
    QVERIFY(!found.at(1).isUp && found.at(1).isVirtual());
    QVERIFY(!found.at(1).lost);
    QCOMPARE(computer.asked, QStringList{QStringLiteral("can0")}); // a virtual one has no controller
}

/*! It has no device in the network, as virtual ones. */
void tst_Doctor::serialLineIsNotVirtual()
{
    FakeComputer computer;
    computer.addInterface(QStringLiteral("slcan0"), "280\n", "0x10c1\n");
    computer.addInterface(QStringLiteral("vxcan0"), "280\n", "0x10c1\n");
    ComputerFacts facts = goodComputer();
    facts.interfaces = Computer::interfaces(computer.places);
    const QVector<Diagnosed> all = Diagnosis::of(facts);
    QCOMPARE(all.at(0).text, QStringLiteral("slcan0 is switched on; its driver does not tell the bit rate."));
    QCOMPARE(all.at(1).text, QStringLiteral("vxcan0 is switched on; it is virtual and leads to no vehicle "
                                            "outside this computer."));
    QCOMPARE(computer.asked, QStringList());
}

void tst_Doctor::looksAtOddInterfaces()
{
    FakeComputer computer;
    computer.addInterface(QStringLiteral("can0"), "280\n", "nonsense");
    computer.write(QStringLiteral("net/can0/tx_queue_len"), "99999999999999\n");
    computer.addInterface(QStringLiteral("can1"), "", "0x1");
    computer.addInterface(QStringLiteral("can2"), QByteArray(100000, '2').constData(), "0x1");
    const QVector<InterfaceFacts> found = Computer::interfaces(computer.places);
    QCOMPARE(found.size(), 1);
    QVERIFY(!found.at(0).isUp);
    QCOMPARE(*found.at(0).queueLength, std::numeric_limits<int>::max());
}

void tst_Doctor::looksAtAdapters()
{
    FakeComputer computer;
    computer.write(QStringLiteral("usb/1-1/idVendor"), "0c72\n");
    computer.write(QStringLiteral("usb/1-1/idProduct"), "000c\n");
    computer.write(QStringLiteral("usb/1-2/idVendor"), "1d50\n");
    computer.write(QStringLiteral("usb/1-2/idProduct"), "606f\n");
    computer.write(QStringLiteral("usb/1-2/1-2:1.0/net/can0/type"), "280\n");
    computer.write(QStringLiteral("usb/1-3/idVendor"), "1d50\n");
    computer.write(QStringLiteral("usb/1-3/idProduct"), "6070\n"); // something else
    computer.write(QStringLiteral("usb/1-4/idVendor"), "xyz\n");
    computer.write(QStringLiteral("usb/1-4/idProduct"), "\n");
    const QVector<AdapterFacts> found = Computer::adapters(computer.places);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0).name, QStringLiteral("PEAK PCAN-USB"));
    QCOMPARE(found.at(0).module, QStringLiteral("peak_usb"));
    QVERIFY(!found.at(0).hasInterface);
    QCOMPARE(found.at(1).name, QStringLiteral("candleLight (gs_usb)"));
    QVERIFY(found.at(1).hasInterface);
}

void tst_Doctor::looksAtDeviceFiles()
{
    FakeComputer computer;
    computer.write(QStringLiteral("dev/ttyACM0"), "");
    computer.write(QStringLiteral("dev/tty0"), "");
    computer.write(QStringLiteral("dev/pcanusb32"), "");
    const QDir devices(computer.places.devices);
    const QFile::Permissions own = QFile::ReadOwner | QFile::WriteOwner;
    QVERIFY(QFile::setPermissions(devices.filePath(QStringLiteral("pcanusb32")), own));
    QVERIFY(QFile::setPermissions(devices.filePath(QStringLiteral("ttyACM0")),
                                  own | QFile::ReadGroup | QFile::WriteGroup));
    const QVector<DeviceFileFacts> found = Computer::deviceFiles(computer.places);
    QCOMPARE(found.size(), 2);
    QVERIFY(found.at(0).path.endsWith(QStringLiteral("/dev/pcanusb32")));
    QVERIFY(found.at(1).path.endsWith(QStringLiteral("/dev/ttyACM0")));
    QVERIFY(found.at(0).isUsable && found.at(0).group.isEmpty()); // nobody else may
    QVERIFY(found.at(1).isUsable && !found.at(1).group.isEmpty());
}

void tst_Doctor::foldersThatAreNotThere()
{
    ComputerPlaces places;
    places.network = places.usb = places.devices = QStringLiteral("/no/such/folder");
    QVERIFY(Computer::interfaces(places).isEmpty());
    QVERIFY(Computer::adapters(places).isEmpty());
    QVERIFY(Computer::deviceFiles(places).isEmpty());
}

/*! With this computer, whatever it has. */
void tst_Doctor::program()
{
    const Result result = run({QStringLiteral("doctor"), QStringLiteral("--json")});
    const QJsonObject json = QJsonDocument::fromJson(result.output.toUtf8()).object();
    const QString state = json.value(QStringLiteral("state")).toString();
    const bool isBad = state == QLatin1String("warning") || state == QLatin1String("fault");
    QVERIFY2(QStringList({QStringLiteral("good"), QStringLiteral("note"), QStringLiteral("warning"),
                          QStringLiteral("fault")})
                 .contains(state),
             qPrintable(result.output));
    QCOMPARE(result.status, isBad ? 8 : 0);
    QStringList backEnds;
    for (const QJsonValue &value : json.value(QStringLiteral("items")).toArray()) {
        const QJsonObject item = value.toObject();
        QVERIFY(!item.value(QStringLiteral("text")).toString().isEmpty());
        if (item.value(QStringLiteral("topic")).toString() == QLatin1String("backEnd"))
            backEnds.append(item.value(QStringLiteral("subject")).toString());
    }
    for (const char *name :
         {"socketcan", "peakcan", "tinycan", "vectorcan", "systeccan", "passthrucan", "simulated"})
        QVERIFY2(backEnds.contains(QLatin1String(name)), name);
    const Result text = run({QStringLiteral("doctor")});
    QCOMPARE(text.status, result.status);
    QVERIFY2(text.output.contains(QStringLiteral("The back end ")), qPrintable(text.output));
}

void tst_Doctor::usage()
{
    const Result result = run({QStringLiteral("doctor"), QStringLiteral("--fast")});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.startsWith(QStringLiteral("draxelctl doctor: ")), qPrintable(result.errors));
}

QTEST_GUILESS_MAIN(tst_Doctor)
#include "tst_doctor.moc"
