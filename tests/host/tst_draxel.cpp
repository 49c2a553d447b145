// SPDX-License-Identifier: MIT
#include <host/commandline.h>

#include <QDir>
#include <QProcess>
#include <QtTest>

namespace {

constexpr int patience = 30000; // ms

struct Result
{
    int status = -1;
    QString output;
    QString errors;
};

/*! The program as the shell starts it; \a platform is QT_QPA_PLATFORM, empty for none. */
Result run(const QStringList &arguments, const QString &platform = QStringLiteral("offscreen"))
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        variables.remove(QLatin1String(name));
    if (!platform.isEmpty())
        variables.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    QProcess process;
    process.setProcessEnvironment(variables);
    process.start(QStringLiteral(DRAXEL), arguments);
    Result result;
    if (process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit)
        result.status = process.exitCode();
    else
        process.kill();
    process.waitForFinished(patience);
    result.output = QString::fromUtf8(process.readAllStandardOutput());
    result.errors = QString::fromUtf8(process.readAllStandardError());
    return result;
}

QStringList line(const QStringList &arguments)
{
    return QStringList(QStringLiteral("draxel")) + arguments;
}

} // namespace

/*! The program's command line, and its ends without a window. */
class tst_Draxel : public QObject
{
    Q_OBJECT

private slots:
    void helpNamesTheProgram_data();
    void helpNamesTheProgram();
    void version_data();
    void version();
    void noDisplay_data();
    void noDisplay();
    void unknownLanguage();
    void unknownOption();
    void optionsAreTaken();
    void fileIsTaken();
    void oneFileOnly();
    void bitRateNeedsABus();
};

void tst_Draxel::helpNamesTheProgram_data()
{
    QTest::addColumn<QString>("option");
    QTest::newRow("long") << QStringLiteral("--help");
    QTest::newRow("short") << QStringLiteral("-h");
}

void tst_Draxel::helpNamesTheProgram()
{
    QFETCH(QString, option);
    const Result result = run({option}, QString());
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.startsWith(QStringLiteral("Usage: draxel [options] [FILE]\n")),
             qPrintable(result.output));
    QVERIFY(!result.output.contains(QStringLiteral(DRAXEL)));
    QCOMPARE(result.errors, QString());
}

void tst_Draxel::version_data()
{
    QTest::addColumn<QString>("option");
    for (const char *option : {"--version", "-V", "-v"})
        QTest::newRow(option) << QString::fromLatin1(option);
}

void tst_Draxel::version()
{
    QFETCH(QString, option);
    const Result result = run({option}, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, QStringLiteral("draxel " DRAXEL_VERSION "\n"));
}

void tst_Draxel::noDisplay_data()
{
    QTest::addColumn<QString>("platform");
    QTest::newRow("nothing set") << QStringLiteral("xcb");
    QTest::newRow("platform that is not there") << QStringLiteral("nosuchplatform");
}

void tst_Draxel::noDisplay()
{
    QFETCH(QString, platform);
    const Result result = run({}, platform);
    QCOMPARE(result.status, 1);
    QCOMPARE(
        result.errors,
        QStringLiteral("draxel: There is no display to show the window on. Without one, the command line "
                       "draxelctl does the same work: draxelctl --help.\n"));
}

void tst_Draxel::unknownLanguage()
{
    const Result result = run({QStringLiteral("--language"), QStringLiteral("xx")});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.errors,
             QStringLiteral("draxel: There is no language \"xx\". There are: de, en, fr, nl, zh_CN.\n"));
}

void tst_Draxel::unknownOption()
{
    const Result result = run({QStringLiteral("--bsu")});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.errors.contains(QStringLiteral("bsu")), qPrintable(result.errors));
}

void tst_Draxel::optionsAreTaken()
{
    CommandLine commandLine;
    QString error;
    const std::optional<HostOptions> options = commandLine.parse(
        line({QStringLiteral("--bus"), QStringLiteral("socketcan:can0"), QStringLiteral("--bitrate"),
              QStringLiteral("100000"), QStringLiteral("--connect"), QStringLiteral("--language"),
              QStringLiteral("de"), QStringLiteral("--plugins"), QStringLiteral("dir")}),
        &error);
    QVERIFY2(options.has_value(), qPrintable(error));
    QCOMPARE(options->bus.address.toString(), QStringLiteral("socketcan:can0"));
    QCOMPARE(options->bus.bitRate.value_or(0), 100000);
    QVERIFY(options->isConnecting);
    QCOMPARE(options->language, QStringLiteral("de"));
    QCOMPARE(options->pluginFolder, QStringLiteral("dir"));
    QVERIFY(!options->isVerbose);
    QCOMPARE(options->fileName, QString());
}

void tst_Draxel::fileIsTaken()
{
    CommandLine commandLine;
    QString error;
    const std::optional<HostOptions> options
        = commandLine.parse(line({QStringLiteral("bike.dxxml")}), &error);
    QVERIFY(options.has_value());
    QCOMPARE(options->fileName, QDir::current().absoluteFilePath(QStringLiteral("bike.dxxml")));
}

void tst_Draxel::oneFileOnly()
{
    CommandLine commandLine;
    QString error;
    QVERIFY(!commandLine.parse(line({QStringLiteral("a.dxxml"), QStringLiteral("b.dxxml")}), &error));
    QCOMPARE(error, QStringLiteral("What is \"b.dxxml\" for? One file can be shown."));
}

void tst_Draxel::bitRateNeedsABus()
{
    CommandLine commandLine;
    QString error;
    QVERIFY(!commandLine.parse(line({QStringLiteral("--bitrate"), QStringLiteral("100000")}), &error));
    QCOMPARE(error, QStringLiteral("--bitrate needs --bus."));
    QVERIFY(!commandLine.parse(line({QStringLiteral("--bus"), QStringLiteral("socketcan:can0"),
                                     QStringLiteral("--bitrate"), QStringLiteral("fast")}),
                               &error));
}

QTEST_GUILESS_MAIN(tst_Draxel)
#include "tst_draxel.moc"
