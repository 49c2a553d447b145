// SPDX-License-Identifier: MIT
#pragma once

#include "checkuprecord.h"

#include <checkup/ruleset.h>
#include <host/core/snapshotrun.h>
#include <host/core/vehiclerecords.h>

#include <QObject>
#include <QSet>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class HostServices;

/*! What the page of the check-up is about: one vehicle that is read, judged, kept, and compared with its visit before; or
 *  one that came from a file or the archive.
 *
 *  While it reads, nobody else does: a plug-in's read is refused, and a check-up does not begin during one.
 */
class CheckupSession : public QObject
{
    Q_OBJECT

public:
    /*! What became of the snapshot shown, in the archive. */
    enum class Kept : quint8 {
        No,
        Asked, //!< is being kept
        Yes,
        Waiting,
        Failed
    };
    enum class Search : quint8 {
        Heard, //!< the nodes that send heartbeats
        All    //!< every node ID is asked
    };

    using Then = std::function<void()>;

    /*! How often what is shown follows what is read. */
    static constexpr std::chrono::milliseconds showingTime{200};

    /*! Both must outlive the session. */
    CheckupSession(HostServices *services, VehicleRecords *records, QObject *parent = nullptr);
    ~CheckupSession() override;

    /*! Rules of one's own, for tests; otherwise those of the standard folders, read when they are needed. */
    void setRules(const RuleSet &rules) { m_rules = rules; }
    /*! The program's language, "de": everything is judged anew for its texts. */
    void setLanguage(const QString &language);
    QString language() const { return m_language; }
    /*! Of the bus, in percent, for the questions and answers of a check-up. */
    void setSharePercent(int percent) { m_sharePercent = percent; }
    int sharePercent() const { return m_sharePercent; }

    bool isRunning() const { return m_run != nullptr; }
    bool isBusLost() const { return m_run != nullptr && m_run->isBusLost(); }
    bool isListening() const { return m_run != nullptr && m_run->isListening(); }
    /*! Why a check-up cannot begin now, a sentence; empty when one can. */
    QString obstacle() const;
    bool canStart() const { return obstacle().isEmpty(); }
    /*! Whether what is shown has gaps that a check-up could fill. */
    bool canResume() const;

    void start(SnapshotScope scope, Search search);
    void resume();
    /*! Ends at once with what was read, which is judged and kept. */
    void cancel();

    /*! Shows a snapshot from elsewhere; not while a check-up runs. */
    void showFile(const Snapshot &snapshot, const QString &fileName);
    /*! \a then follows when the archive has told what was before it, and is passed over when something else is shown by
     *  then.
     */
    void showVisit(const Snapshot &snapshot, qint64 visitId, const Then &then = Then());

    /*! Puts what is shown into the archive, if it is not there. */
    void keep();
    Kept kept() const { return m_kept; }
    QString keepingProblem() const { return m_keepingProblem; } //!< of Waiting and Failed

    /*! What people write beside it: for what is shown, and as long as the bus stays for the next check-up. */
    const SnapshotNotes &notes() const { return m_notes; }
    void setNotes(const SnapshotNotes &notes);

    /*! It was saved as a file. */
    void noteSaved(const QString &fileName);
    /*! Another one with each snapshot that is shown. */
    quint64 recordNumber() const { return m_recordNumber; }

    bool isEmpty() const { return m_record.source == CheckupRecord::Source::None; }
    /*! What is shown; while a check-up runs, the one before. */
    const CheckupRecord &record() const { return m_record; }

    // While a check-up runs:
    SnapshotProgress progress() const;
    SnapshotProgress progress(quint8 nodeId) const;
    QVector<quint8> readNodes() const { return m_readNodes; } //!< in the order of their IDs
    /*! As far as it is read. */
    std::optional<SnapshotNode> node(quint8 nodeId) const;
    /*! Of a node that is read, judged by itself; null before that. */
    const CheckedComponent *early(quint8 nodeId) const;

    const RuleSet &rules();
    /*! Compares two snapshots as the page does, for people: what has one cause is one change. */
    Comparison compare(const Snapshot &earlier, const Snapshot &later);
    /*! \a earlier, which may be null, gives their names to devices that do not tell them in \a snapshot. */
    CheckupResult judge(const Snapshot &snapshot, const Snapshot *earlier = nullptr);

signals:
    /*! Another snapshot is shown, or a check-up has begun or ended. */
    void changed();
    /*! Of what is shown: judged anew, compared, notes, saved. */
    void recordChanged();
    void keptChanged();
    /*! obstacle() may have changed. */
    void obstacleChanged();
    /*! During a check-up, now and then: these nodes have news. */
    void nodesChanged(const QVector<quint8> &nodeIds);
    void busLostChanged();
    /*! Something about rules that could not be used; a sentence each. */
    void rulesRefused(const QStringList &problems);
    /*! A check-up on a bus that was full may not have found every node; a sentence each, before finished(). */
    void nodesDoubted(const QStringList &sentences);
    /*! A check-up has ended and was judged. */
    void finished();
    /*! Instead of going on a check-up begins anew: these nodes are of another vehicle than the one shown. */
    void vehicleReplaced(const QVector<quint8> &nodeIds);
    /*! A check-up went on with the vehicle, and read these nodes anew, as there are other devices. */
    void devicesReplaced(const QVector<quint8> &nodeIds);
    /*! What the archive knows of earlier visits could not be read, or not all of it; sentences. */
    void pastIncomplete(const QStringList &problems);
    /*! The notes of what is shown, or was, could not be kept; a sentence. */
    void notesFailed(const QString &reason);

private:
    /*! What the archive knows of what is shown. */
    struct Past
    {
        QString fingerprint;
        std::optional<Snapshot> earlier; //!< the visit before
        QVector<HealthTrend> trends;
        QStringList problems; //!< why this may not be all
    };

    void begin(SnapshotOrder order);
    SnapshotNotes notesForNext() const;
    void beginAnew();
    QVector<quint8> replacedNodes() const;
    QVector<quint8> otherVehicleNodes() const;
    void handleNodeAdded(quint8 nodeId);
    void handleNodeChanged(quint8 nodeId);
    void handleNodeFinished(quint8 nodeId);
    void handleFinished();
    void showNews();
    void show(CheckupRecord record);
    void judgeAndCompare();
    Comparison compareJudged(const Snapshot &earlier, const Snapshot &later, const CheckupResult &result);
    void handleKept(const VehicleRecords::Keeping &keeping);
    void handleDelivered(const QString &fileName, const KeptVisit &visit);
    void takeVisit(const KeptVisit &visit);
    void writeNotes(const VehicleRecords::Keeping &keeping, const SnapshotNotes &notes);
    void askForNotes();
    void takeNotes(const SnapshotNotes &notes);
    void forgetVisit();
    void compareWithVisitBefore(qint64 visitId, const Then &then = Then());
    void takePast(const Past &past);
    void setKept(Kept kept, const QString &problem = QString());

    HostServices *m_services;
    VehicleRecords *m_records;
    std::optional<RuleSet> m_rules;
    QString m_language = QStringLiteral("en");
    int m_sharePercent = BusShare::usualPercent;
    std::unique_ptr<SnapshotRun> m_run;
    SnapshotNotes m_notes;
    bool m_isSameVehicle = false; // the bus was not away since what is shown was read
    bool m_mayBeOther = false;    // it goes on, with a vehicle that may not be the one shown
    quint64 m_recordNumber = 0;
    CheckupRecord m_record;
    Kept m_kept = Kept::No;
    QString m_keepingProblem;
    VehicleRecords::Keeping m_keeping; // of Yes and Waiting
    // Notes that were entered before it was a visit; also of what is not shown any more when it becomes one.
    std::shared_ptr<std::optional<SnapshotNotes>> m_lateNotes;
    quint64 m_notesWritten = 0;    // how often notes were given to the archive
    bool m_areNotesWritten = true; // of what is shown: the archive has the last ones
    int m_archives = 0;            // how often it was another archive
    quint64 m_inquiry = 0; // another one for each record and archive; answers to one before are of no use
    QVector<quint8> m_readNodes;
    QSet<quint8> m_news;
    QMap<quint8, CheckedComponent> m_early;
    QTimer m_newsTimer;
};
