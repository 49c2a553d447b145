// SPDX-License-Identifier: MIT
#pragma once

#include "pacedquestions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QVector>

#include <optional>
#include <vector>

/*! An object that somebody wants to watch. */
struct AskedObject
{
    quint8 nodeId = 0;
    CanOpen::ObjectKey object;
    int period = 1000; //!< ms, at least ValueAsking::shortestPeriod
    /*! As a data sheet says; empty: what is usual for the object. */
    std::optional<CanOpen::DataType> type;
};

/*! Asks for chosen objects again and again, each at its period, within a share of the bus. Uploads only.
 *
 *  An object is asked for once at a time: where answers take longer than the period, or the share does not suffice, they
 *  come less often. One that was not answered has at least silencePause.
 */
class ValueAsking : public QObject
{
    Q_OBJECT

public:
    static constexpr int shortestPeriod = 100; // ms
    static constexpr int silencePause = 2000;  // ms

    /*! \a bus must outlive it. */
    explicit ValueAsking(BusConnection *bus, QObject *parent = nullptr);

    /*! From 1 to 100 (no limit). */
    void setSharePercent(int percent) { m_questions.setSharePercent(percent); }

    /*! In place of those that were asked for. Those that go on keep their turn, so that their pace stays; all
     *  others are asked for at once. One that is there twice has the shorter period. */
    void setObjects(const QVector<AskedObject> &objects);

    /*! While a plug-in's read or a check-up has the bus. */
    void setPaused(bool isPaused) { m_questions.setPaused(isPaused); }

signals:
    /*! \a number in the object's raw unit. */
    void answered(quint8 nodeId, CanOpen::ObjectKey object, double number);
    /*! Why there is no number this time, a sentence. */
    void notAnswered(quint8 nodeId, CanOpen::ObjectKey object, const QString &reason);

private:
    struct Task
    {
        AskedObject asked;
        qint64 due = 0; // ms of the clock
    };

    std::vector<Task> takeTasks();
    static std::optional<qint64> dueOf(const AskedObject &object, const std::vector<Task> &former);
    void look();
    void arm();
    void handleAnswer(const CanOpen::SdoOutcome &outcome);
    Task *find(quint8 nodeId, CanOpen::ObjectKey object);

    PacedQuestions m_questions;
    std::vector<Task> m_tasks;
    QElapsedTimer m_clock;
    QTimer m_timer; // until the next one is due
};
