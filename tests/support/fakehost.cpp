// SPDX-License-Identifier: MIT
#include "fakehost.h"

#include <QMetaMethod>

namespace {
constexpr quint16 heartbeatBase = 0x700;
}

FakeSdoClient::Key FakeSdoClient::key(quint8 nodeId, quint16 index, quint8 subIndex)
{
    return {nodeId, (static_cast<quint32>(index) << 8) | subIndex};
}

void FakeSdoClient::setValue(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value)
{
    m_values.insert(key(nodeId, index, subIndex), value);
}

void FakeSdoClient::setError(quint8 nodeId, quint16 index, quint8 subIndex, quint32 code)
{
    m_errors.insert(key(nodeId, index, subIndex), code);
}

void FakeSdoClient::upload(quint8 nodeId, quint16 index, quint8 subIndex, quint16 dataType, int timeout)
{
    const SdoRequest request{nodeId, index, subIndex, dataType, timeout};
    m_requests.append(request);
    if (m_mode == Mode::Answer)
        QMetaObject::invokeMethod(
            this, [this, request] { answer(request); }, Qt::QueuedConnection);
}

void FakeSdoClient::answer(const SdoRequest &request)
{
    const Key k = key(request.nodeId, request.index, request.subIndex);
    const QVariant value = m_values.value(k, m_defaultValue);
    if (m_errors.contains(k))
        emit errorReceived(request.nodeId, request.index, request.subIndex, m_errors.value(k));
    else if (value.isValid())
        emit resultReceived(request.nodeId, request.index, request.subIndex, value);
    else
        emit errorReceived(request.nodeId, request.index, request.subIndex, NoSuchObject);
}

void FakeReceiver::connectNotify(const QMetaMethod &signal)
{
    if (signal == QMetaMethod::fromSignal(&FakeReceiver::received))
        ++connections;
}

FakeReceiverHub::FakeReceiverHub()
{
    for (int nodeId = 1; nodeId < 128; ++nodeId) {
        m_receivers[nodeId] = std::make_unique<FakeReceiver>();
        m_nmtSources[nodeId] = std::make_unique<FakeNmtSource>();
    }
}

QObject *FakeReceiverHub::getReceiver(quint16 cobId)
{
    askedCobIds.append(cobId);
    const int nodeId = cobId - heartbeatBase;
    return nodeId >= 0 && nodeId < 128 ? m_receivers[nodeId].get() : nullptr;
}

QObject *FakeReceiverHub::getNmtStateSource(quint8 nodeId)
{
    return nodeId < 128 ? m_nmtSources[nodeId].get() : nullptr;
}

void FakeReceiverHub::heartbeat(quint8 nodeId)
{
    emit m_receivers[nodeId]->received(static_cast<quint16>(heartbeatBase + nodeId));
}

void FakeReceiverHub::reportNmtState(quint8 nodeId, NmtSender::NmtState state)
{
    emit m_nmtSources[nodeId]->newNmtState(nodeId, state);
}

FakeReceiver *FakeReceiverHub::receiver(quint8 nodeId) const
{
    return m_receivers[nodeId].get();
}

void FakeReceiverHub::removeReceiver(quint8 nodeId)
{
    m_receivers[nodeId].reset();
}

void FakeReceiverHub::removeNmtSource(quint8 nodeId)
{
    m_nmtSources[nodeId].reset();
}

FakeHost::FakeHost()
{
    qRegisterMetaType<NmtSender::NmtState>("NmtSender::NmtState");
}
