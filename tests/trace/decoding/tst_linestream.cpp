// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <trace/decoding/linestream.h>
#include <trace/decoding/tracedecoder.h>

#include <QtTest>

/*! Lines of frames that are not kept. */
class tst_LineStream : public QObject
{
    Q_OBJECT

private slots:
    void asTheyBegin();
    void asTheyEnd();
    void theEnd();
    void silenceHoldsUpOnlyForAWhile();
    void manyLinesWaitForNobody();
    void teachesTheBook();

private:
    static TraceFrame frame(quint32 id, const QByteArray &hex, qint64 time = 0)
    {
        return frameAt(time, id, hex);
    }
    /*! "1", "2+": positions, of transfers with a plus. */
    static QString positions(LineStream *stream)
    {
        QStringList texts;
        for (const StreamedLine &line : stream->take())
            texts += QString::number(line.position) + (line.transfer ? QStringLiteral("+") : QString());
        return texts.join(QLatin1Char(' '));
    }

    TraceBook m_book;
};

void tst_LineStream::asTheyBegin()
{
    LineStream stream(&m_book, LineStream::Order::AsTheyBegin);
    stream.handle(frame(0x080, ""));
    QCOMPARE(positions(&stream), QStringLiteral("0"));
    stream.handle(frame(0x602, "4064610200000000"));
    stream.handle(frame(0x080, ""));
    stream.handle(frame(0x603, "4064610200000000"));
    stream.handle(frame(0x583, "4b646102d0200000"));
    QCOMPARE(positions(&stream), QString());
    stream.handle(frame(0x582, "4b646102d0200000"));
    QCOMPARE(positions(&stream), QStringLiteral("1+ 2 3+"));
    stream.finish();
    QCOMPARE(positions(&stream), QString());
}

void tst_LineStream::asTheyEnd()
{
    LineStream stream(&m_book, LineStream::Order::AsTheyEnd);
    stream.handle(frame(0x602, "4064610200000000"));
    QCOMPARE(positions(&stream), QString());
    stream.handle(frame(0x080, ""));
    QCOMPARE(positions(&stream), QStringLiteral("1"));
    stream.handle(frame(0x582, "4b646102d0200000"));
    QCOMPARE(positions(&stream), QStringLiteral("0+"));
}

void tst_LineStream::theEnd()
{
    for (const LineStream::Order order : {LineStream::Order::AsTheyBegin, LineStream::Order::AsTheyEnd}) {
        LineStream stream(&m_book, order);
        stream.handle(frame(0x602, "4064610200000000"));
        stream.finish();
        const std::vector<StreamedLine> lines = stream.take();
        QCOMPARE(lines.size(), std::size_t(1));
        QCOMPARE(lines.front().transfer->outcome, SdoTransfer::Outcome::Unfinished);
    }
}

void tst_LineStream::silenceHoldsUpOnlyForAWhile()
{
    LineStream stream(&m_book, LineStream::Order::AsTheyBegin);
    stream.handle(frame(0x602, "4064610200000000"));
    for (int i = 1; i <= 10; ++i)
        stream.handle(frame(0x080, "", i * second));
    QCOMPARE(positions(&stream), QString());
    stream.handle(frame(0x080, "", 11 * second));
    QCOMPARE(positions(&stream), QStringLiteral("0+ 1 2 3 4 5 6 7 8 9 10 11"));
}

void tst_LineStream::manyLinesWaitForNobody()
{
    LineStream stream(&m_book, LineStream::Order::AsTheyBegin);
    stream.handle(frame(0x602, "4064610200000000"));
    for (int i = 0; i < 100'000; ++i)
        stream.handle(frame(0x080, ""));
    QCOMPARE(stream.take().size(), std::size_t(100'000));
    stream.handle(frame(0x582, "4b646102d0200000"));
    QCOMPARE(positions(&stream), QStringLiteral("0+")); // late, and not lost
}

void tst_LineStream::teachesTheBook()
{
    LineStream stream(&m_book, LineStream::Order::AsTheyEnd);
    stream.handle(frame(0x602, "4000180100000000"));
    stream.handle(frame(0x582, "4300180182010000"));
    stream.handle(frame(0x602, "40001a0000000000"));
    stream.handle(frame(0x582, "4f001a0001000000"));
    stream.handle(frame(0x602, "40001a0100000000"));
    stream.handle(frame(0x582, "43001a0120014060"));
    QVERIFY(m_book.pdos().find(frame(0x182, "84990000"), 6) != nullptr);
}

QTEST_GUILESS_MAIN(tst_LineStream)
#include "tst_linestream.moc"
