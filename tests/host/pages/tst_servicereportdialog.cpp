// SPDX-License-Identifier: MIT
#include "pageshost.h"

#include <archive/archivetransfer.h>
#include <host/core/settingsstore.h>
#include <host/pages/checkupsession.h>
#include <host/pages/servicereportdialog.h>
#include <servicereport/reportlanguage.h>
#include <snapshot/snapshotfile.h>
#include <tests/support/vehiclesnapshot.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCryptographicHash>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>

namespace {

/*! As sha256sum writes it. */
QByteArray sha256Of(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly)
               ? QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex()
               : QByteArray();
}

/*! A session that shows a vehicle, and a folder for its reports. */
struct Desk
{
    Desk()
        : host(SimulatedHost::stillVehicle(QStringLiteral("pedelec")))
        , records(&host.services(), QStringLiteral("test 1"))
        , session(&host.services(), &records)
    {
        session.setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
        session.setLanguage(QStringLiteral("en"));
        session.showFile(VehicleSnapshot::of(QStringLiteral("pedelec")), QStringLiteral("/x.dxsnap"));
    }

    QByteArray html() const
    {
        const QStringList names = QDir(folder.path()).entryList({QStringLiteral("*.html")});
        QFile file(folder.filePath(names.value(0)));
        return names.size() == 1 && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QString makeLogo() const
    {
        QImage logo(30, 12, QImage::Format_RGB32);
        logo.fill(Qt::darkGreen);
        const QString path = folder.filePath(QStringLiteral("logo.png"));
        logo.save(path);
        return path;
    }

    OwnArchive archive;
    SimulatedHost host;
    VehicleRecords records;
    CheckupSession session;
    QTemporaryDir folder;
};

/*! The dialog, with what it says. It goes by itself. */
struct Asking
{
    explicit Asking(Desk *desk)
        : dialog(new ServiceReportDialog(&desk->session, desk->folder.path()))
        , written(dialog, &ServiceReportDialog::written)
        , failed(dialog, &ServiceReportDialog::failed)
    {
        dialog->findChild<QCheckBox *>(QStringLiteral("showReport"))->setChecked(false);
        dialog->open();
    }
    ~Asking() { delete dialog; }
    Q_DISABLE_COPY(Asking)

    QLineEdit *line(const char *name) const { return dialog->findChild<QLineEdit *>(QLatin1String(name)); }
    QPlainTextEdit *address() const
    {
        return dialog->findChild<QPlainTextEdit *>(QStringLiteral("workshopLines"));
    }

    void write()
    {
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
        waitUntil([this] { return dialog.isNull(); });
    }

    QPointer<ServiceReportDialog> dialog;
    QSignalSpy written;
    QSignalSpy failed;
};

} // namespace

/*! What is asked before a service report is written, and that it is. */
class tst_ServiceReportDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { SettingsStore::instance().setValues({}); }

    void writesBothFiles();
    void remembersTheWorkshop();
    void logoStandsInTheReport();
    void reportIsWrittenWithoutABrokenLogo();
    void saysWhyNothingIsWritten();
    void choosesLogoAndFolder();
    void emptyWorkshopIsNone();
    void partsStandBelowEachOther();
    void offersLanguages();
    void comparesWhenItIsWanted_data();
    void comparesWhenItIsWanted();
    void offersToCompareOnceThePastIsKnown();
    void fingerprintIsThatOfTheFiles();
    void cancelWritesNothing();
};

void tst_ServiceReportDialog::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_servicereportdialog"));
}

void tst_ServiceReportDialog::writesBothFiles()
{
    Desk desk;
    Asking asking(&desk);
    asking.line("workshopName")->setText(QStringLiteral("Bikes & Batteries"));
    asking.address()->setPlainText(QStringLiteral("Hill Road 3\nSome Town"));
    asking.write();
    QCOMPARE(asking.failed.size(), 0);
    QCOMPARE(asking.written.size(), 1);
    const QStringList files = QDir(desk.folder.path()).entryList(QDir::Files);
    QCOMPARE(files.size(), 2);
    for (const QString &file : files)
        QVERIFY(asking.written.at(0).at(0).toString().contains(file));
    const QByteArray html = desk.html();
    QVERIFY(html.contains("Bikes &amp; Batteries"));
    QVERIFY2(html.contains("<html lang=\"en"), html.left(300));
    for (const SnapshotNode &node : desk.session.record().snapshot.nodes)
        QVERIFY2(html.contains(QStringLiteral("node %1").arg(node.id).toUtf8()), html.left(4000));
    QVERIFY(html.contains("Hill Road 3\nSome Town"));
    QVERIFY(!html.contains("data:image/png"));
}

void tst_ServiceReportDialog::remembersTheWorkshop()
{
    Desk desk;
    const QString logo = desk.makeLogo();
    Asking first(&desk);
    QCOMPARE(first.line("workshopName")->text(), QString());
    first.line("workshopName")->setText(QStringLiteral("Bikes"));
    first.address()->setPlainText(QStringLiteral("Hill Road 3\nSome Town"));
    first.line("workshopLogo")->setText(logo);
    first.write();
    const Asking next(&desk);
    QCOMPARE(next.line("workshopName")->text(), QStringLiteral("Bikes"));
    QCOMPARE(next.address()->toPlainText(), QStringLiteral("Hill Road 3\nSome Town"));
    QCOMPARE(next.line("workshopLogo")->text(), logo);
    // The command line takes the workshop from there, too.
    const WorkshopSettings kept = WorkshopSettings::load(SettingsStore::instance().values());
    QCOMPARE(kept.name, QStringLiteral("Bikes"));
    QCOMPARE(kept.lines, (QStringList{QStringLiteral("Hill Road 3"), QStringLiteral("Some Town")}));
    QCOMPARE(kept.logoFile, logo);
}

void tst_ServiceReportDialog::logoStandsInTheReport()
{
    Desk desk;
    Asking asking(&desk);
    asking.line("workshopLogo")->setText(desk.makeLogo());
    asking.write();
    QCOMPARE(asking.failed.size(), 0);
    QVERIFY(desk.html().contains("data:image/png;base64,"));
}

void tst_ServiceReportDialog::reportIsWrittenWithoutABrokenLogo()
{
    Desk desk;
    Asking asking(&desk);
    asking.line("workshopLogo")->setText(desk.folder.filePath(QStringLiteral("gone.png")));
    asking.write();
    QCOMPARE(asking.written.size(), 1);
    QCOMPARE(asking.failed.size(), 1);
    QCOMPARE(asking.failed.at(0).at(0).toString(),
             QStringLiteral("The logo %1 cannot be read: no such file or folder.")
                 .arg(desk.folder.filePath(QStringLiteral("gone.png"))));
    QVERIFY(!desk.html().isEmpty());
    QVERIFY(!desk.html().contains("data:image/png"));
}

void tst_ServiceReportDialog::saysWhyNothingIsWritten()
{
    Desk desk;
    Asking asking(&desk);
    asking.line("reportFolder")->setText(desk.folder.filePath(QStringLiteral("no such folder")));
    asking.write();
    QCOMPARE(asking.written.size(), 0);
    QCOMPARE(asking.failed.size(), 1);
    QVERIFY(asking.failed.at(0).at(0).toString().contains(QStringLiteral("no such folder")));
    QCOMPARE(QDir(desk.folder.path()).entryList(QDir::Files), QStringList());
}

void tst_ServiceReportDialog::choosesLogoAndFolder()
{
    Desk desk;
    const QString logo = desk.makeLogo();
    const Asking asking(&desk);
    asking.line("workshopLogo")->setText(desk.folder.filePath(QStringLiteral("old.png")));
    asking.dialog->findChild<QPushButton *>(QStringLiteral("browseLogo"))->click();
    auto *logoDialog = asking.dialog->findChild<QFileDialog *>();
    QVERIFY(logoDialog != nullptr);
    QVERIFY(logoDialog->isVisible());
    QCOMPARE(logoDialog->directory().path(), desk.folder.path());
    emit logoDialog->fileSelected(logo);
    QCOMPARE(asking.line("workshopLogo")->text(), logo);
    delete logoDialog;
    asking.line("workshopLogo")->setText(QStringLiteral("/no such folder/logo.png"));
    asking.dialog->findChild<QPushButton *>(QStringLiteral("browseLogo"))->click();
    logoDialog = asking.dialog->findChild<QFileDialog *>();
    QCOMPARE(logoDialog->directory().path(), QDir::homePath());
    QCOMPARE(logoDialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text(), QString());
    delete logoDialog;
    asking.line("workshopLogo")->setText(logo);
    asking.dialog->findChild<QPushButton *>(QStringLiteral("browseFolder"))->click();
    auto *folderDialog = asking.dialog->findChild<QFileDialog *>();
    QVERIFY(folderDialog != nullptr);
    QVERIFY(folderDialog->isVisible());
    QVERIFY(folderDialog->fileMode() == QFileDialog::Directory);
    emit folderDialog->fileSelected(QStringLiteral("/somewhere"));
    QCOMPARE(asking.line("reportFolder")->text(), QStringLiteral("/somewhere"));
    QCOMPARE(asking.line("workshopLogo")->text(), logo);
}

void tst_ServiceReportDialog::emptyWorkshopIsNone()
{
    Desk desk;
    Asking asking(&desk);
    asking.write();
    QCOMPARE(asking.written.size(), 1);
    QCOMPARE(WorkshopSettings::load(SettingsStore::instance().values()).lines, QStringList());
    QVERIFY(!SettingsStore::instance().value(QStringLiteral("workshop/lines")).isValid());
    QVERIFY(!desk.html().contains("class=\"shoplines"));
}

void tst_ServiceReportDialog::partsStandBelowEachOther()
{
    Desk desk;
    const Asking asking(&desk);
    const ServiceReportDialog *dialog = asking.dialog;
    int bottom = -1;
    for (const char *name : {"reportLanguage", "workshopName", "workshopLines", "workshopLogo",
                             "reportFolder", "compareReport", "showReport", "reportButtons"}) {
        const auto *part = dialog->findChild<QWidget *>(QLatin1String(name));
        QVERIFY2(part != nullptr && part->isVisible(), name);
        QVERIFY2(dialog->rect().contains(part->geometry()), name);
        QVERIFY2(part->geometry().top() > bottom, name);
        bottom = part->geometry().bottom();
    }
    for (const char *name : {"browseLogo", "browseFolder"}) {
        const auto *button = dialog->findChild<QPushButton *>(QLatin1String(name));
        QVERIFY(button->isVisible());
        QVERIFY(button->geometry().left() > asking.line("workshopLogo")->geometry().right());
    }
    QStringList labels;
    for (const QLabel *label : dialog->findChildren<QLabel *>()) {
        if (label->buddy() != nullptr)
            labels.append(label->text());
    }
    labels.sort();
    QCOMPARE(labels, (QStringList{QStringLiteral("&Address:"), QStringLiteral("&Folder:"),
                                  QStringLiteral("&Language:"), QStringLiteral("&Workshop:"),
                                  QStringLiteral("Lo&go:")}));
    QCOMPARE(dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->text(),
             QStringLiteral("Write &report"));
    QCOMPARE(asking.line("workshopLogo")->placeholderText(), QStringLiteral("None"));
}

/*! Those whose texts are there, and that of the program is chosen. */
void tst_ServiceReportDialog::offersLanguages()
{
    Desk desk;
    const QStringList available = ReportLanguage::available();
    desk.session.setLanguage(available.last());
    const Asking asking(&desk);
    const auto *languages = asking.dialog->findChild<QComboBox *>(QStringLiteral("reportLanguage"));
    QCOMPARE(languages->count(), available.size());
    QCOMPARE(languages->currentData().toString(), available.last());
    QCOMPARE(languages->itemText(languages->findData(QStringLiteral("en"))), QStringLiteral("English"));
}

void tst_ServiceReportDialog::comparesWhenItIsWanted_data()
{
    QTest::addColumn<int>("visits");
    QTest::addColumn<bool>("isWanted");
    QTest::addColumn<bool>("isThere");
    QTest::newRow("as it is offered") << 2 << true << true;
    QTest::newRow("not wanted") << 2 << false << false;
    QTest::newRow("nothing to compare with") << 1 << true << false;
}

void tst_ServiceReportDialog::comparesWhenItIsWanted()
{
    QFETCH(int, visits);
    QFETCH(bool, isWanted);
    QFETCH(bool, isThere);
    Desk desk;
    QVERIFY(desk.host.connectToBus());
    for (int visit = 0; visit < visits; ++visit) {
        desk.session.start(SnapshotScope::Quick, CheckupSession::Search::Heard);
        waitUntil([&desk] { return !desk.session.isRunning(); });
        waitForArchive(desk.records);
    }
    Asking asking(&desk);
    auto *compare = asking.dialog->findChild<QCheckBox *>(QStringLiteral("compareReport"));
    QCOMPARE(compare->isEnabled(), visits > 1);
    QCOMPARE(compare->isChecked(), visits > 1);
    if (!isWanted)
        compare->setChecked(false);
    asking.write();
    QCOMPARE(desk.html().contains("What has changed since"), isThere);
}

void tst_ServiceReportDialog::offersToCompareOnceThePastIsKnown()
{
    Desk desk;
    Snapshot later = desk.session.record().snapshot;
    later.time = later.time.addDays(1);
    desk.records.keep(desk.session.record().snapshot, std::nullopt);
    qint64 visitId = 0;
    desk.records.keep(later, std::nullopt, [&visitId](const VehicleRecords::Keeping &keeping) {
        visitId = keeping.visit.visitId;
    });
    waitForArchive(desk.records);
    QCOMPARE(visitId, 2);

    desk.session.showVisit(later, visitId);
    Asking asking(&desk); // before the archive has answered
    auto *compare = asking.dialog->findChild<QCheckBox *>(QStringLiteral("compareReport"));
    QVERIFY(!compare->isEnabled());
    QVERIFY(!compare->isChecked());
    waitForArchive(desk.records);
    QVERIFY(compare->isEnabled());
    QVERIFY(compare->isChecked());
    compare->setChecked(false);
    desk.session.noteSaved(QStringLiteral("/x.dxsnap")); // what the user has chosen stays
    QVERIFY(!compare->isChecked());
    compare->setChecked(true);
    asking.write();
    QVERIFY(desk.html().contains("What has changed since"));
}

/*! As docs/archive.md says how to look whether report and record belong together. */
void tst_ServiceReportDialog::fingerprintIsThatOfTheFiles()
{
    Desk desk;
    desk.session.keep();
    waitForArchive(desk.records);
    const qint64 visitId = desk.session.record().visitId.value_or(0);
    QCOMPARE(visitId, 1);
    SnapshotNotes notes = desk.session.notes();
    notes.note = QStringLiteral("The chain was oiled.");
    desk.session.setNotes(notes);
    waitForArchive(desk.records);

    const QString exported = desk.folder.filePath(QStringLiteral("exported.dxsnap"));
    bool isExported = false;
    desk.records.archive().ask(
        this,
        [visitId, exported](Archive &archive, QString *error) {
            return ArchiveTransfer::exportToFile(archive, visitId, exported, error);
        },
        [&isExported](bool isDone, const QString &) { isExported = isDone; });
    waitForArchive(desk.records);
    QVERIFY(isExported);
    const QString saved = desk.folder.filePath(QStringLiteral("saved.dxsnap"));
    QString problem;
    QVERIFY2(SnapshotFile::save(saved, desk.session.record().snapshot, &problem), qPrintable(problem));
    QVERIFY(sha256Of(exported) != sha256Of(saved));

    Asking asking(&desk);
    asking.write();
    const QByteArray html = desk.html();
    QCOMPARE(html.count("Its fingerprint (SHA-256) is:"), 1);
    QCOMPARE(html.count(sha256Of(exported)), 1);
    QCOMPARE(html.count("Saved with the notes that were entered since, its file has the fingerprint:"), 1);
    QCOMPARE(html.count(sha256Of(saved)), 1);
    QVERIFY(html.indexOf(sha256Of(exported)) < html.indexOf(sha256Of(saved)));
}

void tst_ServiceReportDialog::cancelWritesNothing()
{
    Desk desk;
    Asking asking(&desk);
    asking.line("workshopName")->setText(QStringLiteral("Bikes"));
    asking.dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel)->click();
    QCoreApplication::sendPostedEvents(asking.dialog, QEvent::DeferredDelete);
    QVERIFY(asking.dialog.isNull());
    QCOMPARE(QDir(desk.folder.path()).entryList(QDir::Files), QStringList());
    QVERIFY(SettingsStore::instance().values().isEmpty());
}

QTEST_MAIN(tst_ServiceReportDialog)
#include "tst_servicereportdialog.moc"
