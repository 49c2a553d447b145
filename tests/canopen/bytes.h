// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/*! Bytes written as on paper: "43 00 10 00 92 01 02 00". */
inline QByteArray bytes(const char *digits)
{
    return QByteArray::fromHex(digits);
}
