// SPDX-License-Identifier: MIT
#include "frames.h"

#include <live/events/eventrecorder.h>
#include <live/events/eventwords.h>

#include <QtTest>

#include <memory>

namespace {

/*! "12000 Node 5: It has restarted. (2 times)": ms and words of all events. */
QStringList listed(const EventRecorder &recorder)
{
    QStringList lines;
    for (const LiveEvent &event : recorder.list().events())
        lines.append(QString::number(event.time / millisecond) + QLatin1Char(' ') + EventWords::line(event));
    return lines;
}

} // namespace

/*! Events by frames whose times are typed here. */
class tst_EventRecorder : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_recorder = std::make_unique<EventRecorder>(); }
    void nodeIsHeard();
    void nodeChangesState();
    void nodeRestarts();
    void nodeIsLostAndBack();
    void nodeIsLostOnce();
    void nodeIsLostByItsOwnWord();
    void emergency();
    void emergencyAsItsMakerCallsIt();
    void emergencyIsGone();
    void brokenEmergencies();
    void commands();
    void brokenCommands();
    void abortBurst();
    void absenceIsNoBurst();
    void slowAbortsAreNoBurst();
    void controller();
    void overrun();
    void interfaceIsGone();
    void silenceWithoutInterface();
    void repeatsAreCounted();
    void repeatsEndAfterASecond();
    void floodOfOneNode();
    void floodHidesNobodyElse();
    void oldestLeave();
    void clockJumpsBack();
    void otherFramesAreNone();

private:
    void feed(qint64 milliseconds, quint32 id, const char *hex)
    {
        m_recorder->handle(frameAt(milliseconds * millisecond, id, hex));
    }
    void expect(const QStringList &lines) { QCOMPARE(listed(*m_recorder), lines); }

    std::unique_ptr<EventRecorder> m_recorder;
};

void tst_EventRecorder::nodeIsHeard()
{
    feed(10, 0x705, "05");
    feed(110, 0x705, "05");
    feed(120, 0x706, "00");
    expect({QStringLiteral("10 Node 5: It is heard: working (NMT state Operational)."),
            QStringLiteral("120 Node 6: It is heard: starting (NMT state Boot-up).")});
    QCOMPARE(m_recorder->list().events().front().severity(), Severity::Note);
}

void tst_EventRecorder::nodeChangesState()
{
    feed(0, 0x705, "7F");
    feed(100, 0x705, "05");
    feed(200, 0x705, "85"); // the toggle bit of node guarding
    feed(300, 0x705, "04");
    expect({QStringLiteral("0 Node 5: It is heard: waiting (NMT state Pre-operational)."),
            QStringLiteral("100 Node 5: It is now working (NMT state Operational)."),
            QStringLiteral("300 Node 5: It is now stopped (NMT state Stopped).")});
}

void tst_EventRecorder::nodeRestarts()
{
    feed(0, 0x705, "05");
    feed(5000, 0x705, "00");
    expect({QStringLiteral("0 Node 5: It is heard: working (NMT state Operational)."),
            QStringLiteral("5000 Node 5: It has restarted.")});
    QCOMPARE(m_recorder->list().events().back().severity(), Severity::Warning);
}

void tst_EventRecorder::nodeIsLostAndBack()
{
    for (const int time : {0, 1000, 2000})
        feed(time, 0x705, "05");
    m_recorder->advance(5000 * millisecond); // three periods
    QCOMPARE(m_recorder->list().events().size(), std::size_t(1));
    m_recorder->advance(5100 * millisecond);
    feed(9000, 0x705, "7F");
    feed(9100, 0x705, "7F");
    expect({QStringLiteral("0 Node 5: It is heard: working (NMT state Operational)."),
            QStringLiteral("5100 Node 5: It is silent: its heartbeat has stopped."),
            QStringLiteral("9000 Node 5: It is back: waiting (NMT state Pre-operational).")});
}

void tst_EventRecorder::nodeIsLostOnce()
{
    for (const int time : {0, 100, 200})
        feed(time, 0x705, "05");
    for (int time = 3000; time < 60000; time += 100)
        m_recorder->advance(time * millisecond);
    QCOMPARE(m_recorder->list().events().size(), std::size_t(2));
    QCOMPARE(m_recorder->list().events().back().count, quint32(1));
}

void tst_EventRecorder::nodeIsLostByItsOwnWord()
{
    m_recorder->setConfiguredHeartbeat(5, 1000);
    m_recorder->setConfiguredHeartbeat(0, 1000);
    m_recorder->setConfiguredHeartbeat(128, 1000);
    feed(0, 0x705, "05"); // once, so that nobody could hear a period
    feed(0, 0x706, "05");
    m_recorder->advance(3100 * millisecond);
    expect({QStringLiteral("0 Node 5: It is heard: working (NMT state Operational)."),
            QStringLiteral("0 Node 6: It is heard: working (NMT state Operational)."),
            QStringLiteral("3100 Node 5: It is silent: its heartbeat has stopped.")});
}

void tst_EventRecorder::emergency()
{
    feed(5, 0x085, "1042090102030405");
    expect({QStringLiteral("5 Node 5: Emergency 4210h: device temperature. Error register: generic error, "
                           "temperature. The manufacturer's bytes: 01 02 03 04 05.")});
    QCOMPARE(m_recorder->list().events().front().severity(), Severity::Fault);
}

void tst_EventRecorder::emergencyAsItsMakerCallsIt()
{
    feed(5, 0x085, "12FF000000000000");
    feed(6, 0x085, "1042000000000000");
    feed(7, 0x086, "12FF000000000000");
    const quint64 revision = m_recorder->list().revision();
    m_recorder->setEmergencyTexts(5, {{0xFF12, QStringLiteral("Cell too cold")}});
    QVERIFY(m_recorder->list().revision() != revision);
    feed(5000, 0x085, "12FF000000000000");
    feed(5001, 0x085, "12FF000000000000");
    feed(5002, 0x085, "0000000000000000");
    QStringList lines{
        QStringLiteral("5 Node 5: Emergency FF12h: specific to the device (Cell too cold)."),
        QStringLiteral("6 Node 5: Emergency 4210h: device temperature."),
        QStringLiteral("7 Node 6: Emergency FF12h: specific to the device."),
        QStringLiteral("5000 Node 5: Emergency FF12h: specific to the device (Cell too cold). (2 times)"),
        QStringLiteral("5002 Node 5: Emergency 0000h: an error is gone.")};
    expect(lines);
    m_recorder->setEmergencyTexts(200, {{0xFF12, QStringLiteral("Nobody")}});
    m_recorder->setEmergencyTexts(5, {}); // another data sheet, which says nothing
    lines[0] = QStringLiteral("5 Node 5: Emergency FF12h: specific to the device.");
    lines[3] = QStringLiteral("5000 Node 5: Emergency FF12h: specific to the device. (2 times)");
    expect(lines);
}

void tst_EventRecorder::emergencyIsGone()
{
    feed(5, 0x085, "0000000000000000");
    expect({QStringLiteral("5 Node 5: Emergency 0000h: an error is gone.")});
    QCOMPARE(m_recorder->list().events().front().severity(), Severity::Note);
}

void tst_EventRecorder::brokenEmergencies()
{
    feed(5, 0x085, "104209");
    feed(5, 0x080, "1042090000000000"); // of nobody: the SYNC's identifier
    QCanBusFrame remote(QCanBusFrame::RemoteRequestFrame);
    remote.setFrameId(0x085);
    remote.setPayload(QByteArray(8, '\1'));
    m_recorder->handle(LiveFrame::of(remote, 0));
    expect({});
}

void tst_EventRecorder::commands()
{
    feed(0, 0x000, "0100");
    feed(10, 0x000, "8105");
    feed(20, 0x000, "7705");
    expect({QStringLiteral("0 NMT command to all nodes: start."),
            QStringLiteral("10 Node 5: NMT command: reset the device."),
            QStringLiteral("20 Node 5: NMT command: unknown command 77h.")});
}

void tst_EventRecorder::brokenCommands()
{
    feed(0, 0x000, "01");
    feed(0, 0x000, "0180"); // node 128
    feed(0, 0x000, "010000");
    expect({});
}

void tst_EventRecorder::abortBurst()
{
    for (const int time : {0, 100, 200, 300})
        feed(time, 0x585, "8000200000000008");
    expect({});
    feed(400, 0x605, "8000200000000405"); // the client's count as well
    expect({QStringLiteral(
        "400 Node 5: SDO transfers are aborted one after the other: The SDO protocol timed out "
        "(0504 0000h). (5 times)")});
    feed(500, 0x605, "8000200000000405");
    QCOMPARE(m_recorder->list().events().back().count, quint32(6));
    QCOMPARE(m_recorder->list().events().back().lastTime, 500 * millisecond);
}

void tst_EventRecorder::absenceIsNoBurst()
{
    for (int i = 0; i < 100; ++i)
        feed(i, 0x585, i % 2 == 0 ? "8000200000000206" : "8000200111000906");
    expect({});
}

void tst_EventRecorder::slowAbortsAreNoBurst()
{
    for (int i = 0; i < 100; ++i)
        feed(i * 251, 0x585, "8000200000000008");
    expect({});
}

void tst_EventRecorder::controller()
{
    using State = InterfaceHealth::State;
    m_recorder->setController(State::Good, 0); // as it should be
    m_recorder->setController(State::Warning, 2000000);
    m_recorder->setController(State::Warning, 3000000);
    m_recorder->setController(State::Passive, 4000000);
    m_recorder->setController(State::BusOff, 6000000);
    m_recorder->setController(State::Good, 8000000);
    expect({QStringLiteral("2000 The adapter sees errors (warning limit)."),
            QStringLiteral("4000 The adapter sees many errors (error-passive)."),
            QStringLiteral("6000 The adapter has switched itself off the bus (bus-off)."),
            QStringLiteral("8000 The adapter sees no more errors.")});
}

void tst_EventRecorder::overrun()
{
    m_recorder->handle(errorAt(0, QCanBusFrame::ControllerError, "0001000000000000"));
    m_recorder->handle(errorAt(0, QCanBusFrame::ControllerError, "0004000000000000"));
    m_recorder->handle(errorAt(0, QCanBusFrame::ControllerError, "00"));
    m_recorder->handle(errorAt(0, QCanBusFrame::BusError, "0001000000000000"));
    expect({QStringLiteral("0 Frames were lost: the computer was too slow.")});
}

void tst_EventRecorder::interfaceIsGone()
{
    m_recorder->findInterface(0); // was never gone
    m_recorder->loseInterface(QStringLiteral("it was unplugged."), second);
    m_recorder->loseInterface(QStringLiteral("it was unplugged."), 9 * second);
    m_recorder->findInterface(20 * second);
    expect({QStringLiteral("1000 The adapter is gone: it was unplugged."),
            QStringLiteral("20000 The adapter is back.")});
}

void tst_EventRecorder::silenceWithoutInterface()
{
    for (const int time : {0, 100, 200})
        feed(time, 0x705, "05");
    m_recorder->loseInterface(QString(), 300 * millisecond);
    m_recorder->advance(60 * second);
    m_recorder->findInterface(61 * second);
    m_recorder->advance(70 * second); // not heard since, which may have other reasons
    expect({QStringLiteral("0 Node 5: It is heard: working (NMT state Operational)."),
            QStringLiteral("300 The adapter is gone."), QStringLiteral("61000 The adapter is back.")});
}

void tst_EventRecorder::repeatsAreCounted()
{
    for (int i = 0; i < 1000; ++i)
        feed(i, 0x085, "1042090000000000");
    QCOMPARE(m_recorder->list().events().size(), std::size_t(1));
    QCOMPARE(m_recorder->list().events().front().count, quint32(1000));
    QCOMPARE(m_recorder->list().events().front().time, qint64(0));
    QCOMPARE(m_recorder->list().events().front().lastTime, 999 * millisecond);
    QCOMPARE(m_recorder->list().revision(), quint64(1000));
    feed(999, 0x085, "1042090000000001"); // not the same
    QCOMPARE(m_recorder->list().events().size(), std::size_t(2));
}

void tst_EventRecorder::repeatsEndAfterASecond()
{
    feed(0, 0x085, "1042090000000000");
    feed(1000, 0x085, "1042090000000000");
    feed(2001, 0x085, "1042090000000000");
    QCOMPARE(m_recorder->list().events().size(), std::size_t(2));
    QCOMPARE(m_recorder->list().events().front().count, quint32(2));
}

void tst_EventRecorder::floodOfOneNode()
{
    for (int i = 0; i < 1000; ++i)
        feed(i, 0x085, i % 2 == 0 ? "1042090000000000" : "1043090000000000");
    const std::deque<LiveEvent> &events = m_recorder->list().events();
    QCOMPARE(events.size(), std::size_t(21));
    QCOMPARE(events.back().kind, EventKind::Flood);
    // None is lost: those that are the same as the last one listed count there.
    QCOMPARE(events.back().count, quint32(490));
    QCOMPARE(events.at(19).count, quint32(491));
    QCOMPARE(int(events.back().nodeId), 5);
}

void tst_EventRecorder::floodHidesNobodyElse()
{
    for (int i = 0; i < 100; ++i)
        feed(i, 0x085, i % 2 == 0 ? "1042090000000000" : "1043090000000000");
    feed(100, 0x706, "05");
    QCOMPARE(m_recorder->list().events().back().kind, EventKind::NodeHeard);
    feed(1200, 0x085, "1042090000000000"); // listed again when the flood is over
    QCOMPARE(m_recorder->list().events().back().kind, EventKind::Emergency);
}

void tst_EventRecorder::oldestLeave()
{
    for (int i = 0; i < 20100; ++i)
        feed(i * 2000, 0x085, "1042090000000000");
    const EventList &list = m_recorder->list();
    QCOMPARE(list.events().size(), std::size_t(20000));
    QCOMPARE(list.forgotten(), quint64(100));
    QCOMPARE(list.events().front().number, quint64(101));
    QCOMPARE(list.events().back().number, quint64(20100));
    m_recorder->clear();
    QCOMPARE(list.events().size(), std::size_t(0));
}

void tst_EventRecorder::clockJumpsBack()
{
    feed(50000, 0x085, "1042090000000000");
    feed(10, 0x085, "1042090000000000");
    QCOMPARE(m_recorder->list().events().size(), std::size_t(2));
    for (int i = 0; i < 19; ++i) // a new window, with room for 20
        feed(20, 0x085, i % 2 == 0 ? "1042090000000001" : "1042090000000002");
    QCOMPARE(m_recorder->list().events().size(), std::size_t(21));
    QCOMPARE(m_recorder->list().events().back().kind, EventKind::Emergency);
}

void tst_EventRecorder::otherFramesAreNone()
{
    feed(0, 0x185, "0102030405060708");
    feed(0, 0x080, "");
    feed(0, 0x100, "010203040506");
    feed(0, 0x605, "4018100100000000");
    feed(0, 0x585, "80");
    feed(0, 0x705, "33");
    feed(0, 0x705, "");
    feed(0, 0x7E5, "01");
    expect({});
}

QTEST_GUILESS_MAIN(tst_EventRecorder)
#include "tst_eventrecorder.moc"
