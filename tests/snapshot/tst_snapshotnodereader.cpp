// SPDX-License-Identifier: MIT
#include <snapshot/snapshotnodereader.h>

#include <QtTest>

#include <map>

using CanOpen::NmtState;
using CanOpen::ObjectKey;
using CanOpen::SdoOutcome;
using Kind = SdoOutcome::Kind;

namespace {

/*! A node that is asked by hand. */
class Node
{
public:
    explicit Node(SnapshotScope scope = SnapshotScope::Quick,
                  const CanOpen::EdsFile &dataSheet = CanOpen::EdsFile())
        : reader(7, scope, dataSheet)
    {
        set({0x1000, 0}, "C6010000");
        for (quint8 subIndex = 1; subIndex <= 4; ++subIndex)
            set({0x1018, subIndex}, QByteArray("0100000") + QByteArray::number(subIndex));
        set({0x1001, 0}, "00");
        set({0x6005, 0}, "2A000000");
    }

    void set(ObjectKey key, const QByteArray &hex)
    {
        SdoOutcome outcome;
        outcome.kind = Kind::Value;
        outcome.raw = QByteArray::fromHex(hex);
        outcomes[key] = outcome;
    }
    void set(ObjectKey key, Kind kind, quint32 code = 0)
    {
        SdoOutcome outcome;
        outcome.kind = kind;
        outcome.code = code;
        outcomes[key] = outcome;
    }

    /*! Asks one question and gives its answer. */
    void askOnce()
    {
        const ObjectKey key = reader.ask().key;
        asked << key.toShortString();
        SdoOutcome outcome = outcomes.count(key) > 0 ? outcomes[key] : SdoOutcome();
        if (outcomes.count(key) == 0) {
            outcome.kind = Kind::Abort;
            outcome.code = 0x06020000;
        }
        if (isSilent)
            outcome.kind = Kind::Timeout;
        outcome.isUnasked = isUnasked;
        outcome.isCrowdedOut = isCrowdedOut;
        outcome.key = key;
        reader.take(outcome, ++clock, answerTimes.count(key) > 0 ? answerTimes[key] : 5);
    }
    /*! The first round, or as many questions of it. */
    void askAll(int most = 100000)
    {
        while (reader.isReady() && most-- > 0)
            askOnce();
    }
    SnapshotNode readAll()
    {
        askAll();
        reader.beginSecondRound();
        askAll();
        reader.finish(false);
        return reader.node();
    }

    SnapshotNodeReader reader;
    std::map<ObjectKey, SdoOutcome> outcomes; // of what the device has
    std::map<ObjectKey, int> answerTimes;     // ms; else 5
    QStringList asked;
    bool isSilent = false;
    bool isUnasked = false;
    bool isCrowdedOut = false;
    qint64 clock = 0;
};

QString gapsOf(const SnapshotNode &node)
{
    QStringList gaps;
    for (const SnapshotEntry &entry : node.entries) {
        if (entry.isGap())
            gaps << entry.key.toShortString() + QLatin1Char('=') + QString::number(int(entry.gap));
    }
    return gaps.join(QLatin1Char(' '));
}

} // namespace

/*! The reading of one node, question by question. */
class tst_SnapshotNodeReader : public QObject
{
    Q_OBJECT

private slots:
    void readsEverything();
    void silentNodeIsLeftAndTriedAgain();
    void nodeThatComesBackIsReadToItsEnd();
    void nodeThatStopsAnsweringIsSilent();
    void silentObjectsAreTriedAgain();
    void failedTransfersAreTriedAgain();
    void silencesCountInARowOnly();
    void stoppedNodeIsNotAsked();
    void nodeThatStopsInTheMiddle();
    void nodeThatIsStartedAgain();
    void notSentIsNotSilent();
    void heldUpIsNoAnswer();
    void crowdedOutIsNotSilent();
    void refusalsAreNoSilence();
    void cancelKeepsWhatWasRead();
    void cancelledNodeThatWasLeftIsSilent();
    void whatWasPutBackIsAskedAgain();
    void probeThatWasPutBackIsNotSpokenOf();
    void knowsHowLongAnswersTake();
    void longAndBrokenTransfersAreNoAnswerTimes();
    void lastStateIsKept();
    void resumeAsksForGapsOnly();
    void resumeGoesOnInTheMiddle();
    void resumeReadsTheRestOfAQuickReading();
    void resumeReadsAnotherDeviceAnew();
    void resumeForgetsTheOtherDevice();
    void resumeAsksTheOtherDeviceOnce();
    void resumeTakesNoRefusalForAnotherDevice();
    void resumeTellsDevicesApartWithoutSerialNumber();
    void resumeSaysWhatItCannotRecognize_data();
    void resumeSaysWhatItCannotRecognize();
    void resumeKeepsValuesOfASilentNode();
    void resumeKeepsWhatElseIsKnown();
    void resumeKeepsGapsOfASilentNode();
    void cancelledResumeKeepsGaps();
    void cancelledQuestionOfAResumeKeepsItsGap();
    void resumeForgetsGapsThatAreNoneAnyMore();
    void resumeForgetsGapsOfAnotherDevice();
};

void tst_SnapshotNodeReader::readsEverything()
{
    Node node;
    const SnapshotNode read = node.readAll();
    QVERIFY(read.end == SnapshotEnd::Complete);
    QCOMPARE(int(read.id), 7);
    QCOMPARE(read.entries.size(), 203);
    QCOMPARE(read.valueCount(), 7);
    QCOMPARE(read.gapCount(), 0);
    QCOMPARE(read.value(0x6005, 0), QVariant(42u));
    QCOMPARE(read.find(0x1000, 0)->ms, qint64(1));
}

void tst_SnapshotNodeReader::silentNodeIsLeftAndTriedAgain()
{
    Node node;
    node.isSilent = true;
    node.askAll();
    QCOMPARE(node.asked.join(QLatin1Char(' ')), QStringLiteral("1000h.0 1018h.0 1008h.0"));
    QVERIFY(node.reader.isLeft());
    node.reader.beginSecondRound();
    node.askAll();
    QCOMPARE(node.asked.size(), 4); // one more is enough to see that it is still silent
    node.reader.finish(false);
    QVERIFY(node.reader.node().end == SnapshotEnd::Silent);
    QCOMPARE(gapsOf(node.reader.node()),
             QStringLiteral("1000h.0=%1 1008h.0=%1 1009h.0=%1 1018h.0=%1").arg(int(SnapshotGap::NoAnswer)));
    QCOMPARE(node.reader.node().entries.size(), 4);
}

void tst_SnapshotNodeReader::nodeThatComesBackIsReadToItsEnd()
{
    Node node;
    node.isSilent = true;
    node.askAll();
    node.isSilent = false;
    const SnapshotNode read = node.readAll();
    QVERIFY(read.end == SnapshotEnd::Complete);
    QCOMPARE(read.entries.size(), 203);
    QCOMPARE(read.gapCount(), 0);
}

void tst_SnapshotNodeReader::nodeThatStopsAnsweringIsSilent()
{
    Node node;
    node.askAll(50);
    node.isSilent = true;
    const SnapshotNode read = node.readAll();
    QCOMPARE(node.asked.size(), 50 + 3 + 3);
    QVERIFY(read.end == SnapshotEnd::Silent);
    QCOMPARE(read.entries.size(), 50 + 6);
}

void tst_SnapshotNodeReader::silentObjectsAreTriedAgain()
{
    Node node;
    node.set({0x6005, 0}, Kind::Timeout);
    node.set({0x6002, 1}, Kind::Timeout);
    node.askAll();
    QVERIFY(!node.reader.isDone());
    QCOMPARE(node.reader.pendingCount(), 2);
    node.set({0x6005, 0}, "2A000000");
    const SnapshotNode read = node.readAll();
    QCOMPARE(node.asked.size(), 203 + 2);
    QVERIFY(read.end == SnapshotEnd::Complete);
    QCOMPARE(gapsOf(read), QStringLiteral("6002h.1=%1").arg(int(SnapshotGap::NoAnswer)));
    QCOMPARE(read.value(0x6005, 0), QVariant(42u));
}

void tst_SnapshotNodeReader::failedTransfersAreTriedAgain()
{
    Node node;
    node.set({0x6005, 0}, Kind::Error, 0x05030000);
    node.set({0x6002, 1}, Kind::Error, 0x05030000);
    node.askAll();
    node.set({0x6005, 0}, "2A000000");
    node.reader.beginSecondRound();
    node.askAll();
    QVERIFY(node.reader.isDone());
    node.reader.finish(false);
    const SnapshotNode read = node.reader.node();
    QCOMPARE(gapsOf(read), QStringLiteral("6002h.1=%1").arg(int(SnapshotGap::Failed)));
    QCOMPARE(read.find(0x6002, 1)->abortCode, 0x05030000u);
    QCOMPARE(read.value(0x6005, 0), QVariant(42u));
}

void tst_SnapshotNodeReader::silencesCountInARowOnly()
{
    Node node;
    for (quint8 subIndex = 1; subIndex <= 5; subIndex += 2)
        node.set({0x6020, subIndex}, Kind::Timeout);
    node.askAll();
    QVERIFY(!node.reader.isLeft());
    QCOMPARE(node.asked.size(), 203);
}

void tst_SnapshotNodeReader::stoppedNodeIsNotAsked()
{
    Node node;
    node.reader.setNmtState(NmtState::Stopped);
    const SnapshotNode read = node.readAll();
    QCOMPARE(node.asked, QStringList());
    QVERIFY(read.end == SnapshotEnd::Stopped);
    QVERIFY(read.nmtState == NmtState::Stopped);
    QCOMPARE(read.entries.size(), 0);
}

void tst_SnapshotNodeReader::nodeThatStopsInTheMiddle()
{
    Node node;
    node.askAll(10);
    const ObjectKey key = node.reader.ask().key;
    node.reader.setNmtState(NmtState::Stopped);
    SdoOutcome silence;
    silence.key = key;
    node.reader.take(silence, 100, 100);
    const SnapshotNode read = node.readAll();
    QCOMPARE(node.asked.size(), 10);
    QVERIFY(read.end == SnapshotEnd::Stopped);
    QCOMPARE(read.entries.size(), 11);
    QVERIFY(read.find(key)->gap == SnapshotGap::Stopped);
}

void tst_SnapshotNodeReader::nodeThatIsStartedAgain()
{
    Node node;
    node.askAll(10);
    node.reader.setNmtState(NmtState::Stopped);
    QVERIFY(!node.reader.isReady());
    node.reader.setNmtState(NmtState::PreOperational);
    QVERIFY(node.reader.isReady());
    const SnapshotNode read = node.readAll();
    QVERIFY(read.end == SnapshotEnd::Complete);
    QCOMPARE(read.entries.size(), 203);
    QVERIFY(read.nmtState == NmtState::PreOperational);
}

void tst_SnapshotNodeReader::notSentIsNotSilent()
{
    Node node;
    node.isSilent = true;
    node.isUnasked = true;
    const SnapshotNode read = node.readAll();
    QVERIFY(read.end == SnapshotEnd::Cancelled);
    QVERIFY(read.find(0x1000, 0)->gap == SnapshotGap::Cancelled);
}

/*! By another client, so that no request has gone out: nobody knows whether the device is there. */
void tst_SnapshotNodeReader::heldUpIsNoAnswer()
{
    Node node;
    for (int index = 0x1000; index <= 0x6400; ++index) {
        for (quint8 subIndex = 0; subIndex <= 14; ++subIndex)
            node.set({static_cast<quint16>(index), subIndex}, Kind::Error, 0x060A0023);
    }
    node.isUnasked = true;
    const SnapshotNode read = node.readAll();
    QVERIFY(read.end == SnapshotEnd::Cancelled);
    QVERIFY(read.find(0x1000, 0)->gap == SnapshotGap::Cancelled);
    QCOMPARE(read.valueCount(), 0);
}

void tst_SnapshotNodeReader::crowdedOutIsNotSilent()
{
    Node node;
    node.isSilent = true;
    node.isCrowdedOut = true;
    QVERIFY(node.readAll().end == SnapshotEnd::Cancelled);
}

void tst_SnapshotNodeReader::refusalsAreNoSilence()
{
    Node node;
    for (int index = 0x1000; index <= 0x6400; ++index) {
        for (quint8 subIndex = 0; subIndex <= 14; ++subIndex)
            node.set({static_cast<quint16>(index), subIndex}, Kind::Abort, 0x08000000);
    }
    const SnapshotNode read = node.readAll();
    QVERIFY(read.end == SnapshotEnd::Complete);
    QCOMPARE(read.entries.size(), 203);
    QCOMPARE(read.gapCount(), 203);
}

void tst_SnapshotNodeReader::cancelKeepsWhatWasRead()
{
    Node node;
    node.askAll(20);
    const ObjectKey key = node.reader.ask().key;
    node.reader.putBack();
    node.reader.finish(true);
    QVERIFY(!node.reader.isReady());
    const SnapshotNode read = node.reader.node();
    QVERIFY(read.end == SnapshotEnd::Cancelled);
    QCOMPARE(read.entries.size(), 21);
    QVERIFY(read.find(key)->gap == SnapshotGap::Cancelled);
}

void tst_SnapshotNodeReader::cancelledNodeThatWasLeftIsSilent()
{
    Node node;
    node.isSilent = true;
    node.askAll();
    node.reader.finish(true);
    QVERIFY(node.reader.node().end == SnapshotEnd::Silent);
    QCOMPARE(node.reader.node().gapCount(), 3);
}

void tst_SnapshotNodeReader::whatWasPutBackIsAskedAgain()
{
    Node node;
    node.askAll(5);
    const ObjectKey key = node.reader.ask().key;
    node.reader.putBack();
    QVERIFY(node.reader.ask().key == key);
    node.reader.putBack();
    const SnapshotNode read = node.readAll();
    QVERIFY(read.end == SnapshotEnd::Complete);
    QCOMPARE(read.entries.size(), 203);
}

void tst_SnapshotNodeReader::probeThatWasPutBackIsNotSpokenOf()
{
    Node node(SnapshotScope::Full);
    SnapshotQuestion question;
    while (!question.isProbe) {
        question = node.reader.ask();
        node.reader.putBack();
        if (!question.isProbe)
            node.askOnce();
    }
    node.reader.finish(true);
    QVERIFY(node.reader.node().find(question.key) == nullptr);
}

void tst_SnapshotNodeReader::lastStateIsKept()
{
    Node node;
    node.reader.setNmtState(NmtState::Operational);
    node.reader.setNmtState(std::nullopt); // not heard any more
    QVERIFY(node.reader.node().nmtState == NmtState::Operational);
    node.reader.noteBootUp();
    node.reader.noteBootUp();
    QCOMPARE(node.reader.node().bootUps, 2);
}

void tst_SnapshotNodeReader::longAndBrokenTransfersAreNoAnswerTimes()
{
    Node node;
    node.set({0x1008, 0}, "4142434445464748");
    node.answerTimes[{0x1008, 0}] = 800;
    node.set({0x1009, 0}, Kind::Error, 0x05030000);
    node.answerTimes[{0x1009, 0}] = 900;
    node.set({0x100A, 0}, "41424344");
    node.answerTimes[{0x100A, 0}] = 70;
    QCOMPARE(node.readAll().longestAnswer.value_or(-1), 70);
}

void tst_SnapshotNodeReader::knowsHowLongAnswersTake()
{
    Node node;
    const SnapshotNode read = node.readAll();
    QCOMPARE(read.medianAnswer.value_or(-1), 5);
    QCOMPARE(read.longestAnswer.value_or(-1), 5);
    Node silent;
    silent.isSilent = true;
    QVERIFY(!silent.readAll().medianAnswer);
}

void tst_SnapshotNodeReader::resumeAsksForGapsOnly()
{
    Node first;
    first.set({0x6005, 0}, Kind::Timeout);
    first.set({0x6002, 1}, Kind::Abort, 0x08000000);
    first.set({0x6001, 1}, Kind::Abort, 0x06010001); // can only be written
    const SnapshotNode earlier = first.readAll();

    Node second;
    second.reader.resume(earlier, SnapshotScope::Quick);
    const SnapshotNode read = second.readAll();
    QCOMPARE(second.asked.join(QLatin1Char(' ')),
             QStringLiteral("1000h.0 1018h.1 1018h.2 1018h.3 1018h.4 6002h.1 6005h.0"));
    QCOMPARE(read.entries.size(), 203);
    QCOMPARE(read.gapCount(), 0);
    QCOMPARE(read.value(0x6005, 0), QVariant(42u));
    QCOMPARE(read.find(0x1001, 0)->ms, earlier.find(0x1001, 0)->ms);
    QVERIFY(!second.reader.isReplaced());
}

void tst_SnapshotNodeReader::resumeGoesOnInTheMiddle()
{
    Node first(SnapshotScope::Full);
    first.set({0x1018, 0}, "04");
    first.set({0x6020, 0}, "02");
    first.set({0x6020, 1}, "0100");
    first.askAll(150);
    QVERIFY(first.asked.contains(QStringLiteral("6020h.1")));
    first.reader.finish(true);

    Node second(SnapshotScope::Full);
    second.outcomes = first.outcomes;
    second.reader.resume(first.reader.node(), SnapshotScope::Full);
    const SnapshotNode read = second.readAll();
    Node whole(SnapshotScope::Full);
    whole.outcomes = first.outcomes;
    QVERIFY(read.end == SnapshotEnd::Complete);
    QCOMPARE(read.entries.size(), whole.readAll().entries.size());
    QCOMPARE(second.asked.size(), whole.asked.size() - 150 + 5);
    QVERIFY(!second.asked.contains(QStringLiteral("6020h.1")));
}

void tst_SnapshotNodeReader::resumeReadsTheRestOfAQuickReading()
{
    Node first;
    first.set({0x1018, 0}, "04");
    first.set({0x6005, 0}, Kind::Timeout);
    const SnapshotNode quick = first.readAll();
    QVERIFY(quick.end == SnapshotEnd::Complete);
    Node second(SnapshotScope::Full);
    second.set({0x1018, 0}, "04");
    second.set({0x1017, 0}, "E803");
    second.reader.resume(quick, SnapshotScope::Quick);
    const SnapshotNode read = second.readAll();
    QVERIFY(read.end == SnapshotEnd::Complete);
    QVERIFY(quick.find(0x1017, 0) == nullptr);
    QCOMPARE(read.value(0x1017, 0), QVariant(1000u));
    QCOMPARE(read.value(0x6005, 0), QVariant(42u));
    QVERIFY(second.asked.contains(QStringLiteral("1018h.4")));
    QVERIFY(!second.asked.contains(QStringLiteral("1001h.0"))); // is known
}

void tst_SnapshotNodeReader::resumeReadsAnotherDeviceAnew()
{
    Node first;
    first.set({0x6008, 1}, "01000000");
    const SnapshotNode earlier = first.readAll();

    Node second;
    second.set({0x1018, 4}, "99000000"); // another serial number
    second.reader.resume(earlier, SnapshotScope::Quick);
    const SnapshotNode read = second.readAll();
    QVERIFY(read.end == SnapshotEnd::Complete);
    QCOMPARE(read.value(0x1018, 4), QVariant(0x99u));
    QVERIFY(second.reader.isReplaced());
    QVERIFY(read.find(0x6008, 1)->gap == SnapshotGap::Absent);
    QCOMPARE(read.entries.size(), 203);
}

void tst_SnapshotNodeReader::resumeForgetsTheOtherDevice()
{
    Node first;
    first.set({0x6008, 1}, "01000000");
    SnapshotNode earlier = first.readAll();
    earlier.bootUps = 4;
    earlier.dataSheet = QStringLiteral("Old device");

    Node second;
    second.set({0x1018, 4}, "99000000");
    second.set({0x6008, 1}, Kind::Abort, 0x08000000);
    second.reader.resume(earlier, SnapshotScope::Quick);
    const SnapshotNode read = second.readAll();
    QVERIFY(second.reader.isReplaced());
    QVERIFY(read.find(0x6008, 1)->gap == SnapshotGap::Abort); // and not the other device's value
    QCOMPARE(read.bootUps, 0);
    QCOMPARE(read.dataSheet, QString());
}

void tst_SnapshotNodeReader::resumeAsksTheOtherDeviceOnce()
{
    Node first;
    const SnapshotNode earlier = first.readAll();
    Node second;
    second.set({0x1018, 4}, "99000000");
    second.reader.resume(earlier, SnapshotScope::Quick);
    second.isSilent = true;
    second.askOnce();
    second.isSilent = false;
    second.readAll();
    QCOMPARE(second.asked.first(), QStringLiteral("1000h.0"));
    QCOMPARE(second.asked.count(QStringLiteral("1000h.0")), 2);
}

void tst_SnapshotNodeReader::resumeTakesNoRefusalForAnotherDevice()
{
    Node first;
    const SnapshotNode earlier = first.readAll();
    Node second;
    second.set({0x1018, 4}, Kind::Abort, 0x08000000);
    second.reader.resume(earlier, SnapshotScope::Quick);
    const SnapshotNode read = second.readAll();
    QVERIFY(!second.reader.isReplaced());
    QCOMPARE(read.value(0x1018, 4), QVariant(0x04000001u));
}

void tst_SnapshotNodeReader::resumeTellsDevicesApartWithoutSerialNumber()
{
    Node first;
    first.set({0x1018, 4}, Kind::Timeout);
    const SnapshotNode earlier = first.readAll();
    for (quint8 subIndex = 1; subIndex <= 3; ++subIndex) {
        Node second;
        second.set({0x1018, subIndex}, "99000000");
        second.reader.resume(earlier, SnapshotScope::Quick);
        QCOMPARE(second.readAll().value(0x1018, 4), QVariant(0x04000001u));
        QVERIFY(second.reader.isReplaced());
        QVERIFY(!second.reader.isUnrecognized());
    }
    Node same;
    same.reader.resume(earlier, SnapshotScope::Quick);
    QCOMPARE(same.readAll().value(0x1018, 4), QVariant(0x04000001u));
    QVERIFY(!same.reader.isReplaced());
    QVERIFY(!same.reader.isUnrecognized());
}

void tst_SnapshotNodeReader::resumeSaysWhatItCannotRecognize_data()
{
    QTest::addColumn<int>("earlier");
    QTest::addColumn<int>("now");
    QTest::addColumn<bool>("isUnrecognized");
    QTest::newRow("known on both sides") << int(Kind::Value) << int(Kind::Value) << false;
    QTest::newRow("not known then") << int(Kind::Timeout) << int(Kind::Value) << true;
    QTest::newRow("refused then") << int(Kind::Abort) << int(Kind::Value) << true;
    QTest::newRow("not known now") << int(Kind::Value) << int(Kind::Abort) << true;
    QTest::newRow("known on neither side") << int(Kind::Abort) << int(Kind::Abort) << true;
}

void tst_SnapshotNodeReader::resumeSaysWhatItCannotRecognize()
{
    QFETCH(int, earlier);
    QFETCH(int, now);
    QFETCH(bool, isUnrecognized);
    const auto setIdentity = [](Node *node, int kind) {
        for (quint8 subIndex = 1; subIndex <= 4 && Kind(kind) != Kind::Value; ++subIndex)
            node->set({0x1018, subIndex}, Kind(kind), 0x08000000);
    };
    Node first;
    setIdentity(&first, earlier);
    first.askAll();
    first.reader.beginSecondRound();
    first.askAll();
    first.reader.beginSecondRound(); // past three silences in a row
    first.askAll();
    first.reader.finish(false);
    QCOMPARE(first.reader.node().value(0x6005, 0), QVariant(42u));
    QVERIFY(!first.reader.isUnrecognized()); // nothing was kept
    Node second;
    setIdentity(&second, now);
    second.reader.resume(first.reader.node(), SnapshotScope::Quick);
    const SnapshotNode read = second.readAll();
    QVERIFY(!second.reader.isReplaced());
    QCOMPARE(second.reader.isUnrecognized(), isUnrecognized);
    QCOMPARE(read.value(0x6005, 0), QVariant(42u));

    Node silent; // which may be nowhere
    silent.isSilent = true;
    silent.reader.resume(first.reader.node(), SnapshotScope::Quick);
    silent.readAll();
    QVERIFY(!silent.reader.isUnrecognized());
}

void tst_SnapshotNodeReader::resumeKeepsWhatElseIsKnown()
{
    SnapshotNode earlier = Node().readAll();
    earlier.bootUps = 2;
    earlier.nmtState = NmtState::PreOperational;
    earlier.dataSheet = QStringLiteral("Old sheet");
    Node second;
    second.reader.resume(earlier, SnapshotScope::Quick);
    second.reader.noteBootUp();
    const SnapshotNode read = second.readAll();
    QCOMPARE(read.bootUps, 3);
    QVERIFY(read.nmtState == NmtState::PreOperational);
    QCOMPARE(read.dataSheet, QStringLiteral("Old sheet"));

    CanOpen::EdsFile sheet;
    sheet.productName = QStringLiteral("New sheet");
    Node third(SnapshotScope::Quick, sheet);
    third.reader.resume(earlier, SnapshotScope::Quick);
    QCOMPARE(third.readAll().dataSheet, QStringLiteral("New sheet"));
}

void tst_SnapshotNodeReader::resumeKeepsValuesOfASilentNode()
{
    Node first;
    const SnapshotNode earlier = first.readAll();
    Node second;
    second.isSilent = true;
    second.reader.resume(earlier, SnapshotScope::Quick);
    const SnapshotNode read = second.readAll();
    QVERIFY(read.end == SnapshotEnd::Silent);
    QCOMPARE(read.entries.size(), 203);
    QCOMPARE(read.gapCount(), 0);
    QCOMPARE(read.value(0x1018, 4), QVariant(0x04000001u));
}

namespace {

/*! A node that has refused one object, and sent another one in a width that it does not have. */
SnapshotNode nodeWithGaps(SnapshotEnd end)
{
    Node node;
    node.set({0x6002, 1}, Kind::Abort, 0x08000000);
    node.set({0x6008, 1}, "0102");
    SnapshotNode read = node.readAll();
    read.end = end;
    return read;
}

void verifyGapsAreThere(const SnapshotNode &node)
{
    QCOMPARE(node.entries.size(), 203);
    QVERIFY(node.find(0x6002, 1)->gap == SnapshotGap::Abort);
    QCOMPARE(node.find(0x6002, 1)->abortCode, 0x08000000u);
    QVERIFY(node.find(0x6008, 1)->gap == SnapshotGap::WrongSize);
    QCOMPARE(node.find(0x6008, 1)->raw, QByteArray::fromHex("0102"));
}

} // namespace

void tst_SnapshotNodeReader::resumeKeepsGapsOfASilentNode()
{
    for (const SnapshotEnd end : {SnapshotEnd::Complete, SnapshotEnd::Cancelled}) {
        Node second;
        second.isSilent = true;
        second.reader.resume(nodeWithGaps(end), SnapshotScope::Quick);
        verifyGapsAreThere(second.readAll());
    }
}

void tst_SnapshotNodeReader::cancelledResumeKeepsGaps()
{
    for (const SnapshotEnd end : {SnapshotEnd::Complete, SnapshotEnd::Cancelled}) {
        Node second;
        second.reader.resume(nodeWithGaps(end), SnapshotScope::Quick);
        second.askAll(2);
        second.reader.finish(true);
        verifyGapsAreThere(second.reader.node());
    }
}

void tst_SnapshotNodeReader::cancelledQuestionOfAResumeKeepsItsGap()
{
    Node second;
    second.reader.resume(nodeWithGaps(SnapshotEnd::Complete), SnapshotScope::Quick);
    second.askAll(5); // who it is
    QCOMPARE(second.reader.ask().key.toShortString(), QStringLiteral("6002h.1"));
    second.reader.putBack();
    second.reader.finish(true);
    verifyGapsAreThere(second.reader.node());
}

void tst_SnapshotNodeReader::resumeForgetsGapsThatAreNoneAnyMore()
{
    Node second;
    second.set({0x6002, 1}, Kind::Timeout);
    second.set({0x6008, 1}, "01000000");
    second.reader.resume(nodeWithGaps(SnapshotEnd::Complete), SnapshotScope::Quick);
    const SnapshotNode read = second.readAll();
    QVERIFY(read.find(0x6002, 1)->gap == SnapshotGap::NoAnswer);
    QCOMPARE(read.value(0x6008, 1), QVariant(1u));
}

void tst_SnapshotNodeReader::resumeForgetsGapsOfAnotherDevice()
{
    Node second;
    second.set({0x1018, 4}, "99000000");
    second.reader.resume(nodeWithGaps(SnapshotEnd::Complete), SnapshotScope::Quick);
    second.askAll(5);
    second.reader.finish(true);
    QVERIFY(second.reader.isReplaced());
    QVERIFY(second.reader.node().find(0x6002, 1) == nullptr);
}

QTEST_GUILESS_MAIN(tst_SnapshotNodeReader)
#include "tst_snapshotnodereader.moc"
