// SPDX-License-Identifier: MIT
#include <tracebus/playbackaddress.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using Knowledge = RecordedVehicle::Knowledge;
using Pace = TracePlayer::Pace;

class tst_PlaybackAddress : public QObject
{
    Q_OBJECT

private slots:
    void plainFile();
    void settings();
    void paces_data();
    void paces();
    void complains_data();
    void complains();
    void fileWithAQuestionMark();
};

void tst_PlaybackAddress::plainFile()
{
    QString error;
    const std::optional<PlaybackAddress> address
        = PlaybackAddress::parse(QStringLiteral("/tmp/a ride.log"), &error);
    QVERIFY2(address, qPrintable(error));
    QCOMPARE(address->fileName, QStringLiteral("/tmp/a ride.log"));
    QVERIFY(address->pace == Pace::Recorded);
    QCOMPARE(address->speed, 1.0);
    QVERIFY(address->knowledge == Knowledge::Nearest);
    QVERIFY(address->channel.isEmpty());
    QVERIFY(!address->isRepeated);
}

void tst_PlaybackAddress::settings()
{
    QString error;
    const std::optional<PlaybackAddress> address = PlaybackAddress::parse(
        QStringLiteral("what?.log?speed=2.5&answers=past&channel=can=1&repeat=yes&"), &error);
    QVERIFY2(address, qPrintable(error));
    QCOMPARE(address->fileName, QStringLiteral("what?.log"));
    QCOMPARE(address->speed, 2.5);
    QVERIFY(address->knowledge == Knowledge::Past);
    QCOMPARE(address->channel, QStringLiteral("can=1"));
    QVERIFY(address->isRepeated);
}

void tst_PlaybackAddress::paces_data()
{
    QTest::addColumn<QString>("speed");
    QTest::addColumn<int>("pace");
    QTest::addColumn<double>("factor");
    QTest::newRow("slowest") << QStringLiteral("0.01") << int(Pace::Recorded) << 0.01;
    QTest::newRow("fastest") << QStringLiteral("1000") << int(Pace::Recorded) << 1000.0;
    QTest::newRow("unpaced") << QStringLiteral("max") << int(Pace::Unpaced) << 1.0;
    QTest::newRow("stepped") << QStringLiteral("step") << int(Pace::Stepped) << 1.0;
}

void tst_PlaybackAddress::paces()
{
    QFETCH(QString, speed);
    QFETCH(int, pace);
    QFETCH(double, factor);
    QString error;
    const auto address = PlaybackAddress::parse(QStringLiteral("a.log?speed=") + speed, &error);
    QVERIFY2(address, qPrintable(error));
    QCOMPARE(int(address->pace), pace);
    QCOMPARE(address->speed, factor);
}

void tst_PlaybackAddress::complains_data()
{
    QTest::addColumn<QString>("settings");
    QTest::addColumn<QString>("complaint");

    const QString badSpeed
        = QStringLiteral("\"speed\" takes a number from 0.01 to 1000, \"max\" or \"step\", not \"%1\".");
    for (const char *speed : {"0", "-1", "0.009", "1001", "nan", "inf", "", "fast"})
        QTest::newRow(qPrintable(QStringLiteral("speed %1").arg(QLatin1String(speed))))
            << QStringLiteral("speed=") + QLatin1String(speed) << badSpeed.arg(QLatin1String(speed));
    QTest::newRow("answers") << QStringLiteral("answers=future")
                             << QStringLiteral("\"answers\" takes \"nearest\" or \"past\", not \"future\".");
    QTest::newRow("channel") << QStringLiteral(
        "channel=") << QStringLiteral("\"channel\" takes the name of a channel of the trace, not \"\".");
    QTest::newRow("repeat") << QStringLiteral("repeat=often")
                            << QStringLiteral("\"repeat\" takes \"yes\" or \"no\", not \"often\".");
    QTest::newRow("unknown") << QStringLiteral("speed=1&volume=11")
                             << QStringLiteral("Playing back has no setting \"volume=11\". There are: speed, "
                                               "answers, channel, repeat.");
}

void tst_PlaybackAddress::complains()
{
    QFETCH(QString, settings);
    QFETCH(QString, complaint);
    QString error;
    QVERIFY(!PlaybackAddress::parse(QStringLiteral("a.log?") + settings, &error));
    QCOMPARE(error, complaint);
}

void tst_PlaybackAddress::fileWithAQuestionMark()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("a.log?speed=2"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QString error;
    const auto address = PlaybackAddress::parse(name, &error);
    QVERIFY2(address, qPrintable(error));
    QCOMPARE(address->fileName, name);
    QCOMPARE(address->speed, 1.0);
}

QTEST_APPLESS_MAIN(tst_PlaybackAddress)
#include "tst_playbackaddress.moc"
