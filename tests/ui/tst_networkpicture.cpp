// SPDX-License-Identifier: MIT
#include <tests/support/windowtest.h>

#include <ui/networkpicture.h>

#include <QFontMetrics>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QtTest>

class tst_NetworkPicture : public WindowTest
{
    Q_OBJECT

private slots:
    void nextMotion_data();
    void nextMotion();
    void sweepsBetweenTheMargins();
    void stripShorterThanTheTextDoesNotRunAway();
    void sceneAndTitle();
    void moveTitleKeepsTheColumn();
};

void tst_NetworkPicture::nextMotion_data()
{
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>("isMovingDown");
    QTest::addColumn<double>("nextY");
    QTest::addColumn<bool>("isMovingDownNext");

    // A strip of 100 pixels and a text of 30.
    QTest::newRow("first step") << 0.0 << true << 3.0 << true;
    QTest::newRow("down") << 50.0 << true << 53.0 << true;
    QTest::newRow("down, last step") << 79.0 << true << 82.0 << true;
    QTest::newRow("down, turns") << 80.0 << true << 77.0 << false;
    QTest::newRow("up") << 70.0 << false << 67.0 << false;
    QTest::newRow("up, last step") << 51.0 << false << 48.0 << false;
    QTest::newRow("up, turns") << 50.0 << false << 53.0 << true;
}

void tst_NetworkPicture::nextMotion()
{
    QFETCH(double, y);
    QFETCH(bool, isMovingDown);
    QFETCH(double, nextY);
    QFETCH(bool, isMovingDownNext);
    const TitleMotion next = nextTitleMotion({y, isMovingDown}, 100, 30);
    QCOMPARE(next.y, nextY);
    QCOMPARE(next.isMovingDown, isMovingDownNext);
}

void tst_NetworkPicture::sweepsBetweenTheMargins()
{
    TitleMotion motion;
    double lowest = 0.0;
    double highest = 1000.0;
    int turns = 0;
    for (int i = 0; i < 1000; ++i) {
        const TitleMotion next = nextTitleMotion(motion, 400, 80);
        QCOMPARE(qAbs(next.y - motion.y), 3.0);
        turns += next.isMovingDown != motion.isMovingDown ? 1 : 0;
        motion = next;
        if (turns > 0) {
            lowest = qMax(lowest, motion.y);
            highest = qMin(highest, motion.y);
        }
    }
    QVERIFY(turns > 5);
    QVERIFY2(lowest <= 383.0, qPrintable(QString::number(lowest)));
    QVERIFY2(highest >= 97.0, qPrintable(QString::number(highest)));
}

void tst_NetworkPicture::stripShorterThanTheTextDoesNotRunAway()
{
    TitleMotion motion;
    for (int i = 0; i < 1000; ++i)
        motion = nextTitleMotion(motion, 10, 80);
    QVERIFY(qAbs(motion.y) < 20.0);
}

void tst_NetworkPicture::sceneAndTitle()
{
    QGraphicsView view;
    QObject parent;
    const QGraphicsTextItem *title = NetworkPicture::create(view, &parent);
    QVERIFY(view.scene() != nullptr);
    QCOMPARE(view.scene()->parent(), &parent);
    QCOMPARE(view.scene()->backgroundBrush(), QBrush(QColor(235, 240, 230, 255)));
    QCOMPARE(title->scene(), view.scene());
    QCOMPARE(title->toPlainText(), QStringLiteral("Draxel"));
    QCOMPARE(title->font().family(), QStringLiteral("Arial"));
    QCOMPARE(title->font().pointSize(), 20);
    QVERIFY(title->font().styleStrategy() & QFont::PreferAntialias);
    QCOMPARE(title->rotation(), 270.0);
    QCOMPARE(title->pos(), QPointF(0.0, 0.0));
}

void tst_NetworkPicture::moveTitleKeepsTheColumn()
{
    QGraphicsView view;
    view.resize(40, 400);
    QGraphicsTextItem *title = NetworkPicture::create(view, &view);
    title->setX(7.0);
    bool isMovingDown = true;
    int steps = 0;
    while (isMovingDown && steps < 1000) {
        NetworkPicture::moveTitle(*title, view, isMovingDown);
        ++steps;
        QCOMPARE(title->x(), 7.0);
    }
    // It turns 20 pixels above the lower end, and then 20 below the upper one.
    QVERIFY(title->y() < view.height() - 20 + 3 && title->y() >= view.height() - 20 - 3);
    while (!isMovingDown && steps < 2000) {
        NetworkPicture::moveTitle(*title, view, isMovingDown);
        ++steps;
    }
    const int width = QFontMetrics(title->font()).horizontalAdvance(QStringLiteral("Draxel"));
    QVERIFY(title->y() - width > 20 - 3 && title->y() - width <= 20 + 3);
}

QTEST_MAIN(tst_NetworkPicture)
#include "tst_networkpicture.moc"
