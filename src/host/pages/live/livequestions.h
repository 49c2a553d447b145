// SPDX-License-Identifier: MIT
#pragma once

#include "batteryquestions.h"

#include <canopen/nodescan.h>
#include <canopen/objectdictionary.h>
#include <host/core/pdolearning.h>
#include <host/core/valueasking.h>

#include <QHash>
#include <QObject>
#include <QStringList>

#include <memory>

class HostServices;
class LiveBus;

/*! All that the page "Live" asks, and only when the user wants it: what PDOs carry, chosen values, the cells of batteries,
 *  and who is there. While a plug-in reads or a check-up runs it waits.
 */
class LiveQuestions : public QObject
{
    Q_OBJECT

public:
    /*! Both must outlive it. */
    LiveQuestions(HostServices *services, LiveBus *live, QObject *parent = nullptr);
    ~LiveQuestions() override;

    /*! Why nothing can be asked now, a sentence; empty when it can. */
    QString obstacle() const;

    /*! Asks all nodes that were heard what they send; those that a scan has found were heard by it. */
    void learn();
    bool isLearning() const { return m_learning.isRunning(); }
    void cancelLearning() { m_learning.cancel(); }

    /*! Asks every node ID whether it is there. */
    void scan();
    bool isScanning() const { return m_scan != nullptr; }

    /*! Finds out how many cells a node has. When there are some they are asked for from then on, as all values are that are
     *  asked for; until the bus is another one.
     */
    void askBattery(quint8 nodeId);
    /*! Whether one can be asked now: one at a time, and beside nobody else. */
    bool canAskBattery() const;
    const BatteryQuestions &batteries() const { return m_batteries; }

    /*! The nodes that were heard on this bus. */
    QVector<quint8> heardNodes() const;

    /*! Begins, or ends, to ask for the values that are asked for: only the user can want it, and only for this bus. */
    void setAsking(bool isAsking);
    bool isAsking() const { return m_isAsking; }
    /*! In place of those before. */
    void setAsked(const QVector<AskedObject> &objects);
    /*! Objects of the node have the types of its EDS or DCF; until the bus is another one. */
    void setDataSheet(quint8 nodeId, const CanOpen::ObjectDictionary &dictionary);
    /*! Why an object that is asked for has no value, a sentence; empty when it has. */
    QString silence(quint8 nodeId, CanOpen::ObjectKey object) const;

    /*! The host itself reads. */
    void setCheckingUp(bool isCheckingUp);

    void setSharePercent(int percent);

signals:
    /*! obstacle(), isLearning(), isScanning(), isAsking() or the state of a battery may have changed. */
    void changed();
    /*! What came of it, a sentence, and what did not go well, some more. */
    void told(const QString &sentence, const QStringList &problems);
    /*! See setDataSheet(). */
    void dataSheetSet(quint8 nodeId, const CanOpen::ObjectDictionary &dictionary);

private:
    void handleState();
    void handleLearned(quint8 nodeId, const PdoSource &source);
    void handleLearningEnd();
    void handleScanEnd(const QVector<quint8> &nodeIds);
    void handleBattery(quint8 nodeId);
    QVector<AskedObject> wanted() const;
    void renew();
    void pause();
    static quint32 keyOf(quint8 nodeId, CanOpen::ObjectKey object);

    HostServices *m_services;
    LiveBus *m_live;
    PdoLearning m_learning;
    ValueAsking m_asking;
    BatteryQuestions m_batteries;
    std::unique_ptr<CanOpen::NodeScan> m_scan;
    QVector<AskedObject> m_asked;                      // beside those of batteries
    QHash<quint8, CanOpen::ObjectDictionary> m_sheets; // by node
    QHash<quint32, QString> m_silences;
    QStringList m_failures; // of the learning under way
    int m_learnedNodes = 0;
    bool m_isAsking = false;
    bool m_isCheckingUp = false;
};
