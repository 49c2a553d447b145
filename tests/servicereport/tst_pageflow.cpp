// SPDX-License-Identifier: MIT
#include <servicereport/pageflow.h>

#include <QtTest>

namespace {

FlowPiece piece(qreal height, bool keepsWithNext = false, int head = -1)
{
    FlowPiece result;
    result.height = height;
    result.keepsWithNext = keepsWithNext;
    result.head = head;
    return result;
}

FlowPiece space(qreal height)
{
    FlowPiece result = piece(height);
    result.isSpace = true;
    return result;
}

/*! "piece@page:top" of every placed piece. */
QStringList places(const QVector<FlowPiece> &pieces, qreal pageHeight)
{
    QStringList texts;
    for (const PlacedPiece &placed : flowOntoPages(pieces, pageHeight))
        texts << QStringLiteral("%1@%2:%3").arg(placed.piece).arg(placed.page).arg(placed.top);
    return texts;
}

QStringList list(const char *texts)
{
    return QString::fromLatin1(texts).split(QLatin1Char(' '));
}

} // namespace

class tst_PageFlow : public QObject
{
    Q_OBJECT

private slots:
    void fillsAPage() { QCOMPARE(places({piece(40), piece(60), piece(1)}, 100), list("0@0:0 1@0:40 2@1:0")); }
    void cutsNoPiece() { QCOMPARE(places({piece(60), piece(60)}, 100), list("0@0:0 1@1:0")); }
    void headingGoesWithWhatFollows()
    {
        QCOMPARE(places({piece(80), piece(15, true), piece(20)}, 100), list("0@0:0 1@1:0 2@1:15"));
    }
    void headingsInARowStayTogether()
    {
        QCOMPARE(places({piece(50), piece(15, true), piece(15, true), piece(30)}, 100),
                 list("0@0:0 1@1:0 2@1:15 3@1:30"));
    }
    void spaceFallsAwayAtTheTop()
    {
        QCOMPARE(places({space(10), piece(95), space(10), piece(20)}, 100), list("1@0:0 3@1:0"));
    }
    void spaceStaysBetween()
    {
        QCOMPARE(places({piece(20), space(10), piece(20)}, 100), list("0@0:0 1@0:20 2@0:30"));
    }
    void headOfATableIsRepeated()
    {
        QCOMPARE(places({piece(10, true), piece(60, false, 0), piece(60, false, 0)}, 100),
                 list("0@0:0 1@0:10 0@1:0 2@1:10"));
    }
    void headOfAHeadIsRepeatedAboveIt()
    {
        QCOMPARE(places({piece(10, true), piece(5, true, 0), piece(60, false, 1), piece(60, false, 1)}, 100),
                 list("0@0:0 1@0:10 2@0:15 0@1:0 1@1:10 3@1:15"));
    }
    void headOfATableThatBeginsAPageHasItsOwn()
    {
        QCOMPARE(places({piece(10, true), piece(70), piece(5, true, 0), piece(30, false, 2)}, 100),
                 list("0@0:0 1@0:10 0@1:0 2@1:10 3@1:15"));
    }
    void whatIsHigherThanAPageIsNotLost()
    {
        QCOMPARE(places({piece(10), piece(250), piece(10)}, 100), list("0@0:0 1@1:0 2@2:0"));
    }
    void chainThatIsLongerThanAPageGoesOn()
    {
        QCOMPARE(places({piece(10), piece(60, true), piece(60, true), piece(10)}, 100),
                 list("0@0:0 1@0:10 2@1:0 3@1:60"));
    }
};

QTEST_GUILESS_MAIN(tst_PageFlow)
#include "tst_pageflow.moc"
