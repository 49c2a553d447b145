// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <archive/archive.h>

#include <QCoreApplication>

#include <optional>

class CommandArguments;

/*! The archive of a command: --archive, else what the user has chosen for all programs, see ArchiveSetting. */
class ArchiveAccess
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveAccess)

public:
    static void addOption(CommandArguments &options);

    /*! Opens it; an exit status after a complaint. With Missing::Refuse a file of --archive has to be there; that in the
     *  user's data folder is made by whoever is first.
     */
    std::optional<ExitStatus> open(const CommandArguments &options, Archive::Missing missing);

    Archive &archive() { return m_archive; }

    /*! The visit that a user means: its number, or "last". Empty with a sentence in \a errorMessage. */
    std::optional<qint64> visit(const QString &text, QString *errorMessage);

    /*! The vehicle that a user means: what it is called, or "#" and its number. Empty likewise; with an empty sentence
     *  when there is none.
     */
    std::optional<qint64> vehicle(const QString &text, QString *errorMessage);

    /*! The key of the device that a user means: the key itself, or a serial number. Empty likewise. */
    std::optional<QString> device(const QString &text, QString *errorMessage);

private:
    std::optional<QStringList> devicesWithSerial(const QString &serial, QString *errorMessage);

    Archive m_archive;
};
