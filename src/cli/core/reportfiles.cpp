// SPDX-License-Identifier: MIT
#include "reportfiles.h"

#include "childtask.h"
#include "console.h"
#include "interruptibleloop.h"

#include <report/pdfwriter.h>
#include <report/reportsections.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryFile>

namespace {

struct ReportFilesTr
{
    Q_DECLARE_TR_FUNCTIONS(ReportFiles)
};

/*! The names of files that are still being written: the report's with six characters more. */
QStringList partialFiles(const QString &folder)
{
    return QDir(folder).entryList(
        {QStringLiteral("dx_report.pdf.??????"), QStringLiteral("dx_report.html.??????")}, QDir::Files);
}

ExitStatus write(const NodeStore &store, const QString &folder)
{
    pdfWriter writer;
    ReportSections(store).write(writer);
    if (writer.writeFiles(folder))
        return Exit::success;
    Console::printError(writer.errorString());
    return Exit::fileFailed;
}

} // namespace

bool prepareReportFolder(const QString &folder, QString *errorMessage)
{
    const QString shownName = QDir::toNativeSeparators(folder);
    if (!QDir().mkpath(folder)) {
        *errorMessage = ReportFilesTr::tr("The folder %1 cannot be made.").arg(shownName);
        return false;
    }
    QTemporaryFile probe(folder + QStringLiteral("/dx_report.XXXXXX"));
    if (!probe.open()) {
        *errorMessage = ReportFilesTr::tr("Nothing can be written into the folder %1: %2.")
                            .arg(shownName, probe.errorString());
        return false;
    }
    return true;
}

ExitStatus writeReport(const NodeStore &store, const QString &folder)
{
    const QStringList before = partialFiles(folder);
    InterruptibleLoop loop;
    const std::optional<int> status = runAsChild([&] { return write(store, folder).number; }, &loop);
    if (!status) {
        // It was ended in the middle: no piece of a file is left behind.
        const QStringList now = partialFiles(folder);
        for (const QString &name : now) {
            if (!before.contains(name))
                QFile::remove(QDir(folder).filePath(name));
        }
        Console::printError(loop.isInterrupted()
                                ? ReportFilesTr::tr("Interrupted; the report was not written.")
                                : ReportFilesTr::tr("The report was not written: its process failed."));
        return loop.isInterrupted() ? loop.status() : Exit::fileFailed;
    }
    if (*status != Exit::success.number)
        return {*status};
    for (const QString &path : {pdfWriter::pdfPath(folder), pdfWriter::htmlPath(folder)})
        Console::print(ReportFilesTr::tr("Wrote %1").arg(QDir::toNativeSeparators(path)));
    return Exit::success;
}
