// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

class ArchiveAddress;
class QSqlError;

/*! What went wrong with a database, and what to do, in one or two sentences; never with a password. */
class DatabaseWords
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseWords)

public:
    static QString sentence(const ArchiveAddress &address, const QSqlError &error);

    /*! Whether the error means that the connection is gone, so that opening it again may help. */
    static bool isConnectionLost(const ArchiveAddress &address, const QSqlError &error);
};
