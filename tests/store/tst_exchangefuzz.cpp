// SPDX-License-Identifier: MIT
#include <store/exchangefile.h>
#include <store/nodestore.h>

#include <QDateTime>
#include <QXmlStreamReader>
#include <QtTest>

#include <random>

namespace {

/*! The import in its plainest form: one reader on the whole text, every token looked at. */
void importInOnePiece(const QString &text, NodeStore &store)
{
    store.clear();
    store.clearNodeList();
    uint node = 1;
    QXmlStreamReader xml(text);
    while (!xml.atEnd()) {
        xml.readNextStartElement();
        if (xml.name() == QLatin1String("node")) {
            node = xml.attributes().value(QLatin1String("nodeid")).toString().toUInt(nullptr, 0);
            store.appendNode(static_cast<quint8>(node));
        } else if (xml.name() == QLatin1String("object")) {
            const QXmlStreamAttributes attributes = xml.attributes();
            const uint index = attributes.value(QLatin1String("index")).toString().toUInt(nullptr, 0);
            const uint sub = attributes.value(QLatin1String("sub")).toString().toUInt(nullptr, 0);
            const qlonglong value
                = attributes.value(QLatin1String("value")).toString().toLongLong(nullptr, 0);
            store.setValue(static_cast<quint8>(node), static_cast<quint16>(index), static_cast<quint8>(sub),
                           value);
        }
    }
}

/*! All that a store holds, in words. */
QString contents(const NodeStore &store)
{
    QString text = QStringLiteral("nodes");
    for (const quint8 nodeId : store.nodeList())
        text += QStringLiteral(" %1").arg(nodeId);
    for (int nodeId = 0; nodeId < NodeStore::nodeCount; ++nodeId) {
        const ObjectMap &objects = store.objects(static_cast<quint8>(nodeId));
        for (auto entry = objects.constBegin(); entry != objects.constEnd(); ++entry)
            text += QStringLiteral("; %1: %2h %3 = %4")
                        .arg(nodeId)
                        .arg(entry.key().index, 0, 16)
                        .arg(entry.key().subIndex)
                        .arg(entry->toLongLong());
    }
    return text;
}

QString goodFile(std::mt19937 &random)
{
    NodeStore store;
    for (int n = 0; n < 3; ++n) {
        const auto nodeId = static_cast<quint8>(random() % 128);
        store.appendNode(nodeId);
        for (int i = 0; i < 4; ++i)
            store.setValue(nodeId, static_cast<quint16>(random()), static_cast<quint8>(random()),
                           static_cast<qlonglong>(random()) - 2000000000);
    }
    return exportToText(store, QDateTime(QDate(2026, 11, 15), QTime(17, 29, 46)));
}

const QStringList &fragments()
{
    static const QStringList list{QStringLiteral("<node nodeid=\"7\">"),
                                  QStringLiteral("</node>"),
                                  QStringLiteral("<object "),
                                  QStringLiteral("/>"),
                                  QStringLiteral("<"),
                                  QStringLiteral(">"),
                                  QStringLiteral("\""),
                                  QStringLiteral("'"),
                                  QStringLiteral("&"),
                                  QStringLiteral("&amp;"),
                                  QStringLiteral("&#65;"),
                                  QStringLiteral("&lol;"),
                                  QStringLiteral("<!--"),
                                  QStringLiteral("-->"),
                                  QStringLiteral("<![CDATA["),
                                  QStringLiteral("]]>"),
                                  QStringLiteral("<?pi ?>"),
                                  QStringLiteral("<?xml version=\"1.0\"?>"),
                                  QStringLiteral("xmlns:x=\"u\" "),
                                  QStringLiteral("x:"),
                                  QStringLiteral("0x"),
                                  QStringLiteral("-"),
                                  QStringLiteral("99999999999999999999"),
                                  QString(QChar(0)),
                                  QString(QChar(0xD800)),
                                  QString(QChar(0xDC00)),
                                  QString(QChar(0xFEFF)),
                                  QString(QChar(0xFFFF)),
                                  QString::fromUtf8("\xF0\x9F\x98\x80"),
                                  QStringLiteral("\r\n"),
                                  QStringLiteral(" "),
                                  QStringLiteral("=")};
    return list;
}

/*! Deletes, doubles, replaces and inserts pieces of a text. */
QString mutated(QString text, std::mt19937 &random)
{
    const int changes = 1 + static_cast<int>(random() % 4);
    for (int i = 0; i < changes; ++i) {
        const int position = static_cast<int>(random() % static_cast<uint>(text.size() + 1));
        const int length = static_cast<int>(random() % 40);
        switch (random() % 5) {
        case 0:
            text.remove(position, length);
            break;
        case 1:
            text.insert(position,
                        text.mid(static_cast<int>(random() % static_cast<uint>(text.size() + 1)), length));
            break;
        case 2:
            text.insert(position,
                        fragments().at(static_cast<int>(random() % static_cast<uint>(fragments().size()))));
            break;
        case 3:
            text.replace(position, 1, QChar(static_cast<ushort>(random() % 0x80)));
            break;
        default:
            text.truncate(position);
            break;
        }
    }
    return text;
}

} // namespace

/*! Random and broken documents, the same ones in every run. */
class tst_ExchangeFuzz : public QObject
{
    Q_OBJECT

private slots:
    void piecesGiveWhatOnePieceGives_data();
    void piecesGiveWhatOnePieceGives();
    void problemIsFoundWhenImportFails();
};

void tst_ExchangeFuzz::piecesGiveWhatOnePieceGives_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 8; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void tst_ExchangeFuzz::piecesGiveWhatOnePieceGives()
{
    QFETCH(int, seed);
    std::mt19937 random(static_cast<uint>(seed));
    const QString good = goodFile(random);
    for (int i = 0; i < 500; ++i) {
        const QString text = mutated(good, random);
        NodeStore expected;
        importInOnePiece(text, expected);
        const int sizes[] = {1, 2, 3, 7, 64, 1 + static_cast<int>(random() % 500), exchangeChunkSize};
        for (const int size : sizes) {
            NodeStore store;
            importByParser(text, store, size);
            if (contents(store) != contents(expected)) {
                qWarning() << "pieces of" << size << "of" << text;
                QCOMPARE(contents(store), contents(expected));
            }
        }
    }
}

void tst_ExchangeFuzz::problemIsFoundWhenImportFails()
{
    std::mt19937 random(99);
    const QString good = goodFile(random);
    int broken = 0;
    for (int i = 0; i < 2000; ++i) {
        const QString text = mutated(good, random);
        NodeStore store;
        const bool isComplete = importFrom(text, store);
        broken += isComplete ? 0 : 1;
        QVERIFY2(isComplete || !exchangeProblem(text).isEmpty(), qPrintable(text));
    }
    QVERIFY(broken > 500);
}

QTEST_GUILESS_MAIN(tst_ExchangeFuzz)
#include "tst_exchangefuzz.moc"
