// SPDX-License-Identifier: MIT
#include <snapshot/snapshotwords.h>

#include <QtTest>

Q_DECLARE_METATYPE(SnapshotGap)
Q_DECLARE_METATYPE(SnapshotEnd)

class tst_SnapshotWords : public QObject
{
    Q_OBJECT

private slots:
    void reasons_data();
    void reasons();
    void endings_data();
    void endings();
};

void tst_SnapshotWords::reasons_data()
{
    QTest::addColumn<SnapshotGap>("gap");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QString>("text");
    QTest::newRow("value") << SnapshotGap::None << 0u << QString();
    QTest::newRow("absent") << SnapshotGap::Absent << 0x06020000u
                            << QStringLiteral("The device does not have it.");
    QTest::newRow("abort")
        << SnapshotGap::Abort << 0x08000020u
        << QStringLiteral("The device refused it: The data cannot be transferred or stored (0800 0020h).");
    QTest::newRow("not in the trace")
        << SnapshotGap::Abort << 0x0800F001u
        << QStringLiteral("Not recorded: The trace holds no answer of the device to this (0800 F001h).");
    QTest::newRow("only later in the trace")
        << SnapshotGap::Abort << 0x0800F002u
        << QStringLiteral("Not recorded: The device answers this only later in the trace (0800 F002h).");
    QTest::newRow("no answer") << SnapshotGap::NoAnswer << 0u << QStringLiteral("The device did not answer.");
    QTest::newRow("wrong size") << SnapshotGap::WrongSize << 0u
                                << QStringLiteral("The answer has 3 byte(s), which does not fit the object.");
    QTest::newRow("failed") << SnapshotGap::Failed << 0x05030000u
                            << QStringLiteral(
                                   "The transfer failed: The toggle bit did not alternate (0503 0000h).");
    QTest::newRow("stopped") << SnapshotGap::Stopped << 0u
                             << QStringLiteral("The device is stopped and answers nothing.");
    QTest::newRow("cancelled") << SnapshotGap::Cancelled << 0u
                               << QStringLiteral("It was not asked any more.");
}

void tst_SnapshotWords::reasons()
{
    QFETCH(SnapshotGap, gap);
    QFETCH(quint32, code);
    QFETCH(QString, text);
    SnapshotEntry entry;
    entry.gap = gap;
    entry.abortCode = code;
    entry.raw = QByteArray(3, '\0');
    QCOMPARE(SnapshotWords::reason(entry), text);
}

void tst_SnapshotWords::endings_data()
{
    QTest::addColumn<SnapshotEnd>("end");
    QTest::addColumn<QString>("text");
    QTest::newRow("complete") << SnapshotEnd::Complete << QString();
    QTest::newRow("silent") << SnapshotEnd::Silent << QStringLiteral("The device does not answer.");
    QTest::newRow("stopped") << SnapshotEnd::Stopped
                             << QStringLiteral("The device is stopped and answers nothing.");
    QTest::newRow("cancelled") << SnapshotEnd::Cancelled
                               << QStringLiteral("The reading was ended before all was asked.");
}

void tst_SnapshotWords::endings()
{
    QFETCH(SnapshotEnd, end);
    QFETCH(QString, text);
    QCOMPARE(SnapshotWords::ending(end), text);
}

QTEST_GUILESS_MAIN(tst_SnapshotWords)
#include "tst_snapshotwords.moc"
