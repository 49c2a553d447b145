// SPDX-License-Identifier: MIT
#pragma once

#include "nodecontext.h"

#include <canopen/emergency.h>
#include <canopen/pdomapping.h>
#include <canopen/pdoparameter.h>

#include <QByteArray>
#include <QVector>

#include <functional>
#include <optional>

namespace Simulator {

/*! All PDOs that a node takes (CiA 301: 1400h and 1600h on), while it is operational: their values go into its dictionary,
 *  at once, or on the next SYNC when the transmission type says so.
 */
class PdoReceiver
{
public:
    /*! \a complain gets the emergency error code of a PDO with too few or too many bytes. */
    PdoReceiver(const NodeContext *node, std::function<void(quint16 errorCode)> complain);

    /*! The node is operational, or no longer. */
    void start();
    void stop();

    /*! A client has written into the dictionary, parameters of PDOs perhaps: then what waits for the SYNC is forgotten. */
    void parametersWritten();

    /*! Whether a value was written. */
    bool handleFrame(const QCanBusFrame &frame);
    bool handleSync();

private:
    struct Pdo
    {
        CanOpen::PdoParameter parameter;
        CanOpen::PdoMapping mapping;
        std::optional<QByteArray> waiting; // for the SYNC
    };

    void load();
    bool take(Pdo &pdo, const QByteArray &payload);
    void write(const CanOpen::PdoMapping &mapping, const QByteArray &payload);

    const NodeContext *m_node;
    std::function<void(quint16)> m_complain;
    bool m_isStarted = false;
    QVector<quint32> m_settings; // what the PDOs were made of
    QVector<Pdo> m_pdos;
};

} // namespace Simulator
