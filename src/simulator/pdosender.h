// SPDX-License-Identifier: MIT
#pragma once

#include "nodecontext.h"
#include "transmitpdo.h"

#include <memory>
#include <vector>

namespace Simulator {

/*! All PDOs that a node sends (CiA 301: 1800h and 1A00h on), while it is operational. */
class PdoSender
{
public:
    explicit PdoSender(const NodeContext *node);

    /*! The node is operational, or no longer. */
    void start();
    void stop();

    void handleSync(quint8 counter);

    /*! A client has written into the dictionary, parameters of PDOs perhaps. */
    void parametersWritten();
    /*! Values were written, but no parameters. */
    void valuesWritten();

private:
    void load();

    const NodeContext *m_node;
    bool m_isStarted = false;
    QVector<quint32> m_settings; // what the PDOs were made of
    std::vector<std::unique_ptr<TransmitPdo>> m_pdos;
};

} // namespace Simulator
