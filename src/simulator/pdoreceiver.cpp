// SPDX-License-Identifier: MIT
#include "pdoreceiver.h"

#include <QCanBusFrame>

namespace Simulator {

namespace {

using CanOpen::PdoTrigger;

constexpr quint16 notProcessed = 0x8210; // PDO too short
constexpr quint16 tooLong = 0x8220;

} // namespace

PdoReceiver::PdoReceiver(const NodeContext *node, std::function<void(quint16)> complain)
    : m_node(node)
    , m_complain(std::move(complain))
{
}

void PdoReceiver::start()
{
    if (m_isStarted)
        return;
    m_isStarted = true;
    load();
}

void PdoReceiver::load()
{
    m_pdos.clear();
    m_settings = m_node->pdoSettings(CanOpen::firstReceivePdo);
    const CanOpen::ObjectLookup lookup = m_node->lookup();
    for (int offset = 0; offset < CanOpen::mostPdos; ++offset) {
        const auto parameterIndex = static_cast<quint16>(CanOpen::firstReceivePdo + offset);
        const auto parameter = CanOpen::readPdoParameter(lookup, parameterIndex);
        if (!parameter || !parameter->isValid)
            continue;
        const auto mappingIndex = static_cast<quint16>(CanOpen::firstReceiveMapping + offset);
        CanOpen::PdoMapping mapping = CanOpen::readPdoMapping(lookup, mappingIndex);
        if (mapping.problem == CanOpen::PdoMapping::Problem::None && !mapping.entries.isEmpty())
            m_pdos.append(Pdo{*parameter, std::move(mapping), std::nullopt});
    }
}

void PdoReceiver::stop()
{
    m_isStarted = false;
    m_pdos.clear();
}

void PdoReceiver::parametersWritten()
{
    if (m_isStarted && m_node->pdoSettings(CanOpen::firstReceivePdo) != m_settings)
        load();
}

bool PdoReceiver::handleFrame(const QCanBusFrame &frame)
{
    if (frame.frameType() != QCanBusFrame::DataFrame)
        return false;
    bool isWritten = false;
    for (Pdo &pdo : m_pdos) {
        if (frame.frameId() == pdo.parameter.cobId
            && frame.hasExtendedFrameFormat() == pdo.parameter.isExtended)
            isWritten = take(pdo, frame.payload()) || isWritten;
    }
    return isWritten;
}

bool PdoReceiver::take(Pdo &pdo, const QByteArray &payload)
{
    const int expected = pdo.mapping.bytes();
    if (payload.size() < expected) {
        m_complain(notProcessed);
        return false;
    }
    if (payload.size() > expected)
        m_complain(tooLong);
    if (pdo.parameter.trigger() != PdoTrigger::Event) {
        pdo.waiting = payload;
        return false;
    }
    write(pdo.mapping, payload);
    return true;
}

bool PdoReceiver::handleSync()
{
    bool isWritten = false;
    for (Pdo &pdo : m_pdos) {
        if (!pdo.waiting)
            continue;
        write(pdo.mapping, *pdo.waiting);
        pdo.waiting.reset();
        isWritten = true;
    }
    return isWritten;
}

/*! What the node does not have, or has in another width, stays as it is. */
void PdoReceiver::write(const CanOpen::PdoMapping &mapping, const QByteArray &payload)
{
    const QVector<CanOpen::PdoValue> values = CanOpen::unpackPdo(mapping, payload);
    for (const CanOpen::PdoValue &value : values) {
        const CanOpen::ObjectEntry *entry = m_node->dictionary->find(value.object);
        if (entry == nullptr)
            continue;
        if (const auto data = CanOpen::widenMapped(entry->type, value.data, value.bits))
            m_node->dictionary->setData(value.object, *data);
    }
}

} // namespace Simulator
