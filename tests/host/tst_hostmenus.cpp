// SPDX-License-Identifier: MIT
#include "hostfixture.h"

#include <host/busreport.h>
#include <host/core/hostsettings.h>
#include <host/core/languagesetting.h>
#include <host/core/settingsstore.h>
#include <host/hostmenus.h>
#include <host/mainwindow.h>
#include <host/messagelog.h>
#include <host/patiencedialog.h>
#include <tests/support/filedialogdriver.h>
#include <tests/support/logwatcher.h>
#include <tests/support/markingtranslator.h>

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFontDatabase>
#include <QHeaderView>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QtTest>

namespace {

QAction *action(const QWidget &window, const char *name)
{
    auto *found = window.findChild<QAction *>(QLatin1String(name));
    if (found == nullptr)
        qFatal("no action %s", name);
    return found;
}

QStringList messages(MainWindow *window)
{
    QStringList texts;
    const MessageLog &log = window->messages();
    for (int row = 0; row < log.rowCount(); ++row)
        texts.append(log.index(row, MessageLog::TextColumn).data().toString());
    return texts;
}

} // namespace

/*! The menus and what they do, with the plug-in as it ships. */
class tst_HostMenus : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
        QCoreApplication::setApplicationName(QStringLiteral("tst_hostmenus"));
        QCoreApplication::setApplicationVersion(QStringLiteral("1.2.3"));
        SettingsStore::instance().setValues({});
    }

    void shortcuts_data();
    void shortcuts();
    void menusHoldTheirActions();
    void pluginActionsNeedAPlugin();
    void filesHaveTheHostsDialogs_data();
    void filesHaveTheHostsDialogs();
    void connectsByKey();
    void connectKeyWorksInInterfaceBox();
    void busActionsFollowTheState();
    void readsByKey();
    void asksBeforeAReadThatCannotWork();
    void ownButtonOfPluginIsNeverHeldUp();
    void cancelsDuringDetection();
    void cancelsDuringUpload();
    void cancelByEscape();
    void readsAgainAfterCancel();
    void languagesByTheirOwnNames();
    void languageWithoutAFontSaysSo();
    void switchesLanguageAtOnce();
    void overviewIsNamedInTheLanguage();
    void boxesAreAsWideAsTheirWords();
    void keyListHasNoLettersOfMenus();
    void remembersLayout();
    void resetsLayout();
    void brokenSettingsAreNoNews();
    void saysThatSettingsCannotBeKept();
    void remembersPatience();
    void patienceDialogHasSaneRanges();
    void patienceHeadersAreWhole();
    void aboutAndKeyList();
    void manyFramesDoNotChangeTheLineOften();
};

void tst_HostMenus::shortcuts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("keys");

    QTest::newRow("open") << QStringLiteral("actionOpen") << QStringLiteral("&Open saved file...")
                          << QStringLiteral("Ctrl+O");
    QTest::newRow("export") << QStringLiteral("actionExport") << QStringLiteral("&Export...")
                            << QStringLiteral("Ctrl+S");
    QTest::newRow("report") << QStringLiteral("actionSaveReport") << QStringLiteral("Save &PDF report")
                            << QStringLiteral("Ctrl+P");
    QTest::newRow("quit") << QStringLiteral("actionQuit") << QStringLiteral("&Quit")
                          << QStringLiteral("Ctrl+Q");
    QTest::newRow("connect") << QStringLiteral("actionConnect") << QStringLiteral("&Connect")
                             << QStringLiteral("Ctrl+K");
    QTest::newRow("disconnect") << QStringLiteral("actionDisconnect") << QStringLiteral("&Disconnect")
                                << QStringLiteral("Ctrl+Shift+K");
    QTest::newRow("read") << QStringLiteral("actionRead") << QStringLiteral("&Read all data")
                          << QStringLiteral("F5");
    QTest::newRow("cancel") << QStringLiteral("actionCancelRead") << QStringLiteral("Ca&ncel read")
                            << QStringLiteral("Esc");
    QTest::newRow("refresh") << QStringLiteral("actionRefresh") << QStringLiteral("Re&fresh interfaces")
                             << QStringLiteral("Ctrl+R");
    QTest::newRow("patience") << QStringLiteral("actionPatience")
                              << QStringLiteral("&Patience with slow nodes...") << QString();
    QTest::newRow("reset") << QStringLiteral("actionResetLayout") << QStringLiteral("&Reset layout")
                           << QString();
    QTest::newRow("keys") << QStringLiteral("actionKeyList") << QStringLiteral("&Key list")
                          << QStringLiteral("F1");
    QTest::newRow("about") << QStringLiteral("actionAbout") << QStringLiteral("&About Draxel") << QString();
    QTest::newRow("about Qt") << QStringLiteral("actionAboutQt") << QStringLiteral("About &Qt") << QString();
}

void tst_HostMenus::shortcuts()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, keys);
    Host host;
    MainWindow window(&host.services, &host.session);
    const auto *found = window.findChild<QAction *>(name);
    QVERIFY(found != nullptr);
    QCOMPARE(found->text(), text);
    QCOMPARE(found->shortcut().toString(QKeySequence::PortableText), keys);
}

void tst_HostMenus::menusHoldTheirActions()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    const auto texts = [&window](const char *menu) {
        QStringList list;
        for (const QAction *entry : window.findChild<QMenu *>(QLatin1String(menu))->actions()) {
            if (!entry->isSeparator())
                list.append(entry->text().remove(QLatin1Char('&')));
        }
        return list.join(QLatin1Char('|'));
    };
    QCOMPARE(texts("fileMenu"),
             QStringLiteral("Open saved file...|Open recent file|Export...|Save PDF report|Save check-up...|"
                            "Service report...|Save support bundle...|Quit"));
    QCOMPARE(texts("busMenu"), QStringLiteral("Connect|Disconnect|Refresh interfaces|Read all data|Check-up|"
                                              "Cancel read|Patience with slow nodes..."));
    QCOMPARE(texts("viewMenu"),
             QStringLiteral("Overview|Check-up page|Live|Trace|Archive|Messages|Reset layout"));
    QCOMPARE(texts("helpMenu"), QStringLiteral("Key list|About Draxel|About Qt"));
}

void tst_HostMenus::pluginActionsNeedAPlugin()
{
    Host host;
    {
        MainWindow empty(&host.services, &host.session);
        empty.showPlugins();
        for (const char *name : {"actionOpen", "actionExport", "actionSaveReport", "actionRead"})
            QVERIFY2(!action(empty, name)->isEnabled(), name);
    }
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    for (const char *name : {"actionOpen", "actionExport", "actionSaveReport"})
        QVERIFY2(action(window, name)->isEnabled(), name);
    QVERIFY(!action(window, "actionRead")->isEnabled());
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QVERIFY(action(window, "actionRead")->isEnabled());
    host.session.shutDown();
}

void tst_HostMenus::filesHaveTheHostsDialogs_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QStringList>("filters");

    QTest::newRow("open")
        << QByteArray("actionOpen") << QStringLiteral("Open a file")
        << QStringList{QStringLiteral("All that can be opened (*.dxsnap *.dxxml *.zip *.log *.asc *.trc "
                                      "*.pcap *.pcapng *.txt *.gz *.zst)"),
                       QStringLiteral("All files (*)")};
    QTest::newRow("export") << QByteArray("actionExport") << QStringLiteral("Save vehicle data")
                            << QStringList{QStringLiteral("Vehicle data (*.dxxml)")};
}

void tst_HostMenus::filesHaveTheHostsDialogs()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, caption);
    QFETCH(QStringList, filters);
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    FileDialogDriver driver{QString()};
    action(window, name)->trigger();
    QTRY_COMPARE(driver.dialogs().size(), 1);
    QCOMPARE(driver.dialogs().first().caption, caption);
    QCOMPARE(driver.dialogs().first().filters, filters);
    host.session.shutDown();
}

void tst_HostMenus::connectsByKey()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.chooseBus(fakeSettings());
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(host.services.bus().state(), BusConnection::State::Connected);
    QTest::keyClick(&window, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(host.services.bus().state(), BusConnection::State::Disconnected);
}

void tst_HostMenus::connectKeyWorksInInterfaceBox()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.chooseBus(fakeSettings());
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto *box = window.findChild<QWidget *>(QStringLiteral("interfaceBox"));
    box->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(host.services.bus().state(), BusConnection::State::Connected);
    QCOMPARE(host.services.bus().settings().address.interfaceName, QStringLiteral("bus0"));
}

void tst_HostMenus::busActionsFollowTheState()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    QVERIFY(action(window, "actionConnect")->isEnabled());
    QVERIFY(action(window, "actionRefresh")->isEnabled());
    QVERIFY(!action(window, "actionDisconnect")->isEnabled());
    QVERIFY(!action(window, "actionCancelRead")->isEnabled());
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QVERIFY(!action(window, "actionConnect")->isEnabled());
    QVERIFY(!action(window, "actionRefresh")->isEnabled());
    QVERIFY(action(window, "actionDisconnect")->isEnabled());
    QVERIFY(!action(window, "actionCancelRead")->isEnabled());
}

void tst_HostMenus::readsByKey()
{
    Host host;
    host.loadOverview();
    host.fake.addNode(1);
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QSignalSpy detections(&host.services.reads(), &ReadObserver::detectionStarted);
    QSignalSpy ended(&host.services.reads(), &ReadObserver::readEnded);
    connect(&host.services.reads(), &ReadObserver::detectionStarted, &window,
            [&host] { QTimer::singleShot(0, &host.services, [&host] { host.fake.heartbeat(1); }); });
    QTest::keyClick(&window, Qt::Key_F5);
    QTRY_COMPARE(detections.size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 1, 20000);
    const auto summary = ended.first().first().value<ReadSummary>();
    QCOMPARE(summary.end, ReadSummary::End::Complete);
    QCOMPARE(summary.record.total().values, 1);
    QCOMPARE(summary.record.total().missing, 199);
    QCOMPARE(summary.record.total().failed, 0);
    QCOMPARE(messages(&window).last(),
             QStringLiteral("Read finished. Nodes: 1, values: 1, objects not there: 199, failed: 0."));
    QTRY_VERIFY(action(window, "actionRead")->isEnabled());
    host.session.shutDown();
}

void tst_HostMenus::asksBeforeAReadThatCannotWork()
{
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    window.report().setListeningTime([] { return std::chrono::seconds(3); });
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QSignalSpy detections(&host.services.reads(), &ReadObserver::detectionStarted);
    QSignalSpy ended(&host.services.reads(), &ReadObserver::readEnded);

    action(window, "actionRead")->trigger();
    auto *box = window.findChild<QMessageBox *>(QStringLiteral("obstacleBox"));
    QVERIFY(box != nullptr);
    QVERIFY(box->text().startsWith(QStringLiteral("Node 1, the bus controller, was not heard.")));
    box->button(QMessageBox::Cancel)->click();
    QTRY_VERIFY(window.findChild<QMessageBox *>(QStringLiteral("obstacleBox")) == nullptr);
    QCOMPARE(detections.size(), 0);

    action(window, "actionRead")->trigger();
    box = window.findChild<QMessageBox *>(QStringLiteral("obstacleBox"));
    QVERIFY(box != nullptr);
    for (QAbstractButton *button : box->buttons()) {
        if (box->buttonRole(button) == QMessageBox::AcceptRole) {
            QCOMPARE(button->text(), QStringLiteral("&Read anyway"));
            button->click();
        }
    }
    QTRY_COMPARE(detections.size(), 1);
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(ended.first().first().value<ReadSummary>().end, ReadSummary::End::NothingAsked);
    host.session.shutDown();
}

void tst_HostMenus::ownButtonOfPluginIsNeverHeldUp()
{
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    window.report().setListeningTime([] { return std::chrono::seconds(3); });
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QSignalSpy ended(&host.services.reads(), &ReadObserver::readEnded);
    window.findChild<QPushButton *>(QStringLiteral("btnRead"))->click();
    QVERIFY(window.findChild<QMessageBox *>() == nullptr);
    QTRY_COMPARE(ended.size(), 1);
    const QStringList all = messages(&window);
    QCOMPARE(all.filter(QStringLiteral("Node 1, the bus controller, was not heard.")).size(), 1);
    QCOMPARE(all.filter(QStringLiteral("Nothing was read")).size(), 1);
    QVERIFY(labelText(window, "stateLabel").startsWith(QStringLiteral("Nothing was read")));
    host.session.shutDown();
}

void tst_HostMenus::cancelsDuringDetection()
{
    Host host;
    host.loadOverview();
    host.fake.addNode(1);
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QSignalSpy ended(&host.services.reads(), &ReadObserver::readEnded);
    bool wasShown = false;
    QTimer::singleShot(0, &window, [&] {
        host.fake.heartbeat(1);
        auto *button = window.findChild<QAbstractButton *>(QStringLiteral("cancelButton"));
        wasShown = button->isVisible();
        button->click();
        QCOMPARE(labelText(window, "stateLabel"), QStringLiteral("Ending the read ..."));
    });
    window.findChild<QPushButton *>(QStringLiteral("btnRead"))->click(); // returns when the run is over
    QVERIFY(wasShown);
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(host.fake.device()->writeCalls(), 0);
    QCOMPARE(host.services.bus().state(), BusConnection::State::Connected);
    QVERIFY(messages(&window).last().startsWith(
        QStringLiteral("The read was cancelled by the user at node 1, object 1000h sub-index 0.")));
    QVERIFY(!window.findChild<QAbstractButton *>(QStringLiteral("cancelButton"))->isVisible());
    host.session.shutDown();
}

void tst_HostMenus::cancelsDuringUpload()
{
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    CanOpen::SdoPatience patience;
    patience.timeout = std::chrono::seconds(60);
    patience.longest = std::chrono::seconds(60);
    host.services.bus().sdoClient().setDefaultPatience(patience);
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    connect(
        &host.services.sdoClient(), &HostSdoClient::uploadStarted, &window,
        [&window] { action(window, "actionCancelRead")->trigger(); }, Qt::QueuedConnection);
    QTimer::singleShot(0, &window, [&host] { host.fake.heartbeat(1); });
    window.findChild<QPushButton *>(QStringLiteral("btnRead"))->click();
    QCOMPARE(messages(&window).last(),
             QStringLiteral("The read was cancelled by the user at node 1, object 1000h sub-index 0. Values "
                            "read until then: 0."));
    QTRY_VERIFY(!host.services.sdoClient().isCancelling());
    QCOMPARE(host.services.bus().state(), BusConnection::State::Connected);
    host.session.shutDown();
}

void tst_HostMenus::cancelByEscape()
{
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QTimer::singleShot(0, &window, [&window] { QTest::keyClick(&window, Qt::Key_Escape); });
    window.findChild<QPushButton *>(QStringLiteral("btnRead"))->click();
    QTRY_COMPARE(messages(&window).last(), QStringLiteral("The read was cancelled by the user."));
    host.session.shutDown();
}

void tst_HostMenus::readsAgainAfterCancel()
{
    Host host;
    host.loadOverview();
    host.fake.addNode(1);
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    window.show();
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QSignalSpy ended(&host.services.reads(), &ReadObserver::readEnded);
    auto *read = window.findChild<QPushButton *>(QStringLiteral("btnRead"));
    QTimer::singleShot(0, &window, [&] {
        host.fake.heartbeat(1);
        host.services.cancelRead();
    });
    read->click();
    QCOMPARE(ended.size(), 1);
    QTimer::singleShot(0, &window, [&] { host.fake.heartbeat(1); });
    read->click(); // at once, before the cancelled run has settled
    QTRY_COMPARE(ended.size(), 2);
    const auto summary = ended.last().first().value<ReadSummary>();
    QCOMPARE(summary.end, ReadSummary::End::Complete);
    QCOMPARE(summary.record.total().values, 1);
    host.session.shutDown();
}

void tst_HostMenus::languagesByTheirOwnNames()
{
    Host host;
    LanguageSetting languages(QStringLiteral(OVERVIEW_LANGUAGE_FOLDER));
    MainWindow window(&host.services, &host.session);
    window.setLanguages(&languages, QStringLiteral("fr"));
    const bool hasChineseFont = !QFontDatabase().families(QFontDatabase::SimplifiedChinese).isEmpty();
    QStringList names;
    QString checked;
    for (const QAction *entry : window.findChild<QMenu *>(QStringLiteral("languageMenu"))->actions()) {
        if (entry->isSeparator())
            continue;
        names.append(entry->text());
        if (entry->isChecked())
            checked = entry->text();
    }
    QCOMPARE(names.join(QLatin1Char('|')),
             QStringLiteral("&System|Deutsch|English|Français|Nederlands|")
                 + (hasChineseFont ? QStringLiteral("简体中文")
                                   : QStringLiteral("Chinese (no font for it is installed)")));
    QCOMPARE(checked, QStringLiteral("Français"));
}

void tst_HostMenus::languageWithoutAFontSaysSo()
{
    QCOMPARE(HostMenus::languageLabel(QStringLiteral("zh_CN"), true), QStringLiteral("简体中文"));
    QCOMPARE(HostMenus::languageLabel(QStringLiteral("zh_CN"), false),
             QStringLiteral("Chinese (no font for it is installed)"));
}

void tst_HostMenus::switchesLanguageAtOnce()
{
    Host host;
    LanguageSetting languages(QStringLiteral(OVERVIEW_LANGUAGE_FOLDER));
    MainWindow window(&host.services, &host.session);
    window.setLanguages(&languages, QString());
    window.show();
    auto *button = window.findChild<QPushButton *>(QStringLiteral("connectButton"));
    QVERIFY(action(window, "actionLanguage_")->isChecked());

    action(window, "actionLanguage_de")->trigger();
    QTRY_COMPARE(button->text(), QStringLiteral("Verbinden"));
    QCOMPARE(SettingsStore::instance().value(QStringLiteral("language")).toString(), QStringLiteral("de"));
    action(window, "actionLanguage_en")->trigger();
    QTRY_COMPARE(button->text(), QStringLiteral("Connect"));
    QCOMPARE(SettingsStore::instance().value(QStringLiteral("language")).toString(), QStringLiteral("en"));
    action(window, "actionLanguage_")->trigger();
    QVERIFY(!SettingsStore::instance().value(QStringLiteral("language")).isValid());
    languages.apply(QStringLiteral("en"));
}

void tst_HostMenus::overviewIsNamedInTheLanguage()
{
    Host host;
    host.loadOverview();
    LanguageSetting languages(QStringLiteral(OVERVIEW_LANGUAGE_FOLDER));
    languages.apply(QStringLiteral("en"));
    MainWindow window(&host.services, &host.session);
    window.setLanguages(&languages, QString());
    window.showPlugins();
    const auto *pages = window.findChild<QTabWidget *>(QStringLiteral("pluginPages"));
    QCOMPARE(pages->tabText(0), QStringLiteral("Overview"));
    action(window, "actionLanguage_de")->trigger();
    QTRY_COMPARE(pages->tabText(0), QStringLiteral("Übersicht"));
    QCOMPARE(pages->tabText(4), QStringLiteral("Archiv"));
    action(window, "actionLanguage_en")->trigger();
    QTRY_COMPARE(pages->tabText(0), QStringLiteral("Overview"));
    host.session.shutDown();
}

/*! As those of a window that has spoken the language from the start. */
void tst_HostMenus::boxesAreAsWideAsTheirWords()
{
    Host host;
    LanguageSetting languages(QStringLiteral(OVERVIEW_LANGUAGE_FOLDER));
    languages.apply(QStringLiteral("fr"));
    MainWindow window(&host.services, &host.session);
    window.setLanguages(&languages, QStringLiteral("fr"));
    window.show();
    const auto widthIn = [](const MainWindow &shown, const char *name) {
        return shown.findChild<QComboBox *>(QLatin1String(name))->sizeHint().width();
    };
    const char *const boxes[] = {"bitRateBox", "playbackSpeed"};
    for (const char *name : boxes)
        QVERIFY(widthIn(window, name) > 0);
    action(window, "actionLanguage_en")->trigger();
    QTRY_COMPARE(window.findChild<QComboBox *>(QStringLiteral("bitRateBox"))->currentText(),
                 QStringLiteral("as configured"));
    Host otherHost;
    MainWindow other(&otherHost.services, &otherHost.session);
    other.show();
    for (const char *name : boxes)
        QVERIFY2(widthIn(window, name) == widthIn(other, name), name);
}

/*! Languages without Latin letters have that of the menu behind the word, in brackets. */
void tst_HostMenus::keyListHasNoLettersOfMenus()
{
    Host host;
    LanguageSetting languages(QStringLiteral(OVERVIEW_LANGUAGE_FOLDER));
    languages.apply(QStringLiteral("zh_CN"));
    MainWindow window(&host.services, &host.session);
    action(window, "actionKeyList")->trigger();
    const QString text = window.findChild<QMessageBox *>(QStringLiteral("keyListBox"))->text();
    languages.apply(QStringLiteral("en"));
    QVERIFY2(text.contains(QStringLiteral("<b>Ctrl+1</b></td><td>&nbsp;&nbsp;&nbsp;总览</td>")),
             qPrintable(text));
    QVERIFY2(!text.contains(QLatin1Char('(')), qPrintable(text));
}

void tst_HostMenus::remembersLayout()
{
    Host host;
    {
        MainWindow window(&host.services, &host.session);
        window.show();
        auto *dock = window.findChild<QDockWidget *>(QStringLiteral("messagesDock"));
        QVERIFY(dock->isVisible());
        dock->toggleViewAction()->trigger();
        window.resize(711, 500);
        window.close();
    }
    MainWindow window(&host.services, &host.session);
    window.show();
    QVERIFY(!window.findChild<QDockWidget *>(QStringLiteral("messagesDock"))->isVisible());
    QCOMPARE(window.size(), QSize(711, 500));
}

void tst_HostMenus::resetsLayout()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    auto *dock = window.findChild<QDockWidget *>(QStringLiteral("messagesDock"));
    window.addDockWidget(Qt::TopDockWidgetArea, dock);
    dock->hide();
    window.resize(600, 500);
    action(window, "actionResetLayout")->trigger();
    QVERIFY(dock->isVisible());
    QCOMPARE(window.dockWidgetArea(dock), Qt::BottomDockWidgetArea);
    QCOMPARE(window.size(), QSize(796, 596)); // the screen but for the frame
}

void tst_HostMenus::brokenSettingsAreNoNews()
{
    SettingsStore::instance().setValues({{QStringLiteral("window/geometry"), QByteArray("no geometry")},
                                         {QStringLiteral("window/state"), QStringList{QStringLiteral("x")}},
                                         {QStringLiteral("bus/plugin"), 7},
                                         {QStringLiteral("bus/interface"), QVariant()},
                                         {QStringLiteral("bus/bitRate"), QStringLiteral("fast")},
                                         {QStringLiteral("patience/timeout"), QStringLiteral("long")},
                                         {QStringLiteral("language"), QStringLiteral("../../x")}});
    LogWatcher log;
    Host host;
    LanguageSetting languages(QStringLiteral(OVERVIEW_LANGUAGE_FOLDER));
    MainWindow window(&host.services, &host.session);
    window.setLanguages(&languages, SettingsStore::instance().value(QStringLiteral("language")).toString());
    window.show();
    QCOMPARE(log.warnings(), QStringList());
    QCOMPARE(messages(&window), QStringList());
    QCOMPARE(window.size(), QSize(792, 564)); // of 1000 x 760, as the screen has 800 x 600
    QVERIFY(window.findChild<QDockWidget *>(QStringLiteral("messagesDock"))->isVisible());
}

void tst_HostMenus::saysThatSettingsCannotBeKept()
{
    const QString folder = QFileInfo(QSettings().fileName()).dir().absoluteFilePath(QStringLiteral(".."));
    SettingsStore::instance().finish();
    QTemporaryDir temporary;
    QFile file(temporary.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    // No folder can be made below a file, whoever tries.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, file.fileName());
    QString where;
    QStringList all;
    {
        Host host;
        MainWindow window(&host.services, &host.session);
        window.show();
        where = QSettings().fileName();
        window.close();
        SettingsStore::instance().finish();
        QCoreApplication::sendPostedEvents();
        all = messages(&window);
    }
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
    QCOMPARE(all,
             QStringList(
                 QStringLiteral("The settings cannot be kept: the file %1 cannot be written.").arg(where)));
}

void tst_HostMenus::remembersPatience()
{
    {
        Host host;
        MainWindow window(&host.services, &host.session);
        window.show();
        action(window, "actionPatience")->trigger();
        auto *dialog = window.findChild<PatienceDialog *>();
        QVERIFY(dialog != nullptr);
        dialog->findChild<QSpinBox *>(QStringLiteral("timeoutBox"))->setValue(300);
        dialog->findChild<QSpinBox *>(QStringLiteral("repeatsBox"))->setValue(1);
        dialog->findChild<QPushButton *>(QStringLiteral("addNodeButton"))->click();
        dialog->findChild<QPushButton *>(QStringLiteral("addNodeButton"))->click();
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
        QTRY_VERIFY(window.findChild<PatienceDialog *>() == nullptr);
    }
    const PatienceSettings saved = PatienceSettings::load(SettingsStore::instance().values());
    QCOMPARE(saved.general.timeout, 300);
    QCOMPARE(saved.general.repeats, 1);
    QCOMPARE(saved.nodes.keys(), (QList<quint8>{1, 2}));
    QCOMPARE(saved.nodes.value(2).timeout, 500);

    Host host;
    MainWindow window(&host.services, &host.session);
    action(window, "actionPatience")->trigger();
    auto *dialog = window.findChild<PatienceDialog *>();
    QCOMPARE(dialog->settings().nodes.size(), 2);
    dialog->findChild<QPushButton *>(QStringLiteral("removeNodeButton"))->click();
    QCOMPARE(dialog->settings().nodes.size(), 1);
    dialog->findChild<QPushButton *>(QStringLiteral("defaultsButton"))->click();
    QVERIFY(dialog->settings() == PatienceSettings());
    dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel)->click();
    QCOMPARE(PatienceSettings::load(SettingsStore::instance().values()).general.timeout, 300);
}

void tst_HostMenus::patienceDialogHasSaneRanges()
{
    PatienceDialog dialog{PatienceSettings()};
    const auto *timeout = dialog.findChild<QSpinBox *>(QStringLiteral("timeoutBox"));
    const auto *repeats = dialog.findChild<QSpinBox *>(QStringLiteral("repeatsBox"));
    QCOMPARE(timeout->minimum(), 20);
    QCOMPARE(timeout->maximum(), 5000);
    QCOMPARE(repeats->minimum(), 0);
    QCOMPARE(repeats->maximum(), 5);
    auto *add = dialog.findChild<QPushButton *>(QStringLiteral("addNodeButton"));
    for (int i = 0; i < 130; ++i)
        add->click();
    QCOMPARE(dialog.settings().nodes.size(), 127);
    QCOMPARE(int(dialog.settings().nodes.lastKey()), 127);
}

void tst_HostMenus::aboutAndKeyList()
{
    Host host;
    host.loadOverview();
    MainWindow window(&host.services, &host.session);
    window.showPlugins();
    action(window, "actionAbout")->trigger();
    const auto *about = window.findChild<QMessageBox *>(QStringLiteral("aboutBox"));
    QVERIFY(about != nullptr);
    QCOMPARE(about->text(), QStringLiteral("Draxel 1.2.3"));
    QVERIFY(about->informativeText().contains(QStringLiteral("Licence: MIT.")));
    QVERIFY(about->informativeText().contains(QStringLiteral("Qt version: ") + QLatin1String(qVersion())));
    QVERIFY(!about->informativeText().contains(QStringLiteral("://")));

    action(window, "actionKeyList")->trigger();
    const auto *keys = window.findChild<QMessageBox *>(QStringLiteral("keyListBox"));
    QVERIFY(keys != nullptr);
    QTextDocument text;
    text.setHtml(keys->text());
    for (const char *line :
         {"F5", "Read all data", "Ctrl+O", "Open saved file", "Esc", "Cancel read", "Ctrl+M", "Ctrl+F",
          "Find in the trace", "F3", "Find the next line", "Shift+F3", "Find the line before"})
        QVERIFY2(text.toPlainText().contains(QLatin1String(line)), line);
    host.session.shutDown();
}

void tst_HostMenus::manyFramesDoNotChangeTheLineOften()
{
    class PaintCounter : public QObject
    {
    public:
        using QObject::QObject;
        int layouts = 0;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint)
                ++layouts;
            return false;
        }
    };
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
    QCoreApplication::processEvents();
    PaintCounter counter;
    window.findChild<QLabel *>(QStringLiteral("framesLabel"))->installEventFilter(&counter);
    int frames = 0;
    connect(&host.services.bus(), &BusConnection::frameReceived, &window, [&frames] { ++frames; });
    QVector<QCanBusFrame> second(8000, QCanBusFrame(0x181, QByteArray(8, 'x')));
    host.fake.device()->inject(second);
    QTRY_COMPARE(frames, 8000);
    QTRY_VERIFY(counter.layouts >= 1);
    QVERIFY2(counter.layouts <= 2, qPrintable(QString::number(counter.layouts)));
}

void tst_HostMenus::patienceHeadersAreWhole()
{
    const MarkingTranslator longTexts;
    PatienceDialog dialog{PatienceSettings()};
    dialog.show();
    const auto *header = dialog.findChild<QTableWidget *>(QStringLiteral("nodeTable"))->horizontalHeader();
    for (int column = 0; column < header->count(); ++column) {
        QVERIFY2(header->sectionSize(column) >= header->sectionSizeHint(column),
                 qPrintable(QString::number(column)));
    }
}

QTEST_MAIN(tst_HostMenus)
#include "tst_hostmenus.moc"
