// SPDX-License-Identifier: MIT
#pragma once

#include "markupguard.h"

#include <QXmlStreamReader>

/*! The end of the piece of about \a size characters that starts at \a start.
 *
 *  It is the start of a tag, so that the parser sees all that it looks at together in one piece. Half
 *  surrogate pairs, zeroes and byte order marks would be left out or taken for something else at the end of a
 *  piece.
 */
int chunkEnd(const QString &text, int start, int size);

/*! The attribute as a number: decimal, "0x" hexadecimal or "0" octal; 0 when it is none or not there. */
uint numberOf(const QXmlStreamAttributes &attributes, const char *name);

/*! Reads the text of an exchange file token by token without holding a second copy of it, and refuses what would never
 *  end or is far beyond any vehicle.
 */
class ExchangeReader
{
public:
    static constexpr int maximumDepth = 256;      //!< of elements; an exchange file has 4 levels
    static constexpr int maximumNamespaces = 256; //!< declared in one document; an exchange file has none
    /*! Nodes other than 0 in one document: each that a bus can have, eight times. */
    static constexpr int maximumNodes = 8 * 127;
    /*! Starts and ends of nodes in one document: 127 nodes, written and read again eight times, make 32512. */
    static constexpr int maximumNodeTags = 32768;

    /*! Why a document was refused. */
    enum class Refusal : quint8 {
        None,
        Markup, //!< entities, or far too many attributes, levels or namespaces
        Nodes,  //!< far too many nodes
    };

    ExchangeReader(const QString &text, int chunkSize)
        : m_text(text)
        , m_guard(text)
        , m_chunkSize(chunkSize)
    {
    }

    const QXmlStreamReader &xml() const { return m_xml; }

    /*! Whether nothing comes any more: the end of the document, an error, or something refused. */
    bool atEnd() const { return m_isAtEnd || m_refusal != Refusal::None; }

    bool isComplete() const
    {
        return refusal() == Refusal::None && !m_guard.isStopped() && !m_xml.hasError();
    }

    /*! Why the text was refused, when it is not just wrong. The current token is what was refused. */
    Refusal refusal() const;

    /*! Goes on to the next start or end of an element, the end of the document or an error. */
    void readNextTag();

private:
    bool resume();
    void feed();
    void checkStartTag();
    void checkNodeCount();

    const QString &m_text;
    MarkupGuard m_guard;
    QXmlStreamReader m_xml;
    int m_chunkSize;
    int m_position = 0; // of the text not yet fed
    int m_depth = 0;
    int m_namespaces = 0;
    int m_nodes = 0;
    int m_nodeTags = 0;
    bool m_hasRoot = false;
    bool m_isAtEnd = false;
    Refusal m_refusal = Refusal::None;
};
