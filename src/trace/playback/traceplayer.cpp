// SPDX-License-Identifier: MIT
#include "traceplayer.h"

#include <algorithm>

namespace {

/*! The time between two frames; none when the clock was set between them. Times may be of any size. */
qint64 pauseBetween(const TraceFrame &earlier, const TraceFrame &later)
{
    if (later.time <= earlier.time)
        return 0;
    const quint64 pause = static_cast<quint64>(later.time) - static_cast<quint64>(earlier.time);
    return pause <= static_cast<quint64>(TracePlayer::longestPause) ? static_cast<qint64>(pause) : 0;
}

/*! Times of a trace may be of any size. */
qint64 plus(qint64 time, qint64 more)
{
    return static_cast<qint64>(static_cast<quint64>(time) + static_cast<quint64>(more));
}

qint64 minus(qint64 time, qint64 less)
{
    return static_cast<qint64>(static_cast<quint64>(time) - static_cast<quint64>(less));
}

} // namespace

TracePlayer::TracePlayer(const std::vector<TraceFrame> *frames)
    : m_frames(frames)
{
}

void TracePlayer::start(qint64 now)
{
    if (m_isStarted)
        m_stamp = stampAt(now);
    else if (!m_frames->empty())
        m_stamp = m_frames->front().time;
    m_isStarted = true;
    m_begin = m_stamp;
    m_anchor = now;
    m_elapsed = 0;
    m_position = 0;
    m_steps = 0;
}

void TracePlayer::change(Pace pace, double speed, qint64 now)
{
    m_stamp = stampAt(now);
    const qint64 rest = std::max<qint64>(m_elapsed - sinceBegin(), 0);
    m_pace = pace;
    m_speed = speed;
    m_steps = 0;
    m_anchor = now + atSpeed(rest) - atSpeed(m_elapsed);
}

void TracePlayer::step(qint64 frames)
{
    // More than there are would be left for the next round.
    const auto left = static_cast<qint64>(m_frames->size() - m_position);
    m_steps = std::clamp<qint64>(frames, 0, left - std::min(m_steps, left)) + m_steps;
}

std::optional<qint64> TracePlayer::nextDue() const
{
    if (isAtEnd() || (m_pace == Pace::Stepped && m_steps == 0))
        return std::nullopt;
    return m_pace == Pace::Recorded ? dueTime() : m_anchor;
}

const TraceFrame *TracePlayer::take(qint64 now)
{
    if (isAtEnd() || !isDue(now))
        return nullptr;
    const TraceFrame *frame = &(*m_frames)[m_position];
    m_stamp = plus(m_begin, std::max(m_elapsed, sinceBegin()));
    goOn();
    return frame;
}

qint64 TracePlayer::stampAt(qint64 now) const
{
    if (m_pace != Pace::Recorded || isAtEnd())
        return m_stamp;
    const auto left = static_cast<qint64>(static_cast<double>(dueTime() - now) * m_speed);
    return plus(m_begin, std::max(m_elapsed - left, sinceBegin()));
}

/*! Of the stamp. */
qint64 TracePlayer::sinceBegin() const
{
    return minus(m_stamp, m_begin);
}

qint64 TracePlayer::dueTime() const
{
    return m_anchor + atSpeed(m_elapsed);
}

qint64 TracePlayer::atSpeed(qint64 time) const
{
    return static_cast<qint64>(static_cast<double>(time) / m_speed);
}

bool TracePlayer::isDue(qint64 now)
{
    if (m_pace == Pace::Unpaced)
        return true;
    if (m_pace == Pace::Stepped)
        return m_steps > 0;
    const qint64 delay = now - dueTime();
    if (delay > longestDelay) {
        m_begin = plus(m_begin, static_cast<qint64>(static_cast<double>(delay) * m_speed));
        m_anchor += delay;
    }
    return delay >= 0;
}

void TracePlayer::goOn()
{
    ++m_position;
    if (m_pace == Pace::Stepped)
        --m_steps;
    if (isAtEnd())
        return;
    m_elapsed += pauseBetween((*m_frames)[m_position - 1], (*m_frames)[m_position]);
}
