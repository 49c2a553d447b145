// SPDX-License-Identifier: MIT
#include "program.h"
#include "pseudoterminal.h"

#include <cli/commands/monitorlisting.h>
#include <cli/core/textcolumns.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QStringList words(const char *line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '));
}

NodeNumbers node(int id)
{
    NodeNumbers node;
    node.id = static_cast<quint8>(id);
    node.frames = 1;
    node.state = CanOpen::NmtState::Operational;
    node.heartbeat.period = 500;
    node.load = 0.004;
    return node;
}

/*! With so many nodes, of which the last is late, and so many events. */
MonitorView viewOf(int nodes, int events)
{
    MonitorView view;
    view.bus = QStringLiteral("socketcan:can0");
    view.time = QDateTime({2026, 9, 3}, {12, 3, 11});
    view.numbers.lastLoad = 0.31;
    view.numbers.kinds[0].lastSecond = 60;
    view.numbers.kinds[4].lastSecond = 7;
    for (int i = 1; i <= nodes; ++i)
        view.numbers.nodes.append(node(i));
    HealthLight load;
    load.state = ComponentState::Good;
    load.text = QStringLiteral("The bus is used to 31 %.");
    HealthLight late;
    late.subject = HealthLight::Subject::Nodes;
    late.state = ComponentState::Warning;
    late.text = QStringLiteral("Node %1: heartbeat late.").arg(nodes);
    Finding finding;
    finding.severity = Severity::Warning;
    finding.nodeId = static_cast<quint8>(nodes);
    finding.text = QStringLiteral("heartbeat late.");
    late.findings.append(finding);
    HealthLight errors;
    errors.subject = HealthLight::Subject::Errors;
    errors.text = QStringLiteral("Not everything could be judged.");
    view.lights = {load, late, errors};
    for (int i = 1; i <= events; ++i)
        view.events.append(
            {Severity::Fault, QStringLiteral("12:00:%1 event").arg(i, 2, 10, QLatin1Char('0'))});
    return view;
}

/*! The pictures that a program has shown one after the other. */
QStringList picturesOf(const QByteArray &shown)
{
    return QString::fromUtf8(shown).split(QStringLiteral("\x1b[H")).mid(1);
}

} // namespace

/*! The command "monitor". */
class tst_Monitor : public QObject
{
    Q_OBJECT

private slots:
    void picture();
    void pictureFits_data();
    void pictureFits();
    void troubleComesFirst();
    void signsAreNoWidth();
    void lostBusIsSaid();
    void textsOfOthersAreHarmless();
    void onATerminal();
    void leavesNothingBehind();
    void terminalWithoutScreen();
    void blocks();
    void json();
    void readerThatGoes_data();
    void readerThatGoes();
    void usage_data();
    void usage();
    void noSuchBus();
};

void tst_Monitor::picture()
{
    const QStringList lines = MonitorListing::screen(viewOf(2, 2), {80, 24}, Signs::Style::Words);
    QCOMPARE(lines,
             (QStringList{
                 QStringLiteral("12:03:11  socketcan:can0  67 frames/s  load 31.0 %"),
                 QStringLiteral("good: The bus is used to 31 %."),
                 QStringLiteral("warning: Node 2: heartbeat late."),
                 QStringLiteral("not checked: Not everything could be judged."),
                 QString(),
                 QStringLiteral("Node  State        Heartbeat  Missed  Restarts  Emergencies  SDO  Load"),
                 QStringLiteral("1     Operational  500.0 ms   0       0         0            -    0.4 %"),
                 QStringLiteral(
                     "2     Operational  500.0 ms   0       0         0            -    0.4 %  warn..."),
                 QString(),
                 QStringLiteral("fault: 12:00:01 event"),
                 QStringLiteral("fault: 12:00:02 event"),
             }));
}

void tst_Monitor::pictureFits_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("nodes");
    for (const int nodes : {0, 1, 127}) {
        for (const int lines : {1, 3, 11, 12, 13, 24, 300}) {
            for (const int columns : {1, 5, 80, 200})
                QTest::addRow("%dx%d, %d nodes", columns, lines, nodes) << columns << lines << nodes;
        }
    }
}

void tst_Monitor::pictureFits()
{
    QFETCH(int, columns);
    QFETCH(int, lines);
    QFETCH(int, nodes);
    const QStringList picture
        = MonitorListing::screen(viewOf(nodes, 500), {columns, lines}, Signs::Style::Words);
    QCOMPARE(picture.size(), lines); // the events fill it
    for (const QString &line : picture) {
        const bool isSigned = columns < 20; // a sign is not cut
        QVERIFY2(isSigned || terminalWidth(line) <= columns, qPrintable(line));
    }
    if (lines > 12 && columns == 80)
        QVERIFY(picture.last().endsWith(QStringLiteral("12:00:500 event")));
}

void tst_Monitor::troubleComesFirst()
{
    const QStringList lines = MonitorListing::screen(viewOf(20, 9), {200, 16}, Signs::Style::Words);
    // 6 lines above, 4 below
    QVERIFY2(lines.at(6).startsWith(QStringLiteral("20    Operational")),
             qPrintable(lines.join(QLatin1Char('\n'))));
    QVERIFY(lines.at(6).endsWith(QStringLiteral("warning: heartbeat late.")));
    QVERIFY(lines.at(7).startsWith(QStringLiteral("1     ")));
    QCOMPARE(lines.at(lines.size() - 5), QStringLiteral("      and 15 more"));
    QCOMPARE(lines.mid(lines.size() - 3),
             (QStringList{QStringLiteral("fault: 12:00:07 event"), QStringLiteral("fault: 12:00:08 event"),
                          QStringLiteral("fault: 12:00:09 event")}));
}

void tst_Monitor::signsAreNoWidth()
{
    const QStringList lines = MonitorListing::screen(viewOf(2, 1), {20, 24}, Signs::Style::ColouredShapes);
    QCOMPARE(lines.at(1), QString::fromUtf8("\x1b[32m✔\x1b[0m The bus is used..."));
}

void tst_Monitor::lostBusIsSaid()
{
    MonitorView view = viewOf(2, 1);
    view.trouble = QStringLiteral("The interface is gone.");
    QCOMPARE(MonitorListing::screen(view, {80, 24}, Signs::Style::Words).first(),
             QStringLiteral("12:03:11  socketcan:can0  The bus is lost: The interface is gone."));
}

void tst_Monitor::textsOfOthersAreHarmless()
{
    MonitorView view = viewOf(2, 1);
    view.bus = QStringLiteral("a\x1b[2Jb");
    view.lights[1].text = view.bus;
    view.lights[1].findings[0].text = view.bus;
    view.events[0].text = view.bus;
    const QStringList lines = MonitorListing::screen(view, {200, 24}, Signs::Style::Words)
                              + MonitorListing::block(view, Signs::Style::Words);
    QVERIFY(!lines.join(QString()).contains(QLatin1Char('\x1b')));
    QCOMPARE(lines.join(QString()).count(QStringLiteral("a\\u001b[2Jb")), 4 + 3);
}

void tst_Monitor::onATerminal()
{
    qputenv("TERM", "xterm");
    const QStringList pictures
        = picturesOf(runOnTerminal(words("monitor --bus simulated:ride --for 4500ms")));
    QCOMPARE(pictures.size(), 5); // at once, and then every second
    const QStringList lines = pictures.last().split(QStringLiteral("\r\n\x1b[2K"));
    QVERIFY2(lines.size() >= 15 && lines.size() <= 24, qPrintable(pictures.last()));
    QVERIFY2(lines.at(3).contains(QStringLiteral(" There are no errors on the bus.")),
             qPrintable(lines.at(3)));
    QVERIFY(lines.at(5).startsWith(QStringLiteral("Node  State")));
    QVERIFY(lines.at(7).startsWith(QStringLiteral("2     Operational")));
}

void tst_Monitor::leavesNothingBehind()
{
    qputenv("TERM", "xterm");
    PseudoTerminal terminal;
    terminal.setSize(60, 13);
    const int other = ::open(terminal.name().toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    QProcess process;
    process.setStandardOutputFile(terminal.name());
    process.start(QStringLiteral(DRAXELCTL), words("monitor --bus simulated:full-bus"));
    const auto isShown = [&terminal] { return terminal.read().contains("and 12 more"); };
    QVERIFY2(QTest::qWaitFor(isShown, patience), terminal.read().constData());
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    QVERIFY(QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, patience));
    const QByteArray shown = terminal.read();
    ::close(other);
    QCOMPARE(process.exitCode(), 130);
    QVERIFY(shown.startsWith("\x1b[?1049h\x1b[?25l"));
    QVERIFY2(shown.endsWith("\x1b[?25h\x1b[?1049l"), shown.right(100).constData());
    QCOMPARE(picturesOf(shown).last().count(QStringLiteral("\r\n")), 12);
}

void tst_Monitor::terminalWithoutScreen()
{
    qputenv("TERM", "dumb");
    const QByteArray shown = runOnTerminal(words("monitor --bus simulated:ride --for 1s"));
    QVERIFY(!shown.contains('\x1b'));
    QVERIFY2(shown.contains("There are no errors on the bus."), shown.constData());
}

void tst_Monitor::blocks()
{
    const Result result = run(words("monitor --bus simulated:ride --for 25s"));
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors, QString());
    QCOMPARE(
        result.output.count(QStringLiteral("good: 5 devices are heard, and nothing is wrong with them.\n")),
        2);
    QCOMPARE(result.output.count(QStringLiteral("Node 5: It is now working")), 1); // each event once
}

void tst_Monitor::json()
{
    const Result result = run(words("monitor --bus simulated:ride --for 5500ms --json"));
    QCOMPARE(result.status, 0);
    const QStringList lines = result.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 5);
    int events = 0;
    for (const QString &line : lines) {
        const QJsonObject json = QJsonDocument::fromJson(line.toUtf8()).object();
        QVERIFY(json.value(QStringLiteral("connected")).toBool());
        QCOMPARE(json.value(QStringLiteral("nodes")).toArray().size(), 5);
        QVERIFY(QDateTime::fromString(json.value(QStringLiteral("time")).toString(), Qt::ISODateWithMs)
                    .isValid());
        events += json.value(QStringLiteral("events")).toArray().size();
    }
    QCOMPARE(events, 10); // each device is heard, and works
}

void tst_Monitor::readerThatGoes_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("lines");
    QTest::newRow("blocks") << QStringLiteral("--every 100ms") << 1;
    QTest::newRow("JSON") << QStringLiteral("--every 100ms --json") << 1;
    QTest::newRow("nothing to write") << QStringLiteral("--every 24h --json") << 0;
}

void tst_Monitor::readerThatGoes()
{
    QFETCH(QString, arguments);
    QFETCH(int, lines);
    QCOMPARE(withoutReader(QStringLiteral("monitor --bus simulated:ride ") + arguments, lines),
             QStringLiteral("status 141\n"));
}

void tst_Monitor::usage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("no bus") << words("monitor") << QStringLiteral("draxelctl monitor: --bus is missing");
    QTest::newRow("too often") << words("monitor --bus simulated:ride --every 10ms")
                               << QStringLiteral("draxelctl monitor: \"10ms\" is no time of 100ms or more");
}

void tst_Monitor::usage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    const Result result = run(arguments);
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.startsWith(complaint), qPrintable(result.errors));
}

void tst_Monitor::noSuchBus()
{
    const Result result = run(words("monitor --bus simulated:nothing"));
    QCOMPARE(result.status, 2);
    QCOMPARE(result.output, QString());
}

QTEST_GUILESS_MAIN(tst_Monitor)
#include "tst_monitor.moc"
