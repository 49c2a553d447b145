// SPDX-License-Identifier: MIT
#include "healthlisting.h"

#include <bus/buswords.h>
#include <cli/core/terminal.h>
#include <cli/core/textcolumns.h>

namespace {

const QLatin1String nothing("-");

} // namespace

QString HealthListing::lights(const QVector<HealthLight> &lights, Signs::Style style)
{
    const Signs signs(style);
    QStringList lines;
    for (const HealthLight &light : lights) {
        lines.append(signs.of(light.state) + Terminal::visible(light.text));
        for (const Finding &finding : light.findings) {
            const QString node = finding.nodeId != 0 ? tr("Node %1: ").arg(finding.nodeId) : QString();
            if (light.findings.size() > 1)
                lines.append(QStringLiteral("    ") + signs.of(finding.severity)
                             + Terminal::visible(node + finding.text));
            if (!finding.advice.isEmpty())
                lines.append(QStringLiteral("      ") + Terminal::visible(finding.advice));
        }
    }
    return lines.join(QLatin1Char('\n'));
}

QString HealthListing::percent(std::optional<double> load)
{
    constexpr double factor = 100;
    return load ? QStringLiteral("%1 %").arg(*load * factor, 0, 'f', 1) : QString(nothing);
}

QString HealthListing::time(std::optional<double> milliseconds)
{
    return milliseconds ? QStringLiteral("%1 ms").arg(*milliseconds, 0, 'f', 1) : QString(nothing);
}

QString HealthListing::state(std::optional<CanOpen::NmtState> state)
{
    if (!state)
        return nothing;
    switch (*state) {
    case CanOpen::NmtState::BootUp:
        return QStringLiteral("Boot-up");
    case CanOpen::NmtState::Stopped:
        return QStringLiteral("Stopped");
    case CanOpen::NmtState::Operational:
        return QStringLiteral("Operational");
    case CanOpen::NmtState::PreOperational:
        return QStringLiteral("Pre-operational");
    }
    return nothing;
}

QString HealthListing::controller(const HealthNumbers &numbers)
{
    switch (numbers.controller) {
    case InterfaceHealth::State::Good:
        return tr("good");
    case InterfaceHealth::State::Warning:
        return tr("warning limit");
    case InterfaceHealth::State::Passive:
        return tr("error-passive");
    case InterfaceHealth::State::BusOff:
        return tr("bus-off");
    case InterfaceHealth::State::Unknown:
        break;
    }
    return tr("not told by the driver");
}

QVector<QStringList> HealthListing::busRows(const HealthNumbers &numbers)
{
    QVector<QStringList> rows{
        {tr("Time"), QStringLiteral("%1 s").arg(numbers.duration / 1000, 0, 'f', 1)},
        {tr("Bit rate"), numbers.bitRate > 0 ? tr("%1 bit/s").arg(numbers.bitRate) : tr("not known")},
        {tr("Load, mean"), percent(numbers.meanLoad)},
        {tr("Load, busiest second"), percent(numbers.peakLoad)},
        {tr("Frames"), QString::number(numbers.frames)},
        {tr("Frames per second"), QString::number(numbers.framesPerSecond, 'f', 1)},
    };
    for (std::size_t i = 0; i < numbers.kinds.size(); ++i) {
        if (numbers.kinds[i].count > 0)
            rows.append({QStringLiteral("  ") + QLatin1String(frameKindName(static_cast<FrameKind>(i))),
                         QString::number(numbers.kinds[i].perSecond, 'f', 1)});
    }
    rows.append({tr("Longest burst"),
                 numbers.longestBurst ? tr("%1 frames").arg(*numbers.longestBurst) : QString(nothing)});
    rows.append({tr("Controller"), controller(numbers)});
    if (numbers.transmitErrors)
        rows.append({tr("Error counters"), tr("%1 transmit, %2 receive")
                                               .arg(*numbers.transmitErrors)
                                               .arg(numbers.receiveErrors.value_or(0))});
    rows.append({tr("Lost frames, reports"), QString::number(numbers.overruns)});
    rows.append({tr("Errors on the bus"), QString::number(numbers.busErrors)});
    const QVector<quint8> asked = numbers.nodesAskedByOthers();
    rows.append({tr("Asked by other tools"),
                 asked.isEmpty() ? QString(nothing) : tr("node %1").arg(BusWords::nodes(asked.toList()))});
    return rows;
}

QVector<QStringList> HealthListing::nodeRows(const HealthNumbers &numbers)
{
    QVector<QStringList> rows{{tr("Node"), tr("State"), tr("Heartbeat"), tr("Jitter"), tr("Longest"),
                               tr("Missed"), tr("Restarts"), tr("Emergencies"), tr("SDO median"), tr("95 %"),
                               tr("Longest"), tr("Aborts"), tr("Load")}};
    for (const NodeNumbers &node : numbers.nodes) {
        if (node.frames == 0)
            continue;
        rows.append({QString::number(node.id), state(node.state), time(node.heartbeat.period),
                     time(node.heartbeat.jitter), time(node.heartbeat.longestGap),
                     QString::number(node.heartbeat.missed), QString::number(node.restarts),
                     QString::number(node.emergencies), time(node.sdo.median), time(node.sdo.most),
                     time(node.sdo.longest), QString::number(node.sdo.aborts), percent(node.load)});
    }
    return rows;
}

QString HealthListing::numbers(const HealthNumbers &numbers)
{
    QStringList lines = alignedLines(busRows(numbers), 0);
    const QVector<QStringList> nodes = nodeRows(numbers);
    if (nodes.size() > 1)
        lines += QStringList(QString()) + alignedLines(nodes, 0);
    return lines.join(QLatin1Char('\n'));
}
