// SPDX-License-Identifier: MIT
#pragma once

#include "fakehost.h"

#include <reader/datareader.h>

/*! A reader connected to a host, as the window does it. */
struct ReaderBench
{
    ReaderBench()
    {
        reader.setSdoClient(&host.sdoClient);
        reader.setReceiverHub(&host.hub);
        reader.setSecondarySdoClient(&host.secondarySdoClient);
    }

    /*! A whole detection, in which these nodes are heard; with node 1 among them the reading begins. */
    void detect(const QList<quint8> &nodeIds)
    {
        reader.startReading();
        for (const quint8 nodeId : nodeIds)
            host.hub.heartbeat(nodeId);
        reader.handleHBdetectionTimeout();
    }

    FakeHost host;
    DataReader reader;
};
