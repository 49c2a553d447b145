// SPDX-License-Identifier: MIT
#pragma once

#include "liveevent.h"

#include <QSet>

/*! Which events somebody wants to see. Everything, at first. */
struct EventFilter
{
    Severity least = Severity::Note;
    QSet<quint8> nodes;    //!< empty: all, and what is of none
    QSet<EventKind> kinds; //!< empty: all
    QString text;          //!< in the words of the event, in whatever capitals

    bool matches(const LiveEvent &event) const;
};

inline uint qHash(EventKind kind, uint seed = 0)
{
    return ::qHash(static_cast<uint>(kind), seed);
}
