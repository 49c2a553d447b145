// SPDX-License-Identifier: MIT
#include "markupguard.h"

namespace {

bool isQuote(QChar character)
{
    return character == QLatin1Char('"') || character == QLatin1Char('\'');
}

} // namespace

int MarkupGuard::check(int end)
{
    for (; m_position < end; ++m_position) {
        look(m_text.at(m_position));
        if (m_isStopped)
            break;
    }
    return m_position;
}

void MarkupGuard::look(QChar character)
{
    switch (m_place) {
    case Place::Text:
        if (character == QLatin1Char('<'))
            beginMarkup();
        break;
    case Place::Tag:
        if (character == QLatin1Char('<')) {
            beginMarkup(); // an error, at which the parser stops
        } else if (character == QLatin1Char('>')) {
            m_place = Place::Text;
        } else if (isQuote(character)) {
            countQuote();
            m_valueEnd = character;
            m_place = Place::Value;
        }
        break;
    case Place::Value:
        if (character == m_valueEnd) {
            countQuote();
            m_place = Place::Tag;
        }
        break;
    case Place::Comment:
        leaveAt(QLatin1String("-->"));
        break;
    case Place::CharacterData:
        leaveAt(QLatin1String("]]>"));
        break;
    case Place::Instruction:
        leaveAt(QLatin1String("?>"));
        break;
    case Place::DocumentType:
        lookAtDocumentType(character);
        break;
    }
}

void MarkupGuard::beginMarkup()
{
    struct Beginning
    {
        const char *words;
        Place place;
    };
    static constexpr Beginning beginnings[] = {
        {"<!--", Place::Comment},
        {"<![CDATA[", Place::CharacterData},
        {"<!DOCTYPE", Place::DocumentType},
        {"<?", Place::Instruction},
    };

    m_quotes = 0;
    m_place = Place::Tag;
    for (const Beginning &beginning : beginnings) {
        const QLatin1String words(beginning.words);
        if (!isAt(words))
            continue;
        m_place = beginning.place;
        m_position += words.size() - 1; // "<!-->" does not end the comment that it begins
        return;
    }
}

/*! To the end of the document: where a document type ends is not worth finding out. */
void MarkupGuard::lookAtDocumentType(QChar character)
{
    if (character == QLatin1Char('<')) {
        m_quotes = 0;
        m_isStopped = isAt(QLatin1String("<!ENTITY")) || isAt(QLatin1String("<!ATTLIST"));
    } else if (isQuote(character)) {
        countQuote();
    }
}

void MarkupGuard::countQuote()
{
    ++m_quotes;
    m_isStopped = m_quotes > 2 * maximumAttributes;
}

void MarkupGuard::leaveAt(QLatin1String end)
{
    if (!isAt(end))
        return;
    m_place = Place::Text;
    m_position += end.size() - 1;
}

bool MarkupGuard::isAt(QLatin1String words) const
{
    return m_text.midRef(m_position, words.size()) == words;
}
