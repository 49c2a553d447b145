// SPDX-License-Identifier: MIT
#pragma once

#include "archivebrowser.h"
#include "vehiclemodel.h"
#include "visitmodel.h"

#include <QTimer>
#include <QWidget>

class CheckupSession;
class CopyTable;
class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QToolButton;
class TrendPlot;

/*! The page of the archive: vehicles, their visits, a value over time. Only arranges what the browser knows. */
class ArchivePage : public QWidget
{
    Q_OBJECT

public:
    /*! Both must outlive the page; \a session judges what is compared. */
    ArchivePage(VehicleRecords *records, CheckupSession *session, QWidget *parent = nullptr);

    ArchiveBrowser &browser() { return m_browser; }

    /*! Where file dialogs begin. */
    void setFolder(const std::function<QString()> &folder) { m_folder = folder; }

signals:
    /*! A visit is to be shown; on the page of the check-up. */
    void openRequested(const Snapshot &snapshot, qint64 visitId);
    /*! The same, and its report is wanted. */
    void reportRequested(const Snapshot &snapshot, qint64 visitId);
    void succeeded(const QString &sentence);
    void failed(const QString &sentence);

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void build();
    QWidget *buildTop();
    QWidget *buildCentre();
    QWidget *buildVisits();
    QWidget *buildTrend();
    QPushButton *makeButton(const char *name, void (ArchivePage::*slot)());
    QAction *makeAction(const char *name, void (ArchivePage::*slot)());
    void connectBrowser();
    void retranslate();
    void showVehicles();
    void showVisits();
    void showTrend();
    void showProblem();
    void showButtons();
    void fillTrends();
    QVector<qint64> chosenVisits() const;
    void chooseVisits(const QVector<qint64> &visits);
    qint64 chosenVisit() const;

    void open();
    void compare();
    void report();
    void editNotes();
    void exportVisit();
    void removeVisits();
    void rename();
    void importFile();
    void chooseArchive();
    void showComparison(const Snapshot &earlier, const Snapshot &later);

    VehicleRecords *m_records;
    CheckupSession *m_session;
    ArchiveBrowser m_browser;
    VehicleModel m_vehicleModel;
    VisitModel m_visitModel;
    QTimer m_typing; // until the search is asked for
    std::function<QString()> m_folder;
    QLineEdit *m_search = nullptr;
    QPushButton *m_import = nullptr;
    QPushButton *m_address = nullptr;
    QLabel *m_problem = nullptr;
    QStackedWidget *m_centre = nullptr;
    QLabel *m_empty = nullptr;
    CopyTable *m_vehicles = nullptr;
    CopyTable *m_visits = nullptr;
    QPushButton *m_open = nullptr;
    QPushButton *m_compare = nullptr;
    QPushButton *m_report = nullptr;
    QToolButton *m_more = nullptr; // what is rare
    QAction *m_notes = nullptr;
    QAction *m_export = nullptr;
    QAction *m_rename = nullptr;
    QAction *m_delete = nullptr;
    QLabel *m_trendLabel = nullptr;
    QComboBox *m_trends = nullptr;
    QLabel *m_noTrend = nullptr;
    QLabel *m_trendProblem = nullptr;
    TrendPlot *m_plot = nullptr;
};
