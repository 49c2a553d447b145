// SPDX-License-Identifier: MIT
#pragma once

#include <simulator/vehicledescription.h>

#include <QString>
#include <QStringList>

#include <optional>

struct Snapshot;

/*! Makes a live vehicle of a snapshot: every node answers as it answered then.
 *
 *  Values have their bytes and types. Of a snapshot without bytes the types are those that are known of the objects;
 *  others are UNSIGNED32, or INTEGER32 when negative, and a value that does not fit is left out, with a sentence in
 *  \a warnings. An object that was refused is refused with the same code, one without an answer is not answered; what
 *  was not asked is not there. A node that was Stopped is stopped. The heartbeat is the one of object 1017h, or 500 ms;
 *  none for a node that was read without one.
 */
Simulator::VehicleDescription vehicleFromSnapshot(const Snapshot &snapshot, QStringList *warnings);

/*! Whether a file is a saved vehicle: a snapshot or an exchange file by its name, or a support bundle. */
bool isSavedVehicle(const QString &fileName);

/*! The vehicle of a snapshot, an exchange file or a support bundle, with the file's name. Empty when the file cannot be read, is no good
 *  one or holds no node, with a sentence in \a errorMessage. Neither may be null.
 */
std::optional<Simulator::VehicleDescription> vehicleFromFile(const QString &fileName, QString *errorMessage,
                                                             QStringList *warnings);
