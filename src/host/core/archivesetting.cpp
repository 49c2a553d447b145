// SPDX-License-Identifier: MIT
#include "archivesetting.h"

#include "hostsettings.h"

#include <QSettings>

namespace {

constexpr char variable[] = "DRAXEL_ARCHIVE";
constexpr QLatin1String addressKey("archive/address");

} // namespace

QString ArchiveSetting::text()
{
    return QSettings(QLatin1String(HostSettings::organization), QLatin1String(HostSettings::application))
        .value(addressKey)
        .toString();
}

void ArchiveSetting::save(const QString &text)
{
    QSettings kept(QLatin1String(HostSettings::organization), QLatin1String(HostSettings::application));
    if (text.isEmpty())
        kept.remove(addressKey);
    else
        kept.setValue(addressKey, text);
}

std::optional<ArchiveAddress> ArchiveSetting::load(QString *errorMessage)
{
    const QString fromEnvironment = qEnvironmentVariable(variable);
    const QString chosen = fromEnvironment.isEmpty() ? text() : fromEnvironment;
    return chosen.isEmpty() ? ArchiveAddress::standard() : ArchiveAddress::parse(chosen, errorMessage);
}
