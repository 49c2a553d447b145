// SPDX-License-Identifier: MIT
#include <tests/support/markingtranslator.h>
#include <tests/support/storebuilder.h>
#include <tests/support/windowtest.h>

#include <ui/componenttree.h>

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QtTest>

namespace {

/*! A tree with four columns, as the window has it, and a reader. */
struct Bench
{
    Bench() { tree.setColumnCount(4); }

    void build()
    {
        ComponentTree componentTree(tree);
        componentTree.clear();
        componentTree.addNodes(reader);
    }

    /*! One node with virtual devices of these classes. */
    void buildNode(quint8 nodeId, const QList<quint32> &classes)
    {
        StoreBuilder store(reader, {nodeId});
        store.node(nodeId).set(0x6000, 0, static_cast<uint>(classes.size()));
        for (int i = 0; i < classes.size(); ++i)
            store.set(0x6000, static_cast<quint8>(i + 1), classes.at(i));
        build();
    }

    QStringList column(int number) const
    {
        QStringList texts;
        for (int i = 0; i < tree.topLevelItemCount(); ++i)
            texts.append(tree.topLevelItem(i)->text(number));
        return texts;
    }

    DataReader reader;
    QTreeWidget tree;
};

QByteArray pixels(const QIcon &icon)
{
    const QImage image = icon.pixmap(32, 32).toImage().convertToFormat(QImage::Format_ARGB32);
    return QByteArray(reinterpret_cast<const char *>(image.constBits()),
                      static_cast<int>(image.sizeInBytes()));
}

} // namespace

class tst_ComponentTree : public WindowTest
{
    Q_OBJECT

private slots:
    void componentClass_data();
    void componentClass();
    void controllerOnNode127IsAChargerToo();
    void otherClassesGiveNoRow_data();
    void otherClassesGiveNoRow();
    void rowHoldsItsNode();
    void onlyLowByteIsTheClass();
    void oneRowForEachVirtualDevice();
    void nodesStandInListOrder();
    void lastRowBecomesCurrent();
    void countOf200IsScannedTo127();
    void countIsCutToItsLowByte();
    void nodesWithoutVirtualDevicesGiveNoRow();
    void missingSubIndicesAreSkipped();
    void deviceStateIsShownInEveryRow();
    void deviceState_data();
    void deviceState();
    void nodeWithoutStatusHasAnEmptyState();
    void rebuildStartsFromAnEmptyTree();
    void writesDebugLines();
    void listOfOneNodeManyTimesEnds();
    void nmtStateReachesTheFirstRowOnly();
    void retranslationKeepsRowAndNmtState();
    void retranslationNeedsTheSameNodes();
    void statesAreShownWholeInALargeFont();
    void firstColumnFitsItsContents();
    void largeTreeIsNotLaidOutRowByRow();
    void nmtStateOfAnUnknownNodeChangesNothing();
    void unknownNmtStateClearsTheText();
};

void tst_ComponentTree::componentClass_data()
{
    QTest::addColumn<uint>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("icon");

    QTest::newRow("4") << 4u << QStringLiteral("Draxel Controller") << QStringLiteral(":/img/icon/dxc32.png");
    QTest::newRow("5") << 5u << QStringLiteral("Voltage Converter/Charger")
                       << QStringLiteral(":/img/icon/charger32.png");
    QTest::newRow("6") << 6u << QStringLiteral("Battery Pack") << QStringLiteral(":/img/icon/battery32.png");
    QTest::newRow("7") << 7u << QStringLiteral("Motor Control unit")
                       << QStringLiteral(":/img/icon/motor32.png");
    QTest::newRow("8") << 8u << QStringLiteral("Load monitoring unit")
                       << QStringLiteral(":/img/icon/lmd_32.png");
    QTest::newRow("9") << 9u << QStringLiteral("HMI control unit/display")
                       << QStringLiteral(":/img/icon/display32.png");
    QTest::newRow("10") << 10u << QStringLiteral("Security unit") << QStringLiteral(":/img/icon/lock_32.png");
    QTest::newRow("11") << 11u << QStringLiteral("Sensor unit") << QString();
    QTest::newRow("12") << 12u << QStringLiteral("Gateway unit") << QString();
    QTest::newRow("13") << 13u << QStringLiteral("Generator unit") << QString();
    QTest::newRow("14") << 14u << QStringLiteral("Load unit") << QString();
    QTest::newRow("80") << 80u << QStringLiteral("manufacturer-specific device") << QString();
}

void tst_ComponentTree::componentClass()
{
    QFETCH(uint, code);
    QFETCH(QString, name);
    QFETCH(QString, icon);
    Bench bench;
    bench.buildNode(16, {code});
    QCOMPARE(bench.column(0), QStringList{name});
    const QIcon shown = bench.tree.topLevelItem(0)->icon(0);
    QCOMPARE(shown.isNull(), icon.isEmpty());
    if (!icon.isEmpty()) {
        QVERIFY2(QFile::exists(icon), qPrintable(icon));
        QCOMPARE(pixels(shown), pixels(QIcon(icon)));
    }
}

void tst_ComponentTree::controllerOnNode127IsAChargerToo()
{
    Bench bench;
    bench.buildNode(127, {4});
    QCOMPARE(bench.column(0), QStringList{QStringLiteral("Draxel Controller/Charger")});
    bench.buildNode(126, {4});
    QCOMPARE(bench.column(0), QStringList{QStringLiteral("Draxel Controller")});
}

void tst_ComponentTree::otherClassesGiveNoRow_data()
{
    QTest::addColumn<uint>("code");
    for (const uint code : {0u, 1u, 3u, 15u, 79u, 81u, 255u})
        QTest::newRow(qPrintable(QString::number(code))) << code;
}

void tst_ComponentTree::otherClassesGiveNoRow()
{
    QFETCH(uint, code);
    Bench bench;
    bench.buildNode(16, {code, 6});
    QCOMPARE(bench.column(0), QStringList{QStringLiteral("Battery Pack")});
}

void tst_ComponentTree::rowHoldsItsNode()
{
    Bench bench;
    bench.buildNode(16, {6});
    const QTreeWidgetItem *row = bench.tree.topLevelItem(0);
    QCOMPARE(row->data(0, Qt::UserRole), QVariant(16));
    QCOMPARE(row->data(0, Qt::UserRole).userType(), static_cast<int>(QMetaType::Int));
    QCOMPARE(ComponentTree::nodeId(*row), quint8(16));
    QCOMPARE(row->text(1), QStringLiteral("16"));
    QCOMPARE(row->text(2), QString());
    QTreeWidgetItem other;
    other.setData(0, Qt::UserRole, 0x105);
    QCOMPARE(ComponentTree::nodeId(other), quint8(5));
}

void tst_ComponentTree::onlyLowByteIsTheClass()
{
    Bench bench;
    bench.buildNode(16, {0xFFFFFF06u});
    QCOMPARE(bench.column(0), QStringList{QStringLiteral("Battery Pack")});
}

void tst_ComponentTree::oneRowForEachVirtualDevice()
{
    Bench bench;
    bench.buildNode(16, {6, 6, 10});
    QCOMPARE(bench.column(0), (QStringList{QStringLiteral("Battery Pack"), QStringLiteral("Battery Pack"),
                                           QStringLiteral("Security unit")}));
    QCOMPARE(bench.column(1),
             (QStringList{QStringLiteral("16"), QStringLiteral("16"), QStringLiteral("16")}));
}

void tst_ComponentTree::nodesStandInListOrder()
{
    Bench bench;
    StoreBuilder store(bench.reader, {1, 5, 127});
    for (const quint8 nodeId : QList<quint8>{127, 5, 1})
        store.node(nodeId).set(0x6000, 0, 1u).set(0x6000, 1, 11u);
    bench.build();
    QCOMPARE(bench.column(1), (QStringList{QStringLiteral("1"), QStringLiteral("5"), QStringLiteral("127")}));
}

void tst_ComponentTree::lastRowBecomesCurrent()
{
    Bench bench;
    bench.buildNode(16, {6, 10, 3});
    QCOMPARE(bench.tree.currentItem(), bench.tree.topLevelItem(1));
}

void tst_ComponentTree::countOf200IsScannedTo127()
{
    Bench bench;
    StoreBuilder(bench.reader, {16}).node(16).set(0x6000, 0, 200u).set(0x6000, 127, 6u).set(0x6000, 128, 7u);
    bench.build();
    QCOMPARE(bench.column(0), QStringList{QStringLiteral("Battery Pack")});
}

void tst_ComponentTree::countIsCutToItsLowByte()
{
    Bench bench;
    StoreBuilder(bench.reader, {16}).node(16).set(0x6000, 0, 0x101u).set(0x6000, 1, 6u).set(0x6000, 2, 7u);
    bench.build();
    QCOMPARE(bench.column(0), QStringList{QStringLiteral("Battery Pack")});
}

void tst_ComponentTree::nodesWithoutVirtualDevicesGiveNoRow()
{
    Bench bench;
    StoreBuilder(bench.reader, {1, 2, 200})
        .node(1)
        .set(0x6000, 1, 6u)
        .node(2)
        .set(0x6000, 0, 0u)
        .set(0x6000, 1, 6u);
    bench.build();
    QCOMPARE(bench.tree.topLevelItemCount(), 0);
}

void tst_ComponentTree::missingSubIndicesAreSkipped()
{
    Bench bench;
    StoreBuilder(bench.reader, {16}).node(16).set(0x6000, 0, 3u).set(0x6000, 1, 6u).set(0x6000, 3, 7u);
    bench.build();
    QCOMPARE(bench.column(0),
             (QStringList{QStringLiteral("Battery Pack"), QStringLiteral("Motor Control unit")}));
}

void tst_ComponentTree::deviceStateIsShownInEveryRow()
{
    Bench bench;
    StoreBuilder(bench.reader, {16})
        .node(16)
        .set(0x6000, 0, 2u)
        .set(0x6000, 1, 6u)
        .set(0x6000, 2, 7u)
        .set(0x6002, 1, 0x20u)
        .set(0x6002, 2, 0x00u);
    bench.build();
    const QString state = bench.column(3).constFirst();
    QVERIFY(!state.isEmpty());
    QCOMPARE(bench.column(3), (QStringList{state, state}));
    for (int i = 0; i < 2; ++i)
        QCOMPARE(bench.tree.topLevelItem(i)->toolTip(3), QStringLiteral("Object: 0x6002, Value: 32 | 0x20"));
    QCOMPARE(bench.tree.topLevelItem(0)->toolTip(0), QString());
}

void tst_ComponentTree::deviceState_data()
{
    QTest::addColumn<uint>("status");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0x003Fu << QStringLiteral("Disconnected");
    QTest::newRow("1") << 0x2000u << QStringLiteral("Connected");
    QTest::newRow("2") << 0x4000u << QStringLiteral("Compatibility Check");
    QTest::newRow("3") << 0x6000u << QStringLiteral("Limiting");
    QTest::newRow("4") << 0x8000u << QStringLiteral("Operating");
    QTest::newRow("5") << 0xA000u << QStringLiteral("Masterless");
    QTest::newRow("6") << 0xC000u << QStringLiteral("Sleep Mode");
}

void tst_ComponentTree::deviceState()
{
    QFETCH(uint, status);
    QFETCH(QString, text);
    Bench bench;
    StoreBuilder(bench.reader, {16}).node(16).set(0x6000, 0, 1u).set(0x6000, 1, 6u).set(0x6002, 1, status);
    bench.build();
    QCOMPARE(bench.column(3), QStringList{text});
}

void tst_ComponentTree::nodeWithoutStatusHasAnEmptyState()
{
    Bench bench;
    bench.buildNode(16, {6});
    QCOMPARE(bench.tree.topLevelItem(0)->text(3), QString());
    QCOMPARE(bench.tree.topLevelItem(0)->toolTip(3), QString());
}

void tst_ComponentTree::rebuildStartsFromAnEmptyTree()
{
    Bench bench;
    bench.buildNode(16, {6, 7});
    bench.buildNode(17, {9});
    QCOMPARE(bench.column(1), QStringList{QStringLiteral("17")});
}

void tst_ComponentTree::writesDebugLines()
{
    Bench bench;
    StoreBuilder(bench.reader, {1, 5}).node(5).set(0x6000, 0, 1u).set(0x6000, 1, 6u);
    bench.build();
    QCOMPARE(log().debugLines(),
             (QStringList{QStringLiteral("(1, 5)"), QStringLiteral("Handling of node 1"),
                          QStringLiteral("sub0 value =  0"), QStringLiteral("Handling of node 5"),
                          QStringLiteral("sub0 value =  1")}));
}

void tst_ComponentTree::listOfOneNodeManyTimesEnds()
{
    Bench bench;
    QList<quint8> nodeIds;
    for (int i = 0; i < 1000; ++i)
        nodeIds.append(5);
    StoreBuilder store(bench.reader, nodeIds);
    store.node(5).set(0x6000, 0, 127u);
    for (quint8 s = 1; s <= 127; ++s)
        store.set(0x6000, s, 6u);
    bench.build();
    QCOMPARE(bench.tree.topLevelItemCount(), 127 * 127);
    QCOMPARE(log().debugLines().filter(QStringLiteral("The tree ends at 16129 rows")).size(), 1);
}

void tst_ComponentTree::nmtStateReachesTheFirstRowOnly()
{
    Bench bench;
    bench.buildNode(16, {6, 7});
    ComponentTree(bench.tree).showNmtState(16, NmtSender::Operational);
    QCOMPARE(bench.column(2), (QStringList{QStringLiteral("Operational"), QString()}));
}

void tst_ComponentTree::nmtStateOfAnUnknownNodeChangesNothing()
{
    Bench bench;
    ComponentTree(bench.tree).showNmtState(16, NmtSender::Operational);
    QCOMPARE(bench.tree.topLevelItemCount(), 0);
    bench.buildNode(16, {6});
    ComponentTree(bench.tree).showNmtState(17, NmtSender::Operational);
    QCOMPARE(bench.column(2), QStringList{QString()});
}

void tst_ComponentTree::unknownNmtStateClearsTheText()
{
    Bench bench;
    bench.buildNode(16, {6});
    ComponentTree(bench.tree).showNmtState(16, NmtSender::Stopped);
    QCOMPARE(bench.column(2), QStringList{QStringLiteral("Stopped")});
    ComponentTree(bench.tree).showNmtState(16, static_cast<NmtSender::NmtState>(5));
    QCOMPARE(bench.column(2), QStringList{QString()});
}

void tst_ComponentTree::retranslationKeepsRowAndNmtState()
{
    Bench bench;
    StoreBuilder store(bench.reader, {16, 17});
    store.node(16).set(0x6000, 0, 1u).set(0x6000, 1, 6u).set(0x6002, 1, 0u);
    store.node(17).set(0x6000, 0, 1u).set(0x6000, 1, 7u);
    bench.build();
    ComponentTree(bench.tree).showNmtState(16, NmtSender::Operational);
    bench.tree.setCurrentItem(bench.tree.topLevelItem(0));

    auto translator = std::make_unique<MarkingTranslator>();
    ComponentTree(bench.tree).retranslate(bench.reader);
    translator.reset();
    QCOMPARE(bench.column(0), (QStringList{QStringLiteral("[OverviewForm:Battery Pack]"),
                                           QStringLiteral("[OverviewForm:Motor Control unit]")}));
    QCOMPARE(bench.column(2), (QStringList{QStringLiteral("[OverviewForm:Operational]"), QString()}));
    QCOMPARE(bench.tree.currentItem(), bench.tree.topLevelItem(0));
}

void tst_ComponentTree::retranslationNeedsTheSameNodes()
{
    Bench bench;
    bench.buildNode(16, {6});
    StoreBuilder(bench.reader, {17}).node(17).set(0x6000, 0, 1u).set(0x6000, 1, 7u);
    ComponentTree(bench.tree).retranslate(bench.reader);
    QCOMPARE(bench.column(0), QStringList{QStringLiteral("Battery Pack")});
}

void tst_ComponentTree::statesAreShownWholeInALargeFont()
{
    Bench bench;
    QFont font = bench.tree.font();
    font.setPointSize(30);
    bench.tree.setFont(font);
    bench.buildNode(16, {6});
    ComponentTree(bench.tree).showNmtState(16, NmtSender::Operational);
    const int needed = QFontMetrics(font).horizontalAdvance(QStringLiteral("Operational"));
    QVERIFY2(bench.tree.columnWidth(2) >= needed, qPrintable(QString::number(bench.tree.columnWidth(2))));
}

void tst_ComponentTree::firstColumnFitsItsContents()
{
    Bench bench;
    bench.tree.header()->setStretchLastSection(false);
    bench.tree.show();
    for (const QList<quint32> &classes :
         {QList<quint32>{14, 5, 9, 14}, QList<quint32>{14, 11}, QList<quint32>{80, 4}, QList<quint32>{}}) {
        bench.buildNode(16, classes);
        const int width = bench.tree.columnWidth(0);
        bench.tree.resizeColumnToContents(0);
        QCOMPARE(width, bench.tree.columnWidth(0));
    }
}

void tst_ComponentTree::largeTreeIsNotLaidOutRowByRow()
{
    /*! Counts how often a row is measured. */
    class CountingDelegate : public QStyledItemDelegate
    {
    public:
        using QStyledItemDelegate::QStyledItemDelegate;
        QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
        {
            ++count;
            return QStyledItemDelegate::sizeHint(option, index);
        }
        mutable int count = 0;
    };
    Bench bench;
    auto *delegate = new CountingDelegate(&bench.tree);
    bench.tree.setItemDelegate(delegate);
    bench.tree.resize(400, 200);
    bench.tree.show();
    bench.buildNode(16, QVector<quint32>(127, 6).toList());
    QCOMPARE(bench.tree.topLevelItemCount(), 127);
    QVERIFY2(delegate->count < 127, qPrintable(QString::number(delegate->count)));
    QCOMPARE(bench.tree.currentItem(), bench.tree.topLevelItem(126));
    QVERIFY(
        bench.tree.viewport()->rect().contains(bench.tree.visualItemRect(bench.tree.currentItem()).center()));
}

QTEST_MAIN(tst_ComponentTree)
#include "tst_componenttree.moc"
