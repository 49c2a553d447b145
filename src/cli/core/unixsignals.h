// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;
class SignalPipe;

/*! Turns SIGINT, SIGTERM and SIGHUP into a Qt signal, so that a command can end in order.
 *
 *  The handler itself only writes one byte to a pipe, which the event loop reads. There may be one object at
 *  a time; the former handlers are back when it is gone. On systems without such signals it never emits.
 */
class UnixSignals : public QObject
{
    Q_OBJECT

public:
    explicit UnixSignals(QObject *parent = nullptr);
    ~UnixSignals() override;

signals:
    void received(int signalNumber);

private:
    void readPipe();

    std::unique_ptr<SignalPipe> m_pipe;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
