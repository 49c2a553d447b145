// SPDX-License-Identifier: MIT
#include "beginning.h"

#include "ascreader.h"
#include "candumpreader.h"
#include "trcreader.h"

namespace {

constexpr int magicSize = 4;
constexpr int mostBytes = 1024 * 1024;
constexpr int mostLines = 100; // that nobody knows, before a text is none of ours
constexpr int readAtOnce = 8 * 1024;

std::optional<TraceFormat> formatOf(TextLine line)
{
    // A candump log is asked for first: it is the most frequent one, and nothing else looks like it.
    if (CandumpReader::isFrame(line))
        return TraceFormat::Candump;
    if (TrcReader::isIt(line))
        return TraceFormat::Trc21;
    if (AscReader::isIt(line))
        return TraceFormat::Asc;
    return std::nullopt;
}

} // namespace

bool Beginning::readMore()
{
    if (m_hasEnded || m_bytes.size() >= mostBytes)
        return false;
    const int size = m_bytes.size();
    m_bytes.resize(size + readAtOnce);
    const qint64 count = m_source->read(m_bytes.data() + size, readAtOnce);
    m_hasEnded = count <= 0;
    m_bytes.resize(size + static_cast<int>(count > 0 ? count : 0));
    return count > 0;
}

QByteArray Beginning::magic()
{
    while (m_bytes.size() < magicSize && readMore()) {
    }
    return m_bytes.left(magicSize);
}

Compression Beginning::compression()
{
    const QByteArray first = magic();
    if (first.startsWith("\x1F\x8B"))
        return Compression::Gzip;
    return first == "\x28\xB5\x2F\xFD" ? Compression::Zstd : Compression::None;
}

/*! Of the line that begins at \a at; -1 when it is not there. */
int Beginning::endOfLine(int at)
{
    for (;;) {
        const int end = m_bytes.indexOf('\n', at);
        at = m_bytes.size();
        if (end >= 0 || !readMore())
            return end;
    }
}

std::optional<TraceFormat> Beginning::textFormat()
{
    dropByteOrderMark();
    int at = 0;
    for (int lines = 0; lines < mostLines; ++lines) {
        const int end = endOfLine(at);
        const bool isLast = end < 0;
        const QByteArray line = m_bytes.mid(at, isLast ? -1 : end - at).trimmed();
        if (line.contains('\0'))
            return std::nullopt;
        if (const auto format = formatOf({line.constBegin(), line.constEnd()}))
            return format;
        if (isLast)
            return std::nullopt;
        at = end + 1;
    }
    return std::nullopt;
}

void Beginning::dropByteOrderMark()
{
    const QByteArray mark = QByteArrayLiteral("\xEF\xBB\xBF");
    magic();
    if (m_bytes.startsWith(mark))
        m_bytes.remove(0, mark.size());
}

std::unique_ptr<ByteSource> Beginning::takeAll()
{
    return std::make_unique<PrefixedBytes>(m_bytes, std::move(m_source));
}
