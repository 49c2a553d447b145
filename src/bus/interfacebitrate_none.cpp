// SPDX-License-Identifier: MIT
#include "interfacebitrate.h"

#include <QString>

int interfaceBitRate(const QString &)
{
    return 0;
}
