// SPDX-License-Identifier: MIT
// Traces of every kind, compressed and not, as they are recognised.
#include "tracecheck.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    QString error;
    const auto reader = TraceFile::open(std::make_unique<MemoryBytes>(bytesOf(data, size)),
                                        QStringLiteral("trace.log"), &error);
    require((reader == nullptr) == !error.isEmpty());
    if (reader)
        checkReader(reader.get());
    return 0;
}
