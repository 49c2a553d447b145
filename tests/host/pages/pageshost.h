// SPDX-License-Identifier: MIT
#pragma once

#include <archive/archiveworker.h>
#include <host/core/vehiclerecords.h>
#include <tests/integration/simulatedhost.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QtTest>

/*! A folder of its own for the archive of a test, and for visits that wait for one. Before everything that opens an
 *  archive.
 */
class OwnArchive
{
public:
    OwnArchive()
        : m_formerData(qgetenv("XDG_DATA_HOME"))
    {
        qputenv("DRAXEL_ARCHIVE", fileName().toLocal8Bit());
        qputenv("XDG_DATA_HOME", m_folder.path().toLocal8Bit());
    }
    ~OwnArchive()
    {
        qunsetenv("DRAXEL_ARCHIVE");
        qputenv("XDG_DATA_HOME", m_formerData);
    }
    Q_DISABLE_COPY(OwnArchive)

    QString fileName() const { return m_folder.filePath(QStringLiteral("test.dxarchive")); }
    /*! Of another archive in the same folder. */
    QString otherFileName() const { return m_folder.filePath(QStringLiteral("other.dxarchive")); }

private:
    QTemporaryDir m_folder;
    QByteArray m_formerData;
};

/*! Handles events until the archive has answered everything, what follows from its answers included. */
inline void waitForArchive(VehicleRecords &records)
{
    ArchiveWorker &worker = records.archive();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    while (worker.pendingCount() > 0);
    QCoreApplication::processEvents();
}

/*! Handles events until \a isTrue. A test that waits in vain is ended by its time-out. */
template<typename Predicate>
void waitUntil(Predicate isTrue)
{
    while (!isTrue())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}
