// SPDX-License-Identifier: MIT
#include "bytesink.h"

bool MemorySink::write(const QByteArray &bytes)
{
    m_to->append(bytes);
    return true;
}
