// SPDX-License-Identifier: MIT
#pragma once

#include "vehiclesnapshot.h"

#include <archive/archive.h>

#include <QString>
#include <QTemporaryDir>

/*! The visits that archives are measured with: 20 of each vehicle of 14 nodes.
 *
 *  There are 10 000, or as many as the environment variable ARCHIVE_VISITS says. Putting them in takes minutes: with
 *  ARCHIVE_FOLDER the file is kept in that folder, and found again by the next run.
 */
class ManyVisits
{
public:
    static constexpr int visitsOfVehicle = 20;

    static int count();

    /*! Of the file that archives are measured with; holds as long as this lives. */
    QString fileName() const;

    /*! Puts into \a archive what it lacks of the visits. On failure returns false with the reason in \a error. */
    static bool fill(Archive *archive, QString *error);

private:
    QTemporaryDir m_folder; // when none was named
};
