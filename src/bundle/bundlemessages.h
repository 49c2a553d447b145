// SPDX-License-Identifier: MIT
#pragma once

#include "supportbundle.h"

#include <QByteArray>

/*! The messages of a bundle: a line each, "2026-11-22T10:11:12.000+01:00 warning: text"; further lines of a text are
 *  indented.
 */
namespace BundleMessages {

QByteArray toText(const QVector<BundleMessage> &messages);

/*! Lines that are none are passed over; no more than a thousand messages are read. */
QVector<BundleMessage> fromText(const QByteArray &text);

} // namespace BundleMessages
