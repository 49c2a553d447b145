// SPDX-License-Identifier: MIT
#pragma once

#include <trace/decoding/textsearch.h>
#include <trace/decoding/tracelines.h>

#include <optional>
#include <vector>

/*! Which lines of a trace are shown: those that fit a filter, in their order. They are looked at some at a time, so that
 *  nobody waits for a million of them. Rows from 0, of what is shown.
 */
class TraceRows
{
public:
    /*! Begins anew. \a lines may grow, and must outlive it or the next call; may be null. */
    void setLines(const TraceLines *lines);
    void setFilter(const TraceFilter &filter);
    const TraceFilter &filter() const { return m_filter; }

    std::size_t size() const { return m_isAll ? m_examined : m_rows.size(); }
    /*! The line in a row. */
    std::size_t lineAt(std::size_t row) const { return m_isAll ? row : m_rows[row]; }
    /*! The row of a line, or of the first one behind it that is shown; size() when there is none. */
    std::size_t rowOf(std::size_t line) const;

    /*! How many lines were looked at. */
    std::size_t examined() const { return m_examined; }
    bool isComplete() const { return m_lines == nullptr || m_examined == m_lines->size(); }

    /*! The lines that fit among the next \a most; append() shows them. */
    std::vector<quint32> examine(std::size_t most);
    void append(const std::vector<quint32> &lines);
    /*! Without a filter all lines are shown: those that have come. */
    bool isAll() const { return m_isAll; }
    void showAll() { m_examined = m_lines != nullptr ? m_lines->size() : 0; }

    /*! A line whose transfer was under way when it was looked at, and that fits now that it has ended; insert() shows it. */
    std::optional<quint32> takeLate();
    void insert(quint32 line);

private:
    void restart();

    const TraceLines *m_lines = nullptr;
    TraceFilter m_filter;
    TextSearch m_search{QString()}; // for the filter's text
    bool m_isAll = true;
    std::vector<quint32> m_rows;    // unused while all are shown
    std::vector<quint32> m_waiting; // lines of transfers under way, which did not fit so far
    std::size_t m_examined = 0;
};
