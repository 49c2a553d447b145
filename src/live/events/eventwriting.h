// SPDX-License-Identifier: MIT
#pragma once

#include "liveevent.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>

#include <functional>

/*! Events for files and programs. */
namespace EventWriting {

/*! The time of day of a time on the line of a FrameClock (us). */
using TimeOfDay = std::function<QDateTime(qint64 time)>;

/*! "time", "severity", "kind", "node" (null: of none), "code", "errorRegister", "manufacturer" (hexadecimal), "count",
 *  "lastTime", "text", and "detail" when there is a reason in words.
 */
QJsonObject toJson(const LiveEvent &event, const TimeOfDay &timeOfDay);

/*! The names of the columns; as all lines with its end. */
QByteArray csvHead();
/*! A csvLine() of the fields that csvHead() names. */
QByteArray toCsv(const LiveEvent &event, const TimeOfDay &timeOfDay);

} // namespace EventWriting
