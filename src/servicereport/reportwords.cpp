// SPDX-License-Identifier: MIT
#include "reportwords.h"

#include "reporttr.h"

#include <checkup/objectwords.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objectdescriptions.h>
#include <interpreter/units.h>
#include <snapshot/deviceidentity.h>
#include <snapshot/snapshot.h>

#include <cstdlib>

namespace {

/*! "UTC+02:00" */
QString zoneText(const QDateTime &time)
{
    constexpr int minute = 60;
    const int minutes = time.offsetFromUtc() / minute;
    const QLatin1Char zero('0');
    return QStringLiteral("UTC%1%2:%3")
        .arg(minutes < 0 ? QLatin1Char('-') : QLatin1Char('+'))
        .arg(std::abs(minutes) / 60, 2, 10, zero)
        .arg(std::abs(minutes) % 60, 2, 10, zero);
}

} // namespace

QString ReportWords::date(const QDateTime &time) const
{
    //: How a date is written, with the letters of QLocale::toString(): 3 September 2026
    return m_locale.toString(time.date(), ReportTr::tr("d MMMM yyyy"));
}

QString ReportWords::dateAndTime(const QDateTime &time) const
{
    //: Date, time of the day, time zone
    return ReportTr::tr("%1, %2 (%3)")
        .arg(date(time), m_locale.toString(time.time(), QStringLiteral("HH:mm")), zoneText(time));
}

QString ReportWords::number(double value, int decimals) const
{
    return m_locale.toString(value, 'f', decimals);
}

QString ReportWords::inUnit(double value, const QString &unit, int decimals) const
{
    const UnitFormat *format = findUnitFormat(unit);
    if (format == nullptr)
        return number(value, 0);
    // Number and unit stay on one line.
    return QCoreApplication::translate("DataInterpreter", format->text)
        .replace(QLatin1Char(' '), QChar(QChar::Nbsp))
        .arg(number(value / format->divisor, decimals));
}

QString ReportWords::minutes(double value) const
{
    constexpr double hour = 60;
    if (value < hour)
        return number(value, 0) + QChar(QChar::Nbsp) + QStringLiteral("min");
    const double hours = value / hour;
    return number(hours, hours < 10 ? 1 : 0) + QChar(QChar::Nbsp) + QLatin1Char('h');
}

QString ReportWords::value(CanOpen::ObjectKey key, const QVariant &value) const
{
    if (value.type() == QVariant::String)
        return shortened(value.toString());
    if (value.type() == QVariant::ByteArray)
        return shortened(QString::fromLatin1(value.toByteArray().toHex(' ')));
    const ObjectDescription *description = objectDescriptions().find(key.index);
    const UnitFormat *unit = description != nullptr ? description->unit : nullptr;
    if (unit != nullptr && qstrcmp(unit->key, "min") == 0)
        return minutes(value.toDouble());
    if (unit != nullptr)
        return inUnit(ObjectWords::number(key, value.toDouble()), QString::fromLatin1(unit->key));
    return value.type() == QVariant::Double ? number(value.toDouble(), 2) : value.toString();
}

QString ReportWords::objectName(CanOpen::ObjectKey key)
{
    const QString name = DataInterpreter::objectName(key.index, key.subIndex).simplified();
    return name.isEmpty() ? key.toShortString() : QStringLiteral("%1 (%2)").arg(name, key.toShortString());
}

QString ReportWords::shortened(const QString &text, int longest)
{
    if (text.size() <= longest)
        return text;
    const int end = text.at(longest - 1).isHighSurrogate() ? longest - 1 : longest;
    return text.left(end) + QStringLiteral("…");
}

QString ReportWords::name(const CheckupResult &checkup, const SnapshotNode &node)
{
    const CheckedComponent *component = checkup.component(node.id);
    return component != nullptr && !component->name.isEmpty() ? component->name
                                                              : DeviceIdentity::of(node).displayName(node.id);
}

QString ReportWords::place(const QString &name, quint8 nodeId)
{
    return nodeId == 0 ? ReportTr::tr("Vehicle")
                       : ReportTr::tr("%1 (node %2)").arg(shortened(name), QString::number(nodeId));
}
