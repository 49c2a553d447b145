// SPDX-License-Identifier: MIT
#include "livehost.h"

#include <host/core/settingsstore.h>
#include <host/pages/live/eventview.h>
#include <host/pages/live/liveplot.h>
#include <host/pages/live/plotview.h>

#include <QComboBox>
#include <QLabel>
#include <QTableView>
#include <QToolButton>
#include <QWheelEvent>

#include <qwt_plot_item.h>
#include <qwt_scale_div.h>

namespace {

constexpr qint64 second = 1'000'000; // us

/*! A bus with values that the test notes. */
class Plotted
{
public:
    Plotted()
    {
        m_host.connectToBus();
        for (const char *text : {"2:6040:1", "2:603E:1", "2:6105:1"})
            m_host.session().watch().add(*parseWatched(QLatin1String(text)));
        note();
        m_host.session().watch().setPlotted(0, true);
        QTest::qWait(300);
        note();
        QTest::qWait(3000);
    }

    void note()
    {
        LiveValues &values = m_host.session().live().values();
        const qint64 now = m_host.session().now();
        values.note(2, {0x6040, 1}, 36000, now);
        values.note(2, {0x603E, 1}, 5000, now);
        values.note(2, {0x6105, 1}, 250, now);
        QTest::qWait(200);
    }

    LiveHost &host() { return m_host; }
    PlotView &view() { return *m_host.page().findChild<PlotView *>(); }
    LivePlot &plot() { return view().plot(); }
    QWidget *canvas() { return plot().canvas(); }
    QString readings() const { return m_host.find<QLabel>("plotReadings")->text(); }
    QToolButton *pause() const { return m_host.find<QToolButton>("holdPlot"); }
    void press(int from, int to)
    {
        QTest::mousePress(canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(from, 20));
        QTest::mouseMove(canvas(), QPoint(to, 20));
        QTest::mouseRelease(canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(to, 20));
    }

private:
    LiveHost m_host;
};

} // namespace

class tst_PlotView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { SettingsStore::instance().setValues({}); }
    void nothingIsTicked();
    void followsTheTime();
    void spans();
    void pause();
    void anAxisForEachUnit();
    void cursorReads();
    void dragShowsAPart();
    void wheelKeepsTheTimeUnderThePointer();
    void doubleClickFollowsAgain();
    void eventMovesTheCursor();
    void eventOfLongAgoIsShown();
    void nextBus();
    void fitsASmallScreen();
};

void tst_PlotView::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_plotview"));
}

void tst_PlotView::nothingIsTicked()
{
    Plotted plotted;
    QVERIFY(plotted.plot().isVisible());
    plotted.host().session().watch().setPlotted(0, false);
    QVERIFY(!plotted.plot().isVisible());
}

void tst_PlotView::followsTheTime()
{
    Plotted plotted;
    const qint64 before = plotted.plot().to();
    QTest::qWait(2000);
    QVERIFY(plotted.plot().to() >= before + 2 * second - 200000);
    QCOMPARE(plotted.plot().to() - plotted.plot().from(), 300 * second);
}

void tst_PlotView::spans()
{
    Plotted plotted;
    auto *span = plotted.host().find<QComboBox>("plotSpan");
    span->setCurrentIndex(0);
    QCOMPARE(plotted.plot().to() - plotted.plot().from(), 60 * second);
    span->setCurrentIndex(2);
    QCOMPARE(plotted.plot().to() - plotted.plot().from(), 3600 * second);
}

void tst_PlotView::pause()
{
    Plotted plotted;
    plotted.pause()->click();
    const qint64 to = plotted.plot().to();
    QTest::qWait(5000);
    QCOMPARE(plotted.plot().to(), to);
    plotted.pause()->click();
    QVERIFY(plotted.plot().to() > to + 4 * second);
}

void tst_PlotView::anAxisForEachUnit()
{
    Plotted plotted;
    LiveWatch &watch = plotted.host().session().watch();
    QVERIFY(plotted.plot().axisEnabled(QwtPlot::yLeft));
    QVERIFY(!plotted.plot().axisEnabled(QwtPlot::yRight));
    QCOMPARE(plotted.plot().axisTitle(QwtPlot::yLeft).text(), QStringLiteral("V"));
    watch.setPlotted(1, true);
    watch.setPlotted(2, true); // a third unit has no axis
    QTest::qWait(200);
    QVERIFY(plotted.plot().axisEnabled(QwtPlot::yRight));
    QCOMPARE(plotted.plot().axisTitle(QwtPlot::yRight).text(), QStringLiteral("A"));
    int onTheRight = 0;
    for (const QwtPlotItem *item : plotted.plot().itemList())
        onTheRight += item->yAxis() == QwtPlot::yRight ? 1 : 0;
    QCOMPARE(onTheRight, 1);
    QVERIFY(plotted.plot().axisScaleDiv(QwtPlot::yLeft).contains(36.0));
    QVERIFY(plotted.plot().axisScaleDiv(QwtPlot::yRight).contains(5.0));
    QVERIFY(!plotted.plot().axisScaleDiv(QwtPlot::yLeft).contains(25.0));
}

void tst_PlotView::cursorReads()
{
    Plotted plotted;
    plotted.host().session().watch().setPlotted(2, true);
    QCOMPARE(plotted.readings(), QString());
    const int right = plotted.canvas()->width() - 1;
    plotted.press(right, right);
    QVERIFY2(plotted.readings().contains(QRegularExpression(
                 QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d · .* 36\\.000 V · .* 25\\.0 °C$"))),
             qPrintable(plotted.readings()));
    plotted.press(1, 1); // before there was anything
    QVERIFY2(plotted.readings().contains(QStringLiteral(" –")), qPrintable(plotted.readings()));
}

void tst_PlotView::dragShowsAPart()
{
    Plotted plotted;
    const qint64 from = plotted.plot().from();
    const int width = plotted.canvas()->width();
    plotted.press(3 * width / 4, width / 2); // to the left
    QVERIFY(plotted.view().isHeld());
    QVERIFY(plotted.pause()->isChecked());
    QVERIFY(qAbs(plotted.plot().from() - (from + 150 * second)) < 3 * second);
    QVERIFY(qAbs(plotted.plot().to() - (from + 225 * second)) < 3 * second);
}

void tst_PlotView::wheelKeepsTheTimeUnderThePointer()
{
    Plotted plotted;
    const qint64 from = plotted.plot().from();
    const int width = plotted.canvas()->width();
    const QPoint place(width / 2, 20);
    QWheelEvent event(place, plotted.canvas()->mapToGlobal(place), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(plotted.canvas(), &event);
    QCOMPARE(plotted.plot().to() - plotted.plot().from(), 240 * second);
    QVERIFY(qAbs(plotted.plot().from() - (from + 30 * second)) < 2 * second);
}

void tst_PlotView::doubleClickFollowsAgain()
{
    Plotted plotted;
    const int width = plotted.canvas()->width();
    plotted.press(width / 2, width / 4);
    QVERIFY(plotted.view().isHeld());
    QTest::mouseDClick(plotted.canvas(), Qt::LeftButton);
    QVERIFY(!plotted.view().isHeld());
    QCOMPARE(plotted.plot().to() - plotted.plot().from(), 300 * second);
}

void tst_PlotView::eventMovesTheCursor()
{
    Plotted plotted;
    LiveEvent event;
    event.time = plotted.host().session().now();
    emit plotted.host().page().findChild<EventView *>()->eventChosen(event);
    QVERIFY(!plotted.view().isHeld());
    QVERIFY(plotted.readings().contains(QStringLiteral("36.000 V")));
}

void tst_PlotView::eventOfLongAgoIsShown()
{
    Plotted plotted;
    plotted.host().find<QComboBox>("plotSpan")->setCurrentIndex(0);
    QTest::qWait(120000);
    LiveEvent event;
    event.time = 30 * second;
    emit plotted.host().page().findChild<EventView *>()->eventChosen(event);
    QVERIFY(plotted.view().isHeld());
    QCOMPARE(plotted.plot().from(), 0);
    QCOMPARE(plotted.plot().to(), 60 * second);
}

void tst_PlotView::nextBus()
{
    Plotted plotted;
    plotted.press(10, 10);
    plotted.pause()->click();
    plotted.host().disconnect();
    plotted.host().connectToBus();
    QTest::qWait(300);
    QVERIFY(!plotted.view().isHeld());
    QCOMPARE(plotted.readings(), QString());
}

void tst_PlotView::fitsASmallScreen()
{
    constexpr int room = 340; // of 600 pixels, with menus, bars and messages around the page
    Plotted plotted;
    LiveValues &values = plotted.host().session().live().values();
    for (const quint8 cell : {quint8(1), quint8(2)})
        values.note(2, {0x6165, cell}, 3700, plotted.host().session().now());
    const int right = plotted.canvas()->width() - 1;
    plotted.press(right, right);
    QTest::qWait(300);
    const int height = plotted.host().page().minimumSizeHint().height();
    QVERIFY2(height <= room, qPrintable(QString::number(height)));
}

QTEST_MAIN(tst_PlotView)
#include "tst_plotview.moc"
