// SPDX-License-Identifier: MIT
#include "snapshotbuilder.h"

#include <snapshot/snapshotfile.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using CanOpen::DataType;

namespace {

/*! What the public validator says: empty when the document is as the schema wants it. */
QString verdictOn(const QByteArray &document)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("document.json")));
    if (!file.open(QIODevice::WriteOnly) || file.write(document) != document.size())
        return QStringLiteral("no file");
    file.close();
    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start(QStringLiteral(PYTHON),
                    {QStringLiteral("-m"), QStringLiteral("jsonschema"), QStringLiteral("-i"),
                     file.fileName(), QStringLiteral(SCHEMA_FILE)});
    if (!validator.waitForFinished(120000))
        return QStringLiteral("the validator did not end");
    const QString output = QString::fromUtf8(validator.readAll()).trimmed();
    return validator.exitCode() == 0 ? QString() : QStringLiteral("refused: ") + output;
}

QByteArray goodDocument()
{
    SnapshotBuilder builder;
    builder.node(1)
        .value(0x1000, 0, DataType::Unsigned32, 1u)
        .value(0x1008, 0, DataType::VisibleString, QStringLiteral("name"))
        .value(0x2000, 0, DataType::Real64, -0.5)
        .raw(0x2001, 0, QByteArray(20, 'x'))
        .gap(0x6000, 0, SnapshotGap::Abort, 0x08000020);
    builder.last().medianAnswer = 3;
    builder.last().longestAnswer = 5;
    builder.last().bootUps = 1;
    builder.last().dataSheet = QStringLiteral("sheet");
    builder.node(2).gap(0x6000, 0, SnapshotGap::NoAnswer);
    builder.last().end = SnapshotEnd::Silent;
    builder.last().nmtState.reset();
    builder.snapshot().adapter = QStringLiteral("adapter");
    builder.snapshot().notes = {QStringLiteral("v"), QStringLiteral("c"), QStringLiteral("t"),
                                QStringLiteral("o"), QStringLiteral("n")};
    return SnapshotFile::toJson(builder.snapshot());
}

} // namespace

class tst_SnapshotSchema : public QObject
{
    Q_OBJECT

private slots:
    void whatIsWrittenFitsTheSchema();
    void emptySnapshotFits();
    void schemaRefuses_data();
    void schemaRefuses();
};

void tst_SnapshotSchema::whatIsWrittenFitsTheSchema()
{
    QCOMPARE(verdictOn(goodDocument()), QString());
}

void tst_SnapshotSchema::emptySnapshotFits()
{
    Snapshot snapshot;
    snapshot.time = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);
    QCOMPARE(verdictOn(SnapshotFile::toJson(snapshot)), QString());
}

void tst_SnapshotSchema::schemaRefuses_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("other format") << QByteArray("draxel-snapshot") << QByteArray("draxel-trace");
    QTest::newRow("number as a text") << QByteArray("\"value\":1,") << QByteArray("\"value\":[1],");
    QTest::newRow("value and gap") << QByteArray("\"value\":1,")
                                   << QByteArray("\"value\":1,\"gap\":\"absent\",");
    QTest::newRow("node 128") << QByteArray("\"id\":2") << QByteArray("\"id\":128");
    QTest::newRow("index") << QByteArray("\"index\":4096") << QByteArray("\"index\":65536");
    QTest::newRow("unknown gap") << QByteArray("\"noAnswer\"") << QByteArray("\"silence\"");
    QTest::newRow("upper case bytes")
        << QByteArray("\"raw\":\"01000000\"") << QByteArray("\"raw\":\"0A000000\"");
    QTest::newRow("no time") << QByteArray("\"time\":") << QByteArray("\"when\":");
}

void tst_SnapshotSchema::schemaRefuses()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QByteArray document = goodDocument();
    QVERIFY(document.contains(before));
    QVERIFY2(verdictOn(document.replace(before, after)).startsWith(QStringLiteral("refused")),
             document.constData());
}

QTEST_GUILESS_MAIN(tst_SnapshotSchema)
#include "tst_snapshotschema.moc"
