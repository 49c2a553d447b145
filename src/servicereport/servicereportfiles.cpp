// SPDX-License-Identifier: MIT
#include "servicereportfiles.h"

#include "reporthead.h"

#include <snapshot/snapshot.h>
#include <store/wholefile.h>
#include <system/systemerrortext.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int mostNames = 1000;     // tried for one report
constexpr int longestNamePart = 40; // characters of the vehicle's name

/*! Letters and digits of any script, with one dash for whatever stands between them. */
QString fileNamePart(const QString &text)
{
    QString part;
    for (const QChar character : text.normalized(QString::NormalizationForm_C)) {
        if (character.isLetterOrNumber())
            part += character;
        else if (!part.isEmpty() && !part.endsWith(QLatin1Char('-')))
            part += QLatin1Char('-');
        if (part.size() >= longestNamePart)
            break;
    }
    return part.endsWith(QLatin1Char('-')) ? part.chopped(1) : part;
}

} // namespace

QString ServiceReportFiles::baseName(const Snapshot &snapshot)
{
    QStringList parts{QStringLiteral("service"), fileNamePart(ReportHead::vehicleName(snapshot))};
    if (snapshot.time.isValid())
        parts << snapshot.time.toString(QStringLiteral("yyyy-MM-dd_HHmm"));
    parts.removeAll(QString());
    return parts.join(QLatin1Char('_'));
}

bool ServiceReportFiles::write(const QString &folder, const QString &baseName, const QByteArray &html,
                               const QByteArray &pdf, Paths *paths, QString *errorMessage)
{
    for (int number = 1; number <= mostNames; ++number) {
        const QString name = number == 1 ? baseName : QStringLiteral("%1_%2").arg(baseName).arg(number);
        const QString path = QDir(folder).filePath(name);
        *paths = {path + QStringLiteral(".html"), path + QStringLiteral(".pdf")};
        errorMessage->clear();
        if (!reserve(paths->html, errorMessage)) {
            if (errorMessage->isEmpty())
                continue;
            return false;
        }
        if (!reserve(paths->pdf, errorMessage)) {
            QFile::remove(paths->html);
            if (errorMessage->isEmpty())
                continue;
            return false;
        }
        if (writeFile(paths->html, html, errorMessage) && writeFile(paths->pdf, pdf, errorMessage))
            return true;
        QFile::remove(paths->html);
        QFile::remove(paths->pdf);
        return false;
    }
    *errorMessage = tr("There are %1 reports named %2 in the folder; please move some away.")
                        .arg(mostNames)
                        .arg(baseName);
    return false;
}

/*! Makes the file, so that nobody else takes its name. False without a message when somebody has. */
bool ServiceReportFiles::reserve(const QString &path, QString *errorMessage)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return true;
    if (!QFileInfo(path).isSymLink() && !QFileInfo::exists(path))
        *errorMessage = tr("The file %1 cannot be written: %2.")
                            .arg(QDir::toNativeSeparators(path), systemErrorText(file.errorString()));
    return false;
}

bool ServiceReportFiles::writeFile(const QString &path, const QByteArray &bytes, QString *errorMessage)
{
    WholeFile file(path);
    if (file.open() && file.write(bytes) && file.commit())
        return true;
    *errorMessage = tr("The file %1 cannot be written: %2.")
                        .arg(QDir::toNativeSeparators(path), systemErrorText(file.errorString()));
    return false;
}
