// SPDX-License-Identifier: MIT
#pragma once

#include "tracereader.h"
#include "traceformat.h"
#include "tracewriter.h"

#include <QString>

#include <memory>
#include <optional>

class ByteSource;

/*! Traces in files, in pipes and in memory; compressed ones too. */
namespace TraceFile {

/*! Bounds of what is kept in memory. */
struct Limits
{
    size_t frames = 20'000'000;
    int problems = 100; // the first ones; all are counted
};

/*! Whether the file is there as it grows, or only when it is whole. */
enum class Appearance : quint8 { Growing, Whole };

/*! Opens a file, or standard input ("-"). What it holds tells its compression and its format; where it does not, because
 *  there is nothing in it, its suffix does. Null with a sentence when it cannot be opened or is no trace.
 */
std::unique_ptr<TraceReader> open(const QString &path, QString *errorMessage);

/*! The same for bytes from elsewhere; \a name is what they are called in sentences, with a suffix that may decide. */
std::unique_ptr<TraceReader> open(std::unique_ptr<ByteSource> bytes, const QString &name,
                                  QString *errorMessage);

/*! About how many frames a file has that \a reader reads; 0 when nobody knows. */
size_t expectedFrames(const QString &path, const TraceReader &reader);

/*! Reads a whole trace, as far as \a limits go. Empty with a sentence when it cannot be opened or is no trace. */
std::optional<Trace> load(const QString &path, const Limits &limits, QString *errorMessage);
/*! The rest of \a reader. \a expectedFrames: about how many will come, 0 when nobody knows. */
Trace load(TraceReader *reader, const Limits &limits, size_t expectedFrames = 0);

/*! A writer to a file, or to standard output ("-"); the format is \a format, else that of the suffix. Null with a
 *  sentence when it cannot be made.
 */
std::unique_ptr<TraceWriter> create(const QString &path, const TraceHead &head, QString *errorMessage,
                                    Appearance appearance = Appearance::Whole,
                                    std::optional<TraceFormat> format = std::nullopt);

/*! A whole trace at once. False with a sentence on failure. */
bool save(const QString &path, const Trace &trace, QString *errorMessage,
          std::optional<TraceFormat> format = std::nullopt);

} // namespace TraceFile
