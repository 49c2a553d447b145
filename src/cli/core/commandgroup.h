// SPDX-License-Identifier: MIT
#pragma once

#include "command.h"

#include <QCoreApplication>

/*! Commands of a command: "draxelctl trace show". */
class CommandGroup
{
    Q_DECLARE_TR_FUNCTIONS(CommandGroup)

public:
    /*! \a name: "trace". \a purpose: what the group is for, a sentence; it and the descriptions of the commands are of the
     *  translation context \a context. Nothing is copied.
     */
    template<std::size_t count>
    constexpr CommandGroup(const char *name, const char *context, const char *purpose,
                           const Command (&commands)[count])
        : m_name(name)
        , m_context(context)
        , m_purpose(purpose)
        , m_commands(commands)
        , m_end(commands + count)
    {
    }

    /*! Runs the command that is named behind that of the group, or prints what there is. \a arguments: program and group first. */
    ExitStatus run(const QStringList &arguments) const;

private:
    QString usage() const;

    const char *m_name;
    const char *m_context;
    const char *m_purpose;
    const Command *m_commands;
    const Command *m_end;
};
