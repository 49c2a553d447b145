// SPDX-License-Identifier: MIT
// Heartbeats, NMT commands and other clients' transfers: frames of any identifier and kind.
#include "framereader.h"

#include <canopen/cobid.h>
#include <canopen/foreigntransfer.h>
#include <canopen/heartbeatconsumer.h>
#include <canopen/nmt.h>

#include <QCoreApplication>

namespace {

qint64 now = 0; // ms

void checkFrame(const QCanBusFrame &frame)
{
    if (const std::optional<CanOpen::Heartbeat> heartbeat = CanOpen::parseHeartbeatFrame(frame)) {
        require(CanOpen::isNodeId(heartbeat->nodeId));
        require(frame.frameId() == CanOpen::errorControlCobId(heartbeat->nodeId));
    }
    if (const std::optional<CanOpen::NmtMessage> message = CanOpen::parseNmtFrame(frame))
        require(frame.frameId() == 0 && message->nodeId <= CanOpen::lastNodeId);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);

    ByteReader reader(data, size);
    CanOpen::HeartbeatConsumer consumer;
    consumer.setClock([] { return now; });
    CanOpen::ForeignTransfer transfer;
    now = 0;
    while (!reader.atEnd()) {
        const quint8 step = reader.byte();
        switch (step & 0x03) {
        case 0:
            transfer.handleRequest(reader.payload());
            break;
        case 1:
            transfer.handleResponse(reader.payload());
            break;
        case 2:
            now += reader.word();
            consumer.checkTimeouts(now);
            break;
        default: {
            // Half of the identifiers belong to heartbeats.
            const quint32 id = (step & 0x04) != 0 ? CanOpen::errorControlBase + (reader.byte() & 0x7F)
                                                  : reader.word() & 0x7FFu;
            const QCanBusFrame frame = frameFrom(reader, id);
            checkFrame(frame);
            consumer.handleFrame(frame);
            break;
        }
        }
        int active = 0;
        for (int node = 0; node <= CanOpen::lastNodeId; ++node)
            active += consumer.state(static_cast<quint8>(node)).has_value() ? 1 : 0;
        require(consumer.activeNodeCount() == active);
    }
    return 0;
}
