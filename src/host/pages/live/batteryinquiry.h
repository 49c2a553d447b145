// SPDX-License-Identifier: MIT
#pragma once

#include <host/core/pacedquestions.h>

#include <QObject>
#include <QVector>

#include <optional>

/*! What a battery tells of that can be asked of it. */
struct BatteryAnswer
{
    quint8 nodeId = 0;
    QVector<CanOpen::ObjectKey> cells; //!< by pack and number
    int told = 0; //!< cells that it tells of; more than there are in cells when these are too many
    QVector<CanOpen::ObjectKey> others; //!< of BatteryObjects::others, those that it has
    /*! The first thing that it has, or may have, and did not tell. */
    std::optional<SnapshotEntry> trouble;
};

/*! Asks a node once how many cells each of its packs has (sub-index 0 of 6165h to 6174h), and which other values of a
 *  battery it has. Uploads only, within a share of the bus. A node that does not answer is not asked any further.
 */
class BatteryInquiry : public QObject
{
    Q_OBJECT

public:
    static constexpr int mostCells = 256;

    /*! \a bus must outlive it. */
    explicit BatteryInquiry(BusConnection *bus, QObject *parent = nullptr);

    /*! From 1 to 100 (no limit). */
    void setSharePercent(int percent) { m_questions.setSharePercent(percent); }
    /*! While somebody else has the bus. */
    void setPaused(bool isPaused) { m_questions.setPaused(isPaused); }

    /*! In place of one that is under way. */
    void start(quint8 nodeId);
    /*! Nothing is told of it. */
    void cancel();
    bool isRunning() const { return m_open > 0; }
    /*! Of the last one. */
    quint8 nodeId() const { return m_answer.nodeId; }

signals:
    void finished(const BatteryAnswer &answer);

private:
    void handleAnswer(const CanOpen::SdoOutcome &outcome);
    void takeCount(const SnapshotEntry &entry);
    void takeOther(const SnapshotEntry &entry);
    void noteTrouble(const SnapshotEntry &entry);
    void ask(CanOpen::ObjectKey key);

    PacedQuestions m_questions;
    BatteryAnswer m_answer;
    int m_open = 0; // questions without an answer
};
