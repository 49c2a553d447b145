// SPDX-License-Identifier: MIT
#pragma once

#include "textreader.h"

/*! Reads Vector's asc.
 *
 *  \code
 *  date Fri Jul 10 08:37:32.249 am 2015
 *  base hex  timestamps absolute
 *  Begin Triggerblock Fri Jul 10 08:37:32.249 am 2015
 *     0.000000 Start of measurement
 *     0.015991 1  123             Rx   d 8 00 11 22 33 44 55 66 77
 *     0.016991 1  18EBFF00x       Tx   r 8                             a remote frame of 29 bits
 *     0.017991 2  ErrorFrame
 *     0.018991 CANFD   1 Rx   123  Name 0 0 8 8 00 11 22 33 44 55 66 77  130000 130 0
 *  End TriggerBlock
 *  \endcode
 *
 *  The date is of this computer's time zone, in English or German. Events that are no frames are passed over.
 */
class AscReader : public TextReader
{
public:
    using TextReader::TextReader;

    /*! Whether a line begins such a trace, or is a frame of one. */
    static bool isIt(TextLine line);

    int bytesPerFrame() const override { return 60; }

protected:
    Line parse(TextLine line, TraceFrame *frame) override;

private:
    Line parseHead(TextLine line, const char *at);
    Line parseBase(TextLine line, const char *at);
    Line parseDate(TextLine line, const char *at);
    Line parseEvent(TextLine line, const char *at, TraceFrame *frame);
    Line parseFrame(TextLine line, TextLine id, const char *at, TraceFrame *frame);
    Line parseData(TextLine line, const char *at, TraceFrame *frame);
    Line parseFlexible(TextLine line, const char *at, TraceFrame *frame);
    Line parseFlexibleData(TextLine line, const char *at, TraceFrame *frame);
    Line setId(TextLine line, TextLine id, TraceFrame *frame);
    Line setChannel(TextLine channel, TraceFrame *frame);
    bool takeNumber(TextLine word, quint32 *number) const;

    bool m_isHex = true;
    bool m_isRelative = false;
    bool m_hasDate = false;
    qint64 m_begin = 0; // us; of the measurement
    qint64 m_last = 0;  // us since the beginning
};
