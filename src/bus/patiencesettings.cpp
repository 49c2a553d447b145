// SPDX-License-Identifier: MIT
#include "patiencesettings.h"

#include <canopen/cobid.h>
#include <canopen/sdoclient.h>

#include <QLatin1String>
#include <QStringList>

#include <algorithm>

namespace {

using std::chrono::milliseconds;

constexpr const char *generalGroup = "patience";
constexpr const char *nodesGroup = "patience/nodes"; // one group for each node ID
constexpr const char *timeoutKey = "timeout";        // ms
constexpr const char *repeatsKey = "repeats";

constexpr milliseconds shortestLimit{10000}; // of one upload in all
constexpr milliseconds longestLimit{60000};

int readNumber(const QVariantMap &settings, const QString &key, int lowest, int highest, int otherwise)
{
    bool isNumber = false;
    const int number = settings.value(key).toString().toInt(&isNumber);
    return isNumber && number >= lowest && number <= highest ? number : otherwise;
}

PatienceSettings::Patience readPatience(const QVariantMap &settings, const QString &group,
                                        const PatienceSettings::Patience &otherwise)
{
    PatienceSettings::Patience patience;
    patience.timeout
        = readNumber(settings, group + QLatin1String(timeoutKey), PatienceSettings::shortestTimeout,
                     PatienceSettings::longestTimeout, otherwise.timeout);
    patience.repeats = readNumber(settings, group + QLatin1String(repeatsKey), 0,
                                  PatienceSettings::mostRepeats, otherwise.repeats);
    return patience;
}

void writePatience(QVariantMap *settings, const QString &group, const PatienceSettings::Patience &patience)
{
    settings->insert(group + QLatin1String(timeoutKey), patience.timeout);
    settings->insert(group + QLatin1String(repeatsKey), patience.repeats);
}

QString groupOf(quint8 nodeId)
{
    return QLatin1String(nodesGroup) + QLatin1Char('/') + QString::number(nodeId) + QLatin1Char('/');
}

/*! The time-outs of all repeats together, within bounds: every wait ends. */
CanOpen::SdoPatience toClient(const PatienceSettings::Patience &patience)
{
    CanOpen::SdoPatience result;
    result.timeout = milliseconds(patience.timeout);
    result.repeats = patience.repeats;
    result.longest = std::clamp(result.allWaits(), shortestLimit, longestLimit);
    return result;
}

} // namespace

PatienceSettings PatienceSettings::load(const QVariantMap &settings)
{
    PatienceSettings result;
    result.general = readPatience(settings, QLatin1String(generalGroup) + QLatin1Char('/'), result.general);
    const QString prefix = QLatin1String(nodesGroup) + QLatin1Char('/');
    const QStringList keys = settings.keys();
    for (const QString &key : keys) {
        if (!key.startsWith(prefix))
            continue;
        bool isNumber = false;
        const int nodeId = key.mid(prefix.size()).section(QLatin1Char('/'), 0, 0).toInt(&isNumber);
        if (!isNumber || nodeId < CanOpen::firstNodeId || nodeId > CanOpen::lastNodeId)
            continue;
        const auto id = static_cast<quint8>(nodeId);
        result.nodes.insert(id, readPatience(settings, groupOf(id), result.general));
    }
    return result;
}

void PatienceSettings::save(QVariantMap *settings) const
{
    writePatience(settings, QLatin1String(generalGroup) + QLatin1Char('/'), general);
    const QStringList keys = settings->keys();
    for (const QString &key : keys) {
        if (key.startsWith(QLatin1String(nodesGroup) + QLatin1Char('/')))
            settings->remove(key);
    }
    for (auto it = nodes.cbegin(); it != nodes.cend(); ++it)
        writePatience(settings, groupOf(it.key()), it.value());
}

void PatienceSettings::apply(CanOpen::SdoClient *client, const PatienceSettings &previous) const
{
    client->setDefaultPatience(toClient(general));
    for (auto it = previous.nodes.cbegin(); it != previous.nodes.cend(); ++it)
        client->setPatience(it.key(), std::nullopt);
    for (auto it = nodes.cbegin(); it != nodes.cend(); ++it)
        client->setPatience(it.key(), toClient(it.value()));
}

bool operator==(const PatienceSettings::Patience &a, const PatienceSettings::Patience &b)
{
    return a.timeout == b.timeout && a.repeats == b.repeats;
}

bool operator==(const PatienceSettings &a, const PatienceSettings &b)
{
    return a.general == b.general && a.nodes == b.nodes;
}
