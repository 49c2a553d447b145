// SPDX-License-Identifier: MIT
#include <host/pages/live/columnpen.h>

#include <QImage>
#include <QPainter>
#include <QtTest>

#include <limits>
#include <random>

namespace {

using Edges = ColumnPen::Edges;
using Line = QVector<QPointF>;

/*! A white picture with one line in black. */
QImage drawn(const Line &line, double width, Edges edges, Qt::PenStyle style = Qt::SolidLine,
             const QSize &size = QSize(40, 20))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    ColumnPen pen(&painter, QPen(Qt::black, width, style), width, edges);
    for (const QPointF &point : line)
        pen.lineTo(point.x(), point.y());
    return image;
}

/*! How dark a pixel is: 0 is white, 255 is black. */
int dark(const QImage &image, int x, int y)
{
    return 255 - qGray(image.pixel(x, y));
}

/*! A column from the top: "#" black, "." white, "+" between. */
QByteArray column(const QImage &image, int x)
{
    QByteArray text;
    for (int y = 0; y < image.height(); ++y)
        text += dark(image, x, y) == 255 ? '#' : dark(image, x, y) == 0 ? '.' : '+';
    return text;
}

bool isTouched(const QImage &image, int x, int y)
{
    for (int column = x - 1; column <= x + 1; ++column) {
        for (int row = y - 1; row <= y + 1; ++row) {
            if (dark(image, column, row) > 0)
                return true;
        }
    }
    return false;
}

} // namespace

/*! Lines of a plot, column by column. */
class tst_ColumnPen : public QObject
{
    Q_OBJECT

private slots:
    void levelLine();
    void lineOnTheEdgeOfPixels();
    void thinLineIsFaint();
    void steepLineHasNoHoles_data();
    void steepLineHasNoHoles();
    void peakWithinAColumn();
    void slantedLine();
    void liftedPenLeavesAGap();
    void singlePoint();
    void sharpLine();
    void dashes_data();
    void dashes();
    void colourThatIsSeenThrough();
    void farPlaces();
    void noNumbers();
    void nothingIsDrawnTwice();
    void linesAreLikeThoseOfThePainter();
};

void tst_ColumnPen::levelLine()
{
    const QImage image = drawn({{3.5, 10}, {8.5, 10}}, 2, Edges::Smooth);
    for (int x = 3; x <= 8; ++x)
        QCOMPARE(column(image, x), QByteArray(".........##........."));
    QCOMPARE(column(image, 2), QByteArray(20, '.'));
    QCOMPARE(column(image, 9), QByteArray(20, '.'));
}

/*! Half of both pixels. */
void tst_ColumnPen::lineOnTheEdgeOfPixels()
{
    const QImage image = drawn({{0, 10}, {9.5, 10}}, 1, Edges::Smooth);
    QVERIFY(qAbs(dark(image, 5, 9) - 128) <= 1);
    QVERIFY(qAbs(dark(image, 5, 10) - 128) <= 1);
    QCOMPARE(dark(image, 5, 8) + dark(image, 5, 11), 0);
    const QImage wider = drawn({{0, 10.5}, {9.5, 10.5}}, 1.6, Edges::Smooth);
    QCOMPARE(dark(wider, 5, 10), 255);
    QVERIFY(qAbs(dark(wider, 5, 9) - 77) <= 2); // three tenths
    QVERIFY(qAbs(dark(wider, 5, 11) - 77) <= 2);
}

void tst_ColumnPen::thinLineIsFaint()
{
    const QImage image = drawn({{0, 10.5}, {9.5, 10.5}}, 0.5, Edges::Smooth);
    QVERIFY(qAbs(dark(image, 5, 10) - 128) <= 1);
    QCOMPARE(dark(image, 5, 9) + dark(image, 5, 11), 0);
}

void tst_ColumnPen::steepLineHasNoHoles_data()
{
    QTest::addColumn<Line>("line");
    QTest::addColumn<bool>("isSmooth");
    for (const bool isSmooth : {true, false}) {
        const char *kind = isSmooth ? "smooth" : "sharp";
        QTest::addRow("%s, up", kind) << Line({{2.5, 18}, {6.5, 2}}) << isSmooth;
        QTest::addRow("%s, down", kind) << Line({{2.5, 2}, {6.5, 18}}) << isSmooth;
        QTest::addRow("%s, straight up", kind) << Line({{2.5, 18}, {2.5, 2}, {6.5, 2}}) << isSmooth;
        QTest::addRow("%s, to and fro", kind)
            << Line({{2.5, 10}, {3.5, 2}, {4.5, 18}, {6.5, 10}}) << isSmooth;
    }
}

/*! Each row between the ends is black somewhere, and columns beside each other touch. */
void tst_ColumnPen::steepLineHasNoHoles()
{
    QFETCH(Line, line);
    QFETCH(bool, isSmooth);
    const QImage image = drawn(line, 1.6, isSmooth ? Edges::Smooth : Edges::Sharp);
    for (int y = 3; y <= 16; ++y) {
        int darkest = 0;
        for (int x = 2; x <= 6; ++x)
            darkest = qMax(darkest, dark(image, x, y));
        QVERIFY2(darkest == 255, QByteArray::number(y));
    }
    for (int x = 3; x <= 6; ++x) {
        bool isTouching = false;
        for (int y = 0; y < image.height(); ++y)
            isTouching = isTouching || (dark(image, x - 1, y) > 0 && dark(image, x, y) > 0);
        QVERIFY2(isTouching, QByteArray::number(x));
    }
}

void tst_ColumnPen::peakWithinAColumn()
{
    const QImage image = drawn({{0.5, 15}, {4.2, 15}, {4.4, 3}, {4.6, 15}, {9.5, 15}}, 2, Edges::Smooth);
    QCOMPARE(column(image, 4), QByteArray("..##############...."));
    QCOMPARE(column(image, 3), QByteArray("..............##...."));
    QCOMPARE(column(image, 5), QByteArray("..............##...."));
}

/*! One pixel down for each to the right: each column has what lies between its edges, and half of the width beyond. */
void tst_ColumnPen::slantedLine()
{
    const QImage image = drawn({{0, 4}, {10, 14}}, 2, Edges::Smooth);
    QCOMPARE(column(image, 0), QByteArray("...###.............."));
    QCOMPARE(column(image, 5), QByteArray("........###........."));
    QCOMPARE(column(image, 9), QByteArray("............###....."));
}

void tst_ColumnPen::liftedPenLeavesAGap()
{
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        ColumnPen pen(&painter, QPen(Qt::black), 2, Edges::Smooth);
        pen.lineTo(2.5, 10);
        pen.lineTo(5.5, 10);
        pen.lift();
        pen.lift();
        pen.lineTo(9.5, 4);
        pen.lineTo(12.5, 4);
    }
    QCOMPARE(column(image, 5), QByteArray(".........##........."));
    for (int x = 6; x <= 8; ++x)
        QCOMPARE(column(image, x), QByteArray(20, '.'));
    QCOMPARE(column(image, 9), QByteArray("...##..............."));
}

void tst_ColumnPen::singlePoint()
{
    const QImage image = drawn(Line{QPointF(7.5, 10)}, 2, Edges::Smooth);
    QCOMPARE(column(image, 7), QByteArray(".........##........."));
    QCOMPARE(column(image, 6) + column(image, 8), QByteArray(40, '.'));
    QCOMPARE(drawn(Line(), 2, Edges::Smooth), drawn(Line(), 2, Edges::Sharp));
}

void tst_ColumnPen::sharpLine()
{
    for (const double y : {9.6, 10.0, 10.4}) {
        const QImage image = drawn({{0, y}, {9.5, y}}, 1, Edges::Sharp);
        int black = 0;
        for (int row = 0; row < image.height(); ++row) {
            QVERIFY(dark(image, 4, row) == 0 || dark(image, 4, row) == 255);
            black += dark(image, 4, row) == 255 ? 1 : 0;
        }
        QCOMPARE(black, 1);
    }
}

void tst_ColumnPen::dashes_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<QByteArray>("row");
    QTest::newRow("solid") << int(Qt::SolidLine) << QByteArray("################################");
    QTest::newRow("dashes") << int(Qt::DashLine) << QByteArray("########........########........");
    QTest::newRow("short ones") << int(Qt::DashDotLine) << QByteArray("####....####....####....####....");
    QTest::newRow("dots") << int(Qt::DotLine) << QByteArray("##..##..##..##..##..##..##..##..");
}

void tst_ColumnPen::dashes()
{
    QFETCH(int, style);
    QFETCH(QByteArray, row);
    const QImage image = drawn({{0, 10.5}, {39.5, 10.5}}, 1.6, Edges::Smooth, Qt::PenStyle(style));
    QByteArray seen;
    for (int x = 0; x < row.size(); ++x)
        seen += dark(image, x, 10) == 255 ? '#' : '.';
    QCOMPARE(seen, row);
}

void tst_ColumnPen::colourThatIsSeenThrough()
{
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        QColor faint(Qt::black);
        faint.setAlphaF(0.5);
        ColumnPen pen(&painter, QPen(faint), 1, Edges::Smooth);
        pen.lineTo(0, 10.5);
        pen.lineTo(9, 10.5);
        pen.lineTo(19, 11);
    }
    QVERIFY(qAbs(dark(image, 3, 10) - 128) <= 1);
    QVERIFY(qAbs(dark(image, 18, 10) - 66) <= 4);
    QVERIFY(qAbs(dark(image, 18, 11) - 62) <= 4);
}

/*! Outside of the picture, above, below and beside it, and where numbers end. */
void tst_ColumnPen::farPlaces()
{
    const QImage image
        = drawn({{-5, -1e300}, {5.5, 10}, {20.5, 1e300}, {39, 10}, {60, 10}}, 2, Edges::Smooth);
    QCOMPARE(column(image, 5), QByteArray(20, '#')); // from far above to far below
    QCOMPARE(column(image, 20), QByteArray(20, '.'));
    QCOMPARE(column(image, 38), QByteArray(".........###########"));
    QCOMPARE(column(image, 39), QByteArray(".........##........."));
}

void tst_ColumnPen::noNumbers()
{
    const double infinite = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    const QImage image = drawn({{0.5, 10},
                                {3.5, 10},
                                {5.5, none},
                                {8.5, 10},
                                {11.5, 10},
                                {13.5, infinite},
                                {17.5, -infinite},
                                {19.5, 10},
                                {22.5, 10}},
                               2, Edges::Smooth);
    QCOMPARE(column(image, 3), QByteArray(".........##........."));
    QCOMPARE(column(image, 6), QByteArray(20, '.'));
    QCOMPARE(column(image, 9), QByteArray(".........##........."));
    QCOMPARE(column(image, 15), QByteArray(20, '#'));
    QCOMPARE(column(image, 21), QByteArray(".........##........."));
}

/*! A line that is seen through is no darker where its parts meet. */
void tst_ColumnPen::nothingIsDrawnTwice()
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> distance(0, 3);
    std::uniform_real_distribution<double> height(2, 18);
    for (int round = 0; round < 200; ++round) {
        QImage image(40, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            QColor faint(Qt::black);
            faint.setAlphaF(0.5);
            ColumnPen pen(&painter, QPen(faint), 1.6, Edges::Smooth);
            for (double x = 1; x < 39; x += distance(random))
                pen.lineTo(x, height(random));
        }
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y)
                QVERIFY(dark(image, x, y) <= 129);
        }
    }
}

/*! Nothing is missing of what a painter draws with antialiasing, and nothing is beside it: black pixels of the one are at most one
 *  pixel away from touched ones of the other. Steep lines are not as wide as those of the painter.
 */
void tst_ColumnPen::linesAreLikeThoseOfThePainter()
{
    std::mt19937 random(9);
    std::uniform_real_distribution<double> distance(0.2, 6);
    std::uniform_real_distribution<double> height(3, 17);
    for (int round = 0; round < 200; ++round) {
        Line line;
        for (double x = 1; x < 39; x += distance(random))
            line << QPointF(x, height(random));
        const QImage ours = drawn(line, 2, Edges::Smooth);
        QImage theirs(ours.size(), ours.format());
        theirs.fill(Qt::white);
        {
            QPainter painter(&theirs);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(QPen(Qt::black, 2));
            painter.drawPolyline(QPolygonF(line));
        }
        for (int x = 2; x < 37; ++x) {
            for (int y = 1; y < ours.height() - 1; ++y) {
                QVERIFY(dark(theirs, x, y) < 250 || isTouched(ours, x, y));
                QVERIFY(dark(ours, x, y) < 250 || isTouched(theirs, x, y));
            }
        }
    }
}

QTEST_MAIN(tst_ColumnPen)
#include "tst_columnpen.moc"
