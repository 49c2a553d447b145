// SPDX-License-Identifier: MIT
#include "wholefile.h"

#include "unnamedfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

/*! The file at the end of a chain of links; the name itself when it is no link. */
QString linkTarget(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.isSymLink())
        return fileName;
    return info.exists() ? info.canonicalFilePath() : info.symLinkTarget();
}

} // namespace

WholeFile::WholeFile(const QString &fileName)
    : m_fileName(fileName)
{
}

WholeFile::~WholeFile() = default;

bool WholeFile::open(QIODevice::OpenMode flags)
{
    // Without a buffer: bytes that cannot be written are noticed by the call that has the reason.
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Unbuffered | flags;
    const QFileInfo existing(m_fileName);
    if (existing.exists() && !existing.isFile() && !existing.isDir()) {
        m_way = Way::Directly;
        m_file = std::make_unique<QFile>(m_fileName);
        return m_file->open(mode);
    }
    // Whatever is in the way of the new file, the second way says it in words.
    if ((!existing.exists() || (existing.isFile() && existing.isWritable())) && openUnnamed(mode))
        return true;
    m_way = Way::Renamed;
    m_file = std::make_unique<QSaveFile>(m_fileName);
    return m_file->open(mode);
}

bool WholeFile::openUnnamed(QIODevice::OpenMode mode)
{
    const QString target = linkTarget(m_fileName);
    const int descriptor = UnnamedFile::open(QFileInfo(target).path());
    if (descriptor < 0)
        return false;
    m_way = Way::Named;
    m_fileName = target;
    auto file = std::make_unique<QFile>();
    const bool isOpen = file->open(descriptor, mode, QFileDevice::AutoCloseHandle);
    m_file = std::move(file);
    return isOpen;
}

bool WholeFile::write(const QByteArray &bytes)
{
    // A disk that fills up takes a part first; only the next call says why it takes no more.
    qint64 count = 0;
    for (int done = 0; m_error.isEmpty() && done < bytes.size(); done += static_cast<int>(count)) {
        count = m_file->write(bytes.constData() + done, bytes.size() - done);
        if (count <= 0)
            m_error = m_file->errorString();
    }
    return m_error.isEmpty();
}

bool WholeFile::commit()
{
    if (!m_error.isEmpty())
        return false;
    switch (m_way) {
    case Way::Directly:
        return true;
    case Way::Named:
        return giveName();
    case Way::Renamed:
        break;
    }
    return static_cast<QSaveFile &>(*m_file).commit();
}

bool WholeFile::giveName()
{
    if (UnnamedFile::giveName(m_file->handle(), m_fileName, &m_error)) {
        m_file->close();
        return true;
    }
    return false;
}

QString WholeFile::errorString() const
{
    return m_error.isEmpty() && m_file ? m_file->errorString() : m_error;
}
