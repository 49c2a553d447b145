// SPDX-License-Identifier: MIT
#include <host/core/windowplace.h>

#include <QtTest>

/*! Where the window goes on small, large and scaled screens. */
class tst_WindowPlace : public QObject
{
    Q_OBJECT

private slots:
    void firstPlace_data();
    void firstPlace();
    void rememberedPlace_data();
    void rememberedPlace();
    void withoutAScreen();
};

void tst_WindowPlace::firstPlace_data()
{
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QRect>("place");

    // What is free of the screen, in its scaled pixels; the frame takes 4 + 4 and 32 + 4 of it.
    QTest::newRow("1920x1080") << QRect(0, 0, 1920, 1080) << QRect(460, 160, 1000, 760);
    QTest::newRow("1920x1080 at 150 %") << QRect(0, 0, 1280, 720) << QRect(140, 32, 1000, 684);
    QTest::newRow("1920x1080 at 200 %") << QRect(0, 0, 960, 540) << QRect(4, 32, 952, 504);
    QTest::newRow("1024x600") << QRect(0, 0, 1024, 600) << QRect(12, 32, 1000, 564);
    QTest::newRow("1024x600 with a panel above") << QRect(0, 30, 1024, 570) << QRect(12, 62, 1000, 534);
    QTest::newRow("1024x600 at 200 %") << QRect(0, 0, 512, 300) << QRect(4, 32, 504, 264);
    QTest::newRow("second screen to the left") << QRect(-1024, 0, 1024, 600) << QRect(-1011, 32, 1000, 564);
}

void tst_WindowPlace::firstPlace()
{
    QFETCH(QRect, available);
    QTEST(WindowPlace::centred(QSize(1000, 760), available), "place");
}

void tst_WindowPlace::rememberedPlace_data()
{
    QTest::addColumn<QRect>("wanted");
    QTest::addColumn<QRect>("place");

    QTest::newRow("fits") << QRect(50, 60, 700, 400) << QRect(50, 60, 700, 400);
    QTest::newRow("larger") << QRect(0, 0, 1400, 900) << QRect(4, 32, 1016, 564);
    QTest::newRow("beyond the right end") << QRect(900, 60, 700, 400) << QRect(320, 60, 700, 400);
    QTest::newRow("title bar above the screen") << QRect(50, -20, 700, 400) << QRect(50, 32, 700, 400);
    QTest::newRow("on a screen that is gone") << QRect(2500, 2000, 700, 400) << QRect(320, 196, 700, 400);
}

void tst_WindowPlace::rememberedPlace()
{
    QFETCH(QRect, wanted);
    QTEST(WindowPlace::fit(wanted, QRect(0, 0, 1024, 600)), "place");
}

void tst_WindowPlace::withoutAScreen()
{
    QCOMPARE(WindowPlace::fit(QRect(5, 6, 700, 400), QRect()), QRect(5, 6, 700, 400));
}

QTEST_GUILESS_MAIN(tst_WindowPlace)
#include "tst_windowplace.moc"
