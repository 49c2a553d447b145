// SPDX-License-Identifier: MIT
#pragma once

#include "fact.h"
#include "operand.h"

#include <canopen/objectkey.h>

#include <QVector>

class Evaluation;

/*! An object as a rule names it: the sub-index may be the number of a loop, the object may be a loop's own. */
struct ObjectReference
{
    quint16 index = 0;
    quint8 subIndex = 0;
    int subLoop = -1;    //!< the loop whose number is the sub-index; -1: subIndex
    int objectLoop = -1; //!< the loop whose object it is ("these"); -1: index
};

/*! A formula of a rule, ready to be evaluated; made by ExpressionParser.
 *
 *  The logic has three values. What a device does not have makes a comparison absent, what was not read or cannot be calculated makes it unknown;
 *  "and" and "or" come to a result all the same where the other side decides.
 */
class Expression
{
public:
    enum class Operation : quint8 {
        Number,
        LoopNumber, //!< of the loop `argument`
        Object,
        FactValue,
        Negate,
        Not,
        And,
        Or,
        Add,
        Subtract,
        Multiply,
        Divide,
        Less,
        LessOrEqual,
        Greater,
        GreaterOrEqual,
        Equal,
        NotEqual,
        Absolute,
        Minimum,
        Maximum,
        Bit,     //!< bit(value, number)
        Bits,    //!< bits(value, first, last)
        Signed,  //!< signed(value): what was read without its sign
        Default, //!< default(value, otherwise): when it is absent
        Has,     //!< has(object)
        // Of all sub-indices of an object
        LowestOf,
        HighestOf,
        SumOf,
        CountOf,
        SpreadOf,
        MedianOf,
        LowestAt, //!< the sub-index of the lowest
        HighestAt,
    };

    /*! A step: its operands are earlier steps. */
    struct Step
    {
        Operation operation = Operation::Number;
        double number = 0;
        Fact fact = Fact::NodeId;
        ObjectReference object;
        QVector<int> operands;
    };

    /*! Adds a step; returns its position. The last one is the result. */
    int append(const Step &step);
    bool isEmpty() const { return m_steps.isEmpty(); }

    Operand evaluate(Evaluation &evaluation) const;

    /*! The object, when the expression is nothing but one. */
    const ObjectReference *asObject() const;
    /*! The fact, when the expression is nothing but one. */
    std::optional<Fact> asFact() const;
    /*! Whether it speaks of a text, with which nothing can be calculated. */
    bool hasTextFact() const;
    /*! Whether it asks a device for an object. */
    bool hasObject() const;

private:
    Operand evaluate(int position, Evaluation &evaluation) const;
    Operand logic(const Step &step, Evaluation &evaluation) const;
    Operand choice(const Step &step, Evaluation &evaluation) const;
    Operand arithmetic(const Step &step, Evaluation &evaluation) const;

    QVector<Step> m_steps;
};
