// SPDX-License-Identifier: MIT
#include "filefolder.h"

#include <host/core/hostsettings.h>
#include <host/core/settingsstore.h>

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString FileFolder::start()
{
    const QString folder = SettingsStore::instance().value(HostSettings::folder).toString();
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
    SettingsStore::instance().setValue(HostSettings::folder, QFileInfo(fileName).absolutePath());
}
