// SPDX-License-Identifier: MIT
#include "bytes.h"

#include <canopen/foreigntransfer.h>

#include <QtTest>

using namespace CanOpen;

class tst_ForeignTransfer : public QObject
{
    Q_OBJECT

private slots:
    void follows_data();
    void follows();
    void survivesEverything();
};

namespace {

// A frame in words: ">" from the client, "<" from the server.
void take(ForeignTransfer *transfer, const QString &frame)
{
    const QByteArray payload = QByteArray::fromHex(frame.mid(1).toLatin1());
    QCOMPARE(payload.size(), 8);
    if (frame.startsWith(QLatin1Char('>')))
        transfer->handleRequest(payload);
    else
        transfer->handleResponse(payload);
}

} // namespace

// The transfer is under way after every frame but the last.
void tst_ForeignTransfer::follows_data()
{
    QTest::addColumn<QStringList>("frames");

    const auto row = [](const char *name, std::initializer_list<const char *> frames) {
        QStringList list;
        for (const char *frame : frames)
            list.append(QString::fromLatin1(frame));
        QTest::newRow(name) << list;
    };
    row("expedited upload", {"> 40 00 10 00 00 00 00 00", "< 43 00 10 00 92 01 02 03"});
    row("an answer with another multiplexer is not its end",
        {"> 40 00 10 00 00 00 00 00", "< 43 01 10 00 92 01 02 03", "< 43 00 10 00 92 01 02 03"});
    row("upload refused", {"> 40 00 10 00 00 00 00 00", "< 80 00 10 00 00 00 02 06"});
    row("segmented upload",
        {"> 40 08 10 00 00 00 00 00", "< 41 08 10 00 09 00 00 00", "> 60 00 00 00 00 00 00 00",
         "< 00 41 42 43 44 45 46 47", "> 70 00 00 00 00 00 00 00", "< 1B 48 49 00 00 00 00 00"});
    row("segmented upload, seen from its middle", {"> 70 00 00 00 00 00 00 00", "< 1B 48 49 00 00 00 00 00"});
    row("segmented upload, aborted by its client",
        {"> 40 08 10 00 00 00 00 00", "< 41 08 10 00 09 00 00 00", "> 80 08 10 00 00 00 04 05"});
    row("segmented upload, aborted by the server",
        {"> 40 08 10 00 00 00 00 00", "< 41 08 10 00 09 00 00 00", "> 60 00 00 00 00 00 00 00",
         "< 80 08 10 00 00 00 00 08"});
    row("expedited download", {"> 2B 17 10 00 E8 03 00 00", "< 60 17 10 00 00 00 00 00"});
    row("download refused", {"> 2B 17 10 00 E8 03 00 00", "< 80 17 10 00 02 00 01 06"});
    row("segmented download",
        {"> 21 08 10 00 09 00 00 00", "< 60 08 10 00 00 00 00 00", "> 00 41 42 43 44 45 46 47",
         "< 20 00 00 00 00 00 00 00", "> 1B 48 49 00 00 00 00 00", "< 30 00 00 00 00 00 00 00"});
    row("block upload, with segments that look like other answers",
        {"> A4 08 10 00 7F 00 00 00", "< C6 08 10 00 0E 00 00 00", "> A3 00 00 00 00 00 00 00",
         "< 01 41 42 43 44 45 46 47", "< 43 00 10 00 92 01 02 03", "> A2 02 7F 00 00 00 00 00",
         "< C1 12 34 00 00 00 00 00", "> A1 00 00 00 00 00 00 00"});
    row("block upload, aborted by the server", {"> A4 08 10 00 7F 00 00 00", "< 80 08 10 00 00 00 02 06"});
    row("block download, with segments that look like other requests",
        {"> C6 08 10 00 0E 00 00 00", "< A4 08 10 00 7F 00 00 00", "> 40 41 42 43 44 45 46 47",
         "> A1 48 49 4A 4B 4C 4D 4E", "< A2 02 7F 00 00 00 00 00", "> C1 12 34 00 00 00 00 00",
         "< A1 00 00 00 00 00 00 00"});
    row("block download, aborted by its client", {"> C6 08 10 00 0E 00 00 00", "> 80 08 10 00 00 00 00 08"});
    row("block download whose end was not seen",
        {"> C6 08 10 00 0E 00 00 00", "< A4 08 10 00 7F 00 00 00", "< 43 00 10 00 92 01 02 03"});
}

void tst_ForeignTransfer::follows()
{
    QFETCH(QStringList, frames);
    ForeignTransfer transfer;
    QVERIFY(!transfer.isUnderWay());
    for (int i = 0; i < frames.size(); ++i) {
        take(&transfer, frames.at(i));
        const bool isLast = i == frames.size() - 1;
        QVERIFY2(transfer.isUnderWay() != isLast, qPrintable(frames.at(i)));
    }
}

void tst_ForeignTransfer::survivesEverything()
{
    quint32 state = 1;
    const auto next = [&state] { return state = state * 1664525 + 1013904223; };
    ForeignTransfer transfer;
    int underWay = 0;
    for (int i = 0; i < 100000; ++i) {
        QByteArray payload(static_cast<int>(next() >> 24) % 10, '\0');
        for (char &byte : payload)
            byte = static_cast<char>(next() >> 24);
        if (next() >> 31)
            transfer.handleRequest(payload);
        else
            transfer.handleResponse(payload);
        underWay += transfer.isUnderWay() ? 1 : 0;
    }
    QVERIFY(underWay > 0);
    transfer.reset();
    QVERIFY(!transfer.isUnderWay());
}

QTEST_APPLESS_MAIN(tst_ForeignTransfer)

#include "tst_foreigntransfer.moc"
