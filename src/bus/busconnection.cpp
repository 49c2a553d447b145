// SPDX-License-Identifier: MIT
#include "busconnection.h"

#include "backends.h"
#include "buswords.h"

#include <bus/socketcan/cansocket.h>
#include <canopen/canport.h>
#include <canopen/uploadgate.h>
#include <system/amounts.h>

#include <QCanBusDevice>
#include <QLoggingCategory>
#include <QPointer>

Q_LOGGING_CATEGORY(busLog, "host.bus")

namespace {

using namespace std::chrono_literals;

constexpr auto retryInterval = 1000ms;

} // namespace

BusConnection::BusConnection(QObject *parent)
    : QObject(parent)
    , m_sdoClient([this](const QCanBusFrame &frame) { return send(frame); })
{
    m_sdoClient.setBusLoad(&m_load);
    m_retryTimer.setInterval(retryInterval);
    connect(&m_retryTimer, &QTimer::timeout, this, &BusConnection::tryAgain);
    connect(&m_watch, &InterfaceWatch::lost, this, [this](InterfaceWatch::Presence presence) {
        handleLoss(BusWords::presence(presence, m_settings));
    });
    connect(&m_watch, &InterfaceWatch::returned, this, &BusConnection::tryAgain);
    connect(&m_queue, &ReceiveQueue::overflowed, this,
            [this] { handleFrame(ReceiveQueue::overflowFrame()); });
    connect(&m_sdoClient, &CanOpen::SdoClient::finished, this, [this](const CanOpen::SdoOutcome &outcome) {
        m_counters.uploadRepeats += static_cast<quint64>(outcome.repeats);
    });
}

BusConnection::~BusConnection()
{
    // Nobody hears of it any more; the client ends its uploads while the port is still there.
    blockSignals(true);
    m_sdoClient.disconnect(this);
    m_watch.stop();
}

bool BusConnection::connectToBus(const BusSettings &settings, QString *errorMessage)
{
    const QPointer<BusConnection> alive(this);
    disconnectFromBus();
    if (alive.isNull())
        return false;

    m_settings = settings;
    m_counters = BusCounters();
    m_errorString.clear();
    const quint64 generation = ++m_generation;
    setState(State::Connecting);
    if (alive.isNull())
        return false;

    QString error;
    Attempt attempt = Attempt::Superseded;
    if (generation == m_generation)
        attempt = open(&error);
    if (attempt == Attempt::Superseded)
        error = tr("The attempt to connect was ended by another one.");
    if (errorMessage != nullptr)
        *errorMessage = error;
    if (attempt == Attempt::Superseded) // this may be gone
        return false;

    if (attempt == Attempt::Failed) {
        m_errorString = error;
        setState(State::Disconnected);
        return false;
    }
    setState(State::Connected);
    return true;
}

void BusConnection::disconnectFromBus()
{
    m_retryTimer.stop();
    m_watch.stop();
    if (m_state == State::Disconnected)
        ++m_generation;
    else
        leave(State::Disconnected, QString());
}

BusCounters BusConnection::counters() const
{
    BusCounters counters = m_counters;
    addPortCounters(&counters);
    return counters;
}

const QCanBusDevice *BusConnection::device() const
{
    return m_port != nullptr ? m_port->device() : nullptr;
}

std::optional<qint64> BusConnection::busTime() const
{
    const QVariant time = m_port != nullptr ? m_port->device()->property("busTime") : QVariant();
    return time.isValid() ? std::optional<qint64>(time.toLongLong()) : std::nullopt;
}

bool BusConnection::configureDevice(int key, const QVariant &value)
{
    if (m_port == nullptr || key < QCanBusDevice::UserKey)
        return false;
    m_port->device()->setConfigurationParameter(key, value);
    return true;
}

CanOpen::Sending BusConnection::send(const QCanBusFrame &frame)
{
    if (!m_isGateOpen && !CanOpen::isUploadRequest(frame)) {
        qCWarning(busLog, "A frame was not sent, as it might change something: %s",
                  qUtf8Printable(frame.toString()));
        return CanOpen::Sending::Dropped;
    }
    if (m_port == nullptr)
        return CanOpen::Sending::Dropped;
    m_load.note(frame);
    const CanOpen::Sending sending = m_port->send(frame);
    if (sending == CanOpen::Sending::Written)
        emit frameSent(frame);
    return sending;
}

BusConnection::Attempt BusConnection::open(QString *errorMessage)
{
    std::unique_ptr<CanOpen::CanPort> port = m_opener.makePort(m_settings, errorMessage);
    if (port == nullptr)
        return Attempt::Failed;

    // Back ends may process events while they connect: a click on Disconnect, or the end of this object.
    const QPointer<BusConnection> alive(this);
    const quint64 generation = m_generation;
    const BusSettings settings = m_settings;
    m_isOpening = true;
    QString reason;
    const bool isOpen = port->open(&reason);
    if (alive.isNull())
        return Attempt::Superseded;
    m_isOpening = false;
    if (generation != m_generation)
        return Attempt::Superseded;
    if (!isOpen) {
        *errorMessage = BusWords::cannotBeOpened(settings.address, reason);
        return Attempt::Failed;
    }

    // A SocketCAN interface that is down opens without complaint and stays silent.
    const InterfaceWatch::Presence presence = m_watch.look(settings.address);
    if (presence == InterfaceWatch::Presence::Down || presence == InterfaceWatch::Presence::Missing) {
        *errorMessage = tr("The bus %1 cannot be used. %2")
                            .arg(settings.address.toString(), BusWords::presence(presence, settings));
        return Attempt::Failed;
    }
    adoptPort(std::move(port));
    m_watch.start(settings.address);
    return Attempt::Opened;
}

ReceiveQueue::Counter BusConnection::lossCounter() const
{
    if (m_lossCounter)
        return m_lossCounter;
    std::optional<CanSocket> socket;
    if (BackEnd::find(m_settings.address.plugin).isConfiguredOutside)
        socket = CanSocket::find(m_settings.address.interfaceName);
    if (socket)
        socket->noteTimes();
    return [socket] { return socket ? socket->dropped() : std::nullopt; };
}

void BusConnection::adoptPort(std::unique_ptr<CanOpen::CanPort> port)
{
    m_port = std::move(port);
    m_bitRate = m_opener.bitRate(m_settings, *m_port->device());
    m_load.setBitRate(m_bitRate);
    m_queue.start(lossCounter());
    followBusTime();
    connect(m_port.get(), &CanOpen::CanPort::frameReceived, this, &BusConnection::handleFrame);
    connect(m_port.get(), &CanOpen::CanPort::lost, this, &BusConnection::handleLoss);
    connect(m_port.get(), &CanOpen::CanPort::written, &m_sdoClient, &CanOpen::SdoClient::handleWritten);
    connect(m_port.get(), &CanOpen::CanPort::written, this, &BusConnection::frameSent);
    connect(m_port.get(), &CanOpen::CanPort::dropped, &m_sdoClient, &CanOpen::SdoClient::handleDropped);
}

/*! Nobody is late because the time of the bus stands still. */
void BusConnection::followBusTime()
{
    const bool hasOwnTime = busTime().has_value();
    if (hasOwnTime)
        m_heartbeats.setClock([this] { return busTime().value_or(0) / Microseconds::ofMillisecond; });
    else if (m_hasOwnTime)
        m_heartbeats.setClock({});
    m_hasOwnTime = hasOwnTime;
}

void BusConnection::releasePort()
{
    if (m_port == nullptr)
        return;

    m_queue.stop();
    addPortCounters(&m_counters);
    m_port->disconnect(this);
    m_port->disconnect(&m_sdoClient);
    m_sdoClient.forgetWaitingFrames();
    m_port->close();
    // Later, as this may be called while the port delivers a frame; as a child for the end of the program.
    m_port->setParent(this);
    m_port.release()->deleteLater();
}

void BusConnection::handleFrame(const QCanBusFrame &frame)
{
    const QPointer<BusConnection> alive(this);
    const CanOpen::CanPort *port = m_port.get();
    m_load.note(frame);
    // First: the client asks on within an answer, and a device that sends at once has that request out before.
    emit frameReceived(frame);
    if (alive.isNull() || m_port.get() != port)
        return;
    m_heartbeats.handleFrame(frame);
    if (alive.isNull())
        return;
    m_sdoClient.handleFrame(frame);
}

void BusConnection::handleLoss(const QString &reason)
{
    if (m_state != State::Connected)
        return;
    qCInfo(busLog, "Lost %s: %s", qUtf8Printable(m_settings.address.toString()), qUtf8Printable(reason));
    m_retryTimer.start();
    leave(State::Lost, reason);
}

/*! Closes the port and ends what is under way on it. This may be gone afterwards: slots hear of it. */
void BusConnection::leave(State state, const QString &reason)
{
    const QPointer<BusConnection> alive(this);
    const quint64 generation = ++m_generation;
    m_state = state; // before the uploads end, so that the next ones are refused
    m_errorString = reason;
    m_lossReason = reason;
    releasePort();
    m_sdoClient.cancelAll();
    if (alive.isNull() || generation != m_generation)
        return;
    m_heartbeats.clear();
    emit stateChanged(m_state);
}

void BusConnection::tryAgain()
{
    if (m_state != State::Lost || m_isOpening)
        return;

    // Setting the bit rate also switches an interface on that is down.
    const InterfaceWatch::Presence presence = m_watch.look(m_settings.address);
    const bool isDown = presence == InterfaceWatch::Presence::Down && !m_settings.bitRate;
    if (isDown || presence == InterfaceWatch::Presence::Missing)
        return;

    QString error;
    if (open(&error) != Attempt::Opened)
        return; // the reason of the loss says more than that of the attempt
    m_retryTimer.stop();
    m_errorString.clear();
    setState(State::Connected);
}

void BusConnection::setState(State state)
{
    m_state = state;
    emit stateChanged(state);
}

void BusConnection::addPortCounters(BusCounters *counters) const
{
    if (m_port == nullptr)
        return;
    counters->framesReceived += m_port->framesReceived();
    counters->framesSent += m_port->framesSent();
    counters->writeRetries += m_port->writeRetries();
}
