// SPDX-License-Identifier: MIT
#include "snapshotrun.h"

#include "readwords.h"

#include <trace/playback/playbackstate.h>

#include <QCanBus>
#include <QCanBusDeviceInfo>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace {

using std::chrono::milliseconds;

/*! What the back end calls the interface; empty when it does not tell. */
QString adapterDescription(const BusAddress &address)
{
    const QList<QCanBusDeviceInfo> devices = QCanBus::instance()->availableDevices(address.plugin);
    for (const QCanBusDeviceInfo &device : devices) {
        if (device.name() == address.interfaceName)
            return device.description();
    }
    return QString();
}

/*! Now, with the offset of its time zone; of a trace that is played the time of then. */
QDateTime zonedNow(const BusConnection &bus)
{
    const std::optional<PlaybackState> played = PlaybackState::of(bus.device());
    if (played && played->timeOfDay().isValid())
        return played->timeOfDay();
    const QDateTime now = QDateTime::currentDateTime();
    return now.toOffsetFromUtc(now.offsetFromUtc());
}

} // namespace

SnapshotRun::SnapshotRun(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    m_listening.setSingleShot(true);
    m_listening.setInterval(listeningTime);
    m_loss.setSingleShot(true);
    connect(&m_listening, &QTimer::timeout, this, [this] {
        m_wasBusFull = isFullOfOthers();
        handleListeningEnd();
    });
    connect(&m_loss, &QTimer::timeout, this, &SnapshotRun::cancel);
}

SnapshotRun::~SnapshotRun() = default;

void SnapshotRun::start(const SnapshotOrder &order)
{
    m_isRunning = true;
    m_nodeIds = order.nodeIds;
    m_isScanned = order.isScanned;
    describeOrigin(order);
    makeReader(order);
    followBus();
    m_reader->start();
    for (const quint8 nodeId : order.nodeIds)
        m_reader->addNode(nodeId);
    if (m_bus->state() == BusConnection::State::Connected)
        listen();
    else
        handleState(m_bus->state());
}

void SnapshotRun::cancel()
{
    if (m_reader != nullptr)
        m_reader->cancel();
}

QStringList SnapshotRun::doubts() const
{
    if (m_isRunning)
        return QStringList();
    if (m_scan == nullptr)
        return m_wasBusFull ? QStringList{ReadWords::nodesMayBeMissing()} : QStringList();
    const QVector<quint8> nodeIds = unknownNodes();
    return nodeIds.isEmpty() ? QStringList() : QStringList{ReadWords::unknownNodes(nodeIds)};
}

Snapshot SnapshotRun::snapshot() const
{
    Snapshot snapshot = m_origin;
    if (m_isRunning)
        snapshot.duration = m_offset + m_clock.elapsed();
    if (m_reader != nullptr)
        snapshot.nodes = m_reader->nodes();
    return snapshot;
}

void SnapshotRun::describeOrigin(const SnapshotOrder &order)
{
    const QDateTime now = zonedNow(*m_bus);
    m_origin.program = order.program;
    m_origin.time = now;
    m_origin.scope = order.scope;
    m_origin.notes = order.notes;
    m_origin.bus = m_bus->settings().address.toString();
    m_origin.adapter = adapterDescription(m_bus->settings().address);
    m_origin.bitRate = m_bus->bitRate();
    if (order.earlier) {
        m_origin.time = order.earlier->time;
        m_offset = std::max(order.earlier->time.msecsTo(now), order.earlier->duration);
    }
    m_clock.start();
}

void SnapshotRun::makeReader(const SnapshotOrder &order)
{
    const auto clock = [this] { return milliseconds(m_clock.elapsed()); };
    m_reader = std::make_unique<SnapshotReader>(&m_bus->sdoClient(), clock);
    m_reader->setScope(m_origin.scope);
    m_reader->setShare(order.sharePercent, m_origin.bitRate);
    for (auto sheet = order.dataSheets.cbegin(); sheet != order.dataSheets.cend(); ++sheet)
        m_reader->setDataSheet(sheet.key(), sheet.value());
    if (order.earlier)
        m_reader->setEarlier(*order.earlier, milliseconds(m_offset));
    connect(m_reader.get(), &SnapshotReader::nodeAdded, this, &SnapshotRun::nodeAdded);
    connect(m_reader.get(), &SnapshotReader::nodeChanged, this, &SnapshotRun::nodeChanged);
    connect(m_reader.get(), &SnapshotReader::nodeFinished, this, &SnapshotRun::nodeFinished);
    connect(m_reader.get(), &SnapshotReader::finished, this, &SnapshotRun::handleFinished);
}

void SnapshotRun::followBus()
{
    using CanOpen::HeartbeatConsumer;
    HeartbeatConsumer &heartbeats = m_bus->heartbeats();
    connect(&heartbeats, &HeartbeatConsumer::heartbeatReceived, this, &SnapshotRun::handleHeartbeat);
    connect(&heartbeats, &HeartbeatConsumer::nodeLost, m_reader.get(),
            [this](quint8 nodeId) { m_reader->setNmtState(nodeId, std::nullopt); });
    connect(&m_bus->sdoClient(), &CanOpen::SdoClient::finished, this, &SnapshotRun::handleOutcome);
    connect(m_bus, &BusConnection::stateChanged, this, &SnapshotRun::handleState);
}

/*! Looks for nodes, from the beginning: those that are known to the connection, and those that are heard from now on. */
void SnapshotRun::listen()
{
    m_isListening = true;
    for (quint8 nodeId = CanOpen::firstNodeId; nodeId <= CanOpen::lastNodeId; ++nodeId) {
        const std::optional<CanOpen::NmtState> state = m_bus->heartbeats().state(nodeId);
        if (state && isWanted(nodeId))
            m_reader->addNode(nodeId);
        if (state)
            m_reader->setNmtState(nodeId, state);
    }
    if (!m_nodeIds.isEmpty()) {
        handleListeningEnd();
        return;
    }
    m_bitsBefore = m_bus->load().bits() - m_reader->spentBits();
    m_listenedFrom = m_clock.elapsed();
    m_listening.start();
    if (!m_isScanned)
        return;
    m_scan = std::make_unique<CanOpen::NodeScan>(&m_bus->sdoClient());
    connect(m_scan.get(), &CanOpen::NodeScan::found, m_reader.get(), &SnapshotReader::addNode);
    connect(m_scan.get(), &CanOpen::NodeScan::finished, this, &SnapshotRun::handleListeningEnd);
    m_scan->start();
}

void SnapshotRun::handleHeartbeat(quint8 nodeId)
{
    if (isWanted(nodeId))
        m_reader->addNode(nodeId);
    const std::optional<CanOpen::NmtState> state = m_bus->heartbeats().state(nodeId);
    m_reader->setNmtState(nodeId, state);
    if (state == CanOpen::NmtState::BootUp)
        m_reader->noteBootUp(nodeId);
}

void SnapshotRun::handleListeningEnd()
{
    const bool isScanning = m_scan != nullptr && m_scan->isRunning();
    const bool isOver = m_bus->state() == BusConnection::State::Connected && !m_listening.isActive();
    if (!isOver || isScanning) // with the bus, a scan ends before we are told
        return;
    m_isListening = false;
    m_reader->allNodesAdded();
}

void SnapshotRun::handleOutcome(const CanOpen::SdoOutcome &outcome)
{
    using Kind = CanOpen::SdoOutcome::Kind;
    if (outcome.kind == Kind::Value || outcome.kind == Kind::Abort)
        m_lostSince.reset();
}

void SnapshotRun::handleState(BusConnection::State state)
{
    if (!m_isRunning)
        return;
    switch (state) {
    case BusConnection::State::Connected:
        m_loss.stop();
        setLost(false);
        if (m_isListening)
            listen();
        break;
    case BusConnection::State::Lost:
        m_listening.stop();
        waitForBus();
        setLost(true);
        break;
    case BusConnection::State::Disconnected:
        cancel();
        break;
    case BusConnection::State::Connecting:
        break;
    }
}

/*! An adapter that cannot send, as one that is bus-off, can be opened all the same, and is lost with the next question. */
void SnapshotRun::waitForBus()
{
    const qint64 now = m_clock.elapsed();
    if (!m_lostSince)
        m_lostSince = now;
    m_loss.start(std::max(longestLoss - milliseconds(now - *m_lostSince), milliseconds::zero()));
}

void SnapshotRun::setLost(bool isLost)
{
    m_reader->setBusPresent(!isLost);
    if (std::exchange(m_isLost, isLost) != isLost)
        emit busLostChanged(isLost);
}

void SnapshotRun::handleFinished()
{
    m_isRunning = false;
    m_isListening = false;
    m_listening.stop();
    m_loss.stop();
    m_origin.duration = m_offset + m_clock.elapsed();
    emit finished();
}

bool SnapshotRun::isWanted(quint8 nodeId) const
{
    return m_nodeIds.isEmpty() || m_nodeIds.contains(nodeId);
}

/*! Of which the scan has learnt nothing, and that were not heard either. */
QVector<quint8> SnapshotRun::unknownNodes() const
{
    QVector<quint8> nodeIds = m_scan->unaskedNodes();
    const auto isKnown = [this](quint8 nodeId) { return m_reader->node(nodeId).has_value(); };
    nodeIds.erase(std::remove_if(nodeIds.begin(), nodeIds.end(), isKnown), nodeIds.end());
    return nodeIds;
}

/*! Whether the bus was full since the listening began, and that not by what we ask meanwhile. */
bool SnapshotRun::isFullOfOthers() const
{
    constexpr double mostShare = 0.5; // of the bus, for others
    const CanOpen::BusLoad &load = m_bus->load();
    const milliseconds time(m_clock.elapsed() - m_listenedFrom);
    const quint64 withOurs = std::min(m_bitsBefore + m_reader->spentBits(), load.bits());
    return load.isFull(m_bitsBefore, time) && load.share(withOurs, time).value_or(0) >= mostShare;
}
