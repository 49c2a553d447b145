// SPDX-License-Identifier: MIT
#include "tracefile.h"

#include "ascreader.h"
#include "beginning.h"
#include "candumpreader.h"
#include "filebytes.h"
#include "filesink.h"
#include "frameencoder.h"
#include "gzipbytes.h"
#include "packingsinks.h"
#include "pcapngreader.h"
#include "pcapreader.h"
#include "tracefilestr.h"
#include "trcreader.h"
#include "zstdbytes.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

const QLatin1String standardStream("-");

QString shownName(const QString &path)
{
    return path == standardStream ? TraceFilesTr::tr("The input") : QDir::toNativeSeparators(path);
}

std::unique_ptr<ByteSource> unpacked(std::unique_ptr<ByteSource> bytes)
{
    Beginning beginning(std::move(bytes));
    const Compression compression = beginning.compression();
    std::unique_ptr<ByteSource> all = beginning.takeAll();
    if (compression == Compression::Gzip)
        return std::make_unique<GzipBytes>(std::move(all));
    if (compression == Compression::Zstd)
        return std::make_unique<ZstdBytes>(std::move(all));
    return all;
}

std::unique_ptr<TraceReader> textReader(TraceFormat format, std::unique_ptr<ByteSource> bytes)
{
    if (format == TraceFormat::Asc)
        return std::make_unique<AscReader>(std::move(bytes));
    if (format == TraceFormat::Trc11 || format == TraceFormat::Trc21)
        return std::make_unique<TrcReader>(std::move(bytes));
    return std::make_unique<CandumpReader>(std::move(bytes));
}

/*! What an empty trace is, by its name; that of a pipe through which nothing came is one, too. */
std::unique_ptr<TraceReader> emptyReader(const QString &name)
{
    const std::optional<TraceFormat> format = TraceFormats::ofName(name).format;
    if (!format && name != standardStream)
        return nullptr;
    return textReader(TraceFormat::Candump, std::make_unique<MemoryBytes>(QByteArray()));
}

std::unique_ptr<TraceReader> readerOf(std::unique_ptr<ByteSource> bytes, const QString &name,
                                      QString *errorMessage)
{
    Beginning beginning(std::move(bytes));
    const QByteArray magic = beginning.magic();
    if (PcapReader::isIt(magic))
        return std::make_unique<PcapReader>(beginning.takeAll());
    if (PcapNgReader::isIt(magic))
        return std::make_unique<PcapNgReader>(beginning.takeAll());
    if (const std::optional<TraceFormat> format = beginning.textFormat())
        return textReader(*format, beginning.takeAll());
    if (!beginning.errorString().isEmpty()) {
        *errorMessage
            = TraceFilesTr::tr("%1 cannot be read. %2").arg(shownName(name), beginning.errorString());
        return nullptr;
    }
    std::unique_ptr<TraceReader> reader = beginning.isBlank() ? emptyReader(name) : nullptr;
    if (!reader) {
        *errorMessage = TraceFilesTr::tr("%1 is no trace that is known: a log of candump, asc, trc, pcap or "
                                         "pcapng, also compressed with gzip or zstd.")
                            .arg(shownName(name));
    }
    return reader;
}

std::unique_ptr<ByteSink> openSink(const QString &path, TraceFile::Appearance appearance,
                                   QString *errorMessage)
{
    const auto opened = [errorMessage](auto sink) -> std::unique_ptr<ByteSink> {
        if (sink->open())
            return sink;
        *errorMessage = sink->errorString();
        return nullptr;
    };
    if (path == standardStream || appearance == TraceFile::Appearance::Growing)
        return opened(std::make_unique<GrowingFile>(path));
    return opened(std::make_unique<CompleteFile>(path));
}

std::unique_ptr<ByteSink> packed(std::unique_ptr<ByteSink> sink, Compression compression)
{
    if (compression == Compression::Gzip)
        return std::make_unique<GzipSink>(std::move(sink));
    if (compression == Compression::Zstd)
        return std::make_unique<ZstdSink>(std::move(sink));
    return sink;
}

} // namespace

std::unique_ptr<TraceReader> TraceFile::open(const QString &path, QString *errorMessage)
{
    std::unique_ptr<ByteSource> bytes = FileBytes::open(path, errorMessage);
    return bytes ? open(std::move(bytes), path, errorMessage) : nullptr;
}

std::unique_ptr<TraceReader> TraceFile::open(std::unique_ptr<ByteSource> bytes, const QString &name,
                                             QString *errorMessage)
{
    return readerOf(unpacked(std::move(bytes)), name, errorMessage);
}

size_t TraceFile::expectedFrames(const QString &path, const TraceReader &reader)
{
    const QFileInfo file(path);
    if (!file.isFile() || TraceFormats::ofName(path).compression != Compression::None)
        return 0;
    return static_cast<size_t>(file.size() / reader.bytesPerFrame());
}

std::optional<Trace> TraceFile::load(const QString &path, const Limits &limits, QString *errorMessage)
{
    const std::unique_ptr<TraceReader> reader = open(path, errorMessage);
    if (!reader)
        return std::nullopt;
    return load(reader.get(), limits, expectedFrames(path, *reader));
}

Trace TraceFile::load(TraceReader *reader, const Limits &limits, size_t expectedFrames)
{
    Trace trace;
    trace.frames.reserve(std::min(expectedFrames, limits.frames));
    TraceFrame frame;
    for (TraceReader::Step step = reader->next(&frame); step != TraceReader::Step::End;
         step = reader->next(&frame)) {
        if (step == TraceReader::Step::Problem) {
            ++trace.unread;
            if (trace.problems.size() < static_cast<size_t>(limits.problems))
                trace.problems.push_back(reader->problem());
            continue;
        }
        if (trace.frames.size() >= limits.frames) {
            trace.missing = MissingFrames::Newest;
            break;
        }
        trace.frames.push_back(frame);
    }
    trace.head = reader->head();
    return trace;
}

std::unique_ptr<TraceWriter> TraceFile::create(const QString &path, const TraceHead &head,
                                               QString *errorMessage, Appearance appearance,
                                               std::optional<TraceFormat> format)
{
    const TraceFormats::OfName named = TraceFormats::ofName(path);
    if (!format)
        format = path == standardStream ? TraceFormat::Candump : named.format;
    if (!format) {
        *errorMessage = TraceFilesTr::tr("The name %1 tells no format: it must end with .log, .asc, .trc, "
                                         ".pcap or .pcapng; .gz or .zst may follow.")
                            .arg(QDir::toNativeSeparators(path));
        return nullptr;
    }
    std::unique_ptr<ByteSink> sink = openSink(path, appearance, errorMessage);
    if (!sink)
        return nullptr;
    auto writer = std::make_unique<TraceWriter>(FrameEncoder::of(*format),
                                                packed(std::move(sink), named.compression));
    writer->setHead(head);
    return writer;
}

bool TraceFile::save(const QString &path, const Trace &trace, QString *errorMessage,
                     std::optional<TraceFormat> format)
{
    const std::unique_ptr<TraceWriter> writer
        = create(path, trace.head, errorMessage, Appearance::Whole, format);
    if (!writer)
        return false;
    for (const TraceFrame &frame : trace.frames)
        writer->write(frame);
    if (writer->finish())
        return true;
    *errorMessage = writer->errorString();
    return false;
}
