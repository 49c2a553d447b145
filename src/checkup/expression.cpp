// SPDX-License-Identifier: MIT
#include "expression.h"

#include "evaluation.h"

#include <algorithm>

namespace {

using Operation = Expression::Operation;

constexpr double bits16 = 65536.0;
constexpr double bits32 = 4294967296.0;
constexpr double bits63 = 9223372036854775808.0;

/*! What has no result, as a division by zero, leaves open what it would have been. */
Operand finite(double number, Evaluation &evaluation)
{
    if (std::isfinite(number))
        return Operand::of(number);
    evaluation.noteIncalculable();
    return Operand::unknown();
}

/*! Bits first to last of a whole number; nothing of a negative, a huge or a broken one. */
Operand bitsOf(double number, double first, double last)
{
    if (number < 0 || number >= bits63 || first < 0 || last < first || last > 62)
        return Operand::absent();
    const quint64 moved = static_cast<quint64>(number) >> static_cast<int>(first);
    const int width = static_cast<int>(last) - static_cast<int>(first) + 1;
    return Operand::of(static_cast<double>(moved & ((quint64(1) << width) - 1)));
}

/*! A number of 16 or 32 bits that was read without its sign. */
double withSign(double number)
{
    if (number >= bits16 / 2 && number < bits16)
        return number - bits16;
    if (number >= bits32 / 2 && number < bits32)
        return number - bits32;
    return number;
}

double medianOf(QVector<double> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    const int middle = numbers.size() / 2;
    return numbers.size() % 2 != 0 ? numbers.at(middle) : (numbers.at(middle - 1) + numbers.at(middle)) / 2;
}

double sumOf(const QVector<double> &numbers)
{
    double sum = 0;
    for (const double number : numbers)
        sum += number;
    return sum;
}

Operand ofAll(Operation operation, const ObjectNumbers &all, Evaluation &evaluation)
{
    if (all.isUnknown)
        return Operand::unknown();
    if (operation == Operation::CountOf)
        return Operand::of(all.numbers.size());
    if (all.numbers.isEmpty())
        return Operand::absent();
    const auto [lowest, highest] = std::minmax_element(all.numbers.begin(), all.numbers.end());
    switch (operation) {
    case Operation::LowestOf:
        return Operand::of(*lowest);
    case Operation::HighestOf:
        return Operand::of(*highest);
    case Operation::SumOf:
        return finite(sumOf(all.numbers), evaluation);
    case Operation::SpreadOf:
        return finite(*highest - *lowest, evaluation);
    case Operation::MedianOf:
        return finite(medianOf(all.numbers), evaluation);
    case Operation::LowestAt:
        return Operand::of(all.subIndices.at(static_cast<int>(lowest - all.numbers.begin())));
    default:
        return Operand::of(all.subIndices.at(static_cast<int>(highest - all.numbers.begin())));
    }
}

Operand calculate(Operation operation, double a, double b, double c, Evaluation &evaluation)
{
    switch (operation) {
    case Operation::Negate:
        return Operand::of(-a);
    case Operation::Not:
        return Operand::truth(std::fpclassify(a) == FP_ZERO);
    case Operation::Add:
        return finite(a + b, evaluation);
    case Operation::Subtract:
        return finite(a - b, evaluation);
    case Operation::Multiply:
        return finite(a * b, evaluation);
    case Operation::Divide:
        return finite(a / b, evaluation);
    case Operation::Less:
        return Operand::truth(a < b);
    case Operation::LessOrEqual:
        return Operand::truth(a <= b);
    case Operation::Greater:
        return Operand::truth(a > b);
    case Operation::GreaterOrEqual:
        return Operand::truth(a >= b);
    case Operation::Equal:
        return Operand::truth(!(a < b) && !(b < a));
    case Operation::NotEqual:
        return Operand::truth(a < b || b < a);
    case Operation::Absolute:
        return Operand::of(std::abs(a));
    case Operation::Minimum:
        return Operand::of(std::min(a, b));
    case Operation::Maximum:
        return Operand::of(std::max(a, b));
    case Operation::Bit:
        return bitsOf(a, b, b);
    case Operation::Bits:
        return bitsOf(a, b, c);
    case Operation::Signed:
        return Operand::of(withSign(a));
    default:
        return Operand::absent();
    }
}

} // namespace

int Expression::append(const Step &step)
{
    m_steps.append(step);
    return m_steps.size() - 1;
}

const ObjectReference *Expression::asObject() const
{
    return m_steps.size() == 1 && m_steps.first().operation == Operation::Object ? &m_steps.first().object
                                                                                 : nullptr;
}

std::optional<Fact> Expression::asFact() const
{
    return m_steps.size() == 1 && m_steps.first().operation == Operation::FactValue
               ? std::optional<Fact>(m_steps.first().fact)
               : std::nullopt;
}

bool Expression::hasTextFact() const
{
    return std::any_of(m_steps.begin(), m_steps.end(), [](const Step &step) {
        return step.operation == Operation::FactValue && isTextFact(step.fact);
    });
}

bool Expression::hasObject() const
{
    return std::any_of(m_steps.begin(), m_steps.end(), [](const Step &step) {
        return step.operation == Operation::Object || step.operation >= Operation::LowestOf;
    });
}

Operand Expression::evaluate(Evaluation &evaluation) const
{
    return m_steps.isEmpty() ? Operand::absent() : evaluate(m_steps.size() - 1, evaluation);
}

Operand Expression::evaluate(int position, Evaluation &evaluation) const
{
    const Step &step = m_steps.at(position);
    switch (step.operation) {
    case Operation::Number:
        return Operand::of(step.number);
    case Operation::LoopNumber:
        return Operand::of(evaluation.loopNumber(step.object.subLoop));
    case Operation::Object:
        return evaluation.object(step.object);
    case Operation::FactValue:
        return evaluation.fact(step.fact);
    case Operation::And:
    case Operation::Or:
        return logic(step, evaluation);
    case Operation::Default:
    case Operation::Has:
        return choice(step, evaluation);
    default:
        if (step.operation >= Operation::LowestOf)
            return ofAll(step.operation, evaluation.allOf(step.object), evaluation);
        return arithmetic(step, evaluation);
    }
}

/*! Which side decides: a false one an "and", a true one an "or". Else what is unknown counts for more than what is
 *  absent in an "or", where it might still be true, and for less in an "and", which cannot hold any more.
 */
Operand Expression::logic(const Step &step, Evaluation &evaluation) const
{
    const bool isAnd = step.operation == Operation::And;
    const Operand left = evaluate(step.operands.at(0), evaluation);
    if (isAnd ? left.isFalse() : left.isTrue())
        return Operand::truth(!isAnd);
    const Operand right = evaluate(step.operands.at(1), evaluation);
    if (isAnd ? right.isFalse() : right.isTrue())
        return Operand::truth(!isAnd);
    if (left.isNumber() && right.isNumber())
        return Operand::truth(isAnd);
    const Operand::Kind first = isAnd ? Operand::Kind::Absent : Operand::Kind::Unknown;
    return left.kind == first || right.kind == first ? Operand{first, 0}
                                                     : (isAnd ? Operand::unknown() : Operand::absent());
}

Operand Expression::choice(const Step &step, Evaluation &evaluation) const
{
    const Operand value = evaluate(step.operands.at(0), evaluation);
    if (step.operation == Operation::Has)
        return value.isUnknown() ? value : Operand::truth(value.isNumber());
    return value.kind == Operand::Kind::Absent ? evaluate(step.operands.at(1), evaluation) : value;
}

Operand Expression::arithmetic(const Step &step, Evaluation &evaluation) const
{
    constexpr int mostOperands = 3;
    double numbers[mostOperands] = {};
    bool isUnknown = false;
    for (int i = 0; i < step.operands.size() && i < mostOperands; ++i) {
        const Operand operand = evaluate(step.operands.at(i), evaluation);
        if (operand.kind == Operand::Kind::Absent)
            return operand; // whatever the others are
        isUnknown = isUnknown || operand.isUnknown();
        numbers[i] = operand.number;
    }
    return isUnknown ? Operand::unknown()
                     : calculate(step.operation, numbers[0], numbers[1], numbers[2], evaluation);
}
