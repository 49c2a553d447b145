// SPDX-License-Identifier: MIT
// What this library asks of Linux: CAN sockets, and the controllers of CAN interfaces by libsocketcan.
#include "controllers.h"

#include <QFile>

#include <libsocketcan.h>

#include <cerrno>
#include <cstring>
#include <limits>

#include <linux/can/netlink.h>
#include <linux/can/raw.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

std::optional<ControllerFacts::State> stateOf(int state)
{
    switch (state) {
    case CAN_STATE_ERROR_ACTIVE:
        return ControllerFacts::State::Active;
    case CAN_STATE_ERROR_WARNING:
        return ControllerFacts::State::Warning;
    case CAN_STATE_ERROR_PASSIVE:
        return ControllerFacts::State::Passive;
    case CAN_STATE_BUS_OFF:
        return ControllerFacts::State::BusOff;
    case CAN_STATE_STOPPED:
    case CAN_STATE_SLEEPING:
        return ControllerFacts::State::Off;
    default:
        return std::nullopt;
    }
}

} // namespace

QString Controllers::socketError()
{
    const int descriptor = ::socket(PF_CAN, SOCK_RAW, CAN_RAW);
    if (descriptor < 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    ::close(descriptor);
    return QString();
}

ControllerFacts Controllers::of(const QString &interfaceName)
{
    const QByteArray name = QFile::encodeName(interfaceName);
    ControllerFacts facts;
    can_bittiming timing{};
    constexpr auto most = static_cast<__u32>(std::numeric_limits<int>::max());
    if (::can_get_bittiming(name.constData(), &timing) == 0 && timing.bitrate > 0 && timing.bitrate <= most)
        facts.bitRate = static_cast<int>(timing.bitrate);
    int state = 0;
    if (::can_get_state(name.constData(), &state) == 0)
        facts.state = stateOf(state);
    can_berr_counter counters{};
    if (::can_get_berr_counter(name.constData(), &counters) == 0) {
        facts.transmitErrors = counters.txerr;
        facts.receiveErrors = counters.rxerr;
    }
    can_ctrlmode mode{};
    if (::can_get_ctrlmode(name.constData(), &mode) == 0)
        facts.isListenOnly = (mode.flags & CAN_CTRLMODE_LISTENONLY) != 0;
    return facts;
}
