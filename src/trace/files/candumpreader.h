// SPDX-License-Identifier: MIT
#pragma once

#include "textreader.h"

#include <array>

/*! Reads what candump of can-utils prints: its log (options -l and -L), and its screen.
 *
 *  \code
 *  (1436509052.249713) can0 123#11223344              a frame; " R" or " T" may follow: received, sent
 *  (1436509052.449713) can0 1C23456F#R8               a remote frame of 29 bits that asks for eight bytes
 *  (1436509053.850870) can0 20000088#0000801900000000 an error frame
 *   (003.249713)  can0  RX - -  123   [4]  11 22 33 44   '."3D'
 *  \endcode
 *
 *  On the screen the first column and the third can be left out; times with a date are of this computer's time zone.
 */
class CandumpReader : public TextReader
{
public:
    using TextReader::TextReader;

    /*! Whether a line is a frame of such a trace. */
    static bool isFrame(TextLine line);

    int bytesPerFrame() const override { return 40; }

protected:
    const char *parseUsual(TextLine rest, TraceFrame *frame) override;
    Line parse(TextLine line, TraceFrame *frame) override;

private:
    Line parseFrame(TextLine line, const char *at, TraceFrame *frame);
    Line parseLog(TextLine line, const char *at, TraceFrame *frame);
    Line parseData(TextLine line, const char *at, TraceFrame *frame);
    Line parseRemote(TextLine line, const char *at, TraceFrame *frame);
    Line parseTail(TextLine line, const char *at, TraceFrame *frame);
    Line parseScreen(TextLine line, const char *at, TraceFrame *frame);
    Line parseColumns(TextLine line, const char *at, TraceFrame *frame);
    Line setId(TextLine line, int digits, quint32 id, TraceFrame *frame);
    bool takeTime(const char **at, const char *end, qint64 *time);
    bool takeUsualTime(const char **at, const char *end, qint64 *time);
    bool takeDate(const char **at, const char *end, qint64 *time);
    bool findHour(const char *begin);

    bool m_isTimeOfDayKnown = false;
    std::array<char, 11> m_second{}; // "(1436509052", which most lines have in common with the one before
    qint64 m_secondTime = 0;         // us
    QByteArray m_channel;            // " can0 ", the first one, as it stands in most lines
    QByteArray m_hour;               // "2015-07-10 08", whose beginning is
    qint64 m_hourBegin = 0;
};
