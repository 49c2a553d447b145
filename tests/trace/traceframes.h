// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>
#include <trace/files/bytesource.h>
#include <trace/files/tracefile.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <memory>

/*! A frame by hand; \a bytes in hexadecimal digits. */
inline TraceFrame traceFrame(qint64 time, quint32 id, const char *bytes, int flags = 0, quint8 channel = 0)
{
    TraceFrame frame;
    frame.time = time;
    frame.id = id;
    frame.flags = static_cast<quint8>(flags);
    frame.channel = channel;
    const QByteArray payload = QByteArray::fromHex(bytes);
    frame.length = static_cast<quint8>(payload.size());
    std::copy(payload.begin(), payload.end(), frame.bytes.begin());
    return frame;
}

inline TraceFrame remoteFrame(qint64 time, quint32 id, quint8 length, int flags = 0, quint8 channel = 0)
{
    TraceFrame frame = traceFrame(time, id, "", flags | TraceFrame::Remote, channel);
    frame.length = length;
    return frame;
}

/*! A frame in words: "1436509052.249713 can0 123 1122", "... 123 remote 8 sent". */
inline QString textOf(const TraceFrame &frame, const TraceHead &head)
{
    constexpr qint64 second = 1'000'000;
    const qint64 distance = frame.time < 0 ? -frame.time : frame.time;
    QString text = QStringLiteral("%1%2.%3 %4 %5")
                       .arg(frame.time < 0 ? QStringLiteral("-") : QString())
                       .arg(distance / second)
                       .arg(distance % second, 6, 10, QLatin1Char('0'))
                       .arg(head.channels.value(frame.channel, QStringLiteral("?")))
                       .arg(frame.id, frame.isExtended() ? 8 : 3, 16, QLatin1Char('0'));
    if (frame.isError())
        text += QStringLiteral(" error");
    if (frame.isRemote())
        text += QStringLiteral(" remote %1").arg(frame.length);
    if (frame.size() > 0)
        text += QLatin1Char(' ')
                + QString::fromLatin1(
                    QByteArray(reinterpret_cast<const char *>(frame.bytes.data()), frame.size()).toHex());
    if (frame.isSent())
        text += QStringLiteral(" sent");
    return text;
}

/*! All frames in words; then what could not be read, as "! LINE TEXT". */
inline QStringList textsOf(const Trace &trace)
{
    QStringList texts;
    for (const TraceFrame &frame : trace.frames)
        texts.append(textOf(frame, trace.head));
    for (const TraceProblem &problem : trace.problems)
        texts.append(QStringLiteral("! %1 %2").arg(problem.line).arg(problem.text));
    return texts;
}

/*! Reads \a bytes as a file of that name; what cannot be opened has a single problem in line 0. */
inline Trace readTrace(const QByteArray &bytes, const QString &name = QStringLiteral("trace"))
{
    QString error;
    const auto reader = TraceFile::open(std::make_unique<MemoryBytes>(bytes), name, &error);
    if (reader)
        return TraceFile::load(reader.get(), TraceFile::Limits());
    Trace trace;
    trace.problems.push_back({0, error});
    return trace;
}

inline QStringList readTexts(const QByteArray &bytes, const QString &name = QStringLiteral("trace"))
{
    return textsOf(readTrace(bytes, name));
}
