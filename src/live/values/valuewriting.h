// SPDX-License-Identifier: MIT
#pragma once

#include "livevalues.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/*! Values for files and programs. */
namespace ValueWriting {

/*! A whole number with all its digits, up to 2^53; of others so many. */
QString numberText(double number, int digits);

/*! The names of the columns. */
QStringList csvColumns();

/*! Their fields with the last number: 2026-09-03T12:00:01.500Z, 2, 6040h.1, Voltage, 39.3, V. */
QStringList csvFields(const LiveValue &value, const QDateTime &time);

/*! A csvLine() with the names of the columns, and one with their fields. */
QByteArray csvHead();
QByteArray toCsv(const LiveValue &value, const QDateTime &time);

/*! "time", "node", "index" and "sub" (numbers), "name", "value", "unit". */
QJsonObject toJson(const LiveValue &value, const QDateTime &time);

} // namespace ValueWriting
