// SPDX-License-Identifier: MIT
#include "messageboxwatcher.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QPointer>

MessageBoxWatcher::MessageBoxWatcher(QMessageBox::StandardButton answer)
    : m_answer(answer)
{
    qApp->installEventFilter(this);
}

MessageBoxWatcher::~MessageBoxWatcher() = default;

QStringList MessageBoxWatcher::texts() const
{
    QStringList texts;
    for (const MessageBoxRecord &box : m_boxes)
        texts.append(box.text);
    return texts;
}

bool MessageBoxWatcher::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        if (auto *box = qobject_cast<QMessageBox *>(object)) {
            const QPointer<QMessageBox> guarded(box);
            QMetaObject::invokeMethod(
                this,
                [this, guarded] {
                    if (!guarded.isNull())
                        answerBox(*guarded);
                },
                Qt::QueuedConnection);
        }
    }
    return QObject::eventFilter(object, event);
}

void MessageBoxWatcher::answerBox(QMessageBox &box)
{
    m_boxes.append({box.windowTitle(), box.text(), box.informativeText(), box.standardButtons(),
                    box.geometry(), box.parent() != nullptr, box.isModal()});
    if (QAbstractButton *button = box.button(m_answer))
        button->click();
    else
        box.accept();
}
