// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <host/core/bussettings.h>
#include <host/core/hostsdoclient.h>

#include <QMainWindow>

class ConnectionBar;
class HostServices;
class PluginSession;
class QLabel;
class QTabWidget;
class StatusLine;

/*! The host's window: the connection bar above the plug-ins' windows, the status of the bus below. */
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

    /*! Shows \a sentence in a box; returns at once. */
    void showError(const QString &sentence);

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void retranslate();
    void restoreSettings();
    void saveSettings() const;
    void openBus(const BusSettings &settings);
    void adaptPalette();
    void handleUploadEnd(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending);

    HostServices *m_services;
    PluginSession *m_session;
    ConnectionBar *m_bar;
    QTabWidget *m_pages;
    QLabel *m_placeholder;
    StatusLine *m_status;
    bool m_lastUploadWasSilent = false;
};
