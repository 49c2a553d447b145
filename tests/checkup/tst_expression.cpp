// SPDX-License-Identifier: MIT
#include <checkup/evaluation.h>
#include <checkup/expressionparser.h>
#include <checkup/vehiclefacts.h>
#include <snapshot/snapshot.h>

#include <QtTest>

#include <limits>

namespace {

SnapshotEntry value(quint16 index, quint8 sub, const QVariant &number)
{
    SnapshotEntry entry;
    entry.key = {index, sub};
    entry.value = number;
    return entry;
}

SnapshotEntry gap(quint16 index, quint8 sub, SnapshotGap reason)
{
    SnapshotEntry entry;
    entry.key = {index, sub};
    entry.gap = reason;
    return entry;
}

/*! 2000h is 10, 2001h is absent, 2002h did not answer, 2003h is a text, 2010h has the numbers 30, -5, 40 and an absent
 *  one, 2011h has one that did not answer, 2012h is an array without entries, 2013h is not in the snapshot, of
 *  2015h the second entry is not.
 */
Snapshot exampleSnapshot()
{
    SnapshotNode node;
    node.id = 9;
    node.nmtState = CanOpen::NmtState::Operational;
    node.bootUps = 3;
    node.medianAnswer = 4;
    node.insert(value(0x2000, 0, 10u));
    node.insert(gap(0x2001, 0, SnapshotGap::Absent));
    node.insert(gap(0x2002, 0, SnapshotGap::NoAnswer));
    node.insert(value(0x2003, 0, QStringLiteral("10")));
    node.insert(value(0x2010, 0, 4u));
    node.insert(value(0x2010, 1, 30));
    node.insert(value(0x2010, 2, -5));
    node.insert(value(0x2010, 3, 40));
    node.insert(gap(0x2010, 4, SnapshotGap::Absent));
    node.insert(value(0x2011, 0, 2u));
    node.insert(value(0x2011, 1, 7u));
    node.insert(gap(0x2011, 2, SnapshotGap::Abort));
    node.insert(value(0x2012, 0, 0u));
    node.insert(value(0x2014, 0, qulonglong(0xFFFFFF9C)));
    node.insert(value(0x2015, 0, 2u));
    node.insert(value(0x2015, 1, 7u));
    node.insert(value(0x2016, 0, true));
    node.insert(value(0x2017, 0, 1.5f));
    node.insert(value(0x2018, 0, std::numeric_limits<double>::infinity()));
    Snapshot snapshot;
    snapshot.duration = 2500;
    snapshot.nodes.append(node);
    return snapshot;
}

/*! The number, "absent", "unknown", or what is wrong with the formula. */
QString evaluated(const QString &text)
{
    static const Snapshot snapshot = exampleSnapshot();
    static const VehicleFacts vehicle(snapshot);
    const QVector<ExpressionParser::Loop> loops{{QStringLiteral("s"), false}, {QStringLiteral("p"), true}};
    QString error;
    const std::optional<Expression> expression = ExpressionParser(loops).parse(text, &error);
    if (!expression)
        return error;
    Evaluation evaluation(vehicle, 0);
    evaluation.setLoop(0, 3);
    evaluation.setLoop(1, 1, 0x2010);
    const Operand result = expression->evaluate(evaluation);
    if (!result.isNumber())
        return result.isUnknown() ? QStringLiteral("unknown") : QStringLiteral("absent");
    return QString::number(result.number);
}

} // namespace

class tst_Expression : public QObject
{
    Q_OBJECT

private slots:
    void evaluate_data();
    void evaluate();
    void wrong_data();
    void wrong();
    void bounds();
    void notesWhatIsMissing();
    void loopNumberThatIsNoSubIndex();
    void fewerBootUpsThanUsual();
    void deviceWithoutIdentityHasNoTwins();
};

void tst_Expression::evaluate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");

    const auto row = [](const char *text, const char *result) {
        QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(result);
    };
    // Numbers
    row("1 + 2 * 3", "7");
    row("(1 + 2) * 3", "9");
    row("7 - 2 - 1", "4");
    row("12 / 4 / 3", "1");
    row("1.5 * 2", "3");
    row("0x1F", "31");
    row("--2", "2");
    row("-2 + 5", "3");
    row("1 / 0", "unknown");
    row("1e200 * 1e200", "unknown");
    row("1e308 + 1e308", "unknown");
    row("-1e308 - 1e308", "unknown");
    row("true + false", "1");
    // Comparisons
    row("2 < 3", "1");
    row("3 < 3", "0");
    row("3 <= 3", "1");
    row("3 > 3", "0");
    row("4 > 3", "1");
    row("3 >= 3", "1");
    row("2 >= 3", "0");
    row("3 == 3", "1");
    row("3 = 3", "1");
    row("3 != 3", "0");
    row("3 != 4", "1");
    row("not 3 == 4", "1");
    row("not not 3 == 4", "0");
    row("1 == 1 or 1 == 2 and 1 == 2", "1");
    // Objects
    row("2000h", "10");
    row("2000h.0 + 1", "11");
    row("2010h.3", "40");
    row("2010h.s", "40");
    row("these.2", "-5");
    row("s * p", "3");
    row("2001h", "absent");
    row("2002h", "unknown");
    row("2003h", "unknown"); // a text where a number is wanted
    row("2013h", "unknown");
    row("2010h.4", "absent");
    row("2010h.9", "absent"); // there are only four
    row("2001h.1", "absent");
    row("2012h.1", "absent");
    row("2013h.1", "unknown");
    row("2013h.255", "unknown");
    row("2015h.2", "unknown");
    row("2015h.3", "absent");
    row("2016h", "1");
    row("2017h", "1.5");
    row("2018h", "unknown");
    // Three values
    row("2001h > 1", "absent");
    row("2002h > 1", "unknown");
    row("2001h > 2002h", "absent");
    row("not 2001h > 1", "absent");
    row("not 2002h > 1", "unknown");
    row("false and 2002h > 1", "0");
    row("2002h > 1 and false", "0");
    row("2001h > 1 and false", "0");
    row("true and 2002h > 1", "unknown");
    row("true and 2001h > 1", "absent");
    row("2001h > 1 and 2002h > 1", "absent");
    row("2002h > 1 and 2001h > 1", "absent");
    row("true or 2002h > 1", "1");
    row("2002h > 1 or true", "1");
    row("2001h > 1 or true", "1");
    row("false or 2002h > 1", "unknown");
    row("false or 2001h > 1", "absent");
    row("2001h > 1 or 2002h > 1", "unknown");
    row("not (2001h > 1 or 2001h > 2)", "absent");
    row("has(2000h)", "1");
    row("has(2001h)", "0");
    row("has(2002h)", "unknown");
    row("default(2000h, 5)", "10");
    row("default(2001h, 5)", "5");
    row("default(2002h, 5)", "unknown");
    // Functions
    row("abs(-3)", "3");
    row("min(3, 2)", "2");
    row("max(3, 2)", "3");
    row("min(3, 2, 1)", "1");
    row("max(3, 2, 7, 1)", "7");
    row("bit(5, 2)", "1");
    row("bit(5, 1)", "0");
    row("bits(0x8180, 6, 11)", "6");
    row("bits(454 * 4194304, 22, 31)", "454");
    row("bits(0 - 1, 0, 3)", "absent");
    row("bits(1, 5, 2)", "absent");
    row("bits(1, 0, 200)", "absent");
    row("bits(1, 0, 63)", "absent");
    row("bits(1, 0, 62)", "1");
    row("bits(5, -1, 2)", "absent");
    row("bits(9223372036854775808, 0, 3)", "absent");
    row("bits(0, 0, 3)", "0");
    row("signed(65436)", "-100");
    row("signed(32767)", "32767");
    row("signed(2014h)", "-100");
    row("signed(4294967196)", "-100");
    row("signed(100000)", "100000");
    row("signed(32768)", "-32768");
    row("signed(65536)", "65536");
    row("signed(2147483648)", "-2.14748e+09");
    row("signed(4294967296)", "4.29497e+09");
    row("min(2010h)", "-5");
    row("max(2010h)", "40");
    row("max(these)", "40");
    row("sum(2010h)", "65");
    row("count(2010h)", "3");
    row("spread(2010h)", "45");
    row("median(2010h)", "30");
    row("lowestAt(2010h)", "2");
    row("highestAt(2010h)", "3");
    row("max(2011h)", "unknown");
    row("count(2011h)", "unknown");
    row("max(2012h)", "absent");
    row("count(2012h)", "0");
    row("max(2001h)", "absent");
    row("max(2013h)", "unknown");
    // Facts
    row("node.id", "9");
    row("node.state == operational", "1");
    row("node.state == stopped", "0");
    row("node.heard", "1");
    row("node.silent", "0");
    row("node.restarts", "2");
    row("node.answer", "4");
    row("node.longestAnswer", "absent");
    row("node.twins", "unknown");
    row("vehicle.nodes", "1");
    row("vehicle.seconds", "2.5");
}

void tst_Expression::evaluate()
{
    QFETCH(QString, text);
    QFETCH(QString, result);

    QCOMPARE(evaluated(text), result);
}

void tst_Expression::wrong_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");

    const auto row = [](const char *text, const char *problem) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(problem);
    };
    row("", "Something is missing, at character 1");
    row("1 +", "Something is missing, at character 4");
    row("1 2", "\"2\" was not expected, at character 3");
    row("(1", "A closing parenthesis is missing, at character 3");
    row("1)", "\")\" was not expected, at character 2");
    row("abs(1", "A closing parenthesis is missing, at character 6");
    row("bit(1)", "These are too few or too many arguments, at character 7");
    row("abs(1, 2)", "These are too few or too many arguments, at character 10");
    row("min(1)", "These are too few or too many arguments, at character 7");
    row("spread(1)", "An object alone is wanted, of which all sub-indices are taken, at character 8");
    row("sqrt(4)", "There is no function \"sqrt\", at character 1");
    row("node.colour", "\"node.colour\" is not known, at character 1");
    row("x", "\"x\" is not known, at character 1");
    row("node", "\"node\" is not known, at character 1");
    row("6040h.x", "\"x\" is no sub-index; it is a number up to 255, or the name of a loop, at character 7");
    row("6040h.256",
        "\"256\" is no sub-index; it is a number up to 255, or the name of a loop, at character 7");
    row("0000h", "\"0000h\" is no object; one is written like 6040h or 6040h.1, at character 1");
    row("12x", "\"12x\" is no number, at character 1");
    row("0xZZ", "\"0xZZ\" is no number, at character 1");
    row("1 ! 2", "\"!\" was not expected, at character 3");
    row("größer", "\"gr\" is not known, at character 1");
}

void tst_Expression::wrong()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);

    QCOMPARE(evaluated(text), problem);
}

void tst_Expression::bounds()
{
    const auto nested = [](int depth) {
        return QString(depth, QLatin1Char('(')) + QLatin1Char('1') + QString(depth, QLatin1Char(')'));
    };
    QCOMPARE(evaluated(nested(39)), QStringLiteral("1"));
    QVERIFY(evaluated(nested(40)).startsWith(QStringLiteral("There are too many parentheses")));
    QCOMPARE(evaluated(QStringLiteral("1+").repeated(499) + QStringLiteral("1")), QStringLiteral("500"));
    QCOMPARE(evaluated(QStringLiteral("1+").repeated(500) + QStringLiteral("1")),
             QStringLiteral("A formula has at most 1000 characters"));
    QCOMPARE(evaluated(QStringLiteral("(1)+").repeated(99) + QStringLiteral("1")), QStringLiteral("100"));
    QCOMPARE(evaluated(QStringLiteral("-").repeated(999) + QStringLiteral("1")), QStringLiteral("-1"));
}

void tst_Expression::notesWhatIsMissing()
{
    const Snapshot snapshot = exampleSnapshot();
    const VehicleFacts vehicle(snapshot);
    Evaluation evaluation(vehicle, 0);
    QString error;
    ExpressionParser({})
        .parse(QStringLiteral("2000h > 1 and 2000h > 2 and 2002h > 1 and 2001h > 1 and max(2011h) > 1"),
               &error)
        ->evaluate(evaluation);
    QStringList missing;
    for (const CanOpen::ObjectKey key : evaluation.missingObjects())
        missing.append(key.toShortString());
    QCOMPARE(missing, (QStringList{QStringLiteral("2002h.0"), QStringLiteral("2011h.2")}));
    QStringList askedFor;
    for (const CanOpen::ObjectKey key : evaluation.askedFor())
        askedFor.append(key.toShortString());
    QCOMPARE(askedFor,
             (QStringList{QStringLiteral("2000h.0"), QStringLiteral("2002h.0"), QStringLiteral("2011h.0"),
                          QStringLiteral("2011h.1"), QStringLiteral("2011h.2")}));
}

void tst_Expression::loopNumberThatIsNoSubIndex()
{
    const Snapshot snapshot = exampleSnapshot();
    const VehicleFacts vehicle(snapshot);
    Evaluation evaluation(vehicle, 0);
    QString error;
    const auto isAbsent = [&](const char *text, int number) {
        evaluation.setLoop(0, number);
        const QVector<ExpressionParser::Loop> loops{{QStringLiteral("s"), false}};
        return ExpressionParser(loops).parse(QLatin1String(text), &error)->evaluate(evaluation).kind
               == Operand::Kind::Absent;
    };
    QVERIFY(isAbsent("2000h.s", 256)); // and not 2000h.0
    QVERIFY(!isAbsent("2013h.s", 255));
    QVERIFY(isAbsent("2013h.s", -1)); // and not 2013h.255
    QVERIFY(!isAbsent("2000h.s", 0));
}

void tst_Expression::fewerBootUpsThanUsual()
{
    Snapshot snapshot = exampleSnapshot();
    snapshot.nodes.append(snapshot.nodes.first());
    snapshot.nodes.last().id = 10;
    snapshot.nodes.last().bootUps = 0;
    snapshot.nodes.append(snapshot.nodes.first());
    snapshot.nodes.last().id = 11;
    const VehicleFacts vehicle(snapshot);
    QCOMPARE(vehicle.number(Fact::NodeRestarts, 1).operand.number, 0.0);
    QCOMPARE(vehicle.number(Fact::NodeRestarts, 2).operand.number, 2.0);
}

void tst_Expression::deviceWithoutIdentityHasNoTwins()
{
    Snapshot snapshot = exampleSnapshot();
    for (const quint8 sub : {quint8(1), quint8(2), quint8(4)})
        snapshot.nodes.first().insert(value(0x1018, sub, sub == 4 ? 0u : 7u));
    const VehicleFacts vehicle(snapshot);
    QCOMPARE(vehicle.number(Fact::NodeTwins, 0).operand.kind, Operand::Kind::Absent);
}

QTEST_GUILESS_MAIN(tst_Expression)
#include "tst_expression.moc"
