// SPDX-License-Identifier: MIT
#include "visitkeeper.h"

#include <utility>

VisitKeeper::VisitKeeper(ArchiveWorker *worker, WaitingVisits waiting, QObject *parent)
    : QObject(parent)
    , m_worker(worker)
    , m_waiting(std::move(waiting))
{
    connect(worker, &ArchiveWorker::opened, this, &VisitKeeper::deliver);
}

void VisitKeeper::keep(const Snapshot &snapshot, const std::optional<VisitVerdict> &verdict)
{
    m_worker->ask(
        this,
        [waiting = m_waiting, snapshot, verdict](Archive &archive, QString *error) {
            return keepNow(archive, waiting, snapshot, verdict, error);
        },
        [this](const Outcome &outcome, const QString &error) { tell(outcome, error); });
}

VisitKeeper::Outcome VisitKeeper::keepNow(Archive &archive, const WaitingVisits &waiting,
                                          const Snapshot &snapshot,
                                          const std::optional<VisitVerdict> &verdict, QString *error)
{
    Outcome outcome;
    outcome.visit = archive.addJudged(snapshot, verdict, error);
    if (outcome.visit) {
        if (verdict)
            waiting.forgetVerdict(snapshot);
        return outcome;
    }
    QString problem;
    outcome.waitingFile = waiting.save(snapshot, verdict, &problem);
    if (!outcome.waitingFile)
        *error += QLatin1Char(' ') + problem;
    return outcome;
}

void VisitKeeper::tell(const Outcome &outcome, const QString &error)
{
    if (outcome.visit) {
        emit kept(*outcome.visit);
        deliver();
    } else if (outcome.waitingFile) {
        emit isWaiting(error, *outcome.waitingFile);
    } else {
        emit failed(error);
    }
}

void VisitKeeper::setWaitingNotes(const QString &fileName, const SnapshotNotes &notes, const Done &done)
{
    // Not beside a delivery, which takes the file away.
    m_worker->ask(
        this,
        [fileName, notes](Archive &, QString *error) {
            return WaitingVisits::setNotes(fileName, notes, error);
        },
        done);
}

void VisitKeeper::deliver()
{
    m_worker->ask(
        this,
        [waiting = m_waiting](Archive &archive, QString *error) {
            const WaitingVisits::Delivery delivery = waiting.deliver(archive);
            *error = delivery.problems.join(QLatin1Char(' '));
            return delivery.visits;
        },
        [this](const QVector<std::pair<QString, KeptVisit>> &visits, const QString &error) {
            for (const auto &[fileName, visit] : visits)
                emit visitDelivered(fileName, visit);
            if (!visits.isEmpty())
                emit delivered(visits.size());
            if (std::exchange(m_deliveryProblem, error) != error && !error.isEmpty())
                emit deliveryFailed(error);
        });
}
