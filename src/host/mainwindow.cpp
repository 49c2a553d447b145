// SPDX-License-Identifier: MIT
#include "mainwindow.h"

#include "busreport.h"
#include "connectionbar.h"
#include "helpboxes.h"
#include "hostmenus.h"
#include "lightpalette.h"
#include "messagelog.h"
#include "messagepanel.h"
#include "patiencedialog.h"
#include "pluginactions.h"
#include "statusline.h"

#include <host/core/hostservices.h>
#include <host/core/hostsettings.h>
#include <host/core/languagesetting.h>
#include <host/core/pluginsession.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr QSize firstSize(1000, 760);
constexpr int layoutVersion = 1; // of the saved places of the docks

} // namespace

MainWindow::MainWindow(HostServices *services, PluginSession *session, QWidget *parent)
    : QMainWindow(parent)
    , m_services(services)
    , m_session(session)
    , m_bar(new ConnectionBar(this))
    , m_pages(new QTabWidget(this))
    , m_placeholder(new QLabel(this))
    , m_status(new StatusLine(services, this))
    , m_log(new MessageLog(this))
    , m_report(new BusReport(services, m_log, this))
    , m_panel(new MessagePanel(m_log, this))
    , m_dock(new QDockWidget(this))
    , m_pluginActions(new PluginActions(this))
    , m_menus(new HostMenus(this, m_pluginActions))
{
    setObjectName(QStringLiteral("MainWindow"));
    build();
    connectMenus();

    BusConnection &bus = services->bus();
    connect(m_bar, &ConnectionBar::connectRequested, this, &MainWindow::openBus);
    connect(m_bar, &ConnectionBar::disconnectRequested, &bus, &BusConnection::disconnectFromBus);
    connect(&bus, &BusConnection::stateChanged, m_bar, &ConnectionBar::showState);
    connect(&bus, &BusConnection::stateChanged, this, &MainWindow::showBusState);
    connect(&services->reads(), &ReadObserver::phaseChanged, this, &MainWindow::showBusState);
    connect(m_status, &StatusLine::cancelRequested, services, &HostServices::cancelRead);
    connect(m_report, &BusReport::noticed, m_status, &StatusLine::showNotice);
    connect(m_pages, &QTabWidget::currentChanged, this, &MainWindow::showActivePlugin);
    connect(qApp, &QGuiApplication::paletteChanged, this, &MainWindow::adaptPalette);

    retranslate();
    restoreSettings();
    checkSettingsFile();
    showBusState();
}

MainWindow::~MainWindow()
{
    // The pages go one by one; the plug-ins have been told good-bye before.
    m_pages->disconnect(this);
}

void MainWindow::showPlugins()
{
    const QVector<PluginSession::Plugin> &plugins = m_session->plugins();
    for (const PluginSession::Plugin &plugin : plugins) {
        // One page for each plug-in, so that the numbers of pages and plug-ins agree.
        QWidget *page = plugin.widget != nullptr
                            ? plugin.widget
                            : new QLabel(tr("%1 has no window.").arg(plugin.library.name), m_pages);
        m_pages->insertTab(m_pages->indexOf(m_placeholder), page, plugin.library.name);
        m_pages->setTabToolTip(m_pages->indexOf(page), plugin.library.description);
    }
    if (!plugins.isEmpty()) {
        m_pages->removeTab(m_pages->indexOf(m_placeholder));
        m_placeholder->hide();
        m_pages->setCurrentIndex(0);
        showActivePlugin(0);
    }
    adaptPalette();
}

void MainWindow::setLanguages(LanguageSetting *languages, const QString &chosen)
{
    m_languages = languages;
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
    // Not run in place: a read may be under way below this call.
    auto *box = new QMessageBox(QMessageBox::Warning, QApplication::applicationDisplayName(), sentence,
                                QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->open();
}

void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QMainWindow::changeEvent(event);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    saveSettings();
    // A read that is under way ends by this; it goes on in its slot below until then, so nothing is destroyed
    // here.
    m_services->bus().disconnectFromBus();
    QMainWindow::closeEvent(event);
}

void MainWindow::retranslate()
{
    setWindowTitle(QApplication::applicationDisplayName());
    m_menus->retranslate();
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

    auto *centre = new QWidget(this);
    auto *layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_bar);
    layout->addWidget(m_pages, 1);
    setCentralWidget(centre);
    statusBar()->addWidget(m_status, 1);

    m_dock->setObjectName(QStringLiteral("messagesDock"));
    m_dock->setAllowedAreas(Qt::TopDockWidgetArea | Qt::BottomDockWidgetArea);
    m_dock->setWidget(m_panel);
    addDockWidget(Qt::BottomDockWidgetArea, m_dock);
}

void MainWindow::connectMenus()
{
    m_menus->setMessagesAction(m_dock->toggleViewAction());
    for (const PluginActions::Kind kind :
         {PluginActions::Kind::Open, PluginActions::Kind::Export, PluginActions::Kind::SaveReport}) {
        connect(m_pluginActions->action(kind), &QAction::triggered, m_pluginActions,
                [this, kind] { m_pluginActions->press(kind); });
    }
    connect(m_pluginActions->action(PluginActions::Kind::Read), &QAction::triggered, this,
            &MainWindow::startRead);
    connect(m_menus->quit, &QAction::triggered, this, &QWidget::close);
    connect(m_menus->connectBus, &QAction::triggered, this, &MainWindow::connectToChosenBus);
    connect(m_menus->disconnectBus, &QAction::triggered, &m_services->bus(),
            &BusConnection::disconnectFromBus);
    connect(m_menus->cancelRead, &QAction::triggered, m_services, &HostServices::cancelRead);
    connect(m_menus->refreshInterfaces, &QAction::triggered, m_bar, &ConnectionBar::refreshInterfaces);
    connect(m_menus->patience, &QAction::triggered, this, &MainWindow::choosePatience);
    connect(m_menus->resetLayout, &QAction::triggered, this, &MainWindow::resetLayout);
    connect(m_menus, &HostMenus::languageChosen, this, &MainWindow::chooseLanguage);
    connect(m_menus->keyList, &QAction::triggered, this,
            [this] { HelpBoxes::showKeyList(this, m_menus->shortcuts()); });
    connect(m_menus->about, &QAction::triggered, this, [this] {
        QStringList names;
        for (const PluginSession::Plugin &plugin : m_session->plugins())
            names.append(plugin.library.name + QLatin1Char(' ') + plugin.library.version);
        HelpBoxes::showAbout(this, names);
    });
    connect(m_menus->aboutQt, &QAction::triggered, qApp, &QApplication::aboutQt);
}

void MainWindow::restoreSettings()
{
    // What is missing or broken leaves the window as it is made.
    const QSettings settings;
    resize(firstSize);
    restoreGeometry(settings.value(HostSettings::geometry).toByteArray());
    restoreState(settings.value(HostSettings::windowState).toByteArray(), layoutVersion);

    BusSettings bus;
    bus.address.plugin = settings.value(HostSettings::plugin).toString();
    bus.address.interfaceName = settings.value(HostSettings::interfaceName).toString();
    if (settings.contains(HostSettings::bitRate))
        bus.bitRate = parseBitRate(settings.value(HostSettings::bitRate).toString(), nullptr);
    if (!bus.address.plugin.isEmpty())
        m_bar->setSettings(bus);

    m_patience = PatienceSettings::load(settings);
    m_patience.apply(&m_services->bus().sdoClient(), PatienceSettings());
}

void MainWindow::saveSettings()
{
    const BusSettings bus = m_bar->settings();
    QSettings settings;
    settings.setValue(HostSettings::geometry, saveGeometry());
    settings.setValue(HostSettings::windowState, saveState(layoutVersion));
    settings.setValue(HostSettings::plugin, bus.address.plugin);
    settings.setValue(HostSettings::interfaceName, bus.address.interfaceName);
    if (bus.bitRate)
        settings.setValue(HostSettings::bitRate, *bus.bitRate);
    else
        settings.remove(HostSettings::bitRate);
}

void MainWindow::checkSettingsFile()
{
    const QSettings settings;
    if (!settings.isWritable()) {
        m_log->add(MessageLog::Severity::Warning,
                   tr("The settings cannot be kept: the file %1 cannot be written.")
                       .arg(QDir::toNativeSeparators(settings.fileName())));
    }
}

void MainWindow::resetLayout()
{
    m_dock->setFloating(false);
    addDockWidget(Qt::BottomDockWidgetArea, m_dock);
    m_dock->show();
    showNormal();
    resize(firstSize);
    resizeDocks({m_dock}, {m_panel->sizeHint().height()}, Qt::Vertical);
}

void MainWindow::showBusState()
{
    m_menus->showState(m_services->bus().state(), m_services->reads().isReading());
}

void MainWindow::showActivePlugin(int index)
{
    const bool isPlugin = index >= 0 && m_pages->widget(index) != m_placeholder;
    if (isPlugin)
        m_session->setActivePlugin(index);
    m_pluginActions->setPage(isPlugin ? m_pages->widget(index) : nullptr);
}

void MainWindow::startRead()
{
    const QStringList obstacles = m_report->obstacles();
    if (obstacles.isEmpty()) {
        m_pluginActions->press(PluginActions::Kind::Read);
        return;
    }
    auto *box = new QMessageBox(QMessageBox::Warning, QApplication::applicationDisplayName(),
                                obstacles.join(QLatin1String("\n\n")), QMessageBox::Cancel, this);
    box->setObjectName(QStringLiteral("obstacleBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    const QPushButton *readAnyway = box->addButton(tr("&Read anyway"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    connect(readAnyway, &QPushButton::clicked, m_pluginActions,
            [this] { m_pluginActions->press(PluginActions::Kind::Read); });
    box->open();
}

void MainWindow::chooseLanguage(const QString &language)
{
    if (m_languages == nullptr)
        return;
    QSettings settings;
    if (language.isEmpty())
        settings.remove(HostSettings::language);
    else
        settings.setValue(HostSettings::language, language);

    const QString effective
        = language.isEmpty() ? m_languages->bestOf(QLocale::system().uiLanguages()) : language;
    m_languages->apply(effective);
    m_session->setLanguage(effective);
    checkSettingsFile();
}

void MainWindow::choosePatience()
{
    auto *dialog = new PatienceDialog(m_patience, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        const PatienceSettings chosen = dialog->settings();
        chosen.apply(&m_services->bus().sdoClient(), m_patience);
        m_patience = chosen;
        QSettings settings;
        chosen.save(&settings);
        checkSettingsFile();
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

void MainWindow::adaptPalette()
{
    const bool isDark = isDarkPalette(QApplication::palette());
    const QVector<PluginSession::Plugin> &plugins = m_session->plugins();
    for (const PluginSession::Plugin &plugin : plugins) {
        if (plugin.widget == nullptr)
            continue;
        // An empty palette takes that of the desktop again.
        plugin.widget->setPalette(isDark ? lightPalette() : QPalette());
        plugin.widget->setAutoFillBackground(isDark); // between its widgets, too
    }
}
