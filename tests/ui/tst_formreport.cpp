// SPDX-License-Identifier: MIT
#include "formbench.h"

#include <tests/support/messageboxwatcher.h>
#include <tests/support/windowtest.h>

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QMap>
#include <QTemporaryDir>
#include <QTranslator>
#include <QUrl>
#include <QtTest>

namespace {

/*! Takes what would be opened by the system's viewer: URLs without a scheme. */
class Viewer : public QObject
{
    Q_OBJECT

public:
    Viewer() { QDesktopServices::setUrlHandler(QString(), this, "open"); }
    ~Viewer() override { QDesktopServices::unsetUrlHandler(QString()); }

    QList<QUrl> urls;

public slots:
    void open(const QUrl &url) { urls.append(url); }
};

/*! An empty home directory, and the viewer that is asked to open what comes to be in it. */
class ReportHome
{
public:
    ReportHome() { qputenv("HOME", QFile::encodeName(m_folder.path())); }
    ~ReportHome() { qputenv("HOME", m_oldHome); }
    Q_DISABLE_COPY(ReportHome)

    QString path(const char *name) const { return m_folder.path() + QLatin1Char('/') + QLatin1String(name); }
    QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files, QDir::Name); }
    QString read(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
    }

    Viewer viewer;

private:
    QByteArray m_oldHome = qgetenv("HOME");
    QTemporaryDir m_folder;
};

void writeFile(const QString &name, const QByteArray &content)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

namespace {

/*! Looks at the cursor when a text is translated for the first time. */
class CursorWatcher : public QTranslator
{
public:
    CursorWatcher() { QCoreApplication::installTranslator(this); }
    ~CursorWatcher() override { QCoreApplication::removeTranslator(this); }

    QString translate(const char *, const char *sourceText, const char *, int) const override
    {
        const QCursor *cursor = QApplication::overrideCursor();
        if (!cursors.contains(QLatin1String(sourceText)))
            cursors.insert(QLatin1String(sourceText), cursor != nullptr ? cursor->shape() : Qt::ArrowCursor);
        return QString();
    }
    bool isEmpty() const override { return false; }

    mutable QMap<QString, Qt::CursorShape> cursors;
};

} // namespace

/*! The button for the report. */
class tst_FormReport : public WindowTest
{
    Q_OBJECT

private slots:
    void reportWithoutNodesSays();
    void reportIsWrittenAndOpened();
    void reportIsWrittenAnew();
    void waitCursorIsShownMeanwhile();
    void reportThatCannotBeWrittenIsSilent();
    void incompleteReportSays();
};

void tst_FormReport::reportWithoutNodesSays()
{
    const ReportHome home;
    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    MessageBoxWatcher watcher;
    FormBench bench;
    bench.press("btnSavePdf");
    QCOMPARE(watcher.texts(),
             QStringList{QStringLiteral(
                 "No devices found. Read all data from Draxel or import data from XML file.")});
    QCOMPARE(watcher.boxes().constFirst().title, QString());
    QVERIFY(watcher.boxes().constFirst().isModal);
    QVERIFY(!watcher.boxes().constFirst().hasParent);
    QCOMPARE(home.files(), QStringList());
    QVERIFY(home.viewer.urls.isEmpty());
}

void tst_FormReport::reportIsWrittenAndOpened()
{
    const ReportHome home;
    MessageBoxWatcher watcher;
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    bench.press("btnSavePdf");

    QCOMPARE(home.files(), QStringList({QStringLiteral("dx_report.html"), QStringLiteral("dx_report.pdf")}));
    const QString html = home.read("dx_report.html");
    QVERIFY(html.startsWith(QStringLiteral("<html><head></head><body><style type=\"text/css\">")));
    QVERIFY(html.contains(QStringLiteral("align=\"center\">Draxel Controller</td>")));
    QVERIFY(html.contains(QStringLiteral("align=\"center\">Battery Pack</td>")));
    QVERIFY(home.read("dx_report.pdf").startsWith(QStringLiteral("%PDF-")));
    QCOMPARE(home.viewer.urls, QList<QUrl>{QUrl(home.path("dx_report.pdf"), QUrl::TolerantMode)});
    QCOMPARE(home.viewer.urls.constFirst().scheme(), QString());
    QCOMPARE(home.viewer.urls.constFirst().toString(), home.path("dx_report.pdf"));
    QVERIFY(QApplication::overrideCursor() == nullptr);
    QVERIFY(watcher.boxes().isEmpty());
}

void tst_FormReport::reportIsWrittenAnew()
{
    const ReportHome home;
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    writeFile(home.path("dx_report.html"), "old");
    writeFile(home.path("dx_report.pdf"), "old");
    bench.press("btnSavePdf");
    const QString first = home.read("dx_report.html");
    bench.press("btnSavePdf");
    QCOMPARE(home.read("dx_report.html"), first);
    QCOMPARE(first.count(QStringLiteral("Draxel Report")), 1);
    QVERIFY(home.read("dx_report.pdf").startsWith(QStringLiteral("%PDF-")));
    QCOMPARE(home.viewer.urls.size(), 2);
}

void tst_FormReport::waitCursorIsShownMeanwhile()
{
    const ReportHome home;
    // In the way of the PDF file, so that the last thing done is the making of an error message.
    QVERIFY(QDir(home.path("")).mkdir(QStringLiteral("dx_report.pdf")));
    const MessageBoxWatcher watcher;
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1, 5});
    const CursorWatcher cursors;
    bench.press("btnSavePdf");
    for (const char *text :
         {"Device Parameters (fixed)", "Actual Values", "The file %1 cannot be written: %2."}) {
        QVERIFY2(cursors.cursors.contains(QLatin1String(text)), text);
        QCOMPARE(cursors.cursors.value(QLatin1String(text)), Qt::WaitCursor);
    }
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_FormReport::reportThatCannotBeWrittenIsSilent()
{
    const ReportHome home;
    QVERIFY(QDir(home.path("")).mkdir(QStringLiteral("dx_report.html"))); // in the way of the file
    MessageBoxWatcher watcher;
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    bench.press("btnSavePdf");
    QCOMPARE(home.files(), QStringList());
    QVERIFY(watcher.boxes().isEmpty());
    QCOMPARE(home.viewer.urls.size(), 1);
    QVERIFY(QApplication::overrideCursor() == nullptr);
}

void tst_FormReport::incompleteReportSays()
{
    const ReportHome home;
    QVERIFY(QDir(home.path("")).mkdir(QStringLiteral("dx_report.pdf"))); // in the way of the file
    MessageBoxWatcher watcher;
    FormBench bench;
    bench.form->setConnected(true);
    bench.read({1});
    bench.press("btnSavePdf");
    QCOMPARE(home.files(), QStringList{QStringLiteral("dx_report.html")});
    QCOMPARE(watcher.boxes().size(), 1);
    QVERIFY2(watcher.texts().constFirst().startsWith(
                 QStringLiteral("The file %1 cannot be written: ").arg(home.path("dx_report.pdf"))),
             qPrintable(watcher.texts().constFirst()));
    QCOMPARE(home.viewer.urls.size(), 1);
}

QTEST_MAIN(tst_FormReport)
#include "tst_formreport.moc"
