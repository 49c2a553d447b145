// SPDX-License-Identifier: MIT
#include "outputfile.h"

#include "console.h"

#include <snapshot/snapshotfile.h>
#include <store/exchangefile.h>

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace {

constexpr QLatin1String standardOutputNames[]
    = {QLatin1String("-"), QLatin1String("/dev/stdout"), QLatin1String("/dev/fd/1"),
       QLatin1String("/proc/self/fd/1")};

bool namesStandardOutput(const QString &name)
{
    return std::any_of(std::begin(standardOutputNames), std::end(standardOutputNames),
                       [&name](QLatin1String known) { return name == known; });
}

} // namespace

OutputFile::OutputFile(const QString &name)
    : m_name(name)
    , m_isStandardOutput(namesStandardOutput(name))
{
}

bool OutputFile::canBeWritten(QString *errorMessage) const
{
    if (m_isStandardOutput)
        return true;
    // What is there and is no file, such as /dev/null or a pipe, is written to and not replaced.
    const QFileInfo existing(m_name);
    if (existing.exists() && !existing.isFile() && !existing.isDir() && existing.isWritable())
        return true;
    QSaveFile file(m_name);
    if (file.open(QIODevice::WriteOnly)) {
        file.cancelWriting();
        return true;
    }
    *errorMessage
        = tr("The file %1 cannot be written: %2.").arg(QDir::toNativeSeparators(m_name), file.errorString());
    return false;
}

bool OutputFile::writeExchange(const QString &text) const
{
    return write(text.toUtf8(), [&](QString *error) { return saveExchangeFile(m_name, text, error); });
}

bool OutputFile::writeSnapshot(const Snapshot &snapshot) const
{
    return write(SnapshotFile::toJson(snapshot),
                 [&](QString *error) { return SnapshotFile::save(m_name, snapshot, error); });
}

/*! \a bytes are for standard output, \a save is for everything else. */
bool OutputFile::write(const QByteArray &bytes, const std::function<bool(QString *errorMessage)> &save) const
{
    if (m_isStandardOutput)
        return Console::write(bytes);
    const QString shownName = QDir::toNativeSeparators(m_name);
    if (isPipe(m_name))
        Console::printError(tr("Waiting until %1 is read ...").arg(shownName));
    QString error;
    if (!save(&error)) {
        Console::printError(error);
        return false;
    }
    Console::print(tr("Wrote %1").arg(shownName));
    return true;
}
