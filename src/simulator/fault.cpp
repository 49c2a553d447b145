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

using CanOpen::ObjectKey;

// ---------------------------------------------------------------------- how a number gets into its field

void assign(int *field, qint64 number)
{
    *field = static_cast<int>(number);
}

void assign(quint32 *field, qint64 number)
{
    *field = static_cast<quint32>(number);
}

void assign(qint64 *field, qint64 number)
{
    *field = number;
}

void assign(bool *field, qint64 number)
{
    *field = number != 0;
}

void assign(std::chrono::milliseconds *field, qint64 number)
{
    *field = std::chrono::milliseconds(number);
}

/*! -1 stands for "as is right". */
template<typename Value>
void assign(std::optional<Value> *field, qint64 number)
{
    *field = number < 0 ? std::nullopt : std::optional<Value>(static_cast<Value>(number));
}

template<typename Kind, typename Value>
Kind kindOfMember(Value Kind::*);

template<auto member>
void setMember(Fault *fault, qint64 number)
{
    assign(&(std::get<decltype(kindOfMember(member))>(*fault).*member), number);
}

template<typename Kind>
Fault makeFault()
{
    return Kind();
}

template<typename Kind>
void setObject(Fault *fault, ObjectKey object)
{
    std::get<Kind>(*fault).object = object;
}

// ---------------------------------------------------------------------- the table

enum class Place { Node, Bus, Both };

struct Parameter
{
    const char *name = nullptr; // null: none
    void (*set)(Fault *fault, qint64 number) = nullptr;
    qint64 lowest = 0;
    qint64 highest = 0;
};

using Parameters = std::array<Parameter, 9>;

struct FaultInfo
{
    const char *name;
    Place place;
    std::size_t kind;
    Fault (*make)();
    void (*setObject)(Fault *fault, ObjectKey object); // null when no object may be named
    Parameters parameters;
};

template<auto member>
constexpr Parameter number(const char *name, qint64 lowest, qint64 highest)
{
    return {name, &setMember<member>, lowest, highest};
}

template<auto member>
constexpr Parameter flag(const char *name)
{
    return number<member>(name, 0, 1);
}

template<typename Kind>
constexpr FaultInfo row(const char *name, Place place, Parameters parameters = {})
{
    void (*objectSetter)(Fault *, ObjectKey) = nullptr;
    if constexpr (std::is_base_of_v<Faults::OfObject, Kind>)
        objectSetter = &setObject<Kind>;
    return {name, place, faultKind<Kind>(), &makeFault<Kind>, objectSetter, parameters};
}

constexpr qint64 million = 1000000;
constexpr qint64 most32Bits = 0xFFFFFFFF;
constexpr qint64 most40Bits = 0xFFFFFFFFFF;
constexpr qint64 farthest = 1000000000; // ms

} // namespace

// The table stands beside the kinds, so that their names are these and not others of the bus.
namespace Faults {
namespace {

constexpr FaultInfo faultTable[] = {
    row<Silent>("silent", Place::Node, {number<&Silent::from>("from", 0, million)}),
    row<NoBootUp>("noBootUp", Place::Node),
    row<NoHeartbeat>("noHeartbeat", Place::Node),
    row<BabbleHeartbeat>("babbleHeartbeat", Place::Node,
                         {number<&BabbleHeartbeat::interval>("intervalMs", 1, million)}),
    row<HeartbeatTopBit>("heartbeatTopBit", Place::Node),
    row<HeartbeatLength>("heartbeatLength", Place::Node, {number<&HeartbeatLength::length>("length", 0, 8)}),
    row<HeartbeatRemote>("heartbeatRemote", Place::Node),
    row<Stopped>("stopped", Place::Node),
    row<Restarts>(
        "restarts", Place::Node,
        {number<&Restarts::interval>("intervalMs", 10, million), flag<&Restarts::random>("random")}),
    row<Emergency>("emergency", Place::Node,
                   {number<&Emergency::code>("code", 0x0100, 0xFFFF),
                    number<&Emergency::errorRegister>("register", 0, 0xFF),
                    number<&Emergency::manufacturer>("manufacturer", 0, most40Bits),
                    number<&Emergency::after>("afterMs", 0, farthest),
                    number<&Emergency::length>("forMs", 0, farthest),
                    number<&Emergency::above>("above", -most32Bits, most32Bits),
                    number<&Emergency::below>("below", -most32Bits, most32Bits),
                    flag<&Emergency::stays>("stays"), flag<&Emergency::preOperational>("preOperational")}),
    row<EmergencyOfNobody>("emergencyOfNobody", Place::Both,
                           {number<&EmergencyOfNobody::nodeId>("nodeId", 1, 127),
                            number<&EmergencyOfNobody::code>("code", 0, 0xFFFF),
                            number<&EmergencyOfNobody::interval>("intervalMs", 1, million)}),
    row<BabbleEmergency>("babbleEmergency", Place::Node,
                         {number<&BabbleEmergency::perSecond>("perSecond", 1, 100000),
                          number<&BabbleEmergency::code>("code", 0, 0xFFFF)}),
    row<BabblePdo>("babblePdo", Place::Node, {number<&BabblePdo::perSecond>("perSecond", 1, 100000)}),
    row<PdoLength>("pdoLength", Place::Node,
                   {number<&PdoLength::pdo>("pdo", 0, 512), number<&PdoLength::length>("length", 0, 8)}),
    row<LyingMapping>("lyingMapping", Place::Node,
                      {number<&LyingMapping::pdo>("pdo", 1, 512),
                       number<&LyingMapping::entries>("entries", 0, 255),
                       number<&LyingMapping::bits>("bits", 0, 255)}),
    row<SdoSilent>("sdoSilent", Place::Node, {number<&SdoSilent::from>("from", 1, million)}),
    row<SdoDelay>("sdoDelay", Place::Node, {number<&SdoDelay::delay>("ms", 0, million)}),
    row<SdoAbort>("sdoAbort", Place::Node, {number<&SdoAbort::code>("code", 0, most32Bits)}),
    row<AbortMidTransfer>("abortMidTransfer", Place::Node,
                          {number<&AbortMidTransfer::code>("code", 0, most32Bits),
                           number<&AbortMidTransfer::afterSegments>("afterSegments", 0, million)}),
    row<WrongToggle>("wrongToggle", Place::Node, {number<&WrongToggle::segment>("segment", 0, million)}),
    row<WrongMultiplexer>("wrongMultiplexer", Place::Node),
    row<SizeBits>("sizeBits", Place::Node,
                  {number<&SizeBits::expedited>("expedited", -1, 1),
                   number<&SizeBits::sizeIndicated>("sizeIndicated", -1, 1),
                   number<&SizeBits::unused>("unused", -1, 3),
                   number<&SizeBits::size>("size", -1, most32Bits),
                   number<&SizeBits::lastUnused>("lastUnused", -1, 7)}),
    row<Segmented>(
        "segmented", Place::Node,
        {flag<&Segmented::announcesSize>("announcesSize"), number<&Segmented::bytes>("bytes", 1, 7)}),
    row<Endless>("endless", Place::Node, {number<&Endless::bytes>("bytes", 0, 7)}),
    row<WrongWidth>("wrongWidth", Place::Node, {number<&WrongWidth::bytes>("bytes", 0, 64)}),
    row<BlockUpload>("blockUpload", Place::Node,
                     {flag<&BlockUpload::wrongCrc>("wrongCrc"),
                      number<&BlockUpload::lostSegment>("lostSegment", 0, 127),
                      number<&BlockUpload::wrongSequence>("wrongSequence", 0, 127)}),
    row<DoubleAnswers>("doubleAnswers", Place::Node, {number<&DoubleAnswers::count>("count", 1, 10)}),
    row<LateCopies>(
        "lateCopies", Place::Node,
        {number<&LateCopies::count>("count", 1, 10), number<&LateCopies::within>("withinMs", 0, million)}),
    row<LateAnswers>("lateAnswers", Place::Node, {number<&LateAnswers::every>("every", 1, million)}),
    row<HalfOpen>("halfOpen", Place::Node, {number<&HalfOpen::from>("from", 1, million)}),
    row<BabbleSdo>(
        "babbleSdo", Place::Node,
        {number<&BabbleSdo::perSecond>("perSecond", 1, 100000), flag<&BabbleSdo::segments>("segments")}),
    row<ForeignClient>("foreignClient", Place::Node, {number<&ForeignClient::every>("every", 1, million)}),
    row<AbandoningClient>("abandoningClient", Place::Node,
                          {number<&AbandoningClient::interval>("intervalMs", 1, million)}),
    row<DropFrames>("dropFrames", Place::Node, {number<&DropFrames::every>("every", 1, million)}),
    row<Traffic>("traffic", Place::Both, {number<&Traffic::percent>("percent", 1, 100)}),
    row<Flood>("flood", Place::Both, {number<&Flood::perSecond>("perSecond", 1, 100000)}),
    row<Faults::BusLoss>("busLoss", Place::Bus,
                         {number<&Faults::BusLoss::afterFrames>("afterFrames", 0, 1000000000),
                          flag<&Faults::BusLoss::drop>("drop")}),
};

} // namespace
} // namespace Faults

namespace {

using Faults::faultTable;

static_assert(sizeof(faultTable) / sizeof(faultTable[0]) == std::variant_size_v<Fault>, "one row per kind");

constexpr bool isInOrder()
{
    std::size_t place = 0;
    for (const FaultInfo &info : faultTable) {
        if (info.kind != place++)
            return false;
    }
    return true;
}
static_assert(isInOrder(), "a kind is the place of its row");

const FaultInfo *findInfo(const QString &name)
{
    const auto found
        = std::find_if(std::begin(faultTable), std::end(faultTable),
                       [&name](const FaultInfo &info) { return name == QLatin1String(info.name); });
    return found != std::end(faultTable) ? found : nullptr;
}

const Parameter *findParameter(const FaultInfo &info, const QString &name)
{
    for (const Parameter &parameter : info.parameters) {
        if (parameter.name != nullptr && name == QLatin1String(parameter.name))
            return &parameter;
    }
    return nullptr;
}

// ---------------------------------------------------------------------- JSON

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

/*! Reads one key of a fault; false with the reason in \a problem. */
bool readKey(const FaultInfo &info, const QString &key, const QJsonValue &value, Fault *fault,
             QString *problem)
{
    if (key == QLatin1String("object") && info.setObject != nullptr) {
        const std::optional<ObjectKey> object = parseObjectKey(value.toString());
        if (object)
            info.setObject(fault, *object);
        else
            *problem = QStringLiteral("object: \"%1\" is no object such as \"6164sub2\"")
                           .arg(value.toString().left(80));
        return object.has_value();
    }
    const Parameter *parameter = findParameter(info, key);
    if (parameter == nullptr) {
        *problem = QStringLiteral("%1: not known for \"%2\"").arg(key.left(80), QLatin1String(info.name));
        return false;
    }
    const std::optional<qint64> number = wholeNumber(value);
    if (!number || *number < parameter->lowest || *number > parameter->highest) {
        *problem = QStringLiteral("%1: no whole number from %2 to %3")
                       .arg(key)
                       .arg(parameter->lowest)
                       .arg(parameter->highest);
        return false;
    }
    parameter->set(fault, *number);
    return true;
}

} // namespace

QString faultName(const Fault &fault)
{
    return QLatin1String(faultTable[fault.index()].name);
}

bool isBusFault(const Fault &fault)
{
    return faultTable[fault.index()].place != Place::Node;
}

bool isNodeFault(const Fault &fault)
{
    return faultTable[fault.index()].place != Place::Bus;
}

QStringList faultNames()
{
    QStringList names;
    for (const FaultInfo &info : faultTable)
        names.append(QLatin1String(info.name));
    return names;
}

QStringList faultParameters(const QString &name)
{
    QStringList names;
    const FaultInfo *info = findInfo(name);
    if (info == nullptr)
        return names;
    if (info->setObject != nullptr)
        names.append(QStringLiteral("object"));
    for (const Parameter &parameter : info->parameters) {
        if (parameter.name != nullptr)
            names.append(QLatin1String(parameter.name));
    }
    return names;
}

std::optional<Fault> parseFault(const QJsonObject &json, QString *errorMessage)
{
    const QLatin1String kindKey("kind");
    const QString name = json.value(kindKey).toString();
    const FaultInfo *info = findInfo(name);
    if (info == nullptr) {
        *errorMessage = QStringLiteral("kind: \"%1\" is none of %2")
                            .arg(name.left(80), faultNames().join(QLatin1String(", ")));
        return std::nullopt;
    }
    Fault fault = info->make();
    for (auto field = json.constBegin(); field != json.constEnd(); ++field) {
        if (field.key() != kindKey && !readKey(*info, field.key(), field.value(), &fault, errorMessage))
            return std::nullopt;
    }
    const auto *emergency = std::get_if<Faults::Emergency>(&fault);
    if (emergency != nullptr && emergency->hasCondition() != emergency->object.has_value()) {
        *errorMessage = emergency->object
                            ? QStringLiteral("object: without \"above\" or \"below\" it means nothing")
                            : QStringLiteral("object: it is missing for \"above\" and \"below\"");
        return std::nullopt;
    }
    return fault;
}

} // namespace Simulator
