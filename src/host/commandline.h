// SPDX-License-Identifier: MIT
#pragma once

#include <bus/bussettings.h>

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

/*! What the program is started with. */
struct HostOptions
{
    BusSettings bus; //!< the address is empty when none was given
    bool isConnecting = false;
    QString language;     //!< as it was written; empty: none was given
    QString pluginFolder; //!< empty: the one beside the program
    bool isVerbose = false;
    QString fileName; //!< of an exchange file to show, absolute; empty: none
};

/*! The options of the program's command line. */
class CommandLine
{
public:
    CommandLine();

    /*! Whether \a arguments want a text and no window, so that no display is needed. */
    static bool asksForText(const QStringList &arguments);

    /*! \a arguments begin with the program. Empty with a sentence for the user in \a error when they are wrong.
     */
    std::optional<HostOptions> parse(const QStringList &arguments, QString *error);

    /*! After parse(): whether the help, or the version, was asked for. */
    bool asksForHelp() const;
    bool asksForVersion() const;
    QString help() const;

private:
    bool parseBus(BusSettings *bus, QString *error) const;

    QCommandLineParser m_parser;
    QString m_program; // as it was called
};
