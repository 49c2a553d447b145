// SPDX-License-Identifier: MIT
#include "objectkinds.h"

#include <algorithm>

void ObjectKinds::append(quint16 first, quint16 last, std::optional<quint8> sub, const ObjectKind &kind)
{
    m_rows.append({first, last, sub, kind});
}

ObjectKind ObjectKinds::find(CanOpen::ObjectKey key) const
{
    const auto row = std::find_if(m_rows.rbegin(), m_rows.rend(), [key](const Row &candidate) {
        return key.index >= candidate.first && key.index <= candidate.last
               && candidate.sub.value_or(key.subIndex) == key.subIndex;
    });
    return row != m_rows.rend() ? row->kind : ObjectKind();
}
