// SPDX-License-Identifier: MIT
#include "jsondocument.h"

#include <QRegularExpression>

#include <nlohmann/json.hpp>

namespace {

/*! What the parser says, without the name of the error, the place that is said already, and what it has read, which may
 *  be long.
 */
QString reasonOf(const std::exception &error)
{
    static const QRegularExpression prefix(QStringLiteral("^\\[[^]]*\\] (parse error[^:]*: )?"));
    static const QRegularExpression lastRead(QStringLiteral("; last read: .*?(; expected [^']*)?$"),
                                             QRegularExpression::DotMatchesEverythingOption);
    QString text = QString::fromUtf8(error.what());
    text.remove(prefix);
    return text.replace(lastRead, QStringLiteral("\\1"));
}

QString placeOf(const QByteArray &text, std::size_t bytesRead)
{
    const int length = static_cast<int>(qMin(bytesRead, static_cast<std::size_t>(text.size())));
    const QByteArray before = text.left(length);
    const int line = before.count('\n') + 1;
    const int column = qMax(1, before.size() - before.lastIndexOf('\n') - 1);
    return JsonDocument::tr("line %1, column %2").arg(line).arg(column);
}

} // namespace

std::optional<JsonDocument> JsonDocument::parse(const QByteArray &text, QString *errorMessage)
{
    if (text.size() > maximumSize) {
        *errorMessage = tr("More than %1 MB: far too much.").arg(maximumSize / (1024 * 1024));
        return std::nullopt;
    }
    try {
        JsonDocument document;
        document.m_root
            = std::make_shared<const nlohmann::json>(nlohmann::json::parse(text.cbegin(), text.cend()));
        return document;
    } catch (const nlohmann::json::parse_error &error) {
        *errorMessage = placeOf(text, error.byte) + QStringLiteral(": ") + reasonOf(error);
    } catch (const nlohmann::json::out_of_range &error) { // a number that no double can hold
        *errorMessage = reasonOf(error);
    }
    return std::nullopt;
}
