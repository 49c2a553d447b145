// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

/*! Looks for words in rows, some rows at a time, from one row on and round to it. */
class TraceSearch
{
public:
    enum class Direction : quint8 { Forward, Backward };
    enum class State : quint8 { Idle, Looking, Found, NotFound };

    /*! Whether the words of a row hold those that are looked for. */
    using Matches = std::function<bool(int row)>;

    /*! Begins behind \a row (-1: with the first, or with the last). */
    void start(int row, int rows, Direction direction, const Matches &matches);
    void stop() { m_state = State::Idle; }

    /*! Looks at no more than \a most rows. */
    State advance(int most);

    State state() const { return m_state; }
    /*! The row that was found. */
    int row() const { return m_row; }
    /*! Whether it went round: past the last row to the first, or the other way. */
    bool wentRound() const { return m_wentRound; }

private:
    void step();

    Matches m_matches;
    Direction m_direction = Direction::Forward;
    State m_state = State::Idle;
    int m_row = -1;
    int m_rows = 0;
    int m_left = 0; // rows that were not looked at
    bool m_wentRound = false;
};
