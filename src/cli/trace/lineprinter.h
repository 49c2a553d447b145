// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/signs.h>
#include <trace/core/trace.h>
#include <trace/decoding/linestream.h>
#include <trace/decoding/tracedecoder.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDate>

#include <optional>

/*! Prints the lines of a trace, for people or for programs. */
class LinePrinter
{
    Q_DECLARE_TR_FUNCTIONS(LinePrinter)

public:
    enum class Style : quint8 { Text, Json };
    enum class Delivery : quint8 {
        AtOnce,  //!< each line as soon as it is there
        InBlocks //!< many at once, which costs less
    };

    /*! All must outlive it. */
    LinePrinter(const TraceDecoder *decoder, Style style, Delivery delivery)
        : m_decoder(decoder)
        , m_style(style)
        , m_delivery(delivery)
    {
    }

    /*! How many channels the trace has, where that is known before its lines; else their column begins with the second. */
    void expectChannels(int count) { m_expectedChannels = count; }

    /*! \a head as far as it is known. False when standard output takes no more. */
    bool print(const StreamedLine &line, const TraceText &text, const TraceHead &head);
    /*! Writes what was not written yet; likewise. */
    bool flush();

private:
    void append(const StreamedLine &line, const TraceText &text, const TraceHead &head);
    QString timeText(qint64 time, const TraceHead &head);
    QString distance(qint64 time);
    QString sign(TraceMark mark) const;

    const TraceDecoder *m_decoder;
    Style m_style;
    Delivery m_delivery;
    Signs m_signs{Signs::detectStyle()};
    int m_expectedChannels = 0;
    QByteArray m_lines;
    QDate m_day;
    std::optional<qint64> m_last; // us, of the line before
};
