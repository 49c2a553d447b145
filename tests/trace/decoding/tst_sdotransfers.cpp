// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <canopen/objectdictionary.h>
#include <canopen/sdoserver.h>
#include <trace/transfers/sdotransfers.h>

#include <QCanBusFrame>
#include <QtTest>

using CanOpen::ObjectKey;
using Outcome = SdoTransfer::Outcome;
using Protocol = SdoTransfer::Protocol;

Q_DECLARE_METATYPE(SdoTransfer::Outcome)

namespace {

constexpr quint32 request = 0x602; // of node 2
constexpr quint32 answer = 0x582;

/*! Feeds a SdoTransfers a frame a millisecond, or later. */
class Feed
{
public:
    SdoTransfers::Place add(quint32 id, const QByteArray &hex, quint8 flags = 0, quint8 channel = 0)
    {
        TraceFrame frame = frameAt(m_time += millisecond, id, hex, flags);
        frame.channel = channel;
        return m_transfers.handle(frame, m_position++);
    }
    void wait(qint64 time) { m_time += time; }
    std::vector<SdoTransfer> taken() { return m_transfers.takeFinished(); }
    std::vector<SdoTransfer> finished()
    {
        m_transfers.finish();
        return taken();
    }
    /*! The only one. */
    SdoTransfer only()
    {
        const std::vector<SdoTransfer> all = finished();
        if (all.size() != 1)
            qFatal("%d transfers", int(all.size()));
        return all.front();
    }

    /*! A request to a server and its answers. */
    void ask(CanOpen::SdoServer *server, const QByteArray &hex)
    {
        add(request, hex);
        const QVector<QCanBusFrame> answers
            = server->handleFrame(QCanBusFrame(request, QByteArray::fromHex(hex)));
        for (const QCanBusFrame &frame : answers)
            add(frame.frameId(), frame.payload().toHex());
    }

private:
    SdoTransfers m_transfers;
    qint64 m_time = 0;
    std::size_t m_position = 0;
};

CanOpen::ObjectDictionary dictionaryWith(ObjectKey key, const QByteArray &data)
{
    CanOpen::ObjectDictionary dictionary;
    CanOpen::ObjectEntry entry;
    entry.type = CanOpen::DataType::Domain;
    entry.access = CanOpen::Access::ReadWrite;
    entry.data = data;
    dictionary.insert(key, entry);
    return dictionary;
}

QByteArray numbers(int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes.append(static_cast<char>(i * 7));
    return bytes;
}

} // namespace

/*! Whole transfers out of frames that somebody else exchanged. */
class tst_SdoTransfers : public QObject
{
    Q_OBJECT

private slots:
    void expeditedUpload();
    void expeditedDownload();
    void sizeThatIsNotTold();
    void segmentedUpload();
    void segmentedDownload();
    void blockUpload();
    void blockUploadInTwoBlocks();
    void blockUploadWithRepeatedSegments();
    void blockUploadThatGoesPlain();
    void blockDownload();
    void segmentThatLooksLikeARequest();
    void otherFramesBetween();

    void abortOfTheServer();
    void abortWithoutItsObject();
    void abortOfTheClient();
    void timeOutOfTheClient();
    void silence();
    void silenceIsToldWhenOtherFramesCome();
    void endOfTheTrace();
    void clientThatLeaves();

    void wrongToggle();
    void wrongToggleOfADownload();
    void copyOfASegment();
    void repeatedSegmentRequest();
    void lostSegment();
    void segmentBehindOneThatIsLost_data();
    void segmentBehindOneThatIsLost();
    void requestInTheMiddleOfABlock_data();
    void requestInTheMiddleOfABlock();
    void readOfAnotherClientInTheMiddleOfABlock();
    void copyOfABlockSegment();
    void lostBlockSegment();
    void wrongSize();
    void wrongChecksum();

    void lateAnswer();
    void repeatedRequest();
    void twoClientsByDirection();
    void twoClientsByTheirSegments();

    void strayFrames();
    void whatIsNoSdo();
    void nodesAndChannelsApart();
    void timesThatRunBackward();
    void timesAtTheEdge();
    void firstSegmentOfZeros();
    void timeOutOfTheClientInItsOwnTurn();
    void silenceAfterAWrongToggle();
    void repeatedSegmentOfADownload();
    void segmentsBehindTheLastOne();
    void acknowledgeOfWhatIsNotThere();
    void asMuchAsIsKept();
    void moreThanIsKept();
};

void tst_SdoTransfers::expeditedUpload()
{
    Feed feed;
    const SdoTransfers::Place first = feed.add(request, "4064610200000000");
    QCOMPARE(first.transfer, 1U);
    QCOMPARE(first.step, SdoStep::UploadRequest);
    const SdoTransfers::Place next = feed.add(answer, "4b646102d0200000");
    QCOMPARE(next.transfer, 1U);
    QCOMPARE(next.step, SdoStep::UploadAnswer);

    const std::vector<SdoTransfer> taken = feed.taken();
    QCOMPARE(taken.size(), std::size_t(1));
    const SdoTransfer &transfer = taken.front();
    QCOMPARE(transfer.number, 1U);
    QCOMPARE(transfer.nodeId, quint8(2));
    QVERIFY(transfer.object == (ObjectKey{0x6164, 2}));
    QVERIFY(transfer.isUpload);
    QVERIFY(transfer.hasValue());
    QVERIFY(!transfer.isSizeUnknown);
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.protocol, Protocol::Expedited);
    QCOMPARE(int(transfer.problems), 0);
    QCOMPARE(transfer.frames, 2);
    QCOMPARE(transfer.begin, qint64(1000));
    QCOMPARE(transfer.end, qint64(2000));
    QCOMPARE(transfer.firstFrame, std::size_t(0));
    QCOMPARE(transfer.lastFrame, std::size_t(1));
    QCOMPARE(transfer.data.toHex(), QByteArray("d020"));
}

void tst_SdoTransfers::expeditedDownload()
{
    Feed feed;
    feed.add(request, "2b171000f4010000", TraceFrame::Sent);
    feed.add(answer, "6017100000000000");
    const SdoTransfer transfer = feed.only();
    QVERIFY(!transfer.isUpload);
    QVERIFY(transfer.isSent);
    QVERIFY(transfer.object == (ObjectKey{0x1017, 0}));
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data.toHex(), QByteArray("f401"));
}

void tst_SdoTransfers::sizeThatIsNotTold()
{
    Feed feed;
    feed.add(request, "4000100000000000");
    feed.add(answer, "42001000c6010000");
    const SdoTransfer transfer = feed.only();
    QVERIFY(transfer.isSizeUnknown);
    QVERIFY(transfer.hasValue());
    QCOMPARE(transfer.data.toHex(), QByteArray("c6010000"));
}

void tst_SdoTransfers::segmentedUpload()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    QCOMPARE(feed.add(request, "6000000000000000").step, SdoStep::UploadSegmentRequest);
    QCOMPARE(feed.add(answer, "0044582d53656e73").step, SdoStep::UploadSegment);
    feed.add(request, "7000000000000000");
    feed.add(answer, "1b65210000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.protocol, Protocol::Segmented);
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, QByteArray("DX-Sense!"));
    QCOMPARE(transfer.frames, 6);
    QCOMPARE(int(transfer.problems), 0);
}

void tst_SdoTransfers::segmentedDownload()
{
    Feed feed;
    feed.add(request, "2108200009000000");
    feed.add(answer, "6008200000000000");
    QCOMPARE(feed.add(request, "0044582d53656e73").step, SdoStep::DownloadSegment);
    QCOMPARE(feed.add(answer, "2000000000000000").step, SdoStep::DownloadSegmentAnswer);
    feed.add(request, "1b65210000000000");
    feed.add(answer, "3000000000000000");
    const SdoTransfer transfer = feed.only();
    QVERIFY(!transfer.isUpload);
    QCOMPARE(transfer.protocol, Protocol::Segmented);
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, QByteArray("DX-Sense!"));
    QCOMPARE(transfer.frames, 6);
}

void tst_SdoTransfers::blockUpload()
{
    CanOpen::ObjectDictionary dictionary = dictionaryWith({0x2000, 0}, numbers(20));
    CanOpen::SdoServer server(2, &dictionary);
    Feed feed;
    feed.ask(&server, "a40020007f000000");
    feed.ask(&server, "a300000000000000");
    feed.ask(&server, "a2037f0000000000");
    feed.ask(&server, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.protocol, Protocol::Block);
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, numbers(20));
    QCOMPARE(transfer.frames, 9);
    QCOMPARE(int(transfer.problems), 0);
}

void tst_SdoTransfers::blockUploadInTwoBlocks()
{
    CanOpen::ObjectDictionary dictionary = dictionaryWith({0x2000, 0}, numbers(40));
    CanOpen::SdoServer server(2, &dictionary);
    Feed feed;
    feed.ask(&server, "a400200004000000"); // blocks of four segments
    feed.ask(&server, "a300000000000000");
    feed.ask(&server, "a204040000000000");
    feed.ask(&server, "a202040000000000");
    feed.ask(&server, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, numbers(40));
}

void tst_SdoTransfers::blockUploadWithRepeatedSegments()
{
    CanOpen::ObjectDictionary dictionary = dictionaryWith({0x2000, 0}, numbers(28));
    CanOpen::SdoServer server(2, &dictionary);
    Feed feed;
    feed.ask(&server, "a400200003000000");
    feed.ask(&server, "a300000000000000");
    feed.ask(&server, "a201030000000000"); // the client has but the first of three
    feed.ask(&server, "a203030000000000");
    feed.ask(&server, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, numbers(28));
}

void tst_SdoTransfers::blockUploadThatGoesPlain()
{
    Feed feed;
    feed.add(request, "a40018007f000000");
    feed.add(answer, "4f00180005000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.protocol, Protocol::Expedited);
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data.toHex(), QByteArray("05"));
}

void tst_SdoTransfers::blockDownload()
{
    Feed feed;
    QCOMPARE(feed.add(request, "c60020000a000000").step, SdoStep::BlockDownloadRequest);
    QCOMPARE(feed.add(answer, "a400200002000000").step, SdoStep::BlockDownloadAnswer);
    QCOMPARE(feed.add(request, "01000102030405 06").step, SdoStep::BlockDownloadSegment);
    feed.add(request, "8207080900000000");
    QCOMPARE(feed.add(answer, "a202020000000000").step, SdoStep::BlockDownloadAcknowledge);
    // CRC-16 of 00 to 09 with polynomial 1021h: 2378h
    QCOMPARE(feed.add(request, "d178230000000000").step, SdoStep::BlockDownloadEnd);
    QCOMPARE(feed.add(answer, "a100000000000000").step, SdoStep::BlockDownloadEndAnswer);
    const SdoTransfer transfer = feed.only();
    QVERIFY(!transfer.isUpload);
    QCOMPARE(transfer.protocol, Protocol::Block);
    QCOMPARE(transfer.data.toHex(), QByteArray("00010203040506070809"));
    QCOMPARE(int(transfer.problems), 0);
    QCOMPARE(transfer.outcome, Outcome::Done);
}

/*! Segment 32 of a block begins like an expedited write, segment 64 like a read. */
void tst_SdoTransfers::segmentThatLooksLikeARequest()
{
    Feed feed;
    feed.add(request, "c0002000 00000000");
    feed.add(answer, "a00020007f000000");
    for (int number = 1; number <= 70; ++number) {
        const QByteArray first = QByteArray(1, static_cast<char>(number)).toHex();
        QCOMPARE(feed.add(request, first + "01020304050607").step, SdoStep::BlockDownloadSegment);
    }
    feed.add(request, "c701020304050607");
    feed.add(answer, "a2477f0000000000");
    feed.add(request, "c100000000000000");
    feed.add(answer, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data.size(), 71 * 7);
}

void tst_SdoTransfers::otherFramesBetween()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    feed.add(0x182, "1122334455667788");
    feed.add(0x702, "05");
    feed.add(answer, "4b646102d0200000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.frames, 2);
    QCOMPARE(transfer.lastFrame, std::size_t(3));
}

void tst_SdoTransfers::abortOfTheServer()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    QCOMPARE(feed.add(answer, "8064610200000206").step, SdoStep::ServerAbort);
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::AbortedByServer);
    QCOMPARE(transfer.abortCode, 0x06020000U);
    QVERIFY(!transfer.hasValue());
}

void tst_SdoTransfers::abortWithoutItsObject()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    QCOMPARE(feed.add(answer, "8065610200000206").step, SdoStep::Stray); // of another object
    QCOMPARE(feed.add(answer, "8000000000000008").step, SdoStep::ServerAbort);
    QCOMPARE(feed.only().abortCode, 0x08000000U);
}

void tst_SdoTransfers::abortOfTheClient()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    QCOMPARE(feed.add(request, "8008100005000405").step, SdoStep::ClientAbort);
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::AbortedByClient);
    QCOMPARE(transfer.abortCode, 0x05040005U);
}

void tst_SdoTransfers::timeOutOfTheClient()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    feed.wait(500 * millisecond);
    feed.add(request, "8064610200000405");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::NoAnswer);
    QCOMPARE(transfer.abortCode, 0x05040000U);
    QCOMPARE(transfer.frames, 2);
}

void tst_SdoTransfers::silence()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    feed.wait(11 * second);
    feed.add(request, "4064610300000000");
    const std::vector<SdoTransfer> taken = feed.taken();
    QCOMPARE(taken.size(), std::size_t(1));
    QCOMPARE(taken.front().outcome, Outcome::NoAnswer);
    QCOMPARE(taken.front().end, qint64(1000));
    QCOMPARE(int(taken.front().problems), 0);
}

void tst_SdoTransfers::silenceIsToldWhenOtherFramesCome()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    feed.wait(9 * second);
    feed.add(0x701, "05");
    QVERIFY(feed.taken().empty());
    feed.wait(2 * second);
    feed.add(0x701, "05");
    const std::vector<SdoTransfer> taken = feed.taken();
    QCOMPARE(taken.size(), std::size_t(1));
    QCOMPARE(taken.front().outcome, Outcome::NoAnswer);
}

void tst_SdoTransfers::endOfTheTrace()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    QCOMPARE(feed.only().outcome, Outcome::Unfinished);
}

void tst_SdoTransfers::clientThatLeaves()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    feed.wait(11 * second);
    feed.add(0x701, "05");
    QCOMPARE(feed.only().outcome, Outcome::Unfinished);
}

void tst_SdoTransfers::wrongToggle()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    feed.add(request, "6000000000000000");
    feed.add(answer, "0044582d53656e73");
    feed.add(request, "7000000000000000");
    feed.add(answer, "0b65210000000000"); // without the toggle bit
    feed.add(request, "8008100000000305");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::AbortedByClient);
    QCOMPARE(transfer.abortCode, 0x05030000U);
    QVERIFY(transfer.has(SdoTransfer::WrongToggle));
    QVERIFY(!transfer.hasValue());
}

void tst_SdoTransfers::wrongToggleOfADownload()
{
    Feed feed;
    feed.add(request, "2108200009000000");
    feed.add(answer, "6008200000000000");
    feed.add(request, "0044582d53656e73");
    feed.add(answer, "3000000000000000"); // with the toggle bit
    feed.add(request, "1b65210000000000");
    feed.add(answer, "3000000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Broken);
    QCOMPARE(int(transfer.problems), int(SdoTransfer::WrongToggle));
}

void tst_SdoTransfers::copyOfASegment()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    feed.add(request, "6000000000000000");
    feed.add(answer, "0044582d53656e73");
    QCOMPARE(feed.add(answer, "0044582d53656e73").step, SdoStep::UploadSegment);
    feed.add(request, "7000000000000000");
    QCOMPARE(feed.add(answer, "0044582d53656e73").step, SdoStep::UploadSegment);
    feed.add(answer, "1b65210000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, QByteArray("DX-Sense!"));
    QCOMPARE(int(transfer.problems), int(SdoTransfer::Repeated));
    QCOMPARE(transfer.frames, 8);
}

void tst_SdoTransfers::repeatedSegmentRequest()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100002000000");
    feed.add(request, "6000000000000000");
    feed.add(request, "6000000000000000");
    feed.add(answer, "0b41420000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, QByteArray("AB"));
    QCOMPARE(int(transfer.problems), int(SdoTransfer::Repeated));
}

void tst_SdoTransfers::lostSegment()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    feed.add(request, "6000000000000000");
    // The first segment is not in the trace.
    feed.add(request, "7000000000000000");
    feed.add(answer, "1b65210000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Broken);
    QVERIFY(transfer.has(SdoTransfer::LostSegment));
    QVERIFY(!transfer.hasValue());
}

void tst_SdoTransfers::segmentBehindOneThatIsLost_data()
{
    QTest::addColumn<int>("lost");

    QTest::newRow("the next one looks like a write") << 31;
    QTest::newRow("the next one looks like a read") << 63;
}

/*! What comes behind a gap in the trace is no request, whatever it looks like. */
void tst_SdoTransfers::segmentBehindOneThatIsLost()
{
    QFETCH(int, lost);
    Feed feed;
    feed.add(request, "c0002000 00000000");
    feed.add(answer, "a00020007f000000");
    for (int number = 1; number <= 100; ++number) {
        const QByteArray first = QByteArray(1, static_cast<char>(number)).toHex();
        if (number != lost)
            QCOMPARE(feed.add(request, first + "01020304050607").step, SdoStep::BlockDownloadSegment);
    }
    feed.add(answer, "a2647f0000000000");
    feed.add(request, "c100000000000000");
    feed.add(answer, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Broken);
    QVERIFY(transfer.has(SdoTransfer::LostSegment));
    QVERIFY(!transfer.has(SdoTransfer::Overtaken));
}

void tst_SdoTransfers::requestInTheMiddleOfABlock_data()
{
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<qint64>("pause"); // before it, us
    QTest::addColumn<int>("step");

    QTest::newRow("a read at once") << QByteArray("4000100000000000") << qint64(0)
                                    << int(SdoStep::UploadRequest);
    QTest::newRow("a write after a while")
        << QByteArray("2f00200001000000") << 300 * millisecond << int(SdoStep::DownloadRequest);
    QTest::newRow("behind the block's last number")
        << QByteArray("5000200001020304") << qint64(0) << int(SdoStep::UploadRequest);
}

void tst_SdoTransfers::requestInTheMiddleOfABlock()
{
    QFETCH(QByteArray, hex);
    QFETCH(qint64, pause);
    QFETCH(int, step);
    Feed feed;
    feed.add(request, "c0002000 00000000");
    feed.add(answer, "a000200048000000"); // 72 segments
    feed.add(request, "0101020304050607");
    feed.wait(pause);
    QCOMPARE(int(feed.add(request, hex).step), step);
}

void tst_SdoTransfers::readOfAnotherClientInTheMiddleOfABlock()
{
    Feed feed;
    feed.add(request, "c000200000000000");
    feed.add(answer, "a00020007f000000");
    for (int number = 1; number <= 70; ++number) {
        if (number == 10)
            feed.add(request, "4000100000000000", TraceFrame::Sent);
        if (number == 12)
            feed.add(answer, "4300100007000000");
        const QByteArray first = QByteArray(1, static_cast<char>(number)).toHex();
        QCOMPARE(feed.add(request, first + "01020304050607").step, SdoStep::BlockDownloadSegment);
    }
    feed.add(request, "c701020304050607");
    feed.add(answer, "a2477f0000000000");
    feed.add(request, "c100000000000000");
    feed.add(answer, "a100000000000000");
    const std::vector<SdoTransfer> transfers = feed.finished();
    QCOMPARE(transfers.size(), std::size_t(2));
    QCOMPARE(transfers[0].data.toHex(), QByteArray("07000000"));
    QVERIFY(transfers[0].has(SdoTransfer::ForeignClient));
    QCOMPARE(transfers[1].outcome, Outcome::Done);
    QCOMPARE(transfers[1].data.size(), 71 * 7);
    QVERIFY(transfers[1].has(SdoTransfer::ForeignClient));
}

void tst_SdoTransfers::copyOfABlockSegment()
{
    Feed feed;
    feed.add(request, "a00020007f000000");
    feed.add(answer, "c20020000e000000");
    feed.add(request, "a300000000000000");
    feed.add(answer, "0101020304050607");
    feed.add(answer, "0101020304050607");
    feed.add(answer, "8208090a0b0c0d0e");
    feed.add(request, "a2027f0000000000");
    feed.add(answer, "c100000000000000");
    feed.add(request, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data.toHex(), QByteArray("0102030405060708090a0b0c0d0e"));
}

void tst_SdoTransfers::lostBlockSegment()
{
    Feed feed;
    feed.add(request, "a00020007f000000");
    feed.add(answer, "c20020000e000000");
    feed.add(request, "a300000000000000");
    // Segment 1 is not in the trace.
    feed.add(answer, "8201020304050607");
    feed.add(request, "a2027f0000000000");
    feed.add(answer, "c100000000000000");
    feed.add(request, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Broken);
    QVERIFY(transfer.has(SdoTransfer::LostSegment));
}

void tst_SdoTransfers::wrongSize()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100003000000");
    feed.add(request, "6000000000000000");
    feed.add(answer, "0b41420000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Broken);
    QCOMPARE(int(transfer.problems), int(SdoTransfer::SizeMismatch));
}

void tst_SdoTransfers::wrongChecksum()
{
    Feed feed;
    feed.add(request, "c60020000a000000");
    feed.add(answer, "a400200002000000");
    feed.add(request, "0100010203040506");
    feed.add(request, "8207080900000000");
    feed.add(answer, "a202020000000000");
    feed.add(request, "d179230000000000");
    feed.add(answer, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Broken);
    QCOMPARE(int(transfer.problems), int(SdoTransfer::WrongChecksum));
}

/*! The client has given up and asks for the next object; then the answer to the first comes. */
void tst_SdoTransfers::lateAnswer()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    feed.wait(500 * millisecond);
    QCOMPARE(feed.add(request, "4064610300000000").transfer, 2U);
    QCOMPARE(feed.add(answer, "4b646102d0200000").transfer, 1U);
    QCOMPARE(feed.add(answer, "4b64610301000000").transfer, 2U);
    const std::vector<SdoTransfer> taken = feed.taken();
    QCOMPARE(taken.size(), std::size_t(2));
    QCOMPARE(taken[0].number, 1U);
    QCOMPARE(taken[0].outcome, Outcome::Done);
    QCOMPARE(int(taken[0].problems), int(SdoTransfer::Overtaken));
    QCOMPARE(taken[0].data.toHex(), QByteArray("d020"));
    QCOMPARE(taken[1].data.toHex(), QByteArray("0100"));
    QCOMPARE(int(taken[1].problems), 0);
}

void tst_SdoTransfers::repeatedRequest()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    feed.wait(500 * millisecond);
    feed.add(request, "4064610200000000");
    feed.add(answer, "4b646102d0200000");
    const std::vector<SdoTransfer> all = feed.finished();
    QCOMPARE(all.size(), std::size_t(2));
    QCOMPARE(all[0].number, 2U);
    QCOMPARE(all[0].outcome, Outcome::Done);
    QCOMPARE(int(all[0].problems), int(SdoTransfer::Repeated));
    QCOMPARE(all[1].number, 1U);
    QCOMPARE(all[1].outcome, Outcome::NoAnswer);
    QCOMPARE(int(all[1].problems), int(SdoTransfer::Overtaken));
}

void tst_SdoTransfers::twoClientsByDirection()
{
    Feed feed;
    feed.add(request, "4064610200000000", TraceFrame::Sent);
    feed.add(request, "4000100000000000");
    feed.add(answer, "4b646102d0200000");
    feed.add(answer, "43001000c6010000");
    const std::vector<SdoTransfer> taken = feed.taken();
    QCOMPARE(taken.size(), std::size_t(2));
    QVERIFY(taken[0].has(SdoTransfer::ForeignClient));
    QVERIFY(taken[1].has(SdoTransfer::ForeignClient));
    QVERIFY(taken[0].isSent);
    QVERIFY(!taken[1].isSent);
}

void tst_SdoTransfers::twoClientsByTheirSegments()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    feed.add(request, "4000100000000000");
    feed.add(answer, "43001000c6010000");
    QCOMPARE(feed.add(request, "6000000000000000").transfer, 1U);
    QCOMPARE(feed.add(answer, "8000000001000405").transfer, 1U);
    const std::vector<SdoTransfer> taken = feed.taken();
    QCOMPARE(taken.size(), std::size_t(2));
    QCOMPARE(taken[0].number, 2U);
    QCOMPARE(taken[1].outcome, Outcome::AbortedByServer);
    QVERIFY(taken[1].has(SdoTransfer::ForeignClient));
}

void tst_SdoTransfers::strayFrames()
{
    Feed feed;
    QCOMPARE(feed.add(answer, "4b646102d0200000").step, SdoStep::Stray);
    QCOMPARE(feed.add(request, "6000000000000000").step, SdoStep::Stray);
    QCOMPARE(feed.add(answer, "0044582d53656e73").step, SdoStep::Stray);
    feed.add(request, "4064610200000000");
    feed.add(answer, "4b646102d0200000");
    QCOMPARE(feed.add(answer, "4b646102d0200000").transfer, 0U); // a copy
    QCOMPARE(feed.finished().size(), std::size_t(1));
}

void tst_SdoTransfers::whatIsNoSdo()
{
    Feed feed;
    QCOMPARE(feed.add(request, "4064610200000000", TraceFrame::Extended).step, SdoStep::None);
    QCOMPARE(feed.add(request, "", TraceFrame::Remote).step, SdoStep::None);
    QCOMPARE(feed.add(0x602, "4064610200000000", TraceFrame::Error).step, SdoStep::None);
    QCOMPARE(feed.add(0x600, "4064610200000000").step, SdoStep::None);
    QCOMPARE(feed.add(0x680, "4064610200000000").step, SdoStep::None);
    QCOMPARE(feed.add(request, "40646102000000").step, SdoStep::Stray);
    QVERIFY(feed.finished().empty());
}

void tst_SdoTransfers::nodesAndChannelsApart()
{
    Feed feed;
    feed.add(0x602, "4064610200000000");
    feed.add(0x603, "4064610200000000");
    feed.add(0x602, "4064610200000000", 0, 1);
    QCOMPARE(feed.add(0x582, "4b64610202000000", 0, 1).transfer, 3U);
    QCOMPARE(feed.add(0x583, "4b64610203000000").transfer, 2U);
    QCOMPARE(feed.add(0x582, "4b64610201000000").transfer, 1U);
    const std::vector<SdoTransfer> taken = feed.taken();
    QCOMPARE(taken.size(), std::size_t(3));
    QCOMPARE(taken[0].channel, quint8(1));
    QCOMPARE(taken[1].nodeId, quint8(3));
    for (const SdoTransfer &transfer : taken)
        QCOMPARE(int(transfer.problems), 0);
}

void tst_SdoTransfers::timesThatRunBackward()
{
    Feed feed;
    feed.add(request, "4064610200000000");
    feed.wait(-60 * second);
    feed.add(answer, "4b646102d0200000");
    QCOMPARE(feed.only().outcome, Outcome::Done);
}

void tst_SdoTransfers::timesAtTheEdge()
{
    SdoTransfers transfers;
    transfers.handle(frameAt(std::numeric_limits<qint64>::max(), request, "4064610200000000"), 0);
    transfers.handle(frameAt(std::numeric_limits<qint64>::min(), answer, "4b646102d0200000"), 1);
    transfers.handle(frameAt(std::numeric_limits<qint64>::max(), request, "4064610200000000"), 2);
    QCOMPARE(transfers.takeFinished().size(), std::size_t(1));
}

void tst_SdoTransfers::moreThanIsKept()
{
    constexpr int most = 4 * 1024 * 1024;
    Feed feed;
    feed.add(request, "4000200000000000");
    feed.add(answer, "4000200000000000");
    for (int sent = 0; sent <= most; sent += 14) {
        feed.add(request, "6000000000000000");
        feed.add(answer, "0001020304050607");
        feed.add(request, "7000000000000000");
        feed.add(answer, "1001020304050607");
    }
    feed.add(request, "6000000000000000");
    feed.add(answer, "0101020304050607");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QVERIFY(transfer.has(SdoTransfer::Cut));
    QVERIFY(!transfer.hasValue());
    QVERIFY(transfer.data.size() <= most);
}

void tst_SdoTransfers::firstSegmentOfZeros()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100008000000");
    feed.add(request, "6000000000000000");
    feed.add(answer, "0000000000000000");
    feed.add(request, "7000000000000000");
    feed.add(answer, "1d41000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, QByteArray("\0\0\0\0\0\0\0A", 8));
    QCOMPARE(int(transfer.problems), 0);
}

// The server has answered all that it was asked.
void tst_SdoTransfers::timeOutOfTheClientInItsOwnTurn()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    feed.add(request, "8008100000000405");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::AbortedByClient);
    QCOMPARE(transfer.abortCode, 0x05040000U);
}

void tst_SdoTransfers::silenceAfterAWrongToggle()
{
    Feed feed;
    feed.add(request, "4008100000000000");
    feed.add(answer, "4108100009000000");
    feed.add(request, "6000000000000000");
    feed.add(answer, "1044582d53656e73"); // with the toggle bit
    feed.wait(60 * 1000 * millisecond);
    feed.add(0x702, "05");
    const std::vector<SdoTransfer> transfers = feed.taken();
    QCOMPARE(transfers.size(), std::size_t(1));
    QCOMPARE(transfers.front().outcome, Outcome::Broken);
    QVERIFY(transfers.front().has(SdoTransfer::WrongToggle));
}

void tst_SdoTransfers::repeatedSegmentOfADownload()
{
    Feed feed;
    feed.add(request, "2108200009000000");
    feed.add(answer, "6008200000000000");
    feed.add(request, "0044582d53656e73");
    QCOMPARE(feed.add(request, "0044582d53656e73").step, SdoStep::DownloadSegment);
    feed.add(answer, "2000000000000000");
    feed.add(request, "1b65210000000000");
    feed.add(answer, "3000000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data, QByteArray("DX-Sense!"));
    QCOMPARE(int(transfer.problems), int(SdoTransfer::Repeated));
}

void tst_SdoTransfers::segmentsBehindTheLastOne()
{
    Feed feed;
    feed.add(request, "a00020007f000000");
    feed.add(answer, "c20020000e000000");
    feed.add(request, "a300000000000000");
    feed.add(answer, "0101020304050607");
    feed.add(answer, "8208090a0b0c0d0e");
    feed.add(answer, "03ffffffffffffff");
    feed.add(request, "a2027f0000000000");
    feed.add(answer, "c100000000000000");
    feed.add(request, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data.toHex(), QByteArray("0102030405060708090a0b0c0d0e"));
}

void tst_SdoTransfers::acknowledgeOfWhatIsNotThere()
{
    Feed feed;
    feed.add(request, "a00020007f000000");
    feed.add(answer, "c200200015000000");
    feed.add(request, "a300000000000000");
    feed.add(answer, "0101020304050607");
    feed.add(request, "a2027f0000000000"); // the second one is not in the trace
    feed.add(answer, "810f101112131415");
    feed.add(request, "a2017f0000000000");
    feed.add(answer, "c100000000000000");
    feed.add(request, "a100000000000000");
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Broken);
    QVERIFY(transfer.has(SdoTransfer::LostSegment));
    QVERIFY(!transfer.hasValue());
}

void tst_SdoTransfers::asMuchAsIsKept()
{
    constexpr int most = 4 * 1024 * 1024; // 599186 segments of seven bytes and one of two
    Feed feed;
    feed.add(request, "4000200000000000");
    feed.add(answer, "4000200000000000");
    bool isToggled = false;
    for (int left = most; left > 0; left -= 7) {
        feed.add(request, isToggled ? "7000000000000000" : "6000000000000000");
        const QByteArray first = left > 7 ? (isToggled ? "10" : "00") : (isToggled ? "1b" : "0b");
        feed.add(answer, first + "01020304050607");
        isToggled = !isToggled;
    }
    const SdoTransfer transfer = feed.only();
    QCOMPARE(transfer.outcome, Outcome::Done);
    QCOMPARE(transfer.data.size(), most);
    QVERIFY(!transfer.has(SdoTransfer::Cut));
    QVERIFY(transfer.hasValue());
}

QTEST_GUILESS_MAIN(tst_SdoTransfers)
#include "tst_sdotransfers.moc"
