// SPDX-License-Identifier: MIT
#include "vehiclerecords.h"

#include "archivesetting.h"

#include <utility>

VehicleRecords::VehicleRecords(HostServices *services, const QString &program, QObject *parent)
    : QObject(parent)
    , m_keeper(&m_worker)
    , m_reads(services, program)
{
    connect(&m_reads, &ReadSnapshots::snapshotReady, this, [this](const Snapshot &snapshot) {
        keep(snapshot, std::nullopt, [this](const Keeping &keeping) { emit readKept(keeping); });
    });
    connect(&m_keeper, &VisitKeeper::kept, this, [this](const KeptVisit &visit) {
        end({Keeping::End::Kept, visit, QString(), QString()});
        emit changed();
    });
    connect(&m_keeper, &VisitKeeper::isWaiting, this, [this](const QString &reason, const QString &fileName) {
        end({Keeping::End::Waiting, KeptVisit(), reason, fileName});
    });
    connect(&m_keeper, &VisitKeeper::failed, this, [this](const QString &reason) {
        end({Keeping::End::Lost, KeptVisit(), reason, QString()});
    });
    connect(&m_keeper, &VisitKeeper::visitDelivered, this, &VehicleRecords::visitDelivered);
    connect(&m_keeper, &VisitKeeper::delivered, this, [this](int count) {
        emit delivered(count);
        emit changed();
    });
    connect(&m_keeper, &VisitKeeper::deliveryFailed, this, &VehicleRecords::deliveryFailed);
    connect(&m_worker, &ArchiveWorker::openFailed, this, &VehicleRecords::openFailed);
    connect(&m_worker, &ArchiveWorker::opened, this, &VehicleRecords::changed);
}

VehicleRecords::~VehicleRecords() = default;

void VehicleRecords::keep(const Snapshot &snapshot, const std::optional<VisitVerdict> &verdict,
                          const Then &then)
{
    m_waiting.push_back(then);
    open();
    m_keeper.keep(snapshot, verdict);
}

void VehicleRecords::setNotes(const Keeping &keeping, const SnapshotNotes &notes, const Done &done)
{
    if (keeping.end == Keeping::End::Waiting) {
        m_keeper.setWaitingNotes(keeping.fileName, notes, done);
        return;
    }
    archive().ask(
        this,
        [id = keeping.visit.visitId, notes](Archive &archive, QString *error) {
            return archive.setNotes(id, notes, error);
        },
        [this, done](bool isDone, const QString &error) {
            if (isDone)
                emit changed();
            done(isDone, error);
        });
}

ArchiveWorker &VehicleRecords::archive()
{
    open();
    return m_worker;
}

QString VehicleRecords::address() const
{
    QString problem;
    const std::optional<ArchiveAddress> address = ArchiveSetting::load(&problem);
    return address ? address->toString() : QString();
}

void VehicleRecords::reopen()
{
    const QString before = m_address;
    m_isOpened = false;
    open();
    if (m_address != before)
        emit archiveReplaced();
}

void VehicleRecords::open()
{
    if (std::exchange(m_isOpened, true))
        return;
    QString problem;
    const std::optional<ArchiveAddress> address = ArchiveSetting::load(&problem);
    if (!address) {
        emit openFailed(problem);
        return;
    }
    m_address = address->toString();
    m_worker.open(*address);
}

/*! The worker answers in the order in which it was asked. */
void VehicleRecords::end(const Keeping &keeping)
{
    if (m_waiting.empty())
        return;
    const Then then = std::move(m_waiting.front());
    m_waiting.pop_front();
    if (then)
        then(keeping);
}
