// SPDX-License-Identifier: MIT
#include "../frames.h"
#include "transfers.h"

#include <trace/decoding/pdobook.h>

#include <QMap>
#include <QtTest>

using CanOpen::ObjectKey;

namespace {

/*! PDO 1 of node 2 with 6040h.1 of 32 bits. */
const QVector<QPair<ObjectKey, QByteArray>> &usual()
{
    static const QVector<QPair<ObjectKey, QByteArray>> objects{
        {{0x1800, 1}, "82010000"}, {{0x1A00, 0}, "01"}, {{0x1A00, 1}, "20014060"}};
    return objects;
}

CanOpen::ObjectLookup lookupIn(const QMap<ObjectKey, quint32> &values)
{
    return [values](ObjectKey key) -> std::optional<quint32> {
        const auto value = values.constFind(key);
        return value != values.constEnd() ? std::optional(*value) : std::nullopt;
    };
}

TraceFrame pdo(quint32 id = 0x182, quint8 flags = 0)
{
    return frameAt(0, id, "1122334455667788", flags);
}

} // namespace

/*! What PDOs carry, and since when. */
class tst_PdoBook : public QObject
{
    Q_OBJECT

private slots:
    void whatWasReadHeldBefore();
    void whatWasWrittenHoldsFromThenOn();
    void remapped();
    void switchedOff();
    void anotherIdentifier();
    void told();
    void readOverrulesTold();
    void writtenOverrulesTold();
    void toldAfterOtherObjectsWereHeard();
    void toldAfterARead();
    void toldAfterAWrite();
    void toldAgainAfterARead();
    void toldOfTheIdentifierThatWasRead();
    void readAsToldAfterAWrite();
    void receivedPdo();
    void sentBeforeReceived();
    void channelsApart();
    void extendedIdentifier();
    void failedTransfersTeachNothing();
    void liesOfMappings();
    void sameIdentifierTwice();
    void versionsAreBounded();

private:
    static void readUsual(PdoBook *book, std::size_t position = 100)
    {
        for (const auto &object : usual())
            book->learn(readOf(2, object.first, object.second, position++));
    }
};

void tst_PdoBook::whatWasReadHeldBefore()
{
    PdoBook book;
    QVERIFY(book.find(pdo(), 0) == nullptr);
    readUsual(&book);
    const PdoLayout *layout = book.find(pdo(), 0);
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->nodeId, quint8(2));
    QCOMPARE(layout->number, 1);
    QVERIFY(layout->isTransmit);
    QCOMPARE(layout->bytes, 4);
    QCOMPARE(layout->parts.size(), 1);
    QVERIFY(layout->parts.first().object == (ObjectKey{0x6040, 1}));
    QCOMPARE(int(layout->parts.first().bits), 32);
    QVERIFY(book.find(pdo(0x183), 0) == nullptr);
}

void tst_PdoBook::whatWasWrittenHoldsFromThenOn()
{
    PdoBook book;
    std::size_t position = 100;
    for (const auto &object : usual())
        book.learn(writeOf(2, object.first, object.second, position++));
    QVERIFY(book.find(pdo(), 101) == nullptr);
    QVERIFY(book.find(pdo(), 102) != nullptr);
    QVERIFY(book.find(pdo(), 5000) != nullptr);
}

void tst_PdoBook::remapped()
{
    PdoBook book;
    readUsual(&book);
    book.learn(writeOf(2, {0x1A00, 0}, "00", 200));
    book.learn(writeOf(2, {0x1A00, 1}, "10014260", 201));
    book.learn(writeOf(2, {0x1A00, 0}, "01", 202));
    QVERIFY(book.find(pdo(), 199)->contains(0x6040, 1));
    QVERIFY(book.find(pdo(), 200) == nullptr);
    QVERIFY(book.find(pdo(), 201) == nullptr);
    QVERIFY(book.find(pdo(), 202)->contains(0x6042, 1));
    QVERIFY(!book.find(pdo(), 202)->contains(0x6040, -1));
}

void tst_PdoBook::switchedOff()
{
    PdoBook book;
    readUsual(&book);
    book.learn(writeOf(2, {0x1800, 1}, "82010080", 200));
    QVERIFY(book.find(pdo(), 199) != nullptr);
    QVERIFY(book.find(pdo(), 200) == nullptr);
}

void tst_PdoBook::anotherIdentifier()
{
    PdoBook book;
    readUsual(&book);
    book.learn(writeOf(2, {0x1800, 1}, "f1060000", 200));
    QVERIFY(book.find(pdo(), 200) == nullptr);
    QVERIFY(book.find(pdo(0x6F1), 200) != nullptr);
    QVERIFY(book.find(pdo(0x6F1), 199) == nullptr);
}

void tst_PdoBook::told()
{
    PdoBook book;
    book.tell(2, lookupIn({{{0x1801, 1}, 0x282}, {{0x1A01, 0}, 1}, {{0x1A01, 1}, 0x60400120}}));
    const PdoLayout *layout = book.find(pdo(0x282), 0);
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->number, 2);
    TraceFrame other = pdo(0x282);
    other.channel = 3;
    QVERIFY(book.find(other, 7) != nullptr);
}

void tst_PdoBook::readOverrulesTold()
{
    PdoBook book;
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    book.learn(readOf(2, {0x1A00, 1}, "10014260", 500));
    QVERIFY(book.find(pdo(), 0)->contains(0x6042, 1)); // the device is not as its data sheet says
    book.learn(readOf(2, {0x1800, 1}, "82010080", 600));
    QVERIFY(book.find(pdo(), 0) == nullptr);
}

void tst_PdoBook::writtenOverrulesTold()
{
    PdoBook book;
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    book.learn(writeOf(2, {0x1A00, 1}, "10014260", 500));
    QVERIFY(book.find(pdo(), 499)->contains(0x6040, 1));
    QVERIFY(book.find(pdo(), 500)->contains(0x6042, 1));
}

/*! Another object of the PDO, and one of another PDO. */
void tst_PdoBook::toldAfterOtherObjectsWereHeard()
{
    PdoBook book;
    book.learn(readOf(2, {0x1800, 2}, "fe", 500));
    book.learn(readOf(2, {0x1805, 1}, "82060080", 501));
    const int before = book.revision();
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    QVERIFY(book.revision() > before);
    for (const std::size_t position : {0U, 499U, 502U}) {
        QVERIFY(book.find(pdo(), position) != nullptr);
        QVERIFY(book.find(pdo(), position)->contains(0x6040, 1));
    }
}

void tst_PdoBook::toldAfterARead()
{
    PdoBook book;
    book.learn(readOf(2, {0x1A00, 1}, "10014260", 500));
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    QVERIFY(book.find(pdo(), 0) != nullptr);
    QVERIFY(book.find(pdo(), 0)->contains(0x6042, 1)); // the device is not as its data sheet says
    QVERIFY(!book.find(pdo(), 0)->contains(0x6040, -1));
}

void tst_PdoBook::toldAfterAWrite()
{
    PdoBook book;
    book.learn(writeOf(2, {0x1A00, 1}, "10014260", 500));
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    QVERIFY(book.find(pdo(), 499) != nullptr);
    QVERIFY(book.find(pdo(), 499)->contains(0x6040, 1));
    QVERIFY(book.find(pdo(), 500) != nullptr);
    QVERIFY(book.find(pdo(), 500)->contains(0x6042, 1));
}

void tst_PdoBook::toldAgainAfterARead()
{
    PdoBook book;
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    book.learn(readOf(2, {0x1A00, 1}, "20014060", 500)); // as told
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60420110}}));
    QVERIFY(book.find(pdo(), 0)->contains(0x6040, 1));
    book.tell(2, lookupIn({{{0x1800, 1}, 0x6F1}}));
    QVERIFY(book.find(pdo(), 0) == nullptr);
    QVERIFY(book.find(pdo(0x6F1), 0)->contains(0x6040, 1));
}

void tst_PdoBook::toldOfTheIdentifierThatWasRead()
{
    PdoBook book;
    book.learn(readOf(2, {0x1800, 1}, "f1060000", 500));
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    QVERIFY(book.find(pdo(), 600) == nullptr);
    QVERIFY(book.find(pdo(0x6F1), 0) != nullptr);
    QVERIFY(book.find(pdo(0x6F1), 0)->contains(0x6040, 1));
}

void tst_PdoBook::readAsToldAfterAWrite()
{
    PdoBook book;
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    book.learn(writeOf(2, {0x1A00, 1}, "10014260", 500));
    book.learn(readOf(2, {0x1800, 1}, "82010000", 600)); // nothing new of before the write
    QVERIFY(book.find(pdo(), 499)->contains(0x6040, 1));
    QVERIFY(book.find(pdo(), 500)->contains(0x6042, 1));
    QVERIFY(book.find(pdo(), 601)->contains(0x6042, 1));
}

void tst_PdoBook::receivedPdo()
{
    PdoBook book;
    book.tell(4, lookupIn({{{0x1400, 1}, 0x204}, {{0x1600, 0}, 1}, {{0x1600, 1}, 0x60010010}}));
    const PdoLayout *layout = book.find(pdo(0x204), 0);
    QVERIFY(layout != nullptr);
    QVERIFY(!layout->isTransmit);
    QCOMPARE(layout->nodeId, quint8(4));
}

void tst_PdoBook::sentBeforeReceived()
{
    PdoBook book;
    book.tell(4, lookupIn({{{0x1400, 1}, 0x182}, {{0x1600, 0}, 1}, {{0x1600, 1}, 0x60010010}}));
    readUsual(&book);
    QCOMPARE(book.find(pdo(), 0)->nodeId, quint8(2));
}

void tst_PdoBook::channelsApart()
{
    PdoBook book;
    readUsual(&book);
    TraceFrame other = pdo();
    other.channel = 1;
    QVERIFY(book.find(other, 500) == nullptr);
}

void tst_PdoBook::extendedIdentifier()
{
    PdoBook book;
    book.tell(2, lookupIn({{{0x1800, 1}, 0x20000182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    QVERIFY(book.find(pdo(), 0) == nullptr);
    QVERIFY(book.find(pdo(0x182, TraceFrame::Extended), 0) != nullptr);
    QVERIFY(book.find(pdo(0x182, TraceFrame::Extended | TraceFrame::Remote), 0) == nullptr);
}

void tst_PdoBook::failedTransfersTeachNothing()
{
    PdoBook book;
    for (const auto &object : usual()) {
        SdoTransfer transfer = readOf(2, object.first, object.second);
        transfer.outcome = SdoTransfer::Outcome::Broken;
        book.learn(transfer);
    }
    QVERIFY(book.find(pdo(), 0) == nullptr);
    QCOMPARE(book.revision(), 0);
}

void tst_PdoBook::liesOfMappings()
{
    PdoBook book;
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 255}, {{0x1A00, 1}, 0x60400120}}));
    book.tell(3, lookupIn({{{0x1800, 1}, 0x183}, {{0x1A00, 0}, 2}, {{0x1A00, 1}, 0x60400120}}));
    book.tell(4, lookupIn({{{0x1800, 1}, 0x184}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x604001FF}}));
    for (const quint32 id : {0x182U, 0x183U, 0x184U})
        QVERIFY(book.find(pdo(id), 0) == nullptr);
}

void tst_PdoBook::sameIdentifierTwice()
{
    PdoBook book;
    book.tell(2, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60400120}}));
    book.tell(3, lookupIn({{{0x1800, 1}, 0x182}, {{0x1A00, 0}, 1}, {{0x1A00, 1}, 0x60420110}}));
    QCOMPARE(book.find(pdo(), 0)->nodeId, quint8(2));
}

void tst_PdoBook::versionsAreBounded()
{
    PdoBook book;
    readUsual(&book);
    for (std::size_t i = 0; i < 2000; ++i)
        book.learn(writeOf(2, {0x1A00, 1}, i % 2 == 0 ? "10014260" : "10024260", 1000 + i));
    QVERIFY(book.find(pdo(), 999)->contains(0x6040, 1));
    QVERIFY(book.find(pdo(), 1000)->contains(0x6042, 1));
    QVERIFY(book.find(pdo(), 1001)->contains(0x6042, 2));
    QVERIFY(book.find(pdo(), 5000) == nullptr); // not known any more is better than wrong
}

QTEST_GUILESS_MAIN(tst_PdoBook)
#include "tst_pdobook.moc"
