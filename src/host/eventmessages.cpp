// SPDX-License-Identifier: MIT
#include "eventmessages.h"

#include "messagelog.h"

#include <host/pages/live/livesession.h>
#include <live/events/eventwords.h>

namespace {

MessageLog::Severity severityOf(const LiveEvent &event)
{
    switch (event.severity()) {
    case Severity::Note:
        return MessageLog::Severity::Information;
    case Severity::Warning:
        return MessageLog::Severity::Warning;
    case Severity::Fault:
        break;
    }
    return MessageLog::Severity::Error;
}

} // namespace

EventMessages::EventMessages(LiveSession *session, MessageLog *log, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_log(log)
{
    connect(session, &LiveSession::started, this, [this] { m_last = 0; });
    connect(session, &LiveSession::ticked, this, &EventMessages::tellNew);
    connect(session, &LiveSession::stopped, this, &EventMessages::tellNew);
}

bool EventMessages::isTold(EventKind kind)
{
    switch (kind) {
    case EventKind::NmtCommand:
    case EventKind::Emergency:
    case EventKind::EmergencyReset:
    case EventKind::AbortBurst:
    case EventKind::Flood:
        return true;
    default: // nodes and adapter: the bus report has better words for many at once
        return false;
    }
}

void EventMessages::tellNew()
{
    const std::deque<LiveEvent> &events = m_session->live().events().list().events();
    if (events.empty() || events.back().number <= m_last)
        return;
    const quint64 first = events.front().number;
    auto next = events.cbegin();
    if (m_last >= first)
        next += static_cast<std::ptrdiff_t>(m_last - first + 1); // their numbers have no gaps
    int count = 0;
    for (; next != events.cend(); ++next) {
        if (isTold(next->kind) && ++count <= mostAtOnce)
            tell(*next);
    }
    m_last = events.back().number;
    if (count > mostAtOnce)
        m_log->add(MessageLog::Severity::Warning,
                   tr("%1 more events: the page Live has all of them.").arg(count - mostAtOnce));
}

void EventMessages::tell(const LiveEvent &event)
{
    LiveEvent once = event;
    once.count = 1; // how often it comes is still growing
    m_log->add(severityOf(event), EventWords::line(once));
}
