// SPDX-License-Identifier: MIT
#include "valueasking.h"

#include <canopen/cobid.h>
#include <live/values/pdosource.h>
#include <snapshot/snapshotwords.h>

#include <algorithm>
#include <cmath>

namespace {

/*! Of texts and bytes there is none, nor of what is not finite. */
std::optional<double> numberOf(const SnapshotEntry &entry)
{
    bool isNumber = false;
    const bool isText = entry.value.type() == QVariant::String || entry.value.type() == QVariant::ByteArray;
    const double number = isText ? 0 : entry.value.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

} // namespace

ValueAsking::ValueAsking(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_questions(bus)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ValueAsking::look);
    connect(&m_questions, &PacedQuestions::answered, this, &ValueAsking::handleAnswer);
}

void ValueAsking::setObjects(const QVector<AskedObject> &objects)
{
    const std::vector<Task> former = takeTasks();
    for (AskedObject object : objects) {
        object.period = std::max(object.period, shortestPeriod);
        if (!CanOpen::isNodeId(object.nodeId))
            continue;
        if (Task *known = find(object.nodeId, object.object))
            known->asked.period = std::min(known->asked.period, object.period);
        else
            m_tasks.push_back({object, dueOf(object, former).value_or(m_clock.elapsed())});
    }
    arm();
}

/*! Ends them. What was under way has no answer any more, and is due at once. */
std::vector<ValueAsking::Task> ValueAsking::takeTasks()
{
    std::vector<Task> tasks;
    tasks.swap(m_tasks);
    for (Task &task : tasks) {
        if (m_questions.isAsked(task.asked.nodeId, task.asked.object))
            task.due = m_clock.elapsed();
    }
    m_questions.cancel();
    return tasks;
}

/*! When it is its turn, if it was asked for in the same period before. */
std::optional<qint64> ValueAsking::dueOf(const AskedObject &object, const std::vector<Task> &former)
{
    for (const Task &task : former) {
        const bool isSame = task.asked.nodeId == object.nodeId && task.asked.object == object.object;
        if (isSame && task.asked.period == object.period)
            return task.due;
    }
    return std::nullopt;
}

/*! Asks for what is due. */
void ValueAsking::look()
{
    const qint64 now = m_clock.elapsed();
    for (Task &task : m_tasks) {
        if (task.due > now)
            continue;
        task.due += task.asked.period;
        if (task.due <= now) // time has gone by unused; it is not caught up
            task.due = now + task.asked.period;
        if (!m_questions.isAsked(task.asked.nodeId, task.asked.object))
            m_questions.ask(task.asked.nodeId, task.asked.object);
    }
    arm();
}

void ValueAsking::arm()
{
    if (m_tasks.empty()) {
        m_timer.stop();
        return;
    }
    const auto next = std::min_element(m_tasks.begin(), m_tasks.end(),
                                       [](const Task &a, const Task &b) { return a.due < b.due; });
    m_timer.start(static_cast<int>(std::max<qint64>(0, next->due - m_clock.elapsed())));
}

void ValueAsking::handleAnswer(const CanOpen::SdoOutcome &outcome)
{
    Task *task = find(outcome.nodeId, outcome.key);
    if (task == nullptr)
        return;
    const SnapshotEntry entry
        = m_questions.entryOf(outcome, PdoSource::typesOf(outcome.key, task->asked.type));
    if (outcome.kind == CanOpen::SdoOutcome::Kind::Timeout)
        task->due = std::max(task->due, m_clock.elapsed() + silencePause);
    if (const std::optional<double> number = numberOf(entry))
        emit answered(outcome.nodeId, outcome.key, *number);
    else if (entry.hasValue())
        emit notAnswered(outcome.nodeId, outcome.key, tr("Its value is no number."));
    else
        emit notAnswered(outcome.nodeId, outcome.key, SnapshotWords::reason(entry));
}

ValueAsking::Task *ValueAsking::find(quint8 nodeId, CanOpen::ObjectKey object)
{
    const auto task = std::find_if(m_tasks.begin(), m_tasks.end(), [nodeId, object](const Task &known) {
        return known.asked.nodeId == nodeId && known.asked.object == object;
    });
    return task != m_tasks.end() ? &*task : nullptr;
}
