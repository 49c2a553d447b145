// SPDX-License-Identifier: MIT
#include <host/core/reportkeeper.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/*! No report is lost, although all are written to the same file. */
class tst_ReportKeeper : public QObject
{
    Q_OBJECT

private slots:
    void nothingToKeep();
    void keepsBothFilesUnderTheirDate();
    void keepsOneReportOnce();
    void keepsAnotherReportOfTheSameSecond();
    void saysWhatCannotBeKept();
    void noticesANewReport();

private:
    void write(const char *name, const QByteArray &content, const QDateTime &time) const
    {
        QFile file(m_folder->filePath(QLatin1String(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.flush();
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    }
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files, QDir::Name); }
    QByteArray content(const QString &name) const
    {
        QFile file(m_folder->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    QScopedPointer<QTemporaryDir> m_folder;

private slots:
    void init() { m_folder.reset(new QTemporaryDir); }
};

namespace {
const QDateTime morning(QDate(2026, 9, 3), QTime(10, 12, 5));
const QDateTime noon(QDate(2026, 9, 3), QTime(12, 0, 0));
} // namespace

void tst_ReportKeeper::nothingToKeep()
{
    ReportKeeper keeper(m_folder->path());
    const ReportKeeper::Kept kept = keeper.keepEarlier();
    QCOMPARE(kept.files, QStringList());
    QCOMPARE(kept.problem, QString());
    QVERIFY(!keeper.isWritten());
    QCOMPARE(files(), QStringList());
}

void tst_ReportKeeper::keepsBothFilesUnderTheirDate()
{
    write("dx_report.pdf", "pdf", morning);
    write("dx_report.html", "html", morning);
    ReportKeeper keeper(m_folder->path());
    QCOMPARE(keeper.keepEarlier().files, (QStringList{QStringLiteral("dx_report 2026-09-03 10-12-05.pdf"),
                                                      QStringLiteral("dx_report 2026-09-03 10-12-05.html")}));
    QCOMPARE(content(QStringLiteral("dx_report 2026-09-03 10-12-05.pdf")), QByteArray("pdf"));
    QCOMPARE(content(QStringLiteral("dx_report 2026-09-03 10-12-05.html")), QByteArray("html"));
    QCOMPARE(content(QStringLiteral("dx_report.pdf")), QByteArray("pdf"));
}

void tst_ReportKeeper::keepsOneReportOnce()
{
    write("dx_report.pdf", "pdf", morning);
    ReportKeeper keeper(m_folder->path());
    keeper.keepEarlier();
    QCOMPARE(keeper.keepEarlier().files, QStringList());
    QCOMPARE(files().size(), 2);
}

void tst_ReportKeeper::keepsAnotherReportOfTheSameSecond()
{
    ReportKeeper keeper(m_folder->path());
    write("dx_report.pdf", "first", morning);
    keeper.keepEarlier();
    write("dx_report.pdf", "other", morning); // of the same size
    QCOMPARE(keeper.keepEarlier().files,
             QStringList(QStringLiteral("dx_report 2026-09-03 10-12-05 (2).pdf")));
    QCOMPARE(content(QStringLiteral("dx_report 2026-09-03 10-12-05.pdf")), QByteArray("first"));
    QCOMPARE(content(QStringLiteral("dx_report 2026-09-03 10-12-05 (2).pdf")), QByteArray("other"));
}

void tst_ReportKeeper::saysWhatCannotBeKept()
{
    write("dx_report.pdf", "pdf", morning);
    // Not even the superuser can copy to a name that leads nowhere.
    const QString copy = m_folder->filePath(QStringLiteral("dx_report 2026-09-03 10-12-05.pdf"));
    QVERIFY(QFile::link(m_folder->filePath(QStringLiteral("nowhere/x")), copy));
    ReportKeeper keeper(m_folder->path());
    const ReportKeeper::Kept kept = keeper.keepEarlier();
    QCOMPARE(kept.files, QStringList());
    QVERIFY(!kept.problem.isEmpty());
    QCOMPARE(kept.failedFile, copy);
}

void tst_ReportKeeper::noticesANewReport()
{
    ReportKeeper keeper(m_folder->path());
    keeper.keepEarlier();
    write("dx_report.pdf", "pdf", morning);
    QVERIFY(keeper.isWritten());
    keeper.keepEarlier();
    QVERIFY(!keeper.isWritten());
    write("dx_report.pdf", "pdf", noon); // the same again, but newer
    QVERIFY(keeper.isWritten());
}

QTEST_GUILESS_MAIN(tst_ReportKeeper)
#include "tst_reportkeeper.moc"
