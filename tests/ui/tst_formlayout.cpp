// SPDX-License-Identifier: MIT
#include "formbench.h"

#include <tests/support/markingtranslator.h>
#include <tests/support/windowtest.h>

#include <QAction>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QHeaderView>
#include <QLayout>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

namespace {

QGraphicsTextItem *titleOf(const FormBench &bench)
{
    const QList<QGraphicsItem *> items = bench.find<QGraphicsView>("graphicsView")->scene()->items();
    return items.size() == 1 ? qgraphicsitem_cast<QGraphicsTextItem *>(items.constFirst()) : nullptr;
}

/*! The animation timer is the form's only direct timer. */
QTimer *animationTimer(const FormBench &bench)
{
    const QList<QTimer *> timers = bench.form->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    return timers.size() == 1 ? timers.constFirst() : nullptr;
}

} // namespace

/*! The widgets of the window, their texts and the moving title. */
class tst_FormLayout : public WindowTest
{
    Q_OBJECT

private slots:
    void widgetTree();
    void splitters();
    void treeWidget();
    void headersOfTheTreeAreWhole();
    void tables_data();
    void tables();
    void rowsGrowWithTheFont();
    void buttons_data();
    void buttons();
    void actualValuesTabIsShownFirst();
    void stripStaysFortyPixelsWide();
    void contextActions_data();
    void contextActions();
    void languageChangeTranslatesTheWindow();
    void languageChangeTranslatesWhatIsShown();
    void titleMovesOnlyWhileConnected();
    void titleResumesItsDirection();
};

void tst_FormLayout::widgetTree()
{
    FormBench bench;
    QCOMPARE(bench.form->objectName(), QStringLiteral("OverviewForm"));
    QCOMPARE(bench.form->windowTitle(), QStringLiteral("Form"));
    QCOMPARE(bench.form->size(), QSize(753, 598));
    auto *splitter2 = bench.find<QSplitter>("splitter_2");
    auto *splitter = bench.find<QSplitter>("splitter");
    QCOMPARE(splitter2->parentWidget(), bench.form.get());
    QCOMPARE(splitter2->widget(0), bench.find<QGraphicsView>("graphicsView"));
    QCOMPARE(splitter2->widget(1), splitter);
    QCOMPARE(splitter->widget(0), bench.find<QTreeWidget>("treeWidget"));
    auto *tabs = bench.find<QTabWidget>("tabWidget");
    QCOMPARE(splitter->widget(1), tabs);
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(tabs->widget(0)->objectName(), QStringLiteral("tab"));
    QCOMPARE(tabs->widget(1)->objectName(), QStringLiteral("tab_2"));
    QCOMPARE(tabs->tabText(0), QStringLiteral("Device Parameters (fixed)"));
    QCOMPARE(tabs->tabText(1), QStringLiteral("Actual Values"));
    QCOMPARE(bench.find<QTableWidget>("tblParameters")->parentWidget(), tabs->widget(0));
    QCOMPARE(bench.find<QTableWidget>("tblValues")->parentWidget(), tabs->widget(1));
    QCOMPARE(tabs->widget(0)->layout()->objectName(), QStringLiteral("verticalLayout"));
    QCOMPARE(tabs->widget(1)->layout()->objectName(), QStringLiteral("verticalLayout_3"));
    auto *rows = qobject_cast<QVBoxLayout *>(bench.form->layout());
    QVERIFY(rows != nullptr);
    QCOMPARE(rows->objectName(), QStringLiteral("verticalLayout_2"));
    QCOMPARE(rows->stretch(0), 2);
    QCOMPARE(rows->stretch(1), 0);
    auto *buttonRow = qobject_cast<QHBoxLayout *>(rows->itemAt(1)->layout());
    QVERIFY(buttonRow != nullptr);
    QCOMPARE(buttonRow->objectName(), QStringLiteral("horizontalLayout"));
    QCOMPARE(buttonRow->sizeConstraint(), QLayout::SetDefaultConstraint);
    QStringList names;
    for (int i = 0; i < buttonRow->count(); ++i) {
        names.append(buttonRow->itemAt(i)->widget()->objectName());
        QCOMPARE(buttonRow->stretch(i), 1);
    }
    QCOMPARE(names,
             (QStringList{QStringLiteral("btnRead"), QStringLiteral("btnExport"), QStringLiteral("btnImport"),
                          QStringLiteral("btnSavePdf"), QStringLiteral("btnCheckUpdate")}));
}

void tst_FormLayout::splitters()
{
    FormBench bench;
    auto *splitter2 = bench.find<QSplitter>("splitter_2");
    auto *splitter = bench.find<QSplitter>("splitter");
    QCOMPARE(splitter2->orientation(), Qt::Horizontal);
    QCOMPARE(splitter->orientation(), Qt::Vertical);
    QCOMPARE(splitter->widget(0)->sizePolicy().verticalStretch(), 3);
    QCOMPARE(splitter->widget(1)->sizePolicy().verticalStretch(), 3);
    QCOMPARE(splitter2->widget(0)->sizePolicy().horizontalStretch(), 2);
    QCOMPARE(splitter2->widget(1)->sizePolicy().horizontalStretch(), 4);
}

void tst_FormLayout::treeWidget()
{
    FormBench bench;
    auto *tree = bench.find<QTreeWidget>("treeWidget");
    QCOMPARE(tree->columnCount(), 4);
    QCOMPARE(tree->headerItem()->text(0), QStringLiteral("Draxel Network Components"));
    QCOMPARE(tree->headerItem()->text(1), QStringLiteral("Node-Id"));
    QCOMPARE(tree->headerItem()->text(2), QStringLiteral("NMT-State"));
    QCOMPARE(tree->headerItem()->text(3), QStringLiteral("DX FSA State"));
    QVERIFY(tree->alternatingRowColors());
    QCOMPARE(tree->iconSize(), QSize(32, 32));
    QCOMPARE(tree->contextMenuPolicy(), Qt::CustomContextMenu);
}

void tst_FormLayout::headersOfTheTreeAreWhole()
{
    FormBench bench;
    const auto *header = bench.find<QTreeWidget>("treeWidget")->header();
    const auto *tree = bench.find<QTreeWidget>("treeWidget");
    for (int column = 0; column < 3; ++column) {
        const int needed = header->fontMetrics().horizontalAdvance(tree->headerItem()->text(column));
        QVERIFY2(header->sectionSize(column) > needed, qPrintable(QString::number(column)));
    }
}

void tst_FormLayout::tables_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("cascades");
    QTest::newRow("parameters") << QByteArray("tblParameters") << true;
    QTest::newRow("values") << QByteArray("tblValues") << false;
}

void tst_FormLayout::tables()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, cascades);
    FormBench bench;
    auto *table = bench.find<QTableWidget>(name.constData());
    QCOMPARE(table->columnCount(), 2);
    QCOMPARE(table->rowCount(), 0);
    QCOMPARE(table->horizontalHeaderItem(0)->text(), QStringLiteral("Property"));
    QCOMPARE(table->horizontalHeaderItem(1)->text(), QStringLiteral("Value"));
    QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(table->alternatingRowColors());
    QCOMPARE(table->horizontalHeader()->cascadingSectionResizes(), cascades);
    QCOMPARE(table->horizontalHeader()->minimumSectionSize(), 150);
    QCOMPARE(table->horizontalHeader()->defaultSectionSize(), 400);
    QVERIFY(table->horizontalHeader()->stretchLastSection());
    QVERIFY(table->verticalHeader()->isHidden());
    QCOMPARE(table->verticalHeader()->minimumSectionSize(), 16);
    QCOMPARE(table->verticalHeader()->defaultSectionSize(), 22);
    QVERIFY(!table->verticalHeader()->stretchLastSection());
}

void tst_FormLayout::rowsGrowWithTheFont()
{
    FormBench bench;
    const auto *table = bench.find<QTableWidget>("tblValues");
    QCOMPARE(table->verticalHeader()->defaultSectionSize(), 22);
    QFont font = bench.form->font();
    font.setPixelSize(40);
    bench.form->setFont(font);
    QVERIFY(table->verticalHeader()->defaultSectionSize() >= 40);
    font.setPixelSize(10);
    bench.form->setFont(font);
    QCOMPARE(table->verticalHeader()->defaultSectionSize(), 22);
}

void tst_FormLayout::buttons_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");
    const QString report = QStringLiteral("Generate and save a PDF Report of all  data from all devices");
    QTest::newRow("read") << QByteArray("btnRead") << QStringLiteral("Read all data")
                          << QStringLiteral("Scan for devices and read all data from the components");
    QTest::newRow("export") << QByteArray("btnExport") << QStringLiteral("Export ")
                            << QStringLiteral("Export all data as XML file to later use.");
    QTest::newRow("import") << QByteArray("btnImport") << QStringLiteral("Import")
                            << QStringLiteral("Import exported data");
    QTest::newRow("report") << QByteArray("btnSavePdf") << QStringLiteral("Save PDF Report") << report;
    QTest::newRow("update has the report's tool tip")
        << QByteArray("btnCheckUpdate") << QStringLiteral("Check for Component update") << report;
}

void tst_FormLayout::buttons()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    FormBench bench;
    QCOMPARE(bench.find<QPushButton>(name.constData())->text(), text);
    QCOMPARE(bench.find<QPushButton>(name.constData())->toolTip(), toolTip);
    QVERIFY(bench.find<QPushButton>(name.constData())->isEnabled());
}

void tst_FormLayout::actualValuesTabIsShownFirst()
{
    FormBench bench;
    bench.form->show();
    QCOMPARE(bench.find<QTabWidget>("tabWidget")->currentIndex(), 1);
    QVERIFY(bench.find<QTableWidget>("tblValues")->isVisible());
}

void tst_FormLayout::stripStaysFortyPixelsWide()
{
    FormBench bench;
    bench.form->show();
    auto *view = bench.find<QGraphicsView>("graphicsView");
    auto *splitter = bench.find<QSplitter>("splitter_2");
    splitter->setCollapsible(0, false);
    for (const int width : {0, 40, 300, 700}) {
        splitter->setSizes({width, 753 - width});
        QCOMPARE(view->width(), 40);
    }
    bench.form->resize(1500, 900);
    QCOMPARE(view->width(), 40);
    QCOMPARE(view->minimumSize(), QSize(40, 0));
    QCOMPARE(view->maximumSize(), QSize(40, 16777215));
    QCOMPARE(view->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(view->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QVERIFY(view->scene() != nullptr);
    QCOMPARE(view->scene()->parent(), bench.form.get());
}

void tst_FormLayout::contextActions_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("statusTip");
    QTest::newRow("device type") << 0 << QStringLiteral("Device Type")
                                 << QStringLiteral("Shows device type information");
    QTest::newRow("error register") << 1 << QStringLiteral("Error register")
                                    << QStringLiteral("Shows detailed error information");
    QTest::newRow("error field") << 2 << QStringLiteral("Error field")
                                 << QStringLiteral("Shows last occured errors");
    QTest::newRow("specification") << 3 << QStringLiteral("Implemented specification versions")
                                   << QStringLiteral("Shows the implemented specifications");
    QTest::newRow("security") << 4 << QStringLiteral("Security Status")
                              << QStringLiteral("Shows implemented security status");
}

void tst_FormLayout::contextActions()
{
    QFETCH(int, position);
    QFETCH(QString, text);
    QFETCH(QString, statusTip);
    FormBench bench;
    const QList<QAction *> actions
        = bench.form->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(actions.size(), 5);
    QCOMPARE(actions.at(position)->text(), text);
    QCOMPARE(actions.at(position)->statusTip(), statusTip);
}

void tst_FormLayout::languageChangeTranslatesTheWindow()
{
    FormBench bench;
    auto translator = std::make_unique<MarkingTranslator>("OverviewForm");
    QTRY_COMPARE(bench.find<QPushButton>("btnExport")->text(), QStringLiteral("[OverviewForm:Export ]"));
    auto *tree = bench.find<QTreeWidget>("treeWidget");
    QCOMPARE(tree->headerItem()->text(0), QStringLiteral("Draxel Network Components")); // not translated
    QCOMPARE(tree->headerItem()->text(1), QStringLiteral("[OverviewForm:Node-Id]"));
    QCOMPARE(bench.form->windowTitle(), QStringLiteral("[OverviewForm:Form]"));
    QCOMPARE(bench.find<QTabWidget>("tabWidget")->tabText(1), QStringLiteral("[OverviewForm:Actual Values]"));
    QCOMPARE(bench.form->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly).at(2)->statusTip(),
             QStringLiteral("[OverviewForm:Shows last occured errors]"));
    translator.reset();
    QTRY_COMPARE(bench.find<QPushButton>("btnExport")->text(), QStringLiteral("Export "));
}

void tst_FormLayout::languageChangeTranslatesWhatIsShown()
{
    FormBench bench;
    bench.host.sdoClient.setValue(1, 0x6002, 1, 0u);
    bench.form->setConnected(true);
    bench.read({1, 5});
    auto *tree = bench.find<QTreeWidget>("treeWidget");
    tree->setCurrentItem(tree->topLevelItem(0));
    const auto *values = bench.find<QTableWidget>("tblValues");
    bench.form->newNmtState(5, NmtSender::Stopped);
    QCOMPARE(values->findItems(QStringLiteral("Draxel FSA state"), Qt::MatchExactly).size(), 1);

    auto translator = std::make_unique<MarkingTranslator>();
    QTRY_COMPARE(bench.components(), (QStringList{QStringLiteral("[OverviewForm:Draxel Controller]"),
                                                  QStringLiteral("[OverviewForm:Battery Pack]")}));
    QCOMPARE(tree->topLevelItem(1)->text(2), QStringLiteral("[OverviewForm:Stopped]"));
    QCOMPARE(tree->currentItem(), tree->topLevelItem(0));
    QCOMPARE(values->findItems(QStringLiteral("[OverviewForm:Draxel FSA state]"), Qt::MatchExactly).size(),
             1);
    translator.reset();
    QTRY_COMPARE(bench.components(),
                 (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
    QCOMPARE(values->findItems(QStringLiteral("Draxel FSA state"), Qt::MatchExactly).size(), 1);
}

void tst_FormLayout::titleMovesOnlyWhileConnected()
{
    FormBench bench;
    QVERIFY(animationTimer(bench) != nullptr);
    QCOMPARE(animationTimer(bench)->interval(), 30);
    QVERIFY(animationTimer(bench)->isActive());
    animationTimer(bench)->stop();
    bench.form->animate();
    QCOMPARE(titleOf(bench)->pos(), QPointF(0, 0));
    bench.form->setConnected(true);
    QVERIFY(QMetaObject::invokeMethod(animationTimer(bench), "timeout")); // connected to the slot
    QCOMPARE(titleOf(bench)->pos(), QPointF(0, 3));
}

void tst_FormLayout::titleResumesItsDirection()
{
    FormBench bench;
    bench.form->show();
    animationTimer(bench)->stop();
    bench.form->setConnected(true);
    double y = 0;
    do {
        y = titleOf(bench)->y();
        bench.form->animate();
    } while (titleOf(bench)->y() > y && y < 10000);
    y = titleOf(bench)->y();
    bench.form->setConnected(false);
    bench.form->animate();
    QCOMPARE(titleOf(bench)->y(), y);
    bench.form->setConnected(true);
    bench.form->animate();
    QCOMPARE(titleOf(bench)->y(), y - 3);
}

QTEST_MAIN(tst_FormLayout)
#include "tst_formlayout.moc"
