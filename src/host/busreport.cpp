// SPDX-License-Identifier: MIT
#include "busreport.h"

#include <bus/buswords.h>
#include <host/core/hostservices.h>

#include <QStringList>

#include <algorithm>
#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr auto collectingTime = 500ms;
constexpr auto silenceInterval = 1000ms;

QString stateName(CanOpen::NmtState state)
{
    switch (state) {
    case CanOpen::NmtState::BootUp:
        return BusReport::tr("starting");
    case CanOpen::NmtState::Stopped:
        return BusReport::tr("Stopped");
    case CanOpen::NmtState::Operational:
        return BusReport::tr("Operational");
    case CanOpen::NmtState::PreOperational:
        return BusReport::tr("Pre-operational");
    }
    return QString();
}

/*! What the user has done is no error. */
MessageLog::Severity severityOf(const ReadSummary &summary)
{
    switch (summary.end) {
    case ReadSummary::End::Complete:
        return summary.record.total().failed == 0 ? MessageLog::Severity::Information
                                                  : MessageLog::Severity::Warning;
    case ReadSummary::End::Disconnected:
    case ReadSummary::End::Cancelled:
        return MessageLog::Severity::Information;
    case ReadSummary::End::Refused:
        return MessageLog::Severity::Warning;
    case ReadSummary::End::NothingAsked:
    case ReadSummary::End::NoAnswer:
    case ReadSummary::End::NotSent:
    case ReadSummary::End::BusGone:
        break;
    }
    return MessageLog::Severity::Error;
}

/*! The nodes of each state, ascending. */
QMap<CanOpen::NmtState, QList<quint8>> byState(const NodeNews::States &nodes)
{
    QMap<CanOpen::NmtState, QList<quint8>> states;
    for (auto it = nodes.cbegin(); it != nodes.cend(); ++it)
        states[it.value()].append(it.key());
    return states;
}

QString nodeNumbers(const QSet<quint8> &nodes)
{
    QList<quint8> sorted = nodes.values();
    std::sort(sorted.begin(), sorted.end());
    return BusWords::nodes(sorted);
}

MessageLog::Severity severityOf(CanOpen::NmtState state)
{
    return state == CanOpen::NmtState::Stopped ? MessageLog::Severity::Warning
                                               : MessageLog::Severity::Information;
}

} // namespace

BusReport::BusReport(HostServices *services, MessageLog *log, QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_log(log)
    , m_listeningTime(
          [this] { return std::chrono::milliseconds(m_listening.isValid() ? m_listening.elapsed() : 0); })
{
    m_nodeTimer.setSingleShot(true);
    m_nodeTimer.setInterval(collectingTime);
    m_silenceTimer.setInterval(silenceInterval);
    connect(&m_nodeTimer, &QTimer::timeout, this, &BusReport::reportNodes);
    connect(&m_silenceTimer, &QTimer::timeout, this, &BusReport::lookForSilentNodes);

    BusConnection &bus = services->bus();
    connect(&bus, &BusConnection::stateChanged, this, &BusReport::handleBusState);
    using CanOpen::HeartbeatConsumer;
    connect(&bus.heartbeats(), &HeartbeatConsumer::heartbeatReceived, this, &BusReport::handleHeartbeat);
    connect(&bus.heartbeats(), &HeartbeatConsumer::nodeLost, this, &BusReport::handleNodeLost);
    connect(&bus.sdoClient(), &CanOpen::SdoClient::foreignClientSeen, this, &BusReport::handleForeignClient);
    connect(&services->reads(), &ReadObserver::detectionStarted, this, &BusReport::handleDetection);
    connect(&services->reads(), &ReadObserver::readEnded, this, &BusReport::handleReadEnd);
    connect(&services->interfaceHealth(), &InterfaceHealth::stateChanged, this, &BusReport::handleHealth);
    connect(&services->interfaceHealth(), &InterfaceHealth::overrunReported, this, &BusReport::handleOverrun);
}

QStringList BusReport::obstacles() const
{
    QStringList sentences;
    if (m_services->bus().state() != BusConnection::State::Connected)
        return sentences;
    const ReadForecast forecast = ReadForecast::make(m_services->bus().heartbeats(), m_listeningTime());
    if (forecast.isControllerMissing) {
        sentences.append(tr("Node 1, the bus controller, was not heard. Without it nothing is read. Is the "
                            "vehicle switched on, and does node 1 send a heartbeat?"));
    }
    if (!forecast.stoppedNodes.isEmpty()) {
        sentences.append(tr("Stopped, so that they answer no SDO: node %1. The read ends at the first of "
                            "them; restart the vehicle, or start these nodes by NMT.")
                             .arg(BusWords::nodes(forecast.stoppedNodes.toList())));
    }
    return sentences;
}

void BusReport::reportNodes()
{
    const NodeNews::Report report = m_news.take();
    if (!report.restarted.isEmpty())
        add(MessageLog::Severity::Warning,
            tr("Started again (boot-up message): node %1").arg(nodeNumbers(report.restarted)));
    const auto changed = byState(report.changed);
    for (auto it = changed.cbegin(); it != changed.cend(); ++it)
        add(severityOf(it.key()), tr("Now %1: node %2").arg(stateName(it.key()), BusWords::nodes(*it)));
    if (!report.lost.isEmpty())
        add(MessageLog::Severity::Warning, tr("Not heard any more: node %1").arg(nodeNumbers(report.lost)));
    // Last: a node that is lost and heard at once is there.
    const auto heard = byState(report.heard);
    for (auto it = heard.cbegin(); it != heard.cend(); ++it)
        add(severityOf(it.key()), tr("Heard, %1: node %2").arg(stateName(it.key()), BusWords::nodes(*it)));
}

void BusReport::handleBusState(BusConnection::State state)
{
    const BusConnection::State previous = m_busState;
    m_busState = state;
    const BusConnection &bus = m_services->bus();
    const QString address = bus.settings().address.toString();
    switch (state) {
    case BusConnection::State::Connecting:
        return;
    case BusConnection::State::Connected: {
        m_listening.start();
        m_silenceTimer.start();
        m_wasUnwell = false;
        add(MessageLog::Severity::Information, previous == BusConnection::State::Lost
                                                   ? tr("Connected to %1 again.").arg(address)
                                                   : BusWords::connected(bus.settings()));
        return;
    }
    case BusConnection::State::Lost:
        forgetNodes();
        add(MessageLog::Severity::Error,
            tr("The connection to %1 is lost. %2 It is made again as soon as the interface "
               "is back.")
                .arg(address, bus.errorString()));
        return;
    case BusConnection::State::Disconnected:
        forgetNodes();
        if (!bus.errorString().isEmpty())
            add(MessageLog::Severity::Error, bus.errorString());
        else if (previous == BusConnection::State::Connected || previous == BusConnection::State::Lost)
            add(MessageLog::Severity::Information, tr("Disconnected from %1.").arg(address));
        return;
    }
}

void BusReport::handleHeartbeat(quint8 nodeId)
{
    if (const std::optional<CanOpen::NmtState> state = m_services->bus().heartbeats().state(nodeId))
        m_news.noteHeartbeat(nodeId, *state, m_listeningTime());
    collect();
}

void BusReport::handleNodeLost(quint8 nodeId)
{
    m_news.noteLoss(nodeId);
    collect();
}

void BusReport::collect()
{
    if (m_news.hasNews() && !m_nodeTimer.isActive())
        m_nodeTimer.start();
}

void BusReport::handleForeignClient(quint8 nodeId)
{
    const QString text = ReadWords::foreignClient(nodeId);
    add(MessageLog::Severity::Warning, text);
    emit noticed(text);
}

void BusReport::handleDetection()
{
    add(MessageLog::Severity::Information, tr("Read started: looking for nodes."));
    const QStringList sentences = obstacles();
    for (const QString &sentence : sentences)
        add(MessageLog::Severity::Warning, sentence);
    if (!sentences.isEmpty())
        emit noticed(sentences.join(QLatin1Char(' ')));
}

void BusReport::handleReadEnd(const ReadSummary &summary)
{
    const QString text = ReadWords::end(summary, m_services->silenceOf(summary.nodeId));
    add(severityOf(summary), text);
    if (summary.end == ReadSummary::End::Complete && m_services->wasBusFull())
        add(MessageLog::Severity::Warning, ReadWords::nodesMayBeMissing());
    const QStringList failures = ReadWords::failures(summary.failuresBeside());
    for (const QString &sentence : failures)
        add(MessageLog::Severity::Warning, sentence);
    emit noticed(text);
}

void BusReport::handleHealth(InterfaceHealth::State state)
{
    const QString name = m_services->bus().settings().address.interfaceName;
    if (state == InterfaceHealth::State::Good && m_wasUnwell)
        add(MessageLog::Severity::Information,
            tr("The CAN interface %1 works without errors again.").arg(name));
    const QString trouble = BusWords::health(state, name);
    if (state != InterfaceHealth::State::Unknown)
        m_wasUnwell = !trouble.isEmpty();
    if (trouble.isEmpty())
        return;
    const bool isWarning = state == InterfaceHealth::State::Warning;
    add(isWarning ? MessageLog::Severity::Warning : MessageLog::Severity::Error, trouble);
    if (!isWarning)
        emit noticed(trouble);
}

void BusReport::handleOverrun()
{
    add(MessageLog::Severity::Warning, tr("The CAN interface %1 has dropped received frames (overrun).")
                                           .arg(m_services->bus().settings().address.interfaceName));
}

void BusReport::forgetNodes()
{
    m_nodeTimer.stop();
    m_silenceTimer.stop();
    m_news.clear();
}

// A node whose heartbeat is switched off sends its boot-up message and nothing more.
void BusReport::lookForSilentNodes()
{
    const QSet<quint8> silent = m_news.takeSilent(m_listeningTime());
    if (!silent.isEmpty())
        add(MessageLog::Severity::Warning,
            tr("Started, but no heartbeat has followed (is object 1017h zero?): node %1")
                .arg(nodeNumbers(silent)));
}
