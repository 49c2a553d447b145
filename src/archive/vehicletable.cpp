// SPDX-License-Identifier: MIT
#include "vehicletable.h"

#include "visitrows.h"

#include <QStringList>

namespace {

using namespace VisitRows;

QString searchTextOf(const QString &name, const QString &label)
{
    return searchText({name, label});
}

VehicleInfo vehicleOf(const QSqlQuery &row)
{
    VehicleInfo vehicle;
    vehicle.id = row.value(0).toLongLong();
    vehicle.name = row.value(1).toString();
    vehicle.called = vehicleCall(vehicle.id, vehicle.name, row.value(2).toString());
    vehicle.visitCount = row.value(3).toInt();
    vehicle.lastVisit = row.value(4).toLongLong();
    vehicle.lastTime = timeOf(row.value(5), row.value(6));
    vehicle.lastCustomer = row.value(7).toString();
    vehicle.lastVerdict = verdictOf(row, 8);
    return vehicle;
}

// Of visits at the same time the one that was kept last.
constexpr char lastVisitOf[] = "(SELECT l.id FROM draxel_visit l WHERE l.vehicle = c.id"
                               " ORDER BY l.time DESC, l.id DESC LIMIT 1)";

} // namespace

bool VehicleTable::findOrMake(const VisitInfo &visit, qint64 *vehicleId)
{
    const VehicleDevices devices = VehicleDevices::of(visit.components);
    QVector<KnownVehicle> known;
    if (!devices.isEmpty() && !readKnown(devices, &known))
        return false;
    const std::optional<qint64> found = VehicleRecognition::find(devices, known);
    if (!found)
        return make(visit, vehicleId);
    *vehicleId = *found;
    return true;
}

bool VehicleTable::readKnown(const VehicleDevices &devices, QVector<KnownVehicle> *known)
{
    QVariantList values;
    QStringList places;
    const QStringList keys = devices.telling();
    for (const QString &key : keys) {
        values.append(plainText(key));
        places.append(QStringLiteral("?"));
    }
    std::optional<QSqlQuery> rows
        = m_database.run(QStringLiteral("SELECT DISTINCT v.vehicle FROM draxel_component d"
                                        " JOIN draxel_visit v ON v.id = d.visit WHERE d.device IN (")
                             + places.join(QLatin1Char(',')) + QLatin1Char(')'),
                         values);
    while (rows && m_database.next(*rows)) {
        KnownVehicle vehicle;
        vehicle.id = rows->value(0).toLongLong();
        known->append(vehicle);
    }
    for (KnownVehicle &vehicle : *known) {
        if (!fill(devices, &vehicle))
            return false;
    }
    return !m_database.hasFailed();
}

bool VehicleTable::fill(const VehicleDevices &devices, KnownVehicle *vehicle)
{
    if (!readLatest(vehicle) || devices.controller.isEmpty())
        return !m_database.hasFailed();
    std::optional<QSqlQuery> rows = m_database.run(
        QStringLiteral("SELECT 1 FROM draxel_component d JOIN draxel_visit v ON v.id = d.visit"
                       " WHERE d.device = ? AND d.node = 1 AND v.vehicle = ? LIMIT 1"),
        {plainText(devices.controller), vehicle->id});
    vehicle->hadController = rows && m_database.next(*rows);
    return !m_database.hasFailed();
}

bool VehicleTable::readLatest(KnownVehicle *vehicle)
{
    std::optional<QSqlQuery> rows = m_database.run(
        QStringLiteral("SELECT v.time, ") + componentColumns()
            + QStringLiteral(
                " FROM draxel_component d JOIN draxel_visit v ON v.id = d.visit WHERE v.id ="
                " (SELECT id FROM draxel_visit WHERE vehicle = ? ORDER BY time DESC, id DESC LIMIT 1)"
                " ORDER BY node"),
        {vehicle->id});
    QVector<VisitComponent> components;
    while (rows && m_database.next(*rows)) {
        vehicle->lastTime = rows->value(0).toLongLong();
        components.append(componentOf(*rows, 1));
    }
    vehicle->latest = VehicleDevices::of(components);
    return !m_database.hasFailed();
}

bool VehicleTable::make(const VisitInfo &visit, qint64 *vehicleId)
{
    const QString label = VehicleRecognition::label(visit.components);
    const std::optional<QSqlQuery> query = m_database.run(
        QStringLiteral("INSERT INTO draxel_vehicle (name, label, search) VALUES (?, ?, ?)"),
        {plainText(visit.notes.vehicle), plainText(label), searchTextOf(visit.notes.vehicle, label)});
    if (query)
        *vehicleId = ArchiveDatabase::lastId(*query);
    return query.has_value();
}

bool VehicleTable::read(const QString &text, QVector<VehicleInfo> *vehicles)
{
    QVariantList values;
    const QStringList conditions
        = searchConditions(text, {QStringLiteral("s.search"), QStringLiteral("c.search")}, &values);
    // Without words every vehicle; with some, those that have a visit with them.
    const QString condition
        = conditions.isEmpty()
              ? QString()
              : QStringLiteral(" WHERE EXISTS (SELECT 1 FROM draxel_visit s WHERE s.vehicle = c.id AND ")
                    + conditions.join(QStringLiteral(" AND ")) + QLatin1Char(')');
    std::optional<QSqlQuery> rows = m_database.run(
        QStringLiteral(
            "SELECT c.id, c.name, c.label,"
            " (SELECT COUNT(*) FROM draxel_visit n WHERE n.vehicle = c.id), v.id, v.time, v.time_offset,"
            " v.customer, v.verdict, v.faults, v.warnings, v.notes, v.not_checked"
            " FROM draxel_vehicle c JOIN draxel_visit v ON v.id = ")
            + QLatin1String(lastVisitOf) + condition + QStringLiteral(" ORDER BY v.time DESC, v.id DESC"),
        values);
    while (rows && m_database.next(*rows))
        vehicles->append(vehicleOf(*rows));
    return !m_database.hasFailed();
}

bool VehicleTable::check(qint64 vehicleId)
{
    std::optional<QSqlQuery> rows
        = m_database.run(QStringLiteral("SELECT 1 FROM draxel_vehicle WHERE id = ?"), {vehicleId});
    if (rows && m_database.next(*rows))
        return true;
    return failMissing(vehicleId);
}

bool VehicleTable::failMissing(qint64 vehicleId)
{
    return m_database.fail(tr("The archive has no vehicle %1.").arg(vehicleId));
}

bool VehicleTable::readNames(qint64 vehicleId, QString *name, QString *label)
{
    std::optional<QSqlQuery> rows
        = m_database.run(QStringLiteral("SELECT name, label FROM draxel_vehicle WHERE id = ?"), {vehicleId});
    if (!rows || !m_database.next(*rows))
        return failMissing(vehicleId);
    *name = rows->value(0).toString();
    *label = rows->value(1).toString();
    return true;
}

bool VehicleTable::rename(qint64 vehicleId, const QString &name)
{
    QString oldName;
    QString label;
    return readNames(vehicleId, &oldName, &label)
           && m_database
                  .run(QStringLiteral("UPDATE draxel_vehicle SET name = ?, search = ? WHERE id = ?"),
                       {plainText(name), searchTextOf(name, label), vehicleId})
                  .has_value();
}

bool VehicleTable::nameFirst(qint64 vehicleId, const QString &name)
{
    QString oldName;
    QString label;
    return name.isEmpty()
           || (readNames(vehicleId, &oldName, &label) && (!oldName.isEmpty() || rename(vehicleId, name)));
}

bool VehicleTable::merge(qint64 vehicleId, qint64 into)
{
    return m_database.run(QStringLiteral("UPDATE draxel_visit SET vehicle = ? WHERE vehicle = ?"),
                          {into, vehicleId})
           && dropEmpty(vehicleId);
}

bool VehicleTable::dropEmpty(qint64 vehicleId)
{
    return m_database
        .run(QStringLiteral("DELETE FROM draxel_vehicle WHERE id = ? AND NOT EXISTS"
                            " (SELECT 1 FROM draxel_visit WHERE vehicle = ?)"),
             {vehicleId, vehicleId})
        .has_value();
}
