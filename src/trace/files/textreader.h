// SPDX-License-Identifier: MIT
#pragma once

#include "linereader.h"
#include "tracereader.h"

#include <QByteArray>

#include <vector>

/*! Reads a trace that is a text with a frame on a line; the base of those formats. */
class TextReader : public TraceReader
{
public:
    explicit TextReader(std::unique_ptr<ByteSource> source)
        : m_lines(std::move(source))
    {
    }

    Step next(TraceFrame *frame) final;

protected:
    enum class Line : quint8 {
        Frame,
        Nothing, //!< that is a frame: a comment, an event
        Wrong,   //!< a frame that cannot be read
        Unknown, //!< nothing of the format
    };

    /*! Reads a line as nearly all are, the first one of what stands in \a rest; returns what stands behind its LF. Null when
     *  it is another one, or has no end there; \a frame may have any content then.
     */
    virtual const char *parseUsual(TextLine rest, TraceFrame *frame);
    /*! Reads a line. \a frame is cleared before. */
    virtual Line parse(TextLine line, TraceFrame *frame) = 0;

    /*! Keeps the sentence that says what is wrong with the line. */
    Line wrong(const QString &sentence);
    /*! The line is none of the format. */
    Line notUnderstood(TextLine line);
    Line tooLargeId();
    Line flexibleDataRate();
    Line tooManyChannels();

    /*! The position of a channel, which is new or not; -1 when there is no room for another one. */
    int channelOf(const char *begin, const char *end);

private:
    QString m_sentence;
    LineReader m_lines;
    std::vector<QByteArray> m_channels;
    size_t m_lastChannel = 0;
};
