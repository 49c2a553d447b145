// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>

/*! A text that a rule file brings in several languages, by the names that Qt gives them: "de", "zh_CN". English is
 *  always there.
 */
template<typename Text>
class LocalText
{
public:
    void set(const QString &language, const Text &text) { m_texts.insert(language, text); }
    bool isEmpty() const { return m_texts.isEmpty(); }
    const QMap<QString, Text> &all() const { return m_texts; }

    /*! The text in \a language, "de_AT" finds "de"; else the English one. */
    Text in(const QString &language) const
    {
        for (const QString &name : {language, language.section(QLatin1Char('_'), 0, 0)}) {
            const auto found = m_texts.constFind(name);
            if (found != m_texts.cend())
                return *found;
        }
        return m_texts.value(QStringLiteral("en"));
    }

private:
    QMap<QString, Text> m_texts;
};
