// SPDX-License-Identifier: MIT
#include "replaycontents.h"

#include <canopen/cobid.h>
#include <canopen/sdoframe.h>

#include <algorithm>
#include <iterator>

namespace {

using CanOpen::SdoRequest;

/*! Requests that write: everything of a client but reading and aborts. */
bool isWriting(const TraceFrame &frame)
{
    const QByteArray payload(reinterpret_cast<const char *>(frame.bytes.data()), frame.size());
    const SdoRequest request = CanOpen::sdoRequestOf(payload);
    return request == SdoRequest::InitiateDownload || request == SdoRequest::BlockDownload;
}

bool isPdo(quint32 id)
{
    constexpr quint32 first = 0x180;
    constexpr quint32 last = 0x57F;
    return id >= first && id <= last;
}

/*! What devices say of themselves: emergencies, answers, heartbeats. */
bool isSaid(quint32 id)
{
    using namespace CanOpen;
    return nodeIdOf(id, emergencyBase) != 0 || nodeIdOf(id, sdoResponseBase) != 0
           || nodeIdOf(id, errorControlBase) != 0;
}

} // namespace

ReplayContents::ReplayContents(const std::vector<TraceFrame> &frames)
{
    for (const TraceFrame &frame : frames)
        count(frame);
}

void ReplayContents::count(const TraceFrame &frame)
{
    if (frame.isExtended())
        ++m_others;
    else if (frame.id == CanOpen::nmtCommandCobId)
        ++m_commands;
    else if (frame.id == CanOpen::syncCobId)
        ++m_syncs;
    else if (isPdo(frame.id))
        ++m_processData;
    else if (CanOpen::nodeIdOf(frame.id, CanOpen::sdoRequestBase) != 0)
        m_writings += isWriting(frame) ? 1 : 0;
    else if (!isSaid(frame.id))
        ++m_others;
}

QStringList ReplayContents::acting() const
{
    const struct
    {
        quint64 number;
        QString text;
    } kinds[] = {
        {m_commands, tr("NMT commands: %1")},
        {m_processData, tr("process data: %1")},
        {m_syncs, tr("SYNC: %1")},
        {m_writings, tr("writings of objects: %1")},
        {m_others, tr("frames that are not of CANopen's usual ones: %1")},
    };
    QStringList texts;
    for (const auto &kind : kinds) {
        if (kind.number > 0)
            texts.append(kind.text.arg(kind.number));
    }
    return texts;
}
