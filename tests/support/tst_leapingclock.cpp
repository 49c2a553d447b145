// SPDX-License-Identifier: MIT
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QMutex>
#include <QProcess>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>
#include <QWaitCondition>
#include <QtTest>

#include <chrono>
#include <memory>
#include <utility>

#include <sys/socket.h>
#include <sys/timerfd.h>
#include <unistd.h>

using namespace std::chrono_literals;

/*! The clock that the tests have: were it the real one, this program would take days. */
class tst_LeapingClock : public QObject
{
    Q_OBJECT

private slots:
    void timersFireInOrder();
    void timersFireOnTime();
    void whatIsReadyComesBeforeTheEndOfAWait();
    void sleepingIsLeaping();
    void lookingAtTheClockTakesTime();
    void turningTakesTime();
    void clocksAgree();
    void alarmOfTheKernel();
    void alarmThatWasStopped();
    void alarmThatIsClosed();
    void otherThreadsSeeTheRealTime();
    void childrenAreWaitedFor();
    void threadsAreWaitedFor();
    void standsWhileAThreadWorks();
};

void tst_LeapingClock::timersFireInOrder()
{
    QStringList fired;
    QTimer::singleShot(48h, this, [&fired] { fired.append(QStringLiteral("second")); });
    QTimer::singleShot(24h, this, [&fired] { fired.append(QStringLiteral("first")); });
    QEventLoop loop;
    QTimer::singleShot(72h, &loop, &QEventLoop::quit);
    loop.exec();
    QCOMPARE(fired, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

// Nothing that happens to the machine makes a timer late.
void tst_LeapingClock::timersFireOnTime()
{
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    QTimer::singleShot(10min, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
    QCOMPARE(clock.elapsed(), qint64(600000));
}

void tst_LeapingClock::whatIsReadyComesBeforeTheEndOfAWait()
{
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    QCOMPARE(::write(ends[1], "x", 1), ssize_t(1));
    QSocketNotifier notifier(ends[0], QSocketNotifier::Read);
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    connect(&notifier, &QSocketNotifier::activated, &loop, &QEventLoop::quit);
    QTimer::singleShot(1h, &loop, &QEventLoop::quit);
    loop.exec();
    QVERIFY(clock.elapsed() < 1000);
    ::close(ends[0]);
    ::close(ends[1]);
}

void tst_LeapingClock::sleepingIsLeaping()
{
    QElapsedTimer clock;
    clock.start();
    QThread::sleep(3600);
    QCOMPARE(clock.elapsed(), qint64(3600000));
}

void tst_LeapingClock::lookingAtTheClockTakesTime()
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 50) {
    }
}

void tst_LeapingClock::turningTakesTime()
{
    QElapsedTimer clock;
    clock.start();
    QTimer babble; // so that there is always something to do
    babble.start(0);
    int turns = 0;
    connect(&babble, &QTimer::timeout, this, [&turns] { ++turns; });
    QEventLoop loop;
    QTimer::singleShot(1s, &loop, &QEventLoop::quit);
    loop.exec();
    QVERIFY(turns > 1000);
    QVERIFY(turns < 1000000);
}

void tst_LeapingClock::clocksAgree()
{
    QElapsedTimer qt;
    qt.start();
    const auto standard = std::chrono::steady_clock::now();
    QThread::msleep(5000);
    QCOMPARE(qt.elapsed(), qint64(5000));
    const auto passed = std::chrono::steady_clock::now() - standard;
    QCOMPARE(std::chrono::duration_cast<std::chrono::milliseconds>(passed).count(), qint64(5000));
}

namespace {

/*! A timer of the kernel: the time in s after which it becomes readable, -1 when it does not within an hour. */
class Alarm
{
public:
    Alarm()
        : m_descriptor(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
    {
    }
    ~Alarm() { close(); }
    Q_DISABLE_COPY(Alarm)

    void set(int seconds)
    {
        itimerspec setting{};
        setting.it_value.tv_sec = seconds;
        ::timerfd_settime(m_descriptor, 0, &setting, nullptr);
    }
    void close() { ::close(std::exchange(m_descriptor, -1)); }
    int descriptor() const { return m_descriptor; }

    qint64 secondsUntilItRings() const
    {
        QSocketNotifier notifier(m_descriptor, QSocketNotifier::Read);
        QElapsedTimer clock;
        clock.start();
        qint64 rung = -1;
        QEventLoop loop;
        QObject::connect(&notifier, &QSocketNotifier::activated, &loop, [&] {
            rung = qRound64(static_cast<double>(clock.elapsed()) / 1000);
            loop.quit();
        });
        QTimer::singleShot(1h, &loop, &QEventLoop::quit);
        loop.exec();
        return rung;
    }

private:
    int m_descriptor;
};

} // namespace

void tst_LeapingClock::alarmOfTheKernel()
{
    Alarm late;
    Alarm early;
    QVERIFY(late.descriptor() >= 0);
    late.set(1200);
    early.set(60);
    QCOMPARE(early.secondsUntilItRings(), qint64(60));
    QCOMPARE(late.secondsUntilItRings(), qint64(1140));
}

void tst_LeapingClock::alarmThatWasStopped()
{
    Alarm alarm;
    alarm.set(1);
    QTest::qWait(2000); // it rings, and nobody listens
    alarm.set(0);
    QCOMPARE(alarm.secondsUntilItRings(), qint64(-1));
}

// The number of its descriptor may soon mean something else, which must not be written to.
void tst_LeapingClock::alarmThatIsClosed()
{
    Alarm alarm;
    const int descriptor = alarm.descriptor();
    alarm.set(1);
    alarm.close();
    int ends[2]; // a pair of sockets: what is written to the first arrives at the second
    QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    QCOMPARE(ends[0], descriptor);
    QTest::qWait(5000);
    char byte = 0;
    QCOMPARE(::recv(ends[1], &byte, 1, MSG_DONTWAIT), ssize_t(-1));
    ::close(ends[0]);
    ::close(ends[1]);
}

void tst_LeapingClock::otherThreadsSeeTheRealTime()
{
    qint64 passed = -1;
    const std::unique_ptr<QThread> thread(QThread::create([&passed] {
        QElapsedTimer clock;
        clock.start();
        QThread::msleep(20);
        passed = clock.elapsed();
    }));
    const QDateTime before = QDateTime::currentDateTime();
    thread->start();
    QVERIFY(thread->wait());
    QVERIFY(passed >= 20);
    QVERIFY(before.msecsTo(QDateTime::currentDateTime()) >= 19);
}

// In a leap it would be killed long before it has done anything.
void tst_LeapingClock::childrenAreWaitedFor()
{
    QProcess child;
    child.start(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("sleep 0.1; echo done")});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.readAll(), QByteArray("done\n"));

    child.start(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("sleep 0.1; echo done")});
    QTRY_COMPARE_WITH_TIMEOUT(child.state(), QProcess::NotRunning, 30000);
    QCOMPARE(child.readAll(), QByteArray("done\n"));

    // It has ended, so time leaps again.
    QElapsedTimer clock;
    clock.start();
    QTest::qWait(3600000);
    QVERIFY(clock.elapsed() >= 3600000);
}

// The application waits for Qt's own threads when it ends.
void tst_LeapingClock::threadsAreWaitedFor()
{
    QMutex mutex;
    QWaitCondition condition;
    QMutexLocker locker(&mutex);
    // It cannot come before the waiting has begun: only that gives the mutex away.
    const std::unique_ptr<QThread> thread(QThread::create([&mutex, &condition] {
        const QMutexLocker other(&mutex);
        condition.wakeOne();
    }));
    thread->start();
    const bool isWoken = condition.wait(&mutex, QDeadlineTimer(10min));
    locker.unlock();
    QVERIFY(thread->wait(QDeadlineTimer(10min)));
    QVERIFY(isWoken);
}

void tst_LeapingClock::standsWhileAThreadWorks()
{
    QThread *const thread = QThread::create([] {
        const auto end = std::chrono::steady_clock::now() + 100ms; // its time is the real one
        while (std::chrono::steady_clock::now() < end)
            ;
    });
    QSignalSpy finished(thread, &QThread::finished);
    QElapsedTimer clock;
    clock.start();
    thread->start();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 50);
    QVERIFY2(clock.elapsed() < 50, qPrintable(QString::number(clock.elapsed())));
    thread->wait();
    delete thread;
}

QTEST_GUILESS_MAIN(tst_LeapingClock)
#include "tst_leapingclock.moc"
