// SPDX-License-Identifier: MIT
#include "program.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

// Nothing that a display needs.
const QStringList noDisplay{QStringLiteral("DISPLAY"), QStringLiteral("WAYLAND_DISPLAY"),
                            QStringLiteral("QT_QPA_PLATFORM=xcb")};

QByteArray twoDevices()
{
    return node(1, object(0x6000, 0, 1) + object(0x6000, 1, 4))
           + node(5, object(0x6000, 0, 1) + object(0x6000, 1, 6) + object(0x6005, 0, 7));
}

} // namespace

/*! The report of the command line: `draxelctl report`, and `draxelctl read --report`. */
class tst_Report : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void writesBothFilesWithoutADisplay();
    void replacesFormerFiles();
    void language();
    void badFileWritesNothing();
    void folderThatCannotBeMade();
    void fileInTheWayKeepsTheOther();
    void vehicleWithoutComponents();
    void afterARead();
    void folderIsTriedBeforeARead();

private:
    QString path(const char *name) const { return m_folder->path() + QLatin1Char('/') + QLatin1String(name); }
    QStringList files(const char *folder) const
    {
        return QDir(path(folder))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_Report::writesBothFilesWithoutADisplay()
{
    const QString vehicle = writeExchange(path("v.dxxml"), twoDevices());
    const Result result = run({s("report"), vehicle, s("--output"), path("new/folder")}, noDisplay);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QCOMPARE(
        result.output,
        s("Wrote %1\nWrote %2\n").arg(path("new/folder/dx_report.pdf"), path("new/folder/dx_report.html")));
    QCOMPARE(files("new/folder"), QStringList({s("dx_report.html"), s("dx_report.pdf")}));

    const QString html = readFile(path("new/folder/dx_report.html"));
    QVERIFY(html.contains(s("<style type=\"text/css\">div")) || html.contains(s("deviceTable {")));
    QVERIFY(html.contains(s("align=\"center\">Draxel Controller</td>")));
    QVERIFY(html.contains(s("Device unique part number</td><td class=\"itemInter\">7</td>")));
    QFile pdf(path("new/folder/dx_report.pdf"));
    QVERIFY(pdf.open(QIODevice::ReadOnly));
    const QByteArray bytes = pdf.readAll();
    QVERIFY(bytes.startsWith("%PDF-"));
    QVERIFY(bytes.trimmed().endsWith("%%EOF"));
    QVERIFY(bytes.contains("/Count 2")); // a page for each device
}

void tst_Report::replacesFormerFiles()
{
    const QString vehicle = writeExchange(path("v.dxxml"), twoDevices());
    QVERIFY(QDir(m_folder->path()).mkdir(s("r")));
    writeExchange(path("r/dx_report.html"), "old");
    writeExchange(path("r/dx_report.pdf"), "old");
    QCOMPARE(run({s("report"), vehicle, s("--output=") + path("r")}).status, 0);
    QVERIFY(readFile(path("r/dx_report.html")).startsWith(s("<html>")));
    QVERIFY(readFile(path("r/dx_report.pdf")).startsWith(s("%PDF-")));
    QCOMPARE(files("r").size(), 2);
}

void tst_Report::language()
{
    const QString vehicle = writeExchange(path("v.dxxml"), twoDevices());
    const Result result
        = run({s("report"), vehicle, s("--output"), path("r"), s("--language"), s("de")}, noDisplay);
    QCOMPARE(result.status, 0);
    QVERIFY(readFile(path("r/dx_report.html")).contains(s("align=\"center\">Akkupack</td>")));
}

void tst_Report::badFileWritesNothing()
{
    const QString vehicle = writeExchange(path("v.dxxml"), "<node ");
    const Result result = run({s("report"), vehicle, s("--output"), path("r")});
    QCOMPARE(result.status, 5);
    QVERIFY2(
        result.errors.startsWith(s("The file %1 is neither a snapshot nor an exchange file: ").arg(vehicle)),
        qPrintable(result.errors));
    QVERIFY(!QDir(path("r")).exists());
}

void tst_Report::folderThatCannotBeMade()
{
    const QString vehicle = writeExchange(path("v.dxxml"), twoDevices());
    const QString folder = vehicle + s("/r"); // below a file
    const Result result = run({s("report"), vehicle, s("--output"), folder});
    QCOMPARE(result.status, 5);
    QCOMPARE(result.errors, s("The folder %1 cannot be made.\n").arg(folder));
    QCOMPARE(result.output, QString());
}

void tst_Report::fileInTheWayKeepsTheOther()
{
    const QString vehicle = writeExchange(path("v.dxxml"), twoDevices());
    QVERIFY(QDir().mkpath(path("r/dx_report.html")));
    const Result result = run({s("report"), vehicle, s("--output"), path("r")});
    QCOMPARE(result.status, 5);
    QVERIFY2(result.errors.startsWith(s("The file %1 cannot be written: ").arg(path("r/dx_report.html"))),
             qPrintable(result.errors));
    QCOMPARE(result.output, QString());
    QCOMPARE(files("r"), QStringList(s("dx_report.html")));
}

void tst_Report::vehicleWithoutComponents()
{
    const QString vehicle = writeExchange(path("v.dxxml"), node(5, object(0x1000, 0, 1)));
    const Result result = run({s("report"), vehicle, s("--output"), path("r")});
    QCOMPARE(result.status, 0);
    QVERIFY(readFile(path("r/dx_report.html")).contains(s("Draxel Report")));
    QCOMPARE(files("r").size(), 2);
}

void tst_Report::afterARead()
{
    const Result result = run({s("read"), s("--bus"), s("simulated:pedelec"), s("--bitrate"), s("0"),
                               s("--report"), path("r"), s("--export"), path("v.dxxml")},
                              noDisplay);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY2(
        result.output.endsWith(s("Wrote %1\nWrote %2\nWrote %3\n")
                                   .arg(path("v.dxxml"), path("r/dx_report.pdf"), path("r/dx_report.html"))),
        qPrintable(result.output));

    // The exported file gives the same report.
    QCOMPARE(run({s("report"), path("v.dxxml"), s("--output"), path("again")}).status, 0);
    QCOMPARE(readFile(path("again/dx_report.html")), readFile(path("r/dx_report.html")));
    QVERIFY(readFile(path("r/dx_report.html")).contains(s("Battery Pack")));
}

void tst_Report::folderIsTriedBeforeARead()
{
    const QString file = writeExchange(path("v.dxxml"), twoDevices());
    const Result result
        = run({s("read"), s("--bus"), s("simulated:pedelec"), s("--report"), file + s("/r")}, noDisplay);
    QCOMPARE(result.status, 5);
    QCOMPARE(result.errors, s("The folder %1 cannot be made.\n").arg(file + s("/r")));
    QCOMPARE(result.output, QString());
}

QTEST_GUILESS_MAIN(tst_Report)
#include "tst_report.moc"
