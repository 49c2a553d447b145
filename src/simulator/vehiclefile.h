// SPDX-License-Identifier: MIT
#pragma once

#include "vehicledescription.h"

#include <QString>
#include <QVector>

#include <optional>

namespace Simulator {

/*! Reads a vehicle file (JSON) with the device configuration files that it names; their paths are relative to
 *  it.
 *
 *  Empty on an error; \a errorMessage then names file, line and key, as in "pedelec.json: line 31,
 *  nodes[2].heartbeatMs: no whole number from 0 to 65535".
 */
std::optional<VehicleDescription> readVehicleFile(const QString &path, QString *errorMessage);

/*! Reads the text of a vehicle file likewise; \a folder is where relative paths start. The message begins
 *  with line and key, and has no control characters of the file.
 */
std::optional<VehicleDescription> parseVehicle(const QByteArray &text, const QString &folder,
                                               QString *errorMessage);

/*! Where shipped vehicles are looked for: the folders of the environment variable DRAXEL_VEHICLES, else the
 *  folder "vehicles" of the application, else that of an installation.
 */
QStringList vehicleFolders();

struct ShippedVehicle
{
    QString name; // the file's name without ".json"
    QString path;
    QString description; // from the file; empty when it cannot be read
};

/*! The vehicle files in vehicleFolders(), by name. */
QVector<ShippedVehicle> shippedVehicles();

/*! The vehicle file that \a name means: a path, or the name of a shipped vehicle. Empty with \a errorMessage
 *  when there is none.
 */
QString findVehicleFile(const QString &name, QString *errorMessage);

} // namespace Simulator
