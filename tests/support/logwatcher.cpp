// SPDX-License-Identifier: MIT
#include "logwatcher.h"

#include <QString>

namespace {
LogWatcher *current = nullptr;
}

LogWatcher::LogWatcher()
{
    Q_ASSERT(current == nullptr);
    current = this;
    m_previous = qInstallMessageHandler(&LogWatcher::handle);
}

LogWatcher::~LogWatcher()
{
    qInstallMessageHandler(m_previous);
    current = nullptr;
}

void LogWatcher::clear()
{
    m_debugLines.clear();
    m_warnings.clear();
}

void LogWatcher::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg) {
        current->m_debugLines.append(text);
        return;
    }
    // The platform without a display cannot do all that windows ask for.
    const bool isPlatform = text.startsWith(QLatin1String("This plugin does not support"))
                            || text.startsWith(QLatin1String("QStandardPaths: "));
    if (type != QtInfoMsg && !isPlatform)
        current->m_warnings.append(text);
    if (type == QtFatalMsg)
        current->m_previous(type, context, text);
}
