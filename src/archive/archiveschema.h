// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

class ArchiveDatabase;

/*! The tables of an archive and their versions; docs/archive.md describes them. */
class ArchiveSchema
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveSchema)

public:
    /*! The version that is made, and the highest one that is used. */
    static int newestVersion();

    /*! Makes the tables of an empty database, or brings those of an older version up to date, in one transaction; two
     *  programs may do so at once. False, with the reason in the database's error, also for an archive of a newer
     *  version and for a file of another program.
     */
    static bool prepare(ArchiveDatabase &database);

private:
    static bool migrate(ArchiveDatabase &database);
};
