// SPDX-License-Identifier: MIT
#include <tests/support/logwatcher.h>
#include <tests/support/storebuilder.h>

#include <store/exchangefile.h>
#include <reader/datareader.h>
#include <store/nodestore.h>

#include <QDateTime>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

namespace {

/*! Translates the line of an object, as a translation of the reader's context would. */
class LineTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override
    {
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        const bool isLine
            = qstrcmp(context, "DataReader") == 0
              && qstrcmp(sourceText, "            <object index=\"0x%1\" sub=\"0x%2\" value=\"%3\" />\n")
                     == 0;
        return isLine ? QStringLiteral("[%3 %2 %1]\n") : QString();
    }
    bool isEmpty() const override { return false; }
};

const QDateTime someDate(QDate(2026, 11, 15), QTime(17, 29, 46));

QString document(const QString &nodes)
{
    return QStringLiteral("<?xml version =\"1.0\" encoding=\"UTF-8\" ?>\n"
                          "<dxtoolstorage pl_overwiew=\"1.0\" date=\"Sun Nov 15 17:29:46 2026\">\n"
                          "    <nodes>\n%1    </nodes>\n</dxtoolstorage>\n")
        .arg(nodes);
}

QList<quint8> nodesOf(const QString &text)
{
    NodeStore store;
    importFrom(text, store);
    return store.nodeList();
}

/*! Everything that a store holds, a line for each value. */
QStringList contents(const NodeStore &store)
{
    QStringList lines;
    for (int nodeId = 0; nodeId < 128; ++nodeId) {
        const ObjectMap &objects = store.objects(static_cast<quint8>(nodeId));
        for (auto entry = objects.constBegin(); entry != objects.constEnd(); ++entry) {
            lines.append(QStringLiteral("%1 %2:%3=%4")
                             .arg(nodeId)
                             .arg(entry.key().index, 0, 16)
                             .arg(entry.key().subIndex)
                             .arg(entry->toString()));
        }
    }
    return lines;
}

QStringList imported(const QString &text)
{
    NodeStore store;
    importFrom(text, store);
    return contents(store);
}

QByteArray fileContent(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

} // namespace

class tst_ExchangeFile : public QObject
{
    Q_OBJECT

private slots:
    void emptyStoreHasFiveLines();
    void objectLineIsWrittenAsItStands();
    void wholeDocumentIsWrittenAsItStands();
    void nodesAreWrittenInListOrderWithDuplicates();
    void unlistedNodesAreNotWritten();
    void objectLineIsTranslated();
    void valuesAreNotEscapedNorSubstituted();
    void exportXmlCarriesTheDate();
    void numbers_data();
    void numbers();
    void valuesBecomeQlonglong();
    void endTagsCountLikeStartTags();
    void importReplacesEverything();
    void roundTripKeepsValuesAndAddsZeroes();
    void noXmlLeavesNothing_data();
    void noXmlLeavesNothing();
    void brokenXmlKeepsWhatStoodBeforeTheError();
    void anyElementOrderAndDepth();
    void namesAreCaseSensitive();
    void objectBeforeAnyNodeBelongsToNodeOne();
    void missingAttributesAreZero();
    void nodesBeyondTheStoreAreListedWithoutValues();
    void chunksGiveTheSameResult();
    void surrogatePairsAreNotSplit();
    void documentTypeWithoutEntitiesIsRead();
    void documentTypeInsideTheDocumentIsAnError();
    void entitiesAreRefused_data();
    void entitiesAreRefused();
    void entityWordsInTextAreHarmless();
    void quotationMarksCountInTagsOnly_data();
    void quotationMarksCountInTagsOnly();
    void tooManyAttributesAreRefused_data();
    void tooManyAttributesAreRefused();
    void farTooManyNodesAreRefused();
    void manyRoundTripsAreNotRefused();
    void hostileDocumentsEnd_data();
    void hostileDocumentsEnd();
    void problemInWords_data();
    void problemInWords();
    void goodFileHasNoProblem();
    void savedFileIsLoadedAgain();
    void failedSaveKeepsTheOldFile();
    void unreadableFileIsNamed();
    void endlessFileIsRefused();
};

void tst_ExchangeFile::emptyStoreHasFiveLines()
{
    NodeStore store;
    QCOMPARE(exportToText(store, someDate), document(QString()));
    store.setValue(5, 0x1000, 0, 1u); // not listed
    QCOMPARE(exportToText(store, someDate), document(QString()));
}

void tst_ExchangeFile::objectLineIsWrittenAsItStands()
{
    NodeStore store;
    store.appendNode(1);
    store.setValue(1, 0x6000, 0, 3u);
    QCOMPARE(exportToText(store, someDate),
             document(QStringLiteral("        <node nodeid=\"1\">\n"
                                     "            <object index=\"0x6000\" sub=\"0x00\" value=\"3\" />\n"
                                     "        </node>\n")));
}

void tst_ExchangeFile::wholeDocumentIsWrittenAsItStands()
{
    NodeStore store;
    store.appendNode(1);
    store.appendNode(127);
    store.setValue(127, 0x600E, 14, 4294967295u);
    store.setValue(127, 0x0001, 255, -36500);
    store.setValue(127, 0xFFFF, 0, qlonglong(-5));
    QCOMPARE(
        exportToText(store, someDate),
        document(QStringLiteral("        <node nodeid=\"1\">\n"
                                "        </node>\n"
                                "        <node nodeid=\"127\">\n"
                                "            <object index=\"0x0001\" sub=\"0xff\" value=\"-36500\" />\n"
                                "            <object index=\"0x600e\" sub=\"0x0e\" value=\"4294967295\" />\n"
                                "            <object index=\"0xffff\" sub=\"0x00\" value=\"-5\" />\n"
                                "        </node>\n")));
}

void tst_ExchangeFile::nodesAreWrittenInListOrderWithDuplicates()
{
    NodeStore store;
    for (const quint8 nodeId : QList<quint8>{5, 1, 5})
        store.appendNode(nodeId);
    QCOMPARE(exportToText(store, someDate),
             document(QStringLiteral("        <node nodeid=\"5\">\n        </node>\n"
                                     "        <node nodeid=\"1\">\n        </node>\n"
                                     "        <node nodeid=\"5\">\n        </node>\n")));
}

void tst_ExchangeFile::unlistedNodesAreNotWritten()
{
    NodeStore store;
    store.setValue(2, 0x1000, 0, 1u);
    store.appendNode(1);
    QVERIFY(!exportToText(store, someDate).contains(QLatin1String("object")));
}

void tst_ExchangeFile::objectLineIsTranslated()
{
    NodeStore store;
    store.appendNode(1);
    store.setValue(1, 0x6000, 1, 77u);
    LineTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(exportToText(store, someDate),
             document(QStringLiteral("        <node nodeid=\"1\">\n[77 01 6000]\n        </node>\n")));
    QVERIFY(QCoreApplication::removeTranslator(&translator));
}

void tst_ExchangeFile::valuesAreNotEscapedNorSubstituted()
{
    NodeStore store;
    store.appendNode(1);
    store.setValue(1, 0x6000, 1, QStringLiteral("<\"&%1%2%3>"));
    QVERIFY(exportToText(store, someDate).contains(QLatin1String("value=\"<\"&%1%2%3>\" />\n")));
}

void tst_ExchangeFile::exportXmlCarriesTheDate()
{
    DataReader reader;
    StoreBuilder(reader, {1}).node(1).set(0x6000, 0, 3u);
    const QDateTime before = QDateTime::currentDateTime();
    const QString text = reader.exportXml();
    const QDateTime after = QDateTime::currentDateTime();
    const QString date = text.section(QLatin1Char('"'), 7, 7);
    // Both ends of the second in which the text was made.
    QVERIFY2(date == before.toString(Qt::TextDate) || date == after.toString(Qt::TextDate), qPrintable(date));
    QCOMPARE(text.count(QLatin1Char('\n')), 8);
    QVERIFY(
        text.contains(QLatin1String("            <object index=\"0x6000\" sub=\"0x00\" value=\"3\" />\n")));
}

void tst_ExchangeFile::numbers_data()
{
    QTest::addColumn<QString>("node");
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("stored");

    const auto row = [](const char *name, const char *node, const char *index, const char *sub,
                        const char *value, const char *stored) {
        QTest::newRow(name) << QStringLiteral("<node nodeid=\"%1\">").arg(QLatin1String(node))
                            << QStringLiteral("<object index=\"%1\" sub=\"%2\" value=\"%3\">")
                                   .arg(QLatin1String(index), QLatin1String(sub), QLatin1String(value))
                            << QString::fromLatin1(stored);
    };
    row("negative", "1", "0x6000", "0x01", "-5", "1 6000:1=-5");
    row("hexadecimal value", "1", "0x6000", "0x01", "0x1F", "1 6000:1=31");
    row("octal value", "1", "0x6000", "0x01", "017", "1 6000:1=15");
    row("decimal index", "1", "24576", "10", "3", "1 6000:10=3");
    row("octal node", "017", "0x6000", "1", "3", "15 6000:1=3");
    row("hexadecimal node", "0x7F", "0x6000", "1", "3", "127 6000:1=3");
    row("node wraps", "257", "0x6000", "1", "3", "1 6000:1=3");
    row("index wraps", "1", "0x16000", "1", "3", "1 6000:1=3");
    row("sub-index wraps", "1", "0x6000", "0x101", "3", "1 6000:1=3");
    row("fraction", "1", "0x6000", "1", "3.5", "1 6000:1=0");
    row("text", "1", "0x6000", "1", "three", "1 6000:1=0");
    row("empty", "1", "", "", "", "1 0:0=0");
    row("greatest 32 bits", "1", "0x6000", "1", "4294967295", "1 6000:1=4294967295");
    row("greatest 64 bits", "1", "0x6000", "1", "9223372036854775807", "1 6000:1=9223372036854775807");
    row("beyond 64 bits", "1", "0x6000", "1", "9223372036854775808", "1 6000:1=0");
    row("gigantic numbers", "1", "99999999999999999999", "1", "999999999999999999999999999999", "1 0:1=0");
    row("negative index", "1", "-1", "1", "3", "1 0:1=3");
}

void tst_ExchangeFile::numbers()
{
    QFETCH(QString, node);
    QFETCH(QString, object);
    QFETCH(QString, stored);
    QCOMPARE(imported(node + object), QStringList{stored});
}

void tst_ExchangeFile::valuesBecomeQlonglong()
{
    NodeStore store;
    importFrom(QStringLiteral("<node nodeid=\"1\"><object index=\"1\" sub=\"0\" value=\"-5\">"), store);
    QVariant value;
    QVERIFY(store.getValue(1, 1, 0, value));
    QCOMPARE(value.userType(), static_cast<int>(QMetaType::LongLong));
    QCOMPARE(value.toLongLong(), qlonglong(-5));
}

void tst_ExchangeFile::endTagsCountLikeStartTags()
{
    const QString text
        = document(QStringLiteral("        <node nodeid=\"1\">\n"
                                  "            <object index=\"0x6000\" sub=\"0x00\" value=\"3\" />\n"
                                  "        </node>\n"
                                  "        <node nodeid=\"5\">\n"
                                  "            <object index=\"0x1000\" sub=\"0x00\" value=\"7\" />\n"
                                  "        </node>\n"));
    NodeStore store;
    QVERIFY(importFrom(text, store));
    QCOMPARE(store.nodeList(), (QList<quint8>{1, 0, 5, 0}));
    QCOMPARE(contents(store), (QStringList{QStringLiteral("1 0:0=0"), QStringLiteral("1 6000:0=3"),
                                           QStringLiteral("5 0:0=0"), QStringLiteral("5 1000:0=7")}));
}

void tst_ExchangeFile::importReplacesEverything()
{
    DataReader reader;
    StoreBuilder(reader, {1, 2}).node(2).set(0x6000, 0, 3u);
    QVERIFY(reader.importXml(QStringLiteral("<node nodeid=\"9\">")));
    QCOMPARE(reader.getNodeList(), QList<quint8>{9});
    QVERIFY(reader.getIndexList(2).isEmpty());
}

void tst_ExchangeFile::roundTripKeepsValuesAndAddsZeroes()
{
    NodeStore store;
    for (const quint8 nodeId : QList<quint8>{1, 5})
        store.appendNode(nodeId);
    store.setValue(1, 0x6000, 0, 3u);
    store.setValue(5, 0x6024, 1, -36500);
    store.setValue(5, 0x6024, 2, 0xFFFFFFFFu);

    NodeStore second;
    QVERIFY(importFrom(exportToText(store, someDate), second));
    QCOMPARE(second.nodeList(), (QList<quint8>{1, 0, 5, 0}));
    const QString again = exportToText(second, someDate);
    QVERIFY(
        again.contains(QLatin1String("            <object index=\"0x0000\" sub=\"0x00\" value=\"0\" />\n")));
    QVERIFY(again.contains(
        QLatin1String("            <object index=\"0x6024\" sub=\"0x01\" value=\"-36500\" />\n")));

    // A second import changes no value any more, only the list of nodes grows.
    NodeStore third;
    QVERIFY(importFrom(again, third));
    QCOMPARE(third.nodeList(), (QList<quint8>{1, 0, 0, 0, 5, 0, 0, 0}));
    QCOMPARE(contents(third), contents(second));
}

void tst_ExchangeFile::noXmlLeavesNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks") << QStringLiteral(" \n\t ");
    QTest::newRow("words") << QStringLiteral("This is no XML.");
    QTest::newRow("words with a tag later") << QStringLiteral("No XML. <node nodeid=\"1\"/>");
    QTest::newRow("zero bytes") << QString(1000, QChar(0));
    QTest::newRow("lone surrogates") << QString(1000, QChar(0xD800));
    QTest::newRow("one bracket") << QStringLiteral("<");
    QTest::newRow("no value for an attribute") << QStringLiteral("<?xml version?><node nodeid=\"1\"/>");
}

void tst_ExchangeFile::noXmlLeavesNothing()
{
    QFETCH(QString, text);
    DataReader reader;
    StoreBuilder(reader, {1}).node(1).set(0x6000, 0, 3u);
    QVERIFY(reader.importXml(text));
    QVERIFY(reader.getNodeList().isEmpty());
    QVERIFY(reader.getIndexList(1).isEmpty());
}

void tst_ExchangeFile::brokenXmlKeepsWhatStoodBeforeTheError()
{
    NodeStore store;
    QVERIFY(!importFrom(
        QStringLiteral("<nodes><node nodeid=\"1\"><object index=\"0x6000\" sub=\"0\" value=\"3\"/>"
                       "</node></wrong><node nodeid=\"5\">"),
        store));
    QCOMPARE(store.nodeList(), (QList<quint8>{1, 0}));
    QVariant value;
    QVERIFY(store.getValue(1, 0x6000, 0, value));
    QCOMPARE(value.toInt(), 3);
}

void tst_ExchangeFile::anyElementOrderAndDepth()
{
    QCOMPARE(imported(QStringLiteral(
                 "<a><b><node nodeid=\"3\"><x><y>text<object index=\"1\" sub=\"2\" value=\"3\">"
                 "</object></y></x></node></b></a>")),
             (QStringList{QStringLiteral("3 0:0=0"), QStringLiteral("3 1:2=3")}));
    // An object as the root.
    QCOMPARE(imported(QStringLiteral("<object index=\"1\" sub=\"2\" value=\"3\"/>")),
             (QStringList{QStringLiteral("1 0:0=0"), QStringLiteral("1 1:2=3")}));
}

void tst_ExchangeFile::namesAreCaseSensitive()
{
    QCOMPARE(nodesOf(QStringLiteral("<a><Node nodeid=\"1\"/><NODE nodeid=\"2\"/><nodes/></a>")),
             QList<quint8>());
    QCOMPARE(nodesOf(QStringLiteral("<a><node NodeId=\"1\"/></a>")), (QList<quint8>{0, 0}));
}

void tst_ExchangeFile::objectBeforeAnyNodeBelongsToNodeOne()
{
    QCOMPARE(imported(QStringLiteral("<a><object index=\"1\" sub=\"2\" value=\"3\">")),
             QStringList{QStringLiteral("1 1:2=3")});
}

void tst_ExchangeFile::missingAttributesAreZero()
{
    NodeStore store;
    importFrom(QStringLiteral("<node><object value=\"9\">"), store);
    QCOMPARE(store.nodeList(), QList<quint8>{0});
    QCOMPARE(contents(store), QStringList{QStringLiteral("0 0:0=9")});
}

void tst_ExchangeFile::nodesBeyondTheStoreAreListedWithoutValues()
{
    NodeStore store;
    importFrom(QStringLiteral("<node nodeid=\"200\"><object index=\"1\" sub=\"2\" value=\"3\">"), store);
    QCOMPARE(store.nodeList(), QList<quint8>{200});
    QCOMPARE(contents(store), QStringList());
    QVERIFY(exportToText(store, someDate).contains(QLatin1String("<node nodeid=\"200\">\n        </node>")));
}

void tst_ExchangeFile::chunksGiveTheSameResult()
{
    NodeStore store;
    for (const quint8 nodeId : QList<quint8>{1, 5, 127}) {
        store.appendNode(nodeId);
        for (quint16 index = 0x6000; index < 0x6010; ++index)
            store.setValue(nodeId, index, 1, index * 100u);
    }
    const QString text = exportToText(store, someDate);
    NodeStore whole;
    QVERIFY(importByParser(text, whole, text.size()));
    for (int size = 1; size < 200; ++size) {
        NodeStore pieces;
        QVERIFY(importByParser(text, pieces, size));
        QCOMPARE(pieces.nodeList(), whole.nodeList());
        QCOMPARE(contents(pieces), contents(whole));
    }
}

void tst_ExchangeFile::surrogatePairsAreNotSplit()
{
    const QString face = QString::fromUtf8("\xF0\x9F\x98\x80");
    QCOMPARE(face.size(), 2);
    const QString text = QStringLiteral("<a>%1<node nodeid=\"3\" x=\"%1\"/>%1</a>").arg(face.repeated(10));
    for (int size = 1; size < 60; ++size) {
        NodeStore store;
        QVERIFY(importByParser(text, store, size));
        QCOMPARE(store.nodeList(), (QList<quint8>{3, 0}));
    }
}

void tst_ExchangeFile::documentTypeWithoutEntitiesIsRead()
{
    QCOMPARE(nodesOf(QStringLiteral("<!DOCTYPE dxtoolstorage><a><node nodeid=\"3\"/></a>")),
             (QList<quint8>{3, 0}));
}

void tst_ExchangeFile::documentTypeInsideTheDocumentIsAnError()
{
    const QString text = QStringLiteral("<a><node nodeid=\"3\"/><!DOCTYPE a><node nodeid=\"4\"/></a>");
    for (const int size : {1, 1000}) {
        NodeStore store;
        QVERIFY(!importByParser(text, store, size));
        QCOMPARE(store.nodeList(), (QList<quint8>{3, 0}));
    }
    QVERIFY(!exchangeProblem(text).isEmpty());
}

void tst_ExchangeFile::entitiesAreRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("one entity, unused")
        << QStringLiteral("<!DOCTYPE a [<!ENTITY x \"1\">]><a><node nodeid=\"3\"/></a>");
    QString bomb = QStringLiteral("<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY e0 \"lol\">");
    for (int i = 1; i < 40; ++i) {
        bomb += QStringLiteral("<!ENTITY e%1 \"%2\">")
                    .arg(i)
                    .arg(QStringLiteral("&e%1;").arg(i - 1).repeated(10));
    }
    QTest::newRow("entities of entities")
        << bomb + QStringLiteral("]><a><node nodeid=\"3\" x=\"&e39;\"/>&e39;</a>");
    QTest::newRow("long entity used often")
        << QStringLiteral("<!DOCTYPE a [<!ENTITY x \"%1\">]><a><node nodeid=\"3\"/>%2</a>")
               .arg(QString(100000, QLatin1Char('x')), QStringLiteral("&x;").repeated(100000));
    QTest::newRow("entity that is itself") << QStringLiteral(
        "<!DOCTYPE a [<!ENTITY x \"&y;\"><!ENTITY y \"&x;\">]><a><node nodeid=\"3\"/>&x;</a>");
    QTest::newRow("parameter entity")
        << QStringLiteral("<!DOCTYPE a [<!ENTITY % p \"<!ENTITY x '1'>\">%p;]><a><node nodeid=\"3\"/></a>");
    QTest::newRow("external entity") << QStringLiteral(
        "<!DOCTYPE a [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><a><node nodeid=\"3\"/>&x;</a>");
    QTest::newRow("after comments and blanks") << QStringLiteral(
        "<!-- c -->\n<?p i?>\n<!DOCTYPE a\n[\n<!-- d -->\n<!ENTITY x \"1\">]><a><node nodeid=\"3\"/></a>");
}

void tst_ExchangeFile::entitiesAreRefused()
{
    QFETCH(QString, text);
    NodeStore store;
    store.appendNode(1);
    QVERIFY(!importFrom(text, store));
    QCOMPARE(store.nodeList(), QList<quint8>());
    QCOMPARE(contents(store), QStringList());
    QVERIFY2(exchangeProblem(text).contains(QLatin1String("entities")), qPrintable(exchangeProblem(text)));
}

void tst_ExchangeFile::entityWordsInTextAreHarmless()
{
    NodeStore store;
    QVERIFY(importFrom(QStringLiteral("<a><!-- <!ENTITY --><![CDATA[<!ENTITY x>]]><node nodeid=\"3\"/></a>"),
                       store));
    QCOMPARE(store.nodeList(), (QList<quint8>{3, 0}));
}

void tst_ExchangeFile::quotationMarksCountInTagsOnly_data()
{
    QTest::addColumn<QString>("text");
    const QString marks = QStringLiteral("'\"").repeated(500) + QLatin1Char('\'');
    const QString document = QStringLiteral("<a>%1<node nodeid=\"3\"/></a>");
    QTest::newRow("comment") << document.arg(QStringLiteral("<!-- %1 -->").arg(marks));
    QTest::newRow("comment before the root")
        << QStringLiteral("<?xml version=\"1.0\"?><!-- %1 -->").arg(marks) + document.arg(QString());
    QTest::newRow("comment with tags") << document.arg(QStringLiteral("<!-- -> > <x %1 -->").arg(marks));
    QTest::newRow("shortest comment") << document.arg(QStringLiteral("<!---->") + marks);
    QTest::newRow("comment that begins like an end")
        << document.arg(QStringLiteral("<!--> <x %1 -->").arg(marks));
    QTest::newRow("text") << document.arg(marks);
    QTest::newRow("CDATA section") << document.arg(QStringLiteral("<![CDATA[ ]> <x %1 ]]>").arg(marks));
    QTest::newRow("processing instruction") << document.arg(QStringLiteral("<?x > <x %1 ?>").arg(marks));
    QTest::newRow("in a value") << document.arg(
        QStringLiteral("<b c=\"%1\"/>").arg(QString(500, QLatin1Char('\''))));
}

void tst_ExchangeFile::quotationMarksCountInTagsOnly()
{
    QFETCH(QString, text);
    for (const int size : {1, 7, exchangeChunkSize}) {
        NodeStore store;
        QVERIFY(importByParser(text, store, size));
        QCOMPARE(store.nodeList(), (QList<quint8>{3, 0}));
    }
    QCOMPARE(exchangeProblem(text), QString());
}

void tst_ExchangeFile::tooManyAttributesAreRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isRefused");
    const auto attributes = [](int count, const char *value) {
        QString text;
        for (int i = 0; i < count; ++i)
            text += QStringLiteral(" a%1=%2").arg(i).arg(QLatin1String(value));
        return text;
    };
    const QString document = QStringLiteral("<a><node nodeid=\"3\"/>%1</a>");
    QTest::newRow("32") << document.arg(QStringLiteral("<b%1/>").arg(attributes(32, "\"\""))) << false;
    QTest::newRow("33") << document.arg(QStringLiteral("<b%1/>").arg(attributes(33, "\"\""))) << true;
    QTest::newRow("33 with the ends of tags in their values")
        << document.arg(QStringLiteral("<b%1/>").arg(attributes(33, "'>'"))) << true;
    QTest::newRow("33 behind what looks like a comment's end")
        << document.arg(QStringLiteral("<!-- > -> --><b%1/>").arg(attributes(33, "'-->'"))) << true;
    QTest::newRow("33 behind the shortest comment")
        << document.arg(QStringLiteral("<!----><b%1/>").arg(attributes(33, "''"))) << true;
    QTest::newRow("33 behind a CDATA section")
        << document.arg(QStringLiteral("<![CDATA[<!--]]><b%1/>").arg(attributes(33, "''"))) << true;
    QTest::newRow("33 behind an instruction")
        << document.arg(QStringLiteral("<?x <!-- ?><b%1/>").arg(attributes(33, "''"))) << true;
    QTest::newRow("32 in each of many tags")
        << document.arg(QStringLiteral("<b%1/>").arg(attributes(32, "''")).repeated(50)) << false;
    QTest::newRow("declared for all tags")
        << QStringLiteral("<!DOCTYPE a [<!ATTLIST b x CDATA 'y'>]>") + document.arg(QString()) << true;
}

void tst_ExchangeFile::tooManyAttributesAreRefused()
{
    QFETCH(QString, text);
    QFETCH(bool, isRefused);
    for (const int size : {1, 7, exchangeChunkSize}) {
        NodeStore store;
        QCOMPARE(importByParser(text, store, size), !isRefused);
    }
    QCOMPARE(exchangeProblem(text).contains(QLatin1String("far too many attributes")), isRefused);
}

void tst_ExchangeFile::farTooManyNodesAreRefused()
{
    // Two lines for each node, and the ends of nodes, which list a node 0, do not count.
    const QString node = QStringLiteral("<node nodeid=\"1\">\n</node>\n");
    const QString good = QStringLiteral("<a>\n%1</a>").arg(node.repeated(1016));
    NodeStore store;
    QVERIFY(importFrom(good, store));
    QCOMPARE(store.nodeList().size(), 2 * 1016);
    QCOMPARE(exchangeProblem(good), QString());

    const QString text = QStringLiteral("<a>\n%1<node nodeid=\"2\"/></a>").arg(node.repeated(1016));
    QVERIFY(!importFrom(text, store));
    QCOMPARE(store.nodeList().size(), 2 * 1016);
    QVERIFY(!store.nodeList().contains(2));
    QCOMPARE(exchangeProblem(text),
             QStringLiteral(
                 "The file lists far more nodes than a vehicle can have, the first one too many in line "
                 "2034, column 18."));

    // Node 0 has a bound of its own, start and end together.
    const QString zeroes
        = QStringLiteral("<a><node nodeid=\"1\"/>%1</a>").arg(QStringLiteral("<node/>").repeated(16384));
    QVERIFY(!importFrom(zeroes, store));
    QCOMPARE(store.nodeList().size(), 32768);
    QVERIFY2(exchangeProblem(zeroes).contains(QLatin1String("far more nodes")),
             qPrintable(exchangeProblem(zeroes)));
}

void tst_ExchangeFile::manyRoundTripsAreNotRefused()
{
    NodeStore store;
    for (quint8 nodeId = 1; nodeId <= 127; ++nodeId)
        store.appendNode(nodeId);
    for (int i = 0; i < 8; ++i) {
        const QString text = exportToText(store, someDate);
        QCOMPARE(exchangeProblem(text), QString());
        QVERIFY(importFrom(text, store));
    }
    QCOMPARE(store.nodeList().size(), 127 * 256);
}

void tst_ExchangeFile::hostileDocumentsEnd_data()
{
    QTest::addColumn<QString>("text");
    constexpr int tenMillion = 10 * 1000 * 1000;
    const QString node = QStringLiteral("<node nodeid=\"1\"/>");
    QTest::newRow("attribute of ten million characters")
        << QStringLiteral("<a>") + node
               + QStringLiteral("<object index=\"%1\"/></a>").arg(QString(tenMillion, QLatin1Char('9')));
    QTest::newRow("attribute without end") << QStringLiteral("<a>") + node
                                                  + QStringLiteral("<object index=\"")
                                                  + QString(tenMillion, QLatin1Char('9'));
    QTest::newRow("name without end")
        << QStringLiteral("<a>") + node + QLatin1Char('<') + QString(tenMillion, QLatin1Char('x'));
    QTest::newRow("comment without end")
        << QStringLiteral("<a>") + node + QStringLiteral("<!--") + QString(tenMillion, QLatin1Char(' '));
    QTest::newRow("text without end") << QStringLiteral("<a>") + node + QString(tenMillion, QLatin1Char('x'));
    QTest::newRow("nesting") << QStringLiteral("<a>") + node + QStringLiteral("<a>").repeated(tenMillion / 3);
    QTest::newRow("attributes") << [&] {
        QString text = QStringLiteral("<a>") + node + QStringLiteral("<object");
        for (int i = 0; i < 800000; ++i)
            text += QStringLiteral(" a%1=\"\"").arg(i);
        return text + QStringLiteral("/></a>");
    }();
    QTest::newRow("namespaces") << [&] {
        QString text = QStringLiteral("<a>") + node;
        for (int i = 0; i < 400000; ++i)
            text += QStringLiteral("<b xmlns:n%1=\"u\"/>").arg(i);
        return text;
    }();
    QTest::newRow("brackets") << QStringLiteral("<a>") + node + QString(tenMillion, QLatin1Char('<'));
    QTest::newRow("ampersands") << QStringLiteral("<a>") + node + QString(tenMillion, QLatin1Char('&'));
}

void tst_ExchangeFile::hostileDocumentsEnd()
{
    QFETCH(QString, text);
    NodeStore store;
    importFrom(text, store);
    QCOMPARE(store.nodeList().mid(0, 2), (QList<quint8>{1, 0}));
}

void tst_ExchangeFile::problemInWords_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");
    QTest::newRow("words") << QStringLiteral("no XML")
                           << QStringLiteral("The file is not XML: line 1, column 1: ");
    QTest::newRow("empty") << QString()
                           << QStringLiteral("The file is not complete: it ends in line 1, column 0.");
    QTest::newRow("cut off") << QStringLiteral("<a>\n<node nodeid=\"1\">\n")
                             << QStringLiteral("The file is not complete: it ends in line 3, column 0.");
    QTest::newRow("cut off in a value")
        << QStringLiteral("<a>\n<node nodeid=\"1\">\n<object index=\"0x60")
        << QStringLiteral("The file is not complete: it ends in line 3, column ");
    QTest::newRow("cut off behind a node")
        << QStringLiteral("<a>\n<node nodeid=\"1\"></node>\n")
        << QStringLiteral("The file is not complete: it ends in line 3, column 0.");
    QTest::newRow("wrong end") << QStringLiteral("<a>\n<node nodeid=\"1\">\n  </a>")
                               << QStringLiteral("The file is not XML: line 3, column 6: ");
    QTest::newRow("two roots") << QStringLiteral("<node nodeid=\"1\"/>\n<node nodeid=\"1\"/>")
                               << QStringLiteral("The file is not XML: line 2, column 18: ");
    QTest::newRow("no node") << QStringLiteral("<dxtoolstorage><nodes></nodes></dxtoolstorage>")
                             << QStringLiteral("There is no node in the file.");
    QTest::newRow("nodes of another kind of file") << QStringLiteral("<osm><node id=\"1\" lat=\"5\"/></osm>")
                                                   << QStringLiteral("There is no node in the file.");
    QTest::newRow("entities") << QStringLiteral("<!DOCTYPE a [\n<!ENTITY x \"1\">]><a/>")
                              << QStringLiteral("line 2, column 0 holds XML that exchange files never have");
    QTest::newRow("nesting") << QStringLiteral("<a>").repeated(1000) << QStringLiteral("levels");
}

void tst_ExchangeFile::problemInWords()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);
    QVERIFY2(exchangeProblem(text).contains(problem), qPrintable(exchangeProblem(text)));
}

void tst_ExchangeFile::goodFileHasNoProblem()
{
    NodeStore store;
    store.appendNode(1);
    store.setValue(1, 0x6000, 0, 3u);
    const QString text = exportToText(store, someDate);
    QCOMPARE(exchangeProblem(text), QString());
    importFrom(text, store);
    QCOMPARE(exchangeProblem(exportToText(store, someDate)), QString());
}

void tst_ExchangeFile::savedFileIsLoadedAgain()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    // Longer than a piece, so that it is written in several.
    const QString text = QStringLiteral("<a>\n0123456789</a>\n").repeated(20000);
    QVERIFY(saveExchangeFile(name, text));
    QCOMPARE(fileContent(name), text.toUtf8());
    QString loaded;
    QVERIFY(loadExchangeFile(name, loaded));
    QCOMPARE(loaded, text);
}

void tst_ExchangeFile::failedSaveKeepsTheOldFile()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("vehicle.dxxml"));
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("vehicle.dxxml"))); // a folder in its place
    QString message;
    QVERIFY(!saveExchangeFile(name, QStringLiteral("new"), &message));
    QVERIFY2(message.contains(name), qPrintable(message));
    QVERIFY(QFileInfo(name).isDir());
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList());

    QVERIFY(!saveExchangeFile(dir.filePath(QStringLiteral("missing/vehicle.dxxml")), QStringLiteral("new"),
                              &message));
    QVERIFY2(message.contains(QLatin1String("missing")), qPrintable(message));
}

void tst_ExchangeFile::unreadableFileIsNamed()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("none.dxxml"));
    QString text = QStringLiteral("as before");
    QString message;
    QVERIFY(!loadExchangeFile(name, text, &message));
    QCOMPARE(text, QStringLiteral("as before"));
    QVERIFY2(message.contains(name), qPrintable(message));
    QVERIFY(!loadExchangeFile(name, text));
}

void tst_ExchangeFile::endlessFileIsRefused()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("large.dxxml"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(64 * 1024 * 1024 + 1)); // zeroes that take no room on the disk
    QString text = QStringLiteral("as before");
    QString message;
    QVERIFY(!loadExchangeFile(name, text, &message));
    QCOMPARE(text, QStringLiteral("as before"));
    QCOMPARE(message, QStringLiteral("The file %1 is far too large for an exchange file.").arg(name));

    QVERIFY(file.resize(64 * 1024 * 1024));
    QVERIFY(loadExchangeFile(name, text));
    QCOMPARE(text.size(), 64 * 1024 * 1024);
}

QTEST_GUILESS_MAIN(tst_ExchangeFile)
#include "tst_exchangefile.moc"
