// SPDX-License-Identifier: MIT
#include <simulator/fault.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace Simulator;

class tst_Fault : public QObject
{
    Q_OBJECT

private slots:
    void kinds_data();
    void kinds();
    void everyKindIsTested();
    void parsed();
    void codesAsText();
    void errors_data();
    void errors();
};

namespace {

std::optional<Fault> parse(const QByteArray &json, QString *error)
{
    return parseFault(QJsonDocument::fromJson(json).object(), error);
}

struct KindRow
{
    const char *name;
    FaultKind kind;
    const char *parameters;
    bool ofNode;
    bool ofBus;
};

const KindRow kindRows[] = {
    {"silent", FaultKind::Silent, "", true, false},
    {"noBootUp", FaultKind::NoBootUp, "", true, false},
    {"noHeartbeat", FaultKind::NoHeartbeat, "", true, false},
    {"babbleHeartbeat", FaultKind::BabbleHeartbeat, "intervalMs", true, false},
    {"heartbeatTopBit", FaultKind::HeartbeatTopBit, "", true, false},
    {"heartbeatLength", FaultKind::HeartbeatLength, "length", true, false},
    {"heartbeatRemote", FaultKind::HeartbeatRemote, "", true, false},
    {"stopped", FaultKind::Stopped, "", true, false},
    {"sdoSilent", FaultKind::SdoSilent, "object from", true, false},
    {"sdoDelay", FaultKind::SdoDelay, "object ms", true, false},
    {"sdoAbort", FaultKind::SdoAbort, "object code", true, false},
    {"abortMidTransfer", FaultKind::AbortMidTransfer, "object code afterSegments", true, false},
    {"wrongToggle", FaultKind::WrongToggle, "object segment", true, false},
    {"wrongMultiplexer", FaultKind::WrongMultiplexer, "object", true, false},
    {"sizeBits", FaultKind::SizeBits, "object expedited sizeIndicated unused size lastUnused", true, false},
    {"segmented", FaultKind::Segmented, "object", true, false},
    {"wrongWidth", FaultKind::WrongWidth, "object bytes", true, false},
    {"doubleAnswers", FaultKind::DoubleAnswers, "object count", true, false},
    {"lateAnswers", FaultKind::LateAnswers, "object every", true, false},
    {"halfOpen", FaultKind::HalfOpen, "object from", true, false},
    {"babbleSdo", FaultKind::BabbleSdo, "perSecond", true, false},
    {"foreignClient", FaultKind::ForeignClient, "object every", true, false},
    {"dropFrames", FaultKind::DropFrames, "every", true, false},
    {"traffic", FaultKind::Traffic, "percent", true, true},
    {"busLoss", FaultKind::BusLoss, "afterFrames drop", false, true},
};

} // namespace

void tst_Fault::kinds_data()
{
    QTest::addColumn<int>("row");

    for (int row = 0; row < int(sizeof kindRows / sizeof kindRows[0]); ++row)
        QTest::newRow(kindRows[row].name) << row;
}

void tst_Fault::kinds()
{
    QFETCH(int, row);
    const KindRow &expected = kindRows[row];
    QCOMPARE(faultName(expected.kind), QString::fromLatin1(expected.name));
    QCOMPARE(faultParameters(expected.kind).join(QLatin1Char(' ')), QString::fromLatin1(expected.parameters));
    QCOMPARE(isNodeFault(expected.kind), expected.ofNode);
    QCOMPARE(isBusFault(expected.kind), expected.ofBus);

    QString error;
    const auto fault = parse(QByteArray("{\"kind\":\"") + expected.name + "\"}", &error);
    QVERIFY2(fault.has_value(), qPrintable(error));
    QCOMPARE(fault->kind, expected.kind);
}

void tst_Fault::everyKindIsTested()
{
    QCOMPARE(faultNames().size(), int(sizeof kindRows / sizeof kindRows[0]));
}

void tst_Fault::parsed()
{
    QString error;
    const auto delay = parse(R"({"kind":"sdoDelay","ms":150,"object":"6000sub1"})", &error);
    QVERIFY2(delay.has_value(), qPrintable(error));
    QCOMPARE(delay->ms, qint64(150));
    QVERIFY((delay->object == CanOpen::ObjectKey{0x6000, 1}));

    const auto bits = parse(R"({"kind":"sizeBits","expedited":1,"sizeIndicated":0,"unused":3})", &error);
    QVERIFY2(bits.has_value(), qPrintable(error));
    QCOMPARE(bits->expedited, qint64(1));
    QCOMPARE(bits->sizeIndicated, qint64(0));
    QCOMPARE(bits->unused, qint64(3));
    QCOMPARE(bits->size, qint64(-1));
}

void tst_Fault::codesAsText()
{
    QString error;
    const auto asText = parse(R"({"kind":"sdoAbort","code":"0x06090011"})", &error);
    QVERIFY2(asText.has_value(), qPrintable(error));
    QCOMPARE(asText->code, qint64(0x06090011));
    const auto asNumber = parse(R"({"kind":"sdoAbort","code":4294967295})", &error);
    QVERIFY2(asNumber.has_value(), qPrintable(error));
    QCOMPARE(asNumber->code, qint64(0xFFFFFFFF));
}

void tst_Fault::errors_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const char *json, const char *message) {
        QTest::newRow(name) << QByteArray(json) << QString::fromLatin1(message);
    };
    row("out of range", R"({"kind":"heartbeatLength","length":9})", "length: no whole number from 0 to 8");
    row("negative", R"({"kind":"sdoDelay","ms":-1})", "ms: no whole number from 0 to 1000000");
    row("fraction", R"({"kind":"sdoDelay","ms":1.5})", "ms: no whole number from 0 to 1000000");
    row("true", R"({"kind":"sdoDelay","ms":true})", "ms: no whole number from 0 to 1000000");
    row("text", R"({"kind":"sdoDelay","ms":"long"})", "ms: no whole number from 0 to 1000000");
    row("huge", R"({"kind":"sdoDelay","ms":1e300})", "ms: no whole number from 0 to 1000000");
    row("every 0", R"({"kind":"dropFrames","every":0})", "every: no whole number from 1 to 1000000");
    row("object", R"({"kind":"sdoSilent","object":6000})", "object: \"\" is no object such as \"6164sub2\"");
    row("object where none belongs", R"({"kind":"silent","object":"6000"})",
        "object: not known for \"silent\"");
    row("unknown key", R"({"kind":"sdoDelay","seconds":1})", "seconds: not known for \"sdoDelay\"");
}

void tst_Fault::errors()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, message);
    QString error;
    QVERIFY(!parse(json, &error).has_value());
    QCOMPARE(error, message);

    QVERIFY(!parse(R"({"kind":"gremlin"})", &error).has_value());
    QVERIFY2(error.startsWith(QStringLiteral("kind: \"gremlin\" is none of silent, noBootUp, ")),
             qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_Fault)
#include "tst_fault.moc"
