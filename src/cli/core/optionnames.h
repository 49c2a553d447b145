// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>

// Options that several commands have. What each means there stands where it is added.
constexpr QLatin1String againstOption("against");
constexpr QLatin1String archiveOption("archive");
constexpr QLatin1String bitRateOption("bitrate");
constexpr QLatin1String channelOption("channel");
constexpr QLatin1String csvOption("csv");
constexpr QLatin1String everyOption("every");
constexpr QLatin1String forOption("for");
constexpr QLatin1String jsonOption("json");
constexpr QLatin1String nodeOption("node");
constexpr QLatin1String outputOption("output");
constexpr QLatin1String rulesOption("rules");
constexpr QLatin1String snapshotOption("snapshot");
constexpr QLatin1String speedOption("speed");
