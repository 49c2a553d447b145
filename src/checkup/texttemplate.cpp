// SPDX-License-Identifier: MIT
#include "texttemplate.h"

#include "evaluation.h"
#include "objectwords.h"

#include <canopen/emergency.h>
#include <canopen/plaintext.h>
#include <snapshot/snapshot.h>

namespace {

constexpr QLatin1Char opening('{');
constexpr QLatin1Char closing('}');
const QLatin1String hexFormat("hex");
const QLatin1String nameFormat("name");
const QLatin1String emergencyFormat("emergency");
const QLatin1String errorRegisterFormat("errorRegister");
const QLatin1String nothing("?");
constexpr double largestNumber = 9.0e15; // whole numbers that a double holds exactly

/*! "2310h" in "hex4"; empty when \a format is none of these. */
QString hexText(double number, const QString &format)
{
    const int digits = format.startsWith(hexFormat) ? format.mid(hexFormat.size()).toInt() : 0;
    if (digits < 1 || digits > 16 || number < 0 || number > largestNumber)
        return QString();
    return QString::number(static_cast<qulonglong>(number), 16)
               .toUpper()
               .rightJustified(digits, QLatin1Char('0'))
           + QLatin1Char('h');
}

/*! The words of CiA 301, in the language of the program; empty when \a format is none of these. */
QString protocolWords(double number, const QString &format)
{
    if (format == emergencyFormat && number >= 0 && number <= 0xFFFF)
        return CanOpen::emergencyText(static_cast<quint16>(number));
    if (format == errorRegisterFormat && number >= 0 && number < 8)
        return CanOpen::errorRegisterBitText(static_cast<int>(number));
    return QString();
}

QString wholeNumber(double number)
{
    return QString::number(number, 'f', 0);
}

} // namespace

std::optional<TextTemplate>
TextTemplate::parse(const QString &text, const QVector<ExpressionParser::Loop> &loops, QString *errorMessage)
{
    if (text.size() > longestText) {
        *errorMessage = tr("A text has at most %1 characters").arg(longestText);
        return std::nullopt;
    }
    TextTemplate result;
    Part part;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != opening) {
            part.text += text.at(i);
        } else if (i + 1 < text.size() && text.at(i + 1) == opening) {
            part.text += opening;
            ++i;
        } else {
            const int end = text.indexOf(closing, i);
            if (end < 0)
                *errorMessage = tr("A brace is opened and not closed, at character %1").arg(i + 1);
            if (end < 0 || !parsePlace(text.mid(i + 1, end - i - 1), loops, &part, errorMessage))
                return std::nullopt;
            result.m_parts.append(part);
            part = Part();
            i = end;
        }
    }
    result.m_parts.append(part);
    return result;
}

bool TextTemplate::parsePlace(const QString &place, const QVector<ExpressionParser::Loop> &loops, Part *part,
                              QString *errorMessage)
{
    part->written = place;
    part->format = place.section(QLatin1Char('|'), 1).trimmed();
    QString problem;
    const std::optional<Expression> expression
        = ExpressionParser(loops).parse(place.section(QLatin1Char('|'), 0, 0), &problem);
    if (expression && (!expression->hasTextFact() || expression->asFact())) {
        part->expression = *expression;
        return true;
    }
    *errorMessage
        = QStringLiteral("\"{%1}\": %2").arg(place, expression ? tr("A text is no number") : problem);
    return false;
}

QString TextTemplate::fill(Evaluation &evaluation, const WordTables &words, const QString &language) const
{
    QString text;
    for (const Part &part : m_parts) {
        text += part.text;
        if (!part.expression.isEmpty())
            text += fillPlace(part, evaluation, words, language);
    }
    return text;
}

QString TextTemplate::fillPlace(const Part &part, Evaluation &evaluation, const WordTables &words,
                                const QString &language)
{
    const std::optional<Fact> fact = part.expression.asFact();
    if (fact && isTextFact(*fact))
        return CanOpen::plainText(evaluation.factText(*fact));
    const ObjectReference *object = part.expression.asObject();
    if (object != nullptr && part.format == nameFormat)
        return ObjectWords::name(evaluation.keyOf(*object));
    if (object != nullptr && part.format.isEmpty())
        return objectText(*object, evaluation);
    const Operand result = part.expression.evaluate(evaluation);
    if (!result.isNumber())
        return nothing;
    const auto table = words.constFind(part.format);
    if (table != words.cend() && std::abs(result.number) < largestNumber) {
        const auto code = static_cast<qint64>(result.number);
        return table->find(code, language).value_or(QString::number(code));
    }
    const QString protocol = protocolWords(result.number, part.format);
    if (!protocol.isEmpty())
        return protocol;
    const QString hex = hexText(result.number, part.format);
    const QString unit = hex.isEmpty() ? ObjectWords::inUnit(result.number, part.format) : hex;
    return unit.isEmpty() ? wholeNumber(result.number) : unit;
}

QString TextTemplate::objectText(const ObjectReference &object, const Evaluation &evaluation)
{
    const SnapshotEntry *entry = evaluation.entry(evaluation.keyOf(object));
    return entry != nullptr && entry->hasValue() ? ObjectWords::value(entry->key, entry->value)
                                                 : QString(nothing);
}

QStringList TextTemplate::places() const
{
    QStringList places;
    for (const Part &part : m_parts) {
        if (!part.written.isEmpty())
            places.append(part.written);
    }
    places.sort();
    return places;
}
