// SPDX-License-Identifier: MIT
#include "jsonplace.h"

QString JsonPlace::toString() const
{
    if (m_parent == nullptr)
        return QString();
    const QString parent = m_parent->toString();
    if (m_key == nullptr)
        return parent + QLatin1Char('[') + QString::number(m_position) + QLatin1Char(']');
    const QString key = QString::fromUtf8(m_key);
    return parent.isEmpty() ? key : parent + QLatin1Char('.') + key;
}

void JsonPlace::complain(const QString &problem) const
{
    if (isFaulty())
        return;
    const QString place = toString();
    m_fault->text = place.isEmpty() ? problem : place + QStringLiteral(": ") + problem;
}
