// SPDX-License-Identifier: MIT
#include <canopen/readingcheck.h>

#include <QtTest>

using namespace CanOpen;

using Reading = ReadingCheck::Reading;
using Verdict = ReadingCheck::Verdict;

Q_DECLARE_METATYPE(QVector<ReadingCheck::Reading>)

class tst_ReadingCheck : public QObject
{
    Q_OBJECT

private slots:
    void quietLine_data();
    void quietLine();
    void lineInTrouble_data();
    void lineInTrouble();
    void babblingNode_data();
    void babblingNode();
    void tellsTheFirstOfThoseThatAgree();
    void brokenOffReadingsDoNotCount();
    void resetForgets();
};

namespace {

// The readings and the verdicts of the rows, a letter each: B believe, A read again, C read when clear, L listen.
QString letterOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Believe:
        return QStringLiteral("B");
    case Verdict::ReadAgain:
        return QStringLiteral("A");
    case Verdict::ReadWhenClear:
        return QStringLiteral("C");
    case Verdict::Listen:
        return QStringLiteral("L");
    }
    return QString();
}

// One segment, begun on a clear line.
Reading one(const char *data)
{
    Reading reading;
    reading.data = data;
    reading.segments = 1;
    reading.begunClear = true;
    return reading;
}

Reading several(const char *data)
{
    Reading reading = one(data);
    reading.segments = 2;
    return reading;
}

Reading unclear(Reading reading)
{
    reading.begunClear = false;
    return reading;
}

Reading known(Reading reading)
{
    reading.isKnown = true;
    return reading;
}

Reading babble(Reading reading)
{
    reading.isBabble = true;
    return reading;
}

Reading repeating(Reading reading)
{
    reading.isRepeating = true;
    return reading;
}

Reading withCrc(Reading reading)
{
    reading.hasCrc = true;
    return reading;
}

QString judge(const QVector<Reading> &readings, bool isTroubled, bool isBabbling)
{
    ReadingCheck check;
    QString verdicts;
    for (const Reading &reading : readings)
        verdicts += letterOf(check.take(reading, isTroubled, isBabbling));
    return verdicts;
}

void addColumns()
{
    QTest::addColumn<QVector<Reading>>("readings");
    QTest::addColumn<QString>("verdicts");
}

} // namespace

void tst_ReadingCheck::quietLine_data()
{
    addColumns();
    using Readings = QVector<Reading>;
    QTest::newRow("two that agree") << Readings{one("a"), one("a")} << QStringLiteral("AB");
    QTest::newRow("agreement after a change")
        << Readings{one("a"), one("b"), one("b")} << QStringLiteral("AAB");
    QTest::newRow("right CRC") << Readings{withCrc(several("a"))} << QStringLiteral("B");
    QTest::newRow("right CRC, and known")
        << Readings{withCrc(known(several("a"))), several("a"), several("a")} << QStringLiteral("AAB");
    QTest::newRow("known takes three")
        << Readings{known(one("a")), known(one("a")), known(one("a"))} << QStringLiteral("AAB");
    QTest::newRow("one known among them takes three")
        << Readings{known(one("a")), one("a"), one("a")} << QStringLiteral("AAB");
    QTest::newRow("known that changed is forgotten")
        << Readings{known(one("a")), one("b"), one("b")} << QStringLiteral("AAB");
    QTest::newRow("always something else")
        << Readings{one("a"), one("b"), one("c"), one("d")} << QStringLiteral("AAAL");
    QTest::newRow("always something else, and known")
        << Readings{one("a"), one("b"), one("c"), known(one("d"))} << QStringLiteral("AAAC");
    QTest::newRow("begun on an unclear line")
        << Readings{unclear(one("a")), unclear(one("a"))} << QStringLiteral("AB");
}

void tst_ReadingCheck::quietLine()
{
    QFETCH(QVector<Reading>, readings);
    QTEST(judge(readings, false, false), "verdicts");
}

void tst_ReadingCheck::lineInTrouble_data()
{
    addColumns();
    using Readings = QVector<Reading>;
    QTest::newRow("one segment, two that agree")
        << Readings{one("a"), unclear(one("a"))} << QStringLiteral("AB");
    QTest::newRow("the first of them not clear")
        << Readings{unclear(one("a")), unclear(one("a"))} << QStringLiteral("CC");
    QTest::newRow("one segment, known")
        << Readings{known(one("a")), one("a"), one("a")} << QStringLiteral("AAB");
    QTest::newRow("one segment that always changes")
        << Readings{one("a"), one("b"), one("c")} << QStringLiteral("AAL");
    QTest::newRow("one that always changes, not clear")
        << Readings{one("a"), one("b"), unclear(one("c"))} << QStringLiteral("AAC");
    QTest::newRow("known one that changed, and agrees, not clear")
        << Readings{one("a"), one("b"), known(one("c")), unclear(known(one("c")))} << QStringLiteral("AALA");
    QTest::newRow("several segments, both clear")
        << Readings{several("a"), several("a")} << QStringLiteral("CB");
    QTest::newRow("several segments, the second not clear")
        << Readings{several("a"), unclear(several("a")), several("a")} << QStringLiteral("CCB");
    QTest::newRow("several segments that always change")
        << Readings{several("a"), several("b"), several("c")} << QStringLiteral("CCC");
    QTest::newRow("babble does not count")
        << Readings{one("a"), babble(one("a")), one("a")} << QStringLiteral("ACA");
    QTest::newRow("repeating does not count")
        << Readings{one("a"), repeating(one("a")), one("a")} << QStringLiteral("ACA");
    QTest::newRow("a CRC does not help") << Readings{withCrc(several("a"))} << QStringLiteral("C");
}

void tst_ReadingCheck::lineInTrouble()
{
    QFETCH(QVector<Reading>, readings);
    QTEST(judge(readings, true, false), "verdicts");
}

void tst_ReadingCheck::babblingNode_data()
{
    addColumns();
    using Readings = QVector<Reading>;
    QTest::newRow("each clear") << Readings{one("a"), one("a")} << QStringLiteral("CB");
    QTest::newRow("the second not clear") << Readings{one("a"), unclear(one("a"))} << QStringLiteral("CC");
}

void tst_ReadingCheck::babblingNode()
{
    QFETCH(QVector<Reading>, readings);
    QTEST(judge(readings, true, true), "verdicts");
}

void tst_ReadingCheck::tellsTheFirstOfThoseThatAgree()
{
    ReadingCheck check;
    QVERIFY(!check.isFirst());
    check.take(known(one("a")), false, false);
    QVERIFY(check.isFirst());
    check.take(known(one("a")), false, false);
    QVERIFY(!check.isFirst());
    check.take(one("b"), false, false);
    QVERIFY(check.isFirst());
    check.take(babble(one("c")), true, false);
    QVERIFY(!check.isFirst());
}

void tst_ReadingCheck::brokenOffReadingsDoNotCount()
{
    ReadingCheck check;
    check.take(one("a"), false, false);
    check.breakOff();
    QVERIFY(check.take(one("a"), false, false) == Verdict::ReadAgain);
    QVERIFY(check.take(one("a"), false, false) == Verdict::Believe);
}

void tst_ReadingCheck::resetForgets()
{
    ReadingCheck check;
    for (const char *data : {"a", "b", "c"})
        check.take(one(data), false, false);
    check.reset();
    QVERIFY(check.take(one("c"), false, false) == Verdict::ReadAgain);
    QVERIFY(check.take(one("c"), false, false) == Verdict::Believe);
}

QTEST_GUILESS_MAIN(tst_ReadingCheck)
#include "tst_readingcheck.moc"
