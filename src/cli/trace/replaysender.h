// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/canport.h>
#include <trace/core/traceframe.h>
#include <trace/playback/traceplayer.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

/*! Sends the frames of a trace to a bus, at their times or faster.
 *
 *  It has a way of its own to the bus, with no gate: what goes through a BusConnection stays what a client that only looks
 *  may send. Frames that the bus has no room for hold up those behind them; they are not lost.
 */
class ReplaySender : public QObject
{
    Q_OBJECT

public:
    /*! \a frames hold no error frames, and must outlive the sender; \a port is not open yet. */
    ReplaySender(std::unique_ptr<CanOpen::CanPort> port, const std::vector<TraceFrame> *frames,
                 QObject *parent = nullptr);
    ~ReplaySender() override;

    /*! As TracePlayer says. */
    void setSpeed(double speed) { m_player.setSpeed(speed); }
    void setPace(TracePlayer::Pace pace) { m_player.setPace(pace); }

    /*! Opens the bus and begins. False with a reason when it cannot be opened. */
    bool start(QString *errorMessage);
    /*! Ends before the end. */
    void stop();

    /*! Frames that have left for the bus, and those that it did not take in all the time that they had. */
    quint64 sent() const { return m_sent; }
    quint64 dropped() const { return m_dropped; }

    /*! Why the bus was lost, a sentence; else empty. */
    QString lossReason() const { return m_lossReason; }

signals:
    /*! The last frame is through, or the bus is lost. */
    void finished();

private:
    void sendDue();
    void handleLoss(const QString &reason);
    void settle(quint64 *count);
    qint64 now() const;

    std::unique_ptr<CanOpen::CanPort> m_port;
    TracePlayer m_player;
    QTimer m_timer;
    QTimer m_lingering; // from the last frame to the end
    QElapsedTimer m_clock;
    int m_waiting = 0; // frames that the port has and the bus has not
    quint64 m_sent = 0;
    quint64 m_dropped = 0;
    QString m_lossReason;
    bool m_isRunning = false;
};
