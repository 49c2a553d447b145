// SPDX-License-Identifier: MIT
#pragma once

#include "faultlist.h"

#include <canopen/objectdictionary.h>

#include <optional>

namespace Simulator {

/*! What a node tells in the place of \a key when a fault has it lie about the mapping of a PDO (1A00h on); else empty. */
std::optional<CanOpen::ObjectEntry>
lieAbout(const FaultList &faults, const CanOpen::ObjectDictionary &dictionary, CanOpen::ObjectKey key);

} // namespace Simulator
