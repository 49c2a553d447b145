// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! Watches XML text on its way to the parser and finds what would make the parser's work grow beyond bounds.
 *
 *  The parser compares every attribute of a tag with every other one, and older versions of it expand
 *  entities without a limit; neither can be stopped once the text is in. No exchange file has entities or
 *  more than three attributes to a tag.
 */
class MarkupGuard
{
public:
    static constexpr int MaximumAttributes = 32; //!< of one tag

    explicit MarkupGuard(const QString &text)
        : m_text(text)
    {
    }

    /*! Looks at the characters from the last position on up to \a end; returns where harmless text ends,
     *  which is \a end when all of it is harmless. The answer for a text does not depend on the pieces it is
     *  looked at in.
     */
    int check(int end);

    bool isStopped() const { return m_stopped; }

private:
    bool startsWith(int position, QLatin1String words) const;

    const QString &m_text;
    int m_position = 0;
    int m_quotes = 0; // since the last '<'
    bool m_hasDocumentType = false;
    bool m_stopped = false;
};
