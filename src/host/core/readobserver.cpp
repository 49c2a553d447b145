// SPDX-License-Identifier: MIT
#include "readobserver.h"

#include "disconnectguard.h"

#include <canopen/cobid.h>

#include <algorithm>

namespace {

// The plug-in's 2000 ms, and what its timer may be early. Asked for receivers again after that: another read.
constexpr std::chrono::milliseconds shortestDetection{1900};

ReadResult toResult(HostSdoClient::Ending ending, quint32 code)
{
    switch (ending) {
    case HostSdoClient::Ending::Value:
        return ReadResult::value();
    case HostSdoClient::Ending::Refused:
        return ReadResult::refusal(code);
    case HostSdoClient::Ending::HeldUp:
        return {ReadResult::Kind::HeldUp, code};
    case HostSdoClient::Ending::MixedUp:
        return {ReadResult::Kind::MixedUp, code};
    case HostSdoClient::Ending::NotSent:
        return ReadResult::notSent();
    case HostSdoClient::Ending::Silent:
    case HostSdoClient::Ending::Refusing:
    case HostSdoClient::Ending::NoBus:
        break;
    }
    return ReadResult::noAnswer();
}

/*! Whether the plug-in is told FFFFFFFFh. */
bool endsRun(HostSdoClient::Ending ending)
{
    return ending == HostSdoClient::Ending::Silent || ending == HostSdoClient::Ending::NotSent
           || ending == HostSdoClient::Ending::Refusing || ending == HostSdoClient::Ending::NoBus;
}

/*! Whether the node was asked at all. */
bool wasAsked(HostSdoClient::Ending ending)
{
    return ending != HostSdoClient::Ending::NoBus && ending != HostSdoClient::Ending::Refusing;
}

ReadSummary::End endWithoutBus(const QString &lossReason)
{
    return lossReason.isEmpty() ? ReadSummary::End::Disconnected : ReadSummary::End::BusGone;
}

} // namespace

QVector<FailedObject> ReadSummary::failuresBeside() const
{
    QVector<FailedObject> failures = record.failures();
    const auto isStop = [this](const FailedObject &failure) {
        return end != End::Complete && failure.nodeId == nodeId && failure.key == key;
    };
    failures.erase(std::remove_if(failures.begin(), failures.end(), isStop), failures.end());
    return failures;
}

ReadObserver::ReadObserver(const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_clock(clock)
{
    qRegisterMetaType<ReadSummary>();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ReadObserver::handleTimer);
}

void ReadObserver::receiverAsked()
{
    // One detection asks for 127 receivers, in one go.
    if (m_phase == Phase::Detecting && m_clock() - m_begun < shortestDetection)
        return;
    if (m_phase == Phase::Reading && m_uploads > 0)
        return;
    if (m_phase == Phase::Detecting)
        endDetection();
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
    const bool isOfRunBefore = m_phase == Phase::Stopping || isLeftOver();
    if (isOfRunBefore) {
        m_isLeftOverDue = false;
        return;
    }
    m_summary.nodeId = nodeId;
    m_summary.key = key;
    m_ownUploads.append({nodeId, key});
    if (m_phase == Phase::Detecting)
        setPhase(Phase::Reading);
}

void ReadObserver::uploadEnded(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending,
                               quint32 code, const QString &lossReason)
{
    m_uploads = std::max(m_uploads - 1, 0);
    noteActivity();
    // The last request of the run before may end during the next one.
    if (!m_ownUploads.removeOne({nodeId, key}) || m_phase != Phase::Reading)
        return;
    if (wasAsked(ending) && CanOpen::isNodeId(nodeId))
        m_summary.record.note(nodeId, key, toResult(ending, code));
    if (!endsRun(ending))
        return;

    m_summary.reason = lossReason;
    if (m_isCancelled)
        stopRead(nodeId, key, ReadSummary::End::Cancelled);
    else if (ending == HostSdoClient::Ending::Silent)
        stopRead(nodeId, key, ReadSummary::End::NoAnswer);
    else if (ending == HostSdoClient::Ending::NotSent)
        stopRead(nodeId, key, ReadSummary::End::NotSent);
    else if (ending == HostSdoClient::Ending::Refusing)
        stopRead(nodeId, key, ReadSummary::End::Refused);
    else
        stopRead(nodeId, key, endWithoutBus(lossReason));
}

void ReadObserver::busLeft(const QString &lossReason)
{
    if (m_phase != Phase::Detecting)
        return;
    m_vainEnd = endWithoutBus(lossReason);
    m_summary.reason = lossReason;
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
        endDetection();
    else if (m_phase == Phase::Reading)
        endRead(ReadSummary::End::Complete);
    // A slot of readEnded() may have seen the next run begin.
    if (m_phase == Phase::Stopping) {
        m_isLeftOverDue = false;
        settle();
    }
}

void ReadObserver::handleTimer()
{
    // A program that was held up has requests of its own waiting: they come before their absence is believed.
    const std::optional<std::chrono::milliseconds> rest = timeToWait();
    if (rest && rest->count() <= 0 && !m_isGraceGiven) {
        m_isGraceGiven = true;
        m_timer.start(graceTime);
        return;
    }
    check();
}

std::chrono::milliseconds ReadObserver::steadyClock()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

/*! Whether a request that comes now is the one more of a run that was stopped before this detection. */
bool ReadObserver::isLeftOver() const
{
    return m_phase == Phase::Detecting && m_isLeftOverDue && m_clock() - m_begun < shortestDetection;
}

void ReadObserver::begin(Phase phase)
{
    m_summary = ReadSummary();
    m_ownUploads.clear();
    m_vainEnd = ReadSummary::End::NothingAsked;
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

void ReadObserver::stopRead(quint8 nodeId, CanOpen::ObjectKey key, ReadSummary::End end)
{
    m_summary.nodeId = nodeId;
    m_summary.key = key;
    m_isLeftOverDue = true;
    endRead(end);
}

void ReadObserver::endDetection()
{
    endRead(m_isCancelled ? ReadSummary::End::Cancelled : m_vainEnd);
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
    m_isGraceGiven = false;
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
