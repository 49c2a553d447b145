// SPDX-License-Identifier: MIT
#include "datatypename.h"

namespace {

struct ShortName
{
    CanOpen::DataType type;
    const char *name;
};

constexpr ShortName shortNameRows[] = {
    {CanOpen::DataType::Boolean, "bool"},
    {CanOpen::DataType::Integer8, "i8"},
    {CanOpen::DataType::Integer16, "i16"},
    {CanOpen::DataType::Integer24, "i24"},
    {CanOpen::DataType::Integer32, "i32"},
    {CanOpen::DataType::Integer40, "i40"},
    {CanOpen::DataType::Integer48, "i48"},
    {CanOpen::DataType::Integer56, "i56"},
    {CanOpen::DataType::Integer64, "i64"},
    {CanOpen::DataType::Unsigned8, "u8"},
    {CanOpen::DataType::Unsigned16, "u16"},
    {CanOpen::DataType::Unsigned24, "u24"},
    {CanOpen::DataType::Unsigned32, "u32"},
    {CanOpen::DataType::Unsigned40, "u40"},
    {CanOpen::DataType::Unsigned48, "u48"},
    {CanOpen::DataType::Unsigned56, "u56"},
    {CanOpen::DataType::Unsigned64, "u64"},
    {CanOpen::DataType::Real32, "f32"},
    {CanOpen::DataType::Real64, "f64"},
    {CanOpen::DataType::VisibleString, "string"},
    {CanOpen::DataType::UnicodeString, "unicode"},
    {CanOpen::DataType::OctetString, "bytes"},
    {CanOpen::DataType::Domain, "domain"},
};

} // namespace

std::optional<CanOpen::DataType> DataTypeName::parse(const QString &name)
{
    for (const ShortName &row : shortNameRows) {
        if (name.compare(QLatin1String(row.name), Qt::CaseInsensitive) == 0
            || name.compare(CanOpen::dataTypeName(row.type), Qt::CaseInsensitive) == 0)
            return row.type;
    }
    return std::nullopt;
}

QStringList DataTypeName::shortNames()
{
    QStringList names;
    for (const ShortName &row : shortNameRows)
        names.append(QLatin1String(row.name));
    return names;
}
