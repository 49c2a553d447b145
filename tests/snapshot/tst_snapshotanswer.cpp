// SPDX-License-Identifier: MIT
#include <snapshot/snapshotanswer.h>

#include <QtTest>

using CanOpen::DataType;
using CanOpen::SdoOutcome;
using Types = QVector<DataType>;

Q_DECLARE_METATYPE(CanOpen::DataType)
Q_DECLARE_METATYPE(SnapshotGap)
Q_DECLARE_METATYPE(SdoOutcome::Kind)

namespace {

SdoOutcome valueOf(const char *hex, bool isSizeUnknown = false)
{
    SdoOutcome outcome;
    outcome.kind = SdoOutcome::Kind::Value;
    outcome.key = {0x6102, 1};
    outcome.raw = QByteArray::fromHex(hex);
    outcome.isSizeUnknown = isSizeUnknown;
    return outcome;
}

} // namespace

/*! Entries of what uploads come to. */
class tst_SnapshotAnswer : public QObject
{
    Q_OBJECT

private slots:
    void makesValues_data();
    void makesValues();
    void bytesOfTheWrongSizeAreAGap();
    void sizelessAnswers_data();
    void sizelessAnswers();
    void whatIsNoValueHasAReason_data();
    void whatIsNoValueHasAReason();
};

void tst_SnapshotAnswer::makesValues_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<Types>("types");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("type"); // 0: none

    QTest::newRow("signed") << QByteArray("FEFF") << Types{DataType::Integer16} << QVariant(-2) << 3;
    QTest::newRow("second type") << QByteArray("00000080")
                                 << Types{DataType::Unsigned16, DataType::Unsigned32} << QVariant(0x80000000u)
                                 << 7;
    QTest::newRow("no type, two bytes") << QByteArray("FEFF") << Types{} << QVariant(qulonglong(65534)) << 0;
    QTest::newRow("no type, five bytes")
        << QByteArray("0100000001") << Types{} << QVariant(qulonglong(0x100000001)) << 0;
    QTest::newRow("no type, nine bytes") << QByteArray("010000000100000001") << Types{} << QVariant() << 0;
    QTest::newRow("no type, no bytes") << QByteArray() << Types{} << QVariant(QByteArray()) << 10;
    QTest::newRow("text") << QByteArray("447800") << Types{DataType::VisibleString}
                          << QVariant(QStringLiteral("Dx")) << 9;
}

void tst_SnapshotAnswer::makesValues()
{
    QFETCH(QByteArray, raw);
    QFETCH(Types, types);
    const SnapshotEntry entry = SnapshotAnswer::toEntry(valueOf(raw), types);
    QVERIFY(entry.key == (CanOpen::ObjectKey{0x6102, 1}));
    QVERIFY(entry.hasValue());
    QCOMPARE(entry.raw, QByteArray::fromHex(raw));
    QTEST(entry.value, "value");
    QTEST(entry.type ? int(*entry.type) : 0, "type");
}

void tst_SnapshotAnswer::bytesOfTheWrongSizeAreAGap()
{
    const SnapshotEntry entry = SnapshotAnswer::toEntry(valueOf("010203"), {DataType::Unsigned16});
    QVERIFY(entry.gap == SnapshotGap::WrongSize);
    QVERIFY(!entry.value.isValid());
    QCOMPARE(entry.raw, QByteArray::fromHex("010203"));
}

void tst_SnapshotAnswer::sizelessAnswers_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<Types>("types");
    QTest::addColumn<QByteArray>("kept");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<SnapshotGap>("gap");

    QTest::newRow("the type says how many count") << QByteArray("05AABBCC") << Types{DataType::Unsigned8}
                                                  << QByteArray("05") << QVariant(5u) << SnapshotGap::None;
    QTest::newRow("all of them") << QByteArray("05AABBCC") << Types{DataType::Unsigned32}
                                 << QByteArray("05AABBCC") << QVariant(0xCCBBAA05u) << SnapshotGap::None;
    QTest::newRow("too few") << QByteArray("05AABBCC") << Types{DataType::Unsigned64}
                             << QByteArray("05AABBCC") << QVariant() << SnapshotGap::WrongSize;
    QTest::newRow("two types, nothing beyond the first")
        << QByteArray("05AA0000") << Types{DataType::Unsigned16, DataType::Unsigned32} << QByteArray("05AA")
        << QVariant(0xAA05u) << SnapshotGap::None;
    QTest::newRow("two types, either may be right")
        << QByteArray("05AA0001") << Types{DataType::Unsigned16, DataType::Unsigned32}
        << QByteArray("05AA0001") << QVariant() << SnapshotGap::WrongSize;
    QTest::newRow("no type: no number is made up")
        << QByteArray("05AABBCC") << Types{} << QByteArray("05AABBCC")
        << QVariant(QByteArray::fromHex("05AABBCC")) << SnapshotGap::None;
}

void tst_SnapshotAnswer::sizelessAnswers()
{
    QFETCH(QByteArray, raw);
    QFETCH(Types, types);
    QFETCH(QByteArray, kept);
    QFETCH(SnapshotGap, gap);
    const SnapshotEntry entry = SnapshotAnswer::toEntry(valueOf(raw, true), types);
    QCOMPARE(entry.raw, QByteArray::fromHex(kept));
    QTEST(entry.value, "value");
    QVERIFY(entry.gap == gap);
}

void tst_SnapshotAnswer::whatIsNoValueHasAReason_data()
{
    QTest::addColumn<SdoOutcome::Kind>("kind");
    QTest::addColumn<quint32>("code");
    QTest::addColumn<bool>("isUnasked");
    QTest::addColumn<SnapshotGap>("gap");

    using Kind = SdoOutcome::Kind;
    QTest::newRow("no object") << Kind::Abort << 0x06020000u << false << SnapshotGap::Absent;
    QTest::newRow("no sub-index") << Kind::Abort << 0x06090011u << false << SnapshotGap::Absent;
    QTest::newRow("refused") << Kind::Abort << 0x08000022u << false << SnapshotGap::Abort;
    QTest::newRow("write only") << Kind::Abort << 0x06010001u << false << SnapshotGap::Abort;
    QTest::newRow("refused the transfer, not the object")
        << Kind::Abort << 0x05040001u << false << SnapshotGap::Failed;
    QTest::newRow("failed") << Kind::Error << 0x05030000u << false << SnapshotGap::Failed;
    QTest::newRow("failed with the code of an absent object")
        << Kind::Error << 0x06020000u << false << SnapshotGap::Failed;
    QTest::newRow("silent") << Kind::Timeout << 0u << false << SnapshotGap::NoAnswer;
    QTest::newRow("not sent") << Kind::Timeout << 0u << true << SnapshotGap::Cancelled;
    QTest::newRow("held up by another client")
        << Kind::Error << 0x060A0023u << true << SnapshotGap::Cancelled;
    QTest::newRow("cancelled") << Kind::Cancelled << 0u << false << SnapshotGap::Cancelled;
}

void tst_SnapshotAnswer::whatIsNoValueHasAReason()
{
    QFETCH(SdoOutcome::Kind, kind);
    QFETCH(quint32, code);
    QFETCH(bool, isUnasked);
    QFETCH(SnapshotGap, gap);
    SdoOutcome outcome;
    outcome.kind = kind;
    outcome.code = code;
    outcome.isUnasked = isUnasked;
    const SnapshotEntry entry = SnapshotAnswer::toEntry(outcome, {DataType::Unsigned16});
    QVERIFY(entry.gap == gap);
    QCOMPARE(entry.abortCode, code);
    QVERIFY(!entry.value.isValid());
}

QTEST_GUILESS_MAIN(tst_SnapshotAnswer)
#include "tst_snapshotanswer.moc"
