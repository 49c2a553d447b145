// SPDX-License-Identifier: MIT
#pragma once

#include "batteryinquiry.h"

#include <host/core/valueasking.h>

#include <QMap>
#include <QObject>
#include <QStringList>

/*! The batteries whose cells the user wants to have asked for, on this bus. Finds out what there is of them, and says it;
 *  the asking itself is somebody else's.
 */
class BatteryQuestions : public QObject
{
    Q_OBJECT

public:
    static constexpr int period = 2000; // ms

    enum class State {
        Unasked,     //!< or not answered
        BeingAsked,  //!< how many cells there are
        Known,       //!< there are cells
        WithoutCells //!< it says that it has none
    };

    /*! \a bus must outlive it. */
    explicit BatteryQuestions(BusConnection *bus, QObject *parent = nullptr);

    void setSharePercent(int percent) { m_inquiry.setSharePercent(percent); }
    void setPaused(bool isPaused) { m_inquiry.setPaused(isPaused); }

    /*! Asks a node what it has; then it is one of the batteries, or it is said why not. One node at a time. */
    void ask(quint8 nodeId);
    bool isAsking() const { return m_inquiry.isRunning(); }
    /*! Of the node that is being asked nothing is told. */
    void cancel() { m_inquiry.cancel(); }
    /*! Another bus. */
    void forget();

    State state(quint8 nodeId) const;
    /*! Those of state Known, and the one that is being asked. */
    QVector<quint8> nodes() const;
    /*! How many cells of a pack are asked for. */
    int cellCount(quint8 nodeId, quint16 object) const;
    /*! All that is to be asked for. */
    QVector<AskedObject> objects() const;

signals:
    /*! The node has another state. */
    void finished(quint8 nodeId);
    /*! What came of it, a sentence, and what did not go well, some more. */
    void told(const QString &sentence, const QStringList &problems);

private:
    void handleAnswer(const BatteryAnswer &answer);
    static QStringList problemsOf(const BatteryAnswer &answer);

    BatteryInquiry m_inquiry;
    QMap<quint8, BatteryAnswer> m_answers; // of all that have told, also that they have none
};
