// SPDX-License-Identifier: MIT
#pragma once

#include "traceformat.h"

#include <trace/core/trace.h>

#include <QByteArray>
#include <QVector>

#include <memory>

/*! Frames as the bytes of a format. Bytes are appended to what is there. */
class FrameEncoder
{
public:
    FrameEncoder() = default;
    virtual ~FrameEncoder() = default;
    Q_DISABLE_COPY(FrameEncoder)

    static std::unique_ptr<FrameEncoder> of(TraceFormat format);

    /*! Before everything, and again when there are more channels. */
    void setHead(const TraceHead &head);

    /*! What stands before all frames; \a first: the time of the first of them. */
    virtual void begin(qint64 first, QByteArray *to) = 0;
    virtual void write(const TraceFrame &frame, QByteArray *to) = 0;
    virtual void end(QByteArray *to) { Q_UNUSED(to) }

protected:
    bool hasTimeOfDay() const { return m_hasTimeOfDay; }
    int channels() const { return m_names.size(); }
    /*! The name of a channel as one word. */
    QByteArray channelName(int channel) const;
    /*! Its number, for formats that only number them: the name when it is a number, else one that no other has. */
    QByteArray channelNumber(int channel) const;

private:
    void addChannel(const QString &name);

    bool m_hasTimeOfDay = false;
    QVector<QByteArray> m_names;
    QVector<QByteArray> m_numbers;
};

/*! Pieces of lines. */
namespace FrameText {

/*! \a digits capital hexadecimal digits. */
void addHex(quint32 value, int digits, QByteArray *to);
/*! Two digits for each byte, with \a separator before each that is not 0. */
void addBytes(const TraceFrame &frame, char separator, QByteArray *to);
/*! \a time in units of \a scale, a power of ten, with all its places: us in 1000000 are seconds with six. What stands before
 *  the point is filled up with \a fill to \a width.
 */
void addTime(qint64 time, qint64 scale, int width, char fill, QByteArray *to);
/*! \a text, blanks before it up to \a width. */
void addRight(const QByteArray &text, int width, QByteArray *to);

} // namespace FrameText
