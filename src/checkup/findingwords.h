// SPDX-License-Identifier: MIT
#pragma once

#include "findings.h"

#include <QString>

/*! What programs read for severities, states and verdicts; never translated. */
namespace FindingWords {

/*! "note", "warning", "fault" */
QString of(Severity severity);
/*! "good", "note", "notChecked", "warning", "fault" */
QString of(ComponentState state);
/*! "ok", "note", "incomplete", "warning", "fault" */
QString of(Verdict verdict);

} // namespace FindingWords
