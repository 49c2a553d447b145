// SPDX-License-Identifier: MIT
#include "monitorlisting.h"

#include "healthlisting.h"

#include <cli/core/textcolumns.h>

#include <QRegularExpression>

#include <algorithm>
#include <iterator>
#include <limits>
#include <numeric>

namespace {

constexpr int leastEvents = 3;        // lines
constexpr int smallestWithNodes = 12; // lines of a screen

/*! The first, so the worst finding of a node; null when there is none. */
const Finding *findingOf(quint8 nodeId, const QVector<HealthLight> &lights)
{
    for (const HealthLight &light : lights) {
        for (const Finding &finding : light.findings) {
            if (finding.nodeId == nodeId)
                return &finding;
        }
    }
    return nullptr;
}

QVector<NodeNumbers> heardNodes(const HealthNumbers &numbers)
{
    QVector<NodeNumbers> nodes;
    std::copy_if(numbers.nodes.begin(), numbers.nodes.end(), std::back_inserter(nodes),
                 [](const NodeNumbers &node) { return node.frames > 0; });
    return nodes;
}

} // namespace

QStringList MonitorListing::screen(const MonitorView &view, Terminal::Size size, Signs::Style style)
{
    QStringList lines{cutToWidth(title(view), size.columns)};
    lines += lightLines(view, style, size.columns);
    if (size.lines >= smallestWithNodes) {
        const int blanks = 2;
        const QStringList nodes
            = nodeLines(view, size.lines - lines.size() - leastEvents - blanks, size.columns);
        lines << QString() << nodes << QString();
    }
    const int room = std::min(size.lines - lines.size(), view.events.size());
    const Signs signs(style);
    for (int i = view.events.size() - std::max(room, 0); i < view.events.size(); ++i)
        lines.append(signedLine(signs.of(view.events.at(i).severity), view.events.at(i).text, size.columns));
    return lines.mid(0, size.lines);
}

QStringList MonitorListing::block(const MonitorView &view, Signs::Style style)
{
    constexpr int noLimit = std::numeric_limits<int>::max();
    QStringList lines{title(view)};
    lines += lightLines(view, style, noLimit);
    const Signs signs(style);
    for (const MonitorView::Event &event : view.events)
        lines.append(signedLine(signs.of(event.severity), event.text, noLimit));
    return lines;
}

QString MonitorListing::title(const MonitorView &view)
{
    const QString time = view.time.toString(QStringLiteral("HH:mm:ss"));
    const QString bus = Terminal::visible(view.bus);
    if (!view.trouble.isEmpty())
        return tr("%1  %2  The bus is lost: %3").arg(time, bus, Terminal::visible(view.trouble));
    const double perSecond = std::accumulate(
        view.numbers.kinds.begin(), view.numbers.kinds.end(), 0.0,
        [](double sum, const KindNumbers &kind) { return sum + kind.lastSecond.value_or(0); });
    return tr("%1  %2  %3 frames/s  load %4")
        .arg(time, bus, QString::number(perSecond), HealthListing::percent(view.numbers.lastLoad));
}

QStringList MonitorListing::lightLines(const MonitorView &view, Signs::Style style, int columns)
{
    const Signs signs(style);
    QStringList lines;
    for (const HealthLight &light : view.lights)
        lines.append(signedLine(signs.of(light.state), light.text, columns));
    return lines;
}

QStringList MonitorListing::nodeLines(const MonitorView &view, int lines, int columns)
{
    QVector<NodeNumbers> nodes = heardNodes(view.numbers);
    const int rowCount = std::max(lines, 2) - 1; // without the head
    const int left = nodes.size() > rowCount ? nodes.size() - (rowCount - 1) : 0;
    if (left > 0)
        std::stable_partition(nodes.begin(), nodes.end(), [&view](const NodeNumbers &node) {
            return findingOf(node.id, view.lights) != nullptr;
        });
    QVector<QStringList> rows{{tr("Node"), tr("State"), tr("Heartbeat"), tr("Missed"), tr("Restarts"),
                               tr("Emergencies"), tr("SDO"), tr("Load"), QString()}};
    for (int i = 0; i < nodes.size() - left; ++i)
        rows.append(row(nodes.at(i), view.lights));
    if (left > 0)
        rows.append({QString(), tr("and %1 more").arg(left)});
    QStringList cut;
    for (const QString &line : alignedLines(rows, 0))
        cut.append(cutToWidth(line, columns));
    return cut;
}

QStringList MonitorListing::row(const NodeNumbers &node, const QVector<HealthLight> &lights)
{
    const Finding *finding = findingOf(node.id, lights);
    const QString found = finding != nullptr ? Signs(Signs::Style::Words).of(finding->severity)
                                                   + Terminal::visible(finding->text)
                                             : QString();
    return {QString::number(node.id),
            HealthListing::state(node.state),
            HealthListing::time(node.heartbeat.period),
            QString::number(node.heartbeat.missed),
            QString::number(node.restarts),
            QString::number(node.emergencies),
            HealthListing::time(node.sdo.median),
            HealthListing::percent(node.load),
            found};
}

/*! Behind its sign, whose colours take no room. */
QString MonitorListing::signedLine(const QString &sign, const QString &text, int columns)
{
    static const QRegularExpression colours(QStringLiteral("\x1b\\[[0-9;]*m"));
    const int width = terminalWidth(QString(sign).remove(colours));
    return sign + cutToWidth(Terminal::visible(text), columns - width);
}
