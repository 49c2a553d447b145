// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/trace.h>
#include <trace/statistics/tracestatistics.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

#include <optional>

/*! The statistics of a trace as lines, and as JSON. */
class TraceStatisticsListing
{
    Q_DECLARE_TR_FUNCTIONS(TraceStatisticsListing)

public:
    /*! \a bitRate: of the buses, when it is known. All must live as long as the listing. */
    TraceStatisticsListing(const TraceStatistics &statistics, const TraceHead &head, quint64 unread,
                           std::optional<int> bitRate)
        : m_statistics(statistics)
        , m_head(head)
        , m_unread(unread)
        , m_bitRate(bitRate)
    {
    }

    QString text() const;
    QJsonObject json() const;

private:
    QVector<QStringList> summary() const;
    QVector<QStringList> channelRows() const;
    QVector<QStringList> identifierRows() const;
    QVector<QStringList> kindRows() const;
    QVector<QStringList> nodeRows() const;
    QJsonArray kindsJson() const;
    QJsonArray nodesJson() const;
    QJsonArray identifiersJson() const;
    QJsonObject channelJson(int channel) const;
    QString channelName(int channel) const;
    QString time(qint64 time) const;
    /*! "31.2 %" when the bit rate is known, else "78.0 kbit/s". */
    QString load(double bitsPerSecond) const;
    /*! Whether a bus can carry \a bits in \a duration (s): a mean over less time says nothing. */
    bool isMean(quint64 bits, double duration) const;
    /*! Of some of a channel's frames, from its first to its last; empty when it is not known. In bit/s. */
    std::optional<double> meanRate(quint64 bits, int channel) const;
    QString meanLoad(quint64 bits, int channel) const;
    /*! Of a channel's busiest second, its mean at least: less than a second may be a busy one. In bit/s. */
    double peakRate(int channel) const;
    QString perSecond(quint64 frames) const;

    const TraceStatistics &m_statistics;
    const TraceHead &m_head;
    quint64 m_unread;
    std::optional<int> m_bitRate;
};
