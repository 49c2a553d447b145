// SPDX-License-Identifier: MIT
#pragma once

#include "jsonplace.h"

#include <QByteArray>
#include <QCoreApplication>

#include <rapidjson/document.h>

#include <optional>

/*! A JSON text (RFC 8259, UTF-8) that was read whole; numbers keep all their digits. */
class JsonDocument
{
    Q_DECLARE_TR_FUNCTIONS(JsonDocument)

public:
    /*! The longest text that is read, in bytes; no memory is spent on a longer one. */
    static constexpr int maximumSize = 64 * 1024 * 1024;

    /*! Empty when \a text is no JSON; \a errorMessage then says what is wrong with line and column: "line 3,
     *  column 14: Missing a comma or '}' after an object member."
     */
    static std::optional<JsonDocument> parse(const QByteArray &text, QString *errorMessage);

    /*! Lives as long as the document. */
    const rapidjson::Value &root() const { return m_document; }

private:
    rapidjson::Document m_document;
};
