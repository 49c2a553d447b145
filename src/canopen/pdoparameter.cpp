// SPDX-License-Identifier: MIT
#include "pdoparameter.h"

#include "cobid.h"

namespace CanOpen {

namespace {

enum Sub : quint8 { CobId = 1, TransmissionType = 2, InhibitTime = 3, EventTimer = 5, SyncStart = 6 };

constexpr std::chrono::microseconds inhibitStep{100};

struct TriggerRange
{
    quint8 first;
    quint8 last;
    PdoTrigger trigger;
};

constexpr TriggerRange triggers[] = {
    {0, 0, PdoTrigger::SyncOnChange},      {1, 240, PdoTrigger::Sync},    {241, 251, PdoTrigger::Reserved},
    {252, 253, PdoTrigger::RemoteRequest}, {254, 255, PdoTrigger::Event},
};

} // namespace

PdoTrigger PdoParameter::trigger() const
{
    for (const TriggerRange &range : triggers) {
        if (transmissionType >= range.first && transmissionType <= range.last)
            return range.trigger;
    }
    return PdoTrigger::Reserved;
}

std::optional<PdoParameter> readPdoParameter(const ObjectLookup &lookup, quint16 index)
{
    const std::optional<quint32> cobId = lookup({index, CobId});
    if (!cobId)
        return std::nullopt;
    const auto value = [&](Sub sub, quint32 otherwise) { return lookup({index, sub}).value_or(otherwise); };
    PdoParameter parameter;
    parameter.cobId = identifierOf(*cobId);
    parameter.isExtended = isExtendedCobId(*cobId);
    parameter.isValid = (*cobId & cobIdBit31) == 0;
    parameter.isRemoteAllowed = (*cobId & cobIdBit30) == 0;
    parameter.transmissionType = static_cast<quint8>(value(TransmissionType, 255));
    parameter.inhibitTime = static_cast<quint16>(value(InhibitTime, 0)) * inhibitStep;
    parameter.eventTimer = std::chrono::milliseconds(static_cast<quint16>(value(EventTimer, 0)));
    parameter.syncStart = static_cast<quint8>(value(SyncStart, 0));
    return parameter;
}

} // namespace CanOpen
