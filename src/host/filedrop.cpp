// SPDX-License-Identifier: MIT
#include "filedrop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace {

/*! The one file that is dragged; empty when it is another number, or not on this computer. */
QString draggedFile(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

} // namespace

FileDrop::FileDrop(QWidget *window, const Filter &isTaken)
    : QObject(window)
    , m_isTaken(isTaken)
{
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove
        && event->type() != QEvent::Drop)
        return QObject::eventFilter(object, event);
    auto *drop = static_cast<QDropEvent *>(event);
    const QString file = draggedFile(*drop->mimeData());
    if (file.isEmpty() || !m_isTaken(file))
        return QObject::eventFilter(object, event);
    drop->acceptProposedAction();
    // The sender of the drag waits until this returns.
    if (event->type() == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, file] { emit dropped(file); }, Qt::QueuedConnection);
    return true;
}
