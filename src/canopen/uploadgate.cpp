// SPDX-License-Identifier: MIT
#include "uploadgate.h"

#include "cobid.h"
#include "sdoframe.h"

#include <QCanBusFrame>

#include <algorithm>
#include <iterator>

namespace CanOpen {

namespace {

constexpr quint8 uploadCommands[] = {0x40, 0x60, 0x70, 0x80, 0xA0, 0xA1, 0xA2, 0xA3, 0xA4};

} // namespace

bool isUploadRequest(const QCanBusFrame &frame)
{
    if (!frame.isValid() || !isSdoFrame(frame) || frame.hasFlexibleDataRateFormat()
        || nodeIdOf(frame.frameId(), sdoRequestBase) == 0)
        return false;
    const auto command = static_cast<quint8>(frame.payload().at(0));
    return std::find(std::begin(uploadCommands), std::end(uploadCommands), command)
           != std::end(uploadCommands);
}

} // namespace CanOpen
