// SPDX-License-Identifier: MIT
#include "tracedetails.h"

#include "pcapencoder.h"

#include <algorithm>

void TraceDetails::add(const TraceFrame &frame)
{
    constexpr qint64 coarse = 100; // us
    m_hasErrorFrames = m_hasErrorFrames || frame.isError();
    m_hasSent = m_hasSent || frame.isSent();
    m_hasFineTimes = m_hasFineTimes || frame.time % coarse != 0;
    m_hasEarlyTimes = m_hasEarlyTimes || frame.time < 0;
    m_hasLateTimes = m_hasLateTimes || frame.time > PcapEncoder::latest;
}

bool TraceDetails::has(TraceFormats::Detail detail, const TraceHead &head) const
{
    using TraceFormats::Detail;
    switch (detail) {
    case Detail::ChannelNames:
        return std::any_of(head.channels.begin(), head.channels.end(), [](const QString &name) {
            bool isNumber = false;
            name.toInt(&isNumber);
            return !isNumber;
        });
    case Detail::Channels:
        return head.channels.size() > 1;
    case Detail::ErrorDetails:
        return m_hasErrorFrames;
    case Detail::Sender:
        return m_hasSent;
    case Detail::FineTimes:
        return m_hasFineTimes;
    case Detail::EarlyTimes:
        return m_hasEarlyTimes;
    case Detail::LateTimes:
        break;
    }
    return m_hasLateTimes;
}

QStringList TraceDetails::lostIn(TraceFormat format, const TraceHead &head) const
{
    using TraceFormats::Detail;
    QStringList lost;
    for (const Detail detail : {Detail::Channels, Detail::ChannelNames, Detail::ErrorDetails, Detail::Sender,
                                Detail::FineTimes, Detail::EarlyTimes, Detail::LateTimes}) {
        if (!TraceFormats::canHold(format, detail) && has(detail, head))
            lost.append(TraceFormats::textOf(detail));
    }
    return lost;
}
