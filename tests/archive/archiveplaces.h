// SPDX-License-Identifier: MIT
#pragma once

#include <archive/archive.h>
#include <tests/support/postgresserver.h>

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

/*! Where the archives of a test are: files, or databases of a server that runs as long as the test. The functions of a
 *  test run once for each.
 */
class ArchivePlaces
{
public:
    /*! Call it in initTestCase(). Without PostgreSQL those tests are left out, but on a machine that tests for everybody
     *  (the environment variable CI) they fail.
     */
    void start()
    {
        if (PostgresServer::isInstalled())
            QVERIFY2(m_server.start(), qPrintable(m_server.problem()));
        else
            QVERIFY2(!qEnvironmentVariableIsSet("CI"), PostgresServer::notInstalled);
    }

    /*! Rows "file" and "server"; call it in the function for the data. */
    static void addRows()
    {
        QTest::addColumn<bool>("isServer");
        QTest::newRow("file") << false;
        if (PostgresServer::isInstalled())
            QTest::newRow("server") << true;
        else
            qWarning("%s Nothing is tested with it.", PostgresServer::notInstalled);
    }

    PostgresServer &server() { return m_server; }

    /*! An archive that is not there yet, of the kind of the row. */
    QString make()
    {
        QFETCH(bool, isServer);
        return isServer ? m_server.address(m_server.createDatabase())
                        : m_folder.filePath(QStringLiteral("%1.dxarchive").arg(++m_files));
    }

    QString filePath(const QString &name) const { return m_folder.filePath(name); }

private:
    PostgresServer m_server;
    QTemporaryDir m_folder;
    int m_files = 0;
};

/*! An archive that is open; a test fails where it cannot be opened. */
class OpenArchive : public Archive
{
public:
    explicit OpenArchive(const QString &address)
    {
        QString error;
        const std::optional<ArchiveAddress> parsed = ArchiveAddress::parse(address, &error);
        m_isOpen = parsed && open(*parsed, Missing::Make, &error);
        if (!m_isOpen)
            QTest::qFail(qPrintable(error), __FILE__, __LINE__);
    }

    bool isOpen() const { return m_isOpen; }

private:
    bool m_isOpen = false;
};
