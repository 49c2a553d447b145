// SPDX-License-Identifier: MIT
#include "mainwindow.h"

#include "boxes.h"
#include "bundlefiles.h"
#include "busreport.h"
#include "checkupfiles.h"
#include "connectionbar.h"
#include "eventmessages.h"
#include "filedrop.h"
#include "filefolder.h"
#include "helpboxes.h"
#include "hostmenus.h"
#include "lightpalette.h"
#include "messagelog.h"
#include "messagepanel.h"
#include "pagearea.h"
#include "patiencedialog.h"
#include "playbackbar.h"
#include "pluginactions.h"
#include "reportfiles.h"
#include "sharesetting.h"
#include "statusline.h"
#include "valuesstrip.h"
#include "vehiclefiles.h"
#include "windowlayout.h"

#include <bundle/supportbundle.h>
#include <host/core/hostservices.h>
#include <host/core/hostsettings.h>
#include <host/core/languagesetting.h>
#include <host/core/pluginsession.h>
#include <host/core/recentfiles.h>
#include <host/core/settingsstore.h>
#include <host/core/vehiclerecords.h>
#include <host/core/vehiclewatch.h>
#include <host/pages/archivepage.h>
#include <host/pages/checkuppage.h>
#include <host/pages/checkupsession.h>
#include <host/pages/checkupwords.h>
#include <host/pages/live/livepage.h>
#include <host/pages/live/livesession.h>
#include <host/pages/trace/tracepage.h>
#include <host/pages/trace/tracesession.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QLocale>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

namespace {

constexpr int leastMessages = 18; // pixels of the messages, on a very small screen
constexpr int noticeTime = 10000; // ms that what was done stands in the status bar

QString listOf(const QVector<quint8> &nodeIds)
{
    QStringList numbers;
    for (const quint8 nodeId : nodeIds)
        numbers.append(QString::number(nodeId));
    return numbers.join(QLatin1String(", "));
}

/*! What snapshots are said to be made by. */
QString programAndVersion()
{
    return QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
}

} // namespace

MainWindow::MainWindow(HostServices *services, PluginSession *session, QWidget *parent)
    : QMainWindow(parent)
    , m_services(services)
    , m_plugins(session)
    , m_records(new VehicleRecords(services, programAndVersion(), this))
    , m_session(new CheckupSession(services, m_records, this))
    , m_live(new LiveSession(services, this))
    , m_trace(new TraceSession(&services->bus(), this))
    , m_bar(new ConnectionBar(this))
    , m_pages(new QTabWidget(this))
    , m_checkup(new CheckupPage(m_session))
    , m_checkupTab(new PageArea(m_checkup, m_pages))
    , m_liveTab(new PageArea([this] { return makeLivePage(); }, m_pages))
    , m_traceTab(new PageArea([this] { return makeTracePage(); }, m_pages))
    , m_archiveTab(new PageArea([this] { return makeArchivePage(); }, m_pages))
    , m_placeholder(new QLabel(this))
    , m_status(new StatusLine(services, this))
    , m_log(new MessageLog(this))
    , m_report(new BusReport(services, m_log, this))
    , m_panel(new MessagePanel(m_log, this))
    , m_dock(new QDockWidget(this))
    , m_pluginActions(new PluginActions(this))
    , m_menus(new HostMenus(this, m_pluginActions))
    , m_files(new VehicleFiles(&m_vehicle, this))
    , m_reportFiles(new ReportFiles(m_pluginActions, this))
    , m_checkupFiles(new CheckupFiles(m_session, this))
    , m_bundles(new BundleFiles({&services->bus(), m_session, m_live, m_trace, m_log}, this))
{
    setObjectName(QStringLiteral("MainWindow"));
    keepProgramLight();
    build();
    connectMenus();
    connectFiles();
    connectReport();
    connectCheckup();
    connectLive();
    connectTrace();
    connectBundles();
    connectRecords();
    new VehicleWatch(services, &m_vehicle, this);

    BusConnection &bus = services->bus();
    connect(m_bar, &ConnectionBar::connectRequested, this, &MainWindow::openBus);
    connect(m_bar, &ConnectionBar::disconnectRequested, &bus, &BusConnection::disconnectFromBus);
    connect(&bus, &BusConnection::stateChanged, m_bar, &ConnectionBar::showState);
    connect(&bus, &BusConnection::stateChanged, this, &MainWindow::showBusState);
    connect(&services->reads(), &ReadObserver::phaseChanged, this, &MainWindow::showBusState);
    connect(m_status, &StatusLine::cancelRequested, this, &MainWindow::cancel);
    connect(m_report, &BusReport::noticed, m_status, &StatusLine::showNotice);
    connect(m_pages, &QTabWidget::currentChanged, this, &MainWindow::showPage);
    connect(qApp, &QGuiApplication::paletteChanged, this, [] { keepProgramLight(); });

    retranslate();
    restoreSettings();
    connectSettings();
    showBusState();
}

MainWindow::~MainWindow()
{
    // The pages go one by one; the plug-ins have been told good-bye before.
    m_pages->disconnect(this);
}

void MainWindow::showPlugins()
{
    const QVector<PluginSession::Plugin> &plugins = m_plugins->plugins();
    for (const PluginSession::Plugin &plugin : plugins) {
        // One page for each plug-in, so that the numbers of pages and plug-ins agree.
        QWidget *page = plugin.widget != nullptr
                            ? plugin.widget
                            : new QLabel(tr("%1 has no window.").arg(plugin.library.name), m_pages);
        const int index
            = m_pages->insertTab(m_pages->indexOf(m_placeholder), new PageArea(page, m_pages), QString());
        m_pages->setTabToolTip(index, plugin.library.description);
    }
    if (!plugins.isEmpty()) {
        m_pages->removeTab(m_pages->indexOf(m_placeholder));
        m_placeholder->hide();
        namePluginPages();
        m_pages->setCurrentIndex(0);
        showPage(0);
    }
}

void MainWindow::openFile(const QString &fileName)
{
    if (!VehicleFiles::isVehicleFile(fileName) && TraceSession::isTraceFile(fileName)) {
        m_pages->setCurrentWidget(m_traceTab);
        m_trace->open(fileName);
    } else if (!m_session->isRunning() && BundleFiles::isBundle(fileName)) {
        m_bundles->open(fileName, m_files->startOpening());
    } else if (m_session->isRunning()) {
        showError(tr("A check-up is running. Wait for its end or cancel it (Esc), then open the file."));
    } else {
        m_files->openFile(fileName);
    }
}

void MainWindow::setLanguages(LanguageSetting *languages, const QString &chosen)
{
    m_languages = languages;
    m_session->setLanguage(languages->current());
    m_live->setLanguage(languages->current());
    m_menus->setLanguages(languages->available(), chosen);
}

void MainWindow::chooseBus(const BusSettings &settings)
{
    m_bar->setSettings(settings);
}

void MainWindow::connectToChosenBus()
{
    openBus(m_bar->settings());
}

void MainWindow::showError(const QString &sentence)
{
    Boxes::showError(this, sentence);
}

void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QMainWindow::changeEvent(event);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_mayClose && m_vehicle.isUnsaved() && m_files->isAvailable()) {
        event->ignore();
        m_session->cancel();
        m_services->cancelRead(); // or the values could not be saved
        m_files->whenKept([this] {
            m_mayClose = true;
            close();
        });
        return;
    }
    m_session->cancel(); // what was read is kept
    saveSettings();
    // A read that is under way ends by this; it goes on in its slot below until then, so nothing is destroyed
    // here.
    m_services->bus().disconnectFromBus();
    QMainWindow::closeEvent(event);
}

void MainWindow::retranslate()
{
    showVehicle();
    m_menus->retranslate();
    namePluginPages();
    showCheckupState();
    m_dock->setWindowTitle(tr("Messages"));
    m_dock->toggleViewAction()->setText(tr("&Messages"));
    m_placeholder->setText(
        tr("No plug-in is loaded. Put one into the folder \"plugins\" beside the program and start "
           "it again."));
}

void MainWindow::build()
{
    m_placeholder->setObjectName(QStringLiteral("placeholder"));
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_placeholder->setWordWrap(true);
    m_pages->setObjectName(QStringLiteral("pluginPages"));
    m_pages->setDocumentMode(true);
    m_pages->setTabBarAutoHide(true);
    m_pages->addTab(m_placeholder, QString());
    m_pages->addTab(m_checkupTab, QString());
    m_pages->addTab(m_liveTab, QString());
    m_pages->addTab(m_traceTab, QString());
    m_pages->addTab(m_archiveTab, QString());

    auto *centre = new QWidget(this);
    auto *layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_bar);
    layout->addWidget(new PlaybackBar(&m_services->bus(), centre));
    layout->addWidget(new ValuesStrip(&m_vehicle, centre));
    layout->addWidget(m_pages, 1);
    setCentralWidget(centre);
    m_status->setMinimumWidth(1); // what it says is worth less than a window that fits
    statusBar()->addWidget(m_status, 1);

    m_dock->setObjectName(QStringLiteral("messagesDock"));
    m_dock->setAllowedAreas(Qt::TopDockWidgetArea | Qt::BottomDockWidgetArea);
    m_panel->setMinimumHeight(leastMessages);
    m_dock->setWidget(m_panel);
    addDockWidget(Qt::BottomDockWidgetArea, m_dock);
}

void MainWindow::connectMenus()
{
    m_menus->setMessagesAction(m_dock->toggleViewAction());
    connect(m_pluginActions->action(PluginActions::Kind::Read), &QAction::triggered, this,
            [this] { m_files->whenKept([this] { startRead(); }); });
    connect(m_menus->quit, &QAction::triggered, this, &QWidget::close);
    connect(m_menus->connectBus, &QAction::triggered, this, &MainWindow::connectToChosenBus);
    connect(m_menus->disconnectBus, &QAction::triggered, &m_services->bus(),
            &BusConnection::disconnectFromBus);
    connect(m_menus->cancelRead, &QAction::triggered, this, &MainWindow::cancel);
    connect(m_menus->refreshInterfaces, &QAction::triggered, m_bar, &ConnectionBar::refreshInterfaces);
    connect(m_menus->patience, &QAction::triggered, this, &MainWindow::choosePatience);
    connect(m_menus->resetLayout, &QAction::triggered, this, [this] { WindowLayout(this, m_dock).reset(); });
    connect(m_menus, &HostMenus::languageChosen, this, &MainWindow::chooseLanguage);
    connect(m_menus->keyList, &QAction::triggered, this,
            [this] { HelpBoxes::showKeyList(this, m_menus->shortcuts() + TracePage::keyList()); });
    connect(m_menus->about, &QAction::triggered, this, [this] {
        QStringList names;
        for (const PluginSession::Plugin &plugin : m_plugins->plugins())
            names.append(plugin.library.name + QLatin1Char(' ') + plugin.library.version);
        HelpBoxes::showAbout(this, names);
    });
    connect(m_menus->aboutQt, &QAction::triggered, qApp, &QApplication::aboutQt);
}

void MainWindow::connectFiles()
{
    using Kind = PluginActions::Kind;
    QAction *open = m_pluginActions->action(Kind::Open);
    connect(open, &QAction::triggered, this, [this] { openChosen(); });
    connect(m_pluginActions->action(Kind::Export), &QAction::triggered, this,
            [this] { m_files->isAvailable() ? m_files->save() : m_pluginActions->press(Kind::Export); });
    connect(m_menus, &HostMenus::recentFileChosen, this, &MainWindow::openFile);
    const auto canBeOpened = [](const QString &fileName) {
        return VehicleFiles::isVehicleFile(fileName) || TraceSession::mayBeTrace(fileName);
    };
    connect(new FileDrop(this, canBeOpened), &FileDrop::dropped, this, [this, open](const QString &fileName) {
        if (open->isEnabled() || TraceSession::isTraceFile(fileName))
            openFile(fileName);
    });
    connect(m_files, &VehicleFiles::chosen, this, &MainWindow::openFile);
    connect(m_files, &VehicleFiles::failed, this, &MainWindow::showError);
    connect(m_files, &VehicleFiles::succeeded, this,
            [this](const QString &sentence) { tell(MessageLog::Severity::Information, sentence); });
    connect(m_files, &VehicleFiles::recentChanged, this, &MainWindow::showRecentFiles);
    connect(&m_vehicle, &ShownVehicle::changed, this, &MainWindow::showVehicle);
}

void MainWindow::connectReport()
{
    connect(m_pluginActions->action(PluginActions::Kind::SaveReport), &QAction::triggered, m_reportFiles,
            &ReportFiles::write);
    connect(m_reportFiles, &ReportFiles::failed, this, &MainWindow::showError);
    connect(m_reportFiles, &ReportFiles::succeeded, this,
            [this](const QString &sentence) { tell(MessageLog::Severity::Information, sentence); });
    connect(m_reportFiles, &ReportFiles::missed, this,
            [this](const QString &sentence) { tell(MessageLog::Severity::Warning, sentence); });
}

void MainWindow::connectCheckup()
{
    m_menus->addCheckup(m_checkup->checkupAction(), m_checkup->saveAction(), m_checkup->reportAction());
    connect(m_menus, &HostMenus::pageChosen, this, &MainWindow::choosePage);
    connect(m_session, &CheckupSession::changed, this, [this] {
        showCheckupState();
        if (m_session->isRunning()) {
            m_files->dropOpening();
            m_pages->setCurrentWidget(m_checkupTab);
        }
    });
    connect(m_session, &CheckupSession::nodesChanged, this, &MainWindow::showCheckupState);
    const auto warn = [this](const QStringList &sentences) {
        for (const QString &sentence : sentences)
            m_log->add(MessageLog::Severity::Warning, sentence);
    };
    connect(m_session, &CheckupSession::rulesRefused, this, warn);
    connect(m_session, &CheckupSession::nodesDoubted, this, warn);
    connect(m_session, &CheckupSession::pastIncomplete, this, warn);
    connect(m_session, &CheckupSession::vehicleReplaced, this, [this](const QVector<quint8> &nodeIds) {
        tell(MessageLog::Severity::Warning, tr("Another vehicle is connected than the one that was shown "
                                               "(node %1). The check-up has begun anew.")
                                                .arg(listOf(nodeIds)));
    });
    connect(m_session, &CheckupSession::devicesReplaced, this, [this](const QVector<quint8> &nodeIds) {
        tell(MessageLog::Severity::Warning,
             tr("There is another device than before on node %1; it was read anew.").arg(listOf(nodeIds)));
    });
    connect(m_session, &CheckupSession::notesFailed, this, &MainWindow::showError);
    connect(m_checkup, &CheckupPage::openRequested, this, &MainWindow::openChosen);
    connect(m_checkup, &CheckupPage::saveRequested, m_checkupFiles, &CheckupFiles::save);
    connect(m_checkup, &CheckupPage::compareFileRequested, m_checkupFiles, &CheckupFiles::compareWithFile);
    connect(m_checkup, &CheckupPage::reportRequested, m_checkupFiles, &CheckupFiles::writeReport);
    connect(m_checkup, &CheckupPage::shareRequested, this, [this] {
        ShareSetting::ask(m_session->sharePercent(), this, [this](int percent) {
            m_session->setSharePercent(percent);
            m_live->questions().setSharePercent(percent);
        });
    });
    connect(m_checkup, &CheckupPage::notesRequested, m_checkupFiles, &CheckupFiles::askForNotes);
    connect(m_checkupFiles, &CheckupFiles::failed, this, &MainWindow::showError);
    connect(m_checkupFiles, &CheckupFiles::succeeded, this,
            [this](const QString &sentence) { tell(MessageLog::Severity::Information, sentence); });
    connect(m_session, &CheckupSession::finished, this, [this] {
        m_log->add(MessageLog::Severity::Information,
                   tr("Check-up finished. %1").arg(CheckupWords::verdict(m_session->record())));
    });
    connect(m_files, &VehicleFiles::opened, this, [this](const Snapshot &snapshot, const QString &fileName) {
        m_session->showFile(snapshot, fileName);
        if (snapshot.scope != SnapshotScope::Imported) // a check-up
            m_pages->setCurrentWidget(m_checkupTab);
    });
}

/*! Shows a visit on the page of the check-up, and what an exchange file can hold of it in the plug-in; \a then follows when
 *  it is shown and the visit before it is known.
 */
void MainWindow::showVisit(const Snapshot &snapshot, qint64 visitId, const std::function<void()> &then)
{
    if (m_session->isRunning()) {
        showError(tr("A check-up is running. Wait for its end or cancel it (Esc), then open the visit."));
        return;
    }
    m_files->whenKept([this, snapshot, visitId, then] {
        m_files->dropOpening();
        m_session->showVisit(snapshot, visitId, then);
        // In turns of their own, so that none of it keeps a click waiting long.
        QTimer::singleShot(0, this, [this, snapshot] {
            m_pages->setCurrentWidget(m_checkupTab);
            QTimer::singleShot(0, this, [this, snapshot] {
                m_files->showSnapshot(snapshot, CheckupWords::fileName(m_session->record()));
            });
        });
    });
}

void MainWindow::connectLive()
{
    new EventMessages(m_live, m_log, this);
    connect(m_session, &CheckupSession::changed, this,
            [this] { m_live->questions().setCheckingUp(m_session->isRunning()); });
    connect(&m_live->questions(), &LiveQuestions::dataSheetSet, this,
            [this](quint8 nodeId, const CanOpen::ObjectDictionary &dictionary) {
                TraceDevices devices;
                devices.sheets.insert(nodeId, dictionary);
                m_trace->tellHeard(devices);
            });
}

QWidget *MainWindow::makeLivePage()
{
    m_livePage = new LivePage(m_live);
    m_livePage->setFolder(&FileFolder::start);
    connect(m_livePage, &LivePage::failed, this, &MainWindow::showError);
    connect(m_livePage, &LivePage::told, this, &MainWindow::tellWithProblems);
    connect(m_livePage, &LivePage::eventChosen, this, [this](const LiveEvent &event, const QDateTime &time) {
        // A file stays until the user asks for more, unless the events are of it as well.
        if (m_trace->isLive() != m_livePage->isRecorded())
            showInTrace(event, time);
    });
    connect(m_livePage, &LivePage::traceRequested, this,
            [this](const LiveEvent &event, const QDateTime &time) {
                m_pages->setCurrentWidget(m_traceTab);
                showInTrace(event, time);
            });
    return m_livePage;
}

LivePage *MainWindow::livePage()
{
    m_liveTab->need();
    return m_livePage;
}

void MainWindow::connectTrace()
{
    m_trace->recorder().setSettings(TraceSettings::load());
    m_trace->recorder().setEvents(&m_live->live().events().list());
    connect(m_trace, &TraceSession::failed, this, &MainWindow::showError);
    connect(m_trace, &TraceSession::told, this, &MainWindow::tellWithProblems);
    connect(m_trace, &TraceSession::fileUsed, this, [this](const QString &fileName) {
        FileFolder::remember(fileName);
        RecentFiles::add(fileName);
        showRecentFiles();
    });
    connect(m_trace, &TraceSession::documentChanged, this, &MainWindow::showVehicle);
    connect(m_trace, &TraceSession::fileRefused, this, [this](const QString &fileName) {
        if (QFileInfo::exists(fileName))
            return;
        RecentFiles::remove(fileName);
        showRecentFiles();
    });
}

QWidget *MainWindow::makeTracePage()
{
    m_tracePage = new TracePage(m_trace);
    m_tracePage->setFolder(&FileFolder::start);
    m_tracePage->setHasEvents([this] {
        return m_livePage != nullptr && m_livePage->isRecorded()
               && m_trace->document()->fileName == m_bundleName;
    });
    connect(m_tracePage, &TracePage::told, this,
            [this](const QString &sentence) { tell(MessageLog::Severity::Information, sentence); });
    connect(m_tracePage, &TracePage::eventsRequested, this, [this](const QDateTime &time) {
        m_pages->setCurrentWidget(m_liveTab);
        livePage()->showEventAt(time);
    });
    return m_tracePage;
}

/*! What was on the bus around an event of the page "Live". */
void MainWindow::showInTrace(const LiveEvent &event, const QDateTime &time)
{
    m_traceTab->need();
    const TraceMoment moment = TraceMoment::of(event, time);
    m_livePage->isRecorded() ? m_tracePage->showMomentHere(moment) : m_tracePage->showMoment(moment);
}

void MainWindow::connectBundles()
{
    connect(m_menus->saveBundle, &QAction::triggered, m_bundles, &BundleFiles::save);
    connect(m_bundles, &BundleFiles::failed, this, &MainWindow::showError);
    connect(m_bundles, &BundleFiles::succeeded, this,
            [this](const QString &sentence) { tell(MessageLog::Severity::Information, sentence); });
    connect(m_bundles, &BundleFiles::opened, this, &MainWindow::openBundle);
    connect(m_live, &LiveSession::started, this, [this] { m_bundles->setShownBundle(nullptr); });
}

/*! First the vehicle: the user may want to keep what is shown. */
void MainWindow::openBundle(const std::shared_ptr<const SupportBundle> &bundle, const QString &fileName)
{
    if (m_session->isRunning()) {
        showError(tr("A check-up is running. Wait for its end or cancel it (Esc), then open the file."));
        return;
    }
    const auto show = [this, bundle, fileName] { showBundle(bundle, fileName); };
    if (bundle->snapshot)
        m_files->openSnapshot(*bundle->snapshot, fileName, show);
    else
        show();
}

void MainWindow::showBundle(const std::shared_ptr<const SupportBundle> &bundle, const QString &fileName)
{
    for (const QString &problem : bundle->problems)
        m_log->add(MessageLog::Severity::Warning, problem);
    for (const BundleMessage &message : bundle->messages)
        m_log->addEarlier(message.time, BundleFiles::severityOf(message.severity), message.text);
    if (bundle->trace) {
        TraceDevices devices;
        devices.snapshot = bundle->snapshot.value_or(Snapshot());
        m_trace->open(fileName, std::shared_ptr<const Trace>(bundle, &*bundle->trace), devices);
    }
    m_bundleName.clear();
    if (livePage()->showRecorded(bundle->events)) {
        m_bundleName = fileName;
        m_bundles->setShownBundle(bundle);
    } else if (!bundle->events.empty()) {
        m_log->add(
            MessageLog::Severity::Warning,
            tr("The events of the bundle are not shown while a bus is connected. Disconnect it and open "
               "the bundle again."));
    }
    m_pages->setCurrentWidget(bundle->snapshot ? m_checkupTab : bundle->trace ? m_traceTab : m_liveTab);
    m_files->noteOpened(fileName);
    const QString origin = bundle->program.isEmpty() ? tr("an unknown program") : bundle->program;
    const QString time = QLocale().toString(bundle->time.toLocalTime(), QLocale::ShortFormat);
    tell(MessageLog::Severity::Information,
         bundle->isMasked
             ? tr("This is a support bundle of %1, made %2. Serial numbers and names are masked.")
                   .arg(origin, time)
             : tr("This is a support bundle of %1, made %2.").arg(origin, time));
}

void MainWindow::connectRecords()
{
    using End = VehicleRecords::Keeping::End;
    connect(m_records, &VehicleRecords::readKept, this, [this](const VehicleRecords::Keeping &keeping) {
        if (keeping.end == End::Waiting)
            m_log->add(MessageLog::Severity::Warning,
                       tr("The read waits on this computer for the archive: %1").arg(keeping.reason));
        else if (keeping.end == End::Lost)
            m_log->add(MessageLog::Severity::Error,
                       tr("The read could not be kept, save it as a file: %1").arg(keeping.reason));
    });
    connect(m_records, &VehicleRecords::openFailed, this, [this](const QString &reason) {
        m_log->add(MessageLog::Severity::Warning, tr("The archive cannot be opened: %1").arg(reason));
    });
    connect(m_records, &VehicleRecords::delivered, this, [this](int count) {
        m_log->add(MessageLog::Severity::Information,
                   tr("%n visit(s) that had waited are in the archive now.", nullptr, count));
    });
    connect(m_records, &VehicleRecords::deliveryFailed, this, [this](const QString &reason) {
        m_log->add(
            MessageLog::Severity::Warning,
            tr("Visits that wait on this computer cannot be delivered to the archive: %1").arg(reason));
    });
}

QWidget *MainWindow::makeArchivePage()
{
    auto *page = new ArchivePage(m_records, m_session);
    page->setFolder(&FileFolder::start);
    connect(page, &ArchivePage::openRequested, this,
            [this](const Snapshot &snapshot, qint64 visitId) { showVisit(snapshot, visitId, {}); });
    connect(page, &ArchivePage::reportRequested, this, [this](const Snapshot &snapshot, qint64 visitId) {
        showVisit(snapshot, visitId, [this] { m_checkupFiles->writeReport(); });
    });
    connect(page, &ArchivePage::failed, this, &MainWindow::showError);
    connect(page, &ArchivePage::succeeded, this,
            [this](const QString &sentence) { tell(MessageLog::Severity::Information, sentence); });
    return page;
}

void MainWindow::restoreSettings()
{
    // What is missing or broken leaves the window as it is made.
    const QVariantMap settings = SettingsStore::instance().values();
    WindowLayout(this, m_dock).restore(settings);

    BusSettings bus;
    bus.address.plugin = settings.value(HostSettings::plugin).toString();
    bus.address.interfaceName = settings.value(HostSettings::interfaceName).toString();
    if (settings.contains(HostSettings::bitRate))
        bus.bitRate = parseBitRate(settings.value(HostSettings::bitRate).toString(), nullptr);
    if (!bus.address.plugin.isEmpty())
        m_bar->setSettings(bus);

    m_patience = PatienceSettings::load(settings);
    m_patience.apply(&m_services->bus().sdoClient(), PatienceSettings());
    m_session->setSharePercent(ShareSetting::load());
    m_live->questions().setSharePercent(ShareSetting::load());
}

void MainWindow::saveSettings()
{
    const BusSettings bus = m_bar->settings();
    SettingsStore::instance().update([this, &bus](QVariantMap *settings) {
        WindowLayout(this, m_dock).save(settings);
        settings->insert(HostSettings::plugin, bus.address.plugin);
        settings->insert(HostSettings::interfaceName, bus.address.interfaceName);
        if (bus.bitRate)
            settings->insert(HostSettings::bitRate, *bus.bitRate);
        else
            settings->remove(HostSettings::bitRate);
    });
}

void MainWindow::connectSettings()
{
    SettingsStore &settings = SettingsStore::instance();
    connect(&settings, &SettingsStore::refused, this, [this](const QString &fileName) {
        m_log->add(MessageLog::Severity::Warning,
                   tr("The settings cannot be kept: the file %1 cannot be written.")
                       .arg(QDir::toNativeSeparators(fileName)));
    });
    // Another window may have changed them meanwhile.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [&settings](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            settings.refresh();
    });
    settings.checkFile();
}

void MainWindow::showBusState()
{
    m_menus->showState(m_services->bus().state(), m_services->reads().isReading(), m_session->isRunning());
}

/*! Files and reports stay with the plug-in that was shown last. */
void MainWindow::showPage(int index)
{
    const QWidget *page = m_pages->widget(index);
    const QWidget *const own[] = {nullptr, m_placeholder, m_checkupTab, m_liveTab, m_traceTab, m_archiveTab};
    const bool isPlugin = std::find(std::begin(own), std::end(own), page) == std::end(own);
    m_plugins->setActivePlugin(isPlugin ? index : -1);
    if (isPlugin) {
        m_pluginActions->setPage(page);
        m_files->setPage(page);
        m_lastPlugin = index;
    }
    showRecentFiles();
    showVehicle();
}

/*! 0 is that of the plug-in that was shown last; the host's own follow. */
void MainWindow::choosePage(int number)
{
    QWidget *const pages[]
        = {m_pages->widget(m_lastPlugin), m_checkupTab, m_liveTab, m_traceTab, m_archiveTab};
    m_pages->setCurrentWidget(pages[number]);
}

/*! The only one is the overview of the vehicle. */
void MainWindow::namePluginPages()
{
    if (m_pages->indexOf(m_placeholder) >= 0) // they are not shown yet
        return;
    const QVector<PluginSession::Plugin> &plugins = m_plugins->plugins();
    for (int i = 0; i < plugins.size(); ++i)
        m_pages->setTabText(i, plugins.size() == 1 ? tr("Overview") : plugins.at(i).library.name);
}

void MainWindow::showCheckupState()
{
    const bool isRunning = m_session->isRunning();
    const SnapshotProgress progress = m_session->progress();
    const int percent = progress.total > 0 ? int(qint64(progress.asked) * 100 / progress.total) : 0;
    m_pages->setTabText(m_pages->indexOf(m_checkupTab),
                        isRunning ? tr("Check-up (%1 %)").arg(percent) : tr("Check-up"));
    m_pages->setTabText(m_pages->indexOf(m_liveTab), tr("Live"));
    m_pages->setTabText(m_pages->indexOf(m_traceTab), tr("Trace"));
    m_pages->setTabText(m_pages->indexOf(m_archiveTab), tr("Archive"));
    showBusState();
}

void MainWindow::cancel()
{
    if (m_session->isRunning())
        m_session->cancel();
    else
        m_services->cancelRead();
}

void MainWindow::openChosen()
{
    QStringList endings = VehicleFiles::endings() + TraceSession::endings();
    for (QString &ending : endings)
        ending.prepend(QLatin1Char('*'));
    m_files->open(
        {tr("All that can be opened (%1)").arg(endings.join(QLatin1Char(' '))), tr("All files (*)")});
}

void MainWindow::showRecentFiles()
{
    m_menus->setRecentFiles(RecentFiles::load());
}

/*! Of the page that is shown: the file of the trace, or else the vehicle. */
void MainWindow::showVehicle()
{
    const bool isTrace = m_pages->currentWidget() == m_traceTab && !m_trace->isLive();
    const QString title = isTrace ? tr("Trace %1").arg(QFileInfo(m_trace->document()->fileName).fileName())
                                  : m_vehicle.title();
    // "[*]" is where Qt marks values that are in no file.
    setWindowTitle(title.isEmpty()
                       ? QApplication::applicationDisplayName()
                       : QString(title).replace(QLatin1String("[*]"), QString()) + QLatin1String("[*]"));
    setWindowModified(!isTrace && !title.isEmpty() && m_vehicle.isUnsaved());
}

void MainWindow::tell(MessageLog::Severity severity, const QString &sentence)
{
    m_log->add(severity, sentence);
    statusBar()->showMessage(sentence, noticeTime);
}

/*! What came of something, and what did not go well with it. */
void MainWindow::tellWithProblems(const QString &sentence, const QStringList &problems)
{
    if (!sentence.isEmpty())
        tell(MessageLog::Severity::Information, sentence);
    for (const QString &problem : problems)
        m_log->add(MessageLog::Severity::Warning, problem);
}

void MainWindow::startRead()
{
    if (m_session->isRunning()) {
        tell(MessageLog::Severity::Warning,
             tr("A check-up is using the bus. Wait for its end or cancel it (Esc), then read again."));
        return;
    }
    const auto read = [this] {
        m_pages->setCurrentIndex(m_lastPlugin);
        m_pluginActions->press(PluginActions::Kind::Read);
    };
    const QStringList obstacles = m_report->obstacles();
    if (obstacles.isEmpty())
        read();
    else
        Boxes::askToReadAnyway(this, obstacles, read);
}

void MainWindow::chooseLanguage(const QString &language)
{
    if (m_languages == nullptr)
        return;
    SettingsStore &settings = SettingsStore::instance();
    settings.setValue(HostSettings::language, language.isEmpty() ? QVariant() : language);

    const QString effective
        = language.isEmpty() ? m_languages->bestOf(QLocale::system().uiLanguages()) : language;
    m_languages->apply(effective);
    m_plugins->setLanguage(effective);
    m_session->setLanguage(effective);
    m_live->setLanguage(effective);
    settings.checkFile();
}

void MainWindow::choosePatience()
{
    auto *dialog = new PatienceDialog(m_patience, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        const PatienceSettings chosen = dialog->settings();
        chosen.apply(&m_services->bus().sdoClient(), m_patience);
        m_patience = chosen;
        SettingsStore::instance().update([&chosen](QVariantMap *settings) { chosen.save(settings); });
        SettingsStore::instance().checkFile();
    });
    dialog->open();
}

void MainWindow::openBus(const BusSettings &settings)
{
    if (settings.address.interfaceName.isEmpty()) {
        showError(tr("Which interface is meant? Choose one, or type its name, and connect again."));
        return;
    }
    QString error;
    const bool isOpen = m_services->bus().connectToBus(settings, &error);
    // Another attempt, or the user, may have ended this one; then there is nothing to complain about.
    if (!isOpen && !m_services->bus().errorString().isEmpty())
        showError(error);
}
