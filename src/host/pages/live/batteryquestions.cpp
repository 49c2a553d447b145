// SPDX-License-Identifier: MIT
#include "batteryquestions.h"

#include <snapshot/snapshotwords.h>

#include <algorithm>

BatteryQuestions::BatteryQuestions(BusConnection *bus, QObject *parent)
    : QObject(parent)
    , m_inquiry(bus)
{
    connect(&m_inquiry, &BatteryInquiry::finished, this, &BatteryQuestions::handleAnswer);
}

void BatteryQuestions::ask(quint8 nodeId)
{
    if (!isAsking())
        m_inquiry.start(nodeId);
}

void BatteryQuestions::forget()
{
    cancel();
    m_answers.clear();
}

BatteryQuestions::State BatteryQuestions::state(quint8 nodeId) const
{
    if (isAsking() && m_inquiry.nodeId() == nodeId)
        return State::BeingAsked;
    const auto answer = m_answers.constFind(nodeId);
    if (answer == m_answers.cend())
        return State::Unasked;
    return answer->cells.isEmpty() ? State::WithoutCells : State::Known;
}

QVector<quint8> BatteryQuestions::nodes() const
{
    QVector<quint8> nodes;
    for (const BatteryAnswer &answer : m_answers) {
        if (!answer.cells.isEmpty())
            nodes.append(answer.nodeId);
    }
    if (isAsking() && !nodes.contains(m_inquiry.nodeId()))
        nodes.append(m_inquiry.nodeId());
    return nodes;
}

int BatteryQuestions::cellCount(quint8 nodeId, quint16 object) const
{
    const QVector<CanOpen::ObjectKey> cells = m_answers.value(nodeId).cells;
    return static_cast<int>(std::count_if(
        cells.cbegin(), cells.cend(), [object](CanOpen::ObjectKey cell) { return cell.index == object; }));
}

QVector<AskedObject> BatteryQuestions::objects() const
{
    QVector<AskedObject> objects;
    for (const BatteryAnswer &answer : m_answers) {
        const QVector<CanOpen::ObjectKey> all = answer.cells + answer.others;
        for (const CanOpen::ObjectKey object : all)
            objects.append({answer.nodeId, object, period, std::nullopt});
    }
    return objects;
}

void BatteryQuestions::handleAnswer(const BatteryAnswer &answer)
{
    constexpr int milliseconds = 1000; // of a second
    const QString node = QString::number(answer.nodeId);
    const bool isUnknown = answer.cells.isEmpty() && answer.trouble;
    if (!isUnknown)
        m_answers.insert(answer.nodeId, answer);
    emit finished(answer.nodeId);
    if (isUnknown)
        emit told(tr("It is not known whether node %1 has cells.").arg(node), problemsOf(answer));
    else if (answer.cells.isEmpty())
        emit told(tr("Node %1 tells of no cells.").arg(node), {});
    else
        emit told(
            tr("Battery of node %1: %2 cells are asked for, every %3 s.")
                .arg(node, QString::number(answer.cells.size()), QString::number(period / milliseconds)),
            problemsOf(answer));
}

QStringList BatteryQuestions::problemsOf(const BatteryAnswer &answer)
{
    QStringList problems;
    const QString node = QString::number(answer.nodeId);
    if (answer.trouble) {
        problems.append(
            tr("Node %1, object %2: %3")
                .arg(node, answer.trouble->key.toShortString(), SnapshotWords::reason(*answer.trouble)));
    }
    if (answer.told > answer.cells.size()) {
        problems.append(tr("Node %1 tells of %2 cells. Only the first %3 are asked for.")
                            .arg(node, QString::number(answer.told), QString::number(answer.cells.size())));
    }
    return problems;
}
