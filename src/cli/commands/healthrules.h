// SPDX-License-Identifier: MIT
#pragma once

#include <checkup/ruleset.h>

/*! The rules for the health of a bus; complains of those that cannot be read, and when there are none. */
namespace HealthRules {

RuleSet load();

} // namespace HealthRules
