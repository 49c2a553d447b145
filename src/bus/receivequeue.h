// SPDX-License-Identifier: MIT
#pragma once

#include <QCanBusFrame>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

/*! Watches whether this computer loses frames that came: when a program reads too slowly, the system drops them
 *  without a word. Looks twice a second.
 */
class ReceiveQueue : public QObject
{
    Q_OBJECT

public:
    /*! Frames that were dropped since the interface was opened; begins at 0 again after 2^32. */
    using Counter = std::function<std::optional<quint32>()>;

    explicit ReceiveQueue(QObject *parent = nullptr);

    /*! Begins to watch an interface that was opened just now. */
    void start(const Counter &counter);
    void stop();

    /*! Looks once; called by the timer. */
    void check();

    /*! The report of lost frames as an adapter makes it: an error frame of a controller problem, receive overflow. */
    static QCanBusFrame overflowFrame();

signals:
    /*! Frames were dropped since the last look. */
    void overflowed();

private:
    Counter m_counter;
    QTimer m_timer;
    quint32 m_dropped = 0;
};
