// SPDX-License-Identifier: MIT
// A bus and its bit rate as people write them on the command line.
#include "bytereader.h"

#include <bus/bussettings.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QString problem;
    const std::optional<BusAddress> address = BusAddress::parse(text, &problem);
    require(address.has_value() == problem.isEmpty());
    if (address) {
        require(!address->plugin.isEmpty() && !address->interfaceName.isEmpty());
        require(BusAddress::parse(address->toString(), nullptr) == address);
    }
    const std::optional<int> bitRate = parseBitRate(text, nullptr);
    require(!bitRate || (*bitRate >= 0 && *bitRate <= 1000000));
    return 0;
}
