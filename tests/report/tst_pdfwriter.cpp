// SPDX-License-Identifier: MIT
#include <tests/support/filesizelimit.h>
#include <tests/support/markingtranslator.h>
#include <tests/support/unprivileged.h>

#include <report/pdfwriter.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTranslator>
#include <QtTest>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#endif

namespace {

const QString evenRow = QStringLiteral("<tr class=\"alt1\"><td class=\"itemName\" width=\"60%\">");
const QString oddRow = QStringLiteral("<tr class=\"alt2\"><td class=\"itemName\" width=\"60%\">");

/*! What an operation appends. */
template<typename Operation>
QString appended(pdfWriter &writer, Operation operation)
{
    const QString before = writer.html();
    operation();
    if (!writer.html().startsWith(before))
        return QStringLiteral("The text before has changed.");
    return writer.html().mid(before.size());
}

void addDevice(pdfWriter &writer, const QString &title, int rowCount)
{
    writer.beginDeviceTable(title);
    writer.beginSectionTable(QStringLiteral("Section"));
    for (int row = 1; row <= rowCount; ++row)
        writer.addRow(QStringLiteral("Row %1").arg(row), QStringLiteral("text"));
    writer.endDeviceTable();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/*! The drawing operators of each page, for files as Qt writes them: pages not compressed, streams in zlib. */
QList<QByteArray> pagesOf(const QByteArray &pdf)
{
    const QString text = QString::fromLatin1(pdf.constData(), pdf.size());
    static const QRegularExpression page(QStringLiteral("/Type /Page\n.*?/Contents (\\d+) 0 R"),
                                         QRegularExpression::DotMatchesEverythingOption);
    QList<QByteArray> pages;
    QRegularExpressionMatchIterator it = page.globalMatch(text);
    while (it.hasNext()) {
        const QByteArray object = '\n' + it.next().captured(1).toLatin1() + " 0 obj\n";
        const int start = pdf.indexOf("stream\n", pdf.indexOf(object)) + 7;
        const int end = pdf.indexOf("\nendstream", start);
        pages << qUncompress(QByteArray("\x00\x10\x00\x00", 4) + pdf.mid(start, end - start));
    }
    return pages;
}

/*! Pages on which there is no text. */
int emptyPageCount(const QByteArray &pdf)
{
    int count = 0;
    for (const QByteArray &page : pagesOf(pdf)) {
        if (!page.contains(" Tj"))
            ++count;
    }
    return count;
}

} // namespace

class tst_PdfWriter : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        QVERIFY(m_folder->isValid());
    }

    void beginsWithHeadAndStyleSheet()
    {
        const pdfWriter writer;
        const QString start = QStringLiteral("<html><head></head><body><style type=\"text/css\">");
        const QString end = QStringLiteral("</style></div><div class=\"center\">"
                                           "<h1 align=\"center\">Draxel Report</h1><br>");
        QVERIFY(writer.html().startsWith(start));
        QVERIFY(writer.html().endsWith(end));

        const QString style
            = writer.html().mid(start.size(), writer.html().size() - start.size() - end.size());
        QCOMPARE(style, QString::fromUtf8(contentOf(QStringLiteral(":/files/pdf.css"))));
        QVERIFY(style.contains(QLatin1String("<!-- ")));
        QVERIFY(style.contains(QLatin1String("page-break-after: always;")));
    }

    void hasNoParent()
    {
        const pdfWriter writer;
        QVERIFY(writer.parent() == nullptr);
    }

    void opensAndClosesTables()
    {
        pdfWriter writer;
        QCOMPARE(appended(writer, [&] { writer.beginDeviceTable(QStringLiteral("Battery Pack")); }),
                 QStringLiteral("<table class=\"deviceTable\" cellspacing=\"0\" width=\"100%\">"
                                "<tr><td  class=\"deviceTitle\" align=\"center\">Battery Pack</td></tr>"
                                "<tr><td class=\"inTable\">"));
        QCOMPARE(
            appended(writer, [&] { writer.beginSectionTable(QStringLiteral("Actual Values")); }),
            QStringLiteral("<table class=\"describeTable\" cellspacing=\"0\" width=\"100%\">"
                           "<tr><td  class=\"describeTitle\" colspan=\"2\" align=\"center\">Actual Values"
                           "</td></tr>"));
        QCOMPARE(appended(writer, [&] { writer.endSectionTable(); }), QStringLiteral("</table>"));
        QCOMPARE(appended(writer, [&] { writer.endDeviceTable(); }),
                 QStringLiteral("</table></td></tr></table>"));
    }

    void rowStylesAlternate()
    {
        pdfWriter writer;
        const auto row = [&] { writer.addRow(QStringLiteral("Name"), QStringLiteral("Text")); };
        const QString rest = QStringLiteral("Name</td><td class=\"itemInter\">Text</td></tr>");
        QCOMPARE(appended(writer, row), evenRow + rest);
        QCOMPARE(appended(writer, row), oddRow + rest);
        QCOMPARE(appended(writer, row), evenRow + rest);
    }

    void rowStylesGoOnBeyondTheNumberRange()
    {
        pdfWriter writer;
        for (int row = 0; row < 257; ++row)
            writer.addRow(QString(), QString());
        QVERIFY(appended(writer, [&] { writer.addRow(QString(), QString()); }).startsWith(oddRow));
    }

    void rowStylesGoOnInTheNextSection()
    {
        pdfWriter writer;
        writer.addRow(QString(), QString());
        writer.endSectionTable();
        writer.beginSectionTable(QString());
        QVERIFY(appended(writer, [&] { writer.addRow(QString(), QString()); }).startsWith(oddRow));
    }

    void rowStylesBeginAnewWithEachDevice()
    {
        pdfWriter writer;
        addDevice(writer, QStringLiteral("One"), 1);
        const QString second = appended(writer, [&] { addDevice(writer, QStringLiteral("Two"), 2); });
        QVERIFY(second.contains(evenRow + QLatin1String("Row 1")));
        QVERIFY(second.contains(oddRow + QLatin1String("Row 2")));
    }

    void textsAreNotEscaped()
    {
        pdfWriter writer;
        QCOMPARE(appended(writer, [&] { writer.addRow(QStringLiteral("a<b"), QStringLiteral("<i>&\"'")); }),
                 evenRow + QLatin1String("a<b</td><td class=\"itemInter\"><i>&\"'</td></tr>"));
    }

    void objectRowIsThatOfSubIndexOne()
    {
        pdfWriter writer;
        // The object's own name is "MCU 1 actual motor values".
        QCOMPARE(
            appended(writer, [&] { writer.addObjectRow(0x62E8, 6200); }),
            evenRow + QLatin1String("MCU 1 actual motor current</td><td class=\"itemInter\">6200</td></tr>"));
        QCOMPARE(appended(writer, [&] { writer.addObjectRow(0x6040, 36500); }),
                 oddRow
                     + QLatin1String("Device actual voltage</td><td class=\"itemInter\">36.50 V</td></tr>"));
        QCOMPARE(appended(writer, [&] { writer.addObjectRow(0x5FFF, 1); }),
                 evenRow + QLatin1String("</td><td class=\"itemInter\"></td></tr>"));
    }

    void errorRegisterKeepsItsLineBreaks()
    {
        pdfWriter writer;
        QCOMPARE(appended(writer, [&] { writer.addErrorRegisterRow(3); }),
                 evenRow
                     + QLatin1String("Error register</td><td class=\"itemInter\">Generic error\nCurrent Error"
                                     "</td></tr>"));
        QCOMPARE(appended(writer, [&] { writer.addErrorRegisterRow(0); }),
                 oddRow + QLatin1String("Error register</td><td class=\"itemInter\">No error</td></tr>"));
    }

    void deviceInformationHasHtmlLineBreaks()
    {
        pdfWriter writer;
        QCOMPARE(appended(writer, [&] { writer.addDeviceInformationRow(0x41000000); }),
                 evenRow
                     + QLatin1String("Device information</td><td class=\"itemInter\">"
                                     "DXC controller supported<br>"
                                     "Active device<br>"
                                     "Device changeable by the end-user<br>"
                                     "Manufacturer-specific functionality supported<br>"
                                     "Masterless mode supported<br>"
                                     "CANopen device not in Bootloader mode; application software running"
                                     "</td></tr>"));
    }

    void deviceStatusGivesTwoRows()
    {
        pdfWriter writer;
        QCOMPARE(appended(writer, [&] { writer.addDeviceStatusRows((4U << 13) | 0x03); }),
                 evenRow
                     + QLatin1String("Device status</td><td class=\"itemInter\">"
                                     "Current input active Current output active </td></tr>")
                     + oddRow
                     + QLatin1String("Draxel FSA state</td><td class=\"itemInter\">Operating</td></tr>"));
    }

    void batteryStatusGivesItsTextOnly_data()
    {
        QTest::addColumn<quint32>("value");
        QTest::addColumn<QString>("text");

        QTest::newRow("normal") << 0x0C0U << QStringLiteral("Normal Operation");
        QTest::newRow("other bits") << 0xFFFFF0FFU << QStringLiteral("Normal Operation");
        QTest::newRow("not active") << 0U << QStringLiteral("specific FSA not active");
        QTest::newRow("six bits") << 0xFC0U << QStringLiteral("Reserved: 0x3f");
    }

    void batteryStatusGivesItsTextOnly()
    {
        QFETCH(quint32, value);
        QFETCH(QString, text);
        pdfWriter writer;
        QCOMPARE(appended(writer, [&] { writer.addBatteryStatusRow(value); }),
                 evenRow + QLatin1String("Battery Status</td><td class=\"itemInter\">") + text
                     + QLatin1String("</td></tr>"));
    }

    void translatesTwoNamesOnly()
    {
        const MarkingTranslator translator;
        pdfWriter writer;
        QVERIFY(writer.html().contains(QLatin1String(">Draxel Report<")));
        QVERIFY(appended(writer, [&] {
                    writer.addDeviceStatusRows(0);
                }).contains(QLatin1String(">[pdfWriter:Draxel FSA state]<")));
        QVERIFY(appended(writer, [&] {
                    writer.addBatteryStatusRow(0);
                }).contains(QLatin1String(">[pdfWriter:Battery Status]<")));
        QVERIFY(appended(writer, [&] {
                    writer.addErrorRegisterRow(0);
                }).contains(QLatin1String(">Error register<")));
        QVERIFY(appended(writer, [&] {
                    writer.addDeviceInformationRow(0);
                }).contains(QLatin1String(">Device information<")));
    }

    void writesTwoFiles()
    {
        pdfWriter writer;
        addDevice(writer, QStringLiteral("Sensor unit"), 3);
        const QString end = appended(writer, [&] { QVERIFY(writer.writeFiles(m_folder->path())); });

        QCOMPARE(end, QStringLiteral("</div></body></html>"));
        QCOMPARE(writer.errorString(), QString());
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList({QStringLiteral("dx_report.html"), QStringLiteral("dx_report.pdf")}));
        QCOMPARE(QString::fromUtf8(contentOf(html())), writer.html());
        const QByteArray document = contentOf(pdf());
        QVERIFY(document.startsWith("%PDF-"));
        QVERIFY(document.endsWith("%%EOF\n"));
    }

    void writesIntoTheHomeFolder()
    {
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(m_folder->path()));
        pdfWriter writer;
        const bool isWritten = writer.writeFiles();
        const QString path = pdfWriter::pdfPath();
        qputenv("HOME", oldHome);

        QVERIFY(isWritten);
        QCOMPARE(path, m_folder->path() + QLatin1String("/dx_report.pdf"));
        QVERIFY(QFile::exists(html()));
        QVERIFY(QFile::exists(pdf()));
    }

    void pageIsA4()
    {
        pdfWriter writer;
        QVERIFY(writer.writeFiles(m_folder->path()));
        const QByteArray document = contentOf(pdf());
        const QString text = QString::fromLatin1(document.constData(), document.size());
        static const QRegularExpression pageSize(
            QStringLiteral("/MediaBox \\[0 0 595(\\.0+)? 842(\\.0+)?\\]")); // points
        QVERIFY(text.contains(pageSize));
    }

    /*! The first lines of a page place the printed area on the paper, in points: "scale 0 0 -scale left top cm", and
     *  further down its size in pixels as a path, "0 0 m, width 0 l, width height l".
     */
    void marginsAndResolution()
    {
        pdfWriter writer;
        QVERIFY(writer.writeFiles(m_folder->path()));
        const QString page = QString::fromLatin1(pagesOf(contentOf(pdf())).value(0));
        static const QRegularExpression placing(
            QStringLiteral("([0-9.]+) 0 0 -([0-9.]+) ([0-9.]+) ([0-9.]+) cm\\n"));
        static const QRegularExpression area(
            QStringLiteral("\\n0 0 m\\n([0-9.]+) 0 l\\n([0-9.]+) ([0-9.]+) l\\n"));
        const QRegularExpressionMatch place = placing.match(page);
        const QRegularExpressionMatch size = area.match(page);
        QVERIFY2(place.hasMatch() && size.hasMatch(), qPrintable(page.left(500)));

        constexpr double paperWidth = 595;                 // points, A4
        constexpr double paperHeight = 842;                // points
        constexpr double margin = 28.35;                   // points: 10 mm
        const double scale = place.captured(1).toDouble(); // points a pixel
        QCOMPARE(qRound(72 / scale), 96);                  // dots per inch of a screen; QTest sets these
        QCOMPARE(place.captured(2), place.captured(1));

        const double left = place.captured(3).toDouble();
        const double top = paperHeight - place.captured(4).toDouble();
        const double right = paperWidth - left - size.captured(1).toDouble() * scale;
        const double bottom = paperHeight - top - size.captured(3).toDouble() * scale;
        for (const double width : {left, top, right, bottom})
            QVERIFY2(qAbs(width - margin) < 1, qPrintable(QString::number(width))); // whole pixels
    }

    void smallerSignIsPrinted()
    {
        const QString textTool = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
        if (textTool.isEmpty())
            QSKIP("pdftotext is not installed: scripts/install-packages test brings it.");

        pdfWriter writer;
        writer.beginDeviceTable(QStringLiteral("Draxel Controller"));
        writer.beginSectionTable(QStringLiteral("Section"));
        for (const char *text : {"limit (<45 km/h)", "1 < 2", "<", "<<b>bold</b>", "one<br>two", "x<= 5 > 3"})
            writer.addRow(QStringLiteral("Name"), QLatin1String(text));
        writer.endDeviceTable();
        QVERIFY(writer.writeFiles(m_folder->path()));
        QVERIFY(contentOf(html()).contains("limit (<45 km/h)</td>"));

        QProcess process;
        process.start(textTool, {QStringLiteral("-layout"), pdf(), QStringLiteral("-")});
        QVERIFY(process.waitForFinished());
        // Without its blanks: the tool guesses these from the distances.
        const QString printed = QString::fromUtf8(process.readAllStandardOutput()).remove(QLatin1Char(' '));
        QStringList lines;
        for (const QString &line : printed.split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("Name")) || line == QLatin1String("two"))
                lines.append(line);
        }
        QCOMPARE(lines,
                 (QStringList{QStringLiteral("Namelimit(<45km/h)"), QStringLiteral("Name1<2"),
                              QStringLiteral("Name<"), QStringLiteral("Name<bold"), QStringLiteral("Nameone"),
                              QStringLiteral("two"), QStringLiteral("Namex<=5>3")}));
    }

    void headAloneIsOnePage()
    {
        pdfWriter writer;
        QVERIFY(writer.writeFiles(m_folder->path()));
        QCOMPARE(pagesOf(contentOf(pdf())).size(), 1);
        QCOMPARE(emptyPageCount(contentOf(pdf())), 0);
    }

    void eachDeviceHasItsOwnPage_data()
    {
        QTest::addColumn<int>("deviceCount");
        QTest::newRow("one") << 1;
        QTest::newRow("two") << 2;
        QTest::newRow("seven") << 7;
    }

    void eachDeviceHasItsOwnPage()
    {
        QFETCH(int, deviceCount);
        pdfWriter writer;
        for (int device = 0; device < deviceCount; ++device)
            addDevice(writer, QStringLiteral("Load unit"), 5);
        QVERIFY(writer.writeFiles(m_folder->path()));

        QCOMPARE(pagesOf(contentOf(pdf())).size(), deviceCount);
        QCOMPARE(emptyPageCount(contentOf(pdf())), 0);
    }

    /*! Wherever the end of a table is on its page, and also where the space below it does not fit any more.
     */
    void noPageIsEmpty()
    {
        int pageCount = 0;
        for (int rowCount = 20; rowCount < 56; ++rowCount) {
            pdfWriter writer;
            addDevice(writer, QStringLiteral("First"), rowCount);
            addDevice(writer, QStringLiteral("Second"), rowCount);
            QVERIFY(writer.writeFiles(m_folder->path()));
            const QByteArray document = contentOf(pdf());
            QVERIFY2(emptyPageCount(document) == 0, qPrintable(QString::number(rowCount)));
            QVERIFY(pagesOf(document).size() >= pageCount);
            pageCount = pagesOf(document).size();
        }
        QVERIFY(pageCount >= 4); // the longest tables need two pages each
    }

    void replacesTheFilesOfTheLastRun()
    {
        QVERIFY(writeFile(html(), QByteArray(1'000'000, 'x')));
        QVERIFY(writeFile(pdf(), QByteArray(1'000'000, 'x')));
        pdfWriter first;
        addDevice(first, QStringLiteral("First"), 3);
        QVERIFY(first.writeFiles(m_folder->path()));
        pdfWriter second;
        QVERIFY(second.writeFiles(m_folder->path()));

        QCOMPARE(QString::fromUtf8(contentOf(html())), second.html());
        QVERIFY(!contentOf(html()).contains("First"));
        QVERIFY(contentOf(pdf()).startsWith("%PDF-"));
        QVERIFY(contentOf(pdf()).size() < 1'000'000);
    }

    void htmlFileIsInTheEncodingOfTheLocale()
    {
        pdfWriter writer;
        writer.addRow(QStringLiteral("Name"), QStringLiteral("25.30 \u00B0C \u7535\u6C60"));
        QVERIFY(writer.writeFiles(m_folder->path()));
        QCOMPARE(contentOf(html()), QTextCodec::codecForLocale()->fromUnicode(writer.html()));
    }

    // A program that is killed while it prints leaves what has a name by then.
    void nothingHasANameBeforeItIsComplete()
    {
#ifdef Q_OS_LINUX
        const int watch = inotify_init1(IN_NONBLOCK);
        QVERIFY(
            inotify_add_watch(watch, QFile::encodeName(m_folder->path()).constData(), IN_CREATE | IN_MOVED_TO)
            >= 0);
        pdfWriter writer;
        addDevice(writer, QStringLiteral("Device"), 3);
        QVERIFY(writer.writeFiles(m_folder->path()));

        alignas(inotify_event) char bytes[4096];
        const ssize_t count = read(watch, bytes, sizeof bytes);
        QStringList names;
        for (ssize_t i = 0; i < count;) {
            const auto *event = reinterpret_cast<const inotify_event *>(bytes + i);
            names.append(QString::fromLocal8Bit(event->name));
            i += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
        close(watch);
        QCOMPARE(names, (QStringList{QStringLiteral("dx_report.html"), QStringLiteral("dx_report.pdf")}));
#else
        QSKIP("This system has no inotify, which tells the names of files");
#endif
    }

    void unwritableFolderIsReported_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("below a file") << QStringLiteral("file/folder");
        QTest::newRow("a file") << QStringLiteral("file");
        QTest::newRow("missing") << QStringLiteral("missing");
    }

    void unwritableFolderIsReported()
    {
        QFETCH(QString, name);
        QVERIFY(writeFile(m_folder->filePath(QStringLiteral("file")), "content"));
        pdfWriter writer;
        QVERIFY(!writer.writeFiles(m_folder->filePath(name)));

        const QString path = m_folder->filePath(name) + QLatin1String("/dx_report.html");
        QVERIFY2(writer.errorString().startsWith(QLatin1String("The file ") + path
                                                 + QLatin1String(" cannot be written: ")),
                 qPrintable(writer.errorString()));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList({QStringLiteral("file")}));
        QCOMPARE(contentOf(m_folder->filePath(QStringLiteral("file"))), QByteArray("content"));
    }

    void successClearsTheError()
    {
        pdfWriter writer;
        QVERIFY(!writer.writeFiles(m_folder->filePath(QStringLiteral("missing"))));
        QVERIFY(!writer.errorString().isEmpty());
        QVERIFY(writer.writeFiles(m_folder->path()));
        QCOMPARE(writer.errorString(), QString());
    }

    void withoutHtmlFileThereIsNoPdf()
    {
        QVERIFY(QDir().mkpath(html())); // a folder stands in the way
        QVERIFY(writeFile(pdf(), "old"));
        pdfWriter writer;
        QVERIFY(!writer.writeFiles(m_folder->path()));
        QCOMPARE(contentOf(pdf()), QByteArray("old"));
        QVERIFY(writer.errorString().contains(QLatin1String("dx_report.html")));
    }

    void withoutPdfFileThereIsHtml()
    {
        QVERIFY(QDir().mkpath(pdf()));
        pdfWriter writer;
        QVERIFY(!writer.writeFiles(m_folder->path()));
        QCOMPARE(QString::fromUtf8(contentOf(html())), writer.html());
        QVERIFY(writer.errorString().contains(QLatin1String("dx_report.pdf")));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList({QStringLiteral("dx_report.html"), QStringLiteral("dx_report.pdf")}));
    }

    void readOnlyFolderKeepsOldFiles()
    {
        QVERIFY(writeFile(html(), "old html"));
        QVERIFY(writeFile(pdf(), "old pdf"));
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
        pdfWriter writer;
        const bool isWritten = [this, &writer] {
            const Unprivileged unprivileged({m_folder->path()});
            return writer.writeFiles(m_folder->path());
        }();
        QVERIFY(
            QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

        QVERIFY(!isWritten);
        QCOMPARE(contentOf(html()), QByteArray("old html"));
        QCOMPARE(contentOf(pdf()), QByteArray("old pdf"));
    }

#ifdef Q_OS_UNIX
    void fullDiskKeepsOldFiles_data()
    {
        QTest::addColumn<int>("rowCount");
        QTest::addColumn<int>("space"); // bytes

        QTest::newRow("noticed while writing") << 400 << 16'384;
        QTest::newRow("noticed at the end") << 1 << 1'024;
    }

    void fullDiskKeepsOldFiles()
    {
        QFETCH(int, rowCount);
        QFETCH(int, space);
        QVERIFY(writeFile(html(), "old html"));
        QVERIFY(writeFile(pdf(), "old pdf"));
        pdfWriter writer;
        addDevice(writer, QStringLiteral("Battery Pack"), rowCount);
        bool isWritten = true;
        {
            const FileSizeLimit limit(space);
            isWritten = writer.writeFiles(m_folder->path());
        }

        QVERIFY(writer.html().size() > space);
        QVERIFY(!isWritten);
        QVERIFY(writer.errorString().contains(QLatin1String("dx_report.html")));
        QCOMPARE(contentOf(html()), QByteArray("old html"));
        QCOMPARE(contentOf(pdf()), QByteArray("old pdf"));
        QCOMPARE(
            QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
            2);
    }

    void diskThatIsFullAfterTheHtmlKeepsOldPdf()
    {
        QVERIFY(writeFile(pdf(), "old pdf"));
        pdfWriter writer;
        addDevice(writer, QStringLiteral("Battery Pack"), 3);
        bool isWritten = true;
        {
            const FileSizeLimit limit(8'192); // more than the HTML and less than a PDF with its fonts
            isWritten = writer.writeFiles(m_folder->path());
        }

        QVERIFY(!isWritten);
        QCOMPARE(QString::fromUtf8(contentOf(html())), writer.html());
        QCOMPARE(contentOf(pdf()), QByteArray("old pdf"));
        QCOMPARE(writer.errorString(),
                 QStringLiteral(
                     "The file %1 cannot be written: printing broke off, perhaps because the disk is full.")
                     .arg(pdf()));
        QCOMPARE(
            QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
            2);
    }
#endif

private:
    QString html() const
    {
        return m_folder->filePath(QStringLiteral("dx_report.html"));
    }
    QString pdf() const
    {
        return m_folder->filePath(QStringLiteral("dx_report.pdf"));
    }

    QScopedPointer<QTemporaryDir> m_folder;
};

QTEST_MAIN(tst_PdfWriter)
#include "tst_pdfwriter.moc"
