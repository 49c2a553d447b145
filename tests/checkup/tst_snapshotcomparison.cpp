// SPDX-License-Identifier: MIT
#include "../support/vehiclesnapshot.h"

#include <checkup/checkup.h>
#include <checkup/ruleset.h>
#include <checkup/snapshotcomparison.h>

#include <QtTest>

namespace {

constexpr quint8 battery = 2;
constexpr quint8 charger = 3;
constexpr quint8 motor = 4;
constexpr quint8 display = 5;

const RuleSet &shippedRules()
{
    static const RuleSet rules = RuleSet::load({QStringLiteral(OVERVIEW_SOURCE_DIR "/src/checkup/rules")});
    return rules;
}

/*! "kind|node|object|before|after|text" of each change. */
QStringList changes(const Snapshot &before, const Snapshot &after)
{
    constexpr const char *kinds[] = {"added",     "removed", "replaced", "moved",   "firmware",
                                     "parameter", "counter", "value",    "finding", "gap"};
    const CheckupResult was = Checkup::judge(before, shippedRules(), QStringLiteral("en"));
    const CheckupResult is = Checkup::judge(after, shippedRules(), QStringLiteral("en"));
    const Comparison comparison
        = SnapshotComparison::compare({&before, &was}, {&after, &is}, shippedRules().kinds());
    QStringList lines;
    for (const Change &change : comparison.changes)
        lines.append(QStringLiteral("%1|%2|%3|%4|%5|%6")
                         .arg(QLatin1String(kinds[static_cast<int>(change.kind)]))
                         .arg(change.nodeId)
                         .arg(change.key ? change.key->toShortString() : QString(), change.before,
                              change.after, change.text));
    return lines;
}

QStringList changes(const Snapshot &after)
{
    return changes(VehicleSnapshot::of(QStringLiteral("pedelec")), after);
}

QStringList one(const char *line)
{
    return {QString::fromUtf8(line)};
}

/*! As when the device does not answer. */
void lose(SnapshotNode *node, CanOpen::ObjectKey key)
{
    SnapshotEntry entry = *node->find(key);
    entry.gap = SnapshotGap::NoAnswer;
    entry.raw.clear();
    entry.value = QVariant();
    node->insert(entry);
}

/*! The sentences about findings of the vehicle as a whole. */
QStringList vehicleFindings(const Snapshot &before, const Snapshot &after)
{
    QStringList texts;
    for (const QString &line : changes(before, after).filter(QStringLiteral("finding|0|")))
        texts.append(line.section(QLatin1Char('|'), 5));
    return texts;
}

Snapshot withVersionConflict()
{
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&snapshot, motor, {0x600E, 1}, 0x71810300);
    return snapshot;
}

/*! What the vehicle's moving values are after a time. */
Snapshot fullBusAfter(int seconds)
{
    QString error;
    const auto description = Simulator::readVehicleFile(
        QStringLiteral(OVERVIEW_SOURCE_DIR "/src/simulator/vehicles/full-bus.json"), &error);
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("full-bus"));
    for (const Simulator::NodeDescription &node : description->nodes) {
        for (const Simulator::Behaviour &behaviour : node.behaviours) {
            const double value = Simulator::behaviourValue(behaviour, qint64(seconds) * 1000000);
            VehicleSnapshot::setNumber(&snapshot, node.id, behaviour.object, qRound64(value));
        }
    }
    return snapshot;
}

} // namespace

Q_DECLARE_METATYPE(Snapshot)

class tst_SnapshotComparison : public QObject
{
    Q_OBJECT

private slots:
    void sameSnapshot();
    void runningVehicleIsTheSame();
    void hourOfRiding();
    void added();
    void removed();
    void replaced();
    void replacedWithOtherSoftware();
    void anotherMake();
    void moved();
    void swapped();
    void twinsAreToldByTheirNodes();
    void unreadIdentityIsTold_data();
    void unreadIdentityIsTold();
    void anotherOneWithoutASerialNumber();
    void serialNumberThatIsNoneNow();
    void firmware();
    void parameter();
    void counterRisen();
    void counterFallen();
    void valueBeyondItsNoise();
    void valueWithinItsNoise();
    void unknownObject();
    void textAndBytes();
    void objectLostAndFound();
    void gap();
    void gapGone();
    void notAskedForIsNoChange();
    void silentDevice();
    void findingNewAndGone();
    void findingWorse();
    void findingOfEachBit();
    void findingMovesAlong();
    void findingGoneUnjudged();
    void vehicleFindingGone();
    void vehicleFindingGoneUnjudged_data();
    void vehicleFindingGoneUnjudged();
    void findingNotReadBefore();
    void findingNotAskedFor();
    void withoutCheckup();
    void exchangeFileOfSnapshot();
    void whatWasReadBeforeItFellSilent();
    void findingOfHalfThatWasAskedFor();
    void findingsBesideEachOther();
    void findingOfAReplacedDevice();
    void findingOfANewDevice();
    void fractionsAndWideNumbers();
    void noiseBelowZero();
    void temperatureBelowZero();
    void replacedWithoutRevision();
    void findingsOfOneSideOnly();
    void findingsInTheOrderOfNodes();
    void twinThatIsNew();
    void strangerWhereADeviceMovedAway();
    void findingOfAnotherMake();
    void unreadDeviceKeepsItsName();
    void numbersOfTheLanguage();
};

void tst_SnapshotComparison::sameSnapshot()
{
    const Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("full-bus"));
    QCOMPARE(changes(snapshot, snapshot), QStringList());
}

void tst_SnapshotComparison::runningVehicleIsTheSame()
{
    QCOMPARE(changes(fullBusAfter(10), fullBusAfter(70)), QStringList());
}

/*! The battery is nearly empty then, and the clocks have gone on for less than a visit to the workshop takes. */
void tst_SnapshotComparison::hourOfRiding()
{
    const QStringList lines = changes(fullBusAfter(10), fullBusAfter(3500));
    QCOMPARE(lines, QStringList());
}

void tst_SnapshotComparison::added()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    const Snapshot after = before;
    before.nodes.remove(4);
    QCOMPARE(changes(before, after),
             one("added|5|||HMI control unit/display (node 5)|HMI control unit/display (node 5) is new."));
}

void tst_SnapshotComparison::removed()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    after.nodes.remove(4);
    QCOMPARE(changes(after),
             one("removed|5||HMI control unit/display (node 5)||HMI control unit/display (node 5) is gone."));
}

/*! What the other device has counted is no change of this one. */
void tst_SnapshotComparison::replaced()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, battery, {0x1018, 4}, 1023999);
    VehicleSnapshot::setNumber(&after, battery, {0x6107, 1}, 3);
    QCOMPARE(changes(after),
             one("replaced|2||1023457|1023999|Battery Pack (node 2) was replaced: serial number "
                 "1023457 before, 1023999 now."));
}

void tst_SnapshotComparison::replacedWithOtherSoftware()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, battery, {0x1018, 4}, 1023999);
    VehicleSnapshot::setNumber(&after, battery, {0x1018, 3}, 0x00010004);
    const QStringList lines = changes(after);
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(1),
             QStringLiteral("firmware|2|1018h.3|1.3|1.4|Battery Pack (node 2): Identity (1018h.3) "
                            "was 1.3, is 1.4: the software was changed."));
}

void tst_SnapshotComparison::anotherMake()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, battery, {0x1018, 2}, 0x1234);
    QCOMPARE(
        changes(after),
        (QStringList{QStringLiteral("added|2|||Battery Pack (node 2)|Battery Pack (node 2) is new."),
                     QStringLiteral("removed|2||Battery Pack (node 2)||Battery Pack (node 2) is gone.")}));
}

void tst_SnapshotComparison::moved()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    after.nodes.last().id = 20;
    QCOMPARE(changes(after), one("moved|20||7|20|Sensor unit (node 20) was on node 7 before."));
}

void tst_SnapshotComparison::swapped()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    std::swap(after.nodes[2], after.nodes[3]);
    after.nodes[2].id = charger;
    after.nodes[3].id = motor;
    QCOMPARE(changes(after),
             (QStringList{
                 QStringLiteral("moved|3||4|3|Motor Control unit (node 3) was on node 4 before."),
                 QStringLiteral("moved|4||3|4|Voltage Converter/Charger (node 4) was on node 3 before.")}));
}

void tst_SnapshotComparison::twinsAreToldByTheirNodes()
{
    Snapshot both = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&both, motor, {0x1018, 2}, 0x004546C7);
    VehicleSnapshot::setNumber(&both, motor, {0x1018, 4}, 1008812);
    QCOMPARE(changes(both, both), QStringList());
}

void tst_SnapshotComparison::unreadIdentityIsTold_data()
{
    QTest::addColumn<int>("sub");
    QTest::addColumn<QString>("value");
    QTest::newRow("how many") << 0 << QStringLiteral("4");
    QTest::newRow("vendor") << 1 << QStringLiteral("65534");
    QTest::newRow("product") << 2 << QStringLiteral("4540104");
    QTest::newRow("serial number") << 4 << QStringLiteral("1015290");
}

/*! It is taken for the same device, which nobody knows for certain. */
void tst_SnapshotComparison::unreadIdentityIsTold()
{
    QFETCH(int, sub);
    QFETCH(QString, value);
    const Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    lose(after.find(motor), {0x1018, quint8(sub)});
    const QString start = QStringLiteral("gap|4|1018h.%1|").arg(sub);
    const QString name = QStringLiteral("Motor Control unit (node 4): Identity (1018h.%1) ").arg(sub);
    QCOMPARE(changes(before, after),
             one(qPrintable(start + value + QStringLiteral("||") + name
                            + QStringLiteral("could not be read this time. The device did not answer."))));
    QCOMPARE(
        changes(after, before),
        one(qPrintable(start + QLatin1Char('|') + value + QLatin1Char('|') + name
                       + QStringLiteral("could be read this time. Before: The device did not answer."))));
}

/*! What it does tell is of another device. */
void tst_SnapshotComparison::anotherOneWithoutASerialNumber()
{
    const QStringList newAndGone{
        QStringLiteral("added|2|||Battery Pack (node 2)|Battery Pack (node 2) is new."),
        QStringLiteral("removed|2||Battery Pack (node 2)||Battery Pack (node 2) is gone.")};
    const Snapshot pedelec = VehicleSnapshot::of(QStringLiteral("pedelec"));
    for (const quint8 sub : {quint8(1), quint8(2)}) {
        Snapshot unread = pedelec;
        VehicleSnapshot::setNumber(&unread, battery, {0x1018, sub}, 99);
        lose(unread.find(battery), {0x1018, 4});
        QCOMPARE(changes(pedelec, unread).mid(0, 2), newAndGone);
        Snapshot before = pedelec;
        VehicleSnapshot::setNumber(&before, battery, {0x1018, 4}, 0);
        Snapshot after = before;
        VehicleSnapshot::setNumber(&after, battery, {0x1018, sub}, 99);
        QCOMPARE(changes(before, after).mid(0, 2), newAndGone);
    }
}

void tst_SnapshotComparison::serialNumberThatIsNoneNow()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, motor, {0x1018, 4}, 0);
    QCOMPARE(changes(after).value(0),
             QStringLiteral("parameter|4|1018h.4|1015290|0|Motor Control unit (node 4): Identity (1018h.4) "
                            "was 1015290, is 0."));
}

void tst_SnapshotComparison::firmware()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, motor, {0x1018, 3}, 0x00030002);
    VehicleSnapshot::setRaw(&after, motor, {0x100A, 0}, "332e32");
    QCOMPARE(
        changes(after),
        (QStringList{
            QStringLiteral("firmware|4|100Ah.0|3.1|3.2|Motor Control unit (node 4): Software version "
                           "(100Ah.0) was 3.1, is 3.2: "
                           "the software was changed."),
            QStringLiteral("firmware|4|1018h.3|3.1|3.2|Motor Control unit (node 4): Identity (1018h.3) was "
                           "3.1, is 3.2: the software was changed.")}));
}

void tst_SnapshotComparison::parameter()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, motor, {0x6026, 1}, 44000);
    QCOMPARE(changes(after),
             one("parameter|4|6026h.1|43.00 V|44.00 V|Motor Control unit (node 4): Device maximum "
                 "voltage (6026h.1) was 43.00 V, is 44.00 V."));
}

void tst_SnapshotComparison::counterRisen()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, battery, {0x6107, 1}, 246);
    QCOMPARE(changes(after),
             one("counter|2|6107h.1|212|246|Battery Pack (node 2): Battery pack lifetime cycles "
                 "(6107h.1) rose from 212 to 246."));
}

/*! However little it is. */
void tst_SnapshotComparison::counterFallen()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, battery, {0x6043, 1}, 19259);
    QCOMPARE(changes(after),
             one("counter|2|6043h.1|19260.00 minutes|19259.00 minutes|Battery Pack (node 2): Device time on "
                 "(6043h.1) fell from 19260.00 minutes to 19259.00 minutes: it was reset, or the device "
                 "repaired."));
}

void tst_SnapshotComparison::valueBeyondItsNoise()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, battery, {0x6176, 1}, 9669);
    QCOMPARE(changes(after), one("value|2|6176h.1|97.20 %|96.69 %|Battery Pack (node 2): Battery pack SOH "
                                 "(6176h.1) was 97.20 %, is 96.69 %."));
}

void tst_SnapshotComparison::valueWithinItsNoise()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, battery, {0x6176, 1}, 9670);   // 0.5 %
    VehicleSnapshot::setNumber(&after, battery, {0x6162, 1}, 486080); // 2 % of 496000
    VehicleSnapshot::setNumber(&after, battery, {0x6043, 1}, 19380);  // 2 h
    QCOMPARE(changes(after), QStringList());
}

void tst_SnapshotComparison::unknownObject()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&before, motor, {0x2000, 0}, 55);
    Snapshot after = before;
    VehicleSnapshot::setNumber(&after, motor, {0x2000, 0}, 56);
    QCOMPARE(changes(before, after),
             one("value|4|2000h.0|55|56|Motor Control unit (node 4): 2000h.0 was 55, is 56."));
}

void tst_SnapshotComparison::textAndBytes()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotEntry entry = *before.find(motor)->find(0x1008, 0);
    entry.value = QByteArray("\x01\xff");
    before.find(motor)->insert(entry);
    Snapshot after = before;
    entry.value = QByteArray("\x01\xfe");
    after.find(motor)->insert(entry);
    QCOMPARE(changes(before, after), one("parameter|4|1008h.0|01 ff|01 fe|Motor Control unit (node 4): "
                                         "Manufacturer device name (1008h.0) was 01 ff, is 01 fe."));
}

void tst_SnapshotComparison::objectLostAndFound()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    before.find(motor)->insert(VehicleSnapshot::absent({0x6307, 1}));
    after.find(motor)->insert(VehicleSnapshot::absent({0x6308, 1}));
    QCOMPARE(
        changes(before, after),
        (QStringList{QStringLiteral("parameter|4|6307h.1||280|Motor Control unit (node 4): Set maximum motor "
                                    "speed (6307h.1) is new."),
                     QStringLiteral("parameter|4|6308h.1|2500||Motor Control unit (node 4): Set maximum "
                                    "vehicle speed (6308h.1) is not there any more.")}));
}

void tst_SnapshotComparison::gap()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotEntry entry;
    entry.key = {0x6307, 1};
    entry.gap = SnapshotGap::NoAnswer;
    after.find(motor)->insert(entry);
    QCOMPARE(changes(after),
             one("gap|4|6307h.1|280||Motor Control unit (node 4): Set maximum motor speed (6307h.1) "
                 "could not be read this time. The device did not answer."));
}

void tst_SnapshotComparison::gapGone()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    const Snapshot after = before;
    SnapshotEntry entry;
    entry.key = {0x6307, 1};
    entry.gap = SnapshotGap::NoAnswer;
    before.find(motor)->insert(entry);
    QCOMPARE(
        changes(before, after),
        one("gap|4|6307h.1||280|Motor Control unit (node 4): Set maximum motor speed (6307h.1) could be read "
            "this time. Before: The device did not answer."));
}

void tst_SnapshotComparison::notAskedForIsNoChange()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    const Snapshot after = before;
    QVector<SnapshotEntry> &entries = before.find(motor)->entries;
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const SnapshotEntry &entry) { return entry.key.index == 0x6307; }),
                  entries.end());
    QCOMPARE(changes(before, after), QStringList());
}

/*! One sentence, and the name that it had. */
void tst_SnapshotComparison::silentDevice()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotNode *node = after.find(display);
    node->end = SnapshotEnd::Silent;
    for (SnapshotEntry &entry : node->entries) {
        entry.gap = SnapshotGap::NoAnswer;
        entry.value = QVariant();
        entry.raw.clear();
    }
    const QStringList lines = changes(after);
    QCOMPARE(lines.size(), 2);
    QCOMPARE(
        lines.at(1),
        QStringLiteral("gap|5|||The device does not answer.|HMI control unit/display (node 5) could not be "
                       "read to its end this time. The device does not answer."));
}

void tst_SnapshotComparison::findingNewAndGone()
{
    const Snapshot healthy = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot ill = healthy;
    VehicleSnapshot::setNumber(&ill, battery, {0x6165, 7}, 3520);
    const char *text = "Cell 7 is 410 mV below the others: 3.52 V, the others 3.93 V (limit 100 mV).";
    QCOMPARE(
        changes(healthy, ill),
        QStringList{
            QStringLiteral("finding|2|6165h.0||%1|Battery Pack (node 2): new: %1").arg(QLatin1String(text))});
    QCOMPARE(changes(ill, healthy),
             QStringList{QStringLiteral("finding|2|6165h.0|%1||Battery Pack (node 2): not any more: %1")
                             .arg(QLatin1String(text))});
}

void tst_SnapshotComparison::findingWorse()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&before, battery, {0x6165, 7}, 3828);
    Snapshot after = before;
    VehicleSnapshot::setNumber(&after, battery, {0x6165, 7}, 3520);
    QVERIFY(changes(before, after).value(0).contains(QStringLiteral("Battery Pack (node 2): worse: Cell 7")));
    QVERIFY(
        changes(after, before).value(0).contains(QStringLiteral("Battery Pack (node 2): better: Cell 7")));
}

void tst_SnapshotComparison::findingOfEachBit()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    VehicleSnapshot::setNumber(&before, battery, {0x6009, 1}, 0x0001);
    VehicleSnapshot::setNumber(&after, battery, {0x6009, 1}, 0x0400);
    QCOMPARE(
        changes(before, after),
        (QStringList{QStringLiteral("finding|2|6009h.1||Alarm: cell damaged.|Battery Pack (node 2): new: "
                                    "Alarm: cell damaged."),
                     QStringLiteral("finding|2|6009h.1|Alarm: over voltage.||Battery Pack (node 2): not any "
                                    "more: Alarm: over voltage.")}));
}

void tst_SnapshotComparison::findingMovesAlong()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&before, 7, {0x1001, 0}, 0x03);
    Snapshot after = before;
    after.nodes.last().id = 20;
    QCOMPARE(changes(before, after), one("moved|20||7|20|Sensor unit (node 20) was on node 7 before."));
}

void tst_SnapshotComparison::findingGoneUnjudged()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&before, motor, {0x1001, 0}, 0x03);
    Snapshot after = before;
    SnapshotEntry entry;
    entry.key = {0x1001, 0};
    entry.gap = SnapshotGap::NoAnswer;
    after.find(motor)->insert(entry);
    QVERIFY(changes(before, after)
                .value(0)
                .endsWith(QStringLiteral(
                    "not found, but not everything was checked: It reports an error: current.")));
}

void tst_SnapshotComparison::withoutCheckup()
{
    const Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    VehicleSnapshot::setNumber(&after, motor, {0x1001, 0}, 0x03);
    VehicleSnapshot::setNumber(&after, battery, {0x6107, 1}, 246);
    const Comparison comparison
        = SnapshotComparison::compare({&before, nullptr}, {&after, nullptr}, shippedRules().kinds());
    QCOMPARE(comparison.changes.size(), 1);
    QCOMPARE(comparison.changes.first().kind, Change::Kind::Counter);
    QVERIFY(!comparison.isSame());
}

/*! It may have been there already. What the device did not have could not have been found. */
void tst_SnapshotComparison::findingNotReadBefore()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    VehicleSnapshot::setNumber(&after, motor, {0x1001, 0}, 0x03);
    lose(before.find(motor), {0x1001, 0});
    const QString unread = changes(before, after).filter(QStringLiteral("finding|")).value(0);
    QCOMPARE(unread, QStringLiteral("finding|4|1001h.0||It reports an error: current.|Motor Control unit "
                                    "(node 4): found, but not everything was checked before: It reports "
                                    "an error: current."));

    SnapshotEntry absent = *before.find(motor)->find(0x1001, 0);
    absent.gap = SnapshotGap::Absent;
    before.find(motor)->insert(absent);
    const QStringList news = changes(before, after).filter(QStringLiteral(": new: "));
    QCOMPARE(news.size(), 1);
    QVERIFY(news.first().endsWith(QStringLiteral("(node 4): new: It reports an error: current.")));
}

/*! What another rule could not read is no matter of this one. */
void tst_SnapshotComparison::vehicleFindingGone()
{
    const Snapshot conflict = withVersionConflict();
    Snapshot healthy = VehicleSnapshot::of(QStringLiteral("pedelec"));
    lose(healthy.find(motor), {0x1001, 0});
    QCOMPARE(vehicleFindings(conflict, healthy),
             one("The vehicle: not any more: Devices implement different versions of the same "
                 "specification: 454.1.2.0 (1, 2, 3, 5, 6, 7), 454.1.3.0 (4)."));
    QCOMPARE(vehicleFindings(healthy, conflict),
             one("The vehicle: new: Devices implement different versions of the same specification: "
                 "454.1.2.0 (1, 2, 3, 5, 6, 7), 454.1.3.0 (4)."));
}

void tst_SnapshotComparison::vehicleFindingGoneUnjudged_data()
{
    QTest::addColumn<Snapshot>("unread");

    Snapshot snapshot = withVersionConflict();
    lose(snapshot.find(motor), {0x600E, 0});
    lose(snapshot.find(motor), {0x600E, 1});
    QTest::newRow("no answer") << snapshot;

    snapshot = withVersionConflict();
    snapshot.find(motor)->entries.clear();
    snapshot.find(motor)->end = SnapshotEnd::Silent;
    QTest::newRow("silent device") << snapshot;

    snapshot = withVersionConflict();
    snapshot.scope = SnapshotScope::Quick;
    QVector<SnapshotEntry> &entries = snapshot.find(motor)->entries;
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const SnapshotEntry &entry) { return entry.key.index == 0x600E; }),
                  entries.end());
    QTest::newRow("not asked for") << snapshot;
}

/*! One device that tells no version is enough not to know. */
void tst_SnapshotComparison::vehicleFindingGoneUnjudged()
{
    QFETCH(const Snapshot, unread);

    QCOMPARE(vehicleFindings(withVersionConflict(), unread),
             one("The vehicle: not found, but not everything was checked: Devices implement different "
                 "versions of the same specification: 454.1.2.0 (1, 2, 3, 5, 6, 7), 454.1.3.0 (4)."));
    QCOMPARE(vehicleFindings(unread, withVersionConflict()),
             one("The vehicle: found, but not everything was checked before: Devices implement different "
                 "versions of the same specification: 454.1.2.0 (1, 2, 3, 5, 6, 7), 454.1.3.0 (4)."));
}

/*! What a snapshot did not ask for can neither be new nor gone. */
void tst_SnapshotComparison::findingNotAskedFor()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&before, battery, {0x6009, 1}, 0x0400);
    before.find(motor)->medianAnswer = 300;
    Snapshot after = before;
    after.scope = SnapshotScope::Imported;
    QVector<SnapshotEntry> &entries = after.find(battery)->entries;
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const SnapshotEntry &entry) { return entry.key.index == 0x6009; }),
                  entries.end());
    QCOMPARE(changes(before, after), QStringList());
    QCOMPARE(changes(after, before), QStringList());
}

/*! Numbers from an exchange file have other types than those from a bus. */
void tst_SnapshotComparison::exchangeFileOfSnapshot()
{
    const Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    for (SnapshotNode &node : after.nodes) {
        for (SnapshotEntry &entry : node.entries) {
            entry.raw.clear();
            if (entry.value.canConvert<qlonglong>() && entry.value.type() != QVariant::String)
                entry.value = entry.value.toLongLong();
        }
    }
    QCOMPARE(changes(before, after), QStringList());
}

/*! Gaps are said in one sentence, whichever side has them; values that both have are compared all the same. */
void tst_SnapshotComparison::whatWasReadBeforeItFellSilent()
{
    const Snapshot healthy = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot silent = healthy;
    silent.find(motor)->end = SnapshotEnd::Silent;
    lose(silent.find(motor), {0x6307, 1});
    VehicleSnapshot::setNumber(&silent, motor, {0x6026, 1}, 44000);
    const auto texts = [](const Snapshot &before, const Snapshot &after) {
        QStringList list;
        for (const Change &change :
             SnapshotComparison::compare({&before, nullptr}, {&after, nullptr}, shippedRules().kinds())
                 .changes)
            list.append(change.text);
        return list;
    };
    QCOMPARE(texts(healthy, silent),
             (QStringList{QStringLiteral("Motor Control unit (node 4): Device maximum voltage (6026h.1) was "
                                         "43.00 V, is 44.00 V."),
                          QStringLiteral("Motor Control unit (node 4) could not be read to its end this "
                                         "time. The device does not answer.")}));
    QCOMPARE(texts(silent, healthy),
             (QStringList{QStringLiteral("Motor Control unit (node 4): Device maximum voltage (6026h.1) was "
                                         "44.00 V, is 43.00 V."),
                          QStringLiteral("Motor Control unit (node 4) could be read this time. Before: The "
                                         "device does not answer.")}));
}

/*! A finding about several objects could not have been found where one of them was not asked for. */
void tst_SnapshotComparison::findingOfHalfThatWasAskedFor()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&before, motor, {0x6040, 1}, 43001);
    Snapshot after = before;
    QVector<SnapshotEntry> &entries = after.find(motor)->entries;
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const SnapshotEntry &entry) {
                                     return entry.key.index == 0x6026 || entry.key.index == 0x6020;
                                 }),
                  entries.end());
    QCOMPARE(changes(before, after), QStringList());
    QCOMPARE(changes(after, before), QStringList());
}

/*! Several cases of one rule at once are findings of their own. */
void tst_SnapshotComparison::findingsBesideEachOther()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot both = before;
    VehicleSnapshot::setNumber(&before, 6, {0x6311, 1}, 0xC1); // manipulated
    VehicleSnapshot::setNumber(&both, 6, {0x6311, 1}, 0x41);   // and all is locked
    QCOMPARE(changes(both, both), QStringList());
    const QStringList lines = changes(before, both).filter(QStringLiteral("finding|"));
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().endsWith(QStringLiteral("new: All devices of the vehicle are locked.")),
             qPrintable(lines.first()));
}

/*! What is wrong with it is its own. */
void tst_SnapshotComparison::findingOfAReplacedDevice()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&before, battery, {0x6009, 1}, 0x0400);
    Snapshot after = before;
    VehicleSnapshot::setNumber(&after, battery, {0x1018, 4}, 1023999);
    const QStringList lines = changes(before, after);
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).startsWith(QStringLiteral("replaced|2|")));
    QCOMPARE(lines.at(1),
             QStringLiteral("finding|2|6009h.1||Alarm: cell damaged.|Battery Pack (node 2): new: "
                            "Alarm: cell damaged."));
}

/*! Also when the earlier one is a file that tells little. */
void tst_SnapshotComparison::findingOfANewDevice()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    after.find(motor)->medianAnswer = 300;
    before.scope = SnapshotScope::Imported;
    QCOMPARE(changes(before, after), QStringList());
    before.nodes.remove(3);
    const QStringList lines = changes(before, after);
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).startsWith(QStringLiteral("added|4|")));
    QVERIFY(lines.at(1).startsWith(QStringLiteral("finding|4|")));
}

void tst_SnapshotComparison::fractionsAndWideNumbers()
{
    const auto change = [](const QVariant &was, const QVariant &is) {
        Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
        SnapshotEntry entry;
        entry.key = {0x2000, 0};
        entry.value = was;
        before.find(motor)->insert(entry);
        Snapshot after = before;
        entry.value = is;
        after.find(motor)->insert(entry);
        return changes(before, after);
    };
    QCOMPARE(change(1.1, 1.1), QStringList());
    QCOMPARE(change(1.1, 1.4),
             one("value|4|2000h.0|1.1|1.4|Motor Control unit (node 4): 2000h.0 was 1.1, is 1.4."));
    QCOMPARE(change(1.1, 1),
             one("value|4|2000h.0|1.1|1|Motor Control unit (node 4): 2000h.0 was 1.1, is 1."));
    QCOMPARE(change(qulonglong(1) << 60, (qulonglong(1) << 60) + 1).size(), 0); // beyond 53 bits it is noise
    Snapshot wide = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotEntry fixed = *wide.find(motor)->find(0x6307, 1);
    fixed.value = qulonglong(1) << 60;
    wide.find(motor)->insert(fixed);
    Snapshot wider = wide;
    fixed.value = (qulonglong(1) << 60) + 1;
    wider.find(motor)->insert(fixed);
    QCOMPARE(changes(wide, wider).size(), 1);
    QCOMPARE(change(0, QByteArray("\x01\xff")),
             one("value|4|2000h.0|0|01 ff|Motor Control unit (node 4): 2000h.0 was 0, is 01 ff."));
}

void tst_SnapshotComparison::noiseBelowZero()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotEntry entry = *before.find(battery)->find(0x6162, 1);
    entry.value = -496000;
    before.find(battery)->insert(entry);
    Snapshot after = before;
    entry.value = -486080; // 2 %
    after.find(battery)->insert(entry);
    QCOMPARE(changes(before, after), QStringList());
    entry.value = -486079;
    after.find(battery)->insert(entry);
    QCOMPARE(changes(before, after).size(), 1);
}

void tst_SnapshotComparison::temperatureBelowZero()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&before, battery, {0x6105, 1}, 253, 2);
    Snapshot after = before;
    VehicleSnapshot::setNumber(&after, battery, {0x6105, 1}, 0xFF9C, 2);
    const QStringList lines = changes(before, after).filter(QStringLiteral("value|"));
    QCOMPARE(lines, one("value|2|6105h.1|25.30 °C|-10.00 °C|Battery Pack (node 2): Battery pack temperature "
                        "(6105h.1) was "
                        "25.30 °C, is -10.00 °C."));
    VehicleSnapshot::setNumber(&before, battery, {0x6105, 1}, 3, 2);
    VehicleSnapshot::setNumber(&after, battery, {0x6105, 1}, 0xFFFE, 2);
    QCOMPARE(changes(before, after), QStringList()); // half a degree is noise
}

void tst_SnapshotComparison::replacedWithoutRevision()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    QVector<SnapshotEntry> &entries = before.find(battery)->entries;
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const SnapshotEntry &entry) {
                                     return entry.key == CanOpen::ObjectKey{0x1018, 3};
                                 }),
                  entries.end());
    VehicleSnapshot::setNumber(&after, battery, {0x1018, 4}, 1023999);
    const QStringList lines = changes(before, after);
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.at(0).startsWith(QStringLiteral("replaced|2|")));
}

void tst_SnapshotComparison::findingsOfOneSideOnly()
{
    const Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    VehicleSnapshot::setNumber(&after, motor, {0x1001, 0}, 0x03);
    const CheckupResult checkup = Checkup::judge(after, shippedRules(), QStringLiteral("en"));
    QCOMPARE(checkup.count(Severity::Fault), 1);
    const ObjectKinds &kinds = shippedRules().kinds();
    QVERIFY(SnapshotComparison::compare({&before, nullptr}, {&after, &checkup}, kinds).isSame());
    QVERIFY(SnapshotComparison::compare({&after, &checkup}, {&before, nullptr}, kinds).isSame());
}

/*! And not the worst first, as a check-up has them. */
void tst_SnapshotComparison::findingsInTheOrderOfNodes()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    VehicleSnapshot::setNumber(&after, battery, {0x6164, 2}, 500);
    VehicleSnapshot::setNumber(&after, motor, {0x1001, 0}, 0x03);
    const QStringList lines = changes(after).filter(QStringLiteral("finding|"));
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).startsWith(QStringLiteral("finding|2|6164h.2|")));
    QVERIFY(lines.at(1).startsWith(QStringLiteral("finding|4|1001h.0|")));
}

/*! The twin is new; the one on the old node is the old one. */
void tst_SnapshotComparison::twinThatIsNew()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotNode twin = *after.find(motor);
    twin.id = 20;
    after.nodes.append(twin);
    QStringList lines = changes(after);
    QCOMPARE(lines.value(0),
             QStringLiteral("added|20|||Motor Control unit (node 20)|Motor Control unit (node 20) is new."));
    lines.removeFirst();
    for (const QString &line : qAsConst(lines))
        QVERIFY2(line.startsWith(QStringLiteral("finding|")), qPrintable(line));
    QCOMPARE(lines.size(), 2); // each has the identity of the other
}

void tst_SnapshotComparison::strangerWhereADeviceMovedAway()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotNode stranger;
    stranger.id = motor;
    stranger.nmtState = CanOpen::NmtState::Operational;
    after.find(motor)->id = 20;
    after.nodes.append(stranger);
    const Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    const Comparison comparison
        = SnapshotComparison::compare({&before, nullptr}, {&after, nullptr}, shippedRules().kinds());
    QCOMPARE(comparison.changes.size(), 2);
    QCOMPARE(comparison.changes.at(0).text, QStringLiteral("Device (node 4) is new."));
    QCOMPARE(comparison.changes.at(1).text,
             QStringLiteral("Motor Control unit (node 20) was on node 4 before."));
}

/*! What the one before it was not asked for does not matter. */
void tst_SnapshotComparison::findingOfAnotherMake()
{
    Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    QVector<SnapshotEntry> &entries = before.find(battery)->entries;
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const SnapshotEntry &entry) { return entry.key.index == 0x6009; }),
                  entries.end());
    VehicleSnapshot::setNumber(&after, battery, {0x1018, 2}, 0x1234);
    VehicleSnapshot::setNumber(&after, battery, {0x6009, 1}, 0x0400);
    const QStringList lines = changes(before, after);
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.at(2),
             QStringLiteral("finding|2|6009h.1||Alarm: cell damaged.|Battery Pack (node 2): new: "
                            "Alarm: cell damaged."));
}

/*! It is known by its serial number, and says nothing else about itself. */
void tst_SnapshotComparison::unreadDeviceKeepsItsName()
{
    Snapshot after = VehicleSnapshot::of(QStringLiteral("pedelec"));
    after.find(motor)->id = 20;
    lose(after.find(20), {0x6000, 0});
    lose(after.find(20), {0x1008, 0});
    const QStringList lines = changes(after);
    QCOMPARE(lines.value(0),
             QStringLiteral("moved|20||4|20|Motor Control unit (node 20) was on node 4 before."));
    QCOMPARE(lines.filter(QStringLiteral("Device (node")), QStringList());
    QCOMPARE(lines.value(1), QStringLiteral("gap|20|1008h.0|DX-Drive 250||Motor Control unit (node 20): "
                                            "Manufacturer device name (1008h.0) could not be "
                                            "read this time. The device did not answer."));
}

void tst_SnapshotComparison::numbersOfTheLanguage()
{
    const Snapshot before = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot after = before;
    VehicleSnapshot::setNumber(&after, motor, {0x6026, 1}, 44000);
    const CheckupResult was = Checkup::judge(before, shippedRules(), QStringLiteral("de"));
    const CheckupResult is = Checkup::judge(after, shippedRules(), QStringLiteral("de"));
    const Comparison comparison
        = SnapshotComparison::compare({&before, &was}, {&after, &is}, shippedRules().kinds());
    QCOMPARE(comparison.changes.size(), 1);
    QCOMPARE(comparison.changes.first().after, QStringLiteral("44,00 V"));
    QCOMPARE(comparison.changes.first().device, QStringLiteral("Motor Control unit (node 4)"));
    QVERIFY(comparison.changes.first().text.endsWith(QStringLiteral("was 43,00 V, is 44,00 V.")));
}

QTEST_GUILESS_MAIN(tst_SnapshotComparison)
#include "tst_snapshotcomparison.moc"
