// SPDX-License-Identifier: MIT
#pragma once

#include <QRunnable>
#include <QSemaphore>
#include <QThreadPool>

/*! Keeps the threads of the whole program busy: what is given to them meanwhile waits until release(). */
class BusyPool
{
public:
    BusyPool()
        : m_pool(QThreadPool::globalInstance())
        , m_threads(m_pool->maxThreadCount())
    {
        m_pool->waitForDone();
        m_pool->setMaxThreadCount(1);
        m_pool->start(new Waiter(&m_semaphore));
    }
    ~BusyPool() { release(); }
    Q_DISABLE_COPY(BusyPool)

    /*! Returns when all is done. */
    void release()
    {
        m_semaphore.release();
        m_pool->waitForDone();
        m_pool->setMaxThreadCount(m_threads);
    }

private:
    class Waiter : public QRunnable
    {
    public:
        explicit Waiter(QSemaphore *semaphore)
            : m_semaphore(semaphore)
        {
        }
        void run() override { m_semaphore->acquire(); }

    private:
        QSemaphore *m_semaphore;
    };

    QThreadPool *m_pool;
    int m_threads;
    QSemaphore m_semaphore;
};
