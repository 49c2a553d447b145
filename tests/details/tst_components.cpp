// SPDX-License-Identifier: MIT
#include <details/components.h>
#include <store/nodeview.h>

#include <QtTest>

class tst_Components : public QObject
{
    Q_OBJECT

private slots:
    void oneForEachVirtualDeviceOfAKnownClass();
    void controllerOnNode127IsAChargerToo();
    void allHaveTheStateOfTheFirstVirtualDevice();
    void noneWithoutACount();
    void countOf200IsScannedTo127();
    void nmtStates_data();
    void nmtStates();
};

void tst_Components::oneForEachVirtualDeviceOfAKnownClass()
{
    NodeStore store;
    store.setValue(16, 0x6000, 0, 5);
    store.setValue(16, 0x6000, 1, 0xFF06); // of which the low byte counts
    store.setValue(16, 0x6000, 2, 3);      // no class
    store.setValue(16, 0x6000, 4, 11);     // 3 is missing
    store.setValue(16, 0x6000, 5, 10);
    const QVector<Component> components = componentsOf(NodeView(store, 16));
    QCOMPARE(components.size(), 3);
    QCOMPARE(components.at(0).nodeId, quint8(16));
    QCOMPARE(components.at(0).name, QStringLiteral("Battery Pack"));
    QCOMPARE(QString::fromLatin1(components.at(0).icon), QStringLiteral(":/img/icon/battery32.png"));
    QCOMPARE(components.at(0).deviceState, QString());
    QCOMPARE(components.at(0).toolTip, QString());
    QCOMPARE(components.at(1).name, QStringLiteral("Sensor unit"));
    QVERIFY(components.at(1).icon == nullptr);
    QCOMPARE(components.at(2).name, QStringLiteral("Security unit"));
}

void tst_Components::controllerOnNode127IsAChargerToo()
{
    NodeStore store;
    for (const quint8 nodeId : {quint8(126), quint8(127)}) {
        store.setValue(nodeId, 0x6000, 0, 1);
        store.setValue(nodeId, 0x6000, 1, 4);
    }
    QCOMPARE(componentsOf(NodeView(store, 126)).at(0).name, QStringLiteral("Draxel Controller"));
    QCOMPARE(componentsOf(NodeView(store, 127)).at(0).name, QStringLiteral("Draxel Controller/Charger"));
}

void tst_Components::allHaveTheStateOfTheFirstVirtualDevice()
{
    NodeStore store;
    store.setValue(16, 0x6000, 0, 2);
    store.setValue(16, 0x6000, 1, 6);
    store.setValue(16, 0x6000, 2, 7);
    store.setValue(16, 0x6002, 1, 0x8000);
    store.setValue(16, 0x6002, 2, 0x2000);
    const QVector<Component> components = componentsOf(NodeView(store, 16));
    QCOMPARE(components.size(), 2);
    for (const Component &component : components) {
        QCOMPARE(component.deviceState, QStringLiteral("Operating"));
        QCOMPARE(component.toolTip, QStringLiteral("Object: 0x6002, Value: 32768 | 0x8000"));
    }
}

void tst_Components::noneWithoutACount()
{
    NodeStore store;
    store.setValue(16, 0x6000, 1, 6);
    QVERIFY(componentsOf(NodeView(store, 16)).isEmpty());
    store.setValue(16, 0x6000, 0, 0x100); // of which the low byte counts
    QVERIFY(componentsOf(NodeView(store, 16)).isEmpty());
    QVERIFY(componentsOf(NodeView(store, 200)).isEmpty());
}

void tst_Components::countOf200IsScannedTo127()
{
    NodeStore store;
    store.setValue(16, 0x6000, 0, 200);
    store.setValue(16, 0x6000, 127, 6);
    store.setValue(16, 0x6000, 128, 7);
    const QVector<Component> components = componentsOf(NodeView(store, 16));
    QCOMPARE(components.size(), 1);
    QCOMPARE(components.at(0).name, QStringLiteral("Battery Pack"));
}

void tst_Components::nmtStates_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");
    QTest::newRow("unknown") << 0 << QStringLiteral("Unknown");
    QTest::newRow("boot-up") << 1 << QStringLiteral("Boot-up");
    QTest::newRow("pre-operational") << 2 << QStringLiteral("Pre-Op");
    QTest::newRow("operational") << 3 << QStringLiteral("Operational");
    QTest::newRow("stopped") << 4 << QStringLiteral("Stopped");
    QTest::newRow("none") << 5 << QString();
    QTest::newRow("none, beyond all") << 127 << QString();
    QTest::newRow("negative") << -1 << QString();
}

void tst_Components::nmtStates()
{
    QFETCH(int, state);
    QFETCH(QString, text);
    QCOMPARE(nmtStateText(state), text);
}

QTEST_GUILESS_MAIN(tst_Components)
#include "tst_components.moc"
