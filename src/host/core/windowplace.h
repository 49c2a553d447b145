// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
#include <QRect>

/*! Where a window fits on a screen. All in the same pixels, frames not counted unless said. */
namespace WindowPlace {

/*! What a window manager puts around a window, where it has not told yet. */
constexpr QMargins usualFrame(4, 32, 4, 4);

/*! \a wanted, made smaller and moved until it and its frame lie within \a available. An empty \a available
 *  (no screen is known) leaves it as it is.
 */
QRect fit(const QRect &wanted, const QRect &available, const QMargins &frame = usualFrame);

/*! A window of \a size, as far as it fits, in the middle of \a available. */
QRect centred(const QSize &size, const QRect &available, const QMargins &frame = usualFrame);

} // namespace WindowPlace
