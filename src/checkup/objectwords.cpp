// SPDX-License-Identifier: MIT
#include "objectwords.h"

#include "communicationnames.h"
#include "communicationvalues.h"

#include <canopen/plaintext.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objectdescriptions.h>
#include <interpreter/objects.h>
#include <interpreter/units.h>

#include <QCoreApplication>

using CanOpen::ObjectKey;

namespace {

constexpr quint8 revisionNumber = 3;

bool isCellVoltage(ObjectKey key)
{
    return key.index >= Object::firstCellVoltages && key.index <= Object::lastCellVoltages
           && key.subIndex > 0;
}

bool isNoText(const QVariant &value)
{
    return value.type() != QVariant::String && value.type() != QVariant::ByteArray;
}

QString identityText(ObjectKey key, const QVariant &value)
{
    QString name;
    QString text = QString::number(value.toUInt());
    DataInterpreter::interpretIdentity(value, key.subIndex, name, text);
    return text;
}

/*! Of the numbers that are written now, if somebody has chosen. */
std::optional<QLocale> &chosenLocale()
{
    thread_local std::optional<QLocale> locale;
    return locale;
}

/*! C is the overview's. */
QLocale numberLocale()
{
    return chosenLocale().value_or(QLocale::c());
}

QString withUnit(const UnitFormat &format, double number)
{
    constexpr int decimals = 2;
    const QString shown = numberLocale().toString(number / format.divisor, 'f', decimals);
    return QCoreApplication::translate("DataInterpreter", format.text).arg(shown);
}

/*! Empty without a name. */
QString nameOf(ObjectKey key)
{
    const QString name = DataInterpreter::objectName(key.index, key.subIndex).simplified();
    return name.isEmpty() ? CommunicationNames::name(key) : name;
}

/*! Of a number without a unit. */
QString plainNumber(const QVariant &value)
{
    const bool isFraction = value.userType() == QMetaType::Double || value.userType() == QMetaType::Float;
    return isFraction ? value.toString().replace(QLatin1Char('.'), numberLocale().decimalPoint())
                      : value.toString();
}

/*! Without a unit: signed and wide numbers as they are, which formatValue() takes for unsigned ones of 32 bits. */
QString numberText(ObjectKey key, const QVariant &value)
{
    const ObjectDescription *description = objectDescriptions().find(key.index);
    if (description != nullptr && description->unit != nullptr)
        return withUnit(*description->unit, ObjectWords::number(key, value.toDouble()));
    QString communication = CommunicationValues::text(key, value.toULongLong(), numberLocale());
    if (!communication.isEmpty())
        return communication;
    const QString formatted = DataInterpreter::formatValue(key.index, key.subIndex, value);
    const bool isPlain = formatted.isEmpty() || formatted == QString::number(value.toUInt());
    return isPlain ? plainNumber(value) : formatted;
}

} // namespace

QString ObjectWords::value(ObjectKey key, const QVariant &value)
{
    if (value.type() == QVariant::String)
        return CanOpen::plainText(value.toString());
    if (value.type() == QVariant::ByteArray)
        return QString::fromLatin1(value.toByteArray().toHex(' '));
    if (!isNoText(value) || !value.isValid())
        return QString();
    if (isCellVoltage(key))
        return inUnit(value.toDouble(), QStringLiteral("mV"));
    if (key.index == Object::identity && key.subIndex == revisionNumber)
        return identityText(key, value);
    return numberText(key, value);
}

ObjectWords::Unit ObjectWords::unit(ObjectKey key)
{
    const ObjectDescription *description = objectDescriptions().find(key.index);
    const UnitFormat *format = description != nullptr ? description->unit : nullptr;
    if (isCellVoltage(key))
        format = findUnitFormat(QStringLiteral("mV"));
    if (format == nullptr)
        return {};
    return {QCoreApplication::translate("DataInterpreter", format->text).arg(QString()).trimmed(),
            format->divisor};
}

double ObjectWords::number(ObjectKey key, double raw)
{
    constexpr double range = 0x10000;
    if (raw < range / 2 || raw >= range)
        return raw;
    const ObjectDescription *description = objectDescriptions().find(key.index);
    const UnitFormat *format = description != nullptr ? description->unit : nullptr;
    const bool isTemperature = format != nullptr && qstrcmp(format->key, "C") == 0;
    return isTemperature ? raw - range : raw;
}

QString ObjectWords::inUnit(double number, const QString &unit)
{
    const UnitFormat *format = findUnitFormat(unit);
    return format != nullptr ? withUnit(*format, number) : QString();
}

ObjectWords::NumberStyle::NumberStyle(const QLocale &locale)
    : m_former(chosenLocale())
{
    QLocale chosen = locale;
    chosen.setNumberOptions(chosen.numberOptions() | QLocale::OmitGroupSeparator);
    chosenLocale() = chosen;
}

ObjectWords::NumberStyle::~NumberStyle()
{
    chosenLocale() = m_former;
}

bool ObjectWords::NumberStyle::isSet()
{
    return chosenLocale().has_value();
}

ObjectWords::LanguageNumbers::LanguageNumbers(const QString &language)
{
    if (!language.isEmpty() && !NumberStyle::isSet())
        m_style.emplace(QLocale(language));
}

QString ObjectWords::name(ObjectKey key)
{
    const QString name = nameOf(key);
    return name.isEmpty() ? CanOpen::indexText(key.index) : name;
}

QString ObjectWords::nameAndNumber(ObjectKey key)
{
    const QString name = nameOf(key);
    return name.isEmpty() ? key.toShortString() : QStringLiteral("%1 (%2)").arg(name, key.toShortString());
}
