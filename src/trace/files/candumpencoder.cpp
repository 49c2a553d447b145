// SPDX-License-Identifier: MIT
#include "candumpencoder.h"

#include "candumpformat.h"
#include "linuxframe.h"
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
    to->append('(');
    addTime(frame.time, Microseconds::ofSecond, secondDigits, '0', to);
    to->append(") ").append(channelName(frame.channel)).append(' ');
    const bool isLong = frame.isExtended() || frame.isError();
    addHex(frame.isError() ? frame.id | LinuxFrame::errorFlag : frame.id,
           isLong ? CandumpFormat::extendedDigits : CandumpFormat::standardDigits, to);
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
