// SPDX-License-Identifier: MIT
#include "program.h"

#include <tests/support/httpserver.h>

#include <QDir>
#include <QTemporaryDir>

#include <memory>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

/*! `draxelctl check-update` and a server of the test. */
class tst_CheckUpdate : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void asksAndPrintsTheAnswer();
    void answerIsUnchanged();
    void answerWithALineEnd();
    void serverOfTheSettings();
    void serverThatFails_data();
    void serverThatFails();
    void failureInALanguage();
    void noServer();
    void identityIsIncomplete();
    void nodeIsNotThere();
    void asksAboutANodeOnABus();

private:
    QString path(const char *name) const { return m_folder->path() + QLatin1Char('/') + QLatin1String(name); }
    Result check(const QStringList &options = {}) const
    {
        return run(QStringList({s("check-update"), path("v.dxxml"), s("--node"), s("5")}) + options,
                   {s("DRAXEL_UPDATE_HOST=") + m_server->authority()});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<HttpServer> m_server;
};

void tst_CheckUpdate::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<HttpServer>();
    QVERIFY(m_server->isListening());
    writeExchange(path("v.dxxml"),
                  node(5, object(0x1018, 1, 0x2A) + object(0x1018, 2, 1) + object(0x1018, 3, 0x100))
                      + node(6, object(0x1018, 1, 0x2A) + object(0x1018, 2, 1)));
}

void tst_CheckUpdate::asksAndPrintsTheAnswer()
{
    m_server->setAnswer(HttpServer::response("Version 1.2 is there."));
    const Result result = check();
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, s("Version 1.2 is there.\n"));
    QCOMPARE(result.status, 0);
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requestLine(0),
             QByteArray("GET /versioninfo/?vendor=42&product=1&revision=256 HTTP/1.1"));
}

void tst_CheckUpdate::answerIsUnchanged()
{
    // No terminal: what would be a command to one goes through.
    m_server->setAnswer(HttpServer::response("<b>x</b> & %1\r\n\033[31mred"));
    QCOMPARE(check().output, s("<b>x</b> & %1\r\n\033[31mred\n"));
}

void tst_CheckUpdate::answerWithALineEnd()
{
    m_server->setAnswer(HttpServer::response("one\n\ntwo\n"));
    QCOMPARE(check().output, s("one\n\ntwo\n"));
}

void tst_CheckUpdate::serverOfTheSettings()
{
    m_server->setAnswer(HttpServer::response("from the settings"));
    QVERIFY(QDir(m_folder->path()).mkpath(s("config/Draxel Project")));
    QFile settings(path("config/Draxel Project/draxel.conf")); // those of the window
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("[update]\nhost=" + m_server->authority().toLatin1() + "\n");
    settings.close();
    const Result result = run({s("check-update"), path("v.dxxml"), s("--node=5")},
                              {s("DRAXEL_UPDATE_HOST"), s("XDG_CONFIG_HOME=") + path("config")});
    QCOMPARE(result.output, s("from the settings\n"));
    QCOMPARE(result.status, 0);
}

void tst_CheckUpdate::serverThatFails_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("not found") << HttpServer::response("no such page", "404 Not Found");
    QTest::newRow("broken") << HttpServer::response("sorry", "500 Internal Server Error");
    QTest::newRow("closes at once") << QByteArray();
}

void tst_CheckUpdate::serverThatFails()
{
    QFETCH(QByteArray, answer);
    m_server->setAnswer(answer, HttpServer::Ending::Close);
    const Result result = check();
    QCOMPARE(result.status, 6);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.startsWith(s("No connection to update information server at ")),
             qPrintable(result.errors));
}

void tst_CheckUpdate::failureInALanguage()
{
    m_server->setAnswer(QByteArray(), HttpServer::Ending::Close);
    const Result result = check({s("--language"), s("de")});
    QCOMPARE(result.status, 6);
    QVERIFY2(result.errors.startsWith(s("Keine Verbindung ")), qPrintable(result.errors));
}

void tst_CheckUpdate::noServer()
{
    const QString nobody = s("DRAXEL_UPDATE_HOST=127.0.0.1:%1").arg(freePort());
    const Result result = run({s("check-update"), path("v.dxxml"), s("--node=5")}, {nobody});
    QCOMPARE(result.status, 6);
    QCOMPARE(result.output, QString());
}

void tst_CheckUpdate::identityIsIncomplete()
{
    const Result result = run({s("check-update"), path("v.dxxml"), s("--node=6")},
                              {s("DRAXEL_UPDATE_HOST=") + m_server->authority()});
    QCOMPARE(result.status, 3);
    QCOMPARE(
        result.errors,
        s("The identity of node 6 (object 1018h, sub-indices 1 to 3) is not in %1.\n").arg(path("v.dxxml")));
    QCOMPARE(m_server->connectionCount(), 0);
}

void tst_CheckUpdate::nodeIsNotThere()
{
    const Result result = run({s("check-update"), path("v.dxxml"), s("--node=7")},
                              {s("DRAXEL_UPDATE_HOST=") + m_server->authority()});
    QCOMPARE(result.status, 3);
    QCOMPARE(result.errors, s("There is no node 7 in %1.\n").arg(path("v.dxxml")));
    QCOMPARE(m_server->connectionCount(), 0);
}

void tst_CheckUpdate::asksAboutANodeOnABus()
{
    m_server->setAnswer(HttpServer::response("known"));
    const Result result
        = run({s("check-update"), s("--bus"), s("simulated:pedelec"), s("--bitrate"), s("0"), s("--node=2")},
              {s("DRAXEL_UPDATE_HOST=") + m_server->authority()});
    QCOMPARE(result.output, s("known\n"));
    QCOMPARE(result.status, 0);
    QCOMPARE(m_server->requestLine(0),
             QByteArray("GET /versioninfo/?vendor=65534&product=4540102&revision=65539 HTTP/1.1"));
}

QTEST_GUILESS_MAIN(tst_CheckUpdate)
#include "tst_checkupdate.moc"
