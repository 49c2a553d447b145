// SPDX-License-Identifier: MIT
#include "liveevent.h"

namespace {

struct KindRow
{
    EventKind kind;
    Severity severity;
    const char *name;
};

constexpr KindRow kindRows[] = {
    {EventKind::NodeHeard, Severity::Note, "nodeHeard"},
    {EventKind::StateChanged, Severity::Note, "stateChanged"},
    {EventKind::NodeRestarted, Severity::Warning, "nodeRestarted"},
    {EventKind::NodeLost, Severity::Fault, "nodeLost"},
    {EventKind::NodeBack, Severity::Note, "nodeBack"},
    {EventKind::NmtCommand, Severity::Note, "nmtCommand"},
    {EventKind::Emergency, Severity::Fault, "emergency"},
    {EventKind::EmergencyReset, Severity::Note, "emergencyReset"},
    {EventKind::AbortBurst, Severity::Warning, "abortBurst"},
    {EventKind::Flood, Severity::Warning, "flood"},
    {EventKind::ControllerGood, Severity::Note, "controllerGood"},
    {EventKind::ControllerWarning, Severity::Warning, "controllerWarning"},
    {EventKind::ControllerPassive, Severity::Fault, "errorPassive"},
    {EventKind::BusOff, Severity::Fault, "busOff"},
    {EventKind::Overrun, Severity::Warning, "overrun"},
    {EventKind::InterfaceGone, Severity::Fault, "interfaceGone"},
    {EventKind::InterfaceBack, Severity::Note, "interfaceBack"},
};

constexpr bool isInOrder()
{
    int position = 0;
    for (const KindRow &row : kindRows) {
        if (static_cast<int>(row.kind) != position++)
            return false;
    }
    return position == eventKinds;
}
static_assert(isInOrder(), "one row per kind, in their order");

} // namespace

Severity LiveEvent::severity() const
{
    return kindRows[static_cast<int>(kind)].severity;
}

bool LiveEvent::isSame(const LiveEvent &later) const
{
    return kind == later.kind && nodeId == later.nodeId && code == later.code
           && errorRegister == later.errorRegister && manufacturer == later.manufacturer
           && detail == later.detail;
}

QString eventKindName(EventKind kind)
{
    return QLatin1String(kindRows[static_cast<int>(kind)].name);
}
