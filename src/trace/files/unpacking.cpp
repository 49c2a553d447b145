// SPDX-License-Identifier: MIT
#include "unpacking.h"

#include "tracefilestr.h"

qint64 Unpacking::read(char *to, qint64 most)
{
    while (!m_hasEnded) {
        if (m_position == m_filled && !m_mayHoldMore) {
            const Filled filled = fill();
            if (filled == Filled::Failed)
                return fail(m_packed->errorString());
            if (filled == Filled::End)
                return end();
        }
        if (m_isComplete && !restart())
            return broken();
        const Step step = unpack(m_room.data() + m_position, m_filled - m_position, to, most);
        if (step.result == Result::Broken)
            return broken();
        m_isComplete = step.result == Result::Complete;
        m_mayHoldMore = !m_isComplete && step.made == most;
        m_position += step.used;
        m_used += step.used;
        m_made += step.made;
        if (m_made > harmless && m_made / largestRatio > m_used) {
            m_hasEnded = true;
            return fail(TraceFilesTr::tr("It unpacks to more than %1 times its size, which no trace does: "
                                         "the rest is not read.")
                            .arg(largestRatio));
        }
        if (step.made > 0)
            return step.made;
    }
    return errorString().isEmpty() ? 0 : -1;
}

Unpacking::Filled Unpacking::fill()
{
    m_position = 0;
    m_filled = 0;
    const qint64 count = m_packed->read(m_room.data(), static_cast<qint64>(m_room.size()));
    if (count < 0)
        return Filled::Failed;
    m_filled = count;
    return count > 0 ? Filled::Yes : Filled::End;
}

qint64 Unpacking::end()
{
    m_hasEnded = true;
    if (m_isComplete)
        return 0;
    return fail(TraceFilesTr::tr("The compressed data are cut: their end is missing."));
}

qint64 Unpacking::broken()
{
    m_hasEnded = true;
    // As gzip does: what stands behind the end, such as zeros of a medium, is left out.
    if (m_isComplete)
        return 0;
    return fail(TraceFilesTr::tr("The compressed data are broken: the rest is not read."));
}
