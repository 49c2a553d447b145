// SPDX-License-Identifier: MIT
#include "interfacebitrate.h"

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <libsocketcan.h>

#include <limits>

int interfaceBitRate(const QString &interfaceName)
{
    // Virtual interfaces have no device. The library would complain of them on standard error.
    const bool isName = !interfaceName.isEmpty() && !interfaceName.contains(QLatin1Char('/'));
    if (!isName || !QFileInfo::exists(QStringLiteral("/sys/class/net/%1/device").arg(interfaceName)))
        return 0;
    can_bittiming timing{};
    if (can_get_bittiming(QFile::encodeName(interfaceName).constData(), &timing) != 0)
        return 0;
    constexpr auto most = static_cast<__u32>(std::numeric_limits<int>::max());
    return timing.bitrate <= most ? static_cast<int>(timing.bitrate) : 0;
}
