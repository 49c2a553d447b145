// SPDX-License-Identifier: MIT
#include "doctorcommand.h"

#include <cli/core/commandarguments.h>
#include <cli/core/console.h>
#include <cli/core/optionnames.h>
#include <cli/core/signs.h>
#include <cli/core/terminal.h>
#include <doctor/diagnosiswriting.h>

#include <QJsonDocument>

namespace {

struct DoctorCommandTr
{
    Q_DECLARE_TR_FUNCTIONS(DoctorCommand)
};

void print(const QVector<Diagnosed> &all)
{
    const Signs signs(Signs::detectStyle());
    for (const Diagnosed &one : all) {
        Console::printPlain(signs.of(one.state) + Terminal::visible(one.text));
        for (const QString &command : one.commands)
            Console::printPlain(QStringLiteral("      ") + Terminal::visible(command));
    }
}

} // namespace

ExitStatus runDoctorCommand(const QStringList &arguments)
{
    CommandArguments options(
        QStringLiteral("doctor"),
        DoctorCommandTr::tr(
            "Looks at this computer: says what it lacks for CAN, and the command that mends it. "
            "Changes nothing."));
    options.addOption({jsonOption, DoctorCommandTr::tr("Print JSON, for programs.")});
    if (const std::optional<ExitStatus> status = options.parse(arguments))
        return *status;
    const QVector<Diagnosed> all = Diagnosis::of(Computer::look());
    if (options.isSet(jsonOption))
        Console::printJson(QJsonDocument(DiagnosisWriting::toJson(all)).toJson());
    else
        print(all);
    return Diagnosis::worst(all) >= ComponentState::Warning ? Exit::findings : Exit::success;
}
