// SPDX-License-Identifier: MIT
#include "markupguard.h"

int MarkupGuard::check(int end)
{
    const QChar *characters = m_text.constData();
    for (; m_position < end && !m_stopped; ++m_position) {
        const ushort character = characters[m_position].unicode();
        if (character == '<') {
            m_quotes = 0;
            m_hasDocumentType = m_hasDocumentType || startsWith(m_position, QLatin1String("<!DOCTYPE"));
            m_stopped = m_hasDocumentType && startsWith(m_position, QLatin1String("<!ENTITY"));
        } else if (character == '"' || character == '\'') {
            ++m_quotes;
            m_stopped = m_quotes > 2 * MaximumAttributes;
        }
        if (m_stopped)
            break;
    }
    return m_position;
}

bool MarkupGuard::startsWith(int position, QLatin1String words) const
{
    return m_text.midRef(position, words.size()) == words;
}
