// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <cstddef>

/*! Tables that turn codes and bits into texts, and the few algorithms that read them.
 *
 *  Texts are UTF-8. Those for users are written with QT_TRANSLATE_NOOP("DataInterpreter", ...) and translated
 *  where they are read, with interpreterText(); fixed terms are written plain and read with QLatin1String.
 */

/*! The text of one value of an enumerated object. */
struct CodeText
{
    quint32 code;
    const char *text;
};

/*! The text of one bit that says something only when it is set. */
struct BitText
{
    quint8 bit;
    const char *text;
};

/*! The two texts of one bit that says something either way. */
struct BitTextPair
{
    quint8 bit;
    const char *set;
    const char *clear;
};

/*! Returns the bits \a last to \a first of \a value, moved down to bit 0. */
constexpr quint32 bitField(quint32 value, quint8 first, quint8 last)
{
    return (value >> first) & (0xFFFFFFFFu >> (31 - (last - first)));
}

constexpr bool isBitSet(quint32 value, quint8 bit)
{
    return bitField(value, bit, bit) != 0;
}

/*! Returns whether every row has a code of its own, so that no row hides another. */
template<typename Row, std::size_t count>
constexpr bool hasDistinctCodes(const Row (&table)[count])
{
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t k = i + 1; k < count; ++k) {
            if (table[i].code == table[k].code)
                return false;
        }
    }
    return true;
}

/*! Returns whether the rows stand in ascending order of their bits, all of them bits of a 32-bit value. */
template<typename Row, std::size_t count>
constexpr bool hasAscendingBits(const Row (&table)[count])
{
    for (std::size_t i = 1; i < count; ++i) {
        if (table[i - 1].bit >= table[i].bit)
            return false;
    }
    return table[count - 1].bit < 32;
}

/*! Returns the row of \a code, or null. */
template<typename Row, std::size_t count>
constexpr const Row *findRow(const Row (&table)[count], quint32 code)
{
    for (const Row &row : table) {
        if (row.code == code)
            return &row;
    }
    return nullptr;
}

/*! Returns the text of \a code, not yet translated, or null. */
template<std::size_t count>
constexpr const char *findText(const CodeText (&table)[count], quint32 code)
{
    const CodeText *row = findRow(table, code);
    return row != nullptr ? row->text : nullptr;
}

/*! Translates a text that a table marks for the context "DataInterpreter". */
QString interpreterText(const char *text);

/*! Returns the translated text of \a code, or that of \a fallback. */
template<std::size_t count>
QString codeText(const CodeText (&table)[count], quint32 code, const char *fallback)
{
    const char *text = findText(table, code);
    return interpreterText(text != nullptr ? text : fallback);
}

/*! Returns the translated texts of all set bits in the order of the table. */
template<std::size_t count>
QStringList bitTexts(const BitText (&table)[count], quint32 value)
{
    QStringList texts;
    for (const BitText &row : table) {
        if (isBitSet(value, row.bit))
            texts.append(interpreterText(row.text));
    }
    return texts;
}

/*! Returns the translated texts of all set bits in the order of the table, one after the other. */
template<std::size_t count>
QString bitTextsInOne(const BitText (&table)[count], quint32 value)
{
    QString text;
    for (const BitText &row : table) {
        if (isBitSet(value, row.bit))
            text += interpreterText(row.text);
    }
    return text;
}

/*! Returns, for every row, the translated text of the bit's state, one after the other. */
template<std::size_t count>
QString bitTextPairs(const BitTextPair (&table)[count], quint32 value)
{
    QString text;
    for (const BitTextPair &row : table)
        text += interpreterText(isBitSet(value, row.bit) ? row.set : row.clear);
    return text;
}
