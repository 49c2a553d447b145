// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/cobid.h>
#include <checkup/comparison.h>
#include <checkup/findings.h>
#include <servicereport/servicereportdata.h>
#include <snapshot/snapshot.h>

#include <QDateTime>
#include <QString>

#include <array>
#include <optional>

/*! What another snapshot of the vehicle was compared with. */
struct RecordComparison
{
    Snapshot earlier;
    Comparison comparison;
};

/*! A snapshot with all that is known of it: plain values, for pages. */
struct CheckupRecord
{
    /*! Where it came from. */
    enum class Source : quint8 { None, Bus, File, Archive };

    Source source = Source::None;
    Snapshot snapshot;
    CheckupResult result;
    QString fileName;                           //!< of File, and once it was saved
    std::optional<qint64> visitId;              //!< of the archive, when it is kept there
    QString archivedFingerprint;                //!< of that visit, see VisitInfo; empty while it is not known
    std::optional<RecordComparison> comparison; //!< with the visit before
    QVector<HealthTrend> trends;                //!< of its batteries, as far as the archive knows them

    const CheckedComponent *component(quint8 nodeId) const;
    QVector<Change> changesOf(quint8 nodeId) const;
    /*! How many changes each node has; 0: those of the vehicle. */
    std::array<int, CanOpen::lastNodeId + 1> changeCounts() const;
};
