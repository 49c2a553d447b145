// SPDX-License-Identifier: MIT
#pragma once

#include "bytesource.h"

#include <memory>
#include <vector>

/*! A line in memory, without its end; it stays until the next one is asked for. */
struct TextLine
{
    const char *begin = nullptr;
    const char *end = nullptr;

    int size() const { return static_cast<int>(end - begin); }
};

/*! Cuts a source into lines, in big blocks and without copies. Lines end with LF or CR LF. */
class LineReader
{
public:
    static constexpr qint64 longest = 16'384;

    enum class Step : quint8 {
        Line,
        TooLong, //!< a line of more than longest bytes, which is passed over
        Failed,  //!< see errorString(); the end is next
        End
    };

    explicit LineReader(std::unique_ptr<ByteSource> source);

    Step next(TextLine *line);

    /*! What is in memory from the beginning of the next line on: a part of it, or some more lines behind it. For who can tell by
     *  itself where that line ends; empty when nobody can.
     */
    TextLine rest() const
    {
        return m_isSkipping ? TextLine() : TextLine{m_room.data() + m_position, m_room.data() + m_filled};
    }
    /*! In place of next(): the line ends before \a end, which stands behind its LF in rest(). */
    void skipTo(const char *end)
    {
        m_position = static_cast<size_t>(end - m_room.data());
        m_searched = m_position;
        ++m_number;
    }

    /*! Of the line that was given last; from 1. */
    qint64 number() const { return m_number; }
    QString errorString() const { return m_source->errorString(); }

private:
    void fill();
    void setAside();
    Step give(const char *begin, const char *end, TextLine *line);
    Step giveRest(TextLine *line);

    std::unique_ptr<ByteSource> m_source;
    std::vector<char> m_room;
    size_t m_position = 0;
    size_t m_searched = 0; // no line ends before it
    size_t m_filled = 0;
    qint64 m_number = 0;
    bool m_isSkipping = false; // in a line that is too long
    bool m_hasEnded = false;
    bool m_hasFailed = false; // and it was not said yet
};
