// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! What a device or a person might write to harm a reader. */
namespace HostileText {

inline QString markup()
{
    return QStringLiteral(
        "</p></td><script>document.title='harmed'</script><img src=x onerror=alert(1)>&amp;\"'");
}
inline QString control()
{
    return QStringLiteral("a") + QChar(0x1B) + QStringLiteral("[31m") + QChar(0x00) + QChar(0x0C)
           + QStringLiteral("b");
}
inline QString turnedAround()
{
    return QStringLiteral("abc") + QChar(0x202E) + QStringLiteral("def") + QChar(0x2066);
}
inline QString loneSurrogate()
{
    return QStringLiteral("x") + QChar(0xD83D) + QStringLiteral("y");
}
inline QString veryLong()
{
    return QString(10000, QLatin1Char('W'));
}

} // namespace HostileText
