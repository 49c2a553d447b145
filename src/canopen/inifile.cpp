// SPDX-License-Identifier: MIT
#include "inifile.h"

#include "plaintext.h"

namespace CanOpen {

namespace {

// Bounds against hostile files; real ones stay far below.
constexpr int maximumLineLength = 64 * 1024; // bytes
constexpr int maximumItems = 500000;         // sections and keys in all
constexpr int longestSectionName = 80;
constexpr int longestShownKey = 80;
constexpr int longestShownProblem = 200;

QString decodeText(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    return text.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(bytes) : text;
}

} // namespace

QString iniProblem(int line, const QString &section, const QString &key, const QString &problem)
{
    QString place = QStringLiteral("line %1").arg(line);
    if (!section.isEmpty())
        place += QStringLiteral(", [") + plainText(section) + QLatin1Char(']');
    if (!key.isEmpty())
        place += QLatin1Char(' ') + plainText(key.left(longestShownKey));
    QString shown = plainText(problem);
    if (shown.size() > longestShownProblem)
        shown = shown.left(longestShownProblem) + QStringLiteral("...");
    return place + QStringLiteral(": ") + shown;
}

/*! Reads line after line; the first problem ends it. */
class IniReader
{
public:
    bool read(const QByteArray &text);

    IniFile file;
    QString problem;

private:
    bool fail(int line, const QString &what);
    bool failInSection(int line, const QString &key, const QString &what);
    bool readLine(QByteArray line, int number);
    bool readSectionHead(const QByteArray &line, int number);
    bool readField(const QByteArray &line, int number);

    int m_items = 0; // sections and keys read so far
};

bool IniReader::fail(int line, const QString &what)
{
    problem = iniProblem(line, QString(), QString(), what);
    return false;
}

bool IniReader::failInSection(int line, const QString &key, const QString &what)
{
    problem = iniProblem(line, file.m_sections.last().name, key, what);
    return false;
}

bool IniReader::read(const QByteArray &text)
{
    if (text.size() > IniFile::maximumSize) {
        problem = QStringLiteral("the file is larger than %1 MB").arg(IniFile::maximumSize / (1024 * 1024));
        return false;
    }
    int number = 0;
    int start = text.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (start < text.size()) {
        ++number;
        int end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        if (end - start > maximumLineLength)
            return fail(number, QStringLiteral("longer than %1 bytes").arg(maximumLineLength));
        if (!readLine(text.mid(start, end - start), number))
            return false;
        start = end + 1;
    }
    return true;
}

bool IniReader::readLine(QByteArray line, int number)
{
    if (line.contains('\0'))
        return fail(number, QStringLiteral("there is a NUL byte; this is no text file"));
    line = line.trimmed();
    if (line.isEmpty() || line.startsWith(';'))
        return true;
    if (++m_items > maximumItems)
        return fail(number, QStringLiteral("the file has more than %1 sections and keys").arg(maximumItems));
    return line.startsWith('[') ? readSectionHead(line, number) : readField(line, number);
}

bool IniReader::readSectionHead(const QByteArray &line, int number)
{
    const int end = line.indexOf(']');
    if (end < 0)
        return fail(number, QStringLiteral("the section's name has no closing bracket"));
    const QByteArray behind = line.mid(end + 1).trimmed();
    if (!behind.isEmpty() && !behind.startsWith(';'))
        return fail(number, QStringLiteral("there is text behind the section's name"));

    const QString name = decodeText(line.mid(1, end - 1).trimmed());
    if (name.isEmpty() || name.size() > longestSectionName)
        return fail(
            number,
            QStringLiteral("the section's name has no length between 1 and %1").arg(longestSectionName));
    if (const IniFile::Section *first = file.find(name.toLower())) {
        problem = iniProblem(number, name, QString(),
                             QStringLiteral("the section is there twice, first in line %1").arg(first->line));
        return false;
    }
    file.m_places.insert(name.toLower(), file.m_sections.size());
    file.m_sections.append(IniFile::Section{name, number, {}});
    return true;
}

bool IniReader::readField(const QByteArray &line, int number)
{
    if (file.m_sections.isEmpty())
        return fail(number, QStringLiteral("there is text before the first section"));
    const int equals = line.indexOf('=');
    const QByteArray key = equals > 0 ? line.left(equals).trimmed() : QByteArray();
    if (key.isEmpty())
        return failInSection(number, QString(), QStringLiteral("neither a section nor a key with a value"));
    QHash<QString, IniFile::Field> &fields = file.m_sections.last().fields;
    const QString name = decodeText(key);
    if (fields.contains(name.toLower()))
        return failInSection(number, name, QStringLiteral("the key is there twice"));
    fields.insert(name.toLower(), IniFile::Field{decodeText(line.mid(equals + 1).trimmed()), number});
    return true;
}

const IniFile::Field *IniFile::Section::find(const char *key) const
{
    const auto field = fields.constFind(QLatin1String(key));
    return field != fields.constEnd() ? &field.value() : nullptr;
}

std::optional<IniFile> IniFile::parse(const QByteArray &text, QString *errorMessage)
{
    IniReader reader;
    if (reader.read(text))
        return std::move(reader.file);
    if (errorMessage != nullptr)
        *errorMessage = reader.problem;
    return std::nullopt;
}

const IniFile::Section *IniFile::find(const QString &name) const
{
    const auto place = m_places.constFind(name);
    return place != m_places.constEnd() ? &m_sections.at(place.value()) : nullptr;
}

} // namespace CanOpen
