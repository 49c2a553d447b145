// SPDX-License-Identifier: MIT
#include "healthrules.h"

#include <cli/core/console.h>
#include <live/health/healthjudgement.h>

namespace {

struct HealthRulesTr
{
    Q_DECLARE_TR_FUNCTIONS(HealthRules)
};

} // namespace

RuleSet HealthRules::load()
{
    RuleSet rules = RuleSet::load(HealthJudgement::ruleFolders());
    for (const QString &problem : rules.problems())
        Console::printError(problem);
    if (rules.rules().isEmpty())
        Console::printError(HealthRulesTr::tr("There are no rules to judge by."));
    return rules;
}
