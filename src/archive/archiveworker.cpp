// SPDX-License-Identifier: MIT
#include "archiveworker.h"

/*! What has the archive in the thread. */
class ArchiveWorker::Desk : public QObject
{
public:
    Archive archive;
};

ArchiveWorker::ArchiveWorker(QObject *parent)
    : QObject(parent)
    , m_desk(new Desk)
{
    m_desk->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_desk, &QObject::deleteLater);
    m_thread.setObjectName(QStringLiteral("archive"));
    m_thread.start();
}

ArchiveWorker::~ArchiveWorker()
{
    // Behind everything that was asked for.
    QMetaObject::invokeMethod(
        m_desk, [] { QThread::currentThread()->quit(); }, Qt::QueuedConnection);
    m_thread.wait();
}

void ArchiveWorker::open(const ArchiveAddress &address)
{
    ask(
        this,
        [address](Archive &archive, QString *error) {
            return archive.open(address, Archive::Missing::Make, error);
        },
        [this](bool isOpen, const QString &error) { noteOpened(isOpen, error); });
}

void ArchiveWorker::noteOpened(bool isOpen, const QString &problem)
{
    m_isOpen = isOpen;
    m_problem = problem;
    if (isOpen)
        emit opened();
    else
        emit openFailed(problem);
}

void ArchiveWorker::post(const std::function<void(Archive &)> &work)
{
    ++m_pending;
    QMetaObject::invokeMethod(
        m_desk, [desk = m_desk, work] { work(desk->archive); }, Qt::QueuedConnection);
    emit pendingChanged();
}

/*! Called in the other thread. */
void ArchiveWorker::answer(const std::function<void()> &work)
{
    QMetaObject::invokeMethod(
        this,
        [this, work] {
            --m_pending;
            work();
            emit pendingChanged();
        },
        Qt::QueuedConnection);
}
