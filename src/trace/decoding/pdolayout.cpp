// SPDX-License-Identifier: MIT
#include "pdolayout.h"

#include <algorithm>

PdoLayout PdoLayout::of(quint8 nodeId, int number, bool isTransmit, const CanOpen::PdoMapping &mapping)
{
    PdoLayout layout;
    layout.nodeId = nodeId;
    layout.number = number;
    layout.isTransmit = isTransmit;
    layout.bytes = mapping.bytes();
    int first = 0;
    for (const CanOpen::PdoMappingEntry &entry : mapping.entries) {
        layout.parts.append({entry.object, static_cast<quint8>(first), entry.bits, entry.isDummy()});
        first += entry.bits;
    }
    return layout;
}

bool PdoLayout::contains(quint16 index, int subIndex) const
{
    return std::any_of(parts.begin(), parts.end(), [=](const Part &part) {
        return part.object.index == index && (subIndex < 0 || part.object.subIndex == subIndex);
    });
}
