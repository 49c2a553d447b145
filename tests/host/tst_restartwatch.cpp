// SPDX-License-Identifier: MIT
#include <host/core/restartwatch.h>

#include <QtTest>

using std::chrono::milliseconds;

class tst_RestartWatch : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_now = milliseconds(100000);
        m_watch = RestartWatch([this] { return m_now; });
    }

    void oneStartIsNoLoop();
    void secondStartWithoutHeartbeatIsOne();
    void secondStartWithHeartbeatIsNone();
    void thirdStartIsOneInAnyCase();
    void oldStartsAreForgotten();
    void eachNodeForItself();
    void clears();

private:
    void start(quint8 nodeId, int msLater = 500)
    {
        m_now += milliseconds(msLater);
        m_watch.noteBootUp(nodeId);
    }

    milliseconds m_now{0};
    RestartWatch m_watch{[] { return milliseconds(0); }};
};

void tst_RestartWatch::oneStartIsNoLoop()
{
    QVERIFY(!m_watch.keepsRestarting(7));
    start(7);
    QVERIFY(!m_watch.keepsRestarting(7));
}

void tst_RestartWatch::secondStartWithoutHeartbeatIsOne()
{
    start(7);
    start(7);
    QVERIFY(m_watch.keepsRestarting(7));
}

void tst_RestartWatch::secondStartWithHeartbeatIsNone()
{
    start(7);
    start(7); // the reset by NMT after switching on
    m_watch.noteHeartbeat(7);
    QVERIFY(!m_watch.keepsRestarting(7));
}

void tst_RestartWatch::thirdStartIsOneInAnyCase()
{
    for (int i = 0; i < 3; ++i) {
        start(7);
        m_watch.noteHeartbeat(7);
    }
    QVERIFY(m_watch.keepsRestarting(7));
}

void tst_RestartWatch::oldStartsAreForgotten()
{
    start(7);
    start(7);
    m_now += milliseconds(19500);
    QVERIFY(m_watch.keepsRestarting(7));
    m_now += milliseconds(1);
    QVERIFY(!m_watch.keepsRestarting(7));
    start(7, 0);
    QVERIFY(m_watch.keepsRestarting(7));
}

void tst_RestartWatch::eachNodeForItself()
{
    start(7);
    start(8);
    QVERIFY(!m_watch.keepsRestarting(7));
    QVERIFY(!m_watch.keepsRestarting(8));
}

void tst_RestartWatch::clears()
{
    start(7);
    start(7);
    m_watch.clear();
    QVERIFY(!m_watch.keepsRestarting(7));
    start(7);
    QVERIFY(!m_watch.keepsRestarting(7));
}

QTEST_GUILESS_MAIN(tst_RestartWatch)
#include "tst_restartwatch.moc"
