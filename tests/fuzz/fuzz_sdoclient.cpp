// SPDX-License-Identifier: MIT
// The client of all nodes: uploads side by side and in queues, frames of any node and kind between them.
#include "framereader.h"

#include <canopen/cobid.h>
#include <canopen/sdoclient.h>

#include <QCoreApplication>
#include <QSet>

#include <chrono>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    using namespace CanOpen;

    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    static constexpr DataType types[]
        = {DataType::Unsigned8, DataType::Unsigned32, DataType::VisibleString, DataType::OctetString};

    ByteReader reader(data, size);
    // Time passes as the input says.
    std::chrono::milliseconds now{0};
    const auto send = [](const QCanBusFrame &frame) {
        require(frame.frameId() > sdoRequestBase && frame.frameId() <= sdoRequestBase + lastNodeId);
        require(frame.payload().size() == 8);
        return Sending::Written;
    };
    SdoClient client(send, [&now] { return now; });
    QSet<SdoTicket> open;
    const auto finish = [&open](const SdoOutcome &outcome) {
        require(open.remove(outcome.ticket)); // each ends once, and none that was not begun
    };
    QObject::connect(&client, &SdoClient::finished, finish);

    // Few nodes, so that the frames meet the uploads.
    constexpr quint8 nodes = 4;
    while (!reader.atEnd()) {
        const quint8 action = reader.byte();
        const quint8 node = action >> 4 & (nodes - 1);
        switch (action & 0x07) {
        case 0:
            open.insert(client.upload(node, ObjectKey{reader.word(), reader.byte()}, types[action >> 6]));
            break;
        case 1:
            client.handleFrame(QCanBusFrame(sdoRequestBase + node, reader.payload()));
            break;
        case 2:
            client.handleFrame(frameFrom(reader, reader.word() & 0x7FF));
            break;
        case 3:
            if ((action & 0x08) != 0)
                client.cancelAll();
            QCoreApplication::processEvents();
            break;
        case 4:
            now += std::chrono::milliseconds(reader.byte());
            break;
        default:
            client.handleFrame(QCanBusFrame(sdoResponseBase + node, reader.payload()));
        }
    }
    client.cancelAll();
    QCoreApplication::processEvents();
    require(open.isEmpty() && !client.isBusy());
    return 0;
}
