// SPDX-License-Identifier: MIT
#include "watchlist.h"

#include <canopen/cobid.h>

#include <QStringList>

#include <algorithm>

namespace {

constexpr QLatin1String listKey("live/watch");
constexpr QLatin1String sizeKey("live/watch/size");
constexpr QLatin1String nodeKey("node");
constexpr QLatin1String indexKey("index");
constexpr QLatin1String subKey("sub");
constexpr QLatin1String periodKey("period");
constexpr QLatin1String plottedKey("plotted");

constexpr int hexadecimalBase = 16;
constexpr int lastIndex = 0xFFFF;
constexpr int lastSubIndex = 0xFF;

bool canBe(const WatchedItem &item)
{
    const bool isPeriod = item.period >= WatchList::shortestPeriod && item.period <= WatchList::longestPeriod;
    return CanOpen::isNodeId(item.nodeId) && item.object.index > 0 && (item.period == 0 || isPeriod);
}

std::optional<WatchedItem> itemOf(int node, int index, int sub)
{
    if (node < CanOpen::firstNodeId || node > CanOpen::lastNodeId || index < 1 || index > lastIndex || sub < 0
        || sub > lastSubIndex)
        return std::nullopt;
    WatchedItem item;
    item.nodeId = static_cast<quint8>(node);
    item.object = {static_cast<quint16>(index), static_cast<quint8>(sub)};
    return item;
}

/*! As QSettings names the entries of an array: "live/watch/1/node". */
QString keyOf(int position, QLatin1String key)
{
    return QStringLiteral("%1/%2/%3").arg(listKey, QString::number(position + 1), key);
}

std::optional<WatchedItem> readItem(const QVariantMap &settings, int position)
{
    std::optional<WatchedItem> item = itemOf(settings.value(keyOf(position, nodeKey)).toInt(),
                                             settings.value(keyOf(position, indexKey)).toInt(),
                                             settings.value(keyOf(position, subKey), -1).toInt());
    if (item) {
        item->period = settings.value(keyOf(position, periodKey)).toInt();
        item->isPlotted = settings.value(keyOf(position, plottedKey)).toBool();
    }
    return item;
}

/*! -1 when it is no number. */
int numberOf(QString text, int base)
{
    if (base == hexadecimalBase && text.endsWith(QLatin1Char('h'), Qt::CaseInsensitive))
        text.chop(1);
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        text.remove(0, 2);
        base = hexadecimalBase;
    }
    bool isNumber = false;
    const uint number = text.toUInt(&isNumber, base);
    return isNumber && number <= uint(lastIndex) ? static_cast<int>(number) : -1;
}

} // namespace

WatchList WatchList::load(const QVariantMap &settings)
{
    WatchList list;
    const int count = std::min(settings.value(sizeKey).toInt(), mostItems);
    for (int i = 0; i < count; ++i) {
        if (const std::optional<WatchedItem> item = readItem(settings, i))
            list.add(*item);
    }
    return list;
}

void WatchList::save(QVariantMap *settings) const
{
    const QStringList keys = settings->keys();
    for (const QString &key : keys) {
        if (key.startsWith(listKey + QLatin1Char('/')))
            settings->remove(key);
    }
    settings->insert(sizeKey, m_items.size());
    for (int i = 0; i < m_items.size(); ++i) {
        const WatchedItem &item = m_items.at(i);
        settings->insert(keyOf(i, nodeKey), item.nodeId);
        settings->insert(keyOf(i, indexKey), item.object.index);
        settings->insert(keyOf(i, subKey), item.object.subIndex);
        settings->insert(keyOf(i, periodKey), item.period);
        settings->insert(keyOf(i, plottedKey), item.isPlotted);
    }
}

bool WatchList::add(const WatchedItem &item)
{
    if (!canBe(item))
        return false;
    const int known = find(item.nodeId, item.object);
    if (known >= 0) {
        m_items[known].period = item.period;
        return true;
    }
    if (m_items.size() >= mostItems)
        return false;
    m_items.append(item);
    return true;
}

void WatchList::remove(int row)
{
    if (row >= 0 && row < m_items.size())
        m_items.removeAt(row);
}

void WatchList::move(int row, int place)
{
    if (row >= 0 && row < m_items.size() && place >= 0 && place < m_items.size())
        m_items.move(row, place);
}

void WatchList::setPlotted(int row, bool isPlotted)
{
    if (row >= 0 && row < m_items.size())
        m_items[row].isPlotted = isPlotted;
}

int WatchList::find(quint8 nodeId, CanOpen::ObjectKey object) const
{
    const auto *const found
        = std::find_if(m_items.cbegin(), m_items.cend(), [nodeId, object](const WatchedItem &item) {
              return item.nodeId == nodeId && item.object == object;
          });
    return found == m_items.cend() ? -1 : static_cast<int>(found - m_items.cbegin());
}

std::optional<WatchedItem> parseWatched(const QString &text)
{
    const QStringList parts = text.trimmed().split(QLatin1Char(':'));
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    constexpr int decimalBase = 10;
    const int sub = parts.size() == 3 ? numberOf(parts.at(2).trimmed(), decimalBase) : 0;
    return itemOf(numberOf(parts.at(0).trimmed(), decimalBase),
                  numberOf(parts.at(1).trimmed(), hexadecimalBase), sub);
}
