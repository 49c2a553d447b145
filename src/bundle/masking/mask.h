// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>

#include <utility>

/*! Gives every secret a stand-in: the same secret always the same one, another one another, and nobody can go back.
 *
 *  A keyed hash (HMAC with SHA-256) makes them. The key is made anew for each object and goes with it.
 */
class Mask
{
public:
    Mask(); //!< with a random key
    /*! For tests. */
    explicit Mask(QByteArray key)
        : m_key(std::move(key))
    {
    }

    /*! "masked-3F2A". Digits stand for the same secret as the number that they are. */
    QString word(const QString &secret);

    /*! A number of as many \a bits (1 to 64); from 16 bits on its lowest ones are those of word(). 0 and the highest one
     *  say that there is none, and stay.
     */
    quint64 number(quint64 secret, int bits);

    /*! A text of \a size characters: "masked-3F2A....", "m-3F2A", "2A". */
    QString text(const QString &secret, int size);

private:
    QByteArray digest(const QByteArray &secret, int attempt) const;
    QString tokenOf(const QByteArray &secret);

    QByteArray m_key;
    QHash<QByteArray, QString> m_tokens; // by secret
    QSet<QString> m_taken;
};
