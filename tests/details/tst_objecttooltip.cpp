// SPDX-License-Identifier: MIT
#include <details/objecttooltip.h>

#include <QVariant>
#include <QtTest>

class tst_ObjectToolTip : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void text();
};

void tst_ObjectToolTip::text_data()
{
    QTest::addColumn<uint>("index");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("toolTip");

    QTest::newRow("plain") << 0x6040u << QVariant(255u)
                           << QStringLiteral("Object: 0x6040, Value: 255 | 0xFF");
    QTest::newRow("upper case, no leading zeros")
        << 0x00AFu << QVariant(0xABCu) << QStringLiteral("Object: 0xAF, Value: 2748 | 0xABC");
    QTest::newRow("zero") << 0u << QVariant(0u) << QStringLiteral("Object: 0x0, Value: 0 | 0x0");
    QTest::newRow("negative") << 0x6024u << QVariant(-255)
                              << QStringLiteral("Object: 0x6024, Value: -255 | 0x-FF");
    QTest::newRow("greatest signed") << 0x1018u << QVariant(2147483647u)
                                     << QStringLiteral("Object: 0x1018, Value: 2147483647 | 0x7FFFFFFF");
    QTest::newRow("smallest that is no signed number")
        << 0x1018u << QVariant(2147483648u)
        << QStringLiteral("Object: 0x1018, Value: 2147483648 | 0x-80000000");
    QTest::newRow("greatest unsigned")
        << 0x1018u << QVariant(4294967295u) << QStringLiteral("Object: 0x1018, Value: 4294967295 | 0x-1");
    QTest::newRow("imported") << 0x1018u << QVariant(qlonglong(4294967295LL))
                              << QStringLiteral("Object: 0x1018, Value: 4294967295 | 0x-1");
    QTest::newRow("text with a placeholder")
        << 0x1018u << QVariant(QStringLiteral("%3")) << QStringLiteral("Object: 0x1018, Value: %3 | 0x0");
}

void tst_ObjectToolTip::text()
{
    QFETCH(uint, index);
    QFETCH(QVariant, value);
    QFETCH(QString, toolTip);
    QCOMPARE(objectToolTip(static_cast<quint16>(index), value), toolTip);
}

QTEST_GUILESS_MAIN(tst_ObjectToolTip)
#include "tst_objecttooltip.moc"
