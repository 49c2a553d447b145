// SPDX-License-Identifier: MIT
#include "reportcommand.h"

#include "servicereportrun.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>
#include <cli/core/language.h>
#include <cli/core/openedbundle.h>
#include <cli/core/optionnames.h>
#include <cli/core/reportfiles.h>

#include <store/nodestore.h>

namespace {

struct ReportCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(ReportCommand)
};

ExitStatus report(const QString &fileName, const QString &folder)
{
    NodeStore store;
    QString error;
    if (!OpenedBundle::loadStore(fileName, store, &error) || !prepareReportFolder(folder, &error)) {
        Console::printError(error);
        return Exit::fileFailed;
    }
    return writeReport(store, folder);
}

} // namespace

ExitStatus runReportCommand(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("report"),
        ReportCommandTr::tr("Writes the report on what a saved vehicle holds: dx_report.pdf and "
                            "dx_report.html; or its service report."));
    options.addPositional(
        QStringLiteral("FILE"),
        ReportCommandTr::tr("A snapshot (.dxsnap), an exchange file (.dxxml) or a support bundle (.zip)."));
    options.addOption({outputOption,
                       ReportCommandTr::tr("The folder for the two files; it is made when it is not there."),
                       QStringLiteral("DIR")});
    ServiceReportRun::addOptions(options);
    Language::addOption(options);
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    if (options.value(outputOption).isEmpty())
        return options.complain(ReportCommandTr::tr("--output is missing: which folder is meant?"));
    if (const std::optional<ExitStatus> status = Language::load(options))
        return *status;
    if (ServiceReportRun::isWanted(options))
        return ServiceReportRun::run(options, options.positional(), options.value(outputOption));
    const QString stray = ServiceReportRun::strayOption(options);
    if (!stray.isEmpty())
        return options.complain(
            ReportCommandTr::tr("--%1 is for a service report; --service is missing.").arg(stray));
    return report(options.positional(), options.value(outputOption));
}

bool reportNeedsFonts(const QStringList &)
{
    return true;
}
