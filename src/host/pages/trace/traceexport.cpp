// SPDX-License-Identifier: MIT
#include "traceexport.h"

#include "tracedocument.h"
#include "tracerows.h"

#include <trace/files/tracedetails.h>
#include <trace/files/tracefile.h>

#include <QDir>

#include <algorithm>

Trace TraceExport::shown(const TraceDocument &document, const TraceRows &rows)
{
    if (rows.isAll())
        return document.trace;
    std::vector<std::size_t> positions;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const std::vector<std::size_t> frames = document.lines.frames(rows.lineAt(row));
        positions.insert(positions.end(), frames.begin(), frames.end());
    }
    std::sort(positions.begin(), positions.end());
    Trace trace;
    trace.head = document.trace.head;
    trace.frames.reserve(positions.size());
    for (const std::size_t position : positions)
        trace.frames.push_back(document.trace.frames[position]);
    return trace;
}

TraceExport::Result TraceExport::save(const QString &fileName, const Trace &trace)
{
    Result result;
    result.fileName = fileName;
    result.frames = trace.frames.size();
    if (!TraceFile::save(fileName, trace, &result.problem))
        return result;
    TraceDetails details;
    for (const TraceFrame &frame : trace.frames)
        details.add(frame);
    const std::optional<TraceFormat> format = TraceFormats::ofName(fileName).format;
    const QStringList lost = format ? details.lostIn(*format, trace.head) : QStringList();
    if (!lost.isEmpty())
        result.problems << tr("This format cannot hold: %1.").arg(lost.join(QStringLiteral(", ")));
    if (trace.isCut)
        result.problems << tr("There were more frames than are kept: the oldest are missing.");
    return result;
}

QStringList TraceExport::nameFilters()
{
    return {tr("candump log (*.log)"),   tr("candump log, compressed (*.log.gz)"),
            tr("asc trace (*.asc)"),     tr("trc trace (*.trc)"),
            tr("pcap capture (*.pcap)"), tr("pcapng capture (*.pcapng)")};
}

QString TraceExport::suffixOf(const QString &nameFilter)
{
    return nameFilter.section(QLatin1String("*."), 1).section(QLatin1Char(')'), 0, 0);
}

QString TraceExport::completeName(const QString &fileName, const QString &suffix)
{
    return TraceFormats::ofName(fileName).format ? fileName : fileName + QLatin1Char('.') + suffix;
}
