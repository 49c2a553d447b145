// SPDX-License-Identifier: MIT
#include "tablerow.h"

#include <QIODevice>

QString tableField(const QStringList &fields, int number)
{
    return fields.value(number);
}

int tableKey(const QStringList &fields, bool *ok)
{
    return tableField(fields, 0).toInt(ok, 16);
}

void forEachTableRow(QIODevice &device, const std::function<void(const QStringList &fields)> &handleRow)
{
    while (!device.atEnd()) {
        // Deliberate: the tables are Latin-1 and are read as UTF-8, so 96h becomes a replacement character
        handleRow(QString::fromUtf8(device.readLine()).split(QLatin1Char(';')));
    }
}
