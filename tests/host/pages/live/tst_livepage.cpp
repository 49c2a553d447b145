// SPDX-License-Identifier: MIT
#include "livehost.h"

#include <host/pages/live/eventview.h>
#include <host/pages/live/liveplot.h>
#include <host/pages/live/plotview.h>
#include <host/pages/live/lightstrip.h>
#include <host/pages/live/numbersdialog.h>
#include <host/pages/live/watchview.h>

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>

namespace {

/*! With no-break spaces in place of low lines. */
QString unbroken(const char *text)
{
    return QString::fromUtf8(text).replace(QLatin1Char('_'), QChar(QChar::Nbsp));
}

} // namespace

class tst_LivePage : public QObject
{
    Q_OBJECT

private slots:
    void emptyWithoutABus();
    void listensAndSendsNothing();
    void lights();
    void faultLight();
    void lightSaysTheRestInItsToolTip();
    void numberAndUnitAreNotParted_data();
    void numberAndUnitAreNotParted();
    void staysWhenTheBusIsClosed();
    void staysOverALoss();
    void beginsAnewWithTheNextBus();
    void followsOnlyWhileItIsSeen();
    void followsTenTimesASecond();
    void allNumbers();
    void numbersCanBeCopied();
    void eventsAreListed();
    void dataSheetCallsEmergencies();
    void eventsAreFiltered();
    void eventsAreCopied();
    void eventsAreSaved();
    void eventsThatCannotBeSaved();
    void newestEventIsFollowed();
    void nothingIsCutOffWhereThereIsLittleRoom_data();
    void nothingIsCutOffWhereThereIsLittleRoom();
    void eventIsChosen();
    void eventGoesToTheTrace();
    void noEventToChoose();

private:
    static QString label(const LiveHost &host, const char *name) { return host.find<QLabel>(name)->text(); }
    static QString event(const LiveHost &host, int row)
    {
        return host.find<QTableView>("eventTable")
            ->model()
            ->index(row, EventModel::TextColumn)
            .data()
            .toString();
    }
    static int events(const LiveHost &host)
    {
        return host.find<QTableView>("eventTable")->model()->rowCount();
    }
};

void tst_LivePage::emptyWithoutABus()
{
    LiveHost host;
    QVERIFY(host.find<QLabel>("liveEmpty")->isVisible());
    QVERIFY(!host.find<QToolButton>("allNumbers")->isEnabled());
    QCOMPARE(label(host, "lightTitle0"), QStringLiteral("Bus load: Not checked"));
    QCOMPARE(label(host, "lightText0"), QStringLiteral("Nothing was heard yet."));
    host.connectToBus();
    QVERIFY(!host.find<QLabel>("liveEmpty")->isVisible());
    QVERIFY(host.find<QToolButton>("allNumbers")->isEnabled());
}

void tst_LivePage::listensAndSendsNothing()
{
    LiveHost host;
    host.fake().addNode(5);
    host.connectToBus();
    host.heartbeats(4);
    QTest::qWait(60000);
    QCOMPARE(host.fake().device()->written().size(), 0);
}

void tst_LivePage::lights()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(8);
    QCOMPARE(label(host, "lightTitle0"), QStringLiteral("Bus load: Good"));
    QCOMPARE(label(host, "lightText0"), unbroken("The bus is used to 0_%, at most to 0_%."));
    QCOMPARE(label(host, "lightTitle1"), QStringLiteral("Devices: Good"));
    QCOMPARE(label(host, "lightTitle2"), QStringLiteral("Errors: Not checked"));
    QCOMPARE(label(host, "lightText2"), QStringLiteral("Nobody here can tell of errors."));
}

void tst_LivePage::faultLight()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(4);
    QTest::qWait(5000);
    QCOMPARE(label(host, "lightTitle1"), QStringLiteral("Devices: Fault"));
    QCOMPARE(label(host, "lightText1"), QStringLiteral("Node 5: Its heartbeat has stopped."));
}

void tst_LivePage::lightSaysTheRestInItsToolTip()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(4);
    QTest::qWait(5000);
    const QString tip = host.find<QLabel>("lightTitle1")->parentWidget()->toolTip();
    QVERIFY2(tip.contains(QStringLiteral("Look at its supply, its plug and its termination.")),
             qPrintable(tip));
}

void tst_LivePage::numberAndUnitAreNotParted_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char *text, const char *shown) {
        QTest::newRow(name) << QString::fromUtf8(text) << unbroken(shown);
    };
    row("percent", "The bus is used to 31 %, at most to 44 %.", "The bus is used to 31_%, at most to 44_%.");
    row("times", "It answers slowly: in 5 ms, at most in 5.5 s.",
        "It answers slowly: in 5_ms, at most in 5.5_s.");
    row("word", "Node 5 stopped after 3 metres of 100 % and 2 sights",
        "Node 5 stopped after 3 metres of 100_% and 2 sights");
    row("French", "Le bus est plein : occupé à 31 % ; « can0 » ?",
        "Le bus est plein_: occupé à 31_%_; «_can0_»_?");
    row("Chinese", "总线占用 31 %，最高 44 %。", "总线占用 31_%，最高 44_%。");
}

void tst_LivePage::numberAndUnitAreNotParted()
{
    QFETCH(QString, text);
    HealthLight light;
    light.text = text;
    Finding finding;
    finding.text = text;
    light.findings.append(finding);
    LightStrip strip;
    strip.setLights({light});
    const auto *label = strip.findChild<QLabel *>(QStringLiteral("lightText0"));
    QTEST(label->text(), "shown");
    QFETCH(QString, shown);
    QVERIFY2(label->parentWidget()->toolTip().contains(shown), qPrintable(label->parentWidget()->toolTip()));
}

void tst_LivePage::staysWhenTheBusIsClosed()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(4);
    host.disconnect();
    const double duration = host.session().numbers().duration;
    QTest::qWait(60000);
    QCOMPARE(host.session().numbers().duration, duration);
    QCOMPARE(label(host, "lightTitle1"), QStringLiteral("Devices: Good"));
    QCOMPARE(events(host), 1);
    QVERIFY(!host.session().isListening());
}

void tst_LivePage::staysOverALoss()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(4);
    host.fake().refusal = QStringLiteral("gone");
    host.fake().device()->goUnconnected();
    QTest::qWait(3000);
    host.fake().refusal.clear();
    QTest::qWait(3000);
    host.heartbeats(2);
    QVERIFY(host.session().isListening());
    QCOMPARE(events(host), 3);
    QCOMPARE(event(host, 2), QStringLiteral("The adapter is back."));
}

void tst_LivePage::beginsAnewWithTheNextBus()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(2);
    QCOMPARE(events(host), 1);
    host.disconnect();
    host.connectToBus();
    QCOMPARE(events(host), 0);
    host.heartbeats(2);
    QCOMPARE(events(host), 1);
}

void tst_LivePage::followsOnlyWhileItIsSeen()
{
    LiveHost host;
    host.connectToBus();
    host.page().hide();
    const int before = host.page().refreshes();
    host.heartbeats(4);
    QCOMPARE(host.page().refreshes(), before);
    host.page().show();
    QCOMPARE(host.page().refreshes(), before + 1);
    QCOMPARE(events(host), 1);
}

void tst_LivePage::followsTenTimesASecond()
{
    LiveHost host;
    host.connectToBus();
    const int before = host.page().refreshes();
    for (int i = 0; i < 2000; ++i) {
        host.fake().device()->inject(QCanBusFrame(0x185, QByteArray(8, '\0')));
        if (i % 100 == 99)
            QTest::qWait(100);
    }
    const int after = host.page().refreshes();
    QVERIFY2(after - before >= 15 && after - before <= 22, qPrintable(QString::number(after - before)));
}

void tst_LivePage::allNumbers()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(5);
    host.find<QToolButton>("allNumbers")->click();
    auto *dialog = host.page().findChild<NumbersDialog *>();
    QVERIFY(dialog != nullptr);
    const QString text = dialog->toText();
    QVERIFY2(text.contains(QStringLiteral("Bit rate\t125 kbit/s\n")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("\nFrames\t5\n")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("\n5\tOperational\t5\t")), qPrintable(text));
    QVERIFY2(text.contains(QRegularExpression(QStringLiteral("\t50\\d\\.\\d ms\t–\t"))), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("\nTransmit errors (counter)\t–\n")), qPrintable(text));
    host.heartbeats(2); // and it follows
    QVERIFY(dialog->toText().contains(QStringLiteral("\nFrames\t7\n")));
}

void tst_LivePage::numbersCanBeCopied()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(4);
    QTest::qWait(5000);
    NumbersDialog dialog(&host.session());
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.findChild<QAbstractButton *>(QStringLiteral("copyNumbers"))->click();
    const QString text = QGuiApplication::clipboard()->text();
    QVERIFY2(text.contains(QStringLiteral("\nFrames\t4\n")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("Fault\t5\tIts heartbeat has stopped.\tLook at its supply")),
             qPrintable(text));
}

void tst_LivePage::eventsAreListed()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(2);
    host.inject(0x085, "1042080000000000");
    QCOMPARE(events(host), 2);
    QCOMPARE(event(host, 0), QStringLiteral("It is heard: working (NMT state Operational)."));
    QCOMPARE(event(host, 1),
             QStringLiteral("Emergency 4210h: device temperature. Error register: temperature."));
}

void tst_LivePage::dataSheetCallsEmergencies()
{
    LiveHost host;
    host.connectToBus();
    host.inject(0x084, "1042080000000000");
    host.page().findChild<WatchView *>()->openSheet(QStringLiteral(VEHICLE_FOLDER "/ride-motor.dcf"), 4);
    host.inject(0x084, "0050000000000000");
    QCOMPARE(event(host, 0),
             QStringLiteral("Emergency 4210h: device temperature (Winding too hot: let it cool down). Error "
                            "register: temperature."));
    QCOMPARE(event(host, 1), QStringLiteral("Emergency 5000h: hardware."));
}

void tst_LivePage::eventsAreFiltered()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(2);
    host.inject(0x085, "1042080000000000");
    host.find<QComboBox>("eventSeverity")->setCurrentIndex(1);
    QCOMPARE(events(host), 1);
    QVERIFY(event(host, 0).startsWith(QStringLiteral("Emergency")));
    host.find<QComboBox>("eventSeverity")->setCurrentIndex(0);
    host.find<QLineEdit>("eventSearch")->setText(QStringLiteral("heard"));
    QCOMPARE(events(host), 1);
    QVERIFY(event(host, 0).startsWith(QStringLiteral("It is heard")));
}

void tst_LivePage::eventsAreCopied()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(2);
    host.inject(0x085, "1042080000000000");
    host.find<QToolButton>("copyEvents")->click();
    const QStringList lines = QGuiApplication::clipboard()->text().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(1).contains(QStringLiteral("\t5\tEmergency 4210h: device temperature.")));
}

void tst_LivePage::eventsAreSaved()
{
    QTemporaryDir folder;
    LiveHost host;
    host.page().setFolder([&folder] { return folder.path(); });
    QSignalSpy succeeded(&host.page(), &LivePage::told);
    host.connectToBus();
    host.heartbeats(2);
    host.find<QToolButton>("saveEvents")->click();
    auto *dialog = host.page().findChild<QFileDialog *>(QStringLiteral("saveEventsDialog"));
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->directory().absolutePath(), QDir(folder.path()).absolutePath());
    const QString csv = folder.filePath(QStringLiteral("events.csv"));
    emit dialog->fileSelected(csv);
    QTRY_COMPARE(succeeded.count(), 1);
    QFile file(csv);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains(",note,5,nodeHeard,"));
    auto *view = host.page().findChild<EventView *>();
    view->write(folder.filePath(QStringLiteral("events.json")));
    QTRY_COMPARE(succeeded.count(), 2);
    QFile json(folder.filePath(QStringLiteral("events.json")));
    QVERIFY(json.open(QIODevice::ReadOnly));
    QVERIFY(json.readAll().startsWith("{\n    \"events\": ["));
}

void tst_LivePage::eventsThatCannotBeSaved()
{
    LiveHost host;
    QSignalSpy failed(&host.page(), &LivePage::failed);
    host.connectToBus();
    host.page().findChild<EventView *>()->write(QStringLiteral("/nowhere/events.csv"));
    QTRY_COMPARE(failed.count(), 1);
    QVERIFY(failed.first().first().toString().startsWith(
        QStringLiteral("The file /nowhere/events.csv cannot be written: ")));
}

void tst_LivePage::nothingIsCutOffWhereThereIsLittleRoom_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("wide") << 1000;
    QTest::newRow("narrow") << 680;
    QTest::newRow("narrower") << 560;
}

/*! The page becomes higher then, and is scrolled. */
void tst_LivePage::nothingIsCutOffWhereThereIsLittleRoom()
{
    QFETCH(int, width);
    LiveHost host;
    host.connectToBus();
    LiveValues &values = host.session().live().values();
    for (quint8 sub = 1; sub <= 4; ++sub) {
        values.note(2, {0x6042, sub}, 253, host.session().now());
        QVERIFY(host.session().watch().add({2, {0x6042, sub}, 0, true}));
        values.note(2, {0x6042, sub}, 254, host.session().now());
    }
    host.heartbeats(2);
    host.page().resize(width, 100);
    QTest::qWait(300);
    auto *plot = host.page().findChild<PlotView *>();
    plot->showTime(host.session().now());
    QTest::qWait(300);
    QVERIFY(plot->plot().isVisible());
    QVERIFY(plot->plot().height() >= plot->plot().minimumSizeHint().height());
    QVERIFY(host.find<QLabel>("plotReadings")->text().count(QString::fromUtf8("°C")) == 4);
    const QList<QLabel *> labels = host.page().findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (label->isVisible() && label->wordWrap() && !label->text().isEmpty())
            QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                     qPrintable(label->objectName()));
    }
}

void tst_LivePage::newestEventIsFollowed()
{
    LiveHost host;
    host.connectToBus();
    const auto restart = [&host] {
        host.fake().heartbeat(5, 0x00);
        QTest::qWait(1200);
    };
    for (int i = 0; i < 60; ++i)
        restart();
    QScrollBar *bar = host.find<QTableView>("eventTable")->verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());
    bar->setValue(0);
    restart();
    QCOMPARE(bar->value(), 0); // the user looks at something
    bar->setValue(bar->maximum());
    restart();
    QCOMPARE(bar->value(), bar->maximum());
}

void tst_LivePage::eventIsChosen()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(2);
    host.inject(0x085, "1042080000000000");
    auto *view = host.page().findChild<EventView *>();
    QVector<LiveEvent> chosen;
    connect(view, &EventView::eventChosen, this, [&chosen](const LiveEvent &event) { chosen << event; });
    auto *table = host.find<QTableView>("eventTable");
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table->visualRect(table->model()->index(1, 0)).center());
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.first().kind, EventKind::Emergency);
    const qint64 time = chosen.first().time;
    QVERIFY(time > 900000 && time < 1200000);
}

void tst_LivePage::eventGoesToTheTrace()
{
    LiveHost host;
    host.connectToBus();
    host.heartbeats(2);
    host.inject(0x085, "1042080000000000");
    QVector<QDateTime> wanted;
    connect(&host.page(), &LivePage::traceRequested, this,
            [&wanted](const LiveEvent &, const QDateTime &time) { wanted << time; });
    auto *view = host.page().findChild<EventView *>();
    auto *table = host.find<QTableView>("eventTable");
    QVERIFY(host.page().showEventAt(host.session().live().timeOfDay(1'000'000)));
    QCOMPARE(table->currentIndex().row(), 1);
    view->findChild<QAction *>(QStringLiteral("showInTrace"))->trigger();
    QCOMPARE(wanted.size(), 1);
    QCOMPARE(host.session().live().timeOf(wanted.first()) / 100'000, 10); // ten tenths of a second
}

void tst_LivePage::noEventToChoose()
{
    LiveHost host;
    host.connectToBus();
    QVERIFY(!host.page().showEventAt(QDateTime::currentDateTime()));
}

QTEST_MAIN(tst_LivePage)
#include "tst_livepage.moc"
