// SPDX-License-Identifier: MIT
#include "archiveaccess.h"

#include "commandarguments.h"
#include "console.h"
#include "optionnames.h"

#include <host/core/archivesetting.h>

#include <QRegularExpression>

namespace {

constexpr QLatin1String lastVisit("last");

} // namespace

void ArchiveAccess::addOption(CommandArguments &options)
{
    options.addOption(
        {archiveOption,
         tr("The archive: a file, or postgresql://user@host/database. Without it that of the "
            "environment variable DRAXEL_ARCHIVE, else the one chosen in the window, else the file in "
            "your data folder."),
         QStringLiteral("ARCHIVE")});
}

std::optional<ExitStatus> ArchiveAccess::open(const CommandArguments &options, Archive::Missing missing)
{
    QString error;
    const bool isGiven = options.isSet(archiveOption);
    const std::optional<ArchiveAddress> address
        = isGiven ? ArchiveAddress::parse(options.value(archiveOption), &error)
                  : ArchiveSetting::load(&error);
    if (!address)
        return options.complain(error);
    if (m_archive.open(*address, address->isStandard() ? Archive::Missing::Make : missing, &error))
        return std::nullopt;
    Console::printError(error);
    return Exit::fileFailed;
}

std::optional<qint64> ArchiveAccess::visit(const QString &text, QString *errorMessage)
{
    bool isNumber = false;
    const qint64 id = text.toLongLong(&isNumber);
    if (isNumber && id > 0)
        return id;
    if (text != lastVisit) {
        *errorMessage = tr("\"%1\" is no visit: a number or \"last\" is wanted.").arg(text);
        return std::nullopt;
    }
    VisitQuery query;
    query.limit = 1;
    const std::optional<QVector<VisitInfo>> visits = m_archive.visits(query, errorMessage);
    if (visits && !visits->isEmpty())
        return visits->first().id;
    if (visits)
        *errorMessage = tr("There is no visit in the archive.");
    return std::nullopt;
}

std::optional<qint64> ArchiveAccess::vehicle(const QString &text, QString *errorMessage)
{
    bool isNumber = false;
    const qint64 id = text.mid(1).toLongLong(&isNumber);
    if (text.startsWith(QLatin1Char('#')) && isNumber)
        return id;
    const std::optional<QVector<VehicleInfo>> vehicles = m_archive.vehicles(QString(), errorMessage);
    if (!vehicles)
        return std::nullopt;
    QVector<qint64> found;
    QStringList numbers;
    for (const VehicleInfo &vehicle : *vehicles) {
        if (vehicle.called.compare(text, Qt::CaseInsensitive) != 0)
            continue;
        found.append(vehicle.id);
        numbers.append(QLatin1Char('#') + QString::number(vehicle.id));
    }
    if (found.size() == 1)
        return found.first();
    errorMessage->clear();
    if (!found.isEmpty())
        *errorMessage = tr("Several vehicles are called \"%1\": %2. Which one is meant?")
                            .arg(text, numbers.join(QStringLiteral(", ")));
    return std::nullopt;
}

std::optional<QString> ArchiveAccess::device(const QString &text, QString *errorMessage)
{
    static const QRegularExpression key(QStringLiteral("\\A[0-9a-f]{8}-[0-9a-f]{8}-[0-9]+\\z"));
    if (key.match(text).hasMatch())
        return text;
    const std::optional<QStringList> keys = devicesWithSerial(text, errorMessage);
    if (!keys)
        return std::nullopt;
    if (keys->size() == 1)
        return keys->first();
    *errorMessage = keys->isEmpty() ? tr("The archive knows no vehicle and no device \"%1\".").arg(text)
                                    : tr("Several devices have the serial number %1: %2. Which one is meant?")
                                          .arg(text, keys->join(QStringLiteral(", ")));
    return std::nullopt;
}

std::optional<QStringList> ArchiveAccess::devicesWithSerial(const QString &serial, QString *errorMessage)
{
    VisitQuery query;
    query.text = serial;
    const std::optional<QVector<VisitInfo>> visits = m_archive.visits(query, errorMessage);
    if (!visits)
        return std::nullopt;
    QStringList keys;
    for (const VisitInfo &visit : *visits) {
        for (const VisitComponent &component : visit.components) {
            const bool isMeant
                = component.identity.serial && QString::number(*component.identity.serial) == serial;
            if (isMeant && !component.deviceKey().isEmpty() && !keys.contains(component.deviceKey()))
                keys.append(component.deviceKey());
        }
    }
    return keys;
}
