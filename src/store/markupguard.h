// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! Watches XML text on its way to the parser and finds what would make the parser's work grow beyond bounds.
 *
 *  The parser compares every attribute of a tag with every other one, adds those that a document type declares to each
 *  tag, and older versions of it expand entities without a limit; none of this can be stopped once the text is in. No
 *  exchange file has entities, declared attributes or more than three attributes to a tag.
 *
 *  Only attributes count: comments, texts, CDATA sections and processing instructions may hold what they like. In a
 *  document with a document type, which no exchange file has, all quotation marks count.
 */
class MarkupGuard
{
public:
    static constexpr int maximumAttributes = 32; //!< of one tag

    explicit MarkupGuard(const QString &text)
        : m_text(text)
    {
    }

    /*! Looks at the characters from the last position on up to \a end; returns where harmless text ends,
     *  which is \a end when all of it is harmless. The answer for a text does not depend on the pieces it is
     *  looked at in.
     */
    int check(int end);

    bool isStopped() const { return m_isStopped; }

private:
    enum class Place : quint8 { Text, Tag, Value, Comment, CharacterData, Instruction, DocumentType };

    void look(QChar character);
    void beginMarkup();
    void lookAtDocumentType(QChar character);
    void countQuote();
    void leaveAt(QLatin1String end);
    bool isAt(QLatin1String words) const;

    const QString &m_text;
    int m_position = 0;
    int m_quotes = 0; // since the last '<'
    Place m_place = Place::Text;
    QChar m_valueEnd; // in a value: the quotation mark that ends it
    bool m_isStopped = false;
};
