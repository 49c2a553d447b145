// SPDX-License-Identifier: MIT
#include "jsontext.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cmath>

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
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.Double(number);
    m_bytes += buffer.GetString();
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
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
    m_bytes.append(buffer.GetString(), static_cast<int>(buffer.GetSize()));
}
