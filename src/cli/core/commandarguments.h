// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <bus/bussettings.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStringList>
#include <QVector>

#include <optional>

/*! The arguments of one command of draxelctl: checks them, prints help and complaints. */
class CommandArguments
{
    Q_DECLARE_TR_FUNCTIONS(CommandArguments)

public:
    /*! Repeated: one or more, to the end. */
    enum class Presence { Required, Optional, Repeated };

    /*! \a name as on the command line, \a description one sentence on what the command does. */
    CommandArguments(const QString &name, const QString &description);

    /*! Adds --bus and --bitrate. */
    void addBusOptions(Presence presence = Presence::Required);
    void addOption(const QCommandLineOption &option) { m_parser.addOption(option); }
    /*! One positional argument more; \a syntax as in the help. The optional ones come last. */
    void addPositional(const QString &syntax, const QString &description,
                       Presence presence = Presence::Required);

    /*! Takes \a arguments, program and command first. An exit status when the command ends here: after
     *  --help, or after a complaint about the first thing that is wrong.
     */
    std::optional<ExitStatus> parse(const QStringList &arguments);

    bool hasBus() const;
    const BusSettings &bus() const { return m_bus; }
    /*! Number \a position, from 0; empty when it is not there. */
    QString positional(int position = 0) const { return m_parser.positionalArguments().value(position); }
    /*! Those from number \a first on. */
    QStringList positionals(int first = 0) const { return m_parser.positionalArguments().mid(first); }
    bool isSet(const QString &option) const { return m_parser.isSet(option); }
    QString value(const QString &option) const { return m_parser.value(option); }
    /*! Of an option that may be given more than once. */
    QStringList values(const QString &option) const { return m_parser.values(option); }

    /*! The number of \a option within the limits. Complains and gives nothing when it is none. */
    std::optional<int> number(const QString &option, int lowest, int highest) const;

    /*! Prints a complaint about the arguments and where help is; returns the exit status for it. */
    ExitStatus complain(const QString &sentence) const;

private:
    struct Positional
    {
        QString syntax;
        Presence presence;
    };

    QString helpText() const;
    std::optional<ExitStatus> checkPositionals() const;
    std::optional<ExitStatus> parseBus();

    QString m_name;
    QVector<Positional> m_positionals;
    Presence m_busPresence = Presence::Optional; // required only when the command has the option
    BusSettings m_bus;
    QCommandLineParser m_parser;
};
