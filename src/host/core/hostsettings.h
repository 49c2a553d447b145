// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>

/*! Where the host's settings are kept (SettingsStore), and under which keys. */
namespace HostSettings {

constexpr char organization[] = "Draxel Project";
constexpr char application[] = "draxel";
constexpr char displayName[] = "Draxel";

constexpr QLatin1String geometry("window/geometry");
constexpr QLatin1String windowState("window/state");
constexpr QLatin1String plugin("bus/plugin");
constexpr QLatin1String interfaceName("bus/interface");
constexpr QLatin1String bitRate("bus/bitRate"); // bit/s; absent: as configured
constexpr QLatin1String language("language");   // "de", "zh_CN"; absent: that of the system
constexpr QLatin1String recentFiles("files/recent");
constexpr QLatin1String folder("files/folder");       // where the last file was opened or saved
constexpr QLatin1String busShare("checkup/busShare"); // percent that a check-up may use

} // namespace HostSettings
