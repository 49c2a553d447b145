// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QLocale>
#include <QString>
#include <QVariant>

#include <optional>

/*! How values and objects are said in findings and comparisons. */
namespace ObjectWords {

/*! The value with its unit, as the overview shows it; temperatures below zero with their sign, see number(). Cell voltages
 *  6165h to 6174h, which have no unit in the object table, are millivolts. Identifiers, times and mappings that the overview
 *  does not know stand as CommunicationValues writes them, texts as they are, bytes as hexadecimal digits, numbers without a
 *  unit as they are; no control characters.
 */
QString value(CanOpen::ObjectKey key, const QVariant &value);

/*! The number as it is meant: a temperature below zero may have come as an unsigned number of 16 bits. */
double number(CanOpen::ObjectKey key, double raw);

/*! A number in a unit of the object table ("mV", "C"): 36500 in "mV" is "36.50 V". Empty for an unknown unit. */
QString inUnit(double number, const QString &unit);

/*! The unit in which people read an object, and by what its number is divided for it: "V" and 1000 for 6040h. */
struct Unit
{
    QString text; //!< empty: a plain number
    double divisor = 1;
};
Unit unit(CanOpen::ObjectKey key);

/*! The object's name in the table, "6165h" when it has none. */
QString name(CanOpen::ObjectKey key);

/*! Name and number: "Battery pack lifetime cycles (6107h.1)". */
QString nameAndNumber(CanOpen::ObjectKey key);

/*! For as long as it lives, numbers with units are written as a language does: "36,50 V", without separators of
 *  thousands. Otherwise they are written as the overview does in every language. It holds for the thread that made it.
 */
class NumberStyle
{
public:
    explicit NumberStyle(const QLocale &locale);
    ~NumberStyle();
    Q_DISABLE_COPY(NumberStyle)

    /*! Whether one lives in this thread. */
    static bool isSet();

private:
    std::optional<QLocale> m_former;
};

/*! A NumberStyle of a language ("de", "zh_CN"; none when it is empty). One that lives already stays: who writes a whole
 *  document has chosen for all of it.
 */
class LanguageNumbers
{
public:
    explicit LanguageNumbers(const QString &language);

private:
    std::optional<NumberStyle> m_style;
};

} // namespace ObjectWords
