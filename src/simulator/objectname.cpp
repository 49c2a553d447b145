// SPDX-License-Identifier: MIT
#include "objectname.h"

#include <canopen/hexadecimal.h>

namespace Simulator {

namespace {

bool isHexNumber(const QString &text)
{
    for (const QChar character : text) {
        const char digit = character.toLatin1();
        if (!(digit >= '0' && digit <= '9') && !(digit >= 'a' && digit <= 'f')
            && !(digit >= 'A' && digit <= 'F'))
            return false;
    }
    return !text.isEmpty();
}

} // namespace

std::optional<CanOpen::ObjectKey> parseObjectKey(const QString &text)
{
    constexpr int indexDigits = 4;
    constexpr int mostSubIndexDigits = 2;
    const QLatin1String separator("sub");

    const QString index = text.left(indexDigits);
    if (index.size() != indexDigits || !isHexNumber(index))
        return std::nullopt;
    CanOpen::ObjectKey key;
    key.index = index.toUShort(nullptr, 16);
    if (text.size() == indexDigits)
        return key;

    const QString subIndex = text.mid(indexDigits + separator.size());
    if (text.mid(indexDigits, separator.size()).compare(separator, Qt::CaseInsensitive) != 0
        || subIndex.size() > mostSubIndexDigits || !isHexNumber(subIndex))
        return std::nullopt;
    key.subIndex = static_cast<quint8>(subIndex.toUShort(nullptr, 16));
    return key;
}

QString objectKeyText(CanOpen::ObjectKey key)
{
    const QString index = CanOpen::hexadecimal(key.index, 4);
    return key.subIndex == 0 ? index : index + QLatin1String("sub") + CanOpen::hexadecimal(key.subIndex);
}

} // namespace Simulator
