// SPDX-License-Identifier: MIT
#include <host/core/disconnectguard.h>

#include <QtTest>

using std::chrono::milliseconds;

namespace {

constexpr int quietTurns = 10;

void passTurns(DisconnectGuard &guard, int turns)
{
    for (int i = 0; i < turns; ++i)
        guard.turnPassed();
}

} // namespace

class tst_DisconnectGuard : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_now = milliseconds(5000); }

    void idle();
    void duringDetection();
    void detectionThatBeginsLater();
    void duringUpload();
    void betweenAnswerAndNextRequest();
    void afterTimeoutCode();
    void detectionFollowedByRequest();
    void countsAnewForEachDisconnection();
    void survivesEndsWithoutStart();

private:
    DisconnectGuard makeGuard()
    {
        return DisconnectGuard([this] { return m_now; });
    }

    milliseconds m_now{0};
};

void tst_DisconnectGuard::idle()
{
    DisconnectGuard guard = makeGuard();
    QVERIFY(!guard.isSafe());
    QCOMPARE(guard.timeToWait().count(), 0);
    passTurns(guard, quietTurns - 1);
    QVERIFY(!guard.isSafe());
    passTurns(guard, 1);
    QVERIFY(guard.isSafe());
}

void tst_DisconnectGuard::duringDetection()
{
    DisconnectGuard guard = makeGuard();
    guard.receiverAsked();
    QCOMPARE(guard.timeToWait().count(), 2400);
    m_now += milliseconds(2100); // a 2000 ms timer that is 5 % late
    passTurns(guard, 2 * quietTurns);
    QVERIFY(!guard.isSafe());
    QCOMPARE(guard.timeToWait().count(), 300);

    m_now += milliseconds(300);
    QCOMPARE(guard.timeToWait().count(), 0);
    QVERIFY(!guard.isSafe()); // turns during the detection do not count
    passTurns(guard, quietTurns);
    QVERIFY(guard.isSafe());
}

void tst_DisconnectGuard::detectionThatBeginsLater()
{
    DisconnectGuard guard = makeGuard();
    passTurns(guard, quietTurns - 1);
    guard.receiverAsked();
    passTurns(guard, quietTurns);
    QVERIFY(!guard.isSafe());
    m_now += milliseconds(2400);
    passTurns(guard, quietTurns);
    QVERIFY(guard.isSafe());
}

void tst_DisconnectGuard::duringUpload()
{
    DisconnectGuard guard = makeGuard();
    guard.uploadStarted();
    m_now += milliseconds(60000);
    passTurns(guard, 2 * quietTurns);
    QVERIFY(!guard.isSafe());
    guard.uploadEnded();
    QVERIFY(!guard.isSafe());
    passTurns(guard, quietTurns);
    QVERIFY(guard.isSafe());
}

void tst_DisconnectGuard::betweenAnswerAndNextRequest()
{
    DisconnectGuard guard = makeGuard();
    guard.uploadStarted();
    guard.uploadEnded();
    passTurns(guard, 1);
    QVERIFY(!guard.isSafe()); // the next request is on its way
    guard.uploadStarted();
    passTurns(guard, quietTurns);
    QVERIFY(!guard.isSafe());
}

void tst_DisconnectGuard::afterTimeoutCode()
{
    DisconnectGuard guard = makeGuard();
    guard.uploadStarted();
    guard.uploadEnded(); // FFFFFFFFh
    passTurns(guard, 1);
    guard.uploadStarted(); // the one more request
    QVERIFY(!guard.isSafe());
    passTurns(guard, 1);
    guard.uploadEnded();
    passTurns(guard, quietTurns - 1);
    QVERIFY(!guard.isSafe());
    passTurns(guard, 1);
    QVERIFY(guard.isSafe());
}

void tst_DisconnectGuard::detectionFollowedByRequest()
{
    DisconnectGuard guard = makeGuard();
    guard.receiverAsked();
    m_now += milliseconds(2400);
    passTurns(guard, quietTurns - 1);
    guard.uploadStarted(); // the detection's timer was late, and here is its first request
    QVERIFY(!guard.isSafe());
    guard.uploadEnded();
    passTurns(guard, quietTurns);
    QVERIFY(guard.isSafe());
}

void tst_DisconnectGuard::countsAnewForEachDisconnection()
{
    DisconnectGuard guard = makeGuard();
    passTurns(guard, quietTurns);
    QVERIFY(guard.isSafe());
    guard.restartCounting();
    QVERIFY(!guard.isSafe());
    passTurns(guard, quietTurns);
    QVERIFY(guard.isSafe());
}

void tst_DisconnectGuard::survivesEndsWithoutStart()
{
    DisconnectGuard guard = makeGuard();
    guard.uploadEnded();
    guard.uploadStarted();
    passTurns(guard, quietTurns);
    QVERIFY(!guard.isSafe());
}

QTEST_GUILESS_MAIN(tst_DisconnectGuard)
#include "tst_disconnectguard.moc"
