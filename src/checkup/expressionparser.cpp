// SPDX-License-Identifier: MIT
#include "expressionparser.h"

namespace {

using Operation = Expression::Operation;

struct Function
{
    const char *name;
    Operation operation;
    int least; // arguments
    int most;
};

constexpr Function functions[] = {
    {"abs", Operation::Absolute, 1, 1},    {"bit", Operation::Bit, 2, 2},
    {"bits", Operation::Bits, 3, 3},       {"signed", Operation::Signed, 1, 1},
    {"default", Operation::Default, 2, 2}, {"has", Operation::Has, 1, 1},
    {"min", Operation::Minimum, 2, 8},     {"max", Operation::Maximum, 2, 8},
};

/*! Functions of all sub-indices of one object. */
constexpr Function aggregates[] = {
    {"min", Operation::LowestOf, 1, 1},      {"max", Operation::HighestOf, 1, 1},
    {"sum", Operation::SumOf, 1, 1},         {"count", Operation::CountOf, 1, 1},
    {"spread", Operation::SpreadOf, 1, 1},   {"median", Operation::MedianOf, 1, 1},
    {"lowestAt", Operation::LowestAt, 1, 1}, {"highestAt", Operation::HighestAt, 1, 1},
};

struct Constant
{
    const char *name;
    double number;
};

/*! NMT states by their heartbeat codes (CiA 301). */
constexpr Constant constants[] = {
    {"true", 1}, {"false", 0}, {"bootUp", 0}, {"stopped", 4}, {"operational", 5}, {"preOperational", 127},
};

template<typename Row, std::size_t size>
const Row *find(const Row (&table)[size], const QString &name)
{
    for (const Row &row : table) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}

const QLatin1String theseWord("these");

bool isWordCharacter(QChar character)
{
    return character.unicode() < 0x80 && (character.isLetterOrNumber() || character == QLatin1Char('_'));
}

/*! The index of a word like "6040h". */
std::optional<quint16> indexOf(const QString &word)
{
    constexpr int length = 5;
    if (word.size() != length || !word.endsWith(QLatin1Char('h')))
        return std::nullopt;
    bool isNumber = false;
    const uint index = word.left(length - 1).toUInt(&isNumber, 16);
    return isNumber ? std::optional<quint16>(static_cast<quint16>(index)) : std::nullopt;
}

} // namespace

std::optional<Expression> ExpressionParser::parse(const QString &text, QString *errorMessage)
{
    begin(text);
    if (!isFailed())
        parseOr();
    if (!isFailed() && !token().text.isEmpty())
        fail(tr("\"%1\" was not expected").arg(token().text));
    *errorMessage = m_error;
    return isFailed() ? std::nullopt : std::optional<Expression>(m_expression);
}

std::optional<ObjectReference> ExpressionParser::parseObject(const QString &text, QString *errorMessage)
{
    begin(text);
    std::optional<ObjectReference> object;
    if (!isFailed())
        object = takeObject();
    if (!isFailed() && !token().text.isEmpty())
        fail(tr("\"%1\" was not expected").arg(token().text));
    *errorMessage = m_error;
    return isFailed() ? std::nullopt : object;
}

void ExpressionParser::begin(const QString &text)
{
    m_tokens.clear();
    m_next = 0;
    m_nesting = 0;
    m_expression = Expression();
    m_error.clear();
    if (text.size() > longestText)
        m_error = tr("A formula has at most %1 characters").arg(longestText);
    else
        tokenize(text);
}

bool ExpressionParser::tokenize(const QString &text)
{
    int i = 0;
    while (i < text.size()) {
        const int start = i;
        if (text.at(i).isSpace()) {
            ++i;
            continue;
        }
        if (isWordCharacter(text.at(i))) {
            while (i < text.size() && isWordCharacter(text.at(i)))
                ++i;
        } else {
            ++i;
            const bool isPair = i < text.size() && text.at(i) == QLatin1Char('=')
                                && QStringLiteral("<>=!").contains(text.at(start));
            i += isPair ? 1 : 0;
        }
        m_tokens.append({text.mid(start, i - start), start + 1});
    }
    m_tokens.append({QString(), text.size() + 1});
    return true;
}

bool ExpressionParser::takes(const char *text)
{
    if (isFailed() || token().text != QLatin1String(text))
        return false;
    ++m_next;
    return true;
}

int ExpressionParser::fail(const QString &problem)
{
    if (m_error.isEmpty())
        m_error = tr("%1, at character %2").arg(problem).arg(token().position);
    return 0;
}

int ExpressionParser::add(Operation operation, const QVector<int> &operands)
{
    Expression::Step step;
    step.operation = operation;
    step.operands = operands;
    return m_expression.append(step);
}

int ExpressionParser::chain(Operation operation, int left, int (ExpressionParser::*parseRight)())
{
    const int right = (this->*parseRight)();
    return add(operation, {left, right});
}

int ExpressionParser::parseOr()
{
    if (++m_nesting > deepestNesting)
        return fail(tr("There are too many parentheses"));
    int left = parseAnd();
    while (takes("or"))
        left = chain(Operation::Or, left, &ExpressionParser::parseAnd);
    --m_nesting;
    return left;
}

int ExpressionParser::parseAnd()
{
    int left = parseNot();
    while (takes("and"))
        left = chain(Operation::And, left, &ExpressionParser::parseNot);
    return left;
}

int ExpressionParser::parseNot()
{
    int count = 0;
    while (takes("not"))
        ++count;
    const int operand = parseComparison();
    return count == 0 ? operand
                      : add(Operation::Not, {count % 2 != 0 ? operand : add(Operation::Not, {operand})});
}

int ExpressionParser::parseComparison()
{
    const int left = parseSum();
    if (takes("<"))
        return chain(Operation::Less, left, &ExpressionParser::parseSum);
    if (takes("<="))
        return chain(Operation::LessOrEqual, left, &ExpressionParser::parseSum);
    if (takes("==") || takes("="))
        return chain(Operation::Equal, left, &ExpressionParser::parseSum);
    if (takes("!="))
        return chain(Operation::NotEqual, left, &ExpressionParser::parseSum);
    if (takes(">"))
        return chain(Operation::Greater, left, &ExpressionParser::parseSum);
    if (takes(">="))
        return chain(Operation::GreaterOrEqual, left, &ExpressionParser::parseSum);
    return left;
}

int ExpressionParser::parseSum()
{
    int left = parseProduct();
    for (;;) {
        if (takes("+"))
            left = chain(Operation::Add, left, &ExpressionParser::parseProduct);
        else if (takes("-"))
            left = chain(Operation::Subtract, left, &ExpressionParser::parseProduct);
        else
            return left;
    }
}

int ExpressionParser::parseProduct()
{
    int left = parseSign();
    for (;;) {
        if (takes("*"))
            left = chain(Operation::Multiply, left, &ExpressionParser::parseSign);
        else if (takes("/"))
            left = chain(Operation::Divide, left, &ExpressionParser::parseSign);
        else
            return left;
    }
}

int ExpressionParser::parseSign()
{
    bool isNegative = false;
    while (takes("-"))
        isNegative = !isNegative;
    const int operand = parsePrimary();
    return isNegative ? add(Operation::Negate, {operand}) : operand;
}

int ExpressionParser::parsePrimary()
{
    if (isFailed())
        return 0;
    const QString word = token().text;
    if (word.isEmpty())
        return fail(tr("Something is missing"));
    if (takes("("))
        return parseParenthesis();
    if (isObjectAhead())
        return parseObjectStep();
    if (word.at(0).isDigit())
        return parseNumber();
    if (!isWordCharacter(word.at(0)))
        return fail(tr("\"%1\" was not expected").arg(word));
    if (m_tokens.at(m_next + 1).text == QLatin1String("("))
        return parseFunction();
    return parseFact();
}

int ExpressionParser::parseParenthesis()
{
    const int inner = parseOr();
    if (!isFailed() && !takes(")"))
        return fail(tr("A closing parenthesis is missing"));
    return inner;
}

int ExpressionParser::parseNumber()
{
    QString text = token().text;
    const QString fraction = m_next + 2 < m_tokens.size() ? m_tokens.at(m_next + 2).text : QString();
    const bool isFraction = m_tokens.at(m_next + 1).text == QLatin1String(".") && !fraction.isEmpty()
                            && fraction.at(0).isDigit();
    if (isFraction)
        text += QLatin1Char('.') + fraction;
    bool isNumber = false;
    Expression::Step step;
    step.number = text.startsWith(QLatin1String("0x"))
                      ? static_cast<double>(text.mid(2).toUInt(&isNumber, 16))
                      : text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(step.number))
        return fail(tr("\"%1\" is no number").arg(text));
    m_next += isFraction ? 3 : 1;
    return m_expression.append(step);
}

bool ExpressionParser::isObjectAhead() const
{
    return indexOf(token().text) || token().text == theseWord;
}

int ExpressionParser::parseObjectStep()
{
    const std::optional<ObjectReference> object = takeObject();
    if (!object)
        return 0;
    Expression::Step step;
    step.operation = Operation::Object;
    step.object = *object;
    return m_expression.append(step);
}

std::optional<ObjectReference> ExpressionParser::takeObject()
{
    ObjectReference object;
    if (const std::optional<quint16> index = indexOf(token().text))
        object.index = *index;
    else if (token().text == theseWord)
        for (int i = 0; i < m_loops.size(); ++i)
            object.objectLoop = m_loops.at(i).hasObject ? i : object.objectLoop;
    if (object.index == 0 && object.objectLoop < 0) {
        fail(tr("\"%1\" is no object; one is written like 6040h or 6040h.1").arg(token().text));
        return std::nullopt;
    }
    ++m_next;
    if (takes(".") && !takeSubIndex(&object))
        return std::nullopt;
    return object;
}

bool ExpressionParser::takeSubIndex(ObjectReference *object)
{
    const QString word = token().text;
    object->subLoop = loopNumbered(word);
    bool isNumber = true;
    if (object->subLoop < 0) {
        const uint sub = word.toUInt(&isNumber);
        isNumber = isNumber && sub <= 0xFF;
        object->subIndex = static_cast<quint8>(sub);
    }
    if (isNumber)
        ++m_next;
    else
        fail(tr("\"%1\" is no sub-index; it is a number up to 255, or the name of a loop").arg(word));
    return isNumber;
}

int ExpressionParser::loopNumbered(const QString &name) const
{
    for (int i = 0; i < m_loops.size(); ++i) {
        if (m_loops.at(i).name == name)
            return i;
    }
    return -1;
}

int ExpressionParser::parseFact()
{
    Expression::Step step;
    const QString word = token().text;
    step.object.subLoop = loopNumbered(word);
    if (step.object.subLoop >= 0) {
        step.operation = Operation::LoopNumber;
    } else if (const Constant *constant = find(constants, word)) {
        step.number = constant->number;
    } else {
        const bool isDotted
            = m_next + 2 < m_tokens.size() && m_tokens.at(m_next + 1).text == QLatin1String(".");
        const QString name = isDotted ? word + QLatin1Char('.') + m_tokens.at(m_next + 2).text : word;
        const std::optional<Fact> fact = findFact(name);
        if (!fact)
            return fail(tr("\"%1\" is not known").arg(name));
        step.operation = Operation::FactValue;
        step.fact = *fact;
        m_next += 2;
    }
    ++m_next;
    return m_expression.append(step);
}

/*! Whether the argument that comes is an object and nothing else: "(6165h)". */
bool ExpressionParser::isObjectAlone() const
{
    return m_next + 2 < m_tokens.size() && isObjectAhead()
           && m_tokens.at(m_next + 1).text == QLatin1String(")");
}

int ExpressionParser::parseFunction()
{
    const QString name = token().text;
    const Function *function = find(functions, name);
    const Function *aggregate = find(aggregates, name);
    if (function == nullptr && aggregate == nullptr)
        return fail(tr("There is no function \"%1\"").arg(name));
    m_next += 2;
    if (aggregate != nullptr && (function == nullptr || isObjectAlone()))
        return parseAggregate(aggregate->operation);
    Expression::Step step;
    step.operation = function->operation;
    return parseArguments(&step, function->least, function->most);
}

int ExpressionParser::parseAggregate(Operation operation)
{
    if (!isObjectAlone())
        return fail(tr("An object alone is wanted, of which all sub-indices are taken"));
    Expression::Step step;
    step.operation = operation;
    step.object = takeObject().value_or(ObjectReference());
    takes(")");
    return m_expression.append(step);
}

int ExpressionParser::parseArguments(Expression::Step *step, int least, int most)
{
    do {
        step->operands.append(parseOr());
    } while (takes(","));
    if (!isFailed() && !takes(")"))
        return fail(tr("A closing parenthesis is missing"));
    if (!isFailed() && (step->operands.size() < least || step->operands.size() > most))
        return fail(tr("These are too few or too many arguments"));
    if (isFailed() || step->operands.size() <= 2 || step->operation == Operation::Bits)
        return m_expression.append(*step);
    int left = step->operands.first(); // min() and max() of more than two
    for (int i = 1; i < step->operands.size(); ++i)
        left = add(step->operation, {left, step->operands.at(i)});
    return left;
}
