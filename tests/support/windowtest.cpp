// SPDX-License-Identifier: MIT
#include "windowtest.h"

#include <QtTest>

void WindowTest::init()
{
    m_log = std::make_unique<LogWatcher>();
}

void WindowTest::cleanup()
{
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings, QStringList());
}
