// SPDX-License-Identifier: MIT
#include "tracesteps.h"

#include "console.h"

#include <bus/busconnection.h>
#include <trace/playback/playbackstate.h>

#include <algorithm>
#include <limits>

TraceSteps::TraceSteps(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
}

void TraceSteps::begin()
{
    const std::optional<PlaybackState> state = PlaybackState::of(m_bus->device());
    if (!state || !state->isPaused)
        return;
    Console::printError(tr("The trace waits: Enter plays a frame, a number so many. Ctrl+C ends it."));
    m_lines = std::make_unique<InputLines>();
    connect(m_lines.get(), &InputLines::read, this, &TraceSteps::step);
    connect(m_lines.get(), &InputLines::ended, this, [this] { m_isInputOver = true; });
}

void TraceSteps::step(const QByteArray &line)
{
    const QByteArray text = line.trimmed();
    bool isNumber = true;
    const int frames = text.isEmpty() ? 1 : text.toInt(&isNumber);
    if (!isNumber || frames < 1) {
        Console::printError(tr("\"%1\" is no number of frames.").arg(QString::fromLocal8Bit(text)));
        return;
    }
    m_asked = std::min<qint64>(m_asked + frames, std::numeric_limits<int>::max());
    m_bus->configureDevice(PlaybackState::StepKey, frames);
}

bool TraceSteps::isOver()
{
    const std::optional<PlaybackState> state = PlaybackState::of(m_bus->device());
    const bool isTaken = isEverythingTaken(); // counted each time
    if (!state || !isTaken)
        return false;
    if (state->isOver && !m_isSaid) {
        m_isSaid = true;
        Console::printError(tr("The trace is over."));
    }
    const bool isLeftAlone = m_lines != nullptr && m_isInputOver && state->played >= m_asked;
    return state->isOver || isLeftAlone;
}

/*! Frames that the back end has given away are delivered in the turns after that. */
bool TraceSteps::isEverythingTaken()
{
    const quint64 received = m_bus->counters().framesReceived;
    const bool isTaken = received == m_received;
    m_received = received;
    return isTaken;
}
