// SPDX-License-Identifier: MIT
#include "tracesettings.h"

#include <QSettings>
#include <QStandardPaths>

namespace {

constexpr QLatin1String folderKey("trace/folder");
constexpr QLatin1String mostKey("trace/mostMegabytes");
constexpr QLatin1String faultsKey("trace/saveFaults");

constexpr qint64 megabyte = 1000000;
constexpr qint64 largest = 1000000; // MB

} // namespace

TraceSettings TraceSettings::load()
{
    const QSettings kept;
    TraceSettings settings;
    settings.folder = kept.value(folderKey).toString();
    if (settings.folder.isEmpty()) {
        settings.folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                          + QStringLiteral("/draxel/traces");
    }
    bool isNumber = false;
    const qint64 most = kept.value(mostKey).toLongLong(&isNumber);
    if (isNumber && most > 0 && most <= largest)
        settings.mostBytes = most * megabyte;
    settings.savesFaults = kept.value(faultsKey, settings.savesFaults).toBool();
    return settings;
}
