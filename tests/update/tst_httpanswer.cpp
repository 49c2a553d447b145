// SPDX-License-Identifier: MIT
#include <update/httpanswer.h>

#include <QtTest>

#include <random>

namespace {

using State = HttpAnswer::State;

const QByteArray ok("HTTP/1.1 200 OK\r\n");

/*! "abc" in the gzip format, as gzip 1.12 packs it. */
const QByteArray gzipAbc = QByteArray::fromHex("1f8b08000000000000034b4c4a0600c241243503000000");

/*! What has become of an answer whose bytes came in pieces of one size: "200 body", "open" or "failed". */
QString outcome(const QByteArray &bytes, int pieceSize, bool isClosed = true, int maximumBody = 1000)
{
    HttpAnswer answer(maximumBody);
    for (int i = 0; i < bytes.size(); i += pieceSize)
        answer.take(bytes.mid(i, pieceSize));
    if (isClosed)
        answer.close();
    switch (answer.state()) {
    case State::Open:
        return QStringLiteral("open");
    case State::Failed:
        return answer.body().isEmpty() ? QStringLiteral("failed") : QStringLiteral("failed with a body");
    case State::Complete:
        break;
    }
    return QStringLiteral("%1 %2").arg(answer.status()).arg(QString::fromLatin1(answer.body()));
}

} // namespace

class tst_HttpAnswer : public QObject
{
    Q_OBJECT

private slots:
    void answers_data();
    void answers();
    void isCompleteWithoutTheClose();
    void headIsBounded_data();
    void headIsBounded();
    void bodyIsBounded();
    void unpackedBodyIsBounded();
    void manyHeadersOfOneNameCostNothing();
    void randomBytesEnd();
};

void tst_HttpAnswer::answers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QByteArray &bytes, const char *expected) {
        QTest::newRow(name) << bytes << QString::fromLatin1(expected);
    };
    row("length", ok + "Content-Length: 3\r\n\r\nabc", "200 abc");
    row("more than the length", ok + "Content-Length: 3\r\n\r\nabcdef", "200 abc");
    row("less than the length", ok + "Content-Length: 4\r\n\r\nabc", "failed");
    row("length of zero", ok + "Content-Length: 0\r\n\r\n", "200 ");
    row("no number", ok + "Content-Length: x\r\n\r\nabc", "failed");
    row("negative", ok + "Content-Length: -3\r\n\r\nabc", "failed");
    row("beyond 64 bits", ok + "Content-Length: 99999999999999999999\r\n\r\nabc", "failed");
    row("to the close", ok + "\r\nabc", "200 abc");
    row("names in any case", ok + "cONTENT-lENGTH:2\r\n\r\nabc", "200 ab");
    row("line feeds alone", "HTTP/1.0 200 OK\nContent-Length: 2\n\nabc", "200 ab");
    row("no reason", "HTTP/1.1 404\r\n\r\nabc", "404 abc");
    row("continue first", "HTTP/1.1 100 Continue\r\n\r\n" + ok + "\r\nabc", "200 abc");
    row("no content", "HTTP/1.1 204 No Content\r\n\r\nabc", "204 ");
    row("not modified", "HTTP/1.1 304 Not Modified\r\nContent-Length: 5\r\n\r\n", "304 ");
    row("chunks", ok + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\nA;x=y\r\n0123456789\r\n0\r\n\r\n",
        "200 abc0123456789");
    row("chunks and a trailer", ok + "Transfer-Encoding: chunked\r\n\r\n1\r\na\r\n0\r\nX: y\r\n\r\n",
        "200 a");
    row("chunks without an end", ok + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n", "failed");
    row("chunk without a size", ok + "Transfer-Encoding: chunked\r\n\r\nx\r\nabc\r\n", "failed");
    row("chunk longer than its size", ok + "Transfer-Encoding: chunked\r\n\r\n2\r\nabc\r\n0\r\n\r\n",
        "failed");
    row("gzip", ok + "Content-Encoding: gzip\r\n\r\n" + gzipAbc, "200 abc");
    row("gzip that breaks off", ok + "Content-Encoding: gzip\r\n\r\n" + gzipAbc.left(15), "failed");
    row("gzip that is none", ok + "Content-Encoding: gzip\r\n\r\nabc", "failed");
    row("something behind the gzip", ok + "Content-Encoding: gzip\r\n\r\n" + gzipAbc + "xyz", "200 abc");
    row("no body in a coding", ok + "Content-Encoding: gzip\r\nContent-Length: 0\r\n\r\n", "200 ");
    row("unknown coding", ok + "Content-Encoding: br\r\n\r\nabc", "200 abc");
    row("no HTTP", "SSH-2.0-OpenSSH_9.2p1\r\n\r\n", "failed");
    row("HTTP/2", "HTTP/2 200\r\n\r\n", "failed");
    row("no status", "HTTP/1.1 OK\r\n\r\n", "failed");
    row("nothing", "", "failed");
    row("broken off in the head", ok + "Content-Le", "failed");
}

void tst_HttpAnswer::answers()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    for (const int size : {1, 2, 3, 7, 1000})
        QCOMPARE(outcome(bytes, size), expected);
}

void tst_HttpAnswer::isCompleteWithoutTheClose()
{
    QCOMPARE(outcome(ok + "Content-Length: 3\r\n\r\nabc", 1, false), QStringLiteral("200 abc"));
    QCOMPARE(outcome(ok + "Transfer-Encoding: chunked\r\n\r\n1\r\na\r\n0\r\n\r\n", 1, false),
             QStringLiteral("200 a"));
    QCOMPARE(outcome(ok + "\r\nabc", 1, false), QStringLiteral("open"));
}

void tst_HttpAnswer::headIsBounded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("one line") << ok + QByteArray(70000, 'x');
    QTest::newRow("many lines") << ok + QByteArray("Set-Cookie: a=b\r\n").repeated(5000);
    QTest::newRow("continue for ever") << QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(5000);
    QTest::newRow("trailer") << ok + "Transfer-Encoding: chunked\r\n\r\n0\r\n"
                                    + QByteArray("X: y\r\n").repeated(20000);
    QTest::newRow("size of a chunk") << ok + "Transfer-Encoding: chunked\r\n\r\n" + QByteArray(300, '0');
}

void tst_HttpAnswer::headIsBounded()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(outcome(bytes, 1000, false), QStringLiteral("failed"));
    QCOMPARE(outcome(bytes, 1000000, false), QStringLiteral("failed"));
}

void tst_HttpAnswer::bodyIsBounded()
{
    const QByteArray body(1000, 'x');
    QCOMPARE(outcome(ok + "\r\n" + body, 64), QStringLiteral("200 ") + QString::fromLatin1(body));
    QCOMPARE(outcome(ok + "\r\n" + body + 'x', 64, false), QStringLiteral("failed"));
    QCOMPARE(outcome(ok + "Transfer-Encoding: chunked\r\n\r\n" + QByteArray("1\r\nx\r\n").repeated(1001), 64,
                     false),
             QStringLiteral("failed"));
}

void tst_HttpAnswer::unpackedBodyIsBounded()
{
    // The "deflate" coding is what qCompress() gives after four bytes of its own.
    const QByteArray bomb = qCompress(QByteArray(100 * 1000 * 1000, 'x')).mid(4);
    QVERIFY(bomb.size() < 200000);
    HttpAnswer answer(1000000);
    answer.take(ok + "Content-Encoding: deflate\r\n\r\n");
    int taken = 0;
    int largestBody = 0;
    while (answer.state() == State::Open && taken < bomb.size()) {
        answer.take(bomb.mid(taken, 100));
        taken += 100;
        largestBody = qMax(largestBody, answer.body().size());
    }
    QCOMPARE(answer.state(), State::Failed);
    QVERIFY2(taken < 2000,
             qPrintable(QString::number(taken))); // where one more piece would have been too much
    QVERIFY(largestBody > 900000 && largestBody <= 1000000);

    const QByteArray fitting = qCompress(QByteArray(1000000, 'x')).mid(4);
    HttpAnswer second(1000000);
    second.take(ok + "Content-Encoding: deflate\r\n\r\n" + fitting);
    second.close();
    QCOMPARE(second.state(), State::Complete);
    QCOMPARE(second.body(), QByteArray(1000000, 'x'));
}

void tst_HttpAnswer::manyHeadersOfOneNameCostNothing()
{
    QCOMPARE(outcome(ok + QByteArray("Set-Cookie: a=b\r\n").repeated(3000) + "\r\nabc", 1000),
             QStringLiteral("200 abc"));
}

void tst_HttpAnswer::randomBytesEnd()
{
    const QList<QByteArray> fragments{ok,
                                      "\r\n",
                                      "Content-Length: 5\r\n",
                                      "Transfer-Encoding: chunked\r\n",
                                      "Content-Encoding: gzip\r\n",
                                      gzipAbc,
                                      "5\r\n",
                                      "0\r\n",
                                      "abc",
                                      "\n",
                                      ":",
                                      ";"};
    for (uint seed = 1; seed <= 2000; ++seed) {
        std::mt19937 random(seed);
        QByteArray bytes = seed % 4 != 0 ? ok : QByteArray();
        for (uint i = 0; i < 12; ++i)
            bytes += random() % 5 != 0 ? fragments.at(int(random() % uint(fragments.size())))
                                       : QByteArray(int(random() % 5), char(random()));
        const QString whole = outcome(bytes, bytes.size());
        QVERIFY(whole != QStringLiteral("open"));
        for (const int size : {1, 3, 17})
            QVERIFY2(outcome(bytes, size) == whole, bytes.toHex().constData());
    }
}

QTEST_GUILESS_MAIN(tst_HttpAnswer)
#include "tst_httpanswer.moc"
