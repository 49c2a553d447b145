// SPDX-License-Identifier: MIT
#pragma once

#include <live/events/liveevent.h>

#include <QObject>

class LiveSession;
class MessageLog;

/*! Puts events of the bus among the messages: those of which the bus report says nothing, so that none is there twice. */
class EventMessages : public QObject
{
    Q_OBJECT

public:
    static constexpr int mostAtOnce = 20; // the page has all of them

    /*! Both must outlive it. */
    EventMessages(LiveSession *session, MessageLog *log, QObject *parent = nullptr);

    /*! Whether an event of this kind becomes a message here. */
    static bool isTold(EventKind kind);

private:
    void tellNew();
    void tell(const LiveEvent &event);

    LiveSession *m_session;
    MessageLog *m_log;
    quint64 m_last = 0; // number of the event that was looked at last
};
