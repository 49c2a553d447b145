// SPDX-License-Identifier: MIT
#include "archivesetting.h"

#include "settingsstore.h"

namespace {

constexpr char variable[] = "DRAXEL_ARCHIVE";
constexpr QLatin1String addressKey("archive/address");

} // namespace

QString ArchiveSetting::text()
{
    return SettingsStore::instance().value(addressKey).toString();
}

void ArchiveSetting::save(const QString &text)
{
    SettingsStore::instance().setValue(addressKey, text.isEmpty() ? QVariant() : text);
}

std::optional<ArchiveAddress> ArchiveSetting::load(QString *errorMessage)
{
    const QString fromEnvironment = qEnvironmentVariable(variable);
    const QString chosen = fromEnvironment.isEmpty() ? text() : fromEnvironment;
    return chosen.isEmpty() ? ArchiveAddress::standard() : ArchiveAddress::parse(chosen, errorMessage);
}
