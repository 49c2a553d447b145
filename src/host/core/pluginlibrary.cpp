// SPDX-License-Identifier: MIT
#include "pluginlibrary.h"

#include <interface/dxplugininterface.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>

namespace {

/*! The identifier of a plug-in is a reverse domain, ".plugins." and the plug-in's key. */
bool isPluginIdentifier(const QString &identifier, const QString &key)
{
    return !key.isEmpty() && identifier.endsWith(QLatin1String(".plugins.") + key);
}

} // namespace

std::optional<PluginLibrary> PluginLibrary::load(const QString &path, QString *errorMessage)
{
    const QString fileName = QDir::toNativeSeparators(path);
    QPluginLoader loader(path);
    const QJsonObject header = loader.metaData();
    if (header.isEmpty()) {
        *errorMessage = tr("The file %1 is no plug-in: %2").arg(fileName, loader.errorString());
        return std::nullopt;
    }

    const QJsonObject metaData = header.value(QLatin1String("MetaData")).toObject();
    PluginLibrary library;
    library.path = path;
    library.key = metaData.value(QLatin1String("Keys")).toArray().first().toString();
    library.name = metaData.value(QLatin1String("name")).toString();
    library.description = metaData.value(QLatin1String("description")).toString();
    library.version = metaData.value(QLatin1String("version")).toString();
    library.manufacturer = metaData.value(QLatin1String("manufacturer")).toString();
    if (library.name.isEmpty()
        || !isPluginIdentifier(header.value(QLatin1String("IID")).toString(), library.key)) {
        *errorMessage = tr("The library %1 is a plug-in for another program.").arg(fileName);
        return std::nullopt;
    }

    QObject *instance = loader.instance();
    if (instance == nullptr) {
        *errorMessage = tr("The plug-in %1 cannot be loaded: %2").arg(fileName, loader.errorString());
        return std::nullopt;
    }
    library.plugin = qobject_cast<DXPlugInInterface *>(instance);
    if (library.plugin == nullptr) {
        *errorMessage
            = tr("The plug-in %1 was made for another version of this program (it does not know the "
                 "interface %2).")
                  .arg(fileName, QLatin1String(DXPlugInInterface_iid));
        return std::nullopt;
    }
    return library;
}

QStringList PluginLibrary::findIn(const QString &folder)
{
    QStringList paths;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        if (QLibrary::isLibrary(file.fileName()))
            paths.append(file.absoluteFilePath());
    }
    return paths;
}
