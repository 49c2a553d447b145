// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QVariant;

/*! How values of one unit key are shown: the raw value divided by \a divisor, with two decimals, in \a text.
 */
struct UnitFormat
{
    const char *key;  // unit key of the object description table, for example "mV"
    const char *text; // text with %1 for the number; translation context "DataInterpreter"
    double divisor;
};

/*! Returns the format of a unit key, compared case-sensitively, or null for a key without a format. */
const UnitFormat *findUnitFormat(const QString &key);

/*! Returns a raw value as text in the given unit: 36500 in "mV" is "36.50 V".
 *
 *  Signed values keep their sign. Without a format (null) the text is the value as an unsigned 32-bit decimal
 *  number.
 */
QString formatWithUnit(const UnitFormat *format, const QVariant &value);
