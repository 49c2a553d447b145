// SPDX-License-Identifier: MIT
#include "tracefolder.h"

#include <system/amounts.h>
#include <trace/files/tracefile.h>

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>

namespace {

struct TraceFolderTr
{
    Q_DECLARE_TR_FUNCTIONS(TraceFolder)
};

} // namespace

QString TraceFolder::save(const Trace &trace, const QDateTime &time, QString *errorMessage) const
{
    const QDir folder(m_path);
    if (!folder.mkpath(QStringLiteral("."))) {
        *errorMessage
            = TraceFolderTr::tr("The folder %1 cannot be made.").arg(QDir::toNativeSeparators(folder.path()));
        return {};
    }
    const qint64 left = m_freeSpace(folder.filePath(QStringLiteral("trace")));
    if (left >= 0 && left < reserve) {
        *errorMessage = TraceFolderTr::tr("Less than %1 MB are left on the disk of %2.")
                            .arg(reserve / Bytes::ofMegabyte)
                            .arg(QDir::toNativeSeparators(folder.path()));
        return {};
    }
    QString file
        = folder.filePath(time.toUTC().toString(QStringLiteral("'trace 'yyyy-MM-dd hh.mm.ss'.log.gz'")));
    if (!TraceFile::save(file, trace, errorMessage))
        return {};
    removeOldest(errorMessage);
    return file;
}

QStringList TraceFolder::files() const
{
    static const QRegularExpression own(
        QStringLiteral("^trace \\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d\\.log\\.gz$"));
    const QDir folder(m_path);
    QStringList paths;
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name).filter(own))
        paths.append(folder.filePath(name));
    return paths;
}

void TraceFolder::removeOldest(QString *errorMessage) const
{
    QStringList paths = files();
    qint64 size = 0;
    for (const QString &path : qAsConst(paths))
        size += QFileInfo(path).size();
    QString left;
    while (size > m_mostBytes && paths.size() > 1) {
        const QFileInfo oldest(paths.takeFirst());
        const qint64 freed = oldest.size();
        if (QFile::remove(oldest.filePath()))
            size -= freed;
        else if (left.isEmpty())
            left = oldest.fileName();
    }
    if (size > m_mostBytes && !left.isEmpty())
        *errorMessage = TraceFolderTr::tr("The folder %1 takes more than %2 MB: %3 cannot be removed.")
                            .arg(QDir::toNativeSeparators(m_path),
                                 QString::number(m_mostBytes / Bytes::ofMegabyte), left);
}
