// SPDX-License-Identifier: MIT
#include "filedialogdriver.h"

#include <QApplication>
#include <QEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>

FileDialogDriver::FileDialogDriver(const QString &fileName)
    : m_fileName(fileName)
{
    qApp->installEventFilter(this);
}

bool FileDialogDriver::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        if (auto *dialog = qobject_cast<QFileDialog *>(object)) {
            const QPointer<QFileDialog> guarded(dialog);
            QMetaObject::invokeMethod(
                this,
                [this, guarded] {
                    if (!guarded.isNull())
                        answerDialog(*guarded);
                },
                Qt::QueuedConnection);
        }
    }
    return QObject::eventFilter(object, event);
}

void FileDialogDriver::answerDialog(QFileDialog &dialog)
{
    auto *nameEdit = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    m_dialogs.append({dialog.windowTitle(),
                      nameEdit != nullptr ? QFileInfo(nameEdit->text()).fileName() : QString(),
                      dialog.nameFilters(), dialog.acceptMode(), dialog.parentWidget()});
    if (m_fileName.isEmpty() || nameEdit == nullptr) {
        dialog.reject();
        return;
    }
    nameEdit->setText(m_fileName);
    // accept() is protected, and goes through the dialog's own checks.
    QMetaObject::invokeMethod(&dialog, "accept");
}
