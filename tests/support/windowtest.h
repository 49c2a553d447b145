// SPDX-License-Identifier: MIT
#pragma once

#include "logwatcher.h"

#include <QObject>

#include <memory>

/*! A test of the window: each of its functions fails when something was warned of that nobody expected, for example a
 *  connect() that found no such signal.
 */
class WindowTest : public QObject
{
    Q_OBJECT

protected:
    /*! What the current function logs. A function that expects a warning clears it. */
    LogWatcher &log() { return *m_log; }

private slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<LogWatcher> m_log;
};
