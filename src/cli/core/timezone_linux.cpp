// SPDX-License-Identifier: MIT
#include "timezone.h"

#include <QtGlobal>

void TimeZone::keep()
{
    // To glibc a zone that is named does not change. Qt knows this name as that of the system's zone.
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
}
