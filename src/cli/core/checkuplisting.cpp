// SPDX-License-Identifier: MIT
#include "checkuplisting.h"

#include "terminal.h"

#include <algorithm>

namespace {

constexpr QLatin1String indent("    ");
constexpr QLatin1String adviceIndent("  ");

} // namespace

QString CheckupListing::toText(const CheckupResult &result, Signs::Style style)
{
    const Signs signs(style);
    QStringList lines;
    lines += linesOf(result.vehicleFindings, signs, QString());
    for (const CheckedComponent &component : result.components) {
        if (component.state != ComponentState::Good)
            lines += linesOf(component, signs);
    }
    const QString good = goodLine(result, signs);
    if (!good.isEmpty())
        lines.append(good);
    lines.append(QString());
    lines.append(lastLine(result));
    return lines.join(QLatin1Char('\n'));
}

QStringList CheckupListing::linesOf(const CheckedComponent &component, const Signs &signs)
{
    const QString name = signs.of(component.state)
                         + tr("%1 (node %2)").arg(Terminal::visible(component.name)).arg(component.nodeId);
    if (component.findings.isEmpty() && component.notChecked.size() == 1)
        return {tr("%1: %2").arg(name, Terminal::visible(component.notChecked.first()))};
    QStringList lines{name};
    lines += linesOf(component.findings, signs, indent);
    for (const QString &reason : component.notChecked)
        lines.append(indent + signs.of(ComponentState::NotChecked) + Terminal::visible(reason));
    return lines;
}

/*! The same advice for findings that follow each other stands behind the last of them. */
QStringList CheckupListing::linesOf(const QVector<Finding> &findings, const Signs &signs,
                                    const QString &margin)
{
    QStringList lines;
    for (int i = 0; i < findings.size(); ++i) {
        const Finding &finding = findings.at(i);
        lines.append(margin + signs.of(finding.severity) + Terminal::visible(finding.text));
        const bool isRepeated = i + 1 < findings.size() && findings.at(i + 1).advice == finding.advice;
        if (!finding.advice.isEmpty() && !isRepeated)
            lines.append(margin + adviceIndent + Terminal::visible(finding.advice));
    }
    return lines;
}

QString CheckupListing::goodLine(const CheckupResult &result, const Signs &signs)
{
    QVector<CheckedComponent> good;
    std::copy_if(result.components.begin(), result.components.end(), std::back_inserter(good),
                 [](const CheckedComponent &component) { return component.state == ComponentState::Good; });
    QStringList names;
    for (const CheckedComponent &component : qAsConst(good))
        names.append(tr("%1 (node %2)").arg(Terminal::visible(component.name)).arg(component.nodeId));
    return names.isEmpty() ? QString() : signs.of(ComponentState::Good) + names.join(QStringLiteral(", "));
}

QString CheckupListing::lastLine(const CheckupResult &result)
{
    return tr("Components: %1. Faults: %2, warnings: %3, notes: %4. Components with something not checked: "
              "%5.")
        .arg(result.components.size())
        .arg(result.count(Severity::Fault))
        .arg(result.count(Severity::Warning))
        .arg(result.count(Severity::Note))
        .arg(result.notCheckedCount());
}
