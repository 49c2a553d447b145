// SPDX-License-Identifier: MIT
#include "program.h"

#include <QCanBus>
#include <QCanBusDevice>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/*! Traces as a bus, as a snapshot, and sent to a bus: what the program says, writes and sends. */
class tst_TracePlayback : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void interfacesNameTheBackEnd();
    void objectOfATrace();
    void gapsOfATraceAreNamed();
    void snapshotOfAPlayedTrace();
    void listeningEndsWithTheTrace();
    void askingDoesNot();
    void endOfATraceIsNoFault();
    void stepsThroughATrace();
    void stepsOfAFile();
    void snapshotFromATrace();
    void snapshotFromAnotherChannel();
    void snapshotOfStandardInput();
    void unreadableLinesAreSaid();
    void badSnapshotArguments_data();
    void badSnapshotArguments();
    void emptyTraces_data();
    void emptyTraces();
    void replaysToAVirtualBus();
    void replaysOneChannel();
    void realBusMustBeNamedTwice_data();
    void realBusMustBeNamedTwice();
    void saysWhatActsOnDevices();
    void badReplayArguments_data();
    void badReplayArguments();
    void interruptedReplay();
    void interruptEndsWhatIsToBeReplayed();
    void interruptEndsTheInputOfASnapshot_data();
    void interruptEndsTheInputOfASnapshot();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QString write(const char *name, const QByteArray &text) const;
    Result snapshot(const QStringList &more) const;
    QJsonObject load(const char *name = "out.dxsnap") const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_ride;
};

namespace {

// Node 2 beats; somebody reads its device type, its name in segments, an object that it refuses and one that it does not
// have. Node 9 is only heard. On another channel node 3 is read.
const char ride[] = "(1600000000.000000) can0 702#05\n"
                    "(1600000000.001000) can0 709#7F\n"
                    "(1600000000.100000) can0 602#4000100000000000\n"
                    "(1600000000.102000) can0 582#43001000C6010047\n"
                    "(1600000000.110000) can0 602#4008100000000000\n"
                    "(1600000000.111000) can0 582#410810000A000000\n"
                    "(1600000000.112000) can0 602#6000000000000000\n"
                    "(1600000000.113000) can0 582#0044582D53656E73\n"
                    "(1600000000.114000) can0 602#7000000000000000\n"
                    "(1600000000.115000) can0 582#1965205400000000\n"
                    "(1600000000.120000) can0 602#4005600000000000\n"
                    "(1600000000.121000) can0 582#8005600000000008\n"
                    "(1600000000.130000) can0 602#4001600000000000\n"
                    "(1600000000.131000) can0 582#8001600000000206\n"
                    "(1600000000.140000) can1 703#05\n"
                    "(1600000000.150000) can1 603#4000100000000000\n"
                    "(1600000000.151000) can1 583#4300100007000000\n"
                    "(1600000000.500000) can0 702#05\n"
                    "(1600000001.000000) can0 702#05\n"
                    "(1600000001.500000) can0 702#05\n";
constexpr int framesOfCan0 = 17;

QJsonObject nodeOf(const QJsonObject &snapshot, int id)
{
    const QJsonArray nodes = snapshot.value(QLatin1String("nodes")).toArray();
    for (const QJsonValue &node : nodes) {
        if (node.toObject().value(QLatin1String("id")).toInt() == id)
            return node.toObject();
    }
    return QJsonObject();
}

QJsonObject entryOf(const QJsonObject &node, int index, int sub)
{
    const QJsonArray entries = node.value(QLatin1String("entries")).toArray();
    for (const QJsonValue &value : entries) {
        const QJsonObject entry = value.toObject();
        if (entry.value(QLatin1String("index")).toInt() == index
            && entry.value(QLatin1String("sub")).toInt() == sub)
            return entry;
    }
    return QJsonObject();
}

/*! Another program on a virtual bus of its own. */
class Listener
{
public:
    Listener()
    {
        QString error;
        static const quint16 port = freePort(); // the back end has one server in a program
        m_address = QStringLiteral("tcp://127.0.0.1:%1/can0").arg(port);
        m_device.reset(QCanBus::instance()->createDevice(QStringLiteral("virtualcan"), m_address, &error));
        if (m_device == nullptr || !m_device->connectDevice()
            || !QTest::qWaitFor([this] { return m_device->state() == QCanBusDevice::ConnectedState; }))
            qFatal("%s", qPrintable(error));
        QObject::connect(m_device.get(), &QCanBusDevice::framesReceived, m_device.get(), [this] {
            const QVector<QCanBusFrame> frames = m_device->readAllFrames();
            for (const QCanBusFrame &frame : frames)
                texts.append(QStringLiteral("%1#%2").arg(QString::number(frame.frameId(), 16),
                                                         QString::fromLatin1(frame.payload().toHex())));
        });
    }

    QString bus() const { return QStringLiteral("virtualcan:") + m_address; }

    QStringList texts;

private:
    QString m_address;
    std::unique_ptr<QCanBusDevice> m_device;
};

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

} // namespace

void tst_TracePlayback::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_ride = write("ride.log", ride);
}

QString tst_TracePlayback::write(const char *name, const QByteArray &text) const
{
    QFile file(path(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(text);
    return file.fileName();
}

Result tst_TracePlayback::snapshot(const QStringList &more) const
{
    return run(QStringList{QStringLiteral("snapshot"), QStringLiteral("--output"), path("out.dxsnap")}
               + more);
}

QJsonObject tst_TracePlayback::load(const char *name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

void tst_TracePlayback::interfacesNameTheBackEnd()
{
    const QStringList data{QStringLiteral("XDG_DATA_HOME=") + m_folder->path()};
    const QStringList interfaces{QStringLiteral("interfaces")};
    const Result none = run(interfaces, data);
    QVERIFY2(none.output.contains(QLatin1String("\ntrace\n  has no interface now\n")),
             qPrintable(none.output));
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("draxel/traces")));
    const QString kept = write("draxel/traces/kept.log", ride);
    const Result one = run(interfaces, data);
    QVERIFY2(one.output.contains(QStringLiteral("\n  trace:%1  (Trace of ").arg(kept)),
             qPrintable(one.output));
}

void tst_TracePlayback::objectOfATrace()
{
    const Result number
        = run({QStringLiteral("get"), QStringLiteral("--bus"), QStringLiteral("trace:") + m_ride,
               QStringLiteral("2"), QStringLiteral("1000h")});
    QCOMPARE(number.status, 0);
    QVERIFY2(number.output.contains(QLatin1String("0x470001C6")), qPrintable(number.output));
    const Result text
        = run({QStringLiteral("get"), QStringLiteral("--bus"), QStringLiteral("trace:") + m_ride,
               QStringLiteral("2"), QStringLiteral("1008h")});
    QVERIFY2(text.output.contains(QLatin1String("DX-Sense T")), qPrintable(text.output));
}

void tst_TracePlayback::gapsOfATraceAreNamed()
{
    const QString bus = QStringLiteral("trace:") + m_ride;
    const Result never = run(
        {QStringLiteral("get"), QStringLiteral("--bus"), bus, QStringLiteral("2"), QStringLiteral("1001h")});
    QCOMPARE(never.status, 7);
    QVERIFY2(
        never.errors.contains(QLatin1String("The trace holds no answer of the device to this (0800 F001h)")),
        qPrintable(never.errors));
    const Result later = run({QStringLiteral("get"), QStringLiteral("--bus"),
                              bus + QStringLiteral("?answers=past&speed=step"), QStringLiteral("2"),
                              QStringLiteral("1000h")});
    QCOMPARE(later.status, 7);
    QVERIFY2(
        later.errors.contains(QLatin1String("The device answers this only later in the trace (0800 F002h)")),
        qPrintable(later.errors));
}

void tst_TracePlayback::snapshotOfAPlayedTrace()
{
    const Result result
        = snapshot({QStringLiteral("--bus"), QStringLiteral("trace:") + m_ride, QStringLiteral("--quick")});
    QCOMPARE(result.status, 4);
    const QJsonObject node = nodeOf(load(), 2);
    QCOMPARE(entryOf(node, 0x1000, 0).value(QLatin1String("value")).toDouble(), double(0x470001C6));
    QCOMPARE(entryOf(node, 0x6001, 0).value(QLatin1String("gap")).toString(), QStringLiteral("absent"));
    QCOMPARE(entryOf(node, 0x1018, 1).value(QLatin1String("gap")).toString(), QStringLiteral("abort"));
    QCOMPARE(entryOf(node, 0x1018, 1).value(QLatin1String("abortCode")).toDouble(), double(0x0800F001));
    QVERIFY2(
        result.output.contains(QLatin1String(
            "    Not recorded: The trace holds no answer of the device to this (0800 F001h). 1001h.0, ")),
        qPrintable(result.output));
}

void tst_TracePlayback::listeningEndsWithTheTrace()
{
    const Result result = run({QStringLiteral("events"), QStringLiteral("--json"), QStringLiteral("--bus"),
                               QStringLiteral("trace:%1?speed=max").arg(m_ride)});
    QCOMPARE(result.errors, QStringLiteral("The trace is over.\n"));
    QCOMPARE(result.status, 0);
    // At the time of then.
    const QJsonArray events
        = QJsonDocument::fromJson(result.output.toUtf8()).object()[QLatin1String("events")].toArray();
    const QString time = events.first().toObject().value(QLatin1String("time")).toString();
    QCOMPARE(QDateTime::fromString(time, Qt::ISODateWithMs).toMSecsSinceEpoch(), 1600000000000);
}

/*! Its devices answer also when it is over. */
void tst_TracePlayback::askingDoesNot()
{
    const Result result = run({QStringLiteral("watch"), QStringLiteral("--bus"),
                               QStringLiteral("trace:%1?speed=max").arg(m_ride), QStringLiteral("--for"),
                               QStringLiteral("5s"), QStringLiteral("2:1000:0")});
    QVERIFY2(result.errors.startsWith(QStringLiteral("The trace is over.\n")), qPrintable(result.errors));
    QVERIFY2(result.output.contains(QStringLiteral("Device type (node 2, 1000h.0)")),
             qPrintable(result.output));
    QCOMPARE(result.status, 0);
}

/*! Nobody is late because nothing more was recorded. */
void tst_TracePlayback::endOfATraceIsNoFault()
{
    const QString beats = write("beats.log", "(1600000000.000000) can0 702#05\n"
                                             "(1600000000.500000) can0 702#05\n"
                                             "(1600000001.000000) can0 702#05\n"
                                             "(1600000001.500000) can0 702#05\n");
    const Result result = run({QStringLiteral("monitor"), QStringLiteral("--for"), QStringLiteral("60s"),
                               QStringLiteral("--bus"), QStringLiteral("trace:") + beats});
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(QStringLiteral("good: 1 device is heard")), qPrintable(result.output));
    QVERIFY2(!result.output.contains(QStringLiteral("fault")), qPrintable(result.output));
}

void tst_TracePlayback::stepsThroughATrace()
{
    Program program({QStringLiteral("events"), QStringLiteral("--bus"),
                     QStringLiteral("trace:%1?speed=step").arg(m_ride)});
    QVERIFY(program.waitForErrors(
        QStringLiteral("The trace waits: Enter plays a frame, a number so many. Ctrl+C ends it.\n")));
    program.type("\n");
    QVERIFY(program.waitForOutput(QStringLiteral("Node 2: It is heard: working")));
    program.type("some\n0\n");
    QVERIFY(program.waitForErrors(QStringLiteral("\"some\" is no number of frames.\n"
                                                 "\"0\" is no number of frames.\n")));
    program.type("1\n");
    QVERIFY(program.waitForOutput(QStringLiteral("Node 9: It is heard:")));
    program.type("1000");
    program.endInput();
    QVERIFY(program.waitForErrors(QStringLiteral("The trace is over.\n")));
    QCOMPARE(program.finish().status, 0);
}

/*! Who has asked for all that he wanted is not waited for. */
void tst_TracePlayback::stepsOfAFile()
{
    QProcess process;
    process.setStandardInputFile(write("steps.txt", "1\n"));
    process.start(QStringLiteral(DRAXELCTL), {QStringLiteral("events"), QStringLiteral("--bus"),
                                              QStringLiteral("trace:%1?speed=step").arg(m_ride)});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    const QByteArray output = process.readAllStandardOutput();
    QVERIFY2(output.contains("Node 2: ") && !output.contains("Node 9: "), output.constData());
}

void tst_TracePlayback::snapshotFromATrace()
{
    const Result result = snapshot(
        {QStringLiteral("--from-trace"), m_ride, QStringLiteral("--note"), QStringLiteral("sent by mail")});
    QCOMPARE(result.status, 4); // node 9 was not read
    QVERIFY2(result.output.startsWith(QLatin1String(
                 "Node 2, DX-Sense T: 2 values read, 1 objects not there, 1 could not be read\n"
                 "    The device refused it: General error (0800 0000h). 6005h.0\n"
                 "Node 9: The reading was ended before all was asked.\n"
                 "Total: 2 nodes, 2 values read, 1 objects not there, 1 could not be read, 1.5 s\n")),
             qPrintable(result.output));
    QCOMPARE(
        result.errors,
        QStringLiteral("The trace has more than one channel. The snapshot is of the first one; --channel "
                       "names another.\nHeard in the trace, but read by nobody: node 9.\n"));
    const QJsonObject written = load();
    QCOMPARE(written.value(QLatin1String("scope")).toString(), QStringLiteral("recorded"));
    QCOMPARE(written.value(QLatin1String("bus")).toString(), QStringLiteral("trace:") + m_ride);
    QCOMPARE(written.value(QLatin1String("note")).toString(), QStringLiteral("sent by mail"));
    QCOMPARE(
        QDateTime::fromString(written.value(QLatin1String("time")).toString(), Qt::ISODateWithMs).toUTC(),
        QDateTime(QDate(2020, 9, 13), QTime(12, 26, 40), Qt::UTC));
    const QJsonObject node = nodeOf(written, 2);
    QCOMPARE(node.value(QLatin1String("nmtState")).toString(), QStringLiteral("operational"));
    QCOMPARE(entryOf(node, 0x1008, 0).value(QLatin1String("value")).toString(), QStringLiteral("DX-Sense T"));
    QCOMPARE(entryOf(node, 0x1000, 0).value(QLatin1String("ms")).toInt(), 102);
    QCOMPARE(run({QStringLiteral("show"), path("out.dxsnap")}).status, 0);
}

void tst_TracePlayback::snapshotFromAnotherChannel()
{
    const Result result = snapshot({QStringLiteral("--from-trace"), m_ride, QStringLiteral("--channel"),
                                    QStringLiteral("can1"), QStringLiteral("--json")});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QStringLiteral("Wrote %1\n").arg(path("out.dxsnap")));
    const QJsonObject json = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QCOMPARE(json.value(QLatin1String("complete")), QJsonValue(true));
    QCOMPARE(json.value(QLatin1String("nodes")).toArray().size(), 1);
    QCOMPARE(nodeOf(json, 3).value(QLatin1String("values")).toInt(), 1);
}

void tst_TracePlayback::snapshotOfStandardInput()
{
    QProcess process;
    process.setStandardInputFile(m_ride);
    process.start(QStringLiteral(DRAXELCTL),
                  {QStringLiteral("snapshot"), QStringLiteral("--from-trace"), QStringLiteral("-"),
                   QStringLiteral("--output"), path("out.dxsnap")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 4);
    QCOMPARE(entryOf(nodeOf(load(), 2), 0x1000, 0).value(QLatin1String("value")).toDouble(),
             double(0x470001C6));
}

void tst_TracePlayback::unreadableLinesAreSaid()
{
    const QString broken = write("broken.log", "(1600000000.000000) can0 702#05\n"
                                               "(1600000000.1000\n"
                                               "(1600000000.100000) can0 602#4000100000000000\n"
                                               "(1600000000.102000) can0 582#43001000C6010047\n");
    const Result result = snapshot({QStringLiteral("--from-trace"), broken});
    QCOMPARE(result.status, 7);
    QVERIFY2(result.errors.startsWith(broken + QStringLiteral(":2: ")), qPrintable(result.errors));
    QCOMPARE(nodeOf(load(), 2).value(QLatin1String("entries")).toArray().size(), 1);
}

void tst_TracePlayback::badSnapshotArguments_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("sentence");
    const auto add = [](const char *arguments, const char *sentence) {
        QTest::newRow(arguments) << QString::fromUtf8(arguments) << QString::fromUtf8(sentence);
    };
    add("--note x", "What is meant? Name a --bus, or a trace with --from-trace.");
    add("--from-trace a.log --bus simulated:pedelec", "Name either a --bus or a trace, not both.");
    add("--bus simulated:pedelec --channel can0", "--channel is for traces only.");
    add("--from-trace a.log --quick", "A trace is not asked; leave out --quick.");
    add("--from-trace a.log --node 1", "A trace is not asked; leave out --node.");
    add("--from-trace a.log --timeout 500", "A trace is not asked; leave out --timeout.");
    add("--from-trace a.log --resume b.dxsnap", "A trace is not asked; leave out --resume.");
    add("--from-trace a.log --bitrate 250000", "A trace is not asked; leave out --bitrate.");
}

void tst_TracePlayback::badSnapshotArguments()
{
    QFETCH(QString, arguments);
    QFETCH(QString, sentence);
    const Result result = snapshot(arguments.split(QLatin1Char(' ')));
    QCOMPARE(result.status, 1);
    QCOMPARE(result.errors.section(QLatin1Char('\n'), 0, 0),
             QStringLiteral("draxelctl snapshot: ") + sentence);
    QVERIFY(!QFile::exists(path("out.dxsnap")));
}

void tst_TracePlayback::emptyTraces_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("sentence"); // %1: the file
    QTest::newRow("nobody is heard") << QByteArray("(1600000000.000000) can0 182#05\n") << QStringList() << 3
                                     << QStringLiteral("In the trace %1 no node is heard.\n");
    QTest::newRow("another channel") << QByteArray("(1600000000.000000) can0 702#05\n")
                                     << words("--channel can7") << 5
                                     << QStringLiteral(
                                            "The trace %1 has no channel \"can7\". There are: can0.\n");
}

void tst_TracePlayback::emptyTraces()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, more);
    QFETCH(int, status);
    QFETCH(QString, sentence);
    const QString file = write("empty.log", text);
    const Result result = snapshot(QStringList{QStringLiteral("--from-trace"), file} + more);
    QCOMPARE(result.errors, sentence.arg(file));
    QCOMPARE(result.status, status);
    QVERIFY(!QFile::exists(path("out.dxsnap")));
}

void tst_TracePlayback::replaysToAVirtualBus()
{
    Listener listener;
    const Result result
        = run({QStringLiteral("trace"), QStringLiteral("replay"), m_ride, QStringLiteral("--bus"),
               listener.bus(), QStringLiteral("--speed"), QStringLiteral("max")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output,
             QStringLiteral("Frames to be sent to %1: 17. Ctrl+C ends it.\nSent all of them.\n")
                 .arg(listener.bus()));
    QTRY_COMPARE(listener.texts.size(), framesOfCan0);
    QCOMPARE(listener.texts.mid(0, 4),
             QStringList({QStringLiteral("702#05"), QStringLiteral("709#7f"),
                          QStringLiteral("602#4000100000000000"), QStringLiteral("582#43001000c6010047")}));
    QCOMPARE(listener.texts.last(), QStringLiteral("702#05"));
}

void tst_TracePlayback::replaysOneChannel()
{
    Listener listener;
    const Result result = run({QStringLiteral("trace"), QStringLiteral("replay"), m_ride,
                               QStringLiteral("--bus"), listener.bus(), QStringLiteral("--channel"),
                               QStringLiteral("can1"), QStringLiteral("--speed"), QStringLiteral("1000")});
    QCOMPARE(result.status, 0);
    QTRY_COMPARE(listener.texts,
                 QStringList({QStringLiteral("703#05"), QStringLiteral("603#4000100000000000"),
                              QStringLiteral("583#4300100007000000")}));
}

void tst_TracePlayback::realBusMustBeNamedTwice_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("sentence");
    const auto add = [](const char *arguments, const char *sentence) {
        QTest::newRow(arguments) << QString::fromUtf8(arguments) << QString::fromUtf8(sentence);
    };
    add("--bus socketcan:nosuchcan0",
        "Real devices may be on socketcan:nosuchcan0, and what was recorded acts on them: motors may start, "
        "settings may change. If that is meant, name the bus once more: --really socketcan:nosuchcan0");
    add("--bus peakcan:usb0", "Real devices may be on peakcan:usb0, and what was recorded acts on them: "
                              "motors may start, settings may "
                              "change. If that is meant, name the bus once more: --really peakcan:usb0");
    add("--bus socketcan:can0 --really socketcan:can1",
        "--bus names socketcan:can0, but --really socketcan:can1; they must be the same.");
    add("--bus virtualcan:can0 --really socketcan:can0",
        "--bus names virtualcan:can0, but --really socketcan:can0; they must be the same.");
    add("--bus trace:a.log", "trace:a.log is a trace itself: nothing can be sent to it.");
}

void tst_TracePlayback::realBusMustBeNamedTwice()
{
    QFETCH(QString, arguments);
    QFETCH(QString, sentence);
    const Result result = run(QStringList{QStringLiteral("trace"), QStringLiteral("replay"), m_ride}
                              + arguments.split(QLatin1Char(' ')));
    QCOMPARE(result.status, 1);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors.section(QLatin1Char('\n'), 0, 0),
             QStringLiteral("draxelctl trace replay: ") + sentence);
}

/*! Before the bus is opened, which is not there. */
void tst_TracePlayback::saysWhatActsOnDevices()
{
    const QString acting = write("acting.log", "(1.000000) can0 000#0100\n"
                                               "(1.000000) can0 080#\n"
                                               "(1.000000) can0 182#00\n"
                                               "(1.000000) can0 202#00\n"
                                               "(1.000000) can0 602#2B17100000010000\n"
                                               "(1.000000) can0 602#C217100000010000\n"
                                               "(1.000000) can0 602#4017100000000000\n"
                                               "(1.000000) can0 582#4B17100000010000\n"
                                               "(1.000000) can0 082#0000000000000000\n"
                                               "(1.000000) can0 702#05\n"
                                               "(1.000000) can0 7E5#04\n"
                                               "(1.000000) can0 00000202#04\n"
                                               "(1.000000) can0 20000088#0000000000000000\n");
    const Result result = run({QStringLiteral("trace"), QStringLiteral("replay"), acting,
                               QStringLiteral("--bus"), QStringLiteral("socketcan:nosuchcan0"),
                               QStringLiteral("--really"), QStringLiteral("socketcan:nosuchcan0")});
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output,
             QStringLiteral("Frames to be sent to socketcan:nosuchcan0: 12. Ctrl+C ends it.\n"));
    QCOMPARE(result.errors.section(QLatin1Char('\n'), 0, 0),
             QStringLiteral("Among them is what acts on devices: NMT commands: 1, process data: 2, SYNC: 1, "
                            "writings of objects: 2, frames that are not of CANopen's usual ones: 2."));
}

void tst_TracePlayback::badReplayArguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("speed") << words("%1 --bus simulated:pedelec --speed 0") << 1
                           << QStringLiteral(
                                  "draxelctl trace replay: --speed takes a number from 0.01 to 1000, or "
                                  "\"max\", not \"0\".");
    QTest::newRow("no bus") << words(
        "%1") << 1 << QStringLiteral("draxelctl trace replay: --bus is missing: which bus is meant?");
    QTest::newRow("no file") << words("--bus simulated:pedelec") << 1
                             << QStringLiteral("draxelctl trace replay: FILE is missing.");
    QTest::newRow("channel") << words("%1 --bus simulated:pedelec --channel can7") << 5
                             << QStringLiteral(
                                    "The trace %1 has no channel \"can7\". There are: can0, can1.");
}

void tst_TracePlayback::badReplayArguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, sentence);
    arguments.replaceInStrings(QStringLiteral("%1"), m_ride);
    const Result result = run(QStringList{QStringLiteral("trace"), QStringLiteral("replay")} + arguments);
    QCOMPARE(result.status, status);
    QCOMPARE(result.errors.section(QLatin1Char('\n'), 0, 0), sentence.replace(QLatin1String("%1"), m_ride));
}

void tst_TracePlayback::interruptedReplay()
{
    Listener listener;
    Program program({QStringLiteral("trace"), QStringLiteral("replay"), m_ride, QStringLiteral("--bus"),
                     listener.bus(), QStringLiteral("--speed"), QStringLiteral("0.01")});
    QTRY_VERIFY(!listener.texts.isEmpty());
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.status, 130);
    QVERIFY2(result.errors.endsWith(QLatin1String(" of 17.\n")), qPrintable(result.errors));
}

/*! Who wants it ended does not want half of it on the bus. */
void tst_TracePlayback::interruptEndsWhatIsToBeReplayed()
{
    Listener listener;
    Program program({QStringLiteral("trace"), QStringLiteral("replay"), QStringLiteral("-"),
                     QStringLiteral("--bus"), listener.bus()});
    program.type("(1.0) can0 123#11\n(2.0) can0 123##1\n");
    QVERIFY(program.waitForErrors(QStringLiteral("A CAN FD frame")));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.status, 130);
    QVERIFY2(result.errors.endsWith(QLatin1String("Sent 0 of 1.\n")), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
    QCOMPARE(listener.texts, QStringList());
}

void tst_TracePlayback::interruptEndsTheInputOfASnapshot_data()
{
    QTest::addColumn<QByteArray>("trace");
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("isWritten");

    QTest::newRow("Ctrl+C") << QByteArray(ride) << SIGINT << 130 << true;
    QTest::newRow("SIGTERM") << QByteArray(ride) << SIGTERM << 143 << true;
    QTest::newRow("nothing heard") << QByteArray() << SIGINT << 130 << false;
}

void tst_TracePlayback::interruptEndsTheInputOfASnapshot()
{
    QFETCH(QByteArray, trace);
    QFETCH(int, number);
    QFETCH(int, status);
    QFETCH(bool, isWritten);
    Program program({QStringLiteral("snapshot"), QStringLiteral("--from-trace"), QStringLiteral("-"),
                     QStringLiteral("--output"), path("out.dxsnap")});
    program.type(trace + "(1600000002.0) can0 123##1\n");
    QVERIFY(program.waitForErrors(QStringLiteral("A CAN FD frame")));
    program.signal(number);
    QCOMPARE(program.finish().status, status);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).join(QLatin1Char(' ')),
             isWritten ? QStringLiteral("out.dxsnap ride.log") : QStringLiteral("ride.log"));
    if (isWritten)
        QCOMPARE(entryOf(nodeOf(load(), 2), 0x1000, 0).value(QLatin1String("value")).toDouble(),
                 double(0x470001C6));
}

QTEST_GUILESS_MAIN(tst_TracePlayback)
#include "tst_traceplayback.moc"
