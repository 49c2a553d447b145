// SPDX-License-Identifier: MIT
#include "../support/vehiclesnapshot.h"

#include <checkup/checkup.h>
#include <checkup/ruleset.h>

#include <QtTest>

#include <functional>

using Alteration = std::function<void(Snapshot *)>;
Q_DECLARE_METATYPE(Alteration)
Q_DECLARE_METATYPE(Severity)

namespace {

const QStringList &languages()
{
    static const QStringList list{QStringLiteral("de"), QStringLiteral("fr"), QStringLiteral("nl"),
                                  QStringLiteral("zh_CN")};
    return list;
}

const RuleSet &shippedRules()
{
    static const RuleSet rules = RuleSet::load({QStringLiteral(OVERVIEW_SOURCE_DIR "/src/checkup/rules")});
    return rules;
}

CheckupResult judge(const Snapshot &snapshot)
{
    return Checkup::judge(snapshot, shippedRules(), QStringLiteral("en"));
}

/*! "rule|severity|text" of each finding, of the vehicle and of all nodes. */
QStringList found(const CheckupResult &result)
{
    constexpr const char *severities[] = {"note", "warning", "fault"};
    QStringList lines;
    const auto add = [&lines, &severities](const Finding &finding) {
        lines.append(QStringLiteral("%1|%2|%3|%4")
                         .arg(finding.nodeId)
                         .arg(finding.rule, QLatin1String(severities[static_cast<int>(finding.severity)]),
                              finding.text));
    };
    for (const Finding &finding : result.vehicleFindings)
        add(finding);
    for (const CheckedComponent &checked : result.components) {
        for (const Finding &finding : checked.findings)
            add(finding);
    }
    return lines;
}

Alteration number(quint8 nodeId, quint16 index, quint8 sub, qint64 value, int size = 0)
{
    return [=](Snapshot *snapshot) {
        VehicleSnapshot::setNumber(snapshot, nodeId, {index, sub}, value, size);
    };
}

Alteration all(const QVector<Alteration> &alterations)
{
    return [alterations](Snapshot *snapshot) {
        for (const Alteration &alteration : alterations)
            alteration(snapshot);
    };
}

Alteration node(quint8 nodeId, const std::function<void(SnapshotNode *)> &change)
{
    return [nodeId, change](Snapshot *snapshot) { change(snapshot->find(nodeId)); };
}

/*! A whole object, its count included. */
Alteration array(quint8 nodeId, quint16 index, const QVector<qint64> &values, int size = 2)
{
    return [=](Snapshot *snapshot) {
        VehicleSnapshot::setNumber(snapshot, nodeId, {index, 0}, values.size(), 1);
        for (int i = 0; i < values.size(); ++i)
            VehicleSnapshot::setNumber(snapshot, nodeId, {index, static_cast<quint8>(i + 1)}, values.at(i),
                                       size);
    };
}

Alteration absent(quint8 nodeId, quint16 index, quint8 sub)
{
    return [=](Snapshot *snapshot) { snapshot->find(nodeId)->insert(VehicleSnapshot::absent({index, sub})); };
}

constexpr quint8 controller = 1;
constexpr quint8 battery = 2;
constexpr quint8 charger = 3;
constexpr quint8 motor = 4;
constexpr quint8 display = 5;
constexpr quint8 security = 6;

} // namespace

/*! Each shipped rule with a vehicle that shows it; the healthy vehicle shows none. */
class tst_ShippedRules : public QObject
{
    Q_OBJECT

private slots:
    void filesAreInOrder();
    void everyTextIsInFiveLanguages();
    void everyRuleIsShown();
    void healthyPedelec();
    void fullBus();
    void rule_data();
    void rule();
    void notShown_data();
    void notShown();
    void alarmWords_data();
    void alarmWords();
    void errorRegisterBits_data();
    void errorRegisterBits();
    void kindsOfObjects_data();
    void kindsOfObjects();
};

void tst_ShippedRules::filesAreInOrder()
{
    QVERIFY2(shippedRules().problems().isEmpty(),
             qPrintable(shippedRules().problems().join(QLatin1Char('\n'))));
    QVERIFY(shippedRules().rules().size() > 30);
}

void tst_ShippedRules::everyTextIsInFiveLanguages()
{
    const auto check = [](const Rule &rule, const LocalText<TextTemplate> &text) {
        const QStringList places = text.in(QStringLiteral("en")).places();
        for (const QString &language : languages()) {
            QVERIFY2(text.all().contains(language), qPrintable(rule.id + QLatin1Char(' ') + language));
            QVERIFY2(text.in(language).places() == places, qPrintable(rule.id + QLatin1Char(' ') + language));
        }
    };
    for (const Rule &rule : shippedRules().rules()) {
        for (const RuleCase &ruleCase : rule.cases) {
            check(rule, ruleCase.text);
            QVERIFY2(!ruleCase.advice.isEmpty(), qPrintable(rule.id));
            check(rule, ruleCase.advice);
        }
    }
}

void tst_ShippedRules::healthyPedelec()
{
    const CheckupResult result = judge(VehicleSnapshot::of(QStringLiteral("pedelec")));
    QCOMPARE(found(result), QStringList());
    QCOMPARE(result.verdict, Verdict::Ok);
    QCOMPARE(result.components.size(), 7);
    for (const CheckedComponent &checked : result.components)
        QVERIFY2(checked.notChecked.isEmpty(), qPrintable(checked.notChecked.join(QLatin1Char('\n'))));
}

/*! Two of its devices are there to show what is seldom: one reports an error, one is nearly empty. */
void tst_ShippedRules::fullBus()
{
    const CheckupResult result = judge(VehicleSnapshot::of(QStringLiteral("full-bus")));
    const QStringList expected{
        QStringLiteral("8|error-register|fault|It reports an error: current."),
        QStringLiteral("8|error-history|note|Error history, entry 1: current, output side (code 2310h, "
                       "device's own addition 0001h)."),
        QStringLiteral("8|error-history|note|Error history, entry 2: current, output side (code 2320h, "
                       "device's own addition 0000h)."),
        QStringLiteral("3|charge-low|note|It is nearly empty: 0.92 %."),
    };
    QCOMPARE(found(result), expected);
    QCOMPARE(result.verdict, Verdict::Fault);
    QCOMPARE(result.notCheckedCount(), 0);
}

void tst_ShippedRules::rule_data()
{
    QTest::addColumn<Alteration>("alteration");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const Alteration &alteration, const QStringList &expected) {
        QTest::newRow(name) << alteration << expected;
    };
    const auto one = [row](const char *name, const Alteration &alteration, const char *expected) {
        row(name, alteration, {QString::fromUtf8(expected)});
    };

    one("silent, heartbeat heard",
        node(display,
             [](SnapshotNode *n) {
                 n->end = SnapshotEnd::Silent;
                 n->entries.clear();
             }),
        "5|no-answer|note|It sends its heartbeat, but does not answer.");
    one("silent, no heartbeat",
        node(display,
             [](SnapshotNode *n) {
                 n->end = SnapshotEnd::Silent;
                 n->nmtState.reset();
                 n->entries.clear();
             }),
        "5|no-answer|note|Neither its heartbeat nor an answer was heard.");
    one("stopped to the end",
        node(motor,
             [](SnapshotNode *n) {
                 n->end = SnapshotEnd::Stopped;
                 n->nmtState = CanOpen::NmtState::Stopped;
                 n->entries.clear();
             }),
        "4|stopped|warning|It is stopped (NMT state Stopped): it takes no part in the vehicle's work.");
    one("stopped after it was read",
        node(motor, [](SnapshotNode *n) { n->nmtState = CanOpen::NmtState::Stopped; }),
        "4|stopped|warning|It is stopped (NMT state Stopped): it takes no part in the vehicle's work.");
    one("stopped for as long as it was asked",
        node(motor, [](SnapshotNode *n) { n->end = SnapshotEnd::Stopped; }),
        "4|stopped|warning|It is stopped (NMT state Stopped): it takes no part in the vehicle's work.");
    one("heartbeat switched off", number(charger, 0x1017, 0, 0),
        "3|heartbeat-off|warning|Its heartbeat is switched off: nobody notices when it fails.");
    one("no heartbeat heard", node(charger, [](SnapshotNode *n) { n->nmtState.reset(); }),
        "3|heartbeat-off|warning|It answers, but no heartbeat of it was heard: nobody notices when it "
        "fails.");
    one("restarts", node(motor, [](SnapshotNode *n) { n->bootUps = 4; }),
        "4|restarts|warning|It restarted while it was being read: 3 × in 12 s.");
    one("restarts where nothing else was switched on", Alteration([](Snapshot *snapshot) {
            for (SnapshotNode &each : snapshot->nodes)
                each.bootUps = each.id == motor ? 1 : 0;
        }),
        "4|restarts|warning|It restarted while it was being read: 1 × in 12 s.");
    one("slow",
        node(motor,
             [](SnapshotNode *n) {
                 n->medianAnswer = 51;
                 n->longestAnswer = 130;
             }),
        "4|slow-answers|note|It answers slowly: half of its answers took 51 ms or more, the slowest 130 ms.");
    one("very slow",
        node(motor,
             [](SnapshotNode *n) {
                 n->medianAnswer = 251;
                 n->longestAnswer = 900;
             }),
        "4|slow-answers|warning|It answers slowly: half of its answers took 251 ms or more, the slowest 900 "
        "ms.");
    one("no identity", absent(motor, 0x1018, 4),
        "4|identity-missing|note|It has no identity of its own (1018h): vendor, product code and serial "
        "number "
        "tell a device from all others.");
    one("serial number 0", number(motor, 0x1018, 4, 0),
        "4|identity-missing|note|It has no identity of its own (1018h): vendor, product code and serial "
        "number "
        "tell a device from all others.");
    row("identity twice", all({number(motor, 0x1018, 2, 0x004546C7), number(motor, 0x1018, 4, 1008812)}),
        {QStringLiteral(
             "3|identity-twice|warning|It has the same vendor, product code and serial number as node 4."),
         QStringLiteral(
             "4|identity-twice|warning|It has the same vendor, product code and serial number as node 3.")});
    one("no device type", absent(motor, 0x1000, 0),
        "4|mandatory-objects|warning|It has no device type (1000h), which every CANopen device has to have.");
    one("no error register", absent(motor, 0x1001, 0),
        "4|mandatory-objects|warning|It has no error register (1001h), which every CANopen device has to "
        "have.");
    one("bootloader", number(motor, 0x1000, 0, 0x0F0101C6),
        "4|bootloader|fault|It is in its bootloader: its application software is not running.");
    one("different versions", number(motor, 0x600E, 1, 0x71810300),
        "0|profile-versions|note|Devices implement different versions of the same specification: 454.1.2.0 "
        "(1, "
        "2, 3, 5, 6, 7), 454.1.3.0 (4).");

    one("another version twice in one device", array(motor, 0x600E, {0x71810300, 0x71810300}, 4),
        "0|profile-versions|note|Devices implement different versions of the same specification: 454.1.2.0 "
        "(1, "
        "2, 3, 5, 6, 7), 454.1.3.0 (4).");
    one("generic error alone", number(motor, 0x1001, 0, 0x01),
        "4|error-register|warning|It reports an error: generic error.");
    one("error history", all({number(motor, 0x1003, 0, 1, 1), number(motor, 0x1003, 1, 0x00074210, 4)}),
        "4|error-history|note|Error history, entry 1: device temperature (code 4210h, device's own addition "
        "0007h).");
    one("alarm", number(battery, 0x6009, 1, 0x0400), "2|alarm|fault|Alarm: cell damaged.");
    one("alarm without a name", number(battery, 0x6009, 1, 0x00020000),
        "2|alarm-other|fault|An alarm without a name is set (6009h is 00020000h).");
    one("warning", number(battery, 0x600B, 1, 0x0010), "2|warning|warning|Warning: electronics too hot.");
    one("system error", number(controller, 0x6080, 0, 0x37),
        "1|system-status|fault|The controller reports an error of the energy management system.");
    one("system warning", number(controller, 0x6080, 0, 0x17),
        "1|system-status|warning|The controller reports a warning of the energy management system.");
    one("battery's error state", number(battery, 0x6002, 1, 0x8180),
        "2|battery-error|fault|The battery is in its error state.");
    one("charger's error, one way", number(charger, 0x6002, 1, 0x8400),
        "3|converter-error|fault|The charger or converter has stopped with an error.");
    one("charger's error, the other way", number(charger, 0x6002, 1, 0x8680),
        "3|converter-error|fault|The charger or converter has stopped with an error.");

    one("voltage above the maximum", number(motor, 0x6040, 1, 43001),
        "4|voltage-high|fault|Its voltage is too high: 43.00 V, at most 43.00 V.");
    one("voltage above the input limit", number(motor, 0x6040, 1, 42500),
        "4|voltage-high|warning|Its voltage is above its present input limit: 42.50 V, at most 42.00 V.");
    one("voltage below the minimum", number(motor, 0x6040, 1, 27900),
        "4|voltage-low|fault|Its voltage is too low: 27.90 V, at least 28.00 V.");
    one("voltage of a disconnected battery",
        all({number(battery, 0x6002, 1, 0x0080), number(battery, 0x6040, 1, 21000)}),
        "2|voltage-low|fault|Its voltage is too low: 21.00 V, at least 28.00 V.");
    one("current above the rating", number(motor, 0x603E, 1, -18001),
        "4|current-high|warning|Its current is too high: -18.00 A, at most 18.00 A for long.");
    one("current above the present limit",
        all({number(motor, 0x6022, 1, 5000), number(motor, 0x603E, 1, 5900)}),
        "4|current-high|warning|Its current is above its present limit: 5.90 A, at most 5.00 A.");

    row("battery too hot", number(battery, 0x6105, 1, 601),
        {QStringLiteral("2|battery-hot|fault|The battery is too hot: 60.10 °C, at most 60.00 °C."),
         QStringLiteral(
             "2|battery-charge-temperature|note|It cannot be charged now: 60.10 °C, from 2.00 °C to "
             "45.00 °C is allowed.")});
    row("battery too cold, read without its sign", number(battery, 0x6105, 1, -160),
        {QStringLiteral("2|battery-cold|warning|The battery is too cold: -16.00 °C, at least -15.00 °C."),
         QStringLiteral("2|battery-charge-temperature|note|It cannot be charged now: -16.00 °C, from 2.00 °C "
                        "to 45.00 °C is allowed.")});
    one("too warm to charge", number(battery, 0x6105, 1, 451),
        "2|battery-charge-temperature|note|It cannot be charged now: 45.10 °C, from 2.00 °C to 45.00 °C is "
        "allowed.");
    one("stored too warm", all({array(battery, 0x6124, {240}), array(battery, 0x6125, {-100})}),
        "2|battery-storage-temperature|note|This is no temperature to store it at: 25.30 °C, from -10.00 °C "
        "to "
        "24.00 °C is allowed.");

    one("one cell low", number(battery, 0x6165, 7, 3520),
        "2|cell-low|fault|Cell 7 is 410 mV below the others: 3.52 V, the others 3.93 V (limit 100 mV).");
    one("one cell a little low", number(battery, 0x6165, 7, 3828),
        "2|cell-low|warning|Cell 7 is 102 mV below the others: 3.83 V, the others 3.93 V (limit 100 mV).");
    one("one cell high", number(battery, 0x6165, 10, 4040),
        "2|cell-high|warning|Cell 10 is 110 mV above the others: 4.04 V, the others 3.93 V (limit 100 mV).");
    one("a cell of the second pack",
        all({number(battery, 0x6100, 0, 2), array(battery, 0x6166, {3700, 3700, 3399, 3700})}),
        "2|cell-low|fault|Cell 3 of pack 2 is 301 mV below the others: 3.40 V, the others 3.70 V (limit 100 "
        "mV).");
    one("a cell below its limit", array(battery, 0x6165, {2810, 2800, 2799, 2805}),
        "2|cell-under-voltage|fault|Cell 3 is too low: 2.80 V, its limit is 2.80 V (pack 1).");
    one("a cell above its limit", array(battery, 0x6165, {4190, 4201, 4195, 4200}),
        "2|cell-over-voltage|fault|Cell 2 is too high: 4.20 V, its limit is 4.20 V (pack 1).");
    one("worn", number(battery, 0x6176, 1, 7999),
        "2|state-of-health|warning|Its state of health is 79.99 %.");
    one("worn out", number(battery, 0x6176, 1, 5999),
        "2|state-of-health|fault|Its state of health is 59.99 %.");
    one("more cycles than it is made for", number(battery, 0x6107, 1, 801),
        "2|cycles|warning|It has had 801 charge cycles; it is made for 800.");
    one("nearly as many cycles as it is made for", number(battery, 0x6107, 1, 721),
        "2|cycles|note|It has had 721 charge cycles; it is made for 800.");
    one("deep discharges", number(battery, 0x617F, 1, 10), "2|deep-discharges|note|Deep discharges: 10.");
    one("many deep discharges", number(battery, 0x617F, 1, 50),
        "2|deep-discharges|warning|Deep discharges: 50.");
    one("short circuit", number(battery, 0x6180, 1, 1), "2|short-circuits|note|Short circuits: 1.");
    one("short circuits", number(battery, 0x6180, 1, 5), "2|short-circuits|warning|Short circuits: 5.");
    one("too hot once", number(battery, 0x6181, 1, 1), "2|over-temperatures|note|Times it was too hot: 1.");
    one("too hot often", number(battery, 0x6181, 1, 10),
        "2|over-temperatures|warning|Times it was too hot: 10.");
    one("nearly empty", number(battery, 0x6164, 2, 999), "2|charge-low|note|It is nearly empty: 9.99 %.");

    one("battery at its highest temperature", number(battery, 0x6105, 1, 600),
        "2|battery-charge-temperature|note|It cannot be charged now: 60.00 °C, from 2.00 °C to 45.00 °C is "
        "allowed.");
    one("battery at its lowest temperature", number(battery, 0x6105, 1, -150),
        "2|battery-charge-temperature|note|It cannot be charged now: -15.00 °C, from 2.00 °C to 45.00 °C is "
        "allowed.");
    one("stored too cold", all({array(battery, 0x6124, {500}), array(battery, 0x6125, {300})}),
        "2|battery-storage-temperature|note|This is no temperature to store it at: 25.30 °C, from 30.00 °C "
        "to "
        "50.00 °C is allowed.");
    one("a cell 300 mV low", number(battery, 0x6165, 7, 3630),
        "2|cell-low|warning|Cell 7 is 300 mV below the others: 3.63 V, the others 3.93 V (limit 100 mV).");
    one("a cell 300 mV high", array(battery, 0x6165, {3700, 3700, 3700, 4000}),
        "2|cell-high|warning|Cell 4 is 300 mV above the others: 4.00 V, the others 3.70 V (limit 100 mV).");
    one("a cell 301 mV high", array(battery, 0x6165, {3700, 3700, 3700, 4001}),
        "2|cell-high|fault|Cell 4 is 301 mV above the others: 4.00 V, the others 3.70 V (limit 100 mV).");
    const Alteration twin = number(battery, 0x6100, 0, 2);
    one("second pack, a cell 300 mV low", all({twin, array(battery, 0x6166, {3700, 3700, 3400, 3700})}),
        "2|cell-low|warning|Cell 3 of pack 2 is 300 mV below the others: 3.40 V, the others 3.70 V (limit "
        "100 "
        "mV).");
    one("second pack, a cell 300 mV high", all({twin, array(battery, 0x6166, {3700, 3700, 4000, 3700})}),
        "2|cell-high|warning|Cell 3 of pack 2 is 300 mV above the others: 4.00 V, the others 3.70 V (limit "
        "100 "
        "mV).");
    one("second pack, a cell 301 mV high", all({twin, array(battery, 0x6166, {3700, 3700, 4001, 3700})}),
        "2|cell-high|fault|Cell 3 of pack 2 is 301 mV above the others: 4.00 V, the others 3.70 V (limit 100 "
        "mV).");
    one("not yet worn out", number(battery, 0x6176, 1, 6000),
        "2|state-of-health|warning|Its state of health is 60.00 %.");
    one("as many cycles as it is made for", number(battery, 0x6107, 1, 800),
        "2|cycles|note|It has had 800 charge cycles; it is made for 800.");
    one("warning of the second virtual device", array(charger, 0x600B, {0, 0x10}, 4),
        "3|warning|warning|Warning of virtual device 2: electronics too hot.");
    one("not yet very slow", node(motor, [](SnapshotNode *n) { n->medianAnswer = 250; }),
        "4|slow-answers|note|It answers slowly: half of its answers took 250 ms or more, the slowest 5 ms.");
    one("no vendor", absent(motor, 0x1018, 1),
        "4|identity-missing|note|It has no identity of its own (1018h): vendor, product code and serial "
        "number "
        "tell a device from all others.");
    one("voltage at the maximum", number(motor, 0x6040, 1, 43000),
        "4|voltage-high|warning|Its voltage is above its present input limit: 43.00 V, at most 42.00 V.");
    one("low voltage while in use, whatever its state is called",
        all({number(motor, 0x6002, 1, 0x8000), number(motor, 0x6040, 1, 27999)}),
        "4|voltage-low|fault|Its voltage is too low: 28.00 V, at least 28.00 V.");
    one("low voltage while limiting",
        all({number(motor, 0x6002, 1, 0x6000), number(motor, 0x6040, 1, 27999)}),
        "4|voltage-low|fault|Its voltage is too low: 28.00 V, at least 28.00 V.");
    one("low voltage while masterless",
        all({number(motor, 0x6002, 1, 0xA000), number(motor, 0x6040, 1, 27000)}),
        "4|voltage-low|fault|Its voltage is too low: 27.00 V, at least 28.00 V.");

    const Alteration noPacks = absent(battery, 0x6100, 0);
    one("a cell 301 mV low, packs not known", all({noPacks, number(battery, 0x6165, 7, 3629)}),
        "2|cell-low|fault|Cell 7 is 301 mV below the others: 3.63 V, the others 3.93 V (limit 100 mV).");
    one("a cell 101 mV low, packs not known", all({noPacks, number(battery, 0x6165, 7, 3829)}),
        "2|cell-low|warning|Cell 7 is 101 mV below the others: 3.83 V, the others 3.93 V (limit 100 mV).");
    one("a cell 301 mV high, packs not known",
        all({noPacks, array(battery, 0x6165, {3700, 3700, 3700, 4001})}),
        "2|cell-high|fault|Cell 4 is 301 mV above the others: 4.00 V, the others 3.70 V (limit 100 mV).");
    one("a cell 101 mV high, packs not known",
        all({noPacks, array(battery, 0x6165, {3700, 3700, 3700, 3801})}),
        "2|cell-high|warning|Cell 4 is 101 mV above the others: 3.80 V, the others 3.70 V (limit 100 mV).");
    one("second pack, a cell 101 mV low", all({twin, array(battery, 0x6166, {3700, 3700, 3599, 3700})}),
        "2|cell-low|warning|Cell 3 of pack 2 is 101 mV below the others: 3.60 V, the others 3.70 V (limit "
        "100 "
        "mV).");
    one("second pack, a cell 101 mV high", all({twin, array(battery, 0x6166, {3700, 3700, 3801, 3700})}),
        "2|cell-high|warning|Cell 3 of pack 2 is 101 mV above the others: 3.80 V, the others 3.70 V (limit "
        "100 "
        "mV).");
    one("nothing left of its health", number(battery, 0x6176, 1, 1),
        "2|state-of-health|fault|Its state of health is 0.01 %.");
    one("made for one cycle", number(battery, 0x6106, 1, 1),
        "2|cycles|warning|It has had 212 charge cycles; it is made for 1.");
    one("not yet many deep discharges", number(battery, 0x617F, 1, 49),
        "2|deep-discharges|note|Deep discharges: 49.");
    one("not yet many short circuits", number(battery, 0x6180, 1, 4),
        "2|short-circuits|note|Short circuits: 4.");
    one("not yet often too hot", number(battery, 0x6181, 1, 9),
        "2|over-temperatures|note|Times it was too hot: 9.");
    one("first alarm without a name", number(battery, 0x6009, 1, 0x00010000, 4),
        "2|alarm-other|fault|An alarm without a name is set (6009h is 00010000h).");
    one("last alarm without a name", number(battery, 0x6009, 1, 0x40000000, 4),
        "2|alarm-other|fault|An alarm without a name is set (6009h is 40000000h).");
    one("battery's error state while it is connected", number(battery, 0x6002, 1, 0x9180),
        "2|battery-error|fault|The battery is in its error state.");
    one("charger's error while it is connected", number(charger, 0x6002, 1, 0x9400),
        "3|converter-error|fault|The charger or converter has stopped with an error.");
    one("charger's other error while it is connected", number(charger, 0x6002, 1, 0x9680),
        "3|converter-error|fault|The charger or converter has stopped with an error.");
    one("input limit of next to nothing", number(motor, 0x6026, 1, 1),
        "4|voltage-high|fault|Its voltage is too high: 39.20 V, at most 0.00 V.");
    one("low voltage, whatever is set above its state",
        all({number(motor, 0x6002, 1, 0x00206000, 4), number(motor, 0x6040, 1, 27000)}),
        "4|voltage-low|fault|Its voltage is too low: 27.00 V, at least 28.00 V.");
    one("present limit of next to nothing",
        all({number(motor, 0x6022, 1, 1), number(motor, 0x6023, 1, 0), number(motor, 0x603E, 1, 20)}),
        "4|current-high|warning|Its current is above its present limit: 0.02 A, at most 0.00 A.");
    one("present input limit of next to nothing", number(motor, 0x6020, 1, 1),
        "4|voltage-high|warning|Its voltage is above its present input limit: 39.20 V, at most 0.00 V.");
    one("battery's error state, whatever stands above its class",
        all({number(battery, 0x6000, 1, 0x0106, 4), number(battery, 0x6002, 1, 0x8180)}),
        "2|battery-error|fault|The battery is in its error state.");
    one("charger's error, whatever stands above its class",
        all({number(charger, 0x6000, 1, 0x0105, 4), number(charger, 0x6002, 1, 0x8400)}),
        "3|converter-error|fault|The charger or converter has stopped with an error.");
    one("voltage of a disconnected battery, whatever stands above its class",
        all({number(battery, 0x6000, 1, 0x0106, 4), number(battery, 0x6002, 1, 0x0080),
             number(battery, 0x6040, 1, 21000)}),
        "2|voltage-low|fault|Its voltage is too low: 21.00 V, at least 28.00 V.");
    one("lowest minimum", all({number(motor, 0x6027, 1, 1), number(motor, 0x6040, 1, 0)}),
        "4|voltage-low|fault|Its voltage is too low: 0.00 V, at least 0.00 V.");
    one("lowest rating",
        all({number(motor, 0x6024, 1, 1), number(motor, 0x6025, 1, 0), number(motor, 0x603E, 1, 20)}),
        "4|current-high|warning|Its current is too high: 0.02 A, at most 0.00 A for long.");

    one("manipulated", number(security, 0x6311, 1, 0xC1), "6|security|fault|It has detected manipulation.");
    one("vehicle locked", number(security, 0x6311, 1, 0x45),
        "6|security|warning|All devices of the vehicle are locked.");
    one("lock wanted", number(security, 0x6311, 1, 0x85),
        "6|security|note|It wants all devices of the vehicle to be locked.");
    one("locked", number(security, 0x6311, 1, 0xC7), "6|security|note|It is locked.");
    one("without the key", number(security, 0x6311, 1, 0xCD),
        "6|security|warning|It does not have the current encryption key.");
    one("without the first key", number(security, 0x6311, 1, 0xD5),
        "6|security|warning|It lacks its initial encryption key.");
}

void tst_ShippedRules::rule()
{
    QFETCH(Alteration, alteration);
    QFETCH(QStringList, expected);

    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    alteration(&snapshot);
    QCOMPARE(found(judge(snapshot)), expected);
}

/*! Names all rules that the rows above show. */
void tst_ShippedRules::everyRuleIsShown()
{
    const QStringList shown{QStringLiteral("no-answer"),
                            QStringLiteral("stopped"),
                            QStringLiteral("heartbeat-off"),
                            QStringLiteral("restarts"),
                            QStringLiteral("slow-answers"),
                            QStringLiteral("identity-missing"),
                            QStringLiteral("identity-twice"),
                            QStringLiteral("mandatory-objects"),
                            QStringLiteral("bootloader"),
                            QStringLiteral("profile-versions"),
                            QStringLiteral("error-register"),
                            QStringLiteral("error-history"),
                            QStringLiteral("alarm"),
                            QStringLiteral("alarm-other"),
                            QStringLiteral("warning"),
                            QStringLiteral("system-status"),
                            QStringLiteral("battery-error"),
                            QStringLiteral("converter-error"),
                            QStringLiteral("voltage-high"),
                            QStringLiteral("voltage-low"),
                            QStringLiteral("current-high"),
                            QStringLiteral("battery-hot"),
                            QStringLiteral("battery-cold"),
                            QStringLiteral("battery-charge-temperature"),
                            QStringLiteral("battery-storage-temperature"),
                            QStringLiteral("cell-low"),
                            QStringLiteral("cell-high"),
                            QStringLiteral("cell-under-voltage"),
                            QStringLiteral("cell-over-voltage"),
                            QStringLiteral("state-of-health"),
                            QStringLiteral("cycles"),
                            QStringLiteral("deep-discharges"),
                            QStringLiteral("short-circuits"),
                            QStringLiteral("over-temperatures"),
                            QStringLiteral("charge-low"),
                            QStringLiteral("security")};
    for (const Rule &rule : shippedRules().rules())
        QVERIFY2(shown.contains(rule.id), qPrintable(rule.id));
    QCOMPARE(shippedRules().rules().size(), shown.size());
}

void tst_ShippedRules::notShown_data()
{
    QTest::addColumn<Alteration>("alteration");

    QTest::newRow("limits themselves") << all(
        {number(motor, 0x6040, 1, 42000), number(motor, 0x603E, 1, 18000), number(battery, 0x6105, 1, 450),
         number(battery, 0x6176, 1, 8000), number(battery, 0x6107, 1, 720), number(battery, 0x617F, 1, 9),
         number(battery, 0x6164, 2, 1000)});
    QTest::newRow("cells 100 mV apart") << array(battery, 0x6165, {3700, 3600, 3700, 3800, 3700});
    QTest::newRow("cells of the second pack 100 mV apart")
        << all({number(battery, 0x6100, 0, 2), array(battery, 0x6166, {3700, 3600, 3700, 3800, 3700})});
    QTest::newRow("full cells") << array(battery, 0x6165, {4190, 4200, 4195});
    QTest::newRow("as cold as can be charged") << number(battery, 0x6105, 1, 20);
    QTest::newRow("at the limits of storing")
        << all({array(battery, 0x6124, {253}), array(battery, 0x6125, {253})});
    QTest::newRow("lifetime that is not known") << number(battery, 0x6106, 1, 0);
    QTest::newRow("voltage at the minimum") << number(motor, 0x6040, 1, 28000);
    QTest::newRow("low voltage while asleep")
        << all({number(motor, 0x6002, 1, 0xC000), number(motor, 0x6040, 1, 27000)});
    QTest::newRow("limits that are not known")
        << all({number(motor, 0x6020, 1, 0), number(motor, 0x6022, 1, 0), number(motor, 0x6024, 1, 0),
                number(motor, 0x6026, 1, 0)});
    QTest::newRow("cells at their limits")
        << array(battery, 0x6165, {2800, 2900, 2850}); // 50 mV apart, none below 2.80 V
    QTest::newRow("voltage of a device that is not in use")
        << all({number(charger, 0x6002, 1, 0x2040), number(charger, 0x6040, 1, 0)});
    QTest::newRow("answers within 50 ms") << node(motor, [](SnapshotNode *n) { n->medianAnswer = 50; });
    QTest::newRow("switched on while it was read") << Alteration([](Snapshot *snapshot) {
        for (SnapshotNode &each : snapshot->nodes)
            each.bootUps = 1;
    });
    QTest::newRow("no device has restarted") << Alteration([](Snapshot *snapshot) {
        for (SnapshotNode &each : snapshot->nodes)
            each.bootUps = 0;
    });
    QTest::newRow("a device that was on before the others")
        << node(controller, [](SnapshotNode *n) { n->bootUps = 0; });
    QTest::newRow("no version beside one without a profile")
        << all({number(motor, 0x600E, 1, 0x00000100), number(charger, 0x600E, 1, 0)});
    QTest::newRow("voltage below zero, minimum not known")
        << all({number(motor, 0x6027, 1, 0), number(motor, 0x6040, 1, -5)});
    QTest::newRow("an entry of the history that is empty")
        << all({number(motor, 0x1003, 0, 1, 1), number(motor, 0x1003, 1, 0, 4)});
    QTest::newRow("bit of the alarms that are supported") << number(battery, 0x6009, 1, 0x80000000, 4);
    QTest::newRow("battery in a state beside the error state") << number(battery, 0x6002, 1, 0x8980);
    QTest::newRow("charger in states beside the error states") << number(charger, 0x6002, 1, 0x8C00);
    QTest::newRow("charger in other states beside the error states") << number(charger, 0x6002, 1, 0x8E80);
    QTest::newRow("bit of another profile") << number(motor, 0x1000, 0, 0x000081C6);
    QTest::newRow("low voltage while its compatibility is checked")
        << all({number(motor, 0x6002, 1, 0x4000), number(motor, 0x6040, 1, 27000)});
    QTest::newRow("low voltage in no state, whatever is set above it")
        << all({number(motor, 0x6002, 1, 0x00200000, 4), number(motor, 0x6040, 1, 27000)});
    QTest::newRow("low voltage in an unknown state")
        << all({number(motor, 0x6002, 1, 0x00108000, 4), number(motor, 0x6040, 1, 27000)});
    QTest::newRow("error state of a part of an unknown class beside a battery")
        << all({array(battery, 0x6000, {6, 0x86}, 4), array(battery, 0x6002, {0x8000, 0x8180}, 4)});
    QTest::newRow("error state of a part of an unknown class beside a charger")
        << all({array(charger, 0x6000, {5, 0x85}, 4), array(charger, 0x6002, {0x8000, 0x8400}, 4)});
    QTest::newRow("voltage of a sleeping device of an unknown class")
        << all({number(motor, 0x6000, 1, 0x86, 4), number(motor, 0x6002, 1, 0xC000),
                number(motor, 0x6040, 1, 27000)});
    QTest::newRow("a device that says no version") << number(motor, 0x600E, 1, 0);
    QTest::newRow("voltage of a battery at the minimum")
        << all({number(battery, 0x6040, 1, 28000), number(charger, 0x6040, 1, 28000)});
    QTest::newRow("history emptied") << all(
        {number(motor, 0x1003, 0, 0, 1), number(motor, 0x1003, 1, 0x4210, 4)});
    QTest::newRow("a charger at work") << number(charger, 0x6002, 1, 0x8300);
    QTest::newRow("security is not supported") << number(security, 0x6311, 1, 0);
    QTest::newRow("state of health that the pack does not know") << number(battery, 0x6176, 1, 0);
    QTest::newRow("no profile of ours") << number(motor, 0x1000, 0, 0x00000191);
}

void tst_ShippedRules::notShown()
{
    QFETCH(Alteration, alteration);

    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    alteration(&snapshot);
    QCOMPARE(found(judge(snapshot)), QStringList());
}

void tst_ShippedRules::alarmWords_data()
{
    QTest::addColumn<QString>("words");

    const char *const words[] = {"over voltage",
                                 "under voltage",
                                 "output over current",
                                 "input over current",
                                 "electronics too hot",
                                 "battery cells too hot",
                                 "communication error",
                                 "the battery does not fit",
                                 "power stage defective",
                                 "fuse blown",
                                 "cell damaged",
                                 "too hot while charging",
                                 "too hot while discharging",
                                 "sensor damaged",
                                 "wire broken",
                                 "insulation damaged"};
    for (int bit = 0; bit < 16; ++bit)
        QTest::addRow("%d", bit) << QString::fromLatin1(words[bit]);
}

/*! Of a device with two virtual devices, whose alarms say which one. */
void tst_ShippedRules::alarmWords()
{
    QFETCH(QString, words);

    const int bit = QString::fromLatin1(QTest::currentDataTag()).toInt();
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    array(motor, 0x6009, {0, 1 << bit}, 4)(&snapshot);
    array(charger, 0x600B, {1 << bit}, 4)(&snapshot);
    QCOMPARE(
        found(judge(snapshot)),
        (QStringList{
            QStringLiteral("4|alarm|fault|Alarm of virtual device %2: %1.").arg(words, QStringLiteral("2")),
            QStringLiteral("3|warning|warning|Warning: %1.").arg(words)}));
}

void tst_ShippedRules::errorRegisterBits_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("current") << 0x03 << QStringLiteral("fault|It reports an error: current.");
    QTest::newRow("voltage") << 0x05 << QStringLiteral("fault|It reports an error: voltage.");
    QTest::newRow("temperature") << 0x09 << QStringLiteral("fault|It reports an error: temperature.");
    QTest::newRow("communication") << 0x11 << QStringLiteral("warning|It reports an error: communication.");
    QTest::newRow("profile") << 0x21 << QStringLiteral("fault|It reports an error: device profile.");
    QTest::newRow("reserved") << 0x41 << QStringLiteral("note|It reports an error: reserved bit 6.");
    QTest::newRow("manufacturer") << 0x81
                                  << QStringLiteral(
                                         "fault|It reports an error: specific to the manufacturer.");
    QTest::newRow("without the generic bit") << 0x02 << QStringLiteral("fault|It reports an error: current.");
}

void tst_ShippedRules::errorRegisterBits()
{
    QFETCH(int, value);
    QFETCH(QString, expected);

    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    number(motor, 0x1001, 0, value)(&snapshot);
    QCOMPARE(found(judge(snapshot)), QStringList{QStringLiteral("4|error-register|") + expected});
}

void tst_ShippedRules::kindsOfObjects_data()
{
    using Kind = ObjectKind::Kind;
    QTest::addColumn<quint16>("index");
    QTest::addColumn<int>("kind");
    QTest::addColumn<double>("noise");
    QTest::addColumn<double>("noisePercent");
    const auto row
        = [](const char *name, quint16 index, Kind kind, double noise = 0, double noisePercent = 0) {
              QTest::newRow(name) << index << int(kind) << noise << noisePercent;
          };
    row("communication", 0x1005, Kind::Parameter);
    row("error register", 0x1001, Kind::Running);
    row("software version", 0x100A, Kind::Firmware);
    row("manufacturer's own, first", 0x2000, Kind::Value);
    row("manufacturer's own, last", 0x5FFF, Kind::Value);
    row("profile", 0x6000, Kind::Parameter);
    row("ambient temperature", 0x6010, Kind::Value, 250);
    row("voltage", 0x6039, Kind::Value, 0, 30);
    row("actual voltage", 0x6040, Kind::Value, 0, 30);
    row("highest voltage", 0x6041, Kind::Value, 0, 30);
    row("temperature of the electronics", 0x6042, Kind::Value, 400);
    row("time on", 0x6043, Kind::Counter, 120);
    row("time in standby", 0x6044, Kind::Counter, 120);
    row("times switched on", 0x6045, Kind::Counter, 10);
    row("insulation resistance", 0x6051, Kind::Value, 0, 20);
    row("temperature of the battery", 0x6105, Kind::Value, 250);
    row("cycles", 0x6107, Kind::Counter);
    row("capacity, first", 0x6162, Kind::Value, 0, 2);
    row("capacity, last", 0x6163, Kind::Value, 0, 2);
    row("cells", 0x6174, Kind::Running);
    row("state of health", 0x6176, Kind::Value, 50);
    row("deep discharges", 0x617F, Kind::Counter);
}

void tst_ShippedRules::kindsOfObjects()
{
    QFETCH(quint16, index);
    QFETCH(int, kind);
    QFETCH(double, noise);
    QFETCH(double, noisePercent);
    const ObjectKind found = shippedRules().kinds().find({index, 1});
    QCOMPARE(int(found.kind), kind);
    QCOMPARE(found.noise, noise);
    QCOMPARE(found.noisePercent, noisePercent);
}

QTEST_GUILESS_MAIN(tst_ShippedRules)
#include "tst_shippedrules.moc"
