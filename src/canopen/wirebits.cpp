// SPDX-License-Identifier: MIT
#include "wirebits.h"

#include "framebits.h"

#include <algorithm>
#include <array>

namespace CanOpen {

namespace {

constexpr int mostBytes = 8;
constexpr int bitsOfByte = 8;
constexpr int byteValues = 256;

// --- Checksum: x^15 + x^14 + x^10 + x^8 + x^7 + x^4 + x^3 + 1, start value 0

constexpr quint16 checksumPolynomial = 0x4599;
constexpr int checksumSize = 15; // bits
constexpr quint16 checksumMask = 0x7FFF;

constexpr quint16 checksumOfByte(int byte)
{
    auto remainder = static_cast<quint16>(byte << (checksumSize - bitsOfByte));
    for (int bit = 0; bit < bitsOfByte; ++bit) {
        const bool isSet = (remainder >> (checksumSize - 1) & 1) != 0;
        remainder = static_cast<quint16>((remainder << 1 ^ (isSet ? checksumPolynomial : 0)) & checksumMask);
    }
    return remainder;
}

constexpr std::array<quint16, byteValues> makeChecksums()
{
    std::array<quint16, byteValues> table{};
    for (int byte = 0; byte < byteValues; ++byte)
        table[static_cast<std::size_t>(byte)] = checksumOfByte(byte);
    return table;
}

constexpr std::array<quint16, byteValues> checksums = makeChecksums();

// --- Stuffing: after five equal bits follows one of the other value, which counts as the first of a new run

constexpr int longestRun = 5;
constexpr int runs = longestRun - 1; // 1 to 4 equal bits are behind us
constexpr int states = 2 * runs;     // of zeros, of ones

struct StuffStep
{
    quint8 state = 0;
    quint8 stuffBits = 0;
};

using StuffRow = std::array<StuffStep, byteValues>;

constexpr quint8 stateOf(int bit, int run)
{
    return static_cast<quint8>(bit * runs + run - 1);
}

constexpr StuffStep stuffByte(int state, int byte)
{
    int last = state / runs;
    int run = state % runs + 1;
    int stuffed = 0;
    for (int place = bitsOfByte - 1; place >= 0; --place) {
        const int bit = byte >> place & 1;
        run = bit == last ? run + 1 : 1;
        last = bit;
        if (run == longestRun) {
            ++stuffed;
            last = 1 - bit;
            run = 1;
        }
    }
    return {stateOf(last, run), static_cast<quint8>(stuffed)};
}

constexpr std::array<StuffRow, states> makeStuffSteps()
{
    std::array<StuffRow, states> table{};
    for (int state = 0; state < states; ++state) {
        for (int byte = 0; byte < byteValues; ++byte)
            table[static_cast<std::size_t>(state)][static_cast<std::size_t>(byte)] = stuffByte(state, byte);
    }
    return table;
}

constexpr std::array<StuffRow, states> stuffSteps = makeStuffSteps();

/*! Goes through a frame byte by byte. */
class BitCounter
{
public:
    void addHeaderByte(quint8 checked, quint8 stuffed)
    {
        check(checked);
        stuff(stuffed);
    }

    void addData(quint8 byte)
    {
        check(byte);
        stuff(byte);
    }

    /*! The last bit is doubled in the other value, to fill a byte: a run of one or two, which needs no stuff bit. */
    void addChecksum()
    {
        stuff(static_cast<quint8>(m_checksum >> 7));
        stuff(static_cast<quint8>(m_checksum << 1 | (~m_checksum & 1)));
    }

    int stuffBits() const { return m_stuffBits; }

private:
    void check(quint8 byte)
    {
        const auto index = static_cast<quint8>(m_checksum >> (checksumSize - bitsOfByte) ^ byte);
        m_checksum = static_cast<quint16>((m_checksum << bitsOfByte ^ checksums[index]) & checksumMask);
    }

    void stuff(quint8 byte)
    {
        const StuffStep step = stuffSteps[m_state][byte];
        m_state = step.state;
        m_stuffBits += step.stuffBits;
    }

    quint16 m_checksum = 0;
    quint8 m_state = stateOf(0, 1);
    int m_stuffBits = 0;
};

// Start of frame to length code, filled to whole bytes. The checksum does not see zeros in front; stuffing begins anew at
// a start of frame (0) behind a one, and sees no run in alternating bits.
constexpr int standardHeaderBytes = 3;
constexpr int extendedHeaderBytes = 5;
constexpr quint64 standardFill = 0b10101ULL << 19;
constexpr quint64 extendedFill = 1ULL << 39;

quint64 standardHeader(const WireFrame &frame)
{
    const quint64 remote = frame.isRemote ? 1 : 0;
    return quint64(frame.id & 0x7FF) << 7 | remote << 6 | quint64(frame.size);
}

quint64 extendedHeader(const WireFrame &frame)
{
    constexpr quint64 substituteAndFormat = 0b11;
    const quint64 remote = frame.isRemote ? 1 : 0;
    return quint64(frame.id >> 18 & 0x7FF) << 27 | substituteAndFormat << 25
           | quint64(frame.id & 0x3FFFF) << 7 | remote << 6 | quint64(frame.size);
}

void addHeader(BitCounter *counter, quint64 header, quint64 fill, int bytes)
{
    for (int shift = (bytes - 1) * bitsOfByte; shift >= 0; shift -= bitsOfByte)
        counter->addHeaderByte(static_cast<quint8>(header >> shift),
                               static_cast<quint8>((header | fill) >> shift));
}

} // namespace

int wireBits(const WireFrame &frame)
{
    WireFrame bounded = frame;
    bounded.size = std::clamp(frame.size, 0, mostBytes);
    BitCounter counter;
    if (bounded.isExtended)
        addHeader(&counter, extendedHeader(bounded), extendedFill, extendedHeaderBytes);
    else
        addHeader(&counter, standardHeader(bounded), standardFill, standardHeaderBytes);
    const int dataBytes = bounded.isRemote ? 0 : bounded.size;
    for (int i = 0; i < dataBytes; ++i)
        counter.addData(static_cast<quint8>(bounded.data[i]));
    counter.addChecksum();
    return (bounded.isExtended ? extendedFrameBits : standardFrameBits) + bitsOfByte * dataBytes
           + counter.stuffBits();
}

} // namespace CanOpen
