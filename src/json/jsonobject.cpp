// SPDX-License-Identifier: MIT
#include "jsonobject.h"

JsonObject::JsonObject(const rapidjson::Value &value, const JsonPlace &place)
    : m_place(place)
{
    if (value.IsObject())
        m_value = &value;
    else
        place.complain(tr("An object, {...}, is wanted."));
}

qint64 JsonObject::integer(const char *key, qint64 lowest, qint64 highest) const
{
    if (const std::optional<qint64> number = optionalInteger(key, lowest, highest))
        return *number;
    complain(key, tr("This is missing."));
    return lowest;
}

std::optional<qint64> JsonObject::optionalInteger(const char *key, qint64 lowest, qint64 highest) const
{
    const rapidjson::Value *value = find(key);
    if (value == nullptr)
        return std::nullopt;
    if (value->IsInt64() && value->GetInt64() >= lowest && value->GetInt64() <= highest)
        return value->GetInt64();
    complain(key, tr("A whole number from %1 to %2 is wanted.").arg(lowest).arg(highest));
    return lowest;
}

double JsonObject::number(const char *key) const
{
    const rapidjson::Value *value = find(key);
    if (value != nullptr && value->IsNumber())
        return value->GetDouble();
    complain(key, value != nullptr ? tr("A number is wanted.") : tr("This is missing."));
    return 0;
}

QString JsonObject::text(const char *key, int longest) const
{
    if (find(key) == nullptr)
        complain(key, tr("This is missing."));
    return optionalText(key, longest);
}

QString JsonObject::optionalText(const char *key, int longest) const
{
    const rapidjson::Value *value = find(key);
    if (value == nullptr)
        return QString();
    if (!value->IsString()) {
        complain(key, tr("A text is wanted."));
        return QString();
    }
    if (value->GetStringLength() > static_cast<rapidjson::SizeType>(longest)) {
        complain(key, tr("This text is too long."));
        return QString();
    }
    return QString::fromUtf8(value->GetString(), static_cast<int>(value->GetStringLength()));
}

bool JsonObject::boolean(const char *key, bool fallback) const
{
    const rapidjson::Value *value = find(key);
    if (value == nullptr)
        return fallback;
    if (!value->IsBool())
        complain(key, tr("true or false is wanted."));
    return value->IsTrue();
}

const rapidjson::Value *JsonObject::find(const char *key) const
{
    if (m_value == nullptr)
        return nullptr;
    const auto member = m_value->FindMember(key);
    return member == m_value->MemberEnd() || member->value.IsNull() ? nullptr : &member->value;
}

const rapidjson::Value *JsonObject::findArray(const char *key) const
{
    const rapidjson::Value *value = find(key);
    if (value != nullptr && value->IsArray())
        return value;
    complain(key, value != nullptr ? tr("A list, [...], is wanted.") : tr("This is missing."));
    return nullptr;
}

void JsonObject::complain(const char *key, const QString &problem) const
{
    JsonPlace(&m_place, key).complain(problem);
}
