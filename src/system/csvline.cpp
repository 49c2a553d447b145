// SPDX-License-Identifier: MIT
#include "csvline.h"

namespace {

QString quotedField(const QString &text)
{
    const bool isPlain = !text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"'))
                         && !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r'));
    if (isPlain)
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

} // namespace

QByteArray csvLine(const QStringList &fields)
{
    QStringList written;
    for (const QString &field : fields)
        written.append(quotedField(field));
    return written.join(QLatin1Char(',')).toUtf8() + "\r\n";
}
