// SPDX-License-Identifier: MIT
#pragma once

#include "traceformat.h"

#include <trace/core/trace.h>

#include <QByteArray>

#include <memory>

class ByteSink;
class FrameEncoder;

/*! Writes the frames of a trace one after the other.
 *
 *  After a failure every call fails, and errorString() has the sentence.
 */
class TraceWriter
{
public:
    /*! Takes \a sink. */
    TraceWriter(std::unique_ptr<FrameEncoder> encoder, std::unique_ptr<ByteSink> sink);
    ~TraceWriter(); //!< without finish(), a file that is to be whole is not there
    Q_DISABLE_COPY(TraceWriter)

    /*! Channels that come later are given again with the one more; those that are there stay. */
    void setHead(const TraceHead &head);

    /*! A frame; its channel is one of the head. It may stay in memory until flush(). */
    bool write(const TraceFrame &frame);

    /*! Hands all that was written to the system, so that it is there whatever happens to the program. */
    bool flush();

    /*! Writes the end, and closes. */
    bool finish();

    /*! Bytes of the file so far, and those that wait. */
    qint64 size() const;
    QString errorString() const;

private:
    void begin(qint64 first);
    bool handOver();

    std::unique_ptr<FrameEncoder> m_encoder;
    std::unique_ptr<ByteSink> m_sink;
    QByteArray m_waiting;
    bool m_hasBegun = false;
    bool m_hasFailed = false;
};
