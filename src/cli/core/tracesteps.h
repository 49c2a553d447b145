// SPDX-License-Identifier: MIT
#pragma once

#include "inputlines.h"

#include <QCoreApplication>
#include <QObject>

#include <memory>

class BusConnection;

/*! Follows the trace that is played on a bus: says when it is over, and lets whoever asked for one that is paused step it.
 *
 *  Each line of standard input plays a frame, and a number in it so many.
 */
class TraceSteps : public QObject
{
    Q_OBJECT

public:
    /*! \a bus must outlive it. */
    explicit TraceSteps(BusConnection *bus, QObject *parent = nullptr);

    /*! The bus is connected; says how to step when its trace waits for it. Does nothing on other buses. */
    void begin();

    /*! To be called now and then: whether nothing more will come, as the trace is over and all of its frames were taken, or
     *  nobody is there to ask for more. Says once that it is over.
     */
    bool isOver();

private:
    void step(const QByteArray &line);
    bool isEverythingTaken();

    BusConnection *m_bus;
    std::unique_ptr<InputLines> m_lines; // null where nobody steps
    qint64 m_asked = 0;                  // frames
    quint64 m_received = 0;              // frames, when they were counted last
    bool m_isInputOver = false;
    bool m_isSaid = false;
};
