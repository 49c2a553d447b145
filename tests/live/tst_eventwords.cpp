// SPDX-License-Identifier: MIT
#include <live/events/eventfilter.h>
#include <live/events/eventwords.h>
#include <live/events/eventwriting.h>

#include <QJsonDocument>
#include <QtTest>

namespace {

QDateTime timeOfDay(qint64 time)
{
    return QDateTime(QDate(2026, 9, 3), QTime(12, 0), Qt::UTC).addMSecs(time / 1000);
}

LiveEvent overTemperature()
{
    LiveEvent event;
    event.kind = EventKind::Emergency;
    event.nodeId = 4;
    event.code = 0x4210;
    event.errorRegister = 0x09;
    event.manufacturer = {1, 0, 0, 0, 0xFF};
    event.count = 3;
    event.time = 1500000;
    event.lastTime = 2500000;
    return event;
}

} // namespace

/*! Events in words, filtered and written. */
class tst_EventWords : public QObject
{
    Q_OBJECT

private slots:
    void kinds_data();
    void kinds();
    void filter();
    void json();
    void jsonOfNobody();
    void csv();
    void csvQuotes();
};

void tst_EventWords::kinds_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("severity");
    const auto row = [](EventKind kind, const char *name, const char *severity) {
        QTest::newRow(name) << int(kind) << QString::fromLatin1(name) << QString::fromLatin1(severity);
    };
    row(EventKind::NodeHeard, "nodeHeard", "note");
    row(EventKind::StateChanged, "stateChanged", "note");
    row(EventKind::NodeRestarted, "nodeRestarted", "warning");
    row(EventKind::NodeLost, "nodeLost", "fault");
    row(EventKind::NodeBack, "nodeBack", "note");
    row(EventKind::NmtCommand, "nmtCommand", "note");
    row(EventKind::Emergency, "emergency", "fault");
    row(EventKind::EmergencyReset, "emergencyReset", "note");
    row(EventKind::AbortBurst, "abortBurst", "warning");
    row(EventKind::Flood, "flood", "warning");
    row(EventKind::ControllerGood, "controllerGood", "note");
    row(EventKind::ControllerWarning, "controllerWarning", "warning");
    row(EventKind::ControllerPassive, "errorPassive", "fault");
    row(EventKind::BusOff, "busOff", "fault");
    row(EventKind::Overrun, "overrun", "warning");
    row(EventKind::InterfaceGone, "interfaceGone", "fault");
    row(EventKind::InterfaceBack, "interfaceBack", "note");
}

void tst_EventWords::kinds()
{
    QFETCH(int, kind);
    LiveEvent event;
    event.kind = static_cast<EventKind>(kind);
    QTEST(eventKindName(event.kind), "name");
    QTEST(EventWords::severity(event.severity()), "severity");
    QVERIFY(!EventWords::text(event).isEmpty());
}

void tst_EventWords::filter()
{
    const LiveEvent event = overTemperature();
    EventFilter filter;
    QVERIFY(filter.matches(event));
    filter.least = Severity::Fault;
    filter.nodes = {4};
    filter.kinds = {EventKind::Emergency};
    filter.text = QStringLiteral("TEMPERATURE");
    QVERIFY(filter.matches(event));

    EventFilter other = filter;
    other.nodes = {5};
    QVERIFY(!other.matches(event));
    other = filter;
    other.kinds = {EventKind::BusOff};
    QVERIFY(!other.matches(event));
    other = filter;
    other.text = QStringLiteral("voltage");
    QVERIFY(!other.matches(event));
    LiveEvent note = event;
    note.kind = EventKind::EmergencyReset;
    filter.kinds.clear();
    filter.text.clear();
    QVERIFY(!filter.matches(note));
}

void tst_EventWords::json()
{
    const QByteArray text
        = QJsonDocument(EventWriting::toJson(overTemperature(), timeOfDay)).toJson(QJsonDocument::Compact);
    QCOMPARE(text, QByteArray("{\"code\":16912,\"count\":3,\"errorRegister\":9,\"kind\":\"emergency\","
                              "\"lastTime\":\"2026-09-03T12:00:02.500Z\",\"manufacturer\":\"01000000FF\","
                              "\"node\":4,\"severity\":\"fault\",\"text\":\"Emergency 4210h: device "
                              "temperature. Error register: generic error, temperature. The manufacturer's "
                              "bytes: 01 00 00 00 FF.\",\"time\":\"2026-09-03T12:00:01.500Z\"}"));
}

void tst_EventWords::jsonOfNobody()
{
    LiveEvent event;
    event.kind = EventKind::InterfaceBack;
    const QJsonObject json = EventWriting::toJson(event, timeOfDay);
    QVERIFY(json.value(QStringLiteral("node")).isNull());
    QVERIFY(!json.contains(QStringLiteral("errorRegister")));
}

void tst_EventWords::csv()
{
    QCOMPARE(EventWriting::csvHead(), QByteArray("time,severity,node,kind,code,count,text\r\n"));
    QCOMPARE(EventWriting::toCsv(overTemperature(), timeOfDay),
             QByteArray("2026-09-03T12:00:01.500Z,fault,4,emergency,16912,3,\"Emergency 4210h: device "
                        "temperature. Error register: generic error, temperature. The manufacturer's bytes: "
                        "01 00 00 00 FF.\"\r\n"));
}

void tst_EventWords::csvQuotes()
{
    LiveEvent event;
    event.kind = EventKind::InterfaceGone;
    event.detail = QStringLiteral("\"can0\"\nis gone");
    QCOMPARE(EventWriting::toCsv(event, timeOfDay),
             QByteArray("2026-09-03T12:00:00.000Z,fault,,interfaceGone,0,1,\"The adapter is gone: "
                        "\"\"can0\"\"\nis gone\"\r\n"));
}

QTEST_GUILESS_MAIN(tst_EventWords)
#include "tst_eventwords.moc"
