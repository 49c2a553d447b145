// SPDX-License-Identifier: MIT
#pragma once

#include "fault.h"

#include <QVector>

#include <algorithm>

namespace Simulator {

/*! The faults of one node, found by their kind. */
class FaultList
{
public:
    explicit FaultList(const QVector<Fault> &faults)
        : m_faults(faults)
    {
    }

    bool isEmpty() const { return m_faults.isEmpty(); }
    const QVector<Fault> &all() const { return m_faults; }

    void append(const Fault &fault) { m_faults.append(fault); }
    void clear() { m_faults.clear(); }

    /*! Removes all of one kind, which is the place in Fault. */
    void remove(std::size_t kind)
    {
        const auto isOfKind = [kind](const Fault &fault) { return fault.index() == kind; };
        m_faults.erase(std::remove_if(m_faults.begin(), m_faults.end(), isOfKind), m_faults.end());
    }

    /*! The first fault of a kind, or null. It holds until the list is changed. */
    template<typename Kind>
    const Kind *find() const
    {
        for (const Fault &fault : m_faults) {
            if (const Kind *found = std::get_if<Kind>(&fault))
                return found;
        }
        return nullptr;
    }

    /*! The first fault of a kind that shows with \a object, or null. */
    template<typename Kind>
    const Kind *find(CanOpen::ObjectKey object) const
    {
        for (const Fault &fault : m_faults) {
            const Kind *found = std::get_if<Kind>(&fault);
            if (found != nullptr && (!found->object || *found->object == object))
                return found;
        }
        return nullptr;
    }

private:
    QVector<Fault> m_faults;
};

} // namespace Simulator
