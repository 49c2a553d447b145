// SPDX-License-Identifier: MIT
#include "checkupcommand.h"

#include <cli/core/checkuplisting.h>
#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/language.h>
#include <cli/core/optionnames.h>
#include <cli/core/ruleoptions.h>
#include <cli/core/snapshotsource.h>

#include <checkup/checkup.h>
#include <checkup/checkupwriting.h>

namespace {

struct CheckupCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(CheckupCommand)
};

class CheckupCommand
{
public:
    ExitStatus run(const QStringList &arguments);

private:
    std::optional<ExitStatus> parse(const QStringList &arguments);
    void addOptions();
    std::optional<ExitStatus> loadEarlier();
    void print(const CheckupResult &result) const;
    static ExitStatus statusOf(Verdict verdict);

    CommandArguments m_options{
        QStringLiteral("checkup"),
        CheckupCommandTr::tr("Judges a vehicle: what is wrong, what to do, what could not be checked.")};
    SnapshotSource m_source;
    std::optional<Snapshot> m_earlier;
    RuleSet m_rules;
};

ExitStatus CheckupCommand::run(const QStringList &arguments)
{
    if (const std::optional<ExitStatus> status = parse(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = m_source.load())
        return *status;
    const CheckupResult result = Checkup::judge(m_source.snapshot(), m_rules, Language::name(m_options),
                                                m_earlier ? &*m_earlier : nullptr);
    print(result);
    const ExitStatus read = m_source.finish();
    const ExitStatus judged = statusOf(result.verdict);
    const bool wasInterrupted = read != Exit::success && read != Exit::stoppedEarly;
    return wasInterrupted || judged == Exit::success ? read : judged;
}

void CheckupCommand::addOptions()
{
    m_options.addPositional(
        QStringLiteral("FILE"),
        CheckupCommandTr::tr("A snapshot (.dxsnap), an exchange file (.dxxml) or a support bundle (.zip). "
                             "Without it --bus is read."),
        CommandArguments::Presence::Optional);
    SnapshotSource::addOptions(m_options);
    m_options.addOption(
        {againstOption,
         CheckupCommandTr::tr("A device that does not say who it is has the name that it has in this earlier "
                              "file (.dxsnap or .dxxml). What has changed since is for \"draxelctl diff\"."),
         QStringLiteral("OLDER")});
    RuleOptions::add(m_options);
    m_options.addOption({jsonOption, CheckupCommandTr::tr("Print JSON, for programs.")});
    Language::addOption(m_options);
}

std::optional<ExitStatus> CheckupCommand::parse(const QStringList &arguments)
{
    addOptions();
    if (const std::optional<ExitStatus> status = m_options.parse(arguments))
        return status;
    if (const std::optional<ExitStatus> status = m_source.parse(m_options, m_options.positional()))
        return status;
    if (const std::optional<ExitStatus> status = Language::loadWithHost(m_options))
        return status;
    if (const std::optional<ExitStatus> status = loadEarlier())
        return status;
    return RuleOptions::load(m_options, &m_rules);
}

std::optional<ExitStatus> CheckupCommand::loadEarlier()
{
    if (!m_options.isSet(againstOption))
        return std::nullopt;
    m_earlier.emplace();
    return loadSnapshot(m_options.value(againstOption), &*m_earlier);
}

void CheckupCommand::print(const CheckupResult &result) const
{
    if (m_options.isSet(jsonOption))
        Console::printJson(CheckupWriting::toJson(result));
    else
        Console::printPlain(CheckupListing::toText(result, Signs::detectStyle()));
}

ExitStatus CheckupCommand::statusOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Fault:
    case Verdict::Warning:
        return Exit::findings;
    case Verdict::Incomplete:
        return Exit::stoppedEarly;
    case Verdict::Note:
    case Verdict::Ok:
        break;
    }
    return Exit::success;
}

} // namespace

ExitStatus runCheckupCommand(const QStringList &arguments)
{
    CheckupCommand command;
    return command.run(arguments);
}
