// SPDX-License-Identifier: MIT
#include "jsonobject.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace {

/*! Whether \a value is a whole number that a qint64 can hold. */
bool isWhole(const nlohmann::json &value)
{
    return value.is_number_integer()
           && (!value.is_number_unsigned()
               || value.get<quint64>() <= static_cast<quint64>(std::numeric_limits<qint64>::max()));
}

QString textOf(const nlohmann::json &value)
{
    const std::string &text = value.get_ref<const std::string &>();
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

} // namespace

JsonObject::JsonObject(const nlohmann::json &value, const JsonPlace &place)
    : m_place(place)
{
    if (value.is_object())
        m_value = &value;
    else
        place.complain(tr("An object, {...}, is wanted."));
}

QStringList JsonObject::keys() const
{
    QStringList names;
    if (m_value == nullptr)
        return names;
    for (const auto &member : m_value->items())
        names.append(QString::fromStdString(member.key()));
    return names;
}

qint64 JsonObject::integer(const char *key, qint64 lowest, qint64 highest) const
{
    return findRequired(key) != nullptr ? optionalInteger(key, lowest, highest).value_or(lowest) : lowest;
}

std::optional<qint64> JsonObject::optionalInteger(const char *key, qint64 lowest, qint64 highest) const
{
    const nlohmann::json *value = find(key);
    if (value == nullptr)
        return std::nullopt;
    if (isWhole(*value)) {
        const auto number = value->get<qint64>();
        if (number >= lowest && number <= highest)
            return number;
    }
    complain(key, tr("A whole number from %1 to %2 is wanted.").arg(lowest).arg(highest));
    return lowest;
}

double JsonObject::number(const char *key) const
{
    const nlohmann::json *value = findRequired(key);
    if (value != nullptr && value->is_number())
        return value->get<double>();
    complain(key, tr("A number is wanted."));
    return 0;
}

QString JsonObject::text(const char *key, int longest) const
{
    return findRequired(key) != nullptr ? optionalText(key, longest) : QString();
}

QString JsonObject::optionalText(const char *key, int longest) const
{
    const nlohmann::json *value = find(key);
    if (value == nullptr)
        return QString();
    if (!value->is_string()) {
        complain(key, tr("A text is wanted."));
        return QString();
    }
    if (value->get_ref<const std::string &>().size() > static_cast<std::size_t>(longest)) {
        complain(key, tr("This text is too long."));
        return QString();
    }
    return textOf(*value);
}

bool JsonObject::boolean(const char *key, bool fallback) const
{
    const nlohmann::json *value = find(key);
    if (value == nullptr)
        return fallback;
    if (value->is_boolean())
        return value->get<bool>();
    complain(key, tr("true or false is wanted."));
    return fallback;
}

QVariant JsonObject::scalar(const char *key) const
{
    const nlohmann::json *value = find(key);
    if (value == nullptr)
        return QVariant();
    if (isWhole(*value))
        return qlonglong(value->get<qint64>());
    if (value->is_number_unsigned())
        return qulonglong(value->get<quint64>());
    if (value->is_number())
        return value->get<double>();
    return value->is_string() ? QVariant(textOf(*value)) : QVariant();
}

QVector<qint64> JsonObject::integers(const char *key, qint64 lowest, qint64 highest) const
{
    QVector<qint64> result;
    const JsonPlace place(&m_place, key);
    const int size = arraySize(key);
    for (int position = 0; position < size && !place.isFaulty(); ++position) {
        const nlohmann::json &value = element(key, position);
        const qint64 number = isWhole(value) ? value.get<qint64>() : 0;
        if (isWhole(value) && number >= lowest && number <= highest)
            result.append(number);
        else
            JsonPlace(&place, position)
                .complain(tr("A whole number from %1 to %2 is wanted.").arg(lowest).arg(highest));
    }
    return result;
}

QStringList JsonObject::texts(const char *key, int longest) const
{
    QStringList result;
    const JsonPlace place(&m_place, key);
    const int size = arraySize(key);
    for (int position = 0; position < size && !place.isFaulty(); ++position) {
        const nlohmann::json &value = element(key, position);
        if (!value.is_string())
            JsonPlace(&place, position).complain(tr("A text is wanted."));
        else if (value.get_ref<const std::string &>().size() > static_cast<std::size_t>(longest))
            JsonPlace(&place, position).complain(tr("This text is too long."));
        else
            result.append(textOf(value));
    }
    return result;
}

const nlohmann::json *JsonObject::find(const char *key) const
{
    if (m_value == nullptr)
        return nullptr;
    const auto member = m_value->find(key);
    return member == m_value->end() || member->is_null() ? nullptr : &*member;
}

const nlohmann::json *JsonObject::findRequired(const char *key) const
{
    const nlohmann::json *value = find(key);
    if (value == nullptr)
        complain(key, tr("This is missing."));
    return value;
}

int JsonObject::arraySize(const char *key) const
{
    const nlohmann::json *value = findRequired(key);
    if (value != nullptr && value->is_array())
        return static_cast<int>(value->size());
    complain(key, tr("A list, [...], is wanted."));
    return 0;
}

const nlohmann::json &JsonObject::element(const char *key, int position) const
{
    return (*find(key))[static_cast<std::size_t>(position)];
}

void JsonObject::complain(const char *key, const QString &problem) const
{
    JsonPlace(&m_place, key).complain(problem);
}
