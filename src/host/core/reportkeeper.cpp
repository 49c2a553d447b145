// SPDX-License-Identifier: MIT
#include "reportkeeper.h"

#include <system/systemerrortext.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

constexpr char pdfName[] = "dx_report.pdf";
constexpr char htmlName[] = "dx_report.html";
constexpr int mostNames = 1000; // tried for one copy

/*! Differs between two reports under the same name. */
QString stateOf(const QString &path)
{
    const QFileInfo file(path);
    return file.exists()
               ? QStringLiteral("%1 %2").arg(file.lastModified().toMSecsSinceEpoch()).arg(file.size())
               : QString();
}

/*! Whether both files can be read and hold the same. */
bool isSame(const QString &path, const QString &otherPath)
{
    QFile file(path);
    QFile other(otherPath);
    if (file.size() != other.size() || !file.open(QIODevice::ReadOnly) || !other.open(QIODevice::ReadOnly))
        return false;
    return file.readAll() == other.readAll();
}

/*! "dx_report 2026-11-15 17-29-46.pdf", and from the second on "... (2).pdf" */
QString datedName(const QFileInfo &report, int number)
{
    QString name = report.completeBaseName() + QLatin1Char(' ')
                   + report.lastModified().toString(QStringLiteral("yyyy-MM-dd HH-mm-ss"));
    if (number > 1)
        name += QStringLiteral(" (%1)").arg(number);
    return name + QLatin1Char('.') + report.suffix();
}

/*! Copies a report to a name that is free, unless a copy is there; adds to \a kept what was done. */
void keep(const QString &folder, const QString &path, ReportKeeper::Kept *kept)
{
    const QFileInfo report(path);
    if (!report.isFile())
        return;
    for (int number = 1; number <= mostNames; ++number) {
        const QString name = datedName(report, number);
        const QString copy = folder + QLatin1Char('/') + name;
        if (QFileInfo::exists(copy)) {
            if (isSame(path, copy))
                return;
            continue;
        }
        QFile file(path);
        if (file.copy(copy)) {
            kept->files.append(name);
        } else {
            kept->problem = systemErrorText(file.errorString());
            kept->failedFile = copy;
        }
        return;
    }
}

} // namespace

ReportKeeper::ReportKeeper(const QString &folder)
    : m_folder(folder)
{
}

QString ReportKeeper::homeFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
}

QString ReportKeeper::pdfPath() const
{
    return path(QLatin1String(pdfName));
}

ReportKeeper::Kept ReportKeeper::keepEarlier()
{
    Kept kept;
    for (const char *name : {pdfName, htmlName})
        keep(m_folder, path(QLatin1String(name)), &kept);
    m_before = stateOf(pdfPath());
    return kept;
}

bool ReportKeeper::isWritten() const
{
    const QString now = stateOf(pdfPath());
    return !now.isEmpty() && now != m_before;
}
