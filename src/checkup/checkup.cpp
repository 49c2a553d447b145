// SPDX-License-Identifier: MIT
#include "checkup.h"

#include "componentgaps.h"
#include "objectwords.h"
#include "rulerunner.h"
#include "ruleset.h"
#include "vehiclefacts.h"

#include <algorithm>

namespace {

bool isFor(const Rule &rule, const DeviceIdentity &identity)
{
    return rule.classes.isEmpty()
           || std::any_of(rule.classes.begin(), rule.classes.end(),
                          [&identity](quint8 code) { return identity.classes.contains(code); });
}

bool isSwitchedOff(const Rule &rule)
{
    return std::all_of(rule.cases.begin(), rule.cases.end(),
                       [](const RuleCase &ruleCase) { return !ruleCase.severity; });
}

void sortWorstFirst(QVector<Finding> *findings)
{
    std::stable_sort(findings->begin(), findings->end(),
                     [](const Finding &a, const Finding &b) { return a.severity > b.severity; });
}

ComponentState stateOf(const CheckedComponent &component)
{
    const Severity worst
        = component.findings.isEmpty() ? Severity::Note : component.findings.first().severity;
    if (worst == Severity::Fault)
        return ComponentState::Fault;
    if (worst == Severity::Warning)
        return ComponentState::Warning;
    if (!component.notChecked.isEmpty())
        return ComponentState::NotChecked;
    return component.findings.isEmpty() ? ComponentState::Good : ComponentState::Note;
}

/*! A vehicle without a node has nothing that could be good. */
Verdict verdictOf(const CheckupResult &result)
{
    if (result.count(Severity::Fault) > 0)
        return Verdict::Fault;
    if (result.count(Severity::Warning) > 0)
        return Verdict::Warning;
    if (result.notCheckedCount() > 0 || result.components.isEmpty())
        return Verdict::Incomplete;
    return result.count(Severity::Note) > 0 ? Verdict::Note : Verdict::Ok;
}

/*! The way through all rules and nodes. */
class Judgement
{
    Q_DECLARE_TR_FUNCTIONS(Checkup)

public:
    Judgement(const Snapshot &snapshot, const RuleSet &rules, const QString &language,
              const Snapshot *earlier)
        : m_rules(rules)
        , m_vehicle(snapshot, earlier)
        , m_runner(m_vehicle, rules.words(), language)
        , m_gaps(snapshot.nodes.size())
    {
    }

    CheckupResult judge();

private:
    CheckedComponent judgeNode(int position);
    void applyToVehicle(const Rule &rule);

    const RuleSet &m_rules;
    VehicleFacts m_vehicle;
    RuleRunner m_runner;
    QVector<ComponentGaps> m_gaps; // of each node
    QVector<Finding> m_vehicleFindings;
    QStringList m_unjudgedRules; // of the vehicle
};

CheckupResult Judgement::judge()
{
    CheckupResult result;
    for (const Rule &rule : m_rules.rules()) {
        if (rule.scope == Rule::Scope::Vehicle && !isSwitchedOff(rule))
            applyToVehicle(rule);
    }
    for (int i = 0; i < m_vehicle.nodeCount(); ++i)
        result.components.append(judgeNode(i));
    std::stable_sort(result.components.begin(), result.components.end(),
                     [](const CheckedComponent &a, const CheckedComponent &b) { return a.state > b.state; });
    sortWorstFirst(&m_vehicleFindings);
    result.vehicleFindings = m_vehicleFindings;
    result.unjudgedRules = m_unjudgedRules;
    result.verdict = verdictOf(result);
    return result;
}

/*! What a rule of the vehicle needs, it needs of every node. That it cannot be judged is said of every node as well. */
void Judgement::applyToVehicle(const Rule &rule)
{
    Rule needs;
    needs.id = rule.id;
    needs.needs = rule.needs;
    needs.cases.append(RuleCase()); // without a severity: finds nothing
    QVector<Finding> none;
    ComponentGaps ofRule;
    for (int i = 0; i < m_vehicle.nodeCount(); ++i) {
        ComponentGaps ofNode;
        m_runner.apply(needs, i, &none, &ofNode);
        m_gaps[i].add(ofNode);
        ofRule.add(ofNode);
    }
    Rule condition = rule;
    condition.needs.clear();
    ComponentGaps ofNobody;
    m_runner.apply(condition, -1, &m_vehicleFindings, &ofNobody);
    for (ComponentGaps &gaps : m_gaps)
        gaps.addSentencesOf(ofNobody);
    ofRule.add(ofNobody);
    if (!ofRule.isEmpty())
        m_unjudgedRules.append(rule.id);
}

CheckedComponent Judgement::judgeNode(int position)
{
    const SnapshotNode &node = *m_vehicle.node(position);
    ComponentGaps &gaps = m_gaps[position];
    CheckedComponent component;
    component.nodeId = node.id;
    component.name = m_vehicle.name(position).text;
    component.isNameEarlier = m_vehicle.name(position).isEarlier;
    for (const Rule &rule : m_rules.rules()) {
        if (rule.scope != Rule::Scope::Node || isSwitchedOff(rule))
            continue;
        if (isFor(rule, m_vehicle.identity(position))) {
            m_runner.apply(rule, position, &component.findings, &gaps);
        } else {
            for (const CanOpen::ObjectKey key : m_vehicle.missingClasses(position))
                gaps.add(key);
        }
    }
    if (m_rules.rules().isEmpty())
        gaps.addSentence(tr("There are no rules."));
    if (m_runner.isExhausted())
        gaps.addSentence(tr("The rules take too long; not all of them were applied."));
    if (component.findings.size() >= RuleRunner::mostFindings)
        gaps.addSentence(tr("There are more findings than are kept."));
    sortWorstFirst(&component.findings);
    component.notChecked = gaps.sentences(node, m_vehicle.snapshot().scope);
    component.state = stateOf(component);
    return component;
}

} // namespace

CheckupResult Checkup::judge(const Snapshot &snapshot, const RuleSet &rules, const QString &language,
                             const Snapshot *earlier)
{
    const ObjectWords::LanguageNumbers numbers(language);
    CheckupResult result = Judgement(snapshot, rules, language, earlier).judge();
    result.language = language;
    return result;
}
