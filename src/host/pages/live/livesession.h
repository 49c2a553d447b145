// SPDX-License-Identifier: MIT
#pragma once

#include "livequestions.h"
#include "livewatch.h"

#include <checkup/ruleset.h>
#include <host/core/livebus.h>
#include <live/health/healthjudgement.h>

#include <QObject>

#include <optional>

class HostServices;

/*! What the page "Live" is about: the bus that is connected, listened to from its connection to its end. Sends nothing by
 *  itself. What was heard stays until another bus is connected.
 */
class LiveSession : public QObject
{
    Q_OBJECT

public:
    /*! \a services must outlive the session. */
    explicit LiveSession(HostServices *services, QObject *parent = nullptr);

    /*! Rules of one's own, for tests; otherwise those of the standard folders, read when they are needed. */
    void setRules(const RuleSet &rules) { m_rules = rules; }
    /*! The program's language, "de". */
    void setLanguage(const QString &language) { m_language = language; }

    bool isListening() const { return m_isListening; }
    /*! Whether nothing was ever listened to. */
    bool isEmpty() const { return m_isEmpty; }

    LiveBus &live() { return m_live; }
    LiveQuestions &questions() { return m_questions; }
    LiveWatch &watch() { return m_watch; }

    /*! The nodes that are batteries by the values that are known of them or watched, and those whose cells are asked for;
     *  in the order of their numbers.
     */
    QVector<quint8> batteries() const;

    /*! On the line of all that was heard (us); stands still behind the end of the connection. */
    qint64 now();

    /*! As of now(); those of its end when the connection has ended. */
    HealthNumbers numbers();
    /*! The lights over \a numbers. */
    QVector<HealthLight> judge(const HealthNumbers &numbers);

signals:
    /*! Another bus: everything is new. */
    void started();
    /*! The connection was ended; what was heard stays. */
    void stopped();
    /*! Ten times a second while it listens. */
    void ticked();

private:
    void handleState(BusConnection::State state);

    LiveBus m_live;
    LiveQuestions m_questions;
    LiveWatch m_watch;
    std::optional<RuleSet> m_rules;
    QString m_language = QStringLiteral("en");
    bool m_isListening = false;
    bool m_isEmpty = true;
    qint64 m_end = 0;            // now() when it ended
    HealthNumbers m_lastNumbers; // of then
};
