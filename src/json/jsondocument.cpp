// SPDX-License-Identifier: MIT
#include "jsondocument.h"

#include <rapidjson/error/en.h>

namespace {

// Without recursion, so that nothing is too deep; every digit of a fraction counts; texts have to be UTF-8.
constexpr unsigned parseFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag
                                | rapidjson::kParseValidateEncodingFlag;

} // namespace

std::optional<JsonDocument> JsonDocument::parse(const QByteArray &text, QString *errorMessage)
{
    if (text.size() > maximumSize) {
        *errorMessage = tr("More than %1 MB: far too much.").arg(maximumSize / (1024 * 1024));
        return std::nullopt;
    }
    JsonDocument result;
    result.m_document.Parse<parseFlags>(text.constData(), static_cast<size_t>(text.size()));
    if (!result.m_document.HasParseError())
        return result;

    const QByteArray before = text.left(static_cast<int>(result.m_document.GetErrorOffset()));
    const int line = before.count('\n') + 1;
    const int column = before.size() - before.lastIndexOf('\n');
    *errorMessage
        = tr("line %1, column %2: %3")
              .arg(line)
              .arg(column)
              .arg(QString::fromLatin1(rapidjson::GetParseError_En(result.m_document.GetParseError())));
    return std::nullopt;
}
