// SPDX-License-Identifier: MIT
#pragma once

#include "simulatedbus.h"

namespace Simulator {

/*! Answers each frame with one that is always the same, without any protocol: what a bus and its client cost
 *  by themselves can be timed with it.
 */
class EchoNode : public BusParticipant
{
public:
    /*! \a bus must outlive the node. */
    EchoNode(SimulatedBus *bus, const QCanBusFrame &answer);
    ~EchoNode() override;

    EchoNode(const EchoNode &) = delete;
    EchoNode &operator=(const EchoNode &) = delete;

    void receive(const QCanBusFrame &frame) override;
    bool isSimulated() const override { return true; }

private:
    SimulatedBus *m_bus;
    QCanBusFrame m_answer;
};

} // namespace Simulator
