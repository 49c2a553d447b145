// SPDX-License-Identifier: MIT
#include "echonode.h"

namespace Simulator {

EchoNode::EchoNode(SimulatedBus *bus, const QCanBusFrame &answer)
    : m_bus(bus)
    , m_answer(answer)
{
    m_bus->attach(this);
}

EchoNode::~EchoNode()
{
    m_bus->detach(this);
}

void EchoNode::receive(const QCanBusFrame &frame)
{
    Q_UNUSED(frame)
    m_bus->send(this, m_answer);
}

} // namespace Simulator
