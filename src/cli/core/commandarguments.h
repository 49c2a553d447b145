// SPDX-License-Identifier: MIT
#pragma once

#include <bus/bussettings.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStringList>

#include <optional>

/*! The arguments of one command of draxelctl: checks them, prints help and complaints. */
class CommandArguments
{
    Q_DECLARE_TR_FUNCTIONS(CommandArguments)

public:
    enum class Presence { Required, Optional };

    /*! \a name as on the command line, \a description one sentence on what the command does. */
    CommandArguments(const QString &name, const QString &description);

    /*! Adds --bus and --bitrate. */
    void addBusOptions(Presence presence = Presence::Required);
    void addOption(const QCommandLineOption &option) { m_parser.addOption(option); }
    /*! \a syntax as in the help; one positional argument is allowed then, else none. */
    void addPositional(const QString &syntax, const QString &description,
                       Presence presence = Presence::Required);

    /*! Takes \a arguments, program and command first. An exit status when the command ends here: after
     *  --help, or after a complaint about the first thing that is wrong.
     */
    std::optional<int> parse(const QStringList &arguments);

    bool hasBus() const;
    const BusSettings &bus() const { return m_bus; }
    QString positional() const { return m_positional; } //!< empty when it is not there
    bool isSet(const QString &option) const { return m_parser.isSet(option); }
    QString value(const QString &option) const { return m_parser.value(option); }

    /*! The number of \a option within the limits. Complains and gives nothing when it is none. */
    std::optional<int> number(const QString &option, int lowest, int highest) const;

    /*! Prints a complaint about the arguments and where help is; returns the exit status for it. */
    int complain(const QString &sentence) const;

private:
    QString helpText() const;
    std::optional<int> parseBus();

    QString m_name;
    QString m_positionalSyntax;
    QString m_positional;
    Presence m_positionalPresence = Presence::Required;
    Presence m_busPresence = Presence::Optional; // required only when the command has the option
    BusSettings m_bus;
    QCommandLineParser m_parser;
};
