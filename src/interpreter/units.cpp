// SPDX-License-Identifier: MIT
#include "units.h"

#include "texttables.h"

#include <QCoreApplication>
#include <QVariant>

#include <cstddef>
#include <iterator>
#include <string_view>

namespace {

constexpr int decimals = 2;
constexpr int fieldWidth = 2;

// Deliberate: "dep 6053h" is no key of this table, so AC values are plain numbers without the prefix of
// object 6053h
constexpr UnitFormat unitFormats[] = {
    {"ms", QT_TRANSLATE_NOOP("DataInterpreter", "%1 s"), 1000},
    {"mA", QT_TRANSLATE_NOOP("DataInterpreter", "%1 A"), 1000},
    {"mAh", QT_TRANSLATE_NOOP("DataInterpreter", "%1 Ah"), 1000},
    {"Ah", QT_TRANSLATE_NOOP("DataInterpreter", "%1 Ah"), 1},
    {"mAh/day", QT_TRANSLATE_NOOP("DataInterpreter", "%1 Ah/day"), 1000},
    {"Wh", QT_TRANSLATE_NOOP("DataInterpreter", "%1 Wh"), 1},
    {"mWh", QT_TRANSLATE_NOOP("DataInterpreter", "%1 Wh"), 1000},
    {"Hz", QT_TRANSLATE_NOOP("DataInterpreter", "%1 Hz"), 100},
    {"mOhm", QT_TRANSLATE_NOOP("DataInterpreter", "%1 Ohm"), 1000},
    {"mV", QT_TRANSLATE_NOOP("DataInterpreter", "%1 V"), 1000},
    {"degree", QT_TRANSLATE_NOOP("DataInterpreter", "%1 degree"), 1000},
    {"m", QT_TRANSLATE_NOOP("DataInterpreter", "%1 m"), 1},
    {"mm", QT_TRANSLATE_NOOP("DataInterpreter", "%1 mm"), 1},
    {"N", QT_TRANSLATE_NOOP("DataInterpreter", "%1 N"), 100},
    {"rpm", QT_TRANSLATE_NOOP("DataInterpreter", "%1 rpm"), 1},
    {"revolution", QT_TRANSLATE_NOOP("DataInterpreter", "%1 revolution"), 1},
    {"Nm", QT_TRANSLATE_NOOP("DataInterpreter", "%1 Nm"), 100},
    {"km/h", QT_TRANSLATE_NOOP("DataInterpreter", "%1 km/h"), 100},
    {"bpm", QT_TRANSLATE_NOOP("DataInterpreter", "%1 bpm"), 100},
    {"%", QT_TRANSLATE_NOOP("DataInterpreter", "%1 %"), 100},
    {"C", QT_TRANSLATE_NOOP("DataInterpreter", "%1 °C"), 10},
    {"C/min", QT_TRANSLATE_NOOP("DataInterpreter", "%1 °C/min"), 1000},
    {"day", QT_TRANSLATE_NOOP("DataInterpreter", "%1 days"), 1},
    {"min", QT_TRANSLATE_NOOP("DataInterpreter", "%1 minutes"), 1},
};

constexpr bool hasDistinctKeys()
{
    constexpr std::size_t count = std::size(unitFormats);
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t k = i + 1; k < count; ++k) {
            if (std::string_view(unitFormats[i].key) == std::string_view(unitFormats[k].key))
                return false;
        }
    }
    return true;
}
static_assert(hasDistinctKeys());

} // namespace

const UnitFormat *findUnitFormat(const QString &key)
{
    for (const UnitFormat &format : unitFormats) {
        if (key == QLatin1String(format.key))
            return &format;
    }
    return nullptr;
}

QString formatWithUnit(const UnitFormat *format, const QVariant &value)
{
    if (format == nullptr)
        return QString::number(value.toUInt());
    return interpreterText(format->text)
        .arg(value.toDouble() / format->divisor, fieldWidth, 'f', decimals, QLatin1Char(' '));
}
