// SPDX-License-Identifier: MIT
#include <cli/trace/bytecount.h>
#include <tests/cli/program.h>

#include <QCanBus>
#include <QCanBusDevice>
#include <QCanBusFrame>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace {

const QByteArray aLog("(1436509052.249713) can0 123#1122334455667788\n"
                      "(1436509052.749713) can1 1C23456F#R8\n"
                      "(1436509053.249713) can0 20000088#0000801900000000\n"
                      "(1436509054.249713) can0 601#40 T\n");
const QByteArray twoAtOnce("(1.000000) can0 701#05\n(1.000001) can0 702#05\n");

QStringList words(const QString &line)
{
    return line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

/*! draxelctl trace record, convert and statistics. */
class tst_TraceCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void byteCounts_data();
    void byteCounts();
    void usage_data();
    void usage();
    void convertsThereAndBack();
    void saysWhatAFormatDoesNotHold();
    void saysWhatCannotBeRead();
    void leavesTheOldFileWhenInputFails();
    void pipes();
    void convertsForNobody();
    void standardOutputIsFull_data();
    void standardOutputIsFull();
    void convertsWhatHasCome();
    void interruptEndsTheInput_data();
    void interruptEndsTheInput();
    void interruptedConversionIsWhole();
    void secondInterruptEndsTheProgram();
    void hangUpThatIsIgnored();
    void statistics();
    void statisticsWithoutNodes();
    void statisticsOfAMoment();
    void statisticsOfAMomentAsJson();
    void busiestSecondIsNoLessThanTheMean();
    void statisticsOfAFullBus();
    void statisticsAsJson();
    void recordsAVehicle();
    void recordsInPieces();
    void saysWhatItCannotRemove();
    void recordsUntilInterrupted_data();
    void recordsUntilInterrupted();
    void recordsWhatIsOlderThanASecond();
    void recordsToStandardOutput();
    void handsOnWhatItRecords();
    void recordsForNobody();
    void saysThatFramesWereLost_data();
    void saysThatFramesWereLost();
    void recordsWithoutAReserve();
    void recordingThatCannotBegin();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    QString write(const char *name, const QByteArray &bytes) const;
    QByteArray bytesOf(const char *name) const;
    static Result trace(const QString &arguments) { return run(words(QStringLiteral("trace ") + arguments)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_TraceCommand::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

QString tst_TraceCommand::write(const char *name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    return file.fileName();
}

QByteArray tst_TraceCommand::bytesOf(const char *name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_TraceCommand::byteCounts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("count");

    QTest::newRow("bytes") << "1234" << qint64(1234);
    QTest::newRow("k") << "500k" << qint64(500'000);
    QTest::newRow("M") << "100M" << qint64(100'000'000);
    QTest::newRow("G") << "2G" << qint64(2'000'000'000);
    QTest::newRow("most") << "1000000G" << Q_INT64_C(1'000'000'000'000'000);
    QTest::newRow("more") << "1000001G" << qint64(-1);
    QTest::newRow("none") << "0" << qint64(-1);
    QTest::newRow("negative") << "-1M" << qint64(-1);
    QTest::newRow("unit alone") << "M" << qint64(-1);
    QTest::newRow("another unit") << "1T" << qint64(-1);
    QTest::newRow("nothing") << "" << qint64(-1);
}

void tst_TraceCommand::byteCounts()
{
    QFETCH(QString, text);
    QFETCH(qint64, count);

    QCOMPARE(parseByteCount(text).value_or(-1), count);
}

void tst_TraceCommand::usage_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("complaint");

    const auto row = [](const char *arguments, const char *complaint) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(complaint);
    };
    row("", "Usage: draxelctl trace COMMAND [OPTION]...");
    row("play", "draxelctl trace: There is no command \"play\".");
    row("convert a.log", "draxelctl trace convert: OUT is missing.");
    row("convert a.log b --format x", "draxelctl trace convert: There is no format \"x\"; there are candump, "
                                      "asc, trc, trc-1.1, pcap, pcapng.");
    row("statistics", "draxelctl trace statistics: FILE is missing.");
    row("statistics a.log --bitrate fast", "draxelctl trace statistics: ");
    row("record --bus simulated:pedelec", "draxelctl trace record: --output FILE is missing.");
    row("record --output a.log", "draxelctl trace record: --bus is missing: which bus is meant?");
    row("record --bus simulated:pedelec --output a.txt",
        "draxelctl trace record: The name \"a.txt\" tells no format: it must end with .log, .asc, .trc, "
        ".pcap or "
        ".pcapng; .gz or .zst may follow.");
    row("record --bus simulated:pedelec --output a.log --rotate often",
        "draxelctl trace record: \"often\" is neither a size (500k, 100M, 2G) nor a time (10min, 1h).");
    row("record --bus simulated:pedelec --output a.log --keep 3",
        "draxelctl trace record: --keep counts the files of --rotate.");
    row("record --bus simulated:pedelec --output a.log --rotate 1M --keep 0",
        "draxelctl trace record: --keep takes a number from 1 to 1000000, not \"0\".");
    row("record --bus simulated:pedelec --output - --rotate 1M",
        "draxelctl trace record: Standard output cannot be rotated.");
    row("record --bus simulated:pedelec --output a.log --reserve x",
        "draxelctl trace record: \"x\" is no size; one is written like 500k, 100M or 2G.");
    row("record --bus simulated:pedelec --output a.log --for ever",
        "draxelctl trace record: \"ever\" is no time; one is written like 500ms, 10s or 2min, up to a week.");
}

void tst_TraceCommand::usage()
{
    QFETCH(QString, arguments);
    QFETCH(QString, complaint);

    const Result result = trace(arguments);
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains(complaint), qPrintable(result.errors));
    QCOMPARE(result.output, QString());
}

void tst_TraceCommand::convertsThereAndBack()
{
    const QString source = write("a.log", aLog);
    for (const char *name : {"b.pcapng", "b.log.gz", "b.pcapng.zst"}) {
        const Result there = trace(QStringLiteral("convert %1 %2").arg(source, path(name)));
        QCOMPARE(there.errors, QString());
        QCOMPARE(there.output, QStringLiteral("Wrote %1: 4 frames\n").arg(path(name)));
        QCOMPARE(there.status, 0);
        const Result back = trace(QStringLiteral("convert %1 %2").arg(path(name), path("c.log")));
        QCOMPARE(back.status, 0);
        QCOMPARE(bytesOf("c.log"), aLog);
    }
    // One alone
    const QString one = write("one.log", "(1795336200.000000) can0 705#05\n");
    QCOMPARE(trace(QStringLiteral("convert %1 %2").arg(one, path("one.asc"))).output,
             QStringLiteral("Wrote %1: 1 frame\n").arg(path("one.asc")));
    // Onto itself
    QCOMPARE(trace(QStringLiteral("convert %1 %1").arg(source)).status, 0);
    QCOMPARE(bytesOf("a.log"), aLog);
}

void tst_TraceCommand::saysWhatAFormatDoesNotHold()
{
    const QString source = write("a.log", aLog);
    const Result result = trace(QStringLiteral("convert %1 %2 --format trc-1.1").arg(source, path("b.trc")));
    QCOMPARE(result.errors,
             QStringLiteral("This format does not hold: which channel a frame is of, the names of "
                            "channels, what error frames say, times finer than 100 µs.\n"));
    QCOMPARE(result.status, 0);
    QVERIFY(bytesOf("b.trc").startsWith(";$FILEVERSION=1.1\n"));
}

void tst_TraceCommand::saysWhatCannotBeRead()
{
    const QString source = write("a.log", aLog + QByteArray("(1.0) can0 123##1\n").repeated(12) + aLog);
    const Result result = trace(QStringLiteral("convert %1 %2").arg(source, path("b.log")));
    QStringList expected;
    for (int i = 5; i < 15; ++i)
        expected.append(
            QStringLiteral("%1:%2: A CAN FD frame; only classic frames are read.").arg(source).arg(i));
    expected.append(QStringLiteral("%1: 2 more lines or records could not be read.\n").arg(source));
    QCOMPARE(result.errors, expected.join(QLatin1Char('\n')));
    QCOMPARE(result.status, 7);
    QCOMPARE(bytesOf("b.log"), aLog + aLog);
}

void tst_TraceCommand::leavesTheOldFileWhenInputFails()
{
    write("b.log", aLog);
    const QString rubbish = write("a.log", QByteArray(1000, '\0'));
    const Result result = trace(QStringLiteral("convert %1 %2").arg(rubbish, path("b.log")));
    QCOMPARE(result.status, 5);
    QCOMPARE(result.errors,
             QStringLiteral("%1 is no trace that is known: a log of candump, asc, trc, pcap or pcapng, "
                            "also compressed with gzip or zstd.\n")
                 .arg(rubbish));
    QCOMPARE(bytesOf("b.log"), aLog);
    QCOMPARE(trace(QStringLiteral("convert %1 %2").arg(path("no.log"), path("b.log"))).status, 5);
    QCOMPARE(trace(QStringLiteral("convert %1 %2").arg(path("b.log"), path("no/c.log"))).status, 5);
}

void tst_TraceCommand::pipes()
{
    const QString source = write("a.log", aLog);
    QProcess shell;
    shell.start(
        QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"), QStringLiteral("'%1' trace convert - - --format pcapng <'%2' | '%1' trace "
                                              "convert - -")
                                   .arg(QStringLiteral(DRAXELCTL), source)});
    QVERIFY(shell.waitForFinished(patience));
    QCOMPARE(shell.readAllStandardOutput(), aLog);
}

void tst_TraceCommand::convertsForNobody()
{
    // More than a pipe holds.
    const QString source = write("a.log", aLog.repeated(5000));
    const QString convert = QStringLiteral("trace convert '%1' -").arg(source);
    QCOMPARE(withoutReader(convert, 0), QStringLiteral("status 141\n"));
    QCOMPARE(withoutReader(convert, 2), QStringLiteral("status 141\n"));
}

void tst_TraceCommand::standardOutputIsFull_data()
{
    QTest::addColumn<QString>("arguments");

    QTest::newRow("convert") << "convert %1 -";
    QTest::newRow("record") << "record --bus trace:%1 --output -";
}

void tst_TraceCommand::standardOutputIsFull()
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        QSKIP("This system has no /dev/full");
    QFETCH(QString, arguments);
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(DRAXELCTL),
                  words(QStringLiteral("trace ") + arguments.arg(write("a.log", aLog))));
    QVERIFY(QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, patience));
    const QString errors = QString::fromLocal8Bit(process.readAllStandardError());
    QVERIFY2(errors.contains(QStringLiteral("Standard output cannot be written: no space is left.\n")),
             qPrintable(errors));
    QCOMPARE(process.exitCode(), 5);
}

void tst_TraceCommand::convertsWhatHasCome()
{
    Program program(words(QStringLiteral("trace convert - -")));
    for (const QByteArray &line :
         {QByteArray("(1436509052.249713) can0 123#11\n"), QByteArray("(1436509052.250713) can0 124#22\n")}) {
        program.type(line);
        QVERIFY(program.waitForOutput(QString::fromLatin1(line)));
    }
    program.endInput();
    const Result result = program.finish();
    QCOMPARE(result.output,
             QStringLiteral("(1436509052.249713) can0 123#11\n(1436509052.250713) can0 124#22\n"));
    QCOMPARE(result.status, 0);
}

void tst_TraceCommand::interruptEndsTheInput_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("status");

    QTest::newRow("convert") << "convert - -" << SIGINT << "(1436509052.249713) can0 123#11\n" << 130;
    QTest::newRow("SIGTERM") << "convert - -" << SIGTERM << "(1436509052.249713) can0 123#11\n" << 143;
    QTest::newRow("statistics") << "statistics -" << SIGINT
                                << "Identifier  Channel  Frames  Per second\n123h " << 130;
    QTest::newRow("show") << "show -" << SIGINT << "123h" << 130;
}

void tst_TraceCommand::interruptEndsTheInput()
{
    QFETCH(QString, arguments);
    QFETCH(int, number);
    QFETCH(QString, output);
    QFETCH(int, status);
    Program program(words(QStringLiteral("trace ") + arguments));
    program.type("(1436509052.249713) can0 123#11\n(1436509052.250713) can0 123##1\n");
    QVERIFY(program.waitForErrors(QStringLiteral("A CAN FD frame")));
    program.signal(number);
    const Result result = program.finish();
    QVERIFY2(result.output.contains(output), qPrintable(result.output));
    QCOMPARE(result.status, status);
}

void tst_TraceCommand::interruptedConversionIsWhole()
{
    Program program(words(QStringLiteral("trace convert - %1").arg(path("a.asc"))));
    program.type(aLog + "(1.0) can0 123##1\n");
    QVERIFY(program.waitForErrors(QStringLiteral("input:5: A CAN FD frame")));
    program.signal(SIGINT);
    const Result result = program.finish();
    QVERIFY2(result.output.endsWith(QStringLiteral("Wrote %1: 4 frames\n").arg(path("a.asc"))),
             qPrintable(result.output));
    QCOMPARE(result.status, 130);
    QVERIFY(bytesOf("a.asc").endsWith("End TriggerBlock\n"));
}

void tst_TraceCommand::secondInterruptEndsTheProgram()
{
    // Nobody reads it, so that it cannot be opened for writing.
    QCOMPARE(::mkfifo(path("pipe").toLocal8Bit().constData(), 0600), 0);
    Program program(words(QStringLiteral("trace convert - %1 --format candump").arg(path("pipe"))));
    QVERIFY(program.waitForSignalHandler(SIGINT));
    program.signal(SIGINT);
    QVERIFY(program.waitForSignalHandler(SIGINT, Program::Handler::OfTheSystem));
    program.signal(SIGINT);
    QCOMPARE(program.finish().status, -1); // by the signal itself
}

// As nohup starts it.
void tst_TraceCommand::hangUpThatIsIgnored()
{
    const auto former = std::signal(SIGHUP, SIG_IGN);
    Program program(words(QStringLiteral("trace convert - -")));
    const bool hasHandler = program.waitForSignalHandler(SIGINT);
    std::signal(SIGHUP, former);
    QVERIFY(hasHandler);
    program.signal(SIGHUP);
    program.signal(SIGINT);
    QCOMPARE(program.finish().status, 130); // of the second one
}

void tst_TraceCommand::statistics()
{
    const QString source = write("a.log", aLog + "rubbish\n(1436509050.249713) can0 123#\n");
    const Result result = run({QStringLiteral("trace"), QStringLiteral("statistics"), source,
                               QStringLiteral("--bitrate"), QStringLiteral("1000")},
                              {QStringLiteral("TZ=UTC")});
    QCOMPARE(result.status, 7);
    QCOMPARE(result.output,
             QStringLiteral("Frames                   5\n"
                            "First                    2015-07-10 06:17:30.249713\n"
                            "Last                     2015-07-10 06:17:34.249713\n"
                            "Duration                 4.000000 s\n"
                            "Times that run backward  1\n"
                            "Could not be read        1\n"
                            "\n"
                            "Channel  Frames  Load   Busiest second  Remote frames  Error frames  Sent\n"
                            "can0     4       5.7 %  12.0 %          0              1             1\n"
                            "can1     1       -      7.2 %           1              0             0\n"
                            "\n"
                            "Kind   Frames  Per second\n"
                            "sdo    1       0.25\n"
                            "other  3       0.75\n"
                            "error  1       0.25\n"
                            "\n"
                            "Node  Channel  Frames  Load\n"
                            "1     can0     1       1.5 %\n"
                            "\n"
                            "Identifier  Channel  Frames  Per second\n"
                            "123h        can0     2       0.50\n"
                            "601h        can0     1       0.25\n"
                            "1C23456Fh   can1     1       0.25\n"));
}

void tst_TraceCommand::statisticsWithoutNodes()
{
    const QString source = write("a.log", "(1436509052.249713) can0 123#11\n");
    const Result result
        = run({QStringLiteral("trace"), QStringLiteral("statistics"), source}, {QStringLiteral("TZ=UTC")});
    QCOMPARE(result.output,
             QStringLiteral("Frames    1\n"
                            "First     2015-07-10 06:17:32.249713\n"
                            "Last      2015-07-10 06:17:32.249713\n"
                            "Duration  0.000000 s\n"
                            "\n"
                            "Channel  Frames  Load  Busiest second  Remote frames  Error frames  Sent\n"
                            "can0     1       -     0.1 kbit/s      0              0             0\n"
                            "\n"
                            "Kind   Frames  Per second\n"
                            "other  1       -\n"
                            "\n"
                            "Identifier  Channel  Frames  Per second\n"
                            "123h        can0     1       -\n"));
}

/*! Two frames, of which nobody can tell how full the bus was. */
void tst_TraceCommand::statisticsOfAMoment()
{
    const QString source = write("a.log", twoAtOnce);
    QCOMPARE(trace(QStringLiteral("statistics %1 --bitrate 250000").arg(source)).output,
             QStringLiteral("Frames    2\n"
                            "First     1.000000 s\n"
                            "Last      1.000001 s\n"
                            "Duration  0.000001 s\n"
                            "\n"
                            "Channel  Frames  Load  Busiest second  Remote frames  Error frames  Sent\n"
                            "can0     2       -     0.0 %           0              0             0\n"
                            "\n"
                            "Kind       Frames  Per second\n"
                            "heartbeat  2       -\n"
                            "\n"
                            "Node  Channel  Frames  Load\n"
                            "1     can0     1       -\n"
                            "2     can0     1       -\n"
                            "\n"
                            "Identifier  Channel  Frames  Per second\n"
                            "701h        can0     1       -\n"
                            "702h        can0     1       -\n"));
    const Result withoutRate = trace(QStringLiteral("statistics %1").arg(source));
    QVERIFY2(withoutRate.output.contains(QLatin1String("\ncan0     2       -     0.1 kbit/s ")),
             qPrintable(withoutRate.output));
}

void tst_TraceCommand::statisticsOfAMomentAsJson()
{
    const QString source = write("a.log", twoAtOnce);
    const Result result = trace(QStringLiteral("statistics %1 --bitrate 250000 --json").arg(source));
    const QJsonObject json = QJsonDocument::fromJson(result.output.toUtf8()).object();
    const QJsonObject channel = json.value(QStringLiteral("channels")).toArray().at(0).toObject();
    QVERIFY(channel.value(QStringLiteral("load")).isNull());
    QCOMPARE(channel.value(QStringLiteral("peakLoad")).toDouble(), 0.000472);
}

/*! A tenth of a second with three frames of 59 bits. */
void tst_TraceCommand::busiestSecondIsNoLessThanTheMean()
{
    const QString source
        = write("a.log", "(1.000000) can0 701#05\n(1.050000) can0 701#05\n(1.100000) can0 701#05\n");
    const Result result = trace(QStringLiteral("statistics %1 --bitrate 10000").arg(source));
    QVERIFY2(result.output.contains(QLatin1String("\ncan0     3       17.7 %  17.7 % ")),
             qPrintable(result.output));
    const Result asJson = trace(QStringLiteral("statistics %1 --bitrate 10000 --json").arg(source));
    const QJsonObject json = QJsonDocument::fromJson(asJson.output.toUtf8()).object();
    const QJsonObject channel = json.value(QStringLiteral("channels")).toArray().at(0).toObject();
    QCOMPARE(channel.value(QStringLiteral("load")).toDouble(), 0.177);
    QCOMPARE(channel.value(QStringLiteral("peakLoad")).toDouble(), 0.177);
}

/*! Its frames may have had fewer stuff bits than they are reckoned with: 0.444 ms each of 0.48 ms. */
void tst_TraceCommand::statisticsOfAFullBus()
{
    QByteArray log;
    for (int i = 0; i < 1001; ++i)
        log += "(0." + QByteArray::number(i * 444).rightJustified(6, '0') + ") can0 181#5555555555555555\n";
    const QString source = write("a.log", log);
    const Result result = trace(QStringLiteral("statistics %1 --bitrate 250000").arg(source));
    QVERIFY2(result.output.contains(QLatin1String("\ncan0     1001    108.2 %  108.2 % ")),
             qPrintable(result.output));
}

void tst_TraceCommand::statisticsAsJson()
{
    const QString source = write("a.log", aLog);
    const Result result = trace(QStringLiteral("statistics %1 --json").arg(source));
    QCOMPARE(result.status, 0);
    const QJsonObject json = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QCOMPARE(json.value(QStringLiteral("frames")).toInt(), 4);
    QCOMPARE(json.value(QStringLiteral("duration")).toDouble(), 2.0);
    QCOMPARE(json.value(QStringLiteral("first")).toDouble(), 1436509052.249713);
    QCOMPARE(json.value(QStringLiteral("hasTimeOfDay")).toBool(), true);
    const QJsonArray channels = json.value(QStringLiteral("channels")).toArray();
    QCOMPARE(channels.size(), 2);
    QCOMPARE(channels.at(0).toObject().value(QStringLiteral("name")).toString(), QStringLiteral("can0"));
    QCOMPARE(channels.at(1).toObject().value(QStringLiteral("remoteFrames")).toInt(), 1);
    QVERIFY(!channels.at(0).toObject().contains(QStringLiteral("load")));
    const QJsonArray identifiers = json.value(QStringLiteral("identifiers")).toArray();
    QCOMPARE(identifiers.size(), 3);
    QCOMPARE(identifiers.at(2).toObject().value(QStringLiteral("id")).toInt(), 0x1C23456F);
}

void tst_TraceCommand::recordsAVehicle()
{
    const Result result = trace(
        QStringLiteral("record --bus simulated:pedelec --output %1 --for 10s").arg(path("ride.log.gz")));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.startsWith(QStringLiteral("Wrote %1: ").arg(path("ride.log.gz"))),
             qPrintable(result.output));
    const Result counted = trace(QStringLiteral("statistics %1 --json").arg(path("ride.log.gz")));
    const QJsonObject json = QJsonDocument::fromJson(counted.output.toUtf8()).object();
    const int frames = json.value(QStringLiteral("frames")).toInt();
    QVERIFY(frames > 20);
    QCOMPARE(result.output, QStringLiteral("Wrote %1: %2 frames\n").arg(path("ride.log.gz")).arg(frames));
    QCOMPARE(json.value(QStringLiteral("channels"))
                 .toArray()
                 .at(0)
                 .toObject()
                 .value(QStringLiteral("name"))
                 .toString(),
             QStringLiteral("pedelec"));
    QVERIFY(json.value(QStringLiteral("hasTimeOfDay")).toBool());
    // Heartbeats of the seven devices are among them.
    QSet<int> ids;
    for (const QJsonValue &row : json.value(QStringLiteral("identifiers")).toArray())
        ids.insert(row.toObject().value(QStringLiteral("id")).toInt());
    for (int node = 1; node <= 7; ++node)
        QVERIFY(ids.contains(0x700 + node));
}

void tst_TraceCommand::recordsInPieces()
{
    const Result result
        = trace(QStringLiteral("record --bus simulated:pedelec --output %1 --for 10s --rotate 3s --keep 2")
                    .arg(path("ride.pcapng")));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files, QDir::Name),
             (QStringList{QStringLiteral("ride-0003.pcapng"), QStringLiteral("ride-0004.pcapng")}));
    QVERIFY2(
        result.output.startsWith(QStringLiteral("Wrote 2 files from %1 on: ").arg(path("ride-0003.pcapng"))),
        qPrintable(result.output));
}

void tst_TraceCommand::saysWhatItCannotRemove()
{
    const QString address = QStringLiteral("tcp://127.0.0.1:%1/can0").arg(freePort());
    const std::unique_ptr<QCanBusDevice> bus(
        QCanBus::instance()->createDevice(QStringLiteral("virtualcan"), address));
    QVERIFY(bus != nullptr && bus->connectDevice());
    QVERIFY(QTest::qWaitFor([&bus] { return bus->state() == QCanBusDevice::ConnectedState; }, patience));
    Program program(
        words(QStringLiteral("trace record --bus virtualcan:%1 --output %2 --rotate 1 --keep 1 --for 20s")
                  .arg(address, path("ride.log"))));
    QVERIFY(QTest::qWaitFor([this] { return QFile::exists(path("ride-0001.log")); }, patience));
    // A folder is not removed as a file is.
    QVERIFY(QFile::remove(path("ride-0001.log")));
    QVERIFY(QDir().mkdir(path("ride-0001.log")));
    QVERIFY(QTest::qWaitFor(
        [this, &bus] {
            bus->writeFrame(QCanBusFrame(0x701, QByteArray(1, '\5')));
            return QDir(m_folder->path()).entryList(QDir::Files).value(0) > QLatin1String("ride-0005.log");
        },
        patience));
    QVERIFY(program.waitForErrors(QStringLiteral("cannot be removed")));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.errors, // once
             QStringLiteral("%1 cannot be removed, so that more files are kept than --keep asks for.\n")
                 .arg(path("ride-0001.log")));
    QVERIFY2(
        result.output.startsWith(QStringLiteral("Wrote 2 files from %1 on: ").arg(path("ride-0001.log"))),
        qPrintable(result.output));
    QCOMPARE(result.status, 0);
}

void tst_TraceCommand::recordsUntilInterrupted_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("Ctrl+C") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("terminal that is closed") << SIGHUP;
}

void tst_TraceCommand::recordsUntilInterrupted()
{
    QFETCH(int, number);
    Program program(
        words(QStringLiteral("trace record --bus simulated:pedelec --output ") + path("ride.asc")),
        {QStringLiteral("LD_PRELOAD")});
    QVERIFY(QTest::qWaitFor([this] { return bytesOf("ride.asc").size() > 0; }, patience));
    program.signal(number);
    const Result result = program.finish();
    QCOMPARE(result.status, 0);
    QVERIFY(result.output.startsWith(QLatin1String("Wrote ")));
    QVERIFY(bytesOf("ride.asc").endsWith("End TriggerBlock\n"));
}

void tst_TraceCommand::recordsWhatIsOlderThanASecond()
{
    Program program(
        words(QStringLiteral("trace record --bus simulated:pedelec --output ") + path("ride.log.zst")),
        {QStringLiteral("LD_PRELOAD")});
    QVERIFY(QTest::qWaitFor([this] { return bytesOf("ride.log.zst").size() > 0; }, patience));
    program.signal(SIGKILL);
    program.finish();
    const Result counted = trace(QStringLiteral("statistics %1 --json").arg(path("ride.log.zst")));
    QVERIFY(QJsonDocument::fromJson(counted.output.toUtf8()).object().value(QStringLiteral("frames")).toInt()
            > 0);
    QCOMPARE(counted.status, 7); // its end is missing
}

void tst_TraceCommand::recordsToStandardOutput()
{
    const Result result
        = trace(QStringLiteral("record --bus simulated:pedelec --output - --for 3s --reserve 1000000G"));
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.contains(QStringLiteral(" pedelec 701#")), qPrintable(result.output));
    QVERIFY2(result.errors.startsWith(QStringLiteral("Wrote -: ")), qPrintable(result.errors));
}

void tst_TraceCommand::handsOnWhatItRecords()
{
    const QString source
        = write("a.log", "(1436509052.249713) can0 123#11\n(1436509052.250713) can0 124#22\n");
    Program program(words(QStringLiteral("trace record --bus trace:%1 --output -").arg(source)),
                    {QStringLiteral("LD_PRELOAD")});
    // It goes on after them.
    QVERIFY(program.waitForOutput(QStringLiteral(" 124#22\n")));
    program.signal(SIGINT);
    const Result result = program.finish();
    QCOMPARE(result.output.count(QLatin1Char('\n')), 2);
    QCOMPARE(result.errors, QStringLiteral("Wrote -: 2 frames\n"));
    QCOMPARE(result.status, 0);
}

void tst_TraceCommand::recordsForNobody()
{
    const QString source = write("a.log", "(1436509052.249713) can0 123#11\n");
    const QString record = QStringLiteral("trace record --bus 'trace:%1' --output -").arg(source);
    QCOMPARE(withoutReader(record, 0), QStringLiteral("status 141\n"));
    QCOMPARE(withoutReader(record, 1), QStringLiteral("status 141\n"));
}

void tst_TraceCommand::saysThatFramesWereLost_data()
{
    QTest::addColumn<int>("reports");
    QTest::addColumn<QString>("errors");

    QTest::newRow("one report") << 1 << "Frames were lost: the adapter or this computer told so once.\n";
    QTest::newRow("two reports") << 2 << "Frames were lost: the adapter or this computer told so 2 times.\n";
}

void tst_TraceCommand::saysThatFramesWereLost()
{
    QFETCH(int, reports);
    QFETCH(QString, errors);
    // The controller's receive queue ran over.
    const QByteArray overrun("(1436509052.249713) can0 20000004#0001000000000000\n");
    const QString source = write("a.log", overrun.repeated(reports));
    const Result result
        = trace(QStringLiteral("record --bus trace:%1 --output %2 --for 3s").arg(source, path("ride.log")));
    QCOMPARE(result.errors, errors);
    QCOMPARE(result.status, 7);
}

void tst_TraceCommand::recordsWithoutAReserve()
{
    const Result result
        = trace(QStringLiteral("record --bus simulated:pedelec --output %1 --for 3s --reserve 0")
                    .arg(path("ride.log")));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY(bytesOf("ride.log").contains(" pedelec 701#"));
}

void tst_TraceCommand::recordingThatCannotBegin()
{
    write("ride.log", aLog);
    const Result noBus = trace(
        QStringLiteral("record --bus simulated:no-such-vehicle --output %1 --for 1s").arg(path("ride.log")));
    QCOMPARE(noBus.status, 2);
    QCOMPARE(bytesOf("ride.log"), aLog);
    const Result noFolder = trace(
        QStringLiteral("record --bus simulated:pedelec --output %1 --for 1s").arg(path("no/ride.log")));
    QCOMPARE(noFolder.status, 5);
    QCOMPARE(noFolder.errors,
             path("no/ride.log") + QStringLiteral(" cannot be written: no such file or folder.\n"));
    const Result full
        = trace(QStringLiteral("record --bus simulated:pedelec --output %1 --for 1s --reserve 1000000G")
                    .arg(path("full.log")));
    QCOMPARE(full.status, 5);
    QCOMPARE(full.errors,
             QStringLiteral("Less than 1000000000 MB are left on the disk of %1: recording has ended.\n")
                 .arg(path("full.log")));
    QVERIFY(!QFile::exists(path("full.log")));
}

QTEST_GUILESS_MAIN(tst_TraceCommand)
#include "tst_tracecommand.moc"
