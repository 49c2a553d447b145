// SPDX-License-Identifier: MIT
#include "rulerunner.h"

#include "componentgaps.h"
#include "evaluation.h"
#include "factsource.h"

#include <QStringList>

RuleRunner::RuleRunner(const FactSource &vehicle, const WordTables &words, const QString &language)
    : m_vehicle(vehicle)
    , m_words(words)
    , m_language(language)
{
}

void RuleRunner::apply(const Rule &rule, int position, QVector<Finding> *findings, ComponentGaps *gaps)
{
    m_position = position;
    m_findings = findings;
    m_gaps = gaps;
    Evaluation evaluation(m_vehicle, position);
    for (const Expression &need : rule.needs) {
        const Operand operand = need.evaluate(evaluation);
        if (operand.isUnknown())
            gaps->add(evaluation, rule.id);
        if (!operand.isNumber())
            return;
        evaluation.clearNotes();
    }
    runLoop(rule, 0, evaluation);
    m_steps += evaluation.steps();
}

void RuleRunner::runLoop(const Rule &rule, int loop, Evaluation &evaluation)
{
    if (loop == rule.loops.size()) {
        runInstance(rule, evaluation);
        return;
    }
    const RuleLoop &numbers = rule.loops.at(loop);
    const int first = numbers.kind == RuleLoop::Kind::SubIndices ? 1 : numbers.first;
    const int last = lastOf(rule, numbers, evaluation);
    for (int i = first; i <= last && m_steps + evaluation.steps() <= mostSteps && !isFull(); ++i) {
        if (numbers.kind == RuleLoop::Kind::Objects)
            evaluation.setLoop(loop, i - first + 1, static_cast<quint16>(i));
        else
            evaluation.setLoop(loop, i);
        runLoop(rule, loop + 1, evaluation);
    }
}

/*! The last number of a loop. That of sub-indices is the object's count, which is a byte. */
int RuleRunner::lastOf(const Rule &rule, const RuleLoop &loop, Evaluation &evaluation)
{
    if (loop.kind != RuleLoop::Kind::SubIndices)
        return loop.last;
    evaluation.clearNotes();
    CanOpen::ObjectKey key = evaluation.keyOf(loop.object);
    key.subIndex = 0;
    const Operand count = evaluation.object(key);
    if (count.isUnknown())
        m_gaps->add(evaluation, rule.id);
    constexpr double most = 255;
    return count.isNumber() ? static_cast<int>(qBound(0.0, count.number, most)) : 0;
}

void RuleRunner::runInstance(const Rule &rule, Evaluation &evaluation)
{
    evaluation.clearNotes();
    if (!isMet(rule, rule.when, evaluation))
        return;
    for (int i = 0; i < rule.cases.size(); ++i) {
        if (!isMet(rule, rule.cases.at(i).when, evaluation) || !rule.cases.at(i).severity)
            continue;
        find(rule, i, evaluation);
        if (rule.take == Rule::Take::First)
            return;
    }
}

/*! Whether a condition of the rule holds; what is missing to know it is noted. */
bool RuleRunner::isMet(const Rule &rule, const Expression &condition, Evaluation &evaluation)
{
    if (condition.isEmpty())
        return true;
    const Operand result = condition.evaluate(evaluation);
    if (result.isUnknown())
        m_gaps->add(evaluation, rule.id);
    return result.isTrue();
}

/*! \a position of the case that was found. */
void RuleRunner::find(const Rule &rule, int position, Evaluation &evaluation)
{
    const RuleCase &ruleCase = rule.cases.at(position);
    Finding finding;
    finding.rule = rule.id;
    finding.severity = *ruleCase.severity;
    finding.nodeId = m_vehicle.nodeId(m_position);
    finding.objects = evaluation.askedFor();
    finding.instance = instanceOf(rule, position, evaluation);
    finding.text = ruleCase.text.in(m_language).fill(evaluation, m_words, m_language);
    finding.advice = ruleCase.advice.in(m_language).fill(evaluation, m_words, m_language);
    m_findings->append(finding);
}

/*! The numbers of the loops, and that of the case where several of them can be found beside each other. */
QString RuleRunner::instanceOf(const Rule &rule, int position, const Evaluation &evaluation)
{
    QStringList numbers;
    for (int loop = 0; loop < rule.loops.size(); ++loop)
        numbers.append(QString::number(evaluation.loopNumber(loop)));
    if (rule.take == Rule::Take::All && rule.cases.size() > 1)
        numbers.append(QString::number(position + 1));
    return numbers.join(QLatin1Char(' '));
}

bool RuleRunner::isFull() const
{
    return m_findings->size() >= mostFindings;
}
