// SPDX-License-Identifier: MIT
#include <cli/bundle/bundlecommand.h>
#include <cli/commands/checkupcommand.h>
#include <cli/commands/archivecommand.h>
#include <cli/commands/checkupdatecommand.h>
#include <cli/commands/diffcommand.h>
#include <cli/commands/doctorcommand.h>
#include <cli/commands/eventscommand.h>
#include <cli/commands/getcommand.h>
#include <cli/commands/healthcommand.h>
#include <cli/commands/interfacescommand.h>
#include <cli/commands/monitorcommand.h>
#include <cli/commands/readcommand.h>
#include <cli/commands/reportcommand.h>
#include <cli/commands/scancommand.h>
#include <cli/commands/showcommand.h>
#include <cli/commands/simulatecommand.h>
#include <cli/commands/snapshotcommand.h>
#include <cli/commands/watchcommand.h>
#include <cli/core/command.h>
#include <cli/core/console.h>
#include <cli/core/exitstatus.h>
#include <cli/core/terminal.h>
#include <cli/core/timezone.h>
#include <cli/trace/tracecommand.h>

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QStringList>

#include <algorithm>
#include <iterator>
#include <memory>

namespace {

struct DraxelCtlTr
{
    Q_DECLARE_TR_FUNCTIONS(DraxelCtl)
};

constexpr Command commands[] = {
    {"read", runReadCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "read all devices of a bus and save what they said"), readNeedsFonts},
    {"snapshot", runSnapshotCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "read all that can be read of a vehicle, and keep it with its gaps")},
    {"checkup", runCheckupCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "judge a vehicle: what is wrong and what to do")},
    {"diff", runDiffCommand, QT_TRANSLATE_NOOP("DraxelCtl", "say what has changed between two snapshots")},
    {"get", runGetCommand, QT_TRANSLATE_NOOP("DraxelCtl", "read one object of a node")},
    {"show", runShowCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "print the components of a vehicle and their values in words")},
    {"report", runReportCommand, QT_TRANSLATE_NOOP("DraxelCtl", "write the report as PDF and HTML"),
     reportNeedsFonts},
    {"archive", runArchiveCommand, QT_TRANSLATE_NOOP("DraxelCtl", "keep what was read, and find it again")},
    {"check-update", runCheckUpdateCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "ask the update server about the firmware of a node")},
    {"scan", runScanCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "ask every node ID, also for nodes without a heartbeat")},
    {"health", runHealthCommand, QT_TRANSLATE_NOOP("DraxelCtl", "listen to a bus and say how well it is")},
    {"events", runEventsCommand, QT_TRANSLATE_NOOP("DraxelCtl", "listen to a bus and list what happens")},
    {"monitor", runMonitorCommand, QT_TRANSLATE_NOOP("DraxelCtl", "show how well a bus is, again and again")},
    {"watch", runWatchCommand, QT_TRANSLATE_NOOP("DraxelCtl", "show the values of objects as they come")},
    {"trace", runTraceCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "record the frames of a bus, and read what was recorded")},
    {"bundle", runBundleCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "put all that is known of a vehicle into one file, for support")},
    {"simulate", runSimulateCommand, QT_TRANSLATE_NOOP("DraxelCtl", "put a simulated vehicle on a bus")},
    {"doctor", runDoctorCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "look at this computer: what it lacks for CAN")},
    {"interfaces", runInterfacesCommand,
     QT_TRANSLATE_NOOP("DraxelCtl", "list the CAN interfaces of this machine")},
};

QString usage()
{
    QString text = DraxelCtlTr::tr("draxelctl looks into the CANopen bus of light electric vehicles.\n"
                                   "\n"
                                   "Usage: draxelctl COMMAND [OPTION]...\n"
                                   "\n"
                                   "Commands:\n");
    for (const Command &command : commands) {
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -12)
                    .arg(DraxelCtlTr::tr(command.description));
    }
    return text
           + DraxelCtlTr::tr("\n"
                             "\"draxelctl help COMMAND\" shows the options of a command.\n"
                             "\n"
                             "Examples:\n"
                             "  draxelctl read --bus simulated:pedelec --export vehicle.dxxml\n"
                             "  draxelctl show vehicle.dxxml");
}

const Command *findCommand(const QString &name)
{
    const auto *const command
        = std::find_if(std::begin(commands), std::end(commands),
                       [&name](const Command &known) { return name == QLatin1String(known.name); });
    return command != std::end(commands) ? command : nullptr;
}

ExitStatus runCommand(const QStringList &arguments)
{
    const QString name = arguments.value(1);
    if (const Command *command = findCommand(name))
        return command->run(arguments);
    Console::printError(DraxelCtlTr::tr("draxelctl: There is no command \"%1\".").arg(name));
    Console::printError(DraxelCtlTr::tr("\"draxelctl --help\" lists the commands."));
    return Exit::usage;
}

/*! "help" alone, "help COMMAND", or "help GROUP COMMAND". */
ExitStatus help(const QStringList &arguments)
{
    const QStringList command = arguments.mid(2);
    if (!command.isEmpty())
        return runCommand(QStringList(arguments.first()) + command + QStringList(QStringLiteral("--help")));
    Console::print(usage());
    return Exit::success;
}

ExitStatus dispatch(const QStringList &arguments)
{
    const QString name = arguments.value(1);
    if (name.isEmpty()) {
        Console::printError(usage());
        return Exit::usage;
    }
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help"))
        return help(arguments);
    if (name == QLatin1String("--version") || name == QLatin1String("-V")) {
        Console::print(QStringLiteral("draxelctl ") + QCoreApplication::applicationVersion());
        return Exit::success;
    }
    return runCommand(arguments);
}

bool needsFonts(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const Command *command = findCommand(arguments.value(1));
    return command != nullptr && command->needsFonts != nullptr && command->needsFonts(arguments);
}

/*! All commands but those with a report do without the start of the window system's parts. */
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char *argv[])
{
    if (!needsFonts(argc, argv))
        return std::make_unique<QCoreApplication>(argc, argv);
    // Fonts are there without a display, and a page looks the same whatever display there is.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

} // namespace

int main(int argc, char *argv[])
{
    // What a back end warns of, it also reports as its error; what Qt warns of is for developers.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\ndefault.warning=false\n"
                                                    "qt.canbus*.warning=false\nqt.canbus*.critical=false"));
    // Qt's own event loop takes a third less of system calls than GLib's, and nothing here needs GLib.
    qputenv("QT_NO_GLIB", "1");
    TimeZone::keep();
    // So that a bus is closed and a file finished when the reader of the output has gone.
    Terminal::surviveBrokenPipes();
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("draxelctl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(DRAXEL_VERSION));
    const ExitStatus status = dispatch(QCoreApplication::arguments());
    if (Console::isComplete())
        return status.number;
    if (!Terminal::hasReader(Terminal::Stream::Output)) // "draxelctl ... | head": they have what they wanted
        return Exit::noReader.number;
    Console::printError(DraxelCtlTr::tr("draxelctl: Not all of the output could be written."));
    // A status of the command's own would say that its result is all there.
    return status.number > Exit::signalled(0).number ? status.number : Exit::fileFailed.number;
}
