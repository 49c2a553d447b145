// SPDX-License-Identifier: MIT
#include "filefolder.h"

#include <host/core/hostsettings.h>

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

QString FileFolder::start()
{
    const QString folder = QSettings().value(HostSettings::folder).toString();
    // What is not there would be taken for the name of a file.
    for (const QString &candidate :
         {folder, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)}) {
        if (QFileInfo(candidate).isDir())
            return candidate;
    }
    return QDir::homePath();
}

void FileFolder::remember(const QString &fileName)
{
    QSettings().setValue(HostSettings::folder, QFileInfo(fileName).absolutePath());
}
