// SPDX-License-Identifier: MIT
#include "tracerows.h"

#include <algorithm>

void TraceRows::setLines(const TraceLines *lines)
{
    m_lines = lines;
    restart();
}

void TraceRows::setFilter(const TraceFilter &filter)
{
    m_filter = filter;
    m_isAll = filter.isEmpty();
    restart();
}

void TraceRows::restart()
{
    m_rows.clear();
    m_waiting.clear();
    m_search = TextSearch(m_filter.text);
    m_examined = 0;
}

std::size_t TraceRows::rowOf(std::size_t line) const
{
    if (m_isAll)
        return std::min(line, m_examined);
    const auto row = std::lower_bound(m_rows.begin(), m_rows.end(), line);
    return static_cast<std::size_t>(row - m_rows.begin());
}

std::vector<quint32> TraceRows::examine(std::size_t most)
{
    if (m_lines == nullptr)
        return {};
    const std::size_t first = m_examined;
    m_examined += std::min(most, m_lines->size() - m_examined);
    const std::vector<quint32> found = m_lines->filtered(m_filter, &m_search, first, m_examined);
    for (std::size_t line = first; line < m_examined; ++line) {
        if (m_lines->at(line).transfer != 0 && !m_lines->transfer(line)
            && !std::binary_search(found.begin(), found.end(), line))
            m_waiting.push_back(static_cast<quint32>(line));
    }
    return found;
}

void TraceRows::append(const std::vector<quint32> &lines)
{
    m_rows.insert(m_rows.end(), lines.begin(), lines.end());
}

std::optional<quint32> TraceRows::takeLate()
{
    for (std::size_t i = 0; i < m_waiting.size();) {
        const quint32 line = m_waiting[i];
        if (!m_lines->transfer(line)) {
            ++i;
            continue;
        }
        m_waiting.erase(m_waiting.begin() + static_cast<std::ptrdiff_t>(i));
        if (m_lines->fits(line, m_filter))
            return line;
    }
    return std::nullopt;
}

void TraceRows::insert(quint32 line)
{
    m_rows.insert(std::lower_bound(m_rows.begin(), m_rows.end(), line), line);
}
