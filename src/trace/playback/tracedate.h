// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>

/*! The time of day that \a time is (us since 1970), in the zone of this computer and with its offset; invalid for what no
 *  calendar has.
 */
QDateTime traceDate(qint64 time);
