// SPDX-License-Identifier: MIT
#include "tracestatistics.h"

#include <canopen/framebits.h>
#include <system/amounts.h>

#include <algorithm>
#include <tuple>

namespace {

constexpr int channelShift = 32;
constexpr quint64 extendedKey = quint64(1) << 31;

quint64 keyOf(const TraceFrame &frame)
{
    return quint64(frame.channel) << channelShift | (frame.isExtended() ? extendedKey : 0) | frame.id;
}

int bitsOf(const TraceFrame &frame)
{
    return frame.isError() ? 0 : CanOpen::frameBits(frame.isExtended(), frame.size());
}

} // namespace

void TraceCount::add(qint64 time, int frameBits)
{
    first = frames == 0 ? time : std::min(first, time);
    last = frames == 0 ? time : std::max(last, time);
    ++frames;
    bits += static_cast<quint64>(frameBits);
}

double TraceCount::duration() const
{
    return static_cast<double>(last - first) / Microseconds::ofSecond;
}

void TraceStatistics::add(const TraceFrame &frame)
{
    if (m_all.frames > 0 && frame.time < m_lastTime)
        ++m_backwardTimes;
    m_lastTime = frame.time;
    const int bits = bitsOf(frame);
    m_all.add(frame.time, bits);
    if (frame.channel >= m_channels.size()) {
        m_channels.resize(frame.channel + 1);
        m_seconds.resize(frame.channel + 1);
    }
    ChannelCount &channel = m_channels[frame.channel];
    channel.all.add(frame.time, bits);
    channel.errorFrames += frame.isError() ? 1 : 0;
    channel.remoteFrames += frame.isRemote() ? 1 : 0;
    channel.sent += frame.isSent() ? 1 : 0;
    countSecond(frame.channel, frame.time, bits);
    if (!frame.isError())
        m_identifiers[keyOf(frame)].add(frame.time, bits);
}

void TraceStatistics::countSecond(quint8 channel, qint64 time, int bits)
{
    Second &second = m_seconds[channel];
    const qint64 number = Microseconds::secondOf(time);
    if (number != second.number)
        second = {number, 0};
    second.bits += static_cast<quint64>(bits);
    m_channels[channel].mostBits = std::max(m_channels[channel].mostBits, second.bits);
}

QVector<IdentifierCount> TraceStatistics::identifiers() const
{
    QVector<IdentifierCount> list;
    for (const auto &[key, count] : m_identifiers) {
        list.append({static_cast<quint32>(key & TraceFrame::highestExtendedId), (key & extendedKey) != 0,
                     static_cast<quint8>(key >> channelShift), count});
    }
    std::sort(list.begin(), list.end(), [](const IdentifierCount &a, const IdentifierCount &b) {
        return std::tie(a.channel, a.isExtended, a.id) < std::tie(b.channel, b.isExtended, b.id);
    });
    return list;
}
