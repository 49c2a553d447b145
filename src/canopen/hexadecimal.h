// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace CanOpen {

/*! \a number in upper case, with zeros in front up to \a digits. */
inline QString hexadecimal(quint64 number, int digits = 1)
{
    return QString::number(number, 16).toUpper().rightJustified(digits, QLatin1Char('0'));
}

} // namespace CanOpen
