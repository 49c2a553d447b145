// SPDX-License-Identifier: MIT
#pragma once

#include "objectkey.h"

#include <functional>
#include <optional>

namespace CanOpen {

/*! How a parameter record is read, wherever its values are kept: an object dictionary, a snapshot, an EDS. Gives the
 *  value of an unsigned object of up to 32 bits, and nothing for what is absent, not read or no number.
 */
using ObjectLookup = std::function<std::optional<quint32>(ObjectKey)>;

} // namespace CanOpen
