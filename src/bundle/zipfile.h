// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QVector>

#include <optional>

/*! Several files in one, as zip. The only place that knows libzip. */
class ZipFile
{
    Q_DECLARE_TR_FUNCTIONS(ZipFile)

public:
    struct Entry
    {
        QString name;
        QByteArray bytes;
        bool isPacked = false; //!< compressed already
    };

    /*! What is taken of a file from elsewhere. */
    struct Limits
    {
        qint64 file = qint64(256) * 1024 * 1024;  //!< bytes, also of each entry
        qint64 total = qint64(512) * 1024 * 1024; //!< bytes of all entries, unpacked
        int entries = 64;
    };

    static bool isZip(const QByteArray &beginning);

    /*! The bytes of a zip; empty with a sentence. */
    static QByteArray pack(const QVector<Entry> &entries, QString *errorMessage);

    /*! The entries in their order, whole and with the right checksums. Empty with the rest of a sentence, "damaged", when
     *  one of them is not, is encrypted, larger than allowed, twice there, or would lie in another folder.
     */
    static std::optional<QVector<Entry>> unpack(const QByteArray &bytes, const Limits &limits,
                                                QString *problem);

private:
    static QString nameProblem(const QString &name);
};
