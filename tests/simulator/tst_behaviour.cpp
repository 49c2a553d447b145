// SPDX-License-Identifier: MIT
#include <simulator/behaviour.h>
#include <simulator/objectname.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <limits>

Q_DECLARE_METATYPE(CanOpen::DataType)

using namespace CanOpen;
using namespace Simulator;

class tst_Behaviour : public QObject
{
    Q_OBJECT

private slots:
    void objectNames_data();
    void objectNames();
    void rampGoesAndHolds();
    void rampRepeats();
    void sineSwings();
    void randomStaysBetweenAndChanges();
    void counterCountsAndStartsAgain();
    void neverLeavesTheType_data();
    void neverLeavesTheType();
    void staysInsideTheLimits();
    void textsDoNotMove();
    void parsed();
    void course_data();
    void course();
    void parseErrors_data();
    void parseErrors();
};

namespace {

constexpr qint64 second = 1000000; // microseconds

std::optional<Behaviour> parse(const char *json, QString *error)
{
    return parseBehaviour(QJsonDocument::fromJson(json).object(), error);
}

Behaviour behaviourOf(const char *json)
{
    QString error;
    const std::optional<Behaviour> behaviour = parse(json, &error);
    if (!behaviour)
        qFatal("%s", qPrintable(error));
    return *behaviour;
}

ObjectEntry entryOf(DataType type)
{
    ObjectEntry entry;
    entry.type = type;
    return entry;
}

} // namespace

void tst_Behaviour::objectNames_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("index"); // -1: none
    QTest::addColumn<int>("subIndex");

    const auto row = [](const char *text, int index, int subIndex) {
        QTest::newRow(text) << QString::fromLatin1(text) << index << subIndex;
    };
    row("6164sub2", 0x6164, 2);
    row("62E8sub1", 0x62E8, 1);
    row("62e8SUBa", 0x62E8, 10);
    row("1000", 0x1000, 0);
    row("600Esub0E", 0x600E, 14);
    row("600EsubFF", 0x600E, 255);
    row("", -1, 0);
    row("100", -1, 0);
    row("10000", -1, 0);
    row("1000sub", -1, 0);
    row("1000sub100", -1, 0);
    row("1000sub-1", -1, 0);
    row("0x10", -1, 0);
    row("1000 sub1", -1, 0);
    row("1000bus1", -1, 0);
}

void tst_Behaviour::objectNames()
{
    QFETCH(QString, text);
    QFETCH(int, index);
    QFETCH(int, subIndex);
    const std::optional<ObjectKey> key = parseObjectKey(text);
    QCOMPARE(key.has_value(), index >= 0);
    if (key) {
        QCOMPARE(int(key->index), index);
        QCOMPARE(int(key->subIndex), subIndex);
        QVERIFY(parseObjectKey(objectKeyText(*key)) == key);
    }
}

void tst_Behaviour::rampGoesAndHolds()
{
    const Behaviour ramp
        = behaviourOf(R"({"object":"6164sub2","kind":"ramp","from":8400,"to":1500,"seconds":3600})");
    QCOMPARE(behaviourValue(ramp, 0), 8400.0);
    QCOMPARE(behaviourValue(ramp, 1800 * second), 4950.0);
    QCOMPARE(behaviourValue(ramp, 3600 * second), 1500.0);
    QCOMPARE(behaviourValue(ramp, 100000 * second), 1500.0);
    QCOMPARE(behaviourData(ramp, entryOf(DataType::Unsigned16), 0).value_or("").toHex(), QByteArray("d020"));
}

void tst_Behaviour::rampRepeats()
{
    const Behaviour ramp
        = behaviourOf(R"({"object":"6164sub2","kind":"ramp","from":0,"to":100,"seconds":10,"repeat":true})");
    QCOMPARE(behaviourValue(ramp, 5 * second), 50.0);
    QCOMPARE(behaviourValue(ramp, 10 * second), 0.0);
    QCOMPARE(behaviourValue(ramp, 25 * second), 50.0);
}

void tst_Behaviour::sineSwings()
{
    const Behaviour sine
        = behaviourOf(R"({"object":"6105sub1","kind":"sine","mean":253,"amplitude":12,"periodSeconds":60})");
    QCOMPARE(behaviourValue(sine, 0), 253.0);
    QCOMPARE(behaviourValue(sine, 15 * second), 265.0);
    QCOMPARE(behaviourValue(sine, 45 * second), 241.0);
}

void tst_Behaviour::randomStaysBetweenAndChanges()
{
    const Behaviour chance
        = behaviourOf(R"({"object":"62E8sub2","kind":"random","min":150,"max":260,"intervalMs":200})");
    QSet<QByteArray> values;
    for (int interval = 0; interval < 500; ++interval) {
        const double value = behaviourValue(chance, interval * second / 5);
        QVERIFY(value >= 150 && value <= 260);
        QCOMPARE(behaviourValue(chance, interval * second / 5 + 199999), value);
        values.insert(
            behaviourData(chance, entryOf(DataType::Unsigned16), interval * second / 5).value_or(""));
    }
    QVERIFY(values.size() > 50);
}

void tst_Behaviour::counterCountsAndStartsAgain()
{
    const Behaviour counter
        = behaviourOf(R"({"object":"6040sub1","kind":"counter","from":250,"step":2,"intervalMs":1000})");
    const ObjectEntry entry = entryOf(DataType::Unsigned8);
    QCOMPARE(behaviourData(counter, entry, 0).value_or("").toHex(), QByteArray("fa"));
    QCOMPARE(behaviourData(counter, entry, second - 1).value_or("").toHex(), QByteArray("fa"));
    QCOMPARE(behaviourData(counter, entry, second).value_or("").toHex(), QByteArray("fc"));
    QCOMPARE(behaviourData(counter, entry, 3 * second).value_or("").toHex(), QByteArray("00"));
    QCOMPARE(behaviourData(counter, entry, 4 * second).value_or("").toHex(), QByteArray("02"));

    const Behaviour down
        = behaviourOf(R"({"object":"6040sub1","kind":"counter","from":1,"step":-1,"intervalMs":1000})");
    QCOMPARE(behaviourData(down, entry, 2 * second).value_or("").toHex(), QByteArray("ff"));
}

void tst_Behaviour::neverLeavesTheType_data()
{
    QTest::addColumn<DataType>("type");
    QTest::addColumn<double>("lowest");
    QTest::addColumn<double>("highest");

    QTest::newRow("BOOLEAN") << DataType::Boolean << 0.0 << 1.0;
    QTest::newRow("INTEGER8") << DataType::Integer8 << -128.0 << 127.0;
    QTest::newRow("INTEGER16") << DataType::Integer16 << -32768.0 << 32767.0;
    QTest::newRow("INTEGER32") << DataType::Integer32 << -2147483648.0 << 2147483647.0;
    QTest::newRow("INTEGER64") << DataType::Integer64 << -9.3e18 << 9.3e18;
    QTest::newRow("UNSIGNED8") << DataType::Unsigned8 << 0.0 << 255.0;
    QTest::newRow("UNSIGNED16") << DataType::Unsigned16 << 0.0 << 65535.0;
    QTest::newRow("UNSIGNED32") << DataType::Unsigned32 << 0.0 << 4294967295.0;
    QTest::newRow("UNSIGNED64") << DataType::Unsigned64 << 0.0 << 1.9e19;
    QTest::newRow("INTEGER24") << DataType::Integer24 << -8388608.0 << 8388607.0;
    QTest::newRow("UNSIGNED24") << DataType::Unsigned24 << 0.0 << 16777215.0;
    QTest::newRow("INTEGER40") << DataType::Integer40 << -549755813888.0 << 549755813887.0;
    QTest::newRow("UNSIGNED40") << DataType::Unsigned40 << 0.0 << 1099511627775.0;
    QTest::newRow("INTEGER48") << DataType::Integer48 << -140737488355328.0 << 140737488355327.0;
    QTest::newRow("UNSIGNED48") << DataType::Unsigned48 << 0.0 << 281474976710655.0;
    QTest::newRow("INTEGER56") << DataType::Integer56 << -36028797018963968.0 << 36028797018963967.0;
    QTest::newRow("UNSIGNED56") << DataType::Unsigned56 << 0.0 << 72057594037927935.0;
    QTest::newRow("REAL32") << DataType::Real32 << -3.4e38 << 3.4e38;
}

void tst_Behaviour::neverLeavesTheType()
{
    QFETCH(DataType, type);
    QFETCH(double, lowest);
    QFETCH(double, highest);
    const char *wild[] = {
        R"({"object":"2000","kind":"ramp","from":-1e15,"to":1e15,"seconds":10})",
        R"({"object":"2000","kind":"sine","mean":0,"amplitude":1e15,"periodSeconds":7})",
        R"({"object":"2000","kind":"random","min":-1e15,"max":1e15,"intervalMs":10})",
        R"({"object":"2000","kind":"counter","from":0,"step":1e15,"intervalMs":0.001})",
        R"({"object":"2000","kind":"counter","from":0,"step":-123456789,"intervalMs":1})",
    };
    for (const char *json : wild) {
        const Behaviour behaviour = behaviourOf(json);
        for (const qint64 elapsed : {qint64(-1), qint64(0), 3 * second, 9 * second, 1234567 * second,
                                     std::numeric_limits<qint64>::max()}) {
            const auto data = behaviourData(behaviour, entryOf(type), elapsed);
            QVERIFY2(data.has_value(), json);
            const std::optional<QVariant> value = decodeValue(type, *data);
            QVERIFY(value.has_value());
            QVERIFY(value->toDouble() >= lowest && value->toDouble() <= highest);
        }
    }
}

void tst_Behaviour::staysInsideTheLimits()
{
    const Behaviour ramp
        = behaviourOf(R"({"object":"2000","kind":"ramp","from":-500,"to":500,"seconds":10})");
    ObjectEntry entry = entryOf(DataType::Integer16);
    entry.lowLimit = -100;
    entry.highLimit = 50;
    QCOMPARE(behaviourData(ramp, entry, 0).value_or("").toHex(), QByteArray("9cff"));
    QCOMPARE(behaviourData(ramp, entry, 10 * second).value_or("").toHex(), QByteArray("3200"));
}

void tst_Behaviour::textsDoNotMove()
{
    const Behaviour ramp = behaviourOf(R"({"object":"1008","kind":"ramp","from":0,"to":5,"seconds":10})");
    QVERIFY(!behaviourData(ramp, entryOf(DataType::VisibleString), 0).has_value());
    QVERIFY(!isNumber(DataType::Domain));
    QVERIFY(isNumber(DataType::Unsigned8));
}

void tst_Behaviour::parsed()
{
    const Behaviour ramp = behaviourOf(
        R"({"object":"6164sub2","kind":"ramp","from":8400,"to":1500,"seconds":3600,"repeat":true})");
    QVERIFY((ramp.object == ObjectKey{0x6164, 2}));
    QCOMPARE(ramp.kind, BehaviourKind::Ramp);
    QCOMPARE(ramp.from, 8400.0);
    QCOMPARE(ramp.to, 1500.0);
    QCOMPARE(ramp.seconds, 3600.0);
    QVERIFY(ramp.repeat);
}

void tst_Behaviour::course_data()
{
    QTest::addColumn<bool>("repeats");
    QTest::addColumn<qint64>("elapsed"); // ms
    QTest::addColumn<double>("value");

    const auto row = [](const char *name, bool repeats, qint64 elapsed, double value) {
        QTest::newRow(name) << repeats << elapsed << value;
    };
    row("level before the first point", false, 500, 10.0);
    row("at a point", false, 3000, 30.0);
    row("between two points", false, 2000, 20.0);
    row("down again", false, 4000, 15.0);
    row("level behind the last point", false, 3600000, 0.0);
    row("from the first again", true, 7000, 20.0);
    row("level before the first point again", true, 5500, 10.0);
}

void tst_Behaviour::course()
{
    QFETCH(bool, repeats);
    QFETCH(qint64, elapsed);

    QString error;
    const auto behaviour
        = parse(repeats ? R"({"object":"1000","kind":"course","repeat":true,
                                               "points":[[1,10],[3,30],[5,0]]})"
                        : R"({"object":"1000","kind":"course","points":[[1,10],[3,30],[5,0]]})",
                &error);
    QVERIFY2(behaviour.has_value(), qPrintable(error));
    QTEST(behaviourValue(*behaviour, elapsed * 1000), "value");
}

void tst_Behaviour::parseErrors_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const char *json, const char *message) {
        QTest::newRow(name) << QByteArray(json) << QString::fromLatin1(message);
    };
    row("no kind", R"({"object":"1000"})", "kind: \"\" is none of ramp, sine, random, counter, course");
    row("unknown kind", R"({"object":"1000","kind":"zigzag"})",
        "kind: \"zigzag\" is none of ramp, sine, random, counter, course");
    row("no object", R"({"kind":"sine","mean":1,"amplitude":1,"periodSeconds":1})",
        "object: \"\" is no object such as \"6164sub2\"");
    row("wrong object", R"({"object":"6164.2","kind":"sine","mean":1,"amplitude":1,"periodSeconds":1})",
        "object: \"6164.2\" is no object such as \"6164sub2\"");
    row("missing number", R"({"object":"1000","kind":"sine","mean":1,"periodSeconds":1})",
        "amplitude: a number is missing for \"sine\"");
    row("text for a number", R"({"object":"1000","kind":"sine","mean":"1","amplitude":1,"periodSeconds":1})",
        "mean: a number is missing for \"sine\"");
    row("huge number", R"({"object":"1000","kind":"sine","mean":1e300,"amplitude":1,"periodSeconds":1})",
        "mean: a number is missing for \"sine\"");
    row("no time", R"({"object":"1000","kind":"ramp","from":1,"to":2,"seconds":0})",
        "seconds: the time must be at least 0.001");
    row("negative time", R"({"object":"1000","kind":"random","min":1,"max":2,"intervalMs":-5})",
        "intervalMs: the time must be at least 0.001");
    row("min above max", R"({"object":"1000","kind":"random","min":3,"max":2,"intervalMs":5})",
        "min: larger than max");
    row("repeat", R"({"object":"1000","kind":"ramp","from":1,"to":2,"seconds":1,"repeat":1})",
        "repeat: neither true nor false");
    row("unknown key", R"({"object":"1000","kind":"ramp","from":1,"to":2,"seconds":1,"colour":3})",
        "colour: not known for \"ramp\"");
    row("points of another kind",
        R"({"object":"1000","kind":"ramp","from":1,"to":2,"seconds":1,"points":[[0,1]]})",
        "points: not known for \"ramp\"");
    row("unknown key behind a known one",
        R"({"object":"1000","kind":"course","points":[[0,1]],"repeat":true,"speed":3})",
        "speed: not known for \"course\"");
    row("no points", R"({"object":"1000","kind":"course"})", "points: not in the form [[0, 250], [60, 410]]");
    row("empty course", R"({"object":"1000","kind":"course","points":[]})",
        "points: not in the form [[0, 250], [60, 410]]");
    row("half a point", R"({"object":"1000","kind":"course","points":[[0,1],[2]]})",
        "points: element 2 is not in the form [seconds, value]");
    row("point before the start", R"({"object":"1000","kind":"course","points":[[-1,1]]})",
        "points: element 1 is not in the form [seconds, value]");
    row("huge point", R"({"object":"1000","kind":"course","points":[[0,1e300]]})",
        "points: element 1 is not in the form [seconds, value]");
    row("points at one time", R"({"object":"1000","kind":"course","points":[[0,1],[5,2],[5,3]]})",
        "points: element 3 is not later than the one before");
    row("key of another kind",
        R"({"object":"1000","kind":"sine","mean":1,"amplitude":1,"periodSeconds":1,"repeat":true})",
        "repeat: not known for \"sine\"");
}

void tst_Behaviour::parseErrors()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, message);
    QString error;
    QVERIFY(!parse(json.constData(), &error).has_value());
    QCOMPARE(error, message);
}

QTEST_GUILESS_MAIN(tst_Behaviour)
#include "tst_behaviour.moc"
