// SPDX-License-Identifier: MIT
#include "pageshost.h"

#include <host/connectionbar.h>
#include <host/core/pluginsession.h>
#include <host/core/settingsstore.h>
#include <host/mainwindow.h>
#include <host/pages/checkuppage.h>
#include <host/pages/checkupsession.h>
#include <host/pages/checkupwords.h>
#include <interface/dxplugininterface.h>
#include <snapshot/savedvehicle.h>
#include <snapshot/snapshotfile.h>
#include <tests/support/troubledvehicle.h>
#include <tests/support/windowtest.h>

#include <QAction>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTextBrowser>
#include <QThreadPool>
#include <QToolButton>
#include <QTreeWidget>

namespace {

/*! Lets the background come to its end, and what follows it. */
void finishWork()
{
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

/*! The whole window with the overview, on a simulated vehicle. */
class Window
{
public:
    explicit Window(const QString &trouble = QString())
        : m_host(vehicle(trouble))
        , m_plugins(&m_host.services())
    {
        QString error;
        const auto library = PluginLibrary::load(QStringLiteral(OVERVIEW_PLUGIN_FILE), &error);
        if (!library)
            qFatal("%s", qUtf8Printable(error));
        m_plugins.add(*library, QStringLiteral("en"));
        m_window = std::make_unique<MainWindow>(&m_host.services(), &m_plugins);
        m_window->checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
        m_window->checkup().setSharePercent(100);
        m_window->showPlugins();
        m_window->resize(1000, 560);
        m_window->show();
    }

    ~Window()
    {
        m_host.services().bus().disconnectFromBus();
        waitUntil([this] { return !m_plugins.isConnectionTold(); });
        waitForArchive(m_window->records());
        m_window.reset();
        for (const PluginSession::Plugin &plugin : m_plugins.plugins())
            delete dynamic_cast<QObject *>(plugin.library.plugin);
    }
    Q_DISABLE_COPY(Window)

    void connectToBus()
    {
        QVERIFY(m_host.connectToBus());
        waitUntil([this] { return m_plugins.isConnectionTold(); });
    }

    void checkUp()
    {
        trigger("actionCheckup");
        waitForEnd();
    }

    void waitForEnd()
    {
        waitUntil([this] { return !session().isRunning(); });
        waitForArchive(m_window->records());
    }

    template<typename Part = QWidget>
    Part *find(const char *name) const
    {
        auto *part = m_window->findChild<Part *>(QLatin1String(name));
        if (part == nullptr)
            qFatal("there is no %s", name);
        return part;
    }

    void trigger(const char *action) const { find<QAction>(action)->trigger(); }
    QString label(const char *name) const { return find<QLabel>(name)->text(); }
    QString cell(int row, int column) const
    {
        return find<QTableView>("componentTable")->model()->index(row, column).data().toString();
    }
    int rows() const { return find<QTableView>("componentTable")->model()->rowCount(); }

    CheckupSession &session() { return m_window->checkup(); }
    MainWindow &window() { return *m_window; }
    PluginSession &plugins() { return m_plugins; }
    SimulatedHost &host() { return m_host; }

private:
    static Simulator::VehicleDescription vehicle(const QString &trouble)
    {
        Simulator::VehicleDescription description = SimulatedHost::stillVehicle(QStringLiteral("full-bus"));
        TroubledVehicle::heal(&description);
        if (!trouble.isEmpty())
            TroubledVehicle::spoil(&description);
        return description;
    }

    OwnArchive m_archive;
    SimulatedHost m_host;
    PluginSession m_plugins;
    std::unique_ptr<MainWindow> m_window;
};

} // namespace

/*! The page of the check-up as a person uses it: by what is on the screen, and by the keyboard. */
class tst_CheckupPage : public WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void saysWhatToDoFirst();
    void oneButtonToAJudgedResult();
    void worstStandsFirst();
    void pagesByKeys();
    void readButtonIsToldOfTheCheckup();
    void checkupIsToldOfTheRead();
    void shareOfTheBusIsRemembered();
    void escapeCancels();
    void valuesCanBeCopied();
    void opensASnapshotEverywhere();
    void savesWhatItWasAskedToSave();
    void brokenSnapshotChangesNothing();
    void closingKeepsWhatWasRead();
    void textsFromDevicesAreText();
    void fitsASmallScreenWithLargeLetters();
    void verdictIsLargeWithAFontInPixels();
};

void tst_CheckupPage::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_checkuppage"));
    SettingsStore::instance().setValues({});
}

void tst_CheckupPage::saysWhatToDoFirst()
{
    Window window;
    window.trigger("actionPageCheckup");
    QVERIFY(window.find<QWidget>("checkupPage")->isVisible());
    QVERIFY(window.find<QLabel>("checkupEmpty")->isVisible());
    QCOMPARE(window.label("checkupEmpty"),
             QStringLiteral("Connect a bus (Ctrl+K) and press \"Check-up\", or open a saved vehicle."));
    QVERIFY(!window.find<QToolButton>("checkupButton")->defaultAction()->isEnabled());
    QCOMPARE(window.find<QToolButton>("checkupButton")->toolTip(), QStringLiteral("Connect a bus first."));
}

void tst_CheckupPage::oneButtonToAJudgedResult()
{
    Window window;
    window.connectToBus();
    window.trigger("actionPageCheckup");
    window.find<QToolButton>("checkupButton")->click();
    QVERIFY(window.session().isRunning());
    QVERIFY(window.find<QWidget>("cancelCheckupButton")->isVisible());
    window.waitForEnd();
    QCOMPARE(window.rows(), 14);
    QVERIFY2(window.label("verdictText").startsWith(QStringLiteral("In order")),
             qPrintable(window.label("verdictText")));
    QCOMPARE(window.label("keptText"), QStringLiteral("Kept in the archive ✓"));
    QVERIFY(!window.find<QWidget>("cancelCheckupButton")->isVisible());
    window.find<QTableView>("componentTable")->selectRow(13); // the worst stand first
    QVERIFY(window.find<QTextBrowser>("componentText")->toPlainText().contains(QStringLiteral("In order")));
}

void tst_CheckupPage::worstStandsFirst()
{
    Window window(QStringLiteral("trouble"));
    window.connectToBus();
    window.trigger("actionCheckup");
    window.waitForEnd();
    QVERIFY2(window.label("verdictText").startsWith(QStringLiteral("Faults were found")),
             qPrintable(window.label("verdictText")));
    QCOMPARE(window.cell(0, 0), QStringLiteral("Battery Pack"));
    QCOMPARE(window.cell(0, 1), QStringLiteral("2"));
    const QString text = window.find<QTextBrowser>("componentText")->toPlainText();
    QVERIFY2(text.contains(QStringLiteral("Fault: Cell 7 ")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("3.29")), qPrintable(text));
    bool isDeadThere = false;
    for (int row = 0; row < window.rows(); ++row) {
        if (window.cell(row, 1) == QStringLiteral("10")) { // Stopped, and therefore not asked at all
            window.find<QTableView>("componentTable")->selectRow(row);
            QCOMPARE(window.find<QTabWidget>("componentTabs")->tabText(2), QStringLiteral("&Not read (all)"));
        }
        if (window.cell(row, 1) == QStringLiteral("9")) {
            isDeadThere = true;
            QCOMPARE(window.cell(row, 2), QStringLiteral("No answer"));
        }
    }
    QVERIFY(isDeadThere);
}

void tst_CheckupPage::pagesByKeys()
{
    Window window;
    QCOMPARE(window.find<QAction>("actionPageOverview")->shortcut(), QKeySequence(QStringLiteral("Ctrl+1")));
    QCOMPARE(window.find<QAction>("actionPageCheckup")->shortcut(), QKeySequence(QStringLiteral("Ctrl+2")));
    QCOMPARE(window.find<QAction>("actionPageTrace")->shortcut(), QKeySequence(QStringLiteral("Ctrl+4")));
    QCOMPARE(window.find<QAction>("actionPageArchive")->shortcut(), QKeySequence(QStringLiteral("Ctrl+5")));
    QCOMPARE(window.find<QAction>("actionCheckup")->shortcut(), QKeySequence(QStringLiteral("F6")));
    auto *pages = window.find<QTabWidget>("pluginPages");
    QCOMPARE(pages->tabText(0), QStringLiteral("Overview"));
    QCOMPARE(window.find<QAction>("actionPageLive")->shortcut(), QKeySequence(QStringLiteral("Ctrl+3")));
    window.trigger("actionPageLive");
    QVERIFY(window.find<QWidget>("livePage")->isVisible());
    window.trigger("actionPageTrace");
    QVERIFY(window.find<QWidget>("tracePage")->isVisible());
    window.trigger("actionPageArchive");
    QVERIFY(window.find<QWidget>("archivePage")->isVisible());
    window.trigger("actionPageOverview");
    QVERIFY(window.find<QWidget>("btnRead")->isVisible());
}

void tst_CheckupPage::readButtonIsToldOfTheCheckup()
{
    Window window;
    window.connectToBus();
    window.trigger("actionCheckup");
    waitUntil([&window] { return window.session().progress().values > 10; });
    window.trigger("actionPageOverview");
    QTest::mouseClick(window.find<QPushButton>("btnRead"), Qt::LeftButton);
    QCoreApplication::processEvents();
    QVERIFY(!window.host().services().reads().isReading());
    QVERIFY2(window.window().messages().toText().contains(QStringLiteral(
                 "A check-up is using the bus. Wait for its end or cancel it (Esc), then read again.")),
             qPrintable(window.window().messages().toText()));
    QVERIFY(window.session().isRunning());
    window.session().cancel();
    window.waitForEnd();
}

void tst_CheckupPage::checkupIsToldOfTheRead()
{
    Window window;
    window.connectToBus();
    window.trigger("actionPageCheckup");
    window.host().services().sdoClient().upload(1, 0x1000, 0, quint16(CanOpen::DataType::Unsigned32), 0);
    QCOMPARE(window.find<QToolButton>("checkupButton")->toolTip(),
             QStringLiteral("The overview is reading. Wait for its end or cancel it (Esc)."));
    QCOMPARE(window.label("checkupProgressText"),
             QStringLiteral("The overview is reading. Wait for its end or cancel it (Esc)."));
    QVERIFY(!window.find<QAction>("actionCheckup")->isEnabled());
    waitUntil([&window] { return window.session().canStart(); });
    QVERIFY(window.find<QAction>("actionCheckup")->isEnabled());
}

void tst_CheckupPage::shareOfTheBusIsRemembered()
{
    SettingsStore::instance().setValue(QStringLiteral("checkup/busShare"), QVariant());
    {
        Window window;
        QCOMPARE(MainWindow(&window.host().services(), &window.plugins()).checkup().sharePercent(), 60);
        window.trigger("actionShare");
        auto *dialog = window.find<QInputDialog>("shareDialog");
        QCOMPARE(dialog->intMinimum(), 5);
        QCOMPARE(dialog->intMaximum(), 100);
        dialog->setIntValue(35);
        dialog->accept();
        QCOMPARE(window.session().sharePercent(), 35);
    }
    Window again;
    QCOMPARE(MainWindow(&again.host().services(), &again.plugins()).checkup().sharePercent(), 35);
    SettingsStore::instance().setValue(QStringLiteral("checkup/busShare"), 400);
    QCOMPARE(MainWindow(&again.host().services(), &again.plugins()).checkup().sharePercent(), 60);
}

void tst_CheckupPage::escapeCancels()
{
    Window window;
    window.connectToBus();
    window.trigger("actionCheckup");
    waitUntil([&window] { return window.session().progress().values > 10; });
    QVERIFY(window.find<QAction>("actionCancelRead")->isEnabled());
    QCOMPARE(window.find<QAction>("actionCancelRead")->shortcut(), QKeySequence(Qt::Key_Escape));
    window.trigger("actionCancelRead");
    QVERIFY(!window.session().isRunning());
    window.waitForEnd();
    QVERIFY(window.rows() > 0);
    QVERIFY(window.find<QAction>("actionResume")->isEnabled());
    QVERIFY(!window.find<QAction>("actionCancelRead")->isEnabled());
}

void tst_CheckupPage::valuesCanBeCopied()
{
    Window window;
    window.connectToBus();
    window.checkUp();
    auto *values = window.find<QTableView>("componentValues");
    values->selectAll();
    QMetaObject::invokeMethod(values, "copy");
    const QString copied = QGuiApplication::clipboard()->text();
    QVERIFY2(copied.contains(QStringLiteral("\t1000h.0\t")), qPrintable(copied.left(500)));
}

void tst_CheckupPage::opensASnapshotEverywhere()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("bike.dxsnap"));
    { // the plug-in is one for the whole process: one window at a time
        Window window(QStringLiteral("trouble"));
        window.connectToBus();
        window.checkUp();
        QString error;
        QVERIFY2(SnapshotFile::save(file, window.session().record().snapshot, &error), qPrintable(error));
    }

    Window other;
    other.window().openFile(file);
    waitUntil([&other] { return !other.session().isEmpty(); });
    QCOMPARE(other.session().record().source, CheckupRecord::Source::File);
    QCOMPARE(other.rows(), 14);
    QVERIFY(other.label("vehicleText").contains(QStringLiteral("from the file bike.dxsnap")));
    // The plug-in shows it as well.
    QVERIFY(other.find<QTreeWidget>("treeWidget")->topLevelItemCount() > 0);
    QVERIFY(other.window().windowTitle().contains(QStringLiteral("bike.dxsnap")));
}

/*! Whatever is shown while a name is chosen, and while the file is written. */
void tst_CheckupPage::savesWhatItWasAskedToSave()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("first.dxsnap"));
    Snapshot first;
    first.notes.vehicle = QStringLiteral("first");
    Snapshot second;
    second.notes.vehicle = QStringLiteral("second");
    Window window;
    const auto choose = [&window] {
        emit window.find<CheckupPage>("checkupPage")->saveRequested();
        return window.window().findChild<QFileDialog *>(QStringLiteral("saveSnapshotDialog"));
    };
    window.session().showFile(first, QStringLiteral("/a.dxsnap"));
    QFileDialog *dialog = choose();
    window.session().showFile(second, QStringLiteral("/b.dxsnap"));
    emit dialog->fileSelected(file);
    finishWork();
    QString error;
    QCOMPARE(SavedVehicle::load(file, &error)->notes.vehicle, QStringLiteral("first"));
    QCOMPARE(window.session().record().fileName, QStringLiteral("/b.dxsnap"));
    delete dialog;

    dialog = choose();
    emit dialog->fileSelected(file);
    window.session().showFile(first, QStringLiteral("/a.dxsnap")); // before it is written
    finishWork();
    QCOMPARE(SavedVehicle::load(file, &error)->notes.vehicle, QStringLiteral("second"));
    QCOMPARE(window.session().record().fileName, QStringLiteral("/a.dxsnap"));
    delete dialog;

    dialog = choose();
    emit dialog->fileSelected(file);
    finishWork();
    QCOMPARE(window.session().record().fileName, file);
}

void tst_CheckupPage::brokenSnapshotChangesNothing()
{
    Window window;
    window.connectToBus();
    window.checkUp();
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("broken.dxsnap"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\"format\": \"draxel-snapshot\", \"version\": 99}");
    file.close();
    window.window().openFile(name);
    QMessageBox *box = nullptr;
    waitUntil([&] { return (box = window.window().findChild<QMessageBox *>()) != nullptr; });
    QVERIFY2(box->text().contains(QStringLiteral("broken.dxsnap")), qPrintable(box->text()));
    box->close();
    QCOMPARE(window.session().record().source, CheckupRecord::Source::Bus);
}

void tst_CheckupPage::closingKeepsWhatWasRead()
{
    const OwnArchive archive;
    int values = 0;
    {
        SimulatedHost host(SimulatedHost::stillVehicle(QStringLiteral("full-bus")));
        VehicleRecords records(&host.services(), QStringLiteral("test"));
        CheckupSession session(&host.services(), &records);
        session.setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
        QVERIFY(host.connectToBus());
        session.start(SnapshotScope::Full, CheckupSession::Search::Heard);
        waitUntil([&session] { return session.progress().values > 50; });
        session.cancel();
        values = session.record().snapshot.valueCount();
    } // at once: nobody has waited for the archive
    Archive later;
    QString error;
    const auto address = ArchiveAddress::parse(archive.fileName(), &error);
    QVERIFY(address);
    QVERIFY2(later.open(*address, Archive::Missing::Refuse, &error), qPrintable(error));
    const auto visits = later.visits(VisitQuery(), &error);
    QVERIFY(visits);
    QCOMPARE(visits->size(), 1);
    QCOMPARE(visits->first().valueCount, values);
}

void tst_CheckupPage::textsFromDevicesAreText()
{
    Window window;
    window.connectToBus();
    window.checkUp();
    Snapshot snapshot = window.session().record().snapshot;
    SnapshotEntry name;
    name.key = {0x1008, 0};
    name.type = CanOpen::DataType::VisibleString;
    name.raw = "<b>bold</b><img src=x>";
    name.value = QString::fromLatin1(name.raw);
    snapshot.nodes.first().insert(name);
    window.session().showFile(snapshot, QStringLiteral("/x.dxsnap"));
    QTableView *table = window.find<QTableView>("componentTable");
    for (int row = 0; row < window.rows(); ++row) {
        if (window.cell(row, 1) == QString::number(snapshot.nodes.first().id))
            table->selectRow(row);
    }
    QVERIFY(window.find<QTextBrowser>("componentText")
                ->toPlainText()
                .contains(QStringLiteral("<b>bold</b><img src=x>")));
}

void tst_CheckupPage::fitsASmallScreenWithLargeLetters()
{
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSize(16);
    QApplication::setFont(large);
    {
        Window window(QStringLiteral("trouble"));
        window.trigger("actionPageCheckup");
        QVERIFY2(window.window().minimumSizeHint().width() <= 1024,
                 qPrintable(QString::number(window.window().minimumSizeHint().width())));
        window.trigger("actionPageArchive");
        QVERIFY2(window.window().minimumSizeHint().width() <= 1024,
                 qPrintable(QString::number(window.window().minimumSizeHint().width())));
        QVERIFY2(window.window().minimumSizeHint().height() <= 600,
                 qPrintable(QString::number(window.window().minimumSizeHint().height())));
    }
    QApplication::setFont(before);
}

void tst_CheckupPage::verdictIsLargeWithAFontInPixels()
{
    const QFont before = QApplication::font();
    QFont pixels = before;
    pixels.setPixelSize(20);
    QApplication::setFont(pixels);
    {
        Window window(QStringLiteral("trouble"));
        window.trigger("actionPageCheckup");
        QCOMPARE(QFontInfo(window.find<QLabel>("verdictText")->font()).pixelSize(), 24);
        QCOMPARE(QFontInfo(window.find<QLabel>("checkupEmpty")->font()).pixelSize(), 24);
    }
    QApplication::setFont(before);
}

QTEST_MAIN(tst_CheckupPage)
#include "tst_checkuppage.moc"
