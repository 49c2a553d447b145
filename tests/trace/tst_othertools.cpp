// SPDX-License-Identifier: MIT
#include "traceframes.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <random>

namespace {

/*! 20000, or as many as OTHER_TOOLS_FRAMES says: a million take some minutes. */
int frameCount()
{
    constexpr int usual = 20000;
    bool isNumber = false;
    const int count = qEnvironmentVariableIntValue("OTHER_TOOLS_FRAMES", &isNumber);
    return isNumber ? count : usual;
}

constexpr int patience = 280'000; // ms; for python-can and tshark on a busy machine

/*! Which frames a tool can tell at all. */
struct Wanted
{
    bool remote = true;
    bool error = true;
    bool sent = true;
};

/*! Frames of every kind; their times run forward, as some tools want it. */
Trace anyTrace(const Wanted &wanted)
{
    std::mt19937 random(1); // NOLINT: the same frames each time
    const auto below = [&random](quint32 bound) { return static_cast<quint32>(random() % bound); };
    Trace trace;
    trace.head = {{QStringLiteral("can0")}, true};
    qint64 time = 1436509052249713;
    const int count = frameCount();
    for (int i = 0; i < count; ++i) {
        TraceFrame frame;
        frame.time = time += below(2000);
        const bool isExtended = below(4) == 0;
        frame.id = below(isExtended ? 0x20000000 : 0x800);
        frame.flags = static_cast<quint8>(isExtended ? TraceFrame::Extended : 0);
        frame.length = static_cast<quint8>(below(9));
        if (wanted.error && below(50) == 0) {
            frame.flags = TraceFrame::Error;
            frame.id = 0x80;
            frame.length = 8;
        } else if (wanted.remote && below(20) == 0) {
            frame.flags |= TraceFrame::Remote;
        } else if (wanted.sent && below(5) == 0) {
            frame.flags |= TraceFrame::Sent;
        }
        for (int byte = 0; byte < frame.size() && !frame.isError(); ++byte)
            frame.bytes[static_cast<size_t>(byte)] = static_cast<quint8>(below(256));
        trace.frames.push_back(frame);
    }
    return trace;
}

/*! A frame as the script "python-can" has it. */
QString lineOf(const TraceFrame &frame, qint64 first)
{
    const QString time = QString::number(frame.time - first);
    if (frame.isError())
        return time + QStringLiteral(" error");
    const QString id
        = QStringLiteral("%1 %2").arg(time).arg(frame.id, frame.isExtended() ? 8 : 3, 16, QLatin1Char('0'));
    if (frame.isRemote())
        return id + QStringLiteral(" remote %1").arg(frame.length);
    const QByteArray bytes(reinterpret_cast<const char *>(frame.bytes.data()), frame.size());
    return id + QLatin1Char(' ') + QString::fromLatin1(bytes.toHex())
           + (frame.isSent() ? QStringLiteral(" sent") : QString());
}

QStringList linesOf(const Trace &trace)
{
    QStringList lines;
    for (const TraceFrame &frame : trace.frames)
        lines.append(lineOf(frame, trace.frames.front().time));
    for (const TraceProblem &problem : trace.problems)
        lines.append(QStringLiteral("! %1 %2").arg(problem.line).arg(problem.text));
    return lines;
}

/*! What a program prints; its complaints when it fails. */
QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(patience) || process.exitCode() != 0)
        return "failed: " + process.readAllStandardError();
    return process.readAllStandardOutput();
}

QStringList splitLines(const QByteArray &output)
{
    return QString::fromUtf8(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/*! Compares and shows only the first difference. */
void compareLines(const QStringList &read, const QStringList &expected)
{
    for (int i = 0; i < std::min(read.size(), expected.size()); ++i) {
        if (read.at(i) != expected.at(i))
            QCOMPARE(QStringLiteral("%1: %2").arg(i).arg(read.at(i)),
                     QStringLiteral("%1: %2").arg(i).arg(expected.at(i)));
    }
    QCOMPARE(read.size(), expected.size());
}

} // namespace

/*! The same frames in other tools: python-can, can-utils, tshark. They are there wherever all tests are run. */
class tst_OtherTools : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pythonCanReadsOurs_data();
    void pythonCanReadsOurs();
    void weReadThoseOfPythonCan_data();
    void weReadThoseOfPythonCan();
    void weReadThoseOfLog2asc();
    void tsharkReadsOurs_data();
    void tsharkReadsOurs();
    void weReadThoseOfTshark();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    static bool hasPythonCan();
    static void save(const QString &path, const Trace &trace);
    static Trace load(const QString &path);
    static QByteArray pythonCan(const QStringList &arguments);

    QTemporaryDir m_folder;
};

void tst_OtherTools::initTestCase()
{
    qputenv("TZ", "UTC");
}

bool tst_OtherTools::hasPythonCan()
{
    return !outputOf(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), QStringLiteral("import can")})
                .startsWith("failed");
}

QByteArray tst_OtherTools::pythonCan(const QStringList &arguments)
{
    return outputOf(QStringLiteral("/usr/bin/python3"), QStringList{QStringLiteral(PYTHON_CAN)} + arguments);
}

void tst_OtherTools::save(const QString &path, const Trace &trace)
{
    QString error;
    QVERIFY2(TraceFile::save(path, trace, &error), qPrintable(error));
}

Trace tst_OtherTools::load(const QString &path)
{
    QString error;
    const auto trace = TraceFile::load(path, TraceFile::Limits(), &error);
    if (!trace)
        qWarning("%s", qPrintable(error));
    return trace.value_or(Trace());
}

void tst_OtherTools::pythonCanReadsOurs_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("hasRemote");
    QTest::addColumn<bool>("hasError");
    QTest::addColumn<bool>("hasSent");

    // Its log reader takes no direction together with a length of a remote frame; its trc reader knows data frames only.
    QTest::newRow("candump") << "log" << true << true << true;
    QTest::newRow("asc") << "asc" << true << true << true;
    QTest::newRow("trc") << "trc" << false << false << true;
}

void tst_OtherTools::pythonCanReadsOurs()
{
    if (!hasPythonCan())
        QSKIP("python3-can is not installed: scripts/install-packages all brings it.");
    QFETCH(QString, suffix);
    QFETCH(bool, hasRemote);
    QFETCH(bool, hasError);
    QFETCH(bool, hasSent);

    const Trace trace = anyTrace({hasRemote, hasError, hasSent});
    const QString file = path(QStringLiteral("ours.") + suffix);
    save(file, trace);
    compareLines(splitLines(pythonCan({QStringLiteral("list"), file})), linesOf(trace));
}

void tst_OtherTools::weReadThoseOfPythonCan_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("hasError");

    QTest::newRow("candump") << "log" << true;
    QTest::newRow("asc") << "asc" << true;
    QTest::newRow("trc") << "trc" << false;
}

void tst_OtherTools::weReadThoseOfPythonCan()
{
    if (!hasPythonCan())
        QSKIP("python3-can is not installed: scripts/install-packages all brings it.");
    QFETCH(QString, suffix);
    QFETCH(bool, hasError);

    // It writes no length of remote frames.
    const Trace trace = anyTrace({false, hasError, true});
    const QString ours = path(QStringLiteral("source.log"));
    const QString theirs = path(QStringLiteral("theirs.") + suffix);
    save(ours, trace);
    QCOMPARE(pythonCan({QStringLiteral("convert"), ours, theirs}), QByteArray());
    compareLines(linesOf(load(theirs)), linesOf(trace));
}

void tst_OtherTools::weReadThoseOfLog2asc()
{
    const QString log2asc = QStandardPaths::findExecutable(QStringLiteral("log2asc"));
    if (log2asc.isEmpty())
        QSKIP("can-utils is not installed: scripts/install-packages all brings it.");
    const Trace trace = anyTrace({true, true, false});
    const QString ours = path(QStringLiteral("forlog2asc.log"));
    const QString theirs = path(QStringLiteral("log2asc.asc"));
    save(ours, trace);
    QVERIFY(
        !outputOf(log2asc, {QStringLiteral("-I"), ours, QStringLiteral("-O"), theirs, QStringLiteral("can0")})
             .startsWith("failed"));
    compareLines(linesOf(load(theirs)), linesOf(trace));
}

void tst_OtherTools::tsharkReadsOurs_data()
{
    QTest::addColumn<QString>("suffix");

    QTest::newRow("pcap") << "pcap";
    QTest::newRow("pcapng") << "pcapng";
}

void tst_OtherTools::tsharkReadsOurs()
{
    const QString tshark = QStandardPaths::findExecutable(QStringLiteral("tshark"));
    if (tshark.isEmpty())
        QSKIP("tshark is not installed: scripts/install-packages all brings it.");
    QFETCH(QString, suffix);

    const Trace trace = anyTrace({true, true, false});
    const QString file = path(QStringLiteral("ours.") + suffix);
    save(file, trace);
    const QByteArray output = outputOf(
        tshark,
        {QStringLiteral("-n"), QStringLiteral("-r"), file, QStringLiteral("-T"), QStringLiteral("fields"),
         QStringLiteral("-e"), QStringLiteral("frame.time_epoch"), QStringLiteral("-e"),
         QStringLiteral("can.id"), QStringLiteral("-e"), QStringLiteral("can.flags.xtd"),
         QStringLiteral("-e"), QStringLiteral("can.flags.rtr"), QStringLiteral("-e"),
         QStringLiteral("can.flags.err"), QStringLiteral("-e"), QStringLiteral("can.len")});
    QStringList expected;
    for (const TraceFrame &frame : trace.frames) {
        const QString time = QStringLiteral("%1.%2")
                                 .arg(frame.time / 1'000'000)
                                 .arg(frame.time % 1'000'000, 6, 10,
                                      QLatin1Char('0'))
                             + QStringLiteral("000"); // ns
        const QString id = QStringLiteral("\t%1\t%2\t%3\t0\t")
                               .arg(frame.id)
                               .arg(frame.isExtended() ? 1 : 0)
                               .arg(frame.isRemote() ? 1 : 0);
        // Of an error frame the identifier is told in other fields.
        expected.append(time + (frame.isError() ? QStringLiteral("\t\t\t\t1\t") : id)
                        + QString::number(frame.length));
    }
    compareLines(splitLines(output), expected);
}

void tst_OtherTools::weReadThoseOfTshark()
{
    const QString tshark = QStandardPaths::findExecutable(QStringLiteral("tshark"));
    if (tshark.isEmpty())
        QSKIP("tshark is not installed: scripts/install-packages all brings it.");
    const Trace trace = anyTrace({true, true, true});
    const QString ours = path(QStringLiteral("source.pcapng"));
    save(ours, trace);
    for (const char *format : {"pcapng", "pcap", "nsecpcap"}) {
        const QString theirs = path(QLatin1String(format) + QStringLiteral(".theirs"));
        QVERIFY(!outputOf(tshark, {QStringLiteral("-r"), ours, QStringLiteral("-F"), QLatin1String(format),
                                   QStringLiteral("-w"), theirs})
                     .startsWith("failed"));
        Trace expected = trace;
        for (TraceFrame &frame : expected.frames) {
            if (QLatin1String(format) != QLatin1String("pcapng"))
                frame.flags &= static_cast<quint8>(~TraceFrame::Sent); // which pcap does not hold
        }
        compareLines(linesOf(load(theirs)), linesOf(expected));
    }
}

QTEST_GUILESS_MAIN(tst_OtherTools)
#include "tst_othertools.moc"
