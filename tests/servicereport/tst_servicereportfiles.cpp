// SPDX-License-Identifier: MIT
#include "reportexample.h"

#include <support/filesizelimit.h>

#include <servicereport/servicereportfiles.h>

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
}

QStringList filesIn(const QTemporaryDir &folder)
{
    return QDir(folder.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

class tst_ServiceReportFiles : public QObject
{
    Q_OBJECT

private slots:
    void name_data();
    void name();
    void writesBoth();
    void overwritesNothing();
    void numberIsFreeForBoth();
    void danglingLinkIsNotFollowed();
    void folderThatIsNotThere();
    void nothingIsLeftOfHalfAReport();
};

void tst_ServiceReportFiles::name_data()
{
    QTest::addColumn<QString>("vehicle");
    QTest::addColumn<QString>("name");
    QTest::newRow("number") << s("1104001") << s("service_1104001_2026-09-03_1012");
    QTest::newRow("blanks") << s("  Cargo bike 7 ") << s("service_Cargo-bike-7_2026-09-03_1012");
    QTest::newRow("way to another folder")
        << s("../../etc/passwd") << s("service_etc-passwd_2026-09-03_1012");
    QTest::newRow("signs that file systems forbid")
        << s("a<b>c:d\"e|f?g*h\\i") << s("service_a-b-c-d-e-f-g-h-i_2026-09-03_1012");
    QTest::newRow("other scripts") << s("货运车 7 é") << s("service_货运车-7-é_2026-09-03_1012");
    QTest::newRow("nothing but signs") << s("???") << s("service_2026-09-03_1012");
    QTest::newRow("long") << QString(10000, QLatin1Char('x'))
                          << s("service_") + QString(40, QLatin1Char('x')) + s("_2026-09-03_1012");
}

void tst_ServiceReportFiles::name()
{
    QFETCH(QString, vehicle);
    QFETCH(QString, name);
    Snapshot snapshot = ReportExample::snapshot();
    snapshot.notes.vehicle = vehicle;
    QCOMPARE(ServiceReportFiles::baseName(snapshot), name);
}

void tst_ServiceReportFiles::writesBoth()
{
    const QTemporaryDir folder;
    ServiceReportFiles::Paths paths;
    QString error;
    QVERIFY(ServiceReportFiles::write(folder.path(), s("service_1"), "html", "pdf", &paths, &error));
    QCOMPARE(error, QString());
    QCOMPARE(paths.html, folder.filePath(s("service_1.html")));
    QCOMPARE(paths.pdf, folder.filePath(s("service_1.pdf")));
    QCOMPARE(contents(paths.html), QByteArray("html"));
    QCOMPARE(contents(paths.pdf), QByteArray("pdf"));
    QCOMPARE(filesIn(folder), QStringList({s("service_1.html"), s("service_1.pdf")}));
}

void tst_ServiceReportFiles::overwritesNothing()
{
    const QTemporaryDir folder;
    ServiceReportFiles::Paths paths;
    QString error;
    for (const char *text : {"first", "second", "third"})
        QVERIFY(ServiceReportFiles::write(folder.path(), s("r"), text, text, &paths, &error));
    QCOMPARE(filesIn(folder), QStringList({s("r.html"), s("r.pdf"), s("r_2.html"), s("r_2.pdf"),
                                           s("r_3.html"), s("r_3.pdf")}));
    QCOMPARE(contents(folder.filePath(s("r.html"))), QByteArray("first"));
    QCOMPARE(contents(folder.filePath(s("r_2.pdf"))), QByteArray("second"));
    QCOMPARE(contents(paths.html), QByteArray("third"));
}

void tst_ServiceReportFiles::numberIsFreeForBoth()
{
    const QTemporaryDir folder;
    QFile other(folder.filePath(s("r.pdf")));
    QVERIFY(other.open(QIODevice::WriteOnly));
    ServiceReportFiles::Paths paths;
    QString error;
    QVERIFY(ServiceReportFiles::write(folder.path(), s("r"), "html", "pdf", &paths, &error));
    QCOMPARE(filesIn(folder), QStringList({s("r.pdf"), s("r_2.html"), s("r_2.pdf")}));
    QCOMPARE(contents(other.fileName()), QByteArray());
}

void tst_ServiceReportFiles::danglingLinkIsNotFollowed()
{
    const QTemporaryDir folder;
    const QTemporaryDir elsewhere;
    QVERIFY(QFile::link(elsewhere.filePath(s("target")), folder.filePath(s("r.html"))));
    ServiceReportFiles::Paths paths;
    QString error;
    QVERIFY(ServiceReportFiles::write(folder.path(), s("r"), "html", "pdf", &paths, &error));
    QCOMPARE(paths.html, folder.filePath(s("r_2.html")));
    QVERIFY(!QFileInfo::exists(elsewhere.filePath(s("target"))));
}

void tst_ServiceReportFiles::folderThatIsNotThere()
{
    const QTemporaryDir folder;
    ServiceReportFiles::Paths paths;
    QString error;
    QVERIFY(!ServiceReportFiles::write(folder.filePath(s("gone")), s("r"), "html", "pdf", &paths, &error));
    QCOMPARE(
        error,
        s("The file %1 cannot be written: no such file or folder.").arg(folder.filePath(s("gone/r.html"))));
}

void tst_ServiceReportFiles::nothingIsLeftOfHalfAReport()
{
    const QTemporaryDir folder;
    ServiceReportFiles::Paths paths;
    QString error;
    const QByteArray pdf(5000, 'p');
    const FileSizeLimit limit(2000); // enough for the first file
    QVERIFY(!ServiceReportFiles::write(folder.path(), s("r"), "html", pdf, &paths, &error));
    QVERIFY2(error.startsWith(s("The file %1 cannot be written: ").arg(folder.filePath(s("r.pdf")))),
             qPrintable(error));
    QCOMPARE(filesIn(folder), QStringList());
}

QTEST_GUILESS_MAIN(tst_ServiceReportFiles)
#include "tst_servicereportfiles.moc"
