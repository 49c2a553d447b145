// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>

/*! Reads the frames of a trace one after the other. */
class TraceReader
{
public:
    enum class Step : quint8 {
        Frame,
        Problem, //!< something could not be read, see problem(); reading goes on
        End,     //!< and after a Problem that ended it
    };

    TraceReader() = default;
    virtual ~TraceReader() = default;
    Q_DISABLE_COPY(TraceReader)

    /*! Goes on to the next frame, the next problem, or the end; after the end it stays there. */
    virtual Step next(TraceFrame *frame) = 0;

    /*! Of the last Step::Problem. */
    const TraceProblem &problem() const { return m_problem; }

    /*! What is known so far: a channel is in it before its first frame is given. Whether times are of the day is known with
     *  the first frame.
     */
    const TraceHead &head() const { return m_head; }

    /*! How many bytes a frame takes about, for who wants to know how many there will be. */
    virtual int bytesPerFrame() const = 0;

protected:
    /*! Most channels that a trace has. */
    static constexpr int mostChannels = 256;

    TraceHead *headToFill() { return &m_head; }
    Step complain(qint64 line, const QString &sentence)
    {
        m_problem = {line, sentence};
        return Step::Problem;
    }

private:
    TraceHead m_head;
    TraceProblem m_problem;
};
