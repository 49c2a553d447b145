// SPDX-License-Identifier: MIT
#include "texttables.h"

#include <QCoreApplication>

QString interpreterText(const char *text)
{
    return QCoreApplication::translate("DataInterpreter", text);
}
