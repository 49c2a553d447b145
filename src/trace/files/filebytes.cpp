// SPDX-License-Identifier: MIT
#include "filebytes.h"

#include "tracefilestr.h"

#include <system/systemerrortext.h>

#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace {

const QLatin1String standardInput("-");

} // namespace

std::unique_ptr<FileBytes> FileBytes::open(const QString &path, QString *errorMessage)
{
    std::unique_ptr<FileBytes> bytes(new FileBytes(path));
    if (bytes->openIt())
        return bytes;
    const QString reason = QFileInfo(path).isDir() ? TraceFilesTr::tr("it is a folder")
                                                   : systemErrorText(bytes->m_file.errorString());
    *errorMessage = TraceFilesTr::tr("%1 cannot be opened: %2.").arg(bytes->name(), reason);
    return nullptr;
}

bool FileBytes::openIt()
{
    if (m_file.fileName() == standardInput)
        return m_file.open(stdin, QIODevice::ReadOnly | QIODevice::Unbuffered);
    return m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

QString FileBytes::name() const
{
    return QDir::toNativeSeparators(m_file.fileName());
}

qint64 FileBytes::read(char *to, qint64 most)
{
    const qint64 count = readSome(to, most);
    if (count >= 0)
        return count;
    return fail(TraceFilesTr::tr("Reading failed: %1.").arg(systemErrorText(qt_error_string())));
}
