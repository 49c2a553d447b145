// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>

#include <QDateTime>
#include <QString>

/*! A folder of traces that the program saves by itself, with a bound on the space that they take.
 *
 *  Only files that it has named itself are counted and removed: "trace 2026-11-22 08.30.15.log.gz", of UTC.
 */
class TraceFolder
{
public:
    TraceFolder(const QString &path, qint64 mostBytes)
        : m_path(path)
        , m_mostBytes(mostBytes)
    {
    }

    /*! Saves \a trace under the name of \a time; the folder is made when it is not there. Then the oldest ones go until
     *  the rest is within the bound; the newest one always stays. The file's path; empty with a sentence on failure.
     */
    QString save(const Trace &trace, const QDateTime &time, QString *errorMessage) const;

    /*! The files, the oldest one first. */
    QStringList files() const;

private:
    void removeOldest() const;

    QString m_path;
    qint64 m_mostBytes;
};
