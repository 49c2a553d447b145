// SPDX-License-Identifier: MIT
#include "nodeview.h"

#include <QLoggingCategory>

#include <limits>

namespace {
Q_LOGGING_CATEGORY(lcStore, "reader.store")
}

std::optional<QVariant> NodeView::value(quint16 index, quint8 subIndex) const
{
    QVariant holder;
    if (!getValue(index, subIndex, holder))
        return std::nullopt;
    return holder;
}

std::optional<quint32> NodeView::entryCount(quint16 index) const
{
    const std::optional<QVariant> count = value(index, 0);
    if (!count)
        return std::nullopt;
    return count->toUInt();
}

quint32 NodeView::boundedCount(quint16 index, quint32 count) const
{
    // No entry can be stored beyond sub-index 255, so nothing is lost.
    constexpr quint32 lastSubIndex = std::numeric_limits<quint8>::max();
    if (count <= lastSubIndex)
        return count;
    reportCut(index, count);
    return lastSubIndex;
}

void NodeView::reportCut(quint16 index, quint32 bound) const
{
    qCDebug(lcStore).noquote() << QStringLiteral(
                                      "Node %1: object 0x%2 states %3 entries, more than there can be")
                                      .arg(m_nodeId)
                                      .arg(index, 4, 16, QLatin1Char('0'))
                                      .arg(bound);
}
