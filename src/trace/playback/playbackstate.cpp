// SPDX-License-Identifier: MIT
#include "playbackstate.h"

#include "tracedate.h"

namespace {

constexpr const char *stateProperty = "playback";
constexpr const char *timeProperty = "busTime";

constexpr QLatin1String playedName("played");
constexpr QLatin1String framesName("frames");
constexpr QLatin1String timeName("time");
constexpr QLatin1String timeOfDayName("hasTimeOfDay");
constexpr QLatin1String pausedName("isPaused");
constexpr QLatin1String overName("isOver");
constexpr QLatin1String speedName("speed");

} // namespace

QDateTime PlaybackState::timeOfDay() const
{
    return hasTimeOfDay ? traceDate(time) : QDateTime();
}

QVariantMap PlaybackState::toMap() const
{
    return {{playedName, played},   {framesName, frames}, {timeName, time},  {timeOfDayName, hasTimeOfDay},
            {pausedName, isPaused}, {overName, isOver},   {speedName, speed}};
}

std::optional<PlaybackState> PlaybackState::of(const QCanBusDevice *device)
{
    const QVariant property = device != nullptr ? device->property(stateProperty) : QVariant();
    if (!property.isValid())
        return std::nullopt;
    const QVariantMap map = property.toMap();
    PlaybackState state;
    state.played = map.value(playedName).toLongLong();
    state.frames = map.value(framesName).toLongLong();
    state.time = map.value(timeName).toLongLong();
    state.hasTimeOfDay = map.value(timeOfDayName).toBool();
    state.isPaused = map.value(pausedName).toBool();
    state.isOver = map.value(overName).toBool();
    state.speed = map.value(speedName).toDouble();
    return state;
}

std::optional<qint64> PlaybackState::busTime(const QCanBusDevice *device)
{
    const QVariant property = device != nullptr ? device->property(timeProperty) : QVariant();
    return property.isValid() ? std::optional<qint64>(property.toLongLong()) : std::nullopt;
}
