// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/datasheets.h>
#include <cli/core/objectaddress.h>
#include <host/core/livebus.h>
#include <host/core/pdolearning.h>
#include <host/core/valueasking.h>

#include <QObject>
#include <QStringList>

#include <chrono>
#include <vector>

/*! One object that somebody watches, and what is known of it. */
struct WatchedValue
{
    ObjectAddress address;
    QString reason;        //!< why it could not be read when it was asked for last; empty: it could
    bool isMapped = false; //!< into a PDO
    bool isAsked = false;
    qint64 learned = 0; //!< when it was known whether it is mapped, us
};

/*! Gets the values of chosen objects: from PDOs where the node, its EDS or DCF maps them, by SDO uploads where it does not,
 *  and where the PDO does not come.
 */
class WatchedValues : public QObject
{
    Q_OBJECT

public:
    /*! All must outlive it. */
    WatchedValues(BusConnection *bus, LiveBus *live);

    void setSharePercent(int percent);

    /*! Begins, after the start of the LiveBus; asks once in \a period where nothing comes by itself. Nodes of \a sheets are
     *  not asked what they map.
     */
    void start(const QVector<ObjectAddress> &objects, const DataSheets &sheets,
               std::chrono::milliseconds period);

    const std::vector<WatchedValue> &values() const { return m_values; }
    /*! What is heard of one; null as long as nothing is. */
    const LiveValue *find(const WatchedValue &value) const;
    bool isLate(const WatchedValue &value) const;
    /*! Mappings that could not be read, in sentences, and what is wrong with those that could. */
    QStringList problems() const;

private:
    void add(const ObjectAddress &address, const DataSheets &sheets);
    void handleLearned(quint8 nodeId);
    void handleNotLearned(quint8 nodeId, const QString &reason);
    void handleReason(quint8 nodeId, CanOpen::ObjectKey object, const QString &reason);
    void look();
    bool needsQuestions(const WatchedValue &value) const;
    void ask();

    LiveBus *m_live;
    PdoLearning m_learning;
    ValueAsking m_asking;
    std::chrono::milliseconds m_period{500};
    std::vector<WatchedValue> m_values;
    std::vector<std::optional<CanOpen::DataType>> m_types; // of data sheets
    QStringList m_notLearned;
};
