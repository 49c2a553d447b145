// SPDX-License-Identifier: MIT
#include "fault.h"

#include "objectname.h"

#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <array>
#include <cmath>

namespace Simulator {

namespace {

struct Parameter
{
    const char *name = nullptr; // null: none
    qint64 Fault::*member = nullptr;
    qint64 lowest = 0;
    qint64 highest = 0;
};

enum class Place { Node, Bus, Both };
enum class Objects { No, Yes };

constexpr int mostParameters = 5;

struct FaultInfo
{
    FaultKind kind;
    const char *name;
    Place place;
    Objects objects; // whether an object may be named
    std::array<Parameter, mostParameters> parameters;
};

constexpr qint64 million = 1000000;
constexpr qint64 highestCode = 0xFFFFFFFF;

constexpr Parameter from{"from", &Fault::from, 1, million};
constexpr Parameter every{"every", &Fault::every, 1, million};
constexpr Parameter code{"code", &Fault::code, 0, highestCode};

constexpr FaultInfo faults[] = {
    {FaultKind::Silent, "silent", Place::Node, Objects::No, {}},
    {FaultKind::NoBootUp, "noBootUp", Place::Node, Objects::No, {}},
    {FaultKind::NoHeartbeat, "noHeartbeat", Place::Node, Objects::No, {}},
    {FaultKind::BabbleHeartbeat,
     "babbleHeartbeat",
     Place::Node,
     Objects::No,
     {Parameter{"intervalMs", &Fault::intervalMs, 1, million}}},
    {FaultKind::HeartbeatTopBit, "heartbeatTopBit", Place::Node, Objects::No, {}},
    {FaultKind::HeartbeatLength,
     "heartbeatLength",
     Place::Node,
     Objects::No,
     {Parameter{"length", &Fault::length, 0, 8}}},
    {FaultKind::HeartbeatRemote, "heartbeatRemote", Place::Node, Objects::No, {}},
    {FaultKind::Stopped, "stopped", Place::Node, Objects::No, {}},
    {FaultKind::SdoSilent, "sdoSilent", Place::Node, Objects::Yes, {from}},
    {FaultKind::SdoDelay, "sdoDelay", Place::Node, Objects::Yes, {Parameter{"ms", &Fault::ms, 0, million}}},
    {FaultKind::SdoAbort, "sdoAbort", Place::Node, Objects::Yes, {code}},
    {FaultKind::AbortMidTransfer,
     "abortMidTransfer",
     Place::Node,
     Objects::Yes,
     {code, Parameter{"afterSegments", &Fault::afterSegments, 0, million}}},
    {FaultKind::WrongToggle,
     "wrongToggle",
     Place::Node,
     Objects::Yes,
     {Parameter{"segment", &Fault::segment, 0, million}}},
    {FaultKind::WrongMultiplexer, "wrongMultiplexer", Place::Node, Objects::Yes, {}},
    {FaultKind::SizeBits,
     "sizeBits",
     Place::Node,
     Objects::Yes,
     {Parameter{"expedited", &Fault::expedited, -1, 1},
      Parameter{"sizeIndicated", &Fault::sizeIndicated, -1, 1}, Parameter{"unused", &Fault::unused, -1, 3},
      Parameter{"size", &Fault::size, -1, highestCode}, Parameter{"lastUnused", &Fault::lastUnused, -1, 7}}},
    {FaultKind::Segmented, "segmented", Place::Node, Objects::Yes, {}},
    {FaultKind::WrongWidth,
     "wrongWidth",
     Place::Node,
     Objects::Yes,
     {Parameter{"bytes", &Fault::bytes, 0, 64}}},
    {FaultKind::DoubleAnswers,
     "doubleAnswers",
     Place::Node,
     Objects::Yes,
     {Parameter{"count", &Fault::count, 1, 10}}},
    {FaultKind::LateAnswers, "lateAnswers", Place::Node, Objects::Yes, {every}},
    {FaultKind::HalfOpen, "halfOpen", Place::Node, Objects::Yes, {from}},
    {FaultKind::BabbleSdo,
     "babbleSdo",
     Place::Node,
     Objects::No,
     {Parameter{"perSecond", &Fault::perSecond, 1, 100000}}},
    {FaultKind::ForeignClient, "foreignClient", Place::Node, Objects::Yes, {every}},
    {FaultKind::DropFrames, "dropFrames", Place::Node, Objects::No, {every}},
    {FaultKind::Traffic,
     "traffic",
     Place::Both,
     Objects::No,
     {Parameter{"percent", &Fault::percent, 1, 100}}},
    {FaultKind::BusLoss,
     "busLoss",
     Place::Bus,
     Objects::No,
     {Parameter{"afterFrames", &Fault::afterFrames, 0, 1000000000}, Parameter{"drop", &Fault::drop, 0, 1}}},
};
static_assert(sizeof(faults) / sizeof(faults[0]) == static_cast<std::size_t>(FaultKind::BusLoss) + 1,
              "one row per kind");

constexpr bool isInOrder()
{
    int place = 0;
    for (const FaultInfo &info : faults) {
        if (static_cast<int>(info.kind) != place++)
            return false;
    }
    return true;
}
static_assert(isInOrder(), "a kind is the place of its row");

const FaultInfo &infoOf(FaultKind kind)
{
    return faults[static_cast<std::size_t>(kind)];
}

/*! A whole number in JSON, or a text like "0x06090011" as abort codes are written. */
std::optional<qint64> wholeNumber(const QJsonValue &value)
{
    if (value.isString()) {
        const QString text = value.toString();
        bool isNumber = false;
        const qint64 number = text.startsWith(QLatin1String("0x")) ? text.mid(2).toLongLong(&isNumber, 16)
                                                                   : text.toLongLong(&isNumber, 10);
        return isNumber ? std::optional<qint64>(number) : std::nullopt;
    }
    const double number = value.toDouble(0.5);
    if (std::abs(number) > 1e15 || std::trunc(number) != number)
        return std::nullopt;
    return static_cast<qint64>(number);
}

} // namespace

Fault makeFault(FaultKind kind)
{
    Fault fault;
    fault.kind = kind;
    // With every answer late a client never gets one in time.
    if (kind == FaultKind::LateAnswers || kind == FaultKind::DropFrames)
        fault.every = 2;
    return fault;
}

QString faultName(FaultKind kind)
{
    return QLatin1String(infoOf(kind).name);
}

bool isBusFault(FaultKind kind)
{
    return infoOf(kind).place != Place::Node;
}

bool isNodeFault(FaultKind kind)
{
    return infoOf(kind).place != Place::Bus;
}

QStringList faultNames()
{
    QStringList names;
    for (const FaultInfo &info : faults)
        names.append(QLatin1String(info.name));
    return names;
}

QStringList faultParameters(FaultKind kind)
{
    QStringList names;
    if (infoOf(kind).objects == Objects::Yes)
        names.append(QStringLiteral("object"));
    for (const Parameter &parameter : infoOf(kind).parameters) {
        if (parameter.name != nullptr)
            names.append(QLatin1String(parameter.name));
    }
    return names;
}

std::optional<Fault> parseFault(const QJsonObject &json, QString *errorMessage)
{
    const auto fail = [errorMessage](const QString &problem) {
        *errorMessage = problem;
        return std::nullopt;
    };
    const QString name = json.value(QLatin1String("kind")).toString();
    const int place = faultNames().indexOf(name);
    if (place < 0)
        return fail(QStringLiteral("kind: \"%1\" is none of %2")
                        .arg(name.left(80), faultNames().join(QLatin1String(", "))));
    const FaultInfo &info = faults[place];
    Fault fault = makeFault(info.kind);

    for (auto field = json.constBegin(); field != json.constEnd(); ++field) {
        const QString key = field.key();
        if (key == QLatin1String("kind"))
            continue;
        if (key == QLatin1String("object") && info.objects == Objects::Yes) {
            fault.object = parseObjectKey(field.value().toString());
            if (!fault.object)
                return fail(QStringLiteral("object: \"%1\" is no object such as \"6164sub2\"")
                                .arg(field.value().toString().left(80)));
            continue;
        }
        const auto parameter = std::find_if(
            info.parameters.begin(), info.parameters.end(), [&key](const Parameter &candidate) {
                return candidate.name != nullptr && key == QLatin1String(candidate.name);
            });
        if (parameter == info.parameters.end())
            return fail(QStringLiteral("%1: not known for \"%2\"").arg(key.left(80), name));
        const std::optional<qint64> number = wholeNumber(field.value());
        if (!number || *number < parameter->lowest || *number > parameter->highest)
            return fail(QStringLiteral("%1: no whole number from %2 to %3")
                            .arg(key)
                            .arg(parameter->lowest)
                            .arg(parameter->highest));
        fault.*parameter->member = *number;
    }
    return fault;
}

} // namespace Simulator
