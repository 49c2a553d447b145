// SPDX-License-Identifier: MIT
#include "formbench.h"

#include <tests/support/messageboxwatcher.h>
#include <tests/support/windowtest.h>

#include <QApplication>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

/*! The connection to the bus, and the read from the button to the tree. */
class tst_FormRead : public WindowTest
{
    Q_OBJECT

private slots:
    void connectionHandsOverTheBusObjects();
    void connectionWithoutASecondClient();
    void connectionWithoutTheFirstClient();
    void connectionWithoutAHost();
    void readWithoutConnectionWarns();
    void readFillsTheTree();
    void readWithoutNodeOneEmptiesTheTree();
    void readShowsTheWaitCursor();
    void timeoutShowsWhatWasRead();
    void secondPressWaitsForTheSameRun();
    void exchangeAccessIsClosedDuringARead();
    void quitDuringAReadDoesNotStopIt();
    void windowDestroyedDuringARead();
    void disconnectionDuringARead();
    void disconnectionTakesTheBusObjectsFromTheReader();
    void waitLooksAtTheRunEveryTenMilliseconds();
    void nmtStateReachesTheTree();
    void readerOutlivesTheWindow();
};

void tst_FormRead::connectionHandsOverTheBusObjects()
{
    FormBench bench;
    QVERIFY(bench.form->setConnected(true));
    QVERIFY(bench.form->setConnected(true));
    bench.read({1});
    // One answer for each request, although the host connected twice.
    QCOMPARE(bench.host.sdoClient.requests().size(), 204);
    QVERIFY(!bench.form->setConnected(false));
}

void tst_FormRead::connectionWithoutASecondClient()
{
    FormBench bench;
    bench.host.hasSecondarySdoClient = false;
    QVERIFY(!bench.form->setConnected(true));
    bench.read({1});
    QCOMPARE(bench.host.sdoClient.requests().size(), 204);
}

void tst_FormRead::connectionWithoutTheFirstClient()
{
    FormBench bench;
    bench.host.hasSdoClient = false;
    QVERIFY(bench.form->setConnected(true)); // tells of the second client only
}

void tst_FormRead::connectionWithoutAHost()
{
    OverviewForm form;
    QVERIFY(!form.setConnected(true));
    QVERIFY(!form.setConnected(false));
}

void tst_FormRead::readWithoutConnectionWarns()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    bench.form->setConnected(false);
    auto *table = bench.find<QTableWidget>("tblValues");
    table->setRowCount(1);
    table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("as before")));
    const int requests = bench.host.sdoClient.requests().size();

    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    MessageBoxWatcher watcher;
    bench.press("btnRead");
    QCOMPARE(watcher.texts(),
             QStringList{QStringLiteral("No connection to Draxel. Please connect to Draxel and retry.")});
    QCOMPARE(watcher.boxes().constFirst().title, QStringLiteral("the application"));
    QVERIFY(!watcher.boxes().constFirst().hasParent);
    QVERIFY(watcher.boxes().constFirst().isModal);
    QCOMPARE(bench.components(),
             (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
    QCOMPARE(table->item(0, 0)->text(), QStringLiteral("as before"));
    QCOMPARE(bench.host.sdoClient.requests().size(), requests);
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_FormRead::readFillsTheTree()
{
    MessageBoxWatcher watcher;
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({5, 1});
    QCOMPARE(bench.components(),
             (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
    QCOMPARE(bench.host.sdoClient.requests().size(), 408);
    QVERIFY(!bench.finder.reader->isReading());
    QVERIFY(QApplication::overrideCursor() == nullptr);
    QCOMPARE(watcher.texts(), QStringList());
}

void tst_FormRead::readWithoutNodeOneEmptiesTheTree()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    auto *table = bench.find<QTableWidget>("tblParameters");
    table->setRowCount(1);
    table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("old")));
    bench.host.sdoClient.setError(1, 0x1000, 0, FakeSdoClient::NoAnswer);
    bench.read({5});
    QCOMPARE(bench.components(), QStringList());
    QVERIFY(table->item(0, 0) == nullptr || table->item(0, 0)->text() != QStringLiteral("old"));
    QCOMPARE(table->horizontalHeaderItem(0)->text(), QStringLiteral("Property"));
}

void tst_FormRead::readShowsTheWaitCursor()
{
    FormBench bench;
    bench.form->setConnected(true);
    QVector<Qt::CursorShape> shapes;
    QTimer::singleShot(0, bench.form.get(), [&shapes] {
        if (QApplication::overrideCursor() != nullptr)
            shapes.append(QApplication::overrideCursor()->shape());
    });
    bench.read({});
    QCOMPARE(shapes, QVector<Qt::CursorShape>{Qt::WaitCursor});
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_FormRead::timeoutShowsWhatWasRead()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.host.sdoClient.setError(5, 0x6001, 0, FakeSdoClient::NoAnswer);
    bench.read({1, 5, 7});
    QCOMPARE(bench.components(),
             (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
}

void tst_FormRead::secondPressWaitsForTheSameRun()
{
    FormBench bench;
    bench.form->setConnected(true);
    int presses = 0;
    QTimer::singleShot(0, bench.form.get(), [&] {
        bench.answerRun({1});
        bench.press("btnRead");
        ++presses;
        QVERIFY(!bench.finder.reader->isReading());
    });
    bench.press("btnRead");
    QCOMPARE(presses, 1);
    QCOMPARE(bench.host.sdoClient.requests().size(), 204);
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Draxel Controller")});
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_FormRead::exchangeAccessIsClosedDuringARead()
{
    FormBench bench;
    bench.form->setConnected(true);
    auto *access = bench.form->findChild<QObject *>(QStringLiteral("exchangeAccess"));
    QVERIFY(access != nullptr);
    const auto import = [&] {
        bool isTaken = false;
        QMetaObject::invokeMethod(
            access, "importText", Q_RETURN_ARG(bool, isTaken),
            Q_ARG(QString, QStringLiteral("<node nodeid=\"5\"><object index=\"0x6000\" sub=\"0\" "
                                          "value=\"1\"/><object index=\"0x6000\" sub=\"1\" value=\"6\"/>")));
        return isTaken;
    };
    bool wasTaken = true;
    QTimer::singleShot(0, bench.form.get(), [&] {
        QVERIFY(bench.finder.reader->isReading());
        wasTaken = import();
    });
    bench.read({1});
    QVERIFY(!wasTaken);
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Draxel Controller")});
    QVERIFY(import());
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Battery Pack")});
}

void tst_FormRead::quitDuringAReadDoesNotStopIt()
{
    FormBench bench;
    bench.form->setConnected(true);
    bool hasReturned = false;
    QTimer::singleShot(0, bench.form.get(), [&] {
        QTimer::singleShot(0, &bench.finder, [] { QCoreApplication::quit(); });
        bench.read({1, 5});
        hasReturned = true;
    });
    QCoreApplication::exec(); // ends after the read, by the quit in the middle of it
    QVERIFY(hasReturned);
    QCOMPARE(bench.host.sdoClient.requests().size(), 408);
    QCOMPARE(bench.components(),
             (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
}

void tst_FormRead::windowDestroyedDuringARead()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.answerRun({1});
    QTimer::singleShot(0, &bench.finder, [&bench] { bench.form.reset(); });
    bench.press("btnRead");
    QVERIFY(bench.form == nullptr);
    QVERIFY(QApplication::overrideCursor() == nullptr);
    QCOMPARE(bench.host.sdoClient.requests().size(), 204);
}

void tst_FormRead::disconnectionDuringARead()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    // The bus goes: the host answers the request that is out and tells the plug-in.
    QTimer watch;
    connect(&watch, &QTimer::timeout, &bench.finder, [&bench] {
        if (bench.host.sdoClient.requests().isEmpty())
            return;
        const SdoRequest request = bench.host.sdoClient.requests().constLast();
        bench.form->setConnected(false);
        emit bench.host.sdoClient.errorReceived(request.nodeId, request.index, request.subIndex,
                                                FakeSdoClient::NoAnswer);
    });
    watch.start(0);
    bench.read({1});
    QVERIFY(!bench.finder.reader->isReading());
    QCOMPARE(bench.host.sdoClient.requests().size(), 1);
}

void tst_FormRead::disconnectionTakesTheBusObjectsFromTheReader()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    const int requests = bench.host.sdoClient.requests().size();
    const int receivers = bench.host.hub.askedCobIds.size();
    QVERIFY(!bench.form->setConnected(false));

    DataReader &reader = *bench.finder.reader;
    QSignalSpy done(&reader, SIGNAL(done(quint32)));
    reader.readNextElement();
    QCOMPARE(bench.host.sdoClient.requests().size(), requests);
    QCOMPARE(done.size(), 1);
    QCOMPARE(done.at(0).at(0).toUInt(), 0u);
    QVERIFY(reader.startReading());
    QCOMPARE(bench.host.hub.askedCobIds.size(), receivers);
}

namespace {

/*! Notes the intervals of the timers without a parent that come due: those of a wait, while nothing else goes on. */
class WaitTimerFinder : public QObject
{
public:
    WaitTimerFinder() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *timer = qobject_cast<QTimer *>(object);
        if (event->type() == QEvent::Timer && timer != nullptr && timer->parent() == nullptr)
            intervals.append(timer->interval());
        return QObject::eventFilter(object, event);
    }

    QVector<int> intervals;
};

} // namespace

void tst_FormRead::waitLooksAtTheRunEveryTenMilliseconds()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    // The bus is silent until the wait has woken of itself; then the request that is out is answered.
    WaitTimerFinder finder;
    QTimer watch(&finder);
    connect(&watch, &QTimer::timeout, &finder, [&bench, &finder] {
        if (finder.intervals.isEmpty() || bench.host.sdoClient.requests().isEmpty())
            return;
        emit bench.host.sdoClient.errorReceived(1, 0x1000, 0, FakeSdoClient::NoAnswer);
    });
    watch.start(0);
    bench.read({1});
    QVERIFY(!finder.intervals.isEmpty());
    for (const int interval : qAsConst(finder.intervals))
        QVERIFY2(interval >= 1 && interval <= 10, qPrintable(QString::number(interval)));
}

void tst_FormRead::nmtStateReachesTheTree()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    bench.host.hub.reportNmtState(5, NmtSender::Stopped);
    auto *tree = bench.find<QTreeWidget>("treeWidget");
    QCOMPARE(tree->topLevelItem(0)->text(2), QString());
    QCOMPARE(tree->topLevelItem(1)->text(2), QStringLiteral("Stopped"));
    // The same state reported several times over, after a second run.
    bench.read({1, 5});
    bench.host.hub.reportNmtState(5, NmtSender::Operational);
    QCOMPARE(tree->topLevelItem(1)->text(2), QStringLiteral("Operational"));
}

void tst_FormRead::readerOutlivesTheWindow()
{
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    bench.form.reset();
    QVERIFY(!bench.finder.reader.isNull());
    bench.host.hub.reportNmtState(1, NmtSender::Stopped);
}

QTEST_MAIN(tst_FormRead)
#include "tst_formread.moc"
