// SPDX-License-Identifier: MIT
#include "livetrace.h"

#include <set>

namespace {

constexpr quint16 firstMapping = 0x1400; // PDO parameters, CiA 301
constexpr quint16 lastMapping = 0x1BFF;
constexpr int mostBytes = 4; // of such a value

quint32 numberOf(const QByteArray &data)
{
    quint32 number = 0;
    for (int i = std::min(data.size(), mostBytes) - 1; i >= 0; --i)
        number = number << 8 | static_cast<quint8>(data.at(i));
    return number;
}

std::size_t withReserve(std::size_t frames)
{
    return frames + frames / 8;
}

} // namespace

LiveTrace::LiveTrace(std::size_t most)
    : m_most(most)
{
    begin(TraceHead());
}

void LiveTrace::begin(const TraceHead &head)
{
    m_document = std::make_shared<TraceDocument>();
    m_document->trace.head = head;
    m_next.reset();
    m_mappings.clear();
}

void LiveTrace::add(const TraceFrame &frame)
{
    m_document->trace.frames.push_back(frame);
    if (m_next)
        m_next->trace.frames.push_back(frame);
    else if (m_document->trace.frames.size() >= m_most)
        beginNext();
}

void LiveTrace::beginNext()
{
    const std::vector<TraceFrame> &frames = m_document->trace.frames;
    m_nextBegin = frames.size() / 2;
    m_next = std::make_shared<TraceDocument>();
    m_next->trace.head = m_document->trace.head;
    m_next->trace.missing = MissingFrames::Oldest;
    m_next->trace.frames.reserve(withReserve(m_most)); // once, and not bit by bit while the bus is busy
    m_next->trace.frames.assign(frames.begin() + static_cast<std::ptrdiff_t>(m_nextBegin), frames.end());
    rememberMappings(m_nextBegin);
    tell(m_next.get(), m_document->devices);
}

/*! Of the transfers that begin in the first frames: their lines leave, what they told of PDOs stays true. */
void LiveTrace::rememberMappings(std::size_t frames)
{
    const TraceLines &lines = m_document->lines;
    for (std::size_t row = 0; row < lines.size() && lines.at(row).frame < frames; ++row) {
        if (lines.at(row).transfer == 0)
            continue;
        const std::optional<SdoTransfer> transfer = lines.transfer(row);
        if (!transfer || !transfer->hasValue() || transfer->data.size() > mostBytes
            || transfer->object.index < firstMapping || transfer->object.index > lastMapping)
            continue;
        m_mappings[{transfer->nodeId, transfer->object}] = numberOf(transfer->data);
    }
}

void LiveTrace::tell(const TraceDevices &devices)
{
    for (TraceDocument *document : {m_document.get(), m_next.get()}) {
        if (document != nullptr)
            tell(document, devices);
    }
}

/*! What frames that have left told counts more, so it comes last. */
void LiveTrace::tell(TraceDocument *document, const TraceDevices &devices) const
{
    document->devices.add(devices);
    document->book.tell(devices);
    std::set<quint8> nodes;
    for (const auto &known : m_mappings)
        nodes.insert(known.first.first);
    for (const quint8 nodeId : nodes) {
        document->book.tell(nodeId, [this, nodeId](CanOpen::ObjectKey object) -> std::optional<quint32> {
            const auto known = m_mappings.find({nodeId, object});
            return known != m_mappings.end() ? std::optional<quint32>(known->second) : std::nullopt;
        });
    }
}

bool LiveTrace::advance(std::size_t most)
{
    const bool isMore = m_document->lines.advance(most);
    return advanceNext(most) || isMore;
}

bool LiveTrace::advanceNext(std::size_t most)
{
    if (!m_next)
        return false;
    if (m_next->lines.advance(most))
        return true;
    m_document = std::move(m_next);
    return false;
}
