// SPDX-License-Identifier: MIT
#pragma once

class QByteArray;

/*! Whether the bytes are a PDF file (ISO 32000-1) from its first to its last line, with nothing lost between.
 *
 *  A printer does not tell that a disk was full. It shows in the file: the trailer is missing, or the table
 *  of objects does not stand at the byte that the trailer names.
 */
bool isCompletePdf(const QByteArray &file);
