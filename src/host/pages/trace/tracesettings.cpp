// SPDX-License-Identifier: MIT
#include "tracesettings.h"

#include <host/core/settingsstore.h>
#include <system/amounts.h>

#include <QStandardPaths>

#include <algorithm>
#include <iterator>

namespace {

constexpr QLatin1String folderKey("trace/folder");
constexpr QLatin1String mostKey("trace/mostMegabytes");
constexpr QLatin1String faultsKey("trace/saveFaults");
constexpr QLatin1String rotationKey("trace/rotate");
constexpr QLatin1String rotationSizeKey("trace/rotateMegabytes");
constexpr QLatin1String rotationTimeKey("trace/rotateMinutes");

constexpr QLatin1String rotationNames[]
    = {QLatin1String("never"), QLatin1String("size"), QLatin1String("time")};

constexpr qint64 largest = 1000000; // MB, minutes

qint64 numberOf(const QVariantMap &kept, QLatin1String key, qint64 usual)
{
    bool isNumber = false;
    const qint64 number = kept.value(key).toLongLong(&isNumber);
    return isNumber && number > 0 && number <= largest ? number : usual;
}

} // namespace

TraceSettings TraceSettings::load()
{
    const QVariantMap kept = SettingsStore::instance().values();
    TraceSettings settings;
    settings.folder = kept.value(folderKey).toString();
    if (settings.folder.isEmpty()) {
        settings.folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
                          + QStringLiteral("/draxel/traces");
    }
    settings.mostBytes = numberOf(kept, mostKey, settings.mostBytes / Bytes::ofMegabyte) * Bytes::ofMegabyte;
    settings.rotationMegabytes = numberOf(kept, rotationSizeKey, settings.rotationMegabytes);
    settings.rotationMinutes = numberOf(kept, rotationTimeKey, settings.rotationMinutes);
    settings.savesFaults = kept.value(faultsKey, settings.savesFaults).toBool();
    const QString rotation = kept.value(rotationKey).toString();
    const auto *const name = std::find(std::begin(rotationNames), std::end(rotationNames), rotation);
    if (name != std::end(rotationNames))
        settings.rotation = static_cast<Rotation>(name - std::begin(rotationNames));
    return settings;
}

void TraceSettings::save() const
{
    SettingsStore::instance().setValue(rotationKey,
                                       QString(rotationNames[static_cast<std::size_t>(rotation)]));
}
