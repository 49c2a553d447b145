// SPDX-License-Identifier: MIT
#include "visit.h"

#include <algorithm>

namespace {

int countOf(const QVector<Finding> &findings, Severity severity)
{
    return static_cast<int>(
        std::count_if(findings.begin(), findings.end(),
                      [severity](const Finding &finding) { return finding.severity == severity; }));
}

} // namespace

VisitVerdict VisitVerdict::of(const CheckupResult &result)
{
    VisitVerdict summary;
    summary.verdict = result.verdict;
    const auto add = [&summary](const QVector<Finding> &findings) {
        summary.faults += countOf(findings, Severity::Fault);
        summary.warnings += countOf(findings, Severity::Warning);
        summary.notes += countOf(findings, Severity::Note);
    };
    add(result.vehicleFindings);
    for (const CheckedComponent &component : result.components) {
        add(component.findings);
        summary.notChecked += component.notChecked.isEmpty() ? 0 : 1;
    }
    return summary;
}
