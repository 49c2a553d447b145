// SPDX-License-Identifier: MIT
#include "eventfilter.h"

#include "eventwords.h"

bool EventFilter::matches(const LiveEvent &event) const
{
    return event.severity() >= least && (nodes.isEmpty() || nodes.contains(event.nodeId))
           && (kinds.isEmpty() || kinds.contains(event.kind))
           && (text.isEmpty() || EventWords::line(event).contains(text, Qt::CaseInsensitive));
}
