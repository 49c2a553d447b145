// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonValue>

/*! \a text; null when there is none. */
inline QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}
