// SPDX-License-Identifier: MIT
#include <details/textrows.h>

#include <QtTest>

class tst_TextRows : public QObject
{
    Q_OBJECT

private slots:
    void rowsAreInsertedBeforeTheRowAtThePosition();
    void nothingIsShownBeyondTheEnd();
};

void tst_TextRows::rowsAreInsertedBeforeTheRowAtThePosition()
{
    TextRows table;
    table.appendRow({QStringLiteral("b"), QStringLiteral("2")});
    table.insertRow(0, {QStringLiteral("a"), QStringLiteral("1"), QStringLiteral("tip"), Qt::red});
    table.appendSeparator();
    table.insertListRow(1, QStringLiteral("l"), QStringLiteral("list tip"), {QStringLiteral("x")});

    QCOMPARE(table.rowCount(), 4);
    const TextRows::Row &first = table.rows().at(0);
    QCOMPARE(first.kind, TextRows::Kind::Value);
    QCOMPARE(first.detail.name, QStringLiteral("a"));
    QCOMPARE(first.detail.text, QStringLiteral("1"));
    QCOMPARE(first.detail.toolTip, QStringLiteral("tip"));
    QVERIFY(first.detail.color == Qt::red);
    const TextRows::Row &list = table.rows().at(1);
    QCOMPARE(list.kind, TextRows::Kind::List);
    QCOMPARE(list.detail.name, QStringLiteral("l"));
    QCOMPARE(list.detail.toolTip, QStringLiteral("list tip"));
    QCOMPARE(list.entries, QStringList(QStringLiteral("x")));
    QCOMPARE(table.rows().at(2).detail.name, QStringLiteral("b"));
    QVERIFY(!table.rows().at(2).detail.color);
    QCOMPARE(table.rows().at(3).kind, TextRows::Kind::Separator);

    table.clear();
    QCOMPARE(table.rowCount(), 0);
}

void tst_TextRows::nothingIsShownBeyondTheEnd()
{
    TextRows table;
    const DetailRow row{QStringLiteral("a"), QStringLiteral("1")};
    table.insertRow(1, row);
    table.insertListRow(1, QStringLiteral("l"), QString(), {});
    table.insertSeparator(1);
    table.insertRow(-1, row);
    QCOMPARE(table.rowCount(), 0);
    table.insertRow(0, row);
    table.insertRow(2, row);
    QCOMPARE(table.rowCount(), 1);
}

QTEST_GUILESS_MAIN(tst_TextRows)
#include "tst_textrows.moc"
