// SPDX-License-Identifier: MIT
#include "tracedialogs.h"

#include "traceexport.h"

#include <QFileDialog>
#include <QFileInfo>

namespace {

QFileDialog *makeDialog(QWidget *parent, const char *name, const QString &title, const QString &folder,
                        const QStringList &nameFilters)
{
    auto *dialog = new QFileDialog(parent->window(), title, folder);
    dialog->setObjectName(QLatin1String(name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilters(nameFilters);
    return dialog;
}

} // namespace

void TraceDialogs::askToSave(QWidget *parent, const char *name, const QString &title, const QString &folder,
                             const QString &suggested, const Chosen &chosen)
{
    const QStringList nameFilters = TraceExport::nameFilters();
    QFileDialog *dialog = makeDialog(parent, name, title, folder, nameFilters);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(TraceExport::suffixOf(nameFilters.first()));
    dialog->selectFile(suggested);
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString &filter) {
        dialog->setDefaultSuffix(TraceExport::suffixOf(filter));
    });
    // The dialog adds its suffix to no name that has a dot, "ride 1.2", and so has not asked whether to replace a file.
    const auto take
        = [parent, dialog, objectName = QByteArray(name), title, chosen](const QString &fileName) {
              const QString complete = TraceExport::completeName(fileName, dialog->defaultSuffix());
              const QFileInfo file(complete);
              if (complete != fileName && file.exists())
                  askToSave(parent, objectName, title, file.path(), file.fileName(), chosen);
              else
                  chosen(complete);
          };
    QObject::connect(dialog, &QFileDialog::fileSelected, parent, take);
    dialog->open();
}

void TraceDialogs::askToOpen(QWidget *parent, const char *name, const QString &title, const QString &folder,
                             const QStringList &nameFilters, const Chosen &chosen)
{
    QFileDialog *dialog = makeDialog(parent, name, title, folder, nameFilters);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
    QObject::connect(dialog, &QFileDialog::fileSelected, parent, chosen);
    dialog->open();
}
