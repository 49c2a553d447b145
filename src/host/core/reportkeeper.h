// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/*! Keeps reports from being lost: plug-ins write every report to the same two files, over the one before.
 *
 *  Before a report is written, copies of the files that are there get a name with their date, as
 *  "dx_report 2026-11-15 17-29-46.pdf". A copy that is there already is not made again.
 */
class ReportKeeper
{
public:
    /*! What keepEarlier() did. */
    struct Kept
    {
        QStringList files;  //!< the names of new copies, in the folder
        QString problem;    //!< why a report could not be kept, as the system says it; empty when all is well
        QString failedFile; //!< the one that the problem is about, its path
    };

    /*! \a folder is where the reports are written: the home directory. */
    explicit ReportKeeper(const QString &folder = homeFolder());

    static QString homeFolder();

    QString pdfPath() const;

    /*! Copies what is there, and remembers it for isWritten(). */
    Kept keepEarlier();

    /*! Whether the PDF is another one than at the last keepEarlier(). */
    bool isWritten() const;

private:
    QString path(const QString &name) const { return m_folder + QLatin1Char('/') + name; }

    QString m_folder;
    QString m_before; // what the PDF was, see stateOf()
};
