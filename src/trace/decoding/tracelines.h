// SPDX-License-Identifier: MIT
#pragma once

#include "kepttransfers.h"
#include "tracedecoder.h"
#include "tracefilter.h"

#include <trace/core/traceframe.h>
#include <trace/transfers/sdotransfers.h>

#include <QCoreApplication>

#include <optional>
#include <vector>

class TextSearch;

/*! One line of a trace's list: a whole SDO transfer, or a frame of none. Its words are made when it is shown. */
struct TraceLine
{
    quint32 frame = 0;    //!< position of the frame; of a transfer its first one
    quint32 transfer = 0; //!< its number; 0: a single frame
    quint8 nodeId = 0;    //!< see FrameSort
    FrameKind kind = FrameKind::Other;
    TraceMark mark = TraceMark::Plain;
    quint8 channel = 0;
};
static_assert(sizeof(TraceLine) == 12, "a million of them take 12 MB");

/*! The lines of a trace, in the order in which they begin. Times in us, positions from 0. */
class TraceLines
{
    Q_DECLARE_TR_FUNCTIONS(TraceLines)

public:
    /*! No more frames are taken: positions have 32 bits. */
    static constexpr std::size_t mostFrames = 0x7FFFFFFF;

    /*! \a frames may grow, and \a book learns from their transfers; both must outlive the lines. */
    TraceLines(const std::vector<TraceFrame> *frames, TraceBook *book);

    /*! Takes frames that have come, \a most at once. Whether there are more. */
    bool advance(std::size_t most = mostFrames);
    /*! No more frames will come: what is under way ends here. */
    void close();
    /*! Sorts lines again if something was learnt of PDOs that came earlier, \a most at once. Whether there are more. */
    bool refresh(std::size_t most = mostFrames);
    /*! Both, with all lines. */
    void finish();

    std::size_t size() const { return m_lines.size(); }
    const TraceLine &at(std::size_t row) const { return m_lines[row]; }
    /*! Of its first frame. */
    qint64 time(std::size_t row) const { return (*m_frames)[m_lines[row].frame].time; }
    TraceText text(std::size_t row) const;
    /*! The language is another one. */
    void forgetWords() { m_decoder.forgetWords(); }

    /*! The transfer of a line; empty for single frames, and while it is under way. */
    std::optional<SdoTransfer> transfer(std::size_t row) const;
    /*! Positions of all frames of a line. */
    std::vector<std::size_t> frames(std::size_t row) const;
    /*! Each frame of a line byte by byte, in the order of frames(); of the first \a most frames. */
    std::vector<QVector<FramePart>> parts(std::size_t row, std::size_t most = mostFrames) const;

    /*! The line that a frame stands in. */
    std::size_t rowOfFrame(std::size_t position) const;
    /*! The first line that is not earlier than \a time; size() when there is none. */
    std::size_t rowAt(qint64 time) const;

    bool fits(std::size_t row, const TraceFilter &filter) const;
    /*! The rows from \a first to before \a end that fit; what lies beyond size() does not count. */
    std::vector<quint32> filtered(const TraceFilter &filter, std::size_t first = 0,
                                  std::size_t end = mostFrames) const;
    /*! The same for who looks at some at a time, and keeps \a search, which is for the filter's text. */
    std::vector<quint32> filtered(const TraceFilter &filter, TextSearch *search, std::size_t first,
                                  std::size_t end) const;

    const TraceDecoder &decoder() const { return m_decoder; }

private:
    void take(const TraceFrame &frame, std::size_t position);
    void keepFinished();
    bool fitsObjects(const TraceLine &line, const TraceFilter &filter) const;
    bool holds(std::size_t row, TextSearch *search) const;

    const std::vector<TraceFrame> *m_frames;
    TraceBook *m_book;
    TraceDecoder m_decoder;
    SdoTransfers m_following;
    KeptTransfers m_transfers;
    std::vector<TraceLine> m_lines;
    std::vector<quint32> m_transferOf;   // of each frame; 0: none
    quint32 m_begun = 0;                 // number of the last transfer that has begun
    int m_sorted = 0;                    // revision of the book by which the lines are sorted, or will be
    std::optional<std::size_t> m_toSort; // the next line that is sorted again; empty: none
};
