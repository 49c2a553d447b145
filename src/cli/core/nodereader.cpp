// SPDX-License-Identifier: MIT
#include "nodereader.h"

NodeReader::NodeReader(CanOpen::SdoClient *client, quint8 nodeId, QObject *parent)
    : QObject(parent)
    , m_client(client)
    , m_nodeId(nodeId)
{
    for (const ReadGroup group :
         {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3, ReadGroup::Group4, ReadGroup::Group5})
        m_entries += readListGroup(group);
    m_store.appendNode(nodeId);
    connect(client, &CanOpen::SdoClient::finished, this, &NodeReader::takeOutcome);
}

void NodeReader::start()
{
    askNext();
}

void NodeReader::askNext()
{
    const ReadEntry &entry = m_entries.at(m_position);
    m_key = {entry.index, entry.subIndex};
    m_ticket = m_client->upload(m_nodeId, m_key, static_cast<CanOpen::DataType>(entry.dataType));
}

void NodeReader::takeOutcome(const CanOpen::SdoOutcome &outcome)
{
    if (m_ticket == 0 || outcome.ticket != m_ticket)
        return;
    m_ticket = 0;
    if (outcome.kind == CanOpen::SdoOutcome::Kind::Cancelled) {
        finish(End::Cancelled);
        return;
    }
    m_record.note(m_nodeId, m_key, ReadResult::of(outcome));
    if (outcome.kind == CanOpen::SdoOutcome::Kind::Value)
        m_store.setValue(m_nodeId, m_key.index, m_key.subIndex, outcome.value);

    m_silences = outcome.kind == CanOpen::SdoOutcome::Kind::Timeout ? m_silences + 1 : 0;
    ++m_position;
    if (m_silences == mostSilences)
        finish(End::NodeSilent);
    else if (m_position == m_entries.size())
        finish(End::Complete);
    else
        askNext();
}

void NodeReader::finish(End end)
{
    m_end = end;
    emit finished();
}
