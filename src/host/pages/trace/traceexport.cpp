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
    const std::vector<TraceFrame> &all = document.trace.frames;
    std::vector<bool> isShown(all.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const TraceLine &line = document.lines.at(rows.lineAt(row));
        isShown[line.frame] = true;
        if (line.transfer == 0) // its only one
            continue;
        for (const std::size_t position : document.lines.frames(rows.lineAt(row)))
            isShown[position] = true;
    }
    Trace trace;
    trace.head = document.trace.head;
    trace.missing = document.trace.missing;
    trace.frames.reserve(static_cast<std::size_t>(std::count(isShown.begin(), isShown.end(), true)));
    for (std::size_t position = 0; position < all.size(); ++position) {
        if (isShown[position])
            trace.frames.push_back(all[position]);
    }
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
    if (trace.missing == MissingFrames::Newest)
        result.problems << tr("There were more frames than are kept: the newest are missing.");
    if (trace.missing == MissingFrames::Oldest)
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
