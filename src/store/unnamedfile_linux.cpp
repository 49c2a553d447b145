// SPDX-License-Identifier: MIT
#include "unnamedfile.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QString>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/*! The way to a file that has no name. */
QByteArray pathOf(int descriptor)
{
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

/*! Links the file under a name that is free; 0, or the error. */
int link(int descriptor, const QByteArray &name)
{
    const QByteArray source = pathOf(descriptor);
    return linkat(AT_FDCWD, source.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0 ? 0
                                                                                                    : errno;
}

/*! A link cannot replace a file, a renaming can: so the new file has another name for the time between the two. */
int replace(int descriptor, const QByteArray &name)
{
    struct stat old = {};
    if (stat(name.constData(), &old) == 0)
        fchmod(descriptor, old.st_mode & 0777);

    const QByteArray folder = QFile::encodeName(QFileInfo(QFile::decodeName(name)).path());
    constexpr int attempts = 100;
    int error = EEXIST;
    for (int i = 0; i < attempts && error == EEXIST; ++i) {
        const QByteArray other
            = folder + "/.draxel-" + QByteArray::number(QRandomGenerator::global()->generate64(), 36);
        error = link(descriptor, other);
        if (error == 0 && rename(other.constData(), name.constData()) != 0) {
            error = errno;
            unlink(other.constData());
        }
    }
    return error;
}

} // namespace

int UnnamedFile::open(const QString &folder)
{
    constexpr mode_t permissions = 0666; // less the user's mask
    const int descriptor
        = ::open(QFile::encodeName(folder).constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, permissions);
    if (descriptor < 0 || access(pathOf(descriptor).constData(), F_OK) == 0)
        return descriptor;
    close(descriptor); // it could not be given a name
    return -1;
}

QString UnnamedFile::path(int descriptor)
{
    return QFile::decodeName(pathOf(descriptor));
}

bool UnnamedFile::giveName(int descriptor, const QString &fileName, QString *error)
{
    const QByteArray name = QFile::encodeName(fileName);
    const bool isOnDisk = fsync(descriptor) == 0 || errno == EINVAL; // or has no disk to be on
    int code = isOnDisk ? 0 : errno;
    if (code == 0)
        code = link(descriptor, name);
    if (code == EEXIST)
        code = replace(descriptor, name);
    if (code != 0)
        *error = qt_error_string(code);
    return code == 0;
}
