// SPDX-License-Identifier: MIT
#include "candumpencoder.h"

#include "timeofday.h"

#include <system/amounts.h>

using namespace FrameText;

void CandumpEncoder::begin(qint64 first, QByteArray *to)
{
    Q_UNUSED(first)
    Q_UNUSED(to)
}

void CandumpEncoder::write(const TraceFrame &frame, QByteArray *to)
{
    constexpr int secondDigits = 10;
    constexpr int standardDigits = 3;
    constexpr int extendedDigits = 8;
    constexpr quint32 errorFlag = 0x20000000;
    to->append('(');
    addTime(frame.time, Microseconds::ofSecond, secondDigits, '0', to);
    to->append(") ").append(channelName(frame.channel)).append(' ');
    const bool isLong = frame.isExtended() || frame.isError();
    addHex(frame.isError() ? frame.id | errorFlag : frame.id, isLong ? extendedDigits : standardDigits, to);
    to->append('#');
    if (frame.isRemote()) {
        to->append('R');
        if (frame.length > 0)
            addHex(frame.length, 1, to);
    }
    addBytes(frame, 0, to);
    if (frame.isSent())
        to->append(" T");
    to->append('\n');
}
