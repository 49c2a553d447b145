// SPDX-License-Identifier: MIT
#pragma once

#include "trendvalues.h"

#include <archive/visit.h>
#include <host/core/vehiclerecords.h>

#include <QObject>
#include <QString>
#include <QVector>

#include <functional>
#include <optional>

/*! What the page of the archive is about: vehicles that were looked for, the visits of one of them, a value over its
 *  visits. Asks the archive in its own thread; answers that are out of date are passed over.
 */
class ArchiveBrowser : public QObject
{
    Q_OBJECT

public:
    /*! Most visits of one vehicle that are listed. */
    static constexpr int mostVisits = 1000;

    /*! \a records must outlive the browser. */
    explicit ArchiveBrowser(VehicleRecords *records, QObject *parent = nullptr);

    /*! Looks at the archive; until the first time it is not opened. */
    void start();
    bool isStarted() const { return m_isStarted; }
    /*! Once more, if it was looked at. In another language the archive has other words for vehicles without a name, and for
     *  what is wrong with it.
     */
    void askAnew();

    /*! Words as in VisitQuery; empty for all vehicles. */
    void search(const QString &text);
    QString searchText() const { return m_text; }
    bool isSearching() const { return m_isSearching; }

    const QVector<VehicleInfo> &vehicles() const { return m_vehicles; }

    /*! 0: none. */
    void chooseVehicle(qint64 vehicleId);
    qint64 vehicle() const { return m_vehicle; }
    const QVector<VisitInfo> &visits() const { return m_visits; } //!< of the vehicle, the newest first

    /*! Which value is shown over the visits of the vehicle. */
    void chooseTrend(int trendValue);
    int trendValue() const { return m_trendValue; }
    const QVector<TrendPoint> &trend() const { return m_trend; }
    /*! What of it could not be read, and why, sentences; may be empty. */
    QString trendProblem() const { return m_trendProblem; }

    /*! Why the archive could not be asked, a sentence; empty when all is well. */
    QString problem() const { return m_problem; }

    using TakeSnapshot = std::function<void(const Snapshot &snapshot)>;
    using TakeTwo = std::function<void(const Snapshot &earlier, const Snapshot &later)>;

    /*! With the notes as they are now, whatever the snapshot had when it was kept. */
    void load(qint64 visitId, const TakeSnapshot &take);
    /*! Both in the order of their times. */
    void loadTwo(qint64 visitId, qint64 otherId, const TakeTwo &take);
    /*! With the visit before it; says so when there is none. */
    void loadWithPrevious(qint64 visitId, const TakeTwo &take);
    void setNotes(qint64 visitId, const SnapshotNotes &notes);
    void renameVehicle(qint64 vehicleId, const QString &name);
    void remove(const QVector<qint64> &visitIds);
    void exportVisit(qint64 visitId, const QString &fileName);
    void importFile(const QString &fileName);

signals:
    void vehiclesChanged();
    void visitsChanged();
    void trendChanged();
    void problemChanged();
    /*! What has been done, a sentence. */
    void succeeded(const QString &sentence);
    /*! What could not be done and why. */
    void failed(const QString &sentence);

private:
    void refresh();
    void askForVisits();
    void askForTrend();
    void setProblem(const QString &problem);
    template<typename Work>
    void change(Work work, const QString &done);

    VehicleRecords *m_records;
    bool m_isStarted = false;
    bool m_isSearching = false;
    QString m_text;
    QString m_problem;
    quint64 m_searches = 0;
    QVector<VehicleInfo> m_vehicles;
    qint64 m_vehicle = 0;
    QVector<VisitInfo> m_visits;
    int m_trendValue = 0;
    QVector<TrendPoint> m_trend;
    QString m_trendProblem;
};
