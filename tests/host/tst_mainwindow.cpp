// SPDX-License-Identifier: MIT
#include "hostfixture.h"

#include <host/connectionbar.h>
#include <host/core/hostsettings.h>
#include <host/core/recentfiles.h>
#include <host/core/settingsstore.h>
#include <host/core/vehiclerecords.h>
#include <host/lightpalette.h>
#include <host/mainwindow.h>
#include <host/pages/checkupsession.h>
#include <host/pages/live/livesession.h>
#include <host/pages/trace/tracesession.h>
#include <host/statusline.h>

#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QToolButton>
#include <QtTest>

namespace {

QMessageBox *shownBox(const QWidget &window)
{
    const QList<QMessageBox *> boxes = window.findChildren<QMessageBox *>();
    return boxes.isEmpty() ? nullptr : boxes.first();
}

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
        QCoreApplication::setApplicationName(QStringLiteral("tst_mainwindow"));
        SettingsStore::instance().setValues({});
    }

    void showsPlaceholderWithoutPlugin();
    void showsPlugin();
    void connectsAndDisconnects();
    void asksForInterface();
    void showsWhyBusCannotBeOpened();
    void saysWhatTheBusDoes();
    void showsHowFarTheReadIs();
    void sentenceHasRoomBeforeFigures();
    void saysWhatCannotBeDelivered();
    void saysThatBusIsLost();
    void saysWhatTheArchiveCouldNotTell();
    void saysWhereReadEnded();
    void choiceIsClosedWhileConnected();
    void remembersBus();
    void isLightOnADarkDesktop();
    void isLightOnADesktopThatIsDarkFromTheStart();
    void pageScrollsOnASmallScreen();
    void pagesAreMadeWhenTheyAreShown();
    void pagesShowWhatWasBefore();
    void traceThatCannotBeOpenedIsSaidOnce();
    void eventIsShownInTheTrace();
    void dataSheetIsForTheTraceAsWell();
    void traceFileIsOpened();
    void titleNamesTheTraceThatIsShown();
    void dialogOpensTraces();
    void traceThatIsGoneIsForgotten();
    void closesDuringRead_data();
    void closesDuringRead();
    void disconnectsDuringRead();
};

void tst_MainWindow::showsPlaceholderWithoutPlugin()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    QVERIFY(window.findChild<QLabel *>(QStringLiteral("placeholder"))->isVisible());
    QVERIFY(labelText(window, "placeholder").startsWith(QStringLiteral("No plug-in is loaded.")));
}

void tst_MainWindow::showsPlugin()
{
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    auto *button = window.findChild<QPushButton *>(QStringLiteral("btnRead"));
    QVERIFY(button != nullptr);
    QVERIFY(button->isVisible());
    QVERIFY(!window.findChild<QLabel *>(QStringLiteral("placeholder"))->isVisible());
    host.session.shutDown();
}

void tst_MainWindow::connectsAndDisconnects()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.chooseBus(fakeSettings());
    auto *button = window.findChild<QPushButton *>(QStringLiteral("connectButton"));
    QCOMPARE(button->text(), QStringLiteral("Connect"));
    button->click();
    QCOMPARE(host.services.bus().state(), BusConnection::State::Connected);
    QCOMPARE(button->text(), QStringLiteral("Disconnect"));
    button->click();
    QCOMPARE(host.services.bus().state(), BusConnection::State::Disconnected);
    QCOMPARE(button->text(), QStringLiteral("Connect"));
}

void tst_MainWindow::asksForInterface()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    BusSettings settings = fakeSettings();
    settings.address.interfaceName.clear();
    window.chooseBus(settings);
    window.connectToChosenBus();
    QVERIFY(shownBox(window) != nullptr);
    QCOMPARE(shownBox(window)->text(),
             QStringLiteral("Which interface is meant? Choose one, or type its name, and connect again."));
    QCOMPARE(host.fake.devicesMade(), 0);
}

void tst_MainWindow::showsWhyBusCannotBeOpened()
{
    Host host;
    host.fake.refusal = QStringLiteral("No such plugin.");
    MainWindow window(&host.services, &host.session);
    window.chooseBus(fakeSettings());
    window.connectToChosenBus();
    QVERIFY(shownBox(window) != nullptr);
    QCOMPARE(shownBox(window)->text(), QStringLiteral("The bus fake:bus0 cannot be opened: No such plugin."));
    QCOMPARE(labelText(window, "stateLabel"), QStringLiteral("Not connected."));
}

void tst_MainWindow::saysWhatTheBusDoes()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    QCOMPARE(labelText(window, "stateLabel"), QStringLiteral("Not connected."));
    BusSettings settings = fakeSettings();
    settings.bitRate = 250000;
    QVERIFY(host.services.bus().connectToBus(settings, nullptr));
    QCOMPARE(labelText(window, "stateLabel"), QStringLiteral("Connected to fake:bus0 at 250 kbit/s."));

    host.fake.addNode(5);
    host.fake.heartbeat(5);
    host.services.getSdoClient()->upload(5, 0x1000, 0, 7, 100);
    host.services.getSdoClient()->upload(5, 0x6000, 0, 5, 100);
    QTRY_COMPARE(labelText(window, "uploadsLabel"), QStringLiteral("SDO: 1 read, 1 not there, 0 failed"));
    QTRY_COMPARE(labelText(window, "nodesLabel"), QStringLiteral("Nodes: 1"));
    QVERIFY(labelText(window, "framesLabel").startsWith(QStringLiteral("Frames: ")));
}

void tst_MainWindow::showsHowFarTheReadIs()
{
    std::chrono::milliseconds now{1000};
    Host host([&now] { return now; });
    MainWindow window(&host.services, &host.session);
    window.resize(1600, 700); // room for the end of the read and the figures
    window.show();
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    const auto *progress = window.findChild<QProgressBar *>(QStringLiteral("readProgress"));
    const auto *timeLeft = window.findChild<QLabel *>(QStringLiteral("timeLeftLabel"));
    QVERIFY(!progress->isVisible());

    host.services.getCanReceiverHub()->getReceiver(0x701);
    QVERIFY(progress->isVisible());
    QCOMPARE(progress->maximum(), 0); // looks for nodes, nobody knows how many
    for (const quint8 nodeId : {quint8(1), quint8(5)})
        host.fake.heartbeat(nodeId);
    QTRY_COMPARE(host.services.bus().heartbeats().activeNodeCount(), 2);
    now += std::chrono::milliseconds(2000);
    for (int i = 0; i < 103; ++i) {
        host.services.getSdoClient()->upload(1, 0x1000, 0, 7, 100);
        now += std::chrono::milliseconds(100);
    }
    QCOMPARE(labelText(window, "stateLabel"), QStringLiteral("Reading node 1 (1 of 2), object 1000h ..."));
    auto *status = window.findChild<StatusLine *>();
    status->refresh();
    QCOMPARE(progress->maximum(), 100);
    QCOMPARE(progress->value(), 25);
    QCOMPARE(timeLeft->text(), QStringLiteral("31 s left")); // 10.3 s for 102 of 408
    QVERIFY(timeLeft->isVisible());

    const auto *uploads = window.findChild<QLabel *>(QStringLiteral("uploadsLabel"));
    QVERIFY(!uploads->isVisible());

    host.services.bus().disconnectFromBus();
    QTRY_VERIFY(!progress->isVisible());
    QVERIFY(uploads->isVisible());
    QVERIFY(!timeLeft->isVisible());
}

void tst_MainWindow::sentenceHasRoomBeforeFigures()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    host.fake.addNode(1);
    host.services.getSdoClient()->upload(1, 0x1000, 0, 7, 100);
    QTRY_COMPARE(labelText(window, "uploadsLabel"), QStringLiteral("SDO: 1 read, 0 not there, 0 failed"));
    QTRY_VERIFY(!host.services.reads().isReading());
    auto *status = window.findChild<StatusLine *>();
    const auto figures = [&window] {
        QStringList shown;
        for (const char *name : {"nodesLabel", "framesLabel", "uploadsLabel"}) {
            if (!window.findChild<QLabel *>(QLatin1String(name))->isHidden())
                shown.append(QLatin1String(name));
        }
        return shown;
    };
    const auto *sentence = window.findChild<QLabel *>(QStringLiteral("stateLabel"));
    const QStringList all{QStringLiteral("nodesLabel"), QStringLiteral("framesLabel"),
                          QStringLiteral("uploadsLabel")};
    QStringList before = all;
    status->showNotice(QStringLiteral("Short."));
    QCOMPARE(figures(), all);
    // As the sentence grows, one after the other goes, and the sentence stays whole.
    QString text;
    while (!before.isEmpty()) {
        text += QLatin1Char('x');
        status->showNotice(text);
        const QStringList shown = figures();
        QVERIFY(shown == before || shown == before.mid(0, before.size() - 1));
        before = shown;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        QVERIFY2(sentence->width() >= sentence->fontMetrics().horizontalAdvance(text) || shown.isEmpty(),
                 qPrintable(QString::number(sentence->width())));
    }
    // A wider window has room for them again.
    window.resize(window.width() * 2, window.height());
    QCoreApplication::processEvents();
    QCOMPARE(figures(), all);
}

void tst_MainWindow::saysWhatCannotBeDelivered()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    emit window.records().deliveryFailed(QStringLiteral("Why."));
    const int last = window.messages().rowCount() - 1;
    QVERIFY(last >= 0);
    QCOMPARE(window.messages().text(last),
             QStringLiteral("Visits that wait on this computer cannot be delivered to the archive: Why."));
    QCOMPARE(window.messages().severity(last), MessageLog::Severity::Warning);
}

void tst_MainWindow::saysThatBusIsLost()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    host.fake.refusal = QStringLiteral("Still away.");
    host.fake.device()->goUnconnected();
    QTRY_VERIFY(labelText(window, "stateLabel").startsWith(QStringLiteral("Connection lost: ")));
    QVERIFY(labelText(window, "stateLabel").endsWith(QStringLiteral(" Trying to connect again ...")));
    QCOMPARE(window.findChild<QPushButton *>(QStringLiteral("connectButton"))->text(),
             QStringLiteral("Disconnect"));

    host.fake.refusal.clear();
    QTRY_COMPARE(labelText(window, "stateLabel"), QStringLiteral("Connected to fake:bus0."));
}

void tst_MainWindow::saysWhatTheArchiveCouldNotTell()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    auto *session = window.findChild<CheckupSession *>();
    emit session->pastIncomplete({QStringLiteral("Visit 1 is damaged.")});
    const int last = window.messages().rowCount() - 1;
    QVERIFY(last >= 0);
    QCOMPARE(window.messages().text(last), QStringLiteral("Visit 1 is damaged."));
    QCOMPARE(window.messages().severity(last), MessageLog::Severity::Warning);
}

void tst_MainWindow::saysWhereReadEnded()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    CanOpen::SdoPatience patience;
    patience.repeats = 0;
    host.services.bus().sdoClient().setDefaultPatience(patience);
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QSignalSpy ended(&host.services.sdoClient(), &HostSdoClient::errorReceived);
    host.services.getSdoClient()->upload(7, 0x6000, 0, 5, 100);
    QTRY_COMPARE(ended.size(), 1);
    host.services.getSdoClient()->upload(7, 0x6000, 1, 7, 100); // the one more request after a time-out
    QTRY_COMPARE(ended.size(), 2);
    QCOMPARE(
        labelText(window, "stateLabel"),
        QStringLiteral("The read stopped at node 7, object 6000h sub-index 0, because it did not answer. "
                       "Values read until then: 0."));
}

void tst_MainWindow::choiceIsClosedWhileConnected()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    auto *plugin = window.findChild<QComboBox *>(QStringLiteral("pluginBox"));
    auto *interface = window.findChild<QComboBox *>(QStringLiteral("interfaceBox"));
    QVERIFY(plugin->isEnabled());
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QVERIFY(!plugin->isEnabled());
    QVERIFY(!interface->isEnabled());
    host.services.bus().disconnectFromBus();
    QVERIFY(plugin->isEnabled());
    QVERIFY(interface->isEnabled());
}

void tst_MainWindow::remembersBus()
{
    BusSettings settings = fakeSettings();
    settings.bitRate = 250000;
    {
        Host host;
        MainWindow window(&host.services, &host.session);
        window.chooseBus(settings);
        window.show();
        window.close();
    }
    Host host;
    MainWindow window(&host.services, &host.session);
    const BusSettings remembered = window.findChild<ConnectionBar *>()->settings();
    QCOMPARE(remembered.address.toString(), QStringLiteral("fake:bus0"));
    QCOMPARE(remembered.bitRate.value_or(0), 250000);
}

void tst_MainWindow::isLightOnADarkDesktop()
{
    const QPalette desktop = QApplication::palette();
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();

    const QPalette dark(QColor(30, 30, 30));
    QVERIFY(isDarkPalette(dark));
    QApplication::setPalette(dark);
    QCoreApplication::processEvents();
    for (const QWidget *widget :
         {static_cast<const QWidget *>(&window), static_cast<const QWidget *>(window.menuBar()),
          static_cast<const QWidget *>(window.findChild<ConnectionBar *>()),
          static_cast<const QWidget *>(host.session.plugins().first().widget)}) {
        QVERIFY(!isDarkPalette(widget->palette()));
        QVERIFY(widget->palette().color(QPalette::Base).lightness() > 200);
        QVERIFY(widget->palette().color(QPalette::Text).lightness() < 50);
    }

    QApplication::setPalette(desktop);
    QCoreApplication::processEvents();
    QCOMPARE(window.palette().color(QPalette::Window), desktop.color(QPalette::Window));
    host.session.shutDown();
}

void tst_MainWindow::isLightOnADesktopThatIsDarkFromTheStart()
{
    const QPalette desktop = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(30, 30, 30)));
    Host host;
    const MainWindow window(&host.services, &host.session);
    QVERIFY(!isDarkPalette(window.palette()));
    QApplication::setPalette(desktop);
}

void tst_MainWindow::pageScrollsOnASmallScreen()
{
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    // What is free of 1024x600 at 200 %.
    window.resize(504, 264);
    QCoreApplication::processEvents();
    QVERIFY2(window.width() <= 504, qPrintable(QString::number(window.width())));
    QVERIFY2(window.height() <= 264, qPrintable(QString::number(window.height())));
    host.session.shutDown();
}

void tst_MainWindow::pagesAreMadeWhenTheyAreShown()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    const std::pair<const char *, const char *> pages[] = {{"actionPageLive", "livePage"},
                                                           {"actionPageTrace", "tracePage"},
                                                           {"actionPageArchive", "archivePage"}};
    for (const auto &[action, name] : pages) {
        QVERIFY2(window.findChild<QWidget *>(QLatin1String(name)) == nullptr, name);
        window.findChild<QAction *>(QLatin1String(action))->trigger();
        QVERIFY2(window.findChild<QWidget *>(QLatin1String(name))->isVisible(), name);
    }
    window.findChild<QAction *>(QStringLiteral("actionPageLive"))->trigger(); // no second one
    QCOMPARE(window.findChildren<QWidget *>(QStringLiteral("livePage")).size(), 1);
}

void tst_MainWindow::pagesShowWhatWasBefore()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    host.fake.heartbeat(5);
    QTest::qWait(500);
    host.fake.device()->inject(QCanBusFrame(0x085, QByteArray::fromHex("1042080000000000")));
    QTest::qWait(500);
    window.findChild<QAction *>(QStringLiteral("actionPageLive"))->trigger();
    const auto *events = window.findChild<QTableView *>(QStringLiteral("eventTable"));
    QCOMPARE(events->model()->rowCount(), 2);
    QVERIFY(events->isVisible());
    QVERIFY(window.findChild<QToolButton *>(QStringLiteral("allNumbers"))->isEnabled());
    window.findChild<QAction *>(QStringLiteral("actionPageTrace"))->trigger();
    QCOMPARE(window.findChild<QTableView *>(QStringLiteral("traceTable"))->model()->rowCount(), 2);
    host.services.bus().disconnectFromBus();
}

void tst_MainWindow::traceThatCannotBeOpenedIsSaidOnce()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("rubbish.log")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("nothing of a bus\n");
    file.close();
    Host host;
    MainWindow window(&host.services, &host.session);
    window.trace().open(file.fileName()); // without the page
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(window.findChildren<QMessageBox *>().size(), 1);
    QVERIFY2(shownBox(window)->text().contains(QStringLiteral("rubbish.log is no trace that is known")),
             qPrintable(shownBox(window)->text()));
    delete shownBox(window);
    window.show();
    window.openFile(file.fileName());
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(window.findChildren<QMessageBox *>().size(), 1);
}

void tst_MainWindow::eventIsShownInTheTrace()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    window.findChild<QAction *>(QStringLiteral("actionPageLive"))->trigger();
    host.fake.heartbeat(5);
    QTest::qWait(500);
    host.fake.device()->inject(QCanBusFrame(0x085, QByteArray::fromHex("1042080000000000")));
    QTest::qWait(500);
    host.fake.heartbeat(5);
    QTest::qWait(500);

    auto *events = window.findChild<QTableView *>(QStringLiteral("eventTable"));
    QCOMPARE(events->model()->rowCount(), 2);
    emit events->activated(events->model()->index(1, 0));
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("tracePage"))->isVisible());
    auto *lines = window.findChild<QTableView *>(QStringLiteral("traceTable"));
    QCOMPARE(lines->model()->rowCount(), 3);
    QCOMPARE(lines->currentIndex().row(), 1);

    events->clearSelection();
    window.findChild<QToolButton *>(QStringLiteral("traceEvents"))->click();
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("livePage"))->isVisible());
    QCOMPARE(events->currentIndex().row(), 1);
    QVERIFY(events->selectionModel()->isRowSelected(1, QModelIndex()));
    host.services.bus().disconnectFromBus();
}

void tst_MainWindow::dataSheetIsForTheTraceAsWell()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.live().questions().setDataSheet(5, CanOpen::ObjectDictionary());
    QCOMPARE(window.trace().document()->devices.sheets.keys(), QList<quint8>{5});
}

void tst_MainWindow::traceFileIsOpened()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("ride.log")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("(1795336200.000000) can0 705#05\n");
    file.close();
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    window.openFile(file.fileName());
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("tracePage"))->isVisible());
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(window.findChild<QTableView *>(QStringLiteral("traceTable"))->model()->rowCount(), 1);
    const QList<QAction *> recent = window.findChild<QMenu *>(QStringLiteral("recentMenu"))->actions();
    QVERIFY(!recent.isEmpty());
    QCOMPARE(recent.first()->text(), QStringLiteral("ride.log"));
}

void tst_MainWindow::titleNamesTheTraceThatIsShown()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("ride.log")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("(1795336200.000000) can0 705#05\n");
    file.close();
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    const QString title = window.windowTitle();
    window.openFile(file.fileName());
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(window.windowTitle(), QStringLiteral("Trace ride.log[*]"));
    window.findChild<QAction *>(QStringLiteral("actionPageLive"))->trigger();
    QCOMPARE(window.windowTitle(), title);
    window.findChild<QAction *>(QStringLiteral("actionPageTrace"))->trigger();
    QCOMPARE(window.windowTitle(), QStringLiteral("Trace ride.log[*]"));
    window.findChild<QToolButton *>(QStringLiteral("traceLive"))->click();
    QCOMPARE(window.windowTitle(), title);
}

void tst_MainWindow::dialogOpensTraces()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("screen.txt"))); // what it is its content tells
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("  can0  705   [1]  05\n  can0  706   [1]  05\n");
    file.close();
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    window.findChild<QAction *>(QStringLiteral("actionOpen"))->trigger();
    auto *dialog = window.findChild<QFileDialog *>(QStringLiteral("openDialog"));
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->nameFilters().first(),
             QStringLiteral("All that can be opened (*.dxsnap *.dxxml *.zip *.log *.asc *.trc *.pcap "
                            "*.pcapng *.txt *.gz *.zst)"));
    emit dialog->fileSelected(file.fileName());
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("tracePage"))->isVisible());
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(window.findChild<QTableView *>(QStringLiteral("traceTable"))->model()->rowCount(), 2);
    host.session.shutDown();
}

void tst_MainWindow::traceThatIsGoneIsForgotten()
{
    const QTemporaryDir folder;
    const QString gone = folder.filePath(QStringLiteral("gone.log"));
    RecentFiles::add(gone);
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    window.openFile(gone);
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QVERIFY(!RecentFiles::load().contains(gone));
}

void tst_MainWindow::closesDuringRead_data()
{
    QTest::addColumn<bool>("afterDetection");

    QTest::newRow("during detection") << false;
    QTest::newRow("during an upload") << true;
}

void tst_MainWindow::closesDuringRead()
{
    QFETCH(bool, afterDetection);
    Host host;
    host.loadOverview();
    CanOpen::SdoPatience patience;
    patience.timeout = std::chrono::seconds(60);
    patience.longest = std::chrono::seconds(60);
    host.services.bus().sdoClient().setDefaultPatience(patience);
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));

    bool isClosed = false;
    const auto closeWindow = [&] {
        QVERIFY(host.services.sdoClient().pendingUploads() == (afterDetection ? 1 : 0));
        isClosed = window.close();
    };
    if (afterDetection) {
        connect(&host.services.sdoClient(), &HostSdoClient::uploadStarted, &window, closeWindow,
                Qt::QueuedConnection);
    }
    bool hasReturned = false;
    QTimer::singleShot(0, &window, [&] {
        auto *button = window.findChild<QPushButton *>(QStringLiteral("btnRead"));
        QTimer::singleShot(0, &window, [&] {
            host.fake.heartbeat(1);
            if (!afterDetection)
                QTimer::singleShot(0, &window, closeWindow);
        });
        button->click(); // returns when the run is over
        hasReturned = true;
    });
    // Ends when the last window was closed.
    QApplication::exec();
    QVERIFY(isClosed);
    QVERIFY(hasReturned);
    QCOMPARE(host.services.bus().state(), BusConnection::State::Disconnected);
    host.session.shutDown();
}

void tst_MainWindow::disconnectsDuringRead()
{
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    connect(
        &host.services.sdoClient(), &HostSdoClient::uploadStarted, &window,
        [&] { host.services.bus().disconnectFromBus(); }, Qt::QueuedConnection);
    QTimer::singleShot(0, &window, [&] { host.fake.heartbeat(1); });
    window.findChild<QPushButton *>(QStringLiteral("btnRead"))->click();
    QTRY_VERIFY(!host.session.isConnectionTold());
    QCOMPARE(labelText(window, "stateLabel"), QStringLiteral("Not connected."));
    host.session.shutDown();
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
