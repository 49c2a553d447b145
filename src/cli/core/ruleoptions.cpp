// SPDX-License-Identifier: MIT
#include "ruleoptions.h"

#include "commandarguments.h"
#include "console.h"
#include "optionnames.h"

#include <QDir>

namespace {

struct RuleOptionsTr
{
    Q_DECLARE_TR_FUNCTIONS(RuleOptions)
};

} // namespace

void RuleOptions::add(CommandArguments &options)
{
    options.addOption(
        {rulesOption,
         RuleOptionsTr::tr("Add the rules (*.json) in this folder to the shipped ones, in place of those in "
                           "%1.")
             .arg(QDir::toNativeSeparators(RuleSet::userFolder())),
         QStringLiteral("DIR")});
}

std::optional<ExitStatus> RuleOptions::load(const CommandArguments &options, RuleSet *rules)
{
    QStringList folders = RuleSet::standardFolders();
    if (options.isSet(rulesOption)) {
        const QString folder = options.value(rulesOption);
        if (!QDir(folder).exists())
            return options.complain(RuleOptionsTr::tr("There is no folder \"%1\".").arg(folder));
        folders = QStringList{RuleSet::shippedFolder(), folder};
    }
    *rules = RuleSet::load(folders);
    for (const QString &problem : rules->problems())
        Console::printError(problem);
    if (!rules->rules().isEmpty())
        return std::nullopt;
    Console::printError(RuleOptionsTr::tr("There are no rules to judge by."));
    return Exit::fileFailed;
}
