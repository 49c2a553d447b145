// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <trace/decoding/tracelines.h>

#include <QtTest>

namespace {

TraceFilter::Object anySub(quint16 index)
{
    return {index, -1};
}

} // namespace

/*! The list of a trace: lines, their frames, filter and search. */
class tst_TraceLines : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void transferIsOneLine();
    void linesStandWhereTheyBegin();
    void underWay();
    void framesOfALine();
    void partsOfATransfer();
    void mappingHoldsForEarlierLines();
    void earlierLinesInSlices();
    void earlierLinesFromTheBeginningWithEachMapping();
    void growsWithItsFrames();
    void inSlices();
    void rowOfAFrame();
    void rowAtATime();
    void rowAtATimeThatRunsBackward();

    void filterByNode();
    void filterByKind();
    void filterByObject();
    void filterByText();
    void sameWordsAreLookedIntoOnce();
    void filterByChannel();
    void filterWhatIsWrong();
    void filtersTogether();
    void filterOfAPart();
    void manyTransfersKeepTheirValues();

private:
    void add(quint32 id, const QByteArray &hex, quint8 flags = 0, quint8 channel = 0)
    {
        TraceFrame frame = frameAt(m_time += millisecond, id, hex, flags);
        frame.channel = channel;
        m_frames.push_back(frame);
    }
    QStringList texts() const
    {
        QStringList texts;
        for (std::size_t row = 0; row < m_lines->size(); ++row)
            texts += m_lines->text(row).text;
        return texts;
    }
    /*! The first transmit PDO of node 2 on 6F1h, read in three lines. */
    void addMapping()
    {
        add(0x602, "4000180100000000");
        add(0x582, "43001801f1060000");
        add(0x602, "40001a0000000000");
        add(0x582, "4f001a0001000000");
        add(0x602, "40001a0100000000");
        add(0x582, "43001a0120014060");
    }
    int pdoLines() const
    {
        int count = 0;
        for (std::size_t row = 0; row < m_lines->size(); ++row)
            count += m_lines->at(row).kind == FrameKind::Pdo ? 1 : 0;
        return count;
    }
    /*! A ride in small: what each filter has something of. */
    void addRide();
    QVector<int> rowsOf(const TraceFilter &filter) const
    {
        QVector<int> rows;
        for (const quint32 row : m_lines->filtered(filter))
            rows.append(int(row));
        return rows;
    }

    qint64 m_time = 0;
    std::vector<TraceFrame> m_frames;
    TraceBook m_book;
    std::unique_ptr<TraceLines> m_lines;
};

void tst_TraceLines::init()
{
    m_time = 0;
    m_frames.clear();
    m_book = TraceBook();
    m_lines = std::make_unique<TraceLines>(&m_frames, &m_book);
}

void tst_TraceLines::addRide()
{
    add(0x000, "0100");             // 0
    add(0x702, "00");               // 1: boot-up
    add(0x602, "4000180100000000"); // 2: nothing of interest, does not exist
    add(0x582, "8000180100000206");
    add(0x602, "4001180100000000"); // 3
    add(0x582, "4301180182020000");
    add(0x602, "40011a0000000000"); // 4
    add(0x582, "4f011a0001000000");
    add(0x602, "40011a0100000000"); // 5
    add(0x582, "43011a0120014060");
    add(0x282, "84990000");         // 6: PDO 2
    add(0x084, "1042090000000000"); // 7: emergency of node 4
    add(0x604, "4064610200000000"); // 8: no answer
    add(0x604, "8064610200000405");
    add(0x704, "05", 0, 1); // 9: on another channel
    add(0x282, "8499");     // 10: too short
    m_lines->finish();
}

void tst_TraceLines::transferIsOneLine()
{
    add(0x602, "4064610200000000");
    add(0x582, "4b646102d0200000");
    m_lines->finish();
    QCOMPARE(texts(), QStringList(QStringLiteral("read 6164h.2 Relative battery Wh capacity = 84.00 %")));
    QCOMPARE(m_lines->text(0).detail, QStringLiteral("2 frames, 1.0 ms"));
    QCOMPARE(m_lines->at(0).kind, FrameKind::Sdo);
    QCOMPARE(m_lines->at(0).nodeId, quint8(2));
    QVERIFY(m_lines->transfer(0)->hasValue());
}

void tst_TraceLines::linesStandWhereTheyBegin()
{
    add(0x602, "4064610200000000");
    add(0x080, "");
    add(0x582, "4b646102d0200000");
    add(0x702, "05");
    m_lines->finish();
    QCOMPARE(texts(), (QStringList{QStringLiteral("read 6164h.2 Relative battery Wh capacity = 84.00 %"),
                                   QStringLiteral("SYNC"), QStringLiteral("heartbeat: Operational")}));
    QCOMPARE(m_lines->time(0), qint64(1000));
    QCOMPARE(m_lines->time(1), qint64(2000));
    QCOMPARE(m_lines->time(2), qint64(4000));
}

void tst_TraceLines::underWay()
{
    add(0x602, "4064610200000000");
    m_lines->advance();
    QCOMPARE(texts(), QStringList(QStringLiteral("request to read, under way")));
    QVERIFY(!m_lines->transfer(0));
    add(0x582, "8064610200000606");
    m_lines->advance();
    QCOMPARE(m_lines->size(), std::size_t(1));
    QCOMPARE(m_lines->at(0).mark, TraceMark::Warning);
    QVERIFY(m_lines->transfer(0).has_value());
}

void tst_TraceLines::framesOfALine()
{
    add(0x602, "4064610200000000");
    add(0x080, "");
    add(0x602, "4064610300000000");
    add(0x582, "4b64610300000000");
    add(0x582, "4b646102d0200000");
    m_lines->finish();
    QCOMPARE(m_lines->frames(0), (std::vector<std::size_t>{0, 4}));
    QCOMPARE(m_lines->frames(1), (std::vector<std::size_t>{1}));
    QCOMPARE(m_lines->frames(2), (std::vector<std::size_t>{2, 3}));
}

void tst_TraceLines::partsOfATransfer()
{
    add(0x602, "4008100000000000");
    add(0x582, "4108100002000000");
    add(0x182, "00");
    add(0x602, "6000000000000000");
    add(0x582, "0b41420000000000");
    m_lines->finish();
    const std::vector<QVector<FramePart>> parts = m_lines->parts(0);
    QCOMPARE(parts.size(), std::size_t(4));
    QCOMPARE(parts[0].first().text, QStringLiteral("request to read"));
    QCOMPARE(parts[2].first().text, QStringLiteral("request for a segment, toggle bit 0"));
    QCOMPARE(parts[3].first().text, QStringLiteral("segment of a read, toggle bit 0, the last one"));
}

void tst_TraceLines::mappingHoldsForEarlierLines()
{
    add(0x6F1, "84990000"); // an identifier that nobody knows yet
    addMapping();
    m_lines->advance();
    QCOMPARE(m_lines->at(0).kind, FrameKind::Other);
    m_lines->finish();
    QCOMPARE(m_lines->at(0).kind, FrameKind::Pdo);
    QCOMPARE(m_lines->at(0).nodeId, quint8(2));
    QCOMPARE(m_lines->text(0).text, QStringLiteral("PDO 1: Device actual voltage = 39.30 V"));
}

void tst_TraceLines::earlierLinesInSlices()
{
    for (int i = 0; i < 10; ++i)
        add(0x6F1, "84990000");
    m_lines->advance();
    QVERIFY(!m_lines->refresh(4)); // nothing was learnt
    addMapping();
    m_lines->close();
    QCOMPARE(m_lines->size(), std::size_t(13));
    QCOMPARE(pdoLines(), 0);
    QVERIFY(m_lines->refresh(4));
    QCOMPARE(pdoLines(), 4);
    QVERIFY(m_lines->refresh(4));
    QCOMPARE(pdoLines(), 8);
    add(0x6F1, "84990000"); // sorted as it comes
    m_lines->advance();
    QCOMPARE(pdoLines(), 9);
    QVERIFY(m_lines->refresh(4));
    QCOMPARE(pdoLines(), 11);
    QVERIFY(!m_lines->refresh(4));
    QVERIFY(!m_lines->refresh(4));
}

void tst_TraceLines::earlierLinesFromTheBeginningWithEachMapping()
{
    for (int i = 0; i < 10; ++i)
        add(0x6F1, "84990000");
    addMapping();
    m_lines->advance();
    QVERIFY(m_lines->refresh(4));
    QCOMPARE(pdoLines(), 4);
    add(0x602, "4000180100000000");
    add(0x582, "43001801f2060000"); // another identifier, from here on
    add(0x6F2, "84990000");
    m_lines->advance();
    QCOMPARE(pdoLines(), 5);
    QVERIFY(!m_lines->refresh(100));
    QCOMPARE(pdoLines(), 11);
}

void tst_TraceLines::growsWithItsFrames()
{
    for (int i = 0; i < 1000; ++i) {
        add(0x602, "4064610200000000");
        m_lines->advance();
        add(0x582, "4b646102d0200000");
        m_lines->advance();
    }
    QCOMPARE(m_lines->size(), std::size_t(1000));
    QCOMPARE(m_lines->rowOfFrame(1999), std::size_t(999));
}

void tst_TraceLines::inSlices()
{
    for (int i = 0; i < 10; ++i)
        add(0x080, "");
    QVERIFY(m_lines->advance(4));
    QCOMPARE(m_lines->size(), std::size_t(4));
    QVERIFY(m_lines->advance(4));
    QVERIFY(!m_lines->advance(4));
    QCOMPARE(m_lines->size(), std::size_t(10));
}

void tst_TraceLines::rowOfAFrame()
{
    addRide();
    QCOMPARE(m_lines->size(), std::size_t(11));
    QCOMPARE(m_lines->rowOfFrame(0), std::size_t(0));
    QCOMPARE(m_lines->rowOfFrame(3), std::size_t(2)); // the answer of a transfer
    QCOMPARE(m_lines->rowOfFrame(10), std::size_t(6));
    QCOMPARE(m_lines->rowOfFrame(99), m_lines->size());
}

void tst_TraceLines::rowAtATime()
{
    addRide();
    QCOMPARE(m_lines->rowAt(0), std::size_t(0));
    QCOMPARE(m_lines->rowAt(11 * millisecond), std::size_t(6));
    QCOMPARE(m_lines->rowAt(second), m_lines->size());
}

void tst_TraceLines::rowAtATimeThatRunsBackward()
{
    add(0x080, "");
    m_time = 50 * millisecond;
    add(0x080, "");
    m_time = 0;
    add(0x080, "");
    m_lines->finish();
    QCOMPARE(m_lines->rowAt(10 * millisecond), std::size_t(1));
}

void tst_TraceLines::filterByNode()
{
    addRide();
    TraceFilter filter;
    filter.nodes.set(4);
    QCOMPARE(rowsOf(filter), (QVector<int>{0, 7, 8, 9})); // the command to all is for it as well
}

void tst_TraceLines::filterByKind()
{
    addRide();
    TraceFilter filter;
    filter.kinds.set(std::size_t(FrameKind::Pdo));
    filter.kinds.set(std::size_t(FrameKind::Heartbeat));
    QCOMPARE(rowsOf(filter), (QVector<int>{1, 6, 9, 10}));
}

void tst_TraceLines::filterByObject()
{
    addRide();
    TraceFilter filter;
    filter.objects.append(anySub(0x6040));
    QCOMPARE(rowsOf(filter), (QVector<int>{6, 10})); // in PDOs
    filter.objects.append({0x1A01, 1});
    QCOMPARE(rowsOf(filter), (QVector<int>{5, 6, 10}));
    filter.objects = {{0x6040, 2}};
    QCOMPARE(rowsOf(filter), QVector<int>());
}

void tst_TraceLines::filterByText()
{
    addRide();
    TraceFilter filter;
    filter.text = QStringLiteral("39.30");
    QCOMPARE(rowsOf(filter), (QVector<int>{6}));
    filter.text = QStringLiteral("VOLTAGE");
    QCOMPARE(rowsOf(filter), (QVector<int>{6, 10}));
}

/*! Lines that say the same are looked into once, so what differs in anything must be told apart. */
void tst_TraceLines::sameWordsAreLookedIntoOnce()
{
    for (int round = 0; round < 2; ++round) {
        add(0x705, "05");
        add(0x705, "7F");
        add(0x705, "05", TraceFrame::Extended);
        add(0x705, "", TraceFrame::Remote);
        add(0x706, "05");
        add(0x602, "4000200100000000");
        add(0x582, "4f00200105000000");
        add(0x602, "4000200100000000");
        add(0x582, "4b00200105000000");
        add(0x602, "2f00200105000000");
        add(0x582, "6000200100000000");
        add(0x602, "4000200100000000");
        add(0x582, "8000200105000000");
    }
    m_lines->finish();
    QCOMPARE(m_lines->size(), std::size_t(18));
    const QStringList all = texts();
    for (const char *word : {"operational", "pre-operational", "00000705h", "guarding", "= 5 (05h)",
                             "(0005h)", "write", "0000 0005h", "read"}) {
        const QString text = QString::fromLatin1(word);
        TraceFilter filter;
        filter.text = text;
        QVector<int> expected;
        for (int row = 0; row < all.size(); ++row) {
            if (all.at(row).contains(text, Qt::CaseInsensitive))
                expected.append(row);
        }
        QVERIFY(!expected.isEmpty());
        QCOMPARE(rowsOf(filter), expected);
    }
}

void tst_TraceLines::filterByChannel()
{
    addRide();
    TraceFilter filter;
    filter.channel = 1;
    QCOMPARE(rowsOf(filter), (QVector<int>{9}));
}

void tst_TraceLines::filterWhatIsWrong()
{
    addRide();
    TraceFilter filter;
    filter.isWrongOnly = true;
    QCOMPARE(rowsOf(filter), (QVector<int>{7, 8, 10}));
}

void tst_TraceLines::filtersTogether()
{
    addRide();
    TraceFilter filter;
    QVERIFY(filter.isEmpty());
    QCOMPARE(rowsOf(filter).size(), 11);
    filter.isWrongOnly = true;
    filter.nodes.set(4);
    filter.kinds.set(std::size_t(FrameKind::Sdo));
    QVERIFY(!filter.isEmpty());
    QCOMPARE(rowsOf(filter), (QVector<int>{8}));
}

void tst_TraceLines::filterOfAPart()
{
    addRide();
    TraceFilter filter;
    filter.isWrongOnly = true;
    QCOMPARE(m_lines->filtered(filter, 8), (std::vector<quint32>{8, 10}));
    QCOMPARE(m_lines->filtered(filter, 0, 8), (std::vector<quint32>{7}));
}

void tst_TraceLines::manyTransfersKeepTheirValues()
{
    for (int i = 0; i < 3000; ++i) {
        const QByteArray value = QByteArray::number(i % 100).rightJustified(2, '0');
        add(0x602, "4000200" + QByteArray::number(i % 5) + "00000000");
        add(0x582, "4f00200" + QByteArray::number(i % 5) + value + "000000");
    }
    m_lines->finish();
    QCOMPARE(m_lines->size(), std::size_t(3000));
    for (int i = 0; i < 3000; ++i) {
        const std::optional<SdoTransfer> transfer = m_lines->transfer(std::size_t(i));
        QCOMPARE(transfer->data.toHex(), QByteArray::number(i % 100).rightJustified(2, '0'));
        QCOMPARE(int(transfer->object.subIndex), i % 5);
        QCOMPARE(transfer->firstFrame, std::size_t(2 * i));
        QCOMPARE(transfer->frames, 2);
    }
}

QTEST_GUILESS_MAIN(tst_TraceLines)
#include "tst_tracelines.moc"
