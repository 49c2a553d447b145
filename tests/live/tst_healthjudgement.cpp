// SPDX-License-Identifier: MIT
#include "frames.h"

#include <live/health/healthfacts.h>
#include <live/health/healthjson.h>
#include <live/health/healthjudgement.h>

#include <QJsonArray>
#include <QtTest>

using Subject = HealthLight::Subject;

namespace {

/*! A bus with one healthy node. */
HealthNumbers healthyBus()
{
    HealthNumbers numbers;
    numbers.duration = 10000;
    numbers.bitRate = 250000;
    numbers.meanLoad = 0.305;
    numbers.peakLoad = 0.44;
    numbers.frames = 1234;
    numbers.areErrorsTold = true;
    numbers.framesPerSecond = 123.4;
    NodeNumbers node;
    node.id = 9;
    node.state = CanOpen::NmtState::Operational;
    node.frames = 100;
    node.heartbeat.count = 50;
    node.heartbeat.period = 200;
    node.heartbeat.jitter = 3;
    node.heartbeat.longestGap = 210;
    numbers.nodes.append(node);
    return numbers;
}

RuleSet shippedRules()
{
    RuleSet rules;
    rules.addFolder(QStringLiteral(HEALTH_RULES));
    return rules;
}

HealthLight light(const HealthNumbers &numbers, Subject subject,
                  const QString &language = QStringLiteral("en"))
{
    return HealthJudgement::judge(numbers, shippedRules(), language).at(static_cast<int>(subject));
}

/*! "busLoad.mean" */
QJsonValue at(const QJsonObject &object, const char *path)
{
    QJsonValue value(object);
    for (const QString &key : QString::fromLatin1(path).split(QLatin1Char('.')))
        value = value.toObject().value(key);
    return value;
}

using Change = void (*)(HealthNumbers *);

} // namespace

Q_DECLARE_METATYPE(Change)

/*! Lights by the shipped rules: a row for each that is broken. */
class tst_HealthJudgement : public QObject
{
    Q_OBJECT

private slots:
    void rulesAreRead();
    void healthy();
    void findings_data();
    void findings();
    void worstFirst();
    void withoutBitRate();
    void errorsThatNobodyTells();
    void withoutRules();
    void language();
    void onlyAskedIsNoDevice();
    void facts();
    void ownRule();
    void json();
};

void tst_HealthJudgement::rulesAreRead()
{
    const RuleSet shipped = shippedRules();
    QCOMPARE(shipped.problems(), QStringList());
    QCOMPARE(shipped.rules().size(), 16);
    for (const Rule &rule : shipped.rules()) {
        for (const RuleCase &ruleCase : rule.cases) {
            const QStringList places = ruleCase.text.in(QStringLiteral("en")).places();
            for (const char *language : {"de", "fr", "nl", "zh_CN"}) {
                QVERIFY2(ruleCase.text.all().contains(QLatin1String(language)), qPrintable(rule.id));
                QCOMPARE(ruleCase.text.in(QLatin1String(language)).places(), places);
            }
        }
    }
}

void tst_HealthJudgement::healthy()
{
    const QVector<HealthLight> lights
        = HealthJudgement::judge(healthyBus(), shippedRules(), QStringLiteral("en"));
    QCOMPARE(lights.size(), 3);
    QCOMPARE(lights.at(0).state, ComponentState::Good);
    QCOMPARE(lights.at(0).text, QStringLiteral("The bus is used to 31 %, at most to 44 %."));
    QCOMPARE(lights.at(1).state, ComponentState::Good);
    QVERIFY(lights.at(1).text.startsWith(QLatin1Char('1')));
    QCOMPARE(lights.at(2).state, ComponentState::Good);
    QCOMPARE(lights.at(2).text, QStringLiteral("There are no errors on the bus."));
    QCOMPARE(HealthJudgement::worst(lights), ComponentState::Good);
}

void tst_HealthJudgement::findings_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("subject");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");

    const auto row
        = [](const char *name, Subject subject, ComponentState state, const char *text, Change change) {
              QTest::newRow(name) << change << int(subject) << int(state) << QString::fromUtf8(text);
          };
    row("crowded", Subject::Load, ComponentState::Warning,
        "The bus is crowded: used to 70 %, at most to 80 %.", [](HealthNumbers *n) {
            n->meanLoad = 0.70;
            n->peakLoad = 0.80;
        });
    row("crowded for a second", Subject::Load, ComponentState::Warning,
        "The bus is crowded: used to 31 %, at most to 90 %.", [](HealthNumbers *n) {
            n->meanLoad = 0.31;
            n->peakLoad = 0.9;
        });
    row("not yet crowded", Subject::Load, ComponentState::Good, "The bus is used to 69 %, at most to 89 %.",
        [](HealthNumbers *n) {
            n->meanLoad = 0.69;
            n->peakLoad = 0.89;
        });
    row("full", Subject::Load, ComponentState::Fault, "The bus is full: used to 95 %, at most to 99 %.",
        [](HealthNumbers *n) {
            n->meanLoad = 0.95;
            n->peakLoad = 0.99;
        });
    row("nobody", Subject::Nodes, ComponentState::Warning, "No device was heard.",
        [](HealthNumbers *n) { n->nodes.clear(); });
    row("lost", Subject::Nodes, ComponentState::Fault, "Node 9: Its heartbeat has stopped.",
        [](HealthNumbers *n) { n->nodes[0].heartbeat.isLost = true; });
    row("not heard again", Subject::Nodes, ComponentState::Note,
        "Node 9: It has not been heard since the bus was interrupted.", [](HealthNumbers *n) {
            n->nodes.append(n->nodes.first());
            n->nodes[0].isAway = true;
            n->nodes[1].id = 10;
        });
    row("nobody heard again", Subject::Nodes, ComponentState::Warning, "No device was heard. And 1 more.",
        [](HealthNumbers *n) { n->nodes[0].isAway = true; });
    row("restarts", Subject::Nodes, ComponentState::Warning, "Node 9: Restarts: 2.",
        [](HealthNumbers *n) { n->nodes[0].restarts = 2; });
    row("late", Subject::Nodes, ComponentState::Warning,
        "Node 9: Late heartbeats: 3, the longest gap 650 ms, usual are 200 ms.", [](HealthNumbers *n) {
            n->nodes[0].heartbeat.late = 3;
            n->nodes[0].heartbeat.longestGap = 650;
        });
    row("late once", Subject::Nodes, ComponentState::Warning,
        "Node 9: Late heartbeats: 1, the longest gap 650 ms, usual are 200 ms.", [](HealthNumbers *n) {
            n->nodes[0].heartbeat.late = 1;
            n->nodes[0].heartbeat.longestGap = 650;
        });
    row("uneven, as far as eleven heartbeats say", Subject::Nodes, ComponentState::Note,
        "Node 9: Its heartbeat is uneven: up to 51 ms off 200 ms.", [](HealthNumbers *n) {
            n->nodes[0].heartbeat.count = 11;
            n->nodes[0].heartbeat.jitter = 51;
        });
    row("too few to say", Subject::Nodes, ComponentState::Good,
        "1 devices are heard, and nothing is wrong with them.", [](HealthNumbers *n) {
            n->nodes[0].heartbeat.count = 10;
            n->nodes[0].heartbeat.jitter = 51;
        });
    row("uneven", Subject::Nodes, ComponentState::Note,
        "Node 9: Its heartbeat is uneven: up to 51 ms off 200 ms.",
        [](HealthNumbers *n) { n->nodes[0].heartbeat.jitter = 51; });
    row("even enough", Subject::Nodes, ComponentState::Good,
        "1 devices are heard, and nothing is wrong with them.",
        [](HealthNumbers *n) { n->nodes[0].heartbeat.jitter = 50; });
    row("stopped", Subject::Nodes, ComponentState::Warning, "Node 9: It is stopped (NMT state Stopped).",
        [](HealthNumbers *n) { n->nodes[0].state = CanOpen::NmtState::Stopped; });
    row("emergency", Subject::Nodes, ComponentState::Fault,
        "Node 9: It reports an error: device temperature (emergency 4210h).", [](HealthNumbers *n) {
            n->nodes[0].emergencies = 1;
            n->nodes[0].lastEmergency = 0x4210;
            n->nodes[0].hasOpenError = true;
        });
    row("emergency that is gone", Subject::Nodes, ComponentState::Warning,
        "Node 9: It reported an error, which is gone: device temperature (emergency 4210h).",
        [](HealthNumbers *n) {
            n->nodes[0].emergencies = 1;
            n->nodes[0].lastEmergency = 0x4210;
        });
    row("no answer", Subject::Nodes, ComponentState::Warning, "Node 9: Requests without an answer: 4.",
        [](HealthNumbers *n) { n->nodes[0].sdo.unanswered = 4; });
    row("slow", Subject::Nodes, ComponentState::Note,
        "Node 9: It answers slowly: usually in 101 ms, at most in 900 ms.", [](HealthNumbers *n) {
            n->nodes[0].sdo.median = 101;
            n->nodes[0].sdo.longest = 900;
        });
    row("refusals", Subject::Nodes, ComponentState::Note, "Node 9: It refused requests: 7.",
        [](HealthNumbers *n) { n->nodes[0].sdo.refusals = 7; });
    row("another tool", Subject::Nodes, ComponentState::Note, "Another tool asks devices: node 9.",
        [](HealthNumbers *n) { n->nodes[0].sdo.foreignRequests = 1; });
    row("bus-off", Subject::Errors, ComponentState::Fault,
        "The adapter has switched itself off the bus (bus-off).",
        [](HealthNumbers *n) { n->controller = InterfaceHealth::State::BusOff; });
    row("error-passive", Subject::Errors, ComponentState::Fault,
        "The adapter sees many errors (error-passive).",
        [](HealthNumbers *n) { n->controller = InterfaceHealth::State::Passive; });
    row("warning limit", Subject::Errors, ComponentState::Warning, "The adapter sees errors (warning limit).",
        [](HealthNumbers *n) { n->controller = InterfaceHealth::State::Warning; });
    row("good controller", Subject::Errors, ComponentState::Good, "There are no errors on the bus.",
        [](HealthNumbers *n) { n->controller = InterfaceHealth::State::Good; });
    row("overruns", Subject::Errors, ComponentState::Warning, "The computer lost frames: 5 reports.",
        [](HealthNumbers *n) { n->overruns = 5; });
    row("bus errors", Subject::Errors, ComponentState::Warning, "Errors on the bus: 17.",
        [](HealthNumbers *n) { n->busErrors = 17; });
}

void tst_HealthJudgement::findings()
{
    QFETCH(Change, change);
    QFETCH(int, subject);
    HealthNumbers numbers = healthyBus();
    change(&numbers);
    const HealthLight found = light(numbers, static_cast<Subject>(subject));
    QTEST(int(found.state), "state");
    QTEST(found.text, "text");
}

void tst_HealthJudgement::worstFirst()
{
    HealthNumbers numbers = healthyBus();
    numbers.nodes[0].restarts = 1;
    NodeNumbers lost = numbers.nodes.at(0);
    lost.id = 12;
    lost.restarts = 0;
    lost.heartbeat.isLost = true;
    numbers.nodes.append(lost);
    const HealthLight found = light(numbers, Subject::Nodes);
    QCOMPARE(found.findings.size(), 2);
    QCOMPARE(int(found.findings.first().nodeId), 12);
    QCOMPARE(found.text, QStringLiteral("Node 12: Its heartbeat has stopped. And 1 more."));
    QVERIFY(!found.findings.first().advice.isEmpty());
}

void tst_HealthJudgement::withoutBitRate()
{
    HealthNumbers numbers = healthyBus();
    numbers.bitRate = 0;
    numbers.meanLoad.reset();
    numbers.peakLoad.reset();
    const HealthLight load = light(numbers, Subject::Load);
    QCOMPARE(load.state, ComponentState::NotChecked);
    QCOMPARE(load.text,
             QStringLiteral("How much the bus is used is not known, because its bit rate is not."));
    QCOMPARE(light(numbers, Subject::Nodes).state, ComponentState::Good);
}

/*! Neither a state nor an error frame: an adapter that says nothing, or a trace without any. */
void tst_HealthJudgement::errorsThatNobodyTells()
{
    HealthNumbers numbers = healthyBus();
    numbers.areErrorsTold = false;
    const HealthLight unknown = light(numbers, Subject::Errors);
    QCOMPARE(unknown.state, ComponentState::NotChecked);
    QCOMPARE(unknown.text, QStringLiteral("Nobody here can tell of errors."));
    QVERIFY(HealthFacts(numbers).number(Fact::BusErrors, -1).operand.isUnknown());
    QVERIFY(HealthFacts(numbers).number(Fact::BusOverruns, -1).operand.isUnknown());

    HealthNumbers told = numbers;
    told.controller = InterfaceHealth::State::Good;
    QCOMPARE(light(told, Subject::Errors).state, ComponentState::Good);
    told = numbers;
    told.kinds[static_cast<std::size_t>(FrameKind::Error)].count = 1;
    QCOMPARE(light(told, Subject::Errors).state, ComponentState::Good);
    QCOMPARE(light(numbers, Subject::Nodes).state, ComponentState::Good);
}

void tst_HealthJudgement::withoutRules()
{
    const QVector<HealthLight> lights = HealthJudgement::judge(healthyBus(), RuleSet(), QStringLiteral("en"));
    for (const HealthLight &found : lights)
        QCOMPARE(found.state, ComponentState::NotChecked);
    QCOMPARE(lights.at(1).text, QStringLiteral("Not everything could be judged."));
}

void tst_HealthJudgement::language()
{
    HealthNumbers numbers = healthyBus();
    numbers.nodes[0].heartbeat.isLost = true;
    QCOMPARE(light(numbers, Subject::Nodes, QStringLiteral("de")).findings.first().text,
             QStringLiteral("Sein Heartbeat ist ausgeblieben."));
}

void tst_HealthJudgement::onlyAskedIsNoDevice()
{
    HealthNumbers numbers = healthyBus();
    NodeNumbers asked;
    asked.id = 44;
    asked.sdo.requests = 3;
    asked.sdo.unanswered = 3;
    numbers.nodes.append(asked);
    QCOMPARE(light(numbers, Subject::Nodes).state, ComponentState::Good);
}

void tst_HealthJudgement::facts()
{
    HealthNumbers numbers = healthyBus();
    numbers.bitRate = 0;
    numbers.meanLoad.reset();
    const HealthFacts facts(numbers);
    QVERIFY(facts.number(Fact::BusLoad, -1).operand.isUnknown());
    QVERIFY(facts.number(Fact::BusLoad, 0).operand.isUnknown());
    QVERIFY(facts.number(Fact::BusBitRate, -1).operand.isUnknown());
    QCOMPARE(facts.number(Fact::BusFrames, 0).operand.number, 1234.0);
    QCOMPARE(facts.number(Fact::VehicleSeconds, -1).operand.number, 10.0);
    QCOMPARE(facts.number(Fact::NodeId, 0).operand.number, 9.0);
    QCOMPARE(facts.number(Fact::NodeId, -1).operand.kind, Operand::Kind::Absent);
    QCOMPARE(facts.number(Fact::NodeConfiguredHeartbeat, 0).operand.kind, Operand::Kind::Absent);
    QCOMPARE(facts.number(Fact::NodeAnswer, 0).operand.kind, Operand::Kind::Absent);
    QCOMPARE(facts.number(Fact::NodeTwins, 0).operand.kind, Operand::Kind::Absent);
    QCOMPARE(facts.number(Fact::BusController, -1).operand.kind, Operand::Kind::Absent);
    QCOMPARE(facts.number(Fact::NodeMissedHeartbeats, 0).operand.number, 0.0);
    QVERIFY(facts.text(Fact::NodeName, 0).isEmpty());
}

void tst_HealthJudgement::ownRule()
{
    RuleSet rules;
    rules.add(R"({"format": "draxel-rules", "version": 1, "rules": [{"id": "errors-own", "severity": "fault",
        "scope": "vehicle", "when": "bus.frames > 1000", "text": {"en": "{bus.frames} are too many."}}]})",
              QStringLiteral("own.json"));
    QCOMPARE(rules.problems(), QStringList());
    const QVector<HealthLight> lights = HealthJudgement::judge(healthyBus(), rules, QStringLiteral("en"));
    QCOMPARE(lights.at(int(Subject::Errors)).state, ComponentState::Fault);
    QCOMPARE(lights.at(int(Subject::Errors)).text, QStringLiteral("1234 are too many."));
    QCOMPARE(HealthJudgement::worst(lights), ComponentState::Fault);
}

void tst_HealthJudgement::json()
{
    HealthNumbers numbers = healthyBus();
    numbers.nodes[0].sdo.median = 1.5;
    numbers.nodes[0].emergencies = 2;
    const QJsonObject json
        = HealthJson::of(numbers, HealthJudgement::judge(numbers, shippedRules(), QStringLiteral("en")));
    QCOMPARE(at(json, "busLoad.mean").toDouble(), 0.305);
    QCOMPARE(at(json, "busLoad.peak").toDouble(), 0.44);
    QCOMPARE(at(json, "frames").toInt(), 1234);
    QCOMPARE(at(json, "framesPerSecond").toDouble(), 123.4);
    const QJsonObject node = at(json, "nodes").toArray().first().toObject();
    QCOMPARE(at(node, "id").toInt(), 9);
    QCOMPARE(at(node, "nmtState").toString(), QStringLiteral("operational"));
    QCOMPARE(at(node, "heartbeat.period").toDouble(), 200.0);
    QCOMPARE(at(node, "heartbeat.longestGap").toDouble(), 210.0);
    QCOMPARE(at(node, "restarts").toInt(-1), 0);
    QCOMPARE(at(node, "emergencies").toInt(), 2);
    QCOMPARE(at(node, "sdo.median").toDouble(), 1.5);
    QVERIFY(at(node, "sdo.longest").isNull());
    const QJsonObject nodes = at(json, "lights").toArray().at(1).toObject();
    QCOMPARE(at(nodes, "subject").toString(), QStringLiteral("nodes"));
    QCOMPARE(at(nodes, "state").toString(), QStringLiteral("warning"));
    QCOMPARE(at(nodes, "findings").toArray().first().toObject().value(QStringLiteral("node")).toInt(), 9);
}

QTEST_GUILESS_MAIN(tst_HealthJudgement)
#include "tst_healthjudgement.moc"
