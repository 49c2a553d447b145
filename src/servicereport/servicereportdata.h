// SPDX-License-Identifier: MIT
#pragma once

#include <checkup/comparison.h>
#include <checkup/findings.h>
#include <snapshot/snapshot.h>

#include <QDateTime>
#include <QImage>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/*! Who writes the report. Everything may be empty. */
struct Workshop
{
    QString name;
    QStringList lines; //!< address, telephone and what else is to stand below the name
    QImage logo;
};

/*! How the state of health of a battery went over the visits; shown from two points on. */
struct HealthTrend
{
    struct Point
    {
        QDateTime time;
        double percent = 0;
    };

    quint8 nodeId = 0;     //!< where the battery is now
    quint8 pack = 1;       //!< which of the node's packs, from 1 on
    QVector<Point> points; //!< in the order of their times
    int damagedVisits = 0; //!< in the archive: what they knew is missing
    /*! What earlier visits knew may be missing: the archive could not be asked. */
    bool isArchiveUnread = false;
};

/*! The earlier visit that the snapshot was compared with. */
struct ReportComparison
{
    QDateTime time; //!< of the earlier snapshot
    Comparison comparison;
};

/*! All that a service report is made of. */
struct ServiceReportData
{
    Snapshot snapshot;
    /*! SHA-256 of the file that the archive keeps of it, 64 hexadecimal digits: notes that were entered later are not in
     *  that one. Empty when it is in none.
     */
    QString archivedFingerprint;
    CheckupResult checkup;
    std::optional<ReportComparison> comparison;
    QVector<HealthTrend> trends;
    Workshop workshop;
    QString program; //!< that makes the report: "draxelctl 1.0.0"
    QLocale locale;  //!< of numbers and dates, see ReportLanguage::locale()
};
