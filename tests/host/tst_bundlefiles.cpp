// SPDX-License-Identifier: MIT
#include "hostfixture.h"

#include <bundle/bundlefile.h>
#include <checkup/ruleset.h>
#include <host/bundledialog.h>
#include <host/bundlefiles.h>
#include <host/mainwindow.h>
#include <host/pages/checkupsession.h>
#include <host/pages/trace/tracesession.h>
#include <store/exchangefile.h>
#include <store/nodestore.h>
#include <tests/support/busypool.h>
#include <tests/support/filedialogdriver.h>
#include <tests/trace/frames.h>
#include <trace/files/tracefile.h>

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QToolButton>
#include <QtTest>

namespace {

constexpr quint32 serial = 1031904;

QDateTime noon(int second = 0)
{
    return QDateTime(QDate(2026, 11, 22), QTime(12, 0, second), Qt::UTC);
}

Snapshot someSnapshot()
{
    Snapshot snapshot;
    snapshot.program = QStringLiteral("test 1.0");
    snapshot.time = noon();
    snapshot.bus = QStringLiteral("socketcan:can7");
    snapshot.notes.customer = QStringLiteral("Erika Mustermann");
    SnapshotNode node;
    node.id = 2;
    const auto put = [&node](CanOpen::ObjectKey key, uint value) {
        SnapshotEntry entry;
        entry.key = key;
        entry.type = CanOpen::DataType::Unsigned32;
        entry.value = value;
        entry.raw = *CanOpen::encodeValue(*entry.type, entry.value);
        node.insert(entry);
    };
    put({0x1018, 4}, serial);
    put({0x1800, 1}, 0x182);
    put({0x1A00, 0}, 1);
    put({0x1A00, 1}, 0x10180420); // the serial number, in a PDO
    snapshot.nodes.append(node);
    return snapshot;
}

SupportBundle someBundle()
{
    SupportBundle bundle;
    bundle.program = QStringLiteral("test 1.0");
    bundle.time = noon(5);
    bundle.isMasked = true;
    bundle.snapshot = someSnapshot();
    bundle.trace.emplace();
    bundle.trace->head = {{QStringLiteral("can7")}, true};
    const qint64 begin = noon().toMSecsSinceEpoch() * 1000;
    bundle.trace->frames.push_back(frameAt(begin + second, 0x702, "00"));
    bundle.trace->frames.push_back(frameAt(begin + 2 * second, 0x182, "e0be0f00"));
    bundle.trace->frames.push_back(frameAt(begin + 3 * second, 0x082, "1042010000000000"));
    LiveEvent event;
    event.kind = EventKind::NodeHeard;
    event.nodeId = 2;
    event.time = event.lastTime = begin + second;
    bundle.events.push_back(event);
    event.kind = EventKind::Emergency;
    event.code = 0x4210;
    event.time = event.lastTime = begin + 3 * second;
    bundle.events.push_back(event);
    bundle.forgottenEvents = 7;
    bundle.messages = {{noon(4), Severity::Fault, QStringLiteral("The adapter was lost.")}};
    return bundle;
}

/*! Lets the background come to its end, and what follows it. */
void settle()
{
    for (int turn = 0; turn < 5; ++turn) {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }
}

/*! A table of a page, which is there when it was looked at. */
QTableView *tableOf(const QWidget &window, const char *page, const char *name)
{
    window.findChild<QAction *>(QLatin1String(page))->trigger();
    return window.findChild<QTableView *>(QLatin1String(name));
}

QString boxText(const QWidget &window)
{
    const auto *box = window.findChild<QMessageBox *>();
    return box != nullptr ? box->text() : QString();
}

} // namespace

/*! Support bundles in the window: opened as if one sat before the vehicle, and made of what it knows. */
class tst_BundleFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void everyPageHasItsPart();
    void messagesHaveTheirTimes();
    void eventLeadsToItsFrames();
    void framesLeadToTheirEvent();
    void connectingShowsTheBusAgain();
    void eventsAreNotShownWhileConnected();
    void bundleWithoutAVehicle();
    void badBundleChangesNothing();
    void bundleThatLoadsLongIsNotShownOverALaterFile();
    void problemsAreTold();
    void savesWhatIsShown();
    void savesOneVehicleOnly();
    void savesMasked();
    void asksHowItIsToBe();
    void comparesWithABundle();

private:
    QString write(const SupportBundle &bundle, const char *name = "b.zip") const;
    std::optional<SupportBundle> read(const char *name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

QString tst_BundleFiles::write(const SupportBundle &bundle, const char *name) const
{
    const QString fileName = m_folder->filePath(QLatin1String(name));
    QString error;
    if (!BundleFile::save(fileName, bundle, RuleSet(), QStringLiteral("en"), &error))
        qFatal("%s", qPrintable(error));
    return fileName;
}

std::optional<SupportBundle> tst_BundleFiles::read(const char *name) const
{
    QString error;
    return BundleFile::load(m_folder->filePath(QLatin1String(name)), &error);
}

void tst_BundleFiles::everyPageHasItsPart()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    window.openFile(write(someBundle()));
    settle();
    QCOMPARE(boxText(window), QString());
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("checkupPage"))->isVisible());
    QCOMPARE(window.checkup().record().snapshot.find(2)->value(0x1018, 4).toUInt(), serial);
    QCOMPARE(window.checkup().record().fileName, m_folder->filePath(QStringLiteral("b.zip")));
    QCOMPARE(tableOf(window, "actionPageTrace", "traceTable")->model()->rowCount(), 3);
    QCOMPARE(tableOf(window, "actionPageLive", "eventTable")->model()->rowCount(), 2);
    QVERIFY(
        window.messages().toText().contains(QLatin1String("This is a support bundle of test 1.0, made ")));
    QVERIFY(window.messages().toText().contains(QLatin1String("Serial numbers and names are masked.")));
}

void tst_BundleFiles::messagesHaveTheirTimes()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.openFile(write(someBundle()));
    settle();
    int row = 0;
    while (row < window.messages().rowCount()
           && window.messages().text(row) != QLatin1String("The adapter was lost."))
        ++row;
    QVERIFY(row < window.messages().rowCount());
    QCOMPARE(window.messages().time(row), noon(4));
    QCOMPARE(window.messages().severity(row), MessageLog::Severity::Error);
}

void tst_BundleFiles::eventLeadsToItsFrames()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    window.openFile(write(someBundle()));
    settle();
    auto *events = tableOf(window, "actionPageLive", "eventTable");
    emit events->clicked(events->model()->index(1, 0));
    settle();
    QVERIFY(!window.trace().isLive());
    QCOMPARE(tableOf(window, "actionPageTrace", "traceTable")->currentIndex().row(), 2);
}

void tst_BundleFiles::framesLeadToTheirEvent()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    window.openFile(write(someBundle()));
    settle();
    auto *frames = tableOf(window, "actionPageTrace", "traceTable");
    auto *button = window.findChild<QToolButton *>(QStringLiteral("traceEvents"));
    QVERIFY(button->isVisible());
    frames->selectRow(2);
    button->click();
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("livePage"))->isVisible());
    const auto *events = window.findChild<QTableView *>(QStringLiteral("eventTable"));
    QCOMPARE(events->currentIndex().row(), 1);
    const QString other = m_folder->filePath(QStringLiteral("other.log"));
    QString error;
    QVERIFY(TraceFile::save(other, *someBundle().trace, &error));
    window.trace().open(other); // of which there are no events
    settle();
    tableOf(window, "actionPageTrace", "traceTable");
    QVERIFY(!button->isVisible());
}

void tst_BundleFiles::connectingShowsTheBusAgain()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.openFile(write(someBundle()));
    settle();
    window.chooseBus(fakeSettings());
    window.connectToChosenBus();
    QCOMPARE(window.findChild<QTableView *>(QStringLiteral("eventTable"))->model()->rowCount(), 0);
    host.services.bus().disconnectFromBus();
}

void tst_BundleFiles::eventsAreNotShownWhileConnected()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.chooseBus(fakeSettings());
    window.connectToChosenBus();
    window.openFile(write(someBundle()));
    settle();
    QCOMPARE(window.findChild<QTableView *>(QStringLiteral("eventTable"))->model()->rowCount(), 0);
    QVERIFY(window.messages().toText().contains(
        QLatin1String("The events of the bundle are not shown while a bus is connected.")));
    host.services.bus().disconnectFromBus();
}

void tst_BundleFiles::bundleWithoutAVehicle()
{
    SupportBundle bundle = someBundle();
    bundle.snapshot.reset();
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    window.openFile(write(bundle));
    settle();
    QVERIFY(window.findChild<QWidget *>(QStringLiteral("tracePage"))->isVisible());
    QVERIFY(window.checkup().isEmpty());
}

void tst_BundleFiles::badBundleChangesNothing()
{
    QFile file(m_folder->filePath(QStringLiteral("bad.zip")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("PK\x03\x04 cut");
    file.close();
    Host host;
    MainWindow window(&host.services, &host.session);
    window.openFile(write(someBundle()));
    settle();
    window.openFile(file.fileName());
    settle();
    QVERIFY2(
        boxText(window).startsWith(
            QStringLiteral("The support bundle %1 cannot be opened: it is damaged").arg(file.fileName())),
        qPrintable(boxText(window)));
    QVERIFY(!window.checkup().isEmpty());
    QCOMPARE(window.findChild<QTableView *>(QStringLiteral("eventTable"))->model()->rowCount(), 2);
}

void tst_BundleFiles::bundleThatLoadsLongIsNotShownOverALaterFile()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    const QString later = m_folder->filePath(QStringLiteral("later.dxxml"));
    NodeStore store;
    store.appendNode(9);
    store.setValue(9, 0x6000, 0, 1);
    QString problem;
    QVERIFY2(saveExchangeFile(later, exportToText(store, noon()), &problem), qPrintable(problem));
    BusyPool busy; // has no time for the bundle before the other file is shown
    window.openFile(write(someBundle()));
    window.openFile(later);
    QCoreApplication::sendPostedEvents(); // it is shown,
    QCoreApplication::sendPostedEvents(); // and judged
    QCOMPARE(boxText(window), QString());
    QCOMPARE(window.checkup().record().fileName, later);
    busy.release();
    settle();
    QCOMPARE(window.checkup().record().fileName, later);
    QVERIFY(window.trace().isLive());
    QVERIFY(!window.messages().toText().contains(QLatin1String("This is a support bundle")));
}

void tst_BundleFiles::problemsAreTold()
{
    const QString name = write(someBundle());
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QString problem;
    QVERIFY(BundleFile::fromBytes(file.readAll(), &problem));
    file.close();
    SupportBundle bundle = someBundle();
    bundle.problems.append(QStringLiteral("trace.log.gz of the bundle was not opened: It is missing."));
    Host host;
    MainWindow window(&host.services, &host.session);
    emit window.bundles().opened(std::make_shared<SupportBundle>(bundle), name);
    settle();
    QVERIFY(window.messages().toText().contains(bundle.problems.first()));
}

void tst_BundleFiles::savesWhatIsShown()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.openFile(write(someBundle()));
    settle();
    window.bundles().write(m_folder->filePath(QStringLiteral("again.zip")), false);
    settle();
    QCOMPARE(boxText(window), QString());
    const std::optional<SupportBundle> again = read("again.zip");
    QVERIFY(again);
    QCOMPARE(again->problems, QStringList());
    QVERIFY(!again->isMasked);
    QCOMPARE(again->snapshot->notes.customer, QStringLiteral("Erika Mustermann"));
    QVERIFY(again->trace->frames == someBundle().trace->frames);
    QCOMPARE(again->events.size(), std::size_t(2));
    QCOMPARE(again->events[1].time, someBundle().events[1].time);
    QCOMPARE(again->forgottenEvents, quint64(7));
    QVERIFY(again->messages.size() >= 2);
    QVERIFY(window.messages().toText().contains(QLatin1String("Saved: ")));
}

/*! The bundle that is shown, and then the bus, whatever was heard or opened before. */
void tst_BundleFiles::savesOneVehicleOnly()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    const auto hear = [&host, &window](quint8 node) {
        window.chooseBus(fakeSettings());
        window.connectToChosenBus();
        host.fake.heartbeat(node);
        QTest::qWait(500);
        host.services.bus().disconnectFromBus();
        settle();
    };
    const auto save = [this, &window] {
        window.bundles().write(m_folder->filePath(QStringLiteral("again.zip")), false);
        settle();
        return read("again.zip").value_or(SupportBundle());
    };
    hear(9);
    window.openFile(write(someBundle()));
    settle();
    QVERIFY(save().trace->frames == someBundle().trace->frames);
    SupportBundle withoutTrace = someBundle();
    withoutTrace.trace.reset();
    withoutTrace.events.clear();
    window.openFile(write(withoutTrace, "none.zip"));
    settle();
    QVERIFY(!save().trace);
    QCOMPARE(save().events.size(), std::size_t(0));

    window.openFile(write(someBundle())); // whose frames the page goes on to show
    settle();
    hear(8);
    const SupportBundle ofBus = save();
    QCOMPARE(ofBus.trace->frames.size(), std::size_t(1));
    QCOMPARE(ofBus.trace->frames[0].id, 0x708U);
    QCOMPARE(ofBus.forgottenEvents, quint64(0));
    QCOMPARE(ofBus.events.size(), std::size_t(1));
    QCOMPARE(int(ofBus.events[0].nodeId), 8);
}

void tst_BundleFiles::savesMasked()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.openFile(write(someBundle()));
    settle();
    window.bundles().write(m_folder->filePath(QStringLiteral("masked.zip")), true);
    settle();
    const std::optional<SupportBundle> masked = read("masked.zip");
    QVERIFY(masked);
    QVERIFY(masked->isMasked);
    const quint32 number = masked->snapshot->find(2)->value(0x1018, 4).toUInt();
    QVERIFY(number != serial);
    const TraceFrame &pdo = masked->trace->frames[1];
    QCOMPARE(quint32(pdo.bytes[0] | pdo.bytes[1] << 8 | pdo.bytes[2] << 16) | quint32(pdo.bytes[3]) << 24,
             number);
    QVERIFY(masked->snapshot->notes.customer.startsWith(QLatin1String("masked-")));
    for (const BundleMessage &message : masked->messages)
        QVERIFY2(!message.text.contains(m_folder->path()), qPrintable(message.text));
}

void tst_BundleFiles::asksHowItIsToBe()
{
    Host host;
    MainWindow window(&host.services, &host.session);
    window.show();
    window.findChild<QAction *>(QStringLiteral("actionSaveBundle"))->trigger();
    auto *dialog = window.findChild<BundleDialog *>();
    QVERIFY(dialog != nullptr);
    QVERIFY(!dialog->isMasked());
    dialog->findChild<QCheckBox *>(QStringLiteral("bundleMask"))->setChecked(true);
    FileDialogDriver driver(m_folder->filePath(QStringLiteral("asked.zip")));
    dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
    QTRY_COMPARE(driver.dialogs().size(), 1);
    QCOMPARE(driver.dialogs().first().suggestedFile, QStringLiteral("support bundle.zip"));
    settle();
    QTRY_VERIFY(QFile::exists(m_folder->filePath(QStringLiteral("asked.zip"))));
    const std::optional<SupportBundle> asked = read("asked.zip");
    QVERIFY(asked);
    QVERIFY(asked->isMasked);
    QVERIFY(!asked->snapshot);
    QVERIFY(!asked->trace);
}

void tst_BundleFiles::comparesWithABundle()
{
    QString error;
    const std::optional<Snapshot> loaded = BundleFiles::loadSnapshot(write(someBundle()), &error);
    QVERIFY2(loaded, qPrintable(error));
    QCOMPARE(loaded->find(2)->value(0x1018, 4).toUInt(), serial);
    SupportBundle bundle = someBundle();
    bundle.snapshot.reset();
    const QString name = write(bundle, "none.zip");
    QVERIFY(!BundleFiles::loadSnapshot(name, &error));
    QCOMPARE(error, QStringLiteral("The support bundle %1 has no snapshot that can be used.").arg(name));
}

QTEST_MAIN(tst_BundleFiles)
#include "tst_bundlefiles.moc"
