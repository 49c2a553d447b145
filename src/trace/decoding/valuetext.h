// SPDX-License-Identifier: MIT
#pragma once

#include "objectbook.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

/*! Values of objects in words, with their units. */
class ValueText
{
    Q_DECLARE_TR_FUNCTIONS(ValueText)

public:
    /*! \a book must outlive it. */
    explicit ValueText(const ObjectBook *book)
        : m_book(book)
    {
    }

    /*! Of whole bytes as an SDO has them. \a isSizeUnknown: the last of four may be none of the value. Of a type that nobody
     *  knows: the number, or the bytes.
     */
    QString ofBytes(quint8 nodeId, CanOpen::ObjectKey object, const QByteArray &data,
                    bool isSizeUnknown = false) const;

    /*! Of 1 to 64 bits out of a PDO. */
    QString ofBits(quint8 nodeId, CanOpen::ObjectKey object, quint64 value, int bits) const;

    /*! "44 58 2D", and how many more when they are many. */
    static QString bytesText(const QByteArray &data);

private:
    static QString untyped(const QByteArray &data);

    const ObjectBook *m_book;
};
