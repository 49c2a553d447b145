// SPDX-License-Identifier: MIT
#pragma once

#include "messagelog.h"

#include <bus/bussettings.h>
#include <bus/patiencesettings.h>
#include <host/core/shownvehicle.h>

#include <QMainWindow>

#include <functional>
#include <memory>

class BundleFiles;
class BusReport;
class CheckupFiles;
class CheckupPage;
class CheckupSession;
class ConnectionBar;
class HostMenus;
class HostServices;
class LanguageSetting;
class LivePage;
class LiveSession;
class MessagePanel;
class PageArea;
class PluginActions;
class PluginSession;
class QDateTime;
class QDockWidget;
class QLabel;
class QTabWidget;
class ReportFiles;
class StatusLine;
class TracePage;
class TraceSession;
class VehicleFiles;
class VehicleRecords;
struct LiveEvent;
struct Snapshot;
struct SupportBundle;

/*! The host's window: the connection bar above the pages, those of the plug-ins and its own, the messages and the status
 *  of the bus below. It only puts its parts together.
 */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /*! Both must outlive the window. The plug-ins are taken in by showPlugins(). */
    MainWindow(HostServices *services, PluginSession *session, QWidget *parent = nullptr);
    ~MainWindow() override;

    /*! Puts the windows of the session's plug-ins in the centre and becomes their owner. */
    void showPlugins();

    /*! Chooses a bus in the bar. */
    void chooseBus(const BusSettings &settings);

    /*! Opens the bus that is chosen in the bar; a failure is shown in a box. */
    void connectToChosenBus();

    /*! Shows the values of an exchange file; a failure is shown in a box. */
    void openFile(const QString &fileName);

    /*! Lets the user choose among \a languages, which must outlive the window; \a chosen is the choice so far,
     *  empty for the language of the system.
     */
    void setLanguages(LanguageSetting *languages, const QString &chosen);

    MessageLog &messages() { return *m_log; }
    BundleFiles &bundles() { return *m_bundles; }
    BusReport &report() { return *m_report; }
    ShownVehicle &vehicle() { return m_vehicle; }
    CheckupSession &checkup() { return *m_session; }
    LiveSession &live() { return *m_live; }
    TraceSession &trace() { return *m_trace; }
    VehicleRecords &records() { return *m_records; }

    /*! Shows \a sentence in a box; returns at once. */
    void showError(const QString &sentence);

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void build();
    void connectMenus();
    void connectFiles();
    void connectReport();
    void connectCheckup();
    void connectLive();
    void connectTrace();
    void connectBundles();
    void connectRecords();
    QWidget *makeLivePage();
    QWidget *makeTracePage();
    QWidget *makeArchivePage();
    LivePage *livePage();
    void showInTrace(const LiveEvent &event, const QDateTime &time);
    void retranslate();
    void namePluginPages();
    void restoreSettings();
    void saveSettings();
    void connectSettings();
    void showBusState();
    void showPage(int index);
    void choosePage(int number);
    void showCheckupState();
    void openBundle(const std::shared_ptr<const SupportBundle> &bundle, const QString &fileName);
    void showBundle(const std::shared_ptr<const SupportBundle> &bundle, const QString &fileName);
    void showVisit(const Snapshot &snapshot, qint64 visitId, const std::function<void()> &then);
    void cancel();
    void openChosen();
    void startRead();
    void chooseLanguage(const QString &language);
    void choosePatience();
    void openBus(const BusSettings &settings);
    void showVehicle();
    void showRecentFiles();
    void tell(MessageLog::Severity severity, const QString &sentence);
    void tellWithProblems(const QString &sentence, const QStringList &problems);

    HostServices *m_services;
    PluginSession *m_plugins;
    VehicleRecords *m_records;
    CheckupSession *m_session;
    LiveSession *m_live;
    TraceSession *m_trace;
    ConnectionBar *m_bar;
    ShownVehicle m_vehicle;
    QTabWidget *m_pages;
    CheckupPage *m_checkup;
    PageArea *m_checkupTab;
    PageArea *m_liveTab;
    LivePage *m_livePage = nullptr; // when it is needed, as those below
    PageArea *m_traceTab;
    TracePage *m_tracePage = nullptr;
    QString m_bundleName; // of the support bundle whose events the page "Live" shows; empty: none
    PageArea *m_archiveTab;
    QLabel *m_placeholder;
    StatusLine *m_status;
    MessageLog *m_log;
    BusReport *m_report;
    MessagePanel *m_panel;
    QDockWidget *m_dock;
    PluginActions *m_pluginActions;
    HostMenus *m_menus;
    VehicleFiles *m_files;
    ReportFiles *m_reportFiles;
    CheckupFiles *m_checkupFiles;
    BundleFiles *m_bundles;
    LanguageSetting *m_languages = nullptr;
    PatienceSettings m_patience;
    int m_lastPlugin = 0;    // the page that was shown last of the plug-ins'
    bool m_mayClose = false; // the user was asked about values that are in no file
};
