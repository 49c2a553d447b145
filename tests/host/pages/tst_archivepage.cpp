// SPDX-License-Identifier: MIT
#include "pageshost.h"

#include <archive/archive.h>
#include <archive/archivedatabase.h>
#include <host/core/pluginsession.h>
#include <host/core/settingsstore.h>
#include <host/mainwindow.h>
#include <host/pages/archivebrowser.h>
#include <host/pages/archivepage.h>
#include <host/pages/checkupsession.h>
#include <tests/support/markingtranslator.h>
#include <tests/support/vehiclesnapshot.h>
#include <tests/support/windowtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableView>

namespace {

Snapshot pedelec(const QDate &date, int healthPercent)
{
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    snapshot.time = QDateTime(date, QTime(10, 12), Qt::OffsetFromUTC, 0);
    VehicleSnapshot::setNumber(&snapshot, 2, {0x6176, 1}, healthPercent * 100, 2);
    return snapshot;
}

/*! The window on an archive with three visits of a pedelec and one of the full bus. */
class Window
{
public:
    Window()
        : m_host(SimulatedHost::stillVehicle(QStringLiteral("pedelec")))
        , m_plugins(&m_host.services())
    {
        fill();
        m_window = std::make_unique<MainWindow>(&m_host.services(), &m_plugins);
        m_window->checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
        m_window->showPlugins();
        m_window->resize(1000, 560);
        m_window->show();
        m_window->findChild<QAction *>(QStringLiteral("actionPageArchive"))->trigger();
        settle();
    }
    ~Window() { settle(); }
    Q_DISABLE_COPY(Window)

    template<typename Part = QWidget>
    Part *find(const char *name) const
    {
        auto *part = m_window->findChild<Part *>(QLatin1String(name));
        if (part == nullptr)
            qFatal("there is no %s", name);
        return part;
    }

    bool connectToBus() { return m_host.connectToBus(); }
    void settle() { waitForArchive(m_window->records()); }
    void press(const char *button)
    {
        find<QPushButton>(button)->click();
        settle();
    }
    void search(const QString &text)
    {
        find<QLineEdit>("archiveSearch")->setText(text);
        QTRY_VERIFY(browser().searchText() == text);
        settle();
    }
    int rows(const char *table) const { return find<QTableView>(table)->model()->rowCount(); }
    QString cell(const char *table, int row, int column) const
    {
        return find<QTableView>(table)->model()->index(row, column).data().toString();
    }
    /*! By what it is called. */
    void chooseVehicle(const QString &name)
    {
        for (int row = 0; row < rows("vehicleTable"); ++row) {
            if (cell("vehicleTable", row, 0) == name)
                find<QTableView>("vehicleTable")->selectRow(row);
        }
        settle();
    }

    ArchiveBrowser &browser() { return find<ArchivePage>("archivePage")->browser(); }
    CheckupSession &session() { return m_window->checkup(); }
    MainWindow &window() { return *m_window; }

    QString archiveFile() const { return m_archive.fileName(); }

    static QString pedelecName() { return QStringLiteral("Bike 7"); }

private:
    void fill()
    {
        Archive archive;
        QString error;
        const auto address = ArchiveAddress::parse(m_archive.fileName(), &error);
        if (!address || !archive.open(*address, Archive::Missing::Make, &error))
            qFatal("%s", qUtf8Printable(error));
        VisitExtras extras;
        extras.vehicleName = pedelecName();
        int health = 98;
        for (const QDate &date : {QDate(2026, 3, 12), QDate(2026, 6, 20), QDate(2026, 9, 3)}) {
            if (!archive.add(pedelec(date, health), extras, &error))
                qFatal("%s", qUtf8Printable(error));
            health -= 5;
        }
        Snapshot full = VehicleSnapshot::of(QStringLiteral("full-bus"));
        full.notes.customer = QStringLiteral("Cargo Collective");
        VisitExtras judged;
        judged.verdict = VisitVerdict{Verdict::Fault, 2, 1, 0, 0};
        judged.vehicleName = QStringLiteral("Cargo 1");
        if (!archive.add(full, judged, &error))
            qFatal("%s", qUtf8Printable(error));
    }

    OwnArchive m_archive;
    SimulatedHost m_host;
    PluginSession m_plugins;
    std::unique_ptr<MainWindow> m_window;
};

} // namespace

/*! The page of the archive as a person uses it. */
class tst_ArchivePage : public WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void listsVehiclesAndVisits();
    void anotherLanguageHasOtherWordsForVehicles();
    void findsBySerialNumber();
    void findsNothing();
    void opensAVisit();
    void opensAVisitWithTheNotesOfToday();
    void reportIsOfTheVisitAndSaysWhatHasChanged();
    void noReportWhileACheckupRuns();
    void comparesWithTheVisitBefore();
    void comparesTwo();
    void comparesTwoInTheOrderOfTheirTimes();
    void comparedVisitsHaveTheNotesThatTheyHaveNow();
    void answersThatCameTooLateAreNotShown();
    void firstVisitHasNothingBeforeIt();
    void showsAValueOverTime();
    void damagedVisitLeavesTheValuesOfTheOthers();
    void deletesAfterAsking();
    void importsAFile();
    void exportsAVisit();
    void newVisitComesInByItself();
    void wrongAddressIsRefused();
    void archiveThatIsAwayIsSaid();
};

void tst_ArchivePage::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_archivepage"));
    SettingsStore::instance().setValues({});
    QLocale::setDefault(QLocale::c());
}

void tst_ArchivePage::listsVehiclesAndVisits()
{
    Window window;
    QCOMPARE(window.rows("vehicleTable"), 2);
    window.chooseVehicle(Window::pedelecName());
    QCOMPARE(window.rows("visitTable"), 3);
    QCOMPARE(window.cell("visitTable", 0, 1), QStringLiteral("Not judged"));
    window.chooseVehicle(QStringLiteral("Cargo 1"));
    QCOMPARE(window.rows("visitTable"), 1);
    QCOMPARE(window.cell("visitTable", 0, 1), QStringLiteral("2 fault(s), 1 warning(s)"));
}

void tst_ArchivePage::anotherLanguageHasOtherWordsForVehicles()
{
    Window window;
    {
        QString error;
        ArchiveDatabase database;
        QVERIFY(database.open(*ArchiveAddress::parse(window.archiveFile(), &error),
                              ArchiveDatabase::Missing::Refuse));
        QVERIFY(database.run(QStringLiteral("UPDATE draxel_vehicle SET name = '', label = '' WHERE id = 1")));
    }
    window.browser().askAnew();
    window.settle();
    QCOMPARE(window.cell("vehicleTable", 0, 0), QStringLiteral("Vehicle 1"));
    const MarkingTranslator other("VisitRows");
    window.settle();
    QCOMPARE(window.cell("vehicleTable", 0, 0), QStringLiteral("[VisitRows:Vehicle 1]"));
}

void tst_ArchivePage::findsBySerialNumber()
{
    Window window;
    const Snapshot bike = VehicleSnapshot::of(QStringLiteral("pedelec"));
    window.search(QString::number(bike.find(2)->value(0x1018, 4).toUInt()));
    QCOMPARE(window.rows("vehicleTable"), 1);
    QCOMPARE(window.cell("vehicleTable", 0, 0), Window::pedelecName());
    QCOMPARE(window.rows("visitTable"), 3);
    window.search(QStringLiteral("cargo"));
    QCOMPARE(window.rows("vehicleTable"), 1);
    QCOMPARE(window.cell("vehicleTable", 0, 0), QStringLiteral("Cargo 1"));
}

void tst_ArchivePage::findsNothing()
{
    Window window;
    window.search(QStringLiteral("unicycle"));
    QCOMPARE(window.rows("vehicleTable"), 0);
    QVERIFY(window.find<QLabel>("archiveEmpty")->isVisible());
    QVERIFY(window.find<QLabel>("archiveEmpty")->text().startsWith(QStringLiteral("Nothing is found.")));
    window.search(QString());
    QCOMPARE(window.rows("vehicleTable"), 2);
}

void tst_ArchivePage::opensAVisit()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    window.press("visitOpen");
    QCOMPARE(window.session().record().source, CheckupRecord::Source::Archive);
    QCOMPARE(window.session().record().snapshot.time.date(), QDate(2026, 9, 3));
    QVERIFY(window.find<QWidget>("checkupPage")->isVisible());
    window.settle();
    QVERIFY(window.session().record().comparison);
    QCOMPARE(window.session().record().comparison->earlier.time.date(), QDate(2026, 6, 20));
}

void tst_ArchivePage::opensAVisitWithTheNotesOfToday()
{
    Window window;
    window.chooseVehicle(QStringLiteral("Cargo 1"));
    SnapshotNotes notes = window.browser().visits().first().notes;
    QCOMPARE(notes.customer, QStringLiteral("Cargo Collective"));
    notes.customer = QStringLiteral("Cargo Collective East");
    notes.note = QStringLiteral("New brakes");
    window.browser().setNotes(window.browser().visits().first().id, notes);
    window.settle();
    window.press("visitOpen");
    QCOMPARE(window.session().notes().customer, QStringLiteral("Cargo Collective East"));
    QCOMPARE(window.session().record().snapshot.notes.note, QStringLiteral("New brakes"));
}

void tst_ArchivePage::reportIsOfTheVisitAndSaysWhatHasChanged()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    window.press("visitReport");
    window.settle(); // what was before it is asked for, too
    QVERIFY(window.find<QDialog>("serviceReportDialog")->isVisible());
    QCOMPARE(window.session().record().snapshot.time.date(), QDate(2026, 9, 3));
    QVERIFY(window.find<QCheckBox>("compareReport")->isEnabled());
    QVERIFY(window.find<QCheckBox>("compareReport")->isChecked());
}

void tst_ArchivePage::noReportWhileACheckupRuns()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    QVERIFY(window.connectToBus());
    window.session().start(SnapshotScope::Quick, CheckupSession::Search::Heard);
    QVERIFY(window.session().isRunning());
    emit window.find<ArchivePage>("archivePage")->reportRequested(pedelec(QDate(2026, 9, 3), 88), 3);
    window.settle();
    QVERIFY(window.window().findChild<QDialog *>(QStringLiteral("serviceReportDialog")) == nullptr);
    auto *box = window.window().findChild<QMessageBox *>();
    QVERIFY(box != nullptr);
    QCOMPARE(
        box->text(),
        QStringLiteral("A check-up is running. Wait for its end or cancel it (Esc), then open the visit."));
    window.session().cancel();
}

void tst_ArchivePage::comparesWithTheVisitBefore()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    window.press("visitCompare");
    auto *table = window.find<QTableView>("comparisonTable");
    QCOMPARE(table->model()->rowCount(), 1);
    QCOMPARE(table->model()->index(0, 2).data().toString(), QStringLiteral("6176h.1"));
    QCOMPARE(table->model()->index(0, 3).data().toString(), QStringLiteral("93.00 %"));
    QCOMPARE(table->model()->index(0, 4).data().toString(), QStringLiteral("88.00 %"));
}

void tst_ArchivePage::comparesTwo()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    auto *visits = window.find<QTableView>("visitTable");
    visits->selectionModel()->select(visits->model()->index(0, 0),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    visits->selectionModel()->select(visits->model()->index(2, 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QVERIFY(!window.find<QPushButton>("visitOpen")->isEnabled());
    window.press("visitCompare");
    auto *table = window.find<QTableView>("comparisonTable");
    QCOMPARE(table->model()->index(0, 3).data().toString(), QStringLiteral("98.00 %"));
    QCOMPARE(table->model()->index(0, 4).data().toString(), QStringLiteral("88.00 %"));
}

void tst_ArchivePage::comparedVisitsHaveTheNotesThatTheyHaveNow()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    const qint64 newest = window.browser().visits().first().id;
    const qint64 oldest = window.browser().visits().last().id;
    SnapshotNotes notes;
    notes.customer = QStringLiteral("A. Customer");
    window.browser().setNotes(oldest, notes);
    notes.customer = QStringLiteral("B. Customer");
    window.browser().setNotes(newest, notes);
    QStringList customers;
    window.browser().loadTwo(newest, oldest, [&customers](const Snapshot &earlier, const Snapshot &later) {
        customers << earlier.notes.customer << later.notes.customer;
    });
    window.settle();
    QCOMPARE(customers, (QStringList{QStringLiteral("A. Customer"), QStringLiteral("B. Customer")}));
}

void tst_ArchivePage::comparesTwoInTheOrderOfTheirTimes()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    const qint64 newest = window.browser().visits().first().id;
    const qint64 oldest = window.browser().visits().last().id;
    QVector<QDate> dates;
    const auto take = [&dates](const Snapshot &earlier, const Snapshot &later) {
        dates.append(earlier.time.date());
        dates.append(later.time.date());
    };
    window.browser().loadTwo(newest, oldest, take);
    window.browser().loadTwo(oldest, newest, take);
    window.settle();
    QCOMPARE(dates,
             (QVector<QDate>{QDate(2026, 3, 12), QDate(2026, 9, 3), QDate(2026, 3, 12), QDate(2026, 9, 3)}));
}

void tst_ArchivePage::answersThatCameTooLateAreNotShown()
{
    Window window;
    ArchiveBrowser &browser = window.browser();
    QCOMPARE(browser.vehicles().size(), 2);
    const qint64 first = browser.vehicles().first().id;
    const qint64 last = browser.vehicles().last().id;
    const QSignalSpy searched(&browser, &ArchiveBrowser::vehiclesChanged);
    browser.search(QStringLiteral("nothing has this in it"));
    browser.search(QString()); // before that was answered
    window.settle();
    QCOMPARE(searched.count(), 1);
    QCOMPARE(browser.vehicles().size(), 2);

    browser.chooseVehicle(last);
    window.settle();
    const int ofLast = browser.visits().size();
    QSet<int> shown;
    connect(&browser, &ArchiveBrowser::visitsChanged, this,
            [&browser, &shown] { shown.insert(browser.visits().size()); });
    browser.chooseVehicle(first);
    browser.chooseVehicle(last);
    window.settle();
    QCOMPARE(shown, (QSet<int>{0, ofLast}));
}

void tst_ArchivePage::firstVisitHasNothingBeforeIt()
{
    Window window;
    window.chooseVehicle(QStringLiteral("Cargo 1"));
    window.press("visitCompare");
    auto *box = window.window().findChild<QMessageBox *>();
    QVERIFY(box != nullptr);
    QCOMPARE(box->text(), QStringLiteral("This is the first visit of the vehicle."));
}

void tst_ArchivePage::showsAValueOverTime()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    QVERIFY(window.find<QWidget>("trendPlot")->isVisible());
    QCOMPARE(window.browser().trend().size(), 3);
    QCOMPARE(TrendValues::number(0, window.browser().trend().first().value), 98.0);
    window.browser().chooseTrend(6); // the distance on a display
    window.settle();
    window.chooseVehicle(QStringLiteral("Cargo 1"));
    QCOMPARE(window.browser().trend().size(), 1);
}

void tst_ArchivePage::damagedVisitLeavesTheValuesOfTheOthers()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    QVERIFY(!window.find<QLabel>("trendProblem")->isVisible());
    ArchiveDatabase database;
    QString error;
    QVERIFY(database.open(*ArchiveAddress::parse(window.archiveFile(), &error),
                          ArchiveDatabase::Missing::Refuse));
    const QString spoil
        = QStringLiteral("UPDATE draxel_entries SET data = x'00' WHERE node > 0 AND visit %1");
    QVERIFY(database.run(spoil.arg(QStringLiteral("= 2"))));
    window.browser().chooseTrend(0);
    window.settle();
    QCOMPARE(window.browser().trend().size(), 2);
    QCOMPARE(TrendValues::number(0, window.browser().trend().at(0).value), 98.0);
    QCOMPARE(TrendValues::number(0, window.browser().trend().at(1).value), 88.0);
    QVERIFY(window.find<QWidget>("trendPlot")->isVisible());
    QVERIFY(window.find<QLabel>("trendProblem")->isVisible());
    QCOMPARE(
        window.find<QLabel>("trendProblem")->text(),
        QStringLiteral("▲ Visit 2 is damaged in the archive and cannot be shown. Take the last backup of "
                       "the archive; the other visits are not affected."));

    // Where nothing can be read it is not said that there is nothing.
    QVERIFY(database.run(spoil.arg(QStringLiteral("<= 3"))));
    window.browser().chooseTrend(0);
    window.settle();
    QCOMPARE(window.browser().trend().size(), 0);
    QVERIFY(!window.find<QLabel>("trendNone")->isVisible());
    window.chooseVehicle(QStringLiteral("Cargo 1"));
    QVERIFY(!window.find<QLabel>("trendProblem")->isVisible());
}

void tst_ArchivePage::deletesAfterAsking()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    window.find<QAction>("visitDelete")->trigger();
    QCOMPARE(window.rows("visitTable"), 3);
    auto *box = window.find<QMessageBox>("deleteQuestion");
    QCOMPARE(box->defaultButton()->text(), QStringLiteral("Cancel"));
    window.press("deleteYes");
    QCOMPARE(window.rows("visitTable"), 2);
    QCOMPARE(window.browser().visits().first().time.date(), QDate(2026, 6, 20));
}

void tst_ArchivePage::importsAFile()
{
    Window window;
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("none.dxsnap"));
    window.browser().importFile(file);
    window.settle();
    auto *box = window.window().findChild<QMessageBox *>();
    QVERIFY(box != nullptr);
    QVERIFY2(box->text().contains(QStringLiteral("none.dxsnap")), qPrintable(box->text()));
    QCOMPARE(window.rows("vehicleTable"), 2);
}

void tst_ArchivePage::exportsAVisit()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("visit.dxsnap"));
    window.browser().exportVisit(window.browser().visits().first().id, file);
    window.settle();
    QVERIFY(QFileInfo::exists(file));
    window.browser().remove({window.browser().visits().first().id});
    window.settle();
    QCOMPARE(window.browser().visits().size(), 2);
    window.browser().importFile(file);
    window.settle();
    QCOMPARE(window.browser().visits().size(), 3);
    QCOMPARE(window.browser().visits().first().time.date(), QDate(2026, 9, 3));
}

void tst_ArchivePage::newVisitComesInByItself()
{
    Window window;
    window.chooseVehicle(Window::pedelecName());
    window.window().records().keep(pedelec(QDate(2026, 11, 1), 80), std::nullopt);
    window.settle();
    window.settle(); // the list is asked for again
    QCOMPARE(window.rows("visitTable"), 4);
}

void tst_ArchivePage::wrongAddressIsRefused()
{
    Window window;
    window.find<QPushButton>("archiveAddress")->click();
    window.find<QRadioButton>("archiveOther")->setChecked(true);
    window.find<QLineEdit>("archiveAddressEdit")->setText(QStringLiteral("postgresql://"));
    auto *dialog = window.find<QDialog>("archiveAddressDialog");
    dialog->accept();
    QVERIFY(dialog->isVisible());
    QVERIFY(!window.find<QLabel>("archiveAddressProblem")->text().isEmpty());
}

void tst_ArchivePage::archiveThatIsAwayIsSaid()
{
    Window window;
    qputenv("DRAXEL_ARCHIVE", "/proc/none/here.dxarchive");
    window.window().records().reopen();
    window.settle();
    window.browser().search(QString());
    window.settle();
    QVERIFY(window.find<QLabel>("archiveProblem")->isVisible());
    QVERIFY2(window.find<QLabel>("archiveProblem")->text().startsWith(QStringLiteral("▲ ")),
             qPrintable(window.find<QLabel>("archiveProblem")->text()));
}

QTEST_MAIN(tst_ArchivePage)
#include "tst_archivepage.moc"
