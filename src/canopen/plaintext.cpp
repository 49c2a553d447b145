// SPDX-License-Identifier: MIT
#include "plaintext.h"

#include "hexadecimal.h"

#include <QVector>

namespace CanOpen {

namespace {

bool isPlain(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return true;
    }
}

QString escaped(uint character)
{
    return character <= 0xFFFF ? QStringLiteral("\\u") + hexadecimal(character, 4)
                               : QStringLiteral("\\u{%1}").arg(hexadecimal(character));
}

} // namespace

QString plainText(const QString &text)
{
    QString plain;
    plain.reserve(text.size());
    for (int place = 0; place < text.size(); ++place) {
        const QChar first = text.at(place);
        const bool isPair
            = first.isHighSurrogate() && place + 1 < text.size() && text.at(place + 1).isLowSurrogate();
        const uint character = isPair ? QChar::surrogateToUcs4(first, text.at(place + 1)) : first.unicode();
        plain += isPlain(character) ? text.mid(place, isPair ? 2 : 1) : escaped(character);
        place += isPair ? 1 : 0;
    }
    return plain;
}

} // namespace CanOpen
