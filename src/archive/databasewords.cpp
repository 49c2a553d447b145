// SPDX-License-Identifier: MIT
#include "databasewords.h"

#include "archiveaddress.h"

#include <QFile>
#include <QSqlError>

namespace {

struct Row
{
    const char *code; // as the driver gives it; a part of a class of codes stands for all of them
    const char *text;
};

constexpr QLatin1String readOnlyCode("8");

// Result codes of SQLite.
constexpr Row fileRows[] = {
    {"5",
     QT_TRANSLATE_NOOP("DatabaseWords", "The archive %1 is in use by another program. Try again when it is "
                                        "done.")},
    {"6",
     QT_TRANSLATE_NOOP("DatabaseWords", "The archive %1 is in use by another program. Try again when it is "
                                        "done.")},
    {"8", QT_TRANSLATE_NOOP("DatabaseWords",
                            "The archive %1 may only be read. Change the permissions of the file, or "
                            "choose another archive.")},
    {"10", QT_TRANSLATE_NOOP("DatabaseWords",
                             "The archive %1 could not be read or written: the medium failed or is "
                             "full. Nothing that was kept before is lost.")},
    {"11",
     QT_TRANSLATE_NOOP("DatabaseWords", "The archive %1 is damaged. Take the last backup of it, or choose "
                                        "another archive.")},
    {"13",
     QT_TRANSLATE_NOOP("DatabaseWords", "There is no space left for the archive %1. Free some and try again; "
                                        "nothing that was kept before is lost.")},
    {"14", QT_TRANSLATE_NOOP("DatabaseWords",
                             "The archive %1 could not be opened. Look whether its folder is there "
                             "and may be written.")},
    {"26", QT_TRANSLATE_NOOP("DatabaseWords", "The file %1 is no archive. Choose another one.")},
};

// SQLSTATE of PostgreSQL.
constexpr Row serverRows[] = {
    {"28", QT_TRANSLATE_NOOP("DatabaseWords", "The database %1 does not let this user in. Check user and "
                                              "password.")},
    {"3D000", QT_TRANSLATE_NOOP("DatabaseWords", "The server has no database for %1. Create it, or check the "
                                                 "name.")},
    {"42501",
     QT_TRANSLATE_NOOP("DatabaseWords", "The user of %1 may not do this. Let the database's administrator "
                                        "grant the rights.")},
    {"25006",
     QT_TRANSLATE_NOOP("DatabaseWords", "The database %1 may only be read. Choose another archive.")},
    {"53100",
     QT_TRANSLATE_NOOP("DatabaseWords", "There is no space left on the server of %1. Nothing that was kept "
                                        "before is lost.")},
    {"53300", QT_TRANSLATE_NOOP("DatabaseWords", "The server of %1 has too many connections. Try again in a "
                                                 "while.")},
    {"40", QT_TRANSLATE_NOOP("DatabaseWords", "Another program changed the archive %1 at the same time. Try "
                                              "again.")},
    {"55P03",
     QT_TRANSLATE_NOOP("DatabaseWords", "The archive %1 is in use by another program. Try again when it is "
                                        "done.")},
    {"XX001",
     QT_TRANSLATE_NOOP("DatabaseWords", "The archive %1 is damaged. Take the last backup of it, or choose "
                                        "another archive.")},
};

constexpr char movedText[] = QT_TRANSLATE_NOOP(
    "DatabaseWords", "The archive %1 was moved or deleted while it was open. Put it back, or choose "
                     "another archive.");

constexpr char lostText[] = QT_TRANSLATE_NOOP(
    "DatabaseWords",
    "The database %1 does not answer. Look whether the server runs and the network is there, and try "
    "again; nothing that was kept before is lost.");

// Of connections that end: by the server, by its administrator, or on the way.
constexpr const char *lostCodes[] = {"08", "57P"};

template<std::size_t size>
const char *findText(const Row (&rows)[size], const QString &code, bool byClass)
{
    for (const Row &row : rows) {
        const QLatin1String known(row.code);
        if (byClass ? code.startsWith(known) : code == known)
            return row.text;
    }
    return nullptr;
}

/*! SQLite's extended codes have the plain one in their low 8 bits. */
QString plainCode(const QString &code)
{
    bool isNumber = false;
    const int number = code.toInt(&isNumber);
    return isNumber ? QString::number(number & 0xFF) : code;
}

/*! SQLite writes no file that has lost its name. */
const char *findFileText(const ArchiveAddress &address, const QString &code)
{
    if (code == readOnlyCode && !QFile::exists(address.fileName()))
        return movedText;
    return findText(fileRows, code, false);
}

// While a connection is opened the driver gives no code, only the server's sentence; in another language than English the
// last row is what is known of it.
constexpr Row openingRows[] = {
    {"password", serverRows[0].text},
    {"does not exist", serverRows[1].text},
    {"FATAL", QT_TRANSLATE_NOOP("DatabaseWords",
                                "The server refused the connection to %1. Check user, password and the "
                                "name of the database, or ask its administrator.")},
};

const char *findOpeningText(const QSqlError &error)
{
    const QString reason = error.driverText() + error.databaseText();
    for (const Row &row : openingRows) {
        if (error.nativeErrorCode().isEmpty() && reason.contains(QLatin1String(row.code)))
            return row.text;
    }
    return nullptr;
}

} // namespace

bool DatabaseWords::isConnectionLost(const ArchiveAddress &address, const QSqlError &error)
{
    if (address.kind() == ArchiveAddress::Kind::File)
        return false;
    const QString code = error.nativeErrorCode();
    if (error.type() == QSqlError::ConnectionError || code.isEmpty())
        return true;
    for (const char *lost : lostCodes) {
        if (code.startsWith(QLatin1String(lost)))
            return true;
    }
    return false;
}

QString DatabaseWords::sentence(const ArchiveAddress &address, const QSqlError &error)
{
    const bool isFile = address.kind() == ArchiveAddress::Kind::File;
    const QString code = error.nativeErrorCode();
    const char *text = isFile ? findFileText(address, plainCode(code)) : findText(serverRows, code, true);
    if (text == nullptr && !isFile)
        text = findOpeningText(error);
    if (text == nullptr && isConnectionLost(address, error))
        text = lostText;
    if (text != nullptr)
        return tr(text).arg(address.toString());
    // The number is enough to look it up; the driver's own text may quote values.
    return tr("The archive %1 failed with error %2. Nothing that was kept before is lost.")
        .arg(address.toString(), code);
}
