// SPDX-License-Identifier: MIT
#include "tracelines.h"

#include "framewords.h"
#include "textsearch.h"

#include <canopen/sdoframe.h>

#include <algorithm>

using CanOpen::ObjectKey;

namespace {

/*! Of the frame's own bytes. */
QByteArray payloadView(const TraceFrame &frame)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(frame.bytes.data()), frame.length);
}

TraceLine lineOf(std::size_t position, quint32 transfer, quint8 channel, const FrameSort &sort)
{
    return {static_cast<quint32>(position), transfer, sort.nodeId, sort.kind, sort.mark, channel};
}

FrameSort sortOf(const TraceLine &line)
{
    return {line.kind, line.nodeId, line.mark};
}

} // namespace

TraceLines::TraceLines(const std::vector<TraceFrame> *frames, TraceBook *book)
    : m_frames(frames)
    , m_book(book)
    , m_decoder(book)
{
}

bool TraceLines::advance(std::size_t most)
{
    const std::size_t there = std::min(m_frames->size(), mostFrames);
    const std::size_t end = m_transferOf.size() + std::min(most, there - m_transferOf.size());
    for (std::size_t position = m_transferOf.size(); position < end; ++position)
        take((*m_frames)[position], position);
    return end < there;
}

void TraceLines::take(const TraceFrame &frame, std::size_t position)
{
    const quint32 number = m_following.handle(frame, position).transfer;
    const bool isFirst = number > m_begun;
    m_transferOf.push_back(number);
    if (isFirst) {
        m_begun = number;
        const ObjectKey object = CanOpen::sdoKeyOf(payloadView(frame));
        m_transfers.begin(number, position, object);
        m_lines.push_back(lineOf(position, number, frame.channel,
                                 {FrameKind::Sdo, frameNodeOf(frame.id), TraceMark::Plain}));
    } else if (number == 0) {
        m_lines.push_back(lineOf(position, 0, frame.channel, m_decoder.sort(frame, position)));
    }
    if (m_following.hasFinished())
        keepFinished();
}

void TraceLines::keepFinished()
{
    for (const SdoTransfer &transfer : m_following.takeFinished()) {
        m_book->learn(transfer);
        m_transfers.keep(transfer);
        m_lines[rowOfFrame(transfer.firstFrame)].mark = FrameSort::of(transfer).mark;
    }
}

void TraceLines::close()
{
    advance();
    m_following.finish();
    keepFinished();
}

void TraceLines::finish()
{
    close();
    refresh();
}

bool TraceLines::refresh(std::size_t most)
{
    if (m_sorted != m_book->pdos().revision())
        m_toSort = 0;
    m_sorted = m_book->pdos().revision();
    if (!m_toSort)
        return false;
    const std::size_t end = *m_toSort + std::min(most, m_lines.size() - *m_toSort);
    for (std::size_t row = *m_toSort; row < end; ++row) {
        TraceLine &line = m_lines[row];
        if (line.transfer == 0)
            line = lineOf(line.frame, 0, line.channel, m_decoder.sort((*m_frames)[line.frame], line.frame));
    }
    m_toSort = end < m_lines.size() ? std::optional<std::size_t>(end) : std::nullopt;
    return m_toSort.has_value();
}

TraceText TraceLines::text(std::size_t row) const
{
    const TraceLine &line = m_lines[row];
    if (line.transfer == 0)
        return m_decoder.text((*m_frames)[line.frame], line.frame);
    const std::optional<SdoTransfer> transfer = m_transfers.find(line.transfer);
    if (transfer)
        return m_decoder.text(*transfer);
    return {line.mark, tr("%1, under way").arg(FrameWords::sdoCommand((*m_frames)[line.frame])), QString()};
}

std::optional<SdoTransfer> TraceLines::transfer(std::size_t row) const
{
    return m_transfers.find(m_lines[row].transfer);
}

std::vector<std::size_t> TraceLines::frames(std::size_t row) const
{
    const TraceLine &line = m_lines[row];
    std::vector<std::size_t> positions{line.frame};
    if (line.transfer == 0)
        return positions;
    const std::optional<SdoTransfer> transfer = m_transfers.find(line.transfer);
    const std::size_t last = transfer ? transfer->lastFrame : m_transferOf.size() - 1;
    for (std::size_t position = line.frame + std::size_t(1); position <= last; ++position) {
        if (m_transferOf[position] == line.transfer)
            positions.push_back(position);
    }
    return positions;
}

std::vector<QVector<FramePart>> TraceLines::parts(std::size_t row, std::size_t most) const
{
    const TraceLine &line = m_lines[row];
    std::vector<QVector<FramePart>> parts;
    SdoTransfers alone; // the frames of one transfer tell their steps again
    for (const std::size_t position : frames(row)) {
        if (parts.size() == most)
            break;
        const TraceFrame &frame = (*m_frames)[position];
        const SdoStep step = line.transfer == 0 ? SdoStep::None : alone.handle(frame, position).step;
        parts.push_back(m_decoder.parts(frame, position, step));
    }
    return parts;
}

std::size_t TraceLines::rowOfFrame(std::size_t position) const
{
    const quint32 transfer = position < m_transferOf.size() ? m_transferOf[position] : 0;
    const std::size_t frame = transfer != 0 ? m_transfers.firstFrame(transfer) : position;
    const auto line
        = std::lower_bound(m_lines.begin(), m_lines.end(), frame,
                           [](const TraceLine &known, std::size_t wanted) { return known.frame < wanted; });
    return static_cast<std::size_t>(line - m_lines.begin());
}

std::size_t TraceLines::rowAt(qint64 time) const
{
    // Times may run backward, so there is no order to search in.
    const auto line = std::find_if(m_lines.begin(), m_lines.end(), [this, time](const TraceLine &known) {
        return (*m_frames)[known.frame].time >= time;
    });
    return static_cast<std::size_t>(line - m_lines.begin());
}

bool TraceLines::fitsObjects(const TraceLine &line, const TraceFilter &filter) const
{
    if (filter.objects.isEmpty())
        return true;
    const TraceFrame &frame = (*m_frames)[line.frame];
    if (line.transfer != 0)
        return filter.fitsObject(m_transfers.object(line.transfer));
    return line.kind == FrameKind::Pdo && filter.fitsObjects(m_decoder.layout(frame, line.frame));
}

bool TraceLines::holds(std::size_t row, TextSearch *search) const
{
    const TraceLine &line = m_lines[row];
    const TraceFrame &frame = (*m_frames)[line.frame];
    const auto words = [this, row] { return text(row).text; };
    if (line.transfer == 0)
        return search->isIn(TextSearch::keyOf(frame, m_decoder.layout(frame, line.frame)), words);
    const std::optional<SdoTransfer> transfer = m_transfers.find(line.transfer);
    return search->isIn(transfer ? TextSearch::keyOf(*transfer) : std::nullopt, words);
}

bool TraceLines::fits(std::size_t row, const TraceFilter &filter) const
{
    const TraceLine &line = m_lines[row];
    return filter.fits(sortOf(line), line.channel) && fitsObjects(line, filter)
           && (filter.text.isEmpty() || filter.fitsText(text(row).text));
}

std::vector<quint32> TraceLines::filtered(const TraceFilter &filter, std::size_t first, std::size_t end) const
{
    TextSearch search(filter.text);
    return filtered(filter, &search, first, end);
}

std::vector<quint32> TraceLines::filtered(const TraceFilter &filter, TextSearch *search, std::size_t first,
                                          std::size_t end) const
{
    TraceFilter others = filter;
    others.text.clear();
    std::vector<quint32> rows;
    for (std::size_t row = first; row < std::min(end, m_lines.size()); ++row) {
        if (fits(row, others) && (filter.text.isEmpty() || holds(row, search)))
            rows.push_back(static_cast<quint32>(row));
    }
    return rows;
}
