// SPDX-License-Identifier: MIT
#include "tracestatisticslisting.h"

#include <cli/core/terminal.h>
#include <cli/core/textcolumns.h>
#include <system/amounts.h>
#include <trace/statistics/trafficgroups.h>

#include <QDateTime>
#include <QJsonArray>

#include <algorithm>

namespace {

constexpr int hex = 16;

const QLatin1String notKnown("-");
constexpr int fastestBus = 1'000'000; // bit/s
// Frames are reckoned with ordinary stuffing: those of a full bus may have had fewer bits.
constexpr double mostLoad = 1.1;

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

bool TraceStatisticsListing::isMean(quint64 bits, double duration) const
{
    const int bitRate = m_bitRate.value_or(fastestBus);
    return duration > 0 && static_cast<double>(bits) <= duration * bitRate * mostLoad;
}

std::optional<double> TraceStatisticsListing::meanRate(quint64 bits, int channel) const
{
    const TraceCount all = m_statistics.channels().value(channel).all;
    return isMean(all.bits, all.duration()) ? std::make_optional(static_cast<double>(bits) / all.duration())
                                            : std::nullopt;
}

QString TraceStatisticsListing::meanLoad(quint64 bits, int channel) const
{
    const std::optional<double> rate = meanRate(bits, channel);
    return rate ? load(*rate) : notKnown;
}

double TraceStatisticsListing::peakRate(int channel) const
{
    const ChannelCount count = m_statistics.channels().value(channel);
    return std::max(static_cast<double>(count.mostBits), meanRate(count.all.bits, channel).value_or(0));
}

QString TraceStatisticsListing::perSecond(quint64 frames) const
{
    const double duration = m_statistics.all().duration();
    const QVector<ChannelCount> &channels = m_statistics.channels();
    const bool isKnown
        = std::all_of(channels.begin(), channels.end(), [this, duration](const ChannelCount &channel) {
              return isMean(channel.all.bits, duration);
          });
    return isKnown ? QString::number(static_cast<double>(frames) / duration, 'f', 2) : notKnown;
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
        rows.append({channelName(i), QString::number(channel.all.frames), meanLoad(channel.all.bits, i),
                     load(peakRate(i)), QString::number(channel.remoteFrames),
                     QString::number(channel.errorFrames), QString::number(channel.sent)});
    }
    return rows;
}

QVector<QStringList> TraceStatisticsListing::identifierRows() const
{
    QVector<QStringList> rows{{tr("Identifier"), tr("Channel"), tr("Frames"), tr("Per second")}};
    for (const IdentifierCount &row : m_statistics.identifiers()) {
        rows.append({identifierText(row), channelName(row.channel), QString::number(row.count.frames),
                     perSecond(row.count.frames)});
    }
    return rows;
}

QVector<QStringList> TraceStatisticsListing::kindRows() const
{
    QVector<QStringList> rows{{tr("Kind"), tr("Frames"), tr("Per second")}};
    for (const TrafficGroups::Kind &row : TrafficGroups::byKind(m_statistics)) {
        rows.append({QLatin1String(frameKindName(row.kind)), QString::number(row.count.frames),
                     perSecond(row.count.frames)});
    }
    return rows;
}

QVector<QStringList> TraceStatisticsListing::nodeRows() const
{
    QVector<QStringList> rows{{tr("Node"), tr("Channel"), tr("Frames"), tr("Load")}};
    for (const TrafficGroups::Node &row : TrafficGroups::byNode(m_statistics)) {
        rows.append({QString::number(row.nodeId), channelName(row.channel), QString::number(row.count.frames),
                     meanLoad(row.count.bits, row.channel)});
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
        const std::optional<double> rate = meanRate(count.all.bits, channel);
        json.insert(QStringLiteral("load"),
                    rate ? QJsonValue(*rate / *m_bitRate) : QJsonValue(QJsonValue::Null));
        json.insert(QStringLiteral("peakLoad"), peakRate(channel) / *m_bitRate);
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

QJsonArray TraceStatisticsListing::identifiersJson() const
{
    QJsonArray identifiers;
    for (const IdentifierCount &row : m_statistics.identifiers()) {
        QJsonObject entry = countJson(row.count);
        entry.insert(QStringLiteral("id"), double(row.id));
        entry.insert(QStringLiteral("isExtended"), row.isExtended);
        entry.insert(QStringLiteral("channel"), row.channel);
        identifiers.append(entry);
    }
    return identifiers;
}

QJsonObject TraceStatisticsListing::json() const
{
    QJsonObject json = countJson(m_statistics.all());
    QJsonArray channels;
    for (int i = 0; i < m_statistics.channels().size(); ++i)
        channels.append(channelJson(i));
    json.insert(QLatin1String("kinds"), kindsJson());
    json.insert(QLatin1String("nodes"), nodesJson());
    json.insert(QStringLiteral("hasTimeOfDay"), m_head.hasTimeOfDay);
    json.insert(QStringLiteral("duration"), m_statistics.all().duration());
    json.insert(QStringLiteral("backwardTimes"), double(m_statistics.backwardTimes()));
    json.insert(QStringLiteral("unread"), double(m_unread));
    json.insert(QStringLiteral("channels"), channels);
    json.insert(QStringLiteral("identifiers"), identifiersJson());
    return json;
}
