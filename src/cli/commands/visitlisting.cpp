// SPDX-License-Identifier: MIT
#include "visitlisting.h"

#include <checkup/findingwords.h>
#include <cli/core/jsonornull.h>
#include <cli/core/textcolumns.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objectdescriptions.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QStringList>

namespace {

struct VisitListingTr
{
    Q_DECLARE_TR_FUNCTIONS(VisitListing)
};

constexpr const char *scopeWords[] = {"full", "quick", "imported"};

QString timeText(const QDateTime &time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

QJsonValue numberOrNull(const std::optional<quint32> &number)
{
    return number ? QJsonValue(qint64(*number)) : QJsonValue(QJsonValue::Null);
}

QJsonValue verdictJson(const std::optional<VisitVerdict> &verdict)
{
    if (!verdict)
        return QJsonValue::Null;
    return QJsonObject{{QStringLiteral("verdict"), FindingWords::of(verdict->verdict)},
                       {QStringLiteral("faults"), verdict->faults},
                       {QStringLiteral("warnings"), verdict->warnings},
                       {QStringLiteral("notes"), verdict->notes},
                       {QStringLiteral("notChecked"), verdict->notChecked}};
}

QJsonObject componentJson(const VisitComponent &component)
{
    const DeviceIdentity &identity = component.identity;
    return {{QStringLiteral("node"), component.nodeId},
            {QStringLiteral("name"), component.name()},
            {QStringLiteral("device"), textOrNull(component.deviceKey())},
            {QStringLiteral("vendor"), numberOrNull(identity.vendor)},
            {QStringLiteral("product"), numberOrNull(identity.product)},
            {QStringLiteral("revision"), numberOrNull(identity.revision)},
            {QStringLiteral("serial"), numberOrNull(identity.serial)},
            {QStringLiteral("partNumber"), numberOrNull(identity.partNumber)},
            {QStringLiteral("deviceName"), textOrNull(identity.deviceName)},
            {QStringLiteral("hardware"), textOrNull(identity.hardwareVersion)},
            {QStringLiteral("firmware"), textOrNull(identity.softwareVersion)}};
}

/*! Of numbers with a unit in the object table; others are the number. */
QString valueText(CanOpen::ObjectKey key, const QVariant &value)
{
    const ObjectDescription *description = objectDescriptions().find(key.index);
    const bool isNumber = value.type() != QVariant::String && value.type() != QVariant::ByteArray;
    if (description == nullptr || description->unit == nullptr || key.subIndex == 0 || !isNumber)
        return value.type() == QVariant::ByteArray ? QString::fromLatin1(value.toByteArray().toHex(' '))
                                                   : value.toString();
    return DataInterpreter::formatValue(key.index, key.subIndex, value);
}

/*! What a JSON reader may round is text. */
QJsonValue valueJson(const QVariant &value)
{
    constexpr double exact = 9007199254740992.0; // 2 to the 53rd
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return qAbs(value.toDouble()) < exact ? QJsonValue(value.toDouble()) : QJsonValue(value.toString());
    case QMetaType::QString:
        return value.toString();
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toHex());
    default:
        return value.toDouble();
    }
}

QString countText(int count, const QString &one, const QString &many)
{
    return count == 1 ? one : many.arg(count);
}

QString serialText(const std::optional<quint32> &serial)
{
    return serial ? QString::number(*serial) : QStringLiteral("-");
}

void appendRow(QVector<QStringList> *rows, const QString &name, const QString &value)
{
    if (!value.isEmpty())
        rows->append({name, value});
}

/*! What people wrote, and where it comes from. */
void addNotes(QJsonObject *json, const VisitInfo &visit)
{
    json->insert(QStringLiteral("customer"), visit.notes.customer);
    json->insert(QStringLiteral("technician"), visit.notes.technician);
    json->insert(QStringLiteral("odometer"), visit.notes.odometer);
    json->insert(QStringLiteral("note"), visit.notes.note);
    json->insert(QStringLiteral("bus"), visit.bus);
    json->insert(QStringLiteral("program"), visit.program);
}

/*! What was read, and how much of it. */
void addReading(QJsonObject *json, const VisitInfo &visit)
{
    json->insert(QStringLiteral("scope"), QLatin1String(scopeWords[static_cast<int>(visit.scope)]));
    json->insert(QStringLiteral("complete"), visit.isComplete);
    json->insert(QStringLiteral("values"), visit.valueCount);
    json->insert(QStringLiteral("gaps"), visit.gapCount);
    json->insert(QStringLiteral("sha256"), visit.fingerprint);
}

} // namespace

QString VisitListing::verdictText(const std::optional<VisitVerdict> &verdict)
{
    if (!verdict)
        return VisitListingTr::tr("not judged");
    QStringList parts;
    if (verdict->faults > 0)
        parts.append(
            countText(verdict->faults, VisitListingTr::tr("1 fault"), VisitListingTr::tr("%1 faults")));
    if (verdict->warnings > 0)
        parts.append(
            countText(verdict->warnings, VisitListingTr::tr("1 warning"), VisitListingTr::tr("%1 warnings")));
    if (verdict->notes > 0)
        parts.append(countText(verdict->notes, VisitListingTr::tr("1 note"), VisitListingTr::tr("%1 notes")));
    if (verdict->notChecked > 0)
        parts.append(VisitListingTr::tr("%1 not checked").arg(verdict->notChecked));
    if (parts.isEmpty())
        return verdict->verdict == Verdict::Ok ? VisitListingTr::tr("good")
                                               : VisitListingTr::tr("not checked");
    return parts.join(QStringLiteral(", "));
}

QString VisitListing::text(const QVector<VisitInfo> &visits)
{
    QVector<QStringList> rows{{VisitListingTr::tr("Visit"), VisitListingTr::tr("Time"),
                               VisitListingTr::tr("Vehicle"), VisitListingTr::tr("Components"),
                               VisitListingTr::tr("Verdict"), VisitListingTr::tr("Customer")}};
    for (const VisitInfo &visit : visits)
        rows.append({QString::number(visit.id), timeText(visit.time), visit.vehicle,
                     QString::number(visit.components.size()), verdictText(visit.verdict),
                     visit.notes.customer});
    return alignedLines(rows, 0).join(QLatin1Char('\n'));
}

QString VisitListing::text(const QVector<VehicleInfo> &vehicles)
{
    QVector<QStringList> rows{{VisitListingTr::tr("Number"), VisitListingTr::tr("Vehicle"),
                               VisitListingTr::tr("Visits"), VisitListingTr::tr("Last visit"),
                               VisitListingTr::tr("Verdict"), VisitListingTr::tr("Customer")}};
    for (const VehicleInfo &vehicle : vehicles)
        rows.append({QString::number(vehicle.id), vehicle.called, QString::number(vehicle.visitCount),
                     timeText(vehicle.lastTime), verdictText(vehicle.lastVerdict), vehicle.lastCustomer});
    return alignedLines(rows, 0).join(QLatin1Char('\n'));
}

QString VisitListing::text(const VisitInfo &visit)
{
    QVector<QStringList> rows;
    appendRow(&rows, VisitListingTr::tr("Visit"), QString::number(visit.id));
    appendRow(&rows, VisitListingTr::tr("Vehicle"), visit.vehicle);
    appendRow(&rows, VisitListingTr::tr("Time"), visit.time.toString(Qt::ISODate));
    appendRow(&rows, VisitListingTr::tr("Customer"), visit.notes.customer);
    appendRow(&rows, VisitListingTr::tr("Technician"), visit.notes.technician);
    appendRow(&rows, VisitListingTr::tr("Odometer"), visit.notes.odometer);
    appendRow(&rows, VisitListingTr::tr("Note"), visit.notes.note);
    appendRow(&rows, VisitListingTr::tr("Bus"), visit.bus);
    appendRow(&rows, VisitListingTr::tr("Program"), visit.program);
    appendRow(&rows, VisitListingTr::tr("Verdict"), verdictText(visit.verdict));
    appendRow(&rows, VisitListingTr::tr("Values"), QString::number(visit.valueCount));
    appendRow(&rows, VisitListingTr::tr("Not read"), QString::number(visit.gapCount));
    appendRow(&rows, VisitListingTr::tr("SHA-256"), visit.fingerprint);
    for (const VisitComponent &component : visit.components) {
        appendRow(&rows, VisitListingTr::tr("Node %1").arg(component.nodeId),
                  VisitListingTr::tr("%1, serial number %2")
                      .arg(component.name(), serialText(component.identity.serial)));
    }
    return alignedLines(rows, 0).join(QLatin1Char('\n'));
}

QString VisitListing::text(const QVector<TrendPoint> &points, CanOpen::ObjectKey key)
{
    QVector<QStringList> rows{{VisitListingTr::tr("Visit"), VisitListingTr::tr("Time"),
                               VisitListingTr::tr("Node"), VisitListingTr::tr("Component"),
                               VisitListingTr::tr("Serial number"), VisitListingTr::tr("Value")}};
    for (const TrendPoint &point : points)
        rows.append({QString::number(point.visitId), timeText(point.time), QString::number(point.nodeId),
                     point.identity.displayName(point.nodeId), serialText(point.identity.serial),
                     valueText(key, point.value)});
    return alignedLines(rows, 0).join(QLatin1Char('\n'));
}

QJsonObject VisitListing::json(const VisitInfo &visit)
{
    QJsonArray components;
    for (const VisitComponent &component : visit.components)
        components.append(componentJson(component));
    QJsonObject json{{QStringLiteral("id"), visit.id},
                     {QStringLiteral("time"), visit.time.toString(Qt::ISODateWithMs)},
                     {QStringLiteral("vehicle"), visit.vehicle},
                     {QStringLiteral("vehicleId"), visit.vehicleId},
                     {QStringLiteral("checkup"), verdictJson(visit.verdict)},
                     {QStringLiteral("components"), components}};
    addReading(&json, visit);
    addNotes(&json, visit);
    return json;
}

QJsonObject VisitListing::json(const VehicleInfo &vehicle)
{
    return {{QStringLiteral("id"), vehicle.id},
            {QStringLiteral("vehicle"), vehicle.called},
            {QStringLiteral("name"), textOrNull(vehicle.name)},
            {QStringLiteral("visits"), vehicle.visitCount},
            {QStringLiteral("lastVisit"), vehicle.lastVisit},
            {QStringLiteral("lastTime"), vehicle.lastTime.toString(Qt::ISODateWithMs)},
            {QStringLiteral("customer"), vehicle.lastCustomer},
            {QStringLiteral("checkup"), verdictJson(vehicle.lastVerdict)}};
}

QJsonObject VisitListing::json(const TrendPoint &point, CanOpen::ObjectKey key)
{
    return {{QStringLiteral("visit"), point.visitId},
            {QStringLiteral("time"), point.time.toString(Qt::ISODateWithMs)},
            {QStringLiteral("node"), point.nodeId},
            {QStringLiteral("name"), point.identity.displayName(point.nodeId)},
            {QStringLiteral("device"), textOrNull(point.identity.toKey())},
            {QStringLiteral("value"), valueJson(point.value)},
            {QStringLiteral("text"), valueText(key, point.value)}};
}
