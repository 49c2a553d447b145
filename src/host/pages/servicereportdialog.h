// SPDX-License-Identifier: MIT
#pragma once

#include "checkuprecord.h"

#include <QDialog>

class CheckupSession;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

/*! Asks how the service report of what is shown is to be, and writes it as HTML and PDF. The workshop is remembered. */
class ServiceReportDialog : public QDialog
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
    void chooseFolder();
    void write();

    CheckupSession *m_session;
    QComboBox *m_language;
    QLineEdit *m_workshop;
    QPlainTextEdit *m_lines;
    QLineEdit *m_folder;
    QPushButton *m_browse;
    QCheckBox *m_compare;
    QCheckBox *m_show;
};
