// SPDX-License-Identifier: MIT
#include "pdffile.h"

#include <QByteArray>

bool isCompletePdf(const QByteArray &file)
{
    // The file ends in three lines:  startxref  |  byte offset of the table "xref"  |  %%EOF
    const int trailer = file.lastIndexOf("\nstartxref\n");
    if (trailer < 0 || !file.startsWith("%PDF-") || !file.endsWith("\n%%EOF\n"))
        return false;

    const int numberStart = trailer + int(qstrlen("\nstartxref\n"));
    const int numberEnd = file.indexOf('\n', numberStart);
    bool isNumber = false;
    const int table = file.mid(numberStart, numberEnd - numberStart).toInt(&isNumber);
    return isNumber && table > 0 && table < trailer && file.mid(table, 5) == "xref\n";
}
