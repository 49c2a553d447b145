// SPDX-License-Identifier: MIT
#include "emergencysender.h"

#include <canopen/cobid.h>

#include <QCanBusFrame>

#include <algorithm>

namespace Simulator {

namespace {

using CanOpen::Emergency;
using CanOpen::ObjectKey;

constexpr ObjectKey registerObject{0x1001, 0};
constexpr quint16 historyIndex = 0x1003;
constexpr ObjectKey historyCount{historyIndex, 0};
constexpr ObjectKey cobIdObject{0x1014, 0};
constexpr ObjectKey inhibitObject{0x1015, 0};

constexpr quint8 genericError = 0x01; // bit of the register that is set with every error
constexpr qint64 inhibitStep = 100;   // microseconds
constexpr int mostHistory = 254;      // sub-indices
constexpr int mostWaiting = 32;       // emergencies; more are lost, as in a device's buffer

} // namespace

EmergencySender::EmergencySender(const NodeContext *node)
    : m_node(node)
{
}

EmergencySender::~EmergencySender()
{
    setSending(false);
}

void EmergencySender::reset()
{
    m_errors.clear();
    m_waiting.clear();
    m_sentTime.reset();
    m_ownRegister = static_cast<quint8>(m_node->lookup()(registerObject).value_or(0));
}

void EmergencySender::setSending(bool isSending)
{
    m_isSending = isSending;
    if (isSending)
        return;
    m_waiting.clear();
    if (m_job)
        m_node->agenda->cancel(*m_job);
    m_job.reset();
}

void EmergencySender::announce(const Emergency &emergency)
{
    const auto isSame = [&](const Emergency &other) { return other.errorCode == emergency.errorCode; };
    if (std::any_of(m_errors.cbegin(), m_errors.cend(), isSame))
        return;
    m_errors.append(emergency);
    Emergency said = emergency;
    said.errorRegister = updateRegister();
    addToHistory(said);
    say(said);
}

void EmergencySender::clear(quint16 errorCode)
{
    const auto isSame = [errorCode](const Emergency &other) { return other.errorCode == errorCode; };
    const auto found = std::find_if(m_errors.begin(), m_errors.end(), isSame);
    if (found == m_errors.end())
        return;
    m_errors.erase(found);
    Emergency gone;
    gone.errorRegister = updateRegister();
    say(gone);
}

void EmergencySender::report(quint16 errorCode, quint8 errorRegister)
{
    Emergency emergency;
    emergency.errorCode = errorCode;
    emergency.errorRegister = errorRegister;
    announce(emergency);
    clear(errorCode);
}

quint8 EmergencySender::updateRegister()
{
    quint8 bits = m_ownRegister;
    for (const Emergency &error : qAsConst(m_errors))
        bits |= error.errorRegister | genericError;
    m_node->dictionary->setValue(registerObject, uint(bits));
    return bits;
}

// ---------------------------------------------------------------------- history

/*! The newest stands first; what finds no room any more is forgotten. */
void EmergencySender::addToHistory(const Emergency &emergency)
{
    CanOpen::ObjectDictionary &objects = *m_node->dictionary;
    QVariant value = emergency.historyEntry();
    int count = objects.value(historyCount).toInt();
    int sub = 1;
    for (; sub <= mostHistory; ++sub) {
        const ObjectKey key{historyIndex, static_cast<quint8>(sub)};
        if (objects.find(key) == nullptr)
            break;
        const QVariant older = objects.value(key);
        objects.setValue(key, value);
        value = older;
    }
    count = std::min(count + 1, sub - 1);
    objects.setValue(historyCount, uint(count));
}

void EmergencySender::dictionaryWritten()
{
    CanOpen::ObjectDictionary &objects = *m_node->dictionary;
    if (objects.find(historyCount) == nullptr || objects.value(historyCount).toUInt() != 0)
        return;
    for (int sub = 1; sub <= mostHistory; ++sub) {
        if (!objects.setValue({historyIndex, static_cast<quint8>(sub)}, 0u))
            return;
    }
}

// ---------------------------------------------------------------------- frames

void EmergencySender::say(const Emergency &emergency)
{
    if (!m_isSending || m_waiting.size() >= mostWaiting)
        return;
    m_waiting.append(emergency);
    if (!m_job)
        sendWaiting();
}

void EmergencySender::sendWaiting()
{
    m_job.reset();
    const CanOpen::ObjectLookup lookup = m_node->lookup();
    const qint64 inhibit = qint64(lookup(inhibitObject).value_or(0) & 0xFFFF) * inhibitStep;
    const quint32 cobId = lookup(cobIdObject).value_or(CanOpen::emergencyCobId(m_node->nodeId));
    while (!m_waiting.isEmpty()) {
        const qint64 now = m_node->clock();
        if (m_sentTime && now < *m_sentTime + inhibit) {
            m_job = m_node->agenda->add(*m_sentTime + inhibit, [this] { sendWaiting(); });
            return;
        }
        const Emergency emergency = m_waiting.takeFirst();
        if ((cobId & CanOpen::cobIdBit31) != 0)
            continue;
        m_sentTime = now;
        m_node->send(CanOpen::makeEmergencyFrame(cobId, emergency));
    }
}

} // namespace Simulator
