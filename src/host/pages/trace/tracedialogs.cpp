// SPDX-License-Identifier: MIT
#include "tracedialogs.h"

#include "traceexport.h"

#include <QFileDialog>

namespace {

QFileDialog *makeDialog(QWidget *parent, const char *name, const QString &title, const QString &folder,
                        const QStringList &nameFilters, const TraceDialogs::Chosen &chosen)
{
    auto *dialog = new QFileDialog(parent->window(), title, folder);
    dialog->setObjectName(QLatin1String(name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilters(nameFilters);
    QObject::connect(dialog, &QFileDialog::fileSelected, parent, chosen);
    return dialog;
}

} // namespace

void TraceDialogs::askToSave(QWidget *parent, const char *name, const QString &title, const QString &folder,
                             const QString &suggested, const Chosen &chosen)
{
    const QStringList nameFilters = TraceExport::nameFilters();
    QFileDialog *dialog = makeDialog(parent, name, title, folder, nameFilters, chosen);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(TraceExport::suffixOf(nameFilters.first()));
    dialog->selectFile(suggested);
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString &filter) {
        dialog->setDefaultSuffix(TraceExport::suffixOf(filter));
    });
    dialog->open();
}

void TraceDialogs::askToOpen(QWidget *parent, const char *name, const QString &title, const QString &folder,
                             const QStringList &nameFilters, const Chosen &chosen)
{
    QFileDialog *dialog = makeDialog(parent, name, title, folder, nameFilters, chosen);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->open();
}
