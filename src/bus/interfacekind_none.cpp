// SPDX-License-Identifier: MIT
#include "interfacekind.h"

QString interfaceKind(const QString &name)
{
    Q_UNUSED(name)
    return QString();
}
