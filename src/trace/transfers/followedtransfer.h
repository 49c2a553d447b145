// SPDX-License-Identifier: MIT
#pragma once

#include "sdostep.h"
#include "sdotransfer.h"

#include <trace/core/traceframe.h>

#include <canopen/sdoframe.h>

#include <optional>

/*! One transfer that is under way, as its frames tell. Frames that do not fit leave it as it is. */
class FollowedTransfer
{
public:
    /*! A frame of the server or of its clients, with what is needed of it. */
    struct Heard
    {
        /*! \a frame must live as long, and have eight bytes. */
        Heard(const TraceFrame &heard, std::size_t place);

        const TraceFrame &frame;
        std::size_t position;
        QByteArray payload; // of the frame's own bytes
    };

    /*! The first step of a transfer; empty for what begins none. */
    static std::optional<SdoStep> beginning(const Heard &heard);

    /*! Of a frame that is a beginning(). */
    FollowedTransfer(const Heard &heard, quint32 number, quint8 nodeId);

    /*! What a frame of a client is in this transfer; Stray when it is none of it. */
    SdoStep handleRequest(const Heard &heard);
    /*! Likewise of the server. */
    SdoStep handleAnswer(const Heard &heard);

    bool isOver() const { return m_phase == Phase::Over; }
    /*! Whether nothing but the request has come. */
    bool isInitiating() const;

    /*! Whether a request is a segment of the block, the next one or one behind a gap in the trace, though it may look like
     *  the beginning of another transfer.
     */
    bool isBlockSegment(const Heard &heard) const;

    /*! Nothing more will come. \a isTimeOver: and would have come by now. */
    void leave(bool isTimeOver);

    void note(SdoTransfer::Problem problem) { m_transfer.problems |= problem; }

    const SdoTransfer &transfer() const { return m_transfer; }

private:
    enum class Phase : quint8 {
        UploadAsked,
        UploadTurn, // the client's
        UploadSegmentAsked,
        DownloadAsked,
        DownloadTurn, // the client's
        DownloadSegmentAsked,
        BlockUploadAsked,
        BlockUploadTurn, // the client's
        BlockUploadSegments,
        BlockUploadEnd,
        BlockUploadEndTurn, // the client's
        BlockDownloadAsked,
        BlockDownloadSegments,
        BlockDownloadEndTurn, // the client's
        BlockDownloadEndAsked,
        Over,
    };

    bool waitsForServer() const;
    bool hasSegmentsOnly(const QByteArray &payload) const;
    bool isBehindGap(const Heard &heard, int sequenceNumber) const;
    SdoStep requestOf(const QByteArray &payload);
    SdoStep answerOf(const QByteArray &payload);
    void abort(const QByteArray &payload, SdoTransfer::Outcome outcome);
    bool isCopy(const Heard &heard) const;
    SdoStep clientAbort(const QByteArray &payload);
    SdoStep serverAbort(const QByteArray &payload);
    bool isOfThis(const QByteArray &abort) const;

    SdoStep uploadAnswer(const QByteArray &payload);
    SdoStep uploadSegmentRequest(const QByteArray &payload);
    SdoStep uploadSegment(const QByteArray &payload);
    SdoStep downloadAnswer(const QByteArray &payload);
    SdoStep downloadSegment(const QByteArray &payload);
    SdoStep downloadSegmentAnswer(const QByteArray &payload);

    SdoStep blockUploadAnswer(const QByteArray &payload);
    SdoStep blockUploadRequest(const QByteArray &payload);
    SdoStep blockUploadSegment(const QByteArray &payload);
    SdoStep blockUploadEnd(const QByteArray &payload);
    SdoStep blockDownloadAnswer(const QByteArray &payload);
    SdoStep blockDownloadSegment(const QByteArray &payload);
    SdoStep blockDownloadAcknowledge(const QByteArray &payload);
    SdoStep blockDownloadEnd(const QByteArray &payload);
    SdoStep blockDownloadEndAnswer(const QByteArray &payload);

    void beginDownload(const QByteArray &payload);
    void beginBlockUpload(const QByteArray &payload);
    void beginBlockDownload(const QByteArray &payload);
    void announce(bool isTold, quint32 size);
    void append(const CanOpen::SdoChunk &chunk);
    void breakWith(SdoTransfer::Problem problem);
    void complete();

    void startBlock(quint8 blockSize);
    void takeBlockSegment(const QByteArray &payload);
    void acknowledge(const CanOpen::SdoBlockAcknowledge &acknowledge, Phase afterLast, Phase afterBlock);
    void endBlocks(const CanOpen::SdoBlockEnd &end);

    SdoTransfer m_transfer;
    Phase m_phase = Phase::Over;
    bool m_isBroken = false;
    bool m_isLast = false; // the last segment has come, or was sent
    bool m_toggle = false; // of the segment that is next, or under way
    bool m_hasCrc = false; // both sides know it
    quint8 m_blockSize = 0;
    quint8 m_lastGood = 0; // number of the last segment of the block that came in order
    quint8 m_lastHeard = 0;
    qint64 m_size = 0;    // bytes so far, also those that are not kept
    qint64 m_blockAt = 0; // bytes before the block
    std::optional<quint32> m_announced;
    TraceFrame m_lastSegment; // to know a copy of it
};
