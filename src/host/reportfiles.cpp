// SPDX-License-Identifier: MIT
#include "reportfiles.h"

#include "pluginactions.h"

#include <QDir>

ReportFiles::ReportFiles(PluginActions *actions, QObject *parent)
    : QObject(parent)
    , m_actions(actions)
{
    connect(actions, &PluginActions::reportButtonReleased, this, &ReportFiles::keepEarlier);
    connect(actions, &PluginActions::reportButtonClicked, this, &ReportFiles::lookAfterwards);
}

void ReportFiles::write()
{
    keepEarlier();
    if (m_kept.problem.isEmpty())
        m_actions->press(PluginActions::Kind::SaveReport);
    else
        emit failed(describeProblem() + QLatin1Char(' ') + tr("No new report was written over it."));
}

void ReportFiles::keepEarlier()
{
    const QStringList before = m_kept.files;
    m_keeper = ReportKeeper();
    m_kept = m_keeper.keepEarlier();
    // The menu has done it a moment ago, and the button does it again.
    if (m_kept.files.isEmpty())
        m_kept.files = before;
}

void ReportFiles::lookAfterwards()
{
    const QString path = QDir::toNativeSeparators(m_keeper.pdfPath());
    if (!m_kept.problem.isEmpty())
        emit missed(describeProblem());
    if (!m_keeper.isWritten())
        emit missed(tr("No report was written to %1.").arg(path));
    else if (m_kept.files.isEmpty())
        emit succeeded(tr("Report saved: %1").arg(path));
    else
        emit succeeded(
            tr("Report saved: %1. The earlier one is kept as \"%2\".").arg(path, m_kept.files.first()));
    m_kept = ReportKeeper::Kept();
}

QString ReportFiles::describeProblem() const
{
    return tr("The earlier report could not be kept: %1 cannot be written (%2).")
        .arg(QDir::toNativeSeparators(m_kept.failedFile), m_kept.problem);
}
