// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/*! Writes JSON in the order in which it is given, on one line, so that the same values always give the same bytes. */
class JsonText
{
public:
    /*! Begin and end of an object or a list; \a key where it is a member of an object. */
    void beginObject(const char *key = nullptr);
    void endObject();
    void beginArray(const char *key = nullptr);
    void endArray();

    /*! Breaks the line before the next value; for people, and for tools that compare lines. */
    void breakLine() { m_isBreakWanted = true; }

    void write(const char *key, const QString &text);
    void write(const char *key, qint64 number);
    void write(const char *key, quint64 number);
    /*! Not a number and infinity are no JSON: they are written as null. */
    void write(const char *key, double number);
    void writeBoolean(const char *key, bool value);

    const QByteArray &bytes() const { return m_bytes; }

private:
    void beginValue(const char *key);
    void writeString(const QByteArray &utf8);

    QByteArray m_bytes;
    bool m_isFirst = true; // no comma before the next value
    bool m_isBreakWanted = false;
};
