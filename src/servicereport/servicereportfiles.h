// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

struct Snapshot;

/*! The two files of a service report. */
class ServiceReportFiles
{
    Q_DECLARE_TR_FUNCTIONS(ServiceReportFiles)

public:
    struct Paths
    {
        QString html;
        QString pdf;
    };

    /*! The name of both files without its ending, made of vehicle and time: "service_1104001_2026-09-03_1012". It is good
     *  on every file system.
     */
    static QString baseName(const Snapshot &snapshot);

    /*! Writes both files into \a folder, which has to exist, and says in \a paths where they are. Files that are there stay:
     *  a number is added to the names until both are free. On failure returns false with a sentence in \a errorMessage, and
     *  there is neither file.
     */
    static bool write(const QString &folder, const QString &baseName, const QByteArray &html,
                      const QByteArray &pdf, Paths *paths, QString *errorMessage);

private:
    static bool writeFile(const QString &path, const QByteArray &bytes, QString *errorMessage);
    static bool reserve(const QString &path, QString *errorMessage);
};
