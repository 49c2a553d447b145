// SPDX-License-Identifier: MIT
#include <canopen/pdoparameter.h>
#include <canopen/sync.h>

#include <QCanBusFrame>
#include <QMap>
#include <QtTest>

using namespace CanOpen;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(CanOpen::PdoTrigger)

namespace {

using Objects = QMap<ObjectKey, quint32>;

ObjectLookup lookupIn(const Objects &objects)
{
    return [objects](ObjectKey key) {
        const auto found = objects.constFind(key);
        return found != objects.cend() ? std::optional<quint32>(*found) : std::nullopt;
    };
}

} // namespace

/*! The communication parameters of PDOs and of the SYNC. */
class tst_PdoParameter : public QObject
{
    Q_OBJECT

private slots:
    void readsParameter();
    void cobIdHasFlags_data();
    void cobIdHasFlags();
    void shortRecord();
    void isNotThere();
    void transmissionTypes_data();
    void transmissionTypes();
    void readsSync();
    void syncWithoutObjects();
    void syncCounter_data();
    void syncCounter();
    void syncFrames();
};

void tst_PdoParameter::readsParameter()
{
    const std::optional<PdoParameter> parameter = readPdoParameter(lookupIn({{{0x1801, 0}, 6},
                                                                             {{0x1801, 1}, 0x40000282},
                                                                             {{0x1801, 2}, 3},
                                                                             {{0x1801, 3}, 50},
                                                                             {{0x1801, 5}, 200},
                                                                             {{0x1801, 6}, 4}}),
                                                                   0x1801);
    QVERIFY(parameter);
    QCOMPARE(parameter->cobId, quint32(0x282));
    QVERIFY(parameter->isValid);
    QVERIFY(!parameter->isRemoteAllowed);
    QVERIFY(!parameter->isExtended);
    QCOMPARE(parameter->transmissionType, quint8(3));
    QVERIFY(parameter->inhibitTime == 5ms);
    QVERIFY(parameter->eventTimer == 200ms);
    QCOMPARE(parameter->syncStart, quint8(4));
}

void tst_PdoParameter::cobIdHasFlags_data()
{
    QTest::addColumn<quint32>("value");
    QTest::addColumn<quint32>("cobId");
    QTest::addColumn<bool>("isValid");
    QTest::addColumn<bool>("isRemoteAllowed");
    QTest::addColumn<bool>("isExtended");

    QTest::newRow("plain") << quint32(0x181) << quint32(0x181) << true << true << false;
    QTest::newRow("switched off") << quint32(0x80000181) << quint32(0x181) << false << true << false;
    QTest::newRow("no remote frames") << quint32(0x40000181) << quint32(0x181) << true << false << false;
    QTest::newRow("29 bits") << quint32(0x21234567) << quint32(0x01234567) << true << true << true;
    QTest::newRow("too many bits") << quint32(0x00012181) << quint32(0x181) << true << true << false;
}

void tst_PdoParameter::cobIdHasFlags()
{
    QFETCH(quint32, value);

    const std::optional<PdoParameter> parameter = readPdoParameter(lookupIn({{{0x1800, 1}, value}}), 0x1800);
    QVERIFY(parameter);
    QTEST(parameter->cobId, "cobId");
    QTEST(parameter->isValid, "isValid");
    QTEST(parameter->isRemoteAllowed, "isRemoteAllowed");
    QTEST(parameter->isExtended, "isExtended");
}

void tst_PdoParameter::shortRecord()
{
    const std::optional<PdoParameter> parameter = readPdoParameter(lookupIn({{{0x1400, 1}, 0x201}}), 0x1400);
    QVERIFY(parameter);
    QCOMPARE(parameter->transmissionType, quint8(255));
    QVERIFY(parameter->inhibitTime == 0us);
    QVERIFY(parameter->eventTimer == 0ms);
    QCOMPARE(parameter->syncStart, quint8(0));
}

void tst_PdoParameter::isNotThere()
{
    QVERIFY(!readPdoParameter(lookupIn({}), 0x1800));
    QVERIFY(!readPdoParameter(lookupIn({{{0x1800, 0}, 5}, {{0x1800, 2}, 1}}), 0x1800));
}

void tst_PdoParameter::transmissionTypes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<PdoTrigger>("trigger");

    const auto row = [](int type, PdoTrigger trigger) { QTest::addRow("%d", type) << type << trigger; };
    row(0, PdoTrigger::SyncOnChange);
    row(1, PdoTrigger::Sync);
    row(240, PdoTrigger::Sync);
    row(241, PdoTrigger::Reserved);
    row(251, PdoTrigger::Reserved);
    row(252, PdoTrigger::RemoteRequest);
    row(253, PdoTrigger::RemoteRequest);
    row(254, PdoTrigger::Event);
    row(255, PdoTrigger::Event);
}

void tst_PdoParameter::transmissionTypes()
{
    QFETCH(int, type);

    PdoParameter parameter;
    parameter.transmissionType = static_cast<quint8>(type);
    QTEST(parameter.trigger(), "trigger");
}

void tst_PdoParameter::readsSync()
{
    const SyncParameter parameter
        = readSyncParameter(lookupIn({{{0x1005, 0}, 0x40000081}, {{0x1006, 0}, 50000}, {{0x1019, 0}, 10}}));
    QVERIFY(parameter.isProducer);
    QCOMPARE(parameter.cobId, quint32(0x81));
    QVERIFY(parameter.period == 50ms);
    QCOMPARE(parameter.highestCounter, quint8(10));
}

void tst_PdoParameter::syncWithoutObjects()
{
    const SyncParameter parameter = readSyncParameter(lookupIn({}));
    QVERIFY(!parameter.isProducer);
    QCOMPARE(parameter.cobId, quint32(0x80));
    QVERIFY(parameter.period == 0us);
    QCOMPARE(parameter.highestCounter, quint8(0));
}

void tst_PdoParameter::syncCounter_data()
{
    QTest::addColumn<quint32>("overflow");
    QTest::addColumn<int>("highest");

    QTest::newRow("none") << quint32(0) << 0;
    QTest::newRow("reserved") << quint32(1) << 0;
    QTest::newRow("smallest") << quint32(2) << 2;
    QTest::newRow("largest") << quint32(240) << 240;
    QTest::newRow("beyond") << quint32(241) << 0;
    QTest::newRow("far beyond") << quint32(0x105) << 0;
}

void tst_PdoParameter::syncCounter()
{
    QFETCH(quint32, overflow);

    QTEST(int(readSyncParameter(lookupIn({{{0x1019, 0}, overflow}})).highestCounter), "highest");
}

void tst_PdoParameter::syncFrames()
{
    SyncParameter parameter;
    const QCanBusFrame plain = makeSyncFrame(parameter, 0);
    QCOMPARE(plain.frameId(), quint32(0x80));
    QCOMPARE(plain.payload(), QByteArray());
    QCOMPARE(syncCounterOf(plain), quint8(0));
    const QCanBusFrame counted = makeSyncFrame(parameter, 7);
    QCOMPARE(counted.payload(), QByteArray(1, '\7'));
    QCOMPARE(syncCounterOf(counted), quint8(7));
    QVERIFY(isSyncFrame(parameter, plain));
    QVERIFY(isSyncFrame(parameter, counted));
    QVERIFY(!isSyncFrame(parameter, QCanBusFrame(0x80, QByteArray(2, '\0'))));
    QVERIFY(!isSyncFrame(parameter, QCanBusFrame(0x81, QByteArray())));
    QCanBusFrame extended = plain;
    extended.setExtendedFrameFormat(true);
    QVERIFY(!isSyncFrame(parameter, extended));
    QCanBusFrame remote = plain;
    remote.setFrameType(QCanBusFrame::RemoteRequestFrame);
    QVERIFY(!isSyncFrame(parameter, remote));
}

QTEST_GUILESS_MAIN(tst_PdoParameter)
#include "tst_pdoparameter.moc"
