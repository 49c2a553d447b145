// SPDX-License-Identifier: MIT
#pragma once

#include "frameparts.h"
#include "framesort.h"
#include "pdowords.h"
#include "tracebook.h"
#include "tracetext.h"
#include "transferwords.h"
#include "valuetext.h"

#include <trace/core/traceframe.h>
#include <trace/transfers/sdotransfer.h>

/*! Says frames and transfers of a trace in CANopen's words, with what a book knows of the devices. */
class TraceDecoder
{
public:
    /*! \a book must outlive it, and may go on learning. */
    explicit TraceDecoder(const TraceBook *book);
    Q_DISABLE_COPY(TraceDecoder)

    /*! What a frame carries as a PDO; null: it is none, or its mapping is not known. */
    const PdoLayout *layout(const TraceFrame &frame, std::size_t position) const;

    FrameSort sort(const TraceFrame &frame, std::size_t position) const;

    /*! A frame of no transfer, at \a position of the trace. */
    TraceText text(const TraceFrame &frame, std::size_t position) const;
    TraceText text(const SdoTransfer &transfer) const { return m_transfers.text(transfer); }

    /*! Byte by byte. \a step: of a frame of a transfer, see SdoTransfers::handle(). */
    QVector<FramePart> parts(const TraceFrame &frame, std::size_t position,
                             SdoStep step = SdoStep::None) const;

    /*! Makes all words anew: the language is another one. */
    void forgetWords() { m_pdos.forget(); }

    const TransferWords &transfers() const { return m_transfers; }
    const TraceBook &book() const { return *m_book; }

private:
    const TraceBook *m_book;
    ValueText m_values;
    PdoWords m_pdos;
    TransferWords m_transfers;
    FrameParts m_parts;
};
