// SPDX-License-Identifier: MIT
#include "pacedquestions.h"

#include <snapshot/snapshotanswer.h>

#include <algorithm>
#include <utility>

namespace {

constexpr int frameBits = 120;    // of an SDO frame on the wire
constexpr int exchangeFrames = 2; // that a question takes at least

} // namespace

PacedQuestions::PacedQuestions(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    m_clock.start();
    m_share.setBitRate(bus->bitRate());
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &PacedQuestions::look);
    connect(bus, &BusConnection::stateChanged, this, &PacedQuestions::handleState);
    connect(&bus->sdoClient(), &CanOpen::SdoClient::finished, this, &PacedQuestions::handleOutcome);
}

PacedQuestions::~PacedQuestions()
{
    cancel();
}

void PacedQuestions::setPaused(bool isPaused)
{
    m_isPaused = isPaused;
    if (isPaused)
        takeBackOpen();
    else
        m_timer.start(0);
}

void PacedQuestions::ask(quint8 nodeId, CanOpen::ObjectKey key)
{
    m_waiting.push_back({nodeId, key});
    if (!m_timer.isActive())
        m_timer.start(0);
}

bool PacedQuestions::isAsked(quint8 nodeId, CanOpen::ObjectKey key) const
{
    const auto open = m_open.find(nodeId);
    return (open != m_open.end() && open->second.key == key)
           || std::any_of(m_waiting.begin(), m_waiting.end(), [nodeId, key](const Question &question) {
                  return question.nodeId == nodeId && question.key == key;
              });
}

void PacedQuestions::cancel()
{
    takeBackOpen();
    m_waiting.clear();
    m_timer.stop();
}

SnapshotEntry PacedQuestions::entryOf(const CanOpen::SdoOutcome &outcome,
                                      const QVector<CanOpen::DataType> &types) const
{
    SnapshotEntry entry = SnapshotAnswer::toEntry(outcome, types);
    const bool isStopped = m_bus->heartbeats().state(outcome.nodeId) == CanOpen::NmtState::Stopped;
    if (entry.gap == SnapshotGap::NoAnswer && isStopped)
        entry.gap = SnapshotGap::Stopped;
    return entry;
}

void PacedQuestions::look()
{
    while (!m_isPaused && m_bus->state() == BusConnection::State::Connected) {
        const auto question = nextQuestion();
        if (question == m_waiting.end())
            return;
        const std::chrono::milliseconds wait = m_share.wait(now());
        if (wait.count() > 0) {
            m_timer.start(wait);
            return;
        }
        put(*question);
        m_waiting.erase(question);
    }
}

/*! The first one to a node that is not busy with one already. */
std::deque<PacedQuestions::Question>::iterator PacedQuestions::nextQuestion()
{
    return std::find_if(m_waiting.begin(), m_waiting.end(), [this](const Question &question) {
        return m_open.find(question.nodeId) == m_open.end();
    });
}

void PacedQuestions::put(const Question &question)
{
    m_share.spend(exchangeFrames * frameBits, now());
    const CanOpen::SdoTicket ticket
        = m_bus->sdoClient().upload(question.nodeId, question.key, CanOpen::rawBytes);
    m_open[question.nodeId] = {question.key, ticket};
}

/*! What is under way comes first again. */
void PacedQuestions::takeBackOpen()
{
    const std::map<quint8, Open> open = std::exchange(m_open, {});
    for (const auto &[nodeId, question] : open) {
        m_waiting.push_front({nodeId, question.key});
        m_bus->sdoClient().cancel(question.ticket);
    }
}

void PacedQuestions::handleOutcome(const CanOpen::SdoOutcome &outcome)
{
    const auto open = m_open.find(outcome.nodeId);
    if (open == m_open.end() || open->second.ticket != outcome.ticket)
        return;
    m_open.erase(open);
    m_share.spend((outcome.frames - exchangeFrames) * frameBits, now());
    m_timer.start(0);
    if (outcome.kind == CanOpen::SdoOutcome::Kind::Cancelled) // the bus has gone
        m_waiting.push_front({outcome.nodeId, outcome.key});
    else
        emit answered(outcome);
}

void PacedQuestions::handleState(BusConnection::State state)
{
    if (state != BusConnection::State::Connected)
        return;
    m_share.setBitRate(m_bus->bitRate());
    m_timer.start(0);
}
