// SPDX-License-Identifier: MIT
#include "tracesearch.h"

void TraceSearch::start(int row, int rows, Direction direction, const Matches &matches)
{
    m_matches = matches;
    m_direction = direction;
    m_rows = rows;
    m_left = rows;
    m_wentRound = false;
    m_state = State::Looking;
    m_row = row;
    if (row < 0 || row >= rows)
        m_row = direction == Direction::Forward ? -1 : rows;
}

TraceSearch::State TraceSearch::advance(int most)
{
    for (int looked = 0; m_state == State::Looking && looked < most; ++looked) {
        if (m_left == 0) {
            m_state = State::NotFound;
            break;
        }
        --m_left;
        step();
        if (m_matches(m_row))
            m_state = State::Found;
    }
    return m_state;
}

void TraceSearch::step()
{
    m_row += m_direction == Direction::Forward ? 1 : -1;
    if (m_row >= 0 && m_row < m_rows)
        return;
    m_row = m_row < 0 ? m_rows - 1 : 0;
    m_wentRound = true;
}
