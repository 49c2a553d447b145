// SPDX-License-Identifier: MIT
#pragma once

#include "checkuprecord.h"
#include "readabledialog.h"

#include <servicereport/workshopsettings.h>

class CheckupSession;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QPlainTextEdit;

/*! Asks how the service report of what is shown is to be, and writes it as HTML and PDF. The workshop is remembered. */
class ServiceReportDialog : public ReadableDialog
{
    Q_OBJECT

public:
    /*! \a folder is where the files go unless the user chooses another one. */
    ServiceReportDialog(CheckupSession *session, const QString &folder, QWidget *parent = nullptr);

signals:
    /*! Both files; a sentence that names them. */
    void written(const QString &sentence);
    /*! Why not, a sentence. */
    void failed(const QString &sentence);

private:
    void build(const QString &folder);
    void fill(const QString &folder);
    void followPast();
    void fillWorkshop(const WorkshopSettings &workshop);
    void addPath(QFormLayout *form, const QString &name, QLineEdit *path, const char *buttonName,
                 void (ServiceReportDialog::*choose)());
    WorkshopSettings workshop() const;
    void chooseLogo();
    void chooseFolder();
    void write();

    CheckupSession *m_session;
    QComboBox *m_language;
    QLineEdit *m_workshop;
    QPlainTextEdit *m_lines;
    QLineEdit *m_logo;
    QLineEdit *m_folder;
    QCheckBox *m_compare;
    QCheckBox *m_show;
};
