// SPDX-License-Identifier: MIT
#include "interruptibleloop.h"

InterruptibleLoop::InterruptibleLoop()
{
    QObject::connect(&m_signals, &UnixSignals::received, &m_loop, [this](int number) {
        m_signalNumber = number;
        m_loop.quit();
    });
}

bool InterruptibleLoop::run()
{
    if (!m_isEnded && !isInterrupted())
        m_loop.exec();
    m_isEnded = false;
    return !isInterrupted();
}

void InterruptibleLoop::end()
{
    m_isEnded = true;
    m_loop.quit();
}

ExitStatus InterruptibleLoop::status() const
{
    return m_signalNumber ? Exit::signalled(*m_signalNumber) : Exit::success;
}
