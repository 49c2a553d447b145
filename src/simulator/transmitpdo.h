// SPDX-License-Identifier: MIT
#pragma once

#include "nodecontext.h"

#include <canopen/pdomapping.h>
#include <canopen/pdoparameter.h>

#include <QCanBusFrame>

#include <optional>

namespace Simulator {

/*! One PDO that a node sends, while the node is operational (CiA 301).
 *
 *  On every n-th SYNC; on a SYNC after a change; or after a change and when the event timer has run out, never sooner than
 *  the inhibit time allows. Remote frames are not answered.
 */
class TransmitPdo
{
public:
    /*! PDO \a number, from 1 on, as the dictionary has it now. */
    TransmitPdo(const NodeContext *node, int number);
    ~TransmitPdo();

    TransmitPdo(const TransmitPdo &) = delete;
    TransmitPdo &operator=(const TransmitPdo &) = delete;

    /*! Whether the dictionary has such a PDO, and it is switched on. */
    static bool exists(const NodeContext &node, int number);

    /*! Begins; what goes by events is sent once at the start. */
    void start();

    /*! Takes a SYNC with its counter, 0 without one. */
    void handleSync(quint8 counter);

    /*! Somebody has written into the dictionary. */
    void dictionaryWritten();

private:
    void look(qint64 time);
    void planLook(qint64 time);
    bool isTime(qint64 time) const;
    bool isSyncStarted(quint8 counter);
    std::optional<qint64> nextLook(qint64 time) const;
    bool hasMovingValues() const;
    QByteArray payload() const;
    void send(const QByteArray &payload, qint64 time);

    const NodeContext *m_node;
    int m_number;
    CanOpen::PdoParameter m_parameter;
    CanOpen::PdoMapping m_mapping;
    QByteArray m_sent; // what the last frame carried
    std::optional<qint64> m_sentTime;
    std::optional<Agenda::Entry> m_look;
    int m_syncs = 0; // since the last frame
    bool m_isSyncStarted = false;
};

} // namespace Simulator
