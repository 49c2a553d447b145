// SPDX-License-Identifier: MIT
#include "program.h"
#include "pseudoterminal.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

#ifdef Q_OS_LINUX
bool hasOpenFileIn(const QString &folder, const QString &processId)
{
    const QDir files(QStringLiteral("/proc/%1/fd").arg(processId));
    const QString start = QDir(folder).canonicalPath() + QLatin1Char('/');
    const QStringList names = files.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    return std::any_of(names.begin(), names.end(), [&](const QString &name) {
        return QFile::symLinkTarget(files.filePath(name)).startsWith(start);
    });
}
#endif

/*! Whether the process that the program started writes a file into \a folder that has not got its name yet, or none. */
bool isPrinting(qint64 processId, const QString &folder)
{
#ifdef Q_OS_LINUX
    const QString children = readFile(QStringLiteral("/proc/%1/task/%1/children").arg(processId)).trimmed();
    return !children.isEmpty() && hasOpenFileIn(folder, children);
#else
    Q_UNUSED(processId)
    return !QDir(folder).entryList({QStringLiteral("dx_report.pdf.*")}).isEmpty();
#endif
}

} // namespace

/*! Where the output goes: files, pipes, devices, terminals. */
class tst_Output : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void exportToStandardOutput_data();
    void exportToStandardOutput();
    void exportToDevice();
    void exportToPipe();
    void pipeWithoutReaderIsInterrupted();
    void diskIsFull();
    void fullOutput();
    void fullOutputGoesBeforeWhatWasFound();
    void controlCharactersInFileNames();
    void controlCharactersOfDevices();
    void controlCharactersInJson();
    void pipeGetsThemUnchanged();
    void readerThatGoes();
    void reportIsInterrupted_data();
    void reportIsInterrupted();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    QStringList read(const QString &exported) const
    {
        return {QStringLiteral("read"),      QStringLiteral("--bus"),    QStringLiteral("simulated:pedelec"),
                QStringLiteral("--bitrate"), QStringLiteral("0"),        QStringLiteral("--node"),
                QStringLiteral("3"),         QStringLiteral("--export"), exported};
    }
    QString writeEvilVehicle() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_Output::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_Output::exportToStandardOutput_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("-") << QStringLiteral("-");
    QTest::newRow("/dev/stdout") << QStringLiteral("/dev/stdout");
    QTest::newRow("/dev/fd/1") << QStringLiteral("/dev/fd/1");
}

void tst_Output::exportToStandardOutput()
{
    QFETCH(QString, name);
    const Result result = run(read(name)); // into a pipe
    QCOMPARE(result.status, 0);
    QVERIFY2(result.output.startsWith(QStringLiteral("<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n")),
             qPrintable(result.output));
    QVERIFY2(result.output.endsWith(QStringLiteral("</dxtoolstorage>\n")), qPrintable(result.output));
    QVERIFY2(result.errors.startsWith(QStringLiteral("Node 3: device type ")), qPrintable(result.errors));
    QVERIFY(!result.errors.contains(QStringLiteral("Wrote")));
}

void tst_Output::exportToDevice()
{
    const Result result = run(read(QStringLiteral("/dev/null")));
    QCOMPARE(result.status, 0);
    QVERIFY(result.output.endsWith(QStringLiteral("Wrote /dev/null\n")));
    QVERIFY(!QFileInfo(QStringLiteral("/dev/null")).isFile());
}

void tst_Output::exportToPipe()
{
    const QString pipe = path("pipe");
    QCOMPARE(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    Program program(read(pipe));
    QVERIFY(program.waitForErrors(QStringLiteral("Waiting until %1 is read ...\n").arg(pipe)));
    QFile end(pipe);
    QVERIFY(end.open(QIODevice::ReadOnly));
    const QByteArray text = end.readAll();
    QVERIFY2(text.endsWith("</dxtoolstorage>\n"), text.constData());
    QCOMPARE(program.finish().status, 0);
}

void tst_Output::pipeWithoutReaderIsInterrupted()
{
    const QString pipe = path("pipe");
    QCOMPARE(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    Program program(read(pipe));
    QVERIFY(program.waitForErrors(QStringLiteral("Waiting until ")));
    program.signal(SIGINT);
    QCOMPARE(program.finish().status, -1); // by the signal itself
}

void tst_Output::diskIsFull()
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        QSKIP("This system has no /dev/full");
    const Result result = run(read(QStringLiteral("/dev/full")));
    QCOMPARE(result.status, 5);
    QCOMPARE(result.errors, QStringLiteral("The file /dev/full cannot be written: no space is left.\n"));
}

void tst_Output::fullOutput()
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        QSKIP("This system has no /dev/full");
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(DRAXELCTL), read(QStringLiteral("-")));
    QVERIFY(QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, patience));
    QCOMPARE(process.exitCode(), 5);
    QVERIFY(process.readAllStandardError().endsWith("draxelctl: Not all of the output could be written.\n"));
}

void tst_Output::fullOutputGoesBeforeWhatWasFound()
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        QSKIP("This system has no /dev/full");
    const QString vehicle = path("read.dxxml");
    QCOMPARE(run(read(vehicle)).status, 0);
    const QStringList command{QStringLiteral("checkup"), vehicle, QStringLiteral("--json")};
    QCOMPARE(run(command).status, 4); // an exchange file does not hold everything
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(DRAXELCTL), command);
    QVERIFY(QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, patience));
    QCOMPARE(process.exitCode(), 5);
    QVERIFY(process.readAllStandardError().endsWith("draxelctl: Not all of the output could be written.\n"));
}

void tst_Output::controlCharactersInFileNames()
{
    // In error sentences always.
    const QString name = path("a\x1b]0;evil\x07.dxxml");
    const Result result = run({QStringLiteral("show"), name});
    QCOMPARE(result.status, 5);
    QVERIFY2(result.errors.contains(QStringLiteral("a\\u001b]0;evil\\u0007.dxxml")),
             qPrintable(result.errors));
    QVERIFY(!result.errors.contains(QLatin1Char('\x1b')));
}

/*! A vehicle whose description and whose object 1008h are commands to a terminal. */
QString tst_Output::writeEvilVehicle() const
{
    QFile dictionary(path("evil.dcf"));
    if (dictionary.open(QIODevice::WriteOnly)) {
        dictionary.write(
            "[MandatoryObjects]\nSupportedObjects=1\n1=0x1000\n"
            "[1000]\nParameterName=Device type\nDataType=0x0007\nAccessType=ro\nDefaultValue=1\n"
            "[OptionalObjects]\nSupportedObjects=1\n1=0x1008\n"
            "[1008]\nParameterName=Name\nDataType=0x0009\nAccessType=ro\nDefaultValue=x\x1b[2Jy\n");
    }
    QFile file(path("evil.json"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(
            "{ \"name\": \"evil\\u001b[2J\\u202e\", \"nodes\": [ { \"id\": 1, \"dictionary\": \"evil.dcf\", "
            "\"heartbeatMs\": 0 } ] }");
    }
    return file.fileName();
}

void tst_Output::controlCharactersOfDevices()
{
    const QByteArray shown = runOnTerminal(
        {QStringLiteral("get"), QStringLiteral("--bus"), QStringLiteral("simulated:") + writeEvilVehicle(),
         QStringLiteral("1"), QStringLiteral("1008"), QStringLiteral("--type"), QStringLiteral("string")});
    QVERIFY2(shown.contains("Value   x\\u001b[2Jy\r\n"), shown.constData());
    QVERIFY2(!shown.contains('\x1b'), shown.constData());
}

void tst_Output::controlCharactersInJson()
{
    const QByteArray shown = runOnTerminal(
        {QStringLiteral("get"), QStringLiteral("--bus"), QStringLiteral("simulated:") + writeEvilVehicle(),
         QStringLiteral("1"), QStringLiteral("1008"), QStringLiteral("--type"), QStringLiteral("string"),
         QStringLiteral("--json")});
    QVERIFY2(shown.contains("\"value\": \"x\\u001b[2Jy\""), shown.constData());
    QVERIFY2(!shown.contains('\x1b'), shown.constData());
}

void tst_Output::pipeGetsThemUnchanged()
{
    const Result result = run({QStringLiteral("get"), QStringLiteral("--bus"),
                               QStringLiteral("simulated:") + writeEvilVehicle(), QStringLiteral("1"),
                               QStringLiteral("1008"), QStringLiteral("--type"), QStringLiteral("string")});
    QVERIFY2(result.output.contains(QStringLiteral("Value   x\x1b[2Jy\n")), qPrintable(result.output));
}

void tst_Output::readerThatGoes()
{
    const QString name = path("v.dxxml");
    QCOMPARE(
        withoutReader(
            QStringLiteral("read --bus simulated:pedelec --bitrate 0 --node 3 --export '%1'").arg(name), 0),
        QStringLiteral("status 141\n"));
    QVERIFY(readFile(name).endsWith(QStringLiteral("</dxtoolstorage>\n"))); // what was read is not lost
}

void tst_Output::reportIsInterrupted_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("status");

    QTest::newRow("SIGINT") << SIGINT << 130;
    QTest::newRow("SIGTERM") << SIGTERM << 143;
}

void tst_Output::reportIsInterrupted()
{
    QFETCH(int, number);
    QFETCH(int, status);
    QByteArray objects;
    for (int subIndex = 0; subIndex < 6; ++subIndex) {
        objects += object(0x6000, subIndex, subIndex == 0 ? 5 : 0x0B);
        objects += object(0x6002, subIndex, 5);
    }
    QByteArray nodes;
    for (int id = 1; id <= 127; ++id)
        nodes += node(id, objects);
    const QString given = writeExchange(path("long.dxxml"), nodes);
    const QString folder = path("report");
    QVERIFY(QDir().mkpath(folder));
    QFile old(folder + QStringLiteral("/dx_report.pdf"));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("the old one");
    old.close();

    Program program({QStringLiteral("report"), given, QStringLiteral("--output"), folder});
    // The PDF is being printed when its new file is there.
    QVERIFY(QTest::qWaitFor([&] { return isPrinting(program.processId(), folder); }, patience));
    program.signal(number);
    const Result result = program.finish();
    QCOMPARE(result.status, status);
    QCOMPARE(result.errors, QStringLiteral("Interrupted; the report was not written.\n"));
    // The HTML file may be complete already.
    const QStringList left = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString &name : left)
        QVERIFY2(name == QLatin1String("dx_report.pdf") || name == QLatin1String("dx_report.html"),
                 qPrintable(name));
    QCOMPARE(readFile(old.fileName()), QStringLiteral("the old one"));
}

QTEST_GUILESS_MAIN(tst_Output)
#include "tst_output.moc"
