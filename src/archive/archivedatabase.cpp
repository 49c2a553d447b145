// SPDX-License-Identifier: MIT
#include "archivedatabase.h"

#include "databasewords.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QStringList>

#include <atomic>

namespace {

constexpr QLatin1String fileDriver("QSQLITE");
constexpr QLatin1String serverDriver("QPSQL");

// How long a writer waits for another one, in ms: much longer than keeping a visit takes.
constexpr int patience = 10000;

// The first bytes of a file of SQLite.
constexpr char fileStart[] = "SQLite format 3";

// Of the lock that writers of an archive on a server share; any number will do that others do not use.
constexpr qint64 writersLock = 0x44584152;

QString nextConnectionName()
{
    static std::atomic<int> lastNumber{0};
    return QStringLiteral("archive-%1").arg(++lastNumber);
}

/*! How long the database tries, in seconds and milliseconds, before a server that does not answer is one that is away;
 *  what the user has chosen comes after it and wins.
 */
QString serverOptions(const ArchiveAddress &address)
{
    QStringList options{QStringLiteral("connect_timeout=5"), QStringLiteral("keepalives_idle=5"),
                        QStringLiteral("tcp_user_timeout=10000"), QStringLiteral("application_name=draxel")};
    for (const ArchiveAddress::Option &option : address.options())
        options.append(option.name + QLatin1Char('=') + option.value);
    return options.join(QLatin1Char(';'));
}

} // namespace

ArchiveDatabase::ArchiveDatabase()
    : m_connection(nextConnectionName())
{
}

ArchiveDatabase::~ArchiveDatabase()
{
    close();
}

void ArchiveDatabase::close()
{
    m_isOpen = false;
    m_database = QSqlDatabase();
    if (QSqlDatabase::contains(m_connection))
        QSqlDatabase::removeDatabase(m_connection);
}

bool ArchiveDatabase::open(const ArchiveAddress &address, Missing missing)
{
    close();
    clearError();
    m_address = address;
    const QString driver = isFile() ? fileDriver : serverDriver;
    if (!QSqlDatabase::isDriverAvailable(driver)) {
        return fail(tr("Qt's driver %1 for the archive is missing. Install it, for example the package %2.")
                        .arg(driver, isFile() ? QStringLiteral("libqt5sql5-sqlite")
                                              : QStringLiteral("libqt5sql5-psql")));
    }
    if (isFile() && !prepareFile(missing))
        return false;
    m_database = QSqlDatabase::addDatabase(driver, m_connection);
    m_isOpen = isFile() ? openFile() : openServer();
    if (!m_isOpen)
        close();
    return m_isOpen;
}

bool ArchiveDatabase::prepareFile(Missing missing)
{
    const QFileInfo info(m_address.fileName());
    if (info.exists())
        return checkFile();
    if (missing == Missing::Refuse)
        return fail(tr("There is no archive %1. Look whether the name is right and its folder is there.")
                        .arg(m_address.toString()));
    if (!m_address.isStandard())
        return true;
    // Whom the vehicles belong to is nobody else's business on this computer.
    QDir().mkpath(info.path());
    QFile file(m_address.fileName());
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    return true;
}

/*! Before the database touches it. */
bool ArchiveDatabase::checkFile()
{
    QFile file(m_address.fileName());
    if (QFileInfo(m_address.fileName()).isDir())
        return fail(tr("%1 is a folder and no archive. Choose a file.").arg(m_address.toString()));
    if (!file.open(QIODevice::ReadOnly))
        return true; // the database says why
    const QByteArray start = file.read(sizeof fileStart);
    if (start.isEmpty() || start == QByteArray(fileStart, sizeof fileStart))
        return true;
    return fail(tr("The file %1 is no archive. Choose another one.").arg(m_address.toString()));
}

bool ArchiveDatabase::openFile()
{
    m_database.setDatabaseName(m_address.fileName());
    m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(patience));
    if (!m_database.open())
        return fail(m_database.lastError());
    // A file may be somebody else's: nothing in it may act, and pages are looked at before they are trusted.
    for (const char *pragma : {"PRAGMA trusted_schema = OFF", "PRAGMA cell_size_check = ON",
                               "PRAGMA foreign_keys = ON", "PRAGMA synchronous = FULL"}) {
        if (!run(QLatin1String(pragma)))
            return false;
    }
    return true;
}

bool ArchiveDatabase::openServer()
{
    m_database.setHostName(m_address.host());
    if (m_address.port() > 0)
        m_database.setPort(m_address.port());
    m_database.setDatabaseName(m_address.database());
    m_database.setUserName(m_address.user());
    m_database.setPassword(m_address.password());
    m_database.setConnectOptions(serverOptions(m_address));
    if (!m_database.open())
        return fail(m_database.lastError());
    return run(QStringLiteral("SET client_min_messages = warning"))
           && run(QStringLiteral("SET lock_timeout = %1").arg(patience));
}

std::optional<QSqlQuery> ArchiveDatabase::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    bool isDone = false;
    if (values.isEmpty()) {
        isDone = query.exec(statement);
    } else if (query.prepare(statement)) {
        for (const QVariant &value : values)
            query.addBindValue(value);
        isDone = query.exec();
    }
    if (isDone)
        return query;
    fail(query.lastError());
    return std::nullopt;
}

bool ArchiveDatabase::next(QSqlQuery &query)
{
    if (query.next())
        return true;
    if (query.lastError().isValid())
        fail(query.lastError());
    return false;
}

bool ArchiveDatabase::begin()
{
    if (isFile())
        return run(QStringLiteral("BEGIN IMMEDIATE")).has_value();
    if (!run(QStringLiteral("BEGIN")))
        return false;
    if (run(QStringLiteral("SELECT pg_advisory_xact_lock(%1)").arg(writersLock)))
        return true;
    rollBack(); // else the connection would refuse everything from now on
    return false;
}

bool ArchiveDatabase::commit()
{
    return run(QStringLiteral("COMMIT")).has_value();
}

void ArchiveDatabase::rollBack()
{
    // An error before it is the one to tell of.
    QSqlQuery(m_database).exec(QStringLiteral("ROLLBACK"));
}

void ArchiveDatabase::clearError()
{
    m_error.clear();
    m_isLost = false;
}

bool ArchiveDatabase::fail(const QString &sentence)
{
    if (m_error.isEmpty())
        m_error = sentence;
    return false;
}

bool ArchiveDatabase::fail(const QSqlError &error)
{
    m_isLost = m_isLost || DatabaseWords::isConnectionLost(m_address, error);
    return fail(DatabaseWords::sentence(m_address, error));
}

bool ArchiveTransaction::commit()
{
    const bool isDone = m_isOpen && m_database.commit();
    if (isDone)
        m_isOpen = false;
    return isDone;
}
