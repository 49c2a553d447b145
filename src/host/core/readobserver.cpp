// SPDX-License-Identifier: MIT
#include "readobserver.h"

#include "disconnectguard.h"

#include <canopen/sdoabort.h>

#include <algorithm>

namespace {

// The plug-in's 2000 ms, and what its timer may be early. Asked for receivers again after that: another read.
constexpr std::chrono::milliseconds shortestDetection{1900};

bool saysMissing(quint32 code)
{
    return code == static_cast<quint32>(CanOpen::SdoAbort::ObjectDoesNotExist)
           || code == static_cast<quint32>(CanOpen::SdoAbort::SubIndexDoesNotExist);
}

} // namespace

ReadObserver::ReadObserver(const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_clock(clock)
{
    qRegisterMetaType<ReadSummary>();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ReadObserver::check);
}

void ReadObserver::receiverAsked()
{
    // One detection asks for 127 receivers, in one go.
    if (m_phase == Phase::Detecting && m_clock() - m_begun < shortestDetection)
        return;
    if (m_phase == Phase::Reading && m_uploads > 0)
        return;
    if (m_phase == Phase::Detecting)
        endRead(m_isCancelled ? ReadSummary::End::Cancelled : ReadSummary::End::NothingAsked);
    else if (m_phase == Phase::Reading)
        endRead(ReadSummary::End::Complete);
    if (m_phase != Phase::Idle)
        settle();
    begin(Phase::Detecting);
    emit detectionStarted();
}

void ReadObserver::uploadStarted(quint8 nodeId, CanOpen::ObjectKey key)
{
    ++m_uploads;
    if (m_phase == Phase::Idle)
        begin(Phase::Reading);
    noteActivity();
    if (m_phase == Phase::Stopping)
        return;
    // The one more request of a run before this one.
    if (m_phase == Phase::Detecting && m_clock() - m_begun < shortestDetection)
        return;
    m_summary.nodeId = nodeId;
    m_summary.key = key;
    m_summary.nodes.insert(nodeId);
    if (m_phase == Phase::Detecting)
        setPhase(Phase::Reading);
}

void ReadObserver::uploadEnded(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending,
                               quint32 code)
{
    m_uploads = std::max(m_uploads - 1, 0);
    noteActivity();
    // The last request of the run before may end during the next one.
    if (m_phase != Phase::Reading || !m_summary.nodes.contains(nodeId))
        return;
    switch (ending) {
    case HostSdoClient::Ending::Value:
        ++m_summary.values;
        return;
    case HostSdoClient::Ending::Refused:
        ++(saysMissing(code) ? m_summary.missing : m_summary.refused);
        return;
    case HostSdoClient::Ending::Silent:
    case HostSdoClient::Ending::NoBus:
        m_summary.nodeId = nodeId;
        m_summary.key = key;
        if (m_isCancelled)
            endRead(ReadSummary::End::Cancelled);
        else if (ending == HostSdoClient::Ending::Silent)
            endRead(ReadSummary::End::NoAnswer);
        else
            endRead(ReadSummary::End::BusGone);
        return;
    }
}

void ReadObserver::cancel()
{
    if (!isReading() || m_isCancelled)
        return;
    m_isCancelled = true;
    emit phaseChanged(m_phase);
}

void ReadObserver::check()
{
    const std::optional<std::chrono::milliseconds> rest = timeToWait();
    if (!rest)
        return;
    if (rest->count() > 0) {
        m_timer.start(*rest);
        return;
    }
    if (m_phase == Phase::Detecting)
        endRead(m_isCancelled ? ReadSummary::End::Cancelled : ReadSummary::End::NothingAsked);
    else if (m_phase == Phase::Reading)
        endRead(ReadSummary::End::Complete);
    // A slot of readEnded() may have seen the next run begin.
    if (m_phase == Phase::Stopping)
        settle();
}

std::chrono::milliseconds ReadObserver::steadyClock()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

void ReadObserver::begin(Phase phase)
{
    m_summary = ReadSummary();
    m_isCancelled = false;
    m_begun = m_clock();
    setPhase(phase);
    noteActivity();
}

void ReadObserver::setPhase(Phase phase)
{
    m_phase = phase;
    emit phaseChanged(phase);
}

void ReadObserver::endRead(ReadSummary::End end)
{
    m_summary.end = end;
    setPhase(Phase::Stopping);
    emit readEnded(m_summary);
}

void ReadObserver::settle()
{
    m_isCancelled = false;
    m_timer.stop();
    setPhase(Phase::Idle);
    emit settled();
}

void ReadObserver::noteActivity()
{
    m_lastActivity = m_clock();
    if (!m_timer.isActive() && m_phase != Phase::Idle)
        m_timer.start(quietTime);
}

// Empty while something has to happen first.
std::optional<std::chrono::milliseconds> ReadObserver::timeToWait() const
{
    if (m_phase == Phase::Idle || m_uploads > 0)
        return std::nullopt;
    const std::chrono::milliseconds end
        = m_phase == Phase::Detecting ? m_begun + DisconnectGuard::detectionTime : m_lastActivity + quietTime;
    return std::max(end - m_clock(), std::chrono::milliseconds::zero());
}
