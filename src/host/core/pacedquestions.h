// SPDX-License-Identifier: MIT
#pragma once

#include <bus/busconnection.h>
#include <snapshot/busshare.h>
#include <snapshot/snapshot.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <deque>
#include <map>

/*! Asks nodes for objects by SDO uploads: one at a time for each node, the nodes side by side, all within a share of the
 *  bus.
 *
 *  While the bus is away, or somebody else needs it (setPaused()), nothing is asked; a question that was under way is asked
 *  again afterwards. Each question has one answered(), from the event loop.
 */
class PacedQuestions : public QObject
{
    Q_OBJECT

public:
    /*! \a bus must outlive it. */
    explicit PacedQuestions(BusConnection *bus, QObject *parent = nullptr);
    ~PacedQuestions() override;

    /*! From 1 to 100 (no limit). */
    void setSharePercent(int percent) { m_share.setPercent(percent); }

    /*! Nothing of ours is under way from here on until it goes on. */
    void setPaused(bool isPaused);

    /*! Puts a question in line. */
    void ask(quint8 nodeId, CanOpen::ObjectKey key);
    /*! Whether the question is in line or under way. */
    bool isAsked(quint8 nodeId, CanOpen::ObjectKey key) const;

    /*! Forgets all questions; nothing is told of them. */
    void cancel();

    /*! What an outcome says of an object with these types, see SnapshotAnswer; a node that is Stopped does not keep silent
     *  for another reason.
     */
    SnapshotEntry entryOf(const CanOpen::SdoOutcome &outcome, const QVector<CanOpen::DataType> &types) const;

signals:
    /*! Never of Kind::Cancelled. */
    void answered(const CanOpen::SdoOutcome &outcome);

private:
    struct Question
    {
        quint8 nodeId = 0;
        CanOpen::ObjectKey key;
    };
    struct Open
    {
        CanOpen::ObjectKey key;
        CanOpen::SdoTicket ticket = 0;
    };

    void look();
    std::deque<Question>::iterator nextQuestion();
    void put(const Question &question);
    void takeBackOpen();
    void handleOutcome(const CanOpen::SdoOutcome &outcome);
    void handleState(BusConnection::State state);
    std::chrono::milliseconds now() const { return std::chrono::milliseconds(m_clock.elapsed()); }

    BusConnection *m_bus;
    BusShare m_share;
    QElapsedTimer m_clock;
    QTimer m_timer; // until the share allows the next question, or looks from the event loop
    std::deque<Question> m_waiting;
    std::map<quint8, Open> m_open; // by node
    bool m_isPaused = false;
};
