// SPDX-License-Identifier: MIT
#include "hostiletext.h"
#include "reportexample.h"
#include "reporttexts.h"

#include <servicereport/htmlreport.h>
#include <servicereport/reportmaker.h>

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString browser()
{
    for (const char *name : {"chromium", "chromium-browser", "google-chrome"}) {
        const QString path = QStandardPaths::findExecutable(QLatin1String(name));
        if (!path.isEmpty())
            return path;
    }
    return QString();
}

/*! A page in a browser without a window. */
class Page
{
public:
    explicit Page(const QByteArray &html)
    {
        QFile file(m_folder.filePath(QStringLiteral("report.html")));
        isThere = file.open(QIODevice::WriteOnly) && file.write(html) == html.size();
    }

    /*! The document after loading, as \a width by 800 pixels show it; what the page complained about is in errors. */
    QString load(int width)
    {
        QString output;
        run({QStringLiteral("--window-size=%1,800").arg(width), QStringLiteral("--dump-dom")}, &output);
        return output;
    }

    QImage screenshot(int width)
    {
        const QString path = m_folder.filePath(QStringLiteral("shot.png"));
        run({QStringLiteral("--window-size=%1,800").arg(width), QStringLiteral("--screenshot=") + path},
            nullptr);
        return QImage(path);
    }

    bool isThere = false;
    QStringList errors;

private:
    void run(const QStringList &options, QString *output)
    {
        QProcess process;
        process.start(
            browser(),
            QStringList{QStringLiteral("--headless"), QStringLiteral("--no-sandbox"),
                        QStringLiteral("--disable-gpu"), QStringLiteral("--disable-dev-shm-usage"),
                        QStringLiteral("--disable-background-networking"),
                        QStringLiteral("--hide-scrollbars"), QStringLiteral("--enable-logging=stderr"),
                        QStringLiteral("--user-data-dir=") + m_folder.filePath(QStringLiteral("profile"))}
                + options
                + QStringList{QStringLiteral("file://") + m_folder.filePath(QStringLiteral("report.html"))});
        const bool isDone = QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 120000);
        if (!isDone)
            process.kill();
        process.waitForFinished();
        if (output != nullptr)
            *output = QString::fromUtf8(process.readAllStandardOutput());
        for (const QByteArray &line : process.readAllStandardError().split('\n')) {
            if (line.contains("CONSOLE"))
                errors << QString::fromUtf8(line);
        }
    }

    QTemporaryDir m_folder;
};

/*! The report without its ban on scripts. */
QByteArray withoutBan(QByteArray html)
{
    const int ban = html.indexOf("<meta http-equiv");
    return html.remove(ban, html.indexOf("/>", ban) + 2 - ban);
}

/*! A page that shows the report \a width pixels wide, narrower than a window can be, and writes down how wide it has
 *  become.
 */
QByteArray measured(const QByteArray &html, int width)
{
    return "<!DOCTYPE html><html><body><iframe id='report' style='border:0' height='2000' width='"
           + QByteArray::number(width) + "' srcdoc=\""
           + withoutBan(html).replace('&', "&amp;").replace('"', "&quot;")
           + "\"></iframe><script>onload = () => { const page = "
             "document.getElementById('report').contentDocument;"
             "document.body.setAttribute('data-width', page.documentElement.scrollWidth); "
             "};</script></body></html>";
}

ServiceReportData longWords()
{
    ServiceReportData data = ReportExample::data();
    data.snapshot.notes.vehicle = HostileText::veryLong();
    data.snapshot.adapter = HostileText::veryLong();
    data.checkup.components[0].name = HostileText::veryLong();
    data.checkup.components[0].findings[0].text = HostileText::veryLong();
    data.comparison->comparison.changes[0].text = HostileText::veryLong();
    for (SnapshotNode &node : data.snapshot.nodes) {
        for (SnapshotEntry &entry : node.entries) {
            if (entry.value.type() == QVariant::String)
                entry.value = HostileText::veryLong();
        }
    }
    return data;
}

/*! A web server that notes whether anybody asks it. */
class Listener : public QTcpServer
{
public:
    Listener()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            ++visits;
            nextPendingConnection()->close();
        });
    }
    QString imageTag() const
    {
        return QStringLiteral("<img src=\"http://127.0.0.1:%1/x.png\">").arg(serverPort());
    }
    int visits = 0;
};

} // namespace

/*! The HTML file as a browser shows it. */
class tst_ReportInChromium : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void showsEverythingWithoutComplaints();
    void fitsItsWidth_data();
    void fitsItsWidth();
    void asksNobody();
    void hostileMarkupDoesNothing();
    void suitsADarkScreen();
};

void tst_ReportInChromium::initTestCase()
{
    if (browser().isEmpty())
        QSKIP("Chromium is not installed: scripts/install-packages all brings it.");
}

void tst_ReportInChromium::showsEverythingWithoutComplaints()
{
    const ServiceReport report = makeServiceReport(ReportExample::data());
    Page page(toHtml(report));
    QVERIFY(page.isThere);
    const QString dom = ReportTexts::squeezed(page.load(1200));
    QVERIFY(dom.contains(QStringLiteral("</html>")));
    for (const QString &text : ReportTexts::of(report)) {
        const QString shown = ReportTexts::squeezed(
            text.toHtmlEscaped().replace(QLatin1String("&quot;"), QLatin1String("\"")));
        QVERIFY2(dom.contains(shown)
                     || dom.contains(QString(shown).replace(QChar(QChar::Nbsp), QLatin1String("&nbsp;")))
                     || QString(dom).remove(QLatin1String("&nbsp;")).contains(shown),
                 qPrintable(text));
    }
    QCOMPARE(page.errors, QStringList());
}

void tst_ReportInChromium::fitsItsWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("hasLongWords");
    for (const int width : {360, 700, 1200}) {
        QTest::addRow("%d pixels", width) << width << false;
        QTest::addRow("%d pixels, words without an end", width) << width << true;
    }
}

void tst_ReportInChromium::fitsItsWidth()
{
    QFETCH(int, width);
    QFETCH(bool, hasLongWords);
    Page page(measured(toHtml(makeServiceReport(hasLongWords ? longWords() : ReportExample::data())), width));
    const QString dom = page.load(1300);
    const QString expected = QStringLiteral("data-width=\"%1\"").arg(width);
    QVERIFY2(dom.contains(expected), qPrintable(dom.mid(dom.indexOf(QStringLiteral("data-width=\"")), 30)));
}

void tst_ReportInChromium::asksNobody()
{
    Listener listener;
    ServiceReportData data = ReportExample::data();
    data.snapshot.notes.customer = listener.imageTag();
    data.checkup.components[0].findings[0].text = listener.imageTag();
    Page page(toHtml(makeServiceReport(data)));
    page.load(1200);
    QCOMPARE(listener.visits, 0);

    // Even where an image had got through, the page may not load it; without the ban it would.
    const QByteArray tag = listener.imageTag().toUtf8();
    Page withImage(toHtml(makeServiceReport(data)).replace("</body>", tag + "</body>"));
    withImage.load(1200);
    QCOMPARE(listener.visits, 0);
    Page withoutIt(withoutBan(toHtml(makeServiceReport(data)).replace("</body>", tag + "</body>")));
    withoutIt.load(1200);
    QVERIFY(listener.visits > 0);
}

void tst_ReportInChromium::hostileMarkupDoesNothing()
{
    ServiceReportData data = ReportExample::data();
    data.snapshot.notes.vehicle = HostileText::markup();
    data.checkup.components[0].findings[0].advice = HostileText::markup();
    Page page(withoutBan(toHtml(makeServiceReport(data)))); // may run scripts, and has none
    const QString dom = page.load(1200);
    QVERIFY(dom.contains(QStringLiteral("<title>Service report")));
    QVERIFY(!dom.contains(QStringLiteral("<script")));
    QVERIFY(!dom.contains(QStringLiteral("<img")));
    QCOMPARE(page.errors, QStringList());
}

void tst_ReportInChromium::suitsADarkScreen()
{
    Page page(toHtml(makeServiceReport(ReportExample::data())));
    const QImage light = page.screenshot(1200);
    QVERIFY(!light.isNull());
    QCOMPARE(light.pixelColor(600, 5).name(), QStringLiteral("#ffffff"));
    Page dark(toHtml(makeServiceReport(ReportExample::data()))
                  .replace("@media screen and (prefers-color-scheme:dark)", "@media screen"));
    QCOMPARE(dark.screenshot(1200).pixelColor(600, 5).name(), QStringLiteral("#15191e"));
}

QTEST_GUILESS_MAIN(tst_ReportInChromium)
#include "tst_reportinchromium.moc"
