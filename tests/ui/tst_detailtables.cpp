// SPDX-License-Identifier: MIT
#include "importedform.h"
#include "shownnode.h"

#include <tests/support/windowtest.h>
#include <ui/tablewriter.h>

#include <QtTest>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

/*! How rows look in the two tables of the window, and which node they show. */
class tst_DetailTables : public WindowTest
{
    Q_OBJECT

private slots:
    void writerInsertsBeforeTheRowAtThePosition();
    void writerShowsNothingBeyondTheEnd();
    void nameCannotBeEdited();
    void textsHaveTheColorOfTheirRow();
    void capabilities_data();
    void capabilities();
    void capabilityBoxLooksLikeTheTable();
    void everySelectionStartsAnew();
    void updatesAreEnabledAfterwards();
    void selectionShowsTheNodeOfTheRow();
    void noSelectionKeepsTheTables();
    void nodeOfARowIsItsLowByte();
};

void tst_DetailTables::writerInsertsBeforeTheRowAtThePosition()
{
    QTableWidget table(0, 2);
    TableWriter writer(table);
    writer.appendRow({s("b"), s("2")});
    writer.insertRow(0, {s("a"), s("1"), s("tip"), Qt::red});
    writer.appendSeparator();
    writer.insertListRow(1, s("w"), s("tip"), {s("x"), s("y")});

    QCOMPARE(table.rowCount(), 4);
    QCOMPARE(ShownNode::row(table, 0), s("a = 1 [tip]"));
    QCOMPARE(table.item(0, 1)->foreground().color(), QColor(Qt::red));
    QCOMPARE(ShownNode::row(table, 1), s("w = (x, y) [tip]"));
    QCOMPARE(ShownNode::row(table, 2), s("b = 2 []"));
    QCOMPARE(table.item(2, 1)->foreground().style(), Qt::NoBrush);
    QCOMPARE(ShownNode::row(table, 3), s("-"));

    writer.clear();
    QCOMPARE(table.rowCount(), 0);
    QCOMPARE(table.columnCount(), 2);
}

void tst_DetailTables::writerShowsNothingBeyondTheEnd()
{
    QTableWidget table(0, 2);
    TableWriter writer(table);
    writer.insertRow(1, {s("a"), s("1")});
    writer.insertListRow(1, s("w"), QString(), {});
    writer.insertSeparator(1);
    writer.insertRow(-1, {s("a"), s("1")});
    QCOMPARE(table.rowCount(), 0);

    writer.insertRow(0, {s("a"), s("1")});
    writer.insertRow(2, {s("c"), s("3")});
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(ShownNode::row(table, 0), s("a = 1 []"));
}

void tst_DetailTables::nameCannotBeEdited()
{
    ShownNode node;
    node.set(0x6005, 0, 7).show();
    QVERIFY(!(node.parameters.item(0, 0)->flags() & Qt::ItemIsEditable));
}

void tst_DetailTables::textsHaveTheColorOfTheirRow()
{
    ShownNode node;
    node.set(0x6000, 1, 6).set(0x6002, 1, 6u << 6).show();
    QCOMPARE(ShownNode::row(node.values, 2),
             s("Battery Status = Error [Object: 0x6002, Value: 384 | 0x180]"));
    QCOMPARE(node.values.item(2, 1)->foreground().color(), QColor(Qt::red));
    QCOMPARE(node.values.item(1, 1)->foreground().style(), Qt::NoBrush);
}

void tst_DetailTables::capabilities_data()
{
    QTest::addColumn<quint32>("value");
    QTest::addColumn<QString>("row");

    QTest::newRow("no bits") << 0u << s("Device capability = (---) [Object: 0x6005, Value: 0 | 0x0]");
    QTest::newRow("two bits")
        << 0x204u
        << s("Device capability = (Device is a master capable, Device is able to receive "
             "dynamic limitation) [Object: 0x6005, Value: 516 | 0x204]");
    QTest::newRow("unknown bits") << 0xFC00u
                                  << s("Device capability = (---) [Object: 0x6005, Value: 64512 | 0xFC00]");
}

void tst_DetailTables::capabilities()
{
    QFETCH(quint32, value);
    QFETCH(QString, row);

    ShownNode node;
    node.set(0x6003, 1, value).show();
    QCOMPARE(node.valueRows(), QStringList(row));
    QVERIFY(node.values.item(0, 1) == nullptr);
    QCOMPARE(node.values.cellWidget(0, 1)->toolTip(), QString());
}

void tst_DetailTables::capabilityBoxLooksLikeTheTable()
{
    ShownNode node;
    QPalette palette = node.values.palette();
    palette.setColor(QPalette::Highlight, QColor(0x0A, 0xBC, 0xDE, 0x12));
    palette.setColor(QPalette::Text, QColor(1, 2, 3));
    node.values.setPalette(palette);
    node.set(0x6003, 1, 1).show();

    auto *box = qobject_cast<QComboBox *>(node.values.cellWidget(0, 1));
    QVERIFY(box != nullptr);
    QCOMPARE(box->styleSheet(),
             s("QComboBox { background-color: rgba(0, 0, 0, 0);\nborder: 0px;}QComboBox QAbstractItemView { "
               "selection-color: black;selection-background-color: #0abcde;}"));
    QCOMPARE(box->font().pointSize(), 10);

    box->setStyleSheet(QString()); // which lies over the palette
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QCOMPARE(box->palette().brush(group, QPalette::Base), QBrush(QColor(255, 0, 0, 0)));
        QCOMPARE(box->palette().color(group, QPalette::Text), QColor(1, 2, 3));
    }
}

void tst_DetailTables::everySelectionStartsAnew()
{
    ShownNode node;
    node.set(0x6000, 1, 4).set(0x6003, 1, 1).set(0x6005, 0, 7).set(0x6080, 0, 1);
    node.show();
    const QStringList parameters = node.parameterRows();
    const QStringList values = node.valueRows();
    QCOMPARE(parameters.size(), 3);
    QCOMPARE(values.size(), 2);

    node.show();
    QCOMPARE(node.parameterRows(), parameters);
    QCOMPARE(node.valueRows(), values);

    node.store.setValue(6, 0x6005, 0, 8);
    DetailTables(node.store, node.parameters, node.values).showNode(6);
    QCOMPARE(node.parameterRows(),
             QStringList({s("Device unique part number = 8 [Object: 0x6005, Value: 8 | 0x8]"), s("-")}));
    QCOMPARE(node.valueRows(), QStringList());
    QTRY_VERIFY(node.values.findChildren<QComboBox *>().isEmpty());
}

void tst_DetailTables::updatesAreEnabledAfterwards()
{
    ShownNode node;
    node.show();
    QVERIFY(node.parameters.updatesEnabled());
    QVERIFY(node.values.updatesEnabled());

    node.values.setUpdatesEnabled(false); // by somebody else
    node.show();
    QVERIFY(!node.values.updatesEnabled());
}

void tst_DetailTables::selectionShowsTheNodeOfTheRow()
{
    ImportedForm form({{5, 0x6000, 0, 1},
                       {5, 0x6000, 1, 9},
                       {5, 0x6005, 0, 55},
                       {6, 0x6000, 0, 1},
                       {6, 0x6000, 1, 4},
                       {6, 0x6005, 0, 66}});
    QCOMPARE(form.tree().topLevelItemCount(), 2);

    form.tree().setCurrentItem(form.tree().topLevelItem(0));
    QCOMPARE(ShownNode::row(form.parameters(), 0),
             s("Device unique part number = 55 [Object: 0x6005, Value: 55 | 0x37]"));
    QCOMPARE(form.parameters().rowCount(), 2);
    QCOMPARE(log().debugLines().filter(s("HMI control unit/display")).size(), 1);
    QVERIFY(log().debugLines().filter(s("HMI control unit/display")).at(0).contains(s("5")));

    form.tree().setCurrentItem(form.tree().topLevelItem(1));
    QCOMPARE(ShownNode::row(form.parameters(), 0),
             s("Device unique part number = 66 [Object: 0x6005, Value: 66 | 0x42]"));
    QCOMPARE(form.parameters().rowCount(), 3);
}

void tst_DetailTables::noSelectionKeepsTheTables()
{
    ImportedForm form({{5, 0x6000, 0, 1}, {5, 0x6000, 1, 9}, {5, 0x6005, 0, 55}});
    QCOMPARE(form.parameters().rowCount(), 2);
    form.tree().setCurrentItem(nullptr);
    QVERIFY(form.tree().currentItem() == nullptr);
    QCOMPARE(form.parameters().rowCount(), 2);
    QCOMPARE(ShownNode::row(form.parameters(), 0),
             s("Device unique part number = 55 [Object: 0x6005, Value: 55 | 0x37]"));
}

void tst_DetailTables::nodeOfARowIsItsLowByte()
{
    ImportedForm form({{5, 0x6000, 0, 1}, {5, 0x6000, 1, 9}, {5, 0x6005, 0, 55}});
    auto *row = new QTreeWidgetItem(&form.tree());
    row->setData(0, Qt::UserRole, 0x1205);
    form.parameters().setRowCount(0);
    form.tree().setCurrentItem(row);
    QCOMPARE(ShownNode::row(form.parameters(), 0),
             s("Device unique part number = 55 [Object: 0x6005, Value: 55 | 0x37]"));
}

QTEST_MAIN(tst_DetailTables)
#include "tst_detailtables.moc"
