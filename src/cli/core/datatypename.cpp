// SPDX-License-Identifier: MIT
#include "datatypename.h"

namespace {

struct Row
{
    CanOpen::DataType type;
    const char *name;
    const char *shortName;
};

constexpr Row rows[] = {
    {CanOpen::DataType::Boolean, "BOOLEAN", "bool"},
    {CanOpen::DataType::Integer8, "INTEGER8", "i8"},
    {CanOpen::DataType::Integer16, "INTEGER16", "i16"},
    {CanOpen::DataType::Integer32, "INTEGER32", "i32"},
    {CanOpen::DataType::Unsigned8, "UNSIGNED8", "u8"},
    {CanOpen::DataType::Unsigned16, "UNSIGNED16", "u16"},
    {CanOpen::DataType::Unsigned32, "UNSIGNED32", "u32"},
    {CanOpen::DataType::Real32, "REAL32", "f32"},
    {CanOpen::DataType::VisibleString, "VISIBLE_STRING", "string"},
    {CanOpen::DataType::OctetString, "OCTET_STRING", "bytes"},
    {CanOpen::DataType::UnicodeString, "UNICODE_STRING", "unicode"},
    {CanOpen::DataType::Domain, "DOMAIN", "domain"},
    {CanOpen::DataType::Real64, "REAL64", "f64"},
    {CanOpen::DataType::Integer64, "INTEGER64", "i64"},
    {CanOpen::DataType::Unsigned64, "UNSIGNED64", "u64"},
};

} // namespace

std::optional<CanOpen::DataType> DataTypeName::parse(const QString &name)
{
    for (const Row &row : rows) {
        if (name.compare(QLatin1String(row.name), Qt::CaseInsensitive) == 0
            || name.compare(QLatin1String(row.shortName), Qt::CaseInsensitive) == 0)
            return row.type;
    }
    return std::nullopt;
}

QString DataTypeName::of(CanOpen::DataType type)
{
    for (const Row &row : rows) {
        if (row.type == type)
            return QLatin1String(row.name);
    }
    return QString();
}

QStringList DataTypeName::shortNames()
{
    QStringList names;
    for (const Row &row : rows)
        names.append(QLatin1String(row.shortName));
    return names;
}
