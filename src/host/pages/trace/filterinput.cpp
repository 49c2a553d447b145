// SPDX-License-Identifier: MIT
#include "filterinput.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

constexpr int lastNode = 127;
constexpr int lastSubIndex = 255;
constexpr int hexadecimal = 16;

QStringList piecesOf(const QString &list)
{
    static const QRegularExpression separator(QStringLiteral("[,;\\s]+"));
    QStringList pieces = list.split(separator);
    pieces.removeAll(QString());
    return pieces;
}

} // namespace

bool FilterInput::parseNodes(TraceFilter *filter) const
{
    static const QRegularExpression range(QStringLiteral("\\A(\\d{1,3})(?:-(\\d{1,3}))?\\z"));
    // Blanks around the dash belong to the range.
    static const QRegularExpression dash(QStringLiteral("\\s*-\\s*"));
    for (const QString &piece : piecesOf(QString(nodes).replace(dash, QStringLiteral("-")))) {
        const QRegularExpressionMatch match = range.match(piece);
        const int first = match.captured(1).toInt();
        const int last = match.captured(2).isEmpty() ? first : match.captured(2).toInt();
        if (!match.hasMatch() || first < 1 || last > lastNode || first > last)
            return false;
        for (int node = first; node <= last; ++node)
            filter->nodes.set(static_cast<std::size_t>(node));
    }
    return true;
}

bool FilterInput::parseObjects(TraceFilter *filter) const
{
    static const QRegularExpression object(
        QStringLiteral("\\A(?:0x)?([0-9a-f]{1,4})h?(?:[.:](\\d{1,3}))?\\z"),
        QRegularExpression::CaseInsensitiveOption);
    for (const QString &piece : piecesOf(objects)) {
        const QRegularExpressionMatch match = object.match(piece);
        const int subIndex = match.captured(2).isEmpty() ? -1 : match.captured(2).toInt();
        if (!match.hasMatch() || subIndex > lastSubIndex)
            return false;
        filter->objects.append(
            {static_cast<quint16>(match.captured(1).toUShort(nullptr, hexadecimal)), subIndex});
    }
    return true;
}

bool FilterInput::isEmpty() const
{
    return nodes.isEmpty() && objects.isEmpty() && text.isEmpty() && kinds.none() && !isWrongOnly;
}

std::optional<TraceFilter> FilterInput::parse(QString *problem) const
{
    TraceFilter filter;
    if (!parseNodes(&filter)) {
        *problem = tr("Nodes are numbers from 1 to 127: \"2, 5-7\".");
        return std::nullopt;
    }
    if (!parseObjects(&filter)) {
        *problem = tr("Objects are an index in hexadecimal, and a sub-index behind a dot: \"6164h.2\".");
        return std::nullopt;
    }
    filter.kinds = kinds;
    filter.text = text.trimmed();
    filter.isWrongOnly = isWrongOnly;
    return filter;
}
