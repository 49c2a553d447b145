// SPDX-License-Identifier: MIT
#include "archivetransfer.h"

#include <snapshot/savedvehicle.h>
#include <snapshot/snapshotfile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace {

constexpr int fingerprintDigits = 8; // in a file name

/*! Only characters that every file system takes. */
QString plainName(const QString &text)
{
    QString name;
    for (const QChar character : text) {
        if (character.isLetterOrNumber() || character == QLatin1Char('-') || character == QLatin1Char(' '))
            name += character;
    }
    constexpr int longest = 40;
    return name.simplified().left(longest);
}

bool hasSnapshot(const QString &fileName, const QByteArray &json)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) && file.size() == json.size() && file.readAll() == json;
}

VisitExtras extrasOf(const VisitInfo &visit, const QHash<qint64, qint64> &vehicles, const QString &name)
{
    VisitExtras extras;
    extras.verdict = visit.verdict;
    extras.notes = visit.notes;
    extras.vehicleName = name;
    if (vehicles.contains(visit.vehicleId))
        extras.vehicleId = vehicles.value(visit.vehicleId);
    return extras;
}

/*! The names that users gave, by vehicle. */
std::optional<QHash<qint64, QString>> namesOf(Archive &archive, QString *error)
{
    const std::optional<QVector<VehicleInfo>> vehicles = archive.vehicles(QString(), error);
    if (!vehicles)
        return std::nullopt;
    QHash<qint64, QString> names;
    for (const VehicleInfo &vehicle : *vehicles)
        names.insert(vehicle.id, vehicle.name);
    return names;
}

} // namespace

bool ArchiveTransfer::isArchive(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) && file.read(15) == "SQLite format 3";
}

QString ArchiveTransfer::fileNameOf(const VisitInfo &visit)
{
    return QStringLiteral("%1 %2 %3.dxsnap")
        .arg(visit.time.toString(QStringLiteral("yyyy-MM-dd HH-mm")), plainName(visit.vehicle),
             visit.fingerprint.left(fingerprintDigits));
}

ArchiveTransfer::Result ArchiveTransfer::exportToFolder(Archive &archive, const QVector<VisitInfo> &visits,
                                                        const QString &folder)
{
    Result result;
    if (!QDir().mkpath(folder)) {
        result.problems.append(tr("The folder %1 could not be made.").arg(QDir::toNativeSeparators(folder)));
        return result;
    }
    for (const VisitInfo &visit : visits) {
        const QString fileName = QDir(folder).filePath(fileNameOf(visit));
        QString error;
        const std::optional<Snapshot> snapshot = archive.load(visit.id, &error);
        const bool isThere = snapshot && hasSnapshot(fileName, SnapshotFile::toJson(*snapshot));
        if (snapshot && (isThere || SnapshotFile::save(fileName, *snapshot, &error)))
            result.files.append(fileName);
        else
            result.problems.append(error);
    }
    return result;
}

bool ArchiveTransfer::exportToFile(Archive &archive, qint64 visitId, const QString &fileName,
                                   QString *errorMessage)
{
    const std::optional<Snapshot> snapshot = archive.load(visitId, errorMessage);
    return snapshot && SnapshotFile::save(fileName, *snapshot, errorMessage);
}

ArchiveTransfer::Result ArchiveTransfer::copy(Archive &source, Archive &target)
{
    Result result;
    QString error;
    std::optional<QVector<VisitInfo>> visits = source.visits({}, &error);
    const std::optional<QHash<qint64, QString>> names = visits ? namesOf(source, &error) : std::nullopt;
    if (!names) {
        result.problems.append(error);
        return result;
    }
    // In the order of time, in which vehicles are recognised.
    std::reverse(visits->begin(), visits->end());
    QHash<qint64, qint64> vehicles; // of the source and of the target
    for (const VisitInfo &visit : qAsConst(*visits)) {
        const std::optional<Snapshot> snapshot = source.load(visit.id, &error);
        const std::optional<KeptVisit> kept
            = snapshot ? target.add(*snapshot, extrasOf(visit, vehicles, names->value(visit.vehicleId)),
                                    &error, visit.time)
                       : std::nullopt;
        if (kept) {
            vehicles.insert(visit.vehicleId, kept->vehicleId);
            result.visits.append(*kept);
        } else {
            result.problems.append(error);
        }
    }
    return result;
}

ArchiveTransfer::Result ArchiveTransfer::import(const QString &fileName, Archive &target)
{
    Result result;
    QString error;
    if (isArchive(fileName)) {
        Archive source;
        const std::optional<ArchiveAddress> address
            = ArchiveAddress::parse(QFileInfo(fileName).absoluteFilePath(), &error);
        if (address && source.open(*address, Archive::Missing::Refuse, &error))
            return copy(source, target);
        result.problems.append(error);
        return result;
    }
    const std::optional<Snapshot> snapshot = SavedVehicle::load(fileName, &error);
    // Of a file without a time that of its last change.
    const std::optional<KeptVisit> kept
        = snapshot ? target.add(*snapshot, std::nullopt, &error, QFileInfo(fileName).lastModified())
                   : std::nullopt;
    if (kept)
        result.visits.append(*kept);
    else
        result.problems.append(error);
    return result;
}
