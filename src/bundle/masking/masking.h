// SPDX-License-Identifier: MIT
#pragma once

#include "mask.h"

#include <canopen/objectkey.h>

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <utility>

/*! Replaces in texts, in values and in frames what tells whose vehicle it is: serial numbers, keys, names and paths.
 *
 *  First everything is learnt that is secret, then it is replaced wherever it stands. Values and frames keep their size.
 */
class Masking
{
public:
    Masking() = default;
    explicit Masking(Mask mask)
        : m_mask(std::move(mask))
    {
    }

    /*! Whether an object tells a device from all others of its make, or opens it: identity (1018h.4), unique part number
     *  (6005h), expected serial numbers (1F88h), security key (6058h).
     */
    static bool isSecret(CanOpen::ObjectKey key);

    // Learning
    /*! What people call something: found in texts as a whole, in any case. Shorter ones than three letters are not. */
    void learnName(const QString &name);
    void learnNumber(quint64 number);
    /*! A serial number, also one with letters. Of digits alone it is the same as the number. */
    void learnSerial(const QString &serial);
    /*! The value of an object, least significant byte first: of a secret one itself, of others a serial number that is
     *  called so ("S/N 12-3456").
     */
    void learnValue(CanOpen::ObjectKey key, const QByteArray &value);
    /*! The file in the address of a bus that is one: "trace:Erika.log", "simulated:Erika.json". */
    void learnBus(const QString &address);
    /*! The user of this computer, its name and the home folder. */
    void learnComputer();

    // Replacing
    /*! A text for people, whatever its length becomes; paths as well. */
    QString text(const QString &text);
    /*! All of a text that somebody wrote; empty stays empty. */
    QString word(const QString &text);
    /*! The value of an object. */
    QByteArray value(CanOpen::ObjectKey key, const QByteArray &value);
    /*! A number of \a bits that is a secret. */
    quint64 number(quint64 secret, int bits) { return m_mask.number(secret, bits); }
    /*! Bytes of whatever it may be: serial numbers of 32 bits that are known, wherever they stand in it, with either byte
     *  first.
     */
    void sweep(char *bytes, int size);

private:
    enum class Length : quint8 { Free, Kept };

    QString replaceAll(const QString &text, Length length);
    QString replacePaths(const QString &text);
    QString replaceNames(QString text, Length length);
    QString replaceNumbers(const QString &text, Length length);
    QString replaceRun(const QString &run, Length length);
    QString standIn(const QString &found, Length length);
    QByteArray replaceBytes(const QByteArray &bytes);
    bool isKnown(const QString &run) const;

    Mask m_mask;
    QStringList m_names;             // the longest first
    QHash<QString, QString> m_spelt; // names by how they look as UTF-8, a letter for each byte
    QSet<quint32> m_numbers;         // of 32 bits, that may be looked for among bytes
    QSet<QString> m_runs;            // of letters and digits, in capitals
};
