// SPDX-License-Identifier: MIT
#include "candumpreader.h"

#include "candumpformat.h"
#include "linuxframe.h"
#include "textscan.h"
#include "timeofday.h"

#include <system/amounts.h>

#include <QDateTime>

using namespace TextScan;

namespace {

constexpr int hourSize = 13; // "2015-07-10 08"

} // namespace

bool CandumpReader::isFrame(TextLine line)
{
    CandumpReader reader(std::make_unique<MemoryBytes>(QByteArray()));
    TraceFrame frame;
    const Line what = reader.parse(line, &frame);
    return what == Line::Frame || what == Line::Wrong;
}

/*! A data frame of the first channel with 11 bits of identifier, "(1436509052.249713) can0 123#11223344", as nearly all are.
 *  Whatever else stands there is for parse().
 */
const char *CandumpReader::parseUsual(TextLine rest, TraceFrame *frame)
{
    constexpr int afterId = 4; // "123#"
    const char *at = rest.begin;
    if (m_channel.isEmpty() || !takeUsualTime(&at, rest.end, &frame->time))
        return nullptr;
    if (rest.end - at < m_channel.size() + afterId
        || std::memcmp(at, m_channel.constData(), static_cast<size_t>(m_channel.size())) != 0)
        return nullptr;
    at += m_channel.size();
    // What is no digit makes a number negative.
    const int id = hexDigit(at[0]) * 0x100 | hexDigit(at[1]) * 0x10 | hexDigit(at[2]);
    if (id < 0 || id > static_cast<int>(TraceFrame::highestStandardId) || at[3] != '#')
        return nullptr;
    at += afterId;
    int length = 0;
    for (; length < TraceFrame::mostBytes && rest.end - at > 1; ++length, at += 2) {
        const int byte = hexDigit(at[0]) * 0x10 | hexDigit(at[1]);
        if (byte < 0)
            break;
        frame->bytes[static_cast<size_t>(length)] = static_cast<quint8>(byte);
    }
    take(&at, rest.end, '\r');
    if (!take(&at, rest.end, '\n') || at - rest.begin > LineReader::longest)
        return nullptr;
    frame->id = static_cast<quint32>(id);
    frame->length = static_cast<quint8>(length);
    return at;
}

TextReader::Line CandumpReader::parse(TextLine line, TraceFrame *frame)
{
    const char *at = line.begin;
    // With -e the words of an error frame stand below it.
    if (at < line.end && *at == '\t')
        return Line::Nothing;
    skipBlanks(&at, line.end);
    if (at == line.end)
        return Line::Nothing;
    if (*at == '(' && !takeTime(&at, line.end, &frame->time))
        return notUnderstood(line);

    const TextLine channel = takeWord(&at, line.end);
    const Line what = parseFrame(line, at, frame);
    if (what != Line::Frame)
        return what;
    const int position = channelOf(channel.begin, channel.end);
    if (position < 0)
        return tooManyChannels();
    frame->channel = static_cast<quint8>(position);
    if (!m_isTimeOfDayKnown) {
        m_isTimeOfDayKnown = true;
        m_channel = ' ' + QByteArray(channel.begin, channel.size()) + ' ';
        headToFill()->hasTimeOfDay = TimeOfDay::isOne(frame->time);
    }
    return what;
}

bool CandumpReader::takeTime(const char **at, const char *end, qint64 *time)
{
    if (takeUsualTime(at, end, time))
        return true;
    constexpr int dash = 4; // "2015-"
    const char *p = *at + 1;
    const bool hasDate = end - p > dash && p[dash] == '-';
    if (!(hasDate ? takeDate(&p, end, time) : takeFixed(&p, end, Microseconds::ofSecond, time))
        || !take(&p, end, ')'))
        return false;
    *at = p;
    return true;
}

/*! "(1436509052.249713)": ten digits and six. */
bool CandumpReader::takeUsualTime(const char **at, const char *end, qint64 *time)
{
    constexpr int pointPlace = 11;
    constexpr int endPlace = 18;
    const char *const p = *at;
    if (end - p <= endPlace || *p != '(' || p[pointPlace] != '.' || p[endPlace] != ')')
        return false;
    if (std::memcmp(m_second.data(), p, m_second.size()) != 0) {
        const char *digits = p + 1;
        quint64 seconds = 0;
        if (takeDecimal(&digits, p + pointPlace, pointPlace, &seconds) != pointPlace - 1)
            return false;
        std::memcpy(m_second.data(), p, m_second.size());
        m_secondTime = static_cast<qint64>(seconds) * Microseconds::ofSecond;
    }
    qint64 fraction = 0;
    for (int i = pointPlace + 1; i < endPlace; ++i) {
        if (!isDigit(p[i]))
            return false;
        fraction = fraction * 10 + (p[i] - '0');
    }
    *time = m_secondTime + fraction;
    *at = p + endPlace + 1;
    return true;
}

/*! "2015-07-10 08:37:32.249713" */
bool CandumpReader::takeDate(const char **at, const char *end, qint64 *time)
{
    constexpr int mostDigits = 2;
    constexpr qint64 longestMinute = 61 * Microseconds::ofSecond; // with a leap second
    const char *p = *at;
    if (end - p < hourSize || !findHour(p))
        return false;
    p += hourSize;
    quint64 minute = 0;
    qint64 seconds = 0;
    if (!take(&p, end, ':') || takeDecimal(&p, end, mostDigits, &minute) == 0 || !take(&p, end, ':')
        || !takeFixed(&p, end, Microseconds::ofSecond, &seconds) || seconds < 0 || seconds > longestMinute)
        return false;
    *time = m_hourBegin + static_cast<qint64>(minute) * 60 * Microseconds::ofSecond + seconds;
    *at = p;
    return true;
}

/*! Asks for the time zone once an hour and not once a line. */
bool CandumpReader::findHour(const char *begin)
{
    if (m_hour.size() == hourSize && std::memcmp(m_hour.constData(), begin, hourSize) == 0)
        return true;
    const QDateTime hour
        = QDateTime::fromString(QString::fromLatin1(begin, hourSize), QStringLiteral("yyyy-MM-dd HH"));
    if (!hour.isValid())
        return false;
    m_hour = QByteArray(begin, hourSize);
    m_hourBegin = hour.toMSecsSinceEpoch() * Microseconds::ofMillisecond;
    return true;
}

TextReader::Line CandumpReader::parseFrame(TextLine line, const char *at, TraceFrame *frame)
{
    skipBlanks(&at, line.end);
    const char *p = at;
    quint32 id = 0;
    const int digits = takeHex(&p, line.end, &id);
    if (digits == 0 || !take(&p, line.end, '#'))
        return parseScreen(line, at, frame);
    const Line what = setId(line, digits, id, frame);
    return what == Line::Frame ? parseLog(line, p, frame) : what;
}

TextReader::Line CandumpReader::setId(TextLine line, int digits, quint32 id, TraceFrame *frame)
{
    if (digits != CandumpFormat::standardDigits && digits != CandumpFormat::extendedDigits)
        return notUnderstood(line);
    frame->id = id;
    if (digits == CandumpFormat::standardDigits)
        return id <= TraceFrame::highestStandardId ? Line::Frame : tooLargeId();
    const bool isError = (id & LinuxFrame::errorFlag) != 0;
    frame->flags = isError ? TraceFrame::Error : TraceFrame::Extended;
    frame->id = isError ? id & ~LinuxFrame::errorFlag : id;
    return frame->id <= TraceFrame::highestExtendedId ? Line::Frame : tooLargeId();
}

TextReader::Line CandumpReader::parseLog(TextLine line, const char *at, TraceFrame *frame)
{
    if (at < line.end && *at == '#')
        return flexibleDataRate();
    if (take(&at, line.end, 'R'))
        return parseRemote(line, at, frame);
    return parseData(line, at, frame);
}

TextReader::Line CandumpReader::parseData(TextLine line, const char *at, TraceFrame *frame)
{
    const char *const end = line.end;
    int length = 0;
    for (; at < end; ++length) {
        take(&at, end, '.');
        const int high = at < end ? hexDigit(*at) : -1;
        if (high < 0)
            break;
        const int low = at + 1 < end ? hexDigit(at[1]) : -1;
        if (low < 0 || length == TraceFrame::mostBytes)
            return notUnderstood(line);
        frame->bytes[static_cast<size_t>(length)] = static_cast<quint8>(high << 4 | low);
        at += 2;
    }
    frame->length = static_cast<quint8>(length);
    return parseTail(line, at, frame);
}

TextReader::Line CandumpReader::parseRemote(TextLine line, const char *at, TraceFrame *frame)
{
    quint64 length = 0;
    takeDecimal(&at, line.end, 1, &length);
    if (length > TraceFrame::mostBytes || frame->isError())
        return notUnderstood(line);
    frame->flags |= TraceFrame::Remote;
    frame->length = static_cast<quint8>(length);
    return parseTail(line, at, frame);
}

/*! What may stand behind the bytes: "_E", the length on the wire of eight bytes that were said to be more, and who sent. */
TextReader::Line CandumpReader::parseTail(TextLine line, const char *at, TraceFrame *frame)
{
    if (at == line.end)
        return Line::Frame;
    if (take(&at, line.end, '_') && (at == line.end || hexDigit(*at++) < 0))
        return notUnderstood(line);
    if (at < line.end && !isBlank(*at))
        return notUnderstood(line);
    const TextLine direction = takeWord(&at, line.end);
    if (direction.size() == 0 || isWord(direction, "R"))
        return Line::Frame;
    if (!isWord(direction, "T"))
        return notUnderstood(line);
    frame->flags |= TraceFrame::Sent;
    return Line::Frame;
}

TextReader::Line CandumpReader::parseScreen(TextLine line, const char *at, TraceFrame *frame)
{
    TextLine word = takeWord(&at, line.end);
    const bool isSent = isWord(word, "TX");
    if (isSent || isWord(word, "RX")) {
        takeWord(&at, line.end); // bit rate switch
        takeWord(&at, line.end); // error state
        word = takeWord(&at, line.end);
    }
    const char *p = word.begin;
    quint32 id = 0;
    const int digits = takeHex(&p, word.end, &id);
    if (digits == 0 || p != word.end)
        return notUnderstood(line);
    // A word is a number only when a length follows.
    const Line columns = parseColumns(line, at, frame);
    if (columns != Line::Frame)
        return columns;
    const quint8 flags = frame->flags;
    const Line what = setId(line, digits, id, frame);
    frame->flags = static_cast<quint8>(frame->flags | flags | (isSent ? TraceFrame::Sent : 0));
    return frame->isError() && frame->isRemote() ? notUnderstood(line) : what;
}

/*! "[4]  11 22 33 44" */
TextReader::Line CandumpReader::parseColumns(TextLine line, const char *at, TraceFrame *frame)
{
    const char *const end = line.end;
    quint64 length = 0;
    skipBlanks(&at, end);
    if (!take(&at, end, '['))
        return notUnderstood(line);
    const int digits = takeDecimal(&at, end, 2, &length);
    if (digits == 0 || !take(&at, end, ']'))
        return notUnderstood(line);
    if (digits == 2) // of classic frames it has one
        return flexibleDataRate();
    if (length > TraceFrame::mostBytes)
        return notUnderstood(line);
    frame->length = static_cast<quint8>(length);
    const char *p = at;
    if (isWord(takeWord(&p, end), "remote")) {
        frame->flags |= TraceFrame::Remote;
        return Line::Frame;
    }
    if (at < end && *at == '{') // the length on the wire
        takeWord(&at, end);
    for (size_t i = 0; i < length; ++i) {
        if (!takeByte(&at, end, true, &frame->bytes[i]))
            return notUnderstood(line);
    }
    return Line::Frame;
}
