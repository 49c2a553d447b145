// SPDX-License-Identifier: MIT
#pragma once

#include "linereader.h"

/*! The beginning of a trc: days since 30 December 1899, of this computer's time zone. */
namespace TrcDate {

/*! us since 1970; 0 when it is none. */
qint64 parse(TextLine days);

/*! With so many places that every us can be told from the next. 0 for what is no time of day. */
QByteArray write(qint64 time);

} // namespace TrcDate
