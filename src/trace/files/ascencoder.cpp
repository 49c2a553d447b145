// SPDX-License-Identifier: MIT
#include "ascencoder.h"

#include "ascdate.h"
#include "timeofday.h"

#include <system/amounts.h>

using namespace FrameText;

void AscEncoder::begin(qint64 first, QByteArray *to)
{
    m_begin = hasTimeOfDay() ? first - first % Microseconds::ofMillisecond : 0;
    const QByteArray date = AscDate::write(m_begin);
    to->append("date " + date + "\nbase hex  timestamps absolute\ninternal events logged\nBegin Triggerblock "
               + date + "\n   0.000000 Start of measurement\n");
}

void AscEncoder::write(const TraceFrame &frame, QByteArray *to)
{
    constexpr int secondWidth = 4;
    constexpr int channelWidth = 2;
    constexpr int idWidth = 15;
    addTime(frame.time - m_begin, Microseconds::ofSecond, secondWidth, ' ', to);
    to->append(' ').append(channelNumber(frame.channel).leftJustified(channelWidth)).append(' ');
    if (frame.isError()) {
        to->append("ErrorFrame\n");
        return;
    }
    QByteArray id = QByteArray::number(frame.id, 16).toUpper();
    if (frame.isExtended())
        id += 'x';
    to->append(id.leftJustified(idWidth)).append(frame.isSent() ? " Tx   " : " Rx   ");
    to->append(frame.isRemote() ? "r " : "d ");
    addHex(frame.length, 1, to);
    addBytes(frame, ' ', to);
    to->append('\n');
}

void AscEncoder::end(QByteArray *to)
{
    to->append("End TriggerBlock\n");
}
