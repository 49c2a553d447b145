// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QRunnable>
#include <QThreadPool>

#include <memory>
#include <type_traits>
#include <utility>

/*! Work that would hold the window, done in another thread. */
namespace Background {

/*! Runs \a work in a thread of \a pool; then calls \a done with what it returned in the thread of \a context, unless that has
 *  gone by then. \a work may only use what it has copied. The program does not end before it has. \a done may take what it is
 *  given by reference and move it away.
 */
template<typename Work, typename Done>
void run(QThreadPool *pool, QObject *context, Work work, Done done)
{
    using Result = std::decay_t<decltype(work())>;

    class Task : public QRunnable
    {
    public:
        Task(QObject *taskContext, Work taskWork, Done taskDone)
            : m_context(taskContext)
            , m_work(std::move(taskWork))
            , m_done(std::move(taskDone))
        {
        }

        void run() override
        {
            auto result = std::make_shared<Result>(m_work());
            // By way of the application, which outlives the work: the context may go at any time.
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [context = m_context, done = m_done, result] {
                    if (context)
                        done(*result);
                },
                Qt::QueuedConnection);
        }

    private:
        QPointer<QObject> m_context;
        Work m_work;
        Done m_done;
    };
    pool->start(new Task(context, std::move(work), std::move(done)));
}

/*! The same in the threads that the whole program has. */
template<typename Work, typename Done>
void run(QObject *context, Work work, Done done)
{
    run(QThreadPool::globalInstance(), context, std::move(work), std::move(done));
}

} // namespace Background
