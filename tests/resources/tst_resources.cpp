// SPDX-License-Identifier: MIT

#include <QColor>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFont>
#include <QImage>
#include <QRegularExpression>
#include <QResource>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

namespace {

QString styleSheet()
{
    QFile file(QStringLiteral(":/files/pdf.css"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

/*! Returns \a css as the PDF's renderer sees it: all text between HTML comment marks is skipped. */
QString withoutHtmlComments(QString css)
{
    static const QRegularExpression comment(QStringLiteral("<!--.*?-->"),
                                            QRegularExpression::DotMatchesEverythingOption);
    return css.remove(comment);
}

/*! Returns \a css as a browser sees it: the marks are skipped, the text between them is not, CSS comments
 *  are.
 */
QString withoutCssComments(QString css)
{
    static const QRegularExpression comment(QStringLiteral("/\\*.*?\\*/"),
                                            QRegularExpression::DotMatchesEverythingOption);
    css.remove(comment);
    css.remove(QLatin1String("<!--"));
    css.remove(QLatin1String("-->"));
    return css;
}

struct Rule
{
    QString selector;
    QStringList properties; // "name: value", in file order
};

QVector<Rule> parseRules(const QString &css)
{
    QVector<Rule> rules;
    const QStringList parts = css.split(QLatin1Char('}'));
    for (const QString &part : parts) {
        const QStringList halves = part.split(QLatin1Char('{'));
        if (halves.size() != 2)
            continue;
        Rule rule{halves.first().simplified(), {}};
        const QStringList declarations = halves.last().split(QLatin1Char(';'));
        for (const QString &declaration : declarations) {
            if (!declaration.trimmed().isEmpty())
                rule.properties.append(declaration.simplified());
        }
        rules.append(rule);
    }
    return rules;
}

/*! Returns the properties of the only rule for \a selector; fails when there is none or more than one. */
QStringList propertiesOf(const QVector<Rule> &rules, const QString &selector)
{
    QStringList properties{QStringLiteral("no rule")};
    int found = 0;
    for (const Rule &rule : rules) {
        if (rule.selector == selector) {
            properties = rule.properties;
            ++found;
        }
    }
    return found > 1 ? QStringList{QStringLiteral("more than one rule")} : properties;
}

} // namespace

class tst_Resources : public QObject
{
    Q_OBJECT

private slots:
    void bundleHolds_data();
    void bundleHolds();
    void bundleHoldsNothingElse();
    void pictureSize_data();
    void pictureSize();
    void iconIsSharpAndTransparent_data();
    void iconIsSharpAndTransparent();
    void iconStandsOut_data();
    void iconStandsOut();
    void objectTableIsCompressed();
    void styleRule_data();
    void styleRule();
    void styleSheetHasNoOtherRules();
    void styleSheetExplainsItsKnobs();
    void rendererAppliesTheStyleSheet();
};

void tst_Resources::bundleHolds_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("load monitoring unit") << QStringLiteral(":/img/icon/lmd_32.png");
    QTest::newRow("security unit") << QStringLiteral(":/img/icon/lock_32.png");
    QTest::newRow("motor control unit") << QStringLiteral(":/img/icon/motor32.png");
    QTest::newRow("controller") << QStringLiteral(":/img/icon/dxc32.png");
    QTest::newRow("charger") << QStringLiteral(":/img/icon/charger32.png");
    QTest::newRow("display") << QStringLiteral(":/img/icon/display32.png");
    QTest::newRow("battery pack") << QStringLiteral(":/img/icon/battery32.png");
    QTest::newRow("vehicle picture") << QStringLiteral(":/img/ebike.png");
    QTest::newRow("title picture") << QStringLiteral(":/img/draxel.png");
    QTest::newRow("style sheet") << QStringLiteral(":/files/pdf.css");
    QTest::newRow("object table") << QStringLiteral(":/files/od.csv");
    QTest::newRow("vendor table") << QStringLiteral(":/files/vendor.csv");
}

void tst_Resources::bundleHolds()
{
    QFETCH(QString, path);

    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
    QVERIFY2(!file.readAll().isEmpty(), qPrintable(path));
}

void tst_Resources::bundleHoldsNothingElse()
{
    QStringList paths;
    for (QDirIterator files(QStringLiteral(":/img"), QDir::Files, QDirIterator::Subdirectories);
         files.hasNext();)
        paths.append(files.next());
    QCOMPARE(paths.size(), 9);

    QCOMPARE(
        QDir(QStringLiteral(":/files")).entryList(QDir::Files, QDir::Name),
        QStringList({QStringLiteral("od.csv"), QStringLiteral("pdf.css"), QStringLiteral("vendor.csv")}));
}

void tst_Resources::pictureSize_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");

    QTest::newRow("load monitoring unit") << QStringLiteral(":/img/icon/lmd_32.png") << QSize(32, 32);
    QTest::newRow("security unit") << QStringLiteral(":/img/icon/lock_32.png") << QSize(32, 32);
    QTest::newRow("motor control unit") << QStringLiteral(":/img/icon/motor32.png") << QSize(32, 32);
    QTest::newRow("controller") << QStringLiteral(":/img/icon/dxc32.png") << QSize(32, 32);
    QTest::newRow("charger") << QStringLiteral(":/img/icon/charger32.png") << QSize(32, 32);
    QTest::newRow("display") << QStringLiteral(":/img/icon/display32.png") << QSize(32, 32);
    QTest::newRow("battery pack") << QStringLiteral(":/img/icon/battery32.png") << QSize(32, 32);
    QTest::newRow("vehicle picture") << QStringLiteral(":/img/ebike.png") << QSize(640, 400);
    QTest::newRow("title picture") << QStringLiteral(":/img/draxel.png") << QSize(480, 160);
}

void tst_Resources::pictureSize()
{
    QFETCH(QString, path);
    QFETCH(QSize, size);

    const QImage image(path);
    QVERIFY2(!image.isNull(), qPrintable(path));
    QCOMPARE(image.size(), size);
    QVERIFY(image.hasAlphaChannel());
}

void tst_Resources::iconIsSharpAndTransparent_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("load monitoring unit") << QStringLiteral(":/img/icon/lmd_32.png");
    QTest::newRow("security unit") << QStringLiteral(":/img/icon/lock_32.png");
    QTest::newRow("motor control unit") << QStringLiteral(":/img/icon/motor32.png");
    QTest::newRow("controller") << QStringLiteral(":/img/icon/dxc32.png");
    QTest::newRow("charger") << QStringLiteral(":/img/icon/charger32.png");
    QTest::newRow("display") << QStringLiteral(":/img/icon/display32.png");
    QTest::newRow("battery pack") << QStringLiteral(":/img/icon/battery32.png");
}

void tst_Resources::iconIsSharpAndTransparent()
{
    QFETCH(QString, path);

    const QImage image(path);
    int opaque = 0;
    int halfTransparent = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            opaque += alpha == 255 ? 1 : 0;
            halfTransparent += alpha > 0 && alpha < 255 ? 1 : 0;
        }
    }

    for (const QPoint corner : {QPoint(0, 0), QPoint(31, 0), QPoint(0, 31), QPoint(31, 31)})
        QCOMPARE(qAlpha(image.pixel(corner)), 0);
    QVERIFY2(opaque > 256, qPrintable(QString::number(opaque)));
    QVERIFY2(halfTransparent < 128, qPrintable(QString::number(halfTransparent)));
}

void tst_Resources::iconStandsOut_data()
{
    iconIsSharpAndTransparent_data();
}

void tst_Resources::iconStandsOut()
{
    QFETCH(QString, path);

    const QColor backgrounds[] = {QColor(255, 255, 255), QColor(235, 240, 230), QColor(0x23, 0x26, 0x29)};
    const QImage image(path);
    for (const QColor &background : backgrounds) {
        int distinct = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                const bool differs = qAbs(qGray(pixel) - qGray(background.rgb())) > 50;
                distinct += qAlpha(pixel) == 255 && differs ? 1 : 0;
            }
        }
        QVERIFY2(distinct > 180,
                 qPrintable(QStringLiteral("%1 pixels on %2").arg(distinct).arg(background.name())));
    }
}

void tst_Resources::objectTableIsCompressed()
{
    const QResource objectTable(QStringLiteral(":/files/od.csv"));
    QVERIFY(objectTable.isValid());
#if QT_VERSION >= QT_VERSION_CHECK(5, 13, 0)
    QCOMPARE(objectTable.compressionAlgorithm(), QResource::ZlibCompression);
#else
    QVERIFY(objectTable.isCompressed());
#endif
}

void tst_Resources::styleRule_data()
{
    QTest::addColumn<QString>("selector");
    QTest::addColumn<QStringList>("properties");

    QTest::newRow("div") << QStringLiteral("div")
                         << QStringList({QStringLiteral("font-family: \"Verdana\", sans-serif"),
                                         QStringLiteral("font-size: 12px"),
                                         QStringLiteral("font-weight: 400")});
    QTest::newRow("cell") << QStringLiteral("td") << QStringList({QStringLiteral("padding: 5px")});
    QTest::newRow("device table") << QStringLiteral("table.deviceTable")
                                  << QStringList({QStringLiteral("margin-bottom: 50px"),
                                                  QStringLiteral("color: black"),
                                                  QStringLiteral("page-break-after: always")});
    QTest::newRow("section table")
        << QStringLiteral("table.describeTable")
        << QStringList({QStringLiteral("border-style: solid"), QStringLiteral("border-collapse: collapse"),
                        QStringLiteral("border-width: 0px"), QStringLiteral("border-color: black"),
                        QStringLiteral("margin-bottom: 0px"), QStringLiteral("color: black"),
                        QStringLiteral("background-color: #EEEEEE")});
    QTest::newRow("frame cell") << QStringLiteral("td.inTable")
                                << QStringList({QStringLiteral("padding: 0px 2px 2px 2px"),
                                                QStringLiteral("background-color: #CCCCCC")});
    QTest::newRow("name cell") << QStringLiteral("td.itemName")
                               << QStringList({QStringLiteral("width: 300px")});
    QTest::newRow("value cell") << QStringLiteral("td.itemInter") << QStringList();
    QTest::newRow("device title") << QStringLiteral("td.deviceTitle")
                                  << QStringList({QStringLiteral("background-color: #CCCCCC"),
                                                  QStringLiteral("margin: 0px 0px 0px 0px"),
                                                  QStringLiteral("padding: 5px 0px 5px 0px"),
                                                  QStringLiteral("font-weight: 700"),
                                                  QStringLiteral("font-size: 16px")});
    QTest::newRow("section title") << QStringLiteral("td.describeTitle")
                                   << QStringList({QStringLiteral("background-color: #E0E0E0"),
                                                   QStringLiteral("margin: 0px 0px 0px 0px"),
                                                   QStringLiteral("padding: 5px 0px 5px 0px"),
                                                   QStringLiteral("font-weight: 500"),
                                                   QStringLiteral("font-size: 14px")});
    QTest::newRow("odd row") << QStringLiteral("tr.alt1")
                             << QStringList({QStringLiteral("background-color: #FFFFFF")});
    QTest::newRow("even row") << QStringLiteral("tr.alt2")
                              << QStringList({QStringLiteral("background-color: #EEEEEE")});
    QTest::newRow("page") << QStringLiteral("div.center")
                          << QStringList({QStringLiteral("margin-left: 0px"),
                                          QStringLiteral("margin-right: 0px"), QStringLiteral("z-index: 1")});
}

void tst_Resources::styleRule()
{
    QFETCH(QString, selector);
    QFETCH(QStringList, properties);

    QCOMPARE(propertiesOf(parseRules(withoutHtmlComments(styleSheet())), selector), properties);
    QCOMPARE(propertiesOf(parseRules(withoutCssComments(styleSheet())), selector), properties);
}

void tst_Resources::styleSheetHasNoOtherRules()
{
    QCOMPARE(parseRules(withoutHtmlComments(styleSheet())).size(), 12);
    QCOMPARE(parseRules(withoutCssComments(styleSheet())).size(), 12);
}

void tst_Resources::styleSheetExplainsItsKnobs()
{
    const QString css = styleSheet();
    QCOMPARE(css.count(QLatin1String("<!--")), css.count(QLatin1String("-->")));
    QVERIFY(css.contains(QLatin1String("space between two device tables")));
    QVERIFY(css.contains(QLatin1String("\"auto\" allows several devices per page")));
    QVERIFY(css.contains(QLatin1String("minus twice the border width")));
    QVERIFY(css.contains(QLatin1String("ignored in the PDF")));
    QVERIFY(css.contains(QLatin1String("additional space at the sides of the page")));
}

void tst_Resources::rendererAppliesTheStyleSheet()
{
    QTextDocument document;
    document.setHtml(QStringLiteral("<html><head></head><body><style type=\"text/css\">") + styleSheet()
                     + QStringLiteral("</style><div class=\"center\">"
                                      "<table class=\"describeTable\">"
                                      "<tr><td class=\"describeTitle\">Title</td></tr>"
                                      "<tr class=\"alt1\"><td class=\"itemName\">First</td></tr>"
                                      "<tr class=\"alt2\"><td class=\"itemName\">Second</td></tr>"
                                      "</table></div></body></html>"));

    QCOMPARE(document.toPlainText().simplified(), QStringLiteral("Title First Second"));

    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::NextBlock);
    const QTextTable *table = cursor.currentTable();
    QVERIFY(table != nullptr);
    QCOMPARE(table->format().background().color(), QColor(0xEE, 0xEE, 0xEE));
    QCOMPARE(table->cellAt(0, 0).format().background().color(), QColor(0xE0, 0xE0, 0xE0));
    QCOMPARE(table->cellAt(1, 0).format().background().color(), QColor(0xFF, 0xFF, 0xFF));
    QCOMPARE(table->cellAt(2, 0).format().background().color(), QColor(0xEE, 0xEE, 0xEE));
    QCOMPARE(table->cellAt(0, 0).format().toTableCellFormat().topPadding(), 5.0);
    QCOMPARE(table->cellAt(0, 0).format().toTableCellFormat().leftPadding(), 0.0);
    QCOMPARE(table->cellAt(1, 0).format().toTableCellFormat().leftPadding(), 5.0);
    QCOMPARE(table->cellAt(0, 0).firstCursorPosition().charFormat().font().pixelSize(), 14);
}

QTEST_MAIN(tst_Resources)

#include "tst_resources.moc"
