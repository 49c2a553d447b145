// SPDX-License-Identifier: MIT
#pragma once

#include "componentmodel.h"

#include <QTimer>
#include <QWidget>

class CheckupSession;
class ComponentDetails;
class QAction;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTableView;
class QToolButton;

/*! The page of the check-up: one button, the components with their lights, and all about the one that is chosen. Only
 *  arranges what the session knows.
 */
class CheckupPage : public QWidget
{
    Q_OBJECT

public:
    /*! \a session must outlive the page. */
    explicit CheckupPage(CheckupSession *session, QWidget *parent = nullptr);

    /*! For menus and keys. */
    QAction *checkupAction() const { return m_full; }
    QAction *cancelAction() const { return m_cancel; }
    QAction *saveAction() const { return m_save; }
    QAction *reportAction() const { return m_report; }

signals:
    void openRequested();
    void saveRequested();
    void reportRequested();
    void compareFileRequested();
    void notesRequested();
    void shareRequested();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *buildTop();
    QWidget *buildVerdict();
    QWidget *buildCentre();
    QWidget *buildEmpty();
    QWidget *buildBottom();
    QAction *makeAction(const char *name);
    void connectSession();
    void fitColumns();
    void retranslate();
    void showAll();
    void showState();
    void showProgress();
    void showVerdict();
    void showKept();
    void showDetails();
    void showEmpty();
    void chooseFirst();
    void compareWithLast();
    quint8 chosenNode() const;

    CheckupSession *m_session;
    ComponentModel m_components;
    QAction *m_full;
    QAction *m_quick;
    QAction *m_scan;
    QAction *m_resume;
    QAction *m_notes;
    QAction *m_share;
    QAction *m_cancel;
    QAction *m_save;
    QAction *m_report;
    QAction *m_compareLast;
    QAction *m_compareFile;
    QMenu *m_menu;
    QMenu *m_compareMenu;
    QToolButton *m_start = nullptr;
    QToolButton *m_stop = nullptr;
    QProgressBar *m_bar = nullptr;
    QLabel *m_progress = nullptr;
    QLabel *m_light = nullptr;
    QLabel *m_verdict = nullptr;
    QLabel *m_vehicle = nullptr;
    QStackedWidget *m_centre = nullptr;
    QLabel *m_empty = nullptr;
    QPushButton *m_open = nullptr;
    QTableView *m_table = nullptr;
    ComponentDetails *m_details = nullptr;
    QToolButton *m_reportButton = nullptr;
    QToolButton *m_compareButton = nullptr;
    QToolButton *m_saveButton = nullptr;
    QToolButton *m_notesButton = nullptr;
    QLabel *m_kept = nullptr;
    QPushButton *m_keep = nullptr;
    QTimer m_detailsTimer;
    quint8 m_chosen = 0;      // the node of the details
    bool m_hasChosen = false; // the user, or the page for a new record
    bool m_isChoosing = false;
};
