// SPDX-License-Identifier: MIT
#include "kepttransfers.h"

void KeptTransfers::begin(quint32 number, std::size_t firstFrame, CanOpen::ObjectKey object)
{
    if (m_transfers.size() < number)
        m_transfers.resize(number);
    m_transfers[number - 1].firstFrame = static_cast<quint32>(firstFrame);
    m_transfers[number - 1].object = object;
}

void KeptTransfers::keep(const SdoTransfer &transfer)
{
    begin(transfer.number, transfer.firstFrame, transfer.object);
    Kept &kept = m_transfers[transfer.number - 1];
    kept.begin = transfer.begin;
    kept.end = transfer.end;
    kept.lastFrame = static_cast<quint32>(transfer.lastFrame);
    kept.data = m_data.size();
    kept.size = static_cast<quint32>(transfer.data.size());
    kept.frames = static_cast<quint32>(transfer.frames);
    kept.abortCode = transfer.abortCode;
    kept.problems = transfer.problems;
    kept.channel = transfer.channel;
    kept.nodeId = transfer.nodeId;
    kept.protocol = transfer.protocol;
    kept.outcome = transfer.outcome;
    kept.isUpload = transfer.isUpload ? 1 : 0;
    kept.isSent = transfer.isSent ? 1 : 0;
    kept.isSizeUnknown = transfer.isSizeUnknown ? 1 : 0;
    m_data.insert(m_data.end(), transfer.data.begin(), transfer.data.end());
}

bool KeptTransfers::isKept(quint32 number) const
{
    return number > 0 && number <= m_transfers.size() && m_transfers[number - 1].frames > 0;
}

std::optional<SdoTransfer> KeptTransfers::find(quint32 number) const
{
    if (!isKept(number))
        return std::nullopt;
    const Kept &kept = m_transfers[number - 1];
    SdoTransfer transfer;
    transfer.number = number;
    transfer.begin = kept.begin;
    transfer.end = kept.end;
    transfer.firstFrame = kept.firstFrame;
    transfer.lastFrame = kept.lastFrame;
    transfer.data = QByteArray(m_data.data() + kept.data, static_cast<int>(kept.size));
    transfer.frames = static_cast<int>(kept.frames);
    transfer.abortCode = kept.abortCode;
    transfer.object = kept.object;
    transfer.problems = kept.problems;
    transfer.channel = kept.channel;
    transfer.nodeId = kept.nodeId;
    transfer.protocol = kept.protocol;
    transfer.outcome = kept.outcome;
    transfer.isUpload = kept.isUpload != 0;
    transfer.isSent = kept.isSent != 0;
    transfer.isSizeUnknown = kept.isSizeUnknown != 0;
    return transfer;
}
