// SPDX-License-Identifier: MIT
#include "exchangescanner.h"

#include "nodestore.h"

#include <QLatin1String>
#include <QString>

namespace {

constexpr int mostNodes
    = 256; // elements; a vehicle has 127, a file that was read and written again twice as many
constexpr int mostValueDigits = 18; // fit into 64 bits
constexpr int mostIdDigits = 3;
constexpr qlonglong decimal = 10;

/*! Walks through a text; nothing is taken unless it is there as a whole. */
class Scanner
{
public:
    explicit Scanner(const QString &text)
        : m_position(text.constData())
        , m_end(text.constData() + text.size())
    {
    }

    bool isAtEnd() const { return m_position == m_end; }

    bool skip(QLatin1String expected)
    {
        if (m_end - m_position < expected.size())
            return false;
        for (int i = 0; i < expected.size(); ++i) {
            if (m_position[i].unicode() != static_cast<uchar>(expected.data()[i]))
                return false;
        }
        m_position += expected.size();
        return true;
    }

    /*! White space as between tags, if there is any. Always true. */
    bool skipBlanks()
    {
        while (!isAtEnd() && isBlank(m_position->unicode()))
            ++m_position;
        return true;
    }

    /*! The text of a date, up to the quote that ends it. */
    bool skipDate()
    {
        while (!isAtEnd() && *m_position != QLatin1Char('"')) {
            const ushort character = m_position->unicode();
            if (character < ' ' || character > '~' || character == '<' || character == '&')
                return false;
            ++m_position;
        }
        return true;
    }

    /*! \a digits hexadecimal digits, lower case. */
    bool readHexadecimal(int digits, uint *number)
    {
        *number = 0;
        for (int i = 0; i < digits; ++i, ++m_position) {
            const int digit = isAtEnd() ? -1 : hexadecimalDigit(m_position->unicode());
            if (digit < 0)
                return false;
            *number = *number << 4u | static_cast<uint>(digit);
        }
        return true;
    }

    /*! One to \a mostDigits decimal digits. A zero before others would make the number octal. */
    bool readDecimal(int mostDigits, qlonglong *number)
    {
        *number = 0;
        const QChar *const first = m_position;
        for (; !isAtEnd() && isDigit(m_position->unicode()); ++m_position) {
            if (m_position - first == mostDigits)
                return false;
            *number = *number * decimal + (m_position->unicode() - '0');
        }
        const auto length = m_position - first;
        return length == 1 || (length > 1 && *first != QLatin1Char('0'));
    }

private:
    static bool isBlank(ushort character)
    {
        return character == ' ' || character == '\n' || character == '\t' || character == '\r';
    }
    static bool isDigit(ushort character) { return character >= '0' && character <= '9'; }

    static int hexadecimalDigit(ushort character)
    {
        if (isDigit(character))
            return character - '0';
        return character >= 'a' && character <= 'f' ? character - 'a' + 10 : -1;
    }

    const QChar *m_position;
    const QChar *m_end;
};

class ExchangeScanner
{
public:
    ExchangeScanner(const QString &text, NodeStore &store)
        : m_scanner(text)
        , m_store(store)
    {
    }

    bool scan()
    {
        if (!scanHead())
            return false;
        for (int nodes = 0; skipTag("<node nodeid=\""); ++nodes) {
            if (nodes == mostNodes || !scanNode())
                return false;
        }
        return skipTag("</nodes>") && skipTag("</dxtoolstorage>") && m_scanner.skipBlanks()
               && m_scanner.isAtEnd();
    }

private:
    /*! The whole of a tag or its beginning, after any white space. */
    bool skipTag(const char *beginning)
    {
        return m_scanner.skipBlanks() && m_scanner.skip(QLatin1String(beginning));
    }

    bool scanHead()
    {
        const bool hasDeclaration = m_scanner.skip(QLatin1String("<?xml version")) && m_scanner.skipBlanks()
                                    && m_scanner.skip(QLatin1String(R"(="1.0" encoding="UTF-8")"))
                                    && m_scanner.skipBlanks() && m_scanner.skip(QLatin1String("?>"));
        return hasDeclaration && skipTag(R"(<dxtoolstorage pl_overwiew="1.0" date=")") && m_scanner.skipDate()
               && m_scanner.skip(QLatin1String("\">")) && skipTag("<nodes>");
    }

    bool scanNode()
    {
        qlonglong id = 0;
        if (!m_scanner.readDecimal(mostIdDigits, &id) || id >= NodeStore::nodeCount
            || !m_scanner.skip(QLatin1String("\">")))
            return false;
        const auto nodeId = static_cast<quint8>(id);
        m_store.appendNode(nodeId);
        bool hasObjects = false;
        while (skipTag("<object index=\"0x")) {
            if (!scanObject(nodeId))
                return false;
            hasObjects = true;
        }
        // As for the parser, ends of elements count like starts without attributes.
        if (hasObjects)
            m_store.setValue(nodeId, 0, 0, QVariant(qlonglong{0}));
        m_store.appendNode(0);
        return skipTag("</node>");
    }

    bool scanObject(quint8 nodeId)
    {
        uint index = 0;
        uint subIndex = 0;
        if (!m_scanner.readHexadecimal(4, &index) || !m_scanner.skip(QLatin1String("\" sub=\"0x"))
            || !m_scanner.readHexadecimal(2, &subIndex) || !m_scanner.skip(QLatin1String("\" value=\"")))
            return false;
        const bool isNegative = m_scanner.skip(QLatin1String("-"));
        qlonglong value = 0;
        if (!m_scanner.readDecimal(mostValueDigits, &value) || !m_scanner.skip(QLatin1String("\""))
            || !skipTag("/>"))
            return false;
        m_store.setValue(nodeId, static_cast<quint16>(index), static_cast<quint8>(subIndex),
                         QVariant(isNegative ? -value : value));
        return true;
    }

    Scanner m_scanner;
    NodeStore &m_store;
};

} // namespace

bool importAsWritten(const QString &text, NodeStore &store)
{
    store.clear();
    store.clearNodeList();
    return ExchangeScanner(text, store).scan();
}
