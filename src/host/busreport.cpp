// SPDX-License-Identifier: MIT
#include "busreport.h"

#include <host/core/hostservices.h>

#include <QStringList>

#include <chrono>

namespace {

using namespace std::chrono_literals;

using Severity = MessageLog::Severity;

constexpr auto collectingTime = 500ms;
constexpr auto silenceInterval = 1000ms;
constexpr qint64 heartbeatDue = 5000; // ms after a boot-up
constexpr double bitsPerKilobit = 1000.0;

/*! "1, 4 to 9, 12" */
QString nodeNumbers(const QList<quint8> &sorted)
{
    QStringList parts;
    for (int first = 0; first < sorted.size();) {
        int last = first;
        while (last + 1 < sorted.size() && sorted.at(last + 1) == sorted.at(last) + 1)
            ++last;
        if (last - first >= 2) {
            parts.append(BusReport::tr("%1 to %2").arg(sorted.at(first)).arg(sorted.at(last)));
        } else {
            for (int i = first; i <= last; ++i)
                parts.append(QString::number(sorted.at(i)));
        }
        first = last + 1;
    }
    return parts.join(QLatin1String(", "));
}

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
Severity severityOf(const ReadSummary &summary)
{
    switch (summary.end) {
    case ReadSummary::End::Complete:
        return summary.record.total().failed == 0 ? Severity::Information : Severity::Warning;
    case ReadSummary::End::Disconnected:
    case ReadSummary::End::Cancelled:
        return Severity::Information;
    case ReadSummary::End::NothingAsked:
    case ReadSummary::End::NoAnswer:
    case ReadSummary::End::BusGone:
        break;
    }
    return Severity::Error;
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
                             .arg(nodeNumbers(forecast.stoppedNodes.toList())));
    }
    return sentences;
}

void BusReport::reportNodes()
{
    QMap<CanOpen::NmtState, QList<quint8>> heard;
    for (auto it = m_heard.cbegin(); it != m_heard.cend(); ++it)
        heard[it.value()].append(it.key());
    QMap<CanOpen::NmtState, QList<quint8>> changed;
    for (auto it = m_changed.cbegin(); it != m_changed.cend(); ++it)
        changed[it.value()].append(it.key());
    const QList<quint8> restarted = m_restarted.keys();
    const QList<quint8> lost = m_lost.keys();
    m_heard.clear();
    m_changed.clear();
    m_restarted.clear();
    m_lost.clear();

    const auto severityOf = [](CanOpen::NmtState state) {
        return state == CanOpen::NmtState::Stopped ? Severity::Warning : Severity::Information;
    };
    for (auto it = heard.cbegin(); it != heard.cend(); ++it)
        add(severityOf(it.key()), tr("Heard, %1: node %2").arg(stateName(it.key()), nodeNumbers(*it)));
    if (!restarted.isEmpty())
        add(Severity::Warning, tr("Started again (boot-up message): node %1").arg(nodeNumbers(restarted)));
    for (auto it = changed.cbegin(); it != changed.cend(); ++it)
        add(severityOf(it.key()), tr("Now %1: node %2").arg(stateName(it.key()), nodeNumbers(*it)));
    if (!lost.isEmpty())
        add(Severity::Warning, tr("Not heard any more: node %1").arg(nodeNumbers(lost)));
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
        const int bitRate = bus.settings().bitRate.value_or(0);
        if (previous == BusConnection::State::Lost)
            add(Severity::Information, tr("Connected to %1 again.").arg(address));
        else if (bitRate > 0)
            add(Severity::Information,
                tr("Connected to %1 at %2 kbit/s.").arg(address, QString::number(bitRate / bitsPerKilobit)));
        else
            add(Severity::Information, tr("Connected to %1.").arg(address));
        return;
    }
    case BusConnection::State::Lost:
        forgetNodes();
        add(Severity::Error, tr("The connection to %1 is lost. %2 It is made again as soon as the interface "
                                "is back.")
                                 .arg(address, bus.errorString()));
        return;
    case BusConnection::State::Disconnected:
        forgetNodes();
        if (!bus.errorString().isEmpty())
            add(Severity::Error, bus.errorString());
        else if (previous == BusConnection::State::Connected || previous == BusConnection::State::Lost)
            add(Severity::Information, tr("Disconnected from %1.").arg(address));
        return;
    }
}

void BusReport::handleHeartbeat(quint8 nodeId)
{
    const std::optional<CanOpen::NmtState> state = m_services->bus().heartbeats().state(nodeId);
    if (!state)
        return;
    const auto known = m_states.constFind(nodeId);
    const bool isNew = known == m_states.constEnd();
    const bool isBootUp = *state == CanOpen::NmtState::BootUp;
    if (!isNew && *known == *state && !isBootUp)
        return;

    if (isBootUp)
        m_booted.insert(nodeId, m_listeningTime().count());
    else
        m_booted.remove(nodeId);
    if (isNew || m_heard.contains(nodeId))
        m_heard.insert(nodeId, *state);
    else if (isBootUp)
        m_restarted.insert(nodeId, true);
    else
        m_changed.insert(nodeId, *state);
    m_states.insert(nodeId, *state);
    if (!m_nodeTimer.isActive())
        m_nodeTimer.start();
}

void BusReport::handleNodeLost(quint8 nodeId)
{
    m_states.remove(nodeId);
    m_booted.remove(nodeId);
    m_heard.remove(nodeId);
    m_changed.remove(nodeId);
    m_lost.insert(nodeId, true);
    if (!m_nodeTimer.isActive())
        m_nodeTimer.start();
}

void BusReport::handleDetection()
{
    add(Severity::Information, tr("Read started: looking for nodes."));
    const QStringList sentences = obstacles();
    for (const QString &sentence : sentences)
        add(Severity::Warning, sentence);
    if (!sentences.isEmpty())
        emit noticed(sentences.join(QLatin1Char(' ')));
}

void BusReport::handleReadEnd(const ReadSummary &summary)
{
    const QString text = ReadWords::end(summary, m_services->silenceOf(summary.nodeId));
    add(severityOf(summary), text);
    const QStringList failures = ReadWords::failures(summary.failuresBeside());
    for (const QString &sentence : failures)
        add(Severity::Warning, sentence);
    emit noticed(text);
}

void BusReport::handleHealth(InterfaceHealth::State state)
{
    const QString name = m_services->bus().settings().address.interfaceName;
    QString text;
    switch (state) {
    case InterfaceHealth::State::Unknown:
        return;
    case InterfaceHealth::State::Good:
        if (m_wasUnwell)
            add(Severity::Information, tr("The CAN interface %1 works without errors again.").arg(name));
        m_wasUnwell = false;
        return;
    case InterfaceHealth::State::Warning:
        m_wasUnwell = true;
        add(Severity::Warning, tr("The CAN interface %1 counts many bus errors.").arg(name));
        return;
    case InterfaceHealth::State::Passive:
        text = tr("The CAN interface %1 is error-passive: nobody acknowledges its frames, or they arrive "
                  "broken. Check bit rate, wiring and termination.")
                   .arg(name);
        break;
    case InterfaceHealth::State::BusOff:
        text = tr("The CAN interface %1 is bus-off: it has left the bus after too many errors. Check bit "
                  "rate, wiring and termination, then restart the interface, or disconnect and connect.")
                   .arg(name);
        break;
    }
    m_wasUnwell = true;
    add(Severity::Error, text);
    emit noticed(text);
}

void BusReport::handleOverrun()
{
    add(Severity::Warning, tr("The CAN interface %1 has dropped received frames (overrun).")
                               .arg(m_services->bus().settings().address.interfaceName));
}

void BusReport::forgetNodes()
{
    m_nodeTimer.stop();
    m_silenceTimer.stop();
    m_states.clear();
    m_heard.clear();
    m_changed.clear();
    m_restarted.clear();
    m_lost.clear();
    m_booted.clear();
}

// A node whose heartbeat is switched off sends its boot-up message and nothing more.
void BusReport::lookForSilentNodes()
{
    QList<quint8> silent;
    for (auto it = m_booted.begin(); it != m_booted.end();) {
        if (m_listeningTime().count() - it.value() < heartbeatDue) {
            ++it;
            continue;
        }
        silent.append(it.key());
        it = m_booted.erase(it);
    }
    if (!silent.isEmpty())
        add(Severity::Warning, tr("Started, but no heartbeat has followed (is object 1017h zero?): node %1")
                                   .arg(nodeNumbers(silent)));
}
