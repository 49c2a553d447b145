// SPDX-License-Identifier: MIT
#pragma once

namespace CanOpen {

/*! What became of a frame that was handed over to be sent. */
enum class Sending {
    Written, //!< it has left for the bus, as far as can be told
    Waiting, //!< it waits; that it was written or dropped is told later
    Dropped
};

} // namespace CanOpen
