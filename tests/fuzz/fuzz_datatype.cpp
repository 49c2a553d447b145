// SPDX-License-Identifier: MIT
// Values of any type from any bytes: what can be decoded comes back as the same bytes.
#include "bytereader.h"

#include <canopen/datatype.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    using CanOpen::DataType;

    ByteReader reader(data, size);
    const quint16 code = reader.byte();
    const QByteArray bytes = reader.bytes(static_cast<int>(size));
    const auto type = static_cast<DataType>(code);
    const std::optional<QVariant> value = CanOpen::decodeValue(type, bytes);
    const int width = CanOpen::byteSize(type);
    require(width == 0 || CanOpen::isKnownDataType(code));
    if (width > 0)
        require(value.has_value() == (bytes.size() == width));
    if (!value)
        return 0;

    const std::optional<QByteArray> encoded = CanOpen::encodeValue(type, *value);
    const bool isInteger
        = width > 0 && type != DataType::Real32 && type != DataType::Real64 && type != DataType::Boolean;
    if (isInteger)
        require(encoded == bytes);
    return 0;
}
