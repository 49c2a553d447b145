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

/*! A folder in which snapshots wait for an archive that cannot be reached, one file each, and beside it another one for
 *  what a check-up said of it.
 */
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

    /*! Puts a snapshot there; the same one once, with the verdict that was given last. Gives its file, or nothing with a
     *  sentence in \a errorMessage.
     */
    std::optional<QString> save(const Snapshot &snapshot, const std::optional<VisitVerdict> &verdict,
                                QString *errorMessage) const;

    /*! There is a newer verdict elsewhere: the one that waits with the snapshot, if any, does not count any more. */
    void forgetVerdict(const Snapshot &snapshot) const;

    /*! Gives other notes to what waits in a file of save(); not to what has been delivered since. */
    static bool setNotes(const QString &fileName, const SnapshotNotes &notes, QString *errorMessage);

    int count() const;

    /*! Gives the archive what waits, the oldest first, and ends with the first that it does not take. A file that is
     *  no snapshot stays where it is. A verdict that cannot be read keeps no visit from the archive.
     */
    Delivery deliver(Archive &archive) const;

private:
    QStringList files() const;
    QString fileOf(const Snapshot &snapshot) const;

    QString m_folder;
};
