// SPDX-License-Identifier: MIT
#pragma once

#include "samplering.h"

#include <live/core/liveframe.h>

/*! The SDO traffic of one node with all its clients: how long answers take, and what is refused. Times in us.
 *
 *  A request and the answer behind it are a pair; what goes in blocks without an answer to each frame is passed over.
 */
class SdoWatch
{
public:
    /*! A request, 600h + node ID; eight bytes. */
    void handleRequest(const LiveFrame &frame);
    /*! An answer, 580h + node ID; eight bytes. */
    void handleAnswer(const LiveFrame &frame);

    /*! Nobody could listen meanwhile. */
    void interrupt() { m_asked = false; }
    /*! The device has restarted, and knows of no transfer in blocks. */
    void endBlocks() { m_blocks = Blocks::None; }

    using Times = SampleRing<512>;
    const Times &times() const { return m_times; }
    /*! Requests that nothing came to within longestWait, or before the next one. */
    quint64 unanswered(qint64 now) const;
    /*! Of both sides. */
    quint64 aborts() const { return m_aborts; }
    /*! Those of them that say more than that something is not there. */
    quint64 refusals() const { return m_refusals; }
    quint64 requests() const { return m_requests; }
    /*! Requests of other clients than this program. */
    quint64 foreignRequests() const { return m_foreignRequests; }

    static constexpr qint64 longestWait = 10'000'000; // us

private:
    enum class Blocks : quint8 { None, Upload, Download };

    bool goesOnInBlocks(const LiveFrame &frame);
    void noteTime(qint64 time);
    void noteAbort(const LiveFrame &frame);

    bool m_asked = false;
    Blocks m_blocks = Blocks::None;
    qint64 m_askedAt = 0;
    qint64 m_blocksAt = 0; // time of their last frame; of a download: of its last answer
    Times m_times;
    quint64 m_unanswered = 0;
    quint64 m_aborts = 0;
    quint64 m_refusals = 0;
    quint64 m_requests = 0;
    quint64 m_foreignRequests = 0;
};

/*! Whether an abort only says that the device has no such object or sub-index. */
bool isAbsence(quint32 abortCode);
