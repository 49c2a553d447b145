// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/nmt.h>

#include <QMap>
#include <QSet>

#include <chrono>

/*! Collects what the nodes of a bus do, so that it can be told in few sentences: a vehicle that is switched on is one
 *  piece of news and not one for each node.
 *
 *  Knows no clock and no words: its owner reports what is heard, and when, and takes what is new.
 */
class NodeNews
{
public:
    using States = QMap<quint8, CanOpen::NmtState>;

    /*! After a boot-up message the first heartbeat is due in this time. */
    static constexpr std::chrono::milliseconds heartbeatDue{5000};

    /*! What has happened since the last time, by node. */
    struct Report
    {
        States heard;   //!< for the first time, or again
        States changed; //!< state
        QSet<quint8> restarted;
        QSet<quint8> lost;

        bool isEmpty() const
        {
            return heard.isEmpty() && changed.isEmpty() && restarted.isEmpty() && lost.isEmpty();
        }
    };

    /*! A heartbeat or a boot-up message. */
    void noteHeartbeat(quint8 nodeId, CanOpen::NmtState state, std::chrono::milliseconds now);
    void noteLoss(quint8 nodeId);

    bool hasNews() const { return !m_report.isEmpty(); }

    /*! Hands out what is new. */
    Report take();

    /*! Hands out the nodes that have booted and sent no heartbeat in the time in which it was due; each once. */
    QSet<quint8> takeSilent(std::chrono::milliseconds now);

    /*! The bus has gone. */
    void clear();

private:
    Report m_report;
    States m_states;                                  // as reported last or about to be
    QMap<quint8, std::chrono::milliseconds> m_booted; // boot-up without a heartbeat since
};
