// SPDX-License-Identifier: MIT
#include "console.h"
#include "exitstatus.h"
#include "interfacescommand.h"
#include "readcommand.h"
#include "scancommand.h"
#include "simulatecommand.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(DraxelCtl)
};

struct Command
{
    const char *name;
    int (*run)(const QStringList &arguments);
    const char *description;
};

constexpr Command commands[] = {
    {"read", runReadCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "read all devices of a bus and save what they said")},
    {"scan", runScanCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "ask every node ID, also for nodes without a heartbeat")},
    {"simulate", runSimulateCommand, QT_TRANSLATE_NOOP("DraxelCtl", "put a simulated vehicle on a bus")},
    {"interfaces", runInterfacesCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "list the CAN interfaces of this machine")},
};

QString usage()
{
    QString text = Tr::tr("draxelctl looks into the CANopen bus of light electric vehicles.\n"
                          "\n"
                          "Usage: draxelctl COMMAND [OPTION]...\n"
                          "\n"
                          "Commands:\n");
    for (const Command &command : commands) {
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -12)
                    .arg(Tr::tr(command.description));
    }
    return text
           + Tr::tr("\n"
                    "\"draxelctl COMMAND --help\" shows the options of a command.\n"
                    "\n"
                    "Example: draxelctl read --bus simulated:pedelec --export vehicle.dxxml");
}

int dispatch(const QStringList &arguments)
{
    const QString name = arguments.value(1);
    if (name.isEmpty()) {
        Console::printError(usage());
        return ExitStatus::usage;
    }
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help")) {
        Console::print(usage());
        return ExitStatus::success;
    }
    if (name == QLatin1String("--version")) {
        Console::print(QStringLiteral("draxelctl ") + QCoreApplication::applicationVersion());
        return ExitStatus::success;
    }
    const auto *const command
        = std::find_if(std::begin(commands), std::end(commands),
                       [&name](const Command &known) { return name == QLatin1String(known.name); });
    if (command != std::end(commands))
        return command->run(arguments);

    Console::printError(Tr::tr("draxelctl: There is no command \"%1\".").arg(name));
    Console::printError(Tr::tr("\"draxelctl --help\" lists the commands."));
    return ExitStatus::usage;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("draxelctl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(DRAXEL_VERSION));
    // What a back end warns of, it also reports as its error.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\nqt.canbus*.warning=false"));
    return dispatch(QCoreApplication::arguments());
}
