// SPDX-License-Identifier: MIT
#include "pdosender.h"

namespace Simulator {

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
    m_settings = m_node->pdoSettings(CanOpen::firstTransmitPdo);
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
    if (m_isStarted && m_node->pdoSettings(CanOpen::firstTransmitPdo) != m_settings)
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
