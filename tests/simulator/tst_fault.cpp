// SPDX-License-Identifier: MIT
#include <simulator/fault.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace Simulator;
using namespace std::chrono_literals;

class tst_Fault : public QObject
{
    Q_OBJECT

private slots:
    void kinds_data();
    void kinds();
    void everyKindIsTested();
    void parameters();
    void ordinaryValues();
    void objects();
    void codesAsText();
    void errors_data();
    void errors();
};

namespace {

std::optional<Fault> parse(const QByteArray &json, QString *error)
{
    return parseFault(QJsonDocument::fromJson(json).object(), error);
}

/*! One field of a fault that was read; the test ends when it cannot be read. */
template<typename Kind, typename Value>
Value readField(const char *json, Value Kind::*field)
{
    QString error;
    const auto fault = parse(json, &error);
    if (!fault)
        qFatal("%s: %s", json, qPrintable(error));
    return std::get<Kind>(*fault).*field;
}

std::optional<int> maybe(int number)
{
    return number;
}
const std::optional<int> nothing;

/*! The object that a fault is limited to; none for kinds that cannot be. */
std::optional<CanOpen::ObjectKey> objectOf(const Fault &fault)
{
    return std::visit(
        [](const auto &kind) -> std::optional<CanOpen::ObjectKey> {
            if constexpr (std::is_base_of_v<Faults::OfObject, std::decay_t<decltype(kind)>>)
                return kind.object;
            else
                return std::nullopt;
        },
        fault);
}

struct KindRow
{
    const char *name;
    const char *parameters;
    bool ofNode;
    bool ofBus;
};

const KindRow kindRows[] = {
    {"silent", "from", true, false},
    {"noBootUp", "", true, false},
    {"noHeartbeat", "", true, false},
    {"babbleHeartbeat", "intervalMs", true, false},
    {"heartbeatTopBit", "", true, false},
    {"heartbeatLength", "length", true, false},
    {"heartbeatRemote", "", true, false},
    {"stopped", "", true, false},
    {"restarts", "intervalMs random", true, false},
    {"emergency", "object code register manufacturer afterMs forMs above below stays preOperational", true,
     false},
    {"emergencyOfNobody", "nodeId code intervalMs", true, true},
    {"babbleEmergency", "perSecond code", true, false},
    {"babblePdo", "perSecond", true, false},
    {"pdoLength", "pdo length", true, false},
    {"lyingMapping", "object pdo entries bits", true, false},
    {"sdoSilent", "object from", true, false},
    {"sdoDelay", "object ms", true, false},
    {"sdoAbort", "object code", true, false},
    {"abortMidTransfer", "object code afterSegments", true, false},
    {"wrongToggle", "object segment", true, false},
    {"wrongMultiplexer", "object", true, false},
    {"sizeBits", "object expedited sizeIndicated unused size lastUnused", true, false},
    {"segmented", "object announcesSize bytes", true, false},
    {"endless", "object bytes", true, false},
    {"wrongWidth", "object bytes", true, false},
    {"blockUpload", "object wrongCrc lostSegment wrongSequence", true, false},
    {"doubleAnswers", "object count", true, false},
    {"lateCopies", "object count withinMs", true, false},
    {"lateAnswers", "object every", true, false},
    {"halfOpen", "object from", true, false},
    {"babbleSdo", "perSecond segments", true, false},
    {"foreignClient", "object every", true, false},
    {"abandoningClient", "object intervalMs", true, false},
    {"dropFrames", "every", true, false},
    {"traffic", "percent", true, true},
    {"flood", "perSecond", true, true},
    {"busLoss", "afterFrames drop", false, true},
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
    const QString name = QString::fromLatin1(expected.name);
    QCOMPARE(faultParameters(name).join(QLatin1Char(' ')), QString::fromLatin1(expected.parameters));

    QString error;
    const auto fault = parse(QByteArray("{\"kind\":\"") + expected.name + "\"}", &error);
    QVERIFY2(fault.has_value(), qPrintable(error));
    QCOMPARE(int(fault->index()), row);
    QCOMPARE(faultName(*fault), name);
    QCOMPARE(isNodeFault(*fault), expected.ofNode);
    QCOMPARE(isBusFault(*fault), expected.ofBus);
}

void tst_Fault::everyKindIsTested()
{
    QCOMPARE(faultNames().size(), int(sizeof kindRows / sizeof kindRows[0]));
}

void tst_Fault::parameters()
{
    QVERIFY(readField(R"({"kind":"silent","from":3})", &Faults::Silent::from) == 3);
    QVERIFY(readField(R"({"kind":"babbleHeartbeat","intervalMs":20})", &Faults::BabbleHeartbeat::interval)
            == 20ms);
    QVERIFY(readField(R"({"kind":"heartbeatLength","length":8})", &Faults::HeartbeatLength::length) == 8);
    QVERIFY(readField(R"({"kind":"restarts","intervalMs":70})", &Faults::Restarts::interval) == 70ms);
    QVERIFY(readField(R"({"kind":"restarts","random":1})", &Faults::Restarts::random) == true);
    QVERIFY(readField(R"({"kind":"emergency","code":"0x4210"})", &Faults::Emergency::code) == 0x4210u);
    QVERIFY(readField(R"({"kind":"emergency","register":8})", &Faults::Emergency::errorRegister) == 8u);
    QVERIFY(
        readField(R"({"kind":"emergency","manufacturer":"0x0102030405"})", &Faults::Emergency::manufacturer)
        == 0x0102030405);
    QVERIFY(readField(R"({"kind":"emergency","afterMs":5})", &Faults::Emergency::after) == 5ms);
    QVERIFY(readField(R"({"kind":"emergency","forMs":6})", &Faults::Emergency::length) == 6ms);
    QVERIFY(readField(R"({"kind":"emergency","object":"6042sub1","above":-7})", &Faults::Emergency::above)
            == -7);
    QVERIFY(readField(R"({"kind":"emergency","object":"6042sub1","below":8})", &Faults::Emergency::below)
            == 8);
    QVERIFY(readField(R"({"kind":"emergency","stays":1})", &Faults::Emergency::stays) == true);
    QVERIFY(readField(R"({"kind":"emergency","preOperational":1})", &Faults::Emergency::preOperational)
            == true);
    QVERIFY(readField(R"({"kind":"emergencyOfNobody","nodeId":99})", &Faults::EmergencyOfNobody::nodeId)
            == 99);
    QVERIFY(readField(R"({"kind":"emergencyOfNobody","code":2})", &Faults::EmergencyOfNobody::code) == 2u);
    QVERIFY(readField(R"({"kind":"emergencyOfNobody","intervalMs":3})", &Faults::EmergencyOfNobody::interval)
            == 3ms);
    QVERIFY(readField(R"({"kind":"babbleEmergency","perSecond":4})", &Faults::BabbleEmergency::perSecond)
            == 4);
    QVERIFY(readField(R"({"kind":"babbleEmergency","code":5})", &Faults::BabbleEmergency::code) == 5u);
    QVERIFY(readField(R"({"kind":"babblePdo","perSecond":6})", &Faults::BabblePdo::perSecond) == 6);
    QVERIFY(readField(R"({"kind":"pdoLength","pdo":7})", &Faults::PdoLength::pdo) == 7);
    QVERIFY(readField(R"({"kind":"pdoLength","length":8})", &Faults::PdoLength::length) == 8);
    QVERIFY(readField(R"({"kind":"lyingMapping","pdo":512})", &Faults::LyingMapping::pdo) == 512);
    QVERIFY(readField(R"({"kind":"lyingMapping","entries":255})", &Faults::LyingMapping::entries) == 255);
    QVERIFY(readField(R"({"kind":"lyingMapping","bits":0})", &Faults::LyingMapping::bits) == 0);
    QVERIFY(readField(R"({"kind":"sdoSilent","from":12})", &Faults::SdoSilent::from) == 12);
    QVERIFY(readField(R"({"kind":"sdoDelay","ms":150})", &Faults::SdoDelay::delay) == 150ms);
    QVERIFY(readField(R"({"kind":"sdoAbort","code":1})", &Faults::SdoAbort::code) == 1u);
    QVERIFY(readField(R"({"kind":"abortMidTransfer","code":2})", &Faults::AbortMidTransfer::code) == 2u);
    QVERIFY(readField(R"({"kind":"abortMidTransfer","afterSegments":3})",
                      &Faults::AbortMidTransfer::afterSegments)
            == 3);
    QVERIFY(readField(R"({"kind":"wrongToggle","segment":4})", &Faults::WrongToggle::segment) == 4);
    QVERIFY(readField(R"({"kind":"sizeBits","expedited":1})", &Faults::SizeBits::expedited) == maybe(1));
    QVERIFY(readField(R"({"kind":"sizeBits","sizeIndicated":0})", &Faults::SizeBits::sizeIndicated)
            == maybe(0));
    QVERIFY(readField(R"({"kind":"sizeBits","unused":3})", &Faults::SizeBits::unused) == maybe(3));
    QVERIFY(readField(R"({"kind":"sizeBits","size":4294967295})", &Faults::SizeBits::size)
            == std::optional<quint32>(4294967295u));
    QVERIFY(readField(R"({"kind":"sizeBits","lastUnused":7})", &Faults::SizeBits::lastUnused) == maybe(7));
    QVERIFY(readField(R"({"kind":"segmented","announcesSize":0})", &Faults::Segmented::announcesSize)
            == false);
    QVERIFY(readField(R"({"kind":"segmented","bytes":3})", &Faults::Segmented::bytes) == 3);
    QVERIFY(readField(R"({"kind":"endless","bytes":0})", &Faults::Endless::bytes) == 0);
    QVERIFY(readField(R"({"kind":"wrongWidth","bytes":64})", &Faults::WrongWidth::bytes) == 64);
    QVERIFY(readField(R"({"kind":"blockUpload","wrongCrc":0})", &Faults::BlockUpload::wrongCrc) == false);
    QVERIFY(readField(R"({"kind":"blockUpload","lostSegment":2})", &Faults::BlockUpload::lostSegment) == 2);
    QVERIFY(readField(R"({"kind":"blockUpload","wrongSequence":3})", &Faults::BlockUpload::wrongSequence)
            == 3);
    QVERIFY(readField(R"({"kind":"doubleAnswers","count":3})", &Faults::DoubleAnswers::count) == 3);
    QVERIFY(readField(R"({"kind":"lateCopies","count":4})", &Faults::LateCopies::count) == 4);
    QVERIFY(readField(R"({"kind":"lateCopies","withinMs":50})", &Faults::LateCopies::within) == 50ms);
    QVERIFY(readField(R"({"kind":"lateAnswers","every":5})", &Faults::LateAnswers::every) == 5);
    QVERIFY(readField(R"({"kind":"halfOpen","from":6})", &Faults::HalfOpen::from) == 6);
    QVERIFY(readField(R"({"kind":"babbleSdo","perSecond":200})", &Faults::BabbleSdo::perSecond) == 200);
    QVERIFY(readField(R"({"kind":"babbleSdo","segments":1})", &Faults::BabbleSdo::segments) == true);
    QVERIFY(readField(R"({"kind":"foreignClient","every":7})", &Faults::ForeignClient::every) == 7);
    QVERIFY(readField(R"({"kind":"abandoningClient","intervalMs":60})", &Faults::AbandoningClient::interval)
            == 60ms);
    QVERIFY(readField(R"({"kind":"dropFrames","every":8})", &Faults::DropFrames::every) == 8);
    QVERIFY(readField(R"({"kind":"traffic","percent":9})", &Faults::Traffic::percent) == 9);
    QVERIFY(readField(R"({"kind":"flood","perSecond":10})", &Faults::Flood::perSecond) == 10);
    QVERIFY(readField(R"({"kind":"busLoss","afterFrames":11})", &Faults::BusLoss::afterFrames) == 11);
    QVERIFY(readField(R"({"kind":"busLoss","drop":1})", &Faults::BusLoss::drop) == true);
    QVERIFY(readField(R"({"kind":"sizeBits","unused":-1})", &Faults::SizeBits::unused) == nothing);
}

void tst_Fault::ordinaryValues()
{
    QVERIFY(readField(R"({"kind":"silent"})", &Faults::Silent::from) == 0);
    QVERIFY(readField(R"({"kind":"babbleHeartbeat"})", &Faults::BabbleHeartbeat::interval) == 10ms);
    QVERIFY(readField(R"({"kind":"heartbeatLength"})", &Faults::HeartbeatLength::length) == 1);
    QVERIFY(readField(R"({"kind":"restarts"})", &Faults::Restarts::interval) == 500ms);
    QVERIFY(readField(R"({"kind":"restarts"})", &Faults::Restarts::random) == false);
    QVERIFY(readField(R"({"kind":"emergency"})", &Faults::Emergency::code) == 0x1000u);
    QVERIFY(readField(R"({"kind":"emergency"})", &Faults::Emergency::errorRegister) == 0u);
    QVERIFY(readField(R"({"kind":"emergency"})", &Faults::Emergency::length) == 0ms);
    QVERIFY(readField(R"({"kind":"emergency"})", &Faults::Emergency::stays) == false);
    QVERIFY(readField(R"({"kind":"emergency"})", &Faults::Emergency::preOperational) == false);
    QVERIFY(readField(R"({"kind":"emergencyOfNobody"})", &Faults::EmergencyOfNobody::nodeId) == 120);
    QVERIFY(readField(R"({"kind":"emergencyOfNobody"})", &Faults::EmergencyOfNobody::interval) == 1000ms);
    QVERIFY(readField(R"({"kind":"babbleEmergency"})", &Faults::BabbleEmergency::perSecond) == 100);
    QVERIFY(readField(R"({"kind":"babblePdo"})", &Faults::BabblePdo::perSecond) == 1000);
    QVERIFY(readField(R"({"kind":"pdoLength"})", &Faults::PdoLength::pdo) == 0);
    QVERIFY(readField(R"({"kind":"pdoLength"})", &Faults::PdoLength::length) == 3);
    QVERIFY(readField(R"({"kind":"lyingMapping"})", &Faults::LyingMapping::pdo) == 1);
    QVERIFY(readField(R"({"kind":"lyingMapping"})", &Faults::LyingMapping::entries) == 8);
    QVERIFY(readField(R"({"kind":"lyingMapping"})", &Faults::LyingMapping::bits) == 32);
    QVERIFY(readField(R"({"kind":"sdoSilent"})", &Faults::SdoSilent::from) == 1);
    QVERIFY(readField(R"({"kind":"sdoDelay"})", &Faults::SdoDelay::delay) == 0ms);
    QVERIFY(readField(R"({"kind":"sdoAbort"})", &Faults::SdoAbort::code) == 0x08000000u);
    QVERIFY(readField(R"({"kind":"abortMidTransfer"})", &Faults::AbortMidTransfer::code) == 0x08000000u);
    QVERIFY(readField(R"({"kind":"abortMidTransfer"})", &Faults::AbortMidTransfer::afterSegments) == 1);
    QVERIFY(readField(R"({"kind":"wrongToggle"})", &Faults::WrongToggle::segment) == 0);
    QVERIFY(readField(R"({"kind":"sizeBits"})", &Faults::SizeBits::expedited) == nothing);
    QVERIFY(readField(R"({"kind":"sizeBits"})", &Faults::SizeBits::sizeIndicated) == nothing);
    QVERIFY(readField(R"({"kind":"sizeBits"})", &Faults::SizeBits::unused) == nothing);
    QVERIFY(readField(R"({"kind":"sizeBits"})", &Faults::SizeBits::size) == std::optional<quint32>());
    QVERIFY(readField(R"({"kind":"sizeBits"})", &Faults::SizeBits::lastUnused) == nothing);
    QVERIFY(readField(R"({"kind":"segmented"})", &Faults::Segmented::announcesSize) == true);
    QVERIFY(readField(R"({"kind":"segmented"})", &Faults::Segmented::bytes) == 7);
    QVERIFY(readField(R"({"kind":"endless"})", &Faults::Endless::bytes) == 7);
    QVERIFY(readField(R"({"kind":"wrongWidth"})", &Faults::WrongWidth::bytes) == 1);
    QVERIFY(readField(R"({"kind":"blockUpload"})", &Faults::BlockUpload::wrongCrc) == true);
    QVERIFY(readField(R"({"kind":"blockUpload"})", &Faults::BlockUpload::lostSegment) == 0);
    QVERIFY(readField(R"({"kind":"blockUpload"})", &Faults::BlockUpload::wrongSequence) == 0);
    QVERIFY(readField(R"({"kind":"doubleAnswers"})", &Faults::DoubleAnswers::count) == 2);
    QVERIFY(readField(R"({"kind":"lateCopies"})", &Faults::LateCopies::count) == 1);
    QVERIFY(readField(R"({"kind":"lateCopies"})", &Faults::LateCopies::within) == 300ms);
    QVERIFY(readField(R"({"kind":"lateAnswers"})", &Faults::LateAnswers::every) == 2);
    QVERIFY(readField(R"({"kind":"halfOpen"})", &Faults::HalfOpen::from) == 1);
    QVERIFY(readField(R"({"kind":"babbleSdo"})", &Faults::BabbleSdo::perSecond) == 1000);
    QVERIFY(readField(R"({"kind":"babbleSdo"})", &Faults::BabbleSdo::segments) == false);
    QVERIFY(readField(R"({"kind":"foreignClient"})", &Faults::ForeignClient::every) == 1);
    QVERIFY(readField(R"({"kind":"abandoningClient"})", &Faults::AbandoningClient::interval) == 55ms);
    QVERIFY(readField(R"({"kind":"dropFrames"})", &Faults::DropFrames::every) == 2);
    QVERIFY(readField(R"({"kind":"traffic"})", &Faults::Traffic::percent) == 50);
    QVERIFY(readField(R"({"kind":"flood"})", &Faults::Flood::perSecond) == 8000);
    QVERIFY(readField(R"({"kind":"busLoss"})", &Faults::BusLoss::afterFrames) == 0);
    QVERIFY(readField(R"({"kind":"busLoss"})", &Faults::BusLoss::drop) == false);
}

void tst_Fault::objects()
{
    int kinds = 0;
    for (const KindRow &row : kindRows) {
        if (!QByteArray(row.parameters).startsWith("object"))
            continue;
        ++kinds;
        QString error;
        const auto fault = parse(QByteArray("{\"kind\":\"") + row.name + "\",\"object\":\"6000sub1\""
                                     + (QByteArray(row.parameters).contains("above") ? ",\"above\":1}" : "}"),
                                 &error);
        QVERIFY2(fault.has_value(), qPrintable(error));
        QVERIFY2((objectOf(*fault) == CanOpen::ObjectKey{0x6000, 1}), row.name);
    }
    QCOMPARE(kinds, 19);
}

void tst_Fault::codesAsText()
{
    QString error;
    const auto asText = parse(R"({"kind":"sdoAbort","code":"0x06090011"})", &error);
    QVERIFY2(asText.has_value(), qPrintable(error));
    QCOMPARE(std::get<Faults::SdoAbort>(*asText).code, 0x06090011u);
    const auto asNumber = parse(R"({"kind":"sdoAbort","code":4294967295})", &error);
    QVERIFY2(asNumber.has_value(), qPrintable(error));
    QCOMPARE(std::get<Faults::SdoAbort>(*asNumber).code, 0xFFFFFFFFu);
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
    row("flag", R"({"kind":"restarts","random":2})", "random: no whole number from 0 to 1");
    row("object where none belongs", R"({"kind":"silent","object":"6000"})",
        "object: not known for \"silent\"");
    row("limit of nothing", R"({"kind":"emergency","above":5})",
        "object: it is missing for \"above\" and \"below\"");
    row("object without a limit", R"({"kind":"emergency","object":"6000"})",
        "object: without \"above\" or \"below\" it means nothing");
    row("no emergency", R"({"kind":"emergency","code":0})", "code: no whole number from 256 to 65535");
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
