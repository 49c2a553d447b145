// SPDX-License-Identifier: MIT
#include "ordinaryfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

QString ordinaryFileProblem(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists() || info.isFile() || info.isDir())
        return QString();
    return QCoreApplication::translate("OrdinaryFile", "%1 is not a file.")
        .arg(QDir::toNativeSeparators(fileName));
}
