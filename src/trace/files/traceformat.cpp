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
    TraceFormats::Detail detail;
};

using TraceFormats::Detail;

constexpr Loss losses[] = {
    {TraceFormat::Asc, Detail::ChannelNames},   {TraceFormat::Asc, Detail::ErrorDetails},
    {TraceFormat::Trc21, Detail::ChannelNames}, {TraceFormat::Trc21, Detail::ErrorDetails},
    {TraceFormat::Trc11, Detail::ChannelNames}, {TraceFormat::Trc11, Detail::Channels},
    {TraceFormat::Trc11, Detail::ErrorDetails}, {TraceFormat::Trc11, Detail::FineTimes},
    {TraceFormat::Pcap, Detail::ChannelNames},  {TraceFormat::Pcap, Detail::Channels},
    {TraceFormat::Pcap, Detail::Sender},        {TraceFormat::Pcap, Detail::EarlyTimes},
    {TraceFormat::Pcap, Detail::LateTimes},     {TraceFormat::PcapNg, Detail::EarlyTimes},
};

struct DetailText
{
    Detail detail;
    const char *text;
};

constexpr DetailText detailTexts[] = {
    {Detail::ChannelNames, QT_TRANSLATE_NOOP("TraceFile", "the names of channels")},
    {Detail::Channels, QT_TRANSLATE_NOOP("TraceFile", "which channel a frame is of")},
    {Detail::ErrorDetails, QT_TRANSLATE_NOOP("TraceFile", "what error frames say")},
    {Detail::Sender, QT_TRANSLATE_NOOP("TraceFile", "who sent a frame")},
    {Detail::FineTimes, QT_TRANSLATE_NOOP("TraceFile", "times finer than 100 µs")},
    {Detail::EarlyTimes, QT_TRANSLATE_NOOP("TraceFile", "times before 1970")},
    {Detail::LateTimes, QT_TRANSLATE_NOOP("TraceFile", "times after 2106")},
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

bool TraceFormats::canHold(TraceFormat format, Detail detail)
{
    return std::none_of(std::begin(losses), std::end(losses), [format, detail](const Loss &loss) {
        return loss.format == format && loss.detail == detail;
    });
}

QString TraceFormats::textOf(Detail detail)
{
    for (const DetailText &row : detailTexts) {
        if (row.detail == detail)
            return TraceFilesTr::tr(row.text);
    }
    return {};
}
