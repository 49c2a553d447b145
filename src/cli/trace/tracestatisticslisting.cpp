// SPDX-License-Identifier: MIT
#include "tracestatisticslisting.h"

#include <cli/core/terminal.h>
#include <cli/core/textcolumns.h>
#include <system/amounts.h>
#include <trace/statistics/trafficgroups.h>

#include <QDateTime>
#include <QJsonArray>

namespace {

constexpr int hex = 16;

double perSecond(quint64 count, double duration)
{
    return duration > 0 ? static_cast<double>(count) / duration : 0;
}

/*! "1A0h", "18EBFF00h" */
QString identifierText(const IdentifierCount &row)
{
    constexpr int standardDigits = 3;
    constexpr int extendedDigits = 8;
    return QStringLiteral("%1h")
        .arg(row.id, row.isExtended ? extendedDigits : standardDigits, hex, QLatin1Char('0'))
        .toUpper()
        .replace(QLatin1Char('H'), QLatin1Char('h'));
}

/*! us as seconds, with all places. */
QString seconds(qint64 time)
{
    return QString::number(static_cast<double>(time) / Microseconds::ofSecond, 'f', 6);
}

QJsonObject countJson(const TraceCount &count)
{
    return {{QStringLiteral("frames"), double(count.frames)},
            {QStringLiteral("bits"), double(count.bits)},
            {QStringLiteral("first"), double(count.first) / Microseconds::ofSecond},
            {QStringLiteral("last"), double(count.last) / Microseconds::ofSecond}};
}

} // namespace

QString TraceStatisticsListing::channelName(int channel) const
{
    return Terminal::visible(m_head.channels.value(channel, QString::number(channel + 1)));
}

QString TraceStatisticsListing::time(qint64 time) const
{
    constexpr int places = 6;
    if (!m_head.hasTimeOfDay)
        return tr("%1 s").arg(seconds(time));
    return QDateTime::fromMSecsSinceEpoch(time / Microseconds::ofMillisecond)
               .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss."))
           + QString::number(time % Microseconds::ofSecond).rightJustified(places, QLatin1Char('0'));
}

QString TraceStatisticsListing::load(double bitsPerSecond) const
{
    constexpr double percent = 100;
    constexpr double kilo = 1000;
    return m_bitRate ? tr("%1 %").arg(bitsPerSecond / *m_bitRate * percent, 0, 'f', 1)
                     : tr("%1 kbit/s").arg(bitsPerSecond / kilo, 0, 'f', 1);
}

QVector<QStringList> TraceStatisticsListing::summary() const
{
    const TraceCount &all = m_statistics.all();
    QVector<QStringList> rows{{tr("Frames"), QString::number(all.frames)}};
    if (all.frames > 0) {
        rows.append({tr("First"), time(all.first)});
        rows.append({tr("Last"), time(all.last)});
        rows.append({tr("Duration"), tr("%1 s").arg(seconds(all.last - all.first))});
    }
    if (m_statistics.backwardTimes() > 0)
        rows.append({tr("Times that run backward"), QString::number(m_statistics.backwardTimes())});
    if (m_unread > 0)
        rows.append({tr("Could not be read"), QString::number(m_unread)});
    return rows;
}

QVector<QStringList> TraceStatisticsListing::channelRows() const
{
    QVector<QStringList> rows{{tr("Channel"), tr("Frames"), tr("Load"), tr("Busiest second"),
                               tr("Remote frames"), tr("Error frames"), tr("Sent")}};
    const QVector<ChannelCount> &channels = m_statistics.channels();
    for (int i = 0; i < channels.size(); ++i) {
        const ChannelCount &channel = channels.at(i);
        rows.append({channelName(i), QString::number(channel.all.frames),
                     load(perSecond(channel.all.bits, channel.all.duration())),
                     load(static_cast<double>(channel.mostBits)), QString::number(channel.remoteFrames),
                     QString::number(channel.errorFrames), QString::number(channel.sent)});
    }
    return rows;
}

QVector<QStringList> TraceStatisticsListing::identifierRows() const
{
    QVector<QStringList> rows{{tr("Identifier"), tr("Channel"), tr("Frames"), tr("Per second")}};
    for (const IdentifierCount &row : m_statistics.identifiers()) {
        rows.append({identifierText(row), channelName(row.channel), QString::number(row.count.frames),
                     QString::number(perSecond(row.count.frames, m_statistics.all().duration()), 'f', 2)});
    }
    return rows;
}

QVector<QStringList> TraceStatisticsListing::kindRows() const
{
    QVector<QStringList> rows{{tr("Kind"), tr("Frames"), tr("Per second")}};
    for (const TrafficGroups::Kind &row : TrafficGroups::byKind(m_statistics)) {
        rows.append({QLatin1String(frameKindName(row.kind)), QString::number(row.count.frames),
                     QString::number(perSecond(row.count.frames, m_statistics.all().duration()), 'f', 2)});
    }
    return rows;
}

QVector<QStringList> TraceStatisticsListing::nodeRows() const
{
    QVector<QStringList> rows{{tr("Node"), tr("Channel"), tr("Frames"), tr("Load")}};
    for (const TrafficGroups::Node &row : TrafficGroups::byNode(m_statistics)) {
        const double duration = row.channel < m_statistics.channels().size()
                                    ? m_statistics.channels().at(row.channel).all.duration()
                                    : 0;
        rows.append({QString::number(row.nodeId), channelName(row.channel), QString::number(row.count.frames),
                     load(perSecond(row.count.bits, duration))});
    }
    return rows;
}

QString TraceStatisticsListing::text() const
{
    QStringList lines = alignedLines(summary(), 0);
    if (m_statistics.all().frames > 0) {
        lines += QString();
        lines += alignedLines(channelRows(), 0);
        for (const QVector<QStringList> &rows : {kindRows(), nodeRows(), identifierRows()}) {
            if (rows.size() == 1) // nothing below the titles
                continue;
            lines += QString();
            lines += alignedLines(rows, 0);
        }
    }
    return lines.join(QLatin1Char('\n'));
}

QJsonObject TraceStatisticsListing::channelJson(int channel) const
{
    const ChannelCount &count = m_statistics.channels().at(channel);
    QJsonObject json = countJson(count.all);
    json.insert(QStringLiteral("name"), m_head.channels.value(channel));
    json.insert(QStringLiteral("errorFrames"), double(count.errorFrames));
    json.insert(QStringLiteral("remoteFrames"), double(count.remoteFrames));
    json.insert(QStringLiteral("sent"), double(count.sent));
    json.insert(QStringLiteral("mostBitsInASecond"), double(count.mostBits));
    if (m_bitRate) {
        json.insert(QStringLiteral("load"), perSecond(count.all.bits, count.all.duration()) / *m_bitRate);
        json.insert(QStringLiteral("peakLoad"), static_cast<double>(count.mostBits) / *m_bitRate);
    }
    return json;
}

QJsonArray TraceStatisticsListing::kindsJson() const
{
    QJsonArray kinds;
    for (const TrafficGroups::Kind &row : TrafficGroups::byKind(m_statistics)) {
        kinds.append(QJsonObject{{QStringLiteral("kind"), QLatin1String(frameKindName(row.kind))},
                                 {QStringLiteral("frames"), double(row.count.frames)},
                                 {QStringLiteral("bits"), double(row.count.bits)}});
    }
    return kinds;
}

QJsonArray TraceStatisticsListing::nodesJson() const
{
    QJsonArray nodes;
    for (const TrafficGroups::Node &row : TrafficGroups::byNode(m_statistics)) {
        QJsonObject entry = countJson(row.count);
        entry.insert(QStringLiteral("node"), row.nodeId);
        entry.insert(QStringLiteral("channel"), row.channel);
        nodes.append(entry);
    }
    return nodes;
}

QJsonObject TraceStatisticsListing::json() const
{
    QJsonObject json = countJson(m_statistics.all());
    QJsonArray channels;
    for (int i = 0; i < m_statistics.channels().size(); ++i)
        channels.append(channelJson(i));
    QJsonArray identifiers;
    for (const IdentifierCount &row : m_statistics.identifiers()) {
        QJsonObject entry = countJson(row.count);
        entry.insert(QStringLiteral("id"), double(row.id));
        entry.insert(QStringLiteral("isExtended"), row.isExtended);
        entry.insert(QStringLiteral("channel"), row.channel);
        identifiers.append(entry);
    }
    json.insert(QLatin1String("kinds"), kindsJson());
    json.insert(QLatin1String("nodes"), nodesJson());
    json.insert(QStringLiteral("hasTimeOfDay"), m_head.hasTimeOfDay);
    json.insert(QStringLiteral("duration"), m_statistics.all().duration());
    json.insert(QStringLiteral("backwardTimes"), double(m_statistics.backwardTimes()));
    json.insert(QStringLiteral("unread"), double(m_unread));
    json.insert(QStringLiteral("channels"), channels);
    json.insert(QStringLiteral("identifiers"), identifiers);
    return json;
}
