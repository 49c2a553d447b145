// SPDX-License-Identifier: MIT
#include "pageshost.h"

#include <host/core/settingsstore.h>
#include <host/pages/checkupsession.h>
#include <host/pages/servicereportdialog.h>
#include <tests/support/vehiclesnapshot.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>

namespace {

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
    QCOMPARE(logoDialog->directory().path(), desk.folder.path());
    emit logoDialog->fileSelected(logo);
    QCOMPARE(asking.line("workshopLogo")->text(), logo);
    delete logoDialog;
    asking.dialog->findChild<QPushButton *>(QStringLiteral("browseFolder"))->click();
    auto *folderDialog = asking.dialog->findChild<QFileDialog *>();
    QVERIFY(folderDialog != nullptr);
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
    QVERIFY(!desk.html().contains("class=\"shoplines"));
}

QTEST_MAIN(tst_ServiceReportDialog)
#include "tst_servicereportdialog.moc"
