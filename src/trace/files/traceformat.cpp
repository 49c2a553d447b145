// SPDX-License-Identifier: MIT
#include "traceformat.h"

#include "tracefilestr.h"

#include <algorithm>
#include <iterator>

namespace {

/*! A format that can be written. */
struct Row
{
    TraceFormat format;
    const char *name;
    const char *suffix; // empty: of another row
};

constexpr Row rows[] = {
    {TraceFormat::Candump, "candump", ".log"}, {TraceFormat::Asc, "asc", ".asc"},
    {TraceFormat::Trc21, "trc", ".trc"},       {TraceFormat::Trc11, "trc-1.1", ""},
    {TraceFormat::Pcap, "pcap", ".pcap"},      {TraceFormat::PcapNg, "pcapng", ".pcapng"},
};

struct Loss
{
    TraceFormat format;
    const char *text;
};

constexpr Loss losses[] = {
    {TraceFormat::Asc, QT_TRANSLATE_NOOP("TraceFile", "names of channels")},
    {TraceFormat::Asc, QT_TRANSLATE_NOOP("TraceFile", "what error frames say")},
    {TraceFormat::Trc21, QT_TRANSLATE_NOOP("TraceFile", "names of channels")},
    {TraceFormat::Trc21, QT_TRANSLATE_NOOP("TraceFile", "what error frames say")},
    {TraceFormat::Trc11, QT_TRANSLATE_NOOP("TraceFile", "channels")},
    {TraceFormat::Trc11, QT_TRANSLATE_NOOP("TraceFile", "times more exact than 100 us")},
    {TraceFormat::Trc11, QT_TRANSLATE_NOOP("TraceFile", "what error frames say")},
    {TraceFormat::Pcap, QT_TRANSLATE_NOOP("TraceFile", "channels")},
    {TraceFormat::Pcap, QT_TRANSLATE_NOOP("TraceFile", "who sent a frame")},
};

struct Packing
{
    Compression compression;
    const char *suffix;
};

constexpr Packing packings[] = {{Compression::Gzip, ".gz"}, {Compression::Zstd, ".zst"}};

} // namespace

TraceFormats::OfName TraceFormats::ofName(const QString &fileName)
{
    OfName found;
    QString name = fileName.toLower();
    for (const Packing &packing : packings) {
        const QLatin1String suffix(packing.suffix);
        if (!name.endsWith(suffix))
            continue;
        found.compression = packing.compression;
        name.chop(suffix.size());
        break;
    }
    for (const Row &row : rows) {
        const QLatin1String suffix(row.suffix);
        if (suffix.size() > 0 && name.endsWith(suffix))
            found.format = row.format;
    }
    return found;
}

QString TraceFormats::nameOf(TraceFormat format)
{
    const auto *const row = std::find_if(std::begin(rows), std::end(rows),
                                         [format](const Row &known) { return known.format == format; });
    return row != std::end(rows) ? QString(QLatin1String(row->name)) : QString();
}

std::optional<TraceFormat> TraceFormats::writable(const QString &name)
{
    const auto *const row = std::find_if(std::begin(rows), std::end(rows), [&name](const Row &known) {
        return name == QLatin1String(known.name);
    });
    return row != std::end(rows) ? std::make_optional(row->format) : std::nullopt;
}

QStringList TraceFormats::writableNames()
{
    QStringList names;
    for (const Row &row : rows)
        names.append(QLatin1String(row.name));
    return names;
}

QStringList TraceFormats::lossesOf(TraceFormat format)
{
    QStringList texts;
    for (const Loss &loss : losses) {
        if (loss.format == format)
            texts.append(TraceFilesTr::tr(loss.text));
    }
    return texts;
}
