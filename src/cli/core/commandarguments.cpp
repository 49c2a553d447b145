// SPDX-License-Identifier: MIT
#include "commandarguments.h"

#include "console.h"
#include "exitstatus.h"
#include "optionnames.h"

namespace {

constexpr QLatin1String helpOption("help");
constexpr QLatin1String busOption("bus");

QString withoutLineEnd(QString text)
{
    while (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text;
}

} // namespace

CommandArguments::CommandArguments(const QString &name, const QString &description)
    : m_name(name)
{
    m_parser.setApplicationDescription(description);
    m_parser.addOption({{QStringLiteral("h"), helpOption}, tr("Show this help.")});
}

void CommandArguments::addBusOptions(Presence presence)
{
    m_busPresence = presence;
    m_parser.addOption({busOption,
                        tr("The bus, for example socketcan:can0 or simulated:pedelec. "
                           "\"draxelctl interfaces\" lists what there is."),
                        QStringLiteral("PLUGIN:INTERFACE")});
    m_parser.addOption(
        {bitRateOption,
         tr("Set this bit rate (bit/s) first. Without it the interface stays as it is configured."),
         QStringLiteral("N")});
}

void CommandArguments::addPositional(const QString &syntax, const QString &description, Presence presence)
{
    m_positionals.append({syntax, presence});
    m_parser.addPositionalArgument(syntax, description);
}

QString CommandArguments::helpText() const
{
    QString usage = tr("Usage: draxelctl %1 [OPTION]...").arg(m_name);
    for (const Positional &positional : m_positionals) {
        const bool isOptional = positional.presence == Presence::Optional;
        usage += (isOptional ? QStringLiteral(" [%1]") : QStringLiteral(" %1")).arg(positional.syntax);
        if (positional.presence == Presence::Repeated)
            usage += QStringLiteral("...");
    }
    // The parser knows no commands, so its own first line is left out.
    const QString text = withoutLineEnd(m_parser.helpText());
    return usage + text.mid(text.indexOf(QLatin1Char('\n')));
}

std::optional<ExitStatus> CommandArguments::parse(const QStringList &arguments)
{
    QStringList ownArguments = arguments;
    if (ownArguments.size() > 1)
        ownArguments.removeAt(1); // the command
    const bool isParsed = m_parser.parse(ownArguments);
    if (isParsed && m_parser.isSet(helpOption)) {
        Console::print(helpText());
        return Exit::success;
    }
    if (!isParsed)
        return complain(m_parser.errorText());

    if (const std::optional<ExitStatus> status = checkPositionals())
        return status;
    return hasBus() || m_busPresence == Presence::Required ? parseBus() : std::nullopt;
}

std::optional<ExitStatus> CommandArguments::checkPositionals() const
{
    const QStringList given = m_parser.positionalArguments();
    const bool takesMore = !m_positionals.isEmpty() && m_positionals.last().presence == Presence::Repeated;
    if (given.size() > m_positionals.size() && !takesMore)
        return complain(tr("What is \"%1\" for?").arg(given.at(m_positionals.size())));
    for (int i = given.size(); i < m_positionals.size(); ++i) {
        if (m_positionals.at(i).presence != Presence::Optional)
            return complain(tr("%1 is missing.").arg(m_positionals.at(i).syntax));
    }
    return std::nullopt;
}

bool CommandArguments::hasBus() const
{
    // isSet() of an option that the command does not have would warn.
    return m_parser.optionNames().contains(busOption);
}

std::optional<int> CommandArguments::number(const QString &option, int lowest, int highest) const
{
    bool isNumber = false;
    const int number = m_parser.value(option).toInt(&isNumber);
    if (isNumber && number >= lowest && number <= highest)
        return number;
    complain(tr("--%1 takes a number from %2 to %3, not \"%4\".")
                 .arg(option, QString::number(lowest), QString::number(highest), m_parser.value(option)));
    return std::nullopt;
}

ExitStatus CommandArguments::complain(const QString &sentence) const
{
    Console::printError(QStringLiteral("draxelctl %1: %2").arg(m_name, sentence));
    Console::printError(tr("\"draxelctl %1 --help\" shows what it takes.").arg(m_name));
    return Exit::usage;
}

std::optional<ExitStatus> CommandArguments::parseBus()
{
    if (!m_parser.isSet(busOption))
        return complain(tr("--bus is missing: which bus is meant?"));

    QString error;
    const std::optional<BusAddress> address = BusAddress::parse(m_parser.value(busOption), &error);
    if (!address)
        return complain(error);
    m_bus.address = *address;

    if (m_parser.isSet(bitRateOption)) {
        m_bus.bitRate = parseBitRate(m_parser.value(bitRateOption), &error);
        if (!m_bus.bitRate)
            return complain(error);
    }
    return std::nullopt;
}
