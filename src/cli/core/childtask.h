// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

class InterruptibleLoop;

/*! Runs \a work, which takes long and knows no event loop, in a process of its own, so that a signal can end it at
 *  any time. Returns what it returned (0 to 255); empty when \a loop was interrupted, and the work was ended in its
 *  middle, or when the process failed.
 *
 *  The work must leave no trace but files and what it prints: nothing in memory comes back. Where there are no
 *  processes of this kind it runs here, to its end.
 */
std::optional<int> runAsChild(const std::function<int()> &work, InterruptibleLoop *loop);
