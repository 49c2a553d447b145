// SPDX-License-Identifier: MIT
#include <canopen/heartbeatconsumer.h>
#include <host/core/heartbeathub.h>

#include <QCanBusFrame>
#include <QSignalSpy>
#include <QtTest>

namespace {

QCanBusFrame heartbeat(quint32 cobId, int state)
{
    return QCanBusFrame(cobId, QByteArray(1, static_cast<char>(state)));
}

NmtSender::NmtState stateOf(const QList<QVariant> &arguments)
{
    return arguments.at(1).value<NmtSender::NmtState>();
}

} // namespace

class tst_HeartbeatHub : public QObject
{
    Q_OBJECT

private slots:
    void receiversForErrorControlOnly();
    void receiverEmitsCobId();
    void sourcesForNodesOnly();
    void mapsStates_data();
    void mapsStates();
    void lostNodeIsUnknown();
    void forgottenNodesAreUnknown();
    void announcesStateToWhoAsked();
    void travelsThroughQueuedConnections();
    void tellsThatReceiverWasAsked();
};

void tst_HeartbeatHub::receiversForErrorControlOnly()
{
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    QVERIFY(hub.getReceiver(0x700) == nullptr);
    for (quint16 cobId = 0x701; cobId <= 0x77F; ++cobId)
        QVERIFY(hub.getReceiver(cobId) != nullptr);
    QVERIFY(hub.getReceiver(0x780) == nullptr);
    QVERIFY(hub.getReceiver(0x001) == nullptr);
    QVERIFY(hub.getReceiver(0xFFFF) == nullptr);
    QCOMPARE(hub.getReceiver(0x705), hub.getReceiver(0x705));
    QVERIFY(hub.getReceiver(0x705) != hub.getReceiver(0x706));
}

void tst_HeartbeatHub::receiverEmitsCobId()
{
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    QSignalSpy received(hub.getReceiver(0x77F), SIGNAL(received(quint16)));
    QSignalSpy other(hub.getReceiver(0x77E), SIGNAL(received(quint16)));
    QVERIFY(received.isValid());
    consumer.handleFrame(heartbeat(0x77F, 5));
    consumer.handleFrame(heartbeat(0x77F, 5));
    QCOMPARE(received.size(), 2);
    QCOMPARE(received.first().first().toInt(), 0x77F);
    QCOMPARE(other.size(), 0);
}

void tst_HeartbeatHub::sourcesForNodesOnly()
{
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    QVERIFY(hub.getNmtStateSource(0) == nullptr);
    for (int nodeId = 1; nodeId <= 127; ++nodeId)
        QVERIFY(hub.getNmtStateSource(static_cast<quint8>(nodeId)) != nullptr);
    QVERIFY(hub.getNmtStateSource(128) == nullptr);
    QVERIFY(hub.getNmtStateSource(255) == nullptr);
}

void tst_HeartbeatHub::mapsStates_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("state");

    QTest::newRow("boot-up") << 0x00 << 1;
    QTest::newRow("pre-operational") << 0x7F << 2;
    QTest::newRow("operational") << 0x05 << 3;
    QTest::newRow("stopped") << 0x04 << 4;
    QTest::newRow("operational with toggle bit") << 0x85 << 3;
}

void tst_HeartbeatHub::mapsStates()
{
    QFETCH(int, code);
    QFETCH(int, state);
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    QSignalSpy states(hub.getNmtStateSource(5), SIGNAL(newNmtState(quint8, NmtSender::NmtState)));
    QVERIFY(states.isValid());
    consumer.handleFrame(heartbeat(0x705, code));
    QCOMPARE(states.size(), 1);
    QCOMPARE(states.first().first().toInt(), 5);
    QCOMPARE(static_cast<int>(stateOf(states.first())), state);
}

void tst_HeartbeatHub::lostNodeIsUnknown()
{
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    QSignalSpy states(hub.getNmtStateSource(5), SIGNAL(newNmtState(quint8, NmtSender::NmtState)));
    consumer.setClock([]() -> qint64 { return 1000; });
    consumer.handleFrame(heartbeat(0x705, 5));
    consumer.setClock([]() -> qint64 { return 1500; });
    consumer.handleFrame(heartbeat(0x705, 5));
    consumer.checkTimeouts(60000);
    QCOMPARE(states.size(), 2);
    QCOMPARE(stateOf(states.last()), NmtSender::Unknown);
}

void tst_HeartbeatHub::forgottenNodesAreUnknown()
{
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    QSignalSpy heard(hub.getNmtStateSource(5), SIGNAL(newNmtState(quint8, NmtSender::NmtState)));
    QSignalSpy silent(hub.getNmtStateSource(6), SIGNAL(newNmtState(quint8, NmtSender::NmtState)));
    consumer.handleFrame(heartbeat(0x705, 5));
    hub.forgetNodes();
    hub.forgetNodes();
    QCOMPARE(heard.size(), 2);
    QCOMPARE(stateOf(heard.last()), NmtSender::Unknown);
    QCOMPARE(silent.size(), 0);
}

void tst_HeartbeatHub::announcesStateToWhoAsked()
{
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    consumer.handleFrame(heartbeat(0x705, 4));
    consumer.handleFrame(heartbeat(0x706, 5));
    QSignalSpy states(hub.getNmtStateSource(5), SIGNAL(newNmtState(quint8, NmtSender::NmtState)));
    QSignalSpy unheard(hub.getNmtStateSource(7), SIGNAL(newNmtState(quint8, NmtSender::NmtState)));
    QCOMPARE(states.size(), 0);
    QTRY_COMPARE(states.size(), 1);
    QCOMPARE(stateOf(states.first()), NmtSender::Stopped);
    QCOMPARE(unheard.size(), 0);
}

void tst_HeartbeatHub::travelsThroughQueuedConnections()
{
    class Listener : public QObject
    {
    public:
        int states = 0;
    };
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    QVERIFY(QMetaType::type("NmtSender::NmtState") != QMetaType::UnknownType);
    Listener listener;
    auto *source = qobject_cast<NmtStateSource *>(hub.getNmtStateSource(5));
    QVERIFY(source != nullptr);
    connect(
        source, &NmtStateSource::newNmtState, &listener, [&listener] { ++listener.states; },
        Qt::QueuedConnection);
    consumer.handleFrame(heartbeat(0x705, 5));
    QTRY_VERIFY(listener.states >= 1);
}

void tst_HeartbeatHub::tellsThatReceiverWasAsked()
{
    CanOpen::HeartbeatConsumer consumer;
    HeartbeatHub hub(&consumer);
    QSignalSpy asked(&hub, &HeartbeatHub::receiverAsked);
    hub.getNmtStateSource(5);
    hub.getReceiver(0x700);
    QCOMPARE(asked.size(), 0);
    hub.getReceiver(0x705);
    QCOMPARE(asked.size(), 1);
}

QTEST_GUILESS_MAIN(tst_HeartbeatHub)
#include "tst_heartbeathub.moc"
