// SPDX-License-Identifier: MIT
#include <store/exchangefile.h>
#include <store/exchangescanner.h>
#include <store/nodestore.h>

#include <QDateTime>
#include <QRandomGenerator>
#include <QtTest>

namespace {

const char head[] = "<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n"
                    "<dxtoolstorage pl_overwiew=\"1.0\" date=\"Sun Nov 15 17:29:46 2026\">\n"
                    "    <nodes>\n";
const char foot[] = "    </nodes>\n"
                    "</dxtoolstorage>\n";

QString document(const QByteArray &nodes)
{
    return QString::fromUtf8(head + nodes + foot);
}

/*! Everything in a store, a line each. */
QStringList contents(const NodeStore &store)
{
    QStringList lines;
    for (const quint8 nodeId : store.nodeList())
        lines << QStringLiteral("listed %1").arg(nodeId);
    for (int nodeId = 0; nodeId < NodeStore::nodeCount; ++nodeId) {
        const ObjectMap &objects = store.objects(static_cast<quint8>(nodeId));
        for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
            lines << QStringLiteral("%1: %2 %3 = %4 (%5)")
                         .arg(QString::number(nodeId), QString::number(it.key().index),
                              QString::number(it.key().subIndex), it->toString(),
                              QLatin1String(it->typeName()));
        }
    }
    return lines;
}

NodeStore randomStore(QRandomGenerator &random)
{
    NodeStore store;
    store.clear();
    const int nodes = random.bounded(6);
    for (int i = 0; i < nodes; ++i) {
        const auto nodeId = static_cast<quint8>(random.bounded(128));
        store.appendNode(nodeId);
        const int objects = random.bounded(12);
        for (int k = 0; k < objects; ++k) {
            const int shift = random.bounded(64);
            const auto value = static_cast<qint64>(random.generate64() >> shift);
            store.setValue(nodeId, static_cast<quint16>(random.bounded(3) == 0 ? 0 : random.bounded(0x10000)),
                           static_cast<quint8>(random.bounded(3) == 0 ? 0 : random.bounded(256)),
                           QVariant(random.bounded(2) == 0 ? value : -value));
        }
    }
    return store;
}

/*! A small change somewhere, as a hand, another program or a broken disk makes it. */
QString changed(QString text, QRandomGenerator &random)
{
    static const QString characters = QStringLiteral("<>/\"'= \n\r\t&;0123456789abcfx-+.\u00e4\ufeff");
    const int position = random.bounded(text.size());
    switch (random.bounded(5)) {
    case 0:
        text[position] = characters.at(random.bounded(characters.size()));
        break;
    case 1:
        text.insert(position, characters.at(random.bounded(characters.size())));
        break;
    case 2:
        text.remove(position, 1 + random.bounded(4));
        break;
    case 3:
        text.truncate(position);
        break;
    default: {
        QStringList lines = text.split(QLatin1Char('\n'));
        lines.insert(random.bounded(lines.size()), lines.at(random.bounded(lines.size())));
        text = lines.join(QLatin1Char('\n'));
        break;
    }
    }
    return text;
}

} // namespace

/*! The short way to read an exchange file, against the parser's. */
class tst_ExchangeScanner : public QObject
{
    Q_OBJECT

private slots:
    void readsWhatIsWritten();
    void endsCountLikeStarts();
    void whatIsWrittenNeedsNoParser();
    void whiteSpaceBetweenTagsIsFree_data();
    void whiteSpaceBetweenTagsIsFree();
    void leavesTheRestToTheParser_data();
    void leavesTheRestToTheParser();
    void neverReadsDifferently();
};

void tst_ExchangeScanner::readsWhatIsWritten()
{
    NodeStore store;
    store.setValue(3, 1, 1, 1); // is forgotten
    store.appendNode(3);
    QVERIFY(importAsWritten(document("        <node nodeid=\"5\">\n"
                                     "            <object index=\"0x600e\" sub=\"0x0a\" value=\"-12\" />\n"
                                     "            <object index=\"0xffff\" sub=\"0xff\" "
                                     "value=\"999999999999999999\" />\n"
                                     "        </node>\n"),
                            store));
    QCOMPARE(contents(store), QStringList({QStringLiteral("listed 5"), QStringLiteral("listed 0"),
                                           QStringLiteral("5: 0 0 = 0 (qlonglong)"),
                                           QStringLiteral("5: 24590 10 = -12 (qlonglong)"),
                                           QStringLiteral("5: 65535 255 = 999999999999999999 (qlonglong)")}));
}

void tst_ExchangeScanner::endsCountLikeStarts()
{
    NodeStore store;
    QVERIFY(importAsWritten(document("        <node nodeid=\"1\">\n"
                                     "            <object index=\"0x0000\" sub=\"0x00\" value=\"7\" />\n"
                                     "        </node>\n"
                                     "        <node nodeid=\"2\">\n"
                                     "        </node>\n"),
                            store));
    QCOMPARE(contents(store),
             QStringList({QStringLiteral("listed 1"), QStringLiteral("listed 0"), QStringLiteral("listed 2"),
                          QStringLiteral("listed 0"), QStringLiteral("1: 0 0 = 0 (qlonglong)")}));
}

void tst_ExchangeScanner::whatIsWrittenNeedsNoParser()
{
    NodeStore store;
    for (int nodeId = 1; nodeId < NodeStore::nodeCount; ++nodeId) {
        store.appendNode(static_cast<quint8>(nodeId));
        store.setValue(static_cast<quint8>(nodeId), 0x1018, 4, QVariant(0xFFFFFFFFu));
    }
    const QString text = exportToText(store, QDateTime::currentDateTime());
    NodeStore once;
    QVERIFY(importAsWritten(text, once));
    // Twice as many nodes now, as each end of a node lists a node 0.
    const QString textAgain = exportToText(once, QDateTime::currentDateTime());
    NodeStore twice;
    QVERIFY(importAsWritten(textAgain, twice));
    QCOMPARE(twice.nodeList().size(), 4 * 127);
}

void tst_ExchangeScanner::whiteSpaceBetweenTagsIsFree_data()
{
    QTest::addColumn<QString>("text");
    const QString text = document("        <node nodeid=\"5\">\n"
                                  "            <object index=\"0x6000\" sub=\"0x01\" value=\"6\" />\n"
                                  "        </node>\n");
    QTest::newRow("line ends of another system")
        << QString(text).replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    QTest::newRow("tabs") << QString(text).replace(QStringLiteral("    "), QStringLiteral("\t"));
    QTest::newRow("one line") << QString(text).remove(QStringLiteral("    ")).remove(QLatin1Char('\n'));
    QTest::newRow("as other programs write XML")
        << QString(text)
               .replace(QStringLiteral("version =\"1.0\" encoding=\"UTF-8\" ?>"),
                        QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"?>"))
               .replace(QStringLiteral("\" />"), QStringLiteral("\"/>"));
    QTest::newRow("blanks behind the end") << text + QStringLiteral("\n \n");
}

void tst_ExchangeScanner::whiteSpaceBetweenTagsIsFree()
{
    QFETCH(QString, text);
    NodeStore store;
    QVERIFY(importAsWritten(text, store));
    QCOMPARE(contents(store), (QStringList{QStringLiteral("listed 5"), QStringLiteral("listed 0"),
                                           QStringLiteral("5: 0 0 = 0 (qlonglong)"),
                                           QStringLiteral("5: 24576 1 = 6 (qlonglong)")}));
    NodeStore parsed;
    QVERIFY(importByParser(text, parsed));
    QCOMPARE(contents(store), contents(parsed));
    QCOMPARE(exchangeProblem(text), QString());
}

void tst_ExchangeScanner::leavesTheRestToTheParser_data()
{
    QTest::addColumn<QString>("text");
    const auto object = [](const char *line) {
        return document(QByteArray("        <node nodeid=\"1\">\n            ") + line
                        + "\n        </node>\n");
    };
    QTest::newRow("nothing") << QString();
    QTest::newRow("no end") << QString::fromLatin1(head);
    QTest::newRow("half an end") << QString::fromLatin1(head) + QStringLiteral("    </nodes>\n");
    QTest::newRow("something behind the end") << document("") + QLatin1Char('x');
    QTest::newRow("blank before the declaration") << QLatin1Char(' ') + document("");
    QTest::newRow("something between tags") << document("        x\n");
    QTest::newRow("entity in the date")
        << document("").replace(QStringLiteral("Sun"), QStringLiteral("&lt;"));
    QTest::newRow("tag in the date") << document("").replace(QStringLiteral("Sun"), QStringLiteral("<a/>"));
    QTest::newRow("control character in the date")
        << document("").replace(QStringLiteral("Sun"), QString(QChar(1)));
    QTest::newRow("node 128") << document("        <node nodeid=\"128\">\n        </node>\n");
    QTest::newRow("node in octal") << document("        <node nodeid=\"010\">\n        </node>\n");
    QTest::newRow("node without a number") << document("        <node nodeid=\"\">\n        </node>\n");
    QTest::newRow("node without an end") << document("        <node nodeid=\"1\">\n");
    QTest::newRow("257 nodes") << document(
        QByteArray("        <node nodeid=\"1\">\n        </node>\n").repeated(257));
    QTest::newRow("value in octal") << object("<object index=\"0x6000\" sub=\"0x00\" value=\"017\" />");
    QTest::newRow("value in hexadecimal")
        << object("<object index=\"0x6000\" sub=\"0x00\" value=\"0x1F\" />");
    QTest::newRow("no number") << object("<object index=\"0x6000\" sub=\"0x00\" value=\"3.5\" />");
    QTest::newRow("empty value") << object("<object index=\"0x6000\" sub=\"0x00\" value=\"\" />");
    QTest::newRow("lonely sign") << object("<object index=\"0x6000\" sub=\"0x00\" value=\"-\" />");
    QTest::newRow("19 digits") << object(
        "<object index=\"0x6000\" sub=\"0x00\" value=\"1000000000000000000\" />");
    QTest::newRow("upper case") << object("<object index=\"0x600E\" sub=\"0x00\" value=\"1\" />");
    QTest::newRow("short index") << object("<object index=\"0x600\" sub=\"0x00\" value=\"1\" />");
    QTest::newRow("other order") << object("<object sub=\"0x00\" index=\"0x6000\" value=\"1\" />");
    QTest::newRow("blank in a tag") << object("<object  index=\"0x6000\" sub=\"0x00\" value=\"1\" />");
    QTest::newRow("comment") << object("<!-- -->");
}

void tst_ExchangeScanner::leavesTheRestToTheParser()
{
    QFETCH(QString, text);
    NodeStore store;
    QVERIFY(!importAsWritten(text, store));

    // What the user gets is the parser's in any case.
    NodeStore imported;
    importFrom(text, imported);
    NodeStore parsed;
    importByParser(text, parsed);
    QCOMPARE(contents(imported), contents(parsed));
}

void tst_ExchangeScanner::neverReadsDifferently()
{
    QRandomGenerator random(454);
    int scanned = 0;
    for (int round = 0; round < 20000; ++round) {
        QString text = exportToText(randomStore(random), QDateTime::currentDateTime());
        for (int changes = random.bounded(3); changes > 0 && !text.isEmpty(); --changes)
            text = changed(text, random);
        NodeStore store;
        if (!importAsWritten(text, store))
            continue;
        ++scanned;
        NodeStore parsed;
        QVERIFY2(importByParser(text, parsed), qPrintable(text));
        QVERIFY2(contents(store) == contents(parsed), qPrintable(text));
        QCOMPARE(exchangeProblem(text).isEmpty(), !parsed.nodeList().isEmpty());
    }
    QVERIFY2(scanned > 4000, qPrintable(QString::number(scanned)));
}

QTEST_GUILESS_MAIN(tst_ExchangeScanner)
#include "tst_exchangescanner.moc"
