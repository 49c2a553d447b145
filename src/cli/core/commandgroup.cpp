// SPDX-License-Identifier: MIT
#include "commandgroup.h"

#include "console.h"

#include <algorithm>

ExitStatus CommandGroup::run(const QStringList &arguments) const
{
    constexpr int own = 1; // the position of the group's name
    const QString name = arguments.value(own + 1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        Console::print(usage());
        return Exit::success;
    }
    const Command *command = std::find_if(
        m_commands, m_end, [&name](const Command &known) { return name == QLatin1String(known.name); });
    if (command == m_end) {
        Console::printError(name.isEmpty() ? usage()
                                           : tr("draxelctl %1: There is no command \"%2\".\n"
                                                "\"draxelctl %1 --help\" lists the commands.")
                                                 .arg(QLatin1String(m_name), name));
        return Exit::usage;
    }
    QStringList rest = arguments;
    rest.removeAt(own);
    return command->run(rest);
}

QString CommandGroup::usage() const
{
    uint longest = 0;
    std::for_each(m_commands, m_end,
                  [&longest](const Command &command) { longest = std::max(longest, qstrlen(command.name)); });
    const QString name = QLatin1String(m_name);
    QString text = tr("%1\n"
                      "\n"
                      "Usage: draxelctl %2 COMMAND [OPTION]...\n"
                      "\n"
                      "Commands:\n")
                       .arg(QCoreApplication::translate(m_context, m_purpose), name);
    std::for_each(m_commands, m_end, [this, longest, &text](const Command &command) {
        text += QStringLiteral("  %1  %2\n")
                    .arg(QLatin1String(command.name), -static_cast<int>(longest))
                    .arg(QCoreApplication::translate(m_context, command.description));
    });
    return text
           + tr("\n"
                "Options:\n"
                "  -h, --help  Show this help.\n"
                "\n"
                "\"draxelctl %1 COMMAND --help\" shows the options of a command.")
                 .arg(name);
}
