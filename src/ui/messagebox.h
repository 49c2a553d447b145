// SPDX-License-Identifier: MIT
#pragma once

class QString;

/*! Shows \a text in a modal message box without a parent, as plain text, until the user closes it.
 *
 *  A text of more than 40 lines or 4000 characters, which no screen has room for and which would take seconds
 *  to lay out, is shown by its beginning. The box's field of details, which scrolls, has more of it, up to 5000
 *  characters with a dot for each control character, and says how many are missing; a button saves the whole text
 *  as a file. A tabulator counts as 5 characters and a control character as 20, for the time that they take.
 */
void showMessage(const QString &title, const QString &text);
