// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! Whether the program talks to a person, and what a person may be shown. */
namespace Terminal {

enum class Stream { Output, Errors };

/*! Whether a stream of the program is a terminal, which takes control characters as commands. */
bool isTerminal(Stream stream);

/*! False when a stream of the program is a pipe whose other end nobody holds any more. */
bool hasReader(Stream stream);

/*! From now on writing to such a pipe fails, and does not end the program. */
void surviveBrokenPipes();

struct Size
{
    int columns = 80;
    int lines = 24;
};

/*! Of the terminal that standard output is; what it does not tell is 80 columns and 24 lines. */
Size size();

/*! \a text with everything written out that would act on a terminal instead of being seen: control characters
 *  (C0 but for line ends and tabulators, DEL, C1) and the characters that turn the direction of writing
 *  (Unicode Standard Annex 9). As "\u001b", which JSON understands.
 */
QString visible(const QString &text);

} // namespace Terminal
