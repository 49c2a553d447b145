// SPDX-License-Identifier: MIT
#include "sdoconversation.h"

#include <utility>

using Heard = FollowedTransfer::Heard;

/*! Where a frame that the transfer took belongs; one that is over makes room. */
SdoConversation::Place SdoConversation::placeIn(Followed *followed, SdoStep step,
                                                std::vector<SdoTransfer> *finished)
{
    const Place place{(*followed)->transfer().number, step};
    if ((*followed)->isOver()) {
        finished->push_back((*followed)->transfer());
        followed->reset();
    }
    return place;
}

void SdoConversation::end(Followed *followed, bool isTimeOver, std::vector<SdoTransfer> *finished)
{
    if (!followed->has_value())
        return;
    (*followed)->leave(isTimeOver);
    finished->push_back((*followed)->transfer());
    followed->reset();
}

/*! A request that begins a transfer while another is under way: its client has given up, or there are two. */
void SdoConversation::overtake(const Heard &heard, FollowedTransfer *next, std::vector<SdoTransfer> *finished)
{
    if (!m_current)
        return;
    if (heard.frame.time - m_current->transfer().end > SdoTransfers::longestWait) {
        end(&m_current, true, finished);
        return;
    }
    end(&m_overtaken, true, finished);
    const SdoTransfer &left = m_current->transfer();
    const bool isSame = left.object == next->transfer().object && left.isUpload == next->transfer().isUpload;
    if (isSame && m_current->isInitiating())
        next->note(SdoTransfer::Repeated);
    m_current->note(SdoTransfer::Overtaken);
    if (left.isSent != heard.frame.isSent()) {
        m_current->note(SdoTransfer::ForeignClient);
        next->note(SdoTransfer::ForeignClient);
    }
    m_overtaken = std::move(m_current);
    m_current.reset();
}

SdoConversation::Place SdoConversation::handleRequest(const Heard &heard, quint32 *begun,
                                                      std::vector<SdoTransfer> *finished)
{
    const std::optional<SdoStep> beginning = FollowedTransfer::beginning(heard);
    const auto isSegmentOf
        = [&heard](const Followed &followed) { return followed && followed->isBlockSegment(heard); };
    if (beginning && !isSegmentOf(m_current) && !isSegmentOf(m_overtaken)) {
        FollowedTransfer next(heard, ++*begun, m_nodeId);
        overtake(heard, &next, finished);
        m_current = std::move(next);
        return {*begun, *beginning};
    }
    if (m_current) {
        const SdoStep step = m_current->handleRequest(heard);
        if (step != SdoStep::Stray)
            return placeIn(&m_current, step, finished);
    }
    if (m_overtaken) {
        const SdoStep step = m_overtaken->handleRequest(heard);
        if (step != SdoStep::Stray) {
            // Its client goes on: so it was another one that began the next transfer.
            m_overtaken->note(SdoTransfer::ForeignClient);
            if (m_current)
                m_current->note(SdoTransfer::ForeignClient);
            return placeIn(&m_overtaken, step, finished);
        }
    }
    return {0, SdoStep::Stray};
}

SdoConversation::Place SdoConversation::handleAnswer(const Heard &heard, std::vector<SdoTransfer> *finished)
{
    for (Followed *followed : {&m_current, &m_overtaken}) {
        if (!followed->has_value())
            continue;
        const SdoStep step = (*followed)->handleAnswer(heard);
        if (step != SdoStep::Stray)
            return placeIn(followed, step, finished);
    }
    return {0, SdoStep::Stray};
}

void SdoConversation::sweep(qint64 now, std::vector<SdoTransfer> *finished)
{
    for (Followed *followed : {&m_overtaken, &m_current}) {
        if (followed->has_value() && now - (*followed)->transfer().end > SdoTransfers::longestWait)
            end(followed, true, finished);
    }
}

void SdoConversation::finish(std::vector<SdoTransfer> *finished)
{
    end(&m_overtaken, true, finished);
    end(&m_current, false, finished);
}
