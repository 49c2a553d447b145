// SPDX-License-Identifier: MIT
#include "objecttooltip.h"

#include <QString>
#include <QVariant>

namespace {

QString upperHexadecimal(quint32 number)
{
    return QString::number(number, 16).toUpper();
}

} // namespace

QString objectToolTip(quint16 index, const QVariant &value)
{
    // Deliberate: the hexadecimal number has a sign, so that values beyond 7FFFFFFFh show a minus.
    const qint32 number = value.toInt();
    const QString sign = number < 0 ? QStringLiteral("-") : QString();
    const quint32 magnitude = number < 0 ? 0u - static_cast<quint32>(number) : static_cast<quint32>(number);
    return QStringLiteral("Object: 0x%1, Value: %2 | 0x%3")
        .arg(upperHexadecimal(index), value.toString(), sign + upperHexadecimal(magnitude));
}
