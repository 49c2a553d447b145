// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QString;
class QVariant;

/*! The tool tip of a cell that shows a value of object \a index: object and raw value, decimal and
 *  hexadecimal.
 */
QString objectToolTip(quint16 index, const QVariant &value);
