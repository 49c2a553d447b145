// SPDX-License-Identifier: MIT
#include "hostsdoclient.h"

#include "busconnection.h"

#include <canopen/cobid.h>
#include <canopen/sdoabort.h>

#include <algorithm>
#include <chrono>

HostSdoClient::HostSdoClient(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    connect(&bus->sdoClient(), &CanOpen::SdoClient::finished, this, &HostSdoClient::handleOutcome);
}

HostSdoClient::~HostSdoClient() = default;

void HostSdoClient::upload(quint8 nodeId, quint16 index, quint8 subIndex, quint16 dataType, int timeout)
{
    Pending pending;
    pending.number = ++m_lastNumber;
    pending.nodeId = nodeId;
    pending.key = CanOpen::ObjectKey{index, subIndex};

    const bool isPossible = CanOpen::isNodeId(nodeId) && CanOpen::isKnownDataType(dataType);
    const bool isConnected = m_bus->state() == BusConnection::State::Connected;
    pending.isOnBus = isPossible && isConnected && !m_isCancelling;
    m_pending.append(pending);
    emit uploadStarted(nodeId, pending.key);

    if (!isConnected || m_isCancelling) {
        endLater(pending.number, Ending::NoBus, timeoutCode);
    } else if (!isPossible) {
        endLater(pending.number, Ending::Refused, static_cast<quint32>(CanOpen::SdoAbort::GeneralError));
    } else {
        m_bus->sdoClient().upload(nodeId, pending.key, static_cast<CanOpen::DataType>(dataType),
                                  std::chrono::milliseconds(std::max(timeout, 0)));
    }
}

void HostSdoClient::cancelRun()
{
    m_isCancelling = true;
    for (Pending &pending : m_pending) {
        if (!pending.isOnBus)
            continue; // is being answered
        m_abandoned.append(pending);
        pending.isOnBus = false;
        endLater(pending.number, Ending::NoBus, timeoutCode);
    }
}

void HostSdoClient::endLater(quint64 number, Ending ending, quint32 code)
{
    const auto endNow = [this, number, ending, code] {
        const auto found = std::find_if(m_pending.begin(), m_pending.end(), [number](const Pending &pending) {
            return pending.number == number;
        });
        if (found == m_pending.end())
            return;
        const Pending pending = *found;
        m_pending.erase(found);
        end(pending, ending, code);
    };
    QMetaObject::invokeMethod(this, endNow, Qt::QueuedConnection);
}

bool HostSdoClient::takeMatch(QVector<Pending> *list, const CanOpen::SdoOutcome &outcome, Pending *match)
{
    const auto found = std::find_if(list->begin(), list->end(), [&outcome](const Pending &pending) {
        return pending.isOnBus && pending.nodeId == outcome.nodeId && pending.key == outcome.key;
    });
    if (found == list->end())
        return false;
    *match = *found;
    list->erase(found);
    return true;
}

void HostSdoClient::handleOutcome(const CanOpen::SdoOutcome &outcome)
{
    // The connection's client works off the uploads of one node in their order, so an abandoned one ends
    // before the same one asked again. It also works for others; their outcomes find nothing here.
    Pending pending;
    if (takeMatch(&m_abandoned, outcome, &pending) || !takeMatch(&m_pending, outcome, &pending))
        return;

    switch (outcome.kind) {
    case CanOpen::SdoOutcome::Kind::Value:
        end(pending, Ending::Value, 0, outcome.value);
        break;
    case CanOpen::SdoOutcome::Kind::Abort:
    case CanOpen::SdoOutcome::Kind::Error:
        // A device may send the code of the time-out as an abort; it did answer.
        end(pending, Ending::Refused,
            outcome.code == timeoutCode ? static_cast<quint32>(CanOpen::SdoAbort::GeneralError)
                                        : outcome.code);
        break;
    case CanOpen::SdoOutcome::Kind::Timeout:
        end(pending, Ending::Silent, timeoutCode);
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
