// SPDX-License-Identifier: MIT
#include "formbench.h"

#include <tests/support/filedialogdriver.h>
#include <tests/support/httpserver.h>
#include <tests/support/messageboxwatcher.h>
#include <tests/support/windowtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QMap>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

namespace {

constexpr int patience = 20000; // ms, for what takes milliseconds on a machine that is not busy

/*! The update information server of the machine that the test runs on. */
class UpdateServerOfTest : public HttpServer
{
public:
    UpdateServerOfTest()
    {
        // A proxy of the machine would stand between the window and the loopback.
        for (const char *name : {"http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY"})
            qunsetenv(name);
        qputenv("DRAXEL_UPDATE_HOST", authority().toLatin1());
    }
    ~UpdateServerOfTest() override { qunsetenv("DRAXEL_UPDATE_HOST"); }
};

/*! Reads node 1, whose identity has these entries, so that its component is the current one. */
void readIdentity(FormBench &bench, const QMap<quint8, quint32> &identity)
{
    for (auto entry = identity.constBegin(); entry != identity.constEnd(); ++entry)
        bench.host.sdoClient.setValue(1, 0x1018, entry.key(), *entry);
    bench.form->setConnected(true);
    bench.read({1});
    QVERIFY(bench.find<QTreeWidget>("treeWidget")->currentItem() != nullptr);
}

} // namespace

/*! The button for the update check, and what is shown of the answer. */
class tst_FormUpdate : public WindowTest
{
    Q_OBJECT

private slots:
    void updateWithoutAComponentSays();
    void buttonAsksForTheComponentAndShowsTheAnswer();
    void incompleteIdentityIsNotAskedFor_data();
    void incompleteIdentityIsNotAskedFor();
    void updateInformationIsShownAsItIs();
    void longUpdateInformation_data();
    void longUpdateInformation();
    void longInformationIsSavedWhole();
};

void tst_FormUpdate::updateWithoutAComponentSays()
{
    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    MessageBoxWatcher watcher;
    FormBench bench;
    bench.press("btnCheckUpdate");
    QCOMPARE(watcher.texts(), QStringList{QStringLiteral("No component selected.")});
    QCOMPARE(watcher.boxes().constFirst().title, QStringLiteral("the application"));
}

void tst_FormUpdate::buttonAsksForTheComponentAndShowsTheAnswer()
{
    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    UpdateServerOfTest server;
    server.setAnswer(HttpServer::response("Firmware 1.1 is available."));
    MessageBoxWatcher watcher;
    FormBench bench;
    readIdentity(bench, {{0, 4}, {1, 42}, {2, 4000000000}, {3, 65537}, {4, 7}});
    bench.press("btnCheckUpdate");
    QTRY_COMPARE_WITH_TIMEOUT(watcher.texts(), QStringList{QStringLiteral("Firmware 1.1 is available.")},
                              patience);
    QCOMPARE(server.requestLine(0),
             QByteArray("GET /versioninfo/?vendor=42&product=4000000000&revision=65537 HTTP/1.1"));
    QCOMPARE(watcher.boxes().constFirst().title, QStringLiteral("the application"));

    // Once for the first press, twice for the second.
    bench.press("btnCheckUpdate");
    QTRY_COMPARE_WITH_TIMEOUT(watcher.boxes().size(), 3, patience);
    QCOMPARE(server.requests().size(), 2);
}

void tst_FormUpdate::incompleteIdentityIsNotAskedFor_data()
{
    QTest::addColumn<quint8>("missing");
    QTest::newRow("vendor") << quint8(1);
    QTest::newRow("product") << quint8(2);
    QTest::newRow("revision") << quint8(3);
}

void tst_FormUpdate::incompleteIdentityIsNotAskedFor()
{
    QFETCH(quint8, missing);
    UpdateServerOfTest server;
    server.setAnswer(HttpServer::response("the answer"));
    MessageBoxWatcher watcher;
    FormBench bench;
    QMap<quint8, quint32> identity{{1, 10}, {2, 20}, {3, 30}};
    identity.remove(missing);
    readIdentity(bench, identity);
    bench.press("btnCheckUpdate");
    QCOMPARE(watcher.texts(), QStringList());

    // A press that does ask comes after anything that the one before might have started.
    bench.finder.reader->setValue(1, 0x1018, missing, missing * 10u);
    bench.press("btnCheckUpdate");
    QTRY_COMPARE_WITH_TIMEOUT(watcher.texts(), QStringList{QStringLiteral("the answer")}, patience);
    QCOMPARE(server.requestLine(0),
             QByteArray("GET /versioninfo/?vendor=10&product=20&revision=30 HTTP/1.1"));
    QCOMPARE(server.requests().size(), 1);
}

void tst_FormUpdate::updateInformationIsShownAsItIs()
{
    QCoreApplication::setApplicationName(QStringLiteral("the application"));
    MessageBoxWatcher watcher;
    FormBench bench;
    bench.form->showUpdateInformation(1, 2, 3, QStringLiteral("<b>1.2</b> & more"));
    QCOMPARE(watcher.texts(), QStringList{QStringLiteral("<b>1.2</b> & more")});
    QCOMPARE(watcher.boxes().constFirst().title, QStringLiteral("the application"));
}

void tst_FormUpdate::longUpdateInformation_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("text"); // of the box
    QTest::addColumn<QString>("details");

    const auto characters = [](int count) { return QString(count, QLatin1Char('x')); };
    const auto lines = [](int count) { return QStringLiteral("line\n").repeated(count); };
    const QString more = QStringLiteral("\n\u2026");
    const auto row = [](const char *name, const QString &answer, const QString &text,
                        const QString &details) { QTest::newRow(name) << answer << text << details; };
    row("empty", QString(), QString(), QString());
    row("1000 characters", characters(1000), characters(1000), QString());
    row("1001 characters", characters(1001), characters(1000) + more, characters(1001));
    row("40 lines", lines(39) + QStringLiteral("end"), lines(39) + QStringLiteral("end"), QString());
    row("41 lines", lines(40) + QStringLiteral("end"), lines(39) + QStringLiteral("line") + more,
        lines(40) + QStringLiteral("end"));
    row("a long second line", lines(1) + characters(4995), lines(1) + characters(995) + more,
        lines(1) + characters(4995));
    row("5000 characters", characters(5000), characters(1000) + more, characters(5000));
    row("100 kB in one line", characters(100000), characters(1000) + more,
        characters(5000) + more + QStringLiteral("\nCharacters not shown: 95000"));
    row("1 MB of lines", lines(200000), lines(39) + QStringLiteral("line") + more,
        lines(1000) + more + QStringLiteral("\nCharacters not shown: 995000"));
    const auto bells = [](int count) { return QString(count, QChar(7)); };
    row("50 control characters", bells(50), bells(50), QString());
    row("51 control characters", bells(51), bells(50) + more, QString(51, QChar(0xB7)));
    const QString tabs = QString(1001, QLatin1Char('\t'));
    row("200 tabulators", tabs.left(200), tabs.left(200), QString());
    row("1001 tabulators", tabs, tabs.left(200) + more,
        tabs.left(1000) + more + QStringLiteral("\nCharacters not shown: 1"));
    row("line ends of another system", QStringLiteral("ab\r\n").repeated(39) + characters(844),
        QStringLiteral("ab\r\n").repeated(39) + characters(844), QString());
}

void tst_FormUpdate::longUpdateInformation()
{
    QFETCH(QString, answer);
    QFETCH(QString, text);
    QFETCH(QString, details);

    MessageBoxWatcher watcher;
    FormBench bench;
    QString shownDetails;
    QTimer::singleShot(0, &bench.finder, [&shownDetails] {
        if (const auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            shownDetails = box->detailedText();
    });
    bench.form->showUpdateInformation(1, 2, 3, answer);
    QCOMPARE(watcher.texts(), QStringList{text});
    QCOMPARE(shownDetails, details);
}

void tst_FormUpdate::longInformationIsSavedWhole()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("answer.txt"));
    const QString answer = QStringLiteral("f\u00FCr ") + QString(100000, QLatin1Char('x'));
    FormBench bench;
    const FileDialogDriver driver(name);
    QTimer::singleShot(0, &bench.finder, [] {
        const auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box != nullptr);
        for (QAbstractButton *button : box->buttons()) {
            if (button->text() == QStringLiteral("Save text..."))
                button->click();
        }
    });
    bench.form->showUpdateInformation(1, 2, 3, answer);
    QCOMPARE(driver.dialogs().size(), 1);
    QCOMPARE(driver.dialogs().constFirst().acceptMode, QFileDialog::AcceptSave);
    QCOMPARE(driver.dialogs().constFirst().caption, QStringLiteral("Save text"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), answer);
}

QTEST_MAIN(tst_FormUpdate)
#include "tst_formupdate.moc"
