// SPDX-License-Identifier: MIT
#include "pcapencoder.h"

#include "capturedframe.h"
#include "pcapngformat.h"
#include "timeofday.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace {

// All numbers are little-endian; see the readers for what stands where.
template<typename T>
void add(T value, QByteArray *to)
{
    std::array<char, sizeof(T)> bytes{};
    qToLittleEndian(value, bytes.data());
    to->append(bytes.data(), static_cast<int>(bytes.size()));
}

void addFrame(const TraceFrame &frame, QByteArray *to)
{
    std::array<uchar, CapturedFrame::size> bytes{};
    CapturedFrame::write(frame, bytes.data());
    to->append(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

constexpr quint32 packetSize = CapturedFrame::size;

} // namespace

void PcapEncoder::begin(qint64 first, QByteArray *to)
{
    Q_UNUSED(first)
    constexpr quint32 microsecondMagic = 0xA1B2C3D4;
    constexpr quint32 snapshotLength = 262144;
    add(microsecondMagic, to);
    add(quint16(2), to); // version 2.4
    add(quint16(4), to);
    add(quint64(0), to); // not used
    add(snapshotLength, to);
    add(CapturedFrame::linkTypeCan, to);
}

void PcapEncoder::write(const TraceFrame &frame, QByteArray *to)
{
    const qint64 time = std::clamp<qint64>(frame.time, 0, latest); // there is nothing before 1970
    add(static_cast<quint32>(time / Microseconds::ofSecond), to);
    add(static_cast<quint32>(time % Microseconds::ofSecond), to);
    add(packetSize, to);
    add(packetSize, to);
    addFrame(frame, to);
}

void PcapNgEncoder::begin(qint64 first, QByteArray *to)
{
    Q_UNUSED(first)
    constexpr quint32 size = 28;
    add(PcapNg::BlockType::section, to);
    add(size, to);
    add(PcapNg::byteOrderMagic, to);
    add(quint16(1), to); // version 1.0
    add(quint16(0), to);
    add(qint64(-1), to); // its length is not known
    add(size, to);
    for (; m_interfaces < channels(); ++m_interfaces)
        addInterface(channelName(m_interfaces), to);
}

void PcapNgEncoder::addInterface(const QByteArray &name, QByteArray *to)
{
    constexpr int mostBytes = 255;
    const QByteArray cut = name.left(mostBytes);
    const QByteArray filled = cut + QByteArray((4 - cut.size() % 4) % 4, '\0');
    const auto size = static_cast<quint32>(16 + 4 + filled.size() + 4 + 4);
    add(PcapNg::BlockType::interface, to);
    add(size, to);
    add(static_cast<quint16>(CapturedFrame::linkTypeCan), to);
    add(quint16(0), to);
    add(quint32(0), to); // packets are not cut
    add(PcapNg::OptionCode::name, to);
    add(static_cast<quint16>(cut.size()), to);
    to->append(filled);
    add(quint32(0), to); // the end of the options
    add(size, to);
}

void PcapNgEncoder::write(const TraceFrame &frame, QByteArray *to)
{
    for (; m_interfaces <= frame.channel; ++m_interfaces)
        addInterface(channelName(m_interfaces), to);
    constexpr quint32 size = 32 + packetSize + 4 + 4 + 4;
    const auto time = static_cast<quint64>(std::max<qint64>(frame.time, 0));
    add(PcapNg::BlockType::packet, to);
    add(size, to);
    add(quint32(frame.channel), to);
    add(static_cast<quint32>(time >> 32), to);
    add(static_cast<quint32>(time), to);
    add(packetSize, to);
    add(packetSize, to);
    addFrame(frame, to);
    add(PcapNg::OptionCode::flags, to);
    add(quint16(4), to);
    add(frame.isSent() ? PcapNg::outbound : PcapNg::inbound, to);
    add(quint32(0), to); // the end of the options
    add(size, to);
}
