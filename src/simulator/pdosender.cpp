// SPDX-License-Identifier: MIT
#include "pdosender.h"

namespace Simulator {

namespace {

/*! All numbers in 1800h to 1BFFh, to see whether one was written. */
QVector<quint32> settingsOf(const NodeContext &node)
{
    constexpr quint16 end = CanOpen::firstTransmitMapping + CanOpen::mostPdos;
    QVector<quint32> settings;
    const QVector<CanOpen::ObjectKey> keys = node.dictionary->keys();
    for (const CanOpen::ObjectKey key : keys) {
        if (key.index >= CanOpen::firstTransmitPdo && key.index < end)
            settings.append(node.dictionary->value(key).toUInt());
    }
    return settings;
}

} // namespace

PdoSender::PdoSender(const NodeContext *node)
    : m_node(node)
{
}

void PdoSender::start()
{
    if (m_isStarted)
        return;
    m_isStarted = true;
    load();
}

void PdoSender::stop()
{
    m_isStarted = false;
    m_pdos.clear();
}

void PdoSender::load()
{
    m_pdos.clear();
    m_settings = settingsOf(*m_node);
    if (m_settings.isEmpty())
        return;
    for (int number = 1; number <= CanOpen::mostPdos; ++number) {
        if (TransmitPdo::exists(*m_node, number))
            m_pdos.push_back(std::make_unique<TransmitPdo>(m_node, number));
    }
    for (const auto &pdo : m_pdos)
        pdo->start();
}

void PdoSender::handleSync(quint8 counter)
{
    for (const auto &pdo : m_pdos)
        pdo->handleSync(counter);
}

void PdoSender::parametersWritten()
{
    if (m_isStarted && settingsOf(*m_node) != m_settings)
        load();
    else
        valuesWritten();
}

void PdoSender::valuesWritten()
{
    for (const auto &pdo : m_pdos)
        pdo->dictionaryWritten();
}

} // namespace Simulator
