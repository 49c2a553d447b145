// SPDX-License-Identifier: MIT
#pragma once

#include "archive.h"

#include <QObject>
#include <QPointer>
#include <QThread>

#include <functional>

/*! An archive in a thread of its own, for windows: no call here waits for a disk or a network.
 *
 *  Work is done in the order in which it is asked for, and what it gave comes back in the thread of the worker. The end
 *  of the worker waits until all is done, so that what was given to be kept is kept.
 *
 *      worker.ask(this,
 *                 [query](Archive &archive, QString *error) { return archive.visits(query, error); },
 *                 [this](const std::optional<QVector<VisitInfo>> &visits, const QString &error) { ... });
 */
class ArchiveWorker : public QObject
{
    Q_OBJECT

public:
    explicit ArchiveWorker(QObject *parent = nullptr);
    ~ArchiveWorker() override;

    /*! Opens an archive in the place of the one before; opened() or openFailed() tells. An archive that could not be
     *  opened is tried again with whatever is asked next.
     */
    void open(const ArchiveAddress &address);

    /*! Whether the archive was opened, and why not; empty before the first answer. */
    bool isOpen() const { return m_isOpen; }
    QString problem() const { return m_problem; }

    /*! Work that is asked for and not done yet. */
    int pendingCount() const { return m_pending; }

    /*! Lets \a work have the archive, in the other thread, so it may only use what it has copied; then calls \a done
     *  with what it returned and the sentence of its error, unless \a context has gone by then.
     */
    template<typename Work, typename Done>
    void ask(QObject *context, Work work, Done done)
    {
        using Result = decltype(work(std::declval<Archive &>(), std::declval<QString *>()));
        post([this, guard = QPointer<QObject>(context), work, done](Archive &archive) {
            QString error;
            Result result = work(archive, &error);
            answer([guard, done, result = std::move(result), error] {
                if (guard)
                    done(result, error);
            });
        });
    }

signals:
    void opened();
    void openFailed(const QString &reason);
    /*! pendingCount() has changed. */
    void pendingChanged();

private:
    class Desk;

    void post(const std::function<void(Archive &)> &work);
    void answer(const std::function<void()> &work);
    void noteOpened(bool isOpen, const QString &problem);

    QThread m_thread;
    Desk *m_desk; // lives and ends in the thread
    int m_pending = 0;
    bool m_isOpen = false;
    QString m_problem;
};
