// SPDX-License-Identifier: MIT
#include "visitrows.h"

#include <QCoreApplication>
#include <QStringList>

#include <limits>

namespace {

struct VisitRowsTr
{
    Q_DECLARE_TR_FUNCTIONS(VisitRows)
};

constexpr int longestOffset = 14 * 3600; // s, of a time zone
constexpr quint8 lastScope = static_cast<quint8>(SnapshotScope::Recorded);
constexpr quint8 lastVerdict = static_cast<quint8>(Verdict::Fault);

QString folded(const QString &text)
{
    return VisitRows::plainText(text.normalized(QString::NormalizationForm_KC).toCaseFolded());
}

/*! A word for LIKE, whose own characters stand for themselves. */
QString likePattern(QString word)
{
    for (const QChar special : {QLatin1Char('!'), QLatin1Char('%'), QLatin1Char('_')})
        word.replace(special, QString(QLatin1Char('!')) + special);
    return QLatin1Char('%') + word + QLatin1Char('%');
}

QVariant nullable(const std::optional<quint32> &number)
{
    return number ? QVariant(qlonglong(*number)) : QVariant(QVariant::LongLong);
}

std::optional<quint32> numberOf(const QVariant &value)
{
    const qlonglong number = value.toLongLong();
    return value.isNull() || number < 0 || number > std::numeric_limits<quint32>::max()
               ? std::nullopt
               : std::optional<quint32>(static_cast<quint32>(number));
}

int countOf(const QVariant &value)
{
    return qMax(0, value.toInt());
}

QString numberText(const std::optional<quint32> &number)
{
    return number ? QString::number(*number) : QString();
}

QVector<quint8> classesOf(const QString &digits)
{
    QVector<quint8> classes;
    const QByteArray codes = QByteArray::fromHex(digits.toLatin1());
    for (const char code : codes)
        classes.append(static_cast<quint8>(code));
    return classes;
}

QString digitsOf(const QVector<quint8> &classes)
{
    const QByteArray codes(reinterpret_cast<const char *>(classes.constData()), classes.size());
    return QString::fromLatin1(codes.toHex());
}

} // namespace

QString VisitRows::plainText(const QString &text)
{
    QString plain = text.isNull() ? QStringLiteral("") : text;
    plain.remove(QChar(0));
    return plain;
}

QString VisitRows::searchText(const QStringList &texts)
{
    return folded(texts.join(QLatin1Char('\n')));
}

QStringList VisitRows::searchConditions(const QString &text, const QStringList &columns, QVariantList *values)
{
    QStringList conditions;
    QStringList words = folded(text).simplified().split(QLatin1Char(' '));
    words.removeAll(QString());
    for (const QString &word : qAsConst(words)) {
        QStringList places;
        for (const QString &column : columns) {
            places.append(column + QStringLiteral(" LIKE ? ESCAPE '!'"));
            values->append(likePattern(word));
        }
        conditions.append(QLatin1Char('(') + places.join(QStringLiteral(" OR ")) + QLatin1Char(')'));
    }
    return conditions;
}

QString VisitRows::searchTextOf(const VisitInfo &visit)
{
    const SnapshotNotes &notes = visit.notes;
    QStringList texts{notes.vehicle,  notes.customer, notes.technician,
                      notes.odometer, notes.note,     visit.time.toString(QStringLiteral("yyyy-MM-dd"))};
    for (const VisitComponent &component : visit.components) {
        const DeviceIdentity &identity = component.identity;
        texts << component.deviceKey() << numberText(identity.serial) << numberText(identity.partNumber)
              << identity.deviceName;
    }
    texts.removeDuplicates();
    return searchText(texts);
}

QVector<VisitComponent> VisitRows::componentsOf(const Snapshot &snapshot)
{
    QVector<VisitComponent> components;
    for (const SnapshotNode &node : snapshot.nodes)
        components.append({node.id, DeviceIdentity::of(node)});
    return components;
}

QString VisitRows::visitSelection()
{
    return QStringLiteral("SELECT v.id, v.vehicle, c.name, c.label, v.time, v.time_offset, v.bus, v.program,"
                          " v.scope, v.complete, v.value_count, v.gap_count, v.fingerprint, v.vehicle_text,"
                          " v.customer, v.technician, v.odometer, v.note, v.verdict, v.faults, v.warnings,"
                          " v.notes, v.not_checked"
                          " FROM draxel_visit v JOIN draxel_vehicle c ON c.id = v.vehicle");
}

VisitInfo VisitRows::visitOf(const QSqlQuery &row)
{
    VisitInfo visit;
    visit.id = row.value(0).toLongLong();
    visit.vehicleId = row.value(1).toLongLong();
    visit.vehicle = vehicleCall(visit.vehicleId, row.value(2).toString(), row.value(3).toString());
    visit.time = timeOf(row.value(4), row.value(5));
    visit.bus = row.value(6).toString();
    visit.program = row.value(7).toString();
    visit.scope = static_cast<SnapshotScope>(qBound(0, row.value(8).toInt(), int(lastScope)));
    visit.isComplete = row.value(9).toInt() == 1;
    visit.valueCount = countOf(row.value(10));
    visit.gapCount = countOf(row.value(11));
    visit.fingerprint = row.value(12).toString();
    visit.notes.vehicle = row.value(13).toString();
    visit.notes.customer = row.value(14).toString();
    visit.notes.technician = row.value(15).toString();
    visit.notes.odometer = row.value(16).toString();
    visit.notes.note = row.value(17).toString();
    visit.verdict = verdictOf(row, 18);
    return visit;
}

QString VisitRows::componentColumns()
{
    return QStringLiteral(
        "node, device, vendor, product, revision, serial, part_number, device_name, hardware,"
        " software, classes");
}

QVariantList VisitRows::componentValues(const VisitComponent &component)
{
    const DeviceIdentity &identity = component.identity;
    return {int(component.nodeId),
            plainText(component.deviceKey()),
            nullable(identity.vendor),
            nullable(identity.product),
            nullable(identity.revision),
            nullable(identity.serial),
            nullable(identity.partNumber),
            plainText(identity.deviceName),
            plainText(identity.hardwareVersion),
            plainText(identity.softwareVersion),
            plainText(digitsOf(identity.classes))};
}

VisitComponent VisitRows::componentOf(const QSqlQuery &row, int first)
{
    VisitComponent component;
    component.nodeId = static_cast<quint8>(qBound(0, row.value(first).toInt(), 127));
    DeviceIdentity &identity = component.identity;
    identity.vendor = numberOf(row.value(first + 2));
    identity.product = numberOf(row.value(first + 3));
    identity.revision = numberOf(row.value(first + 4));
    identity.serial = numberOf(row.value(first + 5));
    identity.partNumber = numberOf(row.value(first + 6));
    identity.deviceName = row.value(first + 7).toString();
    identity.hardwareVersion = row.value(first + 8).toString();
    identity.softwareVersion = row.value(first + 9).toString();
    identity.classes = classesOf(row.value(first + 10).toString());
    return component;
}

QVariantList VisitRows::verdictValues(const std::optional<VisitVerdict> &verdict)
{
    if (!verdict) {
        const QVariant null(QVariant::Int);
        return {null, null, null, null, null};
    }
    return {static_cast<int>(verdict->verdict), verdict->faults, verdict->warnings, verdict->notes,
            verdict->notChecked};
}

std::optional<VisitVerdict> VisitRows::verdictOf(const QSqlQuery &row, int first)
{
    const QVariant code = row.value(first);
    if (code.isNull() || code.toInt() < 0 || code.toInt() > lastVerdict)
        return std::nullopt;
    VisitVerdict verdict;
    verdict.verdict = static_cast<Verdict>(code.toInt());
    verdict.faults = countOf(row.value(first + 1));
    verdict.warnings = countOf(row.value(first + 2));
    verdict.notes = countOf(row.value(first + 3));
    verdict.notChecked = countOf(row.value(first + 4));
    return verdict;
}

QDateTime VisitRows::timeOf(const QVariant &milliseconds, const QVariant &offset)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds.toLongLong(), Qt::OffsetFromUTC,
                                          qBound(-longestOffset, offset.toInt(), longestOffset));
}

QString VisitRows::vehicleCall(qint64 id, const QString &name, const QString &label)
{
    if (!name.isEmpty())
        return name;
    return label.isEmpty() ? VisitRowsTr::tr("Vehicle %1").arg(id) : label;
}
