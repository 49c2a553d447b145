// SPDX-License-Identifier: MIT
#include <bus/interfacehealth.h>
#include <bus/receivequeue.h>

#include <QSignalSpy>
#include <QtTest>

class tst_ReceiveQueue : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhatIsDropped();
    void isTellingByItself();
    void isSilentWhereNothingIsKnown();
    void isSilentWhenTheSocketIsClosed();
    void staysRightWhenTheCounterBeginsAgain();
    void beginsAnew();
    void isAReportLikeThatOfAnAdapter();

private:
    std::optional<quint32> m_dropped;
    const ReceiveQueue::Counter m_counter = [this] { return m_dropped; };
};

void tst_ReceiveQueue::tellsWhatIsDropped()
{
    ReceiveQueue queue;
    const QSignalSpy told(&queue, &ReceiveQueue::overflowed);
    m_dropped = 7; // before this program listened
    queue.start(m_counter);
    queue.check();
    QCOMPARE(told.size(), 0);
    m_dropped = 8;
    queue.check();
    QCOMPARE(told.size(), 1);
    queue.check();
    QCOMPARE(told.size(), 1);
}

void tst_ReceiveQueue::isTellingByItself()
{
    ReceiveQueue queue;
    QSignalSpy told(&queue, &ReceiveQueue::overflowed);
    m_dropped = 0;
    queue.start(m_counter);
    m_dropped = 1;
    QVERIFY(told.wait(1000));
    queue.stop();
    m_dropped = 2;
    QVERIFY(!told.wait(5000));
}

void tst_ReceiveQueue::isSilentWhereNothingIsKnown()
{
    ReceiveQueue queue;
    QSignalSpy told(&queue, &ReceiveQueue::overflowed);
    m_dropped.reset();
    queue.start(m_counter);
    queue.check();
    m_dropped = 5;
    QVERIFY(!told.wait(5000));
}

void tst_ReceiveQueue::isSilentWhenTheSocketIsClosed()
{
    ReceiveQueue queue;
    const QSignalSpy told(&queue, &ReceiveQueue::overflowed);
    m_dropped = 3;
    queue.start(m_counter);
    m_dropped.reset();
    queue.check();
    QCOMPARE(told.size(), 0);
}

void tst_ReceiveQueue::staysRightWhenTheCounterBeginsAgain()
{
    ReceiveQueue queue;
    const QSignalSpy told(&queue, &ReceiveQueue::overflowed);
    m_dropped = 0xFFFFFFFF;
    queue.start(m_counter);
    m_dropped = 0;
    queue.check();
    QCOMPARE(told.size(), 1);
}

void tst_ReceiveQueue::beginsAnew()
{
    ReceiveQueue queue;
    const QSignalSpy told(&queue, &ReceiveQueue::overflowed);
    m_dropped = 9;
    queue.start(m_counter);
    m_dropped = 0; // another socket
    queue.start(m_counter);
    queue.check();
    QCOMPARE(told.size(), 0);
}

void tst_ReceiveQueue::isAReportLikeThatOfAnAdapter()
{
    const QCanBusFrame frame = ReceiveQueue::overflowFrame();
    QCOMPARE(frame.frameType(), QCanBusFrame::ErrorFrame);
    QCOMPARE(frame.payload(), QByteArray::fromHex("0001000000000000"));
    QVERIFY(frame.isValid());
    InterfaceHealth health([] { return InterfaceHealth::State::Unknown; });
    health.handleFrame(frame);
    QCOMPARE(health.overruns(), quint64(1));
}

QTEST_GUILESS_MAIN(tst_ReceiveQueue)
#include "tst_receivequeue.moc"
