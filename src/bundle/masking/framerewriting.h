// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/traceframe.h>
#include <trace/transfers/sdotransfers.h>

#include <canopen/objectkey.h>

#include <QByteArray>
#include <QHash>

class Masking;

/*! Puts other values into the frames of SDO transfers: expedited ones, segments and blocks with their checksums. */
class FrameRewriting
{
public:
    /*! \a masking must outlive it. */
    explicit FrameRewriting(Masking *masking)
        : m_masking(masking)
    {
    }

    /*! The value of a transfer is another one. Before its first frame. */
    void expect(const SdoTransfer &transfer, const QByteArray &masked);

    /*! Every SDO frame in the order of the trace, with its place in the transfers. */
    void rewrite(TraceFrame *frame, const SdoTransfers::Place &place);

private:
    struct Rewritten
    {
        QByteArray original;
        QByteArray masked;
        int done = 0;    // bytes of the segments so far
        int blockAt = 0; // bytes before the block
        TraceFrame last; // segment, as it was
        int lastAt = 0;  // where it began
    };

    void rewriteInitiate(TraceFrame *frame);
    void rewriteStray(TraceFrame *frame);
    static void rewriteSegment(TraceFrame *frame, Rewritten *transfer);
    static void rewriteBlockSegment(TraceFrame *frame, Rewritten *transfer);
    static void acknowledge(const TraceFrame &frame, Rewritten *transfer);
    static void rewriteChecksum(TraceFrame *frame, const Rewritten &transfer);
    static void put(TraceFrame *frame, int size, int at, const Rewritten &transfer);

    Masking *m_masking;
    QHash<quint32, Rewritten> m_transfers; // by number
};
