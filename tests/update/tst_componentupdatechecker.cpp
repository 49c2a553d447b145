// SPDX-License-Identifier: MIT
#include <tests/support/httpserver.h>
#include <update/componentupdatechecker.h>

#include <QEventLoop>
#include <QMetaMethod>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTimer>
#include <QTranslator>
#include <QtTest>

#include <limits>
#include <memory>

using namespace std::chrono_literals;
using Ending = HttpServer::Ending;

namespace {

constexpr int patience = 20000; // ms, for what takes milliseconds on a machine that is not busy

/*! What a failure says of the server that the test has set. */
QString noConnection()
{
    return QStringLiteral("No connection to update information server at %1.")
        .arg(qEnvironmentVariable("DRAXEL_UPDATE_HOST"));
}

/*! A checker with limits that a test can wait for. */
class Checker : public ComponentUpdateChecker
{
public:
    explicit Checker(const ReplyLimits &limits = {})
        : m_limits(limits)
    {
    }

protected:
    ReplyLimits replyLimits() const override { return m_limits; }

private:
    ReplyLimits m_limits;
};

/*! The body in the "deflate" coding; qCompress() puts four bytes of its own before it. */
QByteArray deflated(const QByteArray &body)
{
    return qCompress(body).mid(4);
}

QByteArray headOf(qint64 contentLength)
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(contentLength) + "\r\n\r\n";
}

QString textOf(const QSignalSpy &spy, int answer)
{
    return spy.value(answer).value(3).toString();
}

/*! Puts one sentence into other words. */
class Translator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        const bool known = qstrcmp(context, "ComponentUpdateChecker") == 0
                           && qstrcmp(sourceText, "No connection to update information server at %1.") == 0;
        return known ? QStringLiteral("%1 schweigt!") : QString();
    }
};

} // namespace

class tst_ComponentUpdateChecker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void metaObject();
    void request_data();
    void request();
    void defaultHeadersOnly();
    void cookiesAreNeitherKeptNorSent();
    void answersTrueAndNeverFromInside();
    void overrideIsReadForEveryRequest();

    void body_data();
    void body();
    void twoPressesGiveOneAnswerThenTwo();
    void threePressesGiveThreeAnswers();
    void failureIsDeliveredAsOftenAsAnAnswer();
    void overlappingRequestsCarryTheLastIdentity();

    void failedAnswer_data();
    void failedAnswer();
    void refusedPort();
    void unknownHost();
    void silentServer();
    void serverThatStopsInTheHead();
    void serverThatStopsInTheBody();
    void serverThatNeverEndsTheHead();
    void serverThatNeverEndsTheBody();
    void serverThatDripsForEver();
    void slowAnswerIsWaitedFor();
    void bodyOfTheLargestSize();
    void compressedBodyBeyondTheLargestSize();
    void failureMessageIsTranslated();
    void nextRequestWorksAfterAFailure();

    void redirectIsNotFollowed();
    void answerStaysWhileItIsShown();
    void repliesAreReleased();
    void destroyedWhileARequestRuns();
    void destroyedBeforeItsRequestIsSent();
    void shippedLimits();

private:
    void useServer() { qputenv("DRAXEL_UPDATE_HOST", m_server->authority().toLatin1()); }

    std::unique_ptr<HttpServer> m_server;
};

void tst_ComponentUpdateChecker::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("tst_ComponentUpdateChecker"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_ComponentUpdateChecker"));
    // A proxy of the machine would stand between the checker and the loopback.
    for (const char *name : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"})
        qunsetenv(name);
}

void tst_ComponentUpdateChecker::init()
{
    m_server = std::make_unique<HttpServer>();
    QVERIFY(m_server->isListening());
    useServer();
}

void tst_ComponentUpdateChecker::cleanup()
{
    m_server.reset();
}

void tst_ComponentUpdateChecker::metaObject()
{
    const QMetaObject &meta = ComponentUpdateChecker::staticMetaObject;
    QCOMPARE(QByteArray(meta.className()), QByteArray("ComponentUpdateChecker"));
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);

    const QMetaMethod answer = meta.method(meta.methodOffset());
    QCOMPARE(answer.methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.indexOfSignal("updateInformation(quint32,quint32,quint32,QString)"), answer.methodIndex());
    QCOMPARE(answer.methodSignature(),
             QByteArray("updateInformation(uint,uint,uint,QString)")); // quint32 is uint
    QCOMPARE(answer.parameterNames(), (QList<QByteArray>{"vendorId", "productcode", "revision", "info"}));

    const QMetaMethod reply = meta.method(meta.methodOffset() + 1);
    QCOMPARE(reply.methodType(), QMetaMethod::Slot);
    QCOMPARE(meta.indexOfSlot("replyFinished(QNetworkReply*)"), reply.methodIndex());
    QCOMPARE(reply.parameterNames(), (QList<QByteArray>{"reply"}));
}

void tst_ComponentUpdateChecker::request_data()
{
    QTest::addColumn<quint32>("vendorId");
    QTest::addColumn<quint32>("productCode");
    QTest::addColumn<quint32>("revision");
    QTest::addColumn<QByteArray>("query");

    QTest::newRow("hexadecimal values")
        << 0x2Au << 1u << 0x100u << QByteArray("vendor=42&product=1&revision=256");
    QTest::newRow("zeros") << 0u << 0u << 0u << QByteArray("vendor=0&product=0&revision=0");
    QTest::newRow("largest values") << 0xFFFFFFFFu << 0xFFFFFFFEu << 0x80000000u
                                    << QByteArray("vendor=4294967295&product=4294967294&revision=2147483648");
}

void tst_ComponentUpdateChecker::request()
{
    QFETCH(quint32, vendorId);
    QFETCH(quint32, productCode);
    QFETCH(quint32, revision);
    QFETCH(QByteArray, query);
    m_server->setAnswer(HttpServer::response("text"));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(vendorId, productCode, revision);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requestLine(0), "GET /versioninfo/?" + query + " HTTP/1.1");
    QCOMPARE(spy.at(0).at(0).toUInt(), vendorId);
    QCOMPARE(spy.at(0).at(1).toUInt(), productCode);
    QCOMPARE(spy.at(0).at(2).toUInt(), revision);
    QCOMPARE(textOf(spy, 0), QStringLiteral("text"));
}

void tst_ComponentUpdateChecker::defaultHeadersOnly()
{
    // The reference is what the network layer sends by itself for the same URL.
    m_server->setAnswer(HttpServer::response("text"));
    QNetworkAccessManager manager;
    manager.get(QNetworkRequest(QUrl(
        QStringLiteral("http://%1/versioninfo/?vendor=1&product=2&revision=3").arg(m_server->authority()))));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, patience);

    Checker checker;
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 2, patience);

    QCOMPARE(m_server->requests().at(1), m_server->requests().at(0));
    QVERIFY(m_server->requests().at(1).contains("\r\nHost: " + m_server->authority().toLatin1() + "\r\n"));
}

void tst_ComponentUpdateChecker::cookiesAreNeitherKeptNorSent()
{
    m_server->setAnswer(HttpServer::response("text", "200 OK", "Set-Cookie: who=you; Path=/\r\n"));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);
    QCOMPARE(m_server->requests().at(1), m_server->requests().at(0));
}

void tst_ComponentUpdateChecker::answersTrueAndNeverFromInside()
{
    qputenv("DRAXEL_UPDATE_HOST", "127.0.0.1:1");
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    QVERIFY(checker.checkForUpdate(1, 2, 3));

    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
}

void tst_ComponentUpdateChecker::overrideIsReadForEveryRequest()
{
    HttpServer other;
    m_server->setAnswer(HttpServer::response("first"));
    other.setAnswer(HttpServer::response("second"));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    qputenv("DRAXEL_UPDATE_HOST", other.authority().toLatin1());
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);

    QCOMPARE(textOf(spy, 0), QStringLiteral("first"));
    QCOMPARE(textOf(spy, 1), QStringLiteral("second"));
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(other.requests().size(), 1);
}

void tst_ComponentUpdateChecker::body_data()
{
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<QString>("text");

    QTest::newRow("plain text") << HttpServer::response("Version 1.2 is current.")
                                << QStringLiteral("Version 1.2 is current.");
    QTest::newRow("zero byte inside")
        << HttpServer::response(QByteArray("abc\0def", 7)) << QStringLiteral("abc");
    QTest::newRow("zero byte first") << HttpServer::response(QByteArray("\0def", 4)) << QString();
    QTest::newRow("zero byte last") << HttpServer::response(QByteArray("abc\0", 4)) << QStringLiteral("abc");
    QTest::newRow("two zero bytes") << HttpServer::response(QByteArray("a\0b\0c", 5)) << QStringLiteral("a");
    QTest::newRow("empty") << HttpServer::response("") << QString();
    QTest::newRow("no content") << QByteArray("HTTP/1.1 204 No Content\r\n\r\n") << QString();
    QTest::newRow("Latin-1") << HttpServer::response("f\xFCr \xC4nderungen \xA7 5\xFF")
                             << QStringLiteral("f\u00FCr \u00C4nderungen \u00A7 5\u00FF");
    QTest::newRow("control codes of Latin-1")
        << HttpServer::response("\x01\x80\x9F") << QStringLiteral("\u0001\u0080\u009F");
    QTest::newRow("UTF-8 stays bytes") << HttpServer::response("\xC3\xBC") << QStringLiteral("\u00C3\u00BC");
    QTest::newRow("UTF-8 in the header, Latin-1 all the same")
        << HttpServer::response("\xC3\xBC", "200 OK", "X-Charset: utf-8\r\n")
        << QStringLiteral("\u00C3\u00BC");
    QTest::newRow("line ends and blanks")
        << HttpServer::response(" a\r\n\tb\n\n ") << QStringLiteral(" a\r\n\tb\n\n ");
    QTest::newRow("markup") << HttpServer::response("<b>5 &lt; 6</b> %1")
                            << QStringLiteral("<b>5 &lt; 6</b> %1");
    QTest::newRow("chunks") << QByteArray(
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n")
                            << QStringLiteral("abcde");
    QTest::newRow("compressed") << HttpServer::response(deflated("abcdefgh"), "200 OK",
                                                        "Content-Encoding: deflate\r\n")
                                << QStringLiteral("abcdefgh");
    QTest::newRow("4 MB") << HttpServer::response(QByteArray(4 * 1000 * 1000, 'x'))
                          << QString(4 * 1000 * 1000, QLatin1Char('x'));
    QTest::newRow("smaller Content-Length than body") << headOf(3) + "abcdef" << QStringLiteral("abc");
    QTest::newRow("other success code")
        << HttpServer::response("abc", "203 Non-Authoritative Information") << QStringLiteral("abc");
}

void tst_ComponentUpdateChecker::body()
{
    QFETCH(QByteArray, response);
    QFETCH(QString, text);
    m_server->setAnswer(response);
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QVERIFY2(textOf(spy, 0) == text, qPrintable(textOf(spy, 0).left(200)));
}

void tst_ComponentUpdateChecker::twoPressesGiveOneAnswerThenTwo()
{
    m_server->setAnswer(HttpServer::response("the answer"));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(0x2A, 1, 0x100);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), QStringLiteral("the answer"));

    checker.checkForUpdate(0x2A, 1, 0x100);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);
    QCOMPARE(textOf(spy, 1), QStringLiteral("the answer"));
    QCOMPARE(textOf(spy, 2), QStringLiteral("the answer"));
    QCOMPARE(m_server->requests().size(), 2);
}

void tst_ComponentUpdateChecker::threePressesGiveThreeAnswers()
{
    m_server->setAnswer(HttpServer::response(QByteArray("abc\0def", 7)));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    int expected = 0;
    for (int press = 1; press <= 3; ++press) {
        checker.checkForUpdate(1, 2, 3);
        expected += press;
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), expected, patience);
    }
    QTRY_COMPARE_WITH_TIMEOUT(checker.findChildren<QNetworkReply *>().size(), 0, patience);

    QCOMPARE(spy.count(), 6);
    for (int answer = 0; answer < 6; ++answer)
        QCOMPARE(textOf(spy, answer), QStringLiteral("abc"));
}

void tst_ComponentUpdateChecker::failureIsDeliveredAsOftenAsAnAnswer()
{
    m_server->setAnswer(HttpServer::response("gone", "404 Not Found"));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);

    for (int answer = 0; answer < 3; ++answer)
        QCOMPARE(textOf(spy, answer), noConnection());
}

void tst_ComponentUpdateChecker::overlappingRequestsCarryTheLastIdentity()
{
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, patience);
    checker.checkForUpdate(4, 5, 6);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 2, patience);
    QCOMPARE(m_server->requestLine(0),
             QByteArray("GET /versioninfo/?vendor=1&product=2&revision=3 HTTP/1.1"));
    QCOMPARE(m_server->requestLine(1),
             QByteArray("GET /versioninfo/?vendor=4&product=5&revision=6 HTTP/1.1"));

    // The second is answered before the first; with two connections each answer comes twice.
    m_server->send(1, HttpServer::response("to the second"));
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 2, patience);
    m_server->send(0, HttpServer::response("to the first"));
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 4, patience);

    QCOMPARE(textOf(spy, 0), QStringLiteral("to the second"));
    QCOMPARE(textOf(spy, 1), QStringLiteral("to the second"));
    QCOMPARE(textOf(spy, 2), QStringLiteral("to the first"));
    QCOMPARE(textOf(spy, 3), QStringLiteral("to the first"));
    for (int answer = 0; answer < 4; ++answer) {
        QCOMPARE(spy.at(answer).at(0).toUInt(), 4u);
        QCOMPARE(spy.at(answer).at(1).toUInt(), 5u);
        QCOMPARE(spy.at(answer).at(2).toUInt(), 6u);
    }
}

void tst_ComponentUpdateChecker::failedAnswer_data()
{
    QTest::addColumn<QByteArray>("response");

    QTest::newRow("closed without a byte") << QByteArray();
    QTest::newRow("closed in the status line") << QByteArray("HTTP/1.1 2");
    QTest::newRow("closed in the head") << QByteArray("HTTP/1.1 200 OK\r\nContent-Le");
    QTest::newRow("closed in the body") << headOf(1000) + "abc";
    QTest::newRow("closed before the body") << headOf(5);
    QTest::newRow("absurd Content-Length") << headOf(std::numeric_limits<qint64>::max()) + "abc";
    QTest::newRow("closed in a chunk")
        << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n10\r\nabc");
    QTest::newRow("no HTTP") << QByteArray("SSH-2.0-OpenSSH_9.2p1\r\n\r\n");
    QTest::newRow("bad compression") << HttpServer::response("this is not deflated", "200 OK",
                                                             "Content-Encoding: deflate\r\n");
    QTest::newRow("bad request") << HttpServer::response("text", "400 Bad Request");
    QTest::newRow("password wanted") << HttpServer::response("text", "401 Unauthorized",
                                                             "WWW-Authenticate: Basic realm=\"x\"\r\n");
    QTest::newRow("forbidden") << HttpServer::response("text", "403 Forbidden");
    QTest::newRow("not found") << HttpServer::response("text", "404 Not Found");
    QTest::newRow("gone") << HttpServer::response("text", "410 Gone");
    QTest::newRow("server error") << HttpServer::response("text", "500 Internal Server Error");
    QTest::newRow("unavailable") << HttpServer::response("text", "503 Service Unavailable");
}

void tst_ComponentUpdateChecker::failedAnswer()
{
    QFETCH(QByteArray, response);
    m_server->setAnswer(response, Ending::Close);
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(7, 8, 9);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
    QCOMPARE(spy.at(0).at(0).toUInt(), 7u);
    QCOMPARE(spy.at(0).at(1).toUInt(), 8u);
    QCOMPARE(spy.at(0).at(2).toUInt(), 9u);
}

void tst_ComponentUpdateChecker::refusedPort()
{
    QTcpSocket holder; // keeps its port from everybody, and does not listen there
    QVERIFY(holder.bind(QHostAddress(QHostAddress::LocalHost)));
    qputenv("DRAXEL_UPDATE_HOST", "127.0.0.1:" + QByteArray::number(holder.localPort()));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
}

void tst_ComponentUpdateChecker::unknownHost()
{
    qputenv("DRAXEL_UPDATE_HOST", "nobody.invalid");
    Checker checker({2s, 2s, 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
}

void tst_ComponentUpdateChecker::silentServer()
{
    Checker checker({300ms, 1h, 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
    QTRY_COMPARE_WITH_TIMEOUT(m_server->openConnectionCount(), 0, patience);
}

void tst_ComponentUpdateChecker::serverThatStopsInTheHead()
{
    m_server->setAnswer("HTTP/1.1 200 OK\r\nContent-Le");
    Checker checker({300ms, 1h, 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
}

void tst_ComponentUpdateChecker::serverThatStopsInTheBody()
{
    // Says 1000 bytes, sends three and keeps the connection.
    m_server->setAnswer(headOf(1000) + "abc");
    Checker checker({300ms, 1h, 10000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
}

void tst_ComponentUpdateChecker::serverThatNeverEndsTheHead()
{
    Checker checker({300ms, 1h, 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, patience);
    m_server->send(0, "HTTP/1.1 200 OK\r\n");
    m_server->send(0, "X-Header: text\r\n", Ending::Endless);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
}

void tst_ComponentUpdateChecker::serverThatNeverEndsTheBody()
{
    // No length is given and the bytes come without a pause: only the size ends it.
    Checker checker({1h, 1h, 1000 * 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, patience);
    m_server->send(0, "HTTP/1.1 200 OK\r\n\r\n");
    m_server->send(0, QByteArray(65536, 'x'), Ending::Endless);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
    QTRY_COMPARE_WITH_TIMEOUT(m_server->openConnectionCount(), 0, patience);
}

void tst_ComponentUpdateChecker::serverThatDripsForEver()
{
    // Never silent and never large: only the duration ends it.
    Checker checker({1h, 500ms, 1000 * 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, patience);
    m_server->send(0, headOf(100000));
    m_server->send(0, QByteArray(100000, 'x'), Ending::Drip);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
}

void tst_ComponentUpdateChecker::slowAnswerIsWaitedFor()
{
    // The whole takes 2.5 s, longer than the silence that is allowed between its bytes.
    Checker checker({2s, 1h, 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, patience);
    m_server->send(0, headOf(25));
    m_server->send(0, "abcdefghijklmnopqrstuvwxy", Ending::Drip);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), QStringLiteral("abcdefghijklmnopqrstuvwxy"));
}

void tst_ComponentUpdateChecker::bodyOfTheLargestSize()
{
    Checker checker({1h, 1h, 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    m_server->setAnswer(HttpServer::response(QByteArray(1000, 'x')));
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), QString(1000, QLatin1Char('x')));

    m_server->setAnswer(HttpServer::response(QByteArray(1001, 'x')));
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);
    QCOMPARE(textOf(spy, 1), noConnection());
    QCOMPARE(textOf(spy, 2), noConnection());
}

void tst_ComponentUpdateChecker::compressedBodyBeyondTheLargestSize()
{
    // 100 kB on the wire, 100 MB in memory.
    m_server->setAnswer(HttpServer::response(deflated(QByteArray(100 * 1000 * 1000, 'x')), "200 OK",
                                             "Content-Encoding: deflate\r\n"));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());
}

void tst_ComponentUpdateChecker::failureMessageIsTranslated()
{
    m_server->setAnswer({}, Ending::Close);
    Translator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), m_server->authority() + QStringLiteral(" schweigt!"));
}

void tst_ComponentUpdateChecker::nextRequestWorksAfterAFailure()
{
    m_server->setAnswer(headOf(1000) + "abc", Ending::Close);
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), noConnection());

    m_server->setAnswer(HttpServer::response("better"));
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);
    QCOMPARE(textOf(spy, 1), QStringLiteral("better"));
    QCOMPARE(textOf(spy, 2), QStringLiteral("better"));
}

void tst_ComponentUpdateChecker::redirectIsNotFollowed()
{
    HttpServer elsewhere;
    elsewhere.setAnswer(HttpServer::response("elsewhere"));
    m_server->setAnswer(HttpServer::response(
        "moved", "302 Found", "Location: http://" + elsewhere.authority().toLatin1() + "/\r\n"));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QCOMPARE(textOf(spy, 0), QStringLiteral("moved"));

    // A second answer of the same server comes after anything that the first one might have started.
    m_server->setAnswer(HttpServer::response("done"));
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);
    QCOMPARE(elsewhere.connectionCount(), 0);
    QCOMPARE(m_server->requests().size(), 2);
}

void tst_ComponentUpdateChecker::answerStaysWhileItIsShown()
{
    // A box holds an event loop inside the first delivery for longer than the reply might have taken.
    m_server->setAnswer(HttpServer::response("the answer"));
    Checker checker({1s, 1s, 1000});
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));
    checker.checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(checker.findChildren<QNetworkReply *>().size(), 0, patience);
    int repliesAfterTheBox = 0;
    connect(&checker, &ComponentUpdateChecker::updateInformation, this, [&checker, &repliesAfterTheBox] {
        QEventLoop box;
        QTimer::singleShot(1500, &box, &QEventLoop::quit);
        box.exec();
        repliesAfterTheBox += checker.findChildren<QNetworkReply *>().size();
    });

    checker.checkForUpdate(1, 2, 3);

    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 3, patience);
    QTRY_COMPARE_WITH_TIMEOUT(repliesAfterTheBox, 2, patience);
    QCOMPARE(textOf(spy, 1), QStringLiteral("the answer"));
    QCOMPARE(textOf(spy, 2), QStringLiteral("the answer"));
    QTRY_COMPARE_WITH_TIMEOUT(checker.findChildren<QNetworkReply *>().size(), 0, patience);
}

void tst_ComponentUpdateChecker::repliesAreReleased()
{
    m_server->setAnswer(HttpServer::response("text"));
    Checker checker;
    QSignalSpy spy(&checker, SIGNAL(updateInformation(quint32, quint32, quint32, QString)));

    checker.checkForUpdate(1, 2, 3);
    QCOMPARE(checker.findChildren<QNetworkReply *>().size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(checker.findChildren<QNetworkReply *>().size(), 0, patience);
    QCOMPARE(spy.count(), 1);

    m_server->setAnswer({}, Ending::Close);
    checker.checkForUpdate(1, 2, 3);
    QCOMPARE(checker.findChildren<QNetworkReply *>().size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(checker.findChildren<QNetworkReply *>().size(), 0, patience);
    QCOMPARE(spy.count(), 3);
}

void tst_ComponentUpdateChecker::destroyedWhileARequestRuns()
{
    auto checker = std::make_unique<Checker>();
    QSignalSpy spy(checker.get(), SIGNAL(updateInformation(quint32, quint32, quint32, QString)));
    checker->checkForUpdate(1, 2, 3);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, patience);

    checker.reset();

    QTRY_COMPARE_WITH_TIMEOUT(m_server->openConnectionCount(), 0, patience);
    QCOMPARE(spy.count(), 0);
}

void tst_ComponentUpdateChecker::destroyedBeforeItsRequestIsSent()
{
    auto checker = std::make_unique<Checker>();
    QSignalSpy spy(checker.get(), SIGNAL(updateInformation(quint32, quint32, quint32, QString)));
    checker->checkForUpdate(1, 2, 3);
    checker.reset();

    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 0);
}

void tst_ComponentUpdateChecker::shippedLimits()
{
    const ReplyLimits limits;
    QCOMPARE(qint64(limits.silence.count()), qint64(30000));
    QCOMPARE(qint64(limits.duration.count()), qint64(120000));
    QCOMPARE(limits.bytes, 4194304);
}

QTEST_GUILESS_MAIN(tst_ComponentUpdateChecker)
#include "tst_componentupdatechecker.moc"
