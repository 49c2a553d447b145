// SPDX-License-Identifier: MIT
#include "vehicles.h"

#include <archive/vehiclerecognition.h>
#include <archive/visit.h>

#include <QtTest>

using namespace Vehicles;

Q_DECLARE_METATYPE(SnapshotNode)

namespace {

QVector<VisitComponent> componentsOf(const QVector<SnapshotNode> &nodes)
{
    QVector<VisitComponent> components;
    for (const SnapshotNode &node : nodes)
        components.append({node.id, DeviceIdentity::of(node)});
    return components;
}

VehicleDevices devices(const QVector<SnapshotNode> &nodes)
{
    return VehicleDevices::of(componentsOf(nodes));
}

KnownVehicle known(qint64 id, const QVector<SnapshotNode> &latest, qint64 time = 0)
{
    KnownVehicle vehicle;
    vehicle.id = id;
    vehicle.latest = devices(latest);
    vehicle.lastTime = time;
    return vehicle;
}

QVector<SnapshotNode> with(QVector<SnapshotNode> nodes, int position, const SnapshotNode &other)
{
    nodes[position] = other;
    return nodes;
}

QVector<SnapshotNode> without(QVector<SnapshotNode> nodes, std::initializer_list<int> ids)
{
    for (const int id : ids) {
        nodes.erase(std::remove_if(nodes.begin(), nodes.end(),
                                   [id](const SnapshotNode &node) { return node.id == id; }),
                    nodes.end());
    }
    return nodes;
}

} // namespace

/*! Which vehicle was read. */
class tst_VehicleRecognition : public QObject
{
    Q_OBJECT

private slots:
    void sortsDevices();
    void sameIdentityTwiceTellsNothing();
    void looksByWhatTells();
    void recognises_data();
    void recognises();
    void takesTheOneSeenLast();
    void earlierControllerCounts();
    void isCalledByItsController();
};

void tst_VehicleRecognition::sortsDevices()
{
    QVector<SnapshotNode> nodes = bike(1);
    nodes.append(device(6, chargerClass, 6001));
    nodes.append(device(127, controllerClass, 7001)); // a charging station
    nodes.append(device(9, displayClass, 0));         // has no serial number
    const VehicleDevices sorted = devices(nodes);
    QCOMPARE(sorted.controller, key(controllerClass, 1001));
    QCOMPARE(sorted.fixed,
             (QStringList{key(motorClass, 3001), key(displayClass, 4001), key(lockClass, 5001)}));
    QCOMPARE(sorted.loose,
             (QStringList{key(batteryClass, 2001), key(chargerClass, 6001), key(controllerClass, 7001)}));
}

void tst_VehicleRecognition::sameIdentityTwiceTellsNothing()
{
    const VehicleDevices sorted
        = devices({device(1, controllerClass, 1001), device(3, motorClass, 7), device(4, motorClass, 7)});
    QCOMPARE(sorted.controller, key(controllerClass, 1001));
    QCOMPARE(sorted.fixed, QStringList());
}

void tst_VehicleRecognition::looksByWhatTells()
{
    QCOMPARE(devices(bike(1)).telling().size(), 4);
    QVERIFY(!devices(bike(1)).telling().contains(key(batteryClass, 2001)));
    QCOMPARE(devices({device(2, batteryClass, 2001)}).telling(), QStringList{key(batteryClass, 2001)});
}

void tst_VehicleRecognition::recognises_data()
{
    QTest::addColumn<QVector<SnapshotNode>>("latest");
    QTest::addColumn<QVector<SnapshotNode>>("now");
    QTest::addColumn<bool>("isSame");
    const QVector<SnapshotNode> one = bike(1);
    const QVector<SnapshotNode> two = bike(2);

    QTest::newRow("the same") << one << one << true;
    QTest::newRow("another one") << one << two << false;
    QTest::newRow("other battery") << one << with(one, 1, two.at(1)) << true;
    QTest::newRow("battery of another one") << one << with(two, 1, one.at(1)) << false;
    QTest::newRow("other motor and battery") << one << with(with(one, 1, two.at(1)), 2, two.at(2)) << true;
    QTest::newRow("same controller in another frame") << one << with(two, 0, one.at(0)) << true;
    QTest::newRow("new controller") << one << with(one, 0, two.at(0)) << true;
    QTest::newRow("new controller and motor") << one << with(with(one, 0, two.at(0)), 2, two.at(2)) << true;
    QTest::newRow("motor of another one") << one << with(two, 2, one.at(2)) << false;
    QTest::newRow("dead controller") << one << without(one, {1}) << true;
    QTest::newRow("dead controller, two parts answer") << one << without(one, {1, 2, 5}) << true;
    QTest::newRow("first visit was without controller") << without(one, {1, 2, 5}) << one << true;
    QTest::newRow("motor alone") << one << QVector<SnapshotNode>{one.at(2)} << true;
    QTest::newRow("battery alone") << one << QVector<SnapshotNode>{one.at(1)} << false;
    QTest::newRow("battery alone, again")
        << QVector<SnapshotNode>{one.at(1)} << QVector<SnapshotNode>{one.at(1)} << true;
    QTest::newRow("another battery alone")
        << QVector<SnapshotNode>{one.at(1)} << QVector<SnapshotNode>{two.at(1)} << false;
    QTest::newRow("battery that was read alone before") << QVector<SnapshotNode>{one.at(1)} << one << false;
    QTest::newRow("new controller, and one part only")
        << without(one, {4, 5}) << with(without(one, {4, 5}), 0, two.at(0)) << false;
    QTest::newRow("no serial numbers") << QVector<SnapshotNode>{device(1, controllerClass, 0)}
                                       << QVector<SnapshotNode>{device(1, controllerClass, 0)} << false;
}

void tst_VehicleRecognition::recognises()
{
    QFETCH(QVector<SnapshotNode>, latest);
    QFETCH(QVector<SnapshotNode>, now);
    QFETCH(bool, isSame);
    QCOMPARE(VehicleRecognition::find(devices(now), {known(7, latest)}).value_or(0),
             isSame ? qint64(7) : qint64(0));
}

void tst_VehicleRecognition::takesTheOneSeenLast()
{
    QCOMPARE(VehicleRecognition::find(devices(bike(1)),
                                      {known(7, bike(1), 10), known(8, bike(1), 30), known(9, bike(1), 20)})
                 .value_or(0),
             qint64(8));
    // But the controller tells more than the parts.
    QCOMPARE(VehicleRecognition::find(
                 devices(bike(1)),
                 {known(7, bike(1), 10), known(8, with(bike(1), 0, device(1, controllerClass, 99)), 30)})
                 .value_or(0),
             qint64(7));
}

void tst_VehicleRecognition::earlierControllerCounts()
{
    KnownVehicle merged = known(7, bike(2));
    merged.hadController = true;
    // Nothing speaks against it ...
    QCOMPARE(VehicleRecognition::find(devices({bike(1).at(0)}), {merged}).value_or(0), qint64(7));
    QCOMPARE(VehicleRecognition::find(devices(with(bike(1), 2, bike(2).at(2))), {merged}).value_or(0),
             qint64(7));
    // ... but other parts do: it was sold.
    QVERIFY(!VehicleRecognition::find(devices(bike(1)), {merged}));
}

void tst_VehicleRecognition::isCalledByItsController()
{
    QCOMPARE(VehicleRecognition::label(componentsOf(bike(1))), QStringLiteral("1001"));
    QCOMPARE(VehicleRecognition::label(componentsOf(without(bike(1), {1}))), QStringLiteral("2001"));
    QCOMPARE(VehicleRecognition::label(componentsOf({device(1, controllerClass, 0)})), QString());
}

QTEST_APPLESS_MAIN(tst_VehicleRecognition)
#include "tst_vehiclerecognition.moc"
