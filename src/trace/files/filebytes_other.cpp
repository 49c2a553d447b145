// SPDX-License-Identifier: MIT
#include "filebytes.h"

qint64 FileBytes::readSome(char *to, qint64 most)
{
    return m_file.read(to, most);
}
