// SPDX-License-Identifier: MIT
#include "behaviour.h"

#include "objectname.h"

#include <system/amounts.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Simulator {

namespace {

using CanOpen::DataType;

constexpr double pi = 3.14159265358979323846;
constexpr double largestParameter = 1e15; // exact as double

struct NumberParameter
{
    const char *name = nullptr;
    double Behaviour::*member = nullptr;
    bool isDuration = false; // must be positive
};

struct KindInfo
{
    BehaviourKind kind;
    const char *name;
    NumberParameter parameters[3];
    bool mayRepeat = false;
    bool hasPoints = false;
};

constexpr KindInfo kinds[] = {
    {BehaviourKind::Ramp,
     "ramp",
     {{"from", &Behaviour::from, false},
      {"to", &Behaviour::to, false},
      {"seconds", &Behaviour::seconds, true}},
     true},
    {BehaviourKind::Sine,
     "sine",
     {{"mean", &Behaviour::mean, false},
      {"amplitude", &Behaviour::amplitude, false},
      {"periodSeconds", &Behaviour::periodSeconds, true}}},
    {BehaviourKind::Random,
     "random",
     {{"min", &Behaviour::min, false},
      {"max", &Behaviour::max, false},
      {"intervalMs", &Behaviour::intervalMs, true}}},
    {BehaviourKind::Counter,
     "counter",
     {{"from", &Behaviour::from, false},
      {"step", &Behaviour::step, false},
      {"intervalMs", &Behaviour::intervalMs, true}}},
    {BehaviourKind::Course, "course", {}, true, true},
};
static_assert(sizeof(kinds) / sizeof(kinds[0]) == 5, "one row per kind");

struct Range
{
    double lowest;
    double highest;
};

/*! The range of a type as doubles that convert back without overflow. */
std::optional<Range> rangeOf(DataType type)
{
    switch (type) {
    case DataType::Boolean:
        return Range{0, 1};
    case DataType::Integer8:
        return Range{-128, 127};
    case DataType::Integer16:
        return Range{-32768, 32767};
    case DataType::Integer32:
        return Range{-2147483648.0, 2147483647.0};
    case DataType::Unsigned8:
        return Range{0, 255};
    case DataType::Unsigned16:
        return Range{0, 65535};
    case DataType::Unsigned32:
        return Range{0, 4294967295.0};
    case DataType::Integer24:
        return Range{-8388608.0, 8388607.0};
    case DataType::Integer40:
        return Range{-549755813888.0, 549755813887.0};
    case DataType::Integer48:
        return Range{-140737488355328.0, 140737488355327.0};
    case DataType::Integer56:
    case DataType::Integer64:
        return Range{-9007199254740992.0, 9007199254740992.0}; // 2^53, what a double counts exactly
    case DataType::Unsigned24:
        return Range{0, 16777215.0};
    case DataType::Unsigned40:
        return Range{0, 1099511627775.0};
    case DataType::Unsigned48:
        return Range{0, 281474976710655.0};
    case DataType::Unsigned56:
    case DataType::Unsigned64:
        return Range{0, 9007199254740992.0};
    case DataType::Real32:
    case DataType::Real64:
        return Range{-3.0e38, 3.0e38};
    default:
        return std::nullopt;
    }
}

/*! A number from 0 to 1 that only depends on \a seed (the mixing steps of SplitMix64). */
double scatter(quint64 seed)
{
    seed += 0x9E3779B97F4A7C15u;
    seed = (seed ^ (seed >> 30)) * 0xBF58476D1CE4E5B9u;
    seed = (seed ^ (seed >> 27)) * 0x94D049BB133111EBu;
    seed ^= seed >> 31;
    return static_cast<double>(seed >> 11) / 9007199254740992.0;
}

double rampValue(const Behaviour &behaviour, double seconds)
{
    double part = seconds / behaviour.seconds;
    part = behaviour.repeat ? part - std::floor(part) : std::min(part, 1.0);
    return behaviour.from + (behaviour.to - behaviour.from) * part;
}

double courseValue(const Behaviour &behaviour, double seconds)
{
    const QVector<CoursePoint> &points = behaviour.points;
    if (points.isEmpty())
        return 0;
    const double last = points.last().seconds;
    if (behaviour.repeat && last > 0)
        seconds = std::fmod(seconds, last);
    const auto isLater = [](double time, const CoursePoint &point) { return time < point.seconds; };
    const auto next = std::upper_bound(points.cbegin(), points.cend(), seconds, isLater);
    if (next == points.cbegin())
        return points.first().value;
    if (next == points.cend())
        return points.last().value;
    const CoursePoint &before = *(next - 1);
    const double part = (seconds - before.seconds) / (next->seconds - before.seconds);
    return before.value + (next->value - before.value) * part;
}

std::optional<CoursePoint> parsePoint(const QJsonValue &json)
{
    const QJsonArray pair = json.toArray();
    if (pair.size() != 2 || !pair.at(0).isDouble() || !pair.at(1).isDouble())
        return std::nullopt;
    const CoursePoint point{pair.at(0).toDouble(), pair.at(1).toDouble()};
    if (point.seconds < 0 || point.seconds > largestParameter || std::abs(point.value) > largestParameter)
        return std::nullopt;
    return point;
}

/*! False with the reason in \a errorMessage. */
bool readPoints(const QJsonValue &json, QVector<CoursePoint> *points, QString *errorMessage)
{
    const QJsonArray list = json.toArray();
    if (list.isEmpty()) {
        *errorMessage = QStringLiteral("points: not in the form [[0, 250], [60, 410]]");
        return false;
    }
    for (const QJsonValue &element : list) {
        const std::optional<CoursePoint> point = parsePoint(element);
        if (!point) {
            *errorMessage = QStringLiteral("points: element %1 is not in the form [seconds, value]")
                                .arg(points->size() + 1);
            return false;
        }
        if (!points->isEmpty() && point->seconds <= points->last().seconds) {
            *errorMessage = QStringLiteral("points: element %1 is not later than the one before")
                                .arg(points->size() + 1);
            return false;
        }
        points->append(*point);
    }
    return true;
}

/*! The first key that a behaviour of this kind does not have; empty when all are known. */
QString unknownKey(const QJsonObject &json, const KindInfo &info)
{
    QStringList known{QStringLiteral("kind"), QStringLiteral("object")};
    if (info.mayRepeat)
        known.append(QStringLiteral("repeat"));
    if (info.hasPoints)
        known.append(QStringLiteral("points"));
    for (const NumberParameter &parameter : info.parameters) {
        if (parameter.name != nullptr)
            known.append(QLatin1String(parameter.name));
    }
    for (const QString &key : json.keys()) {
        if (!known.contains(key))
            return key;
    }
    return QString();
}

} // namespace

bool isNumber(DataType type)
{
    return rangeOf(type).has_value();
}

double behaviourValue(const Behaviour &behaviour, qint64 elapsed)
{
    const auto time = static_cast<double>(std::max<qint64>(elapsed, 0));
    const double seconds = time / Microseconds::ofSecond;
    const double intervals = std::floor(time / Microseconds::ofMillisecond / behaviour.intervalMs);
    switch (behaviour.kind) {
    case BehaviourKind::Ramp:
        return rampValue(behaviour, seconds);
    case BehaviourKind::Sine:
        return behaviour.mean + behaviour.amplitude * std::sin(2 * pi * seconds / behaviour.periodSeconds);
    case BehaviourKind::Random: {
        const quint64 seed = quint64(behaviour.object.index) << 48 ^ quint64(behaviour.object.subIndex) << 40
                             ^ static_cast<quint64>(std::min(intervals, largestParameter));
        return behaviour.min + (behaviour.max - behaviour.min) * scatter(seed);
    }
    case BehaviourKind::Counter:
        return behaviour.from + behaviour.step * intervals;
    case BehaviourKind::Course:
        return courseValue(behaviour, seconds);
    }
    return 0;
}

std::optional<QByteArray> behaviourData(const Behaviour &behaviour, const CanOpen::ObjectEntry &entry,
                                        qint64 elapsed)
{
    std::optional<Range> range = rangeOf(entry.type);
    if (!range)
        return std::nullopt;
    if (entry.lowLimit)
        range->lowest = std::max(range->lowest, static_cast<double>(*entry.lowLimit));
    if (entry.highLimit)
        range->highest = std::min(range->highest, static_cast<double>(*entry.highLimit));

    const bool isReal = entry.type == DataType::Real32 || entry.type == DataType::Real64;
    double value = behaviourValue(behaviour, elapsed);
    if (!isReal)
        value = std::round(value);
    if (behaviour.kind == BehaviourKind::Counter && !isReal && range->highest > range->lowest
        && (value > range->highest || value < range->lowest)) {
        const double values = range->highest - range->lowest + 1;
        const double rest = std::fmod(value - range->lowest, values);
        value = range->lowest + (rest < 0 ? rest + values : rest);
    }
    // Limits that exclude each other leave the lower one.
    value = std::max(std::min(value, range->highest), range->lowest);
    return CanOpen::encodeValue(entry.type,
                                isReal ? QVariant(value) : QVariant(static_cast<qlonglong>(value)));
}

namespace {

const KindInfo *findKind(const QString &name)
{
    for (const KindInfo &candidate : kinds) {
        if (name == QLatin1String(candidate.name))
            return &candidate;
    }
    return nullptr;
}

/*! The numbers that a behaviour of its kind has to have; false and a reason when one is missing. */
bool readParameters(const QJsonObject &json, const KindInfo &info, Behaviour *behaviour, QString *problem)
{
    for (const NumberParameter &parameter : info.parameters) {
        if (parameter.name == nullptr)
            continue;
        const QString name = QLatin1String(parameter.name);
        const QJsonValue value = json.value(name);
        if (!value.isDouble() || std::abs(value.toDouble()) > largestParameter) {
            *problem
                = name + QStringLiteral(": a number is missing for \"%1\"").arg(QLatin1String(info.name));
            return false;
        }
        if (parameter.isDuration && value.toDouble() < 1e-3) {
            *problem = name + QStringLiteral(": the time must be at least 0.001");
            return false;
        }
        behaviour->*parameter.member = value.toDouble();
    }
    return true;
}

/*! Leaves it as it is where nothing is said; false when something else than true or false is. */
bool readRepeat(const QJsonObject &json, const KindInfo &info, Behaviour *behaviour)
{
    const QJsonValue repeat = json.value(QLatin1String("repeat"));
    if (!info.mayRepeat || repeat.isUndefined())
        return true;
    behaviour->repeat = repeat.toBool();
    return repeat.isBool();
}

/*! What else can be wrong with a behaviour that has all it needs; empty when nothing is. */
QString contradictionOf(const QJsonObject &json, const KindInfo &info, const Behaviour &behaviour)
{
    if (behaviour.kind == BehaviourKind::Random && behaviour.min > behaviour.max)
        return QStringLiteral("min: larger than max");
    const QString unknown = unknownKey(json, info);
    return unknown.isEmpty()
               ? QString()
               : QStringLiteral("%1: not known for \"%2\"").arg(unknown.left(80), QLatin1String(info.name));
}

} // namespace

std::optional<Behaviour> parseBehaviour(const QJsonObject &json, QString *errorMessage)
{
    const auto fail = [errorMessage](const QString &problem) {
        *errorMessage = problem;
        return std::nullopt;
    };
    const QString kindName = json.value(QLatin1String("kind")).toString();
    const KindInfo *info = findKind(kindName);
    if (info == nullptr)
        return fail(QStringLiteral("kind: \"%1\" is none of ramp, sine, random, counter, course")
                        .arg(kindName.left(80)));

    Behaviour behaviour;
    behaviour.kind = info->kind;
    const QString objectName = json.value(QLatin1String("object")).toString();
    const std::optional<CanOpen::ObjectKey> object = parseObjectKey(objectName);
    if (!object)
        return fail(
            QStringLiteral("object: \"%1\" is no object such as \"6164sub2\"").arg(objectName.left(80)));
    behaviour.object = *object;

    if (!readParameters(json, *info, &behaviour, errorMessage))
        return std::nullopt;
    if (info->hasPoints && !readPoints(json.value(QLatin1String("points")), &behaviour.points, errorMessage))
        return std::nullopt;
    if (!readRepeat(json, *info, &behaviour))
        return fail(QStringLiteral("repeat: neither true nor false"));
    const QString contradiction = contradictionOf(json, *info, behaviour);
    if (!contradiction.isEmpty())
        return fail(contradiction);
    return behaviour;
}

} // namespace Simulator
