// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! A tool tip that says \a text as it stands, whatever it holds, in lines that are not too long. */
inline QString plainToolTip(const QString &text)
{
    return text.isEmpty() ? QString()
                          : QStringLiteral("<qt>%1</qt>")
                                .arg(text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")));
}
