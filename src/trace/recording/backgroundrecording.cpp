// SPDX-License-Identifier: MIT
#include "backgroundrecording.h"

#include <system/background.h>

#include <QDir>

#include <utility>

BackgroundRecording::BackgroundRecording(const TraceRecording::Settings &settings, const FreeSpace &freeSpace,
                                         std::size_t mostWaiting)
    : m_path(settings.path)
    , m_mostWaiting(mostWaiting)
    , m_recording(std::make_shared<TraceRecording>(settings, freeSpace))
{
}

BackgroundRecording::~BackgroundRecording()
{
    m_pool.waitForDone();
    if (!m_hasEnded)
        write(m_recording.get(), m_waiting, m_now, true);
}

bool BackgroundRecording::begin(const TraceHead &head, qint64 now)
{
    m_now = now;
    m_hasEnded = !m_recording->begin(head, now);
    m_state = {!m_hasEnded, 0, m_recording->files(), m_recording->errorString()};
    return !m_hasEnded;
}

void BackgroundRecording::add(const TraceFrame &frame, qint64 now)
{
    if (m_hasEnded || m_isFinishing)
        return;
    if (m_waiting.size() >= m_mostWaiting) {
        giveUp();
        return;
    }
    m_waiting.push_back({frame, now});
    ++m_added;
}

/*! The disk has stood still for so long that memory ends; what waits is written if it ever goes on. */
void BackgroundRecording::giveUp()
{
    m_isFinishing = true;
    m_state.error = tr("The disk of %1 has taken nothing for too long: recording has ended.")
                        .arg(QDir::toNativeSeparators(m_path));
}

void BackgroundRecording::advance(qint64 now)
{
    m_now = now;
    if (!m_isWriting && !m_hasEnded)
        start();
}

void BackgroundRecording::finish()
{
    m_isFinishing = true;
    advance(m_now);
}

void BackgroundRecording::start()
{
    m_isWriting = true;
    auto frames = std::make_shared<std::vector<Waiting>>(std::exchange(m_waiting, {}));
    Background::run(
        &m_pool, this,
        [recording = m_recording, frames, now = m_now, isLast = m_isFinishing] {
            return write(recording.get(), *frames, now, isLast);
        },
        [this](const State &state) { take(state); });
}

BackgroundRecording::State BackgroundRecording::write(TraceRecording *recording,
                                                      const std::vector<Waiting> &frames, qint64 now,
                                                      bool isLast)
{
    bool isGoing = true;
    for (const Waiting &waiting : frames) {
        isGoing = recording->add(waiting.frame, waiting.time);
        if (!isGoing)
            break;
    }
    isGoing = isGoing && recording->advance(now);
    if (isLast)
        recording->finish();
    return {isGoing && !isLast, recording->frames(), recording->files(), recording->errorString()};
}

void BackgroundRecording::take(const State &state)
{
    m_isWriting = false;
    const QString error = m_state.error;
    m_state = state;
    if (m_state.error.isEmpty())
        m_state.error = error; // of giving up
    m_hasEnded = !state.isGoing;
    if (m_hasEnded)
        emit ended();
    else if (m_isFinishing)
        start(); // what has come meanwhile
}
