// SPDX-License-Identifier: MIT
#pragma once

#include <host/core/reportkeeper.h>

#include <QObject>

class PluginActions;

/*! Says where a plug-in's report went, and keeps the one before from being lost, whichever button is pressed.
 */
class ReportFiles : public QObject
{
    Q_OBJECT

public:
    /*! \a actions must outlive this. */
    explicit ReportFiles(PluginActions *actions, QObject *parent = nullptr);

    /*! Lets the plug-in write its report; not before the earlier one is kept. */
    void write();

signals:
    /*! What has been done, a sentence. */
    void succeeded(const QString &sentence);
    /*! What could not be done and why, for a box. */
    void failed(const QString &sentence);
    /*! No report was written, and the plug-in may have said why. */
    void missed(const QString &sentence);

private:
    void keepEarlier();
    void lookAfterwards();
    QString describeProblem() const;

    PluginActions *m_actions;
    ReportKeeper m_keeper;
    ReportKeeper::Kept m_kept;
};
