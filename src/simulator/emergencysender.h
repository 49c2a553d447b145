// SPDX-License-Identifier: MIT
#pragma once

#include "nodecontext.h"

#include <canopen/emergency.h>

#include <QVector>

#include <optional>

namespace Simulator {

/*! The errors of a node (CiA 301): its emergencies, its error register (1001h) and its error history (1003h).
 *
 *  The COB-ID is that of 1014h, or 80h + node ID where there is no such object; its bit 31 switches the emergencies off, not
 *  the register nor the history. Two emergencies are never nearer than 1015h says.
 */
class EmergencySender
{
public:
    explicit EmergencySender(const NodeContext *node);
    ~EmergencySender();

    EmergencySender(const EmergencySender &) = delete;
    EmergencySender &operator=(const EmergencySender &) = delete;

    /*! The node has booted: no error is there but what the dictionary's register tells. */
    void reset();

    /*! Whether emergencies may go out: operational or pre-operational. What happens meanwhile stays unsaid. */
    void setSending(bool isSending);

    /*! An error has come. Nothing happens when one with this code is there already. */
    void announce(const CanOpen::Emergency &emergency);
    /*! The error with this code has gone: the emergency 0000h tells what is left in the register. */
    void clear(quint16 errorCode);
    /*! An error that is over as soon as it is said. */
    void report(quint16 errorCode, quint8 errorRegister);

    /*! A client has written into the dictionary: 0 in 1003h sub-index 0 empties the history. */
    void dictionaryWritten();

private:
    quint8 updateRegister();
    void addToHistory(const CanOpen::Emergency &emergency);
    void say(const CanOpen::Emergency &emergency);
    void sendWaiting();

    const NodeContext *m_node;
    bool m_isSending = false;
    quint8 m_ownRegister = 0;              // what the dictionary had at the start
    QVector<CanOpen::Emergency> m_errors;  // that are there now
    QVector<CanOpen::Emergency> m_waiting; // for the inhibit time
    std::optional<qint64> m_sentTime;
    std::optional<Agenda::Entry> m_job;
};

} // namespace Simulator
