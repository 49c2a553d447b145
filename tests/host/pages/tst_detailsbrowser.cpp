// SPDX-License-Identifier: MIT
#include <host/pages/detailsbrowser.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QTextBlock>
#include <QTextLayout>
#include <QtTest>

class tst_DetailsBrowser : public QObject
{
    Q_OBJECT

private slots:
    void keepsNumbersOfObjectsWhole_data();
    void keepsNumbersOfObjectsWhole();
    void otherTextsStayAsTheyAre();
    void copiesWhatIsSeen();
};

void tst_DetailsBrowser::keepsNumbersOfObjectsWhole_data()
{
    QTest::addColumn<int>("width");
    for (int width = 60; width < 200; width += 5)
        QTest::newRow(qPrintable(QString::number(width))) << width;
}

void tst_DetailsBrowser::keepsNumbersOfObjectsWhole()
{
    QFETCH(int, width);
    DetailsBrowser browser;
    browser.setPlainText(DetailsBrowser::unbroken(
        QStringLiteral("Errors were reported (1003h.0), and more of them (6164h.2), (1A00h.12).")));
    browser.document()->setTextWidth(width);
    const QTextBlock block = browser.document()->firstBlock();
    const QTextLayout &layout = *block.layout();
    QVERIFY(layout.lineCount() > 1);
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        const QString text = block.text().mid(line.textStart(), line.textLength());
        QVERIFY2(!text.endsWith(QLatin1String("h.")), qPrintable(text));
    }
}

void tst_DetailsBrowser::otherTextsStayAsTheyAre()
{
    for (const char *text : {"Length.0", "x1003h.0", "1003h. 0", "1003h.", "3.29 V"})
        QCOMPARE(DetailsBrowser::unbroken(QLatin1String(text)), QString::fromLatin1(text));
}

void tst_DetailsBrowser::copiesWhatIsSeen()
{
    DetailsBrowser browser;
    browser.setHtml(DetailsBrowser::unbroken(QStringLiteral("<p><b>1003h.0</b> is wrong</p>")));
    browser.selectAll();
    browser.copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("1003h.0 is wrong"));
    const QString html = QGuiApplication::clipboard()->mimeData()->html();
    QVERIFY2(html.contains(QLatin1String("1003h.0")), qPrintable(html));
}

QTEST_MAIN(tst_DetailsBrowser)
#include "tst_detailsbrowser.moc"
