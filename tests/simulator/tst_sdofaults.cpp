// SPDX-License-Identifier: MIT
#include "testvehicle.h"

#include <QtTest>

#include <algorithm>

using namespace Simulator;
using std::chrono::milliseconds;

/*! What the SDO servers of simulated nodes do wrong. */
class tst_SdoFaults : public QObject
{
    Q_OBJECT

private slots:
    void sdoSilentFromTheThirdRequest();
    void requestsAreCountedFromAChangeOfFaultsOn();
    void sdoSilentForOneObject();
    void sdoDelay();
    void sdoDelayIsForgottenAtAReset();
    void sdoAbort();
    void abortMidTransfer();
    void wrongToggle();
    void wrongToggleInOneSegment();
    void wrongMultiplexer();
    void sizeBits_data();
    void sizeBits();
    void sizeOfSegmentedTransfer();
    void segmented();
    void segmentedWithoutASize();
    void segmentedInShortSegments();
    void endless();
    void endlessWithoutData();
    void wrongWidth_data();
    void wrongWidth();
    void doubleAnswers();
    void lateCopies();
    void lateCopiesComeInAnyOrder();
    void lateAnswers();
    void lateAnswersAreForgottenAtAReset();
    void halfOpenUntilAnAbortArrives();
    void blockUploadWithAWrongCrc();
    void blockUploadLosesASegment();
    void blockUploadWithAWrongSequence();
};

namespace {

const char readNameAsBlock[] = "a40810007f000000";
const char startBlock[] = "a300000000000000";
const QByteArrayList nameBlock = {"585 01506564656c6563", "585 0220626174746572", "585 8379000000000000"};

/*! -1 in a row of data stands for what is not ordered. */
std::optional<int> given(int number)
{
    return number < 0 ? std::nullopt : std::optional<int>(number);
}

} // namespace

void tst_SdoFaults::sdoSilentFromTheThirdRequest()
{
    Faults::SdoSilent silent;
    silent.from = 3;
    TestVehicle test({silent});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.pass(500);
    QCOMPARE(test.take(), QByteArrayList({"705 05"}));
}

void tst_SdoFaults::requestsAreCountedFromAChangeOfFaultsOn()
{
    TestVehicle test;
    test.startQuietly();
    test.ask(readErrorRegister);
    test.ask(readErrorRegister);
    Faults::SdoSilent silent;
    silent.from = 2;
    test.vehicle.addFault(5, silent);
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
}

void tst_SdoFaults::sdoSilentForOneObject()
{
    Faults::SdoSilent silent;
    silent.object = CanOpen::ObjectKey{0x1008, 0};
    TestVehicle test({silent});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readName), QByteArrayList());
}

void tst_SdoFaults::sdoDelay()
{
    Faults::SdoDelay delay;
    delay.delay = milliseconds(150);
    delay.object = CanOpen::ObjectKey{0x1001, 0};
    TestVehicle test({delay});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
    test.pass(149);
    QCOMPARE(test.take(), QByteArrayList());
    test.pass(1);
    QCOMPARE(test.take(), QByteArrayList({errorRegister}));
}

void tst_SdoFaults::sdoDelayIsForgottenAtAReset()
{
    Faults::SdoDelay delay;
    delay.delay = milliseconds(150);
    TestVehicle test({delay});
    test.startQuietly();
    test.ask(readErrorRegister);
    test.nmt("8105");
    test.pass(300);
    QCOMPARE(test.take(), QByteArrayList({"705 00"}));
}

void tst_SdoFaults::sdoAbort()
{
    Faults::SdoAbort refusal;
    refusal.code = 0x06060000;
    refusal.object = CanOpen::ObjectKey{0x6000, 1};
    TestVehicle test({refusal});
    test.startQuietly();
    QCOMPARE(test.ask("4000600100000000"), QByteArrayList({"585 8000600100000606"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_SdoFaults::abortMidTransfer()
{
    Faults::AbortMidTransfer abortion;
    abortion.code = 0x08000022;
    abortion.afterSegments = 1;
    TestVehicle test({abortion});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 8008100022000008"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_SdoFaults::wrongToggle()
{
    TestVehicle test({Faults::WrongToggle()});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 10506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 0020626174746572"}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_SdoFaults::wrongToggleInOneSegment()
{
    Faults::WrongToggle wrong;
    wrong.segment = 2;
    TestVehicle test({wrong});
    test.startQuietly();
    test.ask(readName);
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 0020626174746572"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0d79000000000000"}));
}

void tst_SdoFaults::wrongMultiplexer()
{
    TestVehicle test({Faults::WrongMultiplexer()});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({"585 4f02100081000000"}));
    QCOMPARE(test.ask("2b00200001000000"), QByteArrayList({"585 6001200000000000"}));
}

void tst_SdoFaults::sizeBits_data()
{
    QTest::addColumn<int>("expedited");
    QTest::addColumn<int>("sizeIndicated");
    QTest::addColumn<int>("unused");
    QTest::addColumn<QByteArray>("answer");

    const auto row = [](const char *name, int expedited, int sizeIndicated, int unused, const char *answer) {
        QTest::newRow(name) << expedited << sizeIndicated << unused << QByteArray(answer);
    };
    row("kept", -1, -1, -1, "585 4b00200034120000");
    row("not indicated", -1, 0, 0, "585 4200200034120000");
    row("not indicated, n left", -1, 0, -1, "585 4a00200034120000");
    row("too short", -1, -1, 3, "585 4f00200034120000");
    row("too long", -1, -1, 0, "585 4300200034120000");
    row("neither", 0, 0, 0, "585 4000200034120000");
    row("segmented with the data as size", 0, 1, 0, "585 4100200034120000");
}

void tst_SdoFaults::sizeBits()
{
    QFETCH(int, expedited);
    QFETCH(int, sizeIndicated);
    QFETCH(int, unused);
    QFETCH(QByteArray, answer);
    Faults::SizeBits bits;
    bits.expedited = given(expedited);
    bits.sizeIndicated = given(sizeIndicated);
    bits.unused = given(unused);
    TestVehicle test({bits});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({answer}));
}

void tst_SdoFaults::sizeOfSegmentedTransfer()
{
    Faults::SizeBits bits;
    bits.size = 0xFFFFFFFF;
    bits.lastUnused = 7;
    TestVehicle test({bits});
    test.startQuietly();
    QCOMPARE(test.ask(readName), QByteArrayList({"585 41081000ffffffff"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 1020626174746572"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0f79000000000000"}));
}

void tst_SdoFaults::segmented()
{
    TestVehicle test({Faults::Segmented()});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4100200002000000"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0b34120000000000"}));
    test.vehicle.removeFaults<Faults::Segmented>(5);
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200034120000"}));
}

void tst_SdoFaults::segmentedWithoutASize()
{
    Faults::Segmented segmented;
    segmented.announcesSize = false;
    TestVehicle test({segmented});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4000200000000000"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0b34120000000000"}));
}

void tst_SdoFaults::segmentedInShortSegments()
{
    Faults::Segmented segmented;
    segmented.bytes = 1;
    TestVehicle test({segmented});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4100200002000000"}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0c34000000000000"}));
    QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 1d12000000000000"}));
    test.vehicle.clearFaults();
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 00506564656c6563"}));
}

void tst_SdoFaults::endless()
{
    Faults::Endless endless;
    endless.object = CanOpen::ObjectKey{0x2000, 0};
    endless.bytes = 2;
    TestVehicle test({endless});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4100200002000000"}));
    for (int segment = 0; segment < 100; ++segment) {
        QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0a78780000000000"}));
        QCOMPARE(test.ask("7000000000000000"), QByteArrayList({"585 1a78780000000000"}));
    }
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_SdoFaults::endlessWithoutData()
{
    Faults::Endless endless;
    endless.bytes = 0;
    TestVehicle test({endless});
    test.startQuietly();
    test.ask(readName);
    QCOMPARE(test.ask("6000000000000000"), QByteArrayList({"585 0e00000000000000"}));
}

void tst_SdoFaults::wrongWidth_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QByteArray>("answer");

    QTest::newRow("1") << 1 << QByteArray("585 4f00200034000000");
    QTest::newRow("3") << 3 << QByteArray("585 4700200034120000");
    QTest::newRow("4") << 4 << QByteArray("585 4300200034120000");
    QTest::newRow("8") << 8 << QByteArray("585 4100200008000000");
    QTest::newRow("0") << 0 << QByteArray("585 4100200000000000");
}

void tst_SdoFaults::wrongWidth()
{
    QFETCH(int, bytes);
    QFETCH(QByteArray, answer);
    Faults::WrongWidth width;
    width.bytes = bytes;
    TestVehicle test({width});
    test.startQuietly();
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({answer}));
    test.vehicle.removeFaults<Faults::WrongWidth>(5);
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({"585 4b00200034120000"}));
}

void tst_SdoFaults::doubleAnswers()
{
    Faults::DoubleAnswers doubled;
    TestVehicle test({doubled});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister, errorRegister}));
    doubled.count = 3;
    test.vehicle.clearFaults();
    test.vehicle.addFault(5, doubled);
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister, errorRegister, errorRegister}));
}

void tst_SdoFaults::lateCopies()
{
    Faults::LateCopies copies;
    copies.count = 2;
    TestVehicle test({copies});
    test.startQuietly();
    QVector<int> delays;
    for (int request = 0; request < 50; ++request) {
        QByteArrayList frames = test.ask(readErrorRegister);
        QVERIFY(!frames.isEmpty());
        QCOMPARE(frames.takeFirst(), errorRegister);
        for (int copy = 0; copy < frames.size(); ++copy)
            delays.append(0);
        for (int delay = 1; delay <= 400; ++delay) {
            test.pass(1);
            delays += QVector<int>(test.take().count(errorRegister), delay);
        }
    }
    QCOMPARE(delays.size(), 100);
    QVERIFY(*std::max_element(delays.cbegin(), delays.cend()) <= 300);
    QVERIFY(*std::max_element(delays.cbegin(), delays.cend()) > 250);
    QVERIFY(*std::min_element(delays.cbegin(), delays.cend()) < 50);
}

void tst_SdoFaults::lateCopiesComeInAnyOrder()
{
    TestVehicle test({Faults::LateCopies()});
    test.startQuietly();
    const QByteArray number = "585 4b00200034120000";
    bool isOvertaken = false;
    for (int round = 0; round < 20; ++round) {
        test.ask(readErrorRegister);
        test.ask("4000200000000000");
        QByteArrayList frames;
        for (int time = 0; time < 300; ++time) {
            test.pass(1);
            frames += test.take();
        }
        isOvertaken = isOvertaken || frames.indexOf(errorRegister) > frames.indexOf(number);
    }
    QVERIFY(isOvertaken);
}

void tst_SdoFaults::lateAnswers()
{
    TestVehicle test({Faults::LateAnswers()}); // every second
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList({errorRegister, "585 4b00200034120000"}));
    QCOMPARE(test.ask("4000200000000000"), QByteArrayList());
    QCOMPARE(test.ask("8000200000000405"), QByteArrayList()); // an abort asks for nothing
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({"585 4b00200034120000", errorRegister}));
}

void tst_SdoFaults::lateAnswersAreForgottenAtAReset()
{
    TestVehicle test({Faults::LateAnswers()});
    test.startQuietly();
    test.ask(readErrorRegister);
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    test.nmt("8105");
    test.take();
    QCOMPARE(test.ask(readName), QByteArrayList({nameAnswer}));
}

void tst_SdoFaults::halfOpenUntilAnAbortArrives()
{
    Faults::HalfOpen halfOpen;
    halfOpen.from = 2;
    TestVehicle test({halfOpen});
    test.startQuietly();
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({"585 8001100001000405"}));
    QCOMPARE(test.ask(readName), QByteArrayList({"585 8008100001000405"}));
    QCOMPARE(test.ask("8001100000000405"), QByteArrayList());
    QCOMPARE(test.ask(readErrorRegister), QByteArrayList({errorRegister}));
}

void tst_SdoFaults::blockUploadWithAWrongCrc()
{
    TestVehicle test({Faults::BlockUpload()});
    test.startQuietly();
    QCOMPARE(test.ask(readNameAsBlock), QByteArrayList({"585 c60810000f000000"}));
    QCOMPARE(test.ask(startBlock), nameBlock);
    // The CRC of "Pedelec battery" is 8530h.
    QCOMPARE(test.ask("a2037f0000000000"), QByteArrayList({"585 d931850000000000"}));
    test.vehicle.clearFaults();
    test.ask(readNameAsBlock);
    test.ask(startBlock);
    QCOMPARE(test.ask("a2037f0000000000"), QByteArrayList({"585 d930850000000000"}));
}

void tst_SdoFaults::blockUploadLosesASegment()
{
    Faults::BlockUpload block;
    block.lostSegment = 2;
    block.wrongCrc = false;
    TestVehicle test({block});
    test.startQuietly();
    test.ask(readNameAsBlock);
    QCOMPARE(test.ask(startBlock), QByteArrayList({nameBlock.at(0), nameBlock.at(2)}));
    QCOMPARE(test.ask("a2037f0000000000"), QByteArrayList({"585 d930850000000000"}));
}

void tst_SdoFaults::blockUploadWithAWrongSequence()
{
    Faults::BlockUpload block;
    block.wrongSequence = 2;
    TestVehicle test({block});
    test.startQuietly();
    test.ask(readNameAsBlock);
    QCOMPARE(test.ask(startBlock),
             QByteArrayList({nameBlock.at(0), "585 0320626174746572", nameBlock.at(2)}));
}

QTEST_GUILESS_MAIN(tst_SdoFaults)
#include "tst_sdofaults.moc"
