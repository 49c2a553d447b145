// SPDX-License-Identifier: MIT
#pragma once

#include "datatype.h"
#include "foreigntransfer.h"
#include "objectkey.h"
#include "sdoabort.h"
#include "sdoframe.h"
#include "sdooutcome.h"

#include <QByteArray>

#include <array>

namespace CanOpen {

/*! The client's side of one SDO upload from one node (CiA 301): expedited and segmented.
 *
 *  Knows no device, no event loop and no clock. Frames and the end of a wait go in; what to send comes out
 *  as a Step. The same object serves one upload after the other, as its memory of a transfer ends with the
 *  next start().
 *
 *  An answer belongs to the upload by its multiplexer, whichever of the upload's requests it answers: the
 *  requests are all alike. Segments have no multiplexer. A server answers in the order of the requests, so
 *  a segment of an attempt that was given up comes before the initiate response of the next one, and is
 *  dropped. When it is still owed as an initiate response comes, that one may be old as well: the upload
 *  then waits whether the segment follows.
 *
 *  When another client uses the same server meanwhile, a segmented transfer may have lost its server, and
 *  an abort may be the other's: the upload then waits for the end of the other transfer and starts anew.
 */
class SdoUpload
{
public:
    /*! Most bytes of a value of variable length. */
    static constexpr int maximumLength = 64 * 1024;
    /*! Most segments without data in a row; a server that sends more would never end. */
    static constexpr int maximumEmptySegments = 16;
    /*! How often an upload starts anew because of other clients or answers out of order. */
    static constexpr int maximumRestarts = 10;

    /*! What to do next. */
    struct Step
    {
        std::array<QByteArray, 2> frames; // payloads to send to the server, in this order
        int frameCount = 0;
        bool waitRestarts = false; // the wait for the next frame begins now
        bool finished = false;     // outcome() is ready

        void send(QByteArray payload);
    };

    /*! Begins an upload; one that was under way is forgotten. \a repeats: how often all is asked again
     *  after a time-out. While another client has a transfer with the server the first request waits for
     *  the end of it.
     */
    Step start(ObjectKey key, DataType type, int repeats);

    /*! Takes the payload of a frame on 580h + node ID, also while no upload is under way; eight bytes of
     *  any kind.
     */
    Step takeResponse(const QByteArray &payload);

    /*! Takes the payload of another client's frame on 600h + node ID, likewise. */
    Step takeForeignRequest(const QByteArray &payload);

    /*! The wait is over without the frame that was waited for. */
    Step timeOver();

    /*! The time of the whole upload is over: no further repeat. */
    Step giveUp();

    /*! Forgets the upload without a word to the server. */
    void forget();

    bool isActive() const { return m_state != State::Idle; }

    /*! Time-outs so far. Each wait should be longer than those of the attempt before. */
    int attempt() const { return m_outcome.repeats; }

    /*! Whether the server has not sent anything for this upload yet. */
    bool isUnanswered() const { return !m_answered; }

    /*! Key, kind, value, code and repeats of the upload that finished last. */
    const SdoOutcome &outcome() const { return m_outcome; }

private:
    enum class State {
        Idle,
        Initiating,      // the initiate response is waited for
        Settling,        // it has come, but may be old: a segment of an earlier attempt is still owed
        Segments,        // a segment is waited for
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
    Step takeInitiateResponse(const QByteArray &payload);
    Step settle(const SdoInitiate &initiate);
    Step beginSegments(const SdoInitiate &initiate);
    Step takeSegment(const QByteArray &payload);
    Step takeWrongToggle(const QByteArray &payload);
    Step takeAbort(const QByteArray &payload);
    Step takeForeignEnd();
    void noteOwedSegment();
    void sendTimeOutAbort(Step *step);
    Step finishExpedited(const SdoInitiate &initiate);
    Step finishSegments();
    Step finishValue(const char *data, int size);
    Step finish(SdoOutcome::Kind kind, quint32 code);
    Step fail(SdoAbort code);
    Step abortAndFail(SdoAbort code);

    int lengthLimit() const;

    State m_state = State::Idle;
    Disturbance m_disturbance = Disturbance::None;
    ForeignTransfer m_foreign;
    SdoOutcome m_outcome; // also holds the key and the repeats while the upload is under way
    DataType m_type = DataType::Unsigned32;
    int m_typeSize = 0; // bytes; 0: variable
    int m_repeats = 0;  // allowed
    int m_restarts = 0;
    bool m_answered = false;

    // Of attempts that were given up, maybe by the upload before
    bool m_segmentOwed = false;        // a segment request has no answer yet
    bool m_needsSecondReading = false; // State::Settling has ended in doubt
    SdoInitiate m_settling;            // the initiate response that State::Settling is about

    // Of the segmented phase
    QByteArray m_data;
    QByteArray m_lastSegment; // payload
    bool m_sizeAnnounced = false;
    int m_announcedSize = 0; // at most lengthLimit()
    int m_emptySegments = 0; // in a row
    bool m_toggle = false;   // of the segment that is waited for
    bool m_segmentRepeated = false;
};

} // namespace CanOpen
