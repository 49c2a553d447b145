// SPDX-License-Identifier: MIT
#include "sdotransfers.h"

#include "sdoconversation.h"

#include <canopen/cobid.h>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr qint64 sweepPeriod = 1'000'000; // us
constexpr int conversations = CanOpen::lastNodeId + 1;
constexpr quint8 noSdo = TraceFrame::Extended | TraceFrame::Remote | TraceFrame::Error;

} // namespace

struct SdoTransfers::Channel
{
    std::array<std::unique_ptr<SdoConversation>, conversations> nodes; // by node ID
};

SdoTransfers::SdoTransfers() = default;
SdoTransfers::~SdoTransfers() = default;
SdoTransfers::SdoTransfers(SdoTransfers &&) noexcept = default;
SdoTransfers &SdoTransfers::operator=(SdoTransfers &&) noexcept = default;

SdoTransfers::Place SdoTransfers::handle(const TraceFrame &frame, std::size_t position)
{
    // Times come from files: differences of any two must not overflow.
    constexpr qint64 latest = Q_INT64_C(1) << 61;
    const qint64 now = std::clamp(frame.time, -latest, latest);
    // Also by frames, so that times that jump about do not make it long work.
    const bool isTime = m_swept == noTime || now - m_swept >= sweepPeriod || now < m_swept;
    if (++m_sinceSwept >= m_busy.size() && isTime)
        sweep(now);
    const quint8 requested = CanOpen::nodeIdOf(frame.id, CanOpen::sdoRequestBase);
    const quint8 answering = CanOpen::nodeIdOf(frame.id, CanOpen::sdoResponseBase);
    if ((requested | answering) == 0 || (frame.flags & noSdo) != 0)
        return {};
    if (frame.length != CanOpen::sdoFrameSize)
        return {0, SdoStep::Stray};
    TraceFrame heardFrame = frame;
    heardFrame.time = now;
    const FollowedTransfer::Heard heard(heardFrame, position);
    SdoConversation &conversation = conversationOf(frame, requested | answering);
    const Place place = requested != 0 ? conversation.handleRequest(heard, &m_begun, &m_finished)
                                       : conversation.handleAnswer(heard, &m_finished);
    if (conversation.isBusy() && !conversation.isListed) {
        conversation.isListed = true;
        m_busy.push_back(&conversation);
    }
    return place;
}

SdoConversation &SdoTransfers::conversationOf(const TraceFrame &frame, quint8 nodeId)
{
    if (m_channels.size() <= frame.channel)
        m_channels.resize(frame.channel + std::size_t(1));
    std::unique_ptr<Channel> &channel = m_channels[frame.channel];
    if (channel == nullptr)
        channel = std::make_unique<Channel>();
    std::unique_ptr<SdoConversation> &conversation = channel->nodes[nodeId];
    if (conversation == nullptr)
        conversation = std::make_unique<SdoConversation>(nodeId);
    return *conversation;
}

void SdoTransfers::sweep(qint64 now)
{
    m_swept = now;
    m_sinceSwept = 0;
    const auto isIdle = [this, now](SdoConversation *conversation) {
        conversation->sweep(now, &m_finished);
        conversation->isListed = conversation->isBusy();
        return !conversation->isListed;
    };
    m_busy.erase(std::remove_if(m_busy.begin(), m_busy.end(), isIdle), m_busy.end());
}

std::vector<SdoTransfer> SdoTransfers::takeFinished()
{
    return std::exchange(m_finished, {});
}

void SdoTransfers::finish()
{
    for (SdoConversation *conversation : m_busy) {
        conversation->finish(&m_finished);
        conversation->isListed = false;
    }
    m_busy.clear();
}
