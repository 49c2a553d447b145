// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

namespace CanOpen {

/*! A text file of sections with keys and values, as CiA 306 has it: "[section]", "key=value", "; comment". What
 *  the keys mean is for others to know.
 */
class IniFile
{
public:
    /*! A bound against hostile files; real ones stay far below. */
    static constexpr int maximumSize = 8 * 1024 * 1024; // bytes

    struct Field
    {
        QString value;
        int line = 0;
    };

    struct Section
    {
        QString name; // as written
        int line = 0;
        QHash<QString, Field> fields; // by key in lower case

        /*! The field of a key in lower case, or null. */
        const Field *find(const char *key) const;
    };

    /*! Reads a file's text, UTF-8 or Latin-1. Empty on an error; \a errorMessage then names line, section and key.
     */
    static std::optional<IniFile> parse(const QByteArray &text, QString *errorMessage);

    /*! In the order of the file. */
    const QVector<Section> &sections() const { return m_sections; }

    /*! The section of a name in lower case, or null. It lives as long as the file. */
    const Section *find(const QString &name) const;

private:
    friend class IniReader;

    QVector<Section> m_sections;
    QHash<QString, int> m_places; // in m_sections, by name in lower case
};

/*! What is wrong in a file, for people: "line 7, [1018sub1] DataType: problem". \a section and \a key may be empty.
 *  Of a long problem the beginning is shown, and no control characters.
 */
QString iniProblem(int line, const QString &section, const QString &key, const QString &problem);

} // namespace CanOpen
