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

void tst_FrameBits::bits_data()
{
    QTest::addColumn<QCanBusFrame>("frame");
    QTest::addColumn<int>("bits");

    const auto frame = [](int bytes) { return QCanBusFrame(0x700, QByteArray(bytes, '\0')); };
    QTest::newRow("no data") << frame(0) << 50;
    QTest::newRow("one byte") << frame(1) << 59;
    QTest::newRow("two bytes") << frame(2) << 68;
    QTest::newRow("eight bytes") << frame(8) << 120;
    QCanBusFrame remote = frame(8);
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QTest::newRow("remote frame") << remote << 50;
    QCanBusFrame extended(0x12345, QByteArray(8, '\0'));
    extended.setExtendedFrameFormat(true);
    QTest::newRow("extended") << extended << 142;
    QTest::newRow("error frame") << QCanBusFrame(QCanBusFrame::ErrorFrame) << 0;
    QTest::newRow("invalid frame") << QCanBusFrame(QCanBusFrame::InvalidFrame) << 0;
}

void tst_FrameBits::bits()
{
    QFETCH(QCanBusFrame, frame);
    QTEST(frameBits(frame), "bits");
}

QTEST_GUILESS_MAIN(tst_FrameBits)
#include "tst_framebits.moc"
