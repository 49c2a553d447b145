// SPDX-License-Identifier: MIT
#pragma once

#include "expression.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

/*! Reads the formulas of rules; docs/rules.md has the language.
 *
 *      or         = and { "or" and }                 sum     = product { ("+" | "-") product }
 *      and        = not { "and" not }                product = sign { ("*" | "/") sign }
 *      not        = "not" not | comparison           sign    = "-" sign | primary
 *      comparison = sum [ ("<" | "<=" | ">" | ">=" | "==" | "!=") sum ]
 *      primary    = number | name | object | function "(" arguments ")" | "(" or ")"
 */
class ExpressionParser
{
    Q_DECLARE_TR_FUNCTIONS(ExpressionParser)

public:
    static constexpr int longestText = 1000; // characters
    static constexpr int deepestNesting = 40;

    /*! The names of the loops that a formula may speak of. A loop over objects has an object, "these". */
    struct Loop
    {
        QString name;
        bool hasObject = false;
    };

    explicit ExpressionParser(const QVector<Loop> &loops)
        : m_loops(loops)
    {
    }

    /*! Empty when \a text is no formula, with a sentence in \a errorMessage that names the place. */
    std::optional<Expression> parse(const QString &text, QString *errorMessage);

    /*! An object alone, "6040h", "6040h.s" or "these.2". */
    std::optional<ObjectReference> parseObject(const QString &text, QString *errorMessage);

private:
    struct Token
    {
        QString text; // empty at the end
        int position = 0;
    };

    bool tokenize(const QString &text);
    void begin(const QString &text);
    const Token &token() const { return m_tokens.at(m_next); }
    bool takes(const char *text);
    int fail(const QString &problem);
    bool isFailed() const { return !m_error.isEmpty(); }

    int parseOr();
    int parseAnd();
    int parseNot();
    int parseComparison();
    int parseSum();
    int parseProduct();
    int parseSign();
    int parsePrimary();
    int parseParenthesis();
    int parseNumber();
    int parseObjectStep();
    int parseFact();
    int parseFunction();
    int parseArguments(Expression::Step *step, int least, int most);
    int parseAggregate(Expression::Operation operation);
    bool isObjectAlone() const;
    bool isObjectAhead() const;
    std::optional<ObjectReference> takeObject();
    bool takeSubIndex(ObjectReference *object);
    int loopNumbered(const QString &name) const;
    int add(Expression::Operation operation, const QVector<int> &operands);
    int chain(Expression::Operation operation, int left, int (ExpressionParser::*parseRight)());

    QVector<Loop> m_loops;
    QVector<Token> m_tokens;
    int m_next = 0;
    int m_nesting = 0;
    Expression m_expression;
    QString m_error;
};
