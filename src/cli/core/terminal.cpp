// SPDX-License-Identifier: MIT
#include "terminal.h"

namespace {

struct CharacterRange
{
    ushort first;
    ushort last;
};

constexpr CharacterRange actingCharacters[] = {
    {0x0000, 0x0008}, // C0 up to the tabulator
    {0x000B, 0x001F}, // C0 after the line feed
    {0x007F, 0x009F}, // DEL and C1
    {0x061C, 0x061C}, // Arabic letter mark
    {0x200E, 0x200F}, // marks of direction
    {0x2028, 0x202E}, // line and paragraph separators, embeddings and overrides of direction
    {0x2066, 0x2069}, // isolates of direction
};

bool acts(QChar character)
{
    for (const CharacterRange &range : actingCharacters) {
        if (character.unicode() >= range.first && character.unicode() <= range.last)
            return true;
    }
    return false;
}

} // namespace

QString Terminal::visible(const QString &text)
{
    QString shown;
    shown.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        const bool endsLine = character == QLatin1Char('\r') && text.mid(i + 1, 1) == QLatin1String("\n");
        if (endsLine)
            continue; // the line feed that follows ends it
        if (acts(character))
            shown += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        else
            shown += character;
    }
    return shown;
}
