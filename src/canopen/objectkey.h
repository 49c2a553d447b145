// SPDX-License-Identifier: MIT
#pragma once

#include "hexadecimal.h"

#include <QMetaType>
#include <QString>

namespace CanOpen {

/*! An object's index for people: "60ABh". */
inline QString indexText(quint16 index)
{
    return hexadecimal(index, 4) + QLatin1Char('h');
}

/*! Index and sub-index of an object dictionary entry: what an SDO calls its multiplexer. */
struct ObjectKey
{
    quint16 index = 0;
    quint8 subIndex = 0;

    /*! For messages to people: "6000h sub-index 1". */
    QString toString() const
    {
        return QStringLiteral("%1 sub-index %2").arg(indexText(index), QString::number(subIndex));
    }

    /*! In lists: "6000h.1". */
    QString toShortString() const { return indexText(index) + QLatin1Char('.') + QString::number(subIndex); }
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
