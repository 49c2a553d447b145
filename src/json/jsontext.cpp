// SPDX-License-Identifier: MIT
#include "jsontext.h"

#include <QLocale>

#include <cmath>

namespace {

/*! How RFC 8259 writes a character that may not stand for itself; null for those without a short form. */
const char *shortEscape(char c)
{
    switch (c) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return nullptr;
    }
}

} // namespace

void JsonText::beginObject(const char *key)
{
    beginValue(key);
    m_bytes += '{';
    m_isFirst = true;
}

void JsonText::endObject()
{
    m_bytes += '}';
    m_isFirst = false;
}

void JsonText::beginArray(const char *key)
{
    beginValue(key);
    m_bytes += '[';
    m_isFirst = true;
}

void JsonText::endArray()
{
    m_bytes += ']';
    m_isFirst = false;
}

void JsonText::write(const char *key, const QString &text)
{
    beginValue(key);
    writeString(text.toUtf8());
}

void JsonText::write(const char *key, qint64 number)
{
    beginValue(key);
    m_bytes += QByteArray::number(number);
}

void JsonText::write(const char *key, quint64 number)
{
    beginValue(key);
    m_bytes += QByteArray::number(number);
}

void JsonText::write(const char *key, double number)
{
    beginValue(key);
    if (!std::isfinite(number)) {
        m_bytes += "null";
        return;
    }
    m_bytes += QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
}

void JsonText::writeBoolean(const char *key, bool value)
{
    beginValue(key);
    m_bytes += value ? "true" : "false";
}

void JsonText::beginValue(const char *key)
{
    if (!m_isFirst)
        m_bytes += ',';
    m_isFirst = false;
    if (m_isBreakWanted)
        m_bytes += '\n';
    m_isBreakWanted = false;
    if (key != nullptr) {
        writeString(key);
        m_bytes += ':';
    }
}

void JsonText::writeString(const QByteArray &utf8)
{
    m_bytes += '"';
    for (const char c : utf8) {
        if (const char *escape = shortEscape(c))
            m_bytes += escape;
        else if (static_cast<unsigned char>(c) < ' ')
            m_bytes += "\\u00" + QByteArray(1, c).toHex();
        else
            m_bytes += c;
    }
    m_bytes += '"';
}
