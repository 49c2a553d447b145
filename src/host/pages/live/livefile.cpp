// SPDX-License-Identifier: MIT
#include "livefile.h"

#include <store/wholefile.h>
#include <system/systemerrortext.h>

#include <QDir>
#include <QFileDialog>

namespace {

/*! "csv" of "Table (*.csv)". */
QString suffixOf(const QString &nameFilter)
{
    return nameFilter.section(QLatin1String("*."), 1).section(QLatin1Char(')'), 0, 0);
}

} // namespace

QFileDialog *LiveFile::saveDialog(QWidget *parent, const char *name, const QString &title,
                                  const QString &folder)
{
    auto *dialog = new QFileDialog(parent->window(), title, folder);
    dialog->setObjectName(QLatin1String(name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog,
                     [dialog](const QString &filter) { dialog->setDefaultSuffix(suffixOf(filter)); });
    return dialog;
}

bool LiveFile::write(const QString &fileName, const QByteArray &content, QString *problem)
{
    WholeFile file(fileName);
    if (file.open() && file.write(content) && file.commit())
        return true;
    *problem = tr("The file %1 cannot be written: %2")
                   .arg(QDir::toNativeSeparators(fileName), systemErrorText(file.errorString()));
    return false;
}
