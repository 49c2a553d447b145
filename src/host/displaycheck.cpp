// SPDX-License-Identifier: MIT
#include "displaycheck.h"

#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace {

QtMessageHandler handlerBeforeCheck = nullptr;

// What Qt warns of before it gives up is in the sentence; without a fatal end it is no news.
void endOnFatal(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg) {
        // Not translated: the languages are not loaded yet.
        std::fputs(
            "draxel: There is no display to show the window on. Without one, the command line draxelctl "
            "does the same work: draxelctl --help.\n",
            stderr);
        std::fflush(stderr);
        std::_Exit(EXIT_FAILURE);
    }
    if (type != QtWarningMsg && type != QtInfoMsg && handlerBeforeCheck != nullptr)
        handlerBeforeCheck(type, context, text);
}

} // namespace

DisplayCheck::DisplayCheck()
{
    handlerBeforeCheck = qInstallMessageHandler(endOnFatal);
}

DisplayCheck::~DisplayCheck()
{
    qInstallMessageHandler(handlerBeforeCheck);
}
