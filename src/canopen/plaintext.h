// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace CanOpen {

/*! \a text without anything that steers a terminal or turns the order of letters around: control and format
 *  characters, line separators and lone surrogates become "\u001B" and the like. For messages that repeat what
 *  stands in somebody else's file.
 */
QString plainText(const QString &text);

} // namespace CanOpen
