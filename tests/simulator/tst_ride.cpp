// SPDX-License-Identifier: MIT
#include <canopen/emergency.h>
#include <canopen/framebits.h>
#include <canopen/pdomapping.h>
#include <canopen/pdoparameter.h>
#include <simulator/vehicle.h>
#include <simulator/vehiclefile.h>

#include <QtTest>

using namespace Simulator;
using namespace CanOpen;

namespace {

constexpr qint64 second = 1000000; // microseconds

ObjectLookup lookupIn(const ObjectDictionary &dictionary)
{
    return [&dictionary](ObjectKey key) -> std::optional<quint32> {
        bool isNumber = false;
        const quint32 value = dictionary.value(key).toUInt(&isNumber);
        return isNumber ? std::optional<quint32>(value) : std::nullopt;
    };
}

} // namespace

/*! The vehicle "ride", heard as a listener hears it who knows its device configuration files. */
class tst_Ride : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void mappingsAreTrue();
    void batteryDischarges();
    void cellSevenIsWeak();
    void motorGetsHotAndStops();
    void displayShowsWhatMotorSends();
    void emergencies();
    void syncHasCounter();
    void busHasRoom();
    void runsFaster();

private:
    struct Heard
    {
        qint64 time; // microseconds
        QCanBusFrame frame;
    };

    using Values = QVector<QPair<double, double>>; // seconds, value

    void run(Vehicle &vehicle, QVector<Heard> *heard, qint64 seconds);
    Values valuesOf(quint8 nodeId, ObjectKey object) const;
    double valueAt(const Values &values, double seconds) const;
    QStringList emergenciesOf(const QVector<Heard> &heard) const;

    VehicleDescription m_description;
    QVector<Heard> m_heard;
    std::unique_ptr<Vehicle> m_vehicle;
    qint64 m_time = 0;
};

void tst_Ride::initTestCase()
{
    QString error;
    const auto description = readVehicleFile(QStringLiteral(OVERVIEW_VEHICLES_DIR "/ride.json"), &error);
    QVERIFY2(description.has_value(), qPrintable(error));
    m_description = *description;
    m_vehicle = std::make_unique<Vehicle>(m_description);
    run(*m_vehicle, &m_heard, 300);
}

void tst_Ride::run(Vehicle &vehicle, QVector<Heard> *heard, qint64 seconds)
{
    constexpr qint64 step = 5000;
    m_time = 0;
    vehicle.setClock([this] { return m_time; });
    vehicle.setSender([this, heard](const QCanBusFrame &frame, quint8) { heard->append({m_time, frame}); });
    vehicle.start();
    while (m_time < seconds * second) {
        m_time += step;
        vehicle.processDue();
    }
}

/*! What a listener decodes, by the mapping in the node's dictionary. */
tst_Ride::Values tst_Ride::valuesOf(quint8 nodeId, ObjectKey object) const
{
    Values values;
    for (const NodeDescription &node : m_description.nodes) {
        if (node.id != nodeId)
            continue;
        for (quint16 number = 0; number < 4; ++number) {
            const auto parameter = readPdoParameter(lookupIn(node.dictionary), firstTransmitPdo + number);
            const PdoMapping mapping
                = readPdoMapping(lookupIn(node.dictionary), firstTransmitMapping + number);
            if (!parameter || !mapping.contains(object))
                continue;
            for (const Heard &heard : m_heard) {
                if (heard.frame.frameId() != parameter->cobId)
                    continue;
                for (const PdoValue &value : unpackPdo(mapping, heard.frame.payload())) {
                    const DataType type = node.dictionary.find(value.object)->type;
                    if (value.object == object)
                        values.append(
                            {double(heard.time) / second,
                             decodeValue(type, *widenMapped(type, value.data, value.bits))->toDouble()});
                }
            }
        }
    }
    return values;
}

/*! The last value up to this time. */
double tst_Ride::valueAt(const Values &values, double seconds) const
{
    double last = -1e9;
    for (const auto &value : values) {
        if (value.first <= seconds)
            last = value.second;
    }
    return last;
}

QStringList tst_Ride::emergenciesOf(const QVector<Heard> &heard) const
{
    QStringList texts;
    for (const Heard &one : heard) {
        const quint32 cobId = one.frame.frameId();
        const auto emergency = parseEmergency(one.frame);
        if (cobId > 0x80 && cobId <= 0xFF && emergency)
            texts.append(
                QStringLiteral("%1 s, node %2: %3 (%4)")
                    .arg(one.time / second)
                    .arg(cobId - 0x80)
                    .arg(emergencyText(emergency->errorCode), errorRegisterText(emergency->errorRegister)));
    }
    return texts;
}

void tst_Ride::mappingsAreTrue()
{
    int pdos = 0;
    for (const NodeDescription &node : qAsConst(m_description.nodes)) {
        for (const quint16 first : {firstReceivePdo, firstTransmitPdo}) {
            for (int number = 0; number < mostPdos; ++number) {
                const auto index = static_cast<quint16>(first + number);
                if (!readPdoParameter(lookupIn(node.dictionary), index))
                    continue;
                ++pdos;
                const PdoMapping mapping
                    = readPdoMapping(lookupIn(node.dictionary), static_cast<quint16>(index + 0x200));
                QCOMPARE(mapping.problem, PdoMapping::Problem::None);
                for (const PdoMappingEntry &entry : mapping.entries) {
                    const ObjectEntry *object = node.dictionary.find(entry.object);
                    QVERIFY2(entry.isDummy() || object != nullptr, qPrintable(entry.object.toString()));
                    QVERIFY2(entry.isDummy() || byteSize(object->type) * 8 == entry.bits,
                             qPrintable(entry.object.toString()));
                }
            }
        }
    }
    QCOMPARE(pdos, 2 + 4 + 2 + 3 + 1);
}

void tst_Ride::batteryDischarges()
{
    const Values charge = valuesOf(2, {0x6164, 2});
    QCOMPARE(valueAt(charge, 1.1), 6200.0);
    QVERIFY(std::is_sorted(charge.cbegin(), charge.cend(),
                           [](const auto &a, const auto &b) { return a.second > b.second; }));
    QCOMPARE(valueAt(charge, 300), 5577.0);
    const Values current = valuesOf(2, {0x603E, 1});
    QVERIFY(valueAt(current, 60) == 7000);
    QVERIFY(valueAt(current, 230) > 18000);
    QVERIFY(valueAt(current, 245) < 300);
    const Values voltage = valuesOf(2, {0x6040, 1});
    QVERIFY(valueAt(voltage, 230) < 35100);
    QVERIFY(valueAt(voltage, 245) > 36800);
    QVERIFY(valuesOf(1, {0x6040, 1}).size() >= 299); // on every tenth SYNC that the node sends itself
}

void tst_Ride::cellSevenIsWeak()
{
    for (quint8 cell = 1; cell <= 10; ++cell) {
        const double voltage = valueAt(valuesOf(2, {0x6165, cell}), 235);
        if (cell == 7)
            QVERIFY2(voltage > 3200 && voltage < 3400, qPrintable(QString::number(voltage)));
        else
            QVERIFY2(voltage > 3480 && voltage < 3510, qPrintable(QString::number(voltage)));
    }
}

void tst_Ride::motorGetsHotAndStops()
{
    const Values temperature = valuesOf(4, {0x62E8, 4});
    QVERIFY(valueAt(temperature, 10) < 330);
    QVERIFY(valueAt(temperature, 238) < 1200);
    QVERIFY(valueAt(temperature, 240) > 1200);
    QVERIFY(valueAt(temperature, 299) < 1200);
    const Values current = valuesOf(4, {0x62E8, 1});
    QVERIFY(valueAt(current, 238) > 1850);
    QCOMPARE(valueAt(current, 241), 0.0);
    QCOMPARE(valueAt(valuesOf(4, {0x62E8, 5}), 300), 0.0); // it stands
}

void tst_Ride::displayShowsWhatMotorSends()
{
    const Values shown = valuesOf(5, {0x63EC, 1});
    const Values speed = valuesOf(4, {0x62E8, 5});
    for (const double time : {15.0, 60.0, 150.0, 270.0})
        QVERIFY2(qAbs(valueAt(shown, time) - valueAt(speed, time)) < 60, qPrintable(QString::number(time)));
    QCOMPARE(valueAt(shown, 60) > 2480, true);
    QCOMPARE(m_vehicle->node(5)->dictionary().value({0x6406, 1}).toInt(), 5577);
}

void tst_Ride::emergencies()
{
    QCOMPARE(
        emergenciesOf(m_heard),
        (QStringList{QStringLiteral("60 s, node 7: hardware (generic error, specific to the manufacturer)"),
                     QStringLiteral("65 s, node 7: error reset or no error ()"),
                     QStringLiteral("239 s, node 4: device temperature (generic error, temperature)")}));
    const ObjectDictionary &motor = m_vehicle->node(4)->dictionary();
    QCOMPARE(motor.value({0x1001, 0}).toInt(), 0x09);
    QCOMPARE(motor.value({0x1003, 0}).toInt(), 1);
    QCOMPARE(motor.value({0x1003, 1}).toUInt(), 0x00044210u);
    QCOMPARE(m_vehicle->node(7)->dictionary().value({0x1001, 0}).toInt(), 0);
}

void tst_Ride::syncHasCounter()
{
    QVector<int> counters;
    for (const Heard &heard : qAsConst(m_heard)) {
        if (heard.frame.frameId() == 0x80 && heard.time <= 2 * second)
            counters.append(heard.frame.payload().at(0));
    }
    QCOMPARE(counters, (QVector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

void tst_Ride::busHasRoom()
{
    qint64 bits = 0;
    for (const Heard &heard : qAsConst(m_heard))
        bits += frameBits(heard.frame);
    const double load = double(bits) / 300 / 125000; // at half of its bit rate
    QVERIFY2(load > 0.02 && load < 0.1, qPrintable(QString::number(load)));
}

void tst_Ride::runsFaster()
{
    VehicleDescription description = m_description;
    description.speed = 20;
    Vehicle vehicle(description);
    QVector<Heard> heard;
    run(vehicle, &heard, 15);
    QCOMPARE(emergenciesOf(heard).last(),
             QStringLiteral("12 s, node 4: device temperature (generic error, temperature)"));
    // SYNC, PDOs and heartbeats keep their times.
    const auto syncs = std::count_if(heard.cbegin(), heard.cend(),
                                     [](const Heard &one) { return one.frame.frameId() == 0x80; });
    QCOMPARE(int(syncs), 150);
}

QTEST_GUILESS_MAIN(tst_Ride)
#include "tst_ride.moc"
