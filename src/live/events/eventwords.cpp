// SPDX-License-Identifier: MIT
#include "eventwords.h"

#include <canopen/emergency.h>
#include <canopen/hexadecimal.h>
#include <canopen/nmt.h>
#include <canopen/sdoabort.h>

#include <algorithm>

QString EventWords::text(const LiveEvent &event)
{
    switch (event.kind) {
    case EventKind::NodeHeard:
        return tr("It is heard: %1.").arg(state(event.code));
    case EventKind::StateChanged:
        return tr("It is now %1.").arg(state(event.code));
    case EventKind::NodeRestarted:
        return tr("It has restarted.");
    case EventKind::NodeLost:
        return tr("It is silent: its heartbeat has stopped.");
    case EventKind::NodeBack:
        return tr("It is back: %1.").arg(state(event.code));
    case EventKind::NmtCommand:
        return event.nodeId == 0 ? tr("NMT command to all nodes: %1.").arg(command(event.code))
                                 : tr("NMT command: %1.").arg(command(event.code));
    case EventKind::Emergency:
    case EventKind::EmergencyReset:
        return emergency(event);
    case EventKind::AbortBurst:
        return tr("SDO transfers are aborted one after the other: %1.")
            .arg(CanOpen::sdoAbortText(event.code));
    case EventKind::Flood:
        return tr("More events than can be listed one by one.");
    case EventKind::ControllerGood:
        return tr("The adapter sees no more errors.");
    case EventKind::ControllerWarning:
        return tr("The adapter sees errors (warning limit).");
    case EventKind::ControllerPassive:
        return tr("The adapter sees many errors (error-passive).");
    case EventKind::BusOff:
        return tr("The adapter has switched itself off the bus (bus-off).");
    case EventKind::Overrun:
        return tr("Frames were lost: the computer was too slow.");
    case EventKind::InterfaceGone:
        return event.detail.isEmpty() ? tr("The adapter is gone.")
                                      : tr("The adapter is gone: %1").arg(event.detail);
    case EventKind::InterfaceBack:
        return tr("The adapter is back.");
    }
    return QString();
}

QString EventWords::emergency(const LiveEvent &event)
{
    const QString number = CanOpen::hexadecimal(event.code, 4);
    QString words = CanOpen::emergencyText(static_cast<quint16>(event.code));
    if (!event.detail.isEmpty())
        words += QStringLiteral(" (%1)").arg(event.detail);
    QString text = event.kind == EventKind::Emergency ? tr("Emergency %1h: %2.").arg(number, words)
                                                      : tr("Emergency %1h: an error is gone.").arg(number);
    if (event.errorRegister != 0)
        text += QLatin1Char(' ')
                + tr("Error register: %1.").arg(CanOpen::errorRegisterText(event.errorRegister));
    const QByteArray bytes(reinterpret_cast<const char *>(event.manufacturer.data()),
                           static_cast<int>(event.manufacturer.size()));
    if (bytes.count('\0') < bytes.size())
        text += QLatin1Char(' ')
                + tr("The manufacturer's bytes: %1.").arg(QString::fromLatin1(bytes.toHex(' ').toUpper()));
    return text;
}

QString EventWords::state(quint32 code)
{
    switch (static_cast<CanOpen::NmtState>(code)) {
    case CanOpen::NmtState::BootUp:
        return tr("starting (NMT state Boot-up)");
    case CanOpen::NmtState::Stopped:
        return tr("stopped (NMT state Stopped)");
    case CanOpen::NmtState::Operational:
        return tr("working (NMT state Operational)");
    case CanOpen::NmtState::PreOperational:
        return tr("waiting (NMT state Pre-operational)");
    }
    return QString::number(code);
}

QString EventWords::command(quint32 code)
{
    switch (static_cast<CanOpen::NmtCommand>(code)) {
    case CanOpen::NmtCommand::Start:
        return tr("start");
    case CanOpen::NmtCommand::Stop:
        return tr("stop");
    case CanOpen::NmtCommand::EnterPreOperational:
        return tr("enter Pre-operational");
    case CanOpen::NmtCommand::ResetNode:
        return tr("reset the device");
    case CanOpen::NmtCommand::ResetCommunication:
        return tr("reset its communication");
    }
    return tr("unknown command %1h").arg(CanOpen::hexadecimal(code, 2));
}

QString EventWords::line(const LiveEvent &event)
{
    QString line = text(event);
    if (event.nodeId != 0)
        line = tr("Node %1: %2").arg(QString::number(event.nodeId), line);
    return event.count > 1 ? tr("%1 (%2 times)").arg(line, QString::number(event.count)) : line;
}

QString EventWords::severity(Severity severity)
{
    switch (severity) {
    case Severity::Fault:
        return tr("fault");
    case Severity::Warning:
        return tr("warning");
    case Severity::Note:
        break;
    }
    return tr("note");
}
