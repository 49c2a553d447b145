// SPDX-License-Identifier: MIT
// Traces that are texts; the first byte chooses which kind they are read as.
#include "tracecheck.h"

#include <trace/files/ascreader.h>
#include <trace/files/trcreader.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    auto bytes = std::make_unique<MemoryBytes>(bytesOf(data + 1, size - 1));
    std::unique_ptr<TraceReader> reader;
    if (data[0] == 'a')
        reader = std::make_unique<AscReader>(std::move(bytes));
    else if (data[0] == 't')
        reader = std::make_unique<TrcReader>(std::move(bytes));
    else
        reader = std::make_unique<CandumpReader>(std::move(bytes));
    checkReader(reader.get());
    return 0;
}
