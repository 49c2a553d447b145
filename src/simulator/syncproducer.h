// SPDX-License-Identifier: MIT
#pragma once

#include "nodecontext.h"

#include <canopen/sync.h>

#include <functional>

namespace Simulator {

/*! Sends SYNC where a node's dictionary says so (CiA 301: 1005h, 1006h, 1019h), operational or pre-operational. */
class SyncProducer
{
public:
    /*! \a ownSync is told of each SYNC behind its sending: a producer's own PDOs go by it, too. */
    SyncProducer(const NodeContext *node, std::function<void(const QCanBusFrame &)> ownSync);

    /*! Takes the parameters from the dictionary; nothing changes when they are those that it goes by already. */
    void start();
    void stop();

private:
    void send();

    const NodeContext *m_node;
    std::function<void(const QCanBusFrame &)> m_ownSync;
    CanOpen::SyncParameter m_parameter;
    quint64 m_job = 0; // 0: none
    quint8 m_counter = 0;
};

} // namespace Simulator
