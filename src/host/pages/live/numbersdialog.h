// SPDX-License-Identifier: MIT
#pragma once

#include "rowsmodel.h"

#include <live/health/healthnumbers.h>

#include <QDialog>
#include <QTimer>

class CopyTable;
class LiveSession;
class QTabWidget;

/*! All numbers of the bus that is listened to, and what was found in them; follows while it is open. */
class NumbersDialog : public QDialog
{
    Q_OBJECT

public:
    /*! \a session must outlive the dialog. */
    explicit NumbersDialog(LiveSession *session, QWidget *parent = nullptr);

    /*! Everything as text, as the button copies it. */
    QString toText() const;

    /*! Takes the numbers as they are now; called once a second. */
    void refresh();

private:
    CopyTable *addTable(const char *name, const QString &title, RowsModel *model, int wideColumn);
    void showFindings(const HealthNumbers &numbers);

    LiveSession *m_session;
    RowsModel m_findings;
    RowsModel m_bus;
    RowsModel m_nodes;
    QTabWidget *m_tabs;
    QTimer m_timer;
};
