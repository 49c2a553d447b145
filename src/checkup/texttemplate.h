// SPDX-License-Identifier: MIT
#pragma once

#include "expression.h"
#include "expressionparser.h"
#include "wordtable.h"

#include <QCoreApplication>
#include <QString>
#include <QVector>

#include <optional>

/*! A text of a rule with places for values: "Cell {lowestAt(these)}: {min(these)|mV}".
 *
 *  A place holds a formula and, behind a bar, how its result is written: a unit of the object table, "hex2" to "hex8",
 *  "name" (an object's name), "emergency" or "errorRegister" (words of CiA 301), or the name of a table of words. Without
 *  that an object is written with its own unit, a number as a whole one. "{{" is a brace.
 */
class TextTemplate
{
    Q_DECLARE_TR_FUNCTIONS(TextTemplate)

public:
    static constexpr int longestText = 2000; // characters

    /*! Empty when \a text is none, with a sentence in \a errorMessage. */
    static std::optional<TextTemplate>
    parse(const QString &text, const QVector<ExpressionParser::Loop> &loops, QString *errorMessage);

    /*! What does not exist is written as "?". */
    QString fill(Evaluation &evaluation, const WordTables &words, const QString &language) const;

    /*! The places as they were written, sorted; those of translations should be the same. */
    QStringList places() const;

private:
    struct Part
    {
        QString text; // in front of the place, or behind the last one
        QString written;
        Expression expression; // empty in the last part
        QString format;
    };

    static bool parsePlace(const QString &place, const QVector<ExpressionParser::Loop> &loops, Part *part,
                           QString *errorMessage);
    static QString fillPlace(const Part &part, Evaluation &evaluation, const WordTables &words,
                             const QString &language);
    static QString objectText(const ObjectReference &object, const Evaluation &evaluation);

    QVector<Part> m_parts;
};
