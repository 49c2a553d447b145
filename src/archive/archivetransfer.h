// SPDX-License-Identifier: MIT
#pragma once

#include "archive.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVector>

/*! Brings visits out of an archive and into it: one file each, or a whole archive as a file. */
class ArchiveTransfer
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveTransfer)

public:
    /*! What became of what was to be transferred, in its order. */
    struct Result
    {
        QVector<KeptVisit> visits;
        QStringList files;    //!< that were written
        QStringList problems; //!< sentences; all else was transferred
    };

    /*! Whether \a fileName is a file of a database, so that it can be an archive. */
    static bool isArchive(const QString &fileName);

    /*! A name for the file of a visit, the same whenever it is made: "2026-09-03 10-12 1104001 3fa9c2d1.dxsnap" */
    static QString fileNameOf(const VisitInfo &visit);

    /*! Every visit as a snapshot file in a folder, which is made when it is not there. A file that has the snapshot
     *  already is left alone.
     */
    static Result exportToFolder(Archive &archive, const QVector<VisitInfo> &visits, const QString &folder);

    /*! A visit as a snapshot file, in the place of one that is there; false with a sentence in \a errorMessage. */
    static bool exportToFile(Archive &archive, qint64 visitId, const QString &fileName,
                             QString *errorMessage);

    /*! Every visit with notes, verdicts and vehicles; those that \a target has are left as they are there. */
    static Result copy(Archive &source, Archive &target);

    /*! The visits of a file: a snapshot, an exchange file, or an archive. */
    static Result import(const QString &fileName, Archive &target);
};
