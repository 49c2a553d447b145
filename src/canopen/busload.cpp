// SPDX-License-Identifier: MIT
#include "busload.h"

#include "framebits.h"

namespace CanOpen {

void BusLoad::note(const QCanBusFrame &frame)
{
    m_bits += static_cast<quint64>(frameBits(frame));
}

std::optional<double> BusLoad::share(quint64 bits, std::chrono::milliseconds time) const
{
    constexpr double second = 1000.0; // ms
    if (m_bitRate <= 0 || time.count() <= 0)
        return std::nullopt;
    return double(m_bits - bits) * second / (double(m_bitRate) * double(time.count()));
}

bool BusLoad::isFull(quint64 bits, std::chrono::milliseconds time) const
{
    return share(bits, time).value_or(0) >= fullShare;
}

} // namespace CanOpen
