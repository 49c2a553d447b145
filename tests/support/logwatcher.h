// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QtGlobal>

/*! Records what is logged while it lives; only one at a time.
 *
 *  A test function ends with `QCOMPARE(log.warnings(), QStringList())`, so that an unexpected warning, say of
 *  a connect() that found no such signal, fails it.
 */
class LogWatcher
{
public:
    LogWatcher();
    ~LogWatcher();
    LogWatcher(const LogWatcher &) = delete;
    LogWatcher &operator=(const LogWatcher &) = delete;

    /*! Debug lines, in order. */
    const QStringList &debugLines() const { return m_debugLines; }

    /*! Warnings and worse, without those that the platform of the test is known to give. */
    const QStringList &warnings() const { return m_warnings; }

    void clear();

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);

    QtMessageHandler m_previous;
    QStringList m_debugLines;
    QStringList m_warnings;
};
