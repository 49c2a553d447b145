// SPDX-License-Identifier: MIT
#pragma once

#include "visit.h"

#include <snapshot/snapshot.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>
#include <utility>

class Archive;

/*! A folder in which snapshots wait for an archive that cannot be reached, one file each. */
class WaitingVisits
{
    Q_DECLARE_TR_FUNCTIONS(WaitingVisits)

public:
    /*! What deliver() did. */
    struct Delivery
    {
        QVector<std::pair<QString, KeptVisit>> visits; //!< what became of each file that is gone now
        QStringList problems;                          //!< sentences; what they are about still waits
    };

    /*! \a folder is made when it is needed first. */
    explicit WaitingVisits(QString folder = standardFolder())
        : m_folder(std::move(folder))
    {
    }

    /*! Beside the archive in the user's data folder. */
    static QString standardFolder();

    /*! Puts a snapshot there; the same one once. Gives its file, or nothing with a sentence in \a errorMessage. */
    std::optional<QString> save(const Snapshot &snapshot, QString *errorMessage) const;

    /*! Gives other notes to what waits in a file of save(); not to what has been delivered since. */
    static bool setNotes(const QString &fileName, const SnapshotNotes &notes, QString *errorMessage);

    int count() const;

    /*! Gives the archive what waits, the oldest first, and ends with the first that it does not take. A file that is
     *  no snapshot stays where it is.
     */
    Delivery deliver(Archive &archive) const;

private:
    QStringList files() const;

    QString m_folder;
};
