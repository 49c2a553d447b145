// SPDX-License-Identifier: MIT
#include "heardframes.h"

#include <host/pages/trace/filterbar.h>
#include <host/pages/trace/kindmenu.h>
#include <host/pages/trace/tracepage.h>
#include <host/pages/trace/tracesession.h>
#include <host/pages/trace/tracetable.h>
#include <tests/support/fakebus.h>
#include <tests/support/markingtranslator.h>
#include <tests/support/windowtest.h>
#include <trace/files/tracefile.h>

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRunnable>
#include <QScrollBar>
#include <QSemaphore>
#include <QSignalSpy>
#include <QThreadPool>
#include <QToolButton>
#include <QtTest>

namespace {

/*! The page on a bus whose device obeys the test. */
class TraceHost
{
public:
    explicit TraceHost(std::size_t mostHeard = LiveTrace::usualMost)
        : session(&bus, nullptr, mostHeard)
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
    ~TraceHost()
    {
        finishWork();
        QTest::qWait(500); // Qt's animations of fields end
    }

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
    /*! Of the frames of the chosen line and their parts. */
    QStringList chosenMeanings() const
    {
        const QAbstractItemModel *parts = find<CopyTable>("traceParts")->model();
        QStringList meanings;
        for (int row = 0; row < parts->rowCount(); ++row)
            meanings << parts->index(row, FrameDetails::MeaningColumn).data().toString();
        return meanings;
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

std::vector<TraceFrame> many(std::size_t count)
{
    return std::vector<TraceFrame>(count, heard(0, 0x706, "05"));
}

/*! PDO 1 of node 5 with 84.00 %, if its mapping is known. */
std::vector<TraceFrame> chargeOf5()
{
    return {heard(0, 0x185, "D020")};
}

/*! Frames until the older half of a list of 200 has left. */
void letLinesLeave(TraceHost *host)
{
    host->hear(many(200 - host->session.document()->trace.frames.size()));
    QCOMPARE(host->session.document()->trace.frames.size(), std::size_t(100));
}

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
    void followsOnWhenLinesLeave();
    void placeStaysWhenLinesLeave();
    void chosenLineStaysWhenLinesLeave();
    void placeStaysUnderAFilter();
    void chosenLineThatWasHiddenComesBack();
    void chosenTransferGoesOn();
    void chosenTransferGoesOnWhileHidden();
    void whatIsToldHoldsForTheChosenLine();
    void whatIsToldHoldsForAChosenLineThatIsHidden();
    void placeInTheChosenLineStays();
    void chosenLineIsShownByteByByte();
    void eachKindCanBeChosenAlone();
    void chosenLineStaysUnderAFilter();
    void filters();
    void whatIsLearntHoldsForLinesOfBefore();
    void anotherLanguageHoldsForWordsOfBefore();
    void filterLooksIntoWordsOfAnotherLanguage();
    void filterProblemIsSaid();
    void filterProblemStaysWithAnotherFile();
    void clearedFieldsLookEmpty();
    void emptyListsSayWhy();
    void filterStandsInTwoRowsOnSmallScreens();
    void countsSayHowManyAreShown();
    void finds();
    void findsNothing();
    void findsFromTheBeginOfAnotherFile();
    void differenceOfASelection();
    void copies();
    void copiesOnlySoMany();
    void saysThatNotAllIsCopied();
    void exportsWhatIsShown();
    void exportWaitsForTheLinesOfItsFilter();
    void exportThatWaitsEndsWithAnotherFilter();
    void exportThatWaitsEndsWithAnotherTrace();
    void exportSaysWhatTheFormatCannotHold();
    void savesTheMinutesBeforeThePress();
    void minutesCanBeSavedBesideAFile();
    void placeInAFileStaysWhenABusIsConnected();
    void suggestedNamesTellAFormat_data();
    void suggestedNamesTellAFormat();
    void namesWithDotsGetASuffix();
    void replacesNothingUnasked();
    void records();
    void recordsIntoSeveralFiles();
    void progressGoesOn();
    void showsAFile();
    void menuOfKindsStaysOpen();
    void fileBeginsAtItsBegin();
    void devicesOfAFile();
    void problemsOfAFileAreSaid();
    void problemsOfAFileAreListed();
    void emptyFileIsSaid();
    void whatIsShownStaysWhenAFileIsBad();
    void channelsOfAFile();
    void escapeCancelsOpening();
    void momentIsShown();
    void momentThatHasLeft();
    void eventsOfALine();
    void eventsOfAFile();
    void buttonsSayWhatTheyDo();
    void keys();
    void fitsSmallScreens();

private:
    /*! The name of a file that is exported as soon as all lines were looked at. */
    static QString exportWhileLooking(TraceHost *host)
    {
        host->open(many(100'000));
        host->find<QLineEdit>("filterNodes")->setText(QStringLiteral("6"));
        host->find<QToolButton>("traceExport")->click();
        const QString file = host->folder.filePath(QStringLiteral("part.log"));
        emit dialog(*host, "traceExportDialog")->fileSelected(file);
        if (!host->page.model().isLooking())
            qFatal("all lines were looked at already");
        return file;
    }
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

void tst_TracePage::followsOnWhenLinesLeave()
{
    TraceHost host(200);
    host.connectToBus();
    host.hear(many(150));
    host.table()->selectRow(148);
    host.find<QToolButton>("traceFollow")->click();
    letLinesLeave(&host);
    QCOMPARE(host.rows(), 100);
    QVERIFY(host.find<QToolButton>("traceFollow")->isChecked());
    QCOMPARE(host.table()->verticalScrollBar()->value(), host.table()->verticalScrollBar()->maximum());
}

void tst_TracePage::placeStaysWhenLinesLeave()
{
    TraceHost host(200);
    host.connectToBus();
    host.hear(many(190));
    host.table()->verticalScrollBar()->setValue(150);
    QCOMPARE(host.table()->rowAt(0), 150);
    letLinesLeave(&host);
    QCOMPARE(host.table()->rowAt(0), 50);
    QVERIFY(!host.find<QToolButton>("traceFollow")->isChecked());
}

void tst_TracePage::chosenLineStaysWhenLinesLeave()
{
    TraceHost host(200);
    host.connectToBus();
    host.hear(many(190));
    host.table()->selectRow(120);
    letLinesLeave(&host);
    QCOMPARE(host.table()->currentIndex().row(), 20);
    QVERIFY(host.find<CopyTable>("traceParts")->model()->rowCount() > 0);
    host.table()->selectRow(30);
    letLinesLeave(&host); // this one as well
    QVERIFY(!host.table()->currentIndex().isValid());
    QCOMPARE(host.find<CopyTable>("traceParts")->model()->rowCount(), 0);
}

void tst_TracePage::placeStaysUnderAFilter()
{
    std::vector<TraceFrame> frames;
    for (int i = 0; i < 400; ++i)
        frames.push_back(heard(i * millisecond, i % 2 == 0 ? 0x705 : 0x706, "05"));
    TraceHost host;
    host.open(frames);
    host.table()->verticalScrollBar()->setValue(100);
    host.type("filterNodes", QStringLiteral("5"));
    QCOMPARE(host.table()->rowAt(0), 50); // the same frame
    host.find<QToolButton>("filterClear")->click();
    QCOMPARE(host.table()->rowAt(0), 100);
}

void tst_TracePage::chosenLineThatWasHiddenComesBack()
{
    TraceHost host;
    host.open(fourLines());
    host.table()->selectRow(2);
    host.type("filterNodes", QStringLiteral("99"));
    QCOMPARE(host.rows(), 0);
    host.find<QToolButton>("filterClear")->click();
    QCOMPARE(host.table()->currentIndex().row(), 2);
}

void tst_TracePage::chosenTransferGoesOn()
{
    TraceHost host;
    host.connectToBus();
    const std::vector<TraceFrame> read = readOf6164(0, 2);
    host.hear({read[0]});
    host.table()->selectRow(0);
    const QAbstractItemModel *parts = host.find<CopyTable>("traceParts")->model();
    const int alone = parts->rowCount();
    host.hear({read[1]});
    QVERIFY(parts->rowCount() > alone);
    QVERIFY(parts->index(alone, FrameDetails::MeaningColumn)
                .data()
                .toString()
                .startsWith(QStringLiteral("Frame 582h")));
}

void tst_TracePage::chosenTransferGoesOnWhileHidden()
{
    TraceHost host;
    host.connectToBus();
    host.hear({readOf6164(0, 2)[0]});
    host.table()->selectRow(0);
    QCOMPARE(host.chosenMeanings().filter(QStringLiteral("Frame ")),
             QStringList(QStringLiteral("Frame 602h")));
    host.page.hide();
    host.hear({readOf6164(0, 2)[1]});
    host.page.show();
    QCOMPARE(host.chosenMeanings().filter(QStringLiteral("Frame ")),
             QStringList({QStringLiteral("Frame 602h"), QStringLiteral("Frame 582h")}));
}

void tst_TracePage::whatIsToldHoldsForTheChosenLine()
{
    TraceHost host;
    host.connectToBus();
    host.hear(chargeOf5());
    host.bus.disconnectFromBus(); // nothing more comes
    QTest::qWait(500);
    host.table()->selectRow(0);
    QSignalSpy painted(&host.page.model(), &TraceModel::dataChanged);
    host.session.tell(mappingOf5(0x61640210), QString());
    QVERIFY(painted.count() > 0);
    QCOMPARE(host.what(0), QStringLiteral("PDO 1: Relative battery Wh capacity = 84.00 %"));
    QCOMPARE(host.chosenMeanings(), QStringList({QStringLiteral("Frame 185h"),
                                                 QStringLiteral("Relative battery Wh capacity = 84.00 %")}));
}

/*! The filter hides it; it stands below all the same. */
void tst_TracePage::whatIsToldHoldsForAChosenLineThatIsHidden()
{
    TraceHost host;
    host.open(chargeOf5());
    host.table()->selectRow(0);
    host.type("filterNodes", QStringLiteral("7"));
    QCOMPARE(host.rows(), 0);
    host.session.tell(mappingOf5(0x61640210), QString());
    host.finishWork();
    QCOMPARE(host.chosenMeanings(), QStringList({QStringLiteral("Frame 185h"),
                                                 QStringLiteral("Relative battery Wh capacity = 84.00 %")}));
}

/*! As long as nothing else is to be said. */
void tst_TracePage::placeInTheChosenLineStays()
{
    TraceHost host;
    host.connectToBus();
    host.hear(fourLines());
    host.table()->selectRow(0);
    auto *parts = host.find<CopyTable>("traceParts");
    parts->selectRow(1);
    host.session.tell(mappingOf5(), QString());
    host.page.hide();
    host.page.show();
    QCOMPARE(parts->currentIndex().row(), 1);
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
    QCOMPARE(parts->index(1, FrameDetails::BytesColumn).data().toString(), QStringLiteral("10 42"));
    QCOMPARE(parts->index(2, FrameDetails::BytesColumn).data().toString(), QStringLiteral("08"));
    QCOMPARE(parts->index(3, FrameDetails::BytesColumn).data().toString(), QStringLiteral("00 00 00 00 00"));
    host.table()->selectRow(0);
    QCOMPARE(parts->index(0, FrameDetails::BytesColumn).data().toString(), QStringLiteral("05"));
}

void tst_TracePage::eachKindCanBeChosenAlone()
{
    KindMenu menu;
    QVERIFY(menu.kinds().none());
    for (std::size_t kind = 0; kind < frameKinds; ++kind) {
        std::bitset<frameKinds> alone;
        alone.set(kind);
        menu.setKinds(alone);
        QVERIFY(menu.kinds() == alone);
        QCOMPARE(menu.text(), KindMenu::shortNameOf(static_cast<FrameKind>(kind)));
    }
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

void tst_TracePage::whatIsLearntHoldsForLinesOfBefore()
{
    TraceHost host;
    host.connectToBus();
    host.type("filterNodes", QStringLiteral("5"));
    host.hear({heard(0, 0x345, "01")}); // whose it is nobody knows
    QCOMPARE(host.rows(), 0);
    constexpr const char *reads[][2] = {
        {"4000180100000000", "4300180145030000"}, // 1800h.1 = 345h
        {"40001A0000000000", "4F001A0001000000"}, // 1A00h.0 = 1
        {"40001A0100000000", "43001A0108010060"}, // 1A00h.1 = 6000h.1, 8 bits
    };
    for (const auto &read : reads)
        host.hear({heard(0, 0x605, read[0]), heard(0, 0x585, read[1])});
    QTest::qWait(500);
    QCOMPARE(host.rows(), 4);
    QVERIFY2(host.what(0).startsWith(QStringLiteral("PDO 1")), qPrintable(host.what(0)));
}

/*! Of what is heard as well, while a file is shown. */
void tst_TracePage::anotherLanguageHoldsForWordsOfBefore()
{
    const QString english = QStringLiteral("PDO 1: Relative battery Wh capacity = 84.00 %");
    const QString marked = QStringLiteral("PDO 1: Relative battery Wh capacity = [DataInterpreter:84.00 %]");
    TraceHost host;
    host.connectToBus();
    host.hear(chargeOf5());
    host.session.tell(mappingOf5(0x61640210), QString());
    QCOMPARE(host.what(0), english);
    host.open(chargeOf5());
    host.session.tell(mappingOf5(0x61640210), QString());
    host.finishWork();
    host.table()->selectRow(0);
    QCOMPARE(host.what(0), english);
    const MarkingTranslator translator("DataInterpreter");
    QTest::qWait(100);
    QCOMPARE(host.what(0), marked);
    QCOMPARE(
        host.find<CopyTable>("traceParts")->model()->index(1, FrameDetails::MeaningColumn).data().toString(),
        QStringLiteral("Relative battery Wh capacity = [DataInterpreter:84.00 %]"));
    host.session.showLive();
    QCOMPARE(host.what(0), marked);
}

void tst_TracePage::filterLooksIntoWordsOfAnotherLanguage()
{
    TraceHost host;
    host.open(chargeOf5());
    host.session.tell(mappingOf5(0x61640210), QString());
    host.finishWork();
    host.type("filterText", QStringLiteral("= 84.00 %"));
    QCOMPARE(host.rows(), 1);
    {
        const MarkingTranslator translator("DataInterpreter");
        QTest::qWait(100);
        QCOMPARE(host.rows(), 0);
    }
    QTest::qWait(100);
    QCOMPARE(host.rows(), 1);
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

void tst_TracePage::filterProblemStaysWithAnotherFile()
{
    TraceHost host;
    host.type("filterNodes", QStringLiteral("2, 128"));
    host.open({});
    QVERIFY2(host.label("traceProblem").startsWith(QStringLiteral("Nodes are numbers")),
             qPrintable(host.label("traceProblem")));
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&host.page, &change);
    QVERIFY(host.label("traceProblem").startsWith(QStringLiteral("Nodes are numbers")));
    QVERIFY(host.find<QToolButton>("filterClear")->isEnabled()); // also of what cannot be read
    host.find<QToolButton>("filterClear")->click();
    QCOMPARE(host.find<QLineEdit>("filterNodes")->text(), QString());
    QCOMPARE(host.label("traceProblem"), QStringLiteral("There is not one frame in this file."));
    QVERIFY(!host.find<QToolButton>("filterClear")->isEnabled());
}

void tst_TracePage::clearedFieldsLookEmpty()
{
    TraceHost host;
    host.open(fourLines());
    QSignalSpy changed(host.find<FilterBar>("filterBar"), &FilterBar::filterChanged);
    auto *field = host.find<QLineEdit>("filterText");
    const QImage empty = field->grab().toImage();
    host.type("filterText", QStringLiteral("4210h"));
    host.type("filterNodes", QStringLiteral("4"));
    QCOMPARE(changed.count(), 2);
    host.find<QToolButton>("filterClear")->click();
    QCOMPARE(changed.count(), 3); // all at once
    QTest::qWait(1000);
    QCOMPARE(field->grab().toImage(), empty); // without its cross
}

void tst_TracePage::filterStandsInTwoRowsOnSmallScreens()
{
    TraceHost host;
    const auto *nodes = host.find<QLineEdit>("filterNodes");
    const auto *words = host.find<QLineEdit>("filterText");
    const auto *clear = host.find<QToolButton>("filterClear");
    host.page.resize(1000, 500);
    QCoreApplication::processEvents();
    QCOMPARE(words->y(), nodes->y());
    QVERIFY2(host.page.minimumSizeHint().width() <= 500,
             qPrintable(QString::number(host.page.minimumSizeHint().width())));
    host.page.resize(500, 500);
    QCoreApplication::processEvents();
    QVERIFY(words->y() >= nodes->geometry().bottom());
    QVERIFY(clear->geometry().right() < 500);
    host.page.resize(1000, 500);
    QCoreApplication::processEvents();
    QCOMPARE(words->y(), nodes->y());
}

void tst_TracePage::emptyListsSayWhy()
{
    TraceHost host;
    host.connectToBus();
    QCOMPARE(host.table()->hint(), QStringLiteral("Nothing has been heard yet."));
    QVERIFY(host.find<CopyTable>("traceParts")->hint().startsWith(QStringLiteral("The frames of the line")));
    host.open(fourLines());
    host.type("filterText", QStringLiteral("unicorn"));
    QCOMPARE(host.rows(), 0);
    QCOMPARE(host.table()->hint(), QStringLiteral("No line fits the filter."));
    const QImage empty = host.table()->viewport()->grab().toImage();
    host.table()->setHint(QString());
    QVERIFY(empty != host.table()->viewport()->grab().toImage()); // it is seen
}

void tst_TracePage::countsSayHowManyAreShown()
{
    TraceHost host;
    host.open(fourLines());
    QCOMPARE(host.label("traceCount"), QStringLiteral("4 lines"));
    host.type("filterNodes", QStringLiteral("5"));
    QCOMPARE(host.label("traceCount"), QStringLiteral("2 of 4 lines"));
    host.find<QToolButton>("filterClear")->click();
    host.open({heard(0, 0x705, "05")});
    QCOMPARE(host.label("traceCount"), QStringLiteral("1 line"));
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

void tst_TracePage::findsFromTheBeginOfAnotherFile()
{
    TraceHost host;
    host.open(fourLines());
    host.find<QLineEdit>("findText")->setText(QStringLiteral("6164H"));
    host.find<QToolButton>("findNext")->click();
    QCOMPARE(host.table()->currentIndex().row(), 1);
    host.open(fourLines());
    host.find<QToolButton>("findNext")->click();
    QCOMPARE(host.table()->currentIndex().row(), 1);
    QCOMPARE(host.label("findResult"), QString()); // it was not behind it already
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

void tst_TracePage::saysThatNotAllIsCopied()
{
    std::vector<TraceFrame> frames;
    for (int i = 0; i < 20'001; ++i)
        frames.push_back(heard(i * millisecond, 0x705, "05"));
    TraceHost host;
    QSignalSpy told(&host.page, &TracePage::told);
    host.open(frames);
    host.find<QToolButton>("traceCopy")->click(); // all, as none is selected
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.first().first().toString(),
             QStringLiteral("Only the first 20000 lines were copied; \"Export\" saves all."));
    host.table()->selectRow(5);
    host.find<QToolButton>("traceCopy")->click();
    QCOMPARE(told.count(), 1);
    host.table()->selectAll();
    host.find<QToolButton>("traceCopy")->click();
    QCOMPARE(told.count(), 2);
}

void tst_TracePage::exportsWhatIsShown()
{
    TraceHost host;
    QSignalSpy told(&host.session, &TraceSession::told);
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

void tst_TracePage::exportWaitsForTheLinesOfItsFilter()
{
    TraceHost host;
    QSignalSpy told(&host.session, &TraceSession::told);
    const QString file = exportWhileLooking(&host);
    QVERIFY(!QFileInfo::exists(file));
    QTest::qWait(1000);
    host.finishWork();
    QCOMPARE(told.count(), 1);
    QString error;
    QCOMPARE(TraceFile::load(file, TraceFile::Limits(), &error)->frames.size(), std::size_t(100'000));
}

void tst_TracePage::exportThatWaitsEndsWithAnotherFilter()
{
    TraceHost host;
    QSignalSpy saved(&host.session, &TraceSession::told);
    QSignalSpy told(&host.page, &TracePage::told);
    const QString file = exportWhileLooking(&host);
    host.find<QLineEdit>("filterNodes")->setText(QStringLiteral("7"));
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.first().first().toString(),
             QStringLiteral("part.log was not saved: other lines are shown by now."));
    QTest::qWait(1000);
    host.finishWork();
    QVERIFY(!QFileInfo::exists(file));
    QCOMPARE(saved.count(), 0);
    QCOMPARE(told.count(), 1);
}

void tst_TracePage::exportThatWaitsEndsWithAnotherTrace()
{
    TraceHost host;
    QSignalSpy told(&host.page, &TracePage::told);
    const QString file = exportWhileLooking(&host);
    host.session.showLive();
    QCOMPARE(told.count(), 1);
    QTest::qWait(1000);
    host.finishWork();
    QVERIFY(!QFileInfo::exists(file));
}

void tst_TracePage::exportSaysWhatTheFormatCannotHold()
{
    TraceHost host;
    QSignalSpy told(&host.session, &TraceSession::told);
    std::vector<TraceFrame> frames = fourLines();
    frames.back().flags |= TraceFrame::Sent;
    host.open(frames);
    for (const char *name : {"part.log", "part.pcap"}) {
        host.find<QToolButton>("traceExport")->click();
        emit dialog(host, "traceExportDialog")->fileSelected(host.folder.filePath(QLatin1String(name)));
        host.finishWork();
    }
    QCOMPARE(told.count(), 2);
    QCOMPARE(told.at(0).at(1).toStringList(), QStringList());
    QCOMPARE(
        told.at(1).at(1).toStringList(),
        QStringList(QStringLiteral("This format cannot hold: the names of channels, who sent a frame.")));
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

void tst_TracePage::minutesCanBeSavedBesideAFile()
{
    TraceHost host;
    host.open(fourLines());
    QVERIFY(!host.find<QToolButton>("traceSaveLast")->isEnabled());
    host.connectToBus();
    host.heartbeats(1);
    QVERIFY(host.find<QToolButton>("traceSaveLast")->isEnabled());
}

void tst_TracePage::placeInAFileStaysWhenABusIsConnected()
{
    TraceHost host;
    host.open(many(100));
    host.table()->selectRow(60);
    const int place = host.table()->verticalScrollBar()->value();
    QVERIFY(place > 0);
    const QStringList meanings = host.chosenMeanings();
    QVERIFY(!meanings.isEmpty());
    host.connectToBus();
    host.heartbeats(1);
    QCOMPARE(host.table()->currentIndex().row(), 60);
    QCOMPARE(host.table()->verticalScrollBar()->value(), place);
    QCOMPARE(host.chosenMeanings(), meanings);
    QVERIFY(host.find("traceSaveLast")->isEnabled());
}

void tst_TracePage::suggestedNamesTellAFormat_data()
{
    QTest::addColumn<QString>("button");

    QTest::newRow("last minutes") << QStringLiteral("traceSaveLast");
    QTest::newRow("export") << QStringLiteral("traceExport");
    QTest::newRow("recording") << QStringLiteral("traceRecord");
}

/*! The dialog as the user meets it: accepted as it is, a log comes out. */
void tst_TracePage::suggestedNamesTellAFormat()
{
    QFETCH(QString, button);
    TraceHost host;
    QSignalSpy failed(&host.session, &TraceSession::failed);
    host.connectToBus();
    host.heartbeats(3);
    host.find<QToolButton>(qPrintable(button))->click();
    auto *shown = host.page.findChild<QFileDialog *>();
    QVERIFY(shown != nullptr);
    static_cast<QDialog *>(shown)->accept();
    host.finishWork();
    QCOMPARE(failed.count(), 0);
    QCOMPARE(QDir(host.folder.path()).entryList({QStringLiteral("bus*.log")}, QDir::Files).size(), 1);
}

void tst_TracePage::namesWithDotsGetASuffix()
{
    TraceHost host;
    host.open(fourLines());
    host.find<QToolButton>("traceExport")->click();
    QFileDialog *shown = dialog(host, "traceExportDialog");
    emit shown->filterSelected(QStringLiteral("pcap capture (*.pcap)"));
    emit shown->fileSelected(host.folder.filePath(QStringLiteral("ride 1.2")));
    host.finishWork();
    QVERIFY(QFile::exists(host.folder.filePath(QStringLiteral("ride 1.2.pcap"))));
}

void tst_TracePage::replacesNothingUnasked()
{
    TraceHost host;
    host.open(fourLines());
    const QString there = host.folder.filePath(QStringLiteral("ride 1.2.log"));
    QFile file(there);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("precious");
    file.close();
    host.find<QToolButton>("traceExport")->click();
    QFileDialog *shown = dialog(host, "traceExportDialog");
    emit shown->fileSelected(host.folder.filePath(QStringLiteral("ride 1.2")));
    host.finishWork();
    QCOMPARE(file.size(), qint64(8));
    delete shown;
    QCOMPARE(
        dialog(host, "traceExportDialog")->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text(),
        QStringLiteral("ride 1.2.log")); // it asks with the whole name
}

void tst_TracePage::recordsIntoSeveralFiles()
{
    TraceHost host;
    host.connectToBus();
    host.find<QAction>("traceRotateTime")->trigger();
    QVERIFY(TraceSettings::load().rotation == TraceSettings::Rotation::Time);
    TraceSettings settings = host.session.recorder().settings();
    QVERIFY(settings.rotation == TraceSettings::Rotation::Time);
    settings.rotationMinutes = 1;
    host.session.recorder().setSettings(settings);
    host.session.record(host.folder.filePath(QStringLiteral("long.log")));
    host.heartbeats(2);
    QTest::qWait(60'000);
    host.heartbeats(1);
    QVERIFY2(host.label("traceState").startsWith(QStringLiteral("Recording long-0002.log: 3 frames, 1 min ")),
             qPrintable(host.label("traceState")));
    QSignalSpy told(&host.session, &TraceSession::told);
    host.session.recorder().stopRecording();
    QTest::qWait(500);
    QCOMPARE(told.count(), 1);
    QVERIFY2(told.first().first().toString().endsWith(
                 QStringLiteral("long-0001.log to long-0002.log, 3 frame(s)")),
             qPrintable(told.first().first().toString()));
    host.find<QAction>("traceRotateNever")->trigger();
    QVERIFY(TraceSettings::load().rotation == TraceSettings::Rotation::Never);
}

void tst_TracePage::progressGoesOn()
{
    TraceHost host;
    QSemaphore gate;
    class Busy : public QRunnable
    {
    public:
        explicit Busy(QSemaphore *semaphore)
            : m_semaphore(semaphore)
        {
        }
        void run() override { m_semaphore->acquire(); }

    private:
        QSemaphore *m_semaphore;
    };
    QThreadPool &pool = *QThreadPool::globalInstance();
    for (int i = 0; i < pool.maxThreadCount(); ++i) // so that opening takes as long as the test wants
        pool.start(new Busy(&gate));
    host.session.open(host.folder.filePath(QStringLiteral("ride.log")));
    host.find<QLabel>("traceState")->clear();
    QTest::qWait(1000);
    QCOMPARE(host.label("traceState"), QStringLiteral("Reading ride.log: 0 frames"));
    gate.release(pool.maxThreadCount());
    host.finishWork();
    QCOMPARE(host.label("traceState"), QString());
}

void tst_TracePage::records()
{
    TraceHost host;
    host.connectToBus();
    QTest::qWait(10'000);
    auto *record = host.find<QToolButton>("traceRecord");
    record->click();
    QVERIFY(!record->isChecked()); // a file is still to be named
    const QString file = host.folder.filePath(QStringLiteral("long.log"));
    emit dialog(host, "traceRecordDialog")->fileSelected(file);
    QVERIFY(record->isChecked());
    QCOMPARE(record->text(), QStringLiteral("■ Stop recor&ding"));
    host.heartbeats(3);
    QVERIFY2(host.label("traceState").startsWith(QStringLiteral("Recording long.log: 3 frames, 1.")),
             qPrintable(host.label("traceState")));
    QSignalSpy written(&host.session, &TraceSession::fileUsed);
    record->click();
    QVERIFY(!record->isChecked());
    QCOMPARE(host.label("traceState"), QString());
    QTRY_COMPARE(written.count(), 1); // in another thread
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

void tst_TracePage::devicesOfAFile()
{
    TraceHost host;
    auto *devices = host.find<QToolButton>("traceDevices");
    QVERIFY(!devices->isVisible());
    std::vector<TraceFrame> frames = many(300);
    frames.push_back(heard(second, 0x185, "2A"));
    frames.push_back(heard(second, 0x185, "2B"));
    host.open(frames);
    QVERIFY(devices->isVisible());
    host.type("filterNodes", QStringLiteral("5"));
    QCOMPARE(host.rows(), 2);
    host.table()->selectRow(1);
    QCOMPARE(host.what(1), QStringLiteral("PDO 1, its mapping is not known: 2B"));
    host.session.tell(mappingOf5(), QString());
    QVERIFY(!devices->isEnabled()); // one after the other
    host.finishWork();
    QTest::qWait(100);
    QVERIFY(devices->isEnabled());
    QCOMPARE(host.rows(), 2); // the filter and the choice stay
    QCOMPARE(host.table()->currentIndex().row(), 1);
    QCOMPARE(host.what(1), QStringLiteral("PDO 1: 2000h.1 = 43 (2Bh)"));
    host.type("filterObjects", QStringLiteral("2000"));
    QCOMPARE(host.rows(), 2);
    devices->click();
    QVERIFY(host.page.findChild<QFileDialog *>(QStringLiteral("traceDevicesDialog")) != nullptr);
    host.find<QToolButton>("traceLive")->click();
    QVERIFY(!devices->isVisible());
}

void tst_TracePage::menuOfKindsStaysOpen()
{
    TraceHost host;
    host.open(fourLines());
    auto *button = host.find<QToolButton>("filterKinds");
    QMenu *menu = button->menu();
    menu->popup(button->mapToGlobal(QPoint(0, button->height())));
    const auto click = [menu](QAction *action) {
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    };
    click(host.find<QAction>("heartbeat"));
    QVERIFY(menu->isVisible());
    click(host.find<QAction>("sdo"));
    QVERIFY(menu->isVisible());
    QCOMPARE(host.rows(), 3);
    QTest::keyClick(menu, Qt::Key_Space); // the one that was chosen last
    QVERIFY(menu->isVisible());
    QCOMPARE(host.rows(), 2);
    click(menu->actions().first()); // all kinds
    QVERIFY(!menu->isVisible());
    QCOMPARE(host.rows(), 4);
}

void tst_TracePage::fileBeginsAtItsBegin()
{
    TraceHost host;
    host.connectToBus();
    host.heartbeats(100);
    const QScrollBar *bar = host.table()->verticalScrollBar();
    QCOMPARE(bar->value(), bar->maximum());
    host.open(many(300));
    QVERIFY(bar->maximum() > 200);
    QCOMPARE(bar->value(), 0);
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
    QCOMPARE(host.find<QLabel>("traceProblem")->toolTip(), QString()); // it tells all
}

void tst_TracePage::problemsOfAFileAreListed()
{
    TraceHost host;
    const QString name = host.folder.filePath(QStringLiteral("cut.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("(1795336200.000000) can0 705#05\n");
    for (int i = 0; i < 21; ++i)
        file.write("(1795336201.000000) can0 <b>\n");
    file.close();
    host.session.open(name);
    host.finishWork();
    QVERIFY(host.label("traceProblem").startsWith(QStringLiteral("21 line(s) could not be read.")));
    const QString all = host.find<QLabel>("traceProblem")->toolTip();
    QVERIFY2(all.startsWith(QStringLiteral("<qt>Line 2: ")), qPrintable(all));
    QVERIFY2(all.contains(QStringLiteral("<br>Line 21: ")), qPrintable(all));
    QVERIFY2(all.endsWith(QStringLiteral("<br>...</qt>")), qPrintable(all));
    QVERIFY2(!all.contains(QStringLiteral("<b>")), qPrintable(all));
}

void tst_TracePage::emptyFileIsSaid()
{
    TraceHost host;
    host.open(fourLines());
    const QString name = host.folder.filePath(QStringLiteral("empty.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    host.session.open(name);
    host.finishWork();
    QCOMPARE(host.rows(), 0);
    QCOMPARE(host.label("traceProblem"), QStringLiteral("There is not one frame in this file."));
    host.open(fourLines());
    QVERIFY(!host.find<QLabel>("traceProblem")->isVisible());
}

void tst_TracePage::whatIsShownStaysWhenAFileIsBad()
{
    TraceHost host;
    QSignalSpy failed(&host.session, &TraceSession::failed);
    host.open(fourLines());
    host.table()->selectRow(1);
    const QString name = host.folder.filePath(QStringLiteral("rubbish.log"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(100'000, '\0') + QByteArray("\xff\xfe rubbish"));
    file.close();
    host.session.open(name);
    host.finishWork();
    QCOMPARE(failed.count(), 1);
    QVERIFY2(
        failed.first().first().toString().contains(QStringLiteral("rubbish.log is no trace that is known")),
        qPrintable(failed.first().first().toString()));
    QCOMPARE(host.rows(), 4);
    QCOMPARE(host.table()->currentIndex().row(), 1);
    QVERIFY(host.label("traceState").endsWith(QStringLiteral("ride.log")));
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

void tst_TracePage::momentThatHasLeft()
{
    TraceHost host(200);
    host.connectToBus();
    host.hear(many(190));
    QTest::qWait(5000);
    const qint64 time = host.session.recorder().lastMinutes().all().frames[5].time / millisecond;
    letLinesLeave(&host);
    letLinesLeave(&host); // all that are older than five seconds
    host.table()->selectRow(7);
    QSignalSpy told(&host.page, &TracePage::told);
    LiveEvent event;
    event.kind = EventKind::NodeHeard;
    event.nodeId = 6;
    host.page.showMoment(TraceMoment::of(event, QDateTime::fromMSecsSinceEpoch(time)));
    QCOMPARE(host.table()->currentIndex().row(), 7);
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.first().first().toString(),
             QStringLiteral("What was on the bus then is no longer in this list."));
}

void tst_TracePage::eventsOfALine()
{
    TraceHost host;
    QVector<QDateTime> times;
    connect(&host.page, &TracePage::eventsRequested, this,
            [&times](const QDateTime &time) { times << time; });
    host.connectToBus();
    host.heartbeats(3);
    QVERIFY(!host.find<QToolButton>("traceEvents")->isEnabled());
    host.table()->selectRow(1);
    host.find<QToolButton>("traceEvents")->click();
    QCOMPARE(times.size(), 1);
    QCOMPARE(times.first().toMSecsSinceEpoch(),
             host.session.recorder().lastMinutes().all().frames[1].time / millisecond);
}

/*! Of a support bundle, which has brought its events. */
void tst_TracePage::eventsOfAFile()
{
    TraceHost host;
    host.open(fourLines());
    QVERIFY(!host.find<QToolButton>("traceEvents")->isVisible());
    host.page.setHasEvents([] { return true; });
    QVERIFY(host.find<QToolButton>("traceEvents")->isVisible());
}

void tst_TracePage::buttonsSayWhatTheyDo()
{
    TraceHost host;
    QStringList texts;
    for (const char *name : {"traceCopy", "traceExport", "traceEvents", "traceFollow"})
        texts << host.find<QToolButton>(name)->text();
    QCOMPARE(texts.join(QLatin1Char('|')), QStringLiteral("&Copy|E&xport...|Eve&nts|F&ollow"));
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
