// SPDX-License-Identifier: MIT
#include "healthcommand.h"

#include "healthlisting.h"
#include "healthrules.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/language.h>
#include <cli/core/listening.h>
#include <cli/core/optionnames.h>
#include <live/health/healthjson.h>

#include <QJsonDocument>

namespace {

struct HealthCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(HealthCommand)
};

constexpr QLatin1String allOption("all");
constexpr std::chrono::seconds usualTime{10};

void print(const CommandArguments &options, const HealthNumbers &numbers, const QVector<HealthLight> &lights)
{
    if (options.isSet(jsonOption)) {
        Console::printJson(QJsonDocument(HealthJson::of(numbers, lights)).toJson());
        return;
    }
    Console::printPlain(HealthListing::lights(lights, Signs::detectStyle()));
    if (options.isSet(allOption))
        Console::print(QLatin1Char('\n') + HealthListing::numbers(numbers));
}

ExitStatus listenForHealth(const CommandArguments &options, Listening *listening)
{
    const RuleSet rules = HealthRules::load();
    if (const std::optional<ExitStatus> status = listening->begin())
        return *status;
    const ExitStatus waited = listening->wait();
    const HealthNumbers numbers = listening->live().healthNumbers();
    const QVector<HealthLight> lights = HealthJudgement::judge(numbers, rules, Language::name(options));
    print(options, numbers, lights);
    if (waited != Exit::success)
        return waited;
    return HealthJudgement::worst(lights) >= ComponentState::Warning ? Exit::findings : Exit::success;
}

} // namespace

ExitStatus runHealthCommand(const QStringList &arguments)
{
    CommandArguments options(QStringLiteral("health"),
                             HealthCommandTr::tr("Listens to a bus and says how well it is. Sends nothing."));
    Listening listening(usualTime);
    listening.addOptions(options);
    options.addOption({allOption, HealthCommandTr::tr("Print all numbers as well.")});
    options.addOption({jsonOption, HealthCommandTr::tr("Print JSON, for programs.")});
    Language::addOption(options);
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    if (const std::optional<ExitStatus> status = listening.parse(options))
        return *status;
    if (const std::optional<ExitStatus> status = Language::loadWithHost(options))
        return *status;
    return listenForHealth(options, &listening);
}
