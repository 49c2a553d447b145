// SPDX-License-Identifier: MIT
#pragma once

#include "../trace/frames.h"

#include <canopen/objectdictionary.h>
#include <canopen/sdoserver.h>
#include <trace/core/trace.h>
#include <trace/transfers/sdotransfers.h>

#include <QCanBusFrame>
#include <QVector>

#include <vector>

/*! A trace of a client and the server of a node: the frames of both, a millisecond apart. */
class SdoTraffic
{
public:
    SdoTraffic(Trace *trace, quint8 nodeId)
        : m_trace(trace)
        , m_request(0x600U + nodeId)
        , m_server(nodeId, &m_dictionary)
    {
    }

    void put(CanOpen::ObjectKey key, const QByteArray &data)
    {
        CanOpen::ObjectEntry entry;
        entry.type = CanOpen::DataType::Domain;
        entry.access = CanOpen::Access::ReadWrite;
        entry.data = data;
        m_dictionary.insert(key, entry);
    }

    CanOpen::SdoServer &server() { return m_server; }

    void add(quint32 id, const QByteArray &hex)
    {
        const qint64 time = millisecond * qint64(m_trace->frames.size());
        m_trace->frames.push_back(frameAt(time, id, hex));
    }

    /*! A request and its answers. */
    void ask(const QByteArray &hex)
    {
        add(m_request, hex);
        const QVector<QCanBusFrame> answers
            = m_server.handleFrame(QCanBusFrame(m_request, QByteArray::fromHex(hex)));
        for (const QCanBusFrame &frame : answers)
            add(frame.frameId(), frame.payload().toHex());
    }

private:
    Trace *m_trace;
    quint32 m_request;
    CanOpen::ObjectDictionary m_dictionary;
    CanOpen::SdoServer m_server;
};

/*! All transfers of a trace, in the order of their ends. */
inline std::vector<SdoTransfer> transfersOf(const Trace &trace)
{
    SdoTransfers transfers;
    for (std::size_t i = 0; i < trace.frames.size(); ++i)
        transfers.handle(trace.frames[i], i);
    transfers.finish();
    return transfers.takeFinished();
}
