// SPDX-License-Identifier: MIT
#pragma once

#include <host/pages/breakingrow.h>

#include <QTimer>

#include <functional>

class DeviceFiles;
class QActionGroup;
class QLabel;
class QProgressBar;
class QToolButton;
class TraceSession;

/*! Records, saves the last minutes, opens a file and what is known of its devices, and goes back to what is heard; says how
 *  far that is.
 */
class TraceToolbar : public BreakingRow
{
    Q_OBJECT

public:
    /*! \a session must outlive it. */
    explicit TraceToolbar(TraceSession *session, QWidget *parent = nullptr);

    /*! The folder in which file dialogs begin. */
    void setFolder(const std::function<QString()> &folder) { m_folder = folder; }

    /*! How far opening and recording are. */
    void refresh();

protected:
    void changeEvent(QEvent *event) override;

private:
    QToolButton *makeButton(const char *name, void (TraceToolbar::*pressed)());
    void build();
    void buildRotations();
    void retranslateRotations();
    void record();
    void saveLast();
    void open();
    void chooseDevices();
    void showLive();
    void cancel();
    void retranslate();
    QString progressText() const;

    TraceSession *m_session;
    QToolButton *m_record;
    QActionGroup *m_rotations; // actions in the order of TraceSettings::Rotation
    QToolButton *m_saveLast;
    QToolButton *m_open;
    QToolButton *m_live;
    QToolButton *m_devices;
    DeviceFiles *m_deviceFiles;
    QLabel *m_state;
    QProgressBar *m_progress;
    QToolButton *m_cancel;
    QTimer m_timer; // while a file is opened
    std::function<QString()> m_folder;
};
