// SPDX-License-Identifier: MIT
#include "reportfiles.h"

#include "console.h"
#include "unixsignals.h"

#include <report/pdfwriter.h>
#include <report/reportsections.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryFile>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ReportFiles)
};

} // namespace

bool prepareReportFolder(const QString &folder, QString *errorMessage)
{
    const QString shownName = QDir::toNativeSeparators(folder);
    if (!QDir().mkpath(folder)) {
        *errorMessage = Tr::tr("The folder %1 cannot be made.").arg(shownName);
        return false;
    }
    QTemporaryFile probe(folder + QStringLiteral("/dx_report.XXXXXX"));
    if (!probe.open()) {
        *errorMessage
            = Tr::tr("Nothing can be written into the folder %1: %2.").arg(shownName, probe.errorString());
        return false;
    }
    return true;
}

bool writeReport(const NodeStore &store, const QString &folder)
{
    // Ctrl+C has to wait until the files are whole, so that no piece of one is left behind.
    const UnixSignals signalSource;

    pdfWriter writer;
    ReportSections(store).write(writer);
    if (!writer.writeFiles(folder)) {
        Console::printError(writer.errorString());
        return false;
    }
    for (const QString &path : {pdfWriter::pdfPath(folder), pdfWriter::htmlPath(folder)})
        Console::print(Tr::tr("Wrote %1").arg(QDir::toNativeSeparators(path)));
    return true;
}
