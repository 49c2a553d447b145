// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>

#include <QByteArray>

#include <optional>

/*! The trace of a bundle: a log of candump, compressed with gzip.
 *
 *  That holds every frame to the microsecond with its channel, its direction and what error frames say; zcat and every
 *  editor show it, and canplayer sends it without a program of ours.
 */
namespace BundledTrace {

constexpr char fileName[] = "trace.log.gz";

QByteArray toBytes(const Trace &trace);

/*! Empty when they are no trace, with a sentence. */
std::optional<Trace> fromBytes(const QByteArray &bytes, QString *errorMessage);

} // namespace BundledTrace
