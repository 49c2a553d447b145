// SPDX-License-Identifier: MIT
#include "systemerrortext.h"

#include <QCoreApplication>

#include <cerrno>

namespace {

struct Reason
{
    int number; // of errno
    const char *text;
};

// Those that a file or a CAN interface gives in practice.
constexpr Reason reasons[] = {
    {EPERM, QT_TRANSLATE_NOOP("SystemErrorText", "not permitted")},
    {ENOENT, QT_TRANSLATE_NOOP("SystemErrorText", "no such file or folder")},
    {EIO, QT_TRANSLATE_NOOP("SystemErrorText", "the medium or device failed")},
    {EACCES, QT_TRANSLATE_NOOP("SystemErrorText", "no permission")},
    {EBUSY, QT_TRANSLATE_NOOP("SystemErrorText", "in use by another program")},
    {ENODEV, QT_TRANSLATE_NOOP("SystemErrorText", "no such device")},
    {ENOTDIR, QT_TRANSLATE_NOOP("SystemErrorText", "a part of the path is no folder")},
    {EISDIR, QT_TRANSLATE_NOOP("SystemErrorText", "it is a folder")},
    {EFBIG, QT_TRANSLATE_NOOP("SystemErrorText", "the file is too large")},
    {ENOSPC, QT_TRANSLATE_NOOP("SystemErrorText", "no space is left")},
    {EROFS, QT_TRANSLATE_NOOP("SystemErrorText", "the medium is read-only")},
    {ENAMETOOLONG, QT_TRANSLATE_NOOP("SystemErrorText", "the name is too long")},
    {ENETDOWN, QT_TRANSLATE_NOOP("SystemErrorText", "the interface is down")},
    {ENOBUFS, QT_TRANSLATE_NOOP("SystemErrorText", "no buffer is free")},
};

} // namespace

QString systemErrorText(const QString &reason)
{
    // The system's words depend on its own language, so they are compared and not read.
    for (const Reason &row : reasons) {
        if (reason == qt_error_string(row.number))
            return QCoreApplication::translate("SystemErrorText", row.text);
    }
    return reason;
}
