// SPDX-License-Identifier: MIT
#include "linestream.h"

#include "tracebook.h"

#include <utility>

void LineStream::handle(const TraceFrame &frame)
{
    const quint32 number = m_following.handle(frame, m_position).transfer;
    if (m_following.hasFinished() && number == 0)
        keepFinished(); // those that ended by time, before this frame
    if (number == 0) {
        append(frame, 0);
    } else if (number > m_begun) {
        m_begun = number;
        append(frame, number);
    }
    ++m_position;
    keepFinished();
    release();
}

void LineStream::append(const TraceFrame &frame, quint32 transfer)
{
    const StreamedLine line{frame, m_position, std::nullopt};
    if (transfer == 0 && m_order == Order::AsTheyEnd) {
        m_ready.push_back(line);
    } else if (m_order == Order::AsTheyEnd) {
        m_beginnings.emplace(transfer, line);
    } else {
        if (transfer != 0)
            m_places.emplace(transfer, m_released + m_waiting.size());
        m_waiting.push_back({line, transfer, transfer == 0});
    }
}

void LineStream::keepFinished()
{
    if (!m_following.hasFinished())
        return;
    for (const SdoTransfer &transfer : m_following.takeFinished()) {
        if (m_book != nullptr)
            m_book->learn(transfer);
        place(transfer);
    }
}

void LineStream::place(const SdoTransfer &transfer)
{
    const auto waiting = m_places.find(transfer.number);
    if (waiting != m_places.end()) {
        Waiting &place = m_waiting[waiting->second - m_released];
        place.line.transfer = transfer;
        place.isReady = true;
        m_places.erase(waiting);
        return;
    }
    const auto beginning = m_beginnings.find(transfer.number);
    if (beginning == m_beginnings.end())
        return;
    beginning->second.transfer = transfer;
    m_ready.push_back(beginning->second);
    m_beginnings.erase(beginning);
}

void LineStream::release()
{
    while (!m_waiting.empty() && (m_waiting.front().isReady || m_waiting.size() > mostWaiting)) {
        const Waiting &first = m_waiting.front();
        if (first.isReady) {
            m_ready.push_back(first.line);
        } else {
            m_places.erase(first.transfer);
            m_beginnings.emplace(first.transfer, first.line);
        }
        m_waiting.pop_front();
        ++m_released;
    }
}

void LineStream::finish()
{
    m_following.finish();
    keepFinished();
    release();
}

std::vector<StreamedLine> LineStream::take()
{
    return std::exchange(m_ready, {});
}
