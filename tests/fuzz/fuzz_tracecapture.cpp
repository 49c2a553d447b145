// SPDX-License-Identifier: MIT
// pcap and pcapng, each input as both.
#include "tracecheck.h"

#include <trace/files/pcapngreader.h>
#include <trace/files/pcapreader.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    PcapReader pcap(std::make_unique<MemoryBytes>(bytesOf(data, size)));
    checkReader(&pcap);
    PcapNgReader pcapNg(std::make_unique<MemoryBytes>(bytesOf(data, size)));
    checkReader(&pcapNg);
    return 0;
}
