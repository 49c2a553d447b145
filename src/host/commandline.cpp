// SPDX-License-Identifier: MIT
#include "commandline.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

namespace {

struct DraxelHostTr
{
    Q_DECLARE_TR_FUNCTIONS(DraxelHost)
};

const char *const programName = "draxel";
const char *const helpOption = "help";
const char *const versionOption = "version";
const char *const busOption = "bus";
const char *const bitRateOption = "bitrate";
const char *const connectOption = "connect";
const char *const languageOption = "language";
const char *const pluginsOption = "plugins";
const char *const verboseOption = "verbose";

QString s(const char *name)
{
    return QLatin1String(name);
}

} // namespace

CommandLine::CommandLine()
{
    m_parser.setApplicationDescription(
        DraxelHostTr::tr("Looks into the CANopen bus of light electric vehicles."));
    m_parser.addOption({{QStringLiteral("h"), s(helpOption)}, DraxelHostTr::tr("Show this help.")});
    m_parser.addOption({{QStringLiteral("V"), QStringLiteral("v"), s(versionOption)},
                        DraxelHostTr::tr("Show the version.")});
    m_parser.addOption({s(busOption),
                        DraxelHostTr::tr("Choose this bus, for example socketcan:can0 or simulated:pedelec."),
                        QStringLiteral("PLUGIN:INTERFACE")});
    m_parser.addOption({s(bitRateOption), DraxelHostTr::tr("Set this bit rate (bit/s) when connecting."),
                        QStringLiteral("N")});
    m_parser.addOption({s(connectOption), DraxelHostTr::tr("Connect to the bus at once.")});
    m_parser.addOption(
        {s(languageOption), DraxelHostTr::tr("The language, for example de."), QStringLiteral("LANGUAGE")});
    m_parser.addOption(
        {s(pluginsOption), DraxelHostTr::tr("Load the plug-ins of this folder."), QStringLiteral("DIR")});
    m_parser.addOption(
        {s(verboseOption), DraxelHostTr::tr("Write the debug lines of plug-ins to the terminal.")});
    m_parser.addPositionalArgument(
        QStringLiteral("file"),
        DraxelHostTr::tr(
            "Show this file: a vehicle (.dxsnap, .dxxml), a support bundle (.zip) or a trace (.log, .asc, "
            ".trc, .pcap, .pcapng)."),
        QStringLiteral("[FILE]"));
}

bool CommandLine::asksForText(const QStringList &arguments)
{
    // By their whole names: an option of Qt's own may hold the same letters.
    constexpr const char *options[] = {"-h", "--help", "-V", "-v", "--version"};
    return std::any_of(std::begin(options), std::end(options),
                       [&arguments](const char *option) { return arguments.contains(s(option)); });
}

std::optional<HostOptions> CommandLine::parse(const QStringList &arguments, QString *error)
{
    m_program = arguments.value(0);
    if (!m_parser.parse(arguments)) {
        *error = m_parser.errorText();
        return std::nullopt;
    }
    HostOptions options;
    if (!parseBus(&options.bus, error))
        return std::nullopt;
    options.isConnecting = m_parser.isSet(s(connectOption));
    options.language = m_parser.value(s(languageOption));
    options.pluginFolder = m_parser.value(s(pluginsOption));
    options.isVerbose = m_parser.isSet(s(verboseOption));
    const QStringList files = m_parser.positionalArguments();
    if (files.size() > 1) {
        *error = DraxelHostTr::tr("What is \"%1\" for? One file can be shown.").arg(files.at(1));
        return std::nullopt;
    }
    if (!files.isEmpty())
        options.fileName = QFileInfo(files.first()).absoluteFilePath();
    return options;
}

bool CommandLine::asksForHelp() const
{
    return m_parser.isSet(s(helpOption));
}

bool CommandLine::asksForVersion() const
{
    return m_parser.isSet(s(versionOption));
}

QString CommandLine::help() const
{
    // The parser names the program as it was called, with its whole path.
    QString text = m_parser.helpText();
    const int position = m_program.isEmpty() ? -1 : text.indexOf(m_program);
    return position < 0 ? text : text.replace(position, m_program.size(), s(programName));
}

bool CommandLine::parseBus(BusSettings *bus, QString *error) const
{
    if (!m_parser.isSet(s(busOption))) {
        if (!m_parser.isSet(s(bitRateOption)))
            return true;
        *error = DraxelHostTr::tr("--bitrate needs --bus.");
        return false;
    }
    const std::optional<BusAddress> address = BusAddress::parse(m_parser.value(s(busOption)), error);
    if (!address)
        return false;
    bus->address = *address;
    if (m_parser.isSet(s(bitRateOption)))
        bus->bitRate = parseBitRate(m_parser.value(s(bitRateOption)), error);
    return bus->bitRate || !m_parser.isSet(s(bitRateOption));
}
