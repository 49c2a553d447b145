// SPDX-License-Identifier: MIT
#include "wirebits.h"

#include "framebits.h"

#include <algorithm>
#include <array>

namespace CanOpen {

namespace {

constexpr int mostBytes = 8;
constexpr int standardHeaderBytes = 3; // start of frame to length code, filled to whole bytes
constexpr int extendedHeaderBytes = 5;
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

// Checksums add up (exclusive or), and zeros in front do not count: each byte has a share of its own, which depends on how
// many bytes follow. So no byte waits for the one before it.
constexpr int mostCheckedBytes = extendedHeaderBytes + mostBytes;

using ChecksumRow = std::array<quint16, byteValues>;

constexpr std::array<ChecksumRow, mostCheckedBytes> makeChecksums()
{
    std::array<ChecksumRow, mostCheckedBytes> table{};
    for (std::size_t byte = 0; byte < byteValues; ++byte)
        table[0][byte] = checksumOfByte(static_cast<int>(byte));
    for (std::size_t behind = 1; behind < mostCheckedBytes; ++behind) {
        for (std::size_t byte = 0; byte < byteValues; ++byte) {
            const quint16 before = table[behind - 1][byte];
            table[behind][byte] = static_cast<quint16>(
                (before << bitsOfByte ^ table[0][before >> (checksumSize - bitsOfByte)]) & checksumMask);
        }
    }
    return table;
}

constexpr std::array<ChecksumRow, mostCheckedBytes> checksums = makeChecksums();

// --- Stuffing: after five equal bits follows one of the other value, which counts as the first of a new run

constexpr int longestRun = 5;
constexpr int runs = longestRun - 1; // 1 to 4 equal bits are behind us
constexpr int states = 2 * runs;     // of zeros, of ones

constexpr quint8 stateOf(int bit, int run)
{
    return static_cast<quint8>(bit * runs + run - 1);
}

// What a byte does, for all states behind which it may come: eight bits for each state, which are the next state times
// eight (the place of what the next byte does then), and above it the number of stuff bits.
constexpr quint64 stepMask = 0x3F;
constexpr int stuffShift = 6;

constexpr quint64 stuffByte(int state, int byte)
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
    return static_cast<quint64>(stateOf(last, run) * bitsOfByte | stuffed << stuffShift);
}

constexpr std::array<quint64, byteValues> makeStuffSteps()
{
    std::array<quint64, byteValues> table{};
    for (int byte = 0; byte < byteValues; ++byte) {
        for (int state = 0; state < states; ++state)
            table[static_cast<std::size_t>(byte)] |= stuffByte(state, byte) << (state * bitsOfByte);
    }
    return table;
}

constexpr std::array<quint64, byteValues> stuffSteps = makeStuffSteps();

/*! Goes through a frame byte by byte. */
class BitCounter
{
public:
    /*! \a checkedBytes: header and data, which the checksum sees. */
    explicit BitCounter(int checkedBytes)
        : m_row(checksums.data() + checkedBytes)
    {
    }

    void add(quint8 checked, quint8 stuffed)
    {
        --m_row;
        m_checksum ^= (*m_row)[checked];
        stuff(stuffed);
    }

    /*! The last bit is doubled in the other value, to fill a byte: a run of one or two, which needs no stuff bit. */
    void addChecksum()
    {
        stuff(static_cast<quint8>(m_checksum >> 7));
        stuff(static_cast<quint8>(m_checksum << 1 | (~m_checksum & 1)));
    }

    int stuffBits() const { return static_cast<int>(m_stuffBits); }

private:
    void stuff(quint8 byte)
    {
        m_step = stuffSteps[byte] >> (m_step & stepMask);
        m_stuffBits += m_step >> stuffShift & 3;
    }

    const ChecksumRow *m_row; // of the byte before
    quint16 m_checksum = 0;
    quint64 m_step = quint64(stateOf(0, 1)) * bitsOfByte;
    quint64 m_stuffBits = 0;
};

// What fills a header to whole bytes. The checksum does not see zeros in front; stuffing begins anew at a start of frame (0)
// behind a one, and sees no run in alternating bits.
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
        counter->add(static_cast<quint8>(header >> shift), static_cast<quint8>((header | fill) >> shift));
}

} // namespace

int wireBits(const WireFrame &frame)
{
    WireFrame bounded = frame;
    bounded.size = std::clamp(frame.size, 0, mostBytes);
    const int dataBytes = bounded.isRemote ? 0 : bounded.size;
    BitCounter counter((bounded.isExtended ? extendedHeaderBytes : standardHeaderBytes) + dataBytes);
    if (bounded.isExtended)
        addHeader(&counter, extendedHeader(bounded), extendedFill, extendedHeaderBytes);
    else
        addHeader(&counter, standardHeader(bounded), standardFill, standardHeaderBytes);
    for (int i = 0; i < dataBytes; ++i) {
        const auto byte = static_cast<quint8>(bounded.data[i]);
        counter.add(byte, byte);
    }
    counter.addChecksum();
    return (bounded.isExtended ? extendedFrameBits : standardFrameBits) + bitsOfByte * dataBytes
           + counter.stuffBits();
}

} // namespace CanOpen
