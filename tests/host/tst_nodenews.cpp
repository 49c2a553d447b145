// SPDX-License-Identifier: MIT
#include <host/core/nodenews.h>

#include <QtTest>

using CanOpen::NmtState;
using std::chrono::milliseconds;

class tst_NodeNews : public QObject
{
    Q_OBJECT

private slots:
    void heardOnce();
    void changes();
    void newNodeThatChangesIsNew();
    void restarts();
    void losses();
    void silentAfterBootUp();
    void clears();
};

void tst_NodeNews::heardOnce()
{
    NodeNews news;
    QVERIFY(!news.hasNews());
    news.noteHeartbeat(3, NmtState::Operational, milliseconds(0));
    news.noteHeartbeat(3, NmtState::Operational, milliseconds(500));
    news.noteHeartbeat(4, NmtState::Stopped, milliseconds(500));
    QVERIFY(news.hasNews());
    const NodeNews::Report report = news.take();
    QCOMPARE(report.heard, (NodeNews::States{{3, NmtState::Operational}, {4, NmtState::Stopped}}));
    QVERIFY(report.changed.isEmpty() && report.restarted.isEmpty() && report.lost.isEmpty());
    QVERIFY(!news.hasNews());
    news.noteHeartbeat(3, NmtState::Operational, milliseconds(1000));
    QVERIFY(!news.hasNews());
}

void tst_NodeNews::changes()
{
    NodeNews news;
    news.noteHeartbeat(3, NmtState::PreOperational, milliseconds(0));
    news.take();
    news.noteHeartbeat(3, NmtState::Operational, milliseconds(500));
    const NodeNews::Report report = news.take();
    QVERIFY(report.heard.isEmpty());
    QCOMPARE(report.changed, (NodeNews::States{{3, NmtState::Operational}}));
}

void tst_NodeNews::newNodeThatChangesIsNew()
{
    NodeNews news;
    news.noteHeartbeat(3, NmtState::BootUp, milliseconds(0));
    news.noteHeartbeat(3, NmtState::Operational, milliseconds(100));
    const NodeNews::Report report = news.take();
    QCOMPARE(report.heard, (NodeNews::States{{3, NmtState::Operational}}));
    QVERIFY(report.changed.isEmpty() && report.restarted.isEmpty());
}

void tst_NodeNews::restarts()
{
    NodeNews news;
    news.noteHeartbeat(3, NmtState::BootUp, milliseconds(0));
    news.take();
    news.noteHeartbeat(3, NmtState::BootUp, milliseconds(100));
    QCOMPARE(news.take().restarted, QSet<quint8>{3});
}

void tst_NodeNews::losses()
{
    NodeNews news;
    news.noteHeartbeat(3, NmtState::Operational, milliseconds(0));
    news.noteLoss(3); // before it was told
    NodeNews::Report report = news.take();
    QVERIFY(report.heard.isEmpty());
    QCOMPARE(report.lost, QSet<quint8>{3});
    news.noteHeartbeat(3, NmtState::Operational, milliseconds(9000));
    report = news.take();
    QCOMPARE(report.heard.keys(), QList<quint8>{3}); // as a new one
}

void tst_NodeNews::silentAfterBootUp()
{
    NodeNews news;
    news.noteHeartbeat(8, NmtState::BootUp, milliseconds(100));
    news.noteHeartbeat(9, NmtState::BootUp, milliseconds(100));
    news.noteHeartbeat(9, NmtState::PreOperational, milliseconds(200));
    QVERIFY(news.takeSilent(milliseconds(5099)).isEmpty());
    QCOMPARE(news.takeSilent(milliseconds(5100)), QSet<quint8>{8});
    QVERIFY(news.takeSilent(milliseconds(9000)).isEmpty());
}

void tst_NodeNews::clears()
{
    NodeNews news;
    news.noteHeartbeat(8, NmtState::BootUp, milliseconds(0));
    news.noteLoss(9);
    news.clear();
    QVERIFY(!news.hasNews());
    QVERIFY(news.takeSilent(milliseconds(6000)).isEmpty());
    news.noteHeartbeat(8, NmtState::Operational, milliseconds(7000));
    QCOMPARE(news.take().heard.size(), 1);
}

QTEST_GUILESS_MAIN(tst_NodeNews)
#include "tst_nodenews.moc"
