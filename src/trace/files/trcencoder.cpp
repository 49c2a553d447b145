// SPDX-License-Identifier: MIT
#include "trcencoder.h"

#include "trcdate.h"
#include "trcformat.h"

#include <system/amounts.h>

#include <QDateTime>

using namespace FrameText;

namespace {

constexpr int numberWidth = 6;
constexpr const char *errorBytes = " 00 00 00 00";

} // namespace

void TrcEncoder::beginWith(const QByteArray &version, qint64 first, QByteArray *to)
{
    m_begin = hasTimeOfDay() ? first - first % Microseconds::ofMillisecond : 0;
    to->append(";$FILEVERSION=" + version + "\n;$STARTTIME=" + TrcDate::write(m_begin) + '\n');
    if (!hasTimeOfDay())
        return;
    const QDateTime begin = QDateTime::fromMSecsSinceEpoch(m_begin / Microseconds::ofMillisecond);
    to->append(";\n;   Start time: " + begin.toString(QStringLiteral("dd.MM.yyyy HH:mm:ss.zzz")).toLatin1()
               + '\n');
}

void TrcEncoder::addId(const TraceFrame &frame, QByteArray *to)
{
    QByteArray id;
    addHex(frame.id, frame.isExtended() ? TrcFormat::extendedDigits : TrcFormat::standardDigits, &id);
    addRight(id, TrcFormat::extendedDigits, to);
}

QByteArray TrcEncoder::errorKind(const TraceFrame &frame)
{
    constexpr quint8 known = 0x07; // bit, form, stuff: the same three bits as in byte 2 of Linux
    const quint8 kind = frame.bytes[2] & known;
    return kind != 0 ? "000" + QByteArray::number(kind) : QByteArrayLiteral("0008");
}

void Trc11Encoder::begin(qint64 first, QByteArray *to)
{
    beginWith("1.1", first, to);
    to->append(";\n"
               ";   Message Number\n"
               ";   |         Time Offset (ms)\n"
               ";   |         |        Type\n"
               ";   |         |        |        ID (hex)\n"
               ";   |         |        |        |     Data Length\n"
               ";   |         |        |        |     |   Data Bytes (hex) ...\n"
               ";   |         |        |        |     |   |\n"
               ";---+--   ----+----  --+--  ----+---  +  -+ -- -- -- -- -- -- --\n");
}

void Trc11Encoder::write(const TraceFrame &frame, QByteArray *to)
{
    constexpr qint64 resolution = 100; // us
    constexpr int timeWidth = 12;
    addRight(QByteArray::number(nextNumber()), numberWidth, to);
    to->append(") ");
    addTime(sinceBegin(frame) / resolution, Microseconds::ofMillisecond / resolution, timeWidth, ' ', to);
    if (frame.isError()) {
        to->append("  Error  ");
        addRight(errorKind(frame), TrcFormat::extendedDigits, to);
        to->append("  4 ").append(errorBytes).append('\n');
        return;
    }
    to->append(frame.isSent() ? "  Tx     " : "  Rx     ");
    addId(frame, to);
    to->append("  ");
    addHex(frame.length, 1, to);
    to->append(frame.isRemote() ? "  RTR" : " ");
    addBytes(frame, ' ', to);
    to->append('\n');
}

void Trc21Encoder::begin(qint64 first, QByteArray *to)
{
    QByteArray head;
    beginWith("2.1", first, &head);
    const int afterStart = head.indexOf('\n', head.indexOf('\n') + 1) + 1;
    head.insert(afterStart, ";$COLUMNS=N,O,T,B,I,d,R,L,D\n");
    to->append(head);
    to->append(";\n"
               ";   Message   Time    Type    ID     Rx/Tx\n"
               ";   Number    Offset  |  Bus  [hex]  |  Reserved\n"
               ";   |         [ms]    |  |    |      |  |  Data Length Code\n"
               ";   |         |       |  |    |      |  |  |    Data [hex] ...\n"
               ";   |         |       |  |    |      |  |  |    |\n"
               ";---+-- ------+------ +- +- --+----- +- +- +--- +- -- -- -- -- -- -- --\n");
}

void Trc21Encoder::write(const TraceFrame &frame, QByteArray *to)
{
    constexpr int timeWidth = 9;
    constexpr int busWidth = 2;
    addRight(QByteArray::number(nextNumber()), numberWidth, to);
    to->append(' ');
    addTime(sinceBegin(frame), Microseconds::ofMillisecond, timeWidth, ' ', to);
    to->append(frame.isError() ? " ER " : frame.isRemote() ? " RR " : " DT ");
    to->append(channelNumber(frame.channel).leftJustified(busWidth)).append(' ');
    if (frame.isError())
        addRight(errorKind(frame), TrcFormat::extendedDigits, to);
    else
        addId(frame, to);
    to->append(frame.isSent() ? " Tx -  " : " Rx -  ");
    if (frame.isError()) {
        to->append("5    00").append(errorBytes).append('\n');
        return;
    }
    addHex(frame.length, 1, to);
    to->append(frame.size() > 0 ? "   " : "");
    addBytes(frame, ' ', to);
    to->append('\n');
}
