// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringList>

/*! A line of a table (RFC 4180) in UTF-8, with its end: fields with commas, quotes or line breaks stand in quotes. */
QByteArray csvLine(const QStringList &fields);
