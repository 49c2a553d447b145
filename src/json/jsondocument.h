// SPDX-License-Identifier: MIT
#pragma once

#include "jsonplace.h"

#include <QByteArray>
#include <QCoreApplication>

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <optional>

/*! A JSON text (RFC 8259, UTF-8) that was read whole; whole numbers of 64 bits keep all their digits. */
class JsonDocument
{
    Q_DECLARE_TR_FUNCTIONS(JsonDocument)

public:
    /*! The longest text that is read, in bytes; no memory is spent on a longer one. */
    static constexpr int maximumSize = 64 * 1024 * 1024;

    /*! Empty when \a text is no JSON; \a errorMessage then says what is wrong with line and column: "line 3,
     *  column 14: syntax error while parsing object key - unexpected end of input; expected string literal"
     */
    static std::optional<JsonDocument> parse(const QByteArray &text, QString *errorMessage);

    /*! Lives as long as the document. */
    const nlohmann::json &root() const { return *m_root; }

private:
    std::shared_ptr<const nlohmann::json> m_root; // shared by copies; a document does not change
};
