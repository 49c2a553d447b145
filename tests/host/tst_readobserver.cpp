// SPDX-License-Identifier: MIT
#include <host/core/readobserver.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

using std::chrono::milliseconds;
using Phase = ReadObserver::Phase;
using Ending = HostSdoClient::Ending;

constexpr quint32 noObject = 0x06020000;
constexpr quint32 noSubIndex = 0x06090011;
constexpr quint32 generalError = 0x08000000;
constexpr quint32 noAnswer = 0xFFFFFFFF;

} // namespace

Q_DECLARE_METATYPE(ReadSummary::End)

class tst_ReadObserver : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_now = milliseconds(1000);
        m_observer = std::make_unique<ReadObserver>([this] { return m_now; });
        m_ended = std::make_unique<QSignalSpy>(m_observer.get(), &ReadObserver::readEnded);
        m_settled = std::make_unique<QSignalSpy>(m_observer.get(), &ReadObserver::settled);
        m_detections = std::make_unique<QSignalSpy>(m_observer.get(), &ReadObserver::detectionStarted);
    }

    void oneDetectionForAllReceivers();
    void nothingIsAskedAfterDetection();
    void slowFirstRequestStillBelongsToDetection();
    void completeRead();
    void slowAnswerIsNoEnd();
    void stopsAtSilence();
    void busGoesAway();
    void userDisconnects();
    void busGoesAwayDuringDetection_data();
    void busGoesAwayDuringDetection();
    void nodesThatAreNoneAreNotRecorded();
    void requestThatIsNotSent();
    void silentObjectHasFailed();
    void cancelledDuringUpload();
    void cancelledDuringDetection();
    void cancelledAfterLastRequest();
    void cancelsOnlyReads();
    void nextReadBeginsBeforeTheLastHasSettled();
    void lastRequestEndsDuringNextDetection();
    void lastRequestBeginsDuringNextDetection();
    void otherPluginReadsWhileItListens();
    void noLeftOverAfterQuietTime();
    void secondReadAfterVainDetection();
    void uploadWithoutDetection();
    void hasTimerOfItsOwn();
    void pauseOfTheProgramIsNoEnd();

private:
    void pass(int ms)
    {
        m_now += milliseconds(ms);
        m_observer->check();
    }
    void detect()
    {
        for (int i = 0; i < 127; ++i)
            m_observer->receiverAsked();
        pass(2000);
    }
    void ask(quint8 nodeId, quint16 index, Ending ending = Ending::Value, quint32 code = 0)
    {
        m_observer->uploadStarted(nodeId, {index, 0});
        pass(5);
        m_observer->uploadEnded(nodeId, {index, 0}, ending, code);
    }
    ReadSummary ended() const { return m_ended->last().first().value<ReadSummary>(); }

    milliseconds m_now{0};
    std::unique_ptr<ReadObserver> m_observer;
    std::unique_ptr<QSignalSpy> m_ended;
    std::unique_ptr<QSignalSpy> m_settled;
    std::unique_ptr<QSignalSpy> m_detections;
};

void tst_ReadObserver::oneDetectionForAllReceivers()
{
    QCOMPARE(m_observer->phase(), Phase::Idle);
    QVERIFY(!m_observer->isReading());
    for (int i = 0; i < 127; ++i)
        m_observer->receiverAsked();
    QCOMPARE(m_detections->size(), 1);
    QCOMPARE(m_observer->phase(), Phase::Detecting);
    QVERIFY(m_observer->isReading());
}

void tst_ReadObserver::nothingIsAskedAfterDetection()
{
    detect();
    QCOMPARE(m_ended->size(), 0);
    pass(399);
    QCOMPARE(m_ended->size(), 0);
    pass(1);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::NothingAsked);
    QCOMPARE(int(ended().nodeId), 0);
    QCOMPARE(m_settled->size(), 1);
    QCOMPARE(m_observer->phase(), Phase::Idle);
}

void tst_ReadObserver::slowFirstRequestStillBelongsToDetection()
{
    detect();
    pass(350);
    ask(1, 0x1000);
    QCOMPARE(m_ended->size(), 0);
    QCOMPARE(m_observer->phase(), Phase::Reading);
}

void tst_ReadObserver::completeRead()
{
    detect();
    ask(1, 0x1000);
    ask(1, 0x1001, Ending::Refused, noObject);
    ask(1, 0x1002, Ending::Refused, noSubIndex);
    ask(1, 0x1003, Ending::Refused, generalError);
    ask(9, 0x1000);
    QCOMPARE(m_ended->size(), 0);
    pass(299);
    QCOMPARE(m_ended->size(), 0);
    pass(1);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::Complete);
    QCOMPARE(ended().record.total().values, 2);
    QCOMPARE(ended().record.total().missing, 2);
    QCOMPARE(ended().record.total().failed, 1);
    QCOMPARE(ended().record.nodes(), (QList<quint8>{1, 9}));
    QVERIFY(!m_observer->isReading());
}

void tst_ReadObserver::slowAnswerIsNoEnd()
{
    detect();
    m_observer->uploadStarted(1, {0x1000, 0});
    pass(10000);
    QCOMPARE(m_ended->size(), 0);
    QVERIFY(m_observer->isReading());
    m_observer->uploadEnded(1, {0x1000, 0}, Ending::Value, 0);
    pass(300);
    QCOMPARE(m_ended->size(), 1);
}

void tst_ReadObserver::stopsAtSilence()
{
    detect();
    ask(1, 0x1000);
    ask(7, 0x6000, Ending::Silent, noAnswer);
    QCOMPARE(m_ended->size(), 1); // at once
    QCOMPARE(ended().end, ReadSummary::End::NoAnswer);
    QCOMPARE(int(ended().nodeId), 7);
    QCOMPARE(ended().key.toString(), QStringLiteral("6000h sub-index 0"));
    QCOMPARE(ended().record.total().values, 1);
    QCOMPARE(m_settled->size(), 0);
    ask(7, 0x6001, Ending::Silent, noAnswer); // the one more request
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(m_settled->size(), 0);
    pass(300);
    QCOMPARE(m_settled->size(), 1);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(m_observer->summary().key.toString(), QStringLiteral("6000h sub-index 0"));
}

void tst_ReadObserver::busGoesAway()
{
    detect();
    ask(1, 0x1000);
    m_observer->uploadStarted(7, {0x6000, 0});
    m_observer->uploadEnded(7, {0x6000, 0}, Ending::NoBus, noAnswer, QStringLiteral("Unplugged."));
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::BusGone);
    QCOMPARE(ended().reason, QStringLiteral("Unplugged."));
    QCOMPARE(ended().record.total().objects(), 1); // the other one was not asked to the end
}

void tst_ReadObserver::userDisconnects()
{
    detect();
    ask(7, 0x6000, Ending::NoBus, noAnswer);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::Disconnected);
}

void tst_ReadObserver::busGoesAwayDuringDetection_data()
{
    QTest::addColumn<QString>("lossReason");
    QTest::addColumn<ReadSummary::End>("end");

    QTest::newRow("lost") << QStringLiteral("Unplugged.") << ReadSummary::End::BusGone;
    QTest::newRow("disconnected by the user") << QString() << ReadSummary::End::Disconnected;
}

void tst_ReadObserver::busGoesAwayDuringDetection()
{
    QFETCH(QString, lossReason);
    QFETCH(ReadSummary::End, end);
    m_observer->busLeft(QStringLiteral("of no concern, as there is no read"));
    detect();
    m_observer->busLeft(lossReason);
    pass(400);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, end);
    QCOMPARE(ended().reason, lossReason);
    QCOMPARE(int(ended().nodeId), 0);
    detect();
    pass(400);
    QCOMPARE(ended().end, ReadSummary::End::NothingAsked);
}

void tst_ReadObserver::nodesThatAreNoneAreNotRecorded()
{
    detect();
    ask(0, 0x1000, Ending::Refused, generalError);
    ask(128, 0x1000, Ending::Refused, generalError);
    ask(127, 0x1000);
    pass(300);
    QCOMPARE(ended().record.nodes(), QList<quint8>{127});
    QCOMPARE(ended().record.total().failed, 0);
}

void tst_ReadObserver::requestThatIsNotSent()
{
    detect();
    ask(7, 0x6000, Ending::NotSent, noAnswer);
    QCOMPARE(ended().end, ReadSummary::End::NotSent);
    QCOMPARE(ended().record.failures().first().reason(), QStringLiteral("The request could not be sent"));
}

void tst_ReadObserver::silentObjectHasFailed()
{
    detect();
    ask(1, 0x1003, Ending::Refused, generalError);
    ask(7, 0x6000, Ending::Silent, noAnswer);
    QCOMPARE(ended().record.total().failed, 2);
    QCOMPARE(ended().failuresBeside().size(), 1); // the sentence on the end names the other one
    QCOMPARE(int(ended().failuresBeside().first().nodeId), 1);
}

void tst_ReadObserver::cancelledDuringUpload()
{
    detect();
    m_observer->uploadStarted(7, {0x6000, 3});
    QSignalSpy changed(m_observer.get(), &ReadObserver::phaseChanged);
    m_observer->cancel();
    m_observer->cancel();
    QCOMPARE(changed.size(), 1);
    QVERIFY(m_observer->isCancelled());
    m_observer->uploadEnded(7, {0x6000, 3}, Ending::NoBus, noAnswer);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::Cancelled);
    QCOMPARE(ended().key.toString(), QStringLiteral("6000h sub-index 3"));
    ask(7, 0x6001, Ending::NoBus, noAnswer);
    pass(300);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(m_settled->size(), 1);
    QVERIFY(!m_observer->isCancelled());
}

void tst_ReadObserver::cancelledDuringDetection()
{
    detect();
    m_observer->cancel();
    pass(400);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::Cancelled);
    QCOMPARE(int(ended().nodeId), 0);
}

void tst_ReadObserver::cancelledAfterLastRequest()
{
    detect();
    ask(1, 0x1000);
    m_observer->cancel();
    pass(300);
    QCOMPARE(ended().end, ReadSummary::End::Complete); // too late: all was read
    QCOMPARE(m_settled->size(), 1);
}

void tst_ReadObserver::cancelsOnlyReads()
{
    m_observer->cancel();
    QVERIFY(!m_observer->isCancelled());
    detect();
    QVERIFY(!m_observer->isCancelled());
}

void tst_ReadObserver::nextReadBeginsBeforeTheLastHasSettled()
{
    detect();
    ask(7, 0x6000, Ending::Silent, noAnswer);
    m_observer->receiverAsked();
    QCOMPARE(m_settled->size(), 1);
    QCOMPARE(m_detections->size(), 2);
    QCOMPARE(m_observer->phase(), Phase::Detecting);
    QCOMPARE(m_observer->summary().record.total().values, 0);
}

void tst_ReadObserver::lastRequestEndsDuringNextDetection()
{
    detect();
    ask(7, 0x6000, Ending::Silent, noAnswer);
    m_observer->uploadStarted(7, {0x6001, 0});
    m_observer->receiverAsked();
    pass(500);
    m_observer->uploadEnded(7, {0x6001, 0}, Ending::Silent, noAnswer);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(m_observer->phase(), Phase::Detecting);
    pass(1500);
    ask(1, 0x1000);
    QCOMPARE(m_observer->summary().record.total().values, 1);
    pass(300);
    QCOMPARE(ended().end, ReadSummary::End::Complete);
}

void tst_ReadObserver::lastRequestBeginsDuringNextDetection()
{
    detect();
    ask(7, 0x6000, Ending::Silent, noAnswer);
    m_observer->receiverAsked();
    QVERIFY(m_observer->isLeftOverDue());
    ask(7, 0x6001, Ending::Refused, noObject);
    QVERIFY(!m_observer->isLeftOverDue());
    QCOMPARE(m_observer->phase(), Phase::Detecting);
    pass(1995);
    QCOMPARE(m_ended->size(), 1);
    ask(1, 0x1000);
    pass(300);
    QCOMPARE(m_ended->size(), 2);
    QCOMPARE(ended().record.total().values, 1);
    QCOMPARE(ended().record.total().missing, 0);
}

void tst_ReadObserver::otherPluginReadsWhileItListens()
{
    m_observer->receiverAsked();
    QVERIFY(!m_observer->isLeftOverDue());
    ask(5, 0x2000);
    QCOMPARE(m_observer->phase(), Phase::Reading);
    pass(300);
    QCOMPARE(ended().record.total().values, 1);
}

void tst_ReadObserver::noLeftOverAfterQuietTime()
{
    detect();
    ask(7, 0x6000, Ending::Silent, noAnswer); // the last entry of all: no request follows
    QVERIFY(m_observer->isLeftOverDue());
    pass(300);
    QVERIFY(!m_observer->isLeftOverDue());
}

void tst_ReadObserver::secondReadAfterVainDetection()
{
    detect();
    m_observer->receiverAsked(); // 2000 ms after the first: the plug-in has given up
    QCOMPARE(m_detections->size(), 2);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::NothingAsked);
    QCOMPARE(m_observer->phase(), Phase::Detecting);
}

void tst_ReadObserver::uploadWithoutDetection()
{
    ask(7, 0x6000, Ending::Silent, noAnswer);
    QCOMPARE(m_detections->size(), 0);
    QCOMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::NoAnswer);
}

void tst_ReadObserver::hasTimerOfItsOwn()
{
    ReadObserver observer;
    QSignalSpy settled(&observer, &ReadObserver::settled);
    observer.uploadStarted(1, {0x1000, 0});
    observer.uploadEnded(1, {0x1000, 0}, Ending::Value, 0);
    QTRY_COMPARE(settled.size(), 1);
    observer.receiverAsked();
    QTRY_COMPARE(settled.size(), 2);
}

void tst_ReadObserver::pauseOfTheProgramIsNoEnd()
{
    detect();
    ask(1, 0x1000);
    pass(0); // the timer is set for the quiet time from now on
    // The program stood still; the next request is made in the turn in which the timer has been found due.
    m_now += milliseconds(5000);
    QTimer::singleShot(ReadObserver::quietTime + milliseconds(1), this, [this] { ask(1, 0x1001); });
    QTest::qWait(static_cast<int>((ReadObserver::quietTime + ReadObserver::graceTime).count()) + 10);
    QCOMPARE(m_ended->size(), 0);
    QCOMPARE(m_observer->phase(), Phase::Reading);
    m_now += milliseconds(5000);
    QTRY_COMPARE(m_ended->size(), 1);
    QCOMPARE(ended().end, ReadSummary::End::Complete);
    QCOMPARE(ended().record.counts(1).values, 2);
}

QTEST_GUILESS_MAIN(tst_ReadObserver)
#include "tst_readobserver.moc"
