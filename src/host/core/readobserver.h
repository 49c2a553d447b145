// SPDX-License-Identifier: MIT
#pragma once

#include "hostsdoclient.h"
#include "readrecord.h"

#include <canopen/objectkey.h>

#include <QMetaType>
#include <QObject>
#include <QPair>
#include <QTimer>
#include <QVector>

#include <chrono>
#include <functional>
#include <optional>

/*! How a plug-in's read went. */
struct ReadSummary
{
    enum class End {
        Complete,
        NothingAsked, //!< nodes were looked for, and then nothing was read: node 1 was not heard
        NoAnswer,     //!< of the node at the object below
        NotSent,      //!< the request for that object could not be put on the bus
        Refused,      //!< nothing was asked: the host used the bus for itself
        BusGone,      //!< reason says why; without a node while nodes were looked for
        Disconnected, //!< by the user; without a node as above
        Cancelled     //!< by the user
    };

    End end = End::Complete;
    quint8 nodeId = 0; //!< asked last; 0: none was
    CanOpen::ObjectKey key;
    QString reason; //!< why the bus was gone, a sentence
    ReadRecord record;

    /*! What failed, but for the object at which the read stopped. */
    QVector<FailedObject> failuresBeside() const;
};
Q_DECLARE_METATYPE(ReadSummary)

/*! Knows from outside when a plug-in reads: plug-ins say nothing about it themselves.
 *
 *  | sign                                                | phase              |
 *  |-----------------------------------------------------|--------------------|
 *  | asks for heartbeat receivers                        | Detecting, 2000 ms |
 *  | asks for an object                                  | Reading            |
 *  | is told FFFFFFFFh, which ends its run               | Stopping           |
 *  | asks for nothing any more, for the quiet time       | Idle               |
 *
 *  One more request follows the FFFFFFFFh; it belongs to Stopping, and is left over when the next detection has
 *  begun before it. An object that is asked for without a detection is a read as well. Nodes outside 1 to 127,
 *  which an imported list may hold, are no devices and not recorded.
 *
 *  Its owner reports what happens. Has a timer of its own; a test calls check() after it has moved its clock.
 */
class ReadObserver : public QObject
{
    Q_OBJECT

public:
    using Clock = std::function<std::chrono::milliseconds()>;

    enum class Phase { Idle, Detecting, Reading, Stopping };
    Q_ENUM(Phase)

    /*! After this time without a request a read is over; the next one comes a turn of the event loop after
     *  the answer to the one before.
     */
    static constexpr std::chrono::milliseconds quietTime{300};

    /*! And not before the event loop has turned once more after it, with this time for what was waiting. */
    static constexpr std::chrono::milliseconds graceTime{20};

    static std::chrono::milliseconds steadyClock();

    explicit ReadObserver(const Clock &clock = steadyClock, QObject *parent = nullptr);

    Phase phase() const { return m_phase; }
    /*! Whether a read is under way, as the user sees it. */
    bool isReading() const { return m_phase == Phase::Detecting || m_phase == Phase::Reading; }
    bool isCancelled() const { return m_isCancelled; }
    /*! The read under way, or the last one. */
    const ReadSummary &summary() const { return m_summary; }

    void receiverAsked();
    void uploadStarted(quint8 nodeId, CanOpen::ObjectKey key);
    /*! \a code as in HostSdoClient::uploadEnded(). \a lossReason is why the bus was lost, for Ending::NoBus;
     *  empty when it was the user who disconnected.
     */
    void uploadEnded(quint8 nodeId, CanOpen::ObjectKey key, HostSdoClient::Ending ending, quint32 code,
                     const QString &lossReason = QString());

    /*! The bus went away; \a lossReason as above. Ends nothing by itself: the outcomes tell. */
    void busLeft(const QString &lossReason);

    /*! Whether the one more request of a run that was stopped has still to come. */
    bool isLeftOverDue() const { return m_isLeftOverDue; }

    /*! The user ended the read: the next outcome without an answer is the user's doing. */
    void cancel();

    /*! Looks whether the read is over. */
    void check();

signals:
    /*! isReading() has changed, or the phase within a read. */
    void phaseChanged(ReadObserver::Phase phase);
    /*! A read began with the search for nodes. */
    void detectionStarted();
    void readEnded(const ReadSummary &summary);
    /*! Nothing of the run is left; no request of it follows any more. */
    void settled();

private:
    using Upload = QPair<quint8, CanOpen::ObjectKey>;

    bool isLeftOver() const;
    void handleTimer();
    void begin(Phase phase);
    void setPhase(Phase phase);
    void stopRead(quint8 nodeId, CanOpen::ObjectKey key, ReadSummary::End end);
    void endDetection();
    void endRead(ReadSummary::End end);
    void settle();
    void noteActivity();
    std::optional<std::chrono::milliseconds> timeToWait() const;

    Clock m_clock;
    QTimer m_timer;
    Phase m_phase = Phase::Idle;
    bool m_isCancelled = false;
    bool m_isLeftOverDue = false;
    bool m_isGraceGiven = false; // once after the last activity
    ReadSummary::End m_vainEnd
        = ReadSummary::End::NothingAsked; // of a detection after which nothing is asked
    int m_uploads = 0;                    // that have not ended
    QVector<Upload> m_ownUploads;         // of these: of the read under way
    std::chrono::milliseconds m_begun{0};
    std::chrono::milliseconds m_lastActivity{0};
    ReadSummary m_summary;
};
