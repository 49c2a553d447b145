// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>

#include <optional>

/*! How long a node took for its answers, in ms. */
class AnswerTimes
{
public:
    void add(qint64 time);

    /*! The one in the middle, of two the earlier; empty without answers. */
    std::optional<int> median() const;
    std::optional<int> longest() const;

private:
    static constexpr int longestCounted = 1000; // ms; a median beyond says no more than this
    QVector<int> m_counts;                      // by time; made with the first answer
    int m_total = 0;
    int m_longest = 0;
};
