// SPDX-License-Identifier: MIT
#include <canopen/framebits.h>

#include <QCanBusFrame>
#include <QtTest>

Q_DECLARE_METATYPE(QCanBusFrame)

using namespace CanOpen;

class tst_FrameBits : public QObject
{
    Q_OBJECT

private slots:
    void bits_data();
    void bits();
};

namespace {

QCanBusFrame frame(quint32 id, int bytes = 8)
{
    return QCanBusFrame(id, QByteArray(bytes, '\0'));
}

} // namespace

void tst_FrameBits::bits_data()
{
    QTest::addColumn<QCanBusFrame>("sent");
    QTest::addColumn<int>("expected");

    QTest::newRow("no data") << frame(0x700, 0) << 50;
    QTest::newRow("one byte") << frame(0x700, 1) << 59;
    QTest::newRow("two bytes") << frame(0x700, 2) << 68;
    QTest::newRow("eight bytes") << frame(0x700, 8) << 120;
    QCanBusFrame remote = frame(0x700, 8);
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QTest::newRow("remote frame") << remote << 50;
    QCanBusFrame extended = frame(0x12345, 8);
    extended.setExtendedFrameFormat(true);
    QTest::newRow("extended") << extended << 142;
}

void tst_FrameBits::bits()
{
    QFETCH(QCanBusFrame, sent);
    QFETCH(int, expected);
    QCOMPARE(frameBits(sent), expected);
}

QTEST_GUILESS_MAIN(tst_FrameBits)
#include "tst_framebits.moc"
