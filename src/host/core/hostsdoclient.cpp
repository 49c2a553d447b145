// SPDX-License-Identifier: MIT
#include "hostsdoclient.h"

#include <bus/busconnection.h>

#include <canopen/cobid.h>
#include <canopen/sdoabort.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

/*! Of an upload that failed. */
HostSdoClient::Ending endingOf(const CanOpen::SdoOutcome &outcome)
{
    if (outcome.kind == CanOpen::SdoOutcome::Kind::Error && outcome.foreignClient)
        return HostSdoClient::Ending::HeldUp;
    return outcome.isMixedUp ? HostSdoClient::Ending::MixedUp : HostSdoClient::Ending::Refused;
}

} // namespace

HostSdoClient::HostSdoClient(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    connect(&bus->sdoClient(), &CanOpen::SdoClient::finished, this, &HostSdoClient::handleOutcome);
}

HostSdoClient::~HostSdoClient() = default;

template<typename Predicate>
QVector<HostSdoClient::Pending>::iterator HostSdoClient::find(Predicate matches)
{
    return std::find_if(m_pending.begin(), m_pending.end(), matches);
}

void HostSdoClient::upload(quint8 nodeId, quint16 index, quint8 subIndex, quint16 dataType, int timeout)
{
    const quint64 number = ++m_lastNumber;
    const CanOpen::ObjectKey key{index, subIndex};
    m_pending.append({number, nodeId, key, 0});
    emit uploadStarted(nodeId, key);

    const bool isConnected = m_bus->state() == BusConnection::State::Connected;
    if (!isConnected || m_isCancelling) {
        endLater(number, Ending::NoBus, timeoutCode);
        return;
    }
    if (m_isRefusing) {
        endLater(number, Ending::Refusing, timeoutCode);
        return;
    }
    if (!CanOpen::isNodeId(nodeId) || !CanOpen::isKnownDataType(dataType)) {
        endLater(number, Ending::Refused, static_cast<quint32>(CanOpen::SdoAbort::GeneralError));
        return;
    }
    const CanOpen::SdoTicket ticket
        = m_bus->sdoClient().upload(nodeId, key, static_cast<CanOpen::DataType>(dataType),
                                    std::chrono::milliseconds(std::max(timeout, 0)));
    const auto pending = find([number](const Pending &known) { return known.number == number; });
    if (pending != m_pending.end())
        pending->ticket = ticket;
}

void HostSdoClient::cancelRun()
{
    m_isCancelling = true;
    QVector<CanOpen::SdoTicket> tickets;
    for (Pending &pending : m_pending) {
        if (pending.ticket == 0)
            continue;                                     // is being answered
        tickets.append(std::exchange(pending.ticket, 0)); // the outcome is answered here
        endLater(pending.number, Ending::NoBus, timeoutCode);
    }
    for (const CanOpen::SdoTicket ticket : qAsConst(tickets))
        m_bus->sdoClient().cancel(ticket);
}

void HostSdoClient::endLater(quint64 number, Ending ending, quint32 code)
{
    const auto endNow = [this, number, ending, code] {
        const auto found = find([number](const Pending &pending) { return pending.number == number; });
        if (found == m_pending.end())
            return;
        const Pending pending = *found;
        m_pending.erase(found);
        end(pending, ending, code);
    };
    QMetaObject::invokeMethod(this, endNow, Qt::QueuedConnection);
}

void HostSdoClient::handleOutcome(const CanOpen::SdoOutcome &outcome)
{
    // The connection's client also works for others, and for runs that were cancelled; their tickets find
    // nothing here.
    const auto found = find([&outcome](const Pending &pending) { return pending.ticket == outcome.ticket; });
    if (found == m_pending.end())
        return;
    const Pending pending = *found;
    m_pending.erase(found);

    switch (outcome.kind) {
    case CanOpen::SdoOutcome::Kind::Value:
        end(pending, Ending::Value, 0, outcome.value);
        break;
    case CanOpen::SdoOutcome::Kind::Abort:
    case CanOpen::SdoOutcome::Kind::Error:
        // A device may send the code of the time-out as an abort; it did answer.
        end(pending, endingOf(outcome),
            outcome.code == timeoutCode ? static_cast<quint32>(CanOpen::SdoAbort::GeneralError)
                                        : outcome.code);
        break;
    case CanOpen::SdoOutcome::Kind::Timeout:
        end(pending, outcome.isUnasked ? Ending::NotSent : Ending::Silent, timeoutCode);
        break;
    case CanOpen::SdoOutcome::Kind::Cancelled:
        end(pending, Ending::NoBus, timeoutCode);
        break;
    }
}

void HostSdoClient::end(const Pending &pending, Ending ending, quint32 code, const QVariant &value)
{
    emit uploadEnded(pending.nodeId, pending.key, ending, code);
    if (ending == Ending::Value)
        emit resultReceived(pending.nodeId, pending.key.index, pending.key.subIndex, value);
    else
        emit errorReceived(pending.nodeId, pending.key.index, pending.key.subIndex, code);
}
