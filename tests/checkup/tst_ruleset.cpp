// SPDX-License-Identifier: MIT
#include "../support/vehiclesnapshot.h"

#include <checkup/checkup.h>
#include <checkup/objectwords.h>
#include <checkup/ruleset.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

/*! A file with one rule that has these members besides. */
QByteArray fileWith(const QByteArray &rule)
{
    return R"({"format": "draxel-rules", "version": 1, "rules": [)" + rule + "]}";
}

QByteArray goodRule(const QByteArray &id, const QByteArray &text = "found")
{
    return R"({"id": ")" + id + R"(", "severity": "note", "when": "node.id == 2", "text": {"en": ")" + text
           + R"("}})";
}

QStringList texts(const RuleSet &rules, const QString &language = QStringLiteral("en"))
{
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, language);
    QStringList list;
    for (const Finding &finding : result.vehicleFindings)
        list.append(finding.text);
    for (const CheckedComponent &component : result.components) {
        for (const Finding &finding : component.findings)
            list.append(QStringLiteral("%1: %2").arg(component.nodeId).arg(finding.text));
    }
    return list;
}

} // namespace

class tst_RuleSet : public QObject
{
    Q_OBJECT

private slots:
    void goodRuleIsApplied();
    void wrongRule_data();
    void wrongRule();
    void wrongFile_data();
    void wrongFile();
    void otherRulesGoOn();
    void laterRuleReplaces();
    void ruleIsSwitchedOff();
    void ruleOfTheSameFileIsSwitchedOff();
    void casesThatAreOffAskForNothing();
    void whatCannotBeCalculatedIsNotChecked();
    void vehicleThatCannotBeCalculatedIsNotChecked();
    void worstFindingOfTheVehicleIsFirst();
    void vehicleNeedsOfEveryNode();
    void noteIsNoFault();
    void languages();
    void places_data();
    void places();
    void words();
    void twoLoops();
    void loopOverObjects();
    void firstCaseOnly();
    void needs();
    void vehicleScope();
    void kindsOfObjects();
    void folders();
    void hugeFile();
    void tooManyRules();
    void endlessWorkIsEnded();
    void tooManyFindings();
    void noRulesAreNoGoodVehicle();
    void noNodesAreNoGoodVehicle();
    void unreadClassesAreNotChecked();
    void unreadObjectsAreNamed();
    void findingWinsOverGap();
    void onlyWhatIsMissingIsNamed();
    void countOfALoopIsMissing();
    void identityIsMissing();
    void instances();
    void namesAreSaidOnce();
    void behaviourIsNotInTheFile();
    void silenceInATraceIsNotJudged();
    void endExplainsGaps_data();
    void endExplainsGaps();
    void numbersOfLanguages_data();
    void numbersOfLanguages();
    void numbersOfADocument();
    void nameOfAnEarlierSnapshot();
    void nameOfNobodyElse();
    void nameOfADeviceWithoutClasses();
    void nameThatIsHalfRead();
    void nameOfAnotherMake();
    void wordsOfValues();
    void placesOfATemplate();
    void limitsOfAFile();
    void tooManyFiles();
    void hugeFileOfAFolder();
};

void tst_RuleSet::goodRuleIsApplied()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("mine")), QStringLiteral("mine.json"));
    QCOMPARE(rules.problems(), QStringList());
    QCOMPARE(texts(rules), QStringList{QStringLiteral("2: found")});
}

void tst_RuleSet::wrongRule_data()
{
    QTest::addColumn<QByteArray>("rule");
    QTest::addColumn<QString>("problem");

    const auto row = [](const char *name, const char *rule, const char *problem) {
        QTest::newRow(name) << QByteArray(rule) << QString::fromLatin1(problem);
    };
    row("no object", "3", "rules[0]: An object, {...}, is wanted.");
    row("no name", R"({"severity": "note"})", "rules[0].id: This is missing.");
    row("bad name", R"({"id": "A b"})", "rules[0].id: A name of small letters, digits and - is wanted.");
    row("no severity", R"({"id": "a", "when": "1", "text": {"en": "x"}})",
        "rules[0]: A severity is missing. (rule \"a\")");
    row("unknown severity", R"({"id": "a", "severity": "bad", "when": "1", "text": {"en": "x"}})",
        "rules[0].severity: One of these words is wanted: fault, warning, note, off. (rule \"a\")");
    row("unknown scope",
        R"({"id": "a", "scope": "bus", "severity": "note", "when": "1", "text": {"en": "x"}})",
        "rules[0].scope: One of these words is wanted: node, vehicle. (rule \"a\")");
    row("unknown take",
        R"({"id": "a", "take": "some", "severity": "note", "when": "1", "text": {"en": "x"}})",
        "rules[0].take: One of these words is wanted: first, all. (rule \"a\")");
    row("no condition", R"({"id": "a", "severity": "note", "text": {"en": "x"}})",
        "rules[0].when: The condition is missing. (rule \"a\")");
    row("bad condition", R"({"id": "a", "severity": "note", "when": "6040h.s > 1", "text": {"en": "x"}})",
        "rules[0].when: \"s\" is no sub-index; it is a number up to 255, or the name of a loop, at character "
        "7. "
        "(rule \"a\")");
    row("text as a number", R"({"id": "a", "severity": "note", "when": "node.name", "text": {"en": "x"}})",
        "rules[0].when: A text is no number. (rule \"a\")");
    row("no text", R"({"id": "a", "severity": "note", "when": "1"})",
        "rules[0].text: The sentence that says what was found is missing. (rule \"a\")");
    row("no English text", R"({"id": "a", "severity": "note", "when": "1", "text": {"de": "x"}})",
        "rules[0].text: The English text, \"en\", is missing. (rule \"a\")");
    row("text of another kind", R"({"id": "a", "severity": "note", "when": "1", "text": {"en": 3}})",
        "rules[0].text.en: A text is wanted. (rule \"a\")");
    row("open brace", R"({"id": "a", "severity": "note", "when": "1", "text": {"en": "a {1"}})",
        "rules[0].text.en: A brace is opened and not closed, at character 3. (rule \"a\")");
    row("brace at the end", R"({"id": "a", "severity": "note", "when": "1", "text": {"en": "a {"}})",
        "rules[0].text.en: A brace is opened and not closed, at character 3. (rule \"a\")");
    row("text in a formula",
        R"({"id": "a", "severity": "note", "when": "1", "text": {"en": "{node.name == 1}"}})",
        "rules[0].text.en: \"{node.name == 1}\": A text is no number. (rule \"a\")");
    row("loop of one too many",
        R"({"id": "a", "for": "s in 0 to 4096", "severity": "note", "when": "1", "text": {"en": "x"}})",
        "rules[0].for[0]: A loop runs from a lower to a higher number, 4096 at most. (rule \"a\")");
    row("bad place", R"({"id": "a", "severity": "note", "when": "1", "text": {"en": "{1 +}"}})",
        "rules[0].text.en: \"{1 +}\": Something is missing, at character 4. (rule \"a\")");
    row("bad class",
        R"({"id": "a", "components": [6, 256], "severity": "note", "when": "1", "text": {"en": "x"}})",
        "rules[0].components[1]: A whole number from 0 to 255 is wanted. (rule \"a\")");
    row("bad loop",
        R"({"id": "a", "for": "s of 6040h", "severity": "note", "when": "1", "text": {"en": "x"}})",
        "rules[0].for[0]: A loop is written \"s in 6040h\", \"b in 0 to 15\" or \"p in 6165h to 6174h\". "
        "(rule "
        "\"a\")");
    row("backward loop",
        R"({"id": "a", "for": "s in 5 to 4", "severity": "note", "when": "1", "text": {"en": "x"}})",
        "rules[0].for[0]: A loop runs from a lower to a higher number, 4096 at most. (rule \"a\")");
    row("long loop",
        R"({"id": "a", "for": "s in 0 to 99999", "severity": "note", "when": "1", "text": {"en": "x"}})",
        "rules[0].for[0]: A loop runs from a lower to a higher number, 4096 at most. (rule \"a\")");
    row("three loops",
        R"({"id": "a", "for": ["a in 0 to 1", "b in 0 to 1", "c in 0 to 1"], "severity": "note", "when": "1",
            "text": {"en": "x"}})",
        "rules[0].for: A rule has at most two loops. (rule \"a\")");
    row("bad need",
        R"({"id": "a", "needs": ["6040h >"], "severity": "note", "when": "1", "text": {"en": "x"}})",
        "rules[0].needs[0]: Something is missing, at character 8. (rule \"a\")");
    row("no case", R"({"id": "a", "severity": "note", "when": "1", "cases": [], "text": {"en": "x"}})",
        "rules[0].cases: 1 to 100 cases are wanted. (rule \"a\")");
    row("bad case", R"({"id": "a", "severity": "note", "cases": [{"when": "x"}], "text": {"en": "x"}})",
        "rules[0].cases[0].when: \"x\" is not known, at character 1. (rule \"a\")");
    row("object of all devices",
        R"({"id": "a", "scope": "vehicle", "severity": "note", "when": "1 > 2 or 6042h.1 > 3", "text": {"en": "x"}})",
        "rules[0].when: A rule of the vehicle has no objects. (rule \"a\")");
    row("sum of all devices",
        R"({"id": "a", "scope": "vehicle", "severity": "note", "when": "max(6042h) > 3", "text": {"en": "x"}})",
        "rules[0].when: A rule of the vehicle has no objects. (rule \"a\")");
    row("case with an object of all devices",
        R"({"id": "a", "scope": "vehicle", "severity": "note", "text": {"en": "x"},
            "cases": [{"when": "true"}, {"when": "6042h.1 > 3"}]})",
        "rules[0].cases[1].when: A rule of the vehicle has no objects. (rule \"a\")");
    row("loop over an object of all devices",
        R"({"id": "a", "scope": "vehicle", "for": ["b in 0 to 1", "s in 6042h"], "severity": "note", "when": "true",
            "text": {"en": "x"}})",
        "rules[0].for[1]: A rule of the vehicle has no objects. (rule \"a\")");
    row("off without a rule", R"({"id": "mistyped", "severity": "off"})",
        "rules[0].id: There is no rule of this name before it, to be switched off. (rule \"mistyped\")");
    row("off before the rule", R"({"id": "good", "severity": "off"})",
        "rules[0].id: There is no rule of this name before it, to be switched off. (rule \"good\")");
}

void tst_RuleSet::wrongRule()
{
    QFETCH(QByteArray, rule);
    QFETCH(QString, problem);

    RuleSet rules;
    rules.add(fileWith(rule + ',' + goodRule("good")), QStringLiteral("mine.json"));
    QCOMPARE(rules.problems(), QStringList{QStringLiteral("mine.json: ") + problem});
    QCOMPARE(texts(rules), QStringList{QStringLiteral("2: found")});
}

void tst_RuleSet::wrongFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");

    QTest::newRow("other format") << QByteArray(R"({"format": "x", "version": 1})")
                                  << QStringLiteral("mine.json: These are no rules.");
    QTest::newRow("newer") << QByteArray(R"({"format": "draxel-rules", "version": 2})")
                           << QStringLiteral("mine.json: These rules are for a newer program.");
    QTest::newRow("no object") << QByteArray("[]")
                               << QStringLiteral("mine.json: An object, {...}, is wanted.");
    QTest::newRow("words without a code")
        << QByteArray(R"({"format": "draxel-rules", "version": 1, "words": {"a": [{"text": {"en": "x"}}]}})")
        << QStringLiteral("mine.json: words.a[0].code: A number, or one like \"2310h\", is wanted.");
    QTest::newRow("kind")
        << QByteArray(
               R"({"format": "draxel-rules", "version": 1, "objects": [{"object": "6040h", "kind": "x"}]})")
        << QStringLiteral("mine.json: objects[0].kind: One of these words is wanted: parameter, firmware, "
                          "counter, value, running.");
    QTest::newRow("negative noise") << QByteArray(
        R"({"format": "draxel-rules", "version": 1, "objects": [{"object": "6040h", "kind": "value", "noise": -1}]})")
                                    << QStringLiteral("mine.json: objects[0]: Noise cannot be negative.");
    QTest::newRow("negative noise in percent") << QByteArray(
        R"({"format": "draxel-rules", "version": 1, "objects": [{"object": "6040h", "kind": "value", "noisePercent": -1}]})")
                                               << QStringLiteral(
                                                      "mine.json: objects[0]: Noise cannot be negative.");
    QTest::newRow("backward objects") << QByteArray(
        R"({"format": "draxel-rules", "version": 1, "objects": [{"from": "6041h", "to": "6040h", "kind": "value"}]})")
                                      << QStringLiteral(
                                             "mine.json: objects[0].to: This is lower than the first one.");
    QTest::newRow("object of a kind")
        << QByteArray(
               R"({"format": "draxel-rules", "version": 1, "objects": [{"object": "x", "kind": "value"}]})")
        << QStringLiteral("mine.json: objects[0].object: \"x\" is no object; one is written like 6040h or "
                          "6040h.1, at character 1.");
}

void tst_RuleSet::wrongFile()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);

    RuleSet rules;
    rules.add(text, QStringLiteral("mine.json"));
    QCOMPARE(rules.problems(), QStringList{problem});
}

void tst_RuleSet::otherRulesGoOn()
{
    RuleSet rules;
    rules.add("{", QStringLiteral("broken.json"));
    rules.add(fileWith(goodRule("good")), QStringLiteral("good.json"));
    QCOMPARE(rules.problems().size(), 1);
    QVERIFY2(rules.problems().first().startsWith(QStringLiteral("broken.json: line 1, column ")),
             qPrintable(rules.problems().first()));
    QCOMPARE(texts(rules), QStringList{QStringLiteral("2: found")});
}

void tst_RuleSet::laterRuleReplaces()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a", "first") + ',' + goodRule("b", "other")), QStringLiteral("1.json"));
    rules.add(fileWith(goodRule("a", "second")), QStringLiteral("2.json"));
    QCOMPARE(texts(rules), (QStringList{QStringLiteral("2: second"), QStringLiteral("2: other")}));
}

void tst_RuleSet::ruleIsSwitchedOff()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a")
                       + R"(, {"id": "b", "severity": "note", "when": "7777h > 1", "text": {"en": "x"}})"),
              QStringLiteral("1.json"));
    rules.add(fileWith(R"({"id": "b", "severity": "off"})"), QStringLiteral("2.json"));
    QCOMPARE(rules.problems(), QStringList());
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.verdict, Verdict::Note); // and not incomplete: nobody asks for 7777h any more
}

void tst_RuleSet::ruleOfTheSameFileIsSwitchedOff()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a") + R"(, {"id": "a", "severity": "off"})"), QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    QCOMPARE(texts(rules), QStringList());
}

void tst_RuleSet::whatCannotBeCalculatedIsNotChecked()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "share", "for": "b in 1 to 3", "severity": "note", "text": {"en": "x"},
                           "when": "node.id == 2 and 1000h / (b - b) > 1"})"),
              QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(
        result.component(2)->notChecked,
        QStringList{QStringLiteral(
            "The rule \"share\" cannot be calculated: it divides by zero, or a number becomes too large.")});
    QCOMPARE(result.component(3)->state, ComponentState::Good);
    QCOMPARE(result.verdict, Verdict::Incomplete);
}

void tst_RuleSet::vehicleThatCannotBeCalculatedIsNotChecked()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "share", "scope": "vehicle", "severity": "note", "text": {"en": "x"},
                           "when": "vehicle.nodes / 0 > 1"})"),
              QStringLiteral("1.json"));
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.verdict, Verdict::Incomplete);
    QCOMPARE(
        result.component(2)->notChecked,
        QStringList{QStringLiteral(
            "The rule \"share\" cannot be calculated: it divides by zero, or a number becomes too large.")});
}

void tst_RuleSet::casesThatAreOffAskForNothing()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a") + R"(,
        {"id": "b", "text": {"en": "x"}, "cases": [{"severity": "off", "when": "7777h > 1"}]},
        {"id": "c", "scope": "vehicle", "needs": ["7778h"], "text": {"en": "x"},
         "cases": [{"severity": "off", "when": "true"}]})"),
              QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.verdict, Verdict::Note);
    QCOMPARE(result.notCheckedCount(), 0);
}

void tst_RuleSet::worstFindingOfTheVehicleIsFirst()
{
    RuleSet rules;
    rules.add(
        fileWith(R"({"id": "a", "scope": "vehicle", "severity": "note", "when": "true", "text": {"en": "n"}},
                          {"id": "b", "scope": "vehicle", "severity": "fault", "when": "true", "text": {"en": "f"}},
                          {"id": "c", "scope": "vehicle", "severity": "warning", "when": "true", "text": {"en": "w"}})"),
        QStringLiteral("1.json"));
    QCOMPARE(texts(rules), (QStringList{QStringLiteral("f"), QStringLiteral("w"), QStringLiteral("n")}));
}

void tst_RuleSet::vehicleNeedsOfEveryNode()
{
    RuleSet rules;
    rules.add(
        fileWith(R"({"id": "a", "scope": "vehicle", "severity": "note", "needs": ["6000h.1"], "when": "true",
                           "text": {"en": "found"}})"),
        QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotEntry entry = *snapshot.find(5)->find(0x6000, 1);
    entry.gap = SnapshotGap::NoAnswer;
    entry.value = QVariant();
    snapshot.find(5)->insert(entry);
    const CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"));
    QCOMPARE(result.vehicleFindings.size(), 1);
    QCOMPARE(result.notCheckedCount(), 1);
    QCOMPARE(result.component(5)->notChecked,
             QStringList{QStringLiteral("The device did not answer. (6000h)")});
    QCOMPARE(result.verdict, Verdict::Incomplete);
}

void tst_RuleSet::noteIsNoFault()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a")), QStringLiteral("1.json"));
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.component(2)->state, ComponentState::Note);
    QCOMPARE(result.component(3)->state, ComponentState::Good);
    QCOMPARE(result.components.first().nodeId, quint8(2));
}

void tst_RuleSet::languages()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "when": "node.id == 2",
                           "text": {"en": "two", "de": "zwei", "zh_CN": "er"}})"),
              QStringLiteral("1.json"));
    QCOMPARE(texts(rules, QStringLiteral("de")), QStringList{QStringLiteral("2: zwei")});
    QCOMPARE(texts(rules, QStringLiteral("de_AT")), QStringList{QStringLiteral("2: zwei")});
    QCOMPARE(texts(rules, QStringLiteral("zh_CN")), QStringList{QStringLiteral("2: er")});
    QCOMPARE(texts(rules, QStringLiteral("nl")), QStringList{QStringLiteral("2: two")});
}

void tst_RuleSet::places_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("filled");

    const auto row = [](const char *text, const char *filled) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(filled);
    };
    row("{6040h.1}", "39.30 V");
    row("{6165h.1}", "3.93 V");
    row("{1018h.3}", "1.3");
    row("{1008h}", "DX-Pack 36/500");
    row("{6176h.1 / 100}", "97");
    row("{3700|mV}", "3.70 V");
    row("{0 - 55|C}", "-5.50 °C");
    row("{6040h.1|name}", "Device actual voltage");
    row("{9040h.1|name}", "9040h");
    row("{0x2310|hex4}", "2310h");
    row("{1|hex8}", "00000001h");
    row("{0 - 1|hex8}", "-1");
    row("{7777h}", "?");
    row("{7777h + 1|mV}", "?");
    row("{1 / 0}", "?");
    row("{5|no such format}", "5");
    row("{node.name}, {node.id}", "Battery Pack, 2");
    row("{{6040h.1}", "{6040h.1}");
    row("100 %1 {node.id} %2", "100 %1 2 %2");
}

void tst_RuleSet::places()
{
    QFETCH(QString, text);
    QFETCH(QString, filled);

    RuleSet rules;
    rules.add(fileWith(goodRule("a", text.toUtf8())), QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    QCOMPARE(texts(rules), QStringList{QStringLiteral("2: ") + filled});
}

void tst_RuleSet::words()
{
    RuleSet rules;
    rules.add(R"({"format": "draxel-rules", "version": 1,
                  "words": {"mine": [{"code": 2, "text": {"en": "two", "de": "zwei"}},
                                     {"from": "0h", "to": "Ah", "text": {"en": "few"}}]},
                  "rules": [{"id": "a", "severity": "note", "when": "node.id == 2",
                             "text": {"en": "{2|mine} {10|mine} {11|mine}"}}]})",
              QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    QCOMPARE(texts(rules), QStringList{QStringLiteral("2: two few 11")});
    QCOMPARE(texts(rules, QStringLiteral("de")), QStringList{QStringLiteral("2: zwei few 11")});
}

void tst_RuleSet::twoLoops()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "for": ["s in 6000h", "b in 1 to 2"],
                           "when": "node.id == 2", "text": {"en": "{s}.{b}"}})"),
              QStringLiteral("1.json"));
    QCOMPARE(texts(rules), (QStringList{QStringLiteral("2: 1.1"), QStringLiteral("2: 1.2")}));
}

void tst_RuleSet::loopOverObjects()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "for": ["p in 6164h to 6166h", "s in these"],
                           "when": "node.id == 2 and these.s > 3932", "text": {"en": "{p} {s} {these.s}"}})"),
              QStringLiteral("1.json"));
    QCOMPARE(texts(rules), (QStringList{QStringLiteral("2: 1 2 84.00 %"), QStringLiteral("2: 2 4 3.93 V"),
                                        QStringLiteral("2: 2 8 3.93 V")}));
}

void tst_RuleSet::firstCaseOnly()
{
    const QByteArray cases = R"("when": "node.id == 2", "text": {"en": "all"},
        "cases": [{"when": "1 == 2"}, {"when": "1 == 1", "severity": "fault", "text": {"en": "second"}},
                  {"when": "1 == 1", "severity": "off"}, {"when": "1 == 1", "severity": "note"}]})";
    RuleSet rules;
    rules.add(fileWith(R"({"id": "all", )" + cases + R"(, {"id": "first", "take": "first", )" + cases),
              QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    QCOMPARE(texts(rules), (QStringList{QStringLiteral("2: second"), QStringLiteral("2: second"),
                                        QStringLiteral("2: all")}));
}

void tst_RuleSet::needs()
{
    RuleSet rules;
    rules.add(
        fileWith(
            R"({"id": "a", "severity": "note", "needs": ["7777h"], "when": "1 == 1", "text": {"en": "x"}},
                          {"id": "b", "severity": "note", "needs": ["6165h"], "when": "1 == 1", "text": {"en": "x"}})"),
        QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    const CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"));
    QCOMPARE(result.count(Severity::Note), 1); // only the battery has 6165h
    QCOMPARE(result.notCheckedCount(), 7);     // 7777h was not asked for
}

void tst_RuleSet::vehicleScope()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "scope": "vehicle", "severity": "note", "when": "vehicle.nodes == 7",
                           "text": {"en": "seven"}},
                          {"id": "b", "scope": "vehicle", "severity": "note", "when": "6040h.1 > 0",
                           "text": {"en": "no object"}})"),
              QStringLiteral("1.json"));
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.vehicleFindings.size(), 1);
    QCOMPARE(result.vehicleFindings.first().nodeId, quint8(0));
    QCOMPARE(result.verdict, Verdict::Note);
}

void tst_RuleSet::kindsOfObjects()
{
    RuleSet rules;
    rules.add(R"({"format": "draxel-rules", "version": 1, "objects": [
                  {"from": "2000h", "to": "20FFh", "kind": "running"},
                  {"object": "2010h", "kind": "value", "noise": 5, "noisePercent": 2.5},
                  {"object": "2010h.3", "kind": "counter"}]})",
              QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    QCOMPARE(rules.kinds().find({0x2000, 1}).kind, ObjectKind::Kind::Running);
    QCOMPARE(rules.kinds().find({0x2010, 1}).kind, ObjectKind::Kind::Value);
    QCOMPARE(rules.kinds().find({0x2010, 1}).noise, 5.0);
    QCOMPARE(rules.kinds().find({0x2010, 1}).noisePercent, 2.5);
    QCOMPARE(rules.kinds().find({0x2010, 3}).kind, ObjectKind::Kind::Counter);
    QCOMPARE(rules.kinds().find({0x2100, 0}).kind, ObjectKind::Kind::Parameter);
}

void tst_RuleSet::folders()
{
    const QTemporaryDir folder;
    const auto write = [&folder](const QString &name, const QByteArray &text) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    write(QStringLiteral("b.json"), fileWith(goodRule("a", "of b")));
    write(QStringLiteral("a.json"), fileWith(goodRule("a", "of a")));
    write(QStringLiteral("readme.txt"), "no rules");
    const RuleSet rules = RuleSet::load({folder.path(), folder.filePath(QStringLiteral("none"))});
    QCOMPARE(rules.problems(),
             QStringList{QStringLiteral("There is no folder %1.")
                             .arg(QDir::toNativeSeparators(folder.filePath(QStringLiteral("none"))))});
    QCOMPARE(texts(rules), QStringList{QStringLiteral("2: of b")});
}

void tst_RuleSet::hugeFile()
{
    const QByteArray file = fileWith(goodRule("a"));
    RuleSet rules;
    rules.add(file + QByteArray(RuleSet::largestFile - file.size(), ' '), QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    rules.add(file + QByteArray(RuleSet::largestFile - file.size() + 1, ' '), QStringLiteral("2.json"));
    QCOMPARE(rules.problems(), QStringList{QStringLiteral("2.json: The file is larger than 1048576 bytes.")});
}

void tst_RuleSet::tooManyRules()
{
    QByteArray text;
    for (int i = 0; i <= RuleSet::mostRules + 1; ++i)
        text += QByteArray(i > 0 ? "," : "") + goodRule("r" + QByteArray::number(i));
    RuleSet rules;
    rules.add(fileWith(text), QStringLiteral("1.json"));
    QCOMPARE(rules.rules().size(), 2000);
    QCOMPARE(rules.problems(),
             QStringList{
                 QStringLiteral("1.json: There are more than 2000 rules; this file's others are left out.")});
}

/*! Rules that would take minutes. */
void tst_RuleSet::endlessWorkIsEnded()
{
    QByteArray text;
    for (int i = 0; i < 100; ++i)
        text += QByteArray(i > 0 ? "," : "") + R"({"id": "r)" + QByteArray::number(i)
                + R"(", "severity": "note", "for": ["a in 0 to 4095", "b in 0 to 4095"],
                    "when": "6040h.1 < 0", "text": {"en": "x"}})";
    RuleSet rules;
    rules.add(fileWith(text), QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.verdict, Verdict::Incomplete);
    QVERIFY(result.components.first().notChecked.contains(
        QStringLiteral("The rules take too long; not all of them were applied.")));
}

void tst_RuleSet::tooManyFindings()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "for": "a in 0 to 4095", "when": "node.id == 2",
                           "text": {"en": "x"}})"),
              QStringLiteral("1.json"));
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.count(Severity::Note), 500);
    QCOMPARE(result.components.first().notChecked,
             QStringList{QStringLiteral("There are more findings than are kept.")});
}

void tst_RuleSet::noRulesAreNoGoodVehicle()
{
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), RuleSet(), QStringLiteral("en"));
    QCOMPARE(result.verdict, Verdict::Incomplete);
    QCOMPARE(result.components.first().notChecked, QStringList{QStringLiteral("There are no rules.")});
}

void tst_RuleSet::noNodesAreNoGoodVehicle()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a")), QStringLiteral("1.json"));
    QCOMPARE(Checkup::judge(Snapshot(), rules, QStringLiteral("en")).verdict, Verdict::Incomplete);
}

/*! Whether rules for batteries concern a device whose classes are not known, nobody knows. */
void tst_RuleSet::unreadClassesAreNotChecked()
{
    RuleSet rules;
    rules.add(
        fileWith(
            R"({"id": "a", "components": [6], "severity": "note", "when": "1 == 2", "text": {"en": "x"}})"),
        QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    QCOMPARE(Checkup::judge(snapshot, rules, QStringLiteral("en")).verdict, Verdict::Ok);
    SnapshotEntry entry = *snapshot.find(5)->find(0x6000, 1);
    entry.gap = SnapshotGap::NoAnswer;
    entry.value = QVariant();
    snapshot.find(5)->insert(entry);
    const CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"));
    QCOMPARE(result.verdict, Verdict::Incomplete);
    QCOMPARE(result.components.first().nodeId, quint8(5));
    QCOMPARE(result.components.first().notChecked,
             QStringList{QStringLiteral("The device did not answer. (6000h)")});
}

void tst_RuleSet::unreadObjectsAreNamed()
{
    QByteArray text;
    for (int i = 0; i < 8; ++i)
        text += QByteArray(i > 0 ? "," : "") + R"({"id": "r)" + QByteArray::number(i)
                + R"(", "severity": "note", "when": "node.id == 2 and 777)" + QByteArray::number(i)
                + R"(h > 1", "text": {"en": "x"}})";
    RuleSet rules;
    rules.add(fileWith(text), QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    const auto reasons = [&snapshot, &rules] {
        return Checkup::judge(snapshot, rules, QStringLiteral("en")).components.first().notChecked;
    };
    QCOMPARE(reasons(),
             QStringList{QStringLiteral("The snapshot does not hold everything. (7770h, 7771h, 7772h, "
                                        "7773h, 7774h, 7775h and others, 8 objects in all)")});
    snapshot.scope = SnapshotScope::Quick;
    QVERIFY(reasons().first().startsWith(QStringLiteral("A quick snapshot does not ask for everything.")));
    snapshot.find(2)->end = SnapshotEnd::Silent;
    QCOMPARE(reasons(), QStringList{QStringLiteral("The device does not answer.")});
}

void tst_RuleSet::findingWinsOverGap()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "when": "node.id == 2", "text": {"en": "x"}},
                          {"id": "b", "severity": "warning", "when": "node.id == 3", "text": {"en": "x"}},
                          {"id": "c", "severity": "fault", "when": "7777h > 1", "text": {"en": "x"}})"),
              QStringLiteral("1.json"));
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.components.at(0).nodeId, quint8(3));
    QCOMPARE(result.components.at(0).state, ComponentState::Warning);
    QCOMPARE(result.components.at(0).notChecked.size(), 1);
    QCOMPARE(result.components.at(2).nodeId, quint8(2)); // a note is no light of its own beside a gap
    QCOMPARE(result.components.at(2).state, ComponentState::NotChecked);
    QCOMPARE(result.verdict, Verdict::Warning);
}

/*! An object that was asked for and did not matter is not named, neither in the same loop nor in the next one. */
void tst_RuleSet::onlyWhatIsMissingIsNamed()
{
    RuleSet rules;
    rules.add(fileWith(R"x({"id": "a", "severity": "note", "for": "a in 1 to 2", "text": {"en": "x"},
                            "when": "(a == 1 and (7777h > 1 or true) or a == 2 and 7778h > 1) and node.id == 2"})x"),
              QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.component(2)->notChecked,
             QStringList{QStringLiteral("The snapshot does not hold everything. (7778h)")});
}

void tst_RuleSet::countOfALoopIsMissing()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "for": ["p in 6165h to 6166h", "s in these"],
                           "when": "node.id == 2 and (7777h > 1 or these.s < 0) and false",
                           "text": {"en": "x"}})"),
              QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotEntry count;
    count.key = {0x6166, 0};
    count.gap = SnapshotGap::NoAnswer;
    snapshot.find(2)->insert(count);
    const CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"));
    QCOMPARE(result.component(2)->notChecked,
             QStringList{QStringLiteral("The device did not answer. (6166h)")});
    QCOMPARE(result.notCheckedCount(), 1);
}

void tst_RuleSet::identityIsMissing()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "when": "node.twins > 0", "text": {"en": "x"}})"),
              QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotEntry serial = *snapshot.find(5)->find(0x1018, 4);
    serial.gap = SnapshotGap::NoAnswer;
    serial.value = QVariant();
    snapshot.find(5)->insert(serial);
    const CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"));
    QCOMPARE(result.component(5)->notChecked,
             QStringList{QStringLiteral("The device did not answer. (1018h)")});
    QVERIFY(result.component(9) == nullptr);
}

void tst_RuleSet::instances()
{
    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "for": ["a in 1 to 2", "b in 10 to 10"],
                           "when": "node.id == 2", "text": {"en": "x"}})"),
              QStringLiteral("1.json"));
    const CheckupResult result
        = Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"));
    QCOMPARE(result.component(2)->findings.size(), 2);
    QCOMPARE(result.component(2)->findings.at(0).instance, QStringLiteral("1 10"));
    QCOMPARE(result.component(2)->findings.at(1).instance, QStringLiteral("2 10"));
}

void tst_RuleSet::namesAreSaidOnce()
{
    const QByteArray rule
        = R"({"id": "a", "severity": "note", "when": "node.id == 2 and (@) > 1 and true", "text": {"en": "x"}})";
    const auto reasons = [&rule](const char *formula) {
        RuleSet rules;
        rules.add(fileWith(QByteArray(rule).replace('@', formula)), QStringLiteral("1.json"));
        return Checkup::judge(VehicleSnapshot::of(QStringLiteral("pedelec")), rules, QStringLiteral("en"))
            .component(2)
            ->notChecked;
    };
    QCOMPARE(reasons("7777h.1 + 7777h.2 + 7778h"),
             QStringList{QStringLiteral("The snapshot does not hold everything. (7777h, 7778h)")});
    QCOMPARE(reasons("7771h + 7772h + 7773h + 7774h + 7775h + 7776h"),
             QStringList{QStringLiteral("The snapshot does not hold everything. (7771h, 7772h, 7773h, 7774h, "
                                        "7775h, 7776h)")});
    QCOMPARE(reasons("1008h"), QStringList{QStringLiteral("What the device answers is no number. (1008h)")});
}

void tst_RuleSet::behaviourIsNotInTheFile()
{
    RuleSet rules;
    rules.add(
        fileWith(
            R"({"id": "a", "severity": "note", "when": "node.id == 2 and node.restarts > 5", "text": {"en": "x"}},
                          {"id": "b", "severity": "note", "when": "node.id == 2 and 7777h > 1", "text": {"en": "x"}})"),
        QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    snapshot.scope = SnapshotScope::Imported;
    const CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"));
    QCOMPARE(result.component(2)->notChecked,
             (QStringList{QStringLiteral("The file does not hold everything. (7777h)"),
                          QStringLiteral("The file does not tell how the device behaves on the bus.")}));
}

void tst_RuleSet::silenceInATraceIsNotJudged()
{
    RuleSet rules;
    rules.add(
        fileWith(
            R"({"id": "a", "severity": "fault", "when": "node.id <= 3 and not node.heard", "text": {"en": "x"}},
                          {"id": "b", "severity": "fault", "when": "node.id == 3 and 7777h > 1", "text": {"en": "x"}})"),
        QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    snapshot.scope = SnapshotScope::Recorded;
    snapshot.find(2)->nmtState.reset();
    snapshot.find(3)->nmtState = CanOpen::NmtState::Operational;
    const CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"));
    QVERIFY(result.component(2)->findings.isEmpty());
    QCOMPARE(result.component(2)->notChecked,
             QStringList(QStringLiteral("The file does not tell how the device behaves on the bus.")));
    QCOMPARE(result.component(3)->notChecked,
             QStringList(QStringLiteral("Nobody has read everything in the trace. (7777h)")));
    snapshot.scope = SnapshotScope::Full;
    QCOMPARE(Checkup::judge(snapshot, rules, QStringLiteral("en")).component(2)->findings.size(), 1);
}

void tst_RuleSet::endExplainsGaps_data()
{
    QTest::addColumn<int>("gap");
    QTest::addColumn<QString>("reason");

    QTest::newRow("no answer") << int(SnapshotGap::NoAnswer) << QString();
    QTest::newRow("stopped") << int(SnapshotGap::Stopped) << QString();
    QTest::newRow("cancelled") << int(SnapshotGap::Cancelled) << QString();
    QTest::newRow("wrong size") << int(SnapshotGap::WrongSize)
                                << QStringLiteral(
                                       "The answer has 2 byte(s), which does not fit the object. (6040h)");
}

/*! That a device fell silent says why a value was not read; that a value was wrong it does not. */
void tst_RuleSet::endExplainsGaps()
{
    QFETCH(int, gap);
    QFETCH(QString, reason);

    RuleSet rules;
    rules.add(fileWith(R"({"id": "a", "severity": "note", "when": "6040h.1 < 0", "text": {"en": "x"}})"),
              QStringLiteral("1.json"));
    Snapshot snapshot = VehicleSnapshot::of(QStringLiteral("pedelec"));
    SnapshotEntry entry = *snapshot.find(2)->find(0x6040, 1);
    entry.gap = static_cast<SnapshotGap>(gap);
    entry.value = QVariant();
    entry.raw = QByteArray(2, '\0');
    snapshot.find(2)->insert(entry);
    snapshot.find(2)->end = SnapshotEnd::Silent;
    QStringList expected{QStringLiteral("The device does not answer.")};
    if (!reason.isEmpty())
        expected.append(reason);
    QCOMPARE(Checkup::judge(snapshot, rules, QStringLiteral("en")).component(2)->notChecked, expected);
}

void tst_RuleSet::numbersOfLanguages_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *language, const char *text) {
        QTest::newRow(language) << QString::fromLatin1(language) << QString::fromUtf8(text);
    };
    row("en", "2: 39.30 V, 3.93 V, -5.50 °C, 1234567.89 V, 1.3, 1234567");
    row("de", "2: 39,30 V, 3,93 V, -5,50 °C, 1234567,89 V, 1.3, 1234567");
    row("de_AT", "2: 39,30 V, 3,93 V, -5,50 °C, 1234567,89 V, 1.3, 1234567");
    row("fr", "2: 39,30 V, 3,93 V, -5,50 °C, 1234567,89 V, 1.3, 1234567");
    row("nl", "2: 39,30 V, 3,93 V, -5,50 °C, 1234567,89 V, 1.3, 1234567");
    row("zh_CN", "2: 39.30 V, 3.93 V, -5.50 °C, 1234567.89 V, 1.3, 1234567");
    row("", "2: 39.30 V, 3.93 V, -5.50 °C, 1234567.89 V, 1.3, 1234567");
}

/*! A version is no number. */
void tst_RuleSet::numbersOfLanguages()
{
    QFETCH(QString, language);
    QFETCH(QString, text);

    RuleSet rules;
    rules.add(
        fileWith(goodRule("a", "{6040h.1}, {6165h.1}, {0 - 55|C}, {1234567890|mV}, {1018h.3}, {1234567}")),
        QStringLiteral("1.json"));
    QCOMPARE(rules.problems(), QStringList());
    QCOMPARE(texts(rules, language), QStringList{text});
    QCOMPARE(ObjectWords::value({0x6040, 1}, 39300),
             QStringLiteral("39.30 V")); // it was for the check-up only
}

/*! Who writes a document has chosen how numbers look in all of it. */
void tst_RuleSet::numbersOfADocument()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a", "{6040h.1}")), QStringLiteral("1.json"));
    {
        const ObjectWords::NumberStyle swiss{QLocale(QStringLiteral("de_CH"))};
        QCOMPARE(texts(rules, QStringLiteral("de")), QStringList{QStringLiteral("2: 39.30 V")});
        const ObjectWords::NumberStyle german{QLocale(QStringLiteral("de_DE"))};
        QCOMPARE(texts(rules, QStringLiteral("en")), QStringList{QStringLiteral("2: 39,30 V")});
        {
            const ObjectWords::NumberStyle english{QLocale(QStringLiteral("en_GB"))};
            QCOMPARE(ObjectWords::value({0x2000, 0}, 1.5), QStringLiteral("1.5"));
        }
        QCOMPARE(ObjectWords::value({0x2000, 0}, 1.5), QStringLiteral("1,5"));
        QCOMPARE(ObjectWords::value({0x2000, 0}, 123456), QStringLiteral("123456"));
    }
    QCOMPARE(texts(rules, QStringLiteral("de")), QStringList{QStringLiteral("2: 39,30 V")});
    QCOMPARE(ObjectWords::value({0x2000, 0}, 1.5), QStringLiteral("1.5"));
}

/*! Of the display nothing is read but its heartbeat. */
void tst_RuleSet::nameOfAnEarlierSnapshot()
{
    RuleSet rules;
    rules.add(
        fileWith(R"({"id": "a", "severity": "note", "when": "node.id == 5", "text": {"en": "{node.name}"}})"),
        QStringLiteral("1.json"));
    const Snapshot earlier = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot snapshot = earlier;
    snapshot.find(5)->entries.clear();
    snapshot.find(5)->end = SnapshotEnd::Silent;

    CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"));
    QCOMPARE(result.component(5)->name, QStringLiteral("Device"));
    QVERIFY(!result.component(5)->isNameEarlier);

    result = Checkup::judge(snapshot, rules, QStringLiteral("en"), &earlier);
    QCOMPARE(result.component(5)->name, QStringLiteral("HMI control unit/display"));
    QVERIFY(result.component(5)->isNameEarlier);
    QCOMPARE(result.component(5)->findings.first().text, QStringLiteral("HMI control unit/display"));
    QVERIFY(!result.component(2)->isNameEarlier);
}

/*! Neither that of a device with another serial number, nor when the device says who it is, nor a worse one. */
void tst_RuleSet::nameOfNobodyElse()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a")), QStringLiteral("1.json"));
    Snapshot earlier = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot snapshot = earlier;
    const auto lose = [](SnapshotNode *node, quint16 index) {
        for (SnapshotEntry &entry : node->entries) {
            if (entry.key.index != index)
                continue;
            entry.gap = SnapshotGap::NoAnswer;
            entry.value = QVariant();
        }
    };
    const auto nameNow
        = [&] { return Checkup::judge(snapshot, rules, QStringLiteral("en"), &earlier).component(5)->name; };
    lose(snapshot.find(5), 0x6000);
    QCOMPARE(nameNow(), QStringLiteral("HMI control unit/display"));
    VehicleSnapshot::setNumber(&snapshot, 5, {0x1018, 4}, 4711);
    QCOMPARE(nameNow(), snapshot.find(5)->value(0x1008, 0).toString());

    snapshot = earlier;
    VehicleSnapshot::setNumber(&earlier, 5, {0x6000, 1}, 6);
    QCOMPARE(nameNow(), QStringLiteral("HMI control unit/display"));

    earlier = snapshot;
    lose(snapshot.find(5), 0x6000);
    lose(earlier.find(5), 0x6000);
    lose(earlier.find(5), 0x1008);
    QCOMPARE(nameNow(), snapshot.find(5)->value(0x1008, 0).toString());
    earlier.nodes.clear();
    QCOMPARE(nameNow(), snapshot.find(5)->value(0x1008, 0).toString());
}

/*! One that does not know what classes are has its device name. */
void tst_RuleSet::nameOfADeviceWithoutClasses()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a")), QStringLiteral("1.json"));
    Snapshot earlier = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot snapshot = earlier;
    const auto component
        = [&] { return *Checkup::judge(snapshot, rules, QStringLiteral("en"), &earlier).component(5); };
    const QString own = snapshot.find(5)->value(0x1008, 0).toString();
    snapshot.find(5)->insert(VehicleSnapshot::absent({0x6000, 0}));
    snapshot.find(5)->insert(VehicleSnapshot::absent({0x6000, 1}));
    QCOMPARE(component().name, own); // it says that it has no classes

    SnapshotEntry name = *snapshot.find(5)->find(0x1008, 0);
    name.gap = SnapshotGap::NoAnswer;
    name.value = QVariant();
    snapshot.find(5)->insert(name);
    QCOMPARE(component().name, QStringLiteral("HMI control unit/display"));

    earlier.find(5)->insert(VehicleSnapshot::absent({0x6000, 0}));
    earlier.find(5)->insert(VehicleSnapshot::absent({0x6000, 1}));
    QCOMPARE(component().name, own);
    QVERIFY(component().isNameEarlier);

    earlier.find(5)->insert(name);
    QCOMPARE(component().name, QStringLiteral("Device"));
    QVERIFY(!component().isNameEarlier);
}

/*! What a device says now is better than half of what it said before, and that is better than nothing. */
void tst_RuleSet::nameThatIsHalfRead()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a")), QStringLiteral("1.json"));
    const auto lose = [](SnapshotNode *node, CanOpen::ObjectKey key) {
        SnapshotEntry entry = *node->find(key);
        entry.gap = SnapshotGap::NoAnswer;
        entry.value = QVariant();
        node->insert(entry);
    };
    Snapshot earlier = VehicleSnapshot::of(QStringLiteral("pedelec"));
    Snapshot snapshot = earlier;
    SnapshotEntry name = *earlier.find(5)->find(0x1008, 0);
    name.value = QStringLiteral("Old name");
    earlier.find(5)->insert(name);
    lose(earlier.find(5), {0x6000, 1});
    lose(snapshot.find(5), {0x6000, 1});
    CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"), &earlier);
    QCOMPARE(result.component(5)->name, snapshot.find(5)->value(0x1008, 0).toString());

    lose(snapshot.find(5), {0x1008, 0});
    result = Checkup::judge(snapshot, rules, QStringLiteral("en"), &earlier);
    QCOMPARE(result.component(5)->name, QStringLiteral("Old name"));
    QVERIFY(result.component(5)->isNameEarlier);
}

void tst_RuleSet::nameOfAnotherMake()
{
    RuleSet rules;
    rules.add(fileWith(goodRule("a")), QStringLiteral("1.json"));
    const Snapshot earlier = VehicleSnapshot::of(QStringLiteral("pedelec"));
    for (const quint8 sub : {quint8(1), quint8(2), quint8(4)}) {
        Snapshot snapshot = earlier;
        snapshot.find(5)->entries.clear();
        VehicleSnapshot::setNumber(&snapshot, 5, {0x1018, sub}, 4711, 4);
        CheckupResult result = Checkup::judge(snapshot, rules, QStringLiteral("en"), &earlier);
        QCOMPARE(result.component(5)->name, QStringLiteral("Device"));
        snapshot.find(5)->insert(*earlier.find(5)->find(0x1018, sub));
        result = Checkup::judge(snapshot, rules, QStringLiteral("en"), &earlier);
        QCOMPARE(result.component(5)->name, QStringLiteral("HMI control unit/display"));
    }
}

void tst_RuleSet::wordsOfValues()
{
    QCOMPARE(ObjectWords::value({0x6165, 0}, 10u), QStringLiteral("10")); // how many cells there are
    QCOMPARE(ObjectWords::value({0x6165, 1}, 3700u), QStringLiteral("3.70 V"));
    QCOMPARE(ObjectWords::value({0x6174, 1}, 3700u), QStringLiteral("3.70 V"));
    QCOMPARE(ObjectWords::value({0x6307, 1}, -5), QStringLiteral("-5"));
    QCOMPARE(ObjectWords::value({0x1018, 3}, 0x00010003u), QStringLiteral("1.3"));
    QCOMPARE(ObjectWords::value({0x1018, 4}, 65539u), QStringLiteral("65539"));
}

void tst_RuleSet::placesOfATemplate()
{
    QString error;
    const auto text = TextTemplate::parse(QStringLiteral("a {node.id} b {5} c {{d"), {}, &error);
    QVERIFY2(text, qPrintable(error));
    QCOMPARE(text->places(), (QStringList{QStringLiteral("5"), QStringLiteral("node.id")}));
    QVERIFY(TextTemplate::parse(QString(2000, QLatin1Char('x')), {}, &error));
    QVERIFY(!TextTemplate::parse(QString(2001, QLatin1Char('x')), {}, &error));
    QCOMPARE(error, QStringLiteral("A text has at most 2000 characters"));
}

void tst_RuleSet::limitsOfAFile()
{
    const auto problems = [](const QByteArray &members, RuleSet *rules) {
        rules->add(R"({"format": "draxel-rules", "version": 1, )" + members + "}", QStringLiteral("1.json"));
        return rules->problems();
    };
    const auto repeated = [](const QByteArray &text, int count) {
        QByteArray list = text;
        for (int i = 1; i < count; ++i)
            list += ',' + text;
        return list;
    };
    const QByteArray word = R"({"code": 1, "text": {"en": "x"}})";
    RuleSet words;
    QCOMPARE(problems(R"("words": {"a": [)" + repeated(word, 5000) + "]}", &words), QStringList());
    QCOMPARE(problems(R"("words": {"a": [)" + repeated(word, 5001) + "]}", &words),
             QStringList{QStringLiteral("1.json: words.a[5000]: A table has at most 5000 words.")});
    const QByteArray rule
        = R"("rules": [{"id": "a", "severity": "note", "when": "1", "text": {"en": "x"}, "cases": [)";
    RuleSet cases;
    QCOMPARE(problems(rule + repeated(R"({"when": "1"})", 100) + "]}]", &cases), QStringList());
    QCOMPARE(problems(rule + repeated(R"({"when": "1"})", 101) + "]}]", &cases),
             QStringList{QStringLiteral("1.json: rules[0].cases: 1 to 100 cases are wanted. (rule \"a\")")});
    const QByteArray kind = R"({"object": "2000h", "kind": "value"})";
    RuleSet kinds;
    QCOMPARE(problems(R"("objects": [)" + repeated(kind, 5000) + R"(,{"object": "2001h", "kind": "value"}])",
                      &kinds),
             QStringList());
    QCOMPARE(kinds.kinds().find({0x2000, 0}).kind, ObjectKind::Kind::Value);
    QCOMPARE(kinds.kinds().find({0x2001, 0}).kind, ObjectKind::Kind::Parameter);
}

void tst_RuleSet::tooManyFiles()
{
    const QTemporaryDir folder;
    const auto write = [&folder](int number) {
        QFile file(folder.filePath(QStringLiteral("%1.json").arg(number)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(fileWith(goodRule("r" + QByteArray::number(number))));
    };
    for (int i = 1000; i < 1200; ++i)
        write(i);
    QCOMPARE(RuleSet::load({folder.path()}).problems(), QStringList());
    write(1200);
    const RuleSet rules = RuleSet::load({folder.path()});
    QCOMPARE(rules.rules().size(), 200);
    QCOMPARE(rules.problems(),
             QStringList{QStringLiteral("The folder %1 has more than 200 files; the others are left out.")
                             .arg(QDir::toNativeSeparators(folder.path()))});
}

void tst_RuleSet::hugeFileOfAFolder()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("1.json")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray rule = fileWith(goodRule("a"));
    file.write(rule + QByteArray(RuleSet::largestFile - rule.size() + 1, ' '));
    file.close();
    const RuleSet rules = RuleSet::load({folder.path()});
    QCOMPARE(rules.rules().size(), 0);
    QVERIFY(rules.problems().value(0).endsWith(QStringLiteral("The file is larger than 1048576 bytes.")));
}

QTEST_GUILESS_MAIN(tst_RuleSet)
#include "tst_ruleset.moc"
