// SPDX-License-Identifier: MIT
#pragma once

#include "archiveaddress.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <optional>

/*! A connection to an archive's database: what SQLite and PostgreSQL do differently, and errors in words.
 *
 *  Belongs to the thread that made it. After an error errorString() has a sentence for the user.
 */
class ArchiveDatabase
{
    Q_DECLARE_TR_FUNCTIONS(ArchiveDatabase)

public:
    /*! What to do when there is no file yet. */
    enum class Missing : quint8 { Make, Refuse };

    ArchiveDatabase();
    ~ArchiveDatabase();
    Q_DISABLE_COPY(ArchiveDatabase)

    bool open(const ArchiveAddress &address, Missing missing);
    void close();
    bool isOpen() const { return m_isOpen; }

    const ArchiveAddress &address() const { return m_address; }
    bool isFile() const { return m_address.kind() == ArchiveAddress::Kind::File; }

    /*! Runs a statement; each "?" stands for one of \a values. Empty on error. */
    std::optional<QSqlQuery> run(const QString &statement, const QVariantList &values = {});

    /*! The next row; false at the end and on error, which hasFailed() tells apart. */
    bool next(QSqlQuery &query);

    /*! Begins a transaction that no other writer is in at the same time. */
    bool begin();
    bool commit();
    void rollBack();

    /*! The number that the last row put in was given. */
    static qint64 lastId(const QSqlQuery &query) { return query.lastInsertId().toLongLong(); }

    bool hasFailed() const { return !m_error.isEmpty(); }
    /*! Whether the connection was lost; opening it again may help. */
    bool isLost() const { return m_isLost; }
    QString errorString() const { return m_error; }
    void clearError();
    /*! Notes what is wrong, unless something was wrong before; returns false. */
    bool fail(const QString &sentence);

private:
    bool prepareFile(Missing missing);
    bool openFile();
    bool openServer();
    bool checkFile();
    bool fail(const QSqlError &error);

    QString m_connection; // its name among those of the program
    ArchiveAddress m_address;
    QSqlDatabase m_database;
    bool m_isOpen = false;
    bool m_isLost = false;
    QString m_error;
};

/*! Changes that are made all together, by commit(), or not at all. */
class ArchiveTransaction
{
public:
    explicit ArchiveTransaction(ArchiveDatabase &database)
        : m_database(database)
        , m_isOpen(database.begin())
    {
    }
    ~ArchiveTransaction()
    {
        if (m_isOpen)
            m_database.rollBack();
    }
    Q_DISABLE_COPY(ArchiveTransaction)

    bool hasBegun() const { return m_isOpen; }
    bool commit();

private:
    ArchiveDatabase &m_database;
    bool m_isOpen;
};
