// SPDX-License-Identifier: MIT
#include "filesink.h"

#include "tracefilestr.h"

#include <system/systemerrortext.h>

#include <QDir>

#include <cstdio>

namespace {

const QLatin1String standardOutput("-");

QString cannotBeWritten(const QString &path, const QString &reason)
{
    const QString name
        = path == standardOutput ? TraceFilesTr::tr("Standard output") : QDir::toNativeSeparators(path);
    return TraceFilesTr::tr("%1 cannot be written: %2.").arg(name, systemErrorText(reason));
}

} // namespace

bool GrowingFile::fail()
{
    m_error = cannotBeWritten(m_path, m_file.errorString());
    return false;
}

bool GrowingFile::open()
{
    constexpr QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    const bool isOpen = m_path == standardOutput ? m_file.open(stdout, mode) : m_file.open(mode);
    return isOpen || fail();
}

bool GrowingFile::write(const QByteArray &bytes)
{
    if (!m_error.isEmpty())
        return false;
    // A disk that fills up takes a part first; only the next call says why it takes no more.
    qint64 count = 0;
    for (int done = 0; done < bytes.size(); done += static_cast<int>(count)) {
        count = m_file.write(bytes.constData() + done, bytes.size() - done);
        if (count <= 0)
            return fail();
        m_size += count;
    }
    return true;
}

// The C library has a buffer of its own for standard output.
bool GrowingFile::flush()
{
    return m_error.isEmpty() && (m_file.flush() || fail());
}

bool GrowingFile::finish()
{
    m_file.close();
    return m_error.isEmpty() && (m_file.error() == QFileDevice::NoError || fail());
}

bool CompleteFile::fail()
{
    m_error = cannotBeWritten(m_path, m_file.errorString());
    return false;
}

bool CompleteFile::open()
{
    return m_file.open() || fail();
}

bool CompleteFile::write(const QByteArray &bytes)
{
    if (!m_error.isEmpty() || !m_file.write(bytes))
        return fail();
    m_size += bytes.size();
    return true;
}

bool CompleteFile::finish()
{
    return m_error.isEmpty() && (m_file.commit() || fail());
}
