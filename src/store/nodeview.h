// SPDX-License-Identifier: MIT
#pragma once

#include "nodestore.h"

#include <optional>

/*! Answers "value of index, sub-index" for one node, and owns the ways in which sub-indices are walked.
 *
 *  A light handle on the store, to be used at once and not kept. All counts and bounds are values that a
 *  device or a file has set: they are taken as unsigned 32-bit numbers, and every walk ends whatever they
 *  are.
 */
class NodeView
{
public:
    /*! How many sub-indices a walk with a bound of its own looks at before it is cut, with a debug line.
     *
     *  Sub-index 0, an UNSIGNED8, comes up again at the 256th step at the latest and ends the walk of every
     *  honest device, so the limit is met only by counts that no device can have.
     */
    static constexpr quint32 maximumSteps = 16 * 256;

    NodeView(const NodeStore &store, quint8 nodeId)
        : m_store(store)
        , m_nodeId(nodeId)
    {
    }

    quint8 nodeId() const { return m_nodeId; }

    /*! Copies the value to \a holder and returns true; without the entry \a holder stays as it is. */
    bool getValue(quint16 index, quint8 subIndex, QVariant &holder) const
    {
        return m_store.getValue(m_nodeId, index, subIndex, holder);
    }

    /*! The value, or nothing. */
    std::optional<QVariant> value(quint16 index, quint8 subIndex) const;

    /*! The number of entries that sub-index 0 states, or nothing. */
    std::optional<quint32> entryCount(quint16 index) const;

    /*! Calls handle(quint8 subIndex, const QVariant &value) for each stored sub-index of 1 to N, where N is
     *  the value of sub-index 0, read once. Does nothing when sub-index 0 is not stored.
     */
    template<typename Handler>
    void forEachEntry(quint16 index, Handler handle) const
    {
        const std::optional<quint32> count = entryCount(index);
        if (!count)
            return;
        const quint32 last = boundedCount(index, *count);
        for (quint32 s = 1; s <= last; ++s) {
            const auto subIndex = static_cast<quint8>(s);
            if (const std::optional<QVariant> entry = value(index, subIndex))
                handle(subIndex, *entry);
        }
    }

    /*! Calls handle(quint8 subIndex, const QVariant &value) for each stored sub-index of 1, 2, 3, ... until
     *  the number is greater than the value in \a holder.
     *
     *  The caller decides whether there is something to walk (usually: sub-index 0 is stored) and puts the
     *  first bound into \a holder, which is also where every value found goes.
     */
    template<typename Handler>
    void followEntries(quint16 index, QVariant &holder, Handler handle) const
    {
        // Deliberate: the bound is the value found last, not the count of sub-index 0, and the number goes on
        // beyond 255, where it comes back to sub-index 0.
        for (quint32 k = 1; k <= holder.toUInt(); ++k) {
            if (k > maximumSteps) {
                reportCut(index, holder.toUInt());
                return;
            }
            const auto subIndex = static_cast<quint8>(k % 256);
            if (getValue(index, subIndex, holder))
                handle(subIndex, static_cast<const QVariant &>(holder));
        }
    }

    /*! Calls handle(quint8 subIndex, const QVariant &value) for each stored sub-index of 1, 2, 3, ... up to
     *  the one before \a count, of whose number the low 8 bits count. A count of 0 or 1 has nothing to list.
     */
    template<typename Handler>
    void forEachBefore(quint16 index, quint32 count, Handler handle) const
    {
        if (count == 0)
            return;
        // Deliberate: the list stops one short of the count.
        for (quint32 i = 1; i != count; ++i) {
            if (i > maximumSteps) {
                reportCut(index, count);
                return;
            }
            const auto subIndex = static_cast<quint8>(i % 256);
            if (const std::optional<QVariant> entry = value(index, subIndex))
                handle(subIndex, *entry);
        }
    }

private:
    quint32 boundedCount(quint16 index, quint32 count) const;
    void reportCut(quint16 index, quint32 bound) const;

    const NodeStore &m_store;
    quint8 m_nodeId;
};
