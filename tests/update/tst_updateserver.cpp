// SPDX-License-Identifier: MIT
#include <update/updateserver.h>

#include <QRegularExpression>
#include <QSettings>
#include <QtTest>

namespace {

constexpr char variable[] = "DRAXEL_UPDATE_HOST";

int warningCount = 0;

void countWarnings(QtMsgType type, const QMessageLogContext &, const QString &)
{
    if (type == QtWarningMsg)
        ++warningCount;
}

} // namespace

/*! Where the update information server is looked for. */
class tst_UpdateServer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void compiledInDefaults();
    void settingsReplaceTheDefault();
    void environmentComesBeforeSettings();
    void emptyEntriesCountAsNotThere();
    void nonsenseInTheEnvironmentIsIgnoredWithAWarning();
    void nonsenseInTheSettingsIsIgnoredWithAWarning();
    void listInTheSettingsIsIgnoredWithAWarning();
    void domainFollowsNoOverride();
    void messagesNameTheServerAsked();

    void isHost_data();
    void isHost();
};

void tst_UpdateServer::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("tst_UpdateServer"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_UpdateServer"));
}

void tst_UpdateServer::init()
{
    qunsetenv(variable);
    QSettings().clear();
}

void tst_UpdateServer::compiledInDefaults()
{
    QCOMPARE(UpdateServer::host(), QStringLiteral("updates.draxel.example"));
    QCOMPARE(UpdateServer::organisationDomain(), QStringLiteral("draxel.example"));
}

void tst_UpdateServer::settingsReplaceTheDefault()
{
    QSettings().setValue(QStringLiteral("update/host"), QStringLiteral("files.example:81"));
    QCOMPARE(UpdateServer::host(), QStringLiteral("files.example:81"));
}

void tst_UpdateServer::environmentComesBeforeSettings()
{
    QSettings().setValue(QStringLiteral("update/host"), QStringLiteral("files.example:81"));
    qputenv(variable, "environment.example");
    QCOMPARE(UpdateServer::host(), QStringLiteral("environment.example"));
}

void tst_UpdateServer::emptyEntriesCountAsNotThere()
{
    QSettings().setValue(QStringLiteral("update/host"), QString());
    qputenv(variable, "");

    warningCount = 0;
    const QtMessageHandler previous = qInstallMessageHandler(countWarnings);
    const QString host = UpdateServer::host();
    qInstallMessageHandler(previous);

    QCOMPARE(host, QStringLiteral("updates.draxel.example"));
    QCOMPARE(warningCount, 0);
}

void tst_UpdateServer::nonsenseInTheEnvironmentIsIgnoredWithAWarning()
{
    qputenv(variable, "http://elsewhere.example/x");
    const QRegularExpression warning(QStringLiteral("DRAXEL_UPDATE_HOST.*\"http://elsewhere.example/x\""));
    QTest::ignoreMessage(QtWarningMsg, warning);
    QCOMPARE(UpdateServer::host(), QStringLiteral("updates.draxel.example"));

    QSettings().setValue(QStringLiteral("update/host"), QStringLiteral("files.example"));
    QTest::ignoreMessage(QtWarningMsg, warning);
    QCOMPARE(UpdateServer::host(), QStringLiteral("files.example"));
}

void tst_UpdateServer::nonsenseInTheSettingsIsIgnoredWithAWarning()
{
    QSettings().setValue(QStringLiteral("update/host"), QStringLiteral("two words"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("update/host.*\"two words\"")));
    QCOMPARE(UpdateServer::host(), QStringLiteral("updates.draxel.example"));
}

void tst_UpdateServer::listInTheSettingsIsIgnoredWithAWarning()
{
    QSettings().setValue(QStringLiteral("update/host"),
                         QStringList{QStringLiteral("a.example"), QStringLiteral("b.example")});
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("update/host.*a.example,b.example")));
    QCOMPARE(UpdateServer::host(), QStringLiteral("updates.draxel.example"));
}

void tst_UpdateServer::domainFollowsNoOverride()
{
    qputenv(variable, "environment.example");
    QCOMPARE(UpdateServer::organisationDomain(), QStringLiteral("draxel.example"));
}

void tst_UpdateServer::isHost_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isHost");

    QTest::newRow("name") << QStringLiteral("updates.draxel.example") << true;
    QTest::newRow("name and port") << QStringLiteral("updates.draxel.example:8080") << true;
    QTest::newRow("one label") << QStringLiteral("localhost") << true;
    QTest::newRow("capitals") << QStringLiteral("Updates.Draxel.EXAMPLE") << true;
    QTest::newRow("digits in a label") << QStringLiteral("3com.example") << true;
    QTest::newRow("underscore") << QStringLiteral("update_server:80") << true;
    QTest::newRow("closing dot") << QStringLiteral("updates.draxel.example.") << true;
    QTest::newRow("letters beyond ASCII") << QStringLiteral("m\u00fcller.example") << true;
    QTest::newRow("IPv4 address") << QStringLiteral("192.168.1.20") << true;
    QTest::newRow("IPv4 address and port") << QStringLiteral("127.0.0.1:8080") << true;
    QTest::newRow("IPv6 address") << QStringLiteral("[::1]") << true;
    QTest::newRow("IPv6 address and port") << QStringLiteral("[2001:db8::1]:8080") << true;
    QTest::newRow("highest port") << QStringLiteral("a:65535") << true;
    QTest::newRow("longest label") << QString(63, QLatin1Char('a')) + QStringLiteral(".example") << true;
    QTest::newRow("capitals beyond ASCII") << QStringLiteral("M\u00dcLLER.example") << true;

    QTest::newRow("capital that host names do not know") << QStringLiteral("\u023d") << false;
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("blank") << QStringLiteral(" ") << false;
    QTest::newRow("blank before") << QStringLiteral(" a.example") << false;
    QTest::newRow("blank after") << QStringLiteral("a.example ") << false;
    QTest::newRow("blank inside") << QStringLiteral("a b.example") << false;
    QTest::newRow("line end") << QStringLiteral("a.example\n") << false;
    QTest::newRow("line end and header") << QStringLiteral("a.example\r\nX: y") << false;
    QTest::newRow("zero character") << QString(QLatin1Char('a')) + QChar(0) + QLatin1Char('b') << false;
    QTest::newRow("soft hyphen only") << QStringLiteral("\u00ad") << false;
    QTest::newRow("scheme") << QStringLiteral("http://a.example") << false;
    QTest::newRow("scheme without slashes") << QStringLiteral("http:a.example") << false;
    QTest::newRow("path") << QStringLiteral("a.example/path") << false;
    QTest::newRow("closing slash") << QStringLiteral("a.example/") << false;
    QTest::newRow("backslash") << QStringLiteral("a.example\\b") << false;
    QTest::newRow("query") << QStringLiteral("a.example?b") << false;
    QTest::newRow("fragment") << QStringLiteral("a.example#b") << false;
    QTest::newRow("user") << QStringLiteral("user@a.example") << false;
    QTest::newRow("user and password") << QStringLiteral("user:secret@a.example") << false;
    QTest::newRow("percent encoded") << QStringLiteral("a%2eexample") << false;
    QTest::newRow("placeholder") << QStringLiteral("%1") << false;
    QTest::newRow("comma") << QStringLiteral("a.example,b.example") << false;
    QTest::newRow("no host") << QStringLiteral(":8080") << false;
    QTest::newRow("no port after the colon") << QStringLiteral("a.example:") << false;
    QTest::newRow("port 0") << QStringLiteral("a.example:0") << false;
    QTest::newRow("port too high") << QStringLiteral("a.example:65536") << false;
    QTest::newRow("port far too high") << QStringLiteral("a.example:99999999999999999999") << false;
    QTest::newRow("negative port") << QStringLiteral("a.example:-1") << false;
    QTest::newRow("signed port") << QStringLiteral("a.example:+80") << false;
    QTest::newRow("port with letters") << QStringLiteral("a.example:80x") << false;
    QTest::newRow("two ports") << QStringLiteral("a.example:80:81") << false;
    QTest::newRow("only a port") << QStringLiteral("8080") << false;
    QTest::newRow("short IPv4 address") << QStringLiteral("127.1") << false;
    QTest::newRow("IPv4 octet too high") << QStringLiteral("256.0.0.1") << false;
    QTest::newRow("hexadecimal address") << QStringLiteral("0x7f000001") << false;
    QTest::newRow("five octets") << QStringLiteral("1.2.3.4.5") << false;
    QTest::newRow("IPv6 address without brackets") << QStringLiteral("2001:db8::1") << false;
    QTest::newRow("IPv6 address with a zone") << QStringLiteral("[fe80::1%eth0]") << false;
    QTest::newRow("IPv4 address in brackets") << QStringLiteral("[127.0.0.1]") << false;
    QTest::newRow("open bracket") << QStringLiteral("[::1") << false;
    QTest::newRow("text after the bracket") << QStringLiteral("[::1]a") << false;
    QTest::newRow("empty label") << QStringLiteral("a..example") << false;
    QTest::newRow("dot before") << QStringLiteral(".example") << false;
    QTest::newRow("only a dot") << QStringLiteral(".") << false;
    QTest::newRow("hyphen before") << QStringLiteral("-a.example") << false;
    QTest::newRow("hyphen after") << QStringLiteral("a-.example") << false;
    QTest::newRow("label too long") << QString(64, QLatin1Char('a')) + QStringLiteral(".example") << false;
    QTest::newRow("name too long") << QStringLiteral("a.").repeated(127) + QStringLiteral("aa") << false;
}

void tst_UpdateServer::isHost()
{
    QFETCH(QString, text);
    QTEST(UpdateServer::isHost(text), "isHost");
}

void tst_UpdateServer::messagesNameTheServerAsked()
{
    QCOMPARE(UpdateServer::displayName(QStringLiteral("updates.draxel.example")),
             QStringLiteral("draxel.example"));
    QCOMPARE(UpdateServer::displayName(QStringLiteral("localhost:8080")), QStringLiteral("localhost:8080"));
}

QTEST_GUILESS_MAIN(tst_UpdateServer)
#include "tst_updateserver.moc"
