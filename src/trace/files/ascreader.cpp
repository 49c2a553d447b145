// SPDX-License-Identifier: MIT
#include "ascreader.h"

#include "ascdate.h"
#include "linuxframe.h"
#include "textscan.h"
#include "timeofday.h"
#include "tracefilestr.h"

#include <system/amounts.h>

using namespace TextScan;

namespace {

constexpr qint64 farthest = 100000000000 * Microseconds::ofSecond; // some thousand years; more is no time

bool isNumber(TextLine word)
{
    quint64 value = 0;
    constexpr int most = 9;
    const char *at = word.begin;
    return takeDecimal(&at, word.end, most, &value) > 0 && at == word.end;
}

/*! "Rx", "Tx"; "TxRq", which is a frame that is only to be sent, is none. */
bool isDirection(TextLine word)
{
    return isWordOfAnyCase(word, "rx") || isWordOfAnyCase(word, "tx");
}

quint8 flagsOfDirection(TextLine direction)
{
    return isWordOfAnyCase(direction, "tx") ? TraceFrame::Sent : 0;
}

} // namespace

bool AscReader::isIt(TextLine line)
{
    const char *at = line.begin;
    const TextLine first = takeWord(&at, line.end);
    if (isWordOfAnyCase(first, "date") || isWordOfAnyCase(first, "datum"))
        return AscDate::parse(line, nullptr);
    if (isWordOfAnyCase(first, "base")) {
        const TextLine base = takeWord(&at, line.end);
        return isWordOfAnyCase(base, "hex") || isWordOfAnyCase(base, "dec");
    }
    AscReader reader(std::make_unique<MemoryBytes>(QByteArray()));
    TraceFrame frame;
    const Line what = reader.parse(line, &frame);
    return what == Line::Frame || what == Line::Wrong;
}

TextReader::Line AscReader::parse(TextLine line, TraceFrame *frame)
{
    const char *at = line.begin;
    skipBlanks(&at, line.end);
    if (at == line.end)
        return Line::Nothing;
    const char *p = at;
    qint64 time = 0;
    if (!takeFixed(&p, line.end, Microseconds::ofSecond, &time))
        return parseHead(line, at);
    if (p == line.end || !isBlank(*p))
        return notUnderstood(line);
    const qint64 since = m_isRelative ? m_last + time : time;
    if (since < -farthest || since > farthest)
        return notUnderstood(line);
    m_last = since;
    frame->time = m_begin + since;
    return parseEvent(line, p, frame);
}

TextReader::Line AscReader::parseHead(TextLine line, const char *at)
{
    const TextLine first = takeWord(&at, line.end);
    if (isWordOfAnyCase(first, "date") || isWordOfAnyCase(first, "datum"))
        return parseDate(line, at);
    if (isWordOfAnyCase(first, "base"))
        return parseBase(line, at);
    if (isWordOfAnyCase(first, "begin"))
        return m_hasDate ? Line::Nothing : parseDate(line, at);
    if (isWordOfAnyCase(first, "end") || isWordOfAnyCase(first, "no") || isWordOfAnyCase(first, "internal")
        || (first.size() >= 2 && first.begin[0] == '/' && first.begin[1] == '/'))
        return Line::Nothing;
    return notUnderstood(line);
}

/*! "base hex  timestamps absolute" */
TextReader::Line AscReader::parseBase(TextLine line, const char *at)
{
    const TextLine base = takeWord(&at, line.end);
    m_isHex = !isWordOfAnyCase(base, "dec");
    takeWord(&at, line.end);
    m_isRelative = isWordOfAnyCase(takeWord(&at, line.end), "relative");
    return Line::Nothing;
}

TextReader::Line AscReader::parseDate(TextLine line, const char *at)
{
    qint64 begin = 0;
    if (!AscDate::parse({at, line.end}, &begin)) {
        return wrong(TraceFilesTr::tr("This date is not understood, so times begin with the trace: \"%1\".")
                         .arg(excerpt(line)));
    }
    m_hasDate = true;
    headToFill()->hasTimeOfDay = TimeOfDay::isOne(begin);
    m_begin = TimeOfDay::isOne(begin) ? begin : 0;
    return Line::Nothing;
}

TextReader::Line AscReader::parseEvent(TextLine line, const char *at, TraceFrame *frame)
{
    const TextLine channel = takeWord(&at, line.end);
    if (isWord(channel, "CANFD"))
        return parseFlexible(line, at, frame);
    if (!isNumber(channel))
        return Line::Nothing;
    const TextLine id = takeWord(&at, line.end);
    if (isWordOfAnyCase(id, "errorframe")) {
        frame->flags = TraceFrame::Error;
        frame->id = LinuxFrame::busError;
        frame->length = TraceFrame::mostBytes;
        return setChannel(channel, frame);
    }
    const TextLine direction = takeWord(&at, line.end);
    if (!isDirection(direction))
        return id.size() > 0 ? Line::Nothing : notUnderstood(line);
    frame->flags = flagsOfDirection(direction);
    const Line what = parseFrame(line, id, at, frame);
    return what == Line::Frame ? setChannel(channel, frame) : what;
}

/*! "d 8 00 11 22 33 44 55 66 77", and more that is known anyway */
TextReader::Line AscReader::parseFrame(TextLine line, TextLine id, const char *at, TraceFrame *frame)
{
    const Line what = setId(line, id, frame);
    if (what != Line::Frame)
        return what;
    const TextLine kind = takeWord(&at, line.end);
    if (isWordOfAnyCase(kind, "r")) {
        frame->flags |= TraceFrame::Remote;
        takeByte(&at, line.end, m_isHex, &frame->length); // older ones have none
        return frame->length <= TraceFrame::mostBytes ? Line::Frame : notUnderstood(line);
    }
    return isWordOfAnyCase(kind, "d") ? parseData(line, at, frame) : notUnderstood(line);
}

TextReader::Line AscReader::parseData(TextLine line, const char *at, TraceFrame *frame)
{
    if (!takeByte(&at, line.end, m_isHex, &frame->length))
        return notUnderstood(line);
    // A length on the wire of 9 to 15 means eight bytes.
    constexpr quint8 longestCode = 15;
    if (frame->length > longestCode)
        return notUnderstood(line);
    if (frame->length > TraceFrame::mostBytes)
        frame->length = TraceFrame::mostBytes;
    for (size_t i = 0; i < frame->length; ++i) {
        if (!takeByte(&at, line.end, m_isHex, &frame->bytes[i]))
            return notUnderstood(line);
    }
    return Line::Frame;
}

/*! "1 Rx 123 Name 0 0 8 8 00 11 ... duration bits flags": loggers for CAN FD write classic frames like this, too. The name
 *  can be left out. All numbers but lengths and flags are hexadecimal.
 */
TextReader::Line AscReader::parseFlexible(TextLine line, const char *at, TraceFrame *frame)
{
    const TextLine channel = takeWord(&at, line.end);
    const TextLine direction = takeWord(&at, line.end);
    const TextLine id = takeWord(&at, line.end);
    if (!isNumber(channel))
        return notUnderstood(line);
    if (!isDirection(direction) || isWordOfAnyCase(id, "errorframe"))
        return Line::Nothing;
    frame->flags = flagsOfDirection(direction);
    Line what = setId(line, id, frame);
    if (what != Line::Frame)
        return what;
    const char *p = at;
    if (!isNumber(takeWord(&p, line.end)))
        at = p;
    what = parseFlexibleData(line, at, frame);
    return what == Line::Frame ? setChannel(channel, frame) : what;
}

TextReader::Line AscReader::parseFlexibleData(TextLine line, const char *at, TraceFrame *frame)
{
    constexpr quint32 flexibleFlag = 0x1000;
    constexpr quint32 remoteFlag = 0x10;
    const bool hasBitRateSwitch = isWord(takeWord(&at, line.end), "1");
    takeWord(&at, line.end); // error state
    takeWord(&at, line.end); // length code
    quint8 length = 0;
    if (!takeByte(&at, line.end, false, &length))
        return notUnderstood(line);
    if (length > TraceFrame::mostBytes || hasBitRateSwitch)
        return flexibleDataRate();
    for (size_t i = 0; i < length; ++i) {
        if (!takeByte(&at, line.end, true, &frame->bytes[i]))
            return notUnderstood(line);
    }
    takeWord(&at, line.end); // duration
    takeWord(&at, line.end); // bits
    skipBlanks(&at, line.end);
    quint32 flags = 0;
    // Without flags nobody knows, and what is written like this is of CAN FD.
    if (takeHex(&at, line.end, &flags) == 0 || (flags & flexibleFlag) != 0)
        return flexibleDataRate();
    frame->length = length;
    if ((flags & remoteFlag) != 0) {
        frame->flags |= TraceFrame::Remote;
        frame->bytes = {};
    }
    return Line::Frame;
}

TextReader::Line AscReader::setId(TextLine line, TextLine id, TraceFrame *frame)
{
    const bool isExtended = id.size() > 1 && (*(id.end - 1) == 'x' || *(id.end - 1) == 'X');
    if (isExtended)
        --id.end;
    if (!takeNumber(id, &frame->id))
        return notUnderstood(line);
    if (isExtended)
        frame->flags |= TraceFrame::Extended;
    return frame->id <= (isExtended ? TraceFrame::highestExtendedId : TraceFrame::highestStandardId)
               ? Line::Frame
               : tooLargeId();
}

TextReader::Line AscReader::setChannel(TextLine channel, TraceFrame *frame)
{
    const int position = channelOf(channel.begin, channel.end);
    if (position < 0)
        return tooManyChannels();
    frame->channel = static_cast<quint8>(position);
    return Line::Frame;
}

bool AscReader::takeNumber(TextLine word, quint32 *number) const
{
    const char *at = word.begin;
    if (m_isHex)
        return takeHex(&at, word.end, number) > 0 && at == word.end;
    constexpr int mostDigits = 9; // 2^29 has nine
    quint64 value = 0;
    if (takeDecimal(&at, word.end, mostDigits, &value) == 0 || at != word.end)
        return false;
    *number = static_cast<quint32>(value);
    return true;
}
