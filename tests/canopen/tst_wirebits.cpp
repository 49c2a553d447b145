// SPDX-License-Identifier: MIT
#include <canopen/wirebits.h>

#include <QByteArray>
#include <QtTest>

#include <random>

using namespace CanOpen;

namespace {

/*! Lowest bits of a number, the highest first. */
QByteArray bitsOf(quint32 number, int count)
{
    QByteArray bits;
    for (int place = count - 1; place >= 0; --place)
        bits.append((number >> place & 1) != 0 ? '1' : '0');
    return bits;
}

/*! The checksum as ISO 11898-1 writes it: a shift register that takes bit after bit. */
QByteArray checksumOf(const QByteArray &bits)
{
    quint32 rest = 0;
    for (const char bit : bits) {
        const quint32 next = quint32(bit - '0') ^ (rest >> 14 & 1);
        rest = (rest << 1) & 0x7FFF;
        if (next != 0)
            rest ^= 0x4599;
    }
    return bitsOf(rest, 15);
}

int stuffBitsOf(const QByteArray &bits)
{
    QByteArray sent;
    int stuffed = 0;
    for (const char bit : bits) {
        sent.append(bit);
        if (sent.endsWith("00000") || sent.endsWith("11111")) {
            sent.append(bit == '0' ? "1" : "0");
            ++stuffed;
        }
    }
    return stuffed;
}

/*! Bit by bit: slow and plain. */
int plainBits(const WireFrame &frame)
{
    QByteArray bits("0");
    const char *remote = frame.isRemote ? "1" : "0";
    if (frame.isExtended)
        bits += bitsOf(frame.id >> 18, 11) + "11" + bitsOf(frame.id & 0x3FFFF, 18) + remote + "00";
    else
        bits += bitsOf(frame.id, 11) + remote + "00";
    bits += bitsOf(quint32(frame.size), 4);
    for (int i = 0; i < frame.size && !frame.isRemote; ++i)
        bits += bitsOf(quint8(frame.data[i]), 8);
    bits += checksumOf(bits);
    constexpr int delimitersEndAndSpace = 13;
    return bits.size() + stuffBitsOf(bits) + delimitersEndAndSpace;
}

WireFrame frameOf(quint32 id, const QByteArray &data)
{
    WireFrame frame;
    frame.id = id;
    frame.data = data.constData();
    frame.size = data.size();
    return frame;
}

} // namespace

/*! The exact length of frames, against numbers counted by hand and a plain way to count. */
class tst_WireBits : public QObject
{
    Q_OBJECT

private slots:
    void countedByHand();
    void sameAsBitByBit();
    void lengthIsBounded();
};

void tst_WireBits::countedByHand()
{
    // 34 zeros: a stuff bit after each five of them
    QCOMPARE(wireBits(frameOf(0, QByteArray())), 47 + 6);
    WireFrame remote = frameOf(0x705, QByteArray(8, '\0'));
    remote.isRemote = true;
    const int bits = wireBits(remote);
    QVERIFY(bits >= 47 && bits <= 47 + 8); // no data bits, whatever its length says
}

void tst_WireBits::sameAsBitByBit()
{
    std::mt19937 random(4711);
    for (int i = 0; i < 20000; ++i) {
        QByteArray data(int(random() % 9), '\0');
        // Few different bytes, so that runs are long
        const auto kind = random();
        for (char &byte : data)
            byte
                = char(kind % 3 == 0 ? random() : (kind % 3 == 1 ? 0x00 : (random() % 2 != 0 ? 0xFF : 0xF8)));
        WireFrame frame = frameOf(quint32(random() % 0x800), data);
        frame.isExtended = random() % 2 != 0;
        frame.isRemote = random() % 8 == 0;
        if (frame.isExtended)
            frame.id = quint32(random() % 0x20000000);
        QCOMPARE(wireBits(frame), plainBits(frame));
    }
}

void tst_WireBits::lengthIsBounded()
{
    const QByteArray data(64, '\0');
    QCOMPARE(wireBits(frameOf(0x100, data)), wireBits(frameOf(0x100, data.left(8))));
    WireFrame frame = frameOf(0x100, data);
    frame.size = -1;
    QCOMPARE(wireBits(frame), wireBits(frameOf(0x100, QByteArray())));
}

QTEST_GUILESS_MAIN(tst_WireBits)
#include "tst_wirebits.moc"
