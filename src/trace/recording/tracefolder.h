// SPDX-License-Identifier: MIT
#pragma once

#include "freespace.h"

#include <trace/core/trace.h>

#include <QDateTime>
#include <QString>

#include <utility>

/*! A folder of traces that the program saves by itself, with a bound on the space that they take.
 *
 *  Only files that it has named itself are counted and removed: "trace 2026-11-22 08.30.15.log.gz", of UTC.
 */
class TraceFolder
{
public:
    static constexpr qint64 reserve = 200000000; //!< bytes that must stay free

    TraceFolder(QString path, qint64 mostBytes, FreeSpace freeSpace = systemFreeSpace)
        : m_path(std::move(path))
        , m_mostBytes(mostBytes)
        , m_freeSpace(std::move(freeSpace))
    {
    }

    /*! Saves \a trace under the name of \a time; the folder is made when it is not there. Then the oldest ones go until
     *  the rest is within the bound; the newest one always stays. On a disk with less than the reserve nothing is saved. The
     *  file's path; empty with a sentence on failure. With a path, too, there is a sentence when older ones cannot be removed
     *  and the bound is not kept.
     */
    QString save(const Trace &trace, const QDateTime &time, QString *errorMessage) const;

    /*! The files, the oldest one first. */
    QStringList files() const;

private:
    void removeOldest(QString *errorMessage) const;

    QString m_path;
    qint64 m_mostBytes;
    FreeSpace m_freeSpace;
};
