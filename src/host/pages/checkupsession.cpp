// SPDX-License-Identifier: MIT
#include "checkupsession.h"

#include <checkup/changesummary.h>
#include <checkup/checkup.h>
#include <checkup/snapshotcomparison.h>
#include <host/core/hostservices.h>
#include <servicereport/healthtrends.h>
#include <snapshot/deviceidentity.h>

#include <QCoreApplication>

#include <algorithm>
#include <tuple>

namespace {

constexpr quint16 identityObject = 0x1018;

QString programName()
{
    return QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion();
}

/*! How the health of its batteries went over the visits up to the one of the snapshot, in whatever vehicle. */
QVector<HealthTrend> trendsOf(const Snapshot &snapshot, Archive &archive, QStringList *problems)
{
    QVector<HealthTrend> trends = HealthTrends::of(snapshot);
    for (HealthTrend &trend : trends) {
        const QString key = DeviceIdentity::of(*snapshot.find(trend.nodeId)).toKey();
        if (key.isEmpty())
            continue;
        QString error;
        const auto archived = archive.deviceTrend(key, HealthTrends::object(trend), &error);
        if (!archived) {
            trend.isArchiveUnread = true;
            problems->append(error);
            continue;
        }
        for (const TrendPoint &point : archived->points)
            HealthTrends::addVisit(&trend, point.time, point.value, snapshot.time);
        trend.damagedVisits = archived->problems.size();
        *problems += archived->problems;
    }
    return trends;
}

/*! What is known of it until the archive has answered, or when it cannot be reached: that visits may be there. */
QVector<HealthTrend> unreadTrendsOf(const Snapshot &snapshot)
{
    QVector<HealthTrend> trends = HealthTrends::of(snapshot);
    for (HealthTrend &trend : trends)
        trend.isArchiveUnread = !DeviceIdentity::of(*snapshot.find(trend.nodeId)).toKey().isEmpty();
    return trends;
}

bool areSame(const SnapshotNotes &a, const SnapshotNotes &b)
{
    return std::tie(a.vehicle, a.customer, a.technician, a.odometer, a.note)
           == std::tie(b.vehicle, b.customer, b.technician, b.odometer, b.note);
}

bool hasIdentity(const SnapshotNode &node)
{
    return std::any_of(node.entries.cbegin(), node.entries.cend(), [](const SnapshotEntry &entry) {
        return entry.key.index == identityObject && !entry.isGap();
    });
}

/*! Without the values of nodes of which nobody could say whether the same devices answer now. */
Snapshot ofKnownDevices(const Snapshot &snapshot)
{
    Snapshot known = snapshot;
    for (SnapshotNode &node : known.nodes) {
        if (hasIdentity(node))
            continue;
        SnapshotNode unknown;
        unknown.id = node.id;
        unknown.end = SnapshotEnd::Cancelled; // or it would only be asked for what it lacks
        node = unknown;
    }
    return known;
}

} // namespace

CheckupSession::CheckupSession(HostServices *services, VehicleRecords *records, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_records(records)
{
    m_newsTimer.setInterval(showingTime);
    m_newsTimer.setSingleShot(true);
    connect(&m_newsTimer, &QTimer::timeout, this, &CheckupSession::showNews);
    connect(&services->bus(), &BusConnection::stateChanged, this, [this](BusConnection::State state) {
        if (state != BusConnection::State::Connected)
            m_isSameVehicle = false;
        emit obstacleChanged();
    });
    connect(&services->reads(), &ReadObserver::phaseChanged, this, &CheckupSession::obstacleChanged);
    connect(records, &VehicleRecords::visitDelivered, this, &CheckupSession::handleDelivered);
    connect(records, &VehicleRecords::archiveReplaced, this, &CheckupSession::forgetVisit);
    connect(records, &VehicleRecords::changed, this, &CheckupSession::askForNotes);
}

CheckupSession::~CheckupSession() = default;

void CheckupSession::setLanguage(const QString &language)
{
    m_language = language;
    if (isEmpty())
        return;
    judgeAndCompare();
    emit recordChanged();
}

QString CheckupSession::obstacle() const
{
    if (isRunning())
        return tr("A check-up is running.");
    switch (m_services->bus().state()) {
    case BusConnection::State::Disconnected:
        return tr("Connect a bus first.");
    case BusConnection::State::Connecting:
        return tr("The bus is being connected.");
    case BusConnection::State::Lost:
        return tr("The connection to the bus is lost. It is made again as soon as the interface is back.");
    case BusConnection::State::Connected:
        break;
    }
    if (m_services->reads().phase() != ReadObserver::Phase::Idle)
        return tr("The overview is reading. Wait for its end or cancel it (Esc).");
    return QString();
}

bool CheckupSession::canResume() const
{
    // Exchange files and traces do not say what was asked for.
    return canStart() && !isEmpty() && m_record.snapshot.isOfBus() && !m_record.snapshot.isComplete();
}

void CheckupSession::start(SnapshotScope scope, Search search)
{
    SnapshotOrder order;
    order.scope = scope;
    order.isScanned = search == Search::All;
    begin(order);
}

void CheckupSession::resume()
{
    if (!canResume())
        return;
    SnapshotOrder order;
    order.scope = m_record.snapshot.scope;
    order.earlier = m_isSameVehicle ? m_record.snapshot : ofKnownDevices(m_record.snapshot);
    begin(order);
}

void CheckupSession::begin(SnapshotOrder order)
{
    if (!canStart())
        return;
    m_mayBeOther = order.earlier && !m_isSameVehicle;
    order.program = programName();
    order.notes = notesForNext();
    m_notes = order.notes;
    order.sharePercent = m_sharePercent;
    m_services->sdoClient().setRefusing(true);
    m_readNodes.clear();
    m_early.clear();
    m_news.clear();
    m_run = std::make_unique<SnapshotRun>(&m_services->bus());
    connect(m_run.get(), &SnapshotRun::nodeAdded, this, &CheckupSession::handleNodeAdded);
    connect(m_run.get(), &SnapshotRun::nodeChanged, this, &CheckupSession::handleNodeChanged);
    connect(m_run.get(), &SnapshotRun::nodeFinished, this, &CheckupSession::handleNodeFinished);
    connect(m_run.get(), &SnapshotRun::busLostChanged, this, &CheckupSession::busLostChanged);
    connect(m_run.get(), &SnapshotRun::finished, this, &CheckupSession::handleFinished);
    m_run->start(order);
    emit changed();
    emit obstacleChanged();
}

/*! With the vehicle that is there, in the place of a run that was to complete another one's snapshot. When that was
 *  cancelled, what was shown stays.
 */
void CheckupSession::beginAnew()
{
    const QVector<quint8> nodes = otherVehicleNodes();
    const bool isCancelled = m_run->isCancelled();
    m_newsTimer.stop();
    m_run->disconnect(this);
    m_run->cancel();
    m_run.release()->deleteLater(); // this may be one of its signals
    m_services->sdoClient().setRefusing(false);
    if (isCancelled) {
        emit changed();
        emit obstacleChanged();
        return;
    }
    SnapshotOrder order;
    order.scope = m_record.snapshot.scope;
    begin(order);
    emit vehicleReplaced(nodes);
}

QVector<quint8> CheckupSession::replacedNodes() const
{
    return m_run != nullptr && m_run->reader() != nullptr ? m_run->reader()->replacedNodes()
                                                          : QVector<quint8>();
}

/*! The nodes that show that it is not the vehicle it was to go on with; none when it may be that one. */
QVector<quint8> CheckupSession::otherVehicleNodes() const
{
    if (!m_mayBeOther || m_run == nullptr || m_run->reader() == nullptr)
        return {};
    const QVector<quint8> replaced = replacedNodes();
    return replaced.isEmpty() ? m_run->reader()->strangerNodes() : replaced;
}

/*! Behind another bus is another vehicle; the technician stays. */
SnapshotNotes CheckupSession::notesForNext() const
{
    if (isEmpty() || m_isSameVehicle)
        return m_notes;
    SnapshotNotes notes;
    notes.technician = m_notes.technician;
    return notes;
}

void CheckupSession::cancel()
{
    if (m_run != nullptr)
        m_run->cancel();
}

void CheckupSession::handleNodeAdded(quint8 nodeId)
{
    m_readNodes.insert(std::lower_bound(m_readNodes.begin(), m_readNodes.end(), nodeId), nodeId);
    m_news.insert(nodeId);
    if (!m_newsTimer.isActive())
        m_newsTimer.start();
}

void CheckupSession::handleNodeChanged(quint8 nodeId)
{
    m_news.insert(nodeId);
    if (!m_newsTimer.isActive())
        m_newsTimer.start();
    if (otherVehicleNodes().isEmpty())
        return;
    // The reader is in the middle of an answer.
    const auto restart = [this] {
        if (!otherVehicleNodes().isEmpty())
            beginAnew();
    };
    QMetaObject::invokeMethod(this, restart, Qt::QueuedConnection);
}

/*! What rules say of one node by itself is not the last word: some compare it with the others. */
void CheckupSession::handleNodeFinished(quint8 nodeId)
{
    const std::optional<SnapshotNode> read = node(nodeId);
    if (!read)
        return;
    Snapshot alone;
    alone.nodes = {*read};
    const CheckupResult result = judge(alone);
    if (!result.components.isEmpty())
        m_early.insert(nodeId, result.components.first());
    m_news.insert(nodeId);
    if (!m_newsTimer.isActive())
        m_newsTimer.start();
}

void CheckupSession::handleFinished()
{
    m_newsTimer.stop();
    if (!otherVehicleNodes().isEmpty()) {
        beginAnew();
        return;
    }
    const QVector<quint8> replaced = replacedNodes();
    m_services->sdoClient().setRefusing(false);
    CheckupRecord record;
    record.source = CheckupRecord::Source::Bus;
    record.snapshot = m_run->snapshot();
    record.snapshot.notes = m_notes;
    m_isSameVehicle = m_services->bus().state() == BusConnection::State::Connected;
    const QStringList doubts = m_run->isCancelled() ? QStringList() : m_run->doubts();
    // This is one of its signals.
    m_run.release()->deleteLater();
    const bool hasValues = record.snapshot.valueCount() > 0;
    show(std::move(record));
    emit obstacleChanged();
    if (hasValues)
        keep();
    if (!replaced.isEmpty())
        emit devicesReplaced(replaced);
    if (!doubts.isEmpty())
        emit nodesDoubted(doubts);
    emit finished();
}

void CheckupSession::showNews()
{
    const QVector<quint8> nodes = QVector<quint8>::fromList(m_news.values());
    m_news.clear();
    emit nodesChanged(nodes);
}

void CheckupSession::showFile(const Snapshot &snapshot, const QString &fileName)
{
    if (isRunning())
        return;
    CheckupRecord record;
    record.source = CheckupRecord::Source::File;
    record.snapshot = snapshot;
    record.fileName = fileName;
    m_notes = snapshot.notes;
    m_isSameVehicle = false;
    show(std::move(record));
}

void CheckupSession::showVisit(const Snapshot &snapshot, qint64 visitId, const Then &then)
{
    if (isRunning())
        return;
    CheckupRecord record;
    record.source = CheckupRecord::Source::Archive;
    record.snapshot = snapshot;
    record.visitId = visitId;
    record.trends = unreadTrendsOf(snapshot);
    m_notes = snapshot.notes;
    m_isSameVehicle = false;
    show(std::move(record));
    m_keeping = VehicleRecords::Keeping();
    m_keeping.visit.visitId = visitId;
    setKept(Kept::Yes);
    compareWithVisitBefore(visitId, then);
}

void CheckupSession::show(CheckupRecord record)
{
    m_record = std::move(record);
    ++m_recordNumber;
    ++m_inquiry;
    m_kept = Kept::No;
    m_keepingProblem.clear();
    m_lateNotes = std::make_shared<std::optional<SnapshotNotes>>();
    m_areNotesWritten = true;
    judgeAndCompare();
    emit changed();
    emit keptChanged();
}

/*! A device that does not tell this time who it is has its name from the visit before. */
void CheckupSession::judgeAndCompare()
{
    if (!m_record.comparison) {
        m_record.result = judge(m_record.snapshot);
        return;
    }
    const Snapshot &earlier = m_record.comparison->earlier;
    m_record.result = judge(m_record.snapshot, &earlier);
    m_record.comparison->comparison = compareJudged(earlier, m_record.snapshot, m_record.result);
}

void CheckupSession::keep()
{
    if (isEmpty() || m_kept == Kept::Yes || m_kept == Kept::Asked)
        return;
    setKept(Kept::Asked);
    m_record.trends = unreadTrendsOf(m_record.snapshot);
    m_areNotesWritten = true; // it is kept with them
    ++m_notesWritten;
    m_records->keep(m_record.snapshot, VisitVerdict::of(m_record.result),
                    [this, inquiry = m_inquiry, archives = m_archives,
                     late = m_lateNotes](const VehicleRecords::Keeping &keeping) {
                        if (*late && archives == m_archives)
                            writeNotes(keeping, **late);
                        if (inquiry == m_inquiry)
                            handleKept(keeping);
                    });
}

void CheckupSession::handleKept(const VehicleRecords::Keeping &keeping)
{
    using End = VehicleRecords::Keeping::End;
    m_keeping = keeping;
    switch (keeping.end) {
    case End::Kept:
        takeVisit(keeping.visit);
        return;
    case End::Waiting:
        setKept(Kept::Waiting, keeping.reason);
        return;
    case End::Lost:
        setKept(Kept::Failed, keeping.reason);
        return;
    }
}

void CheckupSession::handleDelivered(const QString &fileName, const KeptVisit &visit)
{
    if (m_kept != Kept::Waiting || m_keeping.fileName != fileName)
        return;
    m_keeping = VehicleRecords::Keeping();
    m_keeping.visit = visit;
    takeVisit(visit);
    // Its file may have gone before they were in it.
    if (*m_lateNotes)
        writeNotes(m_keeping, **m_lateNotes);
}

void CheckupSession::takeVisit(const KeptVisit &visit)
{
    m_record.visitId = visit.visitId;
    setKept(Kept::Yes);
    compareWithVisitBefore(visit.visitId);
}

/*! The archive is another one now: there the number is that of somebody else's visit. What waits is delivered to it. */
void CheckupSession::forgetVisit()
{
    ++m_inquiry;
    ++m_archives;
    m_record.visitId.reset();
    m_record.archivedFingerprint.clear();
    if (m_kept == Kept::Yes || m_kept == Kept::Asked)
        setKept(Kept::No);
}

void CheckupSession::compareWithVisitBefore(qint64 visitId, const Then &then)
{
    const auto load = [visitId, snapshot = m_record.snapshot](Archive &archive, QString *error) {
        Past past;
        const std::optional<VisitInfo> visit = archive.visit(visitId, error);
        past.fingerprint = visit ? visit->fingerprint : QString();
        const std::optional<qint64> before = archive.previousVisit(visitId, error);
        if (before && *before != 0)
            past.earlier = archive.loadWithNotes(*before, error);
        if (!error->isEmpty())
            past.problems.append(*error);
        past.trends = trendsOf(snapshot, archive, &past.problems);
        past.problems.removeDuplicates();
        return past;
    };
    m_records->archive().ask(this, load,
                             [this, then, inquiry = m_inquiry](const Past &past, const QString &) {
                                 if (inquiry != m_inquiry)
                                     return;
                                 takePast(past);
                                 if (then)
                                     then();
                             });
}

void CheckupSession::takePast(const Past &past)
{
    m_record.archivedFingerprint = past.fingerprint;
    m_record.trends = past.trends;
    if (past.earlier) {
        m_record.comparison = RecordComparison{*past.earlier, {}};
        judgeAndCompare();
    }
    if (!past.problems.isEmpty())
        emit pastIncomplete(past.problems);
    // Judging and showing at once would hold the window.
    QMetaObject::invokeMethod(this, &CheckupSession::recordChanged, Qt::QueuedConnection);
}

void CheckupSession::setNotes(const SnapshotNotes &notes)
{
    m_notes = notes;
    if (isEmpty() || isRunning())
        return;
    m_record.snapshot.notes = notes;
    if (m_kept == Kept::Asked || m_kept == Kept::Waiting)
        *m_lateNotes = notes;
    if (m_kept == Kept::Yes || m_kept == Kept::Waiting)
        writeNotes(m_keeping, notes);
    emit recordChanged();
}

void CheckupSession::writeNotes(const VehicleRecords::Keeping &keeping, const SnapshotNotes &notes)
{
    using End = VehicleRecords::Keeping::End;
    if (keeping.end == End::Lost)
        return; // that is said
    m_areNotesWritten = false;
    m_records->setNotes(
        keeping, notes,
        [this, keeping, inquiry = m_inquiry, number = ++m_notesWritten](bool isDone, const QString &error) {
            if (number == m_notesWritten)
                m_areNotesWritten = isDone;
            // What waited and was delivered meanwhile is given them once more.
            const bool isDelivered
                = keeping.end == End::Waiting && inquiry == m_inquiry && m_kept == Kept::Yes;
            if (!isDone && !isDelivered)
                emit notesFailed(error);
        });
}

/*! Somebody may have changed them elsewhere. Those that were entered here count, also when the archive could not take
 *  them.
 */
void CheckupSession::askForNotes()
{
    if (m_kept != Kept::Yes || !m_record.visitId)
        return;
    m_records->archive().ask(
        this,
        [visitId = *m_record.visitId](Archive &archive, QString *error) {
            return archive.visit(visitId, error);
        },
        [this, inquiry = m_inquiry](const std::optional<VisitInfo> &visit, const QString &) {
            if (visit && inquiry == m_inquiry && m_areNotesWritten)
                takeNotes(visit->notes);
        });
}

void CheckupSession::takeNotes(const SnapshotNotes &notes)
{
    if (areSame(notes, m_record.snapshot.notes))
        return;
    m_record.snapshot.notes = notes;
    if (!isRunning()) // else they are already those of the next one
        m_notes = notes;
    emit recordChanged();
}

void CheckupSession::noteSaved(const QString &fileName)
{
    m_record.fileName = fileName;
    emit recordChanged();
}

SnapshotProgress CheckupSession::progress() const
{
    return m_run != nullptr && m_run->reader() != nullptr ? m_run->reader()->progress() : SnapshotProgress();
}

SnapshotProgress CheckupSession::progress(quint8 nodeId) const
{
    return m_run != nullptr && m_run->reader() != nullptr ? m_run->reader()->progress(nodeId)
                                                          : SnapshotProgress();
}

std::optional<SnapshotNode> CheckupSession::node(quint8 nodeId) const
{
    return m_run != nullptr && m_run->reader() != nullptr ? m_run->reader()->node(nodeId) : std::nullopt;
}

const CheckedComponent *CheckupSession::early(quint8 nodeId) const
{
    const auto found = m_early.constFind(nodeId);
    return found == m_early.constEnd() ? nullptr : &*found;
}

CheckupResult CheckupSession::judge(const Snapshot &snapshot, const Snapshot *earlier)
{
    return Checkup::judge(snapshot, rules(), m_language, earlier);
}

Comparison CheckupSession::compare(const Snapshot &earlier, const Snapshot &later)
{
    return compareJudged(earlier, later, judge(later, &earlier));
}

Comparison CheckupSession::compareJudged(const Snapshot &earlier, const Snapshot &later,
                                         const CheckupResult &result)
{
    const CheckupResult before = judge(earlier);
    return ChangeSummary::forPeople(
        SnapshotComparison::compare({&earlier, &before}, {&later, &result}, rules().kinds()));
}

void CheckupSession::setKept(Kept kept, const QString &problem)
{
    m_kept = kept;
    m_keepingProblem = problem;
    emit keptChanged();
}

const RuleSet &CheckupSession::rules()
{
    if (!m_rules) {
        m_rules = RuleSet::load();
        if (!m_rules->problems().isEmpty())
            emit rulesRefused(m_rules->problems());
    }
    return *m_rules;
}
