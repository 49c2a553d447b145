// SPDX-License-Identifier: MIT
#include "objectname.h"

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
    const QString index = QString::number(key.index, 16).toUpper().rightJustified(4, QLatin1Char('0'));
    return key.subIndex == 0 ? index
                             : index + QLatin1String("sub") + QString::number(key.subIndex, 16).toUpper();
}

} // namespace Simulator
