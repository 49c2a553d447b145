// SPDX-License-Identifier: MIT
#include <tests/support/freeport.h>
#include <update/componentupdatechecker.h>

#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

#include <sys/prctl.h>

namespace {

constexpr int patience = 20000; // ms

/*! Empty when it is not installed. */
QString nginxProgram()
{
    const QString name = QStringLiteral("nginx");
    const QString inPath = QStandardPaths::findExecutable(name);
    // A user's path need not have the system's programs.
    return inPath.isEmpty() ? QStandardPaths::findExecutable(name, {QStringLiteral("/usr/sbin")}) : inPath;
}

bool replaceOnce(const QString &fileName, const QByteArray &before, const QByteArray &after)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    QByteArray text = file.readAll();
    if (text.count(before) != 1)
        return false;
    text.replace(before, after);
    return file.resize(0) && file.seek(0) && file.write(text) == text.size();
}

bool writeFile(const QString &fileName, const QByteArray &text)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

QByteArray readFile(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/*! A process that ends with the test, however the test ends. */
class BoundProcess : public QProcess
{
protected:
    void setupChildProcess() override { prctl(PR_SET_PDEATHSIG, SIGTERM); }
};

/*! The documented server in a temporary folder, on a free port of the loopback. */
class Nginx
{
public:
    ~Nginx();

    /*! Copies the documented files; only the port is another one. */
    bool prepare();
    bool start();

    QString filePath(const QString &name) const { return m_folder.filePath(name); }
    QByteArray authority() const { return "127.0.0.1:" + QByteArray::number(m_port); }

    /*! What nginx has to say about its end, for a failing test. */
    QByteArray log();

private:
    bool answers() const;

    QTemporaryDir m_folder;
    BoundProcess m_process;
    quint16 m_port = 0;
};

Nginx::~Nginx()
{
    m_process.terminate();
    if (!m_process.waitForFinished(patience))
        m_process.kill();
}

bool Nginx::prepare()
{
    m_port = freePort();
    const QDir source(QStringLiteral(OVERVIEW_SERVER_FILES));
    for (const char *name : {"nginx.conf", "versioninfo.conf", "versions.map"}) {
        const QString target = filePath(QLatin1String(name));
        QFile::remove(target);
        if (!QFile::copy(source.filePath(QLatin1String(name)), target)
            || !QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner))
            return false;
    }
    return m_port != 0
           && replaceOnce(filePath(QStringLiteral("versioninfo.conf")), "listen 8080;",
                          "listen " + authority() + ";");
}

bool Nginx::start()
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(nginxProgram(),
                    {QStringLiteral("-p"), m_folder.path(), QStringLiteral("-c"),
                     QStringLiteral("nginx.conf"), QStringLiteral("-e"), QStringLiteral("error.log"),
                     QStringLiteral("-g"), QStringLiteral("daemon off; master_process off;")});
    return m_process.waitForStarted(patience)
           && QTest::qWaitFor([this] { return m_process.state() == QProcess::NotRunning || answers(); },
                              patience)
           && m_process.state() == QProcess::Running;
}

QByteArray Nginx::log()
{
    return m_process.readAll() + readFile(filePath(QStringLiteral("error.log")));
}

bool Nginx::answers() const
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
    return socket.waitForConnected(patience);
}

} // namespace

/*! The update check against a server set up as docs/update-server.md says. */
class tst_Nginx : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void documentedTexts_data();
    void documentedTexts();
    void textsOfOnesOwn_data();
    void textsOfOnesOwn();
    void severalChecksOnOneServer();
    void logsGoIntoTheFolder();
};

void tst_Nginx::initTestCase()
{
    if (nginxProgram().isEmpty())
        QSKIP("nginx is not installed: scripts/install-packages test brings it.");
    QCoreApplication::setOrganizationName(QStringLiteral("tst_Nginx"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_Nginx"));
    for (const char *name : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"})
        qunsetenv(name);
}

void tst_Nginx::documentedTexts_data()
{
    QTest::addColumn<quint32>("vendorId");
    QTest::addColumn<quint32>("productCode");
    QTest::addColumn<quint32>("revision");
    QTest::addColumn<QString>("text");

    QTest::newRow("line break in the text")
        << 0x2Au << 1u << 0x100u
        << QStringLiteral("Firmware 1.0 is installed. Firmware 1.1 is available.\nPlease see your dealer.");
    QTest::newRow("one line") << 0x2Au << 1u << 0x101u
                              << QStringLiteral("Firmware 1.1 is installed. It is the newest one.");
    QTest::newRow("other revision of the product")
        << 0x2Au << 1u << 0x102u << QStringLiteral("This revision is not known. Please see your dealer.");
    QTest::newRow("product whose number begins the same")
        << 0x2Au << 10u << 0x100u << QStringLiteral("No information about this component.");
    QTest::newRow("vendor whose number ends the same")
        << 142u << 1u << 0x100u << QStringLiteral("No information about this component.");
    QTest::newRow("unknown component") << 0xFFFFFFFFu << 0xFFFFFFFFu << 0xFFFFFFFFu
                                       << QStringLiteral("No information about this component.");
}

void tst_Nginx::documentedTexts()
{
    QFETCH(quint32, vendorId);
    QFETCH(quint32, productCode);
    QFETCH(quint32, revision);
    Nginx nginx;
    QVERIFY(nginx.prepare());
    QVERIFY2(nginx.start(), nginx.log());
    qputenv("DRAXEL_UPDATE_HOST", nginx.authority());
    ComponentUpdateChecker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(vendorId, productCode, revision);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QTEST(spy.at(0).at(3).toString(), "text");
}

void tst_Nginx::textsOfOnesOwn_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("text");

    QTest::newRow("Latin-1") << QByteArray("1/2/3 \"F\xFCr \xC4ltere\";")
                             << QStringLiteral("F\u00FCr \u00C4ltere");
    QTest::newRow("largest numbers beside it")
        << QByteArray("4294967295/4294967295/4294967295 a;\n1/2/3 b;") << QStringLiteral("b");
    QTest::newRow("quotes and backslash")
        << QByteArray(R"(1/2/3 "say \"yes\" \\ 'no'";)") << QStringLiteral("say \"yes\" \\ 'no'");
    QTest::newRow("semicolon, braces and hash")
        << QByteArray("1/2/3 \"a; {b} # c\";") << QStringLiteral("a; {b} # c");
    QTest::newRow("line break as it is") << QByteArray("1/2/3 \"a\nb\";") << QStringLiteral("a\nb");
    QTest::newRow("empty text") << QByteArray("1/2/3 \"\";") << QString();
    QTest::newRow("text of 3000 characters")
        << "1/2/3 \"" + QByteArray(3000, 'x') + "\";" << QString(3000, QLatin1Char('x'));
    QTest::newRow("exact line after the expression")
        << QByteArray("~^1/2/ \"any\";\n1/2/3 \"this\";") << QStringLiteral("this");
}

void tst_Nginx::textsOfOnesOwn()
{
    QFETCH(QByteArray, line);
    Nginx nginx;
    QVERIFY(nginx.prepare());
    QVERIFY(
        writeFile(nginx.filePath(QStringLiteral("versions.map")), "default \"unknown\";\n" + line + "\n"));
    QVERIFY2(nginx.start(), nginx.log());
    qputenv("DRAXEL_UPDATE_HOST", nginx.authority());
    ComponentUpdateChecker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QTEST(spy.at(0).at(3).toString(), "text");
}

void tst_Nginx::severalChecksOnOneServer()
{
    Nginx nginx;
    QVERIFY(nginx.prepare());
    QVERIFY2(nginx.start(), nginx.log());
    qputenv("DRAXEL_UPDATE_HOST", nginx.authority());
    ComponentUpdateChecker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(42, 1, 257);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    checker.checkForUpdate(42, 1, 257);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);

    for (int answer = 0; answer < 3; ++answer)
        QCOMPARE(spy.at(answer).at(3).toString(),
                 QStringLiteral("Firmware 1.1 is installed. It is the newest one."));
}

void tst_Nginx::logsGoIntoTheFolder()
{
    Nginx nginx;
    QVERIFY(nginx.prepare());
    QVERIFY2(nginx.start(), nginx.log());
    qputenv("DRAXEL_UPDATE_HOST", nginx.authority());
    ComponentUpdateChecker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(42, 1, 256);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);

    QVERIFY(QFile::exists(nginx.filePath(QStringLiteral("nginx.pid"))));
    QTRY_VERIFY_WITH_TIMEOUT(
        readFile(nginx.filePath(QStringLiteral("access.log")))
            .contains("\"GET /versioninfo/?vendor=42&product=1&revision=256 HTTP/1.1\" 200"),
        patience);
    QCOMPARE(readFile(nginx.filePath(QStringLiteral("error.log"))), QByteArray());
}

QTEST_GUILESS_MAIN(tst_Nginx)
#include "tst_nginx.moc"
