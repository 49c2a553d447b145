// SPDX-License-Identifier: MIT
#include "recentfiles.h"

#include "hostsettings.h"
#include "settingsstore.h"

#include <QDir>
#include <QFileInfo>

QStringList RecentFiles::load()
{
    QStringList files;
    const QStringList kept = SettingsStore::instance().value(HostSettings::recentFiles).toStringList();
    for (const QString &file : kept) {
        if (QDir::isAbsolutePath(file) && !files.contains(file) && files.size() < mostFiles)
            files.append(file);
    }
    return files;
}

void RecentFiles::add(const QString &fileName)
{
    const QString path = QFileInfo(fileName).absoluteFilePath();
    QStringList files = load();
    files.removeAll(path);
    files.prepend(path);
    SettingsStore::instance().setValue(HostSettings::recentFiles, QStringList(files.mid(0, mostFiles)));
}

void RecentFiles::remove(const QString &fileName)
{
    QStringList files = load();
    if (files.removeAll(QFileInfo(fileName).absoluteFilePath()) > 0)
        SettingsStore::instance().setValue(HostSettings::recentFiles, files);
}
