// SPDX-License-Identifier: MIT
#include "pathfinding.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr QLatin1Char quote('"');

bool isSeparator(QChar character)
{
    return character == QLatin1Char('/') || character == QLatin1Char('\\');
}

/*! Where a path must be at an end: that of the line, or what no name has. */
int limitOf(const QString &text, int first)
{
    static const QString never = QStringLiteral("\n\r\t\"<>|");
    int end = first;
    while (end < text.size() && !never.contains(text.at(end)))
        ++end;
    const int sentence = text.indexOf(QLatin1String(": "), first);
    return sentence >= 0 ? std::min(end, sentence) : end;
}

int endOfWord(const QString &text, int from, int limit)
{
    int end = from;
    while (end < limit && !text.at(end).isSpace())
        ++end;
    static const QString closing = QStringLiteral(".,;:!?)]}'");
    while (end > from && closing.contains(text.at(end - 1)))
        --end;
    return end;
}

/*! Behind the last separator of a path, whose name may have blanks and then has a suffix. */
int endOfName(const QString &text, int name, int limit)
{
    static const QRegularExpression suffixed(
        QStringLiteral("^[^/\\\\]*?\\.[A-Za-z0-9]{1,8}(?=$|[\\s,;:)!?']|\\.(\\s|$))"));
    const int word = endOfWord(text, name, limit);
    if (text.midRef(name, word - name).contains(QLatin1Char('.')))
        return word;
    const QRegularExpressionMatch match = suffixed.match(text.mid(name, limit - name));
    return match.hasMatch() ? name + match.capturedLength() : word;
}

int lastSeparator(const QString &text, int from, int limit)
{
    int last = limit - 1;
    while (last > from && !isSeparator(text.at(last)))
        --last;
    return last;
}

} // namespace

PathFinding::Place PathFinding::next(const QString &text, int from)
{
    static const QRegularExpression beginning(
        QStringLiteral("(?<![\\w/\\\\.~-])(?:~|\\.{1,2}|[A-Za-z]:)?[/\\\\](?=[\\w/\\\\.~])"),
        QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch match = beginning.match(text, from);
    if (!match.hasMatch())
        return {};
    const int first = match.capturedStart();
    const int limit = limitOf(text, match.capturedEnd());
    const bool isQuoted
        = first > 0 && text.at(first - 1) == quote && limit < text.size() && text.at(limit) == quote;
    if (isQuoted)
        return {first, limit - first};
    const int end = endOfName(text, lastSeparator(text, match.capturedEnd() - 1, limit) + 1, limit);
    return {first, std::max(end, match.capturedEnd()) - first};
}
