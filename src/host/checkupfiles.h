// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class CheckupSession;
class QWidget;
struct Snapshot;

/*! What a check-up is written into and compared with: files. Dialogs are shown, not run: everything returns at once. */
class CheckupFiles : public QObject
{
    Q_OBJECT

public:
    /*! \a window is the parent of dialogs; \a session must outlive this. */
    CheckupFiles(CheckupSession *session, QWidget *window);

    /*! Lets the user choose a name and saves the snapshot. */
    void save();
    /*! Lets the user choose a file and shows what has changed since. */
    void compareWithFile();
    /*! Asks how the service report is to be, and writes it. */
    void writeReport();
    /*! Asks for what people write beside a visit. */
    void askForNotes();

signals:
    /*! What has been done, a sentence. */
    void succeeded(const QString &sentence);
    /*! What could not be done and why, for a box. */
    void failed(const QString &sentence);

private:
    void write(const QString &fileName, const Snapshot &snapshot, quint64 number);
    void compare(const QString &fileName);

    CheckupSession *m_session;
    QWidget *m_window;
};
