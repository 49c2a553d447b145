// SPDX-License-Identifier: MIT
#include "consolelog.h"

#include <QtGlobal>
#include <QMessageLogContext>

#include <cstring>

namespace {

QtMessageHandler handlerBeforeLog = nullptr;

bool isPlainDebugLine(QtMsgType type, const QMessageLogContext &context)
{
    return type == QtDebugMsg
           && (context.category == nullptr || std::strcmp(context.category, "default") == 0);
}

void passOn(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!isPlainDebugLine(type, context) && handlerBeforeLog != nullptr)
        handlerBeforeLog(type, context, text);
}

} // namespace

void installConsoleLog(bool isVerbose)
{
    if (isVerbose || qEnvironmentVariableIsSet("QT_LOGGING_RULES"))
        return;
    const QtMessageHandler previous = qInstallMessageHandler(passOn);
    if (previous != passOn)
        handlerBeforeLog = previous;
}
