// SPDX-License-Identifier: MIT
#include "checkupfiles.h"

#include "bundlefiles.h"
#include "filefolder.h"
#include "vehiclefiles.h"

#include <system/background.h>
#include <host/pages/checkupsession.h>
#include <host/pages/checkupwords.h>
#include <host/pages/comparisondialog.h>
#include <host/pages/notesdialog.h>
#include <host/pages/servicereportdialog.h>
#include <snapshot/snapshotfile.h>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace {

QFileDialog *makeDialog(QWidget *window, const char *name, const QString &title, const QString &filter)
{
    auto *dialog = new QFileDialog(window, title, FileFolder::start(), filter);
    dialog->setObjectName(QLatin1String(name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    return dialog;
}

} // namespace

CheckupFiles::CheckupFiles(CheckupSession *session, QWidget *window)
    : QObject(window)
    , m_session(session)
    , m_window(window)
{
}

void CheckupFiles::save()
{
    QFileDialog *dialog
        = makeDialog(m_window, "saveSnapshotDialog", tr("Save check-up"), tr("Check-up (*.dxsnap)"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("dxsnap"));
    dialog->selectFile(CheckupWords::fileName(m_session->record()));
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, snapshot = m_session->record().snapshot, number = m_session->recordNumber()](
                const QString &fileName) { write(fileName, snapshot, number); });
    dialog->open();
}

/*! What was shown when the user asked for it. Meanwhile something else may be. */
void CheckupFiles::write(const QString &fileName, const Snapshot &snapshot, quint64 number)
{
    const auto work = [fileName, snapshot] {
        QString problem;
        SnapshotFile::save(fileName, snapshot, &problem);
        return problem;
    };
    Background::run(this, work, [this, fileName, number](const QString &problem) {
        if (!problem.isEmpty()) {
            emit failed(problem);
            return;
        }
        FileFolder::remember(fileName);
        if (m_session->recordNumber() == number)
            m_session->noteSaved(fileName);
        emit succeeded(tr("Saved: %1").arg(QDir::toNativeSeparators(fileName)));
    });
}

void CheckupFiles::compareWithFile()
{
    QFileDialog *dialog = makeDialog(m_window, "compareDialog", tr("Compare with a saved vehicle"),
                                     VehicleFiles::fileFilter());
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &CheckupFiles::compare);
    dialog->open();
}

void CheckupFiles::compare(const QString &fileName)
{
    using Loaded = std::pair<std::optional<Snapshot>, QString>;
    const auto work = [fileName] {
        Loaded loaded;
        loaded.first = BundleFiles::loadSnapshot(fileName, &loaded.second);
        return loaded;
    };
    Background::run(this, work, [this, fileName, later = m_session->record()](const Loaded &loaded) {
        if (!loaded.first) {
            emit failed(loaded.second);
            return;
        }
        FileFolder::remember(fileName);
        CheckupRecord earlier;
        earlier.source = CheckupRecord::Source::File;
        earlier.fileName = fileName;
        earlier.snapshot = *loaded.first;
        auto *dialog = new ComparisonDialog(CheckupWords::vehicle(earlier), CheckupWords::vehicle(later),
                                            m_session->compare(earlier.snapshot, later.snapshot), m_window);
        dialog->show();
    });
}

void CheckupFiles::writeReport()
{
    auto *dialog = new ServiceReportDialog(m_session, FileFolder::start(), m_window);
    connect(dialog, &ServiceReportDialog::written, this, &CheckupFiles::succeeded);
    connect(dialog, &ServiceReportDialog::failed, this, &CheckupFiles::failed);
    dialog->open();
}

void CheckupFiles::askForNotes()
{
    auto *dialog = new NotesDialog(m_session->notes(), m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] { m_session->setNotes(dialog->notes()); });
    dialog->open();
}
