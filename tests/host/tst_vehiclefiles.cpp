// SPDX-License-Identifier: MIT
#include "hostfixture.h"

#include <host/core/recentfiles.h>
#include <host/core/settingsstore.h>
#include <host/mainwindow.h>
#include <host/pages/checkupsession.h>
#include <host/vehiclefiles.h>
#include <snapshot/snapshotfile.h>
#include <tests/support/busypool.h>
#include <tests/support/filedialogdriver.h>

#include <QAction>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {

const QByteArray battery("<dxtoolstorage date=\"Sun Nov 15 17:29:46 2026\"><nodes><node nodeid=\"5\">"
                         "<object index=\"0x6000\" sub=\"0x00\" value=\"1\" />"
                         "<object index=\"0x6000\" sub=\"0x01\" value=\"6\" />"
                         "</node></nodes></dxtoolstorage>\n");
const QByteArray motor("<dxtoolstorage><nodes><node nodeid=\"4\">"
                       "<object index=\"0x6000\" sub=\"0x00\" value=\"1\" />"
                       "<object index=\"0x6000\" sub=\"0x01\" value=\"7\" />"
                       "</node></nodes></dxtoolstorage>\n");

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

/*! The window with the plug-in as it ships, and a folder for files; the folder is the home directory. */
struct Bench
{
    Bench()
    {
        qputenv("HOME", QFile::encodeName(folder.path()));
        host.loadOverview();
        window = std::make_unique<MainWindow>(&host.services, &host.session);
        window->showPlugins();
        window->show();
    }
    ~Bench()
    {
        host.session.shutDown();
        window.reset();
        qputenv("HOME", oldHome);
    }
    Q_DISABLE_COPY(Bench)

    QString file(const char *name, const QByteArray &content) const
    {
        QFile file(folder.filePath(QLatin1String(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("the file cannot be written");
        return file.fileName();
    }

    /*! Values of node 1 come from the bus and are in no file. */
    void receiveValues()
    {
        host.fake.addNode(1);
        QVERIFY(host.services.bus().connectToBus(fakeSettings(), nullptr));
        host.services.getSdoClient()->upload(1, 0x1000, 0, 7, 100);
        QTRY_VERIFY(window->vehicle().isUnsaved());
        QTRY_VERIFY(!host.services.reads().isReading());
    }

    void open(const QString &name) const
    {
        window->openFile(name);
        QCoreApplication::sendPostedEvents(); // a file that is good is shown in a later event,
        QCoreApplication::sendPostedEvents(); // and judged in one more
    }

    QStringList components() const
    {
        QStringList names;
        const auto *tree = window->findChild<QTreeWidget *>(QStringLiteral("treeWidget"));
        for (int i = 0; i < tree->topLevelItemCount(); ++i)
            names.append(tree->topLevelItem(i)->text(0));
        return names;
    }

    QMessageBox *box() const
    {
        for (QMessageBox *found : window->findChildren<QMessageBox *>()) {
            if (found->isVisible())
                return found;
        }
        return nullptr;
    }

    /*! Presses a button of the box that is shown. */
    void answer(QMessageBox::StandardButton button)
    {
        QVERIFY(box() != nullptr);
        box()->button(button)->click();
        QTRY_VERIFY(box() == nullptr);
    }

    QAction *action(const char *name) const { return window->findChild<QAction *>(QLatin1String(name)); }
    QPushButton *button(const char *name) const
    {
        return window->findChild<QPushButton *>(QLatin1String(name));
    }
    QString lastMessage() const
    {
        const MessageLog &log = window->messages();
        return log.index(log.rowCount() - 1, MessageLog::TextColumn).data().toString();
    }

    QByteArray oldHome = qgetenv("HOME");
    QTemporaryDir folder;
    Host host;
    std::unique_ptr<MainWindow> window;
};

} // namespace

/*! Files in the window, as a user has them: what is shown, what is asked, what is said, what is kept. */
class tst_VehicleFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
        QCoreApplication::setApplicationName(QStringLiteral("tst_vehiclefiles"));
        QGuiApplication::setApplicationDisplayName(QStringLiteral("Draxel"));
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }
    void init() { SettingsStore::instance().setValues({}); }

    void opensAFile();
    void wrongFileLeavesWhatIsShown_data();
    void wrongFileLeavesWhatIsShown();
    void buttonOfThePluginOpensByTheHost_data();
    void buttonOfThePluginOpensByTheHost();
    void savesAndSaysWhere();
    void saveThatFailsIsNoSave();
    void dialogStartsInAFolderThatIsThere();
    void pipeDoesNotHoldTheWindow();
    void fileThatLoadsLongIsNotShownOverALaterOne();
    void opensRecentFiles();
    void forgetsAFileThatIsGone();
    void takesADroppedFile();
    void asksBeforeValuesGo_data();
    void asksBeforeValuesGo();
    void asksBeforeQuitting();
    void savesBeforeQuitting();
    void keepsTheEarlierReport_data();
    void keepsTheEarlierReport();
    void saysThatNoReportWasWritten();
    void writesNoReportOverOneThatCannotBeKept();
    void stripSaysThatValuesAreOld();
    void stripNamesNodesThatFallSilent();
};

void tst_VehicleFiles::opensAFile()
{
    Bench bench;
    const QString name = bench.file("bike.dxxml", battery);
    bench.open(name);
    QCOMPARE(bench.components(), QStringList(QStringLiteral("Battery Pack")));
    QCOMPARE(bench.window->windowTitle(), QStringLiteral("bike.dxxml[*]"));
    QVERIFY(!bench.window->isWindowModified());
    QCOMPARE(bench.lastMessage(), QStringLiteral("Opened: ") + name);
    QVERIFY(labelText(*bench.window, "valuesSentence")
                .startsWith(QStringLiteral("Values from a file, not of now: ")));
    QVERIFY(bench.window->findChild<QWidget *>(QStringLiteral("valuesStrip"))->isVisible());
}

void tst_VehicleFiles::wrongFileLeavesWhatIsShown_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    QTest::newRow("truncated") << motor.left(motor.size() - 30)
                               << QStringLiteral("The file is not complete: it ends in line 1, column 133.");
    QTest::newRow("no XML") << QByteArray("%PDF-1.4\n")
                            << QStringLiteral("The file is not XML: line 1, column 1: Start tag expected.");
    QTest::newRow("no node") << QByteArray("<dxtoolstorage/>")
                             << QStringLiteral("There is no node in the file.");
    QTest::newRow("not there") << QByteArray() << QStringLiteral("cannot be read: ");
}

void tst_VehicleFiles::wrongFileLeavesWhatIsShown()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    Bench bench;
    bench.open(bench.file("bike.dxxml", battery));
    const QString title = bench.window->windowTitle();
    const QString wrong = content.isEmpty() ? bench.folder.filePath(QStringLiteral("gone.dxxml"))
                                            : bench.file("wrong.dxxml", content);
    bench.open(wrong);
    QVERIFY(bench.box() != nullptr);
    const QString text = bench.box()->text();
    QVERIFY2(text.contains(reason), qPrintable(text));
    QVERIFY2(text.contains(wrong), qPrintable(text));
    QVERIFY2(text.endsWith(QStringLiteral("\n\nWhat was shown before is still shown.")), qPrintable(text));
    QCOMPARE(bench.components(), QStringList(QStringLiteral("Battery Pack")));
    QCOMPARE(bench.window->windowTitle(), title);
}

void tst_VehicleFiles::buttonOfThePluginOpensByTheHost_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("mouse") << false;
    QTest::newRow("key") << true;
}

void tst_VehicleFiles::buttonOfThePluginOpensByTheHost()
{
    QFETCH(bool, byKey);
    Bench bench;
    bench.open(bench.file("bike.dxxml", battery));
    FileDialogDriver driver(bench.file("wrong.dxxml", motor.left(100)));
    QPushButton *button = bench.button("btnImport");
    if (byKey) {
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Space);
    } else {
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QTRY_COMPARE(driver.dialogs().size(), 1);
    QCOMPARE(driver.dialogs().first().caption, QStringLiteral("Open a file"));
    QVERIFY(!button->isDown());
    QTRY_VERIFY(bench.box() != nullptr);
    QCOMPARE(bench.components(), QStringList(QStringLiteral("Battery Pack")));
}

void tst_VehicleFiles::savesAndSaysWhere()
{
    Bench bench;
    bench.open(bench.file("bike.dxxml", battery));
    bench.receiveValues();
    QVERIFY(bench.window->isWindowModified());
    const QString name = bench.folder.filePath(QStringLiteral("saved.dxxml"));
    {
        FileDialogDriver driver(name);
        bench.action("actionExport")->trigger();
        QTRY_COMPARE(driver.dialogs().size(), 1);
        QVERIFY2(driver.dialogs().first().suggestedFile.endsWith(QStringLiteral(".dxxml")),
                 qPrintable(driver.dialogs().first().suggestedFile));
    }
    QTRY_COMPARE(bench.lastMessage(), QStringLiteral("Saved: ") + name);
    QVERIFY(contentOf(name).contains("<object index=\"0x6000\" sub=\"0x01\" value=\"6\" />"));
    QVERIFY(!bench.window->isWindowModified());
    QVERIFY2(bench.window->windowTitle().startsWith(QStringLiteral("saved.dxxml (")),
             qPrintable(bench.window->windowTitle()));
    QCOMPARE(RecentFiles::load().first(), name);
}

void tst_VehicleFiles::saveThatFailsIsNoSave()
{
    Bench bench;
    bench.receiveValues();
    // A name below a file; the dialog would refuse the folder itself.
    QVERIFY(QDir(bench.folder.path()).mkdir(QStringLiteral("folder.dxxml")));
    FileDialogDriver driver(QStringLiteral("/proc/saved.dxxml"));
    bench.action("actionExport")->trigger();
    QTRY_VERIFY(bench.box() != nullptr);
    QVERIFY2(bench.box()->text().contains(QStringLiteral("/proc/saved.dxxml cannot be written: ")),
             qPrintable(bench.box()->text()));
    QVERIFY(bench.window->vehicle().isUnsaved());
}

void tst_VehicleFiles::dialogStartsInAFolderThatIsThere()
{
    Bench bench; // its home has no folder for documents
    SettingsStore::instance().setValue(QStringLiteral("files/folder"),
                                       bench.folder.filePath(QStringLiteral("gone")));
    bench.window->findChild<VehicleFiles *>()->open({VehicleFiles::fileFilter()});
    const auto *dialog = bench.window->findChild<QFileDialog *>(QStringLiteral("openDialog"));
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->directory().canonicalPath(), QDir(bench.folder.path()).canonicalPath());
    QCOMPARE(dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text(), QString());
}

void tst_VehicleFiles::pipeDoesNotHoldTheWindow()
{
#ifdef Q_OS_UNIX
    Bench bench;
    bench.receiveValues();
    const QString name = bench.folder.filePath(QStringLiteral("pipe.dxxml"));
    QCOMPARE(mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    bench.window->findChild<VehicleFiles *>()->save();
    auto *dialog = bench.window->findChild<QFileDialog *>(QStringLiteral("saveDialog"));
    QVERIFY(dialog != nullptr);
    emit dialog->fileSelected(name); // as if the dialog let it pass
    QVERIFY(bench.box() != nullptr);
    QCOMPARE(bench.box()->text(), name + QStringLiteral(" is not a file."));
    QVERIFY(bench.window->vehicle().isUnsaved());
#else
    QSKIP("This system has no named pipes");
#endif
}

void tst_VehicleFiles::fileThatLoadsLongIsNotShownOverALaterOne()
{
    Bench bench;
    Snapshot snapshot;
    snapshot.program = QStringLiteral("test 1");
    snapshot.time = QDateTime(QDate(2026, 3, 12), QTime(10, 12), Qt::OffsetFromUTC, 0);
    const QString slow = bench.folder.filePath(QStringLiteral("slow.dxsnap"));
    QString problem;
    QVERIFY2(SnapshotFile::save(slow, snapshot, &problem), qPrintable(problem));
    const QString later = bench.file("later.dxxml", battery);

    BusyPool busy; // has no time for the first one before the other one is shown
    bench.open(slow);
    bench.open(later);
    QCOMPARE(bench.window->checkup().record().fileName, later);
    busy.release();
    for (int turn = 0; turn < 3; ++turn)
        QCoreApplication::sendPostedEvents();
    QCOMPARE(bench.window->checkup().record().fileName, later);
    QCOMPARE(bench.components().size(), 1);
}

void tst_VehicleFiles::opensRecentFiles()
{
    Bench bench;
    auto *menu = bench.window->findChild<QMenu *>(QStringLiteral("recentMenu"));
    QVERIFY(!menu->isEnabled());
    bench.open(bench.file("a & b.dxxml", battery));
    bench.open(bench.file("motor.dxxml", motor));
    QVERIFY(menu->isEnabled());
    QCOMPARE(menu->actions().size(), 2);
    QCOMPARE(menu->actions().at(0)->text(), QStringLiteral("motor.dxxml"));
    QCOMPARE(menu->actions().at(1)->text(), QStringLiteral("a && b.dxxml"));
    menu->actions().at(1)->trigger();
    QTRY_COMPARE(bench.components(), QStringList(QStringLiteral("Battery Pack")));
}

void tst_VehicleFiles::forgetsAFileThatIsGone()
{
    Bench bench;
    const QString name = bench.file("bike.dxxml", battery);
    bench.open(name);
    QVERIFY(QFile::remove(name));
    auto *menu = bench.window->findChild<QMenu *>(QStringLiteral("recentMenu"));
    menu->actions().first()->trigger();
    QVERIFY(bench.box() != nullptr);
    QCOMPARE(menu->actions().size(), 0);
}

void tst_VehicleFiles::takesADroppedFile()
{
    Bench bench;
    const auto drop = [&bench](const QString &name) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(name)});
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.setAccepted(false);
        QCoreApplication::sendEvent(bench.window.get(), &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(bench.window.get(), &event);
        return true;
    };
    QVERIFY(!drop(bench.file("picture.png", "x")));
    QVERIFY(drop(bench.file("bike.DXXML", battery)));
    QTRY_COMPARE(bench.components(), QStringList(QStringLiteral("Battery Pack")));
}

void tst_VehicleFiles::asksBeforeValuesGo_data()
{
    QTest::addColumn<QByteArray>("how");
    QTest::newRow("opening") << QByteArray("open");
    QTest::newRow("reading by menu") << QByteArray("actionRead");
    QTest::newRow("reading by button") << QByteArray("btnRead");
}

void tst_VehicleFiles::asksBeforeValuesGo()
{
    QFETCH(QByteArray, how);
    Bench bench;
    const QString file = bench.file("bike.dxxml", battery);
    bench.receiveValues();
    QSignalSpy detections(&bench.host.services.reads(), &ReadObserver::detectionStarted);
    const auto lose = [&] {
        if (how == "open")
            bench.open(file);
        else if (how == "actionRead")
            bench.action("actionRead")->trigger();
        else
            QTest::mouseClick(bench.button("btnRead"), Qt::LeftButton);
    };
    lose();
    QVERIFY(bench.box() != nullptr);
    QCOMPARE(bench.box()->text(),
             QStringLiteral("The values that were read are in no file. Save them before they go?"));
    QTest::keyClick(bench.box(), Qt::Key_Escape);
    QTRY_VERIFY(bench.box() == nullptr);
    QVERIFY(bench.window->vehicle().isUnsaved());
    QCOMPARE(detections.size(), 0);

    lose();
    bench.answer(QMessageBox::Discard);
    if (how == "open")
        QTRY_COMPARE(bench.components(), QStringList(QStringLiteral("Battery Pack")));
    else
        QTRY_COMPARE(detections.size(), 1);
    bench.host.services.cancelRead();
    QTRY_VERIFY(!bench.host.services.reads().isReading());
}

void tst_VehicleFiles::asksBeforeQuitting()
{
    Bench bench;
    bench.receiveValues();
    QVERIFY(!bench.window->close());
    bench.answer(QMessageBox::Cancel);
    QVERIFY(bench.window->isVisible());
    QVERIFY(!bench.window->close());
    bench.answer(QMessageBox::Discard);
    QTRY_VERIFY(!bench.window->isVisible());
}

void tst_VehicleFiles::savesBeforeQuitting()
{
    Bench bench;
    bench.open(bench.file("bike.dxxml", battery));
    bench.receiveValues();
    const QString name = bench.folder.filePath(QStringLiteral("saved.dxxml"));
    FileDialogDriver driver(name);
    QVERIFY(!bench.window->close());
    bench.answer(QMessageBox::Save);
    QTRY_VERIFY(!bench.window->isVisible());
    QVERIFY(contentOf(name).contains("0x6000"));
}

void tst_VehicleFiles::keepsTheEarlierReport_data()
{
    QTest::addColumn<QByteArray>("how");
    QTest::newRow("menu") << QByteArray("menu");
    QTest::newRow("button of the plug-in") << QByteArray("button");
    QTest::newRow("button pressed by a program") << QByteArray("program");
}

void tst_VehicleFiles::keepsTheEarlierReport()
{
    QFETCH(QByteArray, how);
    Bench bench;
    bench.open(bench.file("bike.dxxml", battery));
    const QString pdf = bench.file("dx_report.pdf", "of the last customer");
    QFile file(pdf);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(
        file.setFileTime(QDateTime(QDate(2026, 9, 3), QTime(10, 12, 5)), QFileDevice::FileModificationTime));
    file.close();

    if (how == "menu")
        bench.action("actionSaveReport")->trigger();
    else if (how == "button")
        QTest::mouseClick(bench.button("btnSavePdf"), Qt::LeftButton);
    else
        bench.button("btnSavePdf")->click();
    QTRY_VERIFY(contentOf(pdf).startsWith("%PDF-"));
    QCOMPARE(contentOf(bench.folder.filePath(QStringLiteral("dx_report 2026-09-03 10-12-05.pdf"))),
             QByteArray("of the last customer"));
    QTRY_COMPARE(
        bench.lastMessage(),
        QStringLiteral("Report saved: %1. The earlier one is kept as \"dx_report 2026-09-03 10-12-05.pdf\".")
            .arg(pdf));
}

void tst_VehicleFiles::saysThatNoReportWasWritten()
{
    Bench bench;
    bench.open(bench.file("bike.dxxml", battery));
    // The plug-in says nothing when the HTML file cannot be made.
    QVERIFY(QDir(bench.folder.path()).mkpath(QStringLiteral("dx_report.html/x")));
    bench.action("actionSaveReport")->trigger();
    QTRY_COMPARE(bench.lastMessage(), QStringLiteral("No report was written to %1.")
                                          .arg(bench.folder.filePath(QStringLiteral("dx_report.pdf"))));
}

void tst_VehicleFiles::writesNoReportOverOneThatCannotBeKept()
{
    Bench bench;
    bench.open(bench.file("bike.dxxml", battery));
    const QString pdf = bench.file("dx_report.pdf", "of the last customer");
    QFile file(pdf);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(
        file.setFileTime(QDateTime(QDate(2026, 9, 3), QTime(10, 12, 5)), QFileDevice::FileModificationTime));
    file.close();
    QVERIFY(QFile::link(bench.folder.filePath(QStringLiteral("nowhere/x")),
                        bench.folder.filePath(QStringLiteral("dx_report 2026-09-03 10-12-05.pdf"))));
    bench.action("actionSaveReport")->trigger();
    QVERIFY(bench.box() != nullptr);
    QVERIFY2(bench.box()->text().startsWith(QStringLiteral("The earlier report could not be kept: ")),
             qPrintable(bench.box()->text()));
    bench.answer(QMessageBox::Ok);
    QCOMPARE(contentOf(pdf), QByteArray("of the last customer"));
}

void tst_VehicleFiles::stripSaysThatValuesAreOld()
{
    Bench bench;
    const auto *strip = bench.window->findChild<QWidget *>(QStringLiteral("valuesStrip"));
    QVERIFY(!strip->isVisible());
    bench.receiveValues();
    bench.host.services.bus().disconnectFromBus();
    QVERIFY(strip->isVisible());
    QVERIFY2(labelText(*bench.window, "valuesSentence").startsWith(QStringLiteral("Old values, read on ")),
             qPrintable(labelText(*bench.window, "valuesSentence")));
    QVERIFY(
        labelText(*bench.window, "valuesSentence").endsWith(QStringLiteral("the bus is not connected now.")));
    QCOMPARE(labelText(*bench.window, "valuesSign"), QStringLiteral("▲"));
}

void tst_VehicleFiles::stripNamesNodesThatFallSilent()
{
    Bench bench;
    const auto *strip = bench.window->findChild<QWidget *>(QStringLiteral("valuesStrip"));
    bench.receiveValues();
    static qint64 now;
    now = 1000;
    CanOpen::HeartbeatConsumer &heartbeats = bench.host.services.bus().heartbeats();
    heartbeats.setClock([] { return now; });
    bench.host.fake.heartbeat(1);
    QTRY_VERIFY(!strip->isVisible());
    now = 1500;
    bench.host.fake.heartbeat(1);
    now = 100000;
    heartbeats.checkTimeouts(now);
    QVERIFY(strip->isVisible());
    QVERIFY2(
        labelText(*bench.window, "valuesSentence").endsWith(QStringLiteral("no longer heard is node 1.")),
        qPrintable(labelText(*bench.window, "valuesSentence")));
}

QTEST_MAIN(tst_VehicleFiles)
#include "tst_vehiclefiles.moc"
