// SPDX-License-Identifier: MIT
#include "postgresserver.h"

#include "freeport.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QUrl>

#include <csignal>

#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int patience = 60000; // ms

/*! Where Debian has the programs of the newest version. */
QString toolFolder()
{
    const QDir versions(QStringLiteral("/usr/lib/postgresql"));
    const QStringList names
        = versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed);
    for (const QString &name : names) {
        const QString folder = versions.filePath(name) + QStringLiteral("/bin/");
        if (QFile::exists(folder + QStringLiteral("initdb")))
            return folder;
    }
    return QString();
}

/*! Whom the server runs as; null: as whoever runs the test. */
const passwd *serverUser()
{
    if (geteuid() != 0)
        return nullptr;
    const passwd *postgres = getpwnam("postgres");
    return postgres != nullptr ? postgres : getpwnam("nobody");
}

} // namespace

/*! Ends with the test, however the test ends. */
class PostgresServer::Process : public QProcess
{
protected:
    void setupChildProcess() override
    {
        if (const passwd *user = serverUser()) {
            if (setgroups(0, nullptr) != 0 || setgid(user->pw_gid) != 0 || setuid(user->pw_uid) != 0)
                _exit(1);
        }
        // After the change of the user, which forgets it.
        prctl(PR_SET_PDEATHSIG, SIGQUIT);
    }
};

PostgresServer::PostgresServer()
    : m_server(std::make_unique<Process>())
{
}

PostgresServer::~PostgresServer()
{
    kill();
}

bool PostgresServer::isInstalled()
{
    return !toolFolder().isEmpty();
}

bool PostgresServer::start()
{
    QFile passwordFile(m_folder.filePath(QStringLiteral("password")));
    if (!passwordFile.open(QIODevice::WriteOnly) || passwordFile.write(password) < 0)
        return false;
    passwordFile.close();
    if (const passwd *owner = serverUser()) {
        if (chown(QFile::encodeName(m_folder.path()), owner->pw_uid, owner->pw_gid) != 0
            || chown(QFile::encodeName(passwordFile.fileName()), owner->pw_uid, owner->pw_gid) != 0)
            return false;
    }
    m_port = freePort();
    return runTool(QStringLiteral("initdb"),
                   {QStringLiteral("-D"), m_folder.filePath(QStringLiteral("data")), QStringLiteral("-U"),
                    QLatin1String(user), QStringLiteral("-A"), QStringLiteral("scram-sha-256"),
                    QStringLiteral("--pwfile"), passwordFile.fileName(), QStringLiteral("-E"),
                    QStringLiteral("UTF8"), QStringLiteral("--locale=C"), QStringLiteral("-N")})
           && launch();
}

bool PostgresServer::launch()
{
    m_server->setProcessChannelMode(QProcess::MergedChannels);
    m_server->setWorkingDirectory(m_folder.path());
    // What a process wrote outlives it; only a machine that goes needs more.
    m_server->start(toolFolder() + QStringLiteral("postgres"),
                    {QStringLiteral("-D"), m_folder.filePath(QStringLiteral("data")), QStringLiteral("-k"),
                     m_folder.path(), QStringLiteral("-p"), QString::number(m_port), QStringLiteral("-c"),
                     QStringLiteral("listen_addresses=127.0.0.1"), QStringLiteral("-c"),
                     QStringLiteral("fsync=off"), QStringLiteral("-c"),
                     QStringLiteral("shared_buffers=16MB")});
    const bool runs
        = m_server->waitForStarted(patience) && QTest::qWaitFor([this] { return answers(); }, patience);
    if (!runs)
        m_problem = QString::fromLocal8Bit(m_server->readAll());
    return runs;
}

bool PostgresServer::answers()
{
    return m_server->state() == QProcess::Running
           && run(QStringLiteral("postgres"), QStringLiteral("SELECT 1"));
}

void PostgresServer::kill()
{
    if (m_server->state() == QProcess::NotRunning)
        return;
    // "Immediate": nobody is asked, nothing is written.
    ::kill(static_cast<pid_t>(m_server->processId()), SIGQUIT);
    if (!m_server->waitForFinished(patience))
        m_server->kill();
}

bool PostgresServer::restart()
{
    m_server = std::make_unique<Process>();
    return launch();
}

QString PostgresServer::createDatabase()
{
    const QString name = QStringLiteral("test_%1").arg(++m_databases);
    return run(QStringLiteral("postgres"), QStringLiteral("CREATE DATABASE ") + name) ? name : QString();
}

QString PostgresServer::address(const QString &database, const QString &withPassword) const
{
    return QStringLiteral("postgresql://%1:%2@127.0.0.1:%3/%4")
        .arg(QLatin1String(user), QString::fromLatin1(QUrl::toPercentEncoding(withPassword)),
             QString::number(m_port), database);
}

QString PostgresServer::socketAddress(const QString &database) const
{
    return QStringLiteral("postgresql://%1:%2@:%3/%4?host=%5")
        .arg(QLatin1String(user), QString::fromLatin1(QUrl::toPercentEncoding(QLatin1String(password))),
             QString::number(m_port), database, m_folder.path());
}

bool PostgresServer::run(const QString &database, const QString &statement)
{
    return runTool(QStringLiteral("psql"),
                   {QStringLiteral("-q"), QStringLiteral("-h"), m_folder.path(), QStringLiteral("-p"),
                    QString::number(m_port), QStringLiteral("-U"), QLatin1String(user), QStringLiteral("-d"),
                    database, QStringLiteral("-c"), statement});
}

bool PostgresServer::runTool(const QString &tool, const QStringList &arguments)
{
    Process process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PGPASSWORD"), QLatin1String(password));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(m_folder.path());
    process.start(toolFolder() + tool, arguments);
    const bool isDone = process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit
                        && process.exitCode() == 0;
    if (!isDone)
        m_problem = tool + QStringLiteral(": ") + QString::fromLocal8Bit(process.readAll());
    return isDone;
}
