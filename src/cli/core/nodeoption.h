// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>

class CommandArguments;
class QString;
class VehicleSource;

/*! The option --node N of commands that look at one node. */
namespace NodeOption {

void add(CommandArguments &options, const QString &description);

bool isSet(const CommandArguments &options);

/*! The node ID. Complains and gives nothing when it is none from 1 to 127. */
std::optional<quint8> parse(const CommandArguments &options);

/*! Whether the vehicle has the node; prints a sentence when it has not. */
bool isKnown(quint8 nodeId, const VehicleSource &vehicle);

} // namespace NodeOption
