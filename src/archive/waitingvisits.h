// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

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
        int count = 0;        //!< of visits that the archive has now
        QStringList problems; //!< sentences; what they are about still waits
    };

    /*! \a folder is made when it is needed first. */
    explicit WaitingVisits(QString folder = standardFolder())
        : m_folder(std::move(folder))
    {
    }

    /*! Beside the archive in the user's data folder. */
    static QString standardFolder();

    /*! Puts a snapshot there; the same one once. False with a sentence in \a errorMessage. */
    bool save(const Snapshot &snapshot, QString *errorMessage) const;

    int count() const;

    /*! Gives the archive what waits, the oldest first, and ends with the first that it does not take. A file that is
     *  no snapshot stays where it is.
     */
    Delivery deliver(Archive &archive) const;

private:
    QStringList files() const;

    QString m_folder;
};
