// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/traceframe.h>
#include <trace/transfers/sdotransfers.h>

#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

class TraceBook;

/*! A line of a trace that streams by: a whole transfer, or a frame of none. */
struct StreamedLine
{
    TraceFrame frame;         //!< of a transfer the first one
    std::size_t position = 0; //!< of that frame
    std::optional<SdoTransfer> transfer;
};

/*! Makes lines of frames that are not kept: of a trace that is longer than the memory, or that goes on. */
class LineStream
{
public:
    enum class Order : quint8 {
        AsTheyBegin, //!< a line waits until all that began before it are at their ends
        AsTheyEnd,   //!< no line waits for another
    };

    /*! So many lines wait at most; a transfer that holds them up stands where it ends. */
    static constexpr std::size_t mostWaiting = 100000;

    /*! Whole transfers teach \a book, which must outlive the stream; null: nobody, since they have done so before. */
    LineStream(TraceBook *book, Order order)
        : m_book(book)
        , m_order(order)
    {
    }

    void handle(const TraceFrame &frame);
    /*! The end: what is under way ends here. */
    void finish();

    /*! The lines that are ready, in their order; each once. */
    std::vector<StreamedLine> take();

private:
    struct Waiting
    {
        StreamedLine line;
        quint32 transfer; // 0: a single frame
        bool isReady;
    };

    void append(const TraceFrame &frame, quint32 transfer);
    void keepFinished();
    void place(const SdoTransfer &transfer);
    void release();

    TraceBook *m_book;
    Order m_order;
    SdoTransfers m_following;
    std::size_t m_position = 0;
    quint32 m_begun = 0;
    quint64 m_released = 0; // lines that have left m_waiting
    std::deque<Waiting> m_waiting;
    std::unordered_map<quint32, quint64>
        m_places; // of transfers under way: number of their line, all counted
    std::unordered_map<quint32, StreamedLine> m_beginnings; // of those that have no place
    std::vector<StreamedLine> m_ready;
};
