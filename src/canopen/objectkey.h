// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>
#include <QString>

namespace CanOpen {

/*! Index and sub-index of an object dictionary entry: what an SDO calls its multiplexer. */
struct ObjectKey
{
    quint16 index = 0;
    quint8 subIndex = 0;

    /*! For messages to people: "6000h sub-index 1". */
    QString toString() const
    {
        return QStringLiteral("%1h sub-index %2")
            .arg(QString::number(index, 16).toUpper().rightJustified(4, QLatin1Char('0')))
            .arg(subIndex);
    }
};

constexpr bool operator==(ObjectKey a, ObjectKey b)
{
    return a.index == b.index && a.subIndex == b.subIndex;
}
constexpr bool operator!=(ObjectKey a, ObjectKey b)
{
    return !(a == b);
}
constexpr bool operator<(ObjectKey a, ObjectKey b)
{
    return a.index < b.index || (a.index == b.index && a.subIndex < b.subIndex);
}

} // namespace CanOpen

Q_DECLARE_METATYPE(CanOpen::ObjectKey)
