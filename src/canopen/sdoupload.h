// SPDX-License-Identifier: MIT
#pragma once

#include "blockreception.h"
#include "datatype.h"
#include "foreigntransfer.h"
#include "objectkey.h"
#include "readingrecord.h"
#include "sdoabort.h"
#include "sdoframe.h"
#include "sdooutcome.h"
#include "segmentmemory.h"
#include "segmentreception.h"

#include <QByteArray>

#include <array>

namespace CanOpen {

/*! The client's side of one SDO upload from one node (CiA 301): expedited, segmented and in blocks.
 *
 *  Knows no device, no event loop and no clock. Frames, the time and the end of a wait go in; what to send comes
 *  out as a Step. The same object serves one upload after the other and remembers what the server has sent.
 *
 *  An answer belongs to the upload by its multiplexer, whichever of the upload's requests it answers: the
 *  requests are all alike. So an expedited answer is taken as it comes, and costs two frames. On a line that
 *  brings frames late it may be as old as SegmentMemory::lifetime, but the device has sent it for that object.
 *
 *  Segments have no multiplexer. They are asked for only when SegmentMemory calls the line clear, and a value is
 *  delivered only when ReadingCheck believes it; until then the object is read again. A value that cannot be
 *  made sure of is an error with SdoOutcome::isMixedUp, never a guess.
 *
 *  When another client uses the same server meanwhile, a segmented transfer may have lost its server, and
 *  an abort may be the other's: the upload then waits for the end of the other transfer and starts anew.
 */
class SdoUpload
{
public:
    /*! Most bytes of a value of variable length. */
    static constexpr int maximumLength = 64 * 1024;
    /*! How often an upload starts anew because of other clients or answers out of order. */
    static constexpr int maximumRestarts = 10;
    /*! How often an upload waits until the line is clear. */
    static constexpr int maximumQuietWaits = 8;

    /*! What to do next. */
    struct Step
    {
        std::array<QByteArray, 2> frames; // payloads to send to the server, in this order
        int frameCount = 0;
        bool waitRestarts = false; // the wait for the next frame begins now
        qint64 wait = 0;           // how long it is, in ms; 0: as for an answer
        bool finished = false;     // outcome() is ready

        void send(QByteArray payload);
    };

    /*! The time of what happens next, in ms of any clock that never goes back. */
    void setTime(qint64 now) { m_memory.setTime(now); }

    /*! The longest time that the server has needed for an answer, in ms. */
    void setAnswerTime(qint64 time) { m_memory.setAnswerTime(time); }

    /*! Begins an upload; one that was under way is forgotten. \a repeats: how often all is asked again
     *  after a time-out. While another client has a transfer with the server the first request waits for
     *  the end of it.
     */
    Step start(ObjectKey key, DataType type, int repeats, SdoProtocol protocol = SdoProtocol::Plain);

    /*! Takes the payload of a frame on 580h + node ID, also while no upload is under way; eight bytes of
     *  any kind.
     */
    Step handleResponse(const QByteArray &payload);

    /*! Takes the payload of another client's frame on 600h + node ID, likewise. */
    Step handleForeignRequest(const QByteArray &payload);

    /*! The wait is over without the frame that was waited for. */
    Step timeOver();

    /*! The time of the whole upload is over: no further repeat. */
    Step giveUp();

    /*! Ends the upload as cancelled; the server's transfer is aborted if it may have one. */
    Step cancel();

    /*! Forgets the upload without a word to the server. */
    void forget();

    bool isActive() const { return m_state != State::Idle; }

    /*! Time-outs since the last answer that was complete. Each wait should be longer than those of the attempt
     *  before.
     */
    int attempt() const { return m_attempt; }

    /*! Whether the server has not sent anything for this upload yet. */
    bool isUnanswered() const { return !m_isAnswered; }

    /*! Everything but ticket and node of the upload that finished last. */
    const SdoOutcome &outcome() const { return m_outcome; }

private:
    enum class State {
        Idle,
        Initiating,      // the initiate response is waited for
        Segments,        // a segment is waited for
        InitiatingBlock, // the response of a block upload is waited for
        Block,           // segments of a block or its end are waited for
        Quiet,           // the line becomes clear, then the object is read again
        Listening,       // the value is ready unless something unknown comes
        AwaitingForeign, // the end of another client's transfer is waited for
    };

    // What another client's frames since the last initiate request may have done to the transfer.
    enum class Disturbance {
        None,
        TransferLost, // the server may serve the other client now: segments are not ours
        AbortUnclear, // the same, and an abort may have been the answer to the other client
    };

    Step initiate();
    Step restart();
    Step startAfresh();
    Step endInSilence();
    Step awaitClearLine();
    Step listen();
    Step handleInitiateResponse(const QByteArray &payload);
    Step beginSegments(const SdoInitiate &initiate);
    Step readInBlocksInstead();
    Step askSegment();
    bool mustWait() const;
    Step waitBeforeTransfer();
    Step handleSegment(const QByteArray &payload);
    Step handleWrongToggle(const QByteArray &payload);
    Step handleAbort(const QByteArray &payload);
    Step handleBlockInitiateResponse(const QByteArray &payload);
    Step handleBlockFrame(const QByteArray &payload);
    Step doNextOfBlock(BlockReception::Event event);
    Step readPlainInstead(quint32 code);
    Step handleForeignEnd();
    void noteStray(const QByteArray &payload);
    void leaveTransfer();
    void sendTimeOutAbort(Step *step);
    Step finishExpedited(const SdoInitiate &initiate);
    Step finishSegments();
    Step finishReading(std::optional<ReadingCheck::Verdict> verdict);
    Step finishValue(const QByteArray &bytes);
    Step finish(SdoOutcome::Kind kind, quint32 code);
    Step fail(SdoAbort code);
    Step failMixedUp();
    Step abortAndFail(SdoAbort code);
    Step rejectReading(SdoAbort code);

    bool isInTransfer() const;
    bool isDoubtful() const;
    int lengthLimit() const;

    State m_state = State::Idle;
    Disturbance m_disturbance = Disturbance::None;
    ForeignTransfer m_foreign;
    bool m_isForForeign = false;          // the response that is being taken
    bool m_isForeignSegmentAsked = false; // by the other client, and not seen yet
    bool m_isAnswerOwed = false;          // of a transfer that the other client has broken into
    SegmentMemory m_memory;
    SdoOutcome m_outcome; // also holds the key and the repeats while the upload is under way
    DataType m_type = DataType::Unsigned32;
    int m_typeSize = 0; // bytes; 0: variable
    int m_repeats = 0;  // allowed
    int m_attempt = 0;
    int m_restarts = 0;
    bool m_isAnswered = false;
    SdoProtocol m_protocol = SdoProtocol::Plain;
    bool m_knowsNoBlocks = false; // what the server has said

    ReadingRecord m_readings;
    int m_quietWaits = 0;
    SegmentReception m_segments;
    BlockReception m_block;
};

} // namespace CanOpen
