// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

/*! A PostgreSQL of the test's own, in a folder of its own, on a free port of the loopback and on a socket in the folder;
 *  no service of the system. It does not run as root: then as the user "postgres" or "nobody".
 */
class PostgresServer
{
public:
    static constexpr char user[] = "workshop";
    static constexpr char password[] = "s3cret pass/word"; //!< with characters that an address has to escape

    PostgresServer();
    ~PostgresServer();

    /*! Whether PostgreSQL is installed. */
    static bool isInstalled();
    /*! What a test says that leaves it out. */
    static constexpr char notInstalled[]
        = "PostgreSQL is not installed: scripts/install-packages test brings it.";

    /*! Makes the cluster and starts it. False with what the server said in problem(). */
    bool start();
    /*! Ends it at once, as when the machine goes. */
    void kill();
    /*! Starts it again after kill(). */
    bool restart();

    /*! A new empty database; returns its name. */
    QString createDatabase();
    /*! Its address as a user writes it. */
    QString address(const QString &database, const QString &withPassword = QLatin1String(password)) const;
    /*! The same by the socket. */
    QString socketAddress(const QString &database) const;
    /*! Runs a statement as the administrator. */
    bool run(const QString &database, const QString &statement);

    QString problem() const { return m_problem; }

private:
    class Process;

    bool runTool(const QString &tool, const QStringList &arguments);
    bool launch();
    bool answers();

    QTemporaryDir m_folder;
    std::unique_ptr<Process> m_server;
    quint16 m_port = 0;
    int m_databases = 0;
    QString m_problem;
};
