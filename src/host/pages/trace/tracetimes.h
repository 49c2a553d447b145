// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

/*! Times and numbers of a trace for people. */
class TraceTimes
{
    Q_DECLARE_TR_FUNCTIONS(TraceTimes)

public:
    /*! "12:03:11.204", of this computer's time zone; of a trace without time of day "11.204 s" since its begin. */
    static QString shortText(qint64 time, bool hasTimeOfDay);
    /*! To the us, with the date: "2026-11-22 12:03:11.204331". */
    static QString longText(qint64 time, bool hasTimeOfDay);
    /*! "912 µs", "95.3 ms", "1.204 s", "-0.3 ms"; more than a minute: "2 min 05 s". */
    static QString difference(qint64 microseconds);
    /*! "12", "99999", "123 k", "1.0 M" */
    static QString count(quint64 number);
    /*! "1 frame", "123 k frames" */
    static QString frames(quint64 number);
    /*! "1 line", "123 k lines" */
    static QString lines(quint64 number);
};
