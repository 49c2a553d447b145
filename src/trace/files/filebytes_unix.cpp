// SPDX-License-Identifier: MIT
#include "filebytes.h"

#include <cerrno>

#include <unistd.h>

// QFile waits until a pipe has given all that there is room for.
qint64 FileBytes::readSome(char *to, qint64 most)
{
    for (;;) {
        const ssize_t count = ::read(m_file.handle(), to, static_cast<size_t>(most));
        if (count >= 0 || errno != EINTR)
            return count;
    }
}
