// SPDX-License-Identifier: MIT
#include "visittable.h"

#include "packednode.h"
#include "visitrows.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace {

using namespace VisitRows;

constexpr quint8 headNode = 0;    // of the snapshot without its entries
constexpr int visitsAtOnce = 500; // whose components are asked for together

QString conditionOf(const VisitQuery &query, QVariantList *values)
{
    QStringList conditions
        = searchConditions(query.text, {QStringLiteral("v.search"), QStringLiteral("c.search")}, values);
    const auto add = [&conditions, values](const QString &condition, const QVariant &value) {
        conditions.append(condition);
        values->append(value);
    };
    if (query.vehicleId)
        add(QStringLiteral("v.vehicle = ?"), *query.vehicleId);
    if (!query.deviceKey.isEmpty())
        add(QStringLiteral("v.id IN (SELECT visit FROM draxel_component WHERE device = ?)"),
            plainText(query.deviceKey));
    if (query.from.isValid())
        add(QStringLiteral("v.time >= ?"), query.from.toMSecsSinceEpoch());
    if (query.to.isValid())
        add(QStringLiteral("v.time <= ?"), query.to.toMSecsSinceEpoch());
    return conditions.isEmpty() ? QString()
                                : QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
}

QString pageOf(const VisitQuery &query)
{
    if (query.limit <= 0)
        return QString();
    return QStringLiteral(" LIMIT %1 OFFSET %2").arg(query.limit).arg(qMax(0, query.offset));
}

/*! "?, ?, ?" */
QString places(int count)
{
    return QStringList(QVector<QString>(count, QStringLiteral("?")).toList()).join(QStringLiteral(", "));
}

} // namespace

bool VisitTable::insert(VisitInfo *visit, const PackedSnapshot &packed)
{
    if (!insertVisit(visit) || !insertComponents(*visit) || !insertEntries(visit->id, headNode, packed.head))
        return false;
    for (auto node = packed.nodes.cbegin(); node != packed.nodes.cend(); ++node) {
        if (!insertEntries(visit->id, node.key(), node.value()))
            return false;
    }
    return true;
}

bool VisitTable::insertVisit(VisitInfo *visit)
{
    const SnapshotNotes &notes = visit->notes;
    const QVariantList values{visit->vehicleId,
                              visit->time.toMSecsSinceEpoch(),
                              visit->time.offsetFromUtc(),
                              plainText(visit->fingerprint),
                              int(visit->scope),
                              visit->isComplete ? 1 : 0,
                              visit->valueCount,
                              visit->gapCount,
                              plainText(visit->bus),
                              plainText(visit->program),
                              plainText(notes.vehicle),
                              plainText(notes.customer),
                              plainText(notes.technician),
                              plainText(notes.odometer),
                              plainText(notes.note),
                              plainText(searchTextOf(*visit))};
    const QVariantList all = values + verdictValues(visit->verdict);
    const std::optional<QSqlQuery> query = m_database.run(
        QStringLiteral("INSERT INTO draxel_visit (vehicle, time, time_offset, fingerprint, scope,"
                       " complete, value_count, gap_count, bus, program, vehicle_text, customer,"
                       " technician, odometer, note, search, verdict, faults, warnings, notes,"
                       " not_checked) VALUES (")
            + places(all.size()) + QLatin1Char(')'),
        all);
    if (query)
        visit->id = ArchiveDatabase::lastId(*query);
    return query.has_value();
}

bool VisitTable::insertComponents(const VisitInfo &visit)
{
    for (const VisitComponent &component : visit.components) {
        const QVariantList values = QVariantList{visit.id} + componentValues(component);
        if (!m_database.run(QStringLiteral("INSERT INTO draxel_component (visit, ") + componentColumns()
                                + QStringLiteral(") VALUES (") + places(values.size()) + QLatin1Char(')'),
                            values))
            return false;
    }
    return true;
}

bool VisitTable::insertEntries(qint64 visitId, quint8 node, const QByteArray &data)
{
    return m_database
        .run(QStringLiteral("INSERT INTO draxel_entries (visit, node, data) VALUES (?, ?, ?)"),
             {visitId, int(node), data})
        .has_value();
}

bool VisitTable::findFingerprint(const QString &fingerprint, qint64 *visitId)
{
    std::optional<QSqlQuery> query = m_database.run(
        QStringLiteral("SELECT id FROM draxel_visit WHERE fingerprint = ?"), {plainText(fingerprint)});
    *visitId = query && m_database.next(*query) ? query->value(0).toLongLong() : 0;
    return !m_database.hasFailed();
}

bool VisitTable::read(const VisitQuery &query, QVector<VisitInfo> *visits)
{
    if (!readRows(query, visits))
        return false;
    for (int first = 0; first < visits->size(); first += visitsAtOnce) {
        if (!readComponents(visits->data() + first, qMin(visitsAtOnce, visits->size() - first)))
            return false;
    }
    return true;
}

bool VisitTable::readRows(const VisitQuery &query, QVector<VisitInfo> *visits)
{
    QVariantList values;
    const QString condition = conditionOf(query, &values);
    std::optional<QSqlQuery> rows = m_database.run(
        visitSelection() + condition + QStringLiteral(" ORDER BY v.time DESC, v.id DESC") + pageOf(query),
        values);
    while (rows && m_database.next(*rows))
        visits->append(visitOf(*rows));
    return !m_database.hasFailed();
}

bool VisitTable::readComponents(VisitInfo *first, int count)
{
    QHash<qint64, VisitInfo *> visits;
    QStringList ids;
    for (VisitInfo *visit = first; visit != first + count; ++visit) {
        visits.insert(visit->id, visit);
        ids.append(QString::number(visit->id));
    }
    std::optional<QSqlQuery> rows
        = m_database.run(QStringLiteral("SELECT visit, ") + componentColumns()
                         + QStringLiteral(" FROM draxel_component WHERE visit IN (")
                         + ids.join(QLatin1Char(',')) + QStringLiteral(") ORDER BY visit, node"));
    while (rows && m_database.next(*rows)) {
        if (VisitInfo *visit = visits.value(rows->value(0).toLongLong()))
            visit->components.append(componentOf(*rows, 1));
    }
    return !m_database.hasFailed();
}

bool VisitTable::read(qint64 visitId, VisitInfo *visit)
{
    std::optional<QSqlQuery> rows
        = m_database.run(visitSelection() + QStringLiteral(" WHERE v.id = ?"), {visitId});
    if (!rows)
        return false;
    if (!m_database.next(*rows))
        return m_database.fail(tr("The archive has no visit %1.").arg(visitId));
    *visit = visitOf(*rows);
    rows->finish();
    return readComponents(visit, 1);
}

bool VisitTable::readPrevious(const VisitInfo &visit, qint64 *visitId)
{
    const qint64 time = visit.time.toMSecsSinceEpoch();
    std::optional<QSqlQuery> rows = m_database.run(
        QStringLiteral("SELECT id FROM draxel_visit WHERE vehicle = ? AND (time < ? OR (time = ? AND id < ?))"
                       " ORDER BY time DESC, id DESC LIMIT 1"),
        {visit.vehicleId, time, time, visit.id});
    *visitId = rows && m_database.next(*rows) ? rows->value(0).toLongLong() : 0;
    return !m_database.hasFailed();
}

bool VisitTable::readSnapshot(const VisitInfo &visit, Snapshot *snapshot)
{
    PackedSnapshot packed;
    packed.fingerprint = visit.fingerprint;
    std::optional<QSqlQuery> rows
        = m_database.run(QStringLiteral("SELECT node, data FROM draxel_entries WHERE visit = ?"), {visit.id});
    while (rows && m_database.next(*rows)) {
        const int node = qBound(0, rows->value(0).toInt(), 255);
        if (node == headNode)
            packed.head = rows->value(1).toByteArray();
        else
            packed.nodes.insert(static_cast<quint8>(node), rows->value(1).toByteArray());
    }
    if (m_database.hasFailed())
        return false;
    std::optional<Snapshot> unpacked = packed.unpack();
    if (!unpacked) {
        VisitInfo again; // another desk may have deleted it meanwhile
        return read(visit.id, &again) && failDamaged(visit.id);
    }
    *snapshot = std::move(*unpacked);
    return true;
}

bool VisitTable::readVehicleTrend(qint64 vehicleId, CanOpen::ObjectKey key, ValueTrend *trend)
{
    return readTrend(QStringLiteral("v.vehicle = ?"), vehicleId, key, trend);
}

bool VisitTable::readDeviceTrend(const QString &deviceKey, CanOpen::ObjectKey key, ValueTrend *trend)
{
    return readTrend(QStringLiteral("d.device = ?"), plainText(deviceKey), key, trend);
}

bool VisitTable::readTrend(const QString &condition, const QVariant &value, CanOpen::ObjectKey key,
                           ValueTrend *trend)
{
    QString columns = componentColumns();
    columns.replace(QLatin1String("node,"), QLatin1String("d.node,"));
    std::optional<QSqlQuery> rows = m_database.run(
        QStringLiteral("SELECT v.id, v.time, v.time_offset, e.data, ") + columns
            + QStringLiteral(" FROM draxel_component d JOIN draxel_visit v ON v.id = d.visit"
                             " JOIN draxel_entries e ON e.visit = d.visit AND e.node = d.node"
                             " WHERE ")
            + condition + QStringLiteral(" ORDER BY v.time, v.id, d.node"),
        {value});
    QVector<qint64> damaged; // visits, with several nodes more than once, one behind the other
    while (rows && m_database.next(*rows)) {
        int room = PackedSnapshot::maximumSize;
        SnapshotNode node;
        std::optional<QVector<SnapshotEntry>> entries
            = PackedNode::unpack(rows->value(3).toByteArray(), &room);
        if (!entries) {
            damaged.append(rows->value(0).toLongLong());
            continue;
        }
        node.entries = std::move(*entries);
        const SnapshotEntry *entry = node.find(key);
        if (entry == nullptr || !entry->hasValue() || !entry->value.isValid())
            continue;
        const VisitComponent component = componentOf(*rows, 4);
        trend->points.append({rows->value(0).toLongLong(), timeOf(rows->value(1), rows->value(2)),
                              component.nodeId, component.identity, entry->value});
    }
    damaged.erase(std::unique(damaged.begin(), damaged.end()), damaged.end());
    for (const qint64 visitId : qAsConst(damaged))
        trend->problems.append(damagedText(visitId));
    return !m_database.hasFailed();
}

bool VisitTable::setNotes(const VisitInfo &visit)
{
    const SnapshotNotes &notes = visit.notes;
    return m_database
        .run(QStringLiteral("UPDATE draxel_visit SET vehicle_text = ?, customer = ?, technician = ?,"
                            " odometer = ?, note = ?, search = ? WHERE id = ?"),
             {plainText(notes.vehicle), plainText(notes.customer), plainText(notes.technician),
              plainText(notes.odometer), plainText(notes.note), plainText(searchTextOf(visit)), visit.id})
        .has_value();
}

bool VisitTable::setVerdict(qint64 visitId, const VisitVerdict &verdict)
{
    return m_database
        .run(QStringLiteral("UPDATE draxel_visit SET verdict = ?, faults = ?, warnings = ?, notes = ?,"
                            " not_checked = ? WHERE id = ?"),
             verdictValues(verdict) + QVariantList{visitId})
        .has_value();
}

bool VisitTable::setVehicle(qint64 visitId, qint64 vehicleId)
{
    return m_database
        .run(QStringLiteral("UPDATE draxel_visit SET vehicle = ? WHERE id = ?"), {vehicleId, visitId})
        .has_value();
}

bool VisitTable::remove(qint64 visitId)
{
    const auto statements
        = {"DELETE FROM draxel_entries WHERE visit = ?", "DELETE FROM draxel_component WHERE visit = ?",
           "DELETE FROM draxel_visit WHERE id = ?"};
    return std::all_of(statements.begin(), statements.end(), [&](const char *statement) {
        return m_database.run(QLatin1String(statement), {visitId}).has_value();
    });
}

QString VisitTable::damagedText(qint64 visitId)
{
    return tr("Visit %1 is damaged in the archive and cannot be shown. Take the last backup of the "
              "archive; the other visits are not affected.")
        .arg(visitId);
}

bool VisitTable::failDamaged(qint64 visitId)
{
    return m_database.fail(damagedText(visitId));
}
