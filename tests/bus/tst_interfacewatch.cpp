// SPDX-License-Identifier: MIT
#include "fakenetworkfolder.h"

#include <bus/interfacewatch.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

const QString can0 = QStringLiteral("can0");

BusAddress socketCan()
{
    return {QStringLiteral("socketcan"), can0};
}
BusAddress listed()
{
    return {QStringLiteral("peakcan"), QStringLiteral("usb0")};
}

} // namespace

class tst_InterfaceWatch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<InterfaceWatch::Presence>(); }
    void staysQuietWhileInterfaceIsUp();
    void reportsInterfaceThatGoesDown();
    void reportsInterfaceThatIsDeleted();
    void reportsInterfaceThatWasReplaced();
    void tellsOfReturn_data();
    void tellsOfReturn();
    void reportsEachLossOnce();
    void looksByItself();
    void looksBeforeOpening();
    void refusesNamesThatLeaveTheFolder();
    void doesWithoutNetworkFolder();
    void reportsListedInterfaceThatGoes();
    void leavesUnlistedInterfaceAlone();
    void stopped();
};

void tst_InterfaceWatch::staysQuietWhileInterfaceIsUp()
{
    FakeNetworkFolder folder;
    folder.add(can0, 3);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QSignalSpy lost(&watch, &InterfaceWatch::lost);

    watch.start(socketCan());
    watch.check();
    QCOMPARE(lost.size(), 0);
}

void tst_InterfaceWatch::reportsInterfaceThatGoesDown()
{
    FakeNetworkFolder folder;
    folder.add(can0, 3);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    watch.start(socketCan());

    folder.setFlags(can0, "0x40080");
    watch.check();
    QCOMPARE(lost.size(), 1);
    QCOMPARE(lost.first().first().value<InterfaceWatch::Presence>(), InterfaceWatch::Presence::Down);
}

void tst_InterfaceWatch::reportsInterfaceThatIsDeleted()
{
    FakeNetworkFolder folder;
    folder.add(can0, 3);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    watch.start(socketCan());

    folder.remove(can0);
    watch.check();
    QCOMPARE(lost.size(), 1);
    QCOMPARE(lost.first().first().value<InterfaceWatch::Presence>(), InterfaceWatch::Presence::Missing);
}

void tst_InterfaceWatch::reportsInterfaceThatWasReplaced()
{
    FakeNetworkFolder folder;
    folder.add(can0, 3);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    QSignalSpy returned(&watch, &InterfaceWatch::returned);
    watch.start(socketCan());

    folder.remove(can0);
    folder.add(can0, 4);
    watch.check();
    QCOMPARE(lost.size(), 1);
    QCOMPARE(lost.first().first().value<InterfaceWatch::Presence>(), InterfaceWatch::Presence::Replaced);
    watch.check();
    QCOMPARE(returned.size(), 1);
}

void tst_InterfaceWatch::tellsOfReturn_data()
{
    QTest::addColumn<int>("newIndex");

    QTest::newRow("same interface") << 3;
    QTest::newRow("another interface of the name") << 7;
}

void tst_InterfaceWatch::tellsOfReturn()
{
    QFETCH(int, newIndex);
    FakeNetworkFolder folder;
    folder.add(can0, 3);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QSignalSpy returned(&watch, &InterfaceWatch::returned);
    watch.start(socketCan());
    folder.remove(can0);
    watch.check();
    QCOMPARE(returned.size(), 0);

    folder.add(can0, newIndex, "0x40080"); // there, but not up yet
    watch.check();
    QCOMPARE(returned.size(), 0);
    folder.setFlags(can0, "0x40081");
    watch.check();
    QCOMPARE(returned.size(), 1);
}

void tst_InterfaceWatch::reportsEachLossOnce()
{
    FakeNetworkFolder folder;
    folder.add(can0, 3);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    watch.start(socketCan());

    folder.remove(can0);
    watch.check();
    watch.check();
    QCOMPARE(lost.size(), 1);

    folder.add(can0, 3);
    watch.check();
    folder.remove(can0);
    watch.check();
    QCOMPARE(lost.size(), 2);
}

void tst_InterfaceWatch::looksByItself()
{
    FakeNetworkFolder folder;
    folder.add(can0, 3);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    watch.start(socketCan());

    folder.remove(can0);
    QVERIFY(lost.wait());
}

void tst_InterfaceWatch::looksBeforeOpening()
{
    FakeNetworkFolder folder;
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QCOMPARE(watch.look(socketCan()), InterfaceWatch::Presence::Missing);
    folder.add(can0, 3, "0x40080");
    QCOMPARE(watch.look(socketCan()), InterfaceWatch::Presence::Down);
    folder.setFlags(can0, "0x40081");
    QCOMPARE(watch.look(socketCan()), InterfaceWatch::Presence::Present);
}

void tst_InterfaceWatch::refusesNamesThatLeaveTheFolder()
{
    FakeNetworkFolder folder;
    folder.add(QStringLiteral("inner"), 3);
    folder.add(can0, 4);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path() + QStringLiteral("/inner"));
    QCOMPARE(watch.look({QStringLiteral("socketcan"), QStringLiteral("../can0")}),
             InterfaceWatch::Presence::Missing);
}

void tst_InterfaceWatch::doesWithoutNetworkFolder()
{
    InterfaceWatch watch;
    watch.setNetworkFolder(QStringLiteral("/there/is/no/such/folder"));
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    QCOMPARE(watch.look(socketCan()), InterfaceWatch::Presence::Unknown);
    watch.start(socketCan());
    watch.check();
    QCOMPARE(lost.size(), 0);
}

void tst_InterfaceWatch::reportsListedInterfaceThatGoes()
{
    QStringList names{QStringLiteral("usb0"), QStringLiteral("usb1")};
    InterfaceWatch watch;
    watch.setLister([&names](const QString &plugin) {
        return plugin == QLatin1String("peakcan") ? names : QStringList();
    });
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    QSignalSpy returned(&watch, &InterfaceWatch::returned);
    watch.start(listed());

    names.removeAll(QStringLiteral("usb0"));
    QVERIFY(lost.wait());
    QCOMPARE(lost.size(), 1);
    names.append(QStringLiteral("usb0"));
    QVERIFY(returned.wait());
    QCOMPARE(returned.size(), 1);
}

void tst_InterfaceWatch::leavesUnlistedInterfaceAlone()
{
    QStringList names{QStringLiteral("usb1")}; // a back end that lists only what is free
    InterfaceWatch watch;
    watch.setLister([&names](const QString &) { return names; });
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    watch.start(listed());
    names.clear();
    watch.check();
    QCOMPARE(lost.size(), 0);
}

void tst_InterfaceWatch::stopped()
{
    FakeNetworkFolder folder;
    folder.add(can0, 3);
    InterfaceWatch watch;
    watch.setNetworkFolder(folder.path());
    QSignalSpy lost(&watch, &InterfaceWatch::lost);
    watch.start(socketCan());
    watch.stop();
    folder.remove(can0);
    watch.check();
    QCOMPARE(lost.size(), 0);
}

QTEST_GUILESS_MAIN(tst_InterfaceWatch)
#include "tst_interfacewatch.moc"
