// SPDX-License-Identifier: MIT
#include <host/core/readrecord.h>
#include <host/core/readwords.h>

#include <QtTest>

namespace {

constexpr quint32 noObject = 0x06020000;
constexpr quint32 wrongToggle = 0x05030000;
constexpr quint32 lengthTooLow = 0x06070013;

} // namespace

Q_DECLARE_METATYPE(ReadResult)
Q_DECLARE_METATYPE(ReadSummary::End)
Q_DECLARE_METATYPE(ReadWords::Silence)

/*! The record of a read and what is said of it. */
class tst_ReadRecord : public QObject
{
    Q_OBJECT

private slots:
    void nothing();
    void kindsOfCodes_data();
    void kindsOfCodes();
    void countsByNode();
    void eachObjectCountsOnce_data();
    void eachObjectCountsOnce();
    void resultsOfOutcomes_data();
    void resultsOfOutcomes();
    void laterReasonStays();
    void listsFailures();
    void clears();
    void saysFailuresByReason();
    void saysEnds_data();
    void saysEnds();
};

void tst_ReadRecord::nothing()
{
    const ReadRecord record;
    QCOMPARE(record.total().objects(), 0);
    QCOMPARE(record.counts(1).objects(), 0);
    QVERIFY(record.nodes().isEmpty());
    QVERIFY(record.failures().isEmpty());
}

void tst_ReadRecord::kindsOfCodes_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<bool>("isMissing");

    QTest::newRow("no object") << 0x06020000U << true;
    QTest::newRow("no sub-index") << 0x06090011U << true;
    QTest::newRow("no data") << 0x08000024U << false;
    QTest::newRow("write only") << 0x06010001U << false;
    QTest::newRow("toggle bit") << 0x05030000U << false;
    QTest::newRow("general") << 0x08000000U << false;
    QTest::newRow("no code at all") << 0x00000000U << false;
    QTest::newRow("of no standard") << 0x06020001U << false;
    QTest::newRow("time-out") << 0x05040000U << false;
}

void tst_ReadRecord::kindsOfCodes()
{
    QFETCH(quint32, code);
    QFETCH(bool, isMissing);
    ReadRecord record;
    record.note(3, {0x6000, 1}, ReadResult::refusal(code));
    QCOMPARE(record.total().missing, isMissing ? 1 : 0);
    QCOMPARE(record.total().failed, isMissing ? 0 : 1);
    QCOMPARE(record.failures().size(), isMissing ? 0 : 1);
}

void tst_ReadRecord::countsByNode()
{
    ReadRecord record;
    record.note(9, {0x1000, 0}, ReadResult::value());
    record.note(2, {0x1000, 0}, ReadResult::value());
    record.note(2, {0x1001, 0}, ReadResult::value());
    record.note(2, {0x6000, 0}, ReadResult::refusal(noObject));
    record.note(2, {0x6001, 0}, ReadResult::refusal(wrongToggle));
    record.note(2, {0x6002, 0}, ReadResult::noAnswer());
    QCOMPARE(record.nodes(), (QList<quint8>{2, 9}));
    QCOMPARE(record.counts(2).values, 2);
    QCOMPARE(record.counts(2).missing, 1);
    QCOMPARE(record.counts(2).failed, 2);
    QCOMPARE(record.counts(9).values, 1);
    QCOMPARE(record.total().values, 3);
    QCOMPARE(record.total().objects(), 6);
    QVERIFY(record.result(2, {0x6000, 0})->kind == ReadResult::Kind::NotThere);
    QVERIFY(record.result(9, {0x1000, 0})->kind == ReadResult::Kind::Value);
    QVERIFY(!record.result(9, {0x1001, 0}));
    QVERIFY(!record.result(3, {0x1000, 0}));
}

void tst_ReadRecord::eachObjectCountsOnce_data()
{
    QTest::addColumn<ReadResult>("first");
    QTest::addColumn<ReadResult>("second");
    QTest::addColumn<int>("values");
    QTest::addColumn<int>("missing");
    QTest::addColumn<int>("failed");

    const ReadResult value = ReadResult::value();
    const ReadResult refused = ReadResult::refusal(lengthTooLow);
    const ReadResult missing = ReadResult::refusal(noObject);
    const ReadResult silent = ReadResult::noAnswer();
    QTest::newRow("refused in one size, then a value") << refused << value << 1 << 0 << 0;
    QTest::newRow("a value, then refused in the other size") << value << refused << 1 << 0 << 0;
    QTest::newRow("a value, then no answer") << value << silent << 1 << 0 << 0;
    QTest::newRow("twice a value") << value << value << 1 << 0 << 0;
    QTest::newRow("twice not there") << missing << missing << 0 << 1 << 0;
    QTest::newRow("failed, then not there") << refused << missing << 0 << 1 << 0;
    QTest::newRow("not there, then failed") << missing << refused << 0 << 1 << 0;
    QTest::newRow("twice failed") << refused << silent << 0 << 0 << 1;
}

void tst_ReadRecord::eachObjectCountsOnce()
{
    QFETCH(ReadResult, first);
    QFETCH(ReadResult, second);
    ReadRecord record;
    record.note(4, {0x6311, 1}, first);
    record.note(4, {0x6311, 1}, second);
    QTEST(record.total().values, "values");
    QTEST(record.total().missing, "missing");
    QTEST(record.total().failed, "failed");
}

void tst_ReadRecord::resultsOfOutcomes_data()
{
    using Kind = CanOpen::SdoOutcome::Kind;
    QTest::addColumn<CanOpen::SdoOutcome>("outcome");
    QTest::addColumn<QString>("reason"); // empty: no failure

    const auto make = [](Kind kind, quint32 code = 0) {
        CanOpen::SdoOutcome outcome;
        outcome.kind = kind;
        outcome.code = code;
        return outcome;
    };
    QTest::newRow("value") << make(Kind::Value) << QString();
    QTest::newRow("not there") << make(Kind::Abort, 0x06020000) << QString();
    QTest::newRow("refused") << make(Kind::Abort, 0x08000000) << QStringLiteral("General error (0800 0000h)");
    QTest::newRow("failed") << make(Kind::Error, 0x05030000)
                            << QStringLiteral("The toggle bit did not alternate (0503 0000h)");
    QTest::newRow("silent") << make(Kind::Timeout) << QStringLiteral("No answer");
    CanOpen::SdoOutcome outcome = make(Kind::Timeout);
    outcome.isUnasked = true;
    QTest::newRow("not sent") << outcome << QStringLiteral("The request could not be sent");
    outcome = make(Kind::Error, 0x060A0023);
    outcome.foreignClient = true;
    QTest::newRow("other client") << outcome << QStringLiteral("Another client was using the node");
    outcome = make(Kind::Value);
    outcome.foreignClient = true;
    QTest::newRow("other client, and yet a value") << outcome << QString();
    outcome = make(Kind::Error, 0x08000000);
    outcome.isMixedUp = true;
    QTest::newRow("mixed up") << outcome
                              << QStringLiteral("The answers could not be told from late or foreign ones");
}

void tst_ReadRecord::resultsOfOutcomes()
{
    QFETCH(CanOpen::SdoOutcome, outcome);
    QFETCH(QString, reason);
    const ReadResult result = ReadResult::of(outcome);
    QCOMPARE(result.isFailure(), !reason.isEmpty());
    if (!reason.isEmpty()) {
        const FailedObject failure{7, {0x6000, 0}, result};
        QCOMPARE(failure.reason(), reason);
    }
}

void tst_ReadRecord::laterReasonStays()
{
    ReadRecord record;
    record.note(4, {0x6311, 1}, ReadResult::refusal(lengthTooLow));
    record.note(4, {0x6311, 1}, ReadResult::refusal(wrongToggle));
    QCOMPARE(record.failures().first().result.code, wrongToggle);
}

void tst_ReadRecord::listsFailures()
{
    ReadRecord record;
    record.note(12, {0x6000, 1}, ReadResult::noAnswer());
    record.note(3, {0x60AB, 10}, ReadResult::refusal(wrongToggle));
    record.note(3, {0x1018, 4}, ReadResult::refusal(0x12345678));
    record.note(3, {0x1018, 3}, ReadResult::value());
    QStringList lines;
    const QVector<FailedObject> failures = record.failures();
    for (const FailedObject &failure : failures)
        lines.append(failure.toString());
    QCOMPARE(
        lines,
        (QStringList{QStringLiteral("Node 3, object 1018h sub-index 4: Abort code 1234 5678h"),
                     QStringLiteral(
                         "Node 3, object 60ABh sub-index 10: The toggle bit did not alternate (0503 0000h)"),
                     QStringLiteral("Node 12, object 6000h sub-index 1: No answer")}));
}

void tst_ReadRecord::clears()
{
    ReadRecord record;
    record.note(12, {0x6000, 1}, ReadResult::noAnswer());
    record.clear();
    QCOMPARE(record.total().objects(), 0);
}

void tst_ReadRecord::saysFailuresByReason()
{
    ReadRecord record;
    for (quint8 subIndex = 0; subIndex < 8; ++subIndex)
        record.note(3, {0x6000, subIndex}, ReadResult::refusal(wrongToggle));
    record.note(4, {0x6000, 0}, ReadResult::noAnswer());
    QCOMPARE(ReadWords::failures(record.failures()),
             (QStringList{
                 QStringLiteral("Not read from node 3: 6000h.0, 6000h.1, 6000h.2, 6000h.3, 6000h.4, 6000h.5, "
                                "6000h.6, 6000h.7. The toggle bit did not alternate (0503 0000h)."),
                 QStringLiteral("Not read from node 4: 6000h.0. No answer.")}));
    record.note(3, {0x6001, 0}, ReadResult::refusal(wrongToggle));
    record.note(3, {0x6001, 1}, ReadResult::refusal(wrongToggle));
    QCOMPARE(ReadWords::failures(record.failures()).first(),
             QStringLiteral("Not read from node 3: 6000h.0, 6000h.1, 6000h.2, 6000h.3, 6000h.4, 6000h.5, "
                            "6000h.6, 6000h.7 and 2 more. The toggle bit did not alternate (0503 0000h)."));
}

void tst_ReadRecord::saysEnds_data()
{
    using End = ReadSummary::End;
    using Silence = ReadWords::Silence;
    QTest::addColumn<End>("end");
    QTest::addColumn<int>("nodeId");
    QTest::addColumn<Silence>("silence");
    QTest::addColumn<QString>("sentence");

    QTest::newRow("complete") << End::Complete << 7 << Silence::Unexplained
                              << QStringLiteral("Read finished. Nodes: 1, values: 1, objects not there: 1, "
                                                "failed: 0.");
    QTest::newRow("node 1 not heard")
        << End::NothingAsked << 0 << Silence::Unexplained
        << QStringLiteral("Nothing was read, because node 1, the bus controller, was not heard. Is the "
                          "vehicle switched on, and does node 1 send a heartbeat?");
    QTest::newRow("lost while looking for nodes")
        << End::BusGone << 0 << Silence::Unexplained
        << QStringLiteral("Nothing was read, because the bus was lost: The adapter was unplugged.");
    QTest::newRow("disconnected while looking for nodes")
        << End::Disconnected << 0 << Silence::Unexplained
        << QStringLiteral("Nothing was read, because you disconnected.");
    QTest::newRow("cancelled while looking for nodes")
        << End::Cancelled << 0 << Silence::Unexplained
        << QStringLiteral("The read was cancelled by the user.");
    QTest::newRow("lost") << End::BusGone << 7 << Silence::Unexplained
                          << QStringLiteral(
                                 "The read stopped at node 7, object 60ABh sub-index 2, because the bus was "
                                 "lost: The adapter was unplugged. Values read until then: 1.");
    QTest::newRow("disconnected") << End::Disconnected << 7 << Silence::Unexplained
                                  << QStringLiteral(
                                         "The read stopped at node 7, object 60ABh sub-index 2, because "
                                         "you disconnected. Values read until then: 1.");
    QTest::newRow("cancelled") << End::Cancelled << 7 << Silence::Unexplained
                               << QStringLiteral("The read was cancelled by the user at node 7, object 60ABh "
                                                 "sub-index 2. Values read until then: 1.");
    QTest::newRow("not sent") << End::NotSent << 7 << Silence::Unexplained
                              << QStringLiteral(
                                     "The read stopped at node 7, object 60ABh sub-index 2, because the "
                                     "request could not be sent: the bus is overloaded, or nobody "
                                     "acknowledges. Values read until then: 1.");
    QTest::newRow("silent") << End::NoAnswer << 7 << Silence::Unexplained
                            << QStringLiteral("The read stopped at node 7, object 60ABh sub-index 2, because "
                                              "it did not answer. Values read until then: 1.");
    QTest::newRow("silent in the state Stopped")
        << End::NoAnswer << 7 << Silence::Stopped
        << QStringLiteral("The read stopped at node 7, object 60ABh sub-index 2, because the node is in the "
                          "state Stopped and answers no SDO. Values read until then: 1.");
    QTest::newRow("silent on a full bus")
        << End::NoAnswer << 7 << Silence::BusFull
        << QStringLiteral(
               "The read stopped at node 7, object 60ABh sub-index 2, because the bus is full, and "
               "the node's answer may find no room on it. Find out who sends so much, and read "
               "again. Values read until then: 1.");
    QTest::newRow("node 1 not heard on a full bus")
        << End::NothingAsked << 0 << Silence::BusFull
        << QStringLiteral("Nothing was read, because node 1, the bus controller, was not heard: the bus is "
                          "full, and the node's heartbeat may find no room on it. Find out who sends so "
                          "much, and read again.");
    QTest::newRow("silent and restarting")
        << End::NoAnswer << 7 << Silence::Restarting
        << QStringLiteral("The read stopped at node 7, object 60ABh sub-index 2, because the node keeps "
                          "restarting. Look at its supply. Values read until then: 1.");
}

void tst_ReadRecord::saysEnds()
{
    QFETCH(ReadSummary::End, end);
    QFETCH(int, nodeId);
    QFETCH(ReadWords::Silence, silence);
    ReadSummary summary;
    summary.end = end;
    summary.nodeId = static_cast<quint8>(nodeId);
    summary.key = {0x60AB, 2};
    summary.reason = QStringLiteral("The adapter was unplugged.");
    summary.record.note(7, {0x1000, 0}, ReadResult::value());
    summary.record.note(7, {0x1001, 0}, ReadResult::refusal(noObject));
    QTEST(ReadWords::end(summary, silence), "sentence");
}

QTEST_GUILESS_MAIN(tst_ReadRecord)
#include "tst_readrecord.moc"
