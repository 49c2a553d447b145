// SPDX-License-Identifier: MIT
#pragma once

#include "textreader.h"

/*! Reads PEAK's trc, versions 1.0 to 1.3, 2.0 and 2.1.
 *
 *  \code
 *  ;$FILEVERSION=2.1
 *  ;$STARTTIME=43474.5364870833                   days since 30 December 1899, of this computer's time zone
 *  ;$COLUMNS=N,O,T,B,I,d,R,L,D
 *       1      1059.900 DT 1      0300 Rx -  8    00 11 22 33 44 55 66 77        ms
 *       2      1283.231 RR 1  1C23456F Rx -  8
 *  \endcode
 *
 *  Version 1 has fixed columns and other words for the types. Events that are no frames are passed over.
 */
class TrcReader : public TextReader
{
public:
    using TextReader::TextReader;

    /*! Whether a line begins such a trace, or is a frame of one of version 1. */
    static bool isIt(TextLine line);

    int bytesPerFrame() const override { return 60; }

protected:
    Line parse(TextLine line, TraceFrame *frame) override;

private:
    /*! What stands between the number of a message and its bytes. */
    struct Cells
    {
        TextLine time;
        TextLine type;
        TextLine bus;
        TextLine id;
        TextLine direction;
        TextLine length;
    };

    void parseKeyword(TextLine line);
    void setVersion(TextLine version);
    void setStart(TextLine days);
    void setColumns(TextLine columns);
    bool takeCells(const char **at, const char *end, Cells *cells) const;
    Line parseFrame(TextLine line, const Cells &cells, const char *at, TraceFrame *frame);
    Line parseData(TextLine line, const Cells &cells, const char *at, TraceFrame *frame);
    Line setId(TextLine line, TextLine id, TraceFrame *frame);
    Line setError(const Cells &cells, TraceFrame *frame);
    Line finish(const Cells &cells, TraceFrame *frame);

    QByteArray m_columns{"NOIl"};
    qint64 m_begin = 0; // us
};
