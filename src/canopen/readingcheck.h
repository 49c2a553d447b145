// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace CanOpen {

/*! Decides when an object that came in segments can be believed.
 *
 *  One reading alone may hold segments that the line brought late, twice or from elsewhere. So two readings
 *  have to agree. A device whose frames come neither late nor twice costs just that; in trouble a reading counts
 *  only when no copy can have been among its segments.
 *
 *  | Line         | Reading                                | What it takes                                    |
 *  |--------------|----------------------------------------|--------------------------------------------------|
 *  | no trouble   | block transfer with a right CRC        | one                                              |
 *  | no trouble   | no segment known from elsewhere        | two that agree                                   |
 *  | no trouble   | segments equal to those of other reads | three that agree                                 |
 *  | no trouble   | every reading gives something else     | silence after the fourth: nothing is left over   |
 *  | trouble      | one segment                            | two that agree, the first begun on a clear line  |
 *  | trouble      | one segment, and it always changes     | begun on a clear line, and silence after it      |
 *  | trouble      | several segments, or the node babbles  | two that agree, each begun on a clear line       |
 *  | trouble      | segments that may be babble, or two of | does not count                                   |
 *  |              | them the same                          |                                                  |
 *
 *  The first reading always begins on a clear line (SegmentMemory); the caller sees to it.
 */
class ReadingCheck
{
public:
    /*! Readings without agreement before silence decides. */
    static constexpr int maximumReadings = 4;

    enum class Verdict {
        Believe,
        ReadAgain,
        ReadWhenClear, //!< read again after the line has become clear of this reading
        Listen,        //!< believe it if nothing unknown comes until the line is clear of it
    };

    struct Reading
    {
        QByteArray data;
        int segments = 0;
        bool begunClear = false;  // on a clear line
        bool isKnown = false;     // a segment was also seen elsewhere
        bool isBabble = false;    // a segment may have come without having been asked for
        bool isRepeating = false; // two segments of it are the same
        bool hasCrc = false;      // and it was right
    };

    /*! Begins with a new object. */
    void reset() { *this = ReadingCheck(); }

    /*! Forgets the readings that agree. */
    void breakOff() { m_agreeing = 0; }

    /*! \a isBabbling: segments came that neither were asked for nor are copies. */
    Verdict take(const Reading &reading, bool isTroubled, bool isBabbling);

    /*! Whether the last reading is the first of those that agree. */
    bool isFirst() const { return m_agreeing == 1; }

private:
    Verdict judgeInTrouble(const Reading &reading, bool isBabbling);

    QByteArray m_data;      // of the last reading
    int m_readings = 0;     // in all
    int m_agreeing = 0;     // the last ones, the first of them begun on a clear line
    int m_changes = 0;      // times that a reading differed from the one before
    bool m_isKnown = false; // of one of those that agree
};

} // namespace CanOpen
