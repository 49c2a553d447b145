// SPDX-License-Identifier: MIT
#include "mainwindow.h"

#include "connectionbar.h"
#include "lightpalette.h"
#include "statusline.h"

#include <host/core/hostservices.h>
#include <host/core/hostsettings.h>
#include <host/core/pluginsession.h>

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr QSize firstSize(1000, 720);

} // namespace

MainWindow::MainWindow(HostServices *services, PluginSession *session, QWidget *parent)
    : QMainWindow(parent)
    , m_services(services)
    , m_session(session)
    , m_bar(new ConnectionBar(this))
    , m_pages(new QTabWidget(this))
    , m_placeholder(new QLabel(this))
    , m_status(new StatusLine(&services->bus(), this))
{
    setObjectName(QStringLiteral("MainWindow"));
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

    connect(m_bar, &ConnectionBar::connectRequested, this, &MainWindow::openBus);
    connect(m_bar, &ConnectionBar::disconnectRequested, &services->bus(), &BusConnection::disconnectFromBus);
    connect(&services->bus(), &BusConnection::stateChanged, m_bar, &ConnectionBar::showState);
    connect(&services->sdoClient(), &HostSdoClient::uploadEnded, this, &MainWindow::handleUploadEnd);
    connect(m_pages, &QTabWidget::currentChanged, this, [this](int index) {
        if (m_pages->widget(index) != m_placeholder)
            m_session->setActivePlugin(index);
    });

    connect(qApp, &QGuiApplication::paletteChanged, this, &MainWindow::adaptPalette);

    retranslate();
    restoreSettings();
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
        m_session->setActivePlugin(0);
    }
    adaptPalette();
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
    m_placeholder->setText(
        tr("No plug-in is loaded. Put one into the folder \"plugins\" beside the program and start "
           "it again."));
}

void MainWindow::restoreSettings()
{
    const QSettings settings;
    resize(firstSize);
    restoreGeometry(settings.value(HostSettings::geometry).toByteArray());

    BusSettings bus;
    bus.address.plugin = settings.value(HostSettings::plugin).toString();
    bus.address.interfaceName = settings.value(HostSettings::interfaceName).toString();
    if (settings.contains(HostSettings::bitRate))
        bus.bitRate = parseBitRate(settings.value(HostSettings::bitRate).toString(), nullptr);
    if (!bus.address.plugin.isEmpty())
        m_bar->setSettings(bus);
}

void MainWindow::saveSettings() const
{
    const BusSettings bus = m_bar->settings();
    QSettings settings;
    settings.setValue(HostSettings::geometry, saveGeometry());
    settings.setValue(HostSettings::plugin, bus.address.plugin);
    settings.setValue(HostSettings::interfaceName, bus.address.interfaceName);
    if (bus.bitRate)
        settings.setValue(HostSettings::bitRate, *bus.bitRate);
    else
        settings.remove(HostSettings::bitRate);
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
        // An empty palette takes that of the desktop again.
        if (plugin.widget != nullptr)
            plugin.widget->setPalette(isDark ? lightPalette() : QPalette());
    }
}

void MainWindow::handleUploadEnd(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending)
{
    const bool isSilent = ending == HostSdoClient::Ending::Silent;
    // After a time-out a plug-in sends one more request; the first one is what ended its read.
    if (isSilent && !m_lastUploadWasSilent)
        m_status->showNotice(tr("Node %1 did not answer when asked for object %2; the read ended there.")
                                 .arg(QString::number(nodeId), key.toString()));
    m_lastUploadWasSilent = isSilent && !m_lastUploadWasSilent;
}
