// SPDX-License-Identifier: MIT
#include "unnamedfile.h"

#include <QString>

int UnnamedFile::open(const QString &folder)
{
    Q_UNUSED(folder)
    return -1;
}

QString UnnamedFile::path(int)
{
    return {};
}

bool UnnamedFile::giveName(int descriptor, const QString &fileName, QString *error)
{
    Q_UNUSED(descriptor)
    Q_UNUSED(fileName)
    *error = qt_error_string(0);
    return false;
}
