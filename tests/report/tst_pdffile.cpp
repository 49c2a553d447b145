// SPDX-License-Identifier: MIT
#include <report/pdffile.h>

#include <QtTest>

namespace {

// The table of objects begins at byte 35.
const QByteArray completeFile = "%PDF-1.4\n"
                                "1 0 obj\n<<\n>>\nendobj\n"
                                "     "
                                "xref\n0 1\n0000000000 65535 f \n"
                                "trailer\n<<\n/Size 1\n>>\n"
                                "startxref\n35\n%%EOF\n";

} // namespace

class tst_PdfFile : public QObject
{
    Q_OBJECT

private slots:
    void acceptsCompleteFile()
    {
        QCOMPARE(completeFile.mid(35, 5), QByteArray("xref\n"));
        QVERIFY(isCompletePdf(completeFile));
    }

    void rejectsFileThatBreaksOff()
    {
        for (int length = 0; length < completeFile.size(); ++length)
            QVERIFY2(!isCompletePdf(completeFile.left(length)), qPrintable(QString::number(length)));
    }

    void rejectsFileWithLossInTheMiddle()
    {
        QByteArray file = completeFile;
        QVERIFY(!isCompletePdf(file.remove(12, 4)));
    }

    void rejectsFileWithLossAtTheStart() { QVERIFY(!isCompletePdf(completeFile.mid(1))); }

    void rejectsOddTrailers_data()
    {
        QTest::addColumn<QByteArray>("offset");

        QTest::newRow("no number") << QByteArray("x");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("negative") << QByteArray("-5");
        QTest::newRow("zero") << QByteArray("0");
        QTest::newRow("beyond the end") << QByteArray("4000");
        QTest::newRow("more than 32 bits") << QByteArray("99999999999999");
        QTest::newRow("another place") << QByteArray("36");
    }

    void rejectsOddTrailers()
    {
        QFETCH(QByteArray, offset);
        QByteArray file = completeFile;
        file.replace("startxref\n35\n", "startxref\n" + offset + "\n");
        QVERIFY(!isCompletePdf(file));
    }

    void rejectsOtherBytes()
    {
        QVERIFY(!isCompletePdf(QByteArray()));
        QVERIFY(!isCompletePdf("<html></html>"));
        QVERIFY(!isCompletePdf("%PDF-1.4\nstartxref\n%%EOF\n"));
    }
};

QTEST_APPLESS_MAIN(tst_PdfFile)
#include "tst_pdffile.moc"
