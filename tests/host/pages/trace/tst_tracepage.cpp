// SPDX-License-Identifier: MIT
#include "heardframes.h"

#include <host/pages/trace/tracepage.h>
#include <host/pages/trace/tracesession.h>
#include <host/pages/trace/tracetable.h>
#include <tests/support/fakebus.h>
#include <tests/support/windowtest.h>
#include <trace/files/tracefile.h>

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QThreadPool>
#include <QToolButton>
#include <QtTest>

namespace {

/*! The page on a bus whose device obeys the test. */
class TraceHost
{
public:
    TraceHost()
        : session(&bus)
        , page(&session)
    {
        bus.setDeviceFactory(fake.factory());
        bus.interfaceWatch().setLister([](const QString &) { return QStringList(); });
        TraceSettings settings;
        settings.folder = folder.filePath(QStringLiteral("traces"));
        session.recorder().setSettings(settings);
        page.setFolder([this] { return folder.path(); });
        page.resize(1000, 500);
        page.show();
    }
    Q_DISABLE_COPY(TraceHost)
    ~TraceHost() { finishWork(); }

    void connectToBus()
    {
        QString error;
        QVERIFY2(bus.connectToBus(fakeSettings(), &error), qPrintable(error));
    }

    void hear(const std::vector<TraceFrame> &frames)
    {
        for (const TraceFrame &frame : frames) {
            QCanBusFrame injected = frame.toCanBusFrame();
            injected.setTimeStamp(QCanBusFrame::TimeStamp()); // of an adapter without stamps
            fake.device()->inject(injected);
        }
        QTest::qWait(300);
    }

    void heartbeats(int count)
    {
        for (int i = 0; i < count; ++i) {
            fake.heartbeat(5);
            QTest::qWait(500);
        }
    }

    /*! Opens a file with these frames. */
    void open(const std::vector<TraceFrame> &frames)
    {
        QString error;
        const QString file = folder.filePath(QStringLiteral("ride.log"));
        QVERIFY2(TraceFile::save(file, documentOf(frames)->trace, &error), qPrintable(error));
        session.open(file);
        finishWork();
    }

    static void finishWork()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }

    template<typename Part = QWidget>
    Part *find(const char *name) const
    {
        auto *part = page.findChild<Part *>(QLatin1String(name));
        if (part == nullptr)
            qFatal("there is no %s", name);
        return part;
    }
    TraceTable *table() const { return find<TraceTable>("traceTable"); }
    int rows() const { return table()->model()->rowCount(); }
    QString label(const char *name) const { return find<QLabel>(name)->text(); }
    QString what(int row) const
    {
        return table()->model()->index(row, TraceModel::WhatColumn).data().toString();
    }
    void type(const char *field, const QString &text) const
    {
        find<QLineEdit>(field)->setText(text);
        QTest::qWait(100); // all lines are looked at
    }

    QTemporaryDir folder;
    FakeBus fake;
    BusConnection bus;
    TraceSession session;
    TracePage page;
};

} // namespace

class tst_TracePage : public WindowTest
{
    Q_OBJECT

private slots:
    void emptyWithoutABus();
    void followsWhatIsHeard();
    void stopsFollowingWhenScrolledUp();
    void choosingALineStopsFollowing();
    void followsNotWhileHidden();
    void chosenLineIsShownByteByByte();
    void chosenLineStaysUnderAFilter();
    void filters();
    void filterProblemIsSaid();
    void countsSayHowManyAreShown();
    void finds();
    void findsNothing();
    void differenceOfASelection();
    void copies();
    void copiesOnlySoMany();
    void exportsWhatIsShown();
    void savesTheMinutesBeforeThePress();
    void records();
    void showsAFile();
    void problemsOfAFileAreSaid();
    void channelsOfAFile();
    void escapeCancelsOpening();
    void momentIsShown();
    void eventsOfALine();
    void keys();
    void fitsSmallScreens();

private:
    static QFileDialog *dialog(const TraceHost &host, const char *name)
    {
        auto *found = host.page.findChild<QFileDialog *>(QLatin1String(name));
        if (found == nullptr)
            qFatal("there is no %s", name);
        return found;
    }
};

void tst_TracePage::emptyWithoutABus()
{
    TraceHost host;
    QVERIFY(host.find<QLabel>("traceEmpty")->isVisible());
    QVERIFY(host.label("traceEmpty").startsWith(QStringLiteral("Connect a bus (Ctrl+K)")));
    QVERIFY(!host.find<QToolButton>("traceSaveLast")->isEnabled());
    QVERIFY(!host.find<QToolButton>("traceExport")->isEnabled());
    QVERIFY(host.find<QToolButton>("traceRecord")->isEnabled()); // waits for the bus
    QVERIFY(host.find<QToolButton>("traceOpen")->isEnabled());
    host.connectToBus();
    QVERIFY(!host.find<QLabel>("traceEmpty")->isVisible());
}

void tst_TracePage::followsWhatIsHeard()
{
    TraceHost host;
    host.connectToBus();
    host.heartbeats(100);
    QCOMPARE(host.rows(), 100);
    const QScrollBar *bar = host.table()->verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());
    QVERIFY(host.find<QToolButton>("traceFollow")->isChecked());
    QVERIFY(host.find<QToolButton>("traceSaveLast")->isEnabled());
}

void tst_TracePage::stopsFollowingWhenScrolledUp()
{
    TraceHost host;
    host.connectToBus();
    host.heartbeats(100);
    QScrollBar *bar = host.table()->verticalScrollBar();
    bar->setValue(3);
    QVERIFY(!host.find<QToolButton>("traceFollow")->isChecked());
    host.heartbeats(2);
    QCOMPARE(bar->value(), 3);
    host.find<QToolButton>("traceFollow")->click();
    QCOMPARE(bar->value(), bar->maximum());
    host.heartbeats(2);
    QCOMPARE(bar->value(), bar->maximum());
    bar->setValue(3);
    bar->setValue(bar->maximum()); // back to the end
    QVERIFY(host.find<QToolButton>("traceFollow")->isChecked());
}

void tst_TracePage::choosingALineStopsFollowing()
{
    TraceHost host;
    host.connectToBus();
    host.heartbeats(100);
    host.table()->selectRow(98);
    QVERIFY(!host.find<QToolButton>("traceFollow")->isChecked());
    const int value = host.table()->verticalScrollBar()->value();
    host.heartbeats(5);
    QCOMPARE(host.table()->verticalScrollBar()->value(), value);
    QCOMPARE(host.table()->currentIndex().row(), 98);
}

void tst_TracePage::followsNotWhileHidden()
{
    TraceHost host;
    host.connectToBus();
    host.page.hide();
    host.heartbeats(4);
    QCOMPARE(host.rows(), 0);
    host.page.show();
    QCOMPARE(host.rows(), 4);
}

void tst_TracePage::chosenLineIsShownByteByByte()
{
    TraceHost host;
    host.open(fourLines());
    const QAbstractItemModel *parts = host.find<CopyTable>("traceParts")->model();
    QCOMPARE(parts->rowCount(), 0);
    host.table()->selectRow(2);
    QVERIFY(parts->rowCount() > 1);
    QCOMPARE(parts->index(0, FrameDetails::BytesColumn).data().toString(),
             QStringLiteral("10 42 08 00 00 00 00 00"));
    host.table()->selectRow(0);
    QCOMPARE(parts->index(0, FrameDetails::BytesColumn).data().toString(), QStringLiteral("05"));
}

void tst_TracePage::chosenLineStaysUnderAFilter()
{
    TraceHost host;
    host.open(fourLines());
    host.table()->selectRow(3);
    host.type("filterNodes", QStringLiteral("5"));
    QCOMPARE(host.rows(), 2);
    QCOMPARE(host.table()->currentIndex().row(), 1);
    host.find<QToolButton>("filterClear")->click();
    QCOMPARE(host.rows(), 4);
    QCOMPARE(host.table()->currentIndex().row(), 3);
    host.type("filterNodes", QStringLiteral("2")); // hides it
    QVERIFY(!host.table()->currentIndex().isValid());
    host.find<QToolButton>("filterClear")->click();
    QCOMPARE(host.table()->currentIndex().row(), 3);
}

void tst_TracePage::filters()
{
    TraceHost host;
    host.open(fourLines());
    QVERIFY(!host.find<QToolButton>("filterClear")->isEnabled());
    host.find<QCheckBox>("filterWrong")->click();
    QTest::qWait(100);
    QCOMPARE(host.rows(), 1);
    QVERIFY2(host.what(0).contains(QStringLiteral("4210h")), qPrintable(host.what(0)));
    host.find<QCheckBox>("filterWrong")->click();
    host.type("filterObjects", QStringLiteral("6164h.2"));
    QCOMPARE(host.rows(), 1);
    QVERIFY(host.what(0).startsWith(QStringLiteral("read 6164h.2")));
    host.type("filterObjects", QString());
    host.type("filterText", QStringLiteral("4210H"));
    QCOMPARE(host.rows(), 1);
    host.find<QToolButton>("filterClear")->click();
    QCOMPARE(host.rows(), 4);
    host.find<QAction>("heartbeat")->trigger();
    QTest::qWait(100);
    QCOMPARE(host.rows(), 2);
    QCOMPARE(host.find<QToolButton>("filterKinds")->text(), QStringLiteral("Heartbeats"));
}

void tst_TracePage::filterProblemIsSaid()
{
    TraceHost host;
    host.open(fourLines());
    host.type("filterNodes", QStringLiteral("5"));
    host.type("filterNodes", QStringLiteral("5-"));
    QVERIFY(host.find<QLabel>("traceProblem")->isVisible());
    QVERIFY(host.label("traceProblem").startsWith(QStringLiteral("Nodes are numbers")));
    QCOMPARE(host.rows(), 2); // as before
    host.type("filterNodes", QStringLiteral("5-7"));
    QVERIFY(!host.find<QLabel>("traceProblem")->isVisible());
}

void tst_TracePage::countsSayHowManyAreShown()
{
    TraceHost host;
    host.open(fourLines());
    QCOMPARE(host.label("traceCount"), QStringLiteral("4 lines"));
    host.type("filterNodes", QStringLiteral("5"));
    QCOMPARE(host.label("traceCount"), QStringLiteral("2 of 4 lines"));
}

void tst_TracePage::finds()
{
    TraceHost host;
    host.open(fourLines());
    host.find<QLineEdit>("findText")->setText(QStringLiteral("6164H"));
    host.find<QToolButton>("findNext")->click();
    QCOMPARE(host.table()->currentIndex().row(), 1);
    QCOMPARE(host.label("findResult"), QString());
    host.find<QToolButton>("findNext")->click();
    QCOMPARE(host.table()->currentIndex().row(), 1);
    QCOMPARE(host.label("findResult"), QStringLiteral("Went on from the other end"));
    host.find<QLineEdit>("findText")->setText(QStringLiteral("4210h"));
    host.find<QToolButton>("findPrevious")->click();
    QCOMPARE(host.table()->currentIndex().row(), 2);
}

void tst_TracePage::findsNothing()
{
    TraceHost host;
    host.open(fourLines());
    host.find<QLineEdit>("findText")->setText(QStringLiteral("unicorn"));
    host.find<QToolButton>("findNext")->click();
    QTest::qWait(100);
    QCOMPARE(host.label("findResult"), QStringLiteral("Not found"));
    QVERIFY(!host.table()->currentIndex().isValid());
    host.find<QLineEdit>("findText")->setText(QStringLiteral("unicorns"));
    QCOMPARE(host.label("findResult"), QString());
}

void tst_TracePage::differenceOfASelection()
{
    TraceHost host;
    host.open(fourLines());
    host.table()->selectRow(1);
    QCOMPARE(host.label("traceSelection"), QString());
    host.table()->selectionModel()->select(host.table()->model()->index(2, 0),
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QCOMPARE(host.label("traceSelection"),
             QStringLiteral("96.0 ms from the first selected line to the last one"));
}

void tst_TracePage::copies()
{
    TraceHost host;
    host.open(fourLines());
    host.find<QToolButton>("traceCopy")->click();
    QCOMPARE(QGuiApplication::clipboard()->text().count(QLatin1Char('\n')), 4);
    host.table()->selectRow(1);
    host.find<QToolButton>("traceCopy")->click();
    const QString text = QGuiApplication::clipboard()->text();
    QCOMPARE(text.count(QLatin1Char('\n')), 1);
    QVERIFY2(text.contains(QStringLiteral("\t100.0 ms\t2\tread 6164h.2")), qPrintable(text)); // no bus
}

void tst_TracePage::copiesOnlySoMany()
{
    std::vector<TraceFrame> frames;
    for (int i = 0; i < 20'010; ++i)
        frames.push_back(heard(i * millisecond, 0x705, "05"));
    TraceHost host;
    host.open(frames);
    host.table()->selectAll();
    QCOMPARE(host.table()->toText().count(QLatin1Char('\n')), 20'000);
}

void tst_TracePage::exportsWhatIsShown()
{
    TraceHost host;
    QSignalSpy told(&host.page, &TracePage::told);
    host.open(fourLines());
    host.type("filterNodes", QStringLiteral("2"));
    host.find<QToolButton>("traceExport")->click();
    const QString file = host.folder.filePath(QStringLiteral("part.log"));
    emit dialog(host, "traceExportDialog")->fileSelected(file);
    host.finishWork();
    QCOMPARE(told.count(), 1);
    QString error;
    const std::optional<Trace> part = TraceFile::load(file, TraceFile::Limits(), &error);
    QVERIFY2(part.has_value(), qPrintable(error));
    QCOMPARE(part->frames.size(), std::size_t(2));
    QVERIFY(part->frames[0] == fourLines()[1]);
}

void tst_TracePage::savesTheMinutesBeforeThePress()
{
    TraceHost host;
    host.connectToBus();
    host.heartbeats(3);
    host.find<QToolButton>("traceSaveLast")->click();
    host.heartbeats(2); // while the name is typed
    const QString file = host.folder.filePath(QStringLiteral("last.log"));
    emit dialog(host, "traceSaveDialog")->fileSelected(file);
    host.finishWork();
    QString error;
    const std::optional<Trace> saved = TraceFile::load(file, TraceFile::Limits(), &error);
    QVERIFY2(saved.has_value(), qPrintable(error));
    QCOMPARE(saved->frames.size(), std::size_t(3));
}

void tst_TracePage::records()
{
    TraceHost host;
    host.connectToBus();
    auto *record = host.find<QToolButton>("traceRecord");
    record->click();
    QVERIFY(!record->isChecked()); // a file is still to be named
    const QString file = host.folder.filePath(QStringLiteral("long.log"));
    emit dialog(host, "traceRecordDialog")->fileSelected(file);
    QVERIFY(record->isChecked());
    QCOMPARE(record->text(), QStringLiteral("■ Stop &recording"));
    host.heartbeats(3);
    QVERIFY2(host.label("traceState").startsWith(QStringLiteral("Recording long.log: 3 frames, 1.")),
             qPrintable(host.label("traceState")));
    record->click();
    QVERIFY(!record->isChecked());
    QCOMPARE(host.label("traceState"), QString());
    QString error;
    QCOMPARE(TraceFile::load(file, TraceFile::Limits(), &error)->frames.size(), std::size_t(3));
}

void tst_TracePage::showsAFile()
{
    TraceHost host;
    QVERIFY(!host.find<QToolButton>("traceLive")->isVisible());
    host.open(fourLines());
    QVERIFY(!host.find<QLabel>("traceEmpty")->isVisible());
    QCOMPARE(host.rows(), 4);
    QVERIFY(host.label("traceState").endsWith(QStringLiteral("ride.log")));
    QVERIFY(!host.find<QToolButton>("traceFollow")->isVisible());
    QVERIFY(!host.find<QToolButton>("traceEvents")->isVisible());
    QCOMPARE(host.table()->verticalScrollBar()->value(), 0);
    QVERIFY(host.find<QToolButton>("traceLive")->isVisible());
    host.find<QToolButton>("traceLive")->click();
    QVERIFY(host.find<QLabel>("traceEmpty")->isVisible());
    QVERIFY(!host.find<QToolButton>("traceLive")->isVisible());
}

void tst_TracePage::problemsOfAFileAreSaid()
{
    TraceHost host;
    const QString name = host.folder.filePath(QStringLiteral("cut.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("(1795336200.000000) can0 705#05\n(1795336201.000000) can0 70");
    file.close();
    host.session.open(name);
    host.finishWork();
    QCOMPARE(host.rows(), 1);
    QVERIFY(host.find<QLabel>("traceProblem")->isVisible());
    QVERIFY2(host.label("traceProblem")
                 .startsWith(QStringLiteral("1 line(s) could not be read. The first one: line 2. ")),
             qPrintable(host.label("traceProblem")));
}

void tst_TracePage::channelsOfAFile()
{
    TraceHost host;
    const QString name = host.folder.filePath(QStringLiteral("two.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("(1795336200.000000) can0 705#05\n(1795336201.000000) can1 706#05\n");
    file.close();
    host.session.open(name);
    host.finishWork();
    QVERIFY(!host.table()->isColumnHidden(TraceModel::ChannelColumn));
    QCOMPARE(host.table()->model()->index(1, TraceModel::ChannelColumn).data().toString(),
             QStringLiteral("can1"));
    host.open(fourLines());
    QVERIFY(host.table()->isColumnHidden(TraceModel::ChannelColumn));
}

void tst_TracePage::escapeCancelsOpening()
{
    TraceHost host;
    QString error;
    const QString file = host.folder.filePath(QStringLiteral("ride.log"));
    QVERIFY(TraceFile::save(file, documentOf(fourLines())->trace, &error));
    host.session.open(file);
    QVERIFY(host.find<QToolButton>("traceCancel")->isVisible());
    QVERIFY(host.label("traceState").startsWith(QStringLiteral("Reading ride.log: ")));
    QTest::keyClick(&host.page, Qt::Key_Escape);
    QVERIFY(!host.session.loading().isRunning());
    QVERIFY(!host.find<QToolButton>("traceCancel")->isVisible());
    host.finishWork();
    QVERIFY(host.session.isLive());
}

void tst_TracePage::momentIsShown()
{
    TraceHost host;
    host.open(fourLines());
    host.connectToBus();
    host.heartbeats(5);
    host.hear({heard(0, 0x084, "1042080000000000")});
    host.heartbeats(5);
    LiveEvent event;
    event.kind = EventKind::Emergency;
    event.nodeId = 4;
    const qint64 time = host.session.recorder().lastMinutes().all().frames[5].time / millisecond + 20;
    host.page.showMoment(TraceMoment::of(event, QDateTime::fromMSecsSinceEpoch(time)));
    QVERIFY(host.session.isLive()); // it was heard there
    QCOMPARE(host.rows(), 11);
    QCOMPARE(host.table()->currentIndex().row(), 5);
    QVERIFY(!host.find<QToolButton>("traceFollow")->isChecked());
    host.type("filterNodes", QStringLiteral("5")); // hides it
    host.page.showMoment(TraceMoment::of(event, QDateTime::fromMSecsSinceEpoch(time)));
    QCOMPARE(host.label("traceCount"), QStringLiteral("11 lines"));
    QCOMPARE(host.table()->currentIndex().row(), 5);
}

void tst_TracePage::eventsOfALine()
{
    TraceHost host;
    QVector<QDateTime> times;
    connect(&host.page, &TracePage::eventsRequested, this, [&times](const QDateTime &time) { times << time; });
    host.connectToBus();
    host.heartbeats(3);
    QVERIFY(!host.find<QToolButton>("traceEvents")->isEnabled());
    host.table()->selectRow(1);
    host.find<QToolButton>("traceEvents")->click();
    QCOMPARE(times.size(), 1);
    QCOMPARE(times.first().toMSecsSinceEpoch(),
             host.session.recorder().lastMinutes().all().frames[1].time / millisecond);
}

void tst_TracePage::keys()
{
    TraceHost host;
    host.open(fourLines());
    host.page.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&host.page));
    host.table()->setFocus();
    QTest::keyClick(host.table(), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(host.find<QLineEdit>("findText")->hasFocus());
    QTest::keyClicks(host.find<QLineEdit>("findText"), QStringLiteral("node"));
    host.find<QLineEdit>("findText")->setText(QStringLiteral("4210h"));
    QTest::keyClick(host.find<QLineEdit>("findText"), Qt::Key_Return);
    QCOMPARE(host.table()->currentIndex().row(), 2);
    host.find<QLineEdit>("findText")->setText(QStringLiteral("6164h"));
    QTest::keyClick(host.table(), Qt::Key_F3);
    QCOMPARE(host.table()->currentIndex().row(), 1);
    host.find<QLineEdit>("findText")->setText(QStringLiteral("4210h"));
    QTest::keyClick(host.table(), Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(host.table()->currentIndex().row(), 2);
    QTest::keyClick(host.find<QLineEdit>("findText"), Qt::Key_Escape);
    QCOMPARE(host.find<QLineEdit>("findText")->text(), QString());
}

void tst_TracePage::fitsSmallScreens()
{
    TraceHost host;
    host.open(fourLines());
    const QSize least = host.page.minimumSizeHint();
    QVERIFY2(least.width() <= 1000 && least.height() <= 400,
             qPrintable(QStringLiteral("%1x%2").arg(least.width()).arg(least.height())));
}

QTEST_MAIN(tst_TracePage)
#include "tst_tracepage.moc"
