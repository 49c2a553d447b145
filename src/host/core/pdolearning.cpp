// SPDX-License-Identifier: MIT
#include "pdolearning.h"

#include <canopen/cobid.h>
#include <snapshot/objecttypes.h>
#include <snapshot/snapshotwords.h>

#include <QPointer>

#include <utility>

PdoLearning::PdoLearning(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_questions(bus)
{
    connect(&m_questions, &PacedQuestions::answered, this, &PdoLearning::handleAnswer);
    connect(bus, &BusConnection::stateChanged, this, [this](BusConnection::State state) {
        if (state == BusConnection::State::Disconnected)
            giveUp();
    });
}

void PdoLearning::start(const QVector<quint8> &nodeIds)
{
    m_isRunning = true;
    for (const quint8 nodeId : nodeIds) {
        if (!CanOpen::isNodeId(nodeId))
            continue;
        const auto [plan, isNew] = m_plans.emplace(nodeId, PdoPlan(nodeId));
        if (isNew)
            m_questions.ask(nodeId, *plan->second.question());
    }
    QTimer::singleShot(0, this, &PdoLearning::finishIfDone); // when there is nobody to be asked
}

void PdoLearning::cancel()
{
    m_questions.cancel();
    m_plans.clear();
    finishIfDone();
}

void PdoLearning::handleAnswer(const CanOpen::SdoOutcome &outcome)
{
    const auto found = m_plans.find(outcome.nodeId);
    if (found == m_plans.end())
        return;
    PdoPlan &plan = found->second;
    plan.take(m_questions.entryOf(outcome, ObjectTypes::known(outcome.key)));
    if (plan.question()) {
        m_questions.ask(outcome.nodeId, *plan.question());
        return;
    }
    const PdoPlan done = std::move(plan);
    m_plans.erase(found);
    const QPointer<PdoLearning> self(this);
    conclude(done);
    if (self)
        finishIfDone();
}

void PdoLearning::conclude(const PdoPlan &plan)
{
    const quint8 nodeId = plan.node().id;
    const QPointer<PdoLearning> self(this);
    if (!plan.end())
        emit learned(nodeId, PdoSource::of(plan.node()));
    const std::optional<SnapshotEntry> &trouble = plan.end() ? plan.end() : plan.refusal();
    if (self && trouble)
        emit notLearned(nodeId, SnapshotWords::reason(*trouble));
}

/*! The bus was closed. */
void PdoLearning::giveUp()
{
    m_questions.cancel();
    const std::map<quint8, PdoPlan> plans = std::exchange(m_plans, {});
    const QPointer<PdoLearning> self(this);
    for (const auto &[nodeId, plan] : plans) {
        emit notLearned(nodeId, SnapshotWords::ending(SnapshotEnd::Cancelled));
        if (!self)
            return;
    }
    finishIfDone();
}

void PdoLearning::finishIfDone()
{
    if (m_isRunning && m_plans.empty()) {
        m_isRunning = false;
        emit finished();
    }
}
