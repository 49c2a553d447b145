// SPDX-License-Identifier: MIT
#include "trcreader.h"

#include "linuxframe.h"
#include "textscan.h"
#include "trcdate.h"
#include "trcformat.h"

#include <system/amounts.h>

#include <array>

using namespace TextScan;

namespace {

/*! What a letter of $COLUMNS stands for. Those before the bytes; a line has nothing behind them. */
namespace Column {
constexpr char number = 'N';
constexpr char time = 'O';
constexpr char type = 'T';
constexpr char bus = 'B';
constexpr char id = 'I';
constexpr char direction = 'd';
constexpr char length = 'l';     // bytes
constexpr char lengthCode = 'L'; // the same up to 8
constexpr char bytes = 'D';
} // namespace Column

struct Version
{
    const char *number;
    const char *columns;
};

constexpr Version versions[] = {
    {"1.0", "NOIl"},    {"1.1", "NOTIl"},   {"1.2", "NOBTIl"},
    {"1.3", "NOBTIRl"}, {"2.0", "NOTIdlD"}, {"2.1", "NOTBIdRLD"},
};

enum class Kind : quint8 { Data, Remote, Error, FlexibleDataRate, Event };

struct Type
{
    const char *word;
    Kind kind;
    bool isSent = false;
};

constexpr Type types[] = {
    {"Rx", Kind::Data},
    {"Tx", Kind::Data, true},
    {"DT", Kind::Data},
    {"RR", Kind::Remote},
    {"ER", Kind::Error},
    {"Error", Kind::Error},
    {"FD", Kind::FlexibleDataRate},
    {"FB", Kind::FlexibleDataRate},
    {"FE", Kind::FlexibleDataRate},
    {"BI", Kind::FlexibleDataRate},
};

Type typeOf(TextLine word)
{
    if (word.size() == 0) // version 1.0 has no types
        return {"", Kind::Data};
    for (const Type &type : types) {
        if (isWord(word, type.word))
            return type;
    }
    return {"", Kind::Event};
}

// An error frame tells the kind of the error where others have their identifier: a bit of 1, 2, 4; else 8.
constexpr quint32 knownKinds = 0x07; // bit, form, stuff: the same three bits as in byte 2 of Linux
constexpr size_t kindPlace = 2;

/*! The rest of a line that begins with \a keyword. */
bool takeKeyword(TextLine line, const char *keyword, TextLine *rest)
{
    const auto size = static_cast<int>(std::strlen(keyword));
    if (line.size() < size || std::memcmp(line.begin, keyword, static_cast<size_t>(size)) != 0)
        return false;
    *rest = {line.begin + size, line.end};
    return true;
}

} // namespace

bool TrcReader::isIt(TextLine line)
{
    TextLine rest;
    if (takeKeyword(line, ";$FILEVERSION=", &rest) || takeKeyword(line, ";---", &rest))
        return true;
    // "     1)      1059.9  Rx     0300  8  00 11"
    const char *at = line.begin;
    const TextLine number = takeWord(&at, line.end);
    qint64 time = 0;
    skipBlanks(&at, line.end);
    return number.size() > 1 && isDigit(*number.begin) && *(number.end - 1) == ')'
           && takeFixed(&at, line.end, Microseconds::ofMillisecond, &time);
}

TextReader::Line TrcReader::parse(TextLine line, TraceFrame *frame)
{
    const char *at = line.begin;
    skipBlanks(&at, line.end);
    if (at == line.end)
        return Line::Nothing;
    if (*at == ';') {
        parseKeyword({at, line.end});
        return Line::Nothing;
    }
    Cells cells;
    qint64 time = 0;
    if (!takeCells(&at, line.end, &cells))
        return notUnderstood(line);
    const char *p = cells.time.begin;
    if (!takeFixed(&p, cells.time.end, Microseconds::ofMillisecond, &time) || p != cells.time.end)
        return notUnderstood(line);
    frame->time = m_begin + time;
    return parseFrame(line, cells, at, frame);
}

void TrcReader::parseKeyword(TextLine line)
{
    TextLine rest;
    if (takeKeyword(line, ";$FILEVERSION=", &rest))
        setVersion(rest);
    else if (takeKeyword(line, ";$STARTTIME=", &rest))
        setStart(rest);
    else if (takeKeyword(line, ";$COLUMNS=", &rest))
        setColumns(rest);
}

void TrcReader::setVersion(TextLine version)
{
    const char *at = version.begin;
    const TextLine number = takeWord(&at, version.end);
    for (const Version &known : versions) {
        if (isWord(number, known.number))
            m_columns = known.columns;
    }
}

void TrcReader::setStart(TextLine days)
{
    const qint64 begin = TrcDate::parse(days);
    headToFill()->hasTimeOfDay = begin != 0;
    m_begin = begin;
}

void TrcReader::setColumns(TextLine columns)
{
    constexpr int most = 16;
    QByteArray letters;
    for (const char *p = columns.begin; p < columns.end && letters.size() < most; ++p) {
        if (*p != ',' && !isBlank(*p))
            letters += *p;
    }
    m_columns = letters;
}

bool TrcReader::takeCells(const char **at, const char *end, Cells *cells) const
{
    for (const char column : m_columns) {
        if (column == Column::bytes)
            break;
        const TextLine cell = takeWord(at, end);
        switch (column) {
        case Column::time:
            cells->time = cell;
            break;
        case Column::type:
            cells->type = cell;
            break;
        case Column::bus:
            cells->bus = cell;
            break;
        case Column::id:
            cells->id = cell;
            break;
        case Column::direction:
            cells->direction = cell;
            break;
        case Column::length:
        case Column::lengthCode:
            cells->length = cell;
            break;
        default:
            break;
        }
    }
    return cells->time.size() > 0;
}

TextReader::Line TrcReader::parseFrame(TextLine line, const Cells &cells, const char *at, TraceFrame *frame)
{
    const Type type = typeOf(cells.type);
    if (type.kind == Kind::Event)
        return Line::Nothing;
    if (type.kind == Kind::FlexibleDataRate)
        return flexibleDataRate();
    if (type.isSent || isWord(cells.direction, "Tx"))
        frame->flags = TraceFrame::Sent;
    if (type.kind == Kind::Error)
        return setError(cells, frame);
    if (type.kind == Kind::Remote)
        frame->flags |= TraceFrame::Remote;
    const Line what = setId(line, cells.id, frame);
    return what == Line::Frame ? parseData(line, cells, at, frame) : what;
}

TextReader::Line TrcReader::setId(TextLine line, TextLine id, TraceFrame *frame)
{
    const char *at = id.begin;
    if (takeHex(&at, id.end, &frame->id) == 0 || at != id.end)
        return notUnderstood(line);
    const bool isExtended = id.size() > TrcFormat::standardDigits;
    if (isExtended)
        frame->flags |= TraceFrame::Extended;
    return frame->id <= (isExtended ? TraceFrame::highestExtendedId : TraceFrame::highestStandardId)
               ? Line::Frame
               : tooLargeId();
}

TextReader::Line TrcReader::setError(const Cells &cells, TraceFrame *frame)
{
    quint32 kind = 0;
    const char *at = cells.id.begin;
    takeHex(&at, cells.id.end, &kind);
    frame->flags |= TraceFrame::Error;
    frame->id = LinuxFrame::busError | ((kind & knownKinds) != 0 ? LinuxFrame::protocolError : 0);
    frame->length = TraceFrame::mostBytes;
    frame->bytes[kindPlace] = static_cast<quint8>(kind & knownKinds);
    return finish(cells, frame);
}

TextReader::Line TrcReader::parseData(TextLine line, const Cells &cells, const char *at, TraceFrame *frame)
{
    constexpr quint8 longestCode = 15;
    const char *length = cells.length.begin;
    if (!takeByte(&length, cells.length.end, false, &frame->length) || frame->length > longestCode)
        return notUnderstood(line);
    // A length on the wire of 9 to 15 means eight bytes.
    if (frame->length > TraceFrame::mostBytes)
        frame->length = TraceFrame::mostBytes;
    const char *p = at;
    if (isWord(takeWord(&p, line.end), "RTR")) // version 1
        frame->flags |= TraceFrame::Remote;
    for (size_t i = 0; !frame->isRemote() && i < frame->length; ++i) {
        if (!takeByte(&at, line.end, true, &frame->bytes[i]))
            return notUnderstood(line);
    }
    return finish(cells, frame);
}

TextReader::Line TrcReader::finish(const Cells &cells, TraceFrame *frame)
{
    static constexpr char onlyOne[] = "1";
    const bool hasBus = cells.bus.size() > 0 && !isWord(cells.bus, "-");
    const int position = hasBus ? channelOf(cells.bus.begin, cells.bus.end) : channelOf(onlyOne, onlyOne + 1);
    if (position < 0)
        return tooManyChannels();
    frame->channel = static_cast<quint8>(position);
    return Line::Frame;
}
