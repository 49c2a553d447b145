// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

class DXPlugInInterface;

/*! One plug-in that was loaded. Library and instance stay loaded until the program ends. */
struct PluginLibrary
{
    Q_DECLARE_TR_FUNCTIONS(PluginLibrary)

public:
    QString path;
    QString key;  // "pl_overview"
    QString name; // for people
    QString description;
    QString version;
    QString manufacturer;
    DXPlugInInterface *plugin = nullptr; // never null after load()

    /*! Loads the library \a path and checks that it is a plug-in of this host: identifier, metadata and
     *  interface. Empty on failure, with one sentence for the user that names the file in \a errorMessage
     *  (must not be null).
     */
    static std::optional<PluginLibrary> load(const QString &path, QString *errorMessage);

    /*! The full paths of all libraries in \a folder, by name; none when there is no such folder. */
    static QStringList findIn(const QString &folder);
};
