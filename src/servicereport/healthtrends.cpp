// SPDX-License-Identifier: MIT
#include "healthtrends.h"

#include <snapshot/deviceidentity.h>

#include <algorithm>

namespace {

constexpr quint16 stateOfHealth = 0x6176;
constexpr double unitsPerPercent = 100;

const SnapshotNode *findDevice(const Snapshot &snapshot, const QString &key)
{
    for (const SnapshotNode &node : snapshot.nodes) {
        if (DeviceIdentity::of(node).toKey() == key)
            return &node;
    }
    return nullptr;
}

std::optional<double> percent(const QVariant &value)
{
    bool isNumber = false;
    const double number = value.type() == QVariant::String ? 0 : value.toDouble(&isNumber);
    return isNumber ? std::optional<double>(number / unitsPerPercent) : std::nullopt;
}

void addPoint(HealthTrend *trend, const HealthTrend::Point &point)
{
    const auto place = std::lower_bound(trend->points.begin(), trend->points.end(), point,
                                        [](const auto &a, const auto &b) { return a.time < b.time; });
    if (point.time.isValid() && (place == trend->points.end() || place->time != point.time))
        trend->points.insert(place, point);
}

} // namespace

CanOpen::ObjectKey HealthTrends::object(const HealthTrend &trend)
{
    return {stateOfHealth, trend.pack};
}

QVector<HealthTrend> HealthTrends::of(const Snapshot &snapshot)
{
    QVector<HealthTrend> trends;
    for (const SnapshotNode &node : snapshot.nodes) {
        for (const SnapshotEntry &entry : node.entries) {
            const bool isHealth = entry.key.index == stateOfHealth && entry.key.subIndex > 0;
            const std::optional<double> value = isHealth ? percent(entry.value) : std::nullopt;
            if (value)
                trends.append({node.id, entry.key.subIndex, {{snapshot.time, *value}}});
        }
    }
    return trends;
}

void HealthTrends::addVisit(HealthTrend *trend, const QDateTime &time, const QVariant &value,
                            const QDateTime &now)
{
    const std::optional<double> then = percent(value);
    const bool isLater = now.isValid() && time > now;
    if (then && !isLater)
        addPoint(trend, {time, *then});
}

void HealthTrends::add(QVector<HealthTrend> *trends, const Snapshot &earlier, const Snapshot &now)
{
    for (HealthTrend &trend : *trends) {
        const SnapshotNode *node = now.find(trend.nodeId);
        const QString key = node != nullptr ? DeviceIdentity::of(*node).toKey() : QString();
        const SnapshotNode *former = key.isEmpty() ? nullptr : findDevice(earlier, key);
        const std::optional<double> value
            = former != nullptr ? percent(former->value(stateOfHealth, trend.pack)) : std::nullopt;
        if (value)
            addPoint(&trend, {earlier.time, *value});
    }
}
