// SPDX-License-Identifier: MIT
#pragma once

#include "expression.h"
#include "findings.h"
#include "localtext.h"
#include "texttemplate.h"

#include <QString>
#include <QVector>

#include <optional>

/*! Something that a rule is applied to one by one. */
struct RuleLoop
{
    enum class Kind : quint8 {
        SubIndices, //!< of an object, from 1 to its count
        Numbers,
        Objects //!< those of a range of indices that the device has; the number is 1 for the first of the range
    };

    Kind kind = Kind::Numbers;
    ObjectReference object;
    int first = 0; //!< number or index
    int last = 0;
};

/*! One thing that a rule may find. */
struct RuleCase
{
    std::optional<Severity> severity; //!< empty: the rule is switched off
    Expression when;                  //!< empty: always, when the rule's own condition holds
    LocalText<TextTemplate> text;
    LocalText<TextTemplate> advice; //!< may be empty
};

/*! A rule of the check-up; docs/rules.md describes what a person writes. */
struct Rule
{
    enum class Scope : quint8 { Node, Vehicle };
    enum class Take : quint8 { First, All };

    QString id;
    Scope scope = Scope::Node;
    QVector<quint8> classes;   //!< of components that it is for; empty: all nodes
    QVector<RuleLoop> loops;   //!< at most Evaluation::mostLoops, the outer one first
    QVector<Expression> needs; //!< what has to be read besides the conditions
    Expression when;           //!< empty: always
    QVector<RuleCase> cases;   //!< one at least
    Take take = Take::All;     //!< whether a case is looked at when one before it was found
};
