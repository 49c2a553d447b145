// SPDX-License-Identifier: MIT
#include <cli/core/timezone.h>

#include <QDateTime>
#include <QTimeZone>
#include <QtTest>

#include <ctime>

/*! The zone of local times, which is named so that nobody asks the disk for it. */
class tst_TimeZone : public QObject
{
    Q_OBJECT

private slots:
    void isNamedAndTheSame();
    void zoneOfTheEnvironmentStays();
};

void tst_TimeZone::isNamedAndTheSame()
{
    qunsetenv("TZ");
    tzset();
    const QDateTime summer(QDate(2026, 7, 1), QTime(12, 0));
    const qint64 before = summer.toMSecsSinceEpoch();
    const QByteArray zone = QTimeZone::systemTimeZoneId();
    TimeZone::keep();
    tzset();
    QCOMPARE(QDateTime(QDate(2026, 7, 1), QTime(12, 0)).toMSecsSinceEpoch(), before);
    QCOMPARE(QTimeZone::systemTimeZoneId(), zone);
#ifdef Q_OS_UNIX
    QCOMPARE(qgetenv("TZ"), QByteArrayLiteral(":/etc/localtime"));
#endif
}

void tst_TimeZone::zoneOfTheEnvironmentStays()
{
    for (const QByteArray &zone : {QByteArrayLiteral("Asia/Tokyo"), QByteArrayLiteral("")}) {
        qputenv("TZ", zone);
        TimeZone::keep();
        QCOMPARE(qgetenv("TZ"), zone);
    }
}

QTEST_GUILESS_MAIN(tst_TimeZone)
#include "tst_timezone.moc"
