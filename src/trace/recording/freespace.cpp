// SPDX-License-Identifier: MIT
#include "freespace.h"

#include <QFileInfo>
#include <QStorageInfo>

qint64 systemFreeSpace(const QString &path)
{
    if (path == QLatin1String("-"))
        return -1;
    const QStorageInfo storage(QFileInfo(path).absolutePath());
    return storage.isValid() ? storage.bytesAvailable() : -1;
}
