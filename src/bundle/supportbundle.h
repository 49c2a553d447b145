// SPDX-License-Identifier: MIT
#pragma once

#include <checkup/findings.h>
#include <live/events/liveevent.h>
#include <snapshot/snapshot.h>
#include <trace/core/trace.h>

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>
#include <vector>

/*! What a program told its user. */
struct BundleMessage
{
    QDateTime time;
    Severity severity = Severity::Note;
    QString text;
};

inline bool operator==(const BundleMessage &a, const BundleMessage &b)
{
    return a.time == b.time && a.severity == b.severity && a.text == b.text;
}

/*! All that is known of a vehicle and of how it was looked at: plain values. What is not known is empty. */
struct SupportBundle
{
    QString program; //!< "draxelctl 1.0.0"
    QDateTime time;  //!< with the offset of its time zone
    bool isMasked = false;
    std::optional<Snapshot> snapshot;
    std::optional<Trace> trace;      //!< of the last minutes
    std::vector<LiveEvent> events;   //!< their times are us since 1970
    quint64 forgottenEvents = 0;     //!< that had to go before
    QVector<BundleMessage> messages; //!< the oldest first
    QJsonObject system;              //!< see SystemFacts; of an opened bundle empty
    QStringList problems;            //!< what of an opened bundle could not be used, a sentence each
};
