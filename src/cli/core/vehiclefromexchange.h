// SPDX-License-Identifier: MIT
#pragma once

#include <simulator/vehicledescription.h>

#include <QString>
#include <QStringList>

#include <optional>

/*! Makes a live vehicle of the text of an exchange file.
 *
 *  Every node with an ID from 1 to 127 lives, with a heartbeat every 500 ms and the values of the file. The
 *  data types are those of the read list (of an object that is read twice, the later one); objects that are
 *  not in it are UNSIGNED32, or INTEGER32 when negative. Object 0000h, which an import leaves behind, is
 *  skipped.
 *
 *  Empty when the text is no exchange file or holds no node, with a sentence in \a errorMessage. A value that
 *  does not fit its type is left out, with a sentence in \a warnings. Neither may be null.
 */
std::optional<Simulator::VehicleDescription> vehicleFromExchange(const QString &text, QString *errorMessage,
                                                                 QStringList *warnings);
