// SPDX-License-Identifier: MIT
#include "exchangereader.h"

int chunkEnd(const QString &text, int start, int size)
{
    const auto isPlain = [](QChar character) {
        return !character.isSurrogate() && !character.isNull() && character != QChar(QChar::ByteOrderMark);
    };
    int end = start;
    do {
        end = text.indexOf(QLatin1Char('<'), end == start ? start + size : end + 1);
    } while (end > start && !isPlain(text.at(end - 1)));
    return end > start ? end : text.size();
}

uint numberOf(const QXmlStreamAttributes &attributes, const char *name)
{
    constexpr int automaticBase = 0;
    return attributes.value(QLatin1String(name)).toUInt(nullptr, automaticBase);
}

ExchangeReader::Refusal ExchangeReader::refusal() const
{
    const bool isGuardStop
        = m_guard.isStopped() && m_xml.error() == QXmlStreamReader::PrematureEndOfDocumentError;
    return m_refusal == Refusal::None && isGuardStop ? Refusal::Markup : m_refusal;
}

void ExchangeReader::feed()
{
    const int end = m_guard.check(chunkEnd(m_text, m_position, m_chunkSize));
    m_xml.addData(QString::fromRawData(m_text.constData() + m_position, end - m_position));
    m_position = end;
}

/*! Gives the parser what it still misses. Returns false when there is no more, or when an error stopped it.
 */
bool ExchangeReader::resume()
{
    if (m_xml.hasError() && m_xml.error() != QXmlStreamReader::PrematureEndOfDocumentError)
        return false;
    if (m_xml.hasError() && !m_xml.atEnd())
        return true; // the parser reports the end of the piece before once more
    if (m_guard.isStopped() || m_position == m_text.size())
        return false;
    feed();
    return true;
}

void ExchangeReader::readNextTag()
{
    if (m_position == 0)
        feed();
    while (true) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::StartElement:
            checkStartTag();
            return;
        case QXmlStreamReader::EndElement:
            --m_depth;
            checkNodeCount();
            return;
        case QXmlStreamReader::DTD:
            // Not every version of the parser objects to a document type inside the document.
            if (m_hasRoot) {
                m_refusal = Refusal::Markup;
                return;
            }
            break;
        case QXmlStreamReader::EndDocument:
        case QXmlStreamReader::Invalid:
            m_isAtEnd = !resume();
            if (m_isAtEnd)
                return;
            break;
        default:
            break;
        }
    }
}

void ExchangeReader::checkStartTag()
{
    m_hasRoot = true;
    ++m_depth;
    m_namespaces += m_xml.namespaceDeclarations().size();
    if (m_depth > maximumDepth || m_namespaces > maximumNamespaces)
        m_refusal = Refusal::Markup;
    checkNodeCount();
}

void ExchangeReader::checkNodeCount()
{
    if (m_xml.name() != QLatin1String("node"))
        return;
    ++m_nodeTags;
    if ((numberOf(m_xml.attributes(), "nodeid") & 0xFF) != 0)
        ++m_nodes;
    if (m_nodes > maximumNodes || m_nodeTags > maximumNodeTags)
        m_refusal = Refusal::Nodes;
}
