// SPDX-License-Identifier: MIT
#include <tests/support/fakehost.h>
#include <tests/support/filedialogdriver.h>
#include <tests/support/logwatcher.h>
#include <tests/support/messageboxwatcher.h>
#include <tests/support/storebuilder.h>

#include <reader/datareader.h>
#include <ui/overviewform.h>

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QHeaderView>
#include <QLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>
#include <QTreeWidget>
#include <QUrl>
#include <QtTest>

namespace {

/*! Translates every text of the window's context. */
class BracketTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override
    {
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        return qstrcmp(context, "OverviewForm") == 0
                   ? QLatin1Char('[') + QString::fromLatin1(sourceText) + QLatin1Char(']')
                   : QString();
    }
    bool isEmpty() const override { return false; }
};

/*! Finds the window's reader, which has no parent, by the detection timer that it makes. */
class ReaderFinder : public QObject
{
public:
    ReaderFinder() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (reader.isNull())
            reader = qobject_cast<DataReader *>(object);
        return QObject::eventFilter(object, event);
    }

    QPointer<DataReader> reader;
};

/*! Takes what would be opened by the system's viewer: URLs without a scheme. */
class Viewer : public QObject
{
    Q_OBJECT

public:
    Viewer() { QDesktopServices::setUrlHandler(QString(), this, "open"); }
    ~Viewer() override { QDesktopServices::unsetUrlHandler(QString()); }

    QList<QUrl> urls;

public slots:
    void open(const QUrl &url) { urls.append(url); }
};

/*! An empty home directory, and the viewer that is asked to open what comes to be in it. */
class ReportHome
{
public:
    ReportHome() { qputenv("HOME", QFile::encodeName(m_folder.path())); }
    ~ReportHome() { qputenv("HOME", m_oldHome); }
    Q_DISABLE_COPY(ReportHome)

    QString path(const char *name) const { return m_folder.path() + QLatin1Char('/') + QLatin1String(name); }
    QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files, QDir::Name); }
    QString read(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
    }

    Viewer viewer;

private:
    QByteArray m_oldHome = qgetenv("HOME");
    QTemporaryDir m_folder;
};

/*! A window with a host, as the plug-in makes it. */
struct Bench
{
    Bench()
    {
        form->setHostInterface(&host);
        host.sdoClient.setValue(1, 0x6000, 0, 1u);
        host.sdoClient.setValue(1, 0x6000, 1, 4u);
        host.sdoClient.setValue(5, 0x6000, 0, 1u);
        host.sdoClient.setValue(5, 0x6000, 1, 6u);
    }

    ~Bench()
    {
        form.reset();
        delete finder.reader; // outlives the window, but must not outlive the host
    }

    template<typename Widget>
    Widget *find(const char *name) const
    {
        auto *widget = form->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            qFatal("The window has no %s", name);
        return widget;
    }

    void press(const char *name) const { find<QPushButton>(name)->click(); }

    QStringList components() const
    {
        const auto *tree = find<QTreeWidget>("treeWidget");
        QStringList names;
        for (int i = 0; i < tree->topLevelItemCount(); ++i)
            names.append(tree->topLevelItem(i)->text(0));
        return names;
    }

    /*! Lets nodes be heard and the detection end at once, as soon as the run has begun. */
    void answerRun(const QList<quint8> &nodeIds)
    {
        QTimer::singleShot(0, &finder, [this, nodeIds] {
            for (const quint8 nodeId : nodeIds)
                host.hub.heartbeat(nodeId);
            finder.reader->findChild<QTimer *>()->setInterval(0);
        });
    }

    void read(const QList<quint8> &nodeIds)
    {
        answerRun(nodeIds);
        press("btnRead");
    }

    ReaderFinder finder;
    FakeHost host;
    std::unique_ptr<OverviewForm> form = std::make_unique<OverviewForm>(nullptr);
};

QByteArray fileContent(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void writeFile(const QString &name, const QByteArray &content)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

const QByteArray vehicle("<dxtoolstorage><nodes><node nodeid=\"5\">"
                         "<object index=\"0x6000\" sub=\"0x00\" value=\"1\" />"
                         "<object index=\"0x6000\" sub=\"0x01\" value=\"6\" />"
                         "</node></nodes></dxtoolstorage>\n");

} // namespace

class tst_OverviewForm : public QObject
{
    Q_OBJECT

private slots:
    void widgetTree();
    void splitters();
    void treeWidget();
    void tables_data();
    void tables();
    void buttons_data();
    void buttons();
    void actualValuesTabIsShownFirst();
    void stripStaysFortyPixelsWide();
    void contextActions_data();
    void contextActions();
    void languageChangeTranslatesTheWindow();
    void titleMovesOnlyWhileConnected();
    void titleResumesItsDirection();
    void connectionHandsOverTheBusObjects();
    void connectionWithoutASecondClient();
    void connectionWithoutAHost();
    void readWithoutConnectionWarns();
    void readFillsTheTree();
    void readWithoutNodeOneEmptiesTheTree();
    void readShowsTheWaitCursor();
    void timeoutShowsWhatWasRead();
    void secondPressWaitsForTheSameRun();
    void quitDuringAReadDoesNotStopIt();
    void windowDestroyedDuringARead();
    void disconnectionDuringARead();
    void nmtStateReachesTheTree();
    void exportWritesAFile();
    void exportCancelledOrFailedIsSilent();
    void exportThatFailsKeepsTheOldFile();
    void importRebuildsTheTree();
    void importCancelledRebuildsTheTree();
    void importOfNoXmlEmptiesTheTree();
    void importOfAMissingFileKeepsTheData();
    void updateWithoutAComponentSays();
    void updateInformationIsShownAsItIs();
    void longUpdateInformation_data();
    void longUpdateInformation();
    void reportWithoutNodesSays();
    void reportIsWrittenAndOpened();
    void reportIsWrittenAnew();
    void reportThatCannotBeWrittenIsSilent();
    void incompleteReportSays();
    void readerOutlivesTheWindow();
};

void tst_OverviewForm::widgetTree()
{
    LogWatcher log;
    Bench bench;
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
    QCOMPARE(log.warnings(), QStringList());
}

void tst_OverviewForm::splitters()
{
    Bench bench;
    auto *splitter2 = bench.find<QSplitter>("splitter_2");
    auto *splitter = bench.find<QSplitter>("splitter");
    QCOMPARE(splitter2->orientation(), Qt::Horizontal);
    QCOMPARE(splitter->orientation(), Qt::Vertical);
    QCOMPARE(splitter->widget(0)->sizePolicy().verticalStretch(), 3);
    QCOMPARE(splitter->widget(1)->sizePolicy().verticalStretch(), 3);
    QCOMPARE(splitter2->widget(0)->sizePolicy().horizontalStretch(), 2);
    QCOMPARE(splitter2->widget(1)->sizePolicy().horizontalStretch(), 4);
}

void tst_OverviewForm::treeWidget()
{
    Bench bench;
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

void tst_OverviewForm::tables_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("cascades");
    QTest::newRow("parameters") << QByteArray("tblParameters") << true;
    QTest::newRow("values") << QByteArray("tblValues") << false;
}

void tst_OverviewForm::tables()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, cascades);
    Bench bench;
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

void tst_OverviewForm::buttons_data()
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

void tst_OverviewForm::buttons()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    Bench bench;
    QCOMPARE(bench.find<QPushButton>(name.constData())->text(), text);
    QCOMPARE(bench.find<QPushButton>(name.constData())->toolTip(), toolTip);
    QVERIFY(bench.find<QPushButton>(name.constData())->isEnabled());
}

void tst_OverviewForm::actualValuesTabIsShownFirst()
{
    Bench bench;
    bench.form->show();
    QCOMPARE(bench.find<QTabWidget>("tabWidget")->currentIndex(), 1);
    QVERIFY(bench.find<QTableWidget>("tblValues")->isVisible());
}

void tst_OverviewForm::stripStaysFortyPixelsWide()
{
    Bench bench;
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

void tst_OverviewForm::contextActions_data()
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

void tst_OverviewForm::contextActions()
{
    QFETCH(int, position);
    QFETCH(QString, text);
    QFETCH(QString, statusTip);
    Bench bench;
    const QList<QAction *> actions
        = bench.form->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(actions.size(), 5);
    QCOMPARE(actions.at(position)->text(), text);
    QCOMPARE(actions.at(position)->statusTip(), statusTip);
}

void tst_OverviewForm::languageChangeTranslatesTheWindow()
{
    Bench bench;
    BracketTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QTRY_COMPARE(bench.find<QPushButton>("btnExport")->text(), QStringLiteral("[Export ]"));
    auto *tree = bench.find<QTreeWidget>("treeWidget");
    QCOMPARE(tree->headerItem()->text(0), QStringLiteral("Draxel Network Components")); // not translated
    QCOMPARE(tree->headerItem()->text(1), QStringLiteral("[Node-Id]"));
    QCOMPARE(bench.form->windowTitle(), QStringLiteral("[Form]"));
    QCOMPARE(bench.find<QTabWidget>("tabWidget")->tabText(1), QStringLiteral("[Actual Values]"));
    QCOMPARE(bench.form->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly).at(2)->statusTip(),
             QStringLiteral("[Shows last occured errors]"));
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QTRY_COMPARE(bench.find<QPushButton>("btnExport")->text(), QStringLiteral("Export "));
}

namespace {

QGraphicsTextItem *titleOf(const Bench &bench)
{
    const QList<QGraphicsItem *> items = bench.find<QGraphicsView>("graphicsView")->scene()->items();
    return items.size() == 1 ? qgraphicsitem_cast<QGraphicsTextItem *>(items.constFirst()) : nullptr;
}

/*! The animation timer is the form's only direct timer. */
QTimer *animationTimer(const Bench &bench)
{
    const QList<QTimer *> timers = bench.form->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    return timers.size() == 1 ? timers.constFirst() : nullptr;
}

} // namespace

void tst_OverviewForm::titleMovesOnlyWhileConnected()
{
    Bench bench;
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

void tst_OverviewForm::titleResumesItsDirection()
{
    Bench bench;
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

void tst_OverviewForm::connectionHandsOverTheBusObjects()
{
    LogWatcher log;
    Bench bench;
    QVERIFY(bench.form->setConnected(true));
    QVERIFY(bench.form->setConnected(true));
    bench.read({1});
    // One answer for each request, although the host connected twice.
    QCOMPARE(bench.host.sdoClient.requests().size(), 204);
    QVERIFY(!bench.form->setConnected(false));
    QCOMPARE(log.warnings(), QStringList());
}

void tst_OverviewForm::connectionWithoutASecondClient()
{
    Bench bench;
    bench.host.hasSecondarySdoClient = false;
    QVERIFY(!bench.form->setConnected(true));
    bench.read({1});
    QCOMPARE(bench.host.sdoClient.requests().size(), 204);
}

void tst_OverviewForm::connectionWithoutAHost()
{
    OverviewForm form;
    QVERIFY(!form.setConnected(true));
    QVERIFY(!form.setConnected(false));
}

void tst_OverviewForm::readWithoutConnectionWarns()
{
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    bench.form->setConnected(false);
    auto *table = bench.find<QTableWidget>("tblValues");
    table->setRowCount(1);
    table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("as before")));
    const int requests = bench.host.sdoClient.requests().size();

    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    MessageBoxWatcher watcher;
    bench.press("btnRead");
    QCOMPARE(watcher.texts(),
             QStringList{QStringLiteral("No connection to Draxel. Please connect to Draxel and retry.")});
    QCOMPARE(watcher.boxes().constFirst().title, QStringLiteral("the application"));
    QVERIFY(!watcher.boxes().constFirst().hasParent);
    QVERIFY(watcher.boxes().constFirst().isModal);
    QCOMPARE(bench.components(),
             (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
    QCOMPARE(table->item(0, 0)->text(), QStringLiteral("as before"));
    QCOMPARE(bench.host.sdoClient.requests().size(), requests);
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_OverviewForm::readFillsTheTree()
{
    LogWatcher log;
    MessageBoxWatcher watcher;
    Bench bench;
    bench.form->setConnected(true);
    bench.read({5, 1});
    QCOMPARE(bench.components(),
             (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
    QCOMPARE(bench.host.sdoClient.requests().size(), 408);
    QVERIFY(!bench.finder.reader->isReading());
    QVERIFY(QApplication::overrideCursor() == nullptr);
    QCOMPARE(watcher.texts(), QStringList());
    QCOMPARE(log.warnings(), QStringList());
}

void tst_OverviewForm::readWithoutNodeOneEmptiesTheTree()
{
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    auto *table = bench.find<QTableWidget>("tblParameters");
    table->setRowCount(1);
    table->setItem(0, 0, new QTableWidgetItem(QStringLiteral("old")));
    bench.host.sdoClient.setError(1, 0x1000, 0, FakeSdoClient::NoAnswer);
    bench.read({5});
    QCOMPARE(bench.components(), QStringList());
    QVERIFY(table->item(0, 0) == nullptr || table->item(0, 0)->text() != QStringLiteral("old"));
    QCOMPARE(table->horizontalHeaderItem(0)->text(), QStringLiteral("Property"));
}

void tst_OverviewForm::readShowsTheWaitCursor()
{
    Bench bench;
    bench.form->setConnected(true);
    QVector<Qt::CursorShape> shapes;
    QTimer::singleShot(0, bench.form.get(), [&shapes] {
        if (QApplication::overrideCursor() != nullptr)
            shapes.append(QApplication::overrideCursor()->shape());
    });
    bench.read({});
    QCOMPARE(shapes, QVector<Qt::CursorShape>{Qt::WaitCursor});
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_OverviewForm::timeoutShowsWhatWasRead()
{
    Bench bench;
    bench.form->setConnected(true);
    bench.host.sdoClient.setError(5, 0x6001, 0, FakeSdoClient::NoAnswer);
    bench.read({1, 5, 7});
    QCOMPARE(bench.components(),
             (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
}

void tst_OverviewForm::secondPressWaitsForTheSameRun()
{
    Bench bench;
    bench.form->setConnected(true);
    int presses = 0;
    QTimer::singleShot(0, bench.form.get(), [&] {
        bench.answerRun({1});
        bench.press("btnRead");
        ++presses;
        QVERIFY(!bench.finder.reader->isReading());
    });
    bench.press("btnRead");
    QCOMPARE(presses, 1);
    QCOMPARE(bench.host.sdoClient.requests().size(), 204);
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Draxel Controller")});
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_OverviewForm::quitDuringAReadDoesNotStopIt()
{
    Bench bench;
    bench.form->setConnected(true);
    bool hasReturned = false;
    QTimer::singleShot(0, bench.form.get(), [&] {
        QTimer::singleShot(0, &bench.finder, [] { QCoreApplication::quit(); });
        bench.read({1, 5});
        hasReturned = true;
    });
    QCoreApplication::exec(); // ends after the read, by the quit in the middle of it
    QVERIFY(hasReturned);
    QCOMPARE(bench.host.sdoClient.requests().size(), 408);
    QCOMPARE(bench.components(),
             (QStringList{QStringLiteral("Draxel Controller"), QStringLiteral("Battery Pack")}));
}

void tst_OverviewForm::windowDestroyedDuringARead()
{
    Bench bench;
    bench.form->setConnected(true);
    bench.answerRun({1});
    QTimer::singleShot(0, &bench.finder, [&bench] { bench.form.reset(); });
    bench.press("btnRead");
    QVERIFY(bench.form == nullptr);
    QVERIFY(QApplication::overrideCursor() == nullptr);
    QCOMPARE(bench.host.sdoClient.requests().size(), 204);
}

void tst_OverviewForm::disconnectionDuringARead()
{
    Bench bench;
    bench.form->setConnected(true);
    bench.host.sdoClient.setMode(FakeSdoClient::Mode::Hold);
    // The bus goes: the host answers the request that is out and tells the plug-in.
    QTimer watch;
    connect(&watch, &QTimer::timeout, &bench.finder, [&bench] {
        if (bench.host.sdoClient.requests().isEmpty())
            return;
        const SdoRequest request = bench.host.sdoClient.requests().constLast();
        bench.form->setConnected(false);
        emit bench.host.sdoClient.errorReceived(request.nodeId, request.index, request.subIndex,
                                                FakeSdoClient::NoAnswer);
    });
    watch.start(0);
    bench.read({1});
    QVERIFY(!bench.finder.reader->isReading());
    QCOMPARE(bench.host.sdoClient.requests().size(), 1);
}

void tst_OverviewForm::nmtStateReachesTheTree()
{
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    bench.host.hub.reportNmtState(5, NmtSender::Stopped);
    auto *tree = bench.find<QTreeWidget>("treeWidget");
    QCOMPARE(tree->topLevelItem(0)->text(2), QString());
    QCOMPARE(tree->topLevelItem(1)->text(2), QStringLiteral("Stopped"));
    // The same state reported several times over, after a second run.
    bench.read({1, 5});
    bench.host.hub.reportNmtState(5, NmtSender::Operational);
    QCOMPARE(tree->topLevelItem(1)->text(2), QStringLiteral("Operational"));
}

void tst_OverviewForm::exportWritesAFile()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1});
    FileDialogDriver driver(name);
    MessageBoxWatcher watcher;
    bench.press("btnExport");
    QCOMPARE(driver.dialogs().size(), 1);
    const FileDialogRecord dialog = driver.dialogs().constFirst();
    QCOMPARE(dialog.caption, QStringLiteral("Export Draxel LEV Network information"));
    QCOMPARE(dialog.suggestedFile, QStringLiteral("untitled.dxxml"));
    QCOMPARE(dialog.filters, QStringList{QStringLiteral("Draxel Tool XML files (*.dxxml)")});
    QCOMPARE(dialog.acceptMode, QFileDialog::AcceptSave);
    QCOMPARE(dialog.parent, bench.form.get());
    QCOMPARE(watcher.texts(), QStringList());
    const QByteArray text = fileContent(name);
    QVERIFY2(text.startsWith(
                 "<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n<dxtoolstorage pl_overwiew=\"1.0\" date="),
             text.constData());
    QVERIFY2(text.contains("        <node nodeid=\"1\">\n"
                           "            <object index=\"0x6000\" sub=\"0x00\" value=\"1\" />\n"
                           "            <object index=\"0x6000\" sub=\"0x01\" value=\"4\" />\n"
                           "        </node>\n"),
             text.constData());
}

void tst_OverviewForm::exportCancelledOrFailedIsSilent()
{
    const QTemporaryDir dir;
    Bench bench;
    MessageBoxWatcher watcher;
    {
        FileDialogDriver driver{QString()};
        bench.press("btnExport");
        QCOMPARE(driver.dialogs().size(), 1);
    }
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList());
    QCOMPARE(watcher.texts(), QStringList());
}

void tst_OverviewForm::exportThatFailsKeepsTheOldFile()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    writeFile(name, "old");
    // A name so long that no file beside it can be made for the time of writing.
    const QString longName = dir.filePath(QString(255, QLatin1Char('v')));
    writeFile(longName, "old");
    Bench bench;
    MessageBoxWatcher watcher(QMessageBox::Yes); // the dialog asks whether to replace the file
    FileDialogDriver driver(longName);
    bench.press("btnExport");
    QCOMPARE(driver.dialogs().size(), 1);
    QCOMPARE(fileContent(longName), QByteArray("old"));
    QCOMPARE(fileContent(name), QByteArray("old"));
}

void tst_OverviewForm::importRebuildsTheTree()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    writeFile(name, vehicle);
    LogWatcher log;
    Bench bench;
    FileDialogDriver driver(name);
    bench.press("btnImport");
    const FileDialogRecord dialog = driver.dialogs().constFirst();
    QCOMPARE(dialog.caption, QStringLiteral("Import Draxel LEV Network information"));
    QCOMPARE(dialog.filters, QStringList{QStringLiteral("Draxel Tool XML files (*.dxxml)")});
    QCOMPARE(dialog.acceptMode, QFileDialog::AcceptOpen);
    QCOMPARE(dialog.parent, bench.form.get());
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Battery Pack")});
    QVERIFY(log.debugLines().contains(QStringLiteral("(5, 0)")));
    QCOMPARE(log.warnings(), QStringList());
}

void tst_OverviewForm::importCancelledRebuildsTheTree()
{
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1});
    bench.find<QTreeWidget>("treeWidget")->clear();
    FileDialogDriver driver{QString()};
    bench.press("btnImport");
    QCOMPARE(driver.dialogs().size(), 1);
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Draxel Controller")});
}

void tst_OverviewForm::importOfNoXmlEmptiesTheTree()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    writeFile(name, "no XML");
    MessageBoxWatcher watcher;
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1});
    FileDialogDriver driver(name);
    bench.press("btnImport");
    QCOMPARE(bench.components(), QStringList());
    QCOMPARE(watcher.texts(), QStringList());
}

void tst_OverviewForm::importOfAMissingFileKeepsTheData()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    writeFile(name, vehicle);
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1});
    FileDialogDriver driver(name);
    // The file goes between the choice and the opening.
    QTimer::singleShot(0, &bench.finder, [&] {
        auto *dialog = bench.form->findChild<QFileDialog *>();
        QVERIFY(dialog != nullptr);
        connect(dialog, &QDialog::accepted, dialog, [name] { QFile::remove(name); });
    });
    bench.press("btnImport");
    QVERIFY(!QFile::exists(name));
    QCOMPARE(bench.components(), QStringList{QStringLiteral("Draxel Controller")});
}

void tst_OverviewForm::updateWithoutAComponentSays()
{
    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    MessageBoxWatcher watcher;
    Bench bench;
    bench.press("btnCheckUpdate");
    QCOMPARE(watcher.texts(), QStringList{QStringLiteral("No component selected.")});
    QCOMPARE(watcher.boxes().constFirst().title, QStringLiteral("the application"));
}

void tst_OverviewForm::updateInformationIsShownAsItIs()
{
    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    MessageBoxWatcher watcher;
    Bench bench;
    bench.form->showUpdateInformation(1, 2, 3, QStringLiteral("<b>1.2</b> & more"));
    QCOMPARE(watcher.texts(), QStringList{QStringLiteral("<b>1.2</b> & more")});
    QCOMPARE(watcher.boxes().constFirst().title, QStringLiteral("the application"));
}

void tst_OverviewForm::longUpdateInformation_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("text"); // of the box
    QTest::addColumn<bool>("hasDetails");

    const auto characters = [](int count) { return QString(count, QLatin1Char('x')); };
    const auto lines = [](int count) { return QStringLiteral("line\n").repeated(count); };
    const QString more = QStringLiteral("\n\u2026");
    QTest::newRow("empty") << QString() << QString() << false;
    QTest::newRow("4000 characters") << characters(4000) << characters(4000) << false;
    QTest::newRow("4001 characters") << characters(4001) << characters(4000) + more << true;
    QTest::newRow("40 lines") << lines(39) + QStringLiteral("end") << lines(39) + QStringLiteral("end")
                              << false;
    QTest::newRow("41 lines") << lines(40) + QStringLiteral("end")
                              << lines(39) + QStringLiteral("line") + more << true;
    QTest::newRow("a long second line")
        << lines(1) + characters(5000) << lines(1) + characters(3995) + more << true;
    QTest::newRow("100 kB in one line") << characters(100000) << characters(4000) + more << true;
    QTest::newRow("1 MB of lines") << lines(200000) << lines(39) + QStringLiteral("line") + more << true;
}

void tst_OverviewForm::longUpdateInformation()
{
    QFETCH(QString, answer);
    QFETCH(QString, text);
    QFETCH(bool, hasDetails);

    MessageBoxWatcher watcher;
    Bench bench;
    QString details;
    QTimer::singleShot(0, &bench.finder, [&details] {
        if (const auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            details = box->detailedText();
    });
    bench.form->showUpdateInformation(1, 2, 3, answer);
    QCOMPARE(watcher.texts(), QStringList{text});
    QCOMPARE(details, hasDetails ? answer : QString());
}

void tst_OverviewForm::reportWithoutNodesSays()
{
    const ReportHome home;
    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    MessageBoxWatcher watcher;
    Bench bench;
    bench.press("btnSavePdf");
    QCOMPARE(watcher.texts(),
             QStringList{QStringLiteral(
                 "No devices found. Read all data from Draxel or import data from XML file.")});
    QCOMPARE(watcher.boxes().constFirst().title, QString());
    QVERIFY(watcher.boxes().constFirst().isModal);
    QVERIFY(!watcher.boxes().constFirst().hasParent);
    QCOMPARE(home.files(), QStringList());
    QVERIFY(home.viewer.urls.isEmpty());
}

void tst_OverviewForm::reportIsWrittenAndOpened()
{
    const ReportHome home;
    MessageBoxWatcher watcher;
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    bench.press("btnSavePdf");

    QCOMPARE(home.files(), QStringList({QStringLiteral("dx_report.html"), QStringLiteral("dx_report.pdf")}));
    const QString html = home.read("dx_report.html");
    QVERIFY(html.startsWith(QStringLiteral("<html><head></head><body><style type=\"text/css\">")));
    QVERIFY(html.contains(QStringLiteral("align=\"center\">Draxel Controller</td>")));
    QVERIFY(html.contains(QStringLiteral("align=\"center\">Battery Pack</td>")));
    QVERIFY(home.read("dx_report.pdf").startsWith(QStringLiteral("%PDF-")));
    QCOMPARE(home.viewer.urls, QList<QUrl>{QUrl(home.path("dx_report.pdf"), QUrl::TolerantMode)});
    QCOMPARE(home.viewer.urls.constFirst().scheme(), QString());
    QCOMPARE(home.viewer.urls.constFirst().toString(), home.path("dx_report.pdf"));
    QVERIFY(QApplication::overrideCursor() == nullptr);
    QVERIFY(watcher.boxes().isEmpty());
}

void tst_OverviewForm::reportIsWrittenAnew()
{
    const ReportHome home;
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1});
    writeFile(home.path("dx_report.html"), "old");
    writeFile(home.path("dx_report.pdf"), "old");
    bench.press("btnSavePdf");
    const QString first = home.read("dx_report.html");
    bench.press("btnSavePdf");
    QCOMPARE(home.read("dx_report.html"), first);
    QCOMPARE(first.count(QStringLiteral("Draxel Report")), 1);
    QVERIFY(home.read("dx_report.pdf").startsWith(QStringLiteral("%PDF-")));
    QCOMPARE(home.viewer.urls.size(), 2);
}

void tst_OverviewForm::reportThatCannotBeWrittenIsSilent()
{
    const ReportHome home;
    QVERIFY(QDir(home.path("")).mkdir(QStringLiteral("dx_report.html"))); // in the way of the file
    MessageBoxWatcher watcher;
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1});
    bench.press("btnSavePdf");
    QCOMPARE(home.files(), QStringList());
    QVERIFY(watcher.boxes().isEmpty());
    QCOMPARE(home.viewer.urls.size(), 1);
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_OverviewForm::incompleteReportSays()
{
    const ReportHome home;
    QVERIFY(QDir(home.path("")).mkdir(QStringLiteral("dx_report.pdf"))); // in the way of the file
    MessageBoxWatcher watcher;
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1});
    bench.press("btnSavePdf");
    QCOMPARE(home.files(), QStringList{QStringLiteral("dx_report.html")});
    QCOMPARE(watcher.boxes().size(), 1);
    QVERIFY2(watcher.texts().constFirst().startsWith(
                 QStringLiteral("The file %1 cannot be written: ").arg(home.path("dx_report.pdf"))),
             qPrintable(watcher.texts().constFirst()));
    QCOMPARE(home.viewer.urls.size(), 1);
}

void tst_OverviewForm::readerOutlivesTheWindow()
{
    Bench bench;
    bench.form->setConnected(true);
    bench.read({1});
    bench.form.reset();
    QVERIFY(!bench.finder.reader.isNull());
    bench.host.hub.reportNmtState(1, NmtSender::Stopped);
}

QTEST_MAIN(tst_OverviewForm)
#include "tst_overviewform.moc"
