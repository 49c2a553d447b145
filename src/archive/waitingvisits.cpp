// SPDX-License-Identifier: MIT
#include "waitingvisits.h"

#include "archive.h"
#include "waitingverdict.h"

#include <snapshot/savedvehicle.h>
#include <snapshot/snapshotfile.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

constexpr QLatin1String snapshotFiles("*.dxsnap");

} // namespace

QString WaitingVisits::standardFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
           + QStringLiteral("/draxel/waiting");
}

/*! Names that sort by time, and are the same for the same snapshot. */
QString WaitingVisits::fileOf(const Snapshot &snapshot) const
{
    const QString time = snapshot.time.toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    return QStringLiteral("%1/%2-%3.dxsnap")
        .arg(m_folder, time, SnapshotFile::fingerprint(snapshot).left(16));
}

std::optional<QString> WaitingVisits::save(const Snapshot &snapshot,
                                           const std::optional<VisitVerdict> &verdict,
                                           QString *errorMessage) const
{
    if (!QDir().mkpath(m_folder)) {
        *errorMessage = tr("The folder %1 could not be made.").arg(QDir::toNativeSeparators(m_folder));
        return std::nullopt;
    }
    // Whom the vehicles belong to is nobody else's business on this computer.
    QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString name = fileOf(snapshot);
    // Whoever sees the snapshot, another program at that, has to find its verdict there. Without one, for which there
    // may be no room, the snapshot is kept all the same.
    if (verdict)
        WaitingVerdict::save(name, *verdict);
    return SnapshotFile::save(name, snapshot, errorMessage) ? std::optional<QString>(name) : std::nullopt;
}

void WaitingVisits::forgetVerdict(const Snapshot &snapshot) const
{
    WaitingVerdict::remove(fileOf(snapshot));
}

bool WaitingVisits::setNotes(const QString &fileName, const SnapshotNotes &notes, QString *errorMessage)
{
    std::optional<Snapshot> snapshot = SavedVehicle::load(fileName, errorMessage);
    if (!snapshot)
        return false;
    snapshot->notes = notes;
    return SnapshotFile::save(fileName, *snapshot, errorMessage);
}

int WaitingVisits::count() const
{
    return files().size();
}

QStringList WaitingVisits::files() const
{
    return QDir(m_folder).entryList({snapshotFiles}, QDir::Files, QDir::Name);
}

WaitingVisits::Delivery WaitingVisits::deliver(Archive &archive) const
{
    Delivery delivery;
    const QStringList names = files();
    for (const QString &name : names) {
        const QString path = m_folder + QLatin1Char('/') + name;
        QString error;
        const std::optional<Snapshot> snapshot = SavedVehicle::load(path, &error);
        if (!snapshot) {
            delivery.problems.append(error);
            continue;
        }
        const std::optional<KeptVisit> visit
            = archive.addJudged(*snapshot, WaitingVerdict::load(path), &error);
        if (!visit) {
            delivery.problems.append(error);
            break;
        }
        QFile::remove(path);
        WaitingVerdict::remove(path);
        delivery.visits.append({path, *visit});
    }
    return delivery;
}
