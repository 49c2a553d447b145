// SPDX-License-Identifier: MIT
#include <report/pdfwriter.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/*! A program without the resource bundle. */
class tst_ReportWithoutResources : public QObject
{
    Q_OBJECT

private slots:
    void hasNoStyles()
    {
        QVERIFY(!QFile::exists(QStringLiteral(":/files/pdf.css")));
        const pdfWriter writer;
        QCOMPARE(writer.html(),
                 QStringLiteral("<html><head></head><body><style type=\"text/css\"></style></div>"
                                "<div class=\"center\"><h1 align=\"center\">Draxel Report</h1><br>"));
    }

    void isWrittenAllTheSame()
    {
        const QTemporaryDir folder;
        pdfWriter writer;
        QVERIFY2(writer.writeFiles(folder.path()), qPrintable(writer.errorString()));
        QVERIFY(QFile::exists(folder.filePath(QStringLiteral("dx_report.pdf"))));
        QVERIFY(QFile::exists(folder.filePath(QStringLiteral("dx_report.html"))));
    }
};

QTEST_MAIN(tst_ReportWithoutResources)
#include "tst_reportwithoutresources.moc"
