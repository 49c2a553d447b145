// SPDX-License-Identifier: MIT
#include "jsonplaces.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace Simulator {

namespace {

/*! Walks through the text of a JSON document and remembers the line of the value that lies nearest to the one that
 *  is looked for. Every step goes on by a byte at least, so it ends on any text.
 */
class Walker
{
public:
    Walker(const QByteArray &text, const QString &wanted)
        : m_text(text)
        , m_wanted(wanted)
    {
    }

    int line()
    {
        walkValue(QString());
        return m_text.left(m_nearest).count('\n') + 1;
    }

private:
    bool atEnd() const { return m_position >= m_text.size(); }
    char next() const { return atEnd() ? '\0' : m_text.at(m_position); }

    void skipBlanks()
    {
        while (next() == ' ' || next() == '\t' || next() == '\r' || next() == '\n')
            ++m_position;
    }

    /*! Passes a text in quotes and gives it as it stands in the file. */
    QByteArray passString()
    {
        const int start = m_position++;
        while (!atEnd() && next() != '"')
            m_position += next() == '\\' ? 2 : 1;
        ++m_position;
        return m_text.mid(start, m_position - start);
    }

    static QString decoded(const QByteArray &quoted)
    {
        if (!quoted.contains('\\'))
            return QString::fromUtf8(quoted.mid(1, quoted.size() - 2));
        return QJsonDocument::fromJson('[' + quoted + ']').array().at(0).toString();
    }

    /*! Whether \a place is what is looked for, or holds it. */
    bool leadsToWanted(const QString &place) const
    {
        if (place.isEmpty() || m_wanted == place)
            return true;
        const QChar behind = m_wanted.startsWith(place) ? m_wanted.at(place.size()) : QChar();
        return behind == QLatin1Char('.') || behind == QLatin1Char('[');
    }

    void walkValue(const QString &place)
    {
        skipBlanks();
        if (leadsToWanted(place))
            m_nearest = m_position;
        if (next() == '{')
            walkObject(place);
        else if (next() == '[')
            walkList(place);
        else if (next() == '"')
            passString();
        else
            passWord();
    }

    void walkObject(const QString &place)
    {
        ++m_position;
        skipBlanks();
        while (!atEnd() && next() != '}') {
            const QString key = next() == '"' ? decoded(passString()) : QString();
            skipBlanks();
            ++m_position; // the colon
            walkValue(jsonMember(place, key));
            passComma();
        }
        ++m_position;
    }

    void walkList(const QString &place)
    {
        ++m_position;
        skipBlanks();
        for (int number = 0; !atEnd() && next() != ']'; ++number) {
            walkValue(QStringLiteral("%1[%2]").arg(place).arg(number));
            passComma();
        }
        ++m_position;
    }

    void passComma()
    {
        skipBlanks();
        if (next() == ',')
            ++m_position;
        skipBlanks();
    }

    void passWord()
    {
        do
            ++m_position;
        while (!atEnd() && !QByteArray(",]} \t\r\n").contains(next()));
    }

    const QByteArray &m_text;
    const QString &m_wanted;
    int m_position = 0;
    int m_nearest = 0; // where the value begins that lies nearest to the one looked for
};

} // namespace

QString jsonMember(const QString &place, const QString &key)
{
    return place.isEmpty() ? key : place + QLatin1Char('.') + key;
}

QString jsonElement(const QString &place, const QString &key, int number)
{
    return jsonMember(place, QStringLiteral("%1[%2]").arg(key).arg(number));
}

int jsonLine(const QByteArray &text, const QString &place)
{
    return Walker(text, place).line();
}

} // namespace Simulator
