// SPDX-License-Identifier: MIT
#include "diffcommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/comparisonlisting.h>
#include <cli/core/console.h>
#include <cli/core/language.h>
#include <cli/core/optionnames.h>
#include <cli/core/ruleoptions.h>
#include <cli/core/snapshotsource.h>

#include <checkup/checkup.h>
#include <checkup/snapshotcomparison.h>

namespace {

struct DiffCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(DiffCommand)
};

class DiffCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    std::optional<ExitStatus> parse(const QStringList &arguments);
    Comparison compare() const;

    CommandArguments m_options{
        QStringLiteral("diff"),
        DiffCommandTr::tr("Says what has changed from one snapshot of a vehicle to a later one, or to "
                          "what it is now.")};
    Snapshot m_before;
    SnapshotSource m_after;
    RuleSet m_rules;
};

ExitStatus DiffCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = loadSnapshot(m_options.positional(), &m_before))
        return *status;
    if (const std::optional<ExitStatus> status = m_after.load())
        return *status;
    const Comparison comparison = compare();
    if (m_options.isSet(jsonOption))
        Console::printJson(ComparisonListing::toJson(comparison));
    else
        Console::print(ComparisonListing::toText(comparison));
    const ExitStatus read = m_after.finish();
    const bool wasInterrupted = read != Exit::success && read != Exit::stoppedEarly;
    return wasInterrupted || comparison.isSame() ? read : Exit::different;
}

std::optional<ExitStatus> DiffCommand::parse(const QStringList &arguments)
{
    m_options.addPositional(QStringLiteral("FILE"),
                            DiffCommandTr::tr("The earlier snapshot (.dxsnap) or exchange file (.dxxml)."));
    m_options.addPositional(QStringLiteral("FILE2"),
                            DiffCommandTr::tr("The later one. Without it --bus is read."),
                            CommandArguments::Presence::Optional);
    SnapshotSource::addOptions(m_options);
    RuleOptions::add(m_options);
    m_options.addOption({jsonOption, DiffCommandTr::tr("Print JSON, for programs.")});
    Language::addOption(m_options);
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = m_after.parse(m_options, m_options.positional(1)))
        return status;
    if (const std::optional<ExitStatus> status = Language::loadWithHost(m_options))
        return status;
    return RuleOptions::load(m_options, &m_rules);
}

Comparison DiffCommand::compare() const
{
    const QString language = Language::name(m_options);
    const Snapshot &after = m_after.snapshot();
    const CheckupResult wasFound = Checkup::judge(m_before, m_rules, language);
    const CheckupResult isFound = Checkup::judge(after, m_rules, language, &m_before);
    return SnapshotComparison::compare({&m_before, &wasFound}, {&after, &isFound}, m_rules.kinds());
}

} // namespace

ExitStatus runDiffCommand(const QStringList &arguments)
{
    DiffCommand command;
    return command.run(arguments);
}
