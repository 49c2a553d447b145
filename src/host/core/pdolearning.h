// SPDX-License-Identifier: MIT
#pragma once

#include "pacedquestions.h"
#include "pdoplan.h"

#include <live/values/pdosource.h>

#include <QObject>
#include <QVector>

#include <map>

/*! Asks nodes what their transmit PDOs carry, and for their heartbeat producer time: see PdoPlan. Uploads only, within a
 *  share of the bus; the nodes side by side.
 *
 *  A bus that is lost meanwhile is waited for; one that is closed ends it.
 */
class PdoLearning : public QObject
{
    Q_OBJECT

public:
    /*! \a bus must outlive it. */
    explicit PdoLearning(BusConnection *bus, QObject *parent = nullptr);

    /*! From 1 to 100 (no limit). */
    void setSharePercent(int percent) { m_questions.setSharePercent(percent); }

    /*! Begins, or adds nodes to those that are being asked. What is no node ID is passed over. */
    void start(const QVector<quint8> &nodeIds);
    /*! Ends at once, with finished(); nothing is told of the nodes that were not asked to the end. */
    void cancel();
    /*! While somebody else has the bus. */
    void setPaused(bool isPaused) { m_questions.setPaused(isPaused); }

    bool isRunning() const { return m_isRunning; }

signals:
    /*! \a source is valid during the signal. A node without PDOs has one without any. */
    void learned(quint8 nodeId, const PdoSource &source);
    /*! Nothing was learnt, or, behind learned(), not all: why, a sentence. */
    void notLearned(quint8 nodeId, const QString &reason);
    /*! From the event loop, but for cancel(). */
    void finished();

private:
    void handleAnswer(const CanOpen::SdoOutcome &outcome);
    void conclude(const PdoPlan &plan);
    void giveUp();
    void finishIfDone();

    PacedQuestions m_questions;
    std::map<quint8, PdoPlan> m_plans; // of the nodes that are being asked
    bool m_isRunning = false;
};
