// SPDX-License-Identifier: MIT
#pragma once

#include "sdostep.h"
#include "sdotransfer.h"

#include <trace/core/traceframe.h>

#include <limits>
#include <memory>
#include <vector>

class SdoConversation;

/*! Follows the SDO transfers of all nodes on all channels (CiA 301, default SDO: 580h and 600h + node ID).
 *
 *  Fed frame by frame; knows no clock but the times of the frames. Bounded: of each server at most two transfers are under
 *  way, each with at most mostData bytes.
 */
class SdoTransfers
{
public:
    /*! us after which nothing more comes to a transfer: longer than any client waits. */
    static constexpr qint64 longestWait = 10'000'000;
    static constexpr int mostData = 4 * 1024 * 1024; // bytes

    /*! Where a frame belongs. */
    struct Place
    {
        quint32 transfer = 0; //!< its SdoTransfer::number; 0: none
        SdoStep step = SdoStep::None;
    };

    SdoTransfers();
    ~SdoTransfers();
    SdoTransfers(SdoTransfers &&) noexcept;
    SdoTransfers &operator=(SdoTransfers &&) noexcept;

    /*! Takes every frame in the order of the trace, with its position there. What is no SDO is passed over. */
    Place handle(const TraceFrame &frame, std::size_t position);

    /*! Those that have ended since the last call, in the order in which they ended. */
    std::vector<SdoTransfer> takeFinished();
    bool hasFinished() const { return !m_finished.empty(); }

    /*! The end of the trace: what is under way is Unfinished. */
    void finish();

private:
    struct Channel;

    SdoConversation &conversationOf(const TraceFrame &frame, quint8 nodeId);
    void sweep(qint64 now);

    std::vector<std::unique_ptr<Channel>> m_channels; // by number; null where nothing was heard
    std::vector<SdoConversation *> m_busy;            // those with transfers under way
    std::vector<SdoTransfer> m_finished;
    quint32 m_begun = 0;
    static constexpr qint64 noTime = std::numeric_limits<qint64>::min();
    qint64 m_swept = noTime;      // us
    std::size_t m_sinceSwept = 0; // frames
};
