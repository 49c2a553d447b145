// SPDX-License-Identifier: MIT
#include "valuetable.h"

#include "livewatch.h"

#include <host/core/livebus.h>
#include <live/values/valuewriting.h>
#include <system/amounts.h>

ValueTable ValueTable::of(const LiveWatch &watch, const LiveBus &live)
{
    ValueTable table;
    table.m_start = live.timeOfDay(0);
    for (int row = 0; row < watch.items().size(); ++row) {
        const LiveValue *value = watch.value(row);
        if (value == nullptr || value->history == nullptr)
            continue;
        Column column{*value, *value->history};
        column.value.history.reset();
        table.m_columns.push_back(std::move(column));
    }
    return table;
}

QByteArray ValueTable::toCsv() const
{
    QByteArray csv = ValueWriting::csvHead();
    std::vector<std::size_t> next(m_columns.size());
    for (;;) {
        std::size_t first = m_columns.size(); // the column whose point is the oldest
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            const ValueHistory &history = m_columns[i].history;
            if (next[i] < history.size()
                && (first == m_columns.size()
                    || history.at(next[i]).time < m_columns[first].history.at(next[first]).time))
                first = i;
        }
        if (first == m_columns.size())
            return csv;
        const ValueHistory::Point &point = m_columns[first].history.at(next[first]++);
        LiveValue value = m_columns[first].value;
        value.record = ValueRecord();
        value.record.add(point.time, double(point.last));
        csv += ValueWriting::toCsv(value, m_start.addMSecs(point.time / Microseconds::ofMillisecond));
    }
}
