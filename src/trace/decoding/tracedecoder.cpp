// SPDX-License-Identifier: MIT
#include "tracedecoder.h"

#include "framewords.h"

namespace {

/*! A mapping may name any identifier; those of NMT commands and SDOs keep their meaning. */
bool mayBePdo(const TraceFrame &frame)
{
    if (frame.isExtended())
        return true;
    const FrameKind kind = frameKindOf(frame.id);
    return kind != FrameKind::Nmt && kind != FrameKind::Sdo;
}

} // namespace

TraceDecoder::TraceDecoder(const TraceBook *book)
    : m_book(book)
    , m_values(&book->objects())
    , m_pdos(&book->objects(), &m_values)
    , m_transfers(&book->objects(), &m_values)
    , m_parts(&book->objects(), &m_values, &m_pdos)
{
}

const PdoLayout *TraceDecoder::layout(const TraceFrame &frame, std::size_t position) const
{
    return mayBePdo(frame) ? m_book->pdos().find(frame, position) : nullptr;
}

FrameSort TraceDecoder::sort(const TraceFrame &frame, std::size_t position) const
{
    return FrameSort::of(frame, layout(frame, position));
}

TraceText TraceDecoder::text(const TraceFrame &frame, std::size_t position) const
{
    const PdoLayout *carried = layout(frame, position);
    const QString text = carried != nullptr ? m_pdos.line(frame, *carried) : FrameWords::line(frame);
    return {FrameSort::of(frame, carried).mark, text, QString()};
}

QVector<FramePart> TraceDecoder::parts(const TraceFrame &frame, std::size_t position, SdoStep step) const
{
    return m_parts.of(frame, {step, layout(frame, position)});
}
