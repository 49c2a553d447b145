// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QVariantMap>
#include <QVector>

#include <optional>

class QString;

/*! A value that the user wants to see. */
struct WatchedItem
{
    quint8 nodeId = 0;
    CanOpen::ObjectKey object;
    int period = 0; //!< ms at which the node is asked for it; 0: it is only listened to
    bool isPlotted = false;
};

/*! Which values are watched, in the order of the user; each once, and not more than mostItems. */
class WatchList
{
public:
    static constexpr int mostItems = 100;
    static constexpr int shortestPeriod = 100;    // ms
    static constexpr int longestPeriod = 3600000; // ms

    /*! What was saved; entries that cannot be are left out. */
    static WatchList load(const QVariantMap &settings);
    void save(QVariantMap *settings) const;

    const QVector<WatchedItem> &items() const { return m_items; }

    /*! At the end; one that is there gets another period. False when it cannot be, or when there is no room. */
    bool add(const WatchedItem &item);
    void remove(int row);
    /*! To another place. */
    void move(int row, int place);
    void setPlotted(int row, bool isPlotted);

    /*! -1: it is not watched. */
    int find(quint8 nodeId, CanOpen::ObjectKey object) const;

private:
    QVector<WatchedItem> m_items;
};

/*! "2:6040:1" of a user: node (1 to 127), index (hexadecimal) and sub-index (0 when it is missing), with "0x" and "h" as
 *  they like. Empty when it is something else.
 */
std::optional<WatchedItem> parseWatched(const QString &text);
