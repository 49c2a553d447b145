// SPDX-License-Identifier: MIT
#include "findings.h"

#include <algorithm>

int CheckupResult::count(Severity severity) const
{
    const auto isSuch = [severity](const Finding &finding) { return finding.severity == severity; };
    auto count = std::count_if(vehicleFindings.begin(), vehicleFindings.end(), isSuch);
    for (const CheckedComponent &component : components)
        count += std::count_if(component.findings.begin(), component.findings.end(), isSuch);
    return static_cast<int>(count);
}

const CheckedComponent *CheckupResult::component(quint8 nodeId) const
{
    const auto found
        = std::find_if(components.begin(), components.end(),
                       [nodeId](const CheckedComponent &component) { return component.nodeId == nodeId; });
    return found != components.end() ? &*found : nullptr;
}

int CheckupResult::notCheckedCount() const
{
    return static_cast<int>(
        std::count_if(components.begin(), components.end(),
                      [](const CheckedComponent &component) { return !component.notChecked.isEmpty(); }));
}
