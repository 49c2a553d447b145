// SPDX-License-Identifier: MIT
#pragma once

#include "linereader.h"

/*! The date of an asc: "Fri Jul 10 08:37:32.249 am 2015", of this computer's time zone. */
namespace AscDate {

/*! Finds a date in the words of \a line, in English or German, with twelve or 24 hours; false when there is none. \a time (us
 *  since 1970) may be null.
 */
bool parse(TextLine line, qint64 *time);

/*! In English with milliseconds, which \a time must be whole in. */
QByteArray write(qint64 time);

} // namespace AscDate
