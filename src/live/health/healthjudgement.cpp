// SPDX-License-Identifier: MIT
#include "healthjudgement.h"

#include "healthfacts.h"

#include <checkup/componentgaps.h>
#include <checkup/objectwords.h>
#include <checkup/rulerunner.h>

#include <QDir>

#include <algorithm>

namespace {

using Subject = HealthLight::Subject;

constexpr int lightCount = 3;

struct SubjectName
{
    Subject subject;
    const char *prefix; // of rules
    const char *word;
};

// The last one takes every rule
constexpr SubjectName subjectNames[] = {
    {Subject::Load, "load-", "load"},
    {Subject::Errors, "errors-", "errors"},
    {Subject::Nodes, "", "nodes"},
};

Subject subjectOf(const Rule &rule)
{
    for (const SubjectName &name : subjectNames) {
        if (rule.id.startsWith(QLatin1String(name.prefix)))
            return name.subject;
    }
    return Subject::Nodes;
}

int inPercent(double fraction)
{
    return static_cast<int>(fraction * 100 + 0.5);
}

/*! Whether nothing was missing for it. */
bool apply(const Rule &rule, RuleRunner *runner, int nodeCount, QVector<Finding> *findings)
{
    ComponentGaps gaps;
    if (rule.scope == Rule::Scope::Vehicle) {
        runner->apply(rule, -1, findings, &gaps);
        return gaps.isEmpty();
    }
    for (int position = 0; position < nodeCount; ++position)
        runner->apply(rule, position, findings, &gaps);
    return gaps.isEmpty();
}

} // namespace

QStringList HealthJudgement::ruleFolders()
{
    QStringList folders;
    for (const QString &folder : RuleSet::standardFolders()) {
        const QString own = folder + QStringLiteral("/health");
        if (QDir(own).exists())
            folders.append(own);
    }
    return folders;
}

QString HealthJudgement::word(Subject subject)
{
    for (const SubjectName &name : subjectNames) {
        if (name.subject == subject)
            return QLatin1String(name.word);
    }
    return QString();
}

QVector<HealthLight> HealthJudgement::judge(const HealthNumbers &numbers, const RuleSet &rules,
                                            const QString &language)
{
    const ObjectWords::LanguageNumbers style(language);
    const HealthFacts facts(numbers);
    RuleRunner runner(facts, rules.words(), language);
    QVector<HealthLight> lights(lightCount);
    std::array<bool, lightCount> isKnown{};
    isKnown.fill(!rules.rules().isEmpty());
    for (int i = 0; i < lightCount; ++i)
        lights[i].subject = static_cast<Subject>(i);
    for (const Rule &rule : rules.rules()) {
        const auto place = static_cast<int>(subjectOf(rule));
        if (!apply(rule, &runner, numbers.nodes.size(), &lights[place].findings))
            isKnown[static_cast<std::size_t>(place)] = false;
    }
    for (HealthLight &light : lights) {
        std::stable_sort(light.findings.begin(), light.findings.end(),
                         [](const Finding &a, const Finding &b) { return a.severity > b.severity; });
        light.state
            = stateOf(light, isKnown[static_cast<std::size_t>(light.subject)] && !runner.isExhausted());
        light.text = sentence(light, numbers);
    }
    return lights;
}

ComponentState HealthJudgement::stateOf(const HealthLight &light, bool isAllKnown)
{
    const Severity worst = light.findings.isEmpty() ? Severity::Note : light.findings.first().severity;
    if (worst == Severity::Fault)
        return ComponentState::Fault;
    if (worst == Severity::Warning)
        return ComponentState::Warning;
    if (!isAllKnown)
        return ComponentState::NotChecked;
    return light.findings.isEmpty() ? ComponentState::Good : ComponentState::Note;
}

ComponentState HealthJudgement::worst(const QVector<HealthLight> &lights)
{
    ComponentState worst = ComponentState::Good;
    for (const HealthLight &light : lights)
        worst = std::max(worst, light.state);
    return worst;
}

QString HealthJudgement::sentence(const HealthLight &light, const HealthNumbers &numbers)
{
    if (light.state == ComponentState::NotChecked)
        return unknownSentence(light.subject, numbers);
    if (light.findings.isEmpty())
        return goodSentence(light.subject, numbers);
    const Finding &worst = light.findings.first();
    const QString text
        = worst.nodeId != 0 ? tr("Node %1: %2").arg(QString::number(worst.nodeId), worst.text) : worst.text;
    const int more = light.findings.size() - 1;
    return more > 0 ? tr("%1 And %2 more.").arg(text, QString::number(more)) : text;
}

QString HealthJudgement::goodSentence(Subject subject, const HealthNumbers &numbers)
{
    switch (subject) {
    case Subject::Load:
        return tr("The bus is used to %1 %, at most to %2 %.")
            .arg(inPercent(numbers.meanLoad.value_or(0)))
            .arg(inPercent(numbers.peakLoad.value_or(0)));
    case Subject::Nodes:
        return tr("%n devices are heard, and nothing is wrong with them.", nullptr, numbers.heardNodes());
    case Subject::Errors:
        break;
    }
    return tr("There are no errors on the bus.");
}

QString HealthJudgement::unknownSentence(Subject subject, const HealthNumbers &numbers)
{
    if (subject == Subject::Load)
        return tr("How much the bus is used is not known, because its bit rate is not.");
    if (subject == Subject::Errors && !numbers.areErrorsKnown())
        return tr("Nobody here can tell of errors.");
    return tr("Not everything could be judged.");
}
