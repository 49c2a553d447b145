// SPDX-License-Identifier: MIT
#include "usertraces.h"

#include <trace/files/traceformat.h>

#include <QDir>
#include <QStandardPaths>

QString UserTraces::path()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
           + QStringLiteral("/draxel/traces");
}

QFileInfoList UserTraces::list(int most)
{
    QFileInfoList traces;
    const QFileInfoList files = QDir(path()).entryInfoList(QDir::Files | QDir::Readable, QDir::Time);
    for (const QFileInfo &file : files) {
        if (traces.size() < most && TraceFormats::ofName(file.fileName()).format)
            traces.append(file);
    }
    return traces;
}
