// SPDX-License-Identifier: MIT
#include "program.h"

#include <archive/archivedatabase.h>

#include <QDir>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <memory>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

const QStringList noDisplay{QStringLiteral("DISPLAY"), QStringLiteral("WAYLAND_DISPLAY"),
                            QStringLiteral("QT_QPA_PLATFORM=xcb")};

/*! A vehicle of a controller and a battery with a state of health in hundredths of a percent. */
QByteArray vehicle(const char *date, int health)
{
    return "{\"format\":\"draxel-snapshot\",\"version\":1,\"program\":\"draxelctl 1.0.0\",\"time\":\""
           + QByteArray(date)
           + "\",\"duration\":0,\"scope\":\"full\",\"bus\":\"can0\",\"vehicle\":\"Cargo 7\",\"nodes\":["
             "{\"id\":2,\"end\":\"complete\",\"bootUps\":0,\"entries\":["
             "{\"index\":4120,\"sub\":1,\"type\":7,\"raw\":\"feff0000\",\"value\":65534,\"ms\":0},"
             "{\"index\":4120,\"sub\":2,\"type\":7,\"raw\":\"01000000\",\"value\":1,\"ms\":0},"
             "{\"index\":4120,\"sub\":4,\"type\":7,\"raw\":\"07000000\",\"value\":7,\"ms\":0},"
             "{\"index\":24576,\"sub\":0,\"type\":5,\"raw\":\"01\",\"value\":1,\"ms\":0},"
             "{\"index\":24576,\"sub\":1,\"type\":7,\"raw\":\"06000000\",\"value\":6,\"ms\":0},"
             "{\"index\":24950,\"sub\":0,\"type\":5,\"raw\":\"01\",\"value\":1,\"ms\":0},"
             "{\"index\":24950,\"sub\":1,\"type\":6,\"raw\":\""
           + QByteArray::number(health & 0xFF, 16).rightJustified(2, '0')
           + QByteArray::number(health >> 8, 16).rightJustified(2, '0')
           + "\",\"value\":" + QByteArray::number(health) + ",\"ms\":0}]}]}\n";
}

} // namespace

/*! `draxelctl report --service`. */
class tst_ServiceReport : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void writesBothFilesWithoutADisplay();
    void keepsEarlierReports();
    void comparesWithAnEarlierVisit();
    void speaksTheCustomersLanguage();
    void namesTheWorkshop();
    void showsTheLogo();
    void brokenLogo();
    void showsTheTrendOfAnArchive();
    void saysWhichVisitIsDamaged();
    void namesItsFilesAsJson();
    void readsExchangeFilesToo();
    void badFilesWriteNothing();
    void optionsWithoutService();
    void folderThatCannotBeWritten();

private:
    QString path(const char *name) const { return m_folder->path() + QLatin1Char('/') + QLatin1String(name); }
    QString write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName()
                                                                                    : QString();
    }
    QString today() const { return write("today.dxsnap", vehicle("2026-09-03T10:12:00.000+02:00", 8800)); }
    QString earlier() const
    {
        return write("earlier.dxsnap", vehicle("2026-03-12T09:40:00.000+01:00", 9400));
    }
    QStringList files(const char *folder) const
    {
        return QDir(path(folder))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    }
    Result report(const QStringList &options) const
    {
        return run(QStringList{s("report"), today(), s("--service"), s("--output"), path("r")} + options,
                   noDisplay);
    }
    QString html() const { return readFile(path("r/service_Cargo-7_2026-09-03_1012.html")); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ServiceReport::writesBothFilesWithoutADisplay()
{
    const Result result = report({});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, s("Wrote %1\nWrote %2\n")
                                .arg(path("r/service_Cargo-7_2026-09-03_1012.pdf"),
                                     path("r/service_Cargo-7_2026-09-03_1012.html")));
    QVERIFY(html().contains(s(">Service report</h1>")));
    QVERIFY(html().contains(s(">3 September 2026, 10:12 (UTC+02:00)</dd>")));
    QVERIFY(html().contains(s("Battery Pack")));
    QVERIFY(readFile(path("r/service_Cargo-7_2026-09-03_1012.pdf")).startsWith(s("%PDF-")));
}

void tst_ServiceReport::keepsEarlierReports()
{
    QCOMPARE(report({}).status, 0);
    const QString first = html();
    QCOMPARE(report({s("--language"), s("de")}).status, 0);
    QCOMPARE(html(), first);
    QCOMPARE(files("r"),
             QStringList({s("service_Cargo-7_2026-09-03_1012.html"), s("service_Cargo-7_2026-09-03_1012.pdf"),
                          s("service_Cargo-7_2026-09-03_1012_2.html"),
                          s("service_Cargo-7_2026-09-03_1012_2.pdf")}));
}

void tst_ServiceReport::comparesWithAnEarlierVisit()
{
    QCOMPARE(report({s("--against"), earlier()}).status, 0);
    QVERIFY(html().contains(s("What has changed since 12 March 2026, 09:40 (UTC+01:00)")));
    QVERIFY(html().contains(s("State of health over the visits")));
    QVERIFY(html().contains(
        QStringLiteral("94.0%1% on 12 March 2026, 88.0%1% on 3 September 2026.").arg(QChar(QChar::Nbsp))));
}

void tst_ServiceReport::speaksTheCustomersLanguage()
{
    QCOMPARE(report({s("--language"), s("de")}).status, 0);
    QVERIFY(html().contains(s("<html lang=\"de\">")));
    QVERIFY(html().contains(s(">Servicebericht</h1>")));
    QVERIFY(html().contains(QStringLiteral(">88,00%1%</td>").arg(QChar(QChar::Nbsp))));
    const Result unknown = report({s("--language"), s("xx")});
    QCOMPARE(unknown.status, 1);
}

void tst_ServiceReport::namesTheWorkshop()
{
    QCOMPARE(report({s("--workshop"), s("Sommer & <Co>"), s("--workshop"), s("12 Harbour Street")}).status,
             0);
    QVERIFY(html().contains(s("class=\"shop\">Sommer &amp; &lt;Co&gt;</div>")));
    QVERIFY(html().contains(s(">12 Harbour Street</div>")));
}

void tst_ServiceReport::showsTheLogo()
{
    QImage logo(3, 2, QImage::Format_RGB32);
    logo.fill(Qt::blue);
    QVERIFY(logo.save(path("logo.png")));
    QCOMPARE(report({s("--logo"), path("logo.png")}).status, 0);
    QVERIFY(html().contains(s("src=\"data:image/png;base64,")));
}

void tst_ServiceReport::brokenLogo()
{
    const QString logo = write("logo.png", "no picture");
    const Result result = report({s("--logo"), logo});
    QCOMPARE(result.status, 5);
    QCOMPARE(result.errors,
             s("The logo %1 is no picture that can be used: PNG or JPEG, at most 8 MB and 8000 pixels.\n")
                 .arg(logo));
    QVERIFY(!QDir(path("r")).exists());
}

void tst_ServiceReport::showsTheTrendOfAnArchive()
{
    const QString archive = path("archive.sqlite");
    QCOMPARE(run({s("archive"), s("add"), earlier(), s("--archive"), archive}).status, 0);
    QCOMPARE(report({s("--archive"), archive}).status, 0);
    QVERIFY(html().contains(
        QStringLiteral("94.0%1% on 12 March 2026, 88.0%1% on 3 September 2026.").arg(QChar(QChar::Nbsp))));
    QVERIFY(!html().contains(s("What has changed")));
    QCOMPARE(report({s("--archive"), path("gone.sqlite")}).status, 5);
}

void tst_ServiceReport::saysWhichVisitIsDamaged()
{
    const auto withTwoPacks = [](QByteArray text) {
        return text.replace("]}]}\n", ",{\"index\":24950,\"sub\":2,\"type\":6,\"raw\":\"2823\","
                                      "\"value\":9000,\"ms\":0}]}]}\n");
    };
    const QString old = write("old.dxsnap", withTwoPacks(vehicle("2026-03-12T09:40:00.000+01:00", 9400)));
    const QString now = write("now.dxsnap", withTwoPacks(vehicle("2026-09-03T10:12:00.000+02:00", 8800)));
    const QString archive = path("archive.sqlite");
    QCOMPARE(run({s("archive"), s("add"), old, s("--archive"), archive}).status, 0);
    {
        QString error;
        ArchiveDatabase database;
        QVERIFY(database.open(*ArchiveAddress::parse(archive, &error), ArchiveDatabase::Missing::Refuse));
        QVERIFY(database.run(s("UPDATE draxel_entries SET data = x'00'")));
    }
    const Result result = run(
        {s("report"), now, s("--service"), s("--output"), path("r"), s("--archive"), archive}, noDisplay);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.errors,
             s("Visit 1 is damaged in the archive and cannot be shown. Take the last backup of the "
               "archive; the other visits are not affected.\n"));
    const QString missing = s("Number of visits that are missing, as they are damaged in the archive: 1.");
    QVERIFY(html().contains(s("State of health over the visits, pack 1: ") + missing));
    QVERIFY(html().contains(s("State of health over the visits, pack 2: ") + missing));
}

void tst_ServiceReport::namesItsFilesAsJson()
{
    const Result result = report({s("--json")});
    const QJsonObject object = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QCOMPARE(object.value(s("html")).toString(), path("r/service_Cargo-7_2026-09-03_1012.html"));
    QCOMPARE(object.value(s("pdf")).toString(), path("r/service_Cargo-7_2026-09-03_1012.pdf"));
    QCOMPARE(object.size(), 2);
}

void tst_ServiceReport::readsExchangeFilesToo()
{
    const QString file = writeExchange(path("v.dxxml"), node(5, object(0x6000, 0, 1) + object(0x6000, 1, 6)));
    const Result result = run({s("report"), file, s("--service"), s("--output"), path("r")}, noDisplay);
    QCOMPARE(result.status, 0);
    QCOMPARE(files("r").size(), 2);
}

void tst_ServiceReport::badFilesWriteNothing()
{
    const QString broken = write("broken.dxsnap", "{\"format\":\"draxel-snapshot\",");
    const Result result = run({s("report"), broken, s("--service"), s("--output"), path("r")}, noDisplay);
    QCOMPARE(result.status, 5);
    QVERIFY2(result.errors.contains(broken), qPrintable(result.errors));
    QCOMPARE(report({s("--against"), broken}).status, 5);
    QVERIFY(!QDir(path("r")).exists());
}

void tst_ServiceReport::optionsWithoutService()
{
    const Result result = run({s("report"), today(), s("--output"), path("r"), s("--against"), earlier()});
    QCOMPARE(result.status, 1);
    QVERIFY(result.errors.startsWith(
        s("draxelctl report: --against is for a service report; --service is missing.")));
    QVERIFY(!QDir(path("r")).exists());
}

void tst_ServiceReport::folderThatCannotBeWritten()
{
    const QString file = today();
    const Result result = run({s("report"), file, s("--service"), s("--output"), file + s("/r")});
    QCOMPARE(result.status, 5);
    QCOMPARE(result.errors, s("The folder %1 cannot be made.\n").arg(file + s("/r")));
}

QTEST_GUILESS_MAIN(tst_ServiceReport)
#include "tst_servicereport.moc"
