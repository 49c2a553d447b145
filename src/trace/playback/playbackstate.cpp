// SPDX-License-Identifier: MIT
#include "playbackstate.h"

#include "tracedate.h"

namespace {

constexpr const char *stateProperty = "playback";

constexpr const char *playedName = "played";
constexpr const char *framesName = "frames";
constexpr const char *timeName = "time";
constexpr const char *timeOfDayName = "hasTimeOfDay";
constexpr const char *pausedName = "isPaused";
constexpr const char *overName = "isOver";
constexpr const char *repeatedName = "isRepeated";
constexpr const char *speedName = "speed";

} // namespace

QDateTime PlaybackState::timeOfDay() const
{
    return hasTimeOfDay ? traceDate(time) : QDateTime();
}

QVariantMap PlaybackState::toMap() const
{
    QVariantMap map;
    map.insert(QLatin1String(playedName), played);
    map.insert(QLatin1String(framesName), frames);
    map.insert(QLatin1String(timeName), time);
    map.insert(QLatin1String(timeOfDayName), hasTimeOfDay);
    map.insert(QLatin1String(pausedName), isPaused);
    map.insert(QLatin1String(overName), isOver);
    map.insert(QLatin1String(repeatedName), isRepeated);
    map.insert(QLatin1String(speedName), speed);
    return map;
}

std::optional<PlaybackState> PlaybackState::of(const QCanBusDevice *device)
{
    const QVariant property = device != nullptr ? device->property(stateProperty) : QVariant();
    if (!property.isValid())
        return std::nullopt;
    const QVariantMap map = property.toMap();
    PlaybackState state;
    state.played = map.value(QLatin1String(playedName)).toLongLong();
    state.frames = map.value(QLatin1String(framesName)).toLongLong();
    state.time = map.value(QLatin1String(timeName)).toLongLong();
    state.hasTimeOfDay = map.value(QLatin1String(timeOfDayName)).toBool();
    state.isPaused = map.value(QLatin1String(pausedName)).toBool();
    state.isOver = map.value(QLatin1String(overName)).toBool();
    state.isRepeated = map.value(QLatin1String(repeatedName)).toBool();
    state.speed = map.value(QLatin1String(speedName)).toDouble();
    return state;
}
