// SPDX-License-Identifier: MIT
#include <bus/interfacehealth.h>
#include <tests/support/fakecandevice.h>

#include <QCanBusFrame>
#include <QSignalSpy>
#include <QtTest>

namespace {

using State = InterfaceHealth::State;

QCanBusFrame errorFrame(QCanBusFrame::FrameErrors errors, const char *payload)
{
    QCanBusFrame frame(QCanBusFrame::ErrorFrame);
    frame.setPayload(QByteArray::fromHex(payload));
    frame.setError(errors);
    return frame;
}

const QCanBusFrame heartbeat(0x701, QByteArray(1, 5));

} // namespace

class tst_InterfaceHealth : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_told = State::Unknown; }

    void errorFrames_data();
    void errorFrames();
    void busOffIsOverWhenFramesCome();
    void passiveStaysWhenFramesCome();
    void countsOverruns();
    void asksBackEnd();
    void backEndThatTellsNothing();
    void beginsAnew();
    void deviceThatTells();

private:
    State m_told = State::Unknown;
};

void tst_InterfaceHealth::errorFrames_data()
{
    QTest::addColumn<int>("errors");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<InterfaceHealth::State>("state");

    const int controller = QCanBusFrame::ControllerError;
    QTest::newRow("receive warning") << controller << QByteArray("0004000000000000") << State::Warning;
    QTest::newRow("send warning") << controller << QByteArray("0008000000000000") << State::Warning;
    QTest::newRow("receive passive") << controller << QByteArray("0010000000000000") << State::Passive;
    QTest::newRow("send passive") << controller << QByteArray("0020000000000000") << State::Passive;
    QTest::newRow("passive and warning") << controller << QByteArray("0024000000000000") << State::Passive;
    QTest::newRow("active again") << controller << QByteArray("0040000000000000") << State::Good;
    QTest::newRow("bus-off") << int(QCanBusFrame::BusOffError) << QByteArray("0000000000000000")
                             << State::BusOff;
    QTest::newRow("bus-off and passive") << int(QCanBusFrame::BusOffError | QCanBusFrame::ControllerError)
                                         << QByteArray("0020000000000000") << State::BusOff;
    QTest::newRow("restarted") << int(QCanBusFrame::ControllerRestartError) << QByteArray("0000000000000000")
                               << State::Good;
    QTest::newRow("no payload") << controller << QByteArray() << State::Unknown;
    QTest::newRow("one byte") << controller << QByteArray("20") << State::Unknown;
    QTest::newRow("bits of another error")
        << int(QCanBusFrame::TransceiverError) << QByteArray("0030000000000000") << State::Unknown;
}

void tst_InterfaceHealth::errorFrames()
{
    QFETCH(int, errors);
    QFETCH(QByteArray, payload);
    QFETCH(InterfaceHealth::State, state);
    InterfaceHealth health([this] { return m_told; });
    health.start();
    QSignalSpy changed(&health, &InterfaceHealth::stateChanged);
    const QCanBusFrame frame = errorFrame(QCanBusFrame::FrameErrors(errors), payload);
    health.handleFrame(frame);
    health.handleFrame(frame);
    QCOMPARE(health.state(), state);
    QCOMPARE(changed.size(), state == State::Unknown ? 0 : 1);
}

void tst_InterfaceHealth::busOffIsOverWhenFramesCome()
{
    InterfaceHealth health([this] { return m_told; });
    health.start();
    health.handleFrame(errorFrame(QCanBusFrame::BusOffError, "0000000000000000"));
    health.handleFrame(heartbeat);
    QCOMPARE(health.state(), State::Good);
}

void tst_InterfaceHealth::passiveStaysWhenFramesCome()
{
    InterfaceHealth health([this] { return m_told; });
    health.start();
    health.handleFrame(errorFrame(QCanBusFrame::ControllerError, "0020000000000000"));
    health.handleFrame(heartbeat);
    QCOMPARE(health.state(), State::Passive);
}

void tst_InterfaceHealth::countsOverruns()
{
    InterfaceHealth health([this] { return m_told; });
    health.start();
    QSignalSpy reported(&health, &InterfaceHealth::overrunReported);
    health.handleFrame(errorFrame(QCanBusFrame::ControllerError, "0001000000000000"));
    health.handleFrame(errorFrame(QCanBusFrame::ControllerError, "0021000000000000"));
    health.handleFrame(errorFrame(QCanBusFrame::ControllerError, "0002000000000000")); // of the send queue
    QCOMPARE(reported.size(), 2);
    QCOMPARE(health.overruns(), quint64(2));
    QCOMPARE(health.state(), State::Passive);
}

void tst_InterfaceHealth::asksBackEnd()
{
    InterfaceHealth health([this] { return m_told; });
    QSignalSpy changed(&health, &InterfaceHealth::stateChanged);
    health.start();
    m_told = State::Passive;
    QTRY_COMPARE(changed.size(), 1); // by its timer
    QCOMPARE(health.state(), State::Passive);
    m_told = State::Good;
    health.poll();
    QCOMPARE(health.state(), State::Good);
}

void tst_InterfaceHealth::backEndThatTellsNothing()
{
    InterfaceHealth health([this] { return m_told; });
    health.start();
    health.handleFrame(errorFrame(QCanBusFrame::ControllerError, "0020000000000000"));
    health.poll();
    QCOMPARE(health.state(), State::Passive); // what the frame said stays
}

void tst_InterfaceHealth::beginsAnew()
{
    InterfaceHealth health([this] { return m_told; });
    health.start();
    health.handleFrame(errorFrame(QCanBusFrame::ControllerError, "0021000000000000"));
    health.stop();
    QCOMPARE(health.state(), State::Unknown);
    QCOMPARE(health.overruns(), quint64(1)); // can still be looked at
    health.start();
    QCOMPARE(health.overruns(), quint64(0));
}

void tst_InterfaceHealth::deviceThatTells()
{
    QCOMPARE(InterfaceHealth::stateOf(nullptr), State::Unknown);
    FakeCanDevice silent;
    QCOMPARE(InterfaceHealth::stateOf(&silent), State::Unknown);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    class TellingDevice : public FakeCanDevice
    {
    public:
        TellingDevice()
        {
            setCanBusStatusGetter([this] { return status; });
        }
        CanBusStatus status = CanBusStatus::Unknown;
    };
    TellingDevice device;
    QVERIFY(device.connectDevice());
    QCOMPARE(InterfaceHealth::stateOf(&device), State::Unknown);
    device.status = QCanBusDevice::CanBusStatus::Good;
    QCOMPARE(InterfaceHealth::stateOf(&device), State::Good);
    device.status = QCanBusDevice::CanBusStatus::Warning;
    QCOMPARE(InterfaceHealth::stateOf(&device), State::Warning);
    device.status = QCanBusDevice::CanBusStatus::Error;
    QCOMPARE(InterfaceHealth::stateOf(&device), State::Passive);
    device.status = QCanBusDevice::CanBusStatus::BusOff;
    QCOMPARE(InterfaceHealth::stateOf(&device), State::BusOff);
#endif
}

QTEST_GUILESS_MAIN(tst_InterfaceHealth)
#include "tst_interfacehealth.moc"
