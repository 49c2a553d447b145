// SPDX-License-Identifier: MIT
#include "lineprinter.h"

#include <cli/core/console.h>
#include <cli/core/terminal.h>
#include <system/amounts.h>
#include <trace/decoding/linewriting.h>

#include <QDateTime>
#include <QJsonDocument>

namespace {

constexpr int blockSize = 64 * 1024; // bytes
constexpr int distanceWidth = 10;
constexpr int nodeWidth = 3;
constexpr int channelWidth = 5;

} // namespace

bool LinePrinter::print(const StreamedLine &line, const TraceText &text, const TraceHead &head)
{
    if (m_style == Style::Json)
        m_lines += QJsonDocument(LineWriting::toJson(line, *m_decoder, head)).toJson(QJsonDocument::Compact)
                   + '\n';
    else
        append(line, text, head);
    return m_delivery == Delivery::InBlocks && m_lines.size() < blockSize ? true : flush();
}

bool LinePrinter::flush()
{
    const bool isWritten = m_lines.isEmpty() || Console::write(m_lines);
    m_lines.clear();
    return isWritten;
}

/*! What a line says of devices and files may hold what acts on a terminal. */
void LinePrinter::append(const StreamedLine &line, const TraceText &text, const TraceHead &head)
{
    const FrameSort sort
        = line.transfer ? FrameSort::of(*line.transfer) : m_decoder->sort(line.frame, line.position);
    QString shown = timeText(line.frame.time, head) + QLatin1Char(' ') + distance(line.frame.time);
    if (qMax(m_expectedChannels, head.channels.size()) > 1)
        shown += QLatin1Char(' ')
                 + Terminal::visible(head.channels.value(line.frame.channel)).leftJustified(channelWidth);
    const QString node = sort.nodeId == 0 ? QString() : QString::number(sort.nodeId);
    shown += QLatin1Char(' ') + node.rightJustified(nodeWidth) + QLatin1String("  ") + sign(sort.mark)
             + Terminal::visible(text.text);
    if (!text.detail.isEmpty())
        shown += QStringLiteral(" (%1)").arg(text.detail);
    m_lines += shown.toLocal8Bit() + '\n';
}

QString LinePrinter::timeText(qint64 time, const TraceHead &head)
{
    constexpr int decimals = 6;
    if (!head.hasTimeOfDay)
        return QString::number(double(time) / Microseconds::ofSecond, 'f', decimals);
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(time / Microseconds::ofMillisecond);
    if (moment.date() != m_day) {
        m_day = moment.date();
        m_lines += m_day.toString(Qt::ISODate).toLatin1() + '\n';
    }
    return moment.time().toString(QStringLiteral("HH:mm:ss.zzz"));
}

/*! From the line before. */
QString LinePrinter::distance(qint64 time)
{
    const double passed = m_last ? double(time) - double(*m_last) : 0;
    const bool isFirst = !m_last;
    m_last = time;
    if (isFirst)
        return QString(distanceWidth, QLatin1Char(' '));
    const QString text = qAbs(passed) < Microseconds::ofSecond
                             ? tr("%1 ms").arg(passed / Microseconds::ofMillisecond, 0, 'f', 1)
                             : tr("%1 s").arg(passed / Microseconds::ofSecond, 0, 'f', 2);
    return text.rightJustified(distanceWidth);
}

QString LinePrinter::sign(TraceMark mark) const
{
    switch (mark) {
    case TraceMark::Plain:
        break;
    case TraceMark::Note:
        return m_signs.of(Severity::Note);
    case TraceMark::Warning:
        return m_signs.of(Severity::Warning);
    case TraceMark::Fault:
        return m_signs.of(Severity::Fault);
    }
    return QString();
}
